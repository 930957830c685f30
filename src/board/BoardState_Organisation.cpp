#include "board/BoardState.h"

#include "board/rules/TaskPlacement.h"
#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/TimeSlice.h"
#include "sources/TaskRepository.h"

#include <QCoroFuture>
#include <QPointer>
#include <QtConcurrent>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {

constexpr double CountsAfterOrganizationDelay = 0.1;

using Question = rules::PlacementQuestion;
using Answer = rules::PlacementAnswer;

std::vector<rules::FetchedTask> recordsOf(const Placements &placements)
{
    std::vector<rules::FetchedTask> records;
    records.reserve(static_cast<size_t>(placements.taskCount()));
    placements.forEachTask([&records](const WorkItemPtr &task) {
        records.push_back(
            {task->id(), task->name(), task->isComplete(), task->isBlocked(), task->blockReason()});
    });
    return records;
}

/** Ten thousand objects take longer to destroy than a turn of the event loop should. */
QCoro::Task<> release(WorkItems items, Clock &clock)
{
    TimeSlice slice;
    while (!items.empty()) {
        items.pop_back();
        if (slice.isUsedUp()) {
            co_await clock.yieldToEventLoop();
            slice.restart();
        }
    }
}

/** Works on a thread of its own: ten thousand records are too many for the GUI thread. */
QFuture<std::shared_ptr<Answer>> answerOf(Question question)
{
    auto asked = std::make_shared<Question>(std::move(question));
    return QtConcurrent::run(
        [asked = std::move(asked)] { return std::make_shared<Answer>(placeTasks(*asked)); });
}

} // namespace

/** What one run of organizeTasks() knows once the store has been read. */
struct BoardState::OrganizationRun
{
    BoardState &board;
    TaskSources answered;
    /** False if the store could not be read or lags behind: then nothing is written or removed. */
    bool isMemoryUpToDate = true;
    QSet<QString> blockedTaskIds;
    QHash<QString, QString> blockReasons;
    PriorityManager::Assignments priorities;

    OrganizationRun(BoardState &owner, TaskSources answeredSources, const BoardMemory &memory)
        : board(owner),
          answered(answeredSources),
          isMemoryUpToDate(!memory.isBehind),
          blockedTaskIds(memory.blockedTaskIds),
          blockReasons(memory.blockReasons),
          priorities(memory.priorities)
    {
    }

    Question question(BoardMemory memory) const;
    void applyTaskProperties() const;
    void syncEisenhowerPriorities() const;
    void applyPlacements(const Answer &answer) const;
    void storePlacements(Answer &answer) const;
    void removeStaleRows(const Answer &answer) const;
    void saveAllTaskPositions(Answer &answer) const;
    void categorize() const;
    void finalizeOrganization() const;
    void logResult() const;
    void cleanupOrphanedAssignments() const;
    bool wasTouched(const QString &id) const { return board.m_touchedTaskIds.contains(id); }
};

void BoardState::organizeTasks(const WorkItems &tasks, TaskSources answered)
{
    log::info(u"💀 ORGANIZE TASKS START: Organizing %1 tasks..."_s.arg(tasks.size()));
    WorkItems known = tasks;
    if (!m_deletedTaskIds.isEmpty()) {
        std::erase_if(known,
                      [this](const WorkItemPtr &task) { return m_deletedTaskIds.contains(task->id()); });
    }
    Placements::Replacement replacement = m_placements.replaceTasks(known);
    for (const QString &id : std::as_const(replacement.repeated)) {
        log::error(u"Duplicate values for key: '%1'"_s.arg(id));
    }
    launch(release(std::move(replacement.former), m_services.clock), u"release"_s);
    invalidateDerivedCollections();
    m_touchedTaskIds.clear();
    m_isOrganizing = true;
    m_lastAnswered = answered;
    launch(continueOrganizeTasks(++m_organizationRun, answered), u"organizeTasks"_s);
}

/**
 * Places are worked out off the GUI thread, from records. Whatever the user does from the start of the run to
 * its end is in m_touchedTaskIds, and stays as the user left it.
 */
