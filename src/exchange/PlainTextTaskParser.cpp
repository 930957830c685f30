#include "exchange/PlainTextTaskParser.h"

#include "exchange/Utf16.h"
#include "foundations/Log.h"
#include "foundations/Pattern.h"

namespace vantrel {

namespace {

bool isLineBreak(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'\n' && code <= u'\r') || code == u'\x85' || code == u'\u2028' || code == u'\u2029';
}

/** Calls `take` with each line of `input`; a CRLF ends one line, not two. */
template <typename Take>
void forEachLine(QStringView input, Take take)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i < input.size(); ++i) {
        if (isLineBreak(input.at(i))) {
            take(input.sliced(start, i - start));
            const bool isCrlf = input.at(i) == u'\r' && i + 1 < input.size() && input.at(i + 1) == u'\n';
            i += isCrlf ? 1 : 0;
            start = i + 1;
        }
    }
    take(input.sliced(start));
}

ParsedPlainTextTask taskFrom(const QString &text, bool isCompleted, const QString &originalLine)
{
    PlainTextTaskParser::CleanText clean = PlainTextTaskParser::extractHashtagsAndCleanText(text);
    return {std::move(clean.text), isCompleted, std::move(clean.hashtags), originalLine};
}

} // namespace

std::vector<ParsedPlainTextTask> PlainTextTaskParser::parseTaskList(const QString &input)
{
    const QString text = repairedUtf16(input);
    std::vector<ParsedPlainTextTask> tasks;
    int lineCount = 0;
    forEachLine(text, [&](QStringView rawLine) {
        if (++lineCount > MaximumLines) {
            return;
        }
        const QString line = rawLine.trimmed().toString();
        if (line.isEmpty()) {
            return;
        }
        std::optional<ParsedPlainTextTask> task = parseTaskLine(line);
        tasks.push_back(task ? std::move(*task) : taskFrom(line, false, u"- [ ] " + line));
    });
    if (lineCount > MaximumLines) {
        log::warning(QStringLiteral("Task import limited: Processing 25 out of %1 lines").arg(lineCount));
    }
    return tasks;
}

std::optional<ParsedPlainTextTask> PlainTextTaskParser::parseTaskLine(const QString &line)
{
    static const QRegularExpression checkbox = compilePattern(u"^(-\\s*\\[([ xX])\\])\\s*(.*?)$");
    static const QRegularExpression bullet = compilePattern(u"^-\\s+([^\\[].+)$");

    if (const QRegularExpressionMatch match = checkbox.match(line); match.hasMatch()) {
        const bool isCompleted = match.capturedView(2).compare(u'x', Qt::CaseInsensitive) == 0;
        return taskFrom(match.captured(3).trimmed(), isCompleted, line);
    }
    if (const QRegularExpressionMatch match = bullet.match(line); match.hasMatch()) {
        const QString text = match.captured(1).trimmed();
        return taskFrom(text, false, u"- [ ] " + text);
    }
    if (line.startsWith(u'-')) {
        const QString text = line.sliced(1).trimmed();
        return taskFrom(text, false, u"- [ ] " + text);
    }
    return std::nullopt;
}

PlainTextTaskParser::CleanText PlainTextTaskParser::extractHashtagsAndCleanText(const QString &text)
{
    static const QRegularExpression hashtag = compilePattern(u"#(\\w+)");

    CleanText clean;
    QString rest;
    qsizetype end = 0;
    for (auto matches = hashtag.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        clean.hashtags.append(match.captured(1));
        // Walking back over the blanks, where an expression "\s*#\w+" would scan each run of blanks once for
        // each of its characters.
        qsizetype start = match.capturedStart();
        while (start > end && text.at(start - 1).isSpace()) {
            --start;
        }
        rest += QStringView(text).sliced(end, start - end);
        end = match.capturedEnd();
    }
    clean.text = clean.hashtags.isEmpty() ? text : QString(rest + QStringView(text).sliced(end)).trimmed();
    return clean;
}

int PlainTextTaskParser::countIgnoredLines(const QString &input)
{
    int lineCount = 0;
    int ignored = 0;
    forEachLine(input, [&](QStringView line) {
        const bool isRead = ++lineCount <= MaximumLines;
        ignored += isRead || line.trimmed().isEmpty() ? 0 : 1;
    });
    return ignored;
}

} // namespace vantrel
