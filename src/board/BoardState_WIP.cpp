#include "board/BoardState.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

namespace vantrel {

int BoardState::calculateTotalWIP() const
{
    int count = 0;
    for (const Column &column : m_columnManager.columns()) {
        const bool counts = column.type == ColumnType::Active ||
                            (column.type == ColumnType::Queue && m_wipGaugeSettings.includeQueueColumns());
        count += counts ? calculateColumnTaskCount(column.id) : 0;
    }
    return count;
}

WIPStatus BoardState::getWIPStatus() const
{
    return wipStatus(calculateTotalWIP(), m_wipGaugeSettings.thresholds());
}

void BoardState::notifyWIPThresholdChanges(int previousWIPCount)
{
    const WIPStatus status = getWIPStatus();
    if (!isWIPThresholdCrossed(previousWIPCount, status.count, m_wipGaugeSettings.thresholds())) {
        return;
    }
    const auto word = [](bool value) {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    };
    log::info(u"WIP threshold crossed: count=" + QString::number(status.count) + u", warning=" +
              word(status.isWarning) + u", overLimit=" + word(status.isOverLimit));
    post(notifications::WIPThresholdChanged, {},
         {{QStringLiteral("wipCount"), status.count},
          {QStringLiteral("isWarning"), status.isWarning},
          {QStringLiteral("isOverLimit"), status.isOverLimit}});
}

int BoardState::calculateColumnTaskCount(ColumnId columnId) const
{
    int count = 0;
    for (const SwimLane &lane : m_swimLaneManager.swimLanes()) {
        count += m_placements.incompleteCount({lane.id, columnId});
    }
    return count;
}

int BoardState::calculateSwimLaneIncompleteWorkItems(SwimLaneId swimLaneId) const
{
    if (!m_swimLaneManager.swimLane(swimLaneId)) {
        log::debug(u"No tasks found for swimlane: " + swimLaneId.text());
        return 0;
    }
    int count = 0;
    for (const CellId &cell : m_placements.cells()) {
        if (cell.swimLane == swimLaneId) {
            count += m_placements.incompleteCount(cell);
        }
    }
    return count;
}

int BoardState::calculateTotalIncompleteWorkItems() const
{
    const int count = m_placements.incompleteTaskCount();
    if (count == 0 && taskCount() > 0) {
        log::debug(u"No incomplete tasks found, but there are " + QString::number(taskCount()) +
                   u" total tasks - might be a calculation issue");
    }
    return count;
}

QString BoardState::calculateSwimLaneIncompletePercentage(SwimLaneId swimLaneId) const
{
    const int percentage = truncatedPercentage(calculateSwimLaneIncompleteWorkItems(swimLaneId),
                                               calculateTotalIncompleteWorkItems());
    return QString::number(percentage) + u'%';
}

} // namespace vantrel
