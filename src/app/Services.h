#pragma once

#include "app/StorageNotices.h"
#include "board/BoardState.h"
#include "board/TaskBlockingManager.h"
#include "board/WIPMonitoringModifiers.h"
#include "feedback/Announcer.h"
#include "feedback/DesktopAppearance.h"
#include "feedback/DesktopPorts.h"
#include "feedback/SoundManager.h"
#include "feedback/ToastManager.h"
#include "foundations/AppConfig.h"
#include "foundations/Clock.h"
#include "foundations/FileSaver.h"
#include "foundations/Log.h"
#include "foundations/NotificationCenter.h"
#include "foundations/TimeManager.h"
#include "foundations/UserDefaults.h"
#include "persistence/BackgroundSaveIndicator.h"
#include "persistence/PersistenceManager.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "sources/omnifocus/OmniFocusTaskManager.h"
#include "sources/omnifocus/ScriptRunner.h"
#include "sources/plaintext/PlainTextTaskManager.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "sources/reminders/vdir/VdirReminderStore.h"
#include "viewmodels/AppViewModel.h"

#include <chrono>
#include <memory>

namespace vantrel {

/** The world around the program. All of it outlives Services. */
struct Ports
{
    Clock &clock;
    FileCalls &files;
    AnnouncementSink &announcements;
    SoundPlayer &sounds;
    DesktopAppearance &appearance;
    Clipboard &clipboard;
    UrlOpener &urls;
    Screen &screen;
    DesktopFamily desktop = DesktopFamily::Linux;
    /** nullptr in the testing environment only: sample tasks then stand in for OmniFocus. */
    ScriptRunner *scripts = nullptr;
    /** The platform's own reminders; without them, those of a folder that the user chooses. */
    ReminderStore *reminderStore = nullptr;
    /** Sources in place of the program's own. */
    TaskManagerProtocol *omniFocus = nullptr;
    TaskManagerProtocol *reminders = nullptr;
    /** The virtual file system of SQLite; empty for the system's own. */
    QByteArray databaseVfs = {};
};

/**
 * The whole program but its face: every service, built in the order of the layers, each given what it needs.
 *
 * There is nothing global beside it: two may live side by side on two directories. Built by main(), or by a
 * test on a temporary directory; GUI thread.
 */
struct Services
{
    Services(const AppConfig &appConfig, const Ports &ports);
    /** As shutDown(), if that was not called. */
    ~Services();
    Q_DISABLE_COPY_MOVE(Services)

    /**
     * Hands all that is waiting to the store, waits until it is written and closes the store, then until no
     * script runs any more. False if that took longer than `limit`, or failed: what was left is in the log,
     * and what was not finished stays open.
     */
    bool shutDown(std::chrono::milliseconds limit);

    const AppConfig config;
    Clock &clock;
    Clipboard &clipboard;
    UrlOpener &urls;
    const DesktopAppearance &appearance;
    const DesktopFamily desktop;

    FileSaver fileSaver;
    UserDefaults defaults;
    LogManager logManager;
    NotificationCenter notifications;
    TimeManager time;

    PersistenceManager persistence;
    BackgroundSaveIndicator saveIndicator;

    Announcer announcer;
    ToastManager toasts;
    SoundManager sounds;

    std::unique_ptr<AppleScriptManagerProtocol> omniFocusBridge;
    OmniFocusTaskManager omniFocus;
    VdirReminderStore reminderFolder;
    RemindersTaskManager reminders;
    PlainTextTaskManager plainText;
    TaskManagerFactory managers;
    TaskRepository repository;

    /** The program's board. Loading begins at once. */
    std::unique_ptr<BoardState> board;
    TaskBlockingManager blocking;
    WIPMonitoringModifiers wipMonitoring;
    StorageNotices storageNotices;

private:
    bool closeStore(std::chrono::steady_clock::time_point end);

    bool m_isShutDown = false;
};

/** What the view models need, out of all services. */
ViewModelServices viewModelServices(Services &services);

} // namespace vantrel
