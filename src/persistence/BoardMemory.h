#pragma once

#include "foundations/TaskPosition.h"
#include "foundations/WorkItem.h"

#include <QHash>
#include <QSet>

#include <vector>

namespace vantrel {

/** Everything the board remembers of its tasks and no source can tell, as it stood at one moment. */
struct BoardMemory
{
    /** Ordered by column, then position. Rows of blocked tasks that never had a place are not among them. */
    std::vector<PersistentTaskPosition> positions;
    QSet<QString> blockedTaskIds;
    /** Only reasons that say something. */
    QHash<QString, QString> blockReasons;
    QHash<QString, EisenhowerPriority> priorities;
    /** True if the store still holds back writes that failed: then the board knows better what it gave it. */
    bool isBehind = false;
};

/** The stable ids of columns and swimlanes that have one. */
struct StableIdMappings
{
    QHash<ColumnId, QString> columns;
    QHash<SwimLaneId, QString> swimLanes;
};

} // namespace vantrel
