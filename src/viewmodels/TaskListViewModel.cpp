#include "viewmodels/TaskListViewModel.h"

#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "viewmodels/LoadFailure.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

constexpr double SwitchDelay = 0.2;
constexpr double ProRequiredDelay = 0.5;
/** Seconds: there may be several lines to read. */
constexpr double MissingTasksDuration = 8.0;
constexpr QStringView FromSettings = u"fromSettings";

} // namespace

TaskListViewModel::TaskListViewModel(BoardState &board, TaskRepository &repository,
                                     TaskManagerFactory &factory, NotificationCenter &notifications,
                                     Announcer &announcer, ToastManager &toasts, Clock &clock,
                                     QObject *parent)
    : QObject(parent),
      m_board(board),
      m_repository(repository),
      m_factory(factory),
      m_notifications(notifications),
      m_announcer(announcer),
      m_toasts(toasts),
      m_clock(clock)
{
    updateCurrentTaskSources();
    observeRepository();
    observeSettings();
    observeCommands();
    log::debug(QStringLiteral("Using board state: %1 tasks & task sources: %2")
                   .arg(QString::number(m_board.taskCount()), m_currentTaskSources));
    // The board's own load tells its failures itself: none of an earlier attempt may outlive it.
    connect(&m_board, &BoardState::loadingChanged, this, [this] {
        if (m_board.loadingState() == BoardLoadingState::Loading && m_errorMessage) {
            m_errorMessage.reset();
            Q_EMIT stateChanged();
        }
    });
}

void TaskListViewModel::observe(NotificationName name, NotificationCenter::Handler handler)
{
    m_notifications.observe(name, this, std::move(handler));
}

void TaskListViewModel::observeRepository()
{
    observe(notifications::TaskLoadingComplete, [this](const Notification &) {
        m_clock.soon(this, [this] {
            log::debug(QStringLiteral("💀 Received task loading complete notification"));
            m_isLoading = false;
            Q_EMIT stateChanged();
        });
    });
    observe(notifications::TaskLoadingError, [this](const Notification &notification) {
        const QString text = notification.object.toString();
        m_clock.soon(this, [this, text] {
            log::debug(QStringLiteral("💀 Received task loading error notification"));
            m_isLoading = false;
            // What the run itself has found says more.
            if (!m_errorMessage) {
                m_errorMessage = text.isEmpty() ? tr("Unknown error occurred while loading tasks")
                                                : tr("Error loading tasks: %1").arg(text);
            }
            Q_EMIT stateChanged();
        });
    });
}

void TaskListViewModel::observeSettings()
{
    const auto onSettings = [this](NotificationName name, const QString &logLine) {
        observe(name, [this, logLine](const Notification &notification) {
            if (notification.object.toString() == FromSettings) {
                log::debug(logLine);
                refreshUI();
            }
        });
    };
    using namespace notifications;
    onSettings(ColumnsUpdated, QStringLiteral("ContentView: Columns updated from settings, refreshing UI"));
    onSettings(SwimlanesUpdated,
               QStringLiteral("ContentView: Swimlanes updated from settings, refreshing UI"));
    onSettings(BoardStateChanged, QStringLiteral("ContentView: Board state changed, refreshing UI"));
    observe(TagFilterUpdated, [this](const Notification &) {
        log::debug(QStringLiteral("ContentView: Tag filters updated, refreshing UI"));
        refreshUI();
    });
}

void TaskListViewModel::observeCommands()
{
    using namespace notifications;
    observe(RefreshTasksRequested, [this](const Notification &) { loadTasks(); });
    const auto onSwitch = [this](NotificationName name, ViewMode mode) {
        observe(name, [this, mode](const Notification &) { switchToViewMode(mode); });
    };
    onSwitch(SwitchToVisualizeView, ViewMode::Visualize);
    onSwitch(SwitchToPrioritizeView, ViewMode::Prioritize);
    onSwitch(SwitchToAnalyzeView, ViewMode::Analyze);
    onSwitch(SwitchToOptimizeView, ViewMode::Optimize);
}

