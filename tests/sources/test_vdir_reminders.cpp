#include "foundations/DefaultsKeys.h"
#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "sources/reminders/vdir/VdirReminderStore.h"
#include "support/Await.h"
#include "support/Builders.h"
#include "support/FailingFileCalls.h"
#include "support/ManualClock.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

QByteArray todo(const QByteArray &uid, const QByteArray &title, const QByteArray &more = {})
{
    return "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VTODO\nUID:" + uid +
           "\nCREATED:20261101T100000Z\nSUMMARY:" + title + "\nX-KEEP:me\n" + more +
           "END:VTODO\nEND:VCALENDAR\n";
}

/** A chosen folder, and the source upon it. */
struct Vdir
{
    Vdir() { files.defaults.set(keys::RemindersFolder, root.path()); }

    QString path(const QString &name) const { return root.filePath(name); }
    QByteArray content(const QString &name) const { return contentOf(path(name)); }
    void write(const QString &name, const QByteArray &content) const { writeFile(path(name), content); }
    QStringList taskFiles(const QString &list) const
    {
        return QDir(path(list)).entryList(QDir::Files | QDir::Hidden);
    }

    /** As the next start of the program. */
    void reopen()
    {
        source.reset();
        store.reset();
        files.reopen();
        store = std::make_unique<VdirReminderStore>(files.defaults, *files, calls, clock);
        source = std::make_unique<RemindersTaskManager>(*store, files.defaults, notifications, clock);
    }

    QStringList names()
    {
        QStringList names = taskNames(await(source->fetchTasks()));
        names.sort();
        return names;
    }
    /** The text of the failure, or "" without one. */
    template <typename T>
    QString failureOf(QCoro::Task<T> task)
    {
        try {
            await(std::move(task));
        } catch (const SourceError &error) {
            return error.message();
        }
        return {};
    }

    LogWriter log{LogWriter::Output::Silent};
    QTemporaryDir root;
    TestStore files;
    FailingFileCalls calls;
    ManualClock clock;
    NotificationCenter notifications;
    std::unique_ptr<VdirReminderStore> store =
        std::make_unique<VdirReminderStore>(files.defaults, *files, calls, clock);
    std::unique_ptr<RemindersTaskManager> source =
        std::make_unique<RemindersTaskManager>(*store, files.defaults, notifications, clock);
};

/** Changes the content of a file and leaves no trace in its stamp. */
void tamper(const QString &path, const QByteArray &from, const QByteArray &to)
{
    QFile file(path);
    struct stat before
    {
    };
    if (!file.open(QIODevice::ReadWrite) || ::fstat(file.handle(), &before) != 0) {
        qFatal("no file");
    }
    const QByteArray content = file.readAll();
    file.seek(0);
    file.write(QByteArray(content).replace(from, to));
    file.flush();
    const timespec times[] = {before.st_atim, before.st_mtim};
    ::futimens(file.handle(), times);
}

} // namespace

