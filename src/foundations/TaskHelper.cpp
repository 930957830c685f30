#include "foundations/TaskHelper.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Text.h"
#include "foundations/UserDefaults.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

constexpr QStringView DefaultDueSoonTime = u"17:00:00";
constexpr int MaximumDueSoonDays = 100'000;
constexpr int MinutesPerHour = 60;

/** Minutes since midnight; nothing if the text does not begin with hours and minutes. */
std::optional<qint64> cutOffMinute(const QString &time)
{
    std::vector<qint64> parts;
    for (const QStringView part : QStringView(time).split(u':')) {
        if (const std::optional<qint64> number = wholeNumberFromText(part)) {
            parts.push_back(std::clamp<qint64>(*number, 0, MinutesPerHour));
        }
    }
    return parts.size() < 2 ? std::nullopt : std::optional(parts[0] * MinutesPerHour + parts[1]);
}

} // namespace

UserDefaultsDateSettings::UserDefaultsDateSettings(const UserDefaults &defaults) : m_defaults(defaults) {}

int UserDefaultsDateSettings::dueSoonDays() const
{
    const double days = m_defaults.real(keys::DueSoonDays).value_or(0.0);
    return std::isfinite(days) ? static_cast<int>(std::clamp<double>(days, 0, MaximumDueSoonDays)) : 0;
}

QString UserDefaultsDateSettings::dueSoonTime() const
{
    return m_defaults.text(keys::DueSoonTime).value_or(DefaultDueSoonTime.toString());
}

TaskHelper::TaskHelper(const DateSettingsProvider &settings, const QLocale &locale)
    : m_settings(settings), m_locale(locale)
{
}

bool TaskHelper::isOverdue(std::optional<Date> date, Date relativeTo)
{
    return date && *date < relativeTo;
}

bool TaskHelper::isDueSoon(std::optional<Date> date, Date now) const
{
    if (!date) {
        return false;
    }
    const QDateTime due = date->toDateTime();
    const qint64 days = now.toDateTime().date().daysTo(due.date());
    if (days == 0) {
        return true;
    }
    const int limit = m_settings.dueSoonDays();
    if (days < 0 || days > limit) {
        return false;
    }
    const std::optional<qint64> cutOff = cutOffMinute(m_settings.dueSoonTime());
    const QTime time = due.time();
    return !cutOff || days < limit || time.hour() * MinutesPerHour + time.minute() <= *cutOff;
}

QString TaskHelper::formattedDueString(Date date) const
{
    const QDateTime local = date.toDateTime();
    if (m_locale.language() == QLocale::English) {
        return m_locale.toString(local.date(), QLocale::ShortFormat) + u", " +
               m_locale.toString(local.time(), QLocale::ShortFormat);
    }
    return m_locale.toString(local, QLocale::ShortFormat);
}

std::optional<QString> TaskHelper::formattedDueDate(const WorkItem &task, Date now) const
{
    if (!task.dueDate()) {
        return std::nullopt;
    }
    const QDateTime due = task.dueDate()->toDateTime();
    return due.date() == now.toDateTime().date() ? m_locale.toString(due.time(), u"HH:mm")
                                                 : m_locale.toString(due.date(), QLocale::ShortFormat);
}

QString TaskHelper::formattedAge(const WorkItem &task, Date now) const
{
    return humanReadableAge(task.age(now));
}

QString TaskHelper::humanReadableAge(double seconds)
{
    switch (const qint64 days = wholeDays(seconds)) {
    case 0:
        return tr("Today");
    case 1:
        return tr("1 day");
    default:
        return tr("%1 days").arg(days);
    }
}

} // namespace vantrel
