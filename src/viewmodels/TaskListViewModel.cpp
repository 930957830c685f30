#include "viewmodels/TaskListViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "sources/omnifocus/AppleScriptError.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

constexpr double SwitchDelay = 0.2;
constexpr double ProRequiredDelay = 0.5;
constexpr QStringView FromSettings = u"fromSettings";

/** Codes of the platform's automation errors that mean a missing permission. */
bool isPermissionCode(int code)
{
    return code == -600 || code == -1743 || code == -1728;
}

} // namespace

TaskListViewModel::TaskListViewModel(BoardState &board, TaskRepository &repository,
                                     TaskManagerFactory &factory, NotificationCenter &notifications,
                                     Announcer &announcer, Clock &clock, QObject *parent)
    : QObject(parent),
      m_board(board),
      m_repository(repository),
      m_factory(factory),
      m_notifications(notifications),
      m_announcer(announcer),
      m_clock(clock)
{
    updateCurrentTaskSources();
    observeNotifications();
    log::debug(u"Using board state with task sources: " + m_currentTaskSources);
}

void TaskListViewModel::observeNotifications()
{
    using namespace notifications;
    const auto on = [this](NotificationName name, NotificationCenter::Handler handler) {
        m_notifications.observe(name, this, std::move(handler));
    };
    on(RefreshTasksRequested, [this](const Notification &) { loadTasks(); });
    on(TaskLoadingComplete, [this](const Notification &) {
        m_clock.soon(this, [this] {
            log::debug(QStringLiteral("💀 Received task loading complete notification"));
            m_isLoading = false;
            Q_EMIT stateChanged();
        });
    });
    on(TaskLoadingError, [this](const Notification &notification) {
        const QString text = notification.object.toString();
        m_clock.soon(this, [this, text] {
            log::debug(QStringLiteral("💀 Received task loading error notification"));
            m_isLoading = false;
            m_errorMessage = text.isEmpty() ? tr("Unknown error occurred while loading tasks")
                                            : tr("Error loading tasks: %1").arg(text);
            Q_EMIT stateChanged();
        });
    });
    const auto onSettings = [this, on](NotificationName name, const QString &logLine) {
        on(name, [this, logLine](const Notification &notification) {
            if (notification.object.toString() == FromSettings) {
                log::debug(logLine);
                refreshUI();
            }
        });
    };
    onSettings(ColumnsUpdated, QStringLiteral("ContentView: Columns updated from settings, refreshing UI"));
    onSettings(SwimlanesUpdated,
               QStringLiteral("ContentView: Swimlanes updated from settings, refreshing UI"));
    onSettings(BoardStateChanged, QStringLiteral("ContentView: Board state changed, refreshing UI"));
    on(TagFilterUpdated, [this](const Notification &) {
        log::debug(QStringLiteral("ContentView: Tag filters updated, refreshing UI"));
        refreshUI();
    });
    on(SwitchToVisualizeView, [this](const Notification &) { switchToViewMode(ViewMode::Visualize); });
    on(SwitchToPrioritizeView, [this](const Notification &) { switchToViewMode(ViewMode::Prioritize); });
    on(SwitchToAnalyzeView, [this](const Notification &) { switchToViewMode(ViewMode::Analyze); });
    on(SwitchToOptimizeView, [this](const Notification &) { switchToViewMode(ViewMode::Optimize); });
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
    m_permissionIssues.clear();
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
    if (m_repository.taskManagers().empty()) {
        log::info(
            QStringLiteral("💀 No task sources enabled - having repository enable Plain Text as fallback"));
        const bool hasFallback = m_repository.enablePlainTextAsFallback();
        updateCurrentTaskSources();
        if (!hasFallback) {
            handleError(
                tr("⚠️ No task sources are enabled. Please enable at least one source in Settings."));
            co_return;
        }
    }
    const std::optional<FetchedTasks> fetched = co_await fetch();
    if (!self) {
        co_return;
    }
    m_tasks = fetched ? fetched->tasks : WorkItems();
    log::info(QStringLiteral("💀 All tasks loaded: %1 total tasks").arg(m_tasks.size()));
    log::info(QStringLiteral("💀 Updating board state with fetched tasks"));
    m_board.updateTasks(m_tasks, fetched ? fetched->answeredSources : TaskSources());
    m_clock.soon(this, [this] {
        m_isLoading = false;
        Q_EMIT stateChanged();
    });
    if (!m_permissionIssues.isEmpty()) {
        m_needsTaskManagerPermissions = true;
        m_permissionMessage = m_permissionIssues.join(u"\n\n");
    }
    log::info(QStringLiteral("💀💀💀 TASK FETCHING COMPLETE - Loaded total of %1 tasks via TaskRepository 💀💀💀")
                  .arg(m_tasks.size()));
    Q_EMIT stateChanged();
}

