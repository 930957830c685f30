#include "foundations/BaseWorkItem.h"
#include "foundations/FileSaver.h"
#include "foundations/TaskHelper.h"
#include "foundations/TimeManager.h"
#include "foundations/UserDefaults.h"
#include "support/ManualClock.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** A local time on day `day`; day 10 is today. */
Date at(int day, int hour, int minute)
{
    return Date::fromDateTime(QDateTime(QDate(2026, 11, day), QTime(hour, minute)));
}

struct FixedSettings final : DateSettingsProvider
{
    FixedSettings(int daysAhead, QString lastTime) : days(daysAhead), time(std::move(lastTime)) {}
    int dueSoonDays() const override { return days; }
    QString dueSoonTime() const override { return time; }

    int days;
    QString time;
};

} // namespace

class TestTaskDates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dueSoonFollowsTheWindow()
    {
        struct Row
        {
            const char *name;
            int days;
            QString time;
            Date due;
            bool isDueSoon;
        };
        const QString five = u"17:00:00"_s;
        for (const Row &row : {Row{"today, though past", 0, five, at(10, 0, 1), true},
                               Row{"today, after the cut-off", 0, five, at(10, 23, 59), true},
                               Row{"yesterday is overdue instead", 2, five, at(9, 23, 59), false},
                               Row{"tomorrow with no window", 0, five, at(11, 0, 0), false},
                               Row{"inside the window, late", 2, five, at(11, 23, 0), true},
                               Row{"last day at the cut-off", 2, five, at(12, 17, 0), true},
                               Row{"last day past the cut-off", 2, five, at(12, 17, 1), false},
                               Row{"past the window", 2, five, at(13, 8, 0), false},
                               Row{"a time that is none", 2, u"at:noon"_s, at(12, 23, 0), true}}) {
            const FixedSettings settings(row.days, row.time);
            QVERIFY2(TaskHelper(settings).isDueSoon(row.due, at(10, 12, 0)) == row.isDueSoon, row.name);
        }
        QVERIFY(TaskHelper::isOverdue(at(10, 8, 0), at(10, 20, 0)));
        QVERIFY(!TaskHelper::isOverdue(at(10, 20, 0), at(10, 20, 0)));
    }

    void settingsThatMakeNoSenseActAsIfUnset()
    {
        struct Row
        {
            QByteArray stored;
            int days;
            QString time;
        };
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"defaults.json"_s);
        FileCalls calls;
        FileSaver saver(calls);
        for (const Row &row : {Row{"{}", 0, u"17:00:00"_s}, Row{R"({"dueSoonDays": 2.9})", 2, u"17:00:00"_s},
                               Row{R"({"dueSoonDays": "2", "dueSoonTime": 9})", 0, u"17:00:00"_s},
                               Row{R"({"dueSoonDays": -4, "dueSoonTime": "08:30"})", 0, u"08:30"_s},
                               Row{R"({"dueSoonDays": 1e300})", 100'000, u"17:00:00"_s}}) {
            QVERIFY(saver.save(path, row.stored).isOk());
            const UserDefaults defaults(saver, path);
            const UserDefaultsDateSettings settings(defaults);
            QCOMPARE(settings.dueSoonDays(), row.days);
            QCOMPARE(settings.dueSoonTime(), row.time);
        }
    }

    void agesAreCutToWholeDays()
    {
        for (const auto &[seconds, text] : {std::pair(86399.0, u"Today"_s),
                                            {86400.0, u"1 day"_s},
                                            {172800.0, u"2 days"_s},
                                            {-43200.0, u"Today"_s},
                                            {-86400.0, u"-1 days"_s},
                                            {1e300, u"Today"_s}}) {
            QCOMPARE(TaskHelper::humanReadableAge(seconds), text);
        }
    }

    void dueDatesAreWordedForTheLocale()
    {
        const FixedSettings settings(0, u"17:00:00"_s);
        const TaskHelper american(settings, QLocale(u"en_US"_s));
        const TaskHelper german(settings, QLocale(u"de_DE"_s));
        WorkItemFields fields;
        fields.dueDate = at(10, 17, 5);
        const BaseWorkItem task(fields);

        QCOMPARE(american.formattedDueDate(task, at(10, 9, 0)), u"17:05"_s);
        QCOMPARE(american.formattedDueDate(task, at(9, 9, 0)), u"11/10/26"_s);
        QCOMPARE(german.formattedDueDate(task, at(9, 9, 0)), u"10.11.26"_s);
        QCOMPARE(american.formattedDueDate(BaseWorkItem(WorkItemFields()), at(9, 9, 0)), std::nullopt);
        QCOMPARE(american.formattedDueString(at(10, 17, 5)), u"11/10/26, 5:05 PM"_s);
    }

    void timeManagerTicksOnceAnInterval()
    {
        ManualClock clock;
        const TimeManager timeManager(clock);
        const Date start = clock.now();
        QSignalSpy ticks(&timeManager, &TimeManager::currentTimeChanged);

        clock.advance(59.0);
        QCOMPARE(timeManager.currentTime(), start);
        clock.advance(121.0);
        QCOMPARE(ticks.count(), 3);
        QCOMPARE(timeManager.currentTime(), start + 180.0);
    }
};

} // namespace vantrel::test

QTEST_GUILESS_MAIN(vantrel::test::TestTaskDates)
#include "test_task_dates.moc"
