#include "board/BoardState.h"
#include "foundations/Log.h"

namespace vantrel {

void BoardState::addColumn(const Column &column)
{
    const QString described = column.name + u" of type " + rawValue(column.type);
    log::info(u"Adding new column: " + described, LogCategory::Columns);
    m_columnManager.addColumn(column);
    m_columnManager.refreshColumns();
    invalidateDerivedCollections();
    log::info(u"Successfully added new column: " + described, LogCategory::Columns);
}

void BoardState::updateColumn(const Column &column)
{
    log::info(u"Updating column: " + column.name, LogCategory::Columns);
    const Column *known = m_columnManager.column(column.id);
    const bool wasCompleted = known && known->isCompleted();
    if (!m_columnManager.updateColumn(column)) {
        return;
    }
    if (column.isCompleted() != wasCompleted) {
        setCompletion(tasksByColumn(column.id), column.isCompleted());
        updateTaskPositions(column.id);
    }
    m_columnManager.refreshColumns();
    invalidateDerivedCollections();
    log::info(u"Successfully updated column: " + column.name, LogCategory::Columns);
}

void BoardState::removeColumn(ColumnId id)
{
    log::info(u"Removing column with ID: " + id.text(), LogCategory::Columns);
    const Column *removed = m_columnManager.column(id);
    const QString name = removed ? removed->name : QStringLiteral("unknown");
    const Column *heir = m_columnManager.heirOf(id);
    if (!heir) {
        m_columnManager.removeColumn(id);
        return;
    }
    const ColumnId target = heir->id;
    const QString targetName = heir->name;
    const size_t count = tasksByColumn(id).size();
    const QSet<CellId> entered = relocate([id](const TaskPosition &place) { return place.columnId == id; },
                                          [target](TaskPosition &place) { place.columnId = target; });
    m_columnManager.removeColumn(id);
    storeCells(entered);
    log::info(u"Moved " + QString::number(count) + u" tasks to column: " + targetName, LogCategory::Columns);

    m_columnManager.refreshColumns();
    invalidateDerivedCollections();
    log::info(u"Successfully removed column: " + name, LogCategory::Columns);
}

bool BoardState::moveColumn(int from, int to)
{
    const QString described = u"from position " + QString::number(from) + u" to " + QString::number(to);
    log::info(u"Moving column " + described, LogCategory::Columns);
    if (!m_dragDropManager.moveColumn(from, to, m_columnManager.columns(),
                                      &ColumnManager::validateColumnTypeOrder)) {
        log::warning(QStringLiteral("Column move validation failed"), LogCategory::Columns);
        return false;
    }
    m_columnManager.applyMove(from, to);
    m_columnManager.refreshColumns();
    invalidateDerivedCollections();
    log::info(u"Successfully moved column " + described, LogCategory::Columns);
    return true;
}

} // namespace vantrel
