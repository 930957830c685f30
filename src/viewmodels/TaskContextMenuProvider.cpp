#include "viewmodels/TaskContextMenuProvider.h"

#include "board/BoardState.h"
#include "viewmodels/CommandTable.h"
#include "viewmodels/TaskContextMenuActions.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace vantrel {

namespace {

constexpr std::array PriorityChoices{ReminderPriority::None, ReminderPriority::Low, ReminderPriority::Medium,
                                     ReminderPriority::High};

QString tr(const char *text)
{
    return QCoreApplication::translate("vantrel::TaskContextMenu", text);
}

ContextMenuEntry separator()
{
    return {};
}

ContextMenuEntry enabledIf(bool isEnabled, ContextMenuEntry entry)
{
    entry.isEnabled = isEnabled;
    return entry;
}

ContextMenuEntry withHelp(ContextMenuEntry entry, const QString &help)
{
    entry.help = help;
    return entry;
}

ContextMenuEntry subMenu(const QString &title, const QString &symbol, ContextMenuEntries children)
{
    ContextMenuEntry entry{title, symbol};
    entry.isEnabled = !children.empty();
    entry.children = std::move(children);
    return entry;
}

bool areAll(const WorkItems &tasks, ItemClass kind)
{
    return std::all_of(tasks.begin(), tasks.end(),
                       [kind](const WorkItemPtr &task) { return itemClass(*task) == kind; });
}

QStringList idsOf(const WorkItems &tasks)
{
    QStringList ids;
    for (const WorkItemPtr &task : tasks) {
        ids.append(task->id());
    }
    return ids;
}

} // namespace

TaskContextMenuProvider::TaskContextMenuProvider(BoardState &board, TaskContextMenuActions &actions,
                                                 TaskMenuScreen screen)
    : m_board(board), m_actions(actions), m_screen(std::move(screen))
{
}

ContextMenuEntries TaskContextMenuProvider::menuFor(const QString &taskId) const
{
    const WorkItemPtr task = m_board.task(taskId);
    if (!task) {
        return {};
    }
    const QStringList &selected = m_board.selectionManager().selectedTaskIds();
    if (selected.contains(taskId)) {
        const WorkItems tasks = m_actions.tasksInBoardOrder(selected);
        if (tasks.size() > 1) {
            return multiSelectionMenu(tasks);
        }
    }
    return itemClass(*task) == ItemClass::PlainText ? plainTextMenu(task) : singleTaskMenu(task);
}

ContextMenuEntries TaskContextMenuProvider::singleTaskMenu(const WorkItemPtr &task) const
{
    ContextMenuEntries menu;
    addRetry(task, menu);
    addSourceActions(task, menu);
    menu.push_back(separator());
    addCommonActions(task, menu);
    addBlocking(task, menu);
    return menu;
}

void TaskContextMenuProvider::addRetry(const WorkItemPtr &task, ContextMenuEntries &menu) const
{
    const QString id = task->id();
    if (m_board.taskOperationStatus(id).state == TaskMoveStatus::State::Failure) {
        menu.push_back({tr("Retry"), QStringLiteral("arrow.clockwise"), [this, id] {
                            m_board.retryFailedOperation(id);
                        }});
        menu.push_back(separator());
    }
}

void TaskContextMenuProvider::addSourceActions(const WorkItemPtr &task, ContextMenuEntries &menu) const
{
    const auto open = [this, task] {
        m_actions.openInSource(*task);
    };
    const QString openSymbol = QStringLiteral("cursorarrow.and.square.on.square.dashed");
    const QString copySymbol = QStringLiteral("doc.on.doc");
    switch (itemClass(*task)) {
    case ItemClass::OmniFocus:
        menu.push_back(enabledIf(canOpenLinks(), {tr("Show in OmniFocus"), openSymbol, open}));
        menu.push_back({tr("Copy as Link"), copySymbol, [this, task] {
                            m_actions.copyLink(*task);
                        }});
        break;
    case ItemClass::Reminder:
        menu.push_back(enabledIf(canOpenLinks(), {tr("Open in Reminders"), openSymbol, open}));
        menu.push_back(prioritiesEntry({task}));
        menu.push_back({tr("Copy Task ID"), copySymbol, [this, task] {
                            m_actions.copyTaskId(*task);
                        }});
        break;
    default:
        menu.push_back(enabledIf(canOpenLinks() && task->appSpecificLink().isValid(),
                                 {tr("Open in Source App"), openSymbol, open}));
    }
}

void TaskContextMenuProvider::addCommonActions(const WorkItemPtr &task, ContextMenuEntries &menu) const
{
    menu.push_back(renameEntry(task));
    if (TaskContextMenuActions::supportsFlag(*task)) menu.push_back(flagEntry(task));
    menu.push_back(columnsEntry(task));
    menu.push_back(swimLanesEntry(tr("Send to Swimlane"), {task}));
    menu.push_back(focusEntry(task));
}

