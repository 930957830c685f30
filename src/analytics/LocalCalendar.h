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

/**
 * Numbers hours, days and weeks of local time: two moments have the same number exactly when a clock on the
 * wall would show the same date and hour, the same date, or the same week. So the hour that is lived twice
 * when summer time ends has one number.
 *
 * Knows the offsets from UTC between two moments, and so needs no QDateTime per question.
 */
class LocalUnits
{
public:
    /** Good for moments from `first` to `last`. */
    LocalUnits(const LocalCalendar &calendar, Date first, Date last);

    qint64 hour(Date date) const;
    qint64 day(Date date) const;
    /** Weeks begin on the locale's first weekday. */
    qint64 week(Date date) const;
    /** 1 Monday to 7 Sunday. */
    int weekday(Date date) const;

private:
    struct Offset
    {
        double from;
        qint64 seconds;
    };

    qint64 localSeconds(Date date) const;

    std::vector<Offset> m_offsets;
    int m_firstWeekday;
};

} // namespace vantrel
