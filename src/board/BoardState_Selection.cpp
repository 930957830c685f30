#include "board/BoardState.h"

namespace vantrel {

void BoardState::selectTask(const QString &id, bool extendSelection)
{
    m_selectionManager.selectTask(id, extendSelection);
    invalidateDerivedCollections();
}

void BoardState::deselectTask(const QString &id)
{
    m_selectionManager.deselectTask(id);
    invalidateDerivedCollections();
}

void BoardState::deselectAllTasks()
{
    m_selectionManager.deselectAllTasks();
    invalidateDerivedCollections();
}

void BoardState::toggleTaskSelection(const QString &id)
{
    m_selectionManager.toggleTaskSelection(id);
    invalidateDerivedCollections();
}

void BoardState::clearSelection()
{
    deselectAllTasks();
}

void BoardState::clearSelectionOnReload()
{
    deselectAllTasks();
}

} // namespace vantrel