ContextMenuEntry TaskContextMenuProvider::withKeysOf(QStringView commandId, ContextMenuEntry entry) const
{
    entry.keys = commandInfo(commandId).keys(m_screen.desktop);
    return entry;
}

ContextMenuEntry TaskContextMenuProvider::renameEntry(const WorkItemPtr &task) const
{
    return withKeysOf(u"renameTask", {tr("Rename Task"), QStringLiteral("pencil"), [this, id = task->id()] {
                                          m_screen.rename(id);
                                      }});
}

ContextMenuEntry TaskContextMenuProvider::flagEntry(const WorkItemPtr &task) const
{
    return withKeysOf(u"toggleFlag",
                      {task->isFlagged() ? tr("Unflag") : tr("Flag"), QStringLiteral("flag"), [this, task] {
                           m_actions.toggleTaskFlag(task);
                       }});
}

ContextMenuEntry TaskContextMenuProvider::focusEntry(const WorkItemPtr &task) const
{
    if (m_board.isTaskFocusActive()) {
        return withKeysOf(u"toggleTaskFocus", {tr("Exit Focus Mode"), QStringLiteral("eye.fill"), [this] {
                                                   m_board.clearTaskFocus();
                                                   m_actions.announce(tr("Returning to previous view"));
                                               }});
    }
    return withKeysOf(u"toggleTaskFocus",
                      {tr("Focus on Task"), QStringLiteral("eye"), [this, id = task->id()] {
                           m_board.focusTask(id);
                       }});
}

ContextMenuEntry TaskContextMenuProvider::columnsEntry(const WorkItemPtr &task) const
{
    const TaskPosition *place = m_board.taskPositions().find(task->id());
    ContextMenuEntries columns;
    for (const Column &column : m_board.columnManager().columns()) {
        ContextMenuEntry entry{column.name,
                               column.isCompleted() ? QStringLiteral("checkmark.circle") : QString(),
                               [this, task, id = column.id] {
                                   m_actions.moveTaskToColumn(task, id);
                               }};
        entry.isChecked = place && place->columnId == column.id;
        columns.push_back(entry);
    }
    return subMenu(tr("Move to Column"), QStringLiteral("rectangle.split.3x1"), std::move(columns));
}

ContextMenuEntry TaskContextMenuProvider::swimLanesEntry(const QString &title, const WorkItems &tasks) const
{
    const QStringList ids = idsOf(tasks);
    ContextMenuEntries lanes;
    for (const SwimLane &lane : m_board.swimLaneManager().swimLanes()) {
        const auto isHere = [this, &lane](const QString &id) {
            const TaskPosition *place = m_board.taskPositions().find(id);
            return place && m_board.resolvedSwimLaneId(*place) == lane.id;
        };
        ContextMenuEntry entry{lane.name, lane.icon.value_or(QString()), [this, ids, id = lane.id] {
                                   m_actions.performBatchAction({BatchAction::Kind::MoveToSwimLane, id}, ids);
                               }};
        entry.isChecked = std::all_of(ids.begin(), ids.end(), isHere);
        lanes.push_back(entry);
    }
    return subMenu(title, QStringLiteral("arrow.right"), std::move(lanes));
}

ContextMenuEntry TaskContextMenuProvider::prioritiesEntry(const WorkItems &tasks) const
{
    const QStringList ids = idsOf(tasks);
    ContextMenuEntries priorities;
    for (const ReminderPriority priority : PriorityChoices) {
        ContextMenuEntry entry{displayName(priority), {}, [this, ids, priority] {
                                   m_actions.setReminderPriority(priority, ids);
                               }};
        entry.isChecked = std::all_of(tasks.begin(), tasks.end(), [priority](const WorkItemPtr &task) {
            return static_cast<const ReminderWorkItem &>(*task).priorityBand() == priority;
        });
        priorities.push_back(entry);
    }
    return subMenu(tr("Change Priority"), QStringLiteral("exclamationmark.circle.fill"),
                   std::move(priorities));
}

void TaskContextMenuProvider::addBlocking(const WorkItemPtr &task, ContextMenuEntries &menu) const
{
    // The board cannot block reminders.
    if (itemClass(*task) == ItemClass::Reminder) {
        return;
    }
    menu.push_back(separator());
    const QString id = task->id();
    if (task->isBlocked()) {
        menu.push_back(withKeysOf(
            u"toggleBlocked", {tr("Unblock"), QStringLiteral("exclamationmark.triangle.slash"), [this, task] {
                                   m_actions.unblockTask(*task);
                               }}));
        menu.push_back({tr("Edit Block Reason"), QStringLiteral("pencil"), [this, id] {
                            m_screen.editBlockReason(id);
                        }});
        return;
    }
    ContextMenuEntries reasons;
    for (const QString &reason : {tr("Waiting for response"), tr("Blocked by another task")}) {
        reasons.push_back({reason, {}, [this, task, reason] {
                               m_actions.blockTask(*task, reason);
                           }});
    }
    reasons.push_back({tr("Other Reason…"), QStringLiteral("pencil"), [this, task, id] {
                           if (m_actions.blockTask(*task, std::nullopt)) m_screen.editBlockReason(id);
                       }});
    menu.push_back(
        enabledIf(!task->isComplete(),
                  subMenu(tr("Block"), QStringLiteral("exclamationmark.triangle"), std::move(reasons))));
}

