#include "viewmodels/RemindersFolderModel.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

#include <QDir>

namespace vantrel {

RemindersFolderModel::RemindersFolderModel(UserDefaults &defaults, NotificationCenter &notifications,
                                           DesktopFamily desktop, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_notifications(notifications), m_desktop(desktop)
{
    connect(&m_defaults, &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key == keys::RemindersFolder || key == keys::IsRemindersEnabled) {
            Q_EMIT changed();
        }
    });
}

bool RemindersFolderModel::isOffered() const
{
    return m_desktop != DesktopFamily::Mac && m_defaults.boolean(keys::IsRemindersEnabled).value_or(false);
}

QUrl RemindersFolderModel::startFolder() const
{
    return QUrl::fromLocalFile(path().isEmpty() ? QDir::homePath() : path());
}

QString RemindersFolderModel::path() const
{
    return m_defaults.text(keys::RemindersFolder).value_or(QString());
}

void RemindersFolderModel::choose(const QUrl &folder)
{
    if (!folder.isLocalFile()) {
        return;
    }
    log::info(QStringLiteral("The folder of the reminders was chosen"));
    m_defaults.set(keys::RemindersFolder, QDir(folder.toLocalFile()).absolutePath());
    m_notifications.post(notifications::TaskSourceConfigurationChanged);
    m_notifications.post(notifications::RefreshTasksRequested);
}

} // namespace vantrel
