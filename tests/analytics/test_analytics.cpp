#include "analytics/TaskAgeAnalyzer.h"
#include "analytics/ThroughputAnalyzer.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace vantrel;

namespace {

LocalCalendar calendarAt(const char *zone, const QDate &date, const QTime &time,
                         QLocale locale = QLocale(QLocale::English, QLocale::UnitedStates))
{
    const QTimeZone timeZone(zone);
    return {Date::fromDateTime(QDateTime(date, time, timeZone)), timeZone, std::move(locale)};
}

/** The definition itself: a task counts in a point if the wall clock shows the same hour, date or week for
 * both. */
int countByDefinition(const throughput::Tasks &tasks, Date point, ThroughputPeriod period,
                      const LocalCalendar &calendar)
{
    const auto unit = [&](Date date) {
        const QDateTime local = calendar.dateTime(date);
        switch (period) {
        case ThroughputPeriod::Hourly:
            return std::pair(local.date(), local.time().hour());
        case ThroughputPeriod::Daily:
            return std::pair(local.date(), 0);
        case ThroughputPeriod::Weekly: {
            const int back = (local.date().dayOfWeek() - calendar.locale.firstDayOfWeek() + 7) % 7;
            return std::pair(local.date().addDays(-back), 0);
        }
        }
        Q_UNREACHABLE();
    };
    return static_cast<int>(std::count_if(tasks.begin(), tasks.end(), [&](const CompletedTask &task) {
        return task.completionDate && unit(*task.completionDate) == unit(point);
    }));
}

std::vector<ThroughputDataPoint> pointsWithCounts(const std::vector<int> &counts)
{
    std::vector<ThroughputDataPoint> points;
    for (const int count : counts) {
        points.push_back({Date(), count, ThroughputPeriod::Daily});
    }
    return points;
}

} // namespace

class TestAnalytics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPointCountsWhatTheWallClockSays_data();
    void everyPointCountsWhatTheWallClockSays();
    void theWindowIsTwentyDaysWhateverThePeriod();
    void thePresentHasAPointWhateverItsFraction();
    void theSumMayMissWeeksBetweenThePoints();
    void metricsFollowTheCounts_data();
    void metricsFollowTheCounts();
    void theBestWeekdayOfATieIsTheFirstOfTheWeek();
    void aTaskFallsIntoItsAgeBucket_data();
    void aTaskFallsIntoItsAgeBucket();
    void theHistogramHasAllBucketsOrNone();
};

void TestAnalytics::everyPointCountsWhatTheWallClockSays_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QLocale>("locale");

    const QLocale monday(QLocale::German, QLocale::Germany);
    const QLocale sunday(QLocale::English, QLocale::UnitedStates);
    const auto row = [](const char *what, const char *zone, const QDateTime &now, const QLocale &locale) {
        QTest::newRow(what) << QByteArray(zone) << now << locale;
    };
    row("summer time ends", "Europe/Berlin", QDateTime(QDate(2026, 11, 3), QTime(2, 30)), monday);
    row("summer time begins, now in the gap's hour", "America/New_York",
        QDateTime(QDate(2026, 3, 20), QTime(2, 30)), sunday);
    row("half an hour of summer time", "Australia/Lord_Howe", QDateTime(QDate(2026, 4, 10), QTime(1, 45)),
        sunday);
    row("quarter hours from UTC", "Asia/Kathmandu", QDateTime(QDate(2026, 6, 1), QTime(0, 5)), sunday);
    row("a skipped day", "Pacific/Apia", QDateTime(QDate(2012, 1, 5), QTime(12, 0)), monday);
    row("a leap day", "UTC", QDateTime(QDate(2028, 3, 5), QTime(23, 59)), monday);
}

