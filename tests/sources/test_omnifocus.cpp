#include "foundations/DefaultsKeys.h"
#include "sources/mock/MockAppleScriptManagerProxy.h"
#include "sources/omnifocus/AppleScriptError.h"
#include "sources/omnifocus/AppleScriptManager.h"
#include "sources/omnifocus/OmniFocusScripts.h"
#include "sources/omnifocus/OmniFocusTaskManager.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/ScriptedOmniFocus.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QFile>
#include <QTest>

using namespace vantrel;
using namespace vantrel::test;

using Kind = AppleScriptError::Kind;

namespace {

/** The source on a scripted OmniFocus with one task. */
struct OmniFocus
{
    OmniFocus()
    {
        ScriptedOmniFocus::Task task;
        task.id = QStringLiteral("fUV9GFRTjhr");
        task.name = QStringLiteral("Call Bob");
        task.note = QStringLiteral("Before noon");
        task.due = QStringLiteral("Thursday, 5 November 2026 at 17:00:00");
        task.projectName = QStringLiteral("Work");
        app.tasks.push_back(task);
        app.projects = QStringList{QStringLiteral("Work"), QStringLiteral("Home")};
    }

    std::optional<Kind> kindOf(QCoro::Task<bool> task)
    {
        try {
            await(std::move(task));
        } catch (const AppleScriptError &error) {
            return error.kind();
        }
        return std::nullopt;
    }

    TestStore store;
    ManualClock clock;
    ScriptedOmniFocus app;
    AppleScriptManager bridge{app, store.defaults, clock, QLocale(QLocale::English, QLocale::Australia)};
    OmniFocusTaskManager source{bridge, clock};
    QString id = QStringLiteral("fUV9GFRTjhr");
};

} // namespace

class TestOmniFocus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTaskIsReadWithAllItsFields();
    void editsReachOmniFocus();
    void everyScriptIsWordForWord_data();
    void everyScriptIsWordForWord();
    void oddNamesArriveAsTheyAre();
    void whatTheSystemSaysBecomesAnError_data();
    void whatTheSystemSaysBecomesAnError();
    void nothingThatCouldBeCodeIsRun_data();
    void nothingThatCouldBeCodeIsRun();
    void aRepeatingTaskIsAsYoungAsItsInstance_data();
    void aRepeatingTaskIsAsYoungAsItsInstance();
    void badRecordsCostOnlyThemselves();
    void onlyTheLocalesOwnDatesAreRead();
    void theDueSoonWindowIsTakenOver();
    void projectsAreRememberedForFiveMinutes();
    void permissionIsAskedAnew();
    void tenThousandRecordsAreRead();
    void theSampleStandsInForOmniFocus();
};

void TestOmniFocus::aTaskIsReadWithAllItsFields()
{
    OmniFocus omniFocus;
    const WorkItems tasks = await(omniFocus.source.fetchTasks());
    QCOMPARE(tasks.size(), 1u);
    const WorkItem &task = *tasks.front();
    QCOMPARE(task.name(), QStringLiteral("Call Bob"));
    QCOMPARE(task.note(), std::optional(QStringLiteral("Before noon")));
    QCOMPARE(task.projectId(), std::optional(QStringLiteral("id-Work")));
    QCOMPARE(task.dueDate()->toDateTime(), QDateTime(QDate(2026, 11, 5), QTime(17, 0)));
    QVERIFY(!task.isComplete() && !task.isRepeating() && !task.deferDate());
    QVERIFY(omniFocus.app.scripts.first().contains(QStringLiteral("((3.0 * days) - 1)")));
}

void TestOmniFocus::editsReachOmniFocus()
{
    OmniFocus omniFocus;
    const ScriptedOmniFocus::Task &task = omniFocus.app.tasks.front();

    QVERIFY(await(omniFocus.source.setTaskName(omniFocus.id, QStringLiteral("Call Ann"))));
    QCOMPARE(task.name, QStringLiteral("Call Ann"));
    QVERIFY(await(omniFocus.source.flagTask(omniFocus.id, true)));
    QVERIFY(task.isFlagged);
    QVERIFY(await(omniFocus.source.markTaskComplete(omniFocus.id)));
    QCOMPARE(await(omniFocus.source.fetchTasks()).size(), 0u);
    QCOMPARE(await(omniFocus.source.fetchCompletedTasks(20)).size(), 1u);
    QVERIFY(await(omniFocus.source.markTaskIncomplete(omniFocus.id)));
    QCOMPARE(await(omniFocus.source.fetchTasks()).size(), 1u);
    QCOMPARE(omniFocus.kindOf(omniFocus.source.markTaskComplete(QStringLiteral("gone"))),
             std::optional(Kind::TaskNotFound));
}

