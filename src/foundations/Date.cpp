#include "foundations/Date.h"

#include <QTimeZone>

#include <cmath>

namespace vantrel {

namespace {
constexpr double ReferenceSecondsSince1970 = 978307200.0;
} // namespace

Date Date::fromDateTime(const QDateTime &dateTime)
{
    return Date(static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0 - ReferenceSecondsSince1970);
}

QDateTime Date::toDateTime() const
{
    return QDateTime::fromMSecsSinceEpoch(std::llround((m_seconds + ReferenceSecondsSince1970) * 1000.0));
}

qint64 wholeDays(double seconds)
{
    constexpr double limit = 1e15;
    const double days = seconds / SecondsPerDay;
    return std::abs(days) < limit ? static_cast<qint64>(days) : 0;
}

QString Date::description() const
{
    return toDateTime().toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss '+0000'"));
}

} // namespace vantrel
