#pragma once

#include "foundations/NotificationCenter.h"
#include "foundations/UserDefaults.h"
#include "viewmodels/ViewMode.h"

#include <QKeySequence>
#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <vector>

namespace vantrel {

/** One row of the table of commands. */
struct CommandInfo
{
    enum class Menu { Task, View, Organize, Application };

    QStringView id;
    Menu menu = Menu::Task;
    const char *title = "";
    QStringView symbol;
    /** Portable texts, Ctrl being the Command key on macOS; several, separated by blanks. Empty: no key. */
    const char *macKeys = "";
    const char *linuxKeys = "";
    /** The view mode in which the command works; nothing means all. */
    std::optional<ViewMode> mode;
    NotificationName notification;
    /** The notification's object. */
    int index = -1;
    /** A user default that switches the command off. */
    QStringView preference;
    /** A key that is shown and not bound: the board's own key handler takes it. */
    const char *shownKey = "";
};

/** The whole table, in menu order. */
const std::vector<CommandInfo> &commandTable();

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
    Q_PROPERTY(QStringList sequences READ sequences CONSTANT)
    Q_PROPERTY(QString keys READ keys CONSTANT)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged)
public:
    Command(const CommandInfo &info, std::function<void()> action, QObject *parent);

    const CommandInfo &info() const { return m_info; }
    QString commandId() const { return m_info.id.toString(); }
    QString title() const;
    QString symbol() const { return m_info.symbol.toString(); }
    /** Portable texts of the keys that trigger the command here. */
    QStringList sequences() const;
    /** The first key as the desktop writes it, for menus and hints. */
    QString keys() const;
    bool isEnabled() const { return m_isEnabled; }
    void setEnabled(bool isEnabled);

    Q_INVOKABLE void trigger();

Q_SIGNALS:
    void enabledChanged();

private:
    const CommandInfo &m_info;
    std::function<void()> m_action;
    bool m_isEnabled = true;
};

/** All commands of the program, each enabled in its view mode only. GUI thread; owned by AppViewModel. */
class Commands : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QList<vantrel::Command *> all READ all CONSTANT)
    Q_PROPERTY(QVariantList menus READ menus CONSTANT)
public:
    Commands(NotificationCenter &notifications, UserDefaults &defaults, QObject *parent = nullptr);

    const QList<Command *> &all() const { return m_commands; }
    /** Maps with "title" and "commands", in menu order. */
    QVariantList menus() const;
    Q_INVOKABLE vantrel::Command *command(const QString &id) const;

    void setViewMode(ViewMode mode);

Q_SIGNALS:
    /** The user wants to leave the program. */
    void quitRequested();

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
