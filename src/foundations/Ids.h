#pragma once

#include <QFlags>
#include <QMetaType>
#include <QString>
#include <QUuid>

#include <compare>
#include <optional>

namespace vantrel {

/** The stored text form of a UUID: upper case, no braces. */
inline QString uuidText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

/** Reads 8-4-4-4-12 hexadecimal digits of either case and nothing else: no braces, no blanks. */
std::optional<QUuid> uuidFromText(QStringView text);

/** A UUID that names one kind of thing, so that a column's cannot be passed where a swimlane's is wanted. */
template <typename Tag>
struct Id
{
    QUuid uuid;

    static Id create() { return Id{QUuid::createUuid()}; }
    static std::optional<Id> fromText(QStringView text)
    {
        const std::optional<QUuid> read = uuidFromText(text);
        return read ? std::optional(Id{*read}) : std::nullopt;
    }

    QString text() const { return uuidText(uuid); }

    friend bool operator==(const Id &, const Id &) = default;
    friend size_t qHash(const Id &id, size_t seed = 0) noexcept { return qHash(id.uuid, seed); }
};

using ColumnId = Id<struct ColumnTag>;
using SwimLaneId = Id<struct SwimLaneTag>;

/** One cell of the board. */
struct CellId
{
    SwimLaneId swimLane;
    ColumnId column;

    friend bool operator==(const CellId &, const CellId &) = default;
    friend size_t qHash(const CellId &id, size_t seed = 0) noexcept
    {
        return qHashMulti(seed, id.swimLane.uuid, id.column.uuid);
    }
};

/** The id prefixes by which a task's source is recognised. */
inline constexpr QStringView PlainTextIdPrefix = u"plaintext-";
inline constexpr QStringView ReminderIdPrefix = u"reminder_";
inline constexpr QStringView MockIdPrefix = u"task-";

/** Where a task comes from; the values combine to sets. */
enum class TaskSource { PlainText = 1, Reminders = 2, Mock = 4, OmniFocus = 8 };
Q_DECLARE_FLAGS(TaskSources, TaskSource)
Q_DECLARE_OPERATORS_FOR_FLAGS(TaskSources)

inline constexpr TaskSources AllTaskSources{TaskSource::PlainText, TaskSource::Reminders, TaskSource::Mock,
                                            TaskSource::OmniFocus};

/** The one resolver from a task id to its source; OmniFocus ids have no prefix of their own. */
TaskSource sourceOf(QStringView taskId);

} // namespace vantrel

Q_DECLARE_METATYPE(vantrel::ColumnId)
Q_DECLARE_METATYPE(vantrel::SwimLaneId)
