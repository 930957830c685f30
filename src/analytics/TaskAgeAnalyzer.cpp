#include "analytics/TaskAgeAnalyzer.h"

#include "foundations/Date.h"

#include <cmath>

namespace vantrel {

namespace {

struct BucketRule
{
    QStringView label;
    /** Whole days below which the bucket takes a task; the last bucket takes all. */
    qint64 belowDays;
    double scalingFactor;
    AgeZone zone;
};

constexpr std::array<BucketRule, 6> Rules{{
    {u"0-1 days", 1, 1.0, AgeZone::Fresh},
    {u"1-3 days", 3, 1.1, AgeZone::Fresh},
    {u"3-7 days", 7, 1.3, AgeZone::Aging},
    {u"1-2 weeks", 14, 1.5, AgeZone::Aging},
    {u"2-4 weeks", 28, 1.7, AgeZone::Stale},
    {u"1+ month", 0, 2.2, AgeZone::Ancient},
}};

constexpr std::array<QStringView, 4> ZoneRawValues{u"fresh", u"aging", u"stale", u"ancient"};
constexpr std::array<QStringView, 4> ZoneTexts{u"Fresh", u"Aging", u"Stale", u"Ancient"};

const BucketRule &ruleOf(AgeBucket bucket)
{
    return Rules.at(static_cast<std::size_t>(bucket));
}

} // namespace

std::optional<AgeBucket> ageBucketFromRawValue(int value)
{
    const bool isBucket = value >= 0 && value < static_cast<int>(Rules.size());
    return isBucket ? std::optional(static_cast<AgeBucket>(value)) : std::nullopt;
}

QString label(AgeBucket bucket)
{
    return ruleOf(bucket).label.toString();
}

QString rawValue(AgeZone zone)
{
    return ZoneRawValues.at(static_cast<std::size_t>(zone)).toString();
}

QString legendText(AgeZone zone)
{
    return ZoneTexts.at(static_cast<std::size_t>(zone)).toString();
}

AgeZone zoneOf(AgeBucket bucket)
{
    return ruleOf(bucket).zone;
}

QString AgeHistogramDataPoint::formattedPercentage(const QLocale &locale) const
{
    const double tenths = std::nearbyint(percentage * 1000.0);
    const bool isWhole = std::fmod(tenths, 10.0) == 0.0;
    return locale.toString(tenths / 10.0, 'f', isWhole ? 0 : 1) + locale.percent();
}

namespace taskage {

AgeBucket bucketFor(qint64 ageDays)
{
    // Adding up what is passed costs no branch, and it is asked for each task.
    int passed = 0;
    for (std::size_t i = 0; i + 1 < Rules.size(); ++i) {
        passed += ageDays >= Rules[i].belowDays ? 1 : 0;
    }
    return static_cast<AgeBucket>(passed);
}

AgeBucket bucketForAge(double ageInSeconds)
{
    return bucketFor(static_cast<qint64>(ageInSeconds / SecondsPerDay));
}

double scalingFactorFor(AgeBucket bucket)
{
    return ruleOf(bucket).scalingFactor;
}

TasksByAge categorizeTasksByAge(const std::vector<AgedTask> &tasks)
{
    TasksByAge byAge;
    for (const AgedTask &task : tasks) {
        byAge.at(static_cast<std::size_t>(bucketForAge(task.age))).push_back(task.id);
    }
    return byAge;
}

std::vector<AgeHistogramDataPoint> generateAgeHistogramData(const std::vector<AgedTask> &tasks)
{
    if (tasks.empty()) {
        return {};
    }
    std::array<int, AllAgeBuckets.size()> counts{};
    for (const AgedTask &task : tasks) {
        ++counts.at(static_cast<std::size_t>(bucketForAge(task.age)));
    }
    std::vector<AgeHistogramDataPoint> points;
    const int total = static_cast<int>(tasks.size());
    for (const AgeBucket bucket : AllAgeBuckets) {
        const int count = counts.at(static_cast<std::size_t>(bucket));
        points.push_back({bucket, count, static_cast<double>(count) / static_cast<double>(total), total});
    }
    return points;
}

} // namespace taskage

} // namespace vantrel
