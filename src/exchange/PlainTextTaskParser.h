#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace vantrel {

/** One line of a pasted list, understood. */
struct ParsedPlainTextTask
{
    /** The task's name, without hashtags; may be empty. */
    QString text;
    bool isCompleted = false;
    /** Without "#", in the order of the line. */
    QStringList hashtags;
    /** The line to keep as the task's original text. */
    QString originalLine;

    friend bool operator==(const ParsedPlainTextTask &, const ParsedPlainTextTask &) = default;
};

/**
 * Reads markdown checkbox lists. Forgiving: every line that is not blank is a task, checkbox or not.
 */
class PlainTextTaskParser
{
public:
    /** How many lines of the input, blank ones included, are read; the rest is left out. */
    static constexpr int MaximumLines = 25;

    struct CleanText
    {
        QString text;
        QStringList hashtags;
    };

    static std::vector<ParsedPlainTextTask> parseTaskList(const QString &input);

    /** Nothing for a line that does not begin with a dash. `line` is trimmed. */
    static std::optional<ParsedPlainTextTask> parseTaskLine(const QString &line);

    /** Takes the hashtags out of `text`, with the white space before each. */
    static CleanText extractHashtagsAndCleanText(const QString &text);

    /** How many lines that are not blank lie behind the last one that is read. */
    static int countIgnoredLines(const QString &input);
};

} // namespace vantrel
