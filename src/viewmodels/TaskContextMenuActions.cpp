#include "viewmodels/TaskContextMenuActions.h"

#include "board/BoardState.h"
#include "board/TaskBlockingManager.h"
#include "exchange/PlainTextTaskExporter.h"
#include "feedback/Announcer.h"
#include "feedback/DesktopPorts.h"
#include "feedback/SoundManager.h"
#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/OmniFocusTask.h"
#include "sources/SourceError.h"
#include "sources/reminders/RemindersTaskManager.h"

#include <QPointer>

namespace vantrel {

namespace {

using ToastStyle = ToastManager::ToastStyle;

/** What a source has to say of its failure; to be called while the exception is handled. */
QString currentFailure(const WorkItem &task)
{
    try {
        throw;
    } catch (const TaskManagerError &) {
        return u"No task manager available for task " + task.id();
    } catch (const std::exception &failure) {
        return QString::fromUtf8(failure.what());
    }
}

} // namespace

QString displayName(ReminderPriority priority)
{
    switch (priority) {
    case ReminderPriority::High:
        return TaskContextMenuActions::tr("High");
    case ReminderPriority::Medium:
        return TaskContextMenuActions::tr("Medium");
    case ReminderPriority::Low:
        return TaskContextMenuActions::tr("Low");
    case ReminderPriority::None:
        break;
    }
    return TaskContextMenuActions::tr("None");
}

TaskContextMenuActions::TaskContextMenuActions(const TaskActionServices &services, QObject *parent)
    : QObject(parent), m_services(services)
{
}

void TaskContextMenuActions::announce(const QString &text)
{
    m_services.announcer.announce(text);
}

WorkItems TaskContextMenuActions::tasksInBoardOrder(const QStringList &taskIds) const
{
    WorkItems tasks;
    for (const QString &id : m_services.board.inBoardOrder(taskIds)) {
        if (WorkItemPtr task = m_services.board.task(id)) tasks.push_back(std::move(task));
    }
    return tasks;
}

// Flags

bool TaskContextMenuActions::supportsFlag(const WorkItem &task)
{
    const ItemClass kind = itemClass(task);
    return kind == ItemClass::OmniFocus || kind == ItemClass::PlainText;
}

void TaskContextMenuActions::toggleTaskFlag(const WorkItemPtr &task)
{
    if (!supportsFlag(*task)) {
        log::warning(QStringLiteral("This task type does not support flagging"));
        tellFlagFailure();
        return;
    }
    launch(toggleFlag(task), QStringLiteral("toggleTaskFlag"));
}

QCoro::Task<> TaskContextMenuActions::toggleFlag(WorkItemPtr task)
{
    const QPointer<TaskContextMenuActions> self(this);
    const bool isFlagged = !task->isFlagged();
    const bool isDone = co_await setTaskFlag(task, isFlagged);
    if (!self) {
        co_return;
    }
    if (isDone) {
        m_services.sounds.playSound(Sound::ColumnMove, isFlagged ? tr("Task flagged") : tr("Task unflagged"));
    } else {
        tellFlagFailure();
    }
}

QCoro::Task<> TaskContextMenuActions::setFlags(WorkItems tasks, bool isFlagged)
{
    const QPointer<TaskContextMenuActions> self(this);
    bool isAnyRefused = false;
    for (const WorkItemPtr &task : tasks) {
        if (supportsFlag(*task) && task->isFlagged() != isFlagged) {
            const bool isDone = co_await setTaskFlag(task, isFlagged);
            isAnyRefused = isAnyRefused || !isDone;
        }
        if (!self) {
            co_return;
        }
    }
    if (isAnyRefused) {
        tellFlagFailure();
    }
}

QCoro::Task<bool> TaskContextMenuActions::setTaskFlag(WorkItemPtr task, bool isFlagged)
{
    const QPointer<TaskContextMenuActions> self(this);
    bool isDone = false;
    QString error;
    try {
        TaskManagerProtocol &source = m_services.board.getTaskManager(*task);
        isDone = co_await source.flagTask(task->id(), isFlagged);
    } catch (...) {
        error = currentFailure(*task);
    }
    if (!error.isEmpty()) {
        log::error(u"Error toggling flag for task " + task->name() + u": " + error);
    }
    if (self && isDone) {
        m_services.board.updateTaskFlagStatus(task->id(), isFlagged);
    }
    co_return isDone;
}

void TaskContextMenuActions::tellFlagFailure()
{
    m_services.toasts.show(tr("Unable to change flag on task"), ToastStyle::Error);
}

// Completion and place

void TaskContextMenuActions::markTaskComplete(const WorkItemPtr &task)
{
    launch(setCompletion(task, true), QStringLiteral("markTaskComplete"));
}

void TaskContextMenuActions::markTaskIncomplete(const WorkItemPtr &task)
{
    launch(setCompletion(task, false), QStringLiteral("markTaskIncomplete"));
}

QCoro::Task<> TaskContextMenuActions::setCompletion(WorkItemPtr task, bool isComplete)
{
    const QPointer<TaskContextMenuActions> self(this);
    const QString id = task->id();
    bool isDone = false;
    QString error = QStringLiteral("the task is not known where it comes from");
    try {
        TaskManagerProtocol &source = m_services.board.getTaskManager(*task);
        isDone = co_await markTask(source, id, isComplete);
    } catch (...) {
        error = currentFailure(*task);
    }
    if (!self) {
        co_return;
    }
    if (isDone) {
        m_services.board.followSource(task, isComplete);
        co_return;
    }
    const QString message = isComplete ? tr("Failed to mark task complete: %1").arg(error)
                                       : tr("Failed to mark task incomplete: %1").arg(error);
    log::error(message);
    m_services.toasts.show(message, ToastStyle::Error);
}

void TaskContextMenuActions::moveTaskToDone(const WorkItemPtr &task)
{
    if (const Column *done = m_services.board.columnManager().firstOfType(ColumnType::Completed)) {
        moveTaskToColumn(task, done->id);
    }
}

void TaskContextMenuActions::moveTaskToColumn(const WorkItemPtr &task, ColumnId columnId)
{
    const TaskPosition *place = m_services.board.taskPositions().find(task->id());
    // A move within a cell without a wish for a place is a step up.
    if (place && place->columnId != columnId) {
        m_services.board.moveTask(task, columnId);
    }
}

void TaskContextMenuActions::moveToSwimLane(const WorkItems &tasks, SwimLaneId swimLaneId)
{
    const SwimLane *lane = m_services.board.swimLaneManager().swimLane(swimLaneId);
    if (!lane || tasks.empty()) {
        return;
    }
    const QString name = lane->name;
    for (const WorkItemPtr &task : tasks) {
        m_services.board.moveTaskToSwimLane(task->id(), swimLaneId);
    }
    announce(tasks.size() == 1 ? tr("Task moved to %1 swimlane").arg(name)
                               : tr("%1 tasks moved to %2 swimlane").arg(tasks.size()).arg(name));
}

// Blocks

bool TaskContextMenuActions::blockTask(const WorkItem &task, const std::optional<QString> &reason)
{
    const bool isBlocked = m_services.blocking.setBlockedStatus(task, true, reason);
    if (isBlocked) {
        m_services.sounds.playSound(Sound::ColumnMove, tr("Task blocked"));
    } else {
        m_services.toasts.show(tr("Unable to change blocked status on task"), ToastStyle::Error);
    }
    return isBlocked;
}

void TaskContextMenuActions::unblockTask(const WorkItem &task)
{
    if (m_services.blocking.setBlockedStatus(task, false, std::nullopt)) {
        m_services.sounds.playSound(Sound::ColumnMove, tr("Task unblocked"));
    } else {
        m_services.toasts.show(tr("Unable to change blocked status on task"), ToastStyle::Error);
    }
}

// Selections

void TaskContextMenuActions::performBatchAction(const BatchAction &action, const QStringList &taskIds)
{
    const WorkItems tasks = tasksInBoardOrder(taskIds);
    switch (action.kind) {
    case BatchAction::Kind::MoveToSwimLane:
        moveToSwimLane(tasks, action.swimLaneId.value());
        break;
    case BatchAction::Kind::MarkDone:
        for (const WorkItemPtr &task : tasks) {
            moveTaskToDone(task);
        }
        break;
    case BatchAction::Kind::Flag:
    case BatchAction::Kind::Unflag:
        launch(setFlags(tasks, action.kind == BatchAction::Kind::Flag), QStringLiteral("setFlags"));
        break;
    case BatchAction::Kind::BlockAll:
        for (const WorkItemPtr &task : tasks) {
            if (!task->isBlocked() && !task->isComplete()) blockTask(*task, std::nullopt);
        }
        break;
    case BatchAction::Kind::UnblockAll:
        for (const WorkItemPtr &task : tasks) {
            if (task->isBlocked()) unblockTask(*task);
        }
        break;
    }
}

bool TaskContextMenuActions::deletePlainTextTasks(const QStringList &taskIds)
{
    const bool isDeleted = m_services.board.removePlainTextTasks(taskIds);
    if (!isDeleted) {
        m_services.toasts.show(tr("The tasks could not be deleted. Please try again."), ToastStyle::Error);
    } else if (taskIds.size() == 1) {
        announce(tr("Task deleted"));
    } else {
        announce(tr("%1 tasks deleted").arg(taskIds.size()));
    }
    return isDeleted;
}

// Priorities of reminders

void TaskContextMenuActions::setReminderPriority(ReminderPriority priority, const QStringList &taskIds)
{
    launch(setPriorities(priority, tasksInBoardOrder(taskIds)), QStringLiteral("setReminderPriority"));
}

QCoro::Task<> TaskContextMenuActions::setPriorities(ReminderPriority priority, WorkItems tasks)
{
    const QPointer<TaskContextMenuActions> self(this);
    int failures = 0;
    for (const WorkItemPtr &task : tasks) {
        const bool isDone = co_await setPriority(priority, task);
        failures += isDone ? 0 : 1;
        if (!self) {
            co_return;
        }
    }
    const auto count = static_cast<int>(tasks.size());
    if (failures > 0) {
        m_services.toasts.show(tr("Failed to update reminder priority"), ToastStyle::Error);
    }
    if (count == 1 && failures == 0) {
        announce(tr("Set priority to %1").arg(displayName(priority)));
    } else if (count > 1) {
        const QString failed = failures > 0 ? tr(" (%1 failed)").arg(failures) : QString();
        announce(tr("Set priority to %1 for %2 reminders").arg(displayName(priority)).arg(count - failures) +
                 failed);
    }
}

QCoro::Task<bool> TaskContextMenuActions::setPriority(ReminderPriority priority, WorkItemPtr task)
{
    const QPointer<TaskContextMenuActions> self(this);
    bool isDone = false;
    try {
        auto *reminders = dynamic_cast<RemindersTaskManager *>(&m_services.board.getTaskManager(*task));
        if (!reminders) {
            log::error(QStringLiteral("RemindersTaskManager not available"));
            co_return false;
        }
        isDone = co_await reminders->setPriority(task->id(), static_cast<int>(priority));
    } catch (...) {
        log::error(u"Failed to update reminder priority: " + currentFailure(*task));
    }
    if (self && isDone) {
        m_services.board.updateReminderPriority(task->id(), static_cast<int>(priority));
    }
    co_return isDone;
}

// Links and text

void TaskContextMenuActions::openInSource(const WorkItem &task)
{
    const QUrl link = task.appSpecificLink();
    if (link.isValid() && m_services.urls.open(link)) {
        announce(itemClass(task) == ItemClass::OmniFocus ? tr("Opening task in OmniFocus")
                                                         : tr("Opening task in source application"));
    }
}

void TaskContextMenuActions::openMultipleInOmniFocus(const QStringList &taskIds)
{
    int opened = 0;
    for (const WorkItemPtr &task : tasksInBoardOrder(taskIds)) {
        opened += m_services.urls.open(task->appSpecificLink()) ? 1 : 0;
    }
    announce(tr("Opened %1 tasks in OmniFocus").arg(opened));
}

void TaskContextMenuActions::copyMultipleOmniFocusLinks(const QStringList &taskIds)
{
    QStringList links;
    for (const WorkItemPtr &task : tasksInBoardOrder(taskIds)) {
        links.append(task->appSpecificLink().toString(QUrl::FullyEncoded));
    }
    copy(links.join(u'\n'), tr("Copied %1 OmniFocus links to pasteboard").arg(links.size()));
}

void TaskContextMenuActions::copyLink(const WorkItem &task)
{
    copy(task.appSpecificLink().toString(QUrl::FullyEncoded), tr("Link copied to clipboard"));
}

void TaskContextMenuActions::copyTaskId(const WorkItem &task)
{
    copy(task.id(), tr("Task ID copied to clipboard"));
}

void TaskContextMenuActions::copyTaskName(const WorkItem &task)
{
    copy(task.name(), tr("Task name copied to clipboard"));
}

void TaskContextMenuActions::exportTask(const WorkItem &task)
{
    copy(PlainTextTaskExporter().formatTask(task), tr("Task exported to clipboard"));
}

void TaskContextMenuActions::exportSelectedTasks()
{
    const ExportResult result = m_services.board.exportTasksToClipboard(
        ExportScope::SelectedTasks, ExportFormat::PlainCheckbox, std::nullopt, std::nullopt);
    if (result.success) {
        showSuccess(tr("Exported %1 tasks to clipboard").arg(result.count));
    } else {
        tellClipboardFailure();
    }
}

void TaskContextMenuActions::copy(const QString &text, const QString &announcement)
{
    if (m_services.clipboard.setText(text)) {
        announce(announcement);
        showSuccess(announcement);
    } else {
        tellClipboardFailure();
    }
}

void TaskContextMenuActions::showSuccess(const QString &message)
{
    ToastManager::Options options;
    options.announceToVoiceOver = false;
    m_services.toasts.show(message, ToastStyle::Success, options);
}

void TaskContextMenuActions::tellClipboardFailure()
{
    m_services.toasts.show(tr("The clipboard did not take the text. Please try again."), ToastStyle::Error);
}

} // namespace vantrel
