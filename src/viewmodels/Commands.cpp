#include "viewmodels/Commands.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"

#include <QCoreApplication>

namespace vantrel {

namespace {

using Menu = CommandInfo::Menu;
namespace names = notifications;

#ifdef Q_OS_MACOS
constexpr bool IsMac = true;
#else
constexpr bool IsMac = false;
#endif

const char *const SwimLaneTitles[] = {QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 1"),
                                      QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 2"),
                                      QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 3"),
                                      QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 4"),
                                      QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Swimlane 5")};
const char *const SwimLaneKeys[] = {"Ctrl+1", "Ctrl+2", "Ctrl+3", "Ctrl+4", "Ctrl+5"};
constexpr QStringView SwimLaneIds[] = {u"toggleSwimLane1", u"toggleSwimLane2", u"toggleSwimLane3",
                                       u"toggleSwimLane4", u"toggleSwimLane5"};

CommandInfo everywhere(QStringView id, Menu menu, const char *title, QStringView symbol, const char *macKeys,
                       const char *linuxKeys, NotificationName notification)
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

CommandInfo onBoard(QStringView id, Menu menu, const char *title, QStringView symbol, const char *macKeys,
                    const char *linuxKeys, NotificationName notification)
{
    CommandInfo info = everywhere(id, menu, title, symbol, macKeys, linuxKeys, notification);
    info.mode = ViewMode::Visualize;
    return info;
}

std::vector<CommandInfo> viewCommands()
{
    std::vector<CommandInfo> commands{
        onBoard(u"toggleProjectDisplay", Menu::View,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Project Display"), u"folder", "Ctrl+K",
                "Ctrl+K", names::ProjectDisplayToggled),
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
    for (int i = 0; i < 5; ++i) {
        CommandInfo info = onBoard(SwimLaneIds[i], Menu::View, SwimLaneTitles[i], {}, SwimLaneKeys[i],
                                   SwimLaneKeys[i], names::ToggleSwimLaneExpansionRequested);
        info.index = i;
        commands.push_back(info);
    }
    return commands;
}

std::vector<CommandInfo> organizeCommands()
{
    CommandInfo bySpace = onBoard(u"moveToNextColumnBySpace", Menu::Organize,
                                  QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Next Column (Space)"),
                                  {}, "", "", names::MoveTaskToNextColumnRequested);
    bySpace.preference = keys::EnableSpaceToMoveNext;
    bySpace.shownKey = "Space";
    CommandInfo toDone = onBoard(
        u"moveToDone", Menu::Organize,
        QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Done Column (⌘⇧↩)"), u"checkmark.circle",
        "Ctrl+Shift+Return", "Ctrl+Shift+Return Ctrl+Shift+Enter", names::CmdShiftEnterToCompleteRequested);
    toDone.preference = keys::EnableCmdShiftEnterToComplete;
    return {
        onBoard(u"moveUp", Menu::Organize, QT_TRANSLATE_NOOP("vantrel::Command", "Move Task Up"), {},
                "Ctrl+Meta+Up", "Ctrl+Shift+Up", names::MoveTaskUpRequested),
        onBoard(u"moveDown", Menu::Organize, QT_TRANSLATE_NOOP("vantrel::Command", "Move Task Down"), {},
                "Ctrl+Meta+Down", "Ctrl+Shift+Down", names::MoveTaskDownRequested),
        onBoard(u"moveToNextColumn", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Move Task to Next Column"), {}, "Ctrl+]",
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
        bySpace,
        toDone,
        onBoard(u"toggleBlocked", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Task Blocked Status"),
                u"exclamationmark.triangle", "Ctrl+B", "Ctrl+B", names::ToggleTaskBlockedRequested),
        onBoard(u"toggleFlag", Menu::Organize,
                QT_TRANSLATE_NOOP("vantrel::Command", "Toggle Task Flag Status"), u"flag", "Ctrl+Shift+L",
                "Ctrl+Shift+L", names::ToggleTaskFlagRequested),
    };
}

std::vector<CommandInfo> makeTable()
{
    std::vector<CommandInfo> table{
        everywhere(u"quickAdd", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Quick Add Task"), u"plus",
                   "Ctrl+N", "Ctrl+N", names::ShowQuickTaskEntry),
        everywhere(u"refresh", Menu::Task, QT_TRANSLATE_NOOP("vantrel::Command", "Refresh Tasks"),
                   u"arrow.clockwise", "Ctrl+R", "Ctrl+R F5", names::RefreshTasksRequested),
    };
    for (const std::vector<CommandInfo> &group : {viewCommands(), organizeCommands()}) {
        table.insert(table.end(), group.begin(), group.end());
    }
    table.push_back(everywhere(u"quit", Menu::Application,
                               QT_TRANSLATE_NOOP("vantrel::Command", "Quit Vantrel"), {}, "Ctrl+Q", "Ctrl+Q",
                               {}));
    return table;
}

QString menuTitle(Menu menu)
{
    switch (menu) {
    case Menu::Task:
        return Commands::tr("Task");
    case Menu::View:
        return Commands::tr("View");
    case Menu::Organize:
        return Commands::tr("Organize");
    case Menu::Application:
        return Commands::tr("Vantrel");
    }
    Q_UNREACHABLE();
}

QStringList keysOf(const CommandInfo &info)
{
    return QString::fromLatin1(IsMac ? info.macKeys : info.linuxKeys).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

const std::vector<CommandInfo> &commandTable()
{
    static const std::vector<CommandInfo> table = makeTable();
    return table;
}

Command::Command(const CommandInfo &info, std::function<void()> action, QObject *parent)
    : QObject(parent), m_info(info), m_action(std::move(action))
{
}

QString Command::title() const
{
    QString title = tr(m_info.title);
    if (!IsMac) {
        // The key stands beside the title in its own place, as this desktop writes it.
        title.remove(QStringLiteral(" (⌘⇧↩)"));
    }
    return title;
}

QStringList Command::sequences() const
{
    return keysOf(m_info);
}

QString Command::keys() const
{
    const QStringList bound = keysOf(m_info);
    const QString first = bound.isEmpty() ? QString::fromLatin1(m_info.shownKey) : bound.first();
    return QKeySequence::fromString(first, QKeySequence::PortableText).toString(QKeySequence::NativeText);
}

void Command::setEnabled(bool isEnabled)
{
    if (m_isEnabled != isEnabled) {
        m_isEnabled = isEnabled;
        Q_EMIT enabledChanged();
    }
}

void Command::trigger()
{
    if (m_isEnabled) {
        m_action();
    }
}

Commands::Commands(NotificationCenter &notifications, UserDefaults &defaults, QObject *parent)
    : QObject(parent), m_notifications(notifications), m_defaults(defaults)
{
    for (const CommandInfo &info : commandTable()) {
        m_commands.append(new Command(
            info, [this, &info] { run(info); }, this));
    }
    connect(&defaults, &UserDefaults::valueChanged, this, &Commands::updateEnabled);
    updateEnabled();
}

void Commands::run(const CommandInfo &info)
{
    if (info.id == u"quit") {
        Q_EMIT quitRequested();
        return;
    }
    if (info.id == u"toggleProjectDisplay") {
        m_defaults.set(keys::ShowProjectInfo, !m_defaults.boolean(keys::ShowProjectInfo).value_or(true));
    }
    m_notifications.post(info.notification, info.index >= 0 ? QVariant(info.index) : QVariant());
}

QVariantList Commands::menus() const
{
    QVariantList menus;
    for (const Menu menu : {Menu::Task, Menu::View, Menu::Organize, Menu::Application}) {
        QVariantList commands;
        for (Command *command : m_commands) {
            if (command->info().menu == menu) {
                commands.append(QVariant::fromValue<QObject *>(command));
            }
        }
        menus.append(
            QVariantMap{{QStringLiteral("title"), menuTitle(menu)}, {QStringLiteral("commands"), commands}});
    }
    return menus;
}

Command *Commands::command(const QString &id) const
{
    for (Command *command : m_commands) {
        if (command->commandId() == id) return command;
    }
    return nullptr;
}

void Commands::setViewMode(ViewMode mode)
{
    m_mode = mode;
    updateEnabled();
}

void Commands::updateEnabled()
{
    for (Command *command : m_commands) {
        const CommandInfo &info = command->info();
        command->setEnabled((!info.mode || *info.mode == m_mode) && isPreferred(info));
    }
}

bool Commands::isPreferred(const CommandInfo &info) const
{
    return info.preference.isEmpty() || m_defaults.boolean(info.preference).value_or(true);
}

} // namespace vantrel
