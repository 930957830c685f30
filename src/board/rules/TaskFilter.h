#pragma once

#include "foundations/WorkItem.h"

#include <QSet>

namespace vantrel {

/** The pseudo tag of tasks that have none. */
inline constexpr QStringView UntaggedTagID = u"untagged";

/** What the user has chosen to see. Within a set the values are alternatives; an empty set does not filter.
 */
struct FilterSelection
{
    QSet<QString> tagIDs;
    QSet<EisenhowerPriority> priorities;
    /** See TaskFilter::sourceIdentifier. */
    QSet<QString> sourceIDs;
    bool flaggedOnly = false;

    bool isActive() const
    {
        return flaggedOnly || !tagIDs.isEmpty() || !priorities.isEmpty() || !sourceIDs.isEmpty();
    }
};

/**
 * Which tasks the board shows at one moment: all parts of a selection must accept a task. Made once for a
 * pass over many tasks, so that the test of one task costs no more than looking at it. A value.
 */
class TaskFilter
{
public:
    enum class DoneTasks { Shown, Hidden };

    /** Completed tasks are hidden only while the selection filters anything. */
    explicit TaskFilter(const FilterSelection &selection, DoneTasks doneTasks = DoneTasks::Shown);

    bool isActive() const { return m_isActive; }
    bool accepts(const WorkItem &task) const;

    /** "omnifocus", "reminders", "plaintext" or "generic", by the item's class and not by its id. */
    static QString sourceIdentifier(const WorkItem &task);
    /** True for a task without tag, or with one that lacks its id or its name. */
    static bool isUntagged(const WorkItem &task);

private:
    using Bits = quint32;

    bool acceptsTag(const WorkItem &task) const;

    bool m_isActive;
    bool m_hidesDone;
    bool m_flaggedOnly;
    bool m_acceptsUntagged;
    /** One bit a quadrant, and one an item class. */
    Bits m_priorities = ~Bits(0);
    Bits m_sources = ~Bits(0);
    QSet<QString> m_tagIDs;
};

} // namespace vantrel
