#pragma once

#include "persistence/BoardMemory.h"
#include "persistence/sqlite/SqliteStatement.h"

#include <QStringList>

#include <string>

namespace vantrel {

/** Which rows of taskPositions a lookup means, and how. */
struct PlaceFilter
{
    std::string where;
    QStringList parameters;
    QString description;

    /** By the stable ids of the column and the swimlane where they have one, else by their UUIDs. */
    static PlaceFilter forCell(ColumnId columnId, std::optional<SwimLaneId> swimLaneId,
                               const StableIdMappings &stableIds);

    /** Binds the parameters of the WHERE clause, from the first on. */
    void bindTo(SqliteStatement &query) const;
};

} // namespace vantrel
