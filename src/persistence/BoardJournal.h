#pragma once

#include "foundations/Date.h"

#include <QString>

#include <optional>

namespace vantrel {

/** What of a task a journal entry tells about. */
enum class JournalSubject { Column, SwimLane, Completion, Blocked, Priority };

/** One change of one task, as it was stored. Entries are only ever added. */
struct JournalEntry
{
    /** Ascending in the order of the changes, never used twice. */
    qint64 number = 0;
    QString taskId;
    JournalSubject what = JournalSubject::Column;
    /**
     * The UUID of a column or swimlane, "true" or "false", or the raw value of a quadrant. Absent: the task
     * had, or has, none (it came to the board, left it, or lost its quadrant).
     */
    std::optional<QString> from;
    std::optional<QString> to;
    /** For columns and swimlanes, the stable ids beside the UUIDs. */
    std::optional<QString> fromStableId;
    std::optional<QString> toStableId;
    Date when;

    friend bool operator==(const JournalEntry &, const JournalEntry &) = default;
};

} // namespace vantrel
