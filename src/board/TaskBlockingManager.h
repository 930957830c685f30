#pragma once

#include "foundations/NotificationCenter.h"
#include "foundations/WorkItem.h"

#include <optional>

namespace vantrel {

class BoardState;
class PersistenceManager;
class TaskRepository;

/** Blocks and unblocks tasks of the board, with their reasons, in memory and in the store. Owned by Services.
 */
class TaskBlockingManager
{
public:
    TaskBlockingManager(BoardState &board, PersistenceManager &persistence, TaskRepository &repository,
                        NotificationCenter &notifications);
    Q_DISABLE_COPY_MOVE(TaskBlockingManager)

    /** False where nothing changed: a completed task cannot be blocked, nor one that the board does not know.
     */
    bool toggleBlockedStatus(const WorkItem &task, const std::optional<QString> &reason);
    bool setBlockedStatus(const WorkItem &task, bool blocked, const std::optional<QString> &reason);
    bool setBlockReason(const WorkItem &task, const std::optional<QString> &reason);
    /** The board's task; the repository's counts as the board's from then on. */
    WorkItemPtr findTask(const QString &id);
    /** Reads what is stored, for the log; organisation lays it on the tasks. */
    void loadBlockedTasksFromPersistence();

private:
    bool applyBlockedStatus(const QString &id, bool blocked, const std::optional<QString> &reason);
    void saveBlockedStatusToPersistence(const WorkItem &item);

    BoardState &m_board;
    PersistenceManager &m_persistence;
    TaskRepository &m_repository;
    NotificationCenter &m_notifications;
};

} // namespace vantrel