void TestOmniFocus::everyScriptIsWordForWord_data()
{
    using namespace omnifocus;
    NewTask task;
    task.name = QString::fromUtf8("Say \"hi\"\n\tand C:\\ “too” 🥛");
    task.note = QStringLiteral("has no place");
    task.project = QStringLiteral("Home");
    task.tags = QStringList{QStringLiteral("errand"), QStringLiteral("a \"b\"")};
    task.dueDate = Date::fromDateTime(QDateTime(QDate(2026, 12, 24), QTime(18, 5, 9)));
    const QString id = QStringLiteral("fUV9GFRTjhr");

    QTest::addColumn<QString>("script");
    QTest::newRow("permission-check") << permissionCheckScript();
    QTest::newRow("fetch-tasks") << fetchTasksScript(3.0);
    QTest::newRow("fetch-completed-tasks") << fetchCompletedTasksScript(20);
    QTest::newRow("fetch-projects") << fetchProjectsScript();
    QTest::newRow("fetch-tags") << fetchTagsScript();
    QTest::newRow("fetch-due-soon") << fetchDueSoonScript();
    QTest::newRow("set-task-name") << setTaskNameScript(id, QStringLiteral("Call Ann"));
    QTest::newRow("flag-task") << flagTaskScript(id, true);
    QTest::newRow("mark-complete") << markCompleteScript(id);
    QTest::newRow("mark-incomplete") << markIncompleteScript(id);
    QTest::newRow("create-task") << createTaskScript(task);
}

/** The files hold what OmniFocus has been talked to with. */
void TestOmniFocus::everyScriptIsWordForWord()
{
    QFETCH(QString, script);
    QFile file(QFINDTESTDATA(u"golden/" + QString::fromLatin1(QTest::currentDataTag()) + u".applescript"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(script.trimmed(), QString::fromUtf8(file.readAll()).trimmed());
}

void TestOmniFocus::oddNamesArriveAsTheyAre()
{
    OmniFocus omniFocus;
    omniFocus.app.projects.append(QStringLiteral("a \"b\" \\"));
    for (const char *text :
         {"one\ntwo", "\xF0\x9F\xA5\x9B milk", "\u201Cquoted\u201D \u2018so\u2019", "100 % {name}"}) {
        const QString name = QString::fromUtf8(text);
        QVERIFY(await(omniFocus.source.setTaskName(omniFocus.id, name)));
        QCOMPARE(omniFocus.app.find(omniFocus.id)->name, name);
    }
    NewTask task;
    task.name = QStringLiteral("Say \"hi\"\nand C:\\ too {project}");
    task.project = omniFocus.app.projects.last();
    const QString id = await(omniFocus.source.createTask(task));
    QCOMPARE(omniFocus.app.find(id)->name, task.name);
    QCOMPARE(omniFocus.app.find(id)->projectName, *task.project);
}

void TestOmniFocus::whatTheSystemSaysBecomesAnError_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("message");
    QTest::addColumn<Kind>("kind");
    const auto row = [](int number, const char *message, Kind kind) {
        QTest::addRow("%d %s", number, message) << number << QString::fromLatin1(message) << kind;
    };
    row(-1743, "This is a Pro feature", Kind::OmniFocusProRequired);
    row(-1743, "Not allowed", Kind::PermissionDenied);
    row(-600, "Application isn't running", Kind::OmniFocusNotRunning);
    row(-600, "not authorized to send events", Kind::PermissionDenied);
    row(-1728, "no permission", Kind::PermissionDenied);
    row(-1728, "Can't get document", Kind::ExecutionFailed);
    row(0, "no number at all", Kind::ExecutionFailed);
}

void TestOmniFocus::whatTheSystemSaysBecomesAnError()
{
    QFETCH(int, number);
    QFETCH(QString, message);
    QFETCH(Kind, kind);
    OmniFocus omniFocus;
    omniFocus.app.failure = {number != 0 ? std::optional(number) : std::nullopt, message};
    QCOMPARE(omniFocus.kindOf(omniFocus.source.flagTask(omniFocus.id, true)), std::optional(kind));
}

void TestOmniFocus::nothingThatCouldBeCodeIsRun_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Kind>("kind");
    const QString good = QStringLiteral("fUV9GFRTjhr");
    QTest::newRow("a quote in the name")
        << good << QStringLiteral("a\" & (do shell script \"x\") & \"") << Kind::ScriptCompilationFailed;
    QTest::newRow("a backslash at its end") << good << QStringLiteral("a\\") << Kind::ScriptCompilationFailed;
    QTest::newRow("a quote in the id")
        << QStringLiteral("x\" of y") << QStringLiteral("a") << Kind::TaskNotFound;
    QTest::newRow("an id of letters only in form")
        << QStringLiteral("日本") << QStringLiteral("a") << Kind::TaskNotFound;
    QTest::newRow("an endless id") << QString(65, u'a') << QStringLiteral("a") << Kind::TaskNotFound;
}

