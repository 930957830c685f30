#pragma once

#include "feedback/DesktopPorts.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class TaskManagerFactory;

/** What the user can do about a missing permission on this desktop. GUI thread; owned by AppViewModel. */
class PermissionHelp : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool grantedInSettings READ isGrantedInSettings CONSTANT)
    Q_PROPERTY(QStringList steps READ steps CONSTANT)
public:
    PermissionHelp(TaskManagerFactory &managers, UrlOpener &urls, DesktopFamily desktop,
                   QObject *parent = nullptr);

    /** True where permissions are given in the desktop's settings. */
    bool isGrantedInSettings() const { return m_desktop == DesktopFamily::Mac; }
    /** The way through the desktop's settings; nothing where permissions are not given there. */
    QStringList steps() const;
    /** Lines that stand below a message which speaks of Reminders. */
    Q_INVOKABLE QStringList remindersGuidance(const QString &permissionMessage) const;
    /** Has every enabled source ask for its permission, where the desktop still lets it. */
    Q_INVOKABLE void triggerPermissionDialog();
    /** Opens the settings where `permissionMessage` says that something is missing. */
    Q_INVOKABLE void openSystemSettings(const QString &permissionMessage);

private:
    TaskManagerFactory &m_managers;
    UrlOpener &m_urls;
    const DesktopFamily m_desktop;
};

} // namespace vantrel