QCoro::Task<> BoardState::continueOrganizeTasks(quint64 number, TaskSources answered)
{
    const QPointer<BoardState> self(this);
    const auto isOver = [self, number] {
        const bool isReplaced = self && self->m_organizationRun != number;
        if (isReplaced) {
            log::info(u"Dropped an organization that a later one has replaced"_s);
        }
        return !self || isReplaced;
    };

    // A move that is still to be stored must not be read back as it was before.
    co_await m_persistenceQueue.drained();
    if (isOver()) {
        co_return;
    }
    std::optional<BoardMemory> read = co_await m_services.persistence.readBoardMemory();
    if (isOver()) {
        co_return;
    }
    noteWhetherStoreWasRead(read.has_value());
    BoardMemory memory = read ? std::move(*read) : BoardMemory();
    memory.isBehind |= !read;

    log::info(u"💀 Starting main task organization with loaded data"_s);
    log::info(u"💀 Preparing task position lookups and analyzing placement"_s);
    OrganizationRun run(*this, answered, memory);
    const QFuture<std::shared_ptr<Answer>> placing = answerOf(run.question(std::move(memory)));
    const std::shared_ptr<Answer> answer = co_await placing;
    if (isOver()) {
        co_return;
    }
    if (answer->matchesNoColumn && run.isMemoryUpToDate) {
        // The old places are about to go: not without a copy.
        const std::optional<QString> copy = co_await m_services.persistence.backUpDatabase();
        if (isOver()) {
            co_return;
        }
        run.isMemoryUpToDate = copy.has_value();
    }
    // Of ten thousand new tasks each step takes some milliseconds: they have turns of their own.
    run.applyTaskProperties();
    run.syncEisenhowerPriorities();
    co_await m_services.clock.yieldToEventLoop();
    if (isOver()) {
        co_return;
    }
    run.applyPlacements(*answer);
    co_await m_services.clock.yieldToEventLoop();
    if (isOver()) {
        co_return;
    }
    run.storePlacements(*answer);
    m_isOrganizing = false;
    co_await m_services.clock.yieldToEventLoop();
    if (isOver()) {
        co_return;
    }
    run.categorize();
    co_await m_services.clock.yieldToEventLoop();
    if (isOver()) {
        co_return;
    }
    run.finalizeOrganization();
}

/** A run under way may put tasks into a column that is gone. The next one reads what that change stores. */
void BoardState::restartOrganization()
{
    if (!m_isOrganizing) {
        return;
    }
    const quint64 number = ++m_organizationRun;
    m_services.clock.soon(this, [this, number] {
        if (m_organizationRun == number) {
            organizeTasks(m_placements.tasks(), m_lastAnswered);
        }
    });
}

void BoardState::noteWhetherStoreWasRead(bool wasRead)
{
    if (!wasRead) {
        log::error(u"Could not read the stored placements: nothing is written or removed"_s);
    }
    // Where there is no database at all, that has been told in better words.
    if (!wasRead && !m_hasToldOfFailedRead && !m_services.persistence.isWithoutDatabase()) {
        m_services.toasts.show(tr("The stored board could not be read. Nothing in it was changed."),
                               ToastManager::ToastStyle::Error);
    }
    m_hasToldOfFailedRead = !wasRead;
}

Question BoardState::OrganizationRun::question(BoardMemory memory) const
{
    Question question;
    question.tasks = recordsOf(board.m_placements);
    question.columns = board.m_columnManager.columns();
    question.swimLanes = board.m_swimLaneManager.swimLanes();
    question.current.reserve(static_cast<size_t>(board.m_placements.count()));
    for (const CellId cell : board.m_placements.cells()) {
        const std::vector<TaskPosition> places = board.m_placements.placesIn(cell);
        question.current.insert(question.current.end(), places.begin(), places.end());
    }
    question.isMemoryUpToDate = !memory.isBehind;
    question.memory = std::move(memory);
    question.answered = answered;
    question.now = board.m_services.clock.now();
    return question;
}

/** A plain text item has its block from its source, which reads the same store. */
void BoardState::OrganizationRun::applyTaskProperties() const
{
    for (const QString &id : blockedTaskIds) {
        const WorkItemPtr task = board.m_placements.task(id);
        if (!task || wasTouched(id) || qobject_cast<PlainTextWorkItem *>(task.get())) {
            continue;
        }
        task->setBlocked(true);
        if (const auto reason = blockReasons.constFind(id); reason != blockReasons.cend()) {
            task->setBlockReason(*reason);
        }
    }
}

void BoardState::OrganizationRun::syncEisenhowerPriorities() const
{
    PriorityManager &manager = board.m_priorityManager;
    const PriorityManager::Assignments &current = manager.priorityAssignments();
    PriorityManager::Assignments merged = priorities;
    if (!isMemoryUpToDate) {
        merged.insert(current);
    }
    for (const QString &id : board.m_touchedTaskIds) {
        if (const auto found = current.constFind(id); found != current.cend()) {
            merged.insert(id, *found);
        } else {
            merged.remove(id);
        }
    }
    manager.setPriorityAssignments(merged);
    const WorkItems tasks = board.m_placements.tasks();
    manager.syncPriorities(tasks);
    log::debug(u"Synced Eisenhower priorities for %1 tasks"_s.arg(tasks.size()));
}

void BoardState::OrganizationRun::applyPlacements(const Answer &answer) const
{
    Placements &placements = board.m_placements;
    for (const TaskPosition &place : answer.changed) {
        if (!wasTouched(place.taskId) || !placements.find(place.taskId)) placements.setOfTask(place);
    }
    for (const QString &id : answer.displaced) {
        if (!wasTouched(id)) {
            placements.remove(id);
        }
    }
    placements.removePlacesWithoutTask();
}

