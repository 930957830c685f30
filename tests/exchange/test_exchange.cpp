#include "exchange/NaturalLanguageParser.h"
#include "exchange/PlainTextTaskExporter.h"
#include "exchange/PlainTextTaskParser.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/PlainTextWorkItem.h"
#include "support/ManualClock.h"

#include <QTest>

#include <ctime>
#include <limits>

using namespace vantrel;
using namespace vantrel::test;

namespace {

/** Calendar days from today to `date`; -1 for none. The manual clock starts on a Monday. */
qint64 daysAhead(const Clock &clock, const std::optional<Date> &date)
{
    return date ? clock.now().toDateTime().date().daysTo(date->toDateTime().date()) : -1;
}

WorkItemPtr plainTextTask(const QString &name, const QStringList &hashtags = {},
                          const std::optional<QString> &originalText = {}, bool isComplete = false)
{
    PlainTextRecord record;
    record.fields.id = u"plaintext-" + name;
    record.fields.name = name;
    record.fields.isComplete = isComplete;
    record.hashtags = hashtags;
    record.originalText = originalText;
    return std::make_shared<PlainTextWorkItem>(record);
}

} // namespace

class TestExchange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSentenceIsTakenApart_data();
    void aSentenceIsTakenApart();
    void datesFollowTheCalendar_data();
    void datesFollowTheCalendar();
    void tomorrowKeepsTheTimeOfDayWhenTheClocksChange();
    void aListLineBecomesATask_data();
    void aListLineBecomesATask();
    void everyLineUpToTheLimitIsATask();
    void longInputIsReadInLinearTime_data();
    void longInputIsReadInLinearTime();
    void aTaskIsWrittenAsOneLine_data();
    void aTaskIsWrittenAsOneLine();
    void groupsWithoutTasksLeaveNoTrace();
    void whatIsExportedIsImportedAgain();
};

void TestExchange::aSentenceIsTakenApart_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("project");
    QTest::addColumn<QStringList>("tags");
    QTest::addColumn<QString>("source");

    const auto row = [](const char *line, const char *name, const char *project = "",
                        const QStringList &tags = {}, const char *source = "") {
        QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(name)
                            << QString::fromUtf8(project) << tags << QString::fromUtf8(source);
    };
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    const QString work = QStringLiteral("work");
    row("Call Bob tomorrow #phone", "Call Bob", "", {QStringLiteral("phone")});
    row("Write report by friday [Website Redesign] tags: a, b in omnifocus", "Write report",
        "Website Redesign", {a, b}, "OmniFocus");
    row("USING REMINDERS Buy milk", "Buy milk", "", {}, "Reminders");
    row("Do homework", "Do home", "", {work});
    row("Urgent call #urgent", "Urgent call", "", {QStringLiteral("urgent")});
    row("today tomorrow", "today");
    row("Pay by tomorrow", "Pay by");
    row("project: Alpha, beta", ", beta", "Alpha");
    row("Plan for project Mars landing", "Plan landing", "Mars");
    row("Review [a #b c] notes", "Review notes", "a  c", {b});
    row("#Müsli kaufen", "kaufen", "", {QString::fromUtf8("Müsli")});
    row("Zahnarzt #e\u0301tage", "Zahnarzt", "", {QString::fromUtf8("e\u0301tage")});
    row("שלום #עבודה tomorrow", "שלום", "", {QString::fromUtf8("עבודה")});
    row("🎉 party #fun🎈", "🎉 party 🎈", "", {QStringLiteral("fun")});
    row("Call\u00A0Bob\u00A0 due tomorrow", "Call Bob");
    row("tomorrow #work", "", "", {work});
    row("in a day", "in a day");
    row("in 99999999999999999999 days rest", "in 99999999999999999999 days rest");
    row("in 999999999999 days rest", "in 999999999999 days rest");
    row("   ", "");
}

void TestExchange::aSentenceIsTakenApart()
{
    QFETCH(QString, line);
    const ManualClock clock;
    const ParsedTask task = NaturalLanguageParser(clock).parseTask(line);

    QTEST(task.name, "name");
    QTEST(task.project.value_or(QString()), "project");
    QTEST(task.tags, "tags");
    QTEST(task.taskManager ? rawValue(*task.taskManager) : QString(), "source");
}

