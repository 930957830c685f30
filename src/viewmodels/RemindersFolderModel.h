#pragma once

#include "feedback/DesktopPorts.h"
#include "foundations/NotificationCenter.h"
#include "foundations/UserDefaults.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/**
 * The choice of the folder whose task lists are the reminders, on desktops that have none of their own. GUI
 * thread; owned by AppViewModel.
 */
class RemindersFolderModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    /** True if reminders are switched on, and come from a folder. */
    Q_PROPERTY(bool offered READ isOffered NOTIFY changed)
    /** Where the choice begins: the present folder, or the user's home. */
    Q_PROPERTY(QUrl startFolder READ startFolder NOTIFY changed)
    /** The present folder as a path; empty if none is chosen. */
    Q_PROPERTY(QString path READ path NOTIFY changed)
public:
    RemindersFolderModel(UserDefaults &defaults, NotificationCenter &notifications, DesktopFamily desktop,
                         QObject *parent = nullptr);

    bool isOffered() const;
    QUrl startFolder() const;
    QString path() const;

    /** Takes the folder, and has the tasks loaded anew. */
    Q_INVOKABLE void choose(const QUrl &folder);

Q_SIGNALS:
    void changed();

private:
    UserDefaults &m_defaults;
    NotificationCenter &m_notifications;
    const DesktopFamily m_desktop;
};

} // namespace vantrel
