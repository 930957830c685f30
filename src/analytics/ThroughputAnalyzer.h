#pragma once

#include "analytics/LocalCalendar.h"
#include "foundations/WorkItem.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace vantrel {

enum class ThroughputPeriod { Hourly, Daily, Weekly };

inline constexpr std::array AllThroughputPeriods{ThroughputPeriod::Hourly, ThroughputPeriod::Daily,
                                                 ThroughputPeriod::Weekly};

/** "hourly", "daily", "weekly". */
QString rawValue(ThroughputPeriod period);

/** What the analysis needs of a finished task; a record that may cross threads. */
struct CompletedTask
{
    enum class Source { OmniFocus, Reminders, Other };

    std::optional<Date> completionDate;
    Source source = Source::Other;

    static CompletedTask from(const WorkItem &task);
};

/** How many tasks were finished in one period. */
struct ThroughputDataPoint
{
    /** The present moment, a whole number of steps back: not the start of the period. */
    Date date;
    int completedCount = 0;
    ThroughputPeriod period = ThroughputPeriod::Daily;

    /** "HH:mm" for hours, "MMM d" for days and weeks. */
    QString label(const LocalCalendar &calendar) const;

    friend bool operator==(const ThroughputDataPoint &, const ThroughputDataPoint &) = default;
};

/** The same by source. A plain text task counts in neither field. */
struct StackedThroughputDataPoint
{
    Date date;
    ThroughputPeriod period = ThroughputPeriod::Daily;
    int omniFocusCount = 0;
    int remindersCount = 0;

    QString label(const LocalCalendar &calendar) const;

    friend bool operator==(const StackedThroughputDataPoint &, const StackedThroughputDataPoint &) = default;
};

enum class ThroughputTrend { Increasing, Decreasing, Stable };

struct ThroughputMetrics
{
    /** Mean of the counts over all periods, empty ones included. */
    double averageThroughput = 0.0;
    int peakThroughput = 0;
    int totalCompleted = 0;
    ThroughputTrend trend = ThroughputTrend::Stable;
    /** 0 to 100; 100 when all periods are alike. */
    double consistencyScore = 0.0;
    /** The weekday's name in the locale, and how many tasks were finished on it. */
    std::optional<std::pair<QString, int>> mostProductiveDay;
};

/**
 * Turns finished tasks into the series and figures of the Analyze screen. Pure: reads its arguments, keeps
 * nothing.
 *
 * The points step back from the present moment through `lookbackDays` calendar days; a task counts in every
 * point whose hour, date or week on the wall clock is its own.
 */
namespace throughput {

using Tasks = std::vector<CompletedTask>;

std::vector<Date> timePeriods(const LocalCalendar &calendar, ThroughputPeriod period, int lookbackDays);

std::vector<ThroughputDataPoint> generateThroughputData(const Tasks &tasks, ThroughputPeriod period,
                                                        int lookbackDays, const LocalCalendar &calendar);

std::vector<StackedThroughputDataPoint> generateStackedThroughputData(const Tasks &tasks,
                                                                      ThroughputPeriod period,
                                                                      int lookbackDays,
                                                                      const LocalCalendar &calendar);

ThroughputMetrics calculateMetrics(const std::vector<ThroughputDataPoint> &dataPoints, const Tasks &tasks,
                                   const LocalCalendar &calendar);

} // namespace throughput

} // namespace vantrel
