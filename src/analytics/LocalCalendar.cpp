#include "analytics/LocalCalendar.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

constexpr qint64 SecondsPerHour = 3600;
constexpr qint64 SecondsPerWholeDay = 86400;
constexpr qint64 DaysPerWeek = 7;
constexpr qint64 MillisecondsPerSecond = 1000;
constexpr qint64 MillisecondsPerDay = SecondsPerWholeDay * MillisecondsPerSecond;

/** Division that rounds towards the past, also before the reference date. */
qint64 floorDivide(qint64 value, qint64 divisor)
{
    const qint64 quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

} // namespace

qint64 epochMilliseconds(Date date)
{
    static const Date epoch = Date::fromDateTime(QDateTime::fromMSecsSinceEpoch(0, Qt::UTC));
    return std::llround((date - epoch) * 1000.0);
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
    : m_firstWeekday(calendar.locale.firstDayOfWeek())
{
    const QDateTime begin = QDateTime::fromMSecsSinceEpoch(epochMilliseconds(first), Qt::UTC);
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(epochMilliseconds(last), Qt::UTC);
    m_offsets.push_back({first.seconds(), calendar.timeZone.offsetFromUtc(begin)});
    const auto transitions = calendar.timeZone.transitions(begin, end);
    for (const QTimeZone::OffsetData &transition : transitions) {
        m_offsets.push_back({Date::fromDateTime(transition.atUtc).seconds(), transition.offsetFromUtc});
    }
}

qint64 LocalUnits::localSeconds(Date date) const
{
    const double seconds = date.seconds();
    const auto inForce = std::find_if(m_offsets.rbegin(), std::prev(m_offsets.rend()),
                                      [seconds](const Offset &offset) { return offset.from <= seconds; });
    return static_cast<qint64>(std::floor(seconds)) + inForce->seconds;
}

qint64 LocalUnits::hour(Date date) const
{
    return floorDivide(localSeconds(date), SecondsPerHour);
}

qint64 LocalUnits::day(Date date) const
{
    return floorDivide(localSeconds(date), SecondsPerWholeDay);
}

qint64 LocalUnits::week(Date date) const
{
    // Day 0, 1 January 2001, was a Monday.
    return floorDivide(day(date) - (m_firstWeekday - 1), DaysPerWeek);
}

int LocalUnits::weekday(Date date) const
{
    const qint64 sinceMonday = day(date) - floorDivide(day(date), DaysPerWeek) * DaysPerWeek;
    return static_cast<int>(sinceMonday) + 1;
}

} // namespace vantrel
