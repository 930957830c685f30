#pragma once

#include "foundations/Ids.h"

#include <optional>

namespace vantrel {

/** The stable id of the swimlane that takes every task without a place of its own. */
inline constexpr QStringView DefaultSwimLaneStableId = u"default_swimlane";

/** One row of the board, across all columns. */
struct SwimLane
{
    SwimLaneId id;
    QString name;
    /** Symbol name. */
    std::optional<QString> icon;
    /** Place from the top, from 0. */
    int position = 0;
    std::optional<QString> colorHex;
    bool isExpanded = true;
    /** The identity that outlives the UUID. */
    QString stableId;
    /** Row height in points. */
    double height = 300.0;

    bool isDefault() const { return stableId == DefaultSwimLaneStableId; }

    friend bool operator==(const SwimLane &, const SwimLane &) = default;

    /** The swimlane of a board that has none: "Default", with a fresh UUID at each call. */
    static SwimLane defaultSwimLane();
};

} // namespace vantrel
