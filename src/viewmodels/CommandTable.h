#pragma once

#include "foundations/NotificationCenter.h"
#include "viewmodels/ViewMode.h"

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
};

/** The one table of commands, in menu order. It holds what works, nothing that is planned. */
const std::vector<CommandInfo> &commandTable();

} // namespace vantrel
