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
    void aTaskIsReadWithAllItsFields()
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

    /** The files hold what OmniFocus has been talked to with. */
    void everyScriptIsWordForWord_data()
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

    void everyScriptIsWordForWord()
    {
        QFETCH(QString, script);
        QFile file(
            QFINDTESTDATA(u"golden/" + QString::fromLatin1(QTest::currentDataTag()) + u".applescript"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(script.trimmed(), QString::fromUtf8(file.readAll()).trimmed());
    }

    void oddNamesArriveAsTheyAre()
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

    void whatTheSystemSaysBecomesAnError()
    {
        struct Row
        {
            std::optional<int> number;
            const char *message;
            Kind kind;
        };
        OmniFocus omniFocus;
        QCOMPARE(omniFocus.kindOf(omniFocus.source.flagTask(QStringLiteral("gone"), true)),
                 std::optional(Kind::TaskNotFound));
        for (const Row &row : {Row{-1743, "This is a Pro feature", Kind::OmniFocusProRequired},
                               Row{-1743, "Not allowed", Kind::PermissionDenied},
                               Row{-600, "Application isn't running", Kind::OmniFocusNotRunning},
                               Row{-600, "not authorized to send events", Kind::PermissionDenied},
                               Row{-1728, "no permission", Kind::PermissionDenied},
                               Row{-1728, "Can't get document", Kind::ExecutionFailed},
                               Row{{}, "no number at all", Kind::ExecutionFailed}}) {
            omniFocus.app.failure = {row.number, QString::fromLatin1(row.message)};
            QVERIFY2(omniFocus.kindOf(omniFocus.source.flagTask(omniFocus.id, true)) == row.kind,
                     row.message);
        }
    }

    void nothingThatCouldBeCodeIsRun()
    {
        struct Row
        {
            QString id, name;
            Kind kind;
        };
        OmniFocus omniFocus;
        const QString code = QStringLiteral("a\" & (do shell script \"x\") & \"");
        const QString name = QStringLiteral("a");
        for (const Row &row : {Row{omniFocus.id, code, Kind::ScriptCompilationFailed},
                               Row{omniFocus.id, QStringLiteral("a\\"), Kind::ScriptCompilationFailed},
                               Row{QStringLiteral("x\" of y"), name, Kind::TaskNotFound},
                               Row{QStringLiteral("日本"), name, Kind::TaskNotFound},
                               Row{QString(65, u'a'), name, Kind::TaskNotFound}}) {
            QCOMPARE(omniFocus.kindOf(omniFocus.source.setTaskName(row.id, row.name)),
                     std::optional(row.kind));
            QVERIFY(omniFocus.app.scripts.isEmpty());
        }
    }

    void aRepeatingTaskIsAsYoungAsItsInstance()
    {
        OmniFocus omniFocus;
        ScriptedOmniFocus::Task &task = omniFocus.app.tasks.front();
        const QLocale locale(QLocale::English, QLocale::Australia);
        const QString format = QStringLiteral("dddd, d MMMM yyyy 'at' HH:mm:ss");
        const QDateTime deferred(QDate(2026, 11, 1), QTime(12, 0));
        task.created = QStringLiteral("Thursday, 2 January 2020 at 08:00:00");
        task.deferred = locale.toString(deferred, format);
        task.isRepeating = true;
        for (const auto &[days, pattern] : {std::pair(1, "Repeats every day"),
                                            {3, "Repeats every 3 days"},
                                            {14, "Repeats every 2 weeks"},
                                            {60, "Repeats every 2 months"},
                                            {730, "Repeats every 2 years"}}) {
            task.inferred = locale.toString(deferred.addDays(-days), format);
            const WorkItems tasks = await(omniFocus.source.fetchTasks());
            QCOMPARE(tasks.front()->creationDate().toDateTime(), deferred.addDays(-days));
            QCOMPARE(tasks.front()->recurrence().pattern, QString::fromLatin1(pattern));
        }
    }

    void badRecordsCostOnlyThemselves()
    {
        const QLocale locale(QLocale::English, QLocale::Australia);
        const auto omniFocusRecords = omnifocus::tasksFromAnswer(
            {std::nullopt, QStringLiteral("a|||b|||c"), QStringList(14, QStringLiteral("x")).join(u"|||"),
             QStringList(13, QStringLiteral("y")).join(u"|||")},
            omnifocus::AnswerDateReader(locale), Date(1000.0));
        QCOMPARE(omniFocusRecords.size(), 1u);
        QCOMPARE(omniFocusRecords.front().fields.creationDate, Date(1000.0));
    }

    void onlyTheLocalesOwnDatesAreRead()
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

    void theDueSoonWindowIsTakenOver()
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

    void projectsAreRememberedForFiveMinutes()
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

    void permissionIsAskedAnew()
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

    /** Fifteen tasks, some of them with dates that nobody can read, and edits that last. */
    void theSampleStandsInForOmniFocus()
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
        QCOMPARE((QList{int(projects.size()), withoutTag, withoutDate}), (QList{6, 1, 4}));

        NewTask task;
        task.name = QStringLiteral("New");
        const QString id = await(source.createTask(task));
        await(source.markTaskComplete(tasks.front()->id()));
        const WorkItems later = await(source.fetchTasks());
        QCOMPARE(later.back()->id(), id);
        QVERIFY(later.front() == tasks.front() && tasks.front()->isComplete());
    }
};

VANTREL_REGISTER_TEST(TestOmniFocus)
#include "test_omnifocus.moc"
