#include "board/TaskBlockingManager.h"

#include "board/BoardState.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "persistence/PersistenceManager.h"
#include "sources/TaskRepository.h"

namespace vantrel {

namespace {

QString stateWord(bool isBlocked)
{
    return isBlocked ? QStringLiteral("blocked") : QStringLiteral("unblocked");
}

} // namespace

TaskBlockingManager::TaskBlockingManager(BoardState &board, PersistenceManager &persistence,
                                         TaskRepository &repository, NotificationCenter &notifications)
    : m_board(board), m_persistence(persistence), m_repository(repository), m_notifications(notifications)
{
}

bool TaskBlockingManager::toggleBlockedStatus(const WorkItem &task, const std::optional<QString> &reason)
{
    const QString id = task.id();
    const QString name = task.name();
    const bool willBlock = !task.isBlocked();
    log::debug(u"🔍 TASK BLOCKING: Attempting to toggle blocked status for task: " + id + u" - " + name);
    if (willBlock && task.isComplete()) {
        log::warning(u"🔐 BLOCKING: Cannot block a completed task: " + id);
        return false;
    }
    log::info(u"🔐 BLOCKING: Setting task " + id + u" blocked status to " +
              (willBlock ? QStringLiteral("true") : QStringLiteral("false")));
    if (!applyBlockedStatus(id, willBlock, reason)) {
        log::error(u"🔐 BLOCKING: Failed to toggle blocked status for task: " + id);
        if (!findTask(id)) {
            log::error(u"🔐 BLOCKING: Task " + id + u" still not found in BoardState.shared after retry");
        }
        return false;
    }
    log::info(u"Task " + id + u" (" + name + u") " + stateWord(willBlock) + u", reason: " +
              reason.value_or(QStringLiteral("none")));
    m_notifications.post(notifications::TaskBlockingStatusChanged, id);
    return true;
}

bool TaskBlockingManager::setBlockedStatus(const WorkItem &task, bool blocked,
                                           const std::optional<QString> &reason)
{
    const QString id = task.id();
    if (blocked && task.isComplete()) {
        log::warning(u"Cannot block a completed task: " + id);
        return false;
    }
    if (!applyBlockedStatus(id, blocked, reason)) {
        log::error(u"Failed to set blocked status for task: " + id);
        return false;
    }
    log::info(u"Task " + id + u" set to " + stateWord(blocked) + u": " + task.name());
    m_notifications.post(notifications::TaskBlockingStatusChanged, id);
    return true;
}

bool TaskBlockingManager::setBlockReason(const WorkItem &task, const std::optional<QString> &reason)
{
    const TaskUpdate update = m_board.updateTaskBlockReason(task.id(), reason);
    if (!update.success) {
        return false;
    }
    saveBlockedStatusToPersistence(*update.item);
    log::info(u"Updated block reason for task " + task.id() + u": " +
              reason.value_or(QStringLiteral("none")));
    m_notifications.post(notifications::TaskBlockingStatusChanged, task.id());
    return true;
}

WorkItemPtr TaskBlockingManager::findTask(const QString &id)
{
    log::debug(u"🔐 BLOCKING: Looking for task with ID: " + id);
    if (const WorkItemPtr task = m_board.findTaskById(id)) {
        log::debug(u"🔐 BLOCKING: Found task with ID: " + id + u", Name: " + task->name());
        return task;
    }
    const QString placed = QString::number(m_board.taskPositions().count());
    log::error(u"🔐 BLOCKING: Failed to find task with ID: " + id +
               u" in BoardState.shared or TaskRepository cache");
    log::error(u"🔐 BLOCKING: Current task counts: " + QString::number(m_board.taskCount()) +
               u" in tasks collection, " + QString::number(m_repository.cachedTasks().size()) +
               u" in repository cache, " + placed + u" in swimlanes, " + placed + u" in columns");
    return nullptr;
}

void TaskBlockingManager::loadBlockedTasksFromPersistence()
{
    const auto blocked = m_persistence.getBlockedTaskIdsFromSQLite();
    const auto reasons = m_persistence.getBlockReasonsFromSQLite();
    log::info(u"Loaded " + QString::number(blocked.size()) + u" blocked tasks from SQLite database (" +
              QString::number(reasons.size()) + u" with reasons)");
}

bool TaskBlockingManager::applyBlockedStatus(const QString &id, bool blocked,
                                             const std::optional<QString> &reason)
{
    const TaskUpdate update = m_board.updateTaskBlockedStatus(id, blocked);
    if (!update.success) {
        return false;
    }
    if (!blocked && !m_board.updateTaskBlockReason(id, std::nullopt).success) {
        log::warning(u"Failed to clear block reason for task: " + id);
    }
    if (blocked && reason && !m_board.updateTaskBlockReason(id, reason).success) {
        log::warning(u"Failed to set block reason for task: " + id);
    }
    saveBlockedStatusToPersistence(*update.item);
    return true;
}

void TaskBlockingManager::saveBlockedStatusToPersistence(const WorkItem &item)
{
    if (item.isBlocked()) {
        m_persistence.saveTaskAsBlocked(item.id(), item.blockReason());
    } else {
        m_persistence.removeTaskFromBlocked(item.id());
    }
}

} // namespace vantrel
