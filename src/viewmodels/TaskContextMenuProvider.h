#pragma once

#include "feedback/DesktopPorts.h"
#include "sources/TaskManagerProtocol.h"
#include "viewmodels/ContextMenuEntry.h"

#include <QStringList>

namespace vantrel {

class BoardState;
class TaskContextMenuActions;

/** What a menu asks of the screen on which it stands. */
struct TaskMenuScreen
{
    /** A Mac alone has programs that answer the links of outside tasks. */
    DesktopFamily desktop = DesktopFamily::Linux;
    std::function<void(const QString &taskId)> rename;
    std::function<void(const QString &taskId)> editBlockReason;
    std::function<void(const QStringList &taskIds)> askToDelete;
    std::function<void()> showExportDialog;
};

/** Makes the menus of cards: what they offer depends on the source of the task, its state and the selection.
 * Owned by TaskContextMenu. */
class TaskContextMenuProvider
{
public:
    TaskContextMenuProvider(BoardState &board, TaskContextMenuActions &actions, TaskMenuScreen screen);

    /** The menu of a card, or of the selection of several that it is part of; empty for an unknown task. */
    ContextMenuEntries menuFor(const QString &taskId) const;

private:
    ContextMenuEntries singleTaskMenu(const WorkItemPtr &task) const;
    ContextMenuEntries plainTextMenu(const WorkItemPtr &task) const;
    ContextMenuEntries multiSelectionMenu(const WorkItems &tasks) const;

    void addRetry(const WorkItemPtr &task, ContextMenuEntries &menu) const;
    void addSourceActions(const WorkItemPtr &task, ContextMenuEntries &menu) const;
    void addCommonActions(const WorkItemPtr &task, ContextMenuEntries &menu) const;
    void addBlocking(const WorkItemPtr &task, ContextMenuEntries &menu) const;
    void addPlainTextSelection(const QStringList &ids, ContextMenuEntries &menu) const;
    bool canOpenLinks() const { return m_screen.desktop == DesktopFamily::Mac; }
    ContextMenuEntry withKeysOf(QStringView commandId, ContextMenuEntry entry) const;
    ContextMenuEntry renameEntry(const WorkItemPtr &task) const;
    ContextMenuEntry focusEntry(const WorkItemPtr &task) const;
    ContextMenuEntry flagEntry(const WorkItemPtr &task) const;
    ContextMenuEntry columnsEntry(const WorkItemPtr &task) const;
    ContextMenuEntry swimLanesEntry(const QString &title, const WorkItems &tasks) const;
    ContextMenuEntry prioritiesEntry(const WorkItems &tasks) const;

    BoardState &m_board;
    TaskContextMenuActions &m_actions;
    TaskMenuScreen m_screen;
};

} // namespace vantrel
