#include "app/Services.h"

#include "foundations/NotificationNames.h"
#include "sources/mock/MockAppleScriptManagerProxy.h"
#include "sources/omnifocus/AppleScriptManager.h"

#include <functional>
#include <thread>

namespace vantrel {

namespace {

QString userDefaultsPath(const AppConfig &config)
{
    return config.filePath(config.isTesting() ? QStringLiteral("devUser-defaults.json")
                                              : QStringLiteral("user-defaults.json"));
}

std::unique_ptr<AppleScriptManagerProtocol> makeOmniFocusBridge(const AppConfig &config, const Ports &ports,
                                                                UserDefaults &defaults)
{
    if (ports.scripts) {
        return std::make_unique<AppleScriptManager>(*ports.scripts, defaults, ports.clock);
    }
    Q_ASSERT_X(config.isTesting(), "makeOmniFocusBridge", "a user's board takes no sample tasks");
    return std::make_unique<MockAppleScriptManagerProxy>(ports.clock);
}

/** No event loop runs any more: only other threads are waited for. */
bool waitUntil(std::chrono::steady_clock::time_point end, const std::function<bool()> &isDone)
{
    while (!isDone() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return isDone();
}

} // namespace

Services::Services(const AppConfig &appConfig, const Ports &ports)
    : config(appConfig),
      clock(ports.clock),
      clipboard(ports.clipboard),
      urls(ports.urls),
      appearance(ports.appearance),
      desktop(ports.desktop),
      fileSaver(ports.files),
      defaults(fileSaver, userDefaultsPath(config)),
      logManager(defaults),
      time(clock),
      persistence(config, defaults, fileSaver, clock, ports.databaseVfs),
      saveIndicator(clock),
      announcer(ports.announcements, clock),
      toasts(announcer, clock),
      sounds(ports.sounds, announcer, defaults, clock),
      omniFocusBridge(makeOmniFocusBridge(config, ports, defaults)),
      omniFocus(*omniFocusBridge, clock),
      reminderFolder(defaults, persistence, ports.files, clock),
      reminders(ports.reminderStore ? *ports.reminderStore : reminderFolder, defaults, notifications, clock),
      plainText(persistence, notifications, clock),
      managers(defaults, ports.omniFocus ? *ports.omniFocus : static_cast<TaskManagerProtocol &>(omniFocus),
               ports.reminders ? *ports.reminders : reminders, plainText),
      repository(managers, persistence, notifications, clock),
      board(BoardState::createDefault({.clock = clock,
                                       .notifications = notifications,
                                       .defaults = defaults,
                                       .persistence = persistence,
                                       .saveIndicator = saveIndicator,
                                       .managers = managers,
                                       .repository = repository,
                                       .sounds = sounds,
                                       .announcer = announcer,
                                       .toasts = toasts,
                                       .screen = ports.screen,
                                       .clipboard = ports.clipboard})),
      blocking(*board, persistence, repository, notifications),
      wipMonitoring(*board, notifications, toasts),
      storageNotices(persistence, defaults, toasts)
{
    const ReminderStore *store = ports.reminderStore ? ports.reminderStore : &reminderFolder;
    QObject::connect(store, &ReminderStore::changed, &repository, [this] {
        repository.invalidateCache();
        notifications.post(notifications::RefreshTasksRequested);
    });
    QObject::connect(store, &ReminderStore::problemFound, &storageNotices, &StorageNotices::tell);
}

Services::~Services()
{
    shutDown(std::chrono::seconds(10));
}

bool Services::shutDown(std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    if (!closeStore(end)) {
        return false;
    }
    if (!waitUntil(end, [this] { return !omniFocusBridge->isBusy(); })) {
        log::error(QStringLiteral("OmniFocus had not answered before the end"));
        return false;
    }
    return true;
}

bool Services::closeStore(std::chrono::steady_clock::time_point end)
{
    if (m_isShutDown) {
        return true;
    }
    board->persistenceQueue().handOver();
    // No event loop runs any more: only the threads that write are waited for.
    const auto pendingJobs = [this] {
        return persistence.pendingJobs() + reminderFolder.pendingJobs() + defaults.pendingJobs();
    };
    if (!waitUntil(end, [&pendingJobs] { return pendingJobs() == 0; })) {
        log::error(QStringLiteral("%1 changes could not be stored before the end").arg(pendingJobs()));
        return false;
    }
    persistence.cleanup();
    m_isShutDown = true;
    return true;
}

ViewModelServices viewModelServices(Services &services)
{
    return {.board = *services.board,
            .blocking = services.blocking,
            .repository = services.repository,
            .managers = services.managers,
            .notifications = services.notifications,
            .defaults = services.defaults,
            .clock = services.clock,
            .time = services.time,
            .announcer = services.announcer,
            .sounds = services.sounds,
            .toasts = services.toasts,
            .urls = services.urls,
            .clipboard = services.clipboard,
            .saveIndicator = services.saveIndicator,
            .appearance = services.appearance,
            .desktop = services.desktop};
}

} // namespace vantrel
