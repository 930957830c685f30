#include "sources/reminders/vdir/IcsParser.h"

#include <algorithm>

namespace vantrel {

namespace {

Date fromSeconds(qint64 secondsSince1970)
{
    return Date(static_cast<double>(secondsSince1970 - ReferenceSecondsSince1970));
}

/** libical keeps the zones that it knows for all threads. */
qint64 secondsOfZonedTime(icaltimetype time)
{
    const QMutexLocker lock(&icalZoneMutex());
    return icaltime_as_timet_with_zone(time, time.zone);
}

icaltimetype timeOf(icalproperty *property, icalcomponent *calendar)
{
    if (!icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)) {
        return icalvalue_get_datetimedate(icalproperty_get_value(property));
    }
    const QMutexLocker lock(&icalZoneMutex());
    return icalproperty_get_datetime_with_component(property, calendar);
}

std::optional<ReminderDueDate> dateOf(icalproperty *property, icalcomponent *calendar)
{
    const icaltimetype time = timeOf(property, calendar);
    const QDate day(time.year, time.month, time.day);
    if (icaltime_is_null_time(time) || !day.isValid()) {
        return std::nullopt;
    }
    if (time.is_date) {
        return day;
    }
    if (icaltime_is_utc(time)) {
        return fromSeconds(icaltime_as_timet(time));
    }
    if (time.zone) {
        return fromSeconds(secondsOfZonedTime(time));
    }
    // A time without zone is one of wherever the user is.
    return Date::fromDateTime(QDateTime(day, QTime(time.hour, time.minute, time.second)));
}

std::optional<Date> momentOf(icalproperty *property, icalcomponent *calendar)
{
    const auto date = dateOf(property, calendar);
    if (!date) {
        return std::nullopt;
    }
    const QDate *day = std::get_if<QDate>(&*date);
    return day ? Date::fromDateTime(day->startOfDay()) : std::get<Date>(*date);
}

ReminderRecurrence recurrenceOf(icalproperty *property)
{
    const icalrecurrencetype rule = icalproperty_get_rrule(property);
    ReminderRecurrence recurrence;
    recurrence.interval = std::max<int>(1, rule.interval);
    switch (rule.freq) {
    case ICAL_DAILY_RECURRENCE:
        recurrence.frequency = RepeatFrequency::Daily;
        break;
    case ICAL_WEEKLY_RECURRENCE:
        recurrence.frequency = RepeatFrequency::Weekly;
        break;
    case ICAL_MONTHLY_RECURRENCE:
        recurrence.frequency = RepeatFrequency::Monthly;
        break;
    case ICAL_YEARLY_RECURRENCE:
        recurrence.frequency = RepeatFrequency::Yearly;
        break;
    default:
        recurrence.frequency = RepeatFrequency::Custom;
    }
    return recurrence;
}

/** Reads the properties of one VTODO in one pass. */
class TodoReader
{
public:
    TodoReader(icalcomponent *todo, icalcomponent *calendar)
    {
        m_result.component = todo;
        m_result.calendar = calendar;
        for (icalproperty *property = icalcomponent_get_first_property(todo, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(todo, ICAL_ANY_PROPERTY)) {
            take(property);
        }
    }

    IcsTodo todo(const QString &fallbackId)
    {
        Reminder &reminder = m_result.reminder;
        reminder.identifier = m_uid.isEmpty() ? fallbackId : m_uid;
        if (m_result.isOverride) {
            reminder.identifier += u'/' + m_occurrence;
        }
        if (!reminder.creationDate) {
            reminder.creationDate = m_stamp ? m_stamp : m_modified;
        }
        reminder.isCompleted =
            m_status == ICAL_STATUS_COMPLETED || m_completed || (m_percent == 100 && !hasOpenStatus());
        if (reminder.isCompleted) {
            reminder.completionDate = m_completed ? m_completed : m_modified ? m_modified : m_stamp;
        }
        m_result.isCancelled = m_status == ICAL_STATUS_CANCELLED;
        return std::move(m_result);
    }

private:
    bool hasOpenStatus() const
    {
        return m_status == ICAL_STATUS_NEEDSACTION || m_status == ICAL_STATUS_INPROCESS;
    }

    void take(icalproperty *property)
    {
        Reminder &reminder = m_result.reminder;
        switch (icalproperty_isa(property)) {
        case ICAL_UID_PROPERTY:
            m_uid = QString::fromUtf8(icalproperty_get_uid(property));
            break;
        case ICAL_SUMMARY_PROPERTY:
            takeText(reminder.title, icalproperty_get_summary(property));
            break;
        case ICAL_DESCRIPTION_PROPERTY:
            takeText(reminder.notes, icalproperty_get_description(property));
            break;
        case ICAL_PRIORITY_PROPERTY:
            reminder.priority = std::clamp(icalproperty_get_priority(property), 0, 9);
            break;
        case ICAL_STATUS_PROPERTY:
            m_status = icalproperty_get_status(property);
            break;
        case ICAL_PERCENTCOMPLETE_PROPERTY:
            m_percent = icalproperty_get_percentcomplete(property);
            break;
        case ICAL_RRULE_PROPERTY:
            m_result.isRecurring = true;
            if (!reminder.recurrence) {
                reminder.recurrence = recurrenceOf(property);
            }
            break;
        case ICAL_RECURRENCEID_PROPERTY:
            m_result.isOverride = true;
            m_occurrence =
                QString::fromUtf8(IcalHandle<char>(icalproperty_get_value_as_string_r(property)).get());
            break;
        default:
            takeDate(property);
        }
    }

    void takeDate(icalproperty *property)
    {
        switch (icalproperty_isa(property)) {
        case ICAL_DUE_PROPERTY:
            m_result.reminder.dueDate = dateOf(property, m_result.calendar);
            break;
        case ICAL_CREATED_PROPERTY:
            m_result.reminder.creationDate = momentOf(property, m_result.calendar);
            break;
        case ICAL_COMPLETED_PROPERTY:
            m_completed = momentOf(property, m_result.calendar);
            break;
        case ICAL_LASTMODIFIED_PROPERTY:
            m_modified = momentOf(property, m_result.calendar);
            break;
        case ICAL_DTSTAMP_PROPERTY:
            m_stamp = momentOf(property, m_result.calendar);
            break;
        default:
            break;
        }
    }

    static void takeText(std::optional<QString> &field, const char *text)
    {
        if (!field && text && *text != '\0') {
            field = QString::fromUtf8(text);
        }
    }

    IcsTodo m_result;
    QString m_uid;
    QString m_occurrence;
    icalproperty_status m_status = ICAL_STATUS_NONE;
    int m_percent = 0;
    std::optional<Date> m_completed;
    std::optional<Date> m_modified;
    std::optional<Date> m_stamp;
};

void collect(icalcomponent *component, const QString &fallbackId, ParsedIcs &parsed)
{
    const icalcomponent_kind kind = icalcomponent_isa(component);
    if (kind != ICAL_VCALENDAR_COMPONENT && kind != ICAL_XROOT_COMPONENT) {
        return;
    }
    for (icalcompiter at = icalcomponent_begin_component(component, ICAL_ANY_COMPONENT);
         icalcompiter_deref(&at); icalcompiter_next(&at)) {
        icalcomponent *part = icalcompiter_deref(&at);
        if (icalcomponent_isa(part) == ICAL_VTODO_COMPONENT) {
            parsed.todos.push_back(TodoReader(part, component).todo(fallbackId));
            parsed.hasOverrides |= parsed.todos.back().isOverride;
        } else {
            collect(part, fallbackId, parsed);
        }
    }
}

} // namespace

std::optional<ParsedIcs> parseIcs(const QByteArray &text, const QString &fallbackId)
{
    ParsedIcs parsed;
    parsed.root.reset(icalcomponent_new_from_string(text.constData()));
    if (!parsed.root) {
        return std::nullopt;
    }
    const icalcomponent_kind kind = icalcomponent_isa(parsed.root.get());
    if (kind != ICAL_VCALENDAR_COMPONENT && kind != ICAL_XROOT_COMPONENT) {
        return std::nullopt;
    }
    collect(parsed.root.get(), fallbackId, parsed);
    return parsed;
}

} // namespace vantrel
