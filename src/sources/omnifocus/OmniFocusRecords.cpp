#include "sources/omnifocus/OmniFocusRecords.h"

#include "foundations/Log.h"

#include <QTime>

#include <algorithm>
#include <array>
#include <cmath>

namespace vantrel::omnifocus {

namespace {

constexpr QStringView FieldSeparator = u"|||";
constexpr qsizetype MostFields = 16;

/** One record of a fetch answer, as the script writes it. */
struct RawRecord
{
    WorkItemFields fields;
    std::optional<Date> inferredCreationDate;
    bool isRepeating = false;
};

QString text(double days)
{
    return QString::number(days, 'f', 2);
}

std::optional<QString> nonEmpty(QStringView value)
{
    return value.isEmpty() ? std::nullopt : std::optional(value.toString());
}

/** The fields of one record: views into it, so that only what is kept is copied. */
class Parts
{
public:
    explicit Parts(QStringView record)
    {
        for (const QStringView part : record.tokenize(FieldSeparator)) {
            if (m_count < MostFields) {
                m_parts[static_cast<std::size_t>(m_count)] = part;
            }
            ++m_count;
        }
    }

    qsizetype size() const { return m_count; }
    /** Empty for a field that the record does not have. */
    QStringView at(std::size_t place) const { return m_parts.at(place); }

private:
    std::array<QStringView, MostFields> m_parts;
    qsizetype m_count = 0;
};

RawRecord readRecord(const Parts &parts, const AnswerDateReader &dates, Date now)
{
    RawRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = parts.at(0).toString();
    fields.name = parts.at(1).toString();
    fields.note = nonEmpty(parts.at(2));
    fields.dueDate = dates.read(parts.at(3));
    fields.completionDate = dates.read(parts.at(4));
    fields.creationDate = dates.read(parts.at(5)).value_or(now);
    fields.modificationDate = dates.read(parts.at(6)).value_or(now);
    fields.isFlagged = parts.at(7) == u"true";
    fields.project = Project{parts.at(8).toString(), parts.at(9).toString()};
    fields.tag = Tag{parts.at(10).toString(), parts.at(11).toString()};
    fields.isComplete = parts.at(12) == u"true";
    fields.deferDate = dates.read(parts.at(13));
    record.inferredCreationDate = dates.read(parts.at(14));
    record.isRepeating = parts.at(15) == u"true";
    return record;
}

/**
 * A repeating task's creation date is that of the whole series; the inferred one is its present instance's,
 * and tells the age that the user means.
 */
void applyInferredCreationDate(RawRecord &record)
{
    if (!record.inferredCreationDate) {
        return;
    }
    WorkItemFields &fields = record.fields;
    const double difference = (*record.inferredCreationDate - fields.creationDate) / SecondsPerDay;
    if (std::abs(difference) <= 1.0) {
        log::debug(u"Ignoring inferred creation date for '" + fields.name +
                   u"' - too close to actual date (diff: " + text(difference) + u" days)");
        return;
    }
    if (log::isDebugEnabled()) {
        log::debug(u"📅 Using inferred creation date for repeating task '" + fields.name + u"': " +
                   record.inferredCreationDate->description());
        log::debug(u"   - Actual creation date: " + fields.creationDate.description());
        log::debug(u"   - Difference: " + text(difference) + u" days");
        log::debug(u"   - Defer date: " +
                   (fields.deferDate ? fields.deferDate->description() : QStringLiteral("nil")));
    }
    fields.creationDate = *record.inferredCreationDate;
}

std::optional<Recurrence> inferredRecurrence(const RawRecord &record)
{
    if (!record.inferredCreationDate || !record.fields.deferDate) {
        return std::nullopt;
    }
    const double days = (*record.fields.deferDate - *record.inferredCreationDate) / SecondsPerDay;
    std::optional<Recurrence> recurrence = recurrenceFromDays(std::llround(days));
    if (recurrence) {
        log::debug(u"📅 Detected recurring task '" + record.fields.name + u"' with pattern: " +
                   *recurrence->pattern);
    }
    return recurrence;
}

void logLeadTimes(const RawRecord &record, Date actualCreationDate)
{
    const WorkItemFields &fields = record.fields;
    if (!fields.completionDate || !record.inferredCreationDate || !log::isDebugEnabled()) {
        return;
    }
    const double actual = (*fields.completionDate - actualCreationDate) / SecondsPerDay;
    const double inferred = (*fields.completionDate - *record.inferredCreationDate) / SecondsPerDay;
    log::debug(u"⏱ Lead time analysis for completed task '" + fields.name + u"':");
    log::debug(u"   - Actual lead time: " + text(actual) + u" days");
    log::debug(u"   - Inferred lead time: " + text(inferred) + u" days");
    log::debug(u"   - Improvement: " + text(actual - inferred) + u" days");
}

Recurrence recurrenceOf(const RawRecord &record)
{
    const std::optional<Recurrence> inferred = inferredRecurrence(record);
    if (!record.isRepeating) {
        return {};
    }
    const QString &name = record.fields.name;
    if (!inferred) {
        log::warning(u"⚠️ RECURRING TASK ISSUE: Task '" + name +
                     u"' is marked as recurring but missing frequency(nil) or interval(nil)");
        return {true, {}, {}, {}};
    }
    log::debug(u"📅 Setting recurrence info for task '" + name + u"': isRepeating=true, frequency=" +
               rawValue(*inferred->frequency) + u", interval=" + QString::number(*inferred->interval) +
               u", pattern=" + *inferred->pattern);
    return *inferred;
}

TaskRecord taskFrom(RawRecord record)
{
    const Date actualCreationDate = record.fields.creationDate;
    applyInferredCreationDate(record);
    logLeadTimes(record, actualCreationDate);
    const Recurrence recurrence = recurrenceOf(record);
    return {std::move(record.fields), recurrence};
}

template <typename Info>
std::vector<Info> catalogueFromAnswer(const std::vector<AnswerItem> &items, const QString &word)
{
    std::vector<Info> catalogue;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!items[i]) {
            log::warning(QStringLiteral("⚠️ Could not get string value for %1 item %2")
                             .arg(word.toLower())
                             .arg(i + 1));
            continue;
        }
        const QStringList parts = items[i]->split(FieldSeparator.toString());
        if (parts.size() < 2) {
            log::warning(u"⚠️ " + word + u" string has insufficient components: " + *items[i] +
                         u", expected at least 2");
            continue;
        }
        catalogue.push_back({parts.at(1), parts.at(0), true});
    }
    std::sort(catalogue.begin(), catalogue.end(),
              [](const Info &a, const Info &b) { return a.name < b.name; });
    return catalogue;
}

