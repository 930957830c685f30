#include "foundations/ReminderWorkItem.h"

#include "foundations/Ids.h"
#include "foundations/Text.h"

#include <utility>

namespace vantrel {

ReminderWorkItem::ReminderWorkItem(WorkItemFields fields, Details details)
    : WorkItem(std::move(fields)), m_details(std::move(details))
{
}

QString ReminderWorkItem::idFor(const std::optional<QString> &reminderId, const QString &name,
                                const QString &listName, Date now)
{
    if (reminderId) {
        return ReminderIdPrefix + *reminderId;
    }
    constexpr double referenceSecondsSince1970 = 978307200.0;
    const QString key = name + u'_' + listName + u'_' + realText(now.seconds() + referenceSecondsSince1970);
    const auto hash = static_cast<qint64>(stableHash(key));
    const quint64 magnitude = hash < 0 ? 0 - static_cast<quint64>(hash) : static_cast<quint64>(hash);
    return ReminderIdPrefix + QString::number(magnitude);
}

void ReminderWorkItem::setRecurrenceInfo(bool isRepeating, std::optional<RepeatFrequency> frequency,
                                         std::optional<int> interval, const std::optional<QString> &pattern)
{
    setRecurrence({isRepeating, frequency, interval, pattern});
}

ReminderPriority ReminderWorkItem::priorityBand() const
{
    const int priority = m_details.priority;
    if (priority < 1 || priority > 9) {
        return ReminderPriority::None;
    }
    if (priority == 5) {
        return ReminderPriority::Medium;
    }
    return priority < 5 ? ReminderPriority::High : ReminderPriority::Low;
}

void ReminderWorkItem::setReminderPriority(int priority)
{
    if (std::exchange(m_details.priority, priority) != priority) {
        noteChange(Property::SourceDetail);
    }
}

QUrl ReminderWorkItem::appSpecificLink() const
{
    return QUrl(QStringLiteral("x-apple-reminderkit://"));
}

QString ReminderWorkItem::debugDescription() const
{
    const QString details = u", listName: \"" + m_details.listName + u"\", reminderPriority: " +
                            QString::number(m_details.priority);
    return u"ReminderWorkItem(" + describedFields(details) + u')';
}

} // namespace vantrel
