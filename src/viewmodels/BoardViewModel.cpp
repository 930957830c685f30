#include "viewmodels/BoardViewModel.h"

#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"

#include <QQmlEngine>

#include <algorithm>

namespace vantrel {

BoardViewModel::BoardViewModel(const BoardViewServices &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_preferences(services.defaults, services.time),
      m_navigation(services.board, m_preferences, services.notifications, services.announcer),
      m_actions({services.board, services.blocking, services.sounds, services.toasts, services.announcer,
                 services.urls, services.clipboard}),
      m_commands({services.board, services.blocking, services.notifications, services.defaults,
                  services.sounds, services.toasts, m_actions}),
      m_drops(services.board),
      m_popover(services.board, services.blocking, m_preferences, services.announcer),
      m_nameEditor(services.board),
      m_contextMenu(services.board, m_actions, menuScreen()),
      m_celebrations(services.notifications, services.defaults, services.announcer)
{
    for (QObject *part : std::initializer_list<QObject *>{&m_columns, &m_swimLanes, &m_popover, &m_nameEditor,
                                                          &m_contextMenu, &m_celebrations}) {
        QQmlEngine::setObjectOwnership(part, QQmlEngine::CppOwnership);
    }
    connectBoard();
    connectCards();
    refresh();
}

BoardViewModel::~BoardViewModel() = default;

void BoardViewModel::connectBoard()
{
    BoardState &board = m_services.board;
    connect(&board, &BoardState::changed, this, &BoardViewModel::refresh);
    connect(&board, &BoardState::organized, this, &BoardViewModel::refresh);
    connect(&board.columnManager(), &ColumnManager::columnsChanged, this, &BoardViewModel::refresh);
    connect(&board.swimLaneManager(), &SwimLaneManager::swimLanesChanged, this, &BoardViewModel::refresh);
    connect(&board.filterManager(), &FilterManager::filtersChanged, this, [this] {
        refresh();
        Q_EMIT filtersChanged();
    });
    connect(&board, &BoardState::isolationChanged, this, [this] {
        refresh();
        Q_EMIT isolationChanged();
    });
    connect(&board, &BoardState::zoomLevelChanged, this, &BoardViewModel::zoomLevelChanged);
}

void BoardViewModel::connectCards()
{
    BoardState &board = m_services.board;
    connect(&board, &BoardState::taskFocusChanged, this, [this] { refreshCards({CellModel::IsDimmedRole}); });
    connect(&board, &BoardState::taskOperationStatusChanged, this,
            [this](const QString &taskId) { refreshCards({CellModel::OperationErrorRole}, {taskId}); });
    connect(&board.selectionManager(), &SelectionManager::selectionChanged, this,
            &BoardViewModel::handleSelectionChanged);
    connect(&m_navigation, &BoardNavigation::focusedTaskChanged, this, [this](const QString &previous) {
        refreshCards({CellModel::IsFocusedRole, CellModel::FocusedComponentRole},
                     {previous, focusedTaskId()});
        Q_EMIT focusedTaskChanged();
    });
    connect(&m_navigation, &BoardNavigation::focusedComponentChanged, this,
            [this] { refreshCards({CellModel::FocusedComponentRole}, {focusedTaskId()}); });
    auto &center = m_services.notifications;
    center.observe(notifications::StartTaskNameEditing, this,
                   [this](const Notification &) { m_nameEditor.begin(focusedTaskId()); });
    center.observe(notifications::CommitTaskNameEditing, this,
                   [this](const Notification &) { m_nameEditor.commit(); });
    connect(&m_preferences, &CardPreferences::changed, this, [this] { refreshCards({CellModel::CardRole}); });
    connect(&m_preferences, &CardPreferences::backgroundChanged, this, &BoardViewModel::backgroundChanged);
}

void BoardViewModel::refresh()
{
    // Cells first: the headers count what is in them.
    for (const SwimLane &lane : m_services.board.swimLaneManager().swimLanes()) {
        for (const Column &column : m_services.board.columnManager().columns()) {
            cellFor({lane.id, column.id}).update();
        }
    }
    refreshColumns();
    refreshSwimLanes();
    dropStaleCells();
}

void BoardViewModel::refreshColumns()
{
    const BoardState &board = m_services.board;
    std::vector<ColumnContent> contents;
    for (const Column &column : board.columnManager().columns()) {
        ColumnCounts counts;
        for (const SwimLane &lane : board.swimLaneManager().swimLanes()) {
            const CellId id{lane.id, column.id};
            counts.shown += cellFor(id).rowCount();
            counts.fullestCell = std::max(counts.fullestCell, board.taskPositions().incompleteCount(id));
        }
        counts.incomplete = board.calculateColumnTaskCount(column.id);
        contents.push_back(columnContent(column, counts));
    }
    m_columns.setColumns(contents);
}

void BoardViewModel::refreshSwimLanes()
{
    const BoardState &board = m_services.board;
    std::vector<SwimLaneContent> contents;
    for (const SwimLane &lane : board.swimLaneManager().swimLanes()) {
        contents.push_back(
            swimLaneContent(lane, {board.calculateSwimLaneIncompleteWorkItems(lane.id),
                                   board.calculateSwimLaneIncompletePercentage(lane.id),
                                   board.heightForSwimLane(lane.id), board.isSwimLaneIsolated(lane.id)}));
    }
    m_swimLanes.setSwimLanes(contents);
}

void BoardViewModel::dropStaleCells()
{
    const BoardState &board = m_services.board;
    const auto isStale = [&](CellId id) {
        return !board.swimLaneManager().swimLane(id.swimLane) || !board.columnManager().column(id.column);
    };
    m_cells.removeIf([&](const std::pair<const CellId &, CellModel *&> &cell) {
        // The view that showed it goes in this same turn, and lets go of it on its way.
        if (isStale(cell.first)) cell.second->deleteLater();
        return isStale(cell.first);
    });
}

CellModel &BoardViewModel::cellFor(CellId id)
{
    CellModel *&cell = m_cells[id];
    if (!cell) {
        const CellContext context{m_services.board, m_navigation, m_preferences, m_draggedTaskIds};
        cell = new CellModel(id, context, this);
        QQmlEngine::setObjectOwnership(cell, QQmlEngine::CppOwnership);
    }
    return *cell;
}

CellModel *BoardViewModel::cell(const QString &swimLaneId, const QString &columnId)
{
    const std::optional<SwimLaneId> lane = SwimLaneId::fromText(swimLaneId);
    const std::optional<ColumnId> column = ColumnId::fromText(columnId);
    return lane && column ? m_cells.value({*lane, *column}) : nullptr;
}

int BoardViewModel::focusedSwimLaneRow() const
{
    const TaskPosition *place = m_services.board.taskPositions().find(focusedTaskId());
    return place ? m_services.board.swimLaneManager().indexOf(m_services.board.resolvedSwimLaneId(*place))
                 : -1;
}

QString BoardViewModel::isolationTitle() const
{
    const std::optional<SwimLaneId> id = m_services.board.isolatedSwimLaneId();
    if (!id) {
        return {};
    }
    const SwimLane *lane = m_services.board.swimLaneManager().swimLane(*id);
    return lane ? tr("Focus Mode: %1").arg(lane->name) : tr("Focus Mode Active");
}

QVariantList BoardViewModel::activeTagFilters() const
{
    const FilterManager &filters = m_services.board.filterManager();
    QVariantList tags;
    for (const AvailableTag &tag : filters.availableTags()) {
        if (filters.selectedTagIDs().contains(tag.tagID)) {
            tags.append(
                QVariantMap{{QStringLiteral("id"), tag.tagID}, {QStringLiteral("name"), tag.tagName}});
        }
    }
    return tags;
}

// What the user does

bool BoardViewModel::handleKey(int key, int modifiers)
{
    switch (key) {
    case Qt::Key_Tab:
        m_navigation.handleTab(!(modifiers & Qt::ShiftModifier));
        return true;
    case Qt::Key_Backtab:
        m_navigation.handleTab(false);
        return true;
    case Qt::Key_Escape:
        return m_navigation.handleEscape();
    default:
        break;
    }
    const bool isMenuKey = key == Qt::Key_Menu || (key == Qt::Key_F10 && modifiers == Qt::ShiftModifier);
    if (isMenuKey && !focusedTaskId().isEmpty()) {
        openContextMenu(focusedTaskId());
        return true;
    }
    if ((modifiers & ~Qt::KeypadModifier) != Qt::NoModifier) {
        return false;
    }
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        m_navigation.handleArrowKey(key);
        return true;
    case Qt::Key_Space:
        return handleSpace();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        handleReturn();
        return true;
    default:
        return false;
    }
}

/** Return asks the part of the card that has the focus for more. */
void BoardViewModel::handleReturn()
{
    const KanbanCardFocus::Value part = m_navigation.focusedComponent();
    if (part == KanbanCardFocus::Name) {
        m_nameEditor.begin(focusedTaskId());
    } else if (const WorkItemPtr task = m_services.board.task(focusedTaskId());
               task && !m_popover.open(task->id(), part)) {
        m_actions.openInSource(*task);
    }
}

bool BoardViewModel::handleSpace()
{
    const bool isWanted = m_services.defaults.boolean(keys::EnableSpaceToMoveNext).value_or(true);
    const bool isCardFocused =
        !focusedTaskId().isEmpty() && m_navigation.focusedComponent() == KanbanCardFocus::None;
    if (!isWanted || !isCardFocused || m_services.board.selectionManager().selectedTaskIds().size() != 1) {
        return false;
    }
    m_services.notifications.post(notifications::MoveTaskToNextColumnRequested);
    return true;
}

void BoardViewModel::tapCard(const QString &taskId, bool isToggle)
{
    m_navigation.handleCardTap(taskId, isToggle);
}

void BoardViewModel::openContextMenu(const QString &taskId)
{
    if (!m_services.board.selectionManager().selectedTaskIds().contains(taskId)) tapCard(taskId, false);
    m_contextMenu.open(taskId);
}

TaskMenuScreen BoardViewModel::menuScreen()
{
    TaskMenuScreen screen;
    screen.desktop = m_services.desktop;
    screen.rename = [this](const QString &taskId) {
        m_nameEditor.begin(taskId);
    };
    screen.editBlockReason = [this](const QString &taskId) {
        editBlockReason(taskId);
    };
    screen.askToDelete = [this](const QStringList &taskIds) {
        m_contextMenu.askToDelete(taskIds);
    };
    screen.showExportDialog = [this] {
        m_services.notifications.post(notifications::ShowTaskExportView);
    };
    return screen;
}

void BoardViewModel::editBlockReason(const QString &taskId)
{
    if (m_popover.open(taskId, KanbanCardFocus::Blocked)) m_popover.edit();
}

void BoardViewModel::retry(const QString &taskId)
{
    m_services.board.retryFailedOperation(taskId);
}

void BoardViewModel::appear()
{
    m_navigation.checkForInitialFocusableTask();
}

void BoardViewModel::toggleSwimLane(const QString &swimLaneId)
{
    if (const auto id = SwimLaneId::fromText(swimLaneId)) {
        m_services.board.swimLaneManager().toggleSwimLaneExpanded(*id);
    }
}

void BoardViewModel::toggleIsolation(const QString &swimLaneId)
{
    if (const auto id = SwimLaneId::fromText(swimLaneId)) m_services.board.isolateSwimLane(*id);
}

void BoardViewModel::clearIsolation()
{
    m_services.board.clearSwimLaneIsolation();
}

void BoardViewModel::setSwimLaneHeight(const QString &swimLaneId, double height)
{
    if (const auto id = SwimLaneId::fromText(swimLaneId)) {
        m_services.board.swimLaneManager().updateSwimLaneHeight(*id, height);
    }
}

double BoardViewModel::clampedHeight(double height)
{
    return std::clamp(height, SwimLaneManager::MinimumHeight, SwimLaneManager::MaximumHeight);
}

void BoardViewModel::removeTagFilter(const QString &tagId)
{
    m_services.board.filterManager().toggleTagFilter(tagId);
}

void BoardViewModel::clearTagFilters()
{
    m_services.board.filterManager().clearTagFilters();
}

// What the cards have to be told

void BoardViewModel::refreshCards(const QList<int> &roles)
{
    for (CellModel *cell : std::as_const(m_cells)) {
        cell->refreshState(roles);
    }
}

void BoardViewModel::refreshCards(const QList<int> &roles, const QStringList &ids)
{
    const Placements &places = m_services.board.taskPositions();
    for (const QString &id : ids) {
        const TaskPosition *place = places.find(id);
        CellModel *cell = place ? m_cells.value(places.shownCell(*place)) : nullptr;
        if (cell) cell->refreshState(roles, {id});
    }
}

void BoardViewModel::handleSelectionChanged()
{
    const QStringList before =
        std::exchange(m_selectedTaskIds, m_services.board.selectionManager().selectedTaskIds());
    QStringList changed;
    for (const QString &id : before) {
        if (!m_selectedTaskIds.contains(id)) changed.append(id);
    }
    for (const QString &id : std::as_const(m_selectedTaskIds)) {
        if (!before.contains(id)) changed.append(id);
    }
    refreshCards({CellModel::IsSelectedRole}, changed);
    Q_EMIT selectionChanged();
}

} // namespace vantrel
