#include "viewmodels/CommandTable.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"

#include <QKeySequence>

#include <algorithm>

namespace vantrel {

namespace {

using Menu = CommandInfo::Menu;
using Table = std::vector<CommandInfo>;
namespace names = notifications;

/** A command that works in every view mode. */
CommandInfo everywhere(QStringView id, Menu menu, const char *title, QStringView symbol, const char *macKeys,
                       const char *linuxKeys, NotificationName notification = {})
{
    CommandInfo info;
    info.id = id;
    info.menu = menu;
    info.title = title;
    info.symbol = symbol;
    info.macKeys = macKeys;
    info.linuxKeys = linuxKeys;
    info.notification = notification;
    return info;
}

CommandInfo inMode(ViewMode mode, CommandInfo info)
{
    info.mode = mode;
    return info;
}

CommandInfo onBoard(QStringView id, Menu menu, const char *title, QStringView symbol, const char *macKeys,
                    const char *linuxKeys, NotificationName notification)
{
    return inMode(ViewMode::Visualize, everywhere(id, menu, title, symbol, macKeys, linuxKeys, notification));
}

CommandInfo whilePreferred(CommandInfo info, QStringView preference)
{
    info.preference = preference;
    return info;
}

Table taskCommands()
{
    return {
        everywhere(u"quickAdd", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Quick Add Task"), u"plus",
                   "Ctrl+N", "Ctrl+N", names::ShowQuickTaskEntry),
        everywhere(u"refresh", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Refresh Tasks"),
                   u"arrow.clockwise", "Ctrl+R", "Ctrl+R F5", names::RefreshTasksRequested),
        onBoard(u"importTasks", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Import Tasks from Text"),
                u"tray", "Ctrl+I", "Ctrl+I", names::ShowTaskImportView),
        onBoard(u"exportTasks", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Export Tasks as Text"),
                u"arrow.up.doc", "Ctrl+E", "Ctrl+E", names::ShowTaskExportView),
        onBoard(u"quickExportPlainTextTasks", Menu::Task,
                QT_TRANSLATE_NOOP("vantrel::Command", "Quick Export Plain Text Tasks"), u"doc.on.doc",
                "Ctrl+Alt+C", "Ctrl+Alt+C", names::QuickExportPlainTextTasks),
        onBoard(u"quickExportVisibleTasks", Menu::Task,
                QT_TRANSLATE_NOOP("vantrel::Command", "Quick Export Visible Tasks"), {}, "Ctrl+Alt+Shift+C",
                "Ctrl+Alt+Shift+C", names::QuickExportVisibleTasks),
    };
}

Table viewModeCommands()
{
    return {
        everywhere(u"switchToVisualize", Menu::View,
                   QT_TRANSLATE_NOOP("vantrel::Command", "Switch to Visualize View"),
                   infoOf(ViewMode::Visualize).symbol, "Meta+1", "Alt+1", names::SwitchToVisualizeView),
        everywhere(u"switchToAnalyze", Menu::View,
                   QT_TRANSLATE_NOOP("vantrel::Command", "Switch to Analyze View"),
                   infoOf(ViewMode::Analyze).symbol, "Meta+3", "Alt+3", names::SwitchToAnalyzeView),
        everywhere(u"switchToOptimize", Menu::View,
                   QT_TRANSLATE_NOOP("vantrel::Command", "Switch to Optimize View"),
                   infoOf(ViewMode::Optimize).symbol, "Meta+4", "Alt+4", names::SwitchToOptimizeView),
    };
}

Table boardViewCommands()
{
    return {
        onBoard(u"toggleProjectDisplay", Menu::View,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Project Display"), u"folder", "Ctrl+K",
                "Ctrl+K", names::ProjectDisplayToggled),
        onBoard(u"toggleBlocked", Menu::View,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Task Blocked Status"),
                u"exclamationmark.triangle", "Ctrl+B", "Ctrl+B", names::ToggleTaskBlockedRequested),
        onBoard(u"toggleFlag", Menu::View, QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Task Flag Status"),
                u"flag", "Ctrl+Shift+L", "Ctrl+Shift+L", names::ToggleTaskFlagRequested),
        onBoard(u"toggleTaskFocus", Menu::View,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Task Focus Mode"), u"eye", "Ctrl+Alt+F",
                "Ctrl+J", names::ToggleTaskFocusModeRequested),
        onBoard(u"zoomIn", Menu::View, QT_TRANSLATE_NOOP("vantrel::Command", "Zoom In"), {}, "Ctrl++",
                "Ctrl++ Ctrl+=", names::ZoomInRequested),
        onBoard(u"zoomOut", Menu::View, QT_TRANSLATE_NOOP("vantrel::Command", "Zoom Out"), {}, "Ctrl+-",
                "Ctrl+-", names::ZoomOutRequested),
        onBoard(u"resetZoom", Menu::View, QT_TRANSLATE_NOOP("vantrel::Command", "Reset Zoom"), {}, "Ctrl+0",
                "Ctrl+0", names::ResetZoomRequested),
    };
}

Table swimLaneCommands()
{
    constexpr QStringView Ids[] = {u"toggleSwimLane1", u"toggleSwimLane2", u"toggleSwimLane3",
                                   u"toggleSwimLane4", u"toggleSwimLane5"};
    const char *const titles[] = {QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 1"),
                                  QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 2"),
                                  QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 3"),
                                  QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 4"),
                                  QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 5")};
    const char *const sequences[] = {"Ctrl+1", "Ctrl+2", "Ctrl+3", "Ctrl+4", "Ctrl+5"};
    Table commands;
    for (int i = 0; i < 5; ++i) {
        commands.push_back(onBoard(Ids[i], Menu::View, titles[i], {}, sequences[i], sequences[i],
                                   names::ToggleSwimLaneExpansionRequested));
        commands.back().index = i;
    }
    return commands;
}

Table organizeCommands()
{
    return {
        onBoard(u"renameTask", Menu::Organize, QT_TRANSLATE_NOOP("vantrel::Command", "Rename Task"),
                u"pencil", "F2", "F2", names::StartTaskNameEditing),
        onBoard(u"moveUp", Menu::Organize, QT_TRANSLATE_NOOP("vantrel::Command", "Move Task Up"), {},
                "Ctrl+Meta+Up", "Ctrl+Shift+Up", names::MoveTaskUpRequested),
        onBoard(u"moveDown", Menu::Organize, QT_TRANSLATE_NOOP("vantrel::Command", "Move Task Down"), {},
                "Ctrl+Meta+Down", "Ctrl+Shift+Down", names::MoveTaskDownRequested),
        onBoard(u"moveToNextColumn", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Next Column"), u"arrow.right", "Ctrl+]",
                "Ctrl+] Ctrl+Shift+Right", names::MoveTaskToNextColumnRequested),
        onBoard(u"moveToPreviousColumn", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Previous Column"), {}, "Ctrl+[",
                "Ctrl+[ Ctrl+Shift+Left", names::MoveTaskToPreviousColumnRequested),
        onBoard(u"moveToPreviousSwimLane", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Previous Swimlane"), {}, "Alt+Shift+Up",
                "Ctrl+Shift+PgUp Alt+Shift+Up", names::MoveTaskToPreviousSwimLaneRequested),
        onBoard(u"moveToNextSwimLane", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Next Swimlane"), {}, "Alt+Shift+Down",
                "Ctrl+Shift+PgDown Alt+Shift+Down", names::MoveTaskToNextSwimLaneRequested),
        // Space itself is no shortcut, which would take it from buttons: the board's cards answer it.
        whilePreferred(onBoard(u"moveToNextColumnBySpace", Menu::Organize,
                               QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Next Column (Space)"), {},
                               "", "", names::MoveTaskToNextColumnRequested),
                       keys::EnableSpaceToMoveNext),
        whilePreferred(onBoard(u"moveToDone", Menu::Organize,
                               QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Done Column (⌘⇧↩)"),
                               u"checkmark.circle", "Ctrl+Shift+Return", "Ctrl+Shift+Return Ctrl+Shift+Enter",
                               names::CmdShiftEnterToCompleteRequested),
                       keys::EnableCmdShiftEnterToComplete),
    };
}

Table analyticsCommands()
{
    return {
        inMode(ViewMode::Analyze,
               everywhere(u"refreshAnalytics", Menu::Organize,
                          QT_TRANSLATE_NOOP("vantrel::Command", "Refresh Analytics"), u"arrow.clockwise",
                          "Ctrl+Shift+R", "Ctrl+Shift+R", names::RefreshTasksRequested)),
        inMode(ViewMode::Optimize,
               everywhere(u"refreshOptimization", Menu::Organize,
                          QT_TRANSLATE_NOOP("vantrel::Command", "Refresh Optimization Data"),
                          u"arrow.clockwise", "Ctrl+Shift+R", "Ctrl+Shift+R", names::RefreshTasksRequested)),
    };
}

Table windowCommands()
{
    return {
        everywhere(u"nextPane", Menu::Application, QT_TRANSLATE_NOOP("vantrel::Command", "Next Pane"), {},
                   "F6", "F6"),
        everywhere(u"previousPane", Menu::Application, QT_TRANSLATE_NOOP("vantrel::Command", "Previous Pane"),
                   {}, "Shift+F6", "Shift+F6"),
        everywhere(u"menu", Menu::Hidden, QT_TRANSLATE_NOOP("vantrel::Command", "Menu"), {}, "F10", "F10"),
        everywhere(u"quit", Menu::Application, QT_TRANSLATE_NOOP("vantrel::Command", "Quit Vantrel"), {},
                   "Ctrl+Q", "Ctrl+Q"),
    };
}

} // namespace

QStringList CommandInfo::sequences(DesktopFamily desktop) const
{
    const char *const keys = desktop == DesktopFamily::Mac ? macKeys : linuxKeys;
    return QString::fromLatin1(keys).split(u' ', Qt::SkipEmptyParts);
}

QString CommandInfo::keys(DesktopFamily desktop) const
{
    return QKeySequence::fromString(sequences(desktop).value(0), QKeySequence::PortableText)
        .toString(QKeySequence::NativeText);
}

const CommandInfo &commandInfo(QStringView id)
{
    const std::vector<CommandInfo> &table = commandTable();
    const auto found =
        std::find_if(table.begin(), table.end(), [id](const CommandInfo &info) { return info.id == id; });
    Q_ASSERT(found != table.end());
    return *found;
}

const std::vector<CommandInfo> &commandTable()
{
    static const Table table = [] {
        Table all;
        for (const Table &group :
             {taskCommands(), viewModeCommands(), boardViewCommands(), swimLaneCommands(), organizeCommands(),
              analyticsCommands(), windowCommands()}) {
            all.insert(all.end(), group.begin(), group.end());
        }
        return all;
    }();
    return table;
}

} // namespace vantrel
