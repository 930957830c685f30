#pragma once

#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"
#include "foundations/WorkItem.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <map>
#include <vector>

namespace vantrel {

class PersistenceManager;

/**
 * The Eisenhower matrix: which task stands in which quadrant, kept in the store, and the tasks grouped by it.
 * There is never a stored row for `unsorted`. Owned by BoardState; GUI thread.
 */
class PriorityManager : public QObject
{
    Q_OBJECT
public:
    using TasksByPriority = std::map<EisenhowerPriority, std::vector<WorkItemPtr>>;
    using Assignments = QHash<QString, EisenhowerPriority>;

    PriorityManager(PersistenceManager &persistence, NotificationCenter &notifications,
                    QObject *parent = nullptr);

    /** Always with all five keys. */
    const TasksByPriority &tasksByPriority() const { return m_tasksByPriority; }
    const Assignments &priorityAssignments() const { return m_assignments; }

    /** Takes the assignments as they were just read from the store. */
    void setPriorityAssignments(const Assignments &assignments);

    /** `Unsorted` removes the assignment. */
    void assignPriority(const QString &taskId, EisenhowerPriority priority);
    void removePriority(const QString &taskId);
    void updateTaskCategorization(const std::vector<WorkItemPtr> &tasks);
    /** Sets each task's quadrant to its assignment, or to `unsorted`. */
    void syncPriorities(const std::vector<WorkItemPtr> &tasks);
    void handleTaskCompletion(const QString &taskId);
    /** The same for several tasks, as one change. */
    void handleTaskCompletions(const QStringList &taskIds);
    /** Forgets assignments of tasks of `answered` sources that are not among `currentTaskIds`. */
    void cleanupOrphanedAssignments(const QSet<QString> &currentTaskIds,
                                    TaskSources answered = AllTaskSources);
    void handleDragDropFailure(const QString &taskId, std::optional<EisenhowerPriority> fromPriority,
                               std::optional<EisenhowerPriority> toPriority, const QString &error);

Q_SIGNALS:
    void tasksByPriorityChanged();

private:
    void removePriorities(const QStringList &taskIds);

    PersistenceManager &m_persistence;
    NotificationCenter &m_notifications;
    TasksByPriority m_tasksByPriority;
    Assignments m_assignments;
};

} // namespace vantrel
