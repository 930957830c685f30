#include "viewmodels/PermissionHelp.h"

#include "sources/TaskManagerFactory.h"

namespace vantrel {

namespace {

bool speaksOfReminders(const QString &permissionMessage)
{
    return permissionMessage.contains(u"Reminders");
}

} // namespace

PermissionHelp::PermissionHelp(TaskManagerFactory &managers, UrlOpener &urls, DesktopFamily desktop,
                               QObject *parent)
    : QObject(parent), m_managers(managers), m_urls(urls), m_desktop(desktop)
{
}

QStringList PermissionHelp::steps() const
{
    if (!isGrantedInSettings()) {
        return {};
    }
    return {
        tr("1. Open System Settings"),
        tr("2. Go to Privacy & Security"),
        tr("3. Select Automation or Reminders"),
        tr("4. Enable access for Vantrel"),
    };
}

QStringList PermissionHelp::remindersGuidance(const QString &permissionMessage) const
{
    if (!isGrantedInSettings() || !speaksOfReminders(permissionMessage)) {
        return {};
    }
    return {
        tr("Reminders: Vantrel needs permission to access your Reminders."),
        tr("When you first use Reminders integration, macOS will ask for permission."),
        tr("If you don't see the permission dialog, you may need to grant access manually:"),
        tr("1. Open System Preferences"),
        tr("2. Go to Security & Privacy"),
        tr("3. Click on Privacy tab"),
        tr("4. Select Automation from the list"),
        tr("5. Find Vantrel and enable access to Reminders"),
        tr("6. Restart Vantrel completely"),
        tr("Note: You may need to quit and restart Vantrel after granting permissions."),
    };
}

void PermissionHelp::triggerPermissionDialog()
{
    for (TaskManagerProtocol *manager : m_managers.enabledManagers()) {
        manager->checkPermissions();
    }
}

void PermissionHelp::openSystemSettings(const QString &permissionMessage)
{
    const QString pane = speaksOfReminders(permissionMessage) ? QStringLiteral("Privacy_Reminders")
                                                              : QStringLiteral("Privacy_Automation");
    m_urls.open(QUrl(u"x-apple.systempreferences:com.apple.preference.security?" + pane));
}

} // namespace vantrel