class TestVdirReminders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFolderDecidesOnAccess()
    {
        Vdir vdir;
        QVERIFY(vdir.store->authorizationStatus() == ReminderAuthorization::FullAccess);
        vdir.files.defaults.set(keys::RemindersFolder, vdir.path(u"nowhere"_s));
        QVERIFY(vdir.store->authorizationStatus() == ReminderAuthorization::Denied);
        QVERIFY(vdir.source->getPermissionsGuidance().contains(vdir.path(u"nowhere"_s)));
        vdir.files.defaults.remove(keys::RemindersFolder);
        QVERIFY(vdir.store->authorizationStatus() == ReminderAuthorization::NotDetermined);
        QVERIFY(!vdir.source->checkPermissions());
        QVERIFY(!vdir.failureOf(vdir.source->fetchTasks()).isEmpty());
    }

    void listsAndTheirTitlesAreRead()
    {
        Vdir vdir;
        vdir.write(u"work/displayname"_s, "At work\n");
        vdir.write(u"home/one.ics"_s, todo("1", "One"));
        vdir.write(u".hidden/two.ics"_s, todo("2", "Two"));
        vdir.write(u"loose.ics"_s, todo("3", "Three"));

        QStringList titles;
        for (const ProjectInfo &project : await(vdir.source->fetchAvailableProjects())) {
            titles.append(project.name);
        }
        QStringList expected{u"At work"_s, u"home"_s, QDir(vdir.root.path()).dirName()};
        expected.sort();
        QCOMPARE(titles, expected);
        const WorkItems tasks = await(vdir.source->fetchTasks());
        QCOMPARE(tasks.size(), 2u);
        const auto one = std::find_if(tasks.begin(), tasks.end(),
                                      [](const WorkItemPtr &task) { return task->id() == u"reminder_1"; });
        QCOMPARE((*one)->project(), std::optional(Project{u"reminders_list_home"_s, u"home"_s}));
    }

    void foreignFilesArePassedOver()
    {
        Vdir vdir;
        for (const char *name :
             {"home/.a.ics", "home/b.ics.tmp", "home/c.txt", "home/color", "home/d.ics/e.ics"}) {
            vdir.write(QString::fromLatin1(name), todo(name, "Not a task of the list"));
        }
        vdir.write(u"home/event.ics"_s, "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:e\nEND:VEVENT\nEND:VCALENDAR\n");
        vdir.write(u"home/task.ics"_s, todo("1", "Task"));
        const QSignalSpy problems(vdir.store.get(), &ReminderStore::problemFound);
        QCOMPARE(vdir.names(), QStringList{u"Task"_s});
        QCOMPARE(problems.size(), 0);
    }

    void tasksMadeAndChangedHereAreThereAtTheNextStart()
    {
        Vdir vdir;
        NewTask task;
        task.name = u"Water the plants"_s;
        task.note = u"All"_s;
        task.project = u"Garden: back"_s;
        task.dueDate = vdir.clock.now() + 3600.0;
        const QString id = await(vdir.source->createTask(task));
        task.project = u"garden: BACK"_s;
        await(vdir.source->createTask(task));
        QVERIFY(await(vdir.source->setTaskName(id, u"Water all plants"_s)));
        QVERIFY(await(vdir.source->setPriority(id, 1)));
        QVERIFY(await(vdir.source->markTaskComplete(id)));

        vdir.reopen();

        const WorkItems tasks = await(vdir.source->fetchTasks());
        QCOMPARE(tasks.size(), 2u);
        const auto &changed = dynamic_cast<const ReminderWorkItem &>(*tasks.back());
        QCOMPARE(changed.id(), id);
        QCOMPARE(changed.name(), u"Water all plants"_s);
        QCOMPARE(changed.listName(), u"Garden: back"_s);
        QCOMPARE(changed.reminderPriority(), 1);
        QVERIFY(changed.isComplete() && changed.completionDate());
        QCOMPARE(vdir.taskFiles(u"Garden- back"_s).size(), 3);
        QVERIFY(await(vdir.source->markTaskIncomplete(id)));
        QVERIFY(!await(vdir.source->markTaskComplete(u"reminder_unknown"_s)));
    }

    void completingASeriesKeepsWhatWasDone()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "Water", "DUE;VALUE=DATE:20261120\nRRULE:FREQ=DAILY\n"));
        vdir.names();
        const QSignalSpy changes(vdir.store.get(), &ReminderStore::changed);

        QVERIFY(await(vdir.source->markTaskComplete(u"reminder_1"_s)));

        QVERIFY(vdir.content(u"home/1.ics"_s).contains("DUE;VALUE=DATE:20261121"));
        const WorkItems tasks = await(vdir.source->fetchTasks());
        QCOMPARE(tasks.size(), 2u);
        QVERIFY(!tasks[0]->isComplete() && tasks[0]->isRepeating());
        QVERIFY(tasks[1]->isComplete() && !tasks[1]->isRepeating());

        const QByteArray before =
            todo("2", "Odd", "DUE;VALUE=DATE:20261120\nRRULE:FREQ=DAILY\nRDATE:20261201\n");
        vdir.write(u"home/2.ics"_s, before);
        vdir.names();
        QVERIFY(vdir.failureOf(vdir.source->markTaskComplete(u"reminder_2"_s)).contains(u"repeats"));
        QCOMPARE(vdir.content(u"home/2.ics"_s), before);
    }

    void aFileThatIsNoTaskCostsOnlyItself()
    {
        Vdir vdir;
        vdir.write(u"home/good.ics"_s, todo("1", "Good"));
        vdir.write(u"home/bad.ics"_s, "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:2\n");
        vdir.write(u"home/spoiled.ics"_s, todo("3", "Spoiled"));
        const QSignalSpy problems(vdir.store.get(), &ReminderStore::problemFound);
        QCOMPARE(vdir.names(), (QStringList{u"Good"_s, u"Spoiled"_s}));
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems[0][0].toString().contains(u"bad.ics"_s));

        const QByteArray half = todo("3", "Spoiled").chopped(30);
        vdir.write(u"home/spoiled.ics"_s, half);
        // A file half written takes no task off the board.
        QCOMPARE(vdir.names(), (QStringList{u"Good"_s, u"Spoiled"_s}));
        vdir.names();
        QCOMPARE(problems.size(), 2);
        QVERIFY(vdir.failureOf(vdir.source->markTaskComplete(u"reminder_3"_s)).contains(u"spoiled.ics"_s));
        QCOMPARE(vdir.content(u"home/spoiled.ics"_s), half);
    }

    void whatAnotherProgramChangedMeanwhileIsNotOverwritten()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "Old"));
        vdir.names();
        Reminder reminder = await(vdir.store->reminder(u"1"_s)).value();
        reminder.title = u"Ours"_s;
        vdir.write(u"home/1.ics"_s, todo("1", "NEW"));
        QVERIFY(!vdir.failureOf(vdir.store->save(reminder)).isEmpty());
        QCOMPARE(vdir.content(u"home/1.ics"_s), todo("1", "NEW"));

        // The task as it is now is what an edit begins with.
        QVERIFY(await(vdir.source->setPriority(u"reminder_1"_s, 5)));
        QVERIFY(vdir.content(u"home/1.ics"_s).contains("SUMMARY:NEW\n"));
        QVERIFY(QFile::rename(vdir.path(u"home/1.ics"_s), vdir.path(u"home/renamed.ics"_s)));
        QVERIFY(await(vdir.source->setTaskName(u"reminder_1"_s, u"Ours"_s)));
        QVERIFY(vdir.content(u"home/renamed.ics"_s).contains("SUMMARY:Ours\n"));
        QVERIFY(QFile::remove(vdir.path(u"home/renamed.ics"_s)));
        QVERIFY(!await(vdir.source->setTaskName(u"reminder_1"_s, u"Gone"_s)));
    }

    void everyFailureLeavesTheOldFileOrTheNew()
    {
        const QByteArray text = todo("1", "Water", "DUE;VALUE=DATE:20261120\nRRULE:FREQ=DAILY\n");
        bool hasFailed = true;
        for (int failing = 1; hasFailed; ++failing) {
            Vdir vdir;
            vdir.write(u"home/1.ics"_s, text);
            vdir.names();
            vdir.calls.failAt(failing);
            const QString failure = vdir.failureOf(vdir.source->markTaskComplete(u"reminder_1"_s));
            hasFailed = vdir.calls.hasFailed();
            vdir.calls.failAt(0);

            const bool isOld = vdir.content(u"home/1.ics"_s) == text;
            QVERIFY(failure.isEmpty() ? !isOld : failure.contains(u"No space left on device"));
            QVERIFY(isOld || vdir.content(u"home/1.ics"_s).contains("DUE;VALUE=DATE:20261121"));
            QVERIFY(isOld || vdir.taskFiles(u"home"_s).size() == 2);
            for (const QString &file : vdir.taskFiles(u"home"_s)) {
                QVERIFY(file.endsWith(u".ics"));
            }
            if (isOld) {
                QVERIFY(await(vdir.source->markTaskComplete(u"reminder_1"_s)));
            }
        }
    }

    void aFolderThatIsGoneIsNoEmptyFolder()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "One"));
        vdir.names();
        QVERIFY(QDir(vdir.root.path()).removeRecursively());
        QVERIFY(!vdir.source->checkPermissions());
        QVERIFY(!vdir.failureOf(vdir.source->fetchTasks()).isEmpty());
        QVERIFY(vdir.failureOf(vdir.store->fetchReminders(ReminderPredicate::incomplete()))
                    .contains(u"No such file or directory"));
        QVERIFY(!vdir.failureOf(vdir.source->markTaskComplete(u"reminder_1"_s)).isEmpty());
    }

    void changesOfOtherProgramsAreNoticed()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "One"));
        vdir.names();
        QSignalSpy changes(vdir.store.get(), &ReminderStore::changed);
        const auto settle = [&vdir] {
            for (int turn = 0; turn < 15; ++turn) {
                QTest::qWait(10);
                vdir.clock.advance(1.0);
            }
        };
        QVERIFY(await(vdir.source->setTaskName(u"reminder_1"_s, u"Ours"_s)));
        settle();
        QCOMPARE(changes.size(), 0);

        vdir.write(u"home/2.ics.tmp"_s, todo("2", "Two"));
        settle();
        QCOMPARE(changes.size(), 0);
        QVERIFY(QFile::rename(vdir.path(u"home/2.ics.tmp"_s), vdir.path(u"home/2.ics"_s)));
        settle();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(vdir.names(), (QStringList{u"Ours"_s, u"Two"_s}));

        // Written over in its place: seen when the user comes back from whatever wrote it.
        vdir.write(u"home/2.ics"_s, todo("2", "Second"));
        vdir.store->lookAgain();
        settle();
        QCOMPARE(changes.size(), 2);
        vdir.store->lookAgain();
        settle();
        QCOMPARE(changes.size(), 2);
        QCOMPARE(vdir.names(), (QStringList{u"Ours"_s, u"Second"_s}));

        vdir.write(u"new/3.ics"_s, todo("3", "Three"));
        settle();
        QVERIFY(QFile::remove(vdir.path(u"home/2.ics"_s)));
        settle();
        QCOMPARE(changes.size(), 4);
        QCOMPARE(vdir.names(), (QStringList{u"Ours"_s, u"Three"_s}));
    }

    void filesThatAreTheSameAreNotReadAgain()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "First"));
        vdir.write(u"home/2.ics"_s, todo("2", "Second"));
        // The file of just now may yet be written again without another stamp.
        vdir.names();
        QTest::qWait(80);
        QCOMPARE(vdir.names(), (QStringList{u"First"_s, u"Second"_s}));
        tamper(vdir.path(u"home/1.ics"_s), "First", "Wrong");
        tamper(vdir.path(u"home/2.ics"_s), "Second", "Fooled");
        QCOMPARE(vdir.names(), (QStringList{u"First"_s, u"Second"_s}));

        vdir.reopen();
        QCOMPARE(vdir.names(), (QStringList{u"First"_s, u"Second"_s}));
        vdir.write(u"home/1.ics"_s, todo("1", "Third"));
        QVERIFY(QFile::remove(vdir.path(u"home/2.ics"_s)));
        QCOMPARE(vdir.names(), QStringList{u"Third"_s});
        vdir.reopen();
        QCOMPARE(vdir.names(), QStringList{u"Third"_s});

        // Another folder has nothing to do with this one's cache.
        QTemporaryDir other;
        QVERIFY(QDir(other.path()).mkdir(u"home"_s));
        QVERIFY(QFile::copy(vdir.path(u"home/1.ics"_s), other.filePath(u"home/9.ics"_s)));
        vdir.files.defaults.set(keys::RemindersFolder, other.path());
        vdir.reopen();
        QCOMPARE(vdir.names(), QStringList{u"Third"_s});
    }

    void aSecondTaskOfTheSameIdentifierGetsItsOwn()
    {
        Vdir vdir;
        vdir.write(u"home/1.ics"_s, todo("1", "Here"));
        vdir.write(u"work/1.ics"_s, todo("1", "There"));
        const WorkItems tasks = await(vdir.source->fetchTasks());
        QStringList ids = taskIds(tasks);
        ids.sort();
        QCOMPARE(ids, (QStringList{u"reminder_1"_s, u"reminder_1@work/1.ics"_s}));
        QVERIFY(await(vdir.source->setTaskName(ids[1], u"Elsewhere"_s)));
        QCOMPARE(vdir.names(), (QStringList{u"Elsewhere"_s, u"Here"_s}));
    }
};

VANTREL_REGISTER_TEST(TestVdirReminders)

} // namespace vantrel::test

#include "test_vdir_reminders.moc"
