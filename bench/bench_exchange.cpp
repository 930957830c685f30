// Text in and out: the parsers against their expressions alone, the export against the bare building of its
// bytes, the import against bare inserts of the same rows.

#include "BenchBoard.h"
#include "Measure.h"

#include "exchange/NaturalLanguageParser.h"
#include "exchange/PlainTextTaskExporter.h"
#include "exchange/PlainTextTaskParser.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/Pattern.h"
#include "foundations/PlainTextWorkItem.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <map>
#include <string_view>

using namespace vantrel;
using namespace vantrel::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int Pairs = 21;
constexpr int TaskCount = 10000;
constexpr int Rounds = 2000;

/** Keeps the compiler from leaving out what is measured. */
qsizetype sink = 0;

/** Milliseconds that this thread works on it, whatever else the machine does. */
double busyMilliseconds(const std::function<void()> &work)
{
    const double before = threadMilliseconds();
    work();
    return threadMilliseconds() - before;
}

QString inMicroseconds(const Comparison &result, int rounds)
{
    return u"%1x  (%2 us / %3 us, %4-%5x)"_s.arg(result.medianRatio, 0, 'f', 2)
        .arg(result.medianMilliseconds * 1e3 / rounds, 0, 'f', 2)
        .arg(result.medianReference * 1e3 / rounds, 0, 'f', 2)
        .arg(result.lowestRatio, 0, 'f', 2)
        .arg(result.highestRatio, 0, 'f', 2);
}

/** The expressions that a line goes through which has a project in brackets and a due weekday. */
std::vector<QRegularExpression> lineExpressions()
{
    constexpr auto ignoringCase = QRegularExpression::CaseInsensitiveOption;
    const QString days = u"\\s+(monday|tuesday|wednesday|thursday|friday|saturday|sunday)"_s;
    std::vector<QRegularExpression> expressions{
        compilePattern(u"#(\\w+)"),
        compilePattern(u"tags?:\\s*([^\\s,]+(?:,\\s*[^\\s,]+)*)", ignoringCase),
        compilePattern(u"\\[([^\\]]+)\\]"),
    };
    for (const QStringView lead : {u"(?:due|by)", u"start on", u"begin", u"defer until", u"not before"}) {
        expressions.push_back(compilePattern(QString(lead + days), ignoringCase));
    }
    return expressions;
}

void benchLine()
{
    const SystemClock clock;
    const NaturalLanguageParser parser(clock);
    const QString line =
        u"Write the report by friday [Website Redesign] #review #draft tags: a, b begin monday in omnifocus"_s;
    const double first = busyMilliseconds([&] { sink += parser.parseTask(line).name.size(); });
    report(u"first line parsed, expressions compiled"_s, u"%1 ms"_s.arg(first, 0, 'f', 2), u"2 ms"_s);

    const std::vector<QRegularExpression> expressions = lineExpressions();
    const Comparison comparison = compare(
        Pairs,
        [&] {
            return busyMilliseconds([&] {
                for (int i = 0; i < Rounds; ++i) {
                    sink += parser.parseTask(line).name.size();
                }
            });
        },
        [&] {
            return busyMilliseconds([&] {
                for (int i = 0; i < Rounds; ++i) {
                    for (const QRegularExpression &expression : expressions) {
                        sink += expression.match(line).hasMatch() ? 1 : 0;
                    }
                }
            });
        });
    report(u"one line parsed / its expressions alone"_s, inMicroseconds(comparison, Rounds),
           u"4x and 15 us"_s);
}

/** What the parsers find hardest: the longest search for each expression before it fails or ends. */
void benchWorstCases()
{
    const SystemClock clock;
    const NaturalLanguageParser parser(clock);
    constexpr int repetitions = 100000;
    double worst = 0.0;
    double steepest = 0.0;
    QString worstUnit;
    for (const char *unit : {" ", "#a ", "- [ ", "tags: a,", "tag:", "a,", "by ", "due  ", "in 1", "in 1 day",
                             "[", "[x", "for project ", "project:", "start on ", "\t#", "-", "x\xC2\xA0"}) {
        const auto time = [&](int count) {
            const QString line = u"- " + QString::fromUtf8(unit).repeated(count) + u"x #end";
            std::vector<double> runs;
            for (int run = 0; run < 3; ++run) {
                runs.push_back(busyMilliseconds([&] {
                    sink += parser.parseTask(line).name.size();
                    sink += PlainTextTaskParser::parseTaskLine(line)->text.size();
                }));
            }
            return median(runs);
        };
        const double large = time(repetitions);
        steepest = std::max(steepest, std::log10(large / time(repetitions / 10)));
        if (large > worst) {
            worst = large;
            worstUnit = QString::fromUtf8(unit);
        }
    }
    report(u"worst line: a pattern's own words, 100,000 times"_s,
           u"%1 ms (\"%2\")"_s.arg(worst, 0, 'f', 1).arg(worstUnit), u"250 ms"_s);
    report(u"steepest growth, 10,000 to 100,000 times: power"_s, u"%1"_s.arg(steepest, 0, 'f', 2), u"1.2"_s);
}

