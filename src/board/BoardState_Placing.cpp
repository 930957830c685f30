#include "board/BoardState.h"

#include "foundations/Log.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "sources/plaintext/PlainTextTaskManager.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {
constexpr LogCategory Category = LogCategory::TaskMovement;
}

void BoardState::addTask(const WorkItemPtr &task, ColumnId toColumn, SwimLaneId inSwimLane,
                         std::optional<int> atPosition)
{
    if (m_deletedTaskIds.contains(task->id())) {
        return;
    }
    m_placements.putTask(task);
    placeNewcomer(task->id(), {inSwimLane, toColumn}, atPosition);
}

void BoardState::addTaskToColumn(const WorkItemPtr &task, ColumnId columnId,
                                 std::optional<SwimLaneId> swimLaneId, std::optional<int> position)
{
    log::info(u"addTaskToColumn called - delegating to single source of truth method"_s, Category);
    const SwimLaneId target = existingSwimLane(swimLaneId);
    placeInColumn(task, columnId, target, position);
    const Column *column = m_columnManager.column(columnId);
    if (!column || !column->isCompleted()) {
        updateTaskPositions(columnId, target);
    }
}

void BoardState::removeTaskFromColumn(const QString &taskId, ColumnId columnId,
                                      std::optional<SwimLaneId> swimLaneId)
{
    log::info(u"removeTaskFromColumn called - using single source of truth method"_s, Category);
    const TaskPosition *place = m_placements.find(taskId);
    if (place && place->columnId == columnId && (!swimLaneId || place->swimLaneId == *swimLaneId)) {
        removePlacement(taskId);
    }
    invalidateDerivedCollections();
}

void BoardState::updateTaskInColumn(const WorkItemPtr &task, ColumnId, SwimLaneId)
{
    if (m_deletedTaskIds.contains(task->id())) {
        return;
    }
    log::info(u"Updating task in column using single source of truth: "_s + task->id(), Category);
    m_placements.putTask(task);
    touch(task->id());
}

void BoardState::updateTaskPositions(ColumnId columnId, std::optional<SwimLaneId> swimLaneId)
{
    log::info(u"Updating task positions for column "_s + columnId.text(), Category);
    if (swimLaneId) {
        reindexTaskPositions(columnId, *swimLaneId);
        return;
    }
    PersistenceOperation operation;
    for (const SwimLane &swimLane : m_swimLaneManager.swimLanes()) {
        appendNumbered({swimLane.id, columnId}, operation);
    }
    if (!operation.taskPositionUpdates.empty()) {
        log::info(u"Batch updating %1 task positions across all swimlanes"_s.arg(
                      operation.taskPositionUpdates.size()),
                  Category);
        m_persistenceQueue.enqueue(std::move(operation));
    }
}

void BoardState::reindexTaskPositions(ColumnId columnId, SwimLaneId swimLaneId)
{
    const Column *column = m_columnManager.column(columnId);
    const SwimLane *swimLane = m_swimLaneManager.swimLane(swimLaneId);
    if (!column || !swimLane) {
        log::error(u"Cannot reindex positions - column or swimlane not found"_s, Category);
        return;
    }
    PersistenceOperation operation;
    appendNumbered({swimLaneId, columnId}, operation);
    const QString where = u"in column '%1' and swimlane '%2'"_s.arg(column->name, swimLane->name);
    const QString count = QString::number(operation.taskPositionUpdates.size());
    log::info(u"REINDEXING: Setting sequential positions for "_s + count + u" tasks " + where, Category);
    if (!operation.taskPositionUpdates.empty()) {
        log::info(u"Batch updating "_s + count + u" task positions " + where, Category);
        m_persistenceQueue.enqueue(std::move(operation));
    }
    log::info(u"Successfully reindexed "_s + count + u" task positions " + where, Category);
}

/** The store gets the cell as it is shown, numbered from 0, whatever the numbers in memory. */
void BoardState::appendNumbered(CellId cell, PersistenceOperation &operation) const
{
    std::vector<TaskPosition> places = m_placements.placesIn(cell);
    for (int number = 0; TaskPosition & place : places) {
        place.swimLaneId = cell.swimLane;
        place.position = number++;
        operation.taskPositionUpdates.push_back(std::move(place));
    }
}

void BoardState::placeNewcomer(const QString &taskId, CellId cell, std::optional<int> position)
{
    const int size = static_cast<int>(m_placements.size(cell));
    if (position) {
        log::info(u"Using specified target position: %1"_s.arg(*position), Category);
    } else {
        log::info(u"Using end position: %1"_s.arg(size), Category);
    }
    densify(cell);
    const int number = position.value_or(size);
    setPlacement({taskId, cell.column, cell.swimLane, number},
                 number < size ? Tie::BeforeEquals : Tie::AfterEquals);
}

