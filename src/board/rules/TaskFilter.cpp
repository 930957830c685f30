#include "board/rules/TaskFilter.h"

#include "board/rules/ItemClass.h"

namespace vantrel {

namespace {

template <typename Enum>
quint32 bit(Enum value)
{
    return quint32(1) << static_cast<int>(value);
}

QString sourceIdentifier(ItemClass itemClass)
{
    switch (itemClass) {
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

} // namespace

TaskFilter::TaskFilter(const FilterSelection &selection, DoneTasks doneTasks)
    : m_isActive(selection.isActive()),
      m_hidesDone(doneTasks == DoneTasks::Hidden),
      m_flaggedOnly(selection.flaggedOnly),
      m_acceptsUntagged(selection.tagIDs.contains(UntaggedTagID.toString())),
      m_tagIDs(selection.tagIDs)
{
    if (!selection.priorities.isEmpty()) {
        m_priorities = 0;
        for (const EisenhowerPriority priority : selection.priorities) {
            m_priorities |= bit(priority);
        }
    }
    if (!selection.sourceIDs.isEmpty()) {
        m_sources = 0;
        for (const ItemClass source : AllItemClasses) {
            m_sources |= selection.sourceIDs.contains(vantrel::sourceIdentifier(source)) ? bit(source) : 0;
        }
    }
}

bool TaskFilter::accepts(const WorkItem &task) const
{
    if (!m_isActive) return true;
    if (m_hidesDone && task.isComplete()) return false;
    if (m_flaggedOnly && !task.isFlagged()) return false;
    const EisenhowerPriority priority = task.eisenhowerPriority().value_or(EisenhowerPriority::Unsorted);
    if ((m_priorities & bit(priority)) == 0) return false;
    if ((m_sources & bit(itemClass(task))) == 0) return false;
    return m_tagIDs.isEmpty() || acceptsTag(task);
}

bool TaskFilter::acceptsTag(const WorkItem &task) const
{
    return (m_acceptsUntagged && isUntagged(task)) || (task.tag() && m_tagIDs.contains(task.tag()->id));
}

QString TaskFilter::sourceIdentifier(const WorkItem &task)
{
    return vantrel::sourceIdentifier(itemClass(task));
}

bool TaskFilter::isUntagged(const WorkItem &task)
{
    return !task.tag() || task.tag()->id.isEmpty() || task.tag()->name.isEmpty();
}

} // namespace vantrel
