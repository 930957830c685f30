#include "sources/reminders/vdir/IcsSeries.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace vantrel {

namespace {

/** So many occurrences must be the same before and after. */
constexpr int ComparedOccurrences = 24;
/** A rule whose occurrences are all left out is given up after so many. */
constexpr int LongestSearch = 5000;

bool isSame(icaltimetype a, icaltimetype b)
{
    return a.is_date || b.is_date ? icaltime_compare_date_only(a, b) == 0 : icaltime_compare(a, b) == 0;
}

bool contains(const std::vector<icaltimetype> &times, icaltimetype time)
{
    return std::any_of(times.begin(), times.end(), [time](icaltimetype one) { return isSame(one, time); });
}

/** The occurrences after `start`, up to `most` of them. */
class Occurrences
{
public:
    Occurrences(const QByteArray &rule, icaltimetype start)
        : m_start(start),
          m_iterator(icalrecur_iterator_new(icalrecurrencetype_from_string(rule.constData()), start))
    {
    }
    /** Null at the end. Counts those given by the rule, the start among them. */
    icaltimetype next()
    {
        while (m_iterator) {
            const icaltimetype time = icalrecur_iterator_next(m_iterator.get());
            if (icaltime_is_null_time(time)) {
                break;
            }
            if (icaltime_compare(time, m_start) > 0) {
                ++m_passed;
                return time;
            }
        }
        return icaltime_null_time();
    }
    int passed() const { return m_passed; }

private:
    icaltimetype m_start;
    IcalHandle<icalrecur_iterator> m_iterator;
    int m_passed = 0;
};

bool goOnAlike(Occurrences &a, Occurrences b)
{
    for (int count = 0; count < ComparedOccurrences; ++count) {
        const icaltimetype one = a.next();
        const icaltimetype other = b.next();
        if (icaltime_is_null_time(one) || icaltime_is_null_time(other)) {
            return icaltime_is_null_time(one) && icaltime_is_null_time(other);
        }
        if (!isSame(one, other)) {
            return false;
        }
    }
    return true;
}

/** A rule that ends after a number of occurrences, when so many have gone by. */
QByteArray withLowerCount(const QByteArray &rule, int gone)
{
    static const QRegularExpression count(QStringLiteral("\\bCOUNT=(\\d+)"),
                                          QRegularExpression::CaseInsensitiveOption);
    QString text = QString::fromUtf8(rule);
    const QRegularExpressionMatch match = count.match(text);
    if (match.hasMatch()) {
        text.replace(match.capturedStart(1), match.capturedLength(1),
                     QString::number(match.captured(1).toInt() - gone));
    }
    return text.toUtf8();
}

/** False for what is no rule, and for rules by the hour or less: libical may search for ever for what never
 * comes. */
bool isSearchable(const QByteArray &rule)
{
    switch (icalrecurrencetype_from_string(rule.constData()).freq) {
    case ICAL_DAILY_RECURRENCE:
    case ICAL_WEEKLY_RECURRENCE:
    case ICAL_MONTHLY_RECURRENCE:
    case ICAL_YEARLY_RECURRENCE:
        return true;
    default:
        return false;
    }
}

QDateTime wallClock(icaltimetype time)
{
    return {QDate(time.year, time.month, time.day), QTime(time.hour, time.minute, time.second), Qt::UTC};
}

QByteArray written(const QDateTime &wallClock, icaltimetype likeThis)
{
    const QString form = likeThis.is_date ? QStringLiteral("yyyyMMdd") : QStringLiteral("yyyyMMdd'T'HHmmss");
    QByteArray text = wallClock.toString(form).toLatin1();
    return icaltime_is_utc(likeThis) ? text.append('Z') : text;
}

} // namespace

IcsSeries::IcsSeries(icalcomponent *calendar, icalcomponent *todo, const IcsDocument &document,
                     IcsDocument::Component component)
    : m_calendar(calendar),
      m_todo(todo),
      m_rule(document.value(component, "RRULE").value_or(QByteArray())),
      m_rules(document.count(component, "RRULE")),
      m_hasOtherDates(document.count(component, "RDATE") > 0 || document.count(component, "EXRULE") > 0),
      m_start(moment(ICAL_DTSTART_PROPERTY)),
      m_due(moment(ICAL_DUE_PROPERTY))
{
    const QMutexLocker lock(&icalZoneMutex());
    readExceptions();
    readOverrides();
}

IcsSeries::Moment IcsSeries::moment(icalproperty_kind kind) const
{
    icalproperty *property = icalcomponent_get_first_property(m_todo, kind);
    if (!property) {
        return {};
    }
    const QMutexLocker lock(&icalZoneMutex());
    Moment moment;
    moment.time = icalproperty_get_datetime_with_component(property, m_calendar);
    if (icalparameter *zone = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER)) {
        moment.zone = icalparameter_get_tzid(zone);
    }
    return moment;
}