void TestOmniFocus::nothingThatCouldBeCodeIsRun()
{
    QFETCH(QString, id);
    QFETCH(QString, name);
    QFETCH(Kind, kind);
    OmniFocus omniFocus;
    QCOMPARE(omniFocus.kindOf(omniFocus.source.setTaskName(id, name)), std::optional(kind));
    QVERIFY(omniFocus.app.scripts.isEmpty());
}

void TestOmniFocus::aRepeatingTaskIsAsYoungAsItsInstance_data()
{
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("pattern");
    QTest::newRow("daily") << 1 << QStringLiteral("Repeats every day");
    QTest::newRow("three days") << 3 << QStringLiteral("Repeats every 3 days");
    QTest::newRow("two weeks") << 14 << QStringLiteral("Repeats every 2 weeks");
    QTest::newRow("two months") << 60 << QStringLiteral("Repeats every 2 months");
    QTest::newRow("two years") << 730 << QStringLiteral("Repeats every 2 years");
}

void TestOmniFocus::aRepeatingTaskIsAsYoungAsItsInstance()
{
    QFETCH(int, days);
    OmniFocus omniFocus;
    ScriptedOmniFocus::Task &task = omniFocus.app.tasks.front();
    const QLocale locale(QLocale::English, QLocale::Australia);
    const QString format = QStringLiteral("dddd, d MMMM yyyy 'at' HH:mm:ss");
    const QDateTime deferred(QDate(2026, 11, 1), QTime(12, 0));
    task.created = QStringLiteral("Thursday, 2 January 2020 at 08:00:00");
    task.deferred = locale.toString(deferred, format);
    task.inferred = locale.toString(deferred.addDays(-days), format);
    task.isRepeating = true;

    const WorkItems tasks = await(omniFocus.source.fetchTasks());

    QCOMPARE(tasks.front()->creationDate().toDateTime(), deferred.addDays(-days));
    QTEST(tasks.front()->recurrence().pattern.value_or(QString()), "pattern");
}

void TestOmniFocus::badRecordsCostOnlyThemselves()
{
    const QLocale locale(QLocale::English, QLocale::Australia);
    const auto omniFocusRecords = omnifocus::tasksFromAnswer(
        {std::nullopt, QStringLiteral("a|||b|||c"), QStringList(14, QStringLiteral("x")).join(u"|||"),
         QStringList(13, QStringLiteral("y")).join(u"|||")},
        omnifocus::AnswerDateReader(locale), Date(1000.0));
    QCOMPARE(omniFocusRecords.size(), 1u);
    QCOMPARE(omniFocusRecords.front().fields.creationDate, Date(1000.0));
}

void TestOmniFocus::onlyTheLocalesOwnDatesAreRead()
{
    const omnifocus::AnswerDateReader reader(QLocale(QLocale::English, QLocale::Australia));
    QVERIFY(reader.read(QStringLiteral("Thursday, 8 May 2025 at 07:18:08")));
    QVERIFY(reader.read(QString::fromUtf8("Thursday, 8\u00A0May 2025 at\u202F07:18:08")));
    const omnifocus::AnswerDateReader american(QLocale(QLocale::English, QLocale::UnitedStates));
    QCOMPARE(american.read(QString::fromUtf8("Thursday, May 8, 2025 at 12:18:08\u202FAM"))->toDateTime(),
             QDateTime(QDate(2025, 5, 8), QTime(0, 18, 8)));
    QCOMPARE(american.read(QStringLiteral("Thursday, May 8, 2025 at 7:18:08 PM"))->toDateTime(),
             QDateTime(QDate(2025, 5, 8), QTime(19, 18, 8)));
    for (const char *text :
         {"", "Donnerstag, 8. Mai 2025 um 07:18:08", "Thursday, 8 may 2025 at 07:18:08",
          "Friday, 8 May 2025 at 07:18:08", "Thursday, 8 May 2025 at 24:18:08", "2025-05-08T07:18:08"}) {
        QVERIFY2(!reader.read(QString::fromUtf8(text)), text);
    }
}