/** The number that `digits` are, all of them; -1 if they are not. */
int number(QStringView digits)
{
    int value = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9') {
            return -1;
        }
        value = value * 10 + digit.digitValue();
    }
    return value;
}

/** Takes the time of day off the end of `text`, and what separates it from the day; invalid if it is none. */
QTime takeTime(QStringView &text, QStringView beforeNoon, QStringView afterNoon)
{
    const bool isMorning = !beforeNoon.isEmpty() && text.endsWith(beforeNoon);
    const bool isEvening = !isMorning && !afterNoon.isEmpty() && text.endsWith(afterNoon);
    QStringView rest = text;
    if (isMorning || isEvening) {
        rest.chop((isMorning ? beforeNoon : afterNoon).size());
        if (!rest.endsWith(u' ')) {
            return {};
        }
        rest.chop(1);
    }
    // Hours of one digit are those before or after noon only.
    constexpr qsizetype tail = 6; // ":mm:ss"
    const qsizetype colon = rest.size() - tail;
    const bool hasTwoDigits = colon >= 2 && rest[colon - 2].isDigit();
    const qsizetype start = colon - (hasTwoDigits ? 2 : 1);
    if (start < 1 || rest[colon] != u':' || rest[colon + 3] != u':') {
        return {};
    }
    int hour = number(rest.sliced(start, colon - start));
    if (isMorning || isEvening) {
        if (hour < (hasTwoDigits ? 10 : 1) || hour > 12) {
            return {};
        }
        hour = hour % 12 + (isEvening ? 12 : 0);
    } else if (!hasTwoDigits) {
        return {};
    }
    const QTime time(hour, number(rest.sliced(colon + 1, 2)), number(rest.sliced(colon + 4, 2)));
    rest.truncate(start);
    for (const QStringView separator : {QStringView(u" at "), QStringView(u", "), QStringView(u" ")}) {
        if (rest.endsWith(separator)) {
            text = rest.chopped(separator.size());
            return time;
        }
    }
    return {};
}

} // namespace

AnswerDateReader::AnswerDateReader(QLocale locale)
    : m_locale(std::move(locale)),
      m_dateFormats{m_locale.dateFormat(QLocale::LongFormat), QStringLiteral("dddd, d MMMM yyyy")},
      m_beforeNoon(m_locale.amText().toUpper()),
      m_afterNoon(m_locale.pmText().toUpper())
{
}

