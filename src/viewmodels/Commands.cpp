#include "viewmodels/Commands.h"

#include "foundations/DefaultsKeys.h"

namespace vantrel {

namespace {

using Menu = CommandInfo::Menu;

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
    case Menu::Hidden:
        break;
    }
    return {};
}

} // namespace

Command::Command(const CommandInfo &info, DesktopFamily desktop, std::function<void()> action,
                 QObject *parent)
    : QObject(parent), m_info(info), m_desktop(desktop), m_action(std::move(action))
{
}

QString Command::title() const
{
    QString title = tr(m_info.title);
    if (m_desktop != DesktopFamily::Mac) {
        // The key stands beside the title, as this desktop writes it.
        title.remove(QStringLiteral(" (⌘⇧↩)"));
    }
    return title;
}

QVariantList Command::sequences() const
{
    QVariantList sequences;
    for (const QString &sequence : m_info.sequences(m_desktop)) {
        sequences.append(sequence);
    }
    return sequences;
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

Commands::Commands(NotificationCenter &notifications, UserDefaults &defaults, DesktopFamily desktop,
                   QObject *parent)
    : QObject(parent), m_notifications(notifications), m_defaults(defaults)
{
    for (const CommandInfo &info : commandTable()) {
        const auto action = [this, &info] {
            run(info);
        };
        m_commands.append(new Command(info, desktop, action, this));
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
    if (info.notification.text.isEmpty()) {
        Q_EMIT windowCommandRequested(info.id.toString());
        return;
    }
    if (info.id == u"toggleProjectDisplay") {
        m_defaults.set(keys::ShowProjectInfo, !m_defaults.boolean(keys::ShowProjectInfo).value_or(true));
    }
    m_notifications.post(info.notification, info.index >= 0 ? QVariant(info.index) : QVariant());
}

QVariantList Commands::all() const
{
    QVariantList all;
    for (Command *command : m_commands) {
        all.append(QVariant::fromValue<QObject *>(command));
    }
    return all;
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