void TaskListViewModel::loadTasks()
{
    switch (m_board.loadingState()) {
    case BoardLoadingState::NotLoaded:
        log::info(QStringLiteral("Skipping loadTasks() - BoardState not yet loaded"));
        return;
    case BoardLoadingState::Loading:
        log::info(QStringLiteral("Skipping loadTasks() - BoardState still loading"));
        return;
    case BoardLoadingState::Error:
        log::info(QStringLiteral("Skipping loadTasks() - BoardState in error state"));
        return;
    case BoardLoadingState::Loaded:
        break;
    }
    m_isLoading = true;
    m_errorMessage.reset();
    m_needsTaskManagerPermissions = false;
    m_permissionMessage.reset();
    m_tasks.clear();
    Q_EMIT stateChanged();

    log::info(
        QStringLiteral("💀💀💀 TASK FETCHING START - TaskListViewModel.loadTasks() using TaskRepository 💀💀💀"));
    log::info(u"💀 Available task managers from repository: " + m_repository.taskManagersDescription());
    if (m_repository.loadingState() == TaskRepositoryLoadingState::Loaded &&
        !m_repository.cachedTasks().empty()) {
        log::info(QStringLiteral("💀 Using cached tasks from repository"));
    }
    log::info(QStringLiteral("💀 Updating task sources from repository"));
    m_repository.reloadTaskManagers();
    updateCurrentTaskSources();
    launch(run(), QStringLiteral("Loading tasks"));
}

QCoro::Task<> TaskListViewModel::run()
{
    const QPointer<TaskListViewModel> self(this);
    log::info(QStringLiteral("💀 Checking if repository has any enabled task managers"));
    if (m_repository.taskManagers().empty() && !enableFallback()) {
        co_return;
    }
    log::info(QStringLiteral("💀 Starting task fetch process from repository"));
    log::info(QStringLiteral("💀 Fetching tasks from repository"));
    // A fallback may have changed them.
    m_repository.reloadTaskManagers();
    FetchedTasks fetched;
    std::exception_ptr error;
    try {
        fetched = co_await m_repository.fetchTasks(false);
    } catch (...) {
        error = std::current_exception();
    }
    if (!self) {
        co_return;
    }
    std::optional<QString> permissionIssue;
    if (error) {
        permissionIssue = handleFailure(judgeLoadFailure(error));
    } else {
        log::info(QStringLiteral("💀 Loaded %1 tasks from repository").arg(fetched.tasks.size()));
        tellOfMissingTasks(fetched);
    }
    finishRun(fetched, permissionIssue);
}

bool TaskListViewModel::enableFallback()
{
    log::info(QStringLiteral("💀 No task sources enabled - having repository enable Plain Text as fallback"));
    const bool hasFallback = m_repository.enablePlainTextAsFallback();
    updateCurrentTaskSources();
    if (!hasFallback) {
        handleError(tr("⚠️ No task sources are enabled. Please enable at least one source in Settings."));
    }
    return hasFallback;
}

std::optional<QString> TaskListViewModel::handleFailure(const LoadFailure &failure)
{
    switch (failure.kind) {
    case LoadFailure::Kind::Message:
        handleError(failure.text);
        break;
    case LoadFailure::Kind::PermissionMissing:
        return failure.text;
    case LoadFailure::Kind::ProRequired:
        switchToPlainText(failure.text);
        break;
    case LoadFailure::Kind::Other:
        log::error(u"Error loading tasks from repository: " + failure.text);
        break;
    }
    return std::nullopt;
}

void TaskListViewModel::finishRun(const FetchedTasks &fetched, const std::optional<QString> &permissionIssue)
{
    m_tasks = fetched.tasks;
    log::info(QStringLiteral("💀 All tasks loaded: %1 total tasks").arg(m_tasks.size()));
    log::info(QStringLiteral("💀 Updating board state with fetched tasks"));
    m_board.updateTasks(m_tasks, fetched.answeredSources);
    m_clock.soon(this, [this] {
        m_isLoading = false;
        Q_EMIT stateChanged();
    });
    if (permissionIssue) {
        m_needsTaskManagerPermissions = true;
        m_permissionMessage = permissionIssue;
    }
    log::info(QStringLiteral("💀💀💀 TASK FETCHING COMPLETE - Loaded total of %1 tasks via TaskRepository 💀💀💀")
                  .arg(m_tasks.size()));
    Q_EMIT stateChanged();
}

