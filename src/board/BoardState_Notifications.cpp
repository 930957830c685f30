#include "board/BoardState.h"

#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"
#include "sources/plaintext/PlainTextTaskManager.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {

constexpr double UpdateGuardTime = 0.1;
// Seconds for which a direct move shows its success.
constexpr double DirectMoveSuccessTime = 1.0;

constexpr LogCategory Category = LogCategory::TaskMovement;

/** An id of the user info, whether given as itself or as text. */
template <typename AnyId>
std::optional<AnyId> idFrom(const QVariant &value)
{
    return value.canConvert<AnyId>() ? std::optional(value.value<AnyId>())
                                     : AnyId::fromText(value.toString());
}

/** Looks from the end, where the newest stand. */
WorkItemPtr taskOfId(const WorkItems &tasks, const QString &taskId)
{
    const auto found = std::find_if(tasks.rbegin(), tasks.rend(),
                                    [&taskId](const WorkItemPtr &task) { return task->id() == taskId; });
    return found != tasks.rend() ? *found : nullptr;
}

} // namespace

void BoardState::observeNotifications()
{
    const auto observe = [this](NotificationName name, void (BoardState::*handler)(const Notification &)) {
        m_services.notifications.observe(name, this, [this, handler](const Notification &notification) {
            (this->*handler)(notification);
        });
    };
    observe(notifications::BoardStateChanged, &BoardState::handleSwimLaneChangedNotification);
    observe(notifications::TaskDirectMoveRequested, &BoardState::handleDirectTaskMoveNotification);
    observe(notifications::EisenhowerPriorityUpdated, &BoardState::handlePriorityFilterChangedNotification);
    observe(notifications::ToggleTaskFocusModeRequested, &BoardState::handleToggleTaskFocusModeNotification);
    observe(notifications::TaskAddedToBoardState, &BoardState::handleTaskAddedToBoardStateNotification);
}

void BoardState::handleSwimLaneChangedNotification(const Notification &)
{
    if (m_isUpdating) {
        log::info(u"Ignoring swimlane change notification during update"_s);
        return;
    }
    log::info(u"Received swimlane change notification - triggering UI update"_s);
    guardUpdate();
}

/** Has observers told on the next turn, and keeps out other updates for a moment after that. */
void BoardState::guardUpdate()
{
    m_isUpdating = true;
    m_services.clock.soon(this, [this] {
        Q_EMIT changed();
        m_services.clock.after(UpdateGuardTime, this, [this] { m_isUpdating = false; });
    });
}

void BoardState::handleDirectTaskMoveNotification(const Notification &notification)
{
    m_didActOnLastDirectMove = false;
    if (m_isUpdating) {
        log::info(u"Ignoring direct task move notification during update"_s, Category);
        return;
    }
    const QVariantMap &info = notification.userInfo;
    const WorkItemPtr task = m_placements.task(info.value(u"task"_s).toString());
    const std::optional<ColumnId> columnId = idFrom<ColumnId>(info.value(u"columnId"_s));
    const TaskPosition *place = task ? m_placements.find(task->id()) : nullptr;
    const QVariant swimLane = info.value(u"swimLaneId"_s);
    const std::optional<SwimLaneId> swimLaneId = swimLane.isValid() ? idFrom<SwimLaneId>(swimLane)
                                                 : place ? std::optional(resolvedSwimLaneId(*place))
                                                         : std::nullopt;
    bool isNumber = false;
    const int position = info.value(u"position"_s).toInt(&isNumber);
    if (!place || !columnId || place->columnId != *columnId || !swimLaneId || !isNumber) {
        log::error(u"Direct task move notification had invalid data"_s, Category);
        return;
    }
    moveDirectly(task, {*swimLaneId, *columnId}, position);
}

void BoardState::moveDirectly(const WorkItemPtr &task, CellId cell, int position)
{
    log::info(u"======= DIRECT TASK MOVE OPERATION START ======="_s, Category);
    log::info(u"Directly moving task '%1' (%2) to position %3 in column %4"_s.arg(
                  task->name(), task->id(), QString::number(position), cell.column.text()),
              Category);
    m_didActOnLastDirectMove = true;
    const qsizetype index = m_placements.indexInCell(task->id());
    placeInColumn(task, cell.column, existingSwimLane(cell.swimLane), position);
    updateTaskPositions(cell.column, existingSwimLane(cell.swimLane));
    setTaskOperationStatus(task->id(), TaskMoveStatus::success());
    markTaskOperationSuccessful(task->id(), DirectMoveSuccessTime);
    log::info(u"Directly moved task '%1' from position %2 to %3 in column %4"_s.arg(
                  task->name(), QString::number(index), QString::number(position), cell.column.text()),
              Category);
    log::info(u"======= DIRECT TASK MOVE OPERATION COMPLETE ======="_s, Category);
    guardUpdate();
}

/**
 * An event, told after each assignment and by the priority filter. With user info it is a command to the
 * matrix, whose assignments will tell the event. A board without tasks has nothing to reorganise, and must
 * not have the store take that for an answer of the sources.
 */
void BoardState::handlePriorityFilterChangedNotification(const Notification &notification)
{
    if (!notification.userInfo.isEmpty()) {
        return;
    }
    log::info(u"Received priority filter change notification - refreshing task organization"_s);
    m_services.clock.soon(this, [this] {
        if (m_placements.taskCount() > 0 && m_loadingState != BoardLoadingState::Loading) {
            organizeTasks(m_placements.tasks(), m_lastAnswered);
        }
    });
}