void TestOmniFocus::theDueSoonWindowIsTakenOver()
{
    OmniFocus omniFocus;
    await(omniFocus.source.fetchDueSoonSettings());
    QCOMPARE(omniFocus.store.defaults.real(keys::DueSoonDays), std::optional(2.0));
    omniFocus.app.dueSoon = QStringLiteral("1,5|18:30:00");
    await(omniFocus.source.fetchDueSoonSettings());
    QCOMPARE(omniFocus.store.defaults.real(keys::DueSoonDays), std::optional(1.5));
    for (const char *odd : {"nonsense", "1|2|3", "x|17:00:00"}) {
        omniFocus.app.dueSoon = QString::fromLatin1(odd);
        await(omniFocus.source.fetchDueSoonSettings());
    }
    QCOMPARE(omniFocus.store.defaults.real(keys::DueSoonDays), std::optional(1.5));
    QCOMPARE(omniFocus.store.defaults.text(keys::DueSoonTime), std::optional(QStringLiteral("18:30:00")));
}

void TestOmniFocus::projectsAreRememberedForFiveMinutes()
{
    OmniFocus omniFocus;
    const auto names = [&omniFocus] {
        QStringList list;
        for (const ProjectInfo &project : await(omniFocus.source.fetchAvailableProjects())) {
            list.append(project.name);
        }
        return list;
    };
    const QStringList sorted{QStringLiteral("Home"), QStringLiteral("Work")};
    QCOMPARE(names(), sorted);
    omniFocus.app.projects.clear();
    omniFocus.clock.advance(299.0);
    QCOMPARE(names(), sorted);
    QCOMPARE(names(), sorted);
    omniFocus.clock.advance(1.0);
    QCOMPARE(names(), QStringList());
}

void TestOmniFocus::permissionIsAskedAnew()
{
    OmniFocus omniFocus;
    omniFocus.app.failure = {-1743, QStringLiteral("Not allowed")};
    QVERIFY(!omniFocus.source.checkPermissions());
    omniFocus.app.failure.reset();
    QVERIFY(omniFocus.source.checkPermissions());
    omniFocus.app.isInstalled = false;
    QVERIFY(!omniFocus.source.checkPermissions());
    QVERIFY(!omniFocus.source.isAvailableOnPlatform());
}

void TestOmniFocus::tenThousandRecordsAreRead()
{
    OmniFocus omniFocus;
    const ScriptedOmniFocus::Task first = omniFocus.app.tasks.front();
    for (int i = 1; i < 10000; ++i) {
        ScriptedOmniFocus::Task task = first;
        task.id = u"task" + QString::number(i);
        omniFocus.app.tasks.push_back(task);
    }
    const WorkItems tasks = await(omniFocus.source.fetchTasks(), std::chrono::seconds(60));
    QCOMPARE(tasks.size(), 10000u);
    QCOMPARE(tasks.back()->id(), QStringLiteral("task9999"));
}

/** Fifteen tasks, two of them with dates that nobody can read, and edits that last. */
void TestOmniFocus::theSampleStandsInForOmniFocus()
{
    ManualClock clock;
    MockAppleScriptManagerProxy sample(clock);
    OmniFocusTaskManager source(sample, clock);
    const WorkItems tasks = await(source.fetchTasks());
    QCOMPARE(tasks.size(), 15u);
    QSet<QString> projects;
    int withoutTag = 0;
    int withoutDate = 0;
    for (const WorkItemPtr &task : tasks) {
        projects.insert(task->projectName().value_or(QString()));
        withoutTag += task->tagName().value_or(QString()).isEmpty() ? 1 : 0;
        withoutDate += task->creationDate() == clock.now() ? 1 : 0;
    }
    QCOMPARE(projects.size(), 6);
    QCOMPARE(withoutTag, 1);
    QCOMPARE(withoutDate, 4);

    NewTask task;
    task.name = QStringLiteral("New");
    const QString id = await(source.createTask(task));
    await(source.markTaskComplete(tasks.front()->id()));
    const WorkItems later = await(source.fetchTasks());
    QCOMPARE(later.back()->id(), id);
    QVERIFY(later.front() == tasks.front() && tasks.front()->isComplete());
}

VANTREL_REGISTER_TEST(TestOmniFocus)
#include "test_omnifocus.moc"
