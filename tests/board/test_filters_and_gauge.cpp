#include "board/DragDropManager.h"
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
    fields.id = QUuid::createUuid().toString();
    fields.tag = Tag{tagId, tagName};
    return std::make_shared<BaseWorkItem>(fields);
}

} // namespace

/** The state of the filters, of the selection, of the gauge's settings and of a drag. */
class TestFiltersAndGauge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void eachFilterTellsOfItsChange();
    void completedTasksHideOnlyWhileAFilterIsOn();
    void tagsAreOfferedByNameWithTheUntaggedFirst();
    void selectionExtendsTogglesAndIsSilentWithoutChange();
    void gaugeMarksPushEachOther();
    void gaugeSettingsSurviveARestart();
    void storedGaugeSettingsAreClampedOrLeftAlone_data();
    void storedGaugeSettingsAreClampedOrLeftAlone();
    void aColumnIsNotDroppedWhereItMayNotStand();

private:
    void reopenDefaults() { m_defaults = std::make_unique<UserDefaults>(m_saver, m_path); }

    QTemporaryDir m_folder;
    QString m_path;
    FileCalls m_calls;
    FileSaver m_saver{m_calls};
    NotificationCenter m_notifications;
    std::unique_ptr<UserDefaults> m_defaults;
};

void TestFiltersAndGauge::init()
{
    m_path = m_folder.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
    reopenDefaults();
}

void TestFiltersAndGauge::eachFilterTellsOfItsChange()
{
    FilterManager filters(m_notifications, *m_defaults);
    QSignalSpy changes(&filters, &FilterManager::filtersChanged);
    QStringList posts;
    m_notifications.observe(notifications::TagFilterUpdated, this, [&](const Notification &) {
        posts.append(u"tag %1"_s.arg(filters.isFilterActive()));
    });
    m_notifications.observe(notifications::EisenhowerPriorityUpdated, this, [&](const Notification &) {
        posts.append(u"priority %1"_s.arg(filters.isFilterActive()));
    });

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
    m_notifications.removeObserver(this);

    const QStringList expected{u"tag 1"_s,      u"tag 0"_s,      u"tag 1"_s, u"tag 0"_s,
                               u"priority 1"_s, u"priority 0"_s, u"tag 1"_s, u"tag 1"_s,
                               u"tag 1"_s,      u"tag 0"_s,      u"tag 0"_s};
    QCOMPARE(posts, expected);
    QCOMPARE(changes.count(), expected.size());
    QVERIFY(filters.isTagSidebarVisible());
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
    QSignalSpy changes(&filters, &FilterManager::availableTagsChanged);
    const std::vector<WorkItemPtr> tasks{taggedTask(u"b"_s, u"Beta"_s), taggedTask(u"a"_s, u"alpha"_s),
                                         taggedTask(u"b"_s, u"Renamed"_s), taggedTask(u"c"_s, u""_s),
                                         std::make_shared<BaseWorkItem>(WorkItemFields())};

    filters.updateAvailableTags(tasks);
    filters.updateAvailableTags(tasks);

    const std::vector<AvailableTag> expected{
        {u"untagged"_s, u"Untagged"_s, 2}, {u"a"_s, u"alpha"_s, 1}, {u"b"_s, u"Beta"_s, 2}};
    QCOMPARE(filters.availableTags(), expected);
    QCOMPARE(changes.count(), 1);
}

void TestFiltersAndGauge::selectionExtendsTogglesAndIsSilentWithoutChange()
{
    SelectionManager selection;
    QSignalSpy changes(&selection, &SelectionManager::selectionChanged);

    selection.selectTask(u"a"_s, true);
    selection.selectTask(u"b"_s, true);
    selection.selectTask(u"c"_s, true);
    selection.toggleTaskSelection(u"b"_s);
    selection.toggleTaskSelection(u"b"_s);
    QCOMPARE(selection.selectedTaskIds(), (QStringList{u"a"_s, u"c"_s, u"b"_s}));

    selection.selectTask(u"c"_s, false);
    QCOMPARE(selection.selectedTaskIds(), QStringList{u"c"_s});
    QVERIFY(!selection.isSelected(u"a"_s));

    const auto before = changes.count();
    selection.selectTask(u"c"_s, false);
    selection.selectTask(u"c"_s, true);
    selection.removeFromSelection(u"a"_s);
    QCOMPARE(changes.count(), before);

    selection.deselectAllTasks();
    QVERIFY(selection.selectedTaskIds().isEmpty());
    QVERIFY(!selection.isSelected(u"c"_s));
}