void BoardState::handleToggleTaskFocusModeNotification(const Notification &)
{
    log::info(u"Received toggle task focus mode notification"_s, LogCategory::FocusControl);
    const QStringList &selected = m_selectionManager.selectedTaskIds();
    if (selected.isEmpty()) {
        log::warning(u"No task selected for focus mode toggle"_s, LogCategory::FocusControl);
    } else if (isTaskFocused(selected.first())) {
        clearTaskFocus();
    } else {
        focusTask(selected.first());
    }
}

void BoardState::handleTaskAddedToBoardStateNotification(const Notification &notification)
{
    log::info(u"🎯🎯🎯 RECEIVED TASK ADDED TO BOARD STATE NOTIFICATION 🎯🎯🎯"_s);
    const QString taskId = notification.object.toString();
    log::info(u"🎯 Loading task: %1 from notification"_s.arg(taskId));
    m_services.clock.soon(
        this, [this, taskId] { launch(takeOverPlainTextTask(taskId), u"takeOverPlainTextTask"_s); });
}

QCoro::Task<> BoardState::takeOverPlainTextTask(QString taskId)
{
    const QPointer<BoardState> self(this);
    co_await addPlainTextTask(taskId);
    if (!self) {
        co_return;
    }
    log::info(u"🎯 Forcing UI update"_s);
    invalidateDerivedCollections();
    rebuildDerivedCollections();
    Q_EMIT changed();
}

/** The stored row decides on the place; the first queue column is only for a task without one. */
QCoro::Task<> BoardState::addPlainTextTask(QString taskId)
{
    const QPointer<BoardState> self(this);
    const WorkItemPtr task = co_await plainTextTask(taskId);
    std::optional<TaskPosition> place = self && task ? placeWithoutRow(taskId) : std::nullopt;
    if (!place) {
        co_return;
    }
    const auto row = co_await m_services.persistence.readTaskPosition(taskId);
    if (!self) {
        co_return;
    }
    if (!row || !m_columnManager.column(row->columnId)) {
        log::warning(
            u"⚠️ Task position not found in persistence manager, will be created during import"_s);
        place->position = static_cast<int>(m_placements.size(place->cell()));
    } else {
        log::info(u"🎯 Found task position in persistence manager: %1 in column %2"_s.arg(
            QString::number(row->position), row->columnId.text()));
        place = {taskId, row->columnId, row->swimLaneId.value_or(place->swimLaneId), row->position};
    }
    log::info(u"🎯 Importing plain text task to board state"_s);
    registerPlainTextTask(task, place->columnId, place->swimLaneId, place->position);
    log::info(u"🎯 Successfully added %1 tasks to board state"_s.arg(1));
}

std::optional<TaskPosition> BoardState::placeWithoutRow(const QString &taskId) const
{
    if (m_columnManager.columns().empty()) {
        log::error(u"❌ No columns available to add task"_s);
        return std::nullopt;
    }
    const Column *queue = m_columnManager.firstOfType(ColumnType::Queue);
    const Column &column = queue ? *queue : m_columnManager.columns().front();
    log::info(u"🎯 Using column: %1"_s.arg(column.name));
    const SwimLane &swimLane = m_swimLaneManager.defaultSwimLane();
    log::info(u"🎯 Using swimlane: %1"_s.arg(swimLane.name));
    return TaskPosition{taskId, column.id, swimLane.id, 0};
}

/** The task as its source has it now; nullptr if it has none of that id. */
QCoro::Task<WorkItemPtr> BoardState::plainTextTask(QString taskId)
{
    PlainTextTaskManager *plainText = plainTextManager();
    TaskManagerProtocol &manager = m_services.managers.manager(TaskManagerType::PlainText);
    log::info(u"🎯 Got plain text manager: %1"_s.arg(manager.taskManagerName()));
    WorkItemPtr task = plainText ? taskOfId(plainText->loadedTasks(), taskId) : nullptr;
    if (!task) {
        task = co_await reloadedPlainTextTask(taskId);
    }
    if (task) {
        log::info(u"🎯 Found task %1 in task manager: %2"_s.arg(taskId, task->name()));
    } else {
        log::error(u"❌ Could not find task %1 in task manager"_s.arg(taskId));
    }
    co_return task;
}

/**
 * For a task that its source does not know yet. Those that were created in this run it has at hand, and a
 * board of thousands is not read anew for each line that is typed.
 */
QCoro::Task<WorkItemPtr> BoardState::reloadedPlainTextTask(QString taskId)
{
    PlainTextTaskManager *plainText = plainTextManager();
    WorkItems tasks;
    try {
        if (plainText) {
            log::info(u"🎯 Force reloading tasks from plain text manager"_s);
            tasks = co_await plainText->forceReloadTasks();
        } else {
            tasks = co_await m_services.managers.manager(TaskManagerType::PlainText).fetchTasks();
        }
    } catch (const std::exception &error) {
        log::error(u"❌ Failed to load tasks from plain text manager: "_s + QString::fromUtf8(error.what()));
        co_return WorkItemPtr();
    }
    log::info(u"🎯 Loaded %1 tasks from plain text manager %2"_s.arg(
        QString::number(tasks.size()), plainText ? u"(force reload)"_s : u"(regular fetch)"_s));
    co_return taskOfId(tasks, taskId);
}

} // namespace vantrel
