#include "persistence/PlaceFilter.h"

namespace vantrel {

PlaceFilter PlaceFilter::forCell(ColumnId columnId, std::optional<SwimLaneId> swimLaneId,
                                 const StableIdMappings &stableIds)
{
    const QString stableColumn = stableIds.columns.value(columnId);
    const QString stableLane = swimLaneId ? stableIds.swimLanes.value(*swimLaneId) : QString();
    if (!stableColumn.isEmpty() && !stableLane.isEmpty()) {
        return {"stableColumnId = ? AND stableSwimLaneId = ?",
                {stableColumn, stableLane},
                u"Using stable IDs for query: column " + stableColumn + u", swimlane " + stableLane};
    }
    if (!stableColumn.isEmpty()) {
        return {"stableColumnId = ?", {stableColumn}, u"Using stable column ID for query: " + stableColumn};
    }
    if (swimLaneId) {
        return {"columnId = ? AND swimLaneId = ?",
                {columnId.text(), swimLaneId->text()},
                u"Using UUID values for query: column " + columnId.text() + u", swimlane " +
                    swimLaneId->text()};
    }
    return {"columnId = ?", {columnId.text()}, u"Using column UUID for query: " + columnId.text()};
}

void PlaceFilter::bindTo(SqliteStatement &query) const
{
    for (int i = 0; i < parameters.size(); ++i) {
        query.bind(i + 1, parameters.at(i));
    }
}

} // namespace vantrel