void TaskListViewModel::switchToPlainText(const QString &message)
{
    log::warning(
        QStringLiteral("OmniFocus Pro required but not available. Disabling OmniFocus as a task source."));
    m_errorMessage = message;
    TaskSourceConfiguration configuration = m_factory.getTaskSourceConfiguration();
    configuration.isOmniFocusEnabled = false;
    configuration.isPlainTextEnabled = true;
    m_factory.setTaskSourceConfiguration(configuration);
    m_repository.reloadTaskManagers();
    updateCurrentTaskSources();
    m_notifications.post(notifications::TaskSourceConfigurationChanged);
    m_clock.after(ProRequiredDelay, this, [this] { loadTasks(); });
}

void TaskListViewModel::tellOfMissingTasks(const FetchedTasks &fetched)
{
    const QString notice = noticeOfMissingTasks(fetched.failures);
    if (notice != m_toldOfMissingTasks && !notice.isEmpty()) {
        ToastManager::Options options;
        options.duration = MissingTasksDuration;
        m_toasts.show(notice, ToastManager::ToastStyle::Warning, options);
    }
    m_toldOfMissingTasks = notice;
}

void TaskListViewModel::refresh()
{
    m_toldOfMissingTasks.clear();
    loadTasks();
    m_announcer.announce(tr("Refreshing tasks"));
}

void TaskListViewModel::retry()
{
    m_announcer.announce(tr("Retrying to load tasks"));
    loadTasks();
}

void TaskListViewModel::continueWithout()
{
    m_needsTaskManagerPermissions = false;
    m_permissionMessage.reset();
    // The repository's own report of the same failure has nothing to add.
    m_errorMessage.reset();
    Q_EMIT stateChanged();
}

void TaskListViewModel::announceFocusOnRetry()
{
    m_announcer.announce(screen() == Screen::Permission ? tr("Focused on Try Again button")
                                                        : tr("Focused on Retry button"));
}

void TaskListViewModel::switchToViewMode(const QString &rawValue)
{
    for (const ViewMode mode : AvailableViewModes) {
        if (infoOf(mode).rawValue == rawValue) {
            switchToViewMode(mode);
        }
    }
}

void TaskListViewModel::switchToViewMode(ViewMode mode)
{
    if (std::find(AvailableViewModes.begin(), AvailableViewModes.end(), mode) == AvailableViewModes.end()) {
        return;
    }
    m_viewMode = mode;
    const QString label = infoOf(mode).label.toString();
    log::info(u"Switched to view mode: " + label);
    Q_EMIT viewModeChanged();
    m_announcer.announce(tr("Switched to %1 view").arg(label), AnnouncementPriority::High);
    m_clock.after(SwitchDelay, this, [this] {
        log::debug(QStringLiteral("Triggering SwimLane WIP count update after view mode change"));
        m_notifications.post(notifications::SwimLaneWIPCountsChanged,
                             QVariant::fromValue<QObject *>(&m_board));
    });
}

TaskListViewModel::Screen TaskListViewModel::screen() const
{
    if (m_isLoading) return Screen::Loading;
    if (m_needsTaskManagerPermissions) return Screen::Permission;
    if (m_errorMessage) return Screen::Error;
    return Screen::Content;
}

QVariantList TaskListViewModel::viewModes() const
{
    QVariantList modes;
    for (const ViewMode mode : AvailableViewModes) {
        const ViewModeInfo &info = infoOf(mode);
        const QString label = info.label.toString();
        modes.append(QVariantMap{{QStringLiteral("id"), info.rawValue.toString()},
                                 {QStringLiteral("label"), label},
                                 {QStringLiteral("symbol"), info.symbol.toString()},
                                 {QStringLiteral("help"), tr("Switch to %1 view").arg(label)}});
    }
    return modes;
}

bool TaskListViewModel::isRailVisible() const
{
    return AvailableViewModes.size() > 1 && screen() == Screen::Content;
}

QString TaskListViewModel::accessibleValue() const
{
    return tr("Task management interface with %1 view").arg(viewMode());
}

void TaskListViewModel::refreshUI()
{
    Q_EMIT refreshRequested();
    m_board.invalidateDerivedCollections();
}

void TaskListViewModel::handleError(const QString &message)
{
    log::error(message);
    m_errorMessage = message;
    m_isLoading = false;
    Q_EMIT stateChanged();
}

void TaskListViewModel::updateCurrentTaskSources()
{
    const QString description = m_repository.taskManagersDescription();
    m_currentTaskSources = description.isEmpty() ? tr("No sources enabled") : description;
}

} // namespace vantrel
