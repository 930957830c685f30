#include "sources/omnifocus/OmniFocusRecords.h"

#include "foundations/Log.h"

#include <QTime>

#include <algorithm>
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

std::optional<QString> nonEmpty(const QString &value)
{
    return value.isEmpty() ? std::nullopt : std::optional(value);
}

RawRecord readRecord(const QStringList &parts, const AnswerDateReader &dates, Date now)
{
    RawRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = parts.at(0);
    fields.name = parts.at(1);
    fields.note = nonEmpty(parts.at(2));
    fields.dueDate = dates.read(parts.at(3));
    fields.completionDate = dates.read(parts.at(4));
    fields.creationDate = dates.read(parts.at(5)).value_or(now);
    fields.modificationDate = dates.read(parts.at(6)).value_or(now);
    fields.isFlagged = parts.at(7) == u"true";
    fields.project = Project{parts.at(8), parts.at(9)};
    fields.tag = Tag{parts.at(10), parts.at(11)};
    fields.isComplete = parts.at(12) == u"true";
    fields.deferDate = dates.read(parts.value(13));
    record.inferredCreationDate = dates.read(parts.value(14));
    record.isRepeating = parts.value(15) == u"true";
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

/** Of a match of the reader's pattern: hours up to 23, or up to 12 before or after noon. */
QTime timeOfDay(const QRegularExpressionMatch &match)
{
    const auto number = [&match](int group) {
        return match.capturedView(group).toInt();
    };
    if (match.hasCaptured(2)) {
        return QTime(number(2), number(3), number(4));
    }
    const int noon = match.hasCaptured(9) ? 12 : 0;
    return QTime(number(5) % 12 + noon, number(6), number(7));
}

} // namespace

AnswerDateReader::AnswerDateReader(QLocale locale)
    : m_locale(std::move(locale)),
      m_dateFormats{m_locale.dateFormat(QLocale::LongFormat), QStringLiteral("dddd, d MMMM yyyy")},
      m_pattern(QStringLiteral("^(.*?)(?: at |, | )(?:([0-9]{2}):([0-9]{2}):([0-9]{2})|"
                               "([1-9]|1[0-2]):([0-9]{2}):([0-9]{2}) (?:(%1)|(%2)))$")
                    .arg(QRegularExpression::escape(m_locale.amText().toUpper()),
                         QRegularExpression::escape(m_locale.pmText().toUpper())))
{
}

std::optional<Date> AnswerDateReader::read(const QString &text) const
{
    if (text.isEmpty()) {
        return std::nullopt;
    }
    QString plain = text;
    plain.replace(u'\u202F', u' ').replace(u'\u00A0', u' ');
    const QRegularExpressionMatch match = m_pattern.match(plain);
    const Day day = match.hasMatch() ? readDay(match.captured(1)) : Day();
    const QTime time = timeOfDay(match);
    if (!day.date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return day.start ? *day.start + time.msecsSinceStartOfDay() / 1000.0
                     : Date::fromDateTime(QDateTime(day.date, time));
}

AnswerDateReader::Day AnswerDateReader::readDay(const QString &text) const
{
    const auto known = m_days.constFind(text);
    if (known != m_days.cend()) {
        return *known;
    }
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
        const QStringList parts = item->split(FieldSeparator.toString());
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
