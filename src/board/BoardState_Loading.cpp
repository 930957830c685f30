#include "board/BoardState.h"

#include "foundations/Log.h"
#include "sources/SourceError.h"
#include "sources/TaskRepository.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {
// The two pauses are for the eye: the bar is seen to reach its end.
constexpr double FinalizingPause = 0.5;
constexpr double CompletePause = 0.3;
constexpr double RepositoryWatchTime = 300.0;
constexpr double LoadedDelay = 0.1;
constexpr double CountsAfterUpdateDelay = 0.2;

bool lacksPermission(const TaskRepositoryError &error)
{
    const auto &causes = error.causes();
    return std::any_of(causes.begin(), causes.end(), [](const auto &cause) { return cause.isPermission; });
}
} // namespace

QCoro::Task<> BoardState::loadDataAsync()
{
    const QPointer<BoardState> self(this);
    QString failure;
    bool mayBeGranted = false;
    try {
        // The user may have changed the sources since the last attempt.
        m_services.repository.reloadTaskManagers();
        log::info(u"💀💀💀 BOARD STATE ASYNC LOADING START 💀💀💀"_s);
        setLoadingProgress(0.0, tr("Initializing..."));
        setLoading(BoardLoadingState::Loading);
        setLoadingProgress(m_loadingProgress, tr("Loading tasks from repository..."));
        log::info(u"💀 Requesting tasks from TaskRepository"_s);
        updateLoadingProgressFromRepository();
        const FetchedTasks fetched = co_await m_services.repository.fetchTasks(false);
        if (!self) {
            co_return;
        }
        // The repository is at its end here, the board is not.
        m_repositoryWatch.reset();
        const auto count = QString::number(fetched.tasks.size());
        setLoadingProgress(0.7, tr("Organizing %1 tasks...").arg(count));
        log::info(u"💀 Organizing %1 tasks"_s.arg(count));
        organizeTasks(fetched.tasks, fetched.answeredSources);
        setLoadingProgress(0.9, tr("Finalizing..."));
        co_await m_services.clock.sleep(FinalizingPause);
        if (!self) {
            co_return;
        }
        setLoadingProgress(1.0, tr("Loading complete!"));
        log::info(u"💀💀💀 BOARD STATE ASYNC LOADING COMPLETE 💀💀💀"_s);
        co_await m_services.clock.sleep(CompletePause);
        if (!self) {
            co_return;
        }
        setLoading(BoardLoadingState::Loaded);
        postSwimLaneWIPCountsChanged();
        co_return;
    } catch (const TaskRepositoryError &error) {
        failure = error.message();
        mayBeGranted = lacksPermission(error);
    } catch (const SourceError &error) {
        failure = error.message();
    } catch (const std::exception &error) {
        failure = QString::fromUtf8(error.what());
    }
    if (!self) {
        co_return;
    }
    m_repositoryWatch.reset();
    log::error(u"❌ Error during async BoardState loading: "_s + failure);
    if (mayBeGranted) {
        // The board stands without its tasks, and the first refresh tells the user what to do.
        organizeTasks({}, {});
        setLoading(BoardLoadingState::Loaded);
    } else {
        setLoading(BoardLoadingState::Error, failure);
    }
}

void BoardState::updateTasks(const WorkItems &tasks, TaskSources answered)
{
    log::info(u"💀💀💀 BOARD STATE TASK UPDATE START - BoardState.updateTasks() 💀💀💀"_s);
    log::info(u"💀 Received %1 tasks"_s.arg(tasks.size()));
    clearSelectionOnReload();
    organizeTasks(tasks, answered);
    m_services.clock.after(CountsAfterUpdateDelay, this, [this] {
        log::info(u"💀 Sending notification to update SwimLane WIP counts after updateTasks"_s);
        postSwimLaneWIPCountsChanged();
        log::info(u"💀💀💀 BOARD STATE TASK UPDATE COMPLETE 💀💀💀"_s);
    });
}

void BoardState::updateLoadingProgressFromRepository()
{
    m_repositoryWatch = std::make_unique<QObject>();
    connect(&m_services.repository, &TaskRepository::loadingChanged, m_repositoryWatch.get(),
            [this] { copyRepositoryProgress(); });
    m_services.clock.after(RepositoryWatchTime, m_repositoryWatch.get(),
                           [this] { m_repositoryWatch.reset(); });
}

void BoardState::copyRepositoryProgress()
{
    const TaskRepository &repository = m_services.repository;
    setLoadingProgress(repository.loadingProgress(), repository.loadingStatusMessage());
    // A later refresh leaves the state of the first load alone.
    if (m_loadingState != BoardLoadingState::NotLoaded && m_loadingState != BoardLoadingState::Loading) {
        return;
    }
    switch (repository.loadingState()) {
    case TaskRepositoryLoadingState::NotLoaded:
        break;
    case TaskRepositoryLoadingState::Loading:
        setLoading(BoardLoadingState::Loading);
        break;
    case TaskRepositoryLoadingState::Loaded:
        if (repository.loadingProgress() >= 1.0) {
            m_services.clock.after(LoadedDelay, m_repositoryWatch.get(), [this] {
                if (m_loadingState == BoardLoadingState::Loading) {
                    setLoading(BoardLoadingState::Loaded);
                }
            });
        }
        break;
    case TaskRepositoryLoadingState::Error:
        setLoading(BoardLoadingState::Error, repository.errorText());
        break;
    }
}

void BoardState::setLoading(BoardLoadingState state, const QString &error)
{
    if (m_loadingState == state && m_loadingError == error) {
        return;
    }
    m_loadingState = state;
    m_loadingError = error;
    Q_EMIT loadingChanged();
}

void BoardState::setLoadingProgress(double progress, const QString &message)
{
    m_loadingProgress = progress;
    m_loadingStatusMessage = message;
    Q_EMIT loadingChanged();
}

} // namespace vantrel
