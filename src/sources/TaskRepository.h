#pragma once

#include "foundations/Clock.h"
#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"
#include "sources/TaskCache.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskManagerProtocol.h"

#include <QObject>

#include <memory>
#include <optional>

namespace vantrel {

class PersistenceManager;
class PlainTextTaskManager;

enum class TaskRepositoryLoadingState { NotLoaded, Loading, Loaded, Error };

/**
 * Stands between the program and its sources: asks all enabled ones at the same time, merges what comes back,
 * keeps it for 30 seconds and publishes how far a load has got. A source that fails costs only its own tasks.
 * GUI thread; owned by Services.
 */
class TaskRepository : public QObject
{
    Q_OBJECT
public:
    TaskRepository(TaskManagerFactory &factory, PersistenceManager &persistence,
                   NotificationCenter &notifications, Clock &clock, QObject *parent = nullptr);
    ~TaskRepository() override;

    TaskRepositoryLoadingState loadingState() const { return m_loadingState; }
    /** The last failure's text while loadingState() is Error. */
    QString errorText() const { return m_errorText; }
    double loadingProgress() const { return m_loadingProgress; }
    QString loadingStatusMessage() const { return m_loadingStatusMessage; }

    const std::vector<TaskManagerProtocol *> &taskManagers() const { return m_taskManagers; }
    QString taskManagersDescription() const { return m_taskManagersDescription; }
    const WorkItems &cachedTasks() const { return m_cache.tasks(); }
    std::optional<Date> lastFetchTime() const { return m_cache.lastFetchTime(); }
    WorkItemPtr cachedTask(const QString &taskId) const { return m_cache.find(taskId); }

    /**
     * Asks the sources, or the cache while it is fresh. Throws TaskRepositoryError when nothing could be
     * loaded. Whoever calls while a fetch runs gets the result of that one, but a forced call, or one that
     * knows more than the running fetch can, waits for it to end and has the sources asked again.
     */
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
    struct Answer;
    struct Run;

    FetchedTasks serveCache();
    std::shared_ptr<Run> startRun();
    QCoro::Task<> perform(std::shared_ptr<Run> run);
    void finish(const Run &run);
    QCoro::Task<FetchedTasks> fetchTasksFromAllManagers(std::shared_ptr<Run> run);
    QCoro::Task<> ask(TaskManagerProtocol *manager, std::shared_ptr<Run> run, std::size_t place);
    QCoro::Task<Answer> answerOf(TaskManagerProtocol *manager);
    QCoro::Task<WorkItems> tasksOf(TaskManagerProtocol *manager);
    /** Whether the store may forget what is not in this answer. */
    QCoro::Task<bool> isBelievable(TaskSource source, bool isEmpty);
    QCoro::Task<bool> storeHoldsPlacesOf(TaskSource source);
    void takeAnswer(Run &run, std::size_t place, Answer answer);
    FetchedTasks merge(const Run &run) const;
    TaskSource sourceOfManager(const TaskManagerProtocol *manager) const;

    void forget(const QSet<QString> &taskIds);
    void setLoading(TaskRepositoryLoadingState state, double progress, const QString &message);
    void setStatusMessage(const QString &message);
    void updateTaskManagersDescription();

    TaskManagerFactory &m_factory;
    PersistenceManager &m_persistence;
    NotificationCenter &m_notifications;
    Clock &m_clock;
    /** The factory's plain text source, where it is the real one: it can tell its tasks at any moment. */
    PlainTextTaskManager *m_plainText;
    TaskRepositoryLoadingState m_loadingState = TaskRepositoryLoadingState::NotLoaded;
    QString m_errorText;
    double m_loadingProgress = 0.0;
    QString m_loadingStatusMessage;
    std::vector<TaskManagerProtocol *> m_taskManagers;
    QString m_taskManagersDescription;
    TaskCache m_cache;
    /** The fetch under way. */
    std::shared_ptr<Run> m_run;
    /** Outside sources whose last answer was empty and was not believed. */
    TaskSources m_doubtedSources;
};

} // namespace vantrel
