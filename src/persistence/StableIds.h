#pragma once

#include "foundations/Column.h"
#include "foundations/SwimLane.h"

#include <vector>

namespace vantrel {

/** The stable id for a new swimlane. */
QString stableIdForSwimLane(SwimLaneId id);

/** Gives every column without a stable id one that no other column of the list has. */
void assignStableIds(std::vector<Column> &columns);

/**
 * Tells apart records that share an identity, as when one was copied by hand in a configuration file: the
 * first keeps it, the later ones get a new UUID or stable id. True if anything was changed.
 */
bool separateDuplicates(std::vector<Column> &columns);
bool separateDuplicates(std::vector<SwimLane> &swimLanes);

} // namespace vantrel
