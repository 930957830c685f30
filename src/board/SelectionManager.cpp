#include "board/SelectionManager.h"

namespace vantrel {

void SelectionManager::selectTask(const QString &id, bool extendSelection)
{
    if (isSelected(id) && (extendSelection || m_selectedTaskIds.size() == 1)) {
        return;
    }
    if (!extendSelection) {
        m_selectedTaskIds.clear();
        m_lookup.clear();
    }
    m_selectedTaskIds.append(id);
    m_lookup.insert(id);
    Q_EMIT selectionChanged();
}

void SelectionManager::deselectTask(const QString &id)
{
    if (m_lookup.remove(id)) {
        m_selectedTaskIds.removeOne(id);
        Q_EMIT selectionChanged();
    }
}

void SelectionManager::deselectAllTasks()
{
    if (!m_lookup.isEmpty()) {
        m_selectedTaskIds.clear();
        m_lookup.clear();
        Q_EMIT selectionChanged();
    }
}

void SelectionManager::toggleTaskSelection(const QString &id)
{
    if (isSelected(id)) {
        deselectTask(id);
    } else {
        selectTask(id, true);
    }
}

} // namespace vantrel
