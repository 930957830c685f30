#pragma once

#include "feedback/DesktopPorts.h"
#include "foundations/UserDefaults.h"
#include "viewmodels/CommandTable.h"

#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace vantrel {

/**
 * One command that menu, toolbar and key share: two shortcuts of one key would answer neither. GUI thread;
 * owned by Commands.
 */
class Command : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QString commandId READ commandId CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QVariantList sequences READ sequences CONSTANT)
    Q_PROPERTY(QString keys READ keys CONSTANT)
    Q_PROPERTY(bool isForBoard READ isForBoard CONSTANT)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged)
public:
    Command(const CommandInfo &info, DesktopFamily desktop, std::function<void()> action, QObject *parent);

    const CommandInfo &info() const { return m_info; }
    QString commandId() const { return m_info.id.toString(); }
    QString title() const;
    QString symbol() const { return m_info.symbol.toString(); }
    /** Portable texts of the keys that trigger the command on this desktop. */
    QVariantList sequences() const;
    /** The first key as the desktop writes it, for menus and hints. */
    QString keys() const { return m_info.keys(m_desktop); }
    /** True for a command that acts on the cards of one view: keys typed into a text field are not meant. */
    bool isForBoard() const { return m_info.mode.has_value(); }
    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool isEnabled);

    Q_INVOKABLE void trigger();

Q_SIGNALS:
    void enabledChanged();

private:
    const CommandInfo &m_info;
    const DesktopFamily m_desktop;
    std::function<void()> m_action;
    bool m_isEnabled = true;
};

/** All commands of the program, each enabled in its view mode only. GUI thread; owned by AppViewModel. */
class Commands : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QVariantList all READ all CONSTANT)
    Q_PROPERTY(QVariantList menus READ menus CONSTANT)
public:
    Commands(NotificationCenter &notifications, UserDefaults &defaults, DesktopFamily desktop,
             QObject *parent = nullptr);

    /** Every Command, in the order of the table. */
    QVariantList all() const;
    /** Maps with "title" and "commands", in menu order. */
    QVariantList menus() const;
    /** nullptr if the table has no such command. */
    Q_INVOKABLE vantrel::Command *command(const QString &id) const;

    void setViewMode(ViewMode mode);

Q_SIGNALS:
    /** The user wants to leave the program. */
    void quitRequested();
    /** A command that only the window can carry out: "nextPane", "previousPane", "menu". */
    void windowCommandRequested(const QString &id);

private:
    void run(const CommandInfo &info);
    void updateEnabled();
    bool isPreferred(const CommandInfo &info) const;

    NotificationCenter &m_notifications;
    UserDefaults &m_defaults;
    QList<Command *> m_commands;
    ViewMode m_mode = ViewMode::Visualize;
};

} // namespace vantrel
