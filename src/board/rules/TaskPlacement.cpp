#include "board/rules/TaskPlacement.h"

#include "foundations/Log.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <tuple>

using namespace Qt::StringLiterals;

namespace vantrel::rules {

namespace {

constexpr int Last = std::numeric_limits<int>::max();
using Row = PersistentTaskPosition;

/** A task with all that is found out about it on the way. */
struct Candidate
{
    const FetchedTask *task = nullptr;
    const Row *row = nullptr;
    const TaskPosition *current = nullptr;
    /** Index of the current place and of the row in what was given, which decide between equals. */
    int currentOrder = Last;
    int rowOrder = Last;
    std::optional<TaskPosition> place;
    /** The number to store: not the place's where absent tasks keep theirs in between. */
    int storedPosition = 0;

    bool isOpen() const { return !place && !task->isComplete; }
    bool isCompleteAndUnplaced() const { return !place && task->isComplete; }

    /** The stored number, if it is one of that cell. */
    int savedPositionIn(CellId cell) const
    {
        return row && row->columnId == cell.column && row->swimLaneId == cell.swimLane ? row->position : Last;
    }
};

using Cell = std::vector<Candidate *>;

/** The places that the board shows as rows, and the stored rows of all other tasks. */
std::vector<Row> rowsWithBoard(const std::vector<Row> &stored, const std::vector<TaskPosition> &current)
{
    std::vector<Row> rows;
    rows.reserve(current.size());
    QSet<QString> shown;
    for (const TaskPosition &place : current) {
        Row &row = rows.emplace_back();
        row.id = place.taskId;
        row.columnId = place.columnId;
        row.swimLaneId = place.swimLaneId;
        row.position = place.position;
        shown.insert(place.taskId);
    }
    std::copy_if(stored.begin(), stored.end(), std::back_inserter(rows),
                 [&shown](const Row &row) { return !shown.contains(row.id); });
    return rows;
}

/** An empty reason is none. */
QStringView reasonOf(const Row &row)
{
    return row.blockReason ? QStringView(*row.blockReason) : QStringView();
}

/** Equal but for the date. */
bool isSameRow(const Row &a, const Row &b)
{
    return a.id == b.id && a.columnId == b.columnId && a.position == b.position &&
           a.stableColumnId == b.stableColumnId && a.swimLaneId == b.swimLaneId &&
           a.stableSwimLaneId == b.stableSwimLaneId && a.isBlocked == b.isBlocked &&
           reasonOf(a) == reasonOf(b);
}

/** One run of placeTasks(). */
class Placing
{
public:
    explicit Placing(const PlacementQuestion &question)
        : m_question(question),
          m_boardRows(question.isMemoryUpToDate ? std::vector<Row>()
                                                : rowsWithBoard(question.memory.positions, question.current)),
          m_rows(question.isMemoryUpToDate ? question.memory.positions : m_boardRows)
    {
    }
    Q_DISABLE_COPY_MOVE(Placing)

    PlacementAnswer answer();

private:
    void prepareLookupMaps();
    void analyzeTaskPlacement() const;
    void placeSavedTasks();
    void placeUnplacedCompletedTasks();
    void placeRemainingTasksWithSavedPositions();
    void placeNewTasksInQueue();
    void sortOutAbsentRows();
    void sortTasksWithinColumns();
    void sortCell(CellId id, Cell &cell) const;
    void logSample(CellId id, const Cell &cell) const;
    void leaveRoomForAbsentTasks(CellId id, const Cell &cell) const;
    void collectRows();
    void collectChanges();

    const Column *firstColumn(ColumnType type) const;
    SwimLaneId defaultSwimLane() const;
    void place(Candidate &candidate, ColumnId columnId, SwimLaneId swimLaneId, int position);
    void placeAtEnd(Candidate &candidate, CellId cell);
    Row rowFor(const Candidate &candidate, const Column &column, const SwimLane &swimLane) const;

