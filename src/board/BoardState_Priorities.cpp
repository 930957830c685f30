#include "board/BoardState.h"
#include "foundations/Log.h"

namespace vantrel {

void BoardState::assignEisenhowerPriority(const QString &taskId, EisenhowerPriority priority)
{
    setQuadrant(taskId, priority);
    m_priorityManager.assignPriority(taskId, priority);
    updateEisenhowerTaskCategorization();
    log::info(u"Assigned Eisenhower priority " + displayName(priority) + u" to task " + taskId);
}

void BoardState::removeEisenhowerPriority(const QString &taskId)
{
    setQuadrant(taskId, EisenhowerPriority::Unsorted);
    m_priorityManager.removePriority(taskId);
    updateEisenhowerTaskCategorization();
    log::info(u"Removed Eisenhower priority from task " + taskId);
}

void BoardState::setQuadrant(const QString &taskId, EisenhowerPriority priority)
{
    if (const WorkItemPtr item = findTaskById(taskId)) {
        item->setEisenhowerPriority(priority);
        touch(taskId);
    }
}

int BoardState::getTaskCount(EisenhowerPriority priority) const
{
    return static_cast<int>(m_priorityManager.tasksByPriority().at(priority).size());
}

void BoardState::updateEisenhowerTaskCategorization()
{
    const PriorityManager::Assignments &assignments = m_priorityManager.priorityAssignments();
    WorkItems incomplete;
    incomplete.reserve(static_cast<size_t>(taskCount()));
    QStringList completedWithQuadrant;
    m_placements.forEachTask([&](const WorkItemPtr &task) {
        if (!task->isComplete()) {
            incomplete.push_back(task);
        } else if (assignments.contains(task->id())) {
            completedWithQuadrant.append(task->id());
        }
    });
    m_priorityManager.updateTaskCategorization(incomplete);
    m_priorityManager.handleTaskCompletions(completedWithQuadrant);
}

} // namespace vantrel
