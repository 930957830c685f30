#include "viewmodels/SwimLaneListModel.h"

#include "board/rules/WIPRules.h"
#include "foundations/Color.h"
#include "foundations/Text.h"

namespace vantrel {

namespace {

constexpr QStringView DefaultIcon = u"rectangle.3.group";

QString workloadColor(const QString &percentage)
{
    const int value = percentage.chopped(1).toInt();
    if (value > 74) {
        return QStringLiteral("#EF4444");
    }
    if (value >= 50) {
        return QStringLiteral("#F59E0B");
    }
    return value >= 25 ? QStringLiteral("#22C55E") : QString();
}

} // namespace

SwimLaneContent swimLaneContent(const SwimLane &lane, const SwimLaneState &state)
{
    SwimLaneContent content;
    content.id = lane.id.text();
    content.name = lane.name;
    content.icon = lane.icon.value_or(DefaultIcon.toString());
    if (lane.colorHex) content.color = hexText(colorFromHex(*lane.colorHex));
    content.isExpanded = lane.isExpanded;
    content.isIsolated = state.isIsolated;
    content.height = state.height;
    content.toggleLabel = (lane.isExpanded ? SwimLaneListModel::tr("Collapse swimlane %1")
                                           : SwimLaneListModel::tr("Expand swimlane %1"))
                              .arg(lane.name);
    content.workload = QString::number(state.incompleteCount) + u" · " + state.percentage;
    content.workloadColor = workloadColor(state.percentage);
    content.workloadHelp = WIPTexts::swimLaneHelp(state.incompleteCount, state.percentage);
    content.heightText = SwimLaneListModel::tr("Current height: %1 pixels").arg(qRound(lane.height));
    return content;
}

int SwimLaneListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lanes.size());
}

QVariant SwimLaneListModel::data(const QModelIndex &index, int role) const
{
    const bool isKnown = checkIndex(index, CheckIndexOption::IndexIsValid) && role == SwimLaneRole;
    return isKnown ? QVariant::fromValue(m_lanes[static_cast<size_t>(index.row())]) : QVariant();
}

QHash<int, QByteArray> SwimLaneListModel::roleNames() const
{
    return {{SwimLaneRole, "lane"}};
}

void SwimLaneListModel::setSwimLanes(const std::vector<SwimLaneContent> &lanes)
{
    updateRows(m_lanes, lanes, [](const SwimLaneContent &lane) { return lane; });
}

} // namespace vantrel
