#pragma once

#include "board/BoardState.h"
#include "viewmodels/DropPlan.h"

#include <optional>

namespace vantrel {

/** What a drag offers, in each of the formats in which a card travels; empty where it has not the format. */
struct DropOffer
{
    QByteArray json;
    QByteArray portableJson;
    QString text;
};

/**
 * Reads what is dragged over a cell, tells where it would land, and carries the drop out. Only tasks that the
 * board knows can be dropped: any other text is refused. Owned by BoardViewModel; GUI thread.
 */
class BoardDrops
{
public:
    /** Height of the column headers at zoom 1: a column begins with its header. */
    static constexpr double ColumnHeaderHeight = 48.0;

    explicit BoardDrops(BoardState &board) : m_board(board) {}

    /** The dragged task's id; nothing if `offer` is no card of this board. */
    std::optional<QString> taskId(const DropOffer &offer) const;
    /** The tasks that a drag of this one takes along, in board order: the selection, if it is part of it. */
    QStringList draggedTaskIds(const QString &taskId) const;
    /** Where a drop at `y`, in points at zoom 1 from the top of the cell, would land. */
    DropPlan plan(const QString &taskId, CellId cell, double y) const;
    void drop(const QString &taskId, CellId cell, double y);

private:
    void moveTask(const WorkItemPtr &item, const Column &to, SwimLaneId swimLaneId, int targetPosition);
    WorkItemPtr resolve(const QString &id, CellId cell) const;
    WorkItemPtr findRealTask(const WorkItemPtr &item) const;

    BoardState &m_board;
};

} // namespace vantrel
