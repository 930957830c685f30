#pragma once

#include "foundations/Date.h"
#include "foundations/Ids.h"
#include "sources/SourceError.h"
#include "sources/TaskManagerProtocol.h"

#include <QHash>
#include <QSet>

#include <optional>

namespace vantrel {

/** The answer of one fetch. */
struct FetchedTasks
{
    WorkItems tasks;
    /** Sources whose permission check, settings and fetch all succeeded: only their absent tasks are gone. */
    TaskSources answeredSources;
    /** Why others gave nothing. */
    std::vector<TaskRepositoryError::Cause> failures;
};

/** The last tasks that were fetched, and how long they may be served. A value; owned by TaskRepository. */
class TaskCache
{
public:
    /** Seconds for which a fetched list is served. */
    static constexpr double Timeout = 30.0;

    const WorkItems &tasks() const { return m_fetched.tasks; }
    const FetchedTasks &fetched() const { return m_fetched; }
    /** When the list was last known to be complete; nothing if it never was, or is known not to be. */
    std::optional<Date> lastFetchTime() const { return m_lastFetchTime; }

    /** True while the list may be served instead of asking the sources. An empty one never is. */
    bool isFresh(Date now) const;
    /** nullptr if there is no such task. */
    WorkItemPtr find(const QString &taskId) const;

    void replace(FetchedTasks fetched, std::optional<Date> fetchTime);
    /** Adds a task that the program has made itself: a list that was complete stays so, from now on. */
    void add(const WorkItemPtr &task, Date now);
    void remove(const QSet<QString> &taskIds);
    void invalidate() { m_lastFetchTime.reset(); }

private:
    FetchedTasks m_fetched;
    std::optional<Date> m_lastFetchTime;
    /** Made when first asked for: most lists are replaced before that. */
    mutable QHash<QString, WorkItemPtr> m_index;
};

} // namespace vantrel
