#include "board/BoardState.h"

#include "feedback/SoundManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {

// Seconds for which a success is shown.
constexpr double SuccessTime = 1.5;

constexpr LogCategory Category = LogCategory::TaskMovement;

/** Without a wish one step up, and down for the first card. */
int reorderTarget(int current, int count, std::optional<int> wanted)
{
    if (wanted) {
        log::info(u"Using explicit target position %1 from drag & drop"_s.arg(*wanted), Category);
        return std::clamp(*wanted, 0, count - 1);
    }
    if (current == 0) {
        log::info(u"First position card - moving down"_s, Category);
        return 1;
    }
    log::info(current == count - 1 ? u"Last position card - moving up"_s
                                   : u"Middle position card - moving up"_s,
              Category);
    return current - 1;
}

} // namespace

/** A task's way from one cell to another. */
struct BoardState::Relocation
{
    WorkItemPtr task;
    Column source;
    Column target;
    SwimLaneId sourceSwimLaneId;
    SwimLaneId targetSwimLaneId;
    std::optional<int> targetPosition;
    TellSource tellSource = TellSource::Yes;

    bool isSameColumn() const { return source.id == target.id; }
    bool isSameSwimLane() const { return sourceSwimLaneId == targetSwimLaneId; }
};

void BoardState::moveTask(const WorkItemPtr &task, ColumnId to, std::optional<SwimLaneId> swimLaneId,
                          std::optional<int> position)
{
    performMove(task, to, swimLaneId, position, TellSource::Yes);
}

void BoardState::moveTaskWithoutTellingSource(const WorkItemPtr &task, ColumnId to,
                                              std::optional<SwimLaneId> swimLaneId,
                                              std::optional<int> position)
{
    performMove(task, to, swimLaneId, position, TellSource::No);
}

void BoardState::performMove(const WorkItemPtr &task, ColumnId to, std::optional<SwimLaneId> swimLaneId,
                             std::optional<int> position, TellSource tellSource)
{
    const QString id = task->id();
    log::info(u"======= TASK MOVE OPERATION START ======="_s, Category);
    log::info(u"Moving task '"_s + task->name() + u"' (" + id + u") to column " + to.text() +
                  (swimLaneId ? u" and swimlane "_s + swimLaneId->text() : QString()) +
                  (position ? u" at position "_s + QString::number(*position) : QString()),
              Category);
    const Column *target = m_columnManager.column(to);
    if (!target) {
        log::error(u"Target column not found: "_s + to.text(), Category);
        return;
    }
    if (m_deletedTaskIds.contains(id)) {
        log::error(u"Task was deleted: "_s + id, Category);
        return;
    }
    if (!m_placements.task(id)) {
        m_placements.putTask(task);
    }
    const TaskPosition *placement = m_placements.find(id);
    if (!placement) {
        log::warning(u"Task not found in task positions: "_s + id + u" - treating as new task", Category);
        const SwimLaneId first = m_swimLaneManager.swimLanes().front().id;
        addTask(task, to, swimLaneId && m_swimLaneManager.swimLane(*swimLaneId) ? *swimLaneId : first,
                position);
        return;
    }
    const Column *source = m_columnManager.column(placement->columnId);
    if (!source) {
        log::error(u"Source column not found: "_s + placement->columnId.text(), Category);
        return;
    }
    const SwimLaneId sourceSwimLaneId = resolvedSwimLaneId(*placement);
    SwimLaneId targetSwimLaneId = swimLaneId.value_or(sourceSwimLaneId);
    if (!m_swimLaneManager.swimLane(targetSwimLaneId)) {
        log::warning(u"Target swimlane not found: "_s + targetSwimLaneId.text(), Category);
        targetSwimLaneId = sourceSwimLaneId;
    }
    const Relocation move{task, *source, *target, sourceSwimLaneId, targetSwimLaneId, position, tellSource};
    if (move.isSameColumn() && move.isSameSwimLane()) {
        handleReorderWithinLocation(task, *target, targetSwimLaneId, position);
    } else {
        handleMoveBetweenLocations(move);
    }
}

/**
 * Only the moved task's number changes: it ties with the one at its new place, in front of it on the way up
 * and behind it on the way down. That needs numbers without gaps.
 */
void BoardState::handleReorderWithinLocation(const WorkItemPtr &task, const Column &column,
                                             SwimLaneId swimLaneId, std::optional<int> targetPosition)
{
    log::info(u"Task is moving within the same column and swimlane - handling as reordering"_s, Category);
    const CellId cell{swimLaneId, column.id};
    const int count = static_cast<int>(m_placements.size(cell));
    const int current = static_cast<int>(std::max<qsizetype>(0, m_placements.indexInCell(task->id())));
    log::info(u"REORDERING: Task %1 was at position %2"_s.arg(task->name(), QString::number(current)),
              Category);
    if (count < 2) {
        log::info(u"Single card column - no movement possible"_s, Category);
        return;
    }
    const int target = reorderTarget(current, count, targetPosition);
    if (target == current) {
        log::info(u"Target position is same as current - no change needed"_s, Category);
        return;
    }
    log::info(u"REORDERING: Setting target position to %1"_s.arg(target), Category);
    densify(cell);
    setPlacement({task->id(), column.id, swimLaneId, target},
                 target < current ? Tie::BeforeEquals : Tie::AfterEquals);
    updateTaskPositions(column.id, swimLaneId);
    setTaskOperationStatus(task->id(), TaskMoveStatus::success());
    markTaskOperationSuccessful(task->id(), SuccessTime);
    log::info(u"Reordered task '%1' within column '%2' and swimlane '%3'"_s.arg(
                  task->name(), column.name, m_swimLaneManager.getSwimLaneName(swimLaneId)),
              Category);
    log::info(u"Moved task %1 from position %2 to %3 in column %4"_s.arg(
                  task->name(), QString::number(current), QString::number(target), column.name),
              Category);
}

