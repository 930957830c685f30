#include "board/DragDropManager.h"

#include "board/rules/Ordering.h"
#include "foundations/Log.h"

namespace vantrel {

void DragDropManager::setDraggedColumn(const std::optional<Column> &column)
{
    if (m_draggedColumn != column) {
        m_draggedColumn = column;
        Q_EMIT dragChanged();
    }
}

void DragDropManager::setDraggedSwimLane(const std::optional<SwimLane> &swimLane)
{
    if (m_draggedSwimLane != swimLane) {
        m_draggedSwimLane = swimLane;
        Q_EMIT dragChanged();
    }
}

std::optional<std::vector<Column>>
DragDropManager::moveColumn(int from, int to, const std::vector<Column> &columns,
                            const ColumnOrderTest &validateColumnOrder) const
{
    if (!canMoveElement(columns, from, to)) {
        log::warning(QStringLiteral("Invalid source or destination index"), LogCategory::DragDrop);
        return std::nullopt;
    }
    std::vector<Column> moved = columns;
    moveElement(moved, from, to);
    std::vector<ColumnType> types;
    for (const Column &column : moved) {
        types.push_back(column.type);
    }
    if (!validateColumnOrder(types)) {
        log::warning(QStringLiteral("Cannot move column - would violate type ordering constraints"),
                     LogCategory::DragDrop);
        return std::nullopt;
    }
    return moved;
}

} // namespace vantrel
