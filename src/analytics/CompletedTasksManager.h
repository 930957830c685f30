#pragma once

#include "foundations/Clock.h"
#include "foundations/NotificationCenter.h"
#include "sources/TaskManagerFactory.h"

#include <QObject>

#include <optional>

namespace vantrel {

/**
 * Gathers the finished tasks of all enabled sources for the Analyze screen, and keeps them for five minutes.
 * A source that fails costs only its own tasks. GUI thread; owned by the screen's view model.
 */
class CompletedTasksManager : public QObject
{
    Q_OBJECT
public:
    CompletedTasksManager(TaskManagerFactory &factory, NotificationCenter &notifications, Clock &clock,
                          QObject *parent = nullptr);

    bool isLoading() const { return m_isLoading; }
    /** Newest first. */
    const WorkItems &completedTasks() const { return m_completedTasks; }
    std::optional<QString> errorMessage() const { return m_errorMessage; }

    /**
     * Never throws: the outcome is in completedTasks() and errorMessage(). Of two fetches that overlap the
     * one that began last wins. A fresh cache is served whatever its window was.
     */
    QCoro::Task<> fetchCompletedTasks(int lookbackDays);
    void clearCache();

Q_SIGNALS:
    void changed();
    /** A text for the screen reader. */
    void announced(const QString &text);

private:
    QCoro::Task<WorkItems> collect(int lookbackDays);
    WorkItems filterValidCompletedTasks(const WorkItems &tasks, int lookbackDays) const;
    bool isCacheFresh() const;

    TaskManagerFactory &m_factory;
    Clock &m_clock;
    bool m_isLoading = false;
    WorkItems m_completedTasks;
    std::optional<QString> m_errorMessage;
    WorkItems m_cachedTasks;
    std::optional<Date> m_cacheTimestamp;
    int m_generation = 0;
};

} // namespace vantrel
