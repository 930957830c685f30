#include "foundations/BaseWorkItem.h"
#include "foundations/DefaultsKeys.h"
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

class FixedSettings final : public DateSettingsProvider
{
public:
    FixedSettings(int days, QString time) : m_days(days), m_time(std::move(time)) {}
    int dueSoonDays() const override { return m_days; }
    QString dueSoonTime() const override { return m_time; }

private:
    int m_days;
    QString m_time;
};

} // namespace

class TestTaskDates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dueSoonFollowsTheWindow_data();
    void dueSoonFollowsTheWindow();
    void settingsThatMakeNoSenseActAsIfUnset_data();
    void settingsThatMakeNoSenseActAsIfUnset();
    void anOverdueTaskOfTodayIsAlsoDueSoon();
    void agesAreCutToWholeDays_data();
    void agesAreCutToWholeDays();
    void dueDatesAreWordedForTheLocale();
    void timeManagerTicksOnceAnInterval();
};

void TestTaskDates::dueSoonFollowsTheWindow_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("time");
    QTest::addColumn<Date>("due");
    QTest::addColumn<bool>("isDueSoon");

    const QString five = QStringLiteral("17:00:00");
    QTest::newRow("today, though past") << 0 << five << at(10, 0, 1) << true;
    QTest::newRow("today, after the cut-off") << 0 << five << at(10, 23, 59) << true;
    QTest::newRow("yesterday is overdue instead") << 2 << five << at(9, 23, 59) << false;
    QTest::newRow("tomorrow with no window") << 0 << five << at(11, 0, 0) << false;
    QTest::newRow("inside the window, late") << 2 << five << at(11, 23, 0) << true;
    QTest::newRow("last day at the cut-off") << 2 << five << at(12, 17, 0) << true;
    QTest::newRow("last day past the cut-off") << 2 << five << at(12, 17, 1) << false;
    QTest::newRow("past the window") << 2 << five << at(13, 8, 0) << false;
    QTest::newRow("a time without minutes") << 2 << QStringLiteral("17") << at(12, 23, 0) << true;
    QTest::newRow("a time that is none") << 2 << QStringLiteral("at:noon") << at(12, 23, 0) << true;
}

void TestTaskDates::dueSoonFollowsTheWindow()
{
    QFETCH(int, days);
    QFETCH(QString, time);
    QFETCH(Date, due);
    QFETCH(bool, isDueSoon);

    const FixedSettings settings(days, time);
    const TaskHelper helper(settings, QLocale(u"en_US"_s));

    QCOMPARE(helper.isDueSoon(due, at(10, 12, 0)), isDueSoon);
    QVERIFY(!helper.isDueSoon(std::nullopt, at(10, 12, 0)));
}

void TestTaskDates::settingsThatMakeNoSenseActAsIfUnset_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("time");

    QTest::newRow("unset") << QByteArray("{}") << 0 << u"17:00:00"_s;
    QTest::newRow("a real is cut") << QByteArray(R"({"dueSoonDays": 2.9})") << 2 << u"17:00:00"_s;
    QTest::newRow("texts for numbers and numbers for texts")
        << QByteArray(R"({"dueSoonDays": "2", "dueSoonTime": 9})") << 0 << u"17:00:00"_s;
    QTest::newRow("negative") << QByteArray(R"({"dueSoonDays": -4})") << 0 << u"17:00:00"_s;
    QTest::newRow("beyond all calendars")
        << QByteArray(R"({"dueSoonDays": 1e300, "dueSoonTime": "08:30:00"})") << 100'000 << u"08:30:00"_s;
}

void TestTaskDates::settingsThatMakeNoSenseActAsIfUnset()
{
    QFETCH(QByteArray, stored);
    QFETCH(int, days);
    QFETCH(QString, time);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("defaults.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(stored);
    file.close();
    FileCalls calls;
    FileSaver saver(calls);
    const UserDefaults defaults(saver, path);
    const UserDefaultsDateSettings settings(defaults);

    QCOMPARE(settings.dueSoonDays(), days);
    QCOMPARE(settings.dueSoonTime(), time);
}

void TestTaskDates::anOverdueTaskOfTodayIsAlsoDueSoon()
{
    const FixedSettings settings(0, QStringLiteral("17:00:00"));
    const TaskHelper helper(settings);

    QVERIFY(helper.isDueSoon(at(10, 8, 0), at(10, 20, 0)));
    QVERIFY(TaskHelper::isOverdue(at(10, 8, 0), at(10, 20, 0)));
    QVERIFY(!TaskHelper::isOverdue(at(10, 20, 0), at(10, 20, 0)));
    QVERIFY(!TaskHelper::isOverdue(std::nullopt, at(10, 20, 0)));
}

void TestTaskDates::agesAreCutToWholeDays_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("text");

    QTest::newRow("a day less a second") << 86399.0 << u"Today"_s;
    QTest::newRow("one day") << 86400.0 << u"1 day"_s;
    QTest::newRow("two days") << 172800.0 << u"2 days"_s;
    QTest::newRow("half a day ahead") << -43200.0 << u"Today"_s;
    QTest::newRow("a day ahead") << -86400.0 << u"-1 days"_s;
    QTest::newRow("a creation date that is no date") << 1e300 << u"Today"_s;
}

void TestTaskDates::agesAreCutToWholeDays()
{
    QFETCH(double, seconds);
    QFETCH(QString, text);

    QCOMPARE(TaskHelper::humanReadableAge(seconds), text);
}

void TestTaskDates::dueDatesAreWordedForTheLocale()
{
    const FixedSettings settings(0, QStringLiteral("17:00:00"));
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

void TestTaskDates::timeManagerTicksOnceAnInterval()
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

} // namespace vantrel::test

Q_DECLARE_METATYPE(vantrel::Date)

QTEST_GUILESS_MAIN(vantrel::test::TestTaskDates)
#include "test_task_dates.moc"
