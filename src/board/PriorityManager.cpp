#include "board/PriorityManager.h"

#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "persistence/PersistenceManager.h"

namespace vantrel {

namespace {

PriorityManager::TasksByPriority emptyMatrix()
{
    PriorityManager::TasksByPriority matrix;
    for (const EisenhowerPriority priority : AllEisenhowerPriorities) {
        matrix[priority];
    }
    return matrix;
}

QString described(const PriorityManager::TasksByPriority &matrix)
{
    QStringList quadrants;
    for (const auto &[priority, tasks] : matrix) {
        quadrants.append(displayName(priority) + u": " + QString::number(tasks.size()));
    }
    return quadrants.join(u", ");
}

void logSkipped(const QString &itemClass, const QString &taskId)
{
    if (log::isDebugEnabled()) {
        log::debug(u"Skipping completed " + itemClass + u" from priority view: " + taskId);
    }
}

/** True if the completed task is left out of the matrix. Those of the outside sources filter for themselves.
 */
bool isSkipped(const WorkItem &task)
{
    switch (sourceOf(task.id())) {
    case TaskSource::PlainText:
        logSkipped(QStringLiteral("PlainTextWorkItem"), task.id());
        return true;
    case TaskSource::Reminders:
        logSkipped(QStringLiteral("ReminderWorkItem"), task.id());
        return true;
    default:
        return false;
    }
}

} // namespace

PriorityManager::PriorityManager(PersistenceManager &persistence, NotificationCenter &notifications,
                                 QObject *parent)
    : QObject(parent),
      m_persistence(persistence),
      m_notifications(notifications),
      m_tasksByPriority(emptyMatrix())
{
    log::debug(QStringLiteral("PriorityManager initialized"));
}

void PriorityManager::setPriorityAssignments(const Assignments &assignments)
{
    m_assignments = assignments;
    const QStringList unsorted = m_assignments.keys(EisenhowerPriority::Unsorted);
    for (const QString &taskId : unsorted) {
        m_assignments.remove(taskId);
    }
    if (!unsorted.isEmpty()) {
        m_persistence.deleteEisenhowerPriorities(unsorted);
    }
    log::info(u"Loaded " + QString::number(assignments.size()) + u" priority assignments from database");
}

void PriorityManager::assignPriority(const QString &taskId, EisenhowerPriority priority)
{
    if (priority == EisenhowerPriority::Unsorted) {
        removePriority(taskId);
        return;
    }
    m_assignments.insert(taskId, priority);
    m_persistence.saveEisenhowerPriority(taskId, priority);
    log::info(u"Assigned priority " + rawValue(priority) + u" to task " + taskId);
    m_notifications.post(notifications::EisenhowerPriorityUpdated);
}

void PriorityManager::removePriority(const QString &taskId)
{
    removePriorities({taskId});
}

void PriorityManager::removePriorities(const QStringList &taskIds)
{
    for (const QString &taskId : taskIds) {
        m_assignments.remove(taskId);
        log::info(u"Removed priority assignment from task " + taskId);
    }
    m_persistence.deleteEisenhowerPriorities(taskIds);
    m_notifications.post(notifications::EisenhowerPriorityUpdated);
}

void PriorityManager::updateTaskCategorization(const std::vector<WorkItemPtr> &tasks)
{
    TasksByPriority matrix = emptyMatrix();
    QStringList completedIds;
    for (const WorkItemPtr &task : tasks) {
        if (task->isComplete() && m_assignments.contains(task->id())) {
            completedIds.append(task->id());
        }
        if (!task->isComplete() || !isSkipped(*task)) {
            matrix[task->eisenhowerPriority().value_or(EisenhowerPriority::Unsorted)].push_back(task);
        }
    }
    if (matrix != m_tasksByPriority) {
        m_tasksByPriority = std::move(matrix);
        Q_EMIT tasksByPriorityChanged();
    }
    if (log::isDebugEnabled()) {
        log::debug(u"Updated task categorization: " + described(m_tasksByPriority));
    }
    for (const QString &taskId : completedIds) {
        log::info(u"Removing completed task from priority assignments: " + taskId);
    }
    if (!completedIds.isEmpty()) {
        removePriorities(completedIds);
    }
}

void PriorityManager::syncPriorities(const std::vector<WorkItemPtr> &tasks)
{
    for (const WorkItemPtr &task : tasks) {
        task->setEisenhowerPriority(m_assignments.value(task->id(), EisenhowerPriority::Unsorted));
    }
    log::debug(u"Synced priorities for " + QString::number(tasks.size()) + u" tasks");
}

void PriorityManager::handleTaskCompletion(const QString &taskId)
{
    handleTaskCompletions({taskId});
}

void PriorityManager::handleTaskCompletions(const QStringList &taskIds)
{
    QStringList assigned;
    for (const QString &taskId : taskIds) {
        if (m_assignments.contains(taskId)) {
            log::info(u"Handling completion for task " + taskId + u" - removing priority assignment");
            assigned.append(taskId);
        } else {
            log::debug(u"No priority assignment found for completed task " + taskId);
        }
    }
    if (!assigned.isEmpty()) {
        removePriorities(assigned);
    }
}

void PriorityManager::cleanupOrphanedAssignments(const QSet<QString> &currentTaskIds, TaskSources answered)
{
    QStringList orphans;
    for (auto assignment = m_assignments.cbegin(); assignment != m_assignments.cend(); ++assignment) {
        const QString &taskId = assignment.key();
        if (!currentTaskIds.contains(taskId) && answered.testFlag(sourceOf(taskId))) {
            orphans.append(taskId);
        }
    }
    if (orphans.isEmpty()) {
        return;
    }
    log::info(u"Found " + QString::number(orphans.size()) + u" orphaned priority assignments: " +
              orphans.join(u", "));
    for (const QString &taskId : orphans) {
        m_assignments.remove(taskId);
    }
    m_persistence.deleteEisenhowerPriorities(orphans);
    log::info(u"Cleaned " + QString::number(orphans.size()) + u" orphaned priority assignments");
    m_notifications.post(notifications::EisenhowerPriorityUpdated);
}

void PriorityManager::handleDragDropFailure(const QString &taskId,
                                            std::optional<EisenhowerPriority> fromPriority,
                                            std::optional<EisenhowerPriority> toPriority,
                                            const QString &error)
{
    log::error(u"Drag/drop operation failed for task " + taskId + u": " + error);
    if (fromPriority) {
        log::info(u"Reverting task " + taskId + u" to original priority: " + displayName(*fromPriority));
        assignPriority(taskId, *fromPriority);
    } else {
        log::info(u"Reverting task " + taskId + u" to unsorted");
        removePriority(taskId);
    }
    const auto shown = [](std::optional<EisenhowerPriority> priority) {
        return displayName(priority.value_or(EisenhowerPriority::Unsorted));
    };
    m_notifications.post(notifications::PriorityAssignmentFailed, {},
                         {{QStringLiteral("taskId"), taskId},
                          {QStringLiteral("error"), error},
                          {QStringLiteral("fromPriority"), shown(fromPriority)},
                          {QStringLiteral("toPriority"), shown(toPriority)}});
}

} // namespace vantrel
