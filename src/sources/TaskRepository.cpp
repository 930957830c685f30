#include "sources/TaskRepository.h"

#include "foundations/Latch.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "persistence/PersistenceManager.h"
#include "sources/SourceError.h"
#include "sources/plaintext/PlainTextTaskManager.h"

#include <QPointer>
#include <QScopeGuard>

#include <algorithm>

namespace vantrel {

namespace {

/** What a load has done when all sources have answered, and when the answers are merged. */
constexpr double ProgressOfSources = 0.9;
constexpr double ProgressOfMerging = 0.95;

void logLine(const QString &text)
{
    log::info(u"💀 TASK REPOSITORY: " + text);
}

} // namespace

/** What one source gave. */
struct TaskRepository::Answer
{
    WorkItems tasks;
    /** The source has spoken for all its tasks: absent ones are gone. */
    bool isBelieved = false;
    std::optional<TaskRepositoryError::Cause> failure;
};

/** One fetch from all sources, shared by all who wait for it. */
struct TaskRepository::Run
{
    std::vector<TaskManagerProtocol *> managers;
    /** One a manager, in their order. */
    std::vector<Answer> answers;
    int answered = 0;
    /** In the order in which the sources failed. */
    std::vector<TaskRepositoryError::Cause> causes;
    /** What was added to the cache meanwhile. */
    WorkItems added;
    /** Something happened that the answers may not show. */
    bool isOutdated = false;