void BoardState::placeInColumn(const WorkItemPtr &task, ColumnId columnId, SwimLaneId swimLaneId,
                               std::optional<int> position)
{
    removePlacement(task->id());
    addTask(task, columnId, swimLaneId, position);
}

/** What the user now sees as an order of the cell is not to be undone by an organisation either. */
void BoardState::densify(CellId cell)
{
    for (const QString &id : m_placements.densify(cell)) {
        if (m_isOrganizing) {
            m_touchedTaskIds.insert(id);
        }
    }
}

SwimLaneId BoardState::existingSwimLane(std::optional<SwimLaneId> swimLaneId) const
{
    if (swimLaneId && m_swimLaneManager.swimLane(*swimLaneId)) {
        return *swimLaneId;
    }
    if (swimLaneId) {
        log::warning(u"Specified swimlane %1 not found, using default"_s.arg(swimLaneId->text()), Category);
    }
    return m_swimLaneManager.defaultSwimLane().id;
}

void BoardState::registerPlainTextTask(const WorkItemPtr &task, ColumnId columnId, SwimLaneId swimLaneId,
                                       int position)
{
    if (m_deletedTaskIds.contains(task->id())) {
        return;
    }
    log::debug(u"Registering plain text task: %1 - %2"_s.arg(task->id(), task->name()));
    const CellId cell{swimLaneId, columnId};
    const bool isAtEnd = position >= m_placements.size(cell);
    placeInColumn(task, columnId, swimLaneId, position);
    log::debug(u"Added plain text task to single source of truth: %1 in column %2"_s.arg(task->id(),
                                                                                         columnId.text()));
    if (isAtEnd) {
        m_services.persistence.saveTaskPosition(task->id(), columnId, position, swimLaneId);
    } else {
        // Whoever stood there has moved on by one, in the store too.
        updateTaskPositions(columnId, swimLaneId);
    }
    log::debug(u"Saved task position to persistence"_s);
}

void BoardState::removeTask(const QString &taskId)
{
    forgetTask(taskId);
    m_services.persistence.deleteTaskPosition(taskId);
}

bool BoardState::removePlainTextTasks(const QStringList &taskIds)
{
    auto *plainText = plainTextManager();
    if (!plainText || taskIds.isEmpty()) {
        return taskIds.isEmpty();
    }
    for (const QString &id : taskIds) {
        forgetTask(id);
    }
    return noteRemoval(plainText->removePlainTextTasks(taskIds));
}

bool BoardState::removeAllPlainTextTasks()
{
    QStringList ids;
    for (const WorkItemPtr &task : m_placements.tasks()) {
        if (sourceOf(task->id()) == TaskSource::PlainText) {
            ids.append(task->id());
        }
    }
    if (ids.isEmpty()) {
        log::info(u"No plain text tasks to remove"_s);
        return true;
    }
    log::info(u"Found %1 plain text tasks to remove"_s.arg(ids.size()));
    auto *plainText = plainTextManager();
    if (!plainText) {
        return noteRemoval(false);
    }
    for (const QString &id : ids) {
        forgetTask(id);
    }
    return noteRemoval(plainText->removeAllPlainTextTasks());
}

bool BoardState::noteRemoval(bool isRemoved)
{
    if (isRemoved) {
        log::info(u"Successfully removed all plain text tasks from persistence"_s);
    } else {
        log::error(u"Failed to remove all plain text tasks from persistence"_s);
    }
    invalidateDerivedCollections();
    return isRemoved;
}

void BoardState::forgetTask(const QString &taskId)
{
    if (sourceOf(taskId) == TaskSource::PlainText) {
        m_deletedTaskIds.insert(taskId);
    }
    m_placements.removeTask(taskId);
    removePlacement(taskId);
    m_services.repository.removeTaskFromCache(taskId);
    m_selectionManager.removeFromSelection(taskId);
    if (m_taskOperationStatus.remove(taskId)) {
        Q_EMIT taskOperationStatusChanged(taskId);
    }
    if (m_priorityManager.priorityAssignments().contains(taskId)) {
        m_priorityManager.removePriority(taskId);
    }
    clearFocusOfVanishedTask();
}

/** nullptr where another class stands in for the source. */
PlainTextTaskManager *BoardState::plainTextManager() const
{
    return dynamic_cast<PlainTextTaskManager *>(&m_services.managers.manager(TaskManagerType::PlainText));
}

} // namespace vantrel
