#include "analytics/LocalCalendar.h"

#include <cmath>

namespace vantrel {

namespace {

constexpr qint64 SecondsPerWholeDay = 86400;
constexpr qint64 SecondsPerWeek = 7 * SecondsPerWholeDay;
constexpr qint64 MillisecondsPerSecond = 1000;
constexpr qint64 MillisecondsPerDay = SecondsPerWholeDay * MillisecondsPerSecond;

/** 1 January 1970 00:00 UTC. */
constexpr Date Epoch(-978307200.0);

/** The first second of a week that lies one to three weeks before a moment, whatever the time zone. */
qint64 weekBeginningBefore(Date date, int firstWeekday)
{
    // The reference date, 1 January 2001, was a Monday.
    const qint64 firstBeginning = (firstWeekday - 1) * SecondsPerWholeDay;
    const double weeks = std::floor((date.seconds() - static_cast<double>(firstBeginning)) / SecondsPerWeek);
    return firstBeginning + (static_cast<qint64>(weeks) - 1) * SecondsPerWeek;
}

} // namespace

qint64 epochMilliseconds(Date date)
{
    return std::llround((date - Epoch) * 1000.0);
}

Date dateAtEpochMilliseconds(qint64 milliseconds)
{
    return Epoch + static_cast<double>(milliseconds) / 1000.0;
}

QDateTime LocalCalendar::dateTime(Date date) const
{
    return QDateTime::fromMSecsSinceEpoch(epochMilliseconds(date), timeZone);
}

qint64 LocalCalendar::wallTime(qint64 moment) const
{
    const QDateTime utc = QDateTime::fromMSecsSinceEpoch(moment, Qt::UTC);
    return moment + timeZone.offsetFromUtc(utc) * MillisecondsPerSecond;
}

qint64 LocalCalendar::momentAt(qint64 wallTime) const
{
    // No offset is as large as a day, and no clock is changed twice within two.
    const auto offsetNear = [&](qint64 moment) {
        return this->wallTime(moment) - moment;
    };
    const qint64 byClockBefore = wallTime - offsetNear(wallTime - MillisecondsPerDay);
    const qint64 byClockAfter = wallTime - offsetNear(wallTime + MillisecondsPerDay);
    for (const qint64 moment : {byClockBefore, byClockAfter}) {
        if (this->wallTime(moment) == wallTime) {
            return moment;
        }
    }
    return byClockBefore;
}

LocalUnits::LocalUnits(const LocalCalendar &calendar, Date first, Date last)
{
    const QDateTime begin = QDateTime::fromMSecsSinceEpoch(epochMilliseconds(first), Qt::UTC);
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(epochMilliseconds(last), Qt::UTC);
    qint64 offset = calendar.timeZone.offsetFromUtc(begin);
    m_offset = offset - weekBeginningBefore(first, calendar.locale.firstDayOfWeek());
    const auto transitions = calendar.timeZone.transitions(begin, end);
    for (const QTimeZone::OffsetData &transition : transitions) {
        m_changes.push_back(
            {Date::fromDateTime(transition.atUtc).seconds(), transition.offsetFromUtc - offset});
        offset = transition.offsetFromUtc;
    }
}

} // namespace vantrel