    const PlacementQuestion &m_question;
    const std::vector<Row> m_boardRows;
    const std::vector<Row> &m_rows;
    PlacementAnswer m_answer;
    std::vector<Candidate> m_candidates;
    QHash<QString, Candidate *> m_candidatesById;
    /** By the index of the row; null where the task is absent. */
    std::vector<Candidate *> m_candidatesOfRows;
    QHash<ColumnId, const Column *> m_columnsById;
    QHash<SwimLaneId, const SwimLane *> m_swimLanesById;
    /** How many tasks were placed in each cell so far. */
    QHash<CellId, int> m_cellSizes;
    /** Rows of sources that did not answer. */
    QHash<CellId, std::vector<const Row *>> m_absentRows;
};

PlacementAnswer Placing::answer()
{
    prepareLookupMaps();
    analyzeTaskPlacement();
    placeSavedTasks();
    placeUnplacedCompletedTasks();
    placeRemainingTasksWithSavedPositions();
    placeNewTasksInQueue();
    if (m_question.isMemoryUpToDate) {
        sortOutAbsentRows();
    }
    sortTasksWithinColumns();
    if (m_question.isMemoryUpToDate) {
        collectRows();
    }
    collectChanges();
    return std::move(m_answer);
}

void Placing::prepareLookupMaps()
{
    for (const Column &column : m_question.columns) {
        m_columnsById.insert(column.id, &column);
    }
    for (const SwimLane &swimLane : m_question.swimLanes) {
        m_swimLanesById.insert(swimLane.id, &swimLane);
    }
    m_candidates.reserve(m_question.tasks.size());
    m_candidatesById.reserve(static_cast<qsizetype>(m_question.tasks.size()));
    for (const FetchedTask &task : m_question.tasks) {
        Candidate &candidate = m_candidates.emplace_back();
        candidate.task = &task;
        m_candidatesById.insert(task.id, &candidate);
    }
    m_candidatesOfRows.reserve(m_rows.size());
    for (int order = 0; const Row &row : m_rows) {
        Candidate *candidate = m_candidatesById.value(row.id);
        m_candidatesOfRows.push_back(candidate);
        if (candidate) {
            candidate->row = &row;
            candidate->rowOrder = order;
        }
        ++order;
    }
    for (int order = 0; const TaskPosition &place : m_question.current) {
        if (Candidate *candidate = m_candidatesById.value(place.taskId)) {
            candidate->current = &place;
            candidate->currentOrder = order;
        }
        ++order;
    }
    const auto namesColumn = [this](const Row &row) {
        return m_columnsById.contains(row.columnId);
    };
    m_answer.matchesNoColumn = !m_rows.empty() && std::none_of(m_rows.begin(), m_rows.end(), namesColumn);
}

void Placing::analyzeTaskPlacement() const
{
    log::info(u"Loaded %1 task positions from database"_s.arg(m_question.memory.positions.size()));
    const auto hasRow = [](const Candidate &candidate) {
        return candidate.row != nullptr;
    };
    const auto matched = std::count_if(m_candidates.begin(), m_candidates.end(), hasRow);
    log::info(u"Found %1 tasks with saved positions"_s.arg(matched));
    if (matched < static_cast<std::ptrdiff_t>(m_rows.size())) {
        const auto missing = static_cast<std::ptrdiff_t>(m_candidates.size()) - matched;
        log::info(u"Missing %1 tasks that have saved positions"_s.arg(missing));
    }
}

void Placing::placeSavedTasks()
{
    const Column *completed = firstColumn(ColumnType::Completed);
    int count = 0;
    for (Candidate &candidate : m_candidates) {
        if (!candidate.row) {
            continue;
        }
        const Row &row = *candidate.row;
        const Column *target = m_columnsById.value(row.columnId);
        if (!target) {
            if (log::isDebugEnabled()) {
                log::debug(
                    u"Skipping task %1: column %2 no longer exists"_s.arg(row.id, row.columnId.text()));
            }
            continue;
        }
        if (candidate.task->isComplete && !target->isCompleted() && completed) {
            target = completed;
        }
        place(candidate, target->id, row.swimLaneId.value_or(defaultSwimLane()), row.position);
        ++count;
    }
    log::info(u"Placed %1 tasks from saved positions"_s.arg(count));
}

void Placing::placeUnplacedCompletedTasks()
{
    const auto isMeant = [](const Candidate &candidate) {
        return candidate.isCompleteAndUnplaced();
    };
    const auto count = std::count_if(m_candidates.begin(), m_candidates.end(), isMeant);
    if (count == 0) {
        return;
    }
    log::info(u"Placing %1 unplaced completed tasks"_s.arg(count));
    const Column *target = firstColumn(ColumnType::Completed);
    if (!target) {
        return;
    }
    for (Candidate &candidate : m_candidates) {
        if (candidate.isCompleteAndUnplaced()) {
            placeAtEnd(candidate, {defaultSwimLane(), target->id});
        }
    }
}

/** A second look, for a store with two rows of one task of which the later names a column that is gone. */
void Placing::placeRemainingTasksWithSavedPositions()
{
    log::info(u"Checking ALL columns for saved task positions..."_s);
    int count = 0;
    for (const Column &target : m_question.columns) {
        if (target.isCompleted()) {
            continue;
        }
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            const Row &row = m_rows[i];
            Candidate *candidate = m_candidatesOfRows[i];
            if (candidate && candidate->isOpen() && row.columnId == target.id) {
                place(*candidate, target.id, row.swimLaneId.value_or(defaultSwimLane()), row.position);
                ++count;
                if (log::isDebugEnabled()) {
                    log::debug(u"PLACED FROM MEMORY: Task '%1' id=%2 column=%3 position=%4"_s.arg(
                        candidate->task->name, row.id, target.name, QString::number(row.position)));
                }
            }
        }
    }
    if (log::isDebugEnabled()) {
        for (const Candidate &candidate : m_candidates) {
            if (candidate.isOpen()) {
                log::debug(u"No saved position found in ANY column for task: "_s + candidate.task->id);
            }
        }
    }
    log::info(u"Placed %1 tasks using stable column identifiers"_s.arg(count));
}

void Placing::placeNewTasksInQueue()
{
    log::info(u"⚙️ 6) Placing remaining uncompleted tasks in default queue..."_s);
    const Column *queue = firstColumn(ColumnType::Queue);
    int count = 0;
    for (Candidate &candidate : m_candidates) {
        if (!candidate.isOpen()) {
            continue;
        }
        if (!queue) {
            log::warning(u"No Queue column found for new task: "_s + candidate.task->id);
            continue;
        }
        placeAtEnd(candidate, {defaultSwimLane(), queue->id});
        ++count;
    }
    log::info(u"Placed %1 new tasks in default Queue column"_s.arg(count));
}

/** Tells the rows that nobody will ask for again from those that wait for their source. */
void Placing::sortOutAbsentRows()
{
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        if (m_candidatesOfRows[i]) {
            continue;
        }
        if (m_question.answered.testFlag(sourceOf(row.id))) {
            const Column *column = m_columnsById.value(row.columnId);
            m_answer.stale.push_back({row.id, column && column->isCompleted()});
        } else if (row.swimLaneId) {
            m_absentRows[{*row.swimLaneId, row.columnId}].push_back(&row);
        }
    }
}

