#pragma once

#include "foundations/Column.h"

#include <vector>

namespace vantrel {

/** True if nothing but completed columns follows the first completed one. */
bool isValidColumnTypeOrder(const std::vector<ColumnType> &types);

/**
 * Where a column of `type` that comes to the board belongs: behind the last of its type; without one a queue
 * column leads, an active one follows the queues, a completed one ends the board.
 */
int insertionIndex(const std::vector<Column> &columns, ColumnType type);

/**
 * True if `incomplete` tasks are more than the column may hold: of one swimlane or of all, as its limit is
 * read. Completed columns have no limit.
 */
bool isWIPLimitExceeded(const Column &column, int incomplete);

} // namespace vantrel
