#include "analytics/CompletedTasksManager.h"

#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {
constexpr double CacheExpiryInterval = 300.0;
} // namespace

CompletedTasksManager::CompletedTasksManager(TaskManagerFactory &factory, NotificationCenter &notifications,
                                             Clock &clock, QObject *parent)
    : QObject(parent), m_factory(factory), m_clock(clock)
{
    notifications.observe(notifications::TaskSourceConfigurationChanged, this,
                          [this](const Notification &) { clearCache(); });
}

void CompletedTasksManager::clearCache()
{
    m_cachedTasks.clear();
    m_cacheTimestamp.reset();
    log::debug(QStringLiteral("Completed tasks cache cleared"));
}

bool CompletedTasksManager::isCacheFresh() const
{
    return m_cacheTimestamp && m_clock.now() - *m_cacheTimestamp < CacheExpiryInterval &&
           !m_cachedTasks.empty();
}

QCoro::Task<> CompletedTasksManager::fetchCompletedTasks(int lookbackDays)
{
    const QPointer<CompletedTasksManager> self(this);
    if (isCacheFresh()) {
        log::debug(QStringLiteral("Using cached completed tasks (%1 tasks)").arg(m_cachedTasks.size()));
        m_completedTasks = m_cachedTasks;
        Q_EMIT changed();
        co_return;
    }
    const int generation = ++m_generation;
    m_isLoading = true;
    m_errorMessage.reset();
    Q_EMIT changed();
    log::info(QStringLiteral("Fetching completed tasks with %1 day lookback").arg(lookbackDays));

    if (!m_factory.getTaskSourceConfiguration().isAnyEnabled()) {
        const QString message =
            tr("No task sources are enabled. Please enable at least one source in Settings.");
        log::error(u"Failed to fetch completed tasks: " + message);
        m_errorMessage = message;
        m_completedTasks.clear();
        m_isLoading = false;
        Q_EMIT changed();
        Q_EMIT announced(tr("Failed to load analytics data. %1").arg(message));
        co_return;
    }

    const WorkItems collected = co_await collect(lookbackDays);
    if (!self || generation != m_generation) {
        co_return;
    }
    WorkItems valid = filterValidCompletedTasks(collected, lookbackDays);
    std::stable_sort(valid.begin(), valid.end(), [](const WorkItemPtr &a, const WorkItemPtr &b) {
        return *a->completionDate() > *b->completionDate();
    });
    m_cachedTasks = valid;
    m_cacheTimestamp = m_clock.now();
    m_completedTasks = std::move(valid);
    m_isLoading = false;
    const auto count = m_completedTasks.size();
    log::info(QStringLiteral("Successfully fetched %1 completed tasks").arg(count));
    Q_EMIT changed();
    Q_EMIT announced(
        count > 0
            ? tr("Analytics data loaded successfully with %1 completed tasks.").arg(count)
            : tr("Analytics data loaded. No completed tasks found in the last %1 days.").arg(lookbackDays));
}

QCoro::Task<WorkItems> CompletedTasksManager::collect(int lookbackDays)
{
    WorkItems collected;
    const std::vector<TaskManagerProtocol *> managers = m_factory.enabledManagers();
    for (TaskManagerProtocol *manager : managers) {
        if (!manager->isAvailableOnPlatform()) {
            continue;
        }
        const QString name = manager->taskManagerName();
        try {
            const WorkItems tasks = co_await manager->fetchCompletedTasks(lookbackDays);
            log::debug(QStringLiteral("Fetched %1 completed tasks from %2").arg(tasks.size()).arg(name));
            collected.insert(collected.end(), tasks.begin(), tasks.end());
        } catch (const std::exception &error) {
            log::warning(u"Failed to fetch completed tasks from " + name + u": " +
                         QString::fromUtf8(error.what()));
        }
    }
    co_return collected;
}

WorkItems CompletedTasksManager::filterValidCompletedTasks(const WorkItems &tasks, int lookbackDays) const
{
    const Date now = m_clock.now();
    const QDateTime daysAgo = now.toDateTime().addDays(-lookbackDays);
    const Date cutoff = daysAgo.isValid() ? Date::fromDateTime(daysAgo) : now;
    WorkItems valid;
    std::copy_if(tasks.begin(), tasks.end(), std::back_inserter(valid), [cutoff](const WorkItemPtr &task) {
        return task->isComplete() && task->completionDate() && *task->completionDate() >= cutoff;
    });
    return valid;
}

} // namespace vantrel
