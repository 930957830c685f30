#include "board/rules/TaskFilter.h"

#include "board/rules/ItemClass.h"

namespace vantrel {

bool TaskFilter::isActive() const
{
    return flaggedOnly || !tagIDs.isEmpty() || !priorities.isEmpty() || !sourceIDs.isEmpty();
}

bool TaskFilter::accepts(const WorkItem &task) const
{
    if (!isActive()) return true;
    if (excludesDone && task.isComplete()) return false;
    if (flaggedOnly && !task.isFlagged()) return false;
    if (!priorities.isEmpty() &&
        !priorities.contains(task.eisenhowerPriority().value_or(EisenhowerPriority::Unsorted))) {
        return false;
    }
    if (!sourceIDs.isEmpty() && !sourceIDs.contains(sourceIdentifier(task))) return false;
    return tagIDs.isEmpty() || acceptsTag(task);
}

bool TaskFilter::acceptsTag(const WorkItem &task) const
{
    static const QString untagged = UntaggedTagID.toString();
    if (task.tag() && tagIDs.contains(task.tag()->id)) return true;
    return isUntagged(task) && tagIDs.contains(untagged);
}

QString TaskFilter::sourceIdentifier(const WorkItem &task)
{
    switch (itemClass(task)) {
    case ItemClass::OmniFocus:
        return QStringLiteral("omnifocus");
    case ItemClass::Reminder:
        return QStringLiteral("reminders");
    case ItemClass::PlainText:
        return QStringLiteral("plaintext");
    default:
        return QStringLiteral("generic");
    }
}

bool TaskFilter::isUntagged(const WorkItem &task)
{
    return !task.tag() || task.tag()->id.isEmpty() || task.tag()->name.isEmpty();
}

} // namespace vantrel