void TestExchange::datesFollowTheCalendar_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<qint64>("dueIn");
    QTest::addColumn<qint64>("deferredBy");

    const auto row = [](const char *line, qint64 dueIn, qint64 deferredBy = -1) {
        QTest::newRow(line) << QString::fromLatin1(line) << dueIn << deferredBy;
    };
    row("a DUE TOMORROW", 1);
    row("a today", 0);
    row("a due monday", 7);
    row("a by tuesday", 1);
    row("a due sunday", 6);
    row("a in 1 day", 1);
    row("a in 10 days", 10);
    row("begin 3 days of rest", 3);
    row("start on monday due friday", 4, 7);
    row("a defer until wednesday", -1, 2);
    row("a not before sunday", -1, 6);
    row("a on friday", -1);
}

void TestExchange::datesFollowTheCalendar()
{
    QFETCH(QString, line);
    const ManualClock clock;
    const ParsedTask task = NaturalLanguageParser(clock).parseTask(line);
    QTEST(daysAhead(clock, task.dueDate), "dueIn");
    QTEST(daysAhead(clock, task.deferDate), "deferredBy");
}

void TestExchange::tomorrowKeepsTheTimeOfDayWhenTheClocksChange()
{
    ManualClock clock;
    const QDateTime beforeTheChange(QDate(2026, 10, 24), QTime(14, 30));
    clock.jumpTo(Date::fromDateTime(beforeTheChange));

    const ParsedTask task = NaturalLanguageParser(clock).parseTask(QStringLiteral("a tomorrow"));

    QCOMPARE(task.dueDate->toDateTime(), QDateTime(QDate(2026, 10, 25), QTime(14, 30)));
    QCOMPARE(*task.dueDate - clock.now(), 25 * 3600.0);
}

void TestExchange::aListLineBecomesATask_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isCompleted");
    QTest::addColumn<QStringList>("hashtags");
    QTest::addColumn<QString>("originalLine");

    const auto row = [](const char *line, const char *text, bool isCompleted, const QStringList &hashtags,
                        const char *originalLine) {
        QTest::newRow(line) << QString::fromUtf8(line) << QString::fromUtf8(text) << isCompleted << hashtags
                            << QString::fromUtf8(originalLine);
    };
    const QString health = QStringLiteral("health");
    const QString home = QStringLiteral("home");
    row("- [x] Call dentist #health", "Call dentist", true, {health}, "- [x] Call dentist #health");
    row("- [X] a", "a", true, {}, "- [X] a");
    row("-[ ] a", "a", false, {}, "-[ ] a");
    row("- a #b", "a", false, {QStringLiteral("b")}, "- [ ] a #b");
    row("-a", "a", false, {}, "- [ ] a");
    row("- [y] x", "[y] x", false, {}, "- [ ] [y] x");
    row("Buy milk #home", "Buy milk", false, {home}, "- [ ] Buy milk #home");
    row("* nested bullet", "* nested bullet", false, {}, "- [ ] * nested bullet");
    row("- [ ]", "", false, {}, "- [ ]");
    row("#home", "", false, {home}, "- [ ] #home");
    row("  \t- [ ] indented  ", "indented", false, {}, "- [ ] indented");
    row("- [ ] a #b mid #c end", "a mid end", false, {QStringLiteral("b"), QStringLiteral("c")},
        "- [ ] a #b mid #c end");
}

void TestExchange::aListLineBecomesATask()
{
    QFETCH(QString, line);
    const std::vector<ParsedPlainTextTask> tasks = PlainTextTaskParser::parseTaskList(line);
    QCOMPARE(tasks.size(), 1u);
    QTEST(tasks.front().text, "text");
    QTEST(tasks.front().isCompleted, "isCompleted");
    QTEST(tasks.front().hashtags, "hashtags");
    QTEST(tasks.front().originalLine, "originalLine");
}

void TestExchange::everyLineUpToTheLimitIsATask()
{
    const QString crlf = QStringLiteral("- [ ] one\r\n\r\n- [x] two\r\nthree\r\n");
    QCOMPARE(PlainTextTaskParser::parseTaskList(crlf).size(), 3u);

    QStringList lines;
    for (int i = 1; i <= 30; ++i) {
        lines.append(u"- [ ] task " + QString::number(i));
    }
    lines.insert(3, QString());
    const QString long_ = lines.join(u'\n');
    QCOMPARE(PlainTextTaskParser::parseTaskList(long_).size(), 24u);
    QCOMPARE(PlainTextTaskParser::countIgnoredLines(long_), 6);
}

void TestExchange::longInputIsReadInLinearTime_data()
{
    QTest::addColumn<QString>("unit");
    for (const char *unit :
         {" ", "#a ", "- [ ", "tags: a,", "by ", "in 1", "[x", "due  ", "for project ", "\t#", "-"}) {
        QTest::newRow(unit) << QString::fromLatin1(unit);
    }
}