void Placing::sortTasksWithinColumns()
{
    log::info(u"⚙️ 7) Sorting tasks within columns and reapplying positions in database..."_s);
    QHash<CellId, Cell> cells;
    for (Candidate &candidate : m_candidates) {
        if (candidate.place) {
            cells[candidate.place->cell()].push_back(&candidate);
        }
    }
    QSet<ColumnId> columnsWithRows;
    for (const Row &row : m_rows) {
        columnsWithRows.insert(row.columnId);
    }
    for (const Column &column : m_question.columns) {
        if (column.isCompleted()) {
            continue;
        }
        if (!columnsWithRows.contains(column.id)) {
            log::info(u"No saved positions for column '%1' - skipping sort"_s.arg(column.name));
            continue;
        }
        for (const SwimLane &swimLane : m_question.swimLanes) {
            const CellId id{swimLane.id, column.id};
            Cell &cell = cells[id];
            sortCell(id, cell);
            log::info(u"Sorted tasks in column '%1' and swimlane '%2':"_s.arg(column.name, swimLane.name));
            logSample(id, cell);
            log::info(u"Sorted %1 tasks in column '%2' and swimlane '%3'"_s.arg(QString::number(cell.size()),
                                                                                column.name, swimLane.name));
        }
    }
}

/** By stored number, then as shown, then by row, then by arrival; and numbers the cell in that order. */
void Placing::sortCell(CellId id, Cell &cell) const
{
    std::stable_sort(cell.begin(), cell.end(), [id](const Candidate *a, const Candidate *b) {
        return std::tuple(a->savedPositionIn(id), a->currentOrder, a->rowOrder) <
               std::tuple(b->savedPositionIn(id), b->currentOrder, b->rowOrder);
    });
    for (int number = 0; Candidate * candidate : cell) {
        candidate->place->position = number;
        candidate->storedPosition = number;
        ++number;
    }
    if (m_absentRows.contains(id)) {
        leaveRoomForAbsentTasks(id, cell);
    }
}

/**
 * The tasks of a source that did not answer are not shown, but their rows wait for them: the stored numbers
 * of the others leave out theirs, so that the cell is in its old order when the source is back.
 */
