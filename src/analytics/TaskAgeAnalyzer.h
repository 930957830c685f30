#pragma once

#include <QLocale>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace vantrel {

/** How long a task has existed, in six steps. */
enum class AgeBucket { Day0To1 = 0, Day1To3 = 1, Day3To7 = 2, Week1To2 = 3, Week2To4 = 4, Month1Plus = 5 };

inline constexpr std::array AllAgeBuckets{AgeBucket::Day0To1,  AgeBucket::Day1To3,  AgeBucket::Day3To7,
                                          AgeBucket::Week1To2, AgeBucket::Week2To4, AgeBucket::Month1Plus};

/** Nothing outside 0 to 5. */
std::optional<AgeBucket> ageBucketFromRawValue(int value);
/** "0-1 days" to "1+ month". */
QString label(AgeBucket bucket);

/** The four colours of the legends. */
enum class AgeZone { Fresh, Aging, Stale, Ancient };

inline constexpr std::array AllAgeZones{AgeZone::Fresh, AgeZone::Aging, AgeZone::Stale, AgeZone::Ancient};

/** "fresh" to "ancient". */
QString rawValue(AgeZone zone);
/** "Fresh" to "Ancient". */
QString legendText(AgeZone zone);
AgeZone zoneOf(AgeBucket bucket);

/** What the analysis needs of an open task; a record that may cross threads. */
struct AgedTask
{
    QString id;
    /** Seconds. */
    double age = 0.0;
};

/** One bar of the age histogram. */
struct AgeHistogramDataPoint
{
    AgeBucket ageBucket = AgeBucket::Day0To1;
    int count = 0;
    /** 0 to 1. */
    double percentage = 0.0;
    int totalTasks = 0;

    /** Percent with at most one fraction digit, ties to even: "33.3%", "50%". */
    QString formattedPercentage(const QLocale &locale) const;

    friend bool operator==(const AgeHistogramDataPoint &, const AgeHistogramDataPoint &) = default;
};

/** Sorts open tasks by how long they have existed. Pure. */
namespace taskage {

/** The ids of each bucket's tasks, in input order. */
using TasksByAge = std::array<std::vector<QString>, AllAgeBuckets.size()>;

/** By whole days of 86400 seconds, cut toward zero; a negative age is the youngest. */
AgeBucket bucketForAge(double ageInSeconds);
AgeBucket bucketFor(qint64 ageDays);
/** 1.0 to 2.2: how much room a card of the age grid takes. */
double scalingFactorFor(AgeBucket bucket);

TasksByAge categorizeTasksByAge(const std::vector<AgedTask> &tasks);
/** Six points for any tasks at all, none for no tasks. */
std::vector<AgeHistogramDataPoint> generateAgeHistogramData(const std::vector<AgedTask> &tasks);

} // namespace taskage

} // namespace vantrel