    FetchedTasks result;
    std::exception_ptr failure;
    QString errorText;
    Latch finished;
};

TaskRepository::TaskRepository(TaskManagerFactory &factory, PersistenceManager &persistence,
                               NotificationCenter &notifications, Clock &clock, QObject *parent)
    : QObject(parent),
      m_factory(factory),
      m_persistence(persistence),
      m_notifications(notifications),
      m_clock(clock),
      m_plainText(dynamic_cast<PlainTextTaskManager *>(&factory.manager(TaskManagerType::PlainText)))
{
    reloadTaskManagers();
    m_notifications.observe(notifications::TaskSourceConfigurationChanged, this,
                            [this](const Notification &) { invalidateCache(); });
    if (m_plainText) {
        connect(m_plainText, &PlainTextTaskManager::taskCreated, this,
                &TaskRepository::manuallyAddTaskToCache);
        connect(m_plainText, &PlainTextTaskManager::tasksRemoved, this, [this](const QStringList &ids) {
            forget(QSet<QString>(ids.begin(), ids.end()));
            invalidateCache();
        });
    }
    log::info(QStringLiteral("TaskRepository initialized"));
}

TaskRepository::~TaskRepository() = default;

QCoro::Task<FetchedTasks> TaskRepository::fetchTasks(bool forceRefresh)
{
    if (!forceRefresh && m_cache.isFresh(m_clock.now())) {
        co_return serveCache();
    }
    const QPointer self(this);
    if (m_run && (forceRefresh || m_run->isOutdated)) {
        const std::shared_ptr<Run> earlier = m_run;
        co_await earlier->finished;
        if (!self) {
            co_return FetchedTasks();
        }
    }
    const std::shared_ptr<Run> run = m_run ? m_run : startRun();
    co_await run->finished;
    if (run->failure) {
        std::rethrow_exception(run->failure);
    }
    // A copy by name: QCoro would move out of an lvalue, and others wait for the same result.
    co_return FetchedTasks(run->result);
}

FetchedTasks TaskRepository::serveCache()
{
    const double age = m_clock.now() - m_cache.lastFetchTime().value();
    logLine(u"Using cached tasks from " + QString::number(static_cast<qint64>(age)) + u" seconds ago");
    if (!m_run) {
        setLoading(TaskRepositoryLoadingState::Loaded, 1.0, tr("Using cached tasks"));
    }
    return m_cache.fetched();
}

std::shared_ptr<TaskRepository::Run> TaskRepository::startRun()
{
    const auto run = std::make_shared<Run>();
    m_run = run;
    logLine(QStringLiteral("Starting fresh fetch from all task managers"));
    setLoading(TaskRepositoryLoadingState::Loading, 0.0, tr("Initializing..."));
    launch(perform(run), QStringLiteral("Fetching tasks"));
    return run;
}

QCoro::Task<> TaskRepository::perform(std::shared_ptr<Run> run)
{
    const QPointer self(this);
    const auto letWaitersOn = qScopeGuard([run] { run->finished.countDown(); });
    try {
        run->result = co_await fetchTasksFromAllManagers(run);
    } catch (const std::exception &failure) {
        run->failure = std::current_exception();
        run->errorText = QString::fromUtf8(failure.what());
    }
    if (self) {
        finish(*run);
    }
}

void TaskRepository::finish(const Run &run)
{
    m_run.reset();
    if (run.failure) {
        log::error(u"💀 TASK REPOSITORY: Error fetching tasks: " + run.errorText);
        m_errorText = run.errorText;
        setLoading(TaskRepositoryLoadingState::Error, m_loadingProgress, m_loadingStatusMessage);
        m_notifications.post(notifications::TaskLoadingError, run.errorText);
        return;
    }
    logLine(u"Fetch complete - caching " + QString::number(run.result.tasks.size()) + u" tasks");
    const bool isComplete = !run.isOutdated && run.result.failures.empty();
    m_cache.replace(run.result, isComplete ? std::optional(m_clock.now()) : std::nullopt);
    m_errorText.clear();
    setLoading(TaskRepositoryLoadingState::Loaded, 1.0, tr("Loading complete!"));
    m_notifications.post(notifications::TaskLoadingComplete);
}

QCoro::Task<FetchedTasks> TaskRepository::fetchTasksFromAllManagers(std::shared_ptr<Run> run)
{
    const QPointer self(this);
    Clock &clock = m_clock;
    if (m_taskManagers.empty() && !enablePlainTextAsFallback()) {
        log::warning(QStringLiteral(
            "💀 TASK REPOSITORY: No task managers available after trying to enable Plain Text"));
        co_return FetchedTasks();
    }
    run->managers = m_taskManagers;
    run->answers.resize(run->managers.size());
    logLine(u"Fetching tasks from " + QString::number(run->managers.size()) + u" managers: " +
            m_taskManagersDescription);
    std::vector<QCoro::Task<>> asked;
    for (std::size_t place = 0; place < run->managers.size(); ++place) {
        asked.push_back(ask(run->managers[place], run, place));
    }
    for (QCoro::Task<> &question : asked) {
        co_await question;
    }
    // The last source has just used up a slice of its own.
    co_await clock.yieldToEventLoop();
    if (!self) {
        co_return FetchedTasks();
    }
    FetchedTasks fetched = merge(*run);
    const QString count = QString::number(fetched.tasks.size());
    setLoading(m_loadingState, ProgressOfMerging, tr("Loaded %1 total tasks").arg(count));
    logLine(u"Completed loading " + count + u" total tasks from " + QString::number(run->managers.size()) +
            u" sources");
    if (fetched.tasks.empty() && !run->causes.empty()) {
        QStringList lines;
        for (const TaskRepositoryError::Cause &cause : run->causes) {
            lines.append(cause.source + u": " + cause.message);
        }
        throw TaskRepositoryError(lines.join(u'\n'), run->causes);
    }
    co_return fetched;
}

QCoro::Task<> TaskRepository::ask(TaskManagerProtocol *manager, std::shared_ptr<Run> run, std::size_t place)
{
    const QPointer self(this);
    Answer answer = co_await answerOf(manager);
    if (self) {
        takeAnswer(*run, place, std::move(answer));
    }
}

QCoro::Task<TaskRepository::Answer> TaskRepository::answerOf(TaskManagerProtocol *manager)
{
    const QPointer self(this);
    const QString name = manager->taskManagerName();
    Answer answer;
    logLine(u"Checking permissions for " + name);
    setStatusMessage(tr("Checking permissions for %1...").arg(name));
    if (!manager->checkPermissions()) {
        log::warning(u"💀 TASK REPOSITORY: Permission check failed for " + name);
        answer.failure = TaskRepositoryError::Cause{name, nullptr, true, manager->getPermissionsGuidance()};
        co_return answer;
    }
    try {
        logLine(u"Fetching due soon settings for " + name);
        setStatusMessage(tr("Fetching due soon settings for %1...").arg(name));
        co_await manager->fetchDueSoonSettings();
        if (!self) {
            co_return answer;
        }
        logLine(u"Fetching tasks from " + name);
        setStatusMessage(tr("Loading tasks from %1...").arg(name));
        answer.tasks = co_await tasksOf(manager);
        if (self) {
            answer.isBelieved = co_await isBelievable(sourceOfManager(manager), answer.tasks.empty());
        }
    } catch (const std::exception &failure) {
        const QString message = QString::fromUtf8(failure.what());
        log::error(u"💀 TASK REPOSITORY: Error loading tasks from " + name + u": " + message);
        answer.failure = TaskRepositoryError::Cause{name, std::current_exception(), false, message};
    }
    co_return answer;
}

QCoro::Task<WorkItems> TaskRepository::tasksOf(TaskManagerProtocol *manager)
{
    const QString name = manager->taskManagerName();
    // Always read from scratch: it is cheap, and the store is the truth.
    if (manager == m_plainText) {
        WorkItems tasks = co_await m_plainText->forceReloadTasks();
        logLine(u"Loaded " + QString::number(tasks.size()) + u" tasks from " + name + u" (force reload)");
        co_return tasks;
    }
    WorkItems tasks = co_await manager->fetchTasks();
    logLine(u"Loaded " + QString::number(tasks.size()) + u" tasks from " + name);
    co_return tasks;
}

QCoro::Task<bool> TaskRepository::isBelievable(TaskSource source, bool isEmpty)
{
    // An outside program that is still starting or syncing can say in good faith that it has no tasks. Were
    // it believed at once, the board would forget where all of them stood.
    if (!isEmpty || source == TaskSource::PlainText || m_doubtedSources.testFlag(source)) {
        m_doubtedSources.setFlag(source, false);
        co_return true;
    }
    const QPointer self(this);
    const bool isAtStake = co_await storeHoldsPlacesOf(source);
    if (!isAtStake) {
        co_return true;
    }
    if (self) {
        log::warning(
            QStringLiteral("💀 TASK REPOSITORY: A source has no tasks any more; their places are kept "
                           "unless it says so once more"));
        m_doubtedSources.setFlag(source);
    }
    co_return false;
}

QCoro::Task<bool> TaskRepository::storeHoldsPlacesOf(TaskSource source)
{
    const auto places = co_await m_persistence.readAllTaskPositions();
    if (!places) {
        co_return true;
    }
    co_return std::any_of(places->begin(), places->end(), [source](const PersistentTaskPosition &place) {
        return sourceOf(place.id) == source;
    });
}

void TaskRepository::takeAnswer(Run &run, std::size_t place, Answer answer)
{
    const TaskManagerProtocol *manager = run.managers[place];
    const QString name = manager->taskManagerName();
    ++run.answered;
    QString message = tr("Loaded %1 tasks from %2").arg(QString::number(answer.tasks.size()), name);
    if (answer.failure) {
        m_doubtedSources.setFlag(sourceOfManager(manager), false);
        run.causes.push_back(*answer.failure);
        message = tr("Error loading from %1").arg(name);
    }
    run.answers[place] = std::move(answer);
    const double share = ProgressOfSources / static_cast<double>(run.managers.size());
    setLoading(m_loadingState, share * run.answered, message);
}

FetchedTasks TaskRepository::merge(const Run &run) const
{
    FetchedTasks fetched;
    fetched.failures = run.causes;
    for (std::size_t place = 0; place < run.managers.size(); ++place) {
        const Answer &answer = run.answers[place];
        if (answer.failure) {
            continue;
        }
        // Other sources may have taken long: tasks created or removed here meanwhile are told as they are
        // now.
        const WorkItems &tasks =
            run.managers[place] == m_plainText ? m_plainText->loadedTasks() : answer.tasks;
        fetched.tasks.insert(fetched.tasks.end(), tasks.begin(), tasks.end());
        fetched.answeredSources.setFlag(sourceOfManager(run.managers[place]), answer.isBelieved);
    }
    for (const WorkItemPtr &task : run.added) {
        if (std::find(fetched.tasks.begin(), fetched.tasks.end(), task) == fetched.tasks.end()) {
            fetched.tasks.push_back(task);
        }
    }
    return fetched;
}

TaskSource TaskRepository::sourceOfManager(const TaskManagerProtocol *manager) const
{
    if (manager == &m_factory.manager(TaskManagerType::PlainText)) return TaskSource::PlainText;
    if (manager == &m_factory.manager(TaskManagerType::Reminders)) return TaskSource::Reminders;
    return TaskSource::OmniFocus;
}

// The cache

void TaskRepository::manuallyAddTaskToCache(const WorkItemPtr &task)
{
    logLine(u"Manually adding task " + task->id() + u" to cache");
    if (m_run) {
        m_run->added.push_back(task);
    }
    if (m_cache.find(task->id())) {
        logLine(QStringLiteral("Task already exists in cache"));
        return;
    }
    m_cache.add(task, m_clock.now());
    logLine(u"Task added to cache, new count: " + QString::number(m_cache.tasks().size()));
}

void TaskRepository::removeTaskFromCache(const QString &taskId)
{
    forget(QSet<QString>{taskId});
}

void TaskRepository::forget(const QSet<QString> &taskIds)
{
    m_cache.remove(taskIds);
    if (m_run) {
        std::erase_if(m_run->added, [&](const WorkItemPtr &task) { return taskIds.contains(task->id()); });
    }
}

void TaskRepository::invalidateCache()
{
    m_cache.invalidate();
    if (m_run) {
        m_run->isOutdated = true;
    }
}

// The sources

bool TaskRepository::enablePlainTextAsFallback()
{
    if (!m_taskManagers.empty()) {
        return false;
    }
    logLine(QStringLiteral("No task sources enabled - enabling Plain Text as fallback"));
    TaskSourceConfiguration configuration = m_factory.getTaskSourceConfiguration();
    configuration.isPlainTextEnabled = true;
    m_factory.setTaskSourceConfiguration(configuration);
    reloadTaskManagers();
    return !m_taskManagers.empty();
}

void TaskRepository::reloadTaskManagers()
{
    m_taskManagers.clear();
    if (m_factory.getTaskSourceConfiguration().isAnyEnabled()) {
        m_taskManagers = m_factory.enabledManagers();
        std::erase_if(m_taskManagers,
                      [](const TaskManagerProtocol *manager) { return !manager->isAvailableOnPlatform(); });
    }
    updateTaskManagersDescription();
}

void TaskRepository::updateTaskManagersDescription()
{
    QStringList names;
    for (const TaskManagerProtocol *manager : m_taskManagers) {
        names.append(manager->taskManagerName());
    }
    m_taskManagersDescription = names.join(QStringLiteral(", "));
}

// What the loading screen shows

void TaskRepository::setLoading(TaskRepositoryLoadingState state, double progress, const QString &message)
{
    m_loadingState = state;
    m_loadingProgress = progress;
    m_loadingStatusMessage = message;
    Q_EMIT loadingChanged();
}

void TaskRepository::setStatusMessage(const QString &message)
{
    setLoading(m_loadingState, m_loadingProgress, message);
}

} // namespace vantrel
