#include "analytics/ThroughputAnalyzer.h"

#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"

#include <algorithm>
#include <cmath>
#include <numeric>

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

/** How many tasks of each source were finished in one unit of local time. */
using UnitCount = std::array<int, 3>;

int countOf(const UnitCount &unit, CompletedTask::Source source)
{
    return unit[static_cast<std::size_t>(source)];
}

/** One pass over the tasks, whatever the number of points. Tasks outside the points' units are passed over.
 */
template <qint64 (LocalUnits::*unitOf)(Date) const>
std::vector<UnitCount> countPerPoint(const throughput::Tasks &tasks, const std::vector<Date> &points,
                                     const LocalCalendar &calendar)
{
    // A task of the first or last unit lies at most this far from its point.
    constexpr double margin = 9 * SecondsPerDay;
    const Date begin = points.front() - margin;
    const Date end = points.back() + margin;
    const LocalUnits units(calendar, begin, end);
    const qint64 first = (units.*unitOf)(points.front());
    const auto indexOf = [&units, first](Date date) {
        return static_cast<std::size_t>((units.*unitOf)(date)-first);
    };
    std::vector<UnitCount> counts(indexOf(points.back()) + 1);
    for (const CompletedTask &task : tasks) {
        if (!task.completionDate || *task.completionDate < begin || *task.completionDate > end) {
            continue;
        }
        // What lies before the first unit has wrapped to a very large number.
        const std::size_t index = indexOf(*task.completionDate);
        if (index < counts.size()) {
            ++counts[index][static_cast<std::size_t>(task.source)];
        }
    }
    std::vector<UnitCount> perPoint;
    perPoint.reserve(points.size());
    for (const Date point : points) {
        perPoint.push_back(counts[indexOf(point)]);
    }
    return perPoint;
}

std::vector<UnitCount> countPerPoint(const throughput::Tasks &tasks, const std::vector<Date> &points,
                                     ThroughputPeriod period, const LocalCalendar &calendar)
{
    switch (period) {
    case ThroughputPeriod::Hourly:
        return countPerPoint<&LocalUnits::hour>(tasks, points, calendar);
    case ThroughputPeriod::Daily:
        return countPerPoint<&LocalUnits::day>(tasks, points, calendar);
    case ThroughputPeriod::Weekly:
        return countPerPoint<&LocalUnits::week>(tasks, points, calendar);
    }
    Q_UNREACHABLE();
}

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
    std::optional<Date> first;
    std::optional<Date> last;
    for (const CompletedTask &task : tasks) {
        if (const std::optional<Date> &date = task.completionDate) {
            first = std::min(*date, first.value_or(*date));
            last = std::max(*date, last.value_or(*date));
        }
    }
    if (!first) {
        return std::nullopt;
    }
    const LocalUnits units(calendar, *first, *last);
    std::array<int, DaysPerWeek> counts{};
    for (const CompletedTask &task : tasks) {
        if (task.completionDate) {
            ++counts[static_cast<std::size_t>(units.dayOfWeek(*task.completionDate))];
        }
    }
    const auto best = std::max_element(counts.begin(), counts.end());
    const int sinceMonday = calendar.locale.firstDayOfWeek() - 1 + static_cast<int>(best - counts.begin());
    return std::pair(calendar.locale.dayName(sinceMonday % DaysPerWeek + 1, QLocale::LongFormat), *best);
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
        const Date date = dateAtEpochMilliseconds(moment);
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
    const std::vector<UnitCount> counts = countPerPoint(tasks, dates, period, calendar);
    points.reserve(dates.size());
    for (std::size_t i = 0; i < dates.size(); ++i) {
        const UnitCount &unit = counts[i];
        points.push_back({dates[i], std::accumulate(unit.begin(), unit.end(), 0), period});
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
    const std::vector<UnitCount> counts = countPerPoint(tasks, dates, period, calendar);
    points.reserve(dates.size());
    for (std::size_t i = 0; i < dates.size(); ++i) {
        const UnitCount &unit = counts[i];
        points.push_back({dates[i], period, countOf(unit, CompletedTask::Source::OmniFocus),
                          countOf(unit, CompletedTask::Source::Reminders)});
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
