#include "viewmodels/BoardCommandHandlers.h"

#include "board/TaskBlockingManager.h"
#include "feedback/SoundManager.h"
#include "feedback/ToastManager.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"
#include "viewmodels/TaskContextMenuActions.h"

namespace vantrel {

namespace {

void noteMove(const QString &line)
{
    log::debug(line, LogCategory::TaskMovement);
}

} // namespace

BoardCommandHandlers::BoardCommandHandlers(const BoardCommandServices &services, QObject *parent)
    : QObject(parent), m_services(services)
{
    observeMoves();
    observeMarks();
    observeViewCommands();
}

void BoardCommandHandlers::observe(NotificationName name, std::function<void()> answer)
{
    m_services.notifications.observe(name, this,
                                     [answer = std::move(answer)](const Notification &) { answer(); });
}

void BoardCommandHandlers::observeMoves()
{
    using namespace notifications;
    observe(MoveTaskUpRequested, [this] { handleMoveTaskVertically(Direction::Back); });
    observe(MoveTaskDownRequested, [this] { handleMoveTaskVertically(Direction::Forward); });
    observe(MoveTaskToPreviousColumnRequested, [this] { handleMoveTaskHorizontally(Direction::Back); });
    observe(MoveTaskToNextColumnRequested, [this] { handleMoveTaskHorizontally(Direction::Forward); });
    observe(MoveTaskToPreviousSwimLaneRequested, [this] { handleMoveTaskBetweenSwimLanes(Direction::Back); });
    observe(MoveTaskToNextSwimLaneRequested, [this] { handleMoveTaskBetweenSwimLanes(Direction::Forward); });
    observe(CmdShiftEnterToCompleteRequested, [this] { handleCmdShiftEnterToComplete(); });
}

void BoardCommandHandlers::observeMarks()
{
    observe(notifications::ToggleTaskBlockedRequested, [this] { handleToggleTaskBlock(); });
    observe(notifications::ToggleTaskFlagRequested, [this] { handleToggleTaskFlag(); });
}

void BoardCommandHandlers::observeViewCommands()
{
    using namespace notifications;
    BoardState &board = m_services.board;
    observe(ZoomInRequested, [&board] { board.zoomIn(); });
    observe(ZoomOutRequested, [&board] { board.zoomOut(); });
    observe(ResetZoomRequested, [&board] { board.resetZoom(); });
    observe(ToggleTagSidebarRequested, [&board] { board.filterManager().toggleTagSidebar(); });
    observe(ClearTagFiltersRequested, [&board] { board.filterManager().clearTagFilters(); });
    observe(ToggleFlaggedFilterRequested, [&board] { board.filterManager().toggleFlaggedFilter(); });
    m_services.notifications.observe(ToggleSwimLaneExpansionRequested, this,
                                     [this](const Notification &notification) {
                                         handleToggleSwimLaneExpansion(notification.object.toInt());
                                     });
}

void BoardCommandHandlers::handleMoveTaskVertically(Direction direction)
{
    const WorkItemPtr task =
        onlySelectedTask(QStringLiteral("Cannot move task vertically: %1 tasks selected, need exactly 1"));
    const TaskPosition *place = task ? placeOf(*task) : nullptr;
    if (!place) {
        return;
    }
    const CellId cell = m_services.board.taskPositions().shownCell(*place);
    const auto index = static_cast<int>(m_services.board.taskPositions().indexInCell(task->id()));
    const auto last = static_cast<int>(m_services.board.taskPositions().size(cell)) - 1;
    const bool isUp = direction == Direction::Back;
    if (isUp && index <= 0) {
        noteMove(QStringLiteral("handleMoveTaskVertically: Task at first position can't move up"));
        return;
    }
    if (!isUp && index >= last) {
        noteMove(QStringLiteral("handleMoveTaskVertically: Task at last position can't move down"));
        return;
    }
    m_services.notifications.post(notifications::TaskDirectMoveRequested, {},
                                  {{QStringLiteral("task"), task->id()},
                                   {QStringLiteral("columnId"), QVariant::fromValue(cell.column)},
                                   {QStringLiteral("swimLaneId"), QVariant::fromValue(cell.swimLane)},
                                   {QStringLiteral("position"), isUp ? index - 1 : index + 1}});
    if (m_services.board.didActOnLastDirectMove()) {
        m_services.sounds.playSound(Sound::ColumnMove,
                                    isUp ? tr("Moved task up in column") : tr("Moved task down in column"));
    }
}

void BoardCommandHandlers::handleMoveTaskHorizontally(Direction direction)
{
    const WorkItemPtr task =
        onlySelectedTask(QStringLiteral("Cannot move task horizontally: %1 tasks selected, need exactly 1"));
    const TaskPosition *place = task ? placeOf(*task) : nullptr;
    if (!place) {
        return;
    }
    const std::vector<Column> &columns = m_services.board.columnManager().columns();
    const int index = m_services.board.columnManager().indexOf(place->columnId);
    const int target = direction == Direction::Forward ? index + 1 : index - 1;
    if (target < 0) {
        noteMove(QStringLiteral("Task already in leftmost column, no change"));
    } else if (target >= static_cast<int>(columns.size())) {
        noteMove(QStringLiteral("Task already in rightmost column, no change"));
    } else {
        m_services.board.moveTask(task, columns[static_cast<size_t>(target)].id,
                                  m_services.board.resolvedSwimLaneId(*place));
    }
}

void BoardCommandHandlers::handleMoveTaskBetweenSwimLanes(Direction direction)
{
    const WorkItemPtr task = onlySelectedTask(
        QStringLiteral("Cannot move task between swimlanes: %1 tasks selected, need exactly 1"));
    const TaskPosition *place = task ? placeOf(*task) : nullptr;
    if (!place) {
        return;
    }
    const std::vector<SwimLane> &lanes = m_services.board.swimLaneManager().swimLanes();
    const int index = m_services.board.swimLaneManager().indexOf(m_services.board.resolvedSwimLaneId(*place));
    const int target = direction == Direction::Forward ? index + 1 : index - 1;
    if (target < 0) {
        noteMove(QStringLiteral("Task already in topmost swimlane, no change"));
    } else if (target >= static_cast<int>(lanes.size())) {
        noteMove(QStringLiteral("Task already in bottommost swimlane, no change"));
    } else {
        const SwimLane lane = lanes[static_cast<size_t>(target)];
        m_services.board.moveTask(task, place->columnId, lane.id);
        m_services.sounds.playSound(Sound::SwimLaneMove, tr("Moved task to %1 swimlane").arg(lane.name));
    }
}

void BoardCommandHandlers::handleCmdShiftEnterToComplete()
{
    if (!m_services.defaults.boolean(keys::EnableCmdShiftEnterToComplete).value_or(true)) {
        noteMove(QStringLiteral("Cmd+Shift+Enter to complete is disabled in preferences"));
        return;
    }
    const WorkItemPtr task = onlySelectedTask(
        QStringLiteral("Cannot complete task with cmd+shift+enter: %1 tasks selected, need exactly 1"));
    const TaskPosition *place = task ? placeOf(*task) : nullptr;
    if (!place) {
        return;
    }
    const Column *completed = m_services.board.columnManager().firstOfType(ColumnType::Completed);
    if (!completed) {
        noteMove(QStringLiteral("No completed column found, cannot move task to done"));
        return;
    }
    m_services.board.moveTask(task, completed->id, m_services.board.resolvedSwimLaneId(*place), 0);
    m_services.sounds.playSound(Sound::Completion, tr("Moved task to Done column"));
}

void BoardCommandHandlers::handleToggleTaskBlock()
{
    const WorkItemPtr task = onlySelectedTask(
        QStringLiteral("Cannot toggle task blocked status: %1 tasks selected, need exactly 1"));
    if (!task) {
        return;
    }
    if (task->isComplete()) {
        m_services.toasts.show(tr("Cannot block a completed task"), ToastManager::ToastStyle::Error);
    } else if (m_services.blocking.toggleBlockedStatus(*task, {})) {
        m_services.sounds.playSound(Sound::ColumnMove,
                                    task->isBlocked() ? tr("Task blocked") : tr("Task unblocked"));
    } else {
        m_services.toasts.show(tr("Unable to change blocked status on task"),
                               ToastManager::ToastStyle::Error);
    }
}

void BoardCommandHandlers::handleToggleTaskFlag()
{
    const WorkItemPtr task =
        onlySelectedTask(QStringLiteral("Cannot toggle task flag: %1 tasks selected, need exactly 1"));
    if (task) m_services.actions.toggleTaskFlag(task);
}

void BoardCommandHandlers::handleToggleSwimLaneExpansion(int index)
{
    SwimLaneManager &manager = m_services.board.swimLaneManager();
    const auto count = static_cast<int>(manager.swimLanes().size());
    if (index < 0 || index >= count) {
        log::debug(u"Invalid swimlane index: " + QString::number(index) + u", valid range is 0-" +
                       QString::number(count - 1),
                   LogCategory::Swimlanes);
        return;
    }
    const SwimLaneId id = manager.swimLanes()[static_cast<size_t>(index)].id;
    manager.toggleSwimLaneExpanded(id);
    log::debug(u"Toggled swimlane at index " + QString::number(index) + u" (id: " + id.text() +
                   u") via keyboard shortcut",
               LogCategory::Swimlanes);
}

WorkItemPtr BoardCommandHandlers::onlySelectedTask(const QString &refusal) const
{
    const QStringList &selected = m_services.board.selectionManager().selectedTaskIds();
    if (selected.size() != 1) {
        noteMove(refusal.arg(selected.size()));
        return nullptr;
    }
    return m_services.board.findTaskById(selected.first());
}

const TaskPosition *BoardCommandHandlers::placeOf(const WorkItem &task) const
{
    const TaskPosition *place = m_services.board.taskPositions().find(task.id());
    if (!place) noteMove(u"Cannot move task: no place found for " + task.id());
    return place;
}

} // namespace vantrel
