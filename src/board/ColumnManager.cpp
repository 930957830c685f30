#include "board/ColumnManager.h"

#include "board/rules/ColumnRules.h"
#include "board/rules/Ordering.h"
#include "foundations/Log.h"
#include "persistence/PersistenceManager.h"
#include "persistence/StableIds.h"

#include <algorithm>

namespace vantrel {

ColumnManager::ColumnManager(PersistenceManager &persistence, QObject *parent)
    : QObject(parent), m_persistence(persistence)
{
    if (std::optional<std::vector<Column>> stored = m_persistence.loadBoardConfiguration()) {
        m_columns = std::move(*stored);
        return;
    }
    // Saved at once: with fresh ids at each start no placement would survive one.
    m_columns = Column::defaultColumns();
    m_persistence.saveBoardConfiguration(m_columns);
}

const Column *ColumnManager::column(ColumnId id) const
{
    const int index = indexOf(id);
    return index >= 0 ? &m_columns[index] : nullptr;
}

int ColumnManager::indexOf(ColumnId id) const
{
    const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                    [id](const Column &column) { return column.id == id; });
    return found != m_columns.end() ? static_cast<int>(found - m_columns.begin()) : -1;
}

const Column *ColumnManager::firstOfType(ColumnType type) const
{
    const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                    [type](const Column &column) { return column.type == type; });
    return found != m_columns.end() ? &*found : nullptr;
}

void ColumnManager::addColumn(const Column &column)
{
    insertByType(column);
    renumberAndSave();
    log::info(u"Added new column: " + column.name + u" of type " + rawValue(column.type),
              LogCategory::Columns);
}

bool ColumnManager::updateColumn(const Column &column)
{
    const int index = indexOf(column.id);
    if (index < 0) {
        log::warning(u"Cannot update column - not found: " + column.id.text(), LogCategory::Columns);
        return false;
    }
    Column updated = column;
    // A role is given once: rows are stored under it.
    updated.stableId = m_columns[index].stableId;
    if (updated.type == m_columns[index].type) {
        m_columns[index] = updated;
    } else {
        m_columns.erase(m_columns.begin() + index);
        insertByType(updated);
    }
    renumberAndSave();
    log::info(u"Updated column: " + column.name, LogCategory::Columns);
    return true;
}

bool ColumnManager::canRemoveColumn(const Column &column) const
{
    const auto count = std::count_if(m_columns.begin(), m_columns.end(), [&column](const Column &candidate) {
        return candidate.type == column.type;
    });
    return count >= 2;
}

const Column *ColumnManager::heirOf(ColumnId id) const
{
    const Column *removed = column(id);
    if (!removed) {
        return nullptr;
    }
    const auto heir = std::find_if(m_columns.begin(), m_columns.end(), [removed](const Column &candidate) {
        return candidate.id != removed->id && candidate.type == removed->type;
    });
    return heir != m_columns.end() ? &*heir : nullptr;
}

bool ColumnManager::removeColumn(ColumnId id)
{
    const Column *heir = heirOf(id);
    if (!heir) {
        log::warning(QStringLiteral("Cannot remove column - would violate constraints"),
                     LogCategory::Columns);
        return false;
    }
    // Moved first: rows of tasks that are not loaded now, and every block, would go with the column.
    m_persistence.moveColumnTaskPositions(id, heir->id);
    m_persistence.deleteColumnTaskPositions(id);
    const auto removed = m_columns.begin() + indexOf(id);
    const QString name = removed->name;
    m_columns.erase(removed);
    renumberAndSave();
    log::info(u"Removed column: " + name, LogCategory::Columns);
    return true;
}

void ColumnManager::applyMove(int from, int to)
{
    moveElement(m_columns, from, to);
    renumberAndSave();
}

void ColumnManager::refreshColumns()
{
    log::debug(QStringLiteral("Refreshing columns from persistence"), LogCategory::Columns);
    std::optional<std::vector<Column>> stored = m_persistence.loadBoardConfiguration();
    if (stored && *stored != m_columns) {
        m_columns = std::move(*stored);
        Q_EMIT columnsChanged();
    }
}

bool ColumnManager::validateColumnTypeOrder(const std::vector<ColumnType> &types)
{
    return isValidColumnTypeOrder(types);
}

void ColumnManager::insertByType(const Column &column)
{
    m_columns.insert(m_columns.begin() + insertionIndex(m_columns, column.type), column);
}

void ColumnManager::renumberAndSave()
{
    numberByIndex(m_columns);
    assignStableIds(m_columns);
    m_persistence.saveBoardConfiguration(m_columns);
    Q_EMIT columnsChanged();
}

} // namespace vantrel
