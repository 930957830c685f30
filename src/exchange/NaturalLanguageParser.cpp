#include "exchange/NaturalLanguageParser.h"

#include "exchange/Utf16.h"
#include "foundations/Pattern.h"
#include "foundations/Text.h"

#include <array>
#include <utility>

namespace vantrel {

namespace {

using Patterns = std::vector<QRegularExpression>;

constexpr auto IgnoringCase = QRegularExpression::CaseInsensitiveOption;

/** Takes the whole of `match` out of `text`, which is what was matched. */
void remove(const QRegularExpressionMatch &match, QString &text)
{
    text.remove(match.capturedStart(), match.capturedLength());
}

/** Takes all matches of `pattern` out of `text` and gives their first groups. */
QStringList extractAll(const QRegularExpression &pattern, QString &text)
{
    QStringList groups;
    QString rest;
    qsizetype end = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        groups.append(match.captured(1));
        rest += QStringView(text).sliced(end, match.capturedStart() - end);
        end = match.capturedEnd();
    }
    if (!groups.isEmpty()) {
        text = rest + QStringView(text).sliced(end);
    }
    return groups;
}

std::optional<TaskManagerType> extractTaskManager(QString &text)
{
    static constexpr std::array<std::pair<QStringView, TaskManagerType>, 6> phrases{{
        {u"in omnifocus", TaskManagerType::OmniFocus},
        {u"to omnifocus", TaskManagerType::OmniFocus},
        {u"using omnifocus", TaskManagerType::OmniFocus},
        {u"in reminders", TaskManagerType::Reminders},
        {u"to reminders", TaskManagerType::Reminders},
        {u"using reminders", TaskManagerType::Reminders},
    }};
    const QString lowerCased = text.toLower();
    for (const auto &[phrase, type] : phrases) {
        if (lowerCased.contains(phrase)) {
            text.remove(phrase.toString(), Qt::CaseInsensitive);
            return type;
        }
    }
    return std::nullopt;
}

/** Words that are tags wherever they stand, also inside other words. */
void extractKeywordTags(QString &text, QStringList &tags)
{
    static constexpr std::array<QStringView, 5> keywords{u"urgent", u"important", u"work", u"personal",
                                                         u"health"};
    QString lowerCased = text.toLower();
    for (const QStringView keyword : keywords) {
        if (!tags.contains(keyword) && lowerCased.contains(keyword)) {
            tags.append(keyword.toString());
            text.remove(keyword.toString(), Qt::CaseInsensitive);
            lowerCased = text.toLower();
        }
    }
}

QStringList extractTags(QString &text)
{
    static const QRegularExpression hashtag = compilePattern(u"#(\\w+)");
    static const QRegularExpression tagList =
        compilePattern(u"tags?:\\s*([^\\s,]+(?:,\\s*[^\\s,]+)*)", IgnoringCase);

    QStringList tags = extractAll(hashtag, text);
    const QStringList lists = extractAll(tagList, text);
    for (const QString &list : lists) {
        for (const QString &tag : list.split(u',')) {
            tags.append(tag.trimmed());
        }
    }
    extractKeywordTags(text, tags);
    return tags;
}

std::optional<QString> extractProject(QString &text)
{
    static const Patterns patterns{
        compilePattern(u"\\[([^\\]]+)\\]"),
        compilePattern(u"for project\\s+([^\\s]+(?:\\s+[^\\s]+)*?)(?:\\s+|$)", IgnoringCase),
        compilePattern(u"in project\\s+([^\\s]+(?:\\s+[^\\s]+)*?)(?:\\s+|$)", IgnoringCase),
        compilePattern(u"project:\\s*([^\\s,]+)", IgnoringCase),
    };
    for (const QRegularExpression &pattern : patterns) {
        const QRegularExpressionMatch match = pattern.match(text);
        if (match.hasMatch()) {
            QString project = match.captured(1).trimmed();
            remove(match, text);
            return project;
        }
    }
    return std::nullopt;
}

/** The first of the phrases that names tomorrow or today, taken out of `text`: 1, 0 or nothing. */
std::optional<int> extractNearDay(QString &text)
{
    // "tomorrow" is asked for before "by tomorrow", so "by" stays in the name.
    static constexpr std::array<QStringView, 6> phrases{u"due tomorrow", u"due today",   u"tomorrow",
                                                        u"today",        u"by tomorrow", u"by today"};
    const QString lowerCased = text.toLower();
    for (const QStringView phrase : phrases) {
        if (lowerCased.contains(phrase)) {
            text.remove(phrase.toString(), Qt::CaseInsensitive);
            return phrase.contains(u"tomorrow") ? 1 : 0;
        }
    }
    return std::nullopt;
}

} // namespace

