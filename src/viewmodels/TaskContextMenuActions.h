#pragma once

#include "foundations/Ids.h"
#include "foundations/ReminderWorkItem.h"
#include "sources/TaskManagerProtocol.h"

#include <QCoroTask>
#include <QObject>
#include <QStringList>

#include <optional>

namespace vantrel {

class Announcer;
class BoardState;
class Clipboard;
class SoundManager;
class TaskBlockingManager;
class ToastManager;
class UrlOpener;

/** What the operations on tasks need of the program. Everything outlives them. */
struct TaskActionServices
{
    BoardState &board;
    TaskBlockingManager &blocking;
    SoundManager &sounds;
    ToastManager &toasts;
    Announcer &announcer;
    UrlOpener &urls;
    Clipboard &clipboard;
};

/** What is done to every task of a selection. */
struct BatchAction
{
    enum class Kind { MoveToSwimLane, MarkDone, Flag, Unflag, BlockAll, UnblockAll };

    Kind kind;
    /** Where to; for MoveToSwimLane only. */
    std::optional<SwimLaneId> swimLaneId = {};
};

/** "None" to "High". */
QString displayName(ReminderPriority priority);

/**
 * The operations on tasks that menus and keys share. A source is asked first and the board follows it; what
 * it refuses is told by a toast, and nothing changes. Tasks that are gone meanwhile are passed over. Owned by
 * BoardViewModel; GUI thread.
 */
class TaskContextMenuActions : public QObject
{
    Q_OBJECT
public:
    explicit TaskContextMenuActions(const TaskActionServices &services, QObject *parent = nullptr);

    static bool supportsFlag(const WorkItem &task);

    void toggleTaskFlag(const WorkItemPtr &task);
    void markTaskComplete(const WorkItemPtr &task);
    void markTaskIncomplete(const WorkItemPtr &task);
    /** False where the task cannot be blocked. */
    bool blockTask(const WorkItem &task, const std::optional<QString> &reason);
    void unblockTask(const WorkItem &task);
    /** To the first completed column, in its swimlane; nothing on a board without one. */
    void moveTaskToDone(const WorkItemPtr &task);
    void moveTaskToColumn(const WorkItemPtr &task, ColumnId columnId);
    void performBatchAction(const BatchAction &action, const QStringList &taskIds);
    void setReminderPriority(ReminderPriority priority, const QStringList &taskIds);
    /** Whether they are all of our own, and gone. */
    bool deletePlainTextTasks(const QStringList &taskIds);

    /** Opens the task in the program that it comes from, if that has a link to it. */
    void openInSource(const WorkItem &task);
    void openMultipleInOmniFocus(const QStringList &taskIds);
    void copyMultipleOmniFocusLinks(const QStringList &taskIds);
    void copyLink(const WorkItem &task);
    void copyTaskId(const WorkItem &task);
    void copyTaskName(const WorkItem &task);
    void exportTask(const WorkItem &task);
    void exportSelectedTasks();

    void announce(const QString &text);
    /** Those of the ids whose tasks are on the board, in its order. */
    WorkItems tasksInBoardOrder(const QStringList &taskIds) const;

private:
    QCoro::Task<> toggleFlag(WorkItemPtr task);
    QCoro::Task<> setFlags(WorkItems tasks, bool isFlagged);
    /** Whether the source has changed it. */
    QCoro::Task<bool> setTaskFlag(WorkItemPtr task, bool isFlagged);
    QCoro::Task<> setCompletion(WorkItemPtr task, bool isComplete);
    QCoro::Task<> setPriorities(ReminderPriority priority, WorkItems tasks);
    QCoro::Task<bool> setPriority(ReminderPriority priority, WorkItemPtr task);
    void moveToSwimLane(const WorkItems &tasks, SwimLaneId swimLaneId);
    void tellFlagFailure();
    /** Puts the text on the clipboard and says so, or that the clipboard did not take it. */
    void copy(const QString &text, const QString &announcement);
    /** Shows what has been announced already. */
    void showSuccess(const QString &message);
    void tellClipboardFailure();

    TaskActionServices m_services;
};

} // namespace vantrel
