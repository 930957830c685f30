#pragma once

#include "foundations/WorkItem.h"

namespace vantrel {

/** The priorities that a user chooses among; the values are those that are stored (RFC 5545, 3.8.1.9). */
enum class ReminderPriority { None = 0, High = 1, Medium = 5, Low = 9 };

/** A task of the Reminders source. */
class ReminderWorkItem final : public WorkItem
{
    Q_OBJECT
public:
    /** What only a reminder has. */
    struct Details
    {
        /** As iCalendar counts (RFC 5545, 3.8.1.9): 1 to 4 high, 5 medium, 6 to 9 low, 0 none. */
        int priority = 0;
        QString listName;
        std::optional<QString> reminderId;
        friend bool operator==(const Details &, const Details &) = default;
    };

    ReminderWorkItem(WorkItemFields fields, Details details);

    /** "reminder_" and the store's id; without one, a hash that is good for this run only. */
    static QString idFor(const std::optional<QString> &reminderId, const QString &name,
                         const QString &listName, Date now);

    int reminderPriority() const { return m_details.priority; }
    /** That priority as one of those to choose among; what iCalendar does not know counts as none. */
    ReminderPriority priorityBand() const;
    const QString &listName() const { return m_details.listName; }
    const std::optional<QString> &reminderId() const { return m_details.reminderId; }

    void setRecurrenceInfo(bool isRepeating, std::optional<RepeatFrequency> frequency,
                           std::optional<int> interval, const std::optional<QString> &pattern);
    void setReminderPriority(int priority);

    /** Opens Reminders and no particular reminder. */
    QUrl appSpecificLink() const override;
    QString debugDescription() const override;

private:
    Details m_details;
};

} // namespace vantrel
