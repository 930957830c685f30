#include "viewmodels/BoardNavigation.h"

#include "feedback/Announcer.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

#include <algorithm>

namespace vantrel {

namespace {

void note(const QString &line)
{
    log::debug(line, LogCategory::Navigation);
}

} // namespace

BoardNavigation::BoardNavigation(BoardState &board, const CardPreferences &preferences,
                                 NotificationCenter &notifications, Announcer &announcer, QObject *parent)
    : QObject(parent),
      m_board(board),
      m_preferences(preferences),
      m_notifications(notifications),
      m_announcer(announcer)
{
    notifications.observe(notifications::TaskFocusChanged, this, [this](const Notification &notification) {
        setFocusedTaskId(notification.object.toString());
    });
    notifications.observe(notifications::TaskTabNavigation, this,
                          [this](const Notification &) { handleTabNavigation(true); });
    connect(&board.selectionManager(), &SelectionManager::selectionChanged, this,
            &BoardNavigation::handleSelectionChanged);
    connect(&preferences, &CardPreferences::changed, this, &BoardNavigation::updateComponents);
}

void BoardNavigation::handleTab(bool forward)
{
    if (!walkComponents(forward)) handleTabNavigation(forward);
}

void BoardNavigation::handleArrowKey(int key)
{
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Left:
        handleTabNavigation(false);
        break;
    case Qt::Key_Down:
    case Qt::Key_Right:
        handleTabNavigation(true);
        break;
    default:
        note(QStringLiteral("Ignoring unknown default case"));
    }
}

bool BoardNavigation::handleEscape()
{
    if (focusedComponent() != KanbanCardFocus::None) {
        m_components.clearFocus();
        Q_EMIT focusedComponentChanged();
        return true;
    }
    if (m_board.selectionManager().selectedTaskIds().isEmpty()) {
        return false;
    }
    m_board.clearSelection();
    return true;
}

void BoardNavigation::handleCardTap(const QString &taskId, bool isToggle)
{
    if (isToggle) {
        m_board.toggleTaskSelection(taskId);
    } else {
        m_board.selectTask(taskId, false);
    }
    announceSelectionChange(taskId);
    m_notifications.post(notifications::TaskFocusChanged, taskId);
    m_notifications.post(notifications::TaskCardSelected, taskId);
}

void BoardNavigation::handleTabNavigation(bool forward)
{
    const QStringList selected = m_board.selectionManager().selectedTaskIds();
    if (selected.isEmpty()) {
        forward ? focusFirstTaskInBoard() : focusLastTaskInBoard();
        return;
    }
    if (m_focusedTaskId.isEmpty()) {
        note(u"Setting focus to match selection: " + selected.first());
        setFocusedTaskId(selected.first());
    }
    const TaskPosition *position = m_board.taskPositions().find(m_focusedTaskId);
    if (!position) {
        note(QStringLiteral("No task currently focused or task location not found"));
        forward ? focusFirstTaskInBoard() : focusLastTaskInBoard();
        return;
    }
    const SwimLaneId swimLane = m_board.resolvedSwimLaneId(*position);
    const Place place{m_board.columnManager().indexOf(position->columnId),
                      m_board.swimLaneManager().indexOf(swimLane)};
    if (place.column < 0) {
        note(u"Failed to find column index for column ID: " + position->columnId.text());
        return;
    }
    const WorkItems cell = m_board.tasksForColumnAndSwimLane(position->columnId, swimLane);
    const auto row = std::find_if(cell.begin(), cell.end(),
                                  [this](const WorkItemPtr &task) { return task->id() == m_focusedTaskId; });
    if (row == cell.end()) {
        note(u"Failed to find task index for task ID: " + m_focusedTaskId);
        // A filter hides the focused card: the walk begins anew rather than standing still for ever.
        forward ? focusFirstTaskInBoard() : focusLastTaskInBoard();
        return;
    }
    step(forward, place, cell, static_cast<int>(row - cell.begin()));
}

