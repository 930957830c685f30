#include "board/rules/WIPRules.h"

namespace vantrel {

namespace {
constexpr QStringView HealthyGreen = u"22c55e";
constexpr QStringView WarningAmber = u"f59e0b";
constexpr QStringView MaximumRed = u"ef4444";
} // namespace

WIPStatus wipStatus(int count, WIPThresholds thresholds)
{
    return {count, count >= thresholds.warn, count > thresholds.max};
}

bool isWIPThresholdCrossed(int previousCount, int count, WIPThresholds thresholds)
{
    const WIPStatus before = wipStatus(previousCount, thresholds);
    const WIPStatus now = wipStatus(count, thresholds);
    return before.isWarning != now.isWarning || before.isOverLimit != now.isOverLimit;
}

int truncatedPercentage(int part, int whole)
{
    return whole < 1 ? 0 : static_cast<int>(qint64(part) * 100 / whole);
}

WIPGaugeStatus wipGaugeStatus(int count, WIPThresholds thresholds)
{
    if (count > thresholds.max) return WIPGaugeStatus::Overloaded;
    if (count == thresholds.max) return WIPGaugeStatus::AtMaximum;
    return count < thresholds.warn ? WIPGaugeStatus::Healthy : WIPGaugeStatus::Approaching;
}

Color wipGaugeColor(int count, WIPThresholds thresholds)
{
    if (thresholds.max < 1 || count < thresholds.warn) return colorFromHex(HealthyGreen);
    return colorFromHex(count >= thresholds.max ? MaximumRed : WarningAmber);
}

WorkloadConcentration workloadConcentration(int percentage)
{
    if (percentage > 74) return WorkloadConcentration::High;
    if (percentage >= 50) return WorkloadConcentration::ModerateToHigh;
    if (percentage >= 25) return WorkloadConcentration::Balanced;
    return percentage > 0 ? WorkloadConcentration::Low : WorkloadConcentration::None;
}

QString WIPTexts::statusEmoji(WIPGaugeStatus status)
{
    switch (status) {
    case WIPGaugeStatus::Healthy:
        return QStringLiteral("✅");
    case WIPGaugeStatus::Approaching:
        return QStringLiteral("⚡️");
    case WIPGaugeStatus::AtMaximum:
        return QStringLiteral("⚠️");
    case WIPGaugeStatus::Overloaded:
        return QStringLiteral("🔥");
    }
    Q_UNREACHABLE();
}

QString WIPTexts::statusDescription(WIPGaugeStatus status)
{
    switch (status) {
    case WIPGaugeStatus::Healthy:
        return tr("Healthy level");
    case WIPGaugeStatus::Approaching:
        return tr("Approaching capacity");
    case WIPGaugeStatus::AtMaximum:
        return tr("At maximum capacity");
    case WIPGaugeStatus::Overloaded:
        return tr("Overloaded");
    }
    Q_UNREACHABLE();
}

QString WIPTexts::gaugeText(int count, WIPThresholds thresholds)
{
    return tr("%1/%2 WIP").arg(count).arg(thresholds.max);
}

QString WIPTexts::gaugeAccessibleName()
{
    return tr("Work in progress gauge");
}

QString WIPTexts::gaugeAccessibleValue(int count, WIPThresholds thresholds)
{
    return tr("%1 work items in progress, which is %2% of capacity. Status: %3")
        .arg(count)
        .arg(truncatedPercentage(count, thresholds.max))
        .arg(statusDescription(wipGaugeStatus(count, thresholds)));
}

QString WIPTexts::gaugeAccessibleHint(int count, WIPThresholds thresholds)
{
    const WIPStatus status = wipStatus(count, thresholds);
    if (status.isOverLimit) {
        return tr("Work in progress exceeds maximum threshold of %1. Consider completing some tasks before "
                  "starting new ones.")
            .arg(thresholds.max);
    }
    if (status.isWarning) {
        return tr("Work in progress approaching maximum threshold. Current limit is %1.").arg(thresholds.max);
    }
    return tr("Work in progress within acceptable range. Maximum threshold is %1.").arg(thresholds.max);
}

QString WIPTexts::sentence(WorkloadConcentration concentration)
{
    switch (concentration) {
    case WorkloadConcentration::High:
        return tr("This is a high concentration of work items and may need attention.");
    case WorkloadConcentration::ModerateToHigh:
        return tr("This is a moderate-to-high concentration of work items.");
    case WorkloadConcentration::Balanced:
        return tr("This is a balanced concentration of work items.");
    case WorkloadConcentration::Low:
        return tr("This is a low concentration of work items.");
    case WorkloadConcentration::None:
        return {};
    }
    Q_UNREACHABLE();
}

QString WIPTexts::swimLaneHelp(int count, const QString &percentage)
{
    if (count == 0) {
        return tr("There are currently no incomplete work items in this swimlane.");
    }
    const int value = QStringView(percentage).chopped(percentage.endsWith(u'%') ? 1 : 0).toInt();
    const QString share =
        tr("This swimlane contains %1 incomplete work items, which is %2 of the total board workload.")
            .arg(count)
            .arg(percentage);
    const QString concentration = sentence(workloadConcentration(value));
    return concentration.isEmpty() ? share : share + u' ' + concentration;
}

} // namespace vantrel
