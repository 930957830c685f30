#include "viewmodels/TaskContextMenu.h"

#include "board/BoardState.h"
#include "viewmodels/TaskContextMenuActions.h"

#include <utility>

namespace vantrel {

TaskContextMenu::TaskContextMenu(BoardState &board, TaskContextMenuActions &actions, TaskMenuScreen screen,
                                 QObject *parent)
    : QObject(parent), m_board(board), m_actions(actions), m_provider(board, actions, std::move(screen))
{
}

void TaskContextMenu::open(const QString &taskId)
{
    ContextMenuEntries entries = m_provider.menuFor(taskId);
    if (entries.empty()) {
        return;
    }
    m_entryActions.clear();
    number(entries);
    m_entries = std::move(entries);
    m_title = m_entries.front().isHeading ? m_entries.front().title : m_board.task(taskId)->name();
    Q_EMIT opened();
}

void TaskContextMenu::number(ContextMenuEntries &entries)
{
    for (ContextMenuEntry &entry : entries) {
        if (entry.action) {
            entry.number = static_cast<int>(m_entryActions.size());
            m_entryActions.push_back(std::move(entry.action));
        }
        number(entry.children);
    }
}

void TaskContextMenu::trigger(int number)
{
    if (number >= 0 && static_cast<size_t>(number) < m_entryActions.size()) {
        // A copy: what is done may open the next menu.
        const std::function<void()> action = m_entryActions[static_cast<size_t>(number)];
        action();
    }
}

QString TaskContextMenu::question() const
{
    switch (m_idsToDelete.size()) {
    case 0:
        return {};
    case 1:
        return tr("Delete this task?");
    default:
        return tr("Delete %1 tasks?").arg(m_idsToDelete.size());
    }
}

QString TaskContextMenu::questionDetails() const
{
    const WorkItemPtr task = m_idsToDelete.size() == 1 ? m_board.task(m_idsToDelete.front()) : nullptr;
    return task ? tr("“%1” is deleted for good.").arg(task->name()) : tr("They are deleted for good.");
}

void TaskContextMenu::askToDelete(const QStringList &taskIds)
{
    m_idsToDelete = taskIds;
    Q_EMIT questionChanged();
}

void TaskContextMenu::confirmDeletion()
{
    const QStringList ids = std::exchange(m_idsToDelete, {});
    if (ids.isEmpty()) {
        return;
    }
    Q_EMIT questionChanged();
    m_actions.deletePlainTextTasks(ids);
}

void TaskContextMenu::cancelDeletion()
{
    m_idsToDelete.clear();
    Q_EMIT questionChanged();
}

} // namespace vantrel