void BoardNavigation::step(bool forward, Place place, const WorkItems &cell, int row)
{
    if (forward) {
        if (row + 1 < static_cast<int>(cell.size())) {
            focusAndSelect(cell[static_cast<size_t>(row) + 1]);
        } else if (place.column + 1 == columnCount()) {
            navigateToNextSwimLane(place.swimLane);
        } else {
            navigateToNextColumn(place);
        }
    } else if (row > 0) {
        focusAndSelect(cell[static_cast<size_t>(row) - 1]);
    } else if (place.column == 0) {
        navigateToPreviousSwimLane(place.swimLane);
    } else {
        navigateToPreviousColumn(place);
    }
}

void BoardNavigation::navigateToNextColumn(Place from)
{
    for (Place place{from.column + 1, from.swimLane}; place.column < columnCount(); ++place.column) {
        if (const WorkItems tasks = tasksAt(place); !tasks.empty()) {
            focusAndSelect(tasks.front());
            return;
        }
        note(u"Column " + m_board.columnManager().columns()[static_cast<size_t>(place.column)].name +
             u" is empty, checking next column");
    }
    note(QStringLiteral("No tasks found in any subsequent columns in this swimlane"));
    navigateToNextSwimLane(from.swimLane);
}

void BoardNavigation::navigateToPreviousColumn(Place from)
{
    for (Place place{from.column - 1, from.swimLane}; place.column >= 0; --place.column) {
        if (const WorkItems tasks = tasksAt(place); !tasks.empty()) {
            focusAndSelect(tasks.back());
            return;
        }
        note(u"Column " + m_board.columnManager().columns()[static_cast<size_t>(place.column)].name +
             u" is empty, checking previous column");
    }
    note(QStringLiteral("No tasks found in any previous columns in this swimlane"));
    navigateToPreviousSwimLane(from.swimLane);
}

void BoardNavigation::navigateToNextSwimLane(int fromSwimLane)
{
    if (fromSwimLane < 0) {
        note(QStringLiteral("Could not find index of current swimlane"));
        return;
    }
    for (int lane = fromSwimLane + 1; lane < swimLaneCount(); ++lane) {
        if (!m_board.swimLaneManager().swimLanes()[static_cast<size_t>(lane)].isExpanded) {
            continue;
        }
        for (int column = 0; column < columnCount(); ++column) {
            if (const WorkItems tasks = tasksAt({column, lane}); !tasks.empty()) {
                focusAndSelect(tasks.front());
                return;
            }
        }
    }
    note(QStringLiteral("No tasks found in any subsequent swimlanes"));
}

void BoardNavigation::navigateToPreviousSwimLane(int fromSwimLane)
{
    if (fromSwimLane < 0) {
        note(QStringLiteral("Could not find index of current swimlane"));
        return;
    }
    for (int lane = fromSwimLane - 1; lane >= 0; --lane) {
        if (!m_board.swimLaneManager().swimLanes()[static_cast<size_t>(lane)].isExpanded) {
            continue;
        }
        for (int column = columnCount() - 1; column >= 0; --column) {
            if (const WorkItems tasks = tasksAt({column, lane}); !tasks.empty()) {
                focusAndSelect(tasks.back());
                return;
            }
        }
    }
    note(QStringLiteral("No tasks found in any previous swimlanes"));
}

WorkItems BoardNavigation::tasksAt(Place place) const
{
    return m_board.tasksForColumnAndSwimLane(
        m_board.columnManager().columns()[static_cast<size_t>(place.column)].id,
        m_board.swimLaneManager().swimLanes()[static_cast<size_t>(place.swimLane)].id);
}

WorkItemPtr BoardNavigation::firstTaskInBoard() const
{
    for (int column = 0; column < columnCount(); ++column) {
        for (int lane = 0; lane < swimLaneCount(); ++lane) {
            const SwimLane &swimLane = m_board.swimLaneManager().swimLanes()[static_cast<size_t>(lane)];
            if (!swimLane.isExpanded) {
                note(swimLane.name + u" is not expanded, skipping");
            } else if (const WorkItems tasks = tasksAt({column, lane}); !tasks.empty()) {
                return tasks.front();
            }
        }
    }
    return nullptr;
}