void TestExchange::longInputIsReadInLinearTime()
{
    QFETCH(QString, unit);
    const ManualClock clock;
    const NaturalLanguageParser parser(clock);
    const auto microseconds = [&](int repetitions) {
        const QString line = u"- " + unit.repeated(repetitions) + u"x #end";
        // The processor's time, and the best of three: what else the machine does is no fault of the parser.
        qint64 best = std::numeric_limits<qint64>::max();
        for (int run = 0; run < 3; ++run) {
            const std::clock_t start = std::clock();
            parser.parseTask(line);
            PlainTextTaskParser::parseTaskList(line);
            best = std::min<qint64>(best, (std::clock() - start) * 1'000'000 / CLOCKS_PER_SEC);
        }
        return best;
    };
    microseconds(100);
    // Eight times the input, at most twenty times the time; a quadratic pattern needs sixty-four times.
    const qint64 small = std::max<qint64>(microseconds(5000), 500);
    const qint64 large = microseconds(40000);
    QVERIFY2(large < 20 * small, qPrintable(QStringLiteral("%1 us, then %2 us").arg(small).arg(large)));
}

void TestExchange::aTaskIsWrittenAsOneLine_data()
{
    QTest::addColumn<WorkItemPtr>("task");
    QTest::addColumn<QString>("line");

    const auto row = [](const char *what, const WorkItemPtr &task, const char *line) {
        QTest::newRow(what) << task << QString::fromLatin1(line);
    };
    const QStringList ab{QStringLiteral("a"), QStringLiteral("b")};
    WorkItemPtr renamed = plainTextTask(QStringLiteral("old"), {}, QStringLiteral("- [ ] old"));
    renamed->setName(QStringLiteral("new"));
    row("a renamed task keeps its line", renamed, "- [ ] old");
    row("only the checkbox follows the state",
        plainTextTask(QStringLiteral("a"), {QStringLiteral("b")}, QStringLiteral("- [ ] a #b"), true),
        "- [x] a #b");
    row("a line without a checkbox stays",
        plainTextTask(QStringLiteral("a"), {}, QStringLiteral("a [b]"), true), "a [b]");
    row("only unnamed hashtags are added", plainTextTask(QStringLiteral("x #a"), ab), "- [ ] x #a #b");

    WorkItemFields fields;
    fields.id = QStringLiteral("abc");
    fields.name = QStringLiteral("name");
    fields.project = Project{QStringLiteral("p"), QStringLiteral("project")};
    fields.tag = Tag{QStringLiteral("t"), QStringLiteral("tag")};
    fields.dueDate = Date::fromDateTime(QDateTime(QDate(2026, 11, 27), QTime(17, 0)));
    row("an outside task names everything", std::make_shared<OmniFocusTask>(fields),
        "- [ ] name [project] #tag due 11/27/26");
}

void TestExchange::aTaskIsWrittenAsOneLine()
{
    QFETCH(WorkItemPtr, task);
    const PlainTextTaskExporter exporter(QLocale(QLocale::English, QLocale::UnitedStates));
    QTEST(exporter.formatTask(*task), "line");
}

void TestExchange::groupsWithoutTasksLeaveNoTrace()
{
    const WorkItems tasks{plainTextTask(QStringLiteral("a")), plainTextTask(QStringLiteral("b"))};
    const std::vector<ExportGroup> groups{{QStringLiteral("Empty"), {}},
                                          {QStringLiteral("One"), {tasks[1]->id()}},
                                          {QStringLiteral("None"), {QStringLiteral("gone")}},
                                          {QStringLiteral("Two"), {tasks[0]->id()}}};
    QCOMPARE(PlainTextTaskExporter().exportTasksBySwimLanes(tasks, groups),
             QStringLiteral("# One\n\n- [ ] b\n\n# Two\n\n- [ ] a"));
    QCOMPARE(PlainTextTaskExporter().exportTasks({}), QString());
}

void TestExchange::whatIsExportedIsImportedAgain()
{
    const QString lines =
        QStringLiteral("- [ ] Review quarterly reports #urgent\n- [x] Call dentist #health #teeth\n"
                       "- [ ] plain\n- [x] [bracketed] words");
    WorkItems tasks;
    for (const ParsedPlainTextTask &parsed : PlainTextTaskParser::parseTaskList(lines)) {
        tasks.push_back(plainTextTask(parsed.text, parsed.hashtags, parsed.originalLine, parsed.isCompleted));
    }
    QCOMPARE(PlainTextTaskExporter().exportTasks(tasks), lines);
}

QTEST_GUILESS_MAIN(TestExchange)
#include "test_exchange.moc"
