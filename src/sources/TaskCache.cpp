#include "sources/TaskCache.h"

namespace vantrel {

bool TaskCache::isFresh(Date now) const
{
    if (m_fetched.tasks.empty() || !m_lastFetchTime) {
        return false;
    }
    // A clock that was set back must not keep the list for as long as that.
    const double age = now - *m_lastFetchTime;
    return age >= 0.0 && age < Timeout;
}

WorkItemPtr TaskCache::find(const QString &taskId) const
{
    if (m_index.isEmpty()) {
        m_index.reserve(static_cast<qsizetype>(m_fetched.tasks.size()));
        for (const WorkItemPtr &task : m_fetched.tasks) {
            m_index.insert(task->id(), task);
        }
    }
    return m_index.value(taskId);
}

void TaskCache::replace(FetchedTasks fetched, std::optional<Date> fetchTime)
{
    m_fetched = std::move(fetched);
    m_lastFetchTime = fetchTime;
    m_index.clear();
}

void TaskCache::add(const WorkItemPtr &task, Date now)
{
    m_fetched.tasks.push_back(task);
    if (!m_index.isEmpty()) {
        m_index.insert(task->id(), task);
    }
    if (m_lastFetchTime) {
        m_lastFetchTime = now;
    }
}

void TaskCache::remove(const QSet<QString> &taskIds)
{
    std::erase_if(m_fetched.tasks, [&](const WorkItemPtr &task) { return taskIds.contains(task->id()); });
    m_index.clear();
}

} // namespace vantrel
