// A pasted list, and what is written of it again.

#include "Fuzz.h"

#include "exchange/PlainTextTaskExporter.h"
#include "exchange/PlainTextTaskParser.h"
#include "foundations/PlainTextWorkItem.h"

#include <algorithm>

using namespace vantrel;
using namespace vantrel::fuzz;

namespace {

/** The lines of `text`, told apart in another way than by the parser. */
QStringList linesOf(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (const char16_t lineBreak : {u'\v', u'\f', u'\r', u'\x85', u'\u2028', u'\u2029'}) {
        text.replace(QChar(lineBreak), u'\n');
    }
    return text.split(u'\n');
}

int countNonBlank(const QStringList &lines)
{
    return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                          [](const QString &line) { return !line.trimmed().isEmpty(); }));
}

QString exported(const ParsedPlainTextTask &task)
{
    PlainTextRecord record;
    record.fields.name = task.text;
    record.fields.isComplete = task.isCompleted;
    record.hashtags = task.hashtags;
    record.originalText = task.originalLine;
    return PlainTextTaskExporter().formatTask(PlainTextWorkItem(record));
}

void checkTask(const ParsedPlainTextTask &task)
{
    requireValid(task.text);
    requireValid(task.originalLine);
    for (const QString &hashtag : task.hashtags) {
        requireValid(hashtag);
        require(!hashtag.isEmpty(), "a hashtag has a name");
    }
    const std::vector<ParsedPlainTextTask> again = PlainTextTaskParser::parseTaskList(exported(task));
    require(again.size() == 1, "an exported task is one line");
    require(again[0].text == task.text && again[0].hashtags == task.hashtags &&
                again[0].isCompleted == task.isCompleted,
            "an exported task is imported as it was");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString input = textOf(data, size);
    const std::vector<ParsedPlainTextTask> tasks = PlainTextTaskParser::parseTaskList(input);

    const QStringList lines = linesOf(input);
    const auto count = static_cast<int>(tasks.size());
    require(count == countNonBlank(lines.mid(0, PlainTextTaskParser::MaximumLines)),
            "each line that is not blank gives one task");
    require(PlainTextTaskParser::countIgnoredLines(input) == countNonBlank(lines) - count,
            "what is left out is told");
    std::for_each(tasks.begin(), tasks.end(), checkTask);
    return 0;
}
