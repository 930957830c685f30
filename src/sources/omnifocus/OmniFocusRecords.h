#pragma once

#include "foundations/WorkItem.h"
#include "sources/TaskManagerProtocol.h"

#include <QHash>
#include <QLocale>

namespace vantrel {

/** Reads what the scripts answer: texts of fields separated by "|||". Pure, any thread. */
namespace omnifocus {

/** One item of a list answer; nothing for an item that has no text form. */
using AnswerItem = std::optional<QString>;

/**
 * Reads dates as AppleScript's `as string` writes them, in one locale. Remembers the days it has read, for
 * tasks share them: used by one thread.
 */
class AnswerDateReader
{
public:
    explicit AnswerDateReader(QLocale locale);

    /** Nothing unless the whole text is a date in exactly that form. */
    std::optional<Date> read(QStringView text) const;

private:
    struct Day
    {
        /** Invalid for a text that is no day. */
        QDate date;
        /** Its midnight, unless the clocks change on it: to ask the system for each moment is slow. */
        std::optional<Date> start;
    };

    Day readDay(QStringView view) const;

    QLocale m_locale;
    QStringList m_dateFormats;
    QString m_beforeNoon;
    QString m_afterNoon;
    mutable QHash<QString, Day> m_days;
};

/** One task of an answer. */
struct TaskRecord
{
    WorkItemFields fields;
    /** Not repeating for the answer of the completed fetch, which does not tell. */
    Recurrence recurrence;

    friend bool operator==(const TaskRecord &, const TaskRecord &) = default;
};

/** Records with fewer fields are skipped. */
inline constexpr qsizetype FewestFields = 14;

/**
 * The tasks of an answer to a fetch script. `now` stands in for a creation or modification date that cannot
 * be read.
 */
std::vector<TaskRecord> tasksFromAnswer(const std::vector<AnswerItem> &items, const AnswerDateReader &dates,
                                        Date now, qsizetype fewestFields = FewestFields);

/** Sorted by name. */
std::vector<ProjectInfo> projectsFromAnswer(const std::vector<AnswerItem> &items);
std::vector<TagInfo> tagsFromAnswer(const std::vector<AnswerItem> &items);

/** OmniFocus's due soon window. */
struct DueSoonSettings
{
    double days = 0.0;
    /** "HH:mm:ss". */
    QString time;
};

/** Nothing for an answer that is not days, "|", time. Days may have a decimal point or comma. */
std::optional<DueSoonSettings> dueSoonFromAnswer(const QString &text);

/** What `days` between two instances of a repeating task say of its recurrence; nothing if not positive. */
std::optional<Recurrence> recurrenceFromDays(qint64 days);

} // namespace omnifocus

} // namespace vantrel