WorkItemPtr BoardNavigation::lastTaskInBoard() const
{
    for (int column = columnCount() - 1; column >= 0; --column) {
        for (int lane = swimLaneCount() - 1; lane >= 0; --lane) {
            const SwimLane &swimLane = m_board.swimLaneManager().swimLanes()[static_cast<size_t>(lane)];
            if (!swimLane.isExpanded) {
                note(swimLane.name + u" is not expanded, skipping");
            } else if (const WorkItems tasks = tasksAt({column, lane}); !tasks.empty()) {
                return tasks.back();
            }
        }
    }
    return nullptr;
}

void BoardNavigation::focusFirstTaskInBoard()
{
    focusAndSelect(firstTaskInBoard());
}

void BoardNavigation::focusLastTaskInBoard()
{
    focusAndSelect(lastTaskInBoard());
}

void BoardNavigation::checkForInitialFocusableTask()
{
    const WorkItemPtr task = firstTaskInBoard();
    note(task ? u"Found initial focusable task: " + task->id()
              : QStringLiteral("No focusable tasks found in board"));
}

void BoardNavigation::focusAndSelect(const WorkItemPtr &task)
{
    if (!task) {
        note(QStringLiteral("No tasks found in any columns or swimlanes"));
        return;
    }
    setFocusedTaskId(task->id());
    m_board.selectTask(task->id(), false);
    note(u"Focus set to task: " + task->id());
}

void BoardNavigation::setFocusedTaskId(const QString &taskId)
{
    if (taskId == m_focusedTaskId) {
        return;
    }
    const QString previous = std::exchange(m_focusedTaskId, taskId);
    disconnect(m_taskConnection);
    m_components.initializeCachedComponents({});
    if (const WorkItemPtr task = m_board.task(taskId)) {
        m_components.initializeCachedComponents(visibleComponents(cardContent(*task, m_preferences.rules())));
        m_taskConnection = connect(task.get(), &WorkItem::changed, this, &BoardNavigation::updateComponents);
    }
    Q_EMIT focusedTaskChanged(previous);
    Q_EMIT focusedComponentChanged();
}

bool BoardNavigation::walkComponents(bool forward)
{
    if (!m_board.selectionManager().isSelected(m_focusedTaskId) ||
        !m_components.handleComponentNavigation(!forward)) {
        return false;
    }
    Q_EMIT focusedComponentChanged();
    m_announcer.announce(tr("%1 focused").arg(accessibilityName(focusedComponent())));
    return true;
}

void BoardNavigation::announceSelectionChange(const QString &taskId)
{
    const QStringList &selected = m_board.selectionManager().selectedTaskIds();
    const WorkItemPtr task = m_board.task(taskId);
    if (selected.isEmpty()) {
        m_announcer.announce(tr("All tasks deselected"));
    } else if (selected.size() > 1) {
        m_announcer.announce(tr("%1 tasks selected").arg(selected.size()));
    } else if (task) {
        m_announcer.announce(
            (selected.contains(taskId) ? tr("%1 selected") : tr("%1 deselected")).arg(task->name()));
    }
}

void BoardNavigation::handleSelectionChanged()
{
    if (focusedComponent() == KanbanCardFocus::None ||
        m_board.selectionManager().isSelected(m_focusedTaskId)) {
        return;
    }
    m_components.clearFocus();
    Q_EMIT focusedComponentChanged();
}

void BoardNavigation::updateComponents()
{
    const WorkItemPtr task = m_board.task(m_focusedTaskId);
    if (!task) {
        return;
    }
    const KanbanCardFocus::Value before = focusedComponent();
    m_components.updateCachedComponents(visibleComponents(cardContent(*task, m_preferences.rules())));
    if (focusedComponent() != before) Q_EMIT focusedComponentChanged();
}

} // namespace vantrel