void TestAnalytics::everyPointCountsWhatTheWallClockSays()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDateTime, now);
    QFETCH(QLocale, locale);
    const LocalCalendar calendar = calendarAt(zone.constData(), now.date(), now.time(), locale);

    QRandomGenerator random(20261103);
    throughput::Tasks tasks;
    for (int i = 0; i < 300; ++i) {
        const double back = random.bounded(30 * SecondsPerDay) - 3 * SecondsPerDay;
        const auto source = static_cast<CompletedTask::Source>(random.bounded(3));
        tasks.push_back({calendar.now - back, source});
    }
    tasks.push_back({std::nullopt, CompletedTask::Source::Other});

    for (const ThroughputPeriod period : AllThroughputPeriods) {
        const auto points = throughput::generateThroughputData(tasks, period, 20, calendar);
        for (const ThroughputDataPoint &point : points) {
            QCOMPARE(point.completedCount, countByDefinition(tasks, point.date, period, calendar));
        }
        const auto stacked = throughput::generateStackedThroughputData(tasks, period, 20, calendar);
        throughput::Tasks omniFocus;
        std::copy_if(
            tasks.begin(), tasks.end(), std::back_inserter(omniFocus),
            [](const CompletedTask &task) { return task.source == CompletedTask::Source::OmniFocus; });
        QCOMPARE(stacked.size(), points.size());
        for (const StackedThroughputDataPoint &point : stacked) {
            QCOMPARE(point.omniFocusCount, countByDefinition(omniFocus, point.date, period, calendar));
        }
    }
}

void TestAnalytics::theWindowIsTwentyDaysWhateverThePeriod()
{
    const LocalCalendar calendar = calendarAt("UTC", QDate(2026, 6, 21), QTime(10, 30));
    const auto count = [&](ThroughputPeriod period) {
        const auto points = throughput::generateThroughputData({}, period, 20, calendar);
        return points.size();
    };
    QCOMPARE(count(ThroughputPeriod::Hourly), 481u);
    QCOMPARE(count(ThroughputPeriod::Daily), 21u);
    QCOMPARE(count(ThroughputPeriod::Weekly), 3u);
    const auto days = throughput::generateThroughputData({}, ThroughputPeriod::Daily, 20, calendar);
    QCOMPARE(days.back().date, calendar.now);
    QCOMPARE(days.front().label(calendar), QStringLiteral("Jun 1"));
}

void TestAnalytics::thePresentHasAPointWhateverItsFraction()
{
    LocalCalendar calendar = calendarAt("Europe/Berlin", QDate(2026, 11, 3), QTime(10, 30));
    for (const double fraction : {0.0004, 0.0006, 0.123456789, 0.99999}) {
        calendar.now = calendarAt("Europe/Berlin", QDate(2026, 11, 3), QTime(10, 30)).now + fraction;
        QCOMPARE(throughput::timePeriods(calendar, ThroughputPeriod::Daily, 20).size(), 21u);
        QCOMPARE(throughput::timePeriods(calendar, ThroughputPeriod::Hourly, 20).size(), 482u);
    }
}

void TestAnalytics::theSumMayMissWeeksBetweenThePoints()
{
    // Twenty days before this Sunday is a Monday: the last weekly point is six days ago, in last week by the
    // US reckoning.
    const LocalCalendar calendar = calendarAt("UTC", QDate(2026, 6, 21), QTime(10, 0));
    const throughput::Tasks tasks{{calendar.now - 60.0, CompletedTask::Source::Other}};
    const auto points = throughput::generateThroughputData(tasks, ThroughputPeriod::Weekly, 20, calendar);
    const ThroughputMetrics metrics = throughput::calculateMetrics(points, tasks, calendar);
    QCOMPARE(metrics.totalCompleted, 0);
    QCOMPARE(metrics.mostProductiveDay->first, QStringLiteral("Sunday"));
}

void TestAnalytics::metricsFollowTheCounts_data()
{
    QTest::addColumn<std::vector<int>>("counts");
    QTest::addColumn<double>("average");
    QTest::addColumn<int>("peak");
    QTest::addColumn<ThroughputTrend>("trend");
    QTest::addColumn<double>("consistency");
    using Counts = std::vector<int>;
    QTest::newRow("nothing") << Counts{} << 0.0 << 0 << ThroughputTrend::Stable << 0.0;
    QTest::newRow("one point") << Counts{3} << 3.0 << 3 << ThroughputTrend::Stable << 0.0;
    QTest::newRow("rising") << Counts{0, 1} << 0.5 << 1 << ThroughputTrend::Increasing << 0.0;
    QTest::newRow("falling") << Counts{4, 2, 0} << 2.0 << 4 << ThroughputTrend::Decreasing
                             << (1.0 - std::sqrt(8.0 / 3.0) / 2.0) * 100.0;
    QTest::newRow("all alike") << Counts{2, 2, 2} << 2.0 << 2 << ThroughputTrend::Stable << 100.0;
    QTest::newRow("deviation as large as the mean")
        << Counts{0, 2} << 1.0 << 2 << ThroughputTrend::Increasing << 0.0;
}