std::optional<Date> AnswerDateReader::read(QStringView text) const
{
    if (text.isEmpty()) {
        return std::nullopt;
    }
    QString plain;
    if (text.contains(u'\u202F') || text.contains(u'\u00A0')) {
        plain = text.toString().replace(u'\u202F', u' ').replace(u'\u00A0', u' ');
        text = plain;
    }
    const QTime time = takeTime(text, m_beforeNoon, m_afterNoon);
    if (!time.isValid()) {
        return std::nullopt;
    }
    const Day day = readDay(text);
    if (!day.date.isValid()) {
        return std::nullopt;
    }
    return day.start ? *day.start + time.msecsSinceStartOfDay() / 1000.0
                     : Date::fromDateTime(QDateTime(day.date, time));
}

AnswerDateReader::Day AnswerDateReader::readDay(QStringView view) const
{
    // Without a copy: mostly it is known.
    const auto known = m_days.constFind(QString::fromRawData(view.data(), view.size()));
    if (known != m_days.cend()) {
        return *known;
    }
    const QString text = view.toString();
    Day day;
    for (const QString &format : m_dateFormats) {
        const QDate candidate = m_locale.toDate(text, format);
        // Parsing forgives case and missing zeros; only what would be written exactly so is a date of this
        // form.
        if (candidate.isValid() && m_locale.toString(candidate, format) == text) {
            day.date = candidate;
            break;
        }
    }
    const Date start = Date::fromDateTime(QDateTime(day.date, QTime(0, 0)));
    const Date end = Date::fromDateTime(QDateTime(day.date.addDays(1), QTime(0, 0)));
    if (day.date.isValid() && end - start == SecondsPerDay) {
        day.start = start;
    }
    m_days.insert(text, day);
    return day;
}

std::vector<TaskRecord> tasksFromAnswer(const std::vector<AnswerItem> &items, const AnswerDateReader &dates,
                                        Date now, qsizetype fewestFields)
{
    std::vector<TaskRecord> tasks;
    tasks.reserve(items.size());
    int recurring = 0;
    for (const AnswerItem &item : items) {
        if (!item) {
            continue;
        }
        const Parts parts(*item);
        if (parts.size() < fewestFields) {
            log::error(QStringLiteral("Task string has insufficient components: %1, expected at least %2")
                           .arg(parts.size())
                           .arg(fewestFields));
            continue;
        }
        if (parts.size() > MostFields) {
            log::warning(
                QStringLiteral("Task string has %1 components, expected at most 16: a field holds the "
                               "separator")
                    .arg(parts.size()));
        }
        tasks.push_back(taskFrom(readRecord(parts, dates, now)));
        recurring += tasks.back().recurrence.isRepeating ? 1 : 0;
    }
    log::info(QStringLiteral("📊 OmniFocus Task Summary: Total tasks: %1, Recurring tasks: %2")
                  .arg(tasks.size())
                  .arg(recurring));
    return tasks;
}

std::vector<ProjectInfo> projectsFromAnswer(const std::vector<AnswerItem> &items)
{
    return catalogueFromAnswer<ProjectInfo>(items, QStringLiteral("Project"));
}

std::vector<TagInfo> tagsFromAnswer(const std::vector<AnswerItem> &items)
{
    return catalogueFromAnswer<TagInfo>(items, QStringLiteral("Tag"));
}

std::optional<DueSoonSettings> dueSoonFromAnswer(const QString &text)
{
    const QStringList parts = text.split(u'|');
    if (parts.size() != 2) {
        return std::nullopt;
    }
    bool isNumber = false;
    QString days = parts.at(0);
    const double number = days.replace(u',', u'.').toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number)) {
        return std::nullopt;
    }
    const QTime time = QTime::fromString(parts.at(1), QStringLiteral("HH:mm:ss"));
    const QString fallback = QStringLiteral("17:00:00");
    return DueSoonSettings{number, time.isValid() ? time.toString(QStringLiteral("HH:mm:ss")) : fallback};
}

std::optional<Recurrence> recurrenceFromDays(qint64 days)
{
    if (days <= 0) {
        return std::nullopt;
    }
    struct Unit
    {
        qint64 days;
        RepeatFrequency frequency;
    };
    static constexpr std::array units{Unit{365, RepeatFrequency::Yearly}, Unit{30, RepeatFrequency::Monthly},
                                      Unit{7, RepeatFrequency::Weekly}, Unit{1, RepeatFrequency::Daily}};
    const auto unit = std::find_if(units.begin(), units.end(), [days](const Unit &candidate) {
        return days >= candidate.days && days % candidate.days == 0;
    });
    const int interval = static_cast<int>(days / unit->days);
    return Recurrence{true, unit->frequency, interval, detailedDescription(unit->frequency, interval)};
}

} // namespace vantrel::omnifocus
