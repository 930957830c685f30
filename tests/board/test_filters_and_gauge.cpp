#include "board/FilterManager.h"
#include "board/SelectionManager.h"
#include "board/WIPGaugeSettings.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

WorkItemPtr taggedTask(const QString &tagId, const QString &tagName)
{
    WorkItemFields fields;
    fields.tag = Tag{tagId, tagName};
    return std::make_shared<BaseWorkItem>(fields);
}

} // namespace

/** The state of the filters, of the selection and of the gauge's settings. */
class TestFiltersAndGauge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        reopenDefaults();
    }

    void eachFilterTellsOfItsChange();
    void completedTasksHideOnlyWhileAFilterIsOn();
    void tagsAreOfferedByNameWithTheUntaggedFirst();
    void selectionExtendsTogglesAndIsSilentWithoutChange();
    void gaugeMarksPushEachOtherAndSurviveARestart();
    void storedGaugeSettingsAreClampedOrLeftAlone();

private:
    void reopenDefaults()
    {
        // The earlier ones are written before the file is read.
        m_defaults.reset();
        m_defaults = std::make_unique<UserDefaults>(m_saver, m_folder->filePath(u"defaults.json"_s));
    }

    FileCalls m_calls;
    FileSaver m_saver{m_calls};
    NotificationCenter m_notifications;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UserDefaults> m_defaults;
};

void TestFiltersAndGauge::eachFilterTellsOfItsChange()
{
    FilterManager filters(m_notifications, *m_defaults);
    QSignalSpy changes(&filters, &FilterManager::filtersChanged);
    QString posts;
    m_notifications.observe(notifications::TagFilterUpdated, &filters,
                            [&](const Notification &) { posts += filters.isFilterActive() ? u'T' : u't'; });
    m_notifications.observe(notifications::EisenhowerPriorityUpdated, &filters,
                            [&](const Notification &) { posts += filters.isFilterActive() ? u'P' : u'p'; });

    filters.toggleTagFilter(u"t"_s);
    filters.toggleTagFilter(u"t"_s);
    filters.toggleFlaggedFilter();
    filters.clearFlaggedFilter();
    filters.togglePriorityFilter(EisenhowerPriority::DoNow);
    filters.clearPriorityFilters();
    filters.toggleSourceFilter(u"omnifocus"_s);
    filters.toggleTagFilter(u"t"_s);
    filters.clearSourceFilters();
    filters.clearTagFilters();
    filters.toggleTagSidebar();

    QCOMPARE(posts, u"TtTtPpTTTtt"_s);
    QCOMPARE(changes.count(), posts.size());
}

void TestFiltersAndGauge::completedTasksHideOnlyWhileAFilterIsOn()
{
    FilterManager filters(m_notifications, *m_defaults);
    const WorkItemPtr done = taggedTask(u"t"_s, u"Home"_s);
    done->setComplete(true);
    m_defaults->set(keys::ExcludeDoneTasksFromFilter, true);
    QVERIFY(filters.isTaskVisibleWithFilters(*done));

    filters.toggleTagFilter(u"t"_s);
    QVERIFY(!filters.isTaskVisibleWithFilters(*done));

    QSignalSpy changes(&filters, &FilterManager::filtersChanged);
    m_defaults->set(keys::ExcludeDoneTasksFromFilter, false);
    QVERIFY(filters.isTaskVisibleWithFilters(*done));
    QCOMPARE(changes.count(), 1);
}

void TestFiltersAndGauge::tagsAreOfferedByNameWithTheUntaggedFirst()
{
    FilterManager filters(m_notifications, *m_defaults);
    filters.updateAvailableTags({taggedTask(u"b"_s, u"Beta"_s), taggedTask(u"a"_s, u"alpha"_s),
                                 taggedTask(u"b"_s, u"Renamed"_s), taggedTask(u"c"_s, u""_s),
                                 std::make_shared<BaseWorkItem>(WorkItemFields())});

    QCOMPARE(filters.availableTags(),
             (std::vector<AvailableTag>{
                 {u"untagged"_s, u"Untagged"_s, 2}, {u"a"_s, u"alpha"_s, 1}, {u"b"_s, u"Beta"_s, 2}}));
}

void TestFiltersAndGauge::selectionExtendsTogglesAndIsSilentWithoutChange()
{
    SelectionManager selection;
    QSignalSpy changes(&selection, &SelectionManager::selectionChanged);
    for (const QString &id : {u"a"_s, u"b"_s, u"c"_s}) {
        selection.selectTask(id, true);
    }
    selection.toggleTaskSelection(u"b"_s);
    selection.toggleTaskSelection(u"b"_s);
    QCOMPARE(selection.selectedTaskIds(), (QStringList{u"a"_s, u"c"_s, u"b"_s}));

    selection.selectTask(u"c"_s, false);
    QVERIFY(selection.isSelected(u"c"_s) && !selection.isSelected(u"a"_s));
    selection.selectTask(u"c"_s, false);
    selection.selectTask(u"c"_s, true);
    selection.removeFromSelection(u"a"_s);
    QCOMPARE(changes.count(), 6);
    selection.deselectAllTasks();
    QVERIFY(selection.selectedTaskIds().isEmpty() && !selection.isSelected(u"c"_s));
}

void TestFiltersAndGauge::gaugeMarksPushEachOtherAndSurviveARestart()
{
    {
        WIPGaugeSettings settings(*m_defaults);
        QVERIFY(m_defaults->contains(keys::WIPGaugeSettings));
        settings.setWarnThreshold(40);
        QCOMPARE(settings.maxThreshold(), 40);
        settings.setMaxThreshold(10);
        QCOMPARE(settings.warnThreshold(), 10);
        settings.setEnabled(true);
        settings.setIncludeQueueColumns(false);
    }
    reopenDefaults();
    WIPGaugeSettings settings(*m_defaults);

    QCOMPARE(settings.thresholds(), (WIPThresholds{10, 10}));
    QVERIFY(settings.isEnabled() && !settings.includeQueueColumns());
    QCOMPARE(settings.calculateProgress(15), 1.5);
    QCOMPARE(settings.capacityPercentage(15), u"150%"_s);
    settings.setMaxThreshold(0);
    QCOMPARE(settings.calculateProgress(15), 0.0);
    QCOMPARE(settings.capacityPercentage(15), u"0%"_s);
}

void TestFiltersAndGauge::storedGaugeSettingsAreClampedOrLeftAlone()
{
    const QByteArray record = R"({"isEnabled":true,"includeQueueColumns":true,"warnThreshold":%})";
    const auto marks = [&record](const char *values) {
        return QByteArray(record).replace("%", values);
    };
    const std::vector<std::pair<QByteArray, WIPThresholds>> rows{
        {marks("50,\"maxThreshold\":30"), {30, 30}},  {marks("5.5,\"maxThreshold\":30"), {20, 30}},
        {marks("5,\"maxThreshold\":1e40"), {20, 30}}, {marks("5"), {20, 30}},
        {QByteArray("\xff rubbish"), {20, 30}},
    };
    for (const auto &[stored, thresholds] : rows) {
        m_defaults->set(keys::WIPGaugeSettings, stored);
        WIPGaugeSettings settings(*m_defaults);
        QCOMPARE(settings.thresholds(), thresholds);
        QCOMPARE(m_defaults->data(keys::WIPGaugeSettings), stored);
        settings.setEnabled(!settings.isEnabled());
        QVERIFY(m_defaults->data(keys::WIPGaugeSettings) != stored);
    }
}

VANTREL_REGISTER_TEST(TestFiltersAndGauge)

} // namespace vantrel::test

#include "test_filters_and_gauge.moc"
