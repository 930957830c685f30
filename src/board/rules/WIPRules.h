#pragma once

#include "foundations/Color.h"

#include <QCoreApplication>
#include <QString>

namespace vantrel {

/** The figures of the work-in-progress gauge. */
struct WIPStatus
{
    int count = 0;
    bool isWarning = false;
    bool isOverLimit = false;
    friend bool operator==(const WIPStatus &, const WIPStatus &) = default;
};

/** The user's two marks on the gauge; `warn` never exceeds `max`. */
struct WIPThresholds
{
    int warn = 20;
    int max = 30;
    friend bool operator==(const WIPThresholds &, const WIPThresholds &) = default;
};

/** The warning begins at its threshold, the overload one past the maximum. */
WIPStatus wipStatus(int count, WIPThresholds thresholds);

/** True if one of the two states of wipStatus() differs between the counts. */
bool isWIPThresholdCrossed(int previousCount, int count, WIPThresholds thresholds);

/** `part` of `whole` in percent, cut toward zero; 0 for a `whole` under 1. */
int truncatedPercentage(int part, int whole);

/** What the gauge says of a count. */
enum class WIPGaugeStatus { Healthy, Approaching, AtMaximum, Overloaded };

WIPGaugeStatus wipGaugeStatus(int count, WIPThresholds thresholds);

/** Green, amber from the warning, red from the maximum on: unlike the status, red at the maximum already. */
Color wipGaugeColor(int count, WIPThresholds thresholds);

/** How much of the board's incomplete work one swimlane holds. */
enum class WorkloadConcentration { None, Low, Balanced, ModerateToHigh, High };

WorkloadConcentration workloadConcentration(int percentage);

/** The words of the gauge and of the swimlanes' workload. */
class WIPTexts
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::WIPTexts)
public:
    static QString statusEmoji(WIPGaugeStatus status);
    static QString statusDescription(WIPGaugeStatus status);
    /** "12/30 WIP" */
    static QString gaugeText(int count, WIPThresholds thresholds);
    static QString gaugeAccessibleName();
    static QString gaugeAccessibleValue(int count, WIPThresholds thresholds);
    static QString gaugeAccessibleHint(int count, WIPThresholds thresholds);
    /** `percentage` is the text shown beside the count, "37%". */
    static QString swimLaneHelp(int count, const QString &percentage);

private:
    static QString sentence(WorkloadConcentration concentration);
};

} // namespace vantrel
