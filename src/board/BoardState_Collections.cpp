#include "board/BoardState.h"

#include "foundations/Log.h"
#include "sources/TaskRepository.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace vantrel {

WorkItemPtr BoardState::task(const QString &id) const
{
    return m_placements.task(id);
}

int BoardState::taskCount() const
{
    return static_cast<int>(m_placements.taskCount());
}

WorkItems BoardState::tasks() const
{
    return m_placements.tasks();
}

WorkItems BoardState::getAllTasks() const
{
    WorkItems result;
    QSet<QString> seen;
    const auto append = [&](const WorkItemPtr &task) {
        if (!seen.contains(task->id())) {
            seen.insert(task->id());
            result.push_back(task);
        }
    };
    for (const Column &column : m_columnManager.columns()) {
        if (!column.isCompleted()) {
            const WorkItems tasks = tasksByColumn(column.id);
            std::for_each(tasks.begin(), tasks.end(), append);
        }
    }
    for (const WorkItemPtr &task : m_placements.tasks()) {
        if (!task->isComplete()) {
            append(task);
        }
    }
    return result;
}

QStringList BoardState::inBoardOrder(const QStringList &ids) const
{
    std::vector<std::tuple<int, int, qsizetype, QString>> placed;
    for (const QString &id : ids) {
        if (const TaskPosition *place = m_placements.find(id)) {
            placed.emplace_back(m_swimLaneManager.indexOf(resolvedSwimLaneId(*place)),
                                m_columnManager.indexOf(place->columnId), m_placements.indexInCell(id), id);
        }
    }
    std::sort(placed.begin(), placed.end());
    QStringList ordered;
    for (const auto &place : placed) {
        ordered.append(std::get<QString>(place));
    }
    return ordered;
}

WorkItemPtr BoardState::findTaskById(const QString &id)
{
    if (const WorkItemPtr found = m_placements.task(id)) {
        return found;
    }
    const WorkItemPtr cached = m_deletedTaskIds.contains(id) ? nullptr : m_services.repository.cachedTask(id);
    if (cached) {
        log::info(
            u"Task %1 not found in tasks collection but found in repository cache - adding to tasks collection"_s
                .arg(id));
        m_placements.putTask(cached);
    }
    return cached;
}

WorkItems BoardState::cell(SwimLaneId swimLaneId, ColumnId columnId) const
{
    return m_placements.cell({swimLaneId, columnId});
}

WorkItems BoardState::tasksByColumn(ColumnId columnId) const
{
    WorkItems tasks;
    for (const SwimLane &swimLane : m_swimLaneManager.swimLanes()) {
        const WorkItems more = cell(swimLane.id, columnId);
        tasks.insert(tasks.end(), more.begin(), more.end());
    }
    return tasks;
}

WorkItems BoardState::tasksForColumn(ColumnId columnId) const
{
    return shown(tasksByColumn(columnId));
}

WorkItems BoardState::tasksForColumnAndSwimLane(ColumnId columnId, SwimLaneId swimLaneId) const
{
    return shown(cell(swimLaneId, columnId));
}

WorkItems BoardState::shown(WorkItems tasks) const
{
    if (const TaskFilter filter = m_filterManager.taskFilter(); filter.isActive()) {
        std::erase_if(tasks, [&filter](const WorkItemPtr &task) { return !filter.accepts(*task); });
    }
    return tasks;
}

SwimLaneId BoardState::resolvedSwimLaneId(const TaskPosition &position) const
{
    return m_placements.shownSwimLane(position.swimLaneId);
}

quint64 BoardState::cellRevision(CellId cell) const
{
    return m_placements.revision(cell) + m_filterRevision;
}

void BoardState::rebuildDerivedCollections()
{
    log::debug(u"Rebuilding derived collections from single source of truth"_s);
    for (const CellId cell : m_placements.cells()) {
        m_placements.size(cell);
    }
}

void BoardState::touch(const QString &taskId)
{
    if (m_isOrganizing) {
        m_touchedTaskIds.insert(taskId);
    }
    m_placements.markChanged(taskId);
    invalidateDerivedCollections();
}

void BoardState::setPlacement(const TaskPosition &position, Tie tie)
{
    m_placements.set(position, tie);
    touch(position.taskId);
}

bool BoardState::removePlacement(const QString &taskId)
{
    const bool wasPlaced = m_placements.remove(taskId);
    touch(taskId);
    return wasPlaced;
}

} // namespace vantrel
