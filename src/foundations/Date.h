#pragma once

#include <QDateTime>

#include <compare>

namespace vantrel {

/**
 * A moment: seconds since 1 January 2001 00:00 UTC as a real.
 *
 * The store keeps exactly this number, so a date read back is the date written, bit for bit. Calendar work
 * (days, weeks, wording) converts to QDateTime, which knows milliseconds only.
 */
class Date
{
public:
    constexpr Date() = default;
    constexpr explicit Date(double secondsSinceReference) : m_seconds(secondsSinceReference) {}

    /** The moment of `dateTime`, to the millisecond. */
    static Date fromDateTime(const QDateTime &dateTime);

    /** Seconds since 1 January 2001 00:00 UTC. */
    constexpr double seconds() const { return m_seconds; }

    /** The same moment in the local time zone, to the millisecond. */
    QDateTime toDateTime() const;

    /** "2026-11-22 20:41:07 +0000": the form for logs. */
    QString description() const;

    friend constexpr auto operator<=>(Date, Date) = default;
    friend constexpr bool operator==(Date, Date) = default;

    /** Seconds from `b` to `a`. */
    friend constexpr double operator-(Date a, Date b) { return a.m_seconds - b.m_seconds; }
    friend constexpr Date operator+(Date date, double seconds) { return Date(date.m_seconds + seconds); }
    friend constexpr Date operator-(Date date, double seconds) { return Date(date.m_seconds - seconds); }

private:
    double m_seconds = 0.0;
};

inline constexpr double SecondsPerDay = 86400.0;

/** Whole days in `seconds`, cut toward zero; 0 for what is not a number of days at all. */
qint64 wholeDays(double seconds);

} // namespace vantrel