ContextMenuEntries TaskContextMenuProvider::plainTextMenu(const WorkItemPtr &task) const
{
    ContextMenuEntries menu;
    addRetry(task, menu);
    if (task->isComplete()) {
        menu.push_back({tr("Mark Incomplete"), QStringLiteral("square"), [this, task] {
                            m_actions.markTaskIncomplete(task);
                        }});
    } else {
        menu.push_back({tr("Mark Complete"), QStringLiteral("checkmark.square"), [this, task] {
                            m_actions.markTaskComplete(task);
                        }});
    }
    menu.push_back(renameEntry(task));
    menu.push_back(flagEntry(task));
    menu.push_back(columnsEntry(task));
    menu.push_back(swimLanesEntry(tr("Move to Swimlane"), {task}));
    menu.push_back(focusEntry(task));
    menu.push_back(separator());
    menu.push_back({tr("Copy Task Name"), QStringLiteral("doc.on.doc"), [this, task] {
                        m_actions.copyTaskName(*task);
                    }});
    menu.push_back({tr("Export as Text"), QStringLiteral("arrow.up.doc"), [this, task] {
                        m_actions.exportTask(*task);
                    }});
    addBlocking(task, menu);
    menu.push_back(separator());
    menu.push_back({tr("Delete Task…"), QStringLiteral("trash"), [this, ids = QStringList{task->id()}] {
                        m_screen.askToDelete(ids);
                    }});
    return menu;
}

ContextMenuEntries TaskContextMenuProvider::multiSelectionMenu(const WorkItems &tasks) const
{
    const QStringList ids = idsOf(tasks);
    const auto batch = [this, &ids](const QString &title, const QString &symbol, BatchAction::Kind kind) {
        return ContextMenuEntry{title, symbol, [this, ids, kind] {
                                    m_actions.performBatchAction({kind}, ids);
                                }};
    };
    using Kind = BatchAction::Kind;
    ContextMenuEntry heading{tr("%1 tasks selected").arg(tasks.size())};
    heading.isHeading = true;
    heading.isEnabled = false;
    ContextMenuEntries menu{
        heading,
        batch(tr("Move to Done"), QStringLiteral("checkmark.circle"), Kind::MarkDone),
        swimLanesEntry(tr("Send to Swimlane"), tasks),
        separator(),
        batch(tr("Flag"), QStringLiteral("flag"), Kind::Flag),
        batch(tr("Unflag"), {}, Kind::Unflag),
        batch(tr("Block"), QStringLiteral("exclamationmark.triangle"), Kind::BlockAll),
        batch(tr("Unblock"), QStringLiteral("exclamationmark.triangle.slash"), Kind::UnblockAll),
    };
    if (areAll(tasks, ItemClass::PlainText)) {
        addPlainTextSelection(ids, menu);
    } else if (areAll(tasks, ItemClass::OmniFocus)) {
        menu.push_back(separator());
        menu.push_back(enabledIf(canOpenLinks(), {tr("Open in OmniFocus"), {}, [this, ids] {
                                                      m_actions.openMultipleInOmniFocus(ids);
                                                  }}));
        menu.push_back({tr("Copy Links"), QStringLiteral("doc.on.doc"), [this, ids] {
                            m_actions.copyMultipleOmniFocusLinks(ids);
                        }});
    } else if (areAll(tasks, ItemClass::Reminder)) {
        menu.push_back(separator());
        menu.push_back(prioritiesEntry(tasks));
    }
    return menu;
}

void TaskContextMenuProvider::addPlainTextSelection(const QStringList &ids, ContextMenuEntries &menu) const
{
    menu.push_back(separator());
    menu.push_back(withHelp({tr("Export Selected as Text"), QStringLiteral("arrow.up.doc"),
                             [this] {
                                 m_actions.exportSelectedTasks();
                             }},
                            tr("Export selected tasks as markdown text")));
    menu.push_back(withHelp({tr("Advanced Export..."),
                             {},
                             [this] {
                                 m_screen.showExportDialog();
                             }},
                            tr("Show advanced export options")));
    menu.push_back(separator());
    menu.push_back(withHelp({tr("Delete Selected Tasks…"), QStringLiteral("trash"),
                             [this, ids] {
                                 m_screen.askToDelete(ids);
                             }},
                            tr("Delete selected plain text tasks permanently")));
}

} // namespace vantrel
