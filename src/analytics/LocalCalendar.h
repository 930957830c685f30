#pragma once

#include "foundations/Date.h"

#include <QLocale>
#include <QTimeZone>

#include <vector>

namespace vantrel {

/**
 * The user's calendar for analysis: time zone, first weekday and wording, and the present moment. A value:
 * hand a copy to a worker.
 */
struct LocalCalendar
{
    Date now;
    QTimeZone timeZone = QTimeZone::systemTimeZone();
    QLocale locale;

    QDateTime dateTime(Date date) const;
    /** What the clock on the wall shows at a moment; both in milliseconds, since 1970 here and in UTC. */
    qint64 wallTime(qint64 moment) const;
    /** The first moment at which the clock shows that; one that it skips counts from the clock before. */
    qint64 momentAt(qint64 wallTime) const;
};

/** Since 1970, rounded. Unlike QDateTime's way through the system's local time it costs no system call. */
qint64 epochMilliseconds(Date date);
Date dateAtEpochMilliseconds(qint64 milliseconds);

/**
 * Numbers hours, days and weeks of local time: two moments have the same number exactly when a clock on the
 * wall would show the same date and hour, the same date, or the same week. So the hour that is lived twice
 * when summer time ends has one number.
 *
 * Knows the offsets from UTC between two moments, and so needs no QDateTime per question. Inline and almost
 * without branches: it is asked for each task.
 */
class LocalUnits
{
public:
    /** Good for moments from `first` to `last`. */
    LocalUnits(const LocalCalendar &calendar, Date first, Date last);

    qint64 hour(Date date) const { return wallSeconds(date) / 3600; }
    qint64 day(Date date) const { return wallSeconds(date) / 86400; }
    qint64 week(Date date) const { return wallSeconds(date) / (7 * 86400); }
    /** 0 to 6, from the locale's first weekday on. */
    int dayOfWeek(Date date) const { return static_cast<int>(day(date) % 7); }

private:
    /** A clock that is changed by so many seconds. */
    struct Change
    {
        double at;
        qint64 seconds;
    };

    /** Since a beginning of a week before `first`: never negative, so that a division rounds down. */
    qint64 wallSeconds(Date date) const
    {
        const double seconds = date.seconds();
        const auto whole = static_cast<qint64>(seconds);
        qint64 wall = whole - (seconds < static_cast<double>(whole) ? 1 : 0) + m_offset;
        for (const Change &change : m_changes) {
            wall += seconds >= change.at ? change.seconds : 0;
        }
        return wall;
    }

    /** From UTC at `first`, less the beginning. */
    qint64 m_offset;
    std::vector<Change> m_changes;
};

} // namespace vantrel
