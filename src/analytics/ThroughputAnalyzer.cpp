#include "analytics/ThroughputAnalyzer.h"

#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

constexpr std::array<QStringView, 3> PeriodNames{u"hourly", u"daily", u"weekly"};
constexpr int DaysPerWeek = 7;
constexpr qint64 MillisecondsPerHour = 3600000;
constexpr qint64 MillisecondsPerDay = 24 * MillisecondsPerHour;
constexpr qint64 MillisecondsPerWeek = DaysPerWeek * MillisecondsPerDay;

QString pointLabel(Date date, ThroughputPeriod period, const LocalCalendar &calendar)
{
    const QString format =
        period == ThroughputPeriod::Hourly ? QStringLiteral("HH:mm") : QStringLiteral("MMM d");
    return calendar.locale.toString(calendar.dateTime(date), format);
}

/** How many tasks of each kind were finished in one unit of local time. */
struct UnitCount
{
    int all = 0;
    int omniFocus = 0;
    int reminders = 0;
};

/**
 * Counts per hour, day or week: one pass over the tasks, whatever the number of points. Tasks outside the
 * units of the points are passed over.
 */
class UnitCounts
{
public:
    UnitCounts(const throughput::Tasks &tasks, const std::vector<Date> &points, ThroughputPeriod period,
               const LocalCalendar &calendar)
        : m_units(calendar, points.front() - MarginSeconds, points.back() + MarginSeconds),
          m_period(period),
          m_first(unitOf(points.front())),
          m_counts(static_cast<std::size_t>(unitOf(points.back()) - m_first + 1))
    {
        const Date begin = points.front() - MarginSeconds;
        const Date end = points.back() + MarginSeconds;
        for (const CompletedTask &task : tasks) {
            if (task.completionDate && *task.completionDate >= begin && *task.completionDate <= end) {
                count(task);
            }
        }
    }

    const UnitCount &at(Date point) const
    {
        return m_counts.at(static_cast<std::size_t>(unitOf(point) - m_first));
    }

private:
    /** A task of the first or last unit lies at most this far from its point. */
    static constexpr double MarginSeconds = 9 * SecondsPerDay;

    qint64 unitOf(Date date) const
    {
        switch (m_period) {
        case ThroughputPeriod::Hourly:
            return m_units.hour(date);
        case ThroughputPeriod::Daily:
            return m_units.day(date);
        case ThroughputPeriod::Weekly:
            return m_units.week(date);
        }
        Q_UNREACHABLE();
    }

    void count(const CompletedTask &task)
    {
        const qint64 index = unitOf(*task.completionDate) - m_first;
        if (index < 0 || index >= static_cast<qint64>(m_counts.size())) {
            return;
        }
        UnitCount &unit = m_counts[static_cast<std::size_t>(index)];
        ++unit.all;
        unit.omniFocus += task.source == CompletedTask::Source::OmniFocus ? 1 : 0;
        unit.reminders += task.source == CompletedTask::Source::Reminders ? 1 : 0;
    }

    LocalUnits m_units;
    ThroughputPeriod m_period;
    qint64 m_first;
    std::vector<UnitCount> m_counts;
};

/** The least-squares slope of the counts against their positions, as a word. */
ThroughputTrend calculateTrend(const std::vector<ThroughputDataPoint> &dataPoints)
{
    constexpr double noticeableSlope = 0.1;
    if (dataPoints.size() < 2) {
        return ThroughputTrend::Stable;
    }
    const auto n = static_cast<double>(dataPoints.size());
    double sumX = 0.0;
    double sumY = 0.0;
    double sumXY = 0.0;
    double sumXX = 0.0;
    for (std::size_t i = 0; i < dataPoints.size(); ++i) {
        const auto x = static_cast<double>(i);
        const double y = dataPoints[i].completedCount;
        sumX += x;
        sumY += y;
        sumXY += x * y;
        sumXX += x * x;
    }
    const double slope = (n * sumXY - sumX * sumY) / (n * sumXX - sumX * sumX);
    if (slope > noticeableSlope) return ThroughputTrend::Increasing;
    if (slope < -noticeableSlope) return ThroughputTrend::Decreasing;
    return ThroughputTrend::Stable;
}

/** 100 less the standard deviation (of the population) in percent of the average, from 0 to 100. */
double calculateConsistencyScore(const std::vector<ThroughputDataPoint> &dataPoints, double average)
{
    if (dataPoints.size() < 2 || !(average > 0.0)) {
        return 0.0;
    }
    double squares = 0.0;
    for (const ThroughputDataPoint &point : dataPoints) {
        const double deviation = point.completedCount - average;
        squares += deviation * deviation;
    }
    const double variance = squares / static_cast<double>(dataPoints.size());
    return std::clamp((1.0 - std::sqrt(variance) / average) * 100.0, 0.0, 100.0);
}

