#pragma once

#include "foundations/Column.h"
#include "foundations/SwimLane.h"
#include "persistence/BoardMemory.h"

#include <QStringList>

#include <optional>
#include <vector>

/**
 * Where the tasks of a board belong after they were fetched: the reasoning behind
 * BoardState::organizeTasks(), on records alone, so that it may run on any thread.
 */
namespace vantrel::rules {

/** What placing needs to know of a task. */
struct FetchedTask
{
    QString id;
    QString name;
    bool isComplete = false;
    bool isBlocked = false;
    std::optional<QString> blockReason;
};

struct PlacementQuestion
{
    /** In the order of their arrival; no id twice. */
    std::vector<FetchedTask> tasks;
    /** In board order. */
    std::vector<Column> columns;
    /** In board order, never empty. */
    std::vector<SwimLane> swimLanes;
    /** The places that the board shows now, each cell's in its order. */
    std::vector<TaskPosition> current;
    /** What was read from the store. */
    BoardMemory memory;
    /** False if the store could not be read, or has not taken in yet all that the board gave it. */
    bool isMemoryUpToDate = true;
    /** Sources whose absent tasks are gone for good. */
    TaskSources answered = AllTaskSources;
    Date now;
};

/** A row that no task will ever ask for again. */
struct StaleRow
{
    QString id;
    bool isInCompletedColumn = false;
    friend bool operator==(const StaleRow &, const StaleRow &) = default;
};

struct PlacementAnswer
{
    /** Places that differ from the current ones, each cell's in the order in which it will show them. */
    std::vector<TaskPosition> changed;
    /** Tasks that have a place now and lose it. */
    QStringList displaced;
    /** Rows that differ from what was read in more than their date. */
    std::vector<PersistentTaskPosition> rowsToWrite;
    /** Rows that the placed tasks have, written or not. */
    qsizetype rowCount = 0;
    std::vector<StaleRow> stale;
    /** True if rows were read and none of them names a column that exists. */
    bool matchesNoColumn = false;
};

/**
 * Gives every task its place, in this order of precedence: its stored cell; for a complete task stored in a
 * column for open ones, or without a place, the first completed column; for any other the end of the first
 * queue column. Cells of open columns are numbered from 0. Complete tasks find no place on a board without a
 * completed column, new ones none on a board without a queue column.
 *
 * With a memory that is not up to date the board's own places win over the stored ones, and nothing is to be
 * written or removed: a store that cannot be read is not an empty one.
 */
PlacementAnswer placeTasks(const PlacementQuestion &question);

} // namespace vantrel::rules