QStringList listLines(int count)
{
    QStringList lines;
    for (int i = 0; i < count; ++i) {
        lines.append(
            u"- [%1] Task number %2 of the list #work #müsli"_s.arg(i % 3 == 0 ? u'x' : u' ').arg(i));
    }
    return lines;
}

/** Whatever the limit of one import, every line is read as if it were within. */
void benchList()
{
    const auto time = [](int count) {
        const QStringList lines = listLines(count);
        return busyMilliseconds([&] {
            for (const QString &line : lines) {
                sink += PlainTextTaskParser::parseTaskLine(line)->text.size();
            }
        });
    };
    time(1000);
    const Comparison comparison = compare(
        Pairs, [&] { return time(10 * TaskCount); }, [&] { return 10 * time(TaskCount); });
    report(u"100,000 markdown lines / ten times 10,000"_s, figure(comparison), u"1.1x"_s);

    const QString text = listLines(10 * TaskCount).join(u'\n');
    std::vector<double> runs;
    for (int run = 0; run < Pairs; ++run) {
        runs.push_back(busyMilliseconds([&] {
            sink += static_cast<qsizetype>(PlainTextTaskParser::parseTaskList(text).size());
            sink += PlainTextTaskParser::countIgnoredLines(text);
        }));
    }
    report(u"preview of 100,000 pasted lines"_s, u"%1 ms"_s.arg(median(runs), 0, 'f', 1), u"16 ms"_s);
}

WorkItemFields fieldsOf(int i)
{
    WorkItemFields fields;
    fields.id = u"task-" + QString::number(i);
    fields.name = u"Task number %1 with a few words"_s.arg(i);
    fields.isComplete = i % 3 == 0;
    return fields;
}

WorkItems plainTextTasks()
{
    WorkItems tasks;
    for (int i = 0; i < TaskCount; ++i) {
        PlainTextRecord record;
        record.fields = fieldsOf(i);
        record.originalText = u"- [ ] " + record.fields.name + u" #code";
        tasks.push_back(std::make_shared<PlainTextWorkItem>(record));
    }
    return tasks;
}

WorkItems outsideTasks()
{
    WorkItems tasks;
    for (int i = 0; i < TaskCount; ++i) {
        WorkItemFields fields = fieldsOf(i);
        fields.project = Project{u"p"_s, u"Website Redesign"_s};
        fields.tag = Tag{u"t"_s, u"code"_s};
        if (i % 2 == 0) {
            fields.dueDate = Date(815302800.0 + 3600.0 * i);
        }
        tasks.push_back(std::make_shared<OmniFocusTask>(fields));
    }
    return tasks;
}

/** The reference appends the finished lines. */
void benchExport(const QString &what, const WorkItems &tasks)
{
    const PlainTextTaskExporter exporter(QLocale(QLocale::English, QLocale::UnitedKingdom));
    const QStringList lines = exporter.exportTasks(tasks).split(u'\n');
    const Comparison comparison = compare(
        Pairs, [&] { return busyMilliseconds([&] { sink += exporter.exportTasks(tasks).size(); }); },
        [&] {
            return busyMilliseconds([&] {
                QString text;
                for (const QString &line : lines) {
                    text += line;
                    text += u'\n';
                }
                sink += text.size();
            });
        });
    report(what, figure(comparison), u"3x"_s);
}

void benchImport()
{
    BenchBoard bench(0);
    const QString text = listLines(PlainTextTaskParser::MaximumLines).join(u'\n');
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"raw.sqlite"_s);
    bench.stop();
    QFile::copy(bench.databasePath(), copy);
    bench.start();
    RawStore raw(copy);

    int round = 0;
    const auto imported = [&] {
        // Each into a cell of its own.
        const Column &column = bench.board().columnManager().columns().at(std::size_t(round % 5));
        const SwimLane &lane = bench.board().swimLaneManager().swimLanes().at(std::size_t(round / 5 % 10));
        ++round;
        return milliseconds([&] {
            const auto importing = bench.board().importPlainTextTasks(
                PlainTextTaskParser::parseTaskList(text), column.id, lane.id);
            bench.settle();
        });
    };
    const Comparison comparison = compare(Pairs, imported, [&] {
        return milliseconds(
            [&] { raw.insert(PlainTextTaskParser::MaximumLines, bench.columnIds(), bench.swimLaneIds()); });
    });
    report(u"import of 25 lines to stored rows / bare inserts"_s, figure(comparison), u"1.5x"_s);
}

void benchExports()
{
    benchExport(u"export of 10,000 plain text tasks / building the bytes"_s, plainTextTasks());
    benchExport(u"export of 10,000 outside tasks / building the bytes"_s, outsideTasks());
}

/** The parts, by the names that the command line may give; all without. */
const std::map<std::string_view, void (*)()> Parts{
    {"line", benchLine},      {"worst", benchWorstCases}, {"list", benchList},
    {"export", benchExports}, {"import", benchImport},
};

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter(LogWriter::Output::Silent);
    const QCoreApplication application(argc, argv);
    for (const auto &[name, part] : Parts) {
        if (argc == 1 || std::find(argv + 1, argv + argc, name) != argv + argc) {
            part();
        }
    }
    return sink == 0;
}
