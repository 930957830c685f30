#include "sources/reminders/vdir/ReminderCodec.h"

#include <cstring>

namespace vantrel {

namespace {

enum class DueKind : qint32 { None, Day, Moment };

/** What has a fixed length; the texts follow, in the order of their lengths. */
struct Head
{
    double dueMoment = 0.0;
    double created = 0.0;
    double completed = 0.0;
    qint64 dueDay = 0;
    DueKind dueKind = DueKind::None;
    qint32 priority = 0;
    /** -1 without recurrence. */
    qint32 frequency = -1;
    qint32 interval = 0;
    qint32 hasCreated = 0;
    qint32 hasCompleted = 0;
    qint32 isCompleted = 0;
    qint32 identifierLength = 0;
    /** -1 for no text. */
    qint32 titleLength = -1;
    qint32 notesLength = -1;
};

Head headOf(const Reminder &reminder)
{
    Head head;
    if (reminder.dueDate) {
        if (const QDate *day = std::get_if<QDate>(&*reminder.dueDate)) {
            head.dueKind = DueKind::Day;
            head.dueDay = day->toJulianDay();
        } else {
            head.dueKind = DueKind::Moment;
            head.dueMoment = std::get<Date>(*reminder.dueDate).seconds();
        }
    }
    if (reminder.recurrence) {
        head.frequency = static_cast<qint32>(reminder.recurrence->frequency);
        head.interval = reminder.recurrence->interval;
    }
    head.priority = reminder.priority;
    head.hasCreated = reminder.creationDate.has_value();
    head.created = reminder.creationDate.value_or(Date()).seconds();
    head.hasCompleted = reminder.completionDate.has_value();
    head.completed = reminder.completionDate.value_or(Date()).seconds();
    head.isCompleted = reminder.isCompleted;
    return head;
}

Reminder reminderOf(const Head &head)
{
    Reminder reminder;
    if (head.dueKind == DueKind::Day) {
        reminder.dueDate = QDate::fromJulianDay(head.dueDay);
    } else if (head.dueKind == DueKind::Moment) {
        reminder.dueDate = Date(head.dueMoment);
    }
    if (head.frequency >= 0) {
        reminder.recurrence = {static_cast<RepeatFrequency>(head.frequency), head.interval};
    }
    reminder.priority = head.priority;
    if (head.hasCreated) {
        reminder.creationDate = Date(head.created);
    }
    if (head.hasCompleted) {
        reminder.completionDate = Date(head.completed);
    }
    reminder.isCompleted = head.isCompleted;
    return reminder;
}

/** Takes pieces off the front of bytes; any piece that is not there makes all of it invalid. */
class Reader
{
public:
    explicit Reader(QByteArrayView bytes) : m_rest(bytes) {}
    bool isAtEnd() const { return m_rest.isEmpty(); }
    bool isValid() const { return m_isValid; }

    Head head()
    {
        Head head;
        if (const QByteArrayView bytes = take(sizeof(Head)); m_isValid) {
            std::memcpy(&head, bytes.data(), sizeof(Head));
            m_isValid = head.frequency <= static_cast<qint32>(RepeatFrequency::Custom);
        }
        return head;
    }
    std::optional<QString> text(qint32 length)
    {
        return length < 0 ? std::nullopt : std::optional(QString::fromUtf8(take(length)));
    }

private:
    QByteArrayView take(qsizetype count)
    {
        m_isValid = m_isValid && count >= 0 && count <= m_rest.size();
        if (!m_isValid) {
            m_rest = {};
            return {};
        }
        const QByteArrayView piece = m_rest.first(count);
        m_rest = m_rest.sliced(count);
        return piece;
    }

    QByteArrayView m_rest;
    bool m_isValid = true;
};

} // namespace

QByteArray encodeReminders(const std::vector<Reminder> &reminders)
{
    QByteArray bytes;
    for (const Reminder &reminder : reminders) {
        Head head = headOf(reminder);
        const QByteArray identifier = reminder.identifier.toUtf8();
        const QByteArray title = reminder.title.value_or(QString()).toUtf8();
        const QByteArray notes = reminder.notes.value_or(QString()).toUtf8();
        head.identifierLength = static_cast<qint32>(identifier.size());
        head.titleLength = reminder.title ? static_cast<qint32>(title.size()) : -1;
        head.notesLength = reminder.notes ? static_cast<qint32>(notes.size()) : -1;
        bytes.reserve(bytes.size() + static_cast<qsizetype>(sizeof(Head)) + identifier.size() + title.size() +
                      notes.size());
        bytes.append(reinterpret_cast<const char *>(&head), sizeof(Head));
        bytes.append(identifier).append(title).append(notes);
    }
    return bytes;
}

std::optional<std::vector<Reminder>> decodeReminders(QByteArrayView bytes)
{
    std::vector<Reminder> reminders;
    Reader reader(bytes);
    while (!reader.isAtEnd()) {
        const Head head = reader.head();
        Reminder reminder = reminderOf(head);
        reminder.identifier = reader.text(head.identifierLength).value_or(QString());
        reminder.title = reader.text(head.titleLength);
        reminder.notes = reader.text(head.notesLength);
        if (!reader.isValid()) {
            return std::nullopt;
        }
        reminders.push_back(std::move(reminder));
    }
    return reminders;
}

} // namespace vantrel
