#include "board/BoardState.h"

#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/SourceError.h"
#include "sources/TaskManagerFactory.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {

// Seconds for which a success that a source has confirmed is shown.
constexpr double SourceSuccessTime = 3.0;

constexpr LogCategory Category = LogCategory::TaskMovement;

/** What a source has to say of its failure; to be called while the exception is handled. */
QString currentFailure()
{
    try {
        throw;
    } catch (const SourceError &error) {
        return error.message();
    } catch (const std::exception &error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace

TaskMoveStatus BoardState::taskOperationStatus(const QString &taskId) const
{
    return m_taskOperationStatus.value(taskId);
}

void BoardState::setTaskOperationStatus(const QString &taskId, const TaskMoveStatus &status)
{
    m_taskOperationStatus.insert(taskId, status);
    Q_EMIT taskOperationStatusChanged(taskId);
}

void BoardState::markTaskOperationSuccessful(const QString &taskId, double delay)
{
    m_services.clock.after(delay, this, [this, taskId] {
        if (taskOperationStatus(taskId) == TaskMoveStatus::success()) {
            setTaskOperationStatus(taskId, TaskMoveStatus::idle());
        }
    });
}

/**
 * The board has moved the card already. A failure leaves it where the user put it, and its completion as it
 * was: the next fetch tells what the source has.
 */
QCoro::Task<> BoardState::updateTaskManagerForTaskMove(WorkItemPtr task, Column target, SwimLaneId swimLaneId)
{
    const QPointer<BoardState> self(this);
    const QString id = task->id();
    const bool isComplete = target.isCompleted();
    log::info(u"Marking %1 as %2 using %3 task manager"_s.arg(
                  task->name(), isComplete ? u"complete"_s : u"incomplete"_s, itemClassName(*task)),
              Category);
    std::optional<QString> failure;
    QString source = itemClassName(*task);
    try {
        TaskManagerProtocol &manager = getTaskManager(*task);
        source = manager.taskManagerName();
        log::info(u"Using %1 manager for task %2"_s.arg(manager.taskManagerName(),
                                                        isComplete ? u"completion"_s : u"reopening"_s),
                  Category);
        // Not written inside the co_await expression: there g++ 12 destroys the captured id twice.
        const std::function<QCoro::Task<bool>()> operation = [&manager, id, isComplete] {
            return markTask(manager, id, isComplete);
        };
        const bool wasKnown = co_await withRetryOnPermissionError(operation);
        if (!wasKnown) {
            log::warning(u"The source has no task "_s + id, Category);
        }
    } catch (...) {
        failure = currentFailure();
    }
    if (!self || wasOvertaken(id, isComplete)) {
        co_return;
    }
    if (failure) {
        log::error(u"Failed to update OmniFocus for task %1: %2"_s.arg(task->name(), *failure), Category);
        failOperation(id, tr("Failed to update %1 for task %2: %3").arg(source, task->name(), *failure),
                      *failure);
    } else {
        finishSourceUpdate(task, isComplete, target.id, swimLaneId);
    }
}

void BoardState::finishSourceUpdate(const WorkItemPtr &task, bool isComplete, ColumnId columnId,
                                    SwimLaneId swimLaneId)
{
    const QString id = task->id();
    takeOverCompletion(id, isComplete);
    // A refresh may have put another object in this one's place meanwhile.
    const WorkItemPtr current = m_placements.task(id);
    updateTaskInColumn(current ? current : task, columnId, swimLaneId);
    setTaskOperationStatus(id, TaskMoveStatus::success());
    markTaskOperationSuccessful(id, SourceSuccessTime);
}

/** True if the task was deleted, or moved back, while its source was told: then a later operation settles it.
 */
bool BoardState::wasOvertaken(const QString &taskId, bool isComplete) const
{
    const TaskPosition *place = m_placements.find(taskId);
    const Column *column = place ? m_columnManager.column(place->columnId) : nullptr;
    return m_deletedTaskIds.contains(taskId) || (column && column->isCompleted() != isComplete);
}

void BoardState::takeOverCompletion(const QString &taskId, bool isComplete)
{
    const TaskUpdate update = updateTaskCompletionStatus(taskId, isComplete);
    if (!isComplete || !update.success || !update.item->isBlocked()) {
        return;
    }
    log::info(u"Auto-unblocking task moved to completed column: "_s + update.item->name(), Category);
    update.item->setBlocked(false);
    update.item->setBlockReason(std::nullopt);
    touch(taskId);
    m_services.persistence.removeTaskFromBlocked(taskId);
    post(notifications::TaskBlockingStatusChanged, taskId);
}

void BoardState::followSource(const WorkItemPtr &task, bool isComplete)
{
    takeOverCompletion(task->id(), isComplete);
    const TaskPosition *place = m_placements.find(task->id());
    const Column *present = place ? m_columnManager.column(place->columnId) : nullptr;
    const Column *target =
        m_columnManager.firstOfType(isComplete ? ColumnType::Completed : ColumnType::Queue);
    if (present && target && present->isCompleted() != isComplete) {
        moveTaskWithoutTellingSource(task, target->id);
    }
}

void BoardState::failOperation(const QString &taskId, const QString &message, const QString &error)
{
    m_services.toasts.show(message, ToastManager::ToastStyle::Error);
    setTaskOperationStatus(taskId, TaskMoveStatus::failure(error));
}

void BoardState::retryFailedOperation(const QString &taskID)
{
    const TaskPosition *place = m_placements.find(taskID);
    const Column *column = place ? m_columnManager.column(place->columnId) : nullptr;
    const WorkItemPtr task = m_placements.task(taskID);
    if (!task || !column) {
        log::error(u"Cannot retry operation: Task %1 not found"_s.arg(taskID), Category);
        return;
    }
    launch(retryOperation(task, *place, column->isCompleted()), u"retryFailedOperation"_s);
}

/** Which way the operation went is told by the column in which the task stands now. */
QCoro::Task<> BoardState::retryOperation(WorkItemPtr task, TaskPosition place, bool isComplete)
{
    const QPointer<BoardState> self(this);
    const QString id = task->id();
    setTaskOperationStatus(id, TaskMoveStatus::doing());
    std::optional<QString> failure;
    try {
        TaskManagerProtocol *manager = m_services.managers.enabledManagerFor(id);
        if (!manager) {
            throw TaskManagerError::noManagerForId(id);
        }
        co_await markTask(*manager, id, isComplete);
    } catch (...) {
        failure = currentFailure();
    }
    if (!self || wasOvertaken(id, isComplete)) {
        co_return;
    }
    if (failure) {
        log::error(u"Failed to retry operation for task %1: %2"_s.arg(id, *failure), Category);
        failOperation(id, tr("Failed to retry operation for task %1: %2").arg(id, *failure), *failure);
    } else {
        finishSourceUpdate(task, isComplete, place.columnId, place.swimLaneId);
    }
}

} // namespace vantrel
