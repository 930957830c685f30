#pragma once

#include "exchange/ParsedTask.h"
#include "foundations/Clock.h"

namespace vantrel {

/**
 * Turns one English line, with a date, a project and tags in it, into a ParsedTask.
 *
 * Works by extraction: each step takes its own phrases out of the text and leaves the rest to the next; what
 * remains is the name. Cannot fail. Expressions are compiled on the first parse and kept.
 */
class NaturalLanguageParser
{
public:
    explicit NaturalLanguageParser(const Clock &clock) : m_clock(clock) {}

    ParsedTask parseTask(const QString &text) const;

private:
    std::optional<Date> extractDueDate(QString &text) const;
    std::optional<Date> extractDeferDate(QString &text) const;
    /** The next day of that name, never today, at the present time of day. */
    std::optional<Date> dateForNextWeekday(const QString &name) const;
    /** The same time of day, `days` calendar days after `now`; nothing where the calendar ends before. */
    static std::optional<Date> dateAfterDays(const QDateTime &now, qint64 days);

    const Clock &m_clock;
};

} // namespace vantrel