void TestFiltersAndGauge::gaugeMarksPushEachOther()
{
    WIPGaugeSettings settings(*m_defaults);
    QSignalSpy changes(&settings, &WIPGaugeSettings::settingsChanged);

    settings.setWarnThreshold(40);
    QCOMPARE(settings.maxThreshold(), 40);
    settings.setMaxThreshold(10);
    QCOMPARE(settings.warnThreshold(), 10);
    settings.setMaxThreshold(10);
    QCOMPARE(changes.count(), 2);

    QCOMPARE(settings.calculateProgress(15), 1.5);
    QCOMPARE(settings.capacityPercentage(15), u"150%"_s);
    settings.setMaxThreshold(0);
    QCOMPARE(settings.calculateProgress(15), 0.0);
    QCOMPARE(settings.capacityPercentage(15), u"0%"_s);
}

void TestFiltersAndGauge::gaugeSettingsSurviveARestart()
{
    {
        WIPGaugeSettings settings(*m_defaults);
        QVERIFY(m_defaults->contains(keys::WIPGaugeSettings));
        settings.setEnabled(true);
        settings.setMaxThreshold(12);
        settings.setIncludeQueueColumns(false);
    }
    reopenDefaults();
    const WIPGaugeSettings settings(*m_defaults);

    QVERIFY(settings.isEnabled());
    QCOMPARE(settings.warnThreshold(), 12);
    QCOMPARE(settings.maxThreshold(), 12);
    QVERIFY(!settings.includeQueueColumns());
}

void TestFiltersAndGauge::storedGaugeSettingsAreClampedOrLeftAlone_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("warn");
    QTest::addColumn<int>("max");

    QTest::newRow("marks in the wrong order are clamped once")
        << QByteArray(R"({"isEnabled":true,"warnThreshold":50,"maxThreshold":30,"includeQueueColumns":true})")
        << 30 << 30;
    QTest::newRow("a missing key") << QByteArray(R"({"isEnabled":true,"warnThreshold":5,"maxThreshold":9})")
                                   << 20 << 30;
    QTest::newRow("a fraction")
        << QByteArray(R"({"isEnabled":true,"warnThreshold":5.5,"maxThreshold":9,"includeQueueColumns":true})")
        << 20 << 30;
    QTest::newRow("too large for a count")
        << QByteArray(
               R"({"isEnabled":true,"warnThreshold":5,"maxThreshold":1e40,"includeQueueColumns":true})")
        << 20 << 30;
    QTest::newRow("no JSON") << QByteArray("\xff\x00rubbish") << 20 << 30;
}

void TestFiltersAndGauge::storedGaugeSettingsAreClampedOrLeftAlone()
{
    QFETCH(QByteArray, json);
    m_defaults->set(keys::WIPGaugeSettings, json);

    WIPGaugeSettings settings(*m_defaults);

    QTEST(settings.warnThreshold(), "warn");
    QTEST(settings.maxThreshold(), "max");
    QCOMPARE(m_defaults->data(keys::WIPGaugeSettings), json);
    settings.setEnabled(!settings.isEnabled());
    QVERIFY(m_defaults->data(keys::WIPGaugeSettings) != json);
}

void TestFiltersAndGauge::aColumnIsNotDroppedWhereItMayNotStand()
{
    const DragDropManager drag;
    const std::vector<Column> columns = Column::defaultColumns();
    const auto anyOrder = [](const std::vector<ColumnType> &) {
        return true;
    };
    const auto noOrder = [](const std::vector<ColumnType> &) {
        return false;
    };

    QCOMPARE(drag.moveColumn(0, 2, columns, anyOrder),
             (std::vector<Column>{columns[1], columns[2], columns[0]}));
    QVERIFY(!drag.moveColumn(0, 2, columns, noOrder));
    QVERIFY(!drag.moveColumn(0, 3, columns, anyOrder));
    QVERIFY(!drag.moveColumn(0, -1, columns, anyOrder));
}

VANTREL_REGISTER_TEST(TestFiltersAndGauge)

} // namespace vantrel::test

#include "test_filters_and_gauge.moc"