void Placing::leaveRoomForAbsentTasks(CellId id, const Cell &cell) const
{
    std::vector<const Row *> absent = m_absentRows.value(id);
    std::stable_sort(absent.begin(), absent.end(),
                     [](const Row *a, const Row *b) { return a->position < b->position; });
    int number = 0;
    auto next = absent.begin();
    for (Candidate *candidate : cell) {
        for (; next != absent.end() && (*next)->position <= candidate->savedPositionIn(id); ++next) {
            number = std::max(number, (*next)->position + 1);
        }
        candidate->storedPosition = number++;
    }
}

void Placing::collectRows()
{
    for (const Candidate &candidate : m_candidates) {
        const Column *column = candidate.place ? m_columnsById.value(candidate.place->columnId) : nullptr;
        const SwimLane *swimLane = column ? m_swimLanesById.value(candidate.place->swimLaneId) : nullptr;
        if (!swimLane) {
            continue;
        }
        ++m_answer.rowCount;
        Row row = rowFor(candidate, *column, *swimLane);
        if (!candidate.row || !isSameRow(row, *candidate.row)) {
            m_answer.rowsToWrite.push_back(std::move(row));
        }
    }
}

void Placing::collectChanges()
{
    std::vector<const Candidate *> changed;
    for (const Candidate &candidate : m_candidates) {
        if (candidate.place && (!candidate.current || *candidate.current != *candidate.place)) {
            changed.push_back(&candidate);
        } else if (!candidate.place && candidate.current) {
            m_answer.displaced.append(candidate.task->id);
        }
    }
    std::stable_sort(changed.begin(), changed.end(), [](const Candidate *a, const Candidate *b) {
        return std::tuple(a->place->position, a->currentOrder, a->rowOrder) <
               std::tuple(b->place->position, b->currentOrder, b->rowOrder);
    });
    m_answer.changed.reserve(changed.size());
    for (const Candidate *candidate : changed) {
        m_answer.changed.push_back(*candidate->place);
    }
}

const Column *Placing::firstColumn(ColumnType type) const
{
    const auto found = std::find_if(m_question.columns.begin(), m_question.columns.end(),
                                    [type](const Column &column) { return column.type == type; });
    return found == m_question.columns.end() ? nullptr : &*found;
}

SwimLaneId Placing::defaultSwimLane() const
{
    const std::vector<SwimLane> &swimLanes = m_question.swimLanes;
    const auto found = std::find_if(swimLanes.begin(), swimLanes.end(),
                                    [](const SwimLane &swimLane) { return swimLane.isDefault(); });
    return found == swimLanes.end() ? swimLanes.front().id : found->id;
}

void Placing::place(Candidate &candidate, ColumnId columnId, SwimLaneId swimLaneId, int position)
{
    candidate.place = TaskPosition{candidate.task->id, columnId, swimLaneId, position};
    candidate.storedPosition = position;
    ++m_cellSizes[candidate.place->cell()];
}

void Placing::placeAtEnd(Candidate &candidate, CellId cell)
{
    place(candidate, cell.column, cell.swimLane, m_cellSizes.value(cell));
}

/** The stored block wins over the item's own: some items come from their source without it. */
Row Placing::rowFor(const Candidate &candidate, const Column &column, const SwimLane &swimLane) const
{
    const FetchedTask &task = *candidate.task;
    const BoardMemory &memory = m_question.memory;
    Row row;
    row.id = task.id;
    row.columnId = column.id;
    row.position = candidate.storedPosition;
    row.lastUpdated = m_question.now;
    row.stableColumnId = column.stableId;
    row.swimLaneId = swimLane.id;
    row.stableSwimLaneId = swimLane.stableId;
    row.isBlocked = task.isBlocked || memory.blockedTaskIds.contains(task.id);
    row.blockReason = task.blockReason;
    if (const auto reason = memory.blockReasons.constFind(task.id);
        memory.blockedTaskIds.contains(task.id) && reason != memory.blockReasons.cend()) {
        row.blockReason = *reason;
    }
    return row;
}

/** Up to five lines for whoever looks into a wrong order. */
void Placing::logSample(CellId id, const Cell &cell) const
{
    for (size_t i = 0; i < std::min<size_t>(cell.size(), 5) && log::isDebugEnabled(); ++i) {
        const int saved = cell[i]->savedPositionIn(id);
        log::debug(u"[%1] %2 saved=%3"_s.arg(QString::number(i), cell[i]->task->name,
                                             saved == Last ? u"none"_s : QString::number(saved)));
    }
}

} // namespace

PlacementAnswer placeTasks(const PlacementQuestion &question)
{
    return Placing(question).answer();
}

} // namespace vantrel::rules