QCoro::Task<std::optional<FetchedTasks>> TaskListViewModel::fetch()
{
    const QPointer<TaskListViewModel> self(this);
    log::info(QStringLiteral("💀 Starting task fetch process from repository"));
    log::info(QStringLiteral("💀 Fetching tasks from repository"));
    m_repository.reloadTaskManagers();
    std::exception_ptr failure;
    try {
        FetchedTasks fetched = co_await m_repository.fetchTasks(false);
        log::info(QStringLiteral("💀 Loaded %1 tasks from repository").arg(fetched.tasks.size()));
        co_return fetched;
    } catch (...) {
        failure = std::current_exception();
    }
    if (self) {
        handleFailure(failure);
    }
    co_return std::nullopt;
}

void TaskListViewModel::handleFailure(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const TaskRepositoryError &failure) {
        // The first cause that has a row of its own decides; the repository has reported the others itself.
        for (const TaskRepositoryError::Cause &cause : failure.causes()) {
            if (cause.isPermission) {
                const bool isOmniFocus = cause.source == rawValue(TaskManagerType::OmniFocus);
                m_permissionIssues.append(
                    isOmniFocus ? tr("AppleScript Permission denied - grant automation permission")
                                : tr("Permission issue: %1").arg(cause.source + u": " + cause.message));
                return;
            }
            if (cause.error) {
                handleSourceFailure(cause.error);
                return;
            }
        }
        log::error(u"Error loading tasks from repository: " + failure.message());
    } catch (...) {
        handleSourceFailure(std::current_exception());
    }
}

void TaskListViewModel::handleSourceFailure(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const AppleScriptError &failure) {
        switch (failure.kind()) {
        case AppleScriptError::Kind::OmniFocusNotRunning:
            handleError(tr("⚠️ OmniFocus isn't running."));
            return;
        case AppleScriptError::Kind::PermissionDenied:
            m_permissionIssues.append(tr("AppleScript Permission denied - grant automation permission"));
            return;
        case AppleScriptError::Kind::OmniFocusProRequired:
            switchToPlainText();
            return;
        default:
            log::error(u"Error loading tasks from repository: " + failure.message());
        }
    } catch (const SourceError &failure) {
        if (isPermissionCode(failure.code())) {
            m_permissionIssues.append(tr("Permission issue: %1").arg(failure.message()));
        } else {
            log::error(u"Error loading tasks from repository: " + failure.message());
        }
    } catch (const std::exception &failure) {
        log::error(u"Error loading tasks from repository: " + QString::fromUtf8(failure.what()));
    }
}

void TaskListViewModel::switchToPlainText()
{
    log::warning(
        QStringLiteral("OmniFocus Pro required but not available. Disabling OmniFocus as a task source."));
    m_errorMessage =
        tr("⚠️ OmniFocus Pro is required for scripting. OmniFocus has been disabled as a task source. "
           "Plain Text has been enabled as a fallback.");
    TaskSourceConfiguration configuration = m_factory.getTaskSourceConfiguration();
    configuration.isOmniFocusEnabled = false;
    configuration.isPlainTextEnabled = true;
    m_factory.setTaskSourceConfiguration(configuration);
    m_repository.reloadTaskManagers();
    updateCurrentTaskSources();
    m_notifications.post(notifications::TaskSourceConfigurationChanged);
    m_clock.after(ProRequiredDelay, this, [this] { loadTasks(); });
}

void TaskListViewModel::retry()
{
    m_announcer.announce(tr("Retrying to load tasks"));
    loadTasks();
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

QStringList TaskListViewModel::remindersGuidance() const
{
    if (!m_permissionMessage || !m_permissionMessage->contains(u"Reminders")) {
        return {};
    }
    return {
        tr("Reminders: Vantrel needs permission to access your Reminders."),
        tr("When you first use Reminders integration, macOS will ask for permission."),
        tr("If you don't see the permission dialog, you may need to grant access manually:"),
        tr("1. Open System Preferences"),
        tr("2. Go to Security & Privacy"),
        tr("3. Click on Privacy tab"),
        tr("4. Select Automation from the list"),
        tr("5. Find Vantrel and enable access to Reminders"),
        tr("6. Restart Vantrel completely"),
        tr("Note: You may need to quit and restart Vantrel after granting permissions."),
    };
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
