#include "viewmodels/BoardDrops.h"

#include "foundations/BaseWorkItem.h"
#include "foundations/Log.h"
#include "foundations/TaskTransferable.h"

#include <algorithm>

namespace vantrel {

namespace {

/** No task id is longer; what is, is some other text. */
constexpr qsizetype MaximumIdLength = 256;

void note(const QString &line)
{
    log::debug(line, LogCategory::DragDrop);
}

QStringList idsOf(const WorkItems &tasks)
{
    QStringList ids;
    for (const WorkItemPtr &task : tasks) {
        ids.append(task->id());
    }
    return ids;
}

} // namespace

std::optional<QString> BoardDrops::taskId(const DropOffer &offer) const
{
    std::optional<TaskTransferable> card = TaskTransferable::fromJson(offer.json);
    if (!card) card = TaskTransferable::fromJson(offer.portableJson);
    if (!card) card = TaskTransferable::fromText(offer.text.toUtf8());
    if (card->id.isEmpty() || card->id.size() > MaximumIdLength) {
        return std::nullopt;
    }
    return card->id;
}

QStringList BoardDrops::draggedTaskIds(const QString &taskId) const
{
    const QStringList selected = m_board.selectionManager().selectedTaskIds();
    if (selected.size() < 2 || !selected.contains(taskId)) {
        return {taskId};
    }
    return m_board.inBoardOrder(selected);
}

DropPlan BoardDrops::plan(const QString &taskId, CellId cell, double y) const
{
    const QStringList shown = idsOf(m_board.tasksForColumnAndSwimLane(cell.column, cell.swimLane));
    const Column *column = m_board.columnManager().column(cell.column);
    // What is completed lands on top, wherever it is dropped.
    const int position =
        column && column->isCompleted()
            ? 0
            : calculateTargetPosition(y + ColumnHeaderHeight, static_cast<int>(shown.size()));
    return planDrop(shown, idsOf(m_board.cell(cell.swimLane, cell.column)), draggedTaskIds(taskId), position);
}

void BoardDrops::drop(const QString &taskId, CellId cell, double y)
{
    note(u"Received drop with task ID: " + taskId);
    const Column *column = m_board.columnManager().column(cell.column);
    if (!column) {
        return;
    }
    const Column target = *column;
    const DropPlan landing = plan(taskId, cell, y);
    if (landing.moves.size() > 1) {
        note(u"Multi-selection drag detected with " + QString::number(landing.moves.size()) + u" tasks");
    }
    for (const auto &[id, position] : landing.moves) {
        moveTask(resolve(id, cell), target, cell.swimLane, position);
    }
}

WorkItemPtr BoardDrops::resolve(const QString &id, CellId cell) const
{
    if (m_board.taskPositions().indexInCell(id) >= 0 &&
        m_board.taskPositions().shownCell(*m_board.taskPositions().find(id)) == cell) {
        note(QStringLiteral("Found task in this column, performing drop"));
        return m_board.task(id);
    }
    if (const WorkItemPtr task = m_board.findTaskById(id)) {
        note(QStringLiteral("Found task in board state, performing drop"));
        return task;
    }
    note(QStringLiteral("Creating temporary task as fallback"));
    WorkItemFields fields;
    fields.id = id;
    fields.name = id;
    return std::make_shared<BaseWorkItem>(fields);
}

void BoardDrops::moveTask(const WorkItemPtr &item, const Column &to, SwimLaneId swimLaneId,
                          int targetPosition)
{
    if (const WorkItemPtr task = findRealTask(item)) {
        m_board.moveTask(task, to.id, swimLaneId, targetPosition);
    } else {
        note(u"Refused the drop of something that is no task: " + item->id());
    }
}

WorkItemPtr BoardDrops::findRealTask(const WorkItemPtr &item) const
{
    return m_board.findTaskById(item->id());
}

} // namespace vantrel
