#pragma once

#include "foundations/Date.h"
#include "foundations/Ids.h"

#include <optional>

namespace vantrel {

/** The place of one task on the running board. */
struct TaskPosition
{
    QString taskId;
    ColumnId columnId;
    SwimLaneId swimLaneId;
    /** Ordinal inside the cell, from 0; numbers may have gaps and ties until the cell is next renumbered. */
    int position = 0;

    CellId cell() const { return {swimLaneId, columnId}; }

    friend bool operator==(const TaskPosition &, const TaskPosition &) = default;
};

/** One row of the position store: the place of a task and what only the board knows of it. */
struct PersistentTaskPosition
{
    QString id;
    ColumnId columnId;
    int position = 0;
    Date lastUpdated;
    std::optional<QString> stableColumnId;
    std::optional<SwimLaneId> swimLaneId;
    std::optional<QString> stableSwimLaneId;
    bool isBlocked = false;
    std::optional<QString> blockReason;

    friend bool operator==(const PersistentTaskPosition &, const PersistentTaskPosition &) = default;
};

} // namespace vantrel