void BoardState::OrganizationRun::storePlacements(Answer &answer) const
{
    if (isMemoryUpToDate) {
        removeStaleRows(answer);
        saveAllTaskPositions(answer);
    }
}

/** A task that was created since its source answered has a row, and is in the cache, but was not fetched. */
void BoardState::OrganizationRun::removeStaleRows(const Answer &answer) const
{
    QStringList ids;
    qsizetype completedCount = 0;
    for (const rules::StaleRow &row : answer.stale) {
        if (!wasTouched(row.id) && !board.m_placements.task(row.id) &&
            !board.m_services.repository.cachedTask(row.id)) {
            ids.append(row.id);
            completedCount += row.isInCompletedColumn ? 1 : 0;
        }
    }
    if (ids.isEmpty()) {
        return;
    }
    log::info(u"Removing %1 stale task positions from database (%2 completed, %3 other)"_s.arg(ids.size())
                  .arg(completedCount)
                  .arg(ids.size() - completedCount));
    board.m_services.persistence.deleteTaskPositions(ids);
}

/** What is not to be written as it was read, because the user has changed the task, is stored as it stands.
 */
void BoardState::OrganizationRun::saveAllTaskPositions(Answer &answer) const
{
    log::info(u"Re-saving all task positions to ensure database consistency"_s);
    if (answer.rowCount == 0) {
        return;
    }
    log::info(u"Batch saving %1 task positions across all columns and swimlanes"_s.arg(answer.rowCount));
    QSet<CellId> touchedCells;
    std::erase_if(answer.rowsToWrite, [this, &touchedCells](const PersistentTaskPosition &row) {
        if (!wasTouched(row.id)) {
            return false;
        }
        if (const TaskPosition *place = board.m_placements.find(row.id)) {
            touchedCells.insert(board.m_placements.shownCell(*place));
        }
        return true;
    });
    if (!answer.rowsToWrite.empty()) {
        board.m_services.persistence.batchSaveTaskPositions(std::move(answer.rowsToWrite), answer.rowCount);
    }
    for (const CellId cell : touchedCells) {
        board.updateTaskPositions(cell.column, cell.swimLane);
    }
}

void BoardState::OrganizationRun::categorize() const
{
    board.m_filterManager.updateAvailableTags(board.m_placements.tasks());
    board.updateEisenhowerTaskCategorization();
    if (isMemoryUpToDate) {
        cleanupOrphanedAssignments();
    }
}

void BoardState::OrganizationRun::finalizeOrganization() const
{
    board.rebuildDerivedCollections();
    logResult();
    board.clearFocusOfVanishedTask();
    if (board.m_filterManager.isFilterActive()) {
        ++board.m_filterRevision;
    }
    board.m_hasBeenOrganized = true;
    board.invalidateDerivedCollections();
    board.m_services.clock.after(CountsAfterOrganizationDelay, &board, [&board = board] {
        log::info(u"Sending notification to update SwimLane WIP counts after task organization"_s);
        board.postSwimLaneWIPCountsChanged();
    });
    Q_EMIT board.organized();
}

void BoardState::OrganizationRun::logResult() const
{
    log::debug(u"\n\n"_s + QString(66, u'-'));
    log::info(u"💀 8) Task organization complete - verifying results:"_s);
    for (const Column &column : board.m_columnManager.columns()) {
        qsizetype count = 0;
        for (const SwimLane &swimLane : board.m_swimLaneManager.swimLanes()) {
            count += board.m_placements.size({swimLane.id, column.id});
        }
        log::info(u"Column '%1' has %2 tasks"_s.arg(column.name, QString::number(count)));
        if (log::isDebugEnabled()) {
            for (const WorkItemPtr &task : board.tasksByColumn(column.id)) {
                log::debug(u"  "_s + task->debugDescription());
            }
        }
    }
    log::info(u"💀💀💀 ORGANIZE TASKS COMPLETE: Organized %1 tasks, placed %2 tasks across %3 columns 💀💀💀"_s
                  .arg(board.m_placements.taskCount())
                  .arg(board.m_placements.count())
                  .arg(board.m_columnManager.columns().size()));
}

/** Asks only for tasks that have an assignment: the others make no difference. */
void BoardState::OrganizationRun::cleanupOrphanedAssignments() const
{
    QSet<QString> present;
    const PriorityManager::Assignments &assignments = board.m_priorityManager.priorityAssignments();
    for (auto it = assignments.keyBegin(); it != assignments.keyEnd(); ++it) {
        if (board.m_placements.task(*it)) {
            present.insert(*it);
        }
    }
    board.m_priorityManager.cleanupOrphanedAssignments(present, answered);
}

void BoardState::clearFocusOfVanishedTask()
{
    if (!m_focusedTaskId || m_placements.task(*m_focusedTaskId)) {
        return;
    }
    m_focusedTaskId.reset();
    post(notifications::TaskFocusModeChanged);
    Q_EMIT taskFocusChanged();
}

} // namespace vantrel