void BoardState::handleMoveBetweenLocations(const Relocation &move)
{
    const QString id = move.task->id();
    const QString name = move.task->name();
    const QString from = move.source.name + u'/' + m_swimLaneManager.getSwimLaneName(move.sourceSwimLaneId);
    const QString to = move.target.name + u'/' + m_swimLaneManager.getSwimLaneName(move.targetSwimLaneId);
    log::info(u"BEFORE MOVE: Task '%1' is currently in column '%2' (%3) and swimlane '%4'"_s.arg(
                  name, move.source.name, move.source.id.text(),
                  m_swimLaneManager.getSwimLaneName(move.sourceSwimLaneId)),
              Category);
    setTaskOperationStatus(id, TaskMoveStatus::doing());
    placeNewcomer(id, {move.targetSwimLaneId, move.target.id}, move.targetPosition);
    log::info(u"MOVE COMPLETED: Task '%1' (%2) moved %3' to %4'"_s.arg(name, id, from, to), Category);
    updatePositionsAfterMove(move);
    log::info(u"======= TASK MOVE OPERATION COMPLETE ======="_s, Category);
    giveMoveFeedback(move);
    post(notifications::TaskMoved, id);
    postSwimLaneWIPCountsChanged();
    if (move.tellSource == TellSource::Yes && shouldUpdateOmniFocus(move.source, move.target)) {
        launch(updateTaskManagerForTaskMove(move.task, move.target, move.targetSwimLaneId),
               u"updateTaskManagerForTaskMove"_s);
    } else {
        setTaskOperationStatus(id, TaskMoveStatus::success());
        markTaskOperationSuccessful(id, SuccessTime);
    }
}

/**
 * A cell left for another swimlane of its column, and a cell of a completed column, keep the gap in their
 * stored numbers.
 */
void BoardState::updatePositionsAfterMove(const Relocation &move)
{
    if (!move.isSameColumn() && !move.source.isCompleted()) {
        log::info(u"PERSISTENCE: Reindexing all tasks in source column/swimlane '%1/%2'"_s.arg(
                      move.source.name, m_swimLaneManager.getSwimLaneName(move.sourceSwimLaneId)),
                  Category);
        updateTaskPositions(move.source.id, move.sourceSwimLaneId);
    }
    log::info(u"PERSISTENCE: Reindexing all tasks in target column/swimlane '%1/%2'"_s.arg(
                  move.target.name, m_swimLaneManager.getSwimLaneName(move.targetSwimLaneId)),
              Category);
    updateTaskPositions(move.target.id, move.targetSwimLaneId);
}

void BoardState::giveMoveFeedback(const Relocation &move)
{
    SoundManager &sounds = m_services.sounds;
    if (move.target.isCompleted()) {
        sounds.playSound(Sound::Completion, tr("Task marked complete"));
    } else if (move.isSameSwimLane()) {
        sounds.playSound(Sound::ColumnMove, tr("Task moved to %1 column").arg(move.target.name));
    } else {
        const QString name = m_swimLaneManager.getSwimLaneName(move.targetSwimLaneId);
        sounds.playSound(Sound::SwimLaneMove, tr("Task moved to %1 swimlane").arg(name));
    }
}

void BoardState::moveTaskToSwimLane(const QString &taskId, SwimLaneId swimLaneId)
{
    log::info(u"Moving task %1 to swimlane %2"_s.arg(taskId, swimLaneId.text()), Category);
    const TaskPosition *found = m_placements.find(taskId);
    if (!found) {
        log::error(u"Task not found in any column or swimlane: "_s + taskId, Category);
        return;
    }
    const TaskPosition source = *found;
    if (source.swimLaneId == swimLaneId) {
        log::info(u"Task is already in this swimlane - no action needed"_s, Category);
        return;
    }
    const WorkItemPtr task = findTaskById(taskId);
    if (!task) {
        log::error(u"Task not found: "_s + taskId, Category);
        return;
    }
    if (!m_swimLaneManager.swimLane(swimLaneId)) {
        log::error(u"Target swimlane not found: "_s + swimLaneId.text(), Category);
        return;
    }
    log::info(u"Moving task '%1' from swimlane %2 to %3 (same column)"_s.arg(
                  task->name(), source.swimLaneId.text(), swimLaneId.text()),
              Category);
    placeInColumn(task, source.columnId, swimLaneId, {});
    updateTaskPositions(source.columnId, resolvedSwimLaneId(source));
    updateTaskPositions(source.columnId, swimLaneId);
    log::info(u"Successfully moved task to new swimlane"_s, Category);
}

bool BoardState::shouldUpdateOmniFocus(const Column &from, const Column &to)
{
    return from.isCompleted() != to.isCompleted();
}

} // namespace vantrel
