#include "foundations/SwimLane.h"

namespace vantrel {

SwimLane SwimLane::defaultSwimLane()
{
    SwimLane lane;
    lane.id = SwimLaneId::create();
    lane.name = QStringLiteral("Default");
    lane.icon = QStringLiteral("rectangle.3.group");
    lane.stableId = DefaultSwimLaneStableId.toString();
    return lane;
}

} // namespace vantrel
