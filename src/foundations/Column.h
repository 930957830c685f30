#pragma once

#include "foundations/Ids.h"

#include <optional>
#include <vector>

namespace vantrel {

/** What a stage of work is. */
enum class ColumnType {
    Queue,     ///< not started; new tasks land in the first column of this type
    Active,    ///< in progress; counted by the work-in-progress gauge
    Completed, ///< finished; moving a task here completes it in its source
};

/** How a column's limit is read. */
enum class WIPLimitType {
    Column,   ///< for the whole column, across all swimlanes
    Swimlane, ///< for each swimlane of the column separately
};

/** The stored texts: "Queue", "Active", "Completed"; "Column", "Swimlane". */
QString rawValue(ColumnType type);
QString rawValue(WIPLimitType type);
std::optional<ColumnType> columnTypeFromRawValue(QStringView text);
std::optional<WIPLimitType> wipLimitTypeFromRawValue(QStringView text);

/** One column of the board. */
struct Column
{
    ColumnId id;
    QString name;
    ColumnType type = ColumnType::Queue;
    /** Place from the left, from 0. */
    int position = 0;
    std::optional<int> wipLimit;
    WIPLimitType wipLimitType = WIPLimitType::Swimlane;
    /** Header colour, see colorFromHex; absent means the default colour of the type. */
    std::optional<QString> colorHex;
    /** The identity that outlives the UUID; absent only until it is first stored. */
    std::optional<QString> stableId;

    bool isCompleted() const { return type == ColumnType::Completed; }

    friend bool operator==(const Column &, const Column &) = default;

    /** "To Do", "Doing" (at most 5 a swimlane) and "Done", with fresh UUIDs at each call. */
    static std::vector<Column> defaultColumns();
};

/**
 * The stable id for a column that has none: "default_queue", "default_active" or "default_completed" for a
 * column that bears its type's default name, else "{type}_{hash of the name}_{position}".
 */
QString generateStableId(ColumnType type, const QString &name, int position);

} // namespace vantrel