void TestAnalytics::metricsFollowTheCounts()
{
    QFETCH(std::vector<int>, counts);
    const LocalCalendar calendar = calendarAt("UTC", QDate(2026, 6, 21), QTime(10, 0));
    const ThroughputMetrics metrics = throughput::calculateMetrics(pointsWithCounts(counts), {}, calendar);
    QTEST(metrics.averageThroughput, "average");
    QTEST(metrics.peakThroughput, "peak");
    QTEST(metrics.trend, "trend");
    QTEST(metrics.consistencyScore, "consistency");
    QVERIFY(!metrics.mostProductiveDay);
}

void TestAnalytics::theBestWeekdayOfATieIsTheFirstOfTheWeek()
{
    const auto bestDay = [](const QLocale &locale) {
        const LocalCalendar calendar = calendarAt("UTC", QDate(2026, 6, 24), QTime(10, 0), locale);
        const throughput::Tasks tasks{{calendar.now - SecondsPerDay * 2, CompletedTask::Source::Other},
                                      {calendar.now - SecondsPerDay * 3, CompletedTask::Source::Other}};
        return throughput::calculateMetrics(pointsWithCounts({1}), tasks, calendar).mostProductiveDay->first;
    };
    QCOMPARE(bestDay(QLocale(QLocale::English, QLocale::UnitedStates)), QStringLiteral("Sunday"));
    QCOMPARE(bestDay(QLocale(QLocale::English, QLocale::UnitedKingdom)), QStringLiteral("Monday"));
}

void TestAnalytics::aTaskFallsIntoItsAgeBucket_data()
{
    QTest::addColumn<double>("days");
    QTest::addColumn<QString>("bucket");
    QTest::addColumn<double>("factor");
    const auto row = [](double days, const char *bucket, double factor) {
        QTest::addRow("%f days", days) << days << QString::fromLatin1(bucket) << factor;
    };
    row(-2.5, "0-1 days", 1.0);
    row(1439.0 / 1440.0, "0-1 days", 1.0);
    row(1.0, "1-3 days", 1.1);
    row(10.0, "1-2 weeks", 1.5);
    row(27.9, "2-4 weeks", 1.7);
    row(28.0, "1+ month", 2.2);
}

void TestAnalytics::aTaskFallsIntoItsAgeBucket()
{
    QFETCH(double, days);
    const AgeBucket bucket = taskage::bucketForAge(days * SecondsPerDay);
    QTEST(label(bucket), "bucket");
    QTEST(taskage::scalingFactorFor(bucket), "factor");
}

void TestAnalytics::theHistogramHasAllBucketsOrNone()
{
    QVERIFY(taskage::generateAgeHistogramData({}).empty());

    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const std::vector<AgedTask> tasks{{QStringLiteral("a"), 0.0},
                                      {QStringLiteral("b"), 2 * SecondsPerDay},
                                      {QStringLiteral("c"), 40 * SecondsPerDay}};
    const auto points = taskage::generateAgeHistogramData(tasks);
    QCOMPARE(points.size(), 6u);
    QCOMPARE(points[0].formattedPercentage(english), QStringLiteral("33.3%"));
    QCOMPARE(points[2].formattedPercentage(english), QStringLiteral("0%"));
    QCOMPARE(points[5].totalTasks, 3);
    QCOMPARE(taskage::categorizeTasksByAge(tasks)[1], std::vector<QString>{QStringLiteral("b")});
}

QTEST_GUILESS_MAIN(TestAnalytics)
#include "test_analytics.moc"
