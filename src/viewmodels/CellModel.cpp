#include "viewmodels/CellModel.h"

#include "board/rules/ColumnRules.h"

namespace vantrel {

CellModel::CellModel(CellId id, const CellContext &context, QObject *parent)
    : RowListModel(parent), m_id(id), m_context(context)
{
}

int CellModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant CellModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const WorkItem &task = m_rows[static_cast<size_t>(index.row())].task();
    const BoardState &board = m_context.board;
    const bool isFocused = m_context.navigation.focusedTaskId() == task.id();
    switch (role) {
    case CardRole:
        return QVariant::fromValue(cardContent(task, m_context.preferences.rules()));
    case IsSelectedRole:
        return board.selectionManager().isSelected(task.id());
    case IsFocusedRole:
        return isFocused;
    case FocusedComponentRole:
        return static_cast<int>(isFocused ? m_context.navigation.focusedComponent() : KanbanCardFocus::None);
    case IsDimmedRole:
        return board.isTaskFocusActive() && !board.isTaskFocused(task.id());
    case IsDraggedRole:
        return m_context.draggedTaskIds.contains(task.id());
    case OperationErrorRole: {
        const TaskMoveStatus status = board.taskOperationStatus(task.id());
        return status.state == TaskMoveStatus::State::Failure ? status.error : QString();
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> CellModel::roleNames() const
{
    return {{CardRole, "card"},
            {IsSelectedRole, "isSelected"},
            {IsFocusedRole, "isFocused"},
            {FocusedComponentRole, "focusedComponent"},
            {IsDimmedRole, "isDimmed"},
            {IsDraggedRole, "isDragged"},
            {OperationErrorRole, "operationError"}};
}

int CellModel::rowOf(const QString &taskId) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [&](const CellRow &candidate) { return rowId(candidate) == taskId; });
    return row == m_rows.end() ? -1 : static_cast<int>(row - m_rows.begin());
}

bool CellModel::isExceeded(const Column &column) const
{
    return isWIPLimitExceeded(column, column.wipLimitType == WIPLimitType::Column
                                          ? m_context.board.calculateColumnTaskCount(m_id.column)
                                          : m_context.board.taskPositions().incompleteCount(m_id));
}

void CellModel::setDropRow(int row)
{
    if (row == m_dropRow) {
        return;
    }
    m_dropRow = row;
    Q_EMIT dropRowChanged();
}

void CellModel::update()
{
    const quint64 revision = m_context.board.cellRevision(m_id);
    if (!m_isRead || revision != m_revision) {
        m_isRead = true;
        m_revision = revision;
        updateRows(m_rows, m_context.board.tasksForColumnAndSwimLane(m_id.column, m_id.swimLane),
                   [this](const WorkItemPtr &task) { return makeRow(task); });
    }
    updateTexts();
}

void CellModel::updateTexts()
{
    QString emptyText = m_context.board.filterManager().isFilterActive()
                            ? tr("No tasks match current filters")
                            : tr("Empty column");
    if (emptyText != m_emptyText) {
        m_emptyText = std::move(emptyText);
        Q_EMIT emptyTextChanged();
    }
    // The limit belongs to the column: what happens in another cell may exceed it.
    const Column *column = m_context.board.columnManager().column(m_id.column);
    const bool isWarned = column && isExceeded(*column);
    const bool isColumnWide = isWarned && column->wipLimitType == WIPLimitType::Column;
    QString warning = isWarned ? tr("WIP Limit Exceeded!") : QString();
    QString scope = isColumnWide ? tr("(Column-wide)") : QString();
    if (warning != m_warning || scope != m_warningScope) {
        m_warning = std::move(warning);
        m_warningScope = std::move(scope);
        Q_EMIT warningChanged();
    }
}

void CellModel::refreshState(const QList<int> &roles, const QStringList &ids)
{
    for (const QString &id : ids) {
        if (const int row = rowOf(id); row >= 0) {
            Q_EMIT dataChanged(index(row), index(row), roles);
        }
    }
}

void CellModel::refreshState(const QList<int> &roles)
{
    if (!m_rows.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1), roles);
}

CellRow CellModel::makeRow(const WorkItemPtr &task)
{
    const WorkItem *item = task.get();
    return CellRow(task, connect(item, &WorkItem::changed, this, [this, item] { handleTaskChanged(item); }));
}

void CellModel::handleTaskChanged(const WorkItem *task)
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [task](const CellRow &candidate) { return &candidate.task() == task; });
    if (row == m_rows.end()) {
        return;
    }
    const QModelIndex changed = index(static_cast<int>(row - m_rows.begin()));
    Q_EMIT dataChanged(changed, changed, {CardRole});
}

} // namespace vantrel