void IcsSeries::readExceptions()
{
    for (icalproperty *property = icalcomponent_get_first_property(m_todo, ICAL_EXDATE_PROPERTY); property;
         property = icalcomponent_get_next_property(m_todo, ICAL_EXDATE_PROPERTY)) {
        m_exceptions.push_back(icalproperty_get_datetime_with_component(property, m_calendar));
    }
}

void IcsSeries::readOverrides()
{
    const char *uid = icalcomponent_get_uid(m_todo);
    icalcomponent *parent = icalcomponent_get_parent(m_todo);
    if (!uid || !parent) {
        return;
    }
    for (icalcompiter at = icalcomponent_begin_component(parent, ICAL_VTODO_COMPONENT);
         icalcompiter_deref(&at); icalcompiter_next(&at)) {
        icalcomponent *other = icalcompiter_deref(&at);
        icalproperty *property = icalcomponent_get_first_property(other, ICAL_RECURRENCEID_PROPERTY);
        const char *otherUid = icalcomponent_get_uid(other);
        if (other == m_todo || !property || !otherUid || qstrcmp(uid, otherUid) != 0) {
            continue;
        }
        m_hasRange |= icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER) != nullptr;
        const icalproperty_status status = icalcomponent_get_status(other);
        const bool isSettled = status == ICAL_STATUS_COMPLETED || status == ICAL_STATUS_CANCELLED;
        (isSettled ? m_settled : m_moved)
            .push_back(icalproperty_get_datetime_with_component(property, m_calendar));
    }
}

bool IcsSeries::isLeftOut(icaltimetype occurrence) const
{
    return contains(m_exceptions, occurrence) || contains(m_settled, occurrence);
}

bool IcsSeries::isPresentSettled() const
{
    const QMutexLocker lock(&icalZoneMutex());
    const Moment &anchor = m_start.isPresent() ? m_start : m_due;
    return anchor.isPresent() && contains(m_settled, anchor.time);
}

/** What makes the series one that cannot be told from its next occurrence on; empty if nothing does. */
QString IcsSeries::obstacle() const
{
    const Moment &anchor = m_start.isPresent() ? m_start : m_due;
    if (!anchor.isPresent()) {
        return tr("This task repeats, but has no date to repeat from.");
    }
    if (m_rules != 1 || m_hasOtherDates || !isSearchable(m_rule)) {
        return tr("This task repeats in a way that only the program that made it can carry on.");
    }
    const bool isAnyMoved = std::any_of(m_moved.begin(), m_moved.end(), [&](icaltimetype time) {
        return icaltime_compare(time, anchor.time) >= 0;
    });
    if (m_hasRange || isAnyMoved) {
        return tr("Some of this task's repetitions were changed on their own.");
    }
    if (m_start.isPresent() && m_due.isPresent() &&
        (m_start.time.is_date != m_due.time.is_date || m_start.zone != m_due.zone ||
         icaltime_is_utc(m_start.time) != icaltime_is_utc(m_due.time))) {
        return tr("The start and the due date of this task are of different kinds.");
    }
    return {};
}

IcsSeries::Step IcsSeries::next() const
{
    const QMutexLocker lock(&icalZoneMutex());
    Step step;
    step.refusal = obstacle();
    if (!step.refusal.isEmpty()) {
        return step;
    }
    const icaltimetype anchor = (m_start.isPresent() ? m_start : m_due).time;
    Occurrences occurrences(m_rule, anchor);
    icaltimetype next = occurrences.next();
    while (!icaltime_is_null_time(next) && isLeftOut(next) && occurrences.passed() < LongestSearch) {
        next = occurrences.next();
    }
    if (icaltime_is_null_time(next)) {
        step.kind = Step::Kind::Ended;
        return step;
    }
    step.rule = withLowerCount(m_rule, occurrences.passed());
    if (isLeftOut(next) || !goOnAlike(occurrences, Occurrences(step.rule, next))) {
        step.refusal = tr("The dates of this task's further repetitions would change.");
        return step;
    }
    step.kind = Step::Kind::Advanced;
    if (m_start.isPresent()) {
        step.start = written(wallClock(next), m_start.time);
    }
    if (m_due.isPresent()) {
        step.due = m_start.isPresent() ? shiftedDue(next) : written(wallClock(next), m_due.time);
    }
    return step;
}

/** As far behind the new start as it was behind the old one, by the clock on the wall. */
QByteArray IcsSeries::shiftedDue(icaltimetype newStart) const
{
    const qint64 seconds = wallClock(m_start.time).secsTo(wallClock(m_due.time));
    return written(wallClock(newStart).addSecs(seconds), m_due.time);
}

} // namespace vantrel
