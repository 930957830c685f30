#pragma once

#include "foundations/WorkItem.h"

#include <QSet>

namespace vantrel {

/** The pseudo tag of tasks that have none. */
inline constexpr QStringView UntaggedTagID = u"untagged";

/**
 * Which tasks the board shows: one moment of the filters, to be asked for each task of a pass. Within a set
 * the values are alternatives, an empty set lets everything pass; between the parts all must hold. A value.
 */
struct TaskFilter
{
    QSet<QString> tagIDs;
    QSet<EisenhowerPriority> priorities;
    /** See sourceIdentifier(). */
    QSet<QString> sourceIDs;
    bool flaggedOnly = false;
    /** Hides completed tasks, but only while any of the other parts filters. */
    bool excludesDone = false;

    bool isActive() const;
    bool accepts(const WorkItem &task) const;

    /** "omnifocus", "reminders", "plaintext" or "generic", by the item's class and not by its id. */
    static QString sourceIdentifier(const WorkItem &task);
    /** True for a task without tag, or with one that lacks its id or its name. */
    static bool isUntagged(const WorkItem &task);

private:
    bool acceptsTag(const WorkItem &task) const;
};

} // namespace vantrel