ParsedTask NaturalLanguageParser::parseTask(const QString &text) const
{
    QString rest = repairedUtf16(text).trimmed();
    ParsedTask task;
    task.taskManager = extractTaskManager(rest);
    task.tags = extractTags(rest);
    task.project = extractProject(rest);
    task.dueDate = extractDueDate(rest);
    task.deferDate = extractDeferDate(rest);
    task.name = rest.simplified();
    return task;
}

std::optional<Date> NaturalLanguageParser::extractDueDate(QString &text) const
{
    static const QRegularExpression weekday = compilePattern(
        u"(?:due|by)\\s+(monday|tuesday|wednesday|thursday|friday|saturday|sunday)", IgnoringCase);
    static const QRegularExpression inDays = compilePattern(u"in (\\d+) days?", IgnoringCase);

    if (const std::optional<int> days = extractNearDay(text)) {
        return *days == 0 ? m_clock.now() : dateAfterDays(m_clock.now().toDateTime(), *days);
    }
    if (const QRegularExpressionMatch match = weekday.match(text); match.hasMatch()) {
        const std::optional<Date> date = dateForNextWeekday(match.captured(1));
        remove(match, text);
        return date;
    }
    if (const QRegularExpressionMatch match = inDays.match(text); match.hasMatch()) {
        const std::optional<qint64> days = wholeNumberFromText(match.captured(1));
        const std::optional<Date> date =
            days ? dateAfterDays(m_clock.now().toDateTime(), *days) : std::nullopt;
        if (date) {
            remove(match, text);
        }
        return date;
    }
    return std::nullopt;
}

std::optional<Date> NaturalLanguageParser::extractDeferDate(QString &text) const
{
    static const Patterns patterns = [] {
        Patterns compiled;
        for (const QStringView lead : {u"start on", u"begin", u"defer until", u"not before"}) {
            const QString pattern = lead + u"\\s+(monday|tuesday|wednesday|thursday|friday|saturday|sunday)";
            compiled.push_back(compilePattern(pattern, IgnoringCase));
        }
        return compiled;
    }();
    for (const QRegularExpression &pattern : patterns) {
        const QRegularExpressionMatch match = pattern.match(text);
        if (match.hasMatch()) {
            const std::optional<Date> date = dateForNextWeekday(match.captured(1));
            remove(match, text);
            return date;
        }
    }
    return std::nullopt;
}

std::optional<Date> NaturalLanguageParser::dateForNextWeekday(const QString &name) const
{
    static const QStringList weekdays{QStringLiteral("monday"),    QStringLiteral("tuesday"),
                                      QStringLiteral("wednesday"), QStringLiteral("thursday"),
                                      QStringLiteral("friday"),    QStringLiteral("saturday"),
                                      QStringLiteral("sunday")};
    const qsizetype index = weekdays.indexOf(name.toLower());
    if (index < 0) {
        return std::nullopt;
    }
    constexpr qint64 daysInWeek = 7;
    const QDateTime now = m_clock.now().toDateTime();
    const qint64 distance = index + 1 - now.date().dayOfWeek();
    return dateAfterDays(now, distance < 1 ? distance + daysInWeek : distance);
}

std::optional<Date> NaturalLanguageParser::dateAfterDays(const QDateTime &now, qint64 days)
{
    const QDate day = now.date().addDays(days);
    constexpr int lastYear = 9999;
    if (!day.isValid() || day.year() > lastYear) {
        return std::nullopt;
    }
    return Date::fromDateTime(now.addDays(days));
}

} // namespace vantrel