/** Ties go to the weekday that comes first in the locale's week. */
std::optional<std::pair<QString, int>> findMostProductiveDay(const throughput::Tasks &tasks,
                                                             const LocalCalendar &calendar)
{
    const auto earlier = [](const CompletedTask &a, const CompletedTask &b) {
        return *a.completionDate < *b.completionDate;
    };
    throughput::Tasks dated;
    std::copy_if(tasks.begin(), tasks.end(), std::back_inserter(dated),
                 [](const CompletedTask &task) { return task.completionDate.has_value(); });
    if (dated.empty()) {
        return std::nullopt;
    }
    const auto [first, last] = std::minmax_element(dated.begin(), dated.end(), earlier);
    const LocalUnits units(calendar, *first->completionDate, *last->completionDate);
    const int firstWeekday = calendar.locale.firstDayOfWeek();
    std::array<int, DaysPerWeek> counts{};
    for (const CompletedTask &task : dated) {
        const int place = (units.weekday(*task.completionDate) - firstWeekday + DaysPerWeek) % DaysPerWeek;
        ++counts.at(static_cast<std::size_t>(place));
    }
    const auto best = std::max_element(counts.begin(), counts.end());
    const int weekday = (firstWeekday - 1 + static_cast<int>(best - counts.begin())) % DaysPerWeek + 1;
    return std::pair(calendar.locale.dayName(weekday, QLocale::LongFormat), *best);
}

} // namespace

QString rawValue(ThroughputPeriod period)
{
    return PeriodNames.at(static_cast<std::size_t>(period)).toString();
}

CompletedTask CompletedTask::from(const WorkItem &task)
{
    Source source = Source::Other;
    if (qobject_cast<const OmniFocusTask *>(&task)) source = Source::OmniFocus;
    if (qobject_cast<const ReminderWorkItem *>(&task)) source = Source::Reminders;
    return {task.completionDate(), source};
}

QString ThroughputDataPoint::label(const LocalCalendar &calendar) const
{
    return pointLabel(date, period, calendar);
}

QString StackedThroughputDataPoint::label(const LocalCalendar &calendar) const
{
    return pointLabel(date, period, calendar);
}

namespace throughput {

std::vector<Date> timePeriods(const LocalCalendar &calendar, ThroughputPeriod period, int lookbackDays)
{
    // Whole milliseconds, so that no rounding loses the last point: the present.
    const qint64 end = epochMilliseconds(calendar.now);
    const qint64 firstWallTime = calendar.wallTime(end) - lookbackDays * MillisecondsPerDay;
    std::vector<Date> dates;
    const auto append = [&dates](qint64 moment) {
        const Date date = Date::fromDateTime(QDateTime::fromMSecsSinceEpoch(moment, Qt::UTC));
        // A date that the local calendar skipped (Samoa, 30 December 2011) is the same moment as the next.
        if (dates.empty() || dates.back() < date) {
            dates.push_back(date);
        }
    };
    if (period == ThroughputPeriod::Hourly) {
        for (qint64 moment = calendar.momentAt(firstWallTime); moment <= end; moment += MillisecondsPerHour) {
            append(moment);
        }
        return dates;
    }
    const qint64 step = period == ThroughputPeriod::Daily ? MillisecondsPerDay : MillisecondsPerWeek;
    for (qint64 wallTime = firstWallTime; calendar.momentAt(wallTime) <= end; wallTime += step) {
        append(calendar.momentAt(wallTime));
    }
    return dates;
}

std::vector<ThroughputDataPoint> generateThroughputData(const Tasks &tasks, ThroughputPeriod period,
                                                        int lookbackDays, const LocalCalendar &calendar)
{
    const std::vector<Date> dates = timePeriods(calendar, period, lookbackDays);
    std::vector<ThroughputDataPoint> points;
    if (dates.empty()) {
        return points;
    }
    const UnitCounts counts(tasks, dates, period, calendar);
    points.reserve(dates.size());
    for (const Date date : dates) {
        points.push_back({date, counts.at(date).all, period});
    }
    return points;
}

std::vector<StackedThroughputDataPoint> generateStackedThroughputData(const Tasks &tasks,
                                                                      ThroughputPeriod period,
                                                                      int lookbackDays,
                                                                      const LocalCalendar &calendar)
{
    const std::vector<Date> dates = timePeriods(calendar, period, lookbackDays);
    std::vector<StackedThroughputDataPoint> points;
    if (dates.empty()) {
        return points;
    }
    const UnitCounts counts(tasks, dates, period, calendar);
    points.reserve(dates.size());
    for (const Date date : dates) {
        const UnitCount &unit = counts.at(date);
        points.push_back({date, period, unit.omniFocus, unit.reminders});
    }
    return points;
}

ThroughputMetrics calculateMetrics(const std::vector<ThroughputDataPoint> &dataPoints, const Tasks &tasks,
                                   const LocalCalendar &calendar)
{
    ThroughputMetrics metrics;
    if (dataPoints.empty()) {
        return metrics;
    }
    for (const ThroughputDataPoint &point : dataPoints) {
        metrics.totalCompleted += point.completedCount;
        metrics.peakThroughput = std::max(metrics.peakThroughput, point.completedCount);
    }
    metrics.averageThroughput =
        static_cast<double>(metrics.totalCompleted) / static_cast<double>(dataPoints.size());
    metrics.trend = calculateTrend(dataPoints);
    metrics.consistencyScore = calculateConsistencyScore(dataPoints, metrics.averageThroughput);
    metrics.mostProductiveDay = findMostProductiveDay(tasks, calendar);
    return metrics;
}

} // namespace throughput

} // namespace vantrel
