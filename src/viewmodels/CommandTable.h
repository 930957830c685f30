#pragma once

#include "feedback/DesktopPorts.h"
#include "foundations/NotificationCenter.h"
#include "viewmodels/ViewMode.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace vantrel {

/** One row of the table of commands: what it is called, where it stands, its keys and what it posts. */
struct CommandInfo
{
    enum class Menu { Task, View, Organize, Application, Hidden };

    QStringView id;
    Menu menu = Menu::Task;
    /** English, to be translated in the context of vantrel::Command. */
    const char *title = "";
    QStringView symbol;
    /** Portable texts, Ctrl being the Command key on a Mac; several, separated by blanks. Empty: no key. */
    const char *macKeys = "";
    const char *linuxKeys = "";
    /** The view mode in which the command works; nothing means all. */
    std::optional<ViewMode> mode;
    /** Without a name the command is one of the window's own: see Commands::windowCommandRequested(). */
    NotificationName notification;
    /** The notification's object. */
    int index = -1;
    /** A user default that switches the command off. */
    QStringView preference;

    /** Portable texts of the keys on that desktop. */
    QStringList sequences(DesktopFamily desktop) const;
    /** The first key as the desktop writes it, for menus and hints; empty without one. */
    QString keys(DesktopFamily desktop) const;
};

/** The one table of commands, in menu order. It holds what works, nothing that is planned. */
const std::vector<CommandInfo> &commandTable();

/** The row with that id, which must be there. */
const CommandInfo &commandInfo(QStringView id);

} // namespace vantrel
