#pragma once

#include "foundations/Clock.h"
#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskManagerProtocol.h"

#include <QObject>

#include <optional>

namespace vantrel {

enum class TaskRepositoryLoadingState { NotLoaded, Loading, Loaded, Error };

/** The answer of one fetch. */
struct FetchedTasks
{
    WorkItems tasks;
    /** Sources whose permission check, settings and fetch all succeeded: only their absent tasks are gone. */
    TaskSources answeredSources;
};

/**
 * Stands between the program and its sources: asks all enabled ones at the same time, merges what comes back,
 * keeps it for 30 seconds and publishes how far a load has got. A source that fails costs only its own tasks.
 * GUI thread; owned by Services.
 */
class TaskRepository : public QObject
{
    Q_OBJECT
public:
    TaskRepository(TaskManagerFactory &factory, NotificationCenter &notifications, Clock &clock,
                   QObject *parent = nullptr);

    TaskRepositoryLoadingState loadingState() const { return m_loadingState; }
    /** The last failure's text while loadingState() is Error. */
    QString errorText() const { return m_errorText; }
    double loadingProgress() const { return m_loadingProgress; }
    QString loadingStatusMessage() const { return m_loadingStatusMessage; }

    const std::vector<TaskManagerProtocol *> &taskManagers() const { return m_taskManagers; }
    QString taskManagersDescription() const { return m_taskManagersDescription; }
    const WorkItems &cachedTasks() const { return m_cachedTasks; }
    std::optional<Date> lastFetchTime() const { return m_lastFetchTime; }
    WorkItemPtr cachedTask(const QString &taskId) const;

    /** Asks the sources, or the cache while it is fresh. Throws TaskRepositoryError when nothing could be
     * loaded. */
    QCoro::Task<FetchedTasks> fetchTasks(bool forceRefresh);

    void manuallyAddTaskToCache(const WorkItemPtr &task);
    /** Takes a deleted task out of the cache. */
    void removeTaskFromCache(const QString &taskId);
    /** The next fetch asks the sources. */
    void invalidateCache();

    /** True if plain text was switched on because nothing else was. */
    bool enablePlainTextAsFallback();
    /** Takes the enabled sources afresh from the factory. */
    void reloadTaskManagers();

Q_SIGNALS:
    /** Loading state, progress or message. */
    void loadingChanged();

private:
    TaskManagerFactory &m_factory;
    NotificationCenter &m_notifications;
    Clock &m_clock;
    TaskRepositoryLoadingState m_loadingState = TaskRepositoryLoadingState::NotLoaded;
    QString m_errorText;
    double m_loadingProgress = 0.0;
    QString m_loadingStatusMessage;
    std::vector<TaskManagerProtocol *> m_taskManagers;
    QString m_taskManagersDescription;
    WorkItems m_cachedTasks;
    TaskSources m_cachedAnsweredSources;
    std::optional<Date> m_lastFetchTime;
};

} // namespace vantrel
