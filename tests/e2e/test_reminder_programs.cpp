#include "foundations/DefaultsKeys.h"
#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "sources/reminders/vdir/VdirReminderStore.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** A folder of lists that todoman works on, too. */
class SharedLists
{
public:
    explicit SharedLists(const QTemporaryDir &root, const QString &name) : m_folder(root.filePath(name))
    {
        QDir().mkpath(path() + u"/home");
        write(m_folder + u"/todoman.py",
              u"path = \"%1/*\"\ndate_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\ndt_separator = \" \"\n"
              "default_list = \"home\"\ncache_path = \"%2/cache\"\n"_s.arg(path(), m_folder));
        files.defaults.set(keys::RemindersFolder, path());
    }

    QString path() const { return m_folder + u"/lists"; }

    static void write(const QString &path, const QString &text)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
            qFatal("a file could not be written");
        }
    }

    QByteArray todoman(const QStringList &arguments, const QByteArray &input = {}) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TODOMAN_CONFIG"_s, m_folder + u"/todoman.py");
        process.setProcessEnvironment(environment);
        process.start(u"todoman"_s, arguments);
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(30000) || process.exitCode() != 0) {
            qWarning("todoman: %s", process.readAllStandardError().constData());
        }
        return process.readAllStandardOutput();
    }

    /** What todoman says of the task of that title. */
    QJsonObject toldByTodoman(const QString &title) const
    {
        const QByteArray answer = todoman({u"--porcelain"_s, u"list"_s, u"--status"_s, u"ANY"_s});
        for (const QJsonValue &value : QJsonDocument::fromJson(answer).array()) {
            if (value[u"summary"_s].toString() == title) {
                return value.toObject();
            }
        }
        return {};
    }

    WorkItemPtr told(const QString &title)
    {
        for (const WorkItemPtr &task : await(source.fetchTasks())) {
            if (task->name() == title) {
                return task;
            }
        }
        return nullptr;
    }

    TestStore files;
    FileCalls calls;
    SystemClock clock;
    NotificationCenter notifications;
    VdirReminderStore store{files.defaults, *files, calls, clock};
    RemindersTaskManager source{store, files.defaults, notifications, clock};

private:
    QString m_folder;
};

QString missingProgram(const QStringList &programs)
{
    for (const QString &program : programs) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            return u"%1 is not installed"_s.arg(program);
        }
    }
    return {};
}

QDateTime moment(const QJsonValue &seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds.toInteger());
}

int freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

} // namespace

/** Other programs of this kind, and whether they and we understand each other. */
class TestReminderPrograms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }
    void cleanup() { m_log.reset(); }
    void whatTodomanWritesIsReadHere();
    void whatIsWrittenHereIsReadByTodoman();
    void bothEditTheSameTask();
    void tasksTravelThroughAServer();

private:
    std::unique_ptr<LogWriter> m_log;
};

void TestReminderPrograms::whatTodomanWritesIsReadHere()
{
    if (const QString missing = missingProgram({u"todoman"_s}); !missing.isEmpty()) {
        QSKIP(qPrintable(missing));
    }
    const QTemporaryDir root;
    SharedLists lists(root, u"a"_s);
    QDir().mkpath(lists.path() + u"/work");
    lists.todoman({u"new"_s, u"-l"_s, u"work"_s, u"-d"_s, u"2027-03-28 10:30"_s, u"--priority"_s, u"high"_s,
                   u"-r"_s, u"Müsli, \"eggs\"; tea"_s},
                  "One line, with a comma");
    lists.todoman({u"new"_s, u"-l"_s, u"home"_s, u"-d"_s, u"2027-03-28"_s, u"Whole day"_s});
    lists.todoman({u"new"_s, u"-l"_s, u"home"_s, u"Finished"_s});
    const int id = lists.toldByTodoman(u"Finished"_s)[u"id"_s].toInt();
    lists.todoman({u"done"_s, QString::number(id)});

    const WorkItemPtr task = lists.told(u"Müsli, \"eggs\"; tea"_s);
    QVERIFY(task);
    QCOMPARE(task->note().value_or(QString()).trimmed(), u"One line, with a comma"_s);
    QCOMPARE(task->projectName(), std::optional(u"work"_s));
    QCOMPARE(task->dueDate()->toDateTime(), QDateTime(QDate(2027, 3, 28), QTime(10, 30)));
    QVERIFY(dynamic_cast<const ReminderWorkItem &>(*task).reminderPriority() <= 4);
    QCOMPARE(lists.told(u"Whole day"_s)->dueDate()->toDateTime(), QDate(2027, 3, 28).startOfDay());
    const WorkItemPtr finished = lists.told(u"Finished"_s);
    QVERIFY(finished->isComplete() && finished->completionDate());
}

void TestReminderPrograms::whatIsWrittenHereIsReadByTodoman()
{
    if (const QString missing = missingProgram({u"todoman"_s}); !missing.isEmpty()) {
        QSKIP(qPrintable(missing));
    }
    const QTemporaryDir root;
    SharedLists lists(root, u"a"_s);
    NewTask task;
    task.name = u"Ä long title, with \\ and ; "_s.repeated(8) + u'.';
    task.note = u"One\nTwo 🥣"_s;
    task.dueDate = Date::fromDateTime(QDateTime(QDate(2027, 10, 31), QTime(2, 15)));
    task.project = u"A new list"_s;
    const QString id = await(lists.source.createTask(task));
    QVERIFY(await(lists.source.setPriority(id, 5)));

    QJsonObject told = lists.toldByTodoman(task.name);
    QCOMPARE(told[u"description"_s].toString(), *task.note);
    QCOMPARE(told[u"list"_s].toString(), u"A new list"_s);
    QCOMPARE(told[u"priority"_s].toInt(), 5);
    QCOMPARE(moment(told[u"due"_s]), task.dueDate->toDateTime());
    QVERIFY(!told[u"completed"_s].toBool());

    QVERIFY(await(lists.source.markTaskComplete(id)));
    told = lists.toldByTodoman(task.name);
    QVERIFY(told[u"completed"_s].toBool());
    QVERIFY(moment(told[u"completed_at"_s]).secsTo(QDateTime::currentDateTime()) < 60);
    QVERIFY(await(lists.source.markTaskIncomplete(id)));
    QVERIFY(!lists.toldByTodoman(task.name)[u"completed"_s].toBool());
}

void TestReminderPrograms::bothEditTheSameTask()
{
    if (const QString missing = missingProgram({u"todoman"_s}); !missing.isEmpty()) {
        QSKIP(qPrintable(missing));
    }
    const QTemporaryDir root;
    SharedLists lists(root, u"a"_s);
    SharedLists::write(lists.path() + u"/home/1.ics",
                       u"BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VTODO\r\nUID:1\r\n"
                       "DTSTAMP:20261101T100000Z\r\nSUMMARY:Water\r\nCATEGORIES:garden,green\r\n"
                       "DTSTART;VALUE=DATE:20261120\r\nDUE;VALUE=DATE:20261121\r\nRRULE:FREQ=WEEKLY\r\n"
                       "X-ODD;X-P=1:kept\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Now\r\n"
                       "TRIGGER:-PT15M\r\nEND:VALARM\r\nEND:VTODO\r\nEND:VCALENDAR\r\n"_s);
    lists.told(u"Water"_s);
    QVERIFY(await(lists.source.setTaskName(u"reminder_1"_s, u"Water all"_s)));
    QVERIFY(await(lists.source.markTaskComplete(u"reminder_1"_s)));

    QFile file(lists.path() + u"/home/1.ics");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    for (const char *line :
         {"RRULE:FREQ=WEEKLY", "DTSTART;VALUE=DATE:20261127", "DUE;VALUE=DATE:20261128",
          "CATEGORIES:garden,green", "X-ODD;X-P=1:kept", "BEGIN:VALARM", "TRIGGER:-PT15M"}) {
        QVERIFY2(text.contains(line), line);
    }
    std::vector<int> open;
    int done = 0;
    const QByteArray answer = lists.todoman({u"--porcelain"_s, u"list"_s, u"--status"_s, u"ANY"_s});
    for (const QJsonValue &value : QJsonDocument::fromJson(answer).array()) {
        QCOMPARE(value[u"summary"_s].toString(), u"Water all"_s);
        if (value[u"completed"_s].toBool()) {
            ++done;
        } else {
            open.push_back(value[u"id"_s].toInt());
        }
    }
    QCOMPARE(open.size(), 1u);
    QCOMPARE(done, 1);

    lists.todoman({u"edit"_s, QString::number(open.front()), u"--priority"_s, u"low"_s});
    const auto &edited = dynamic_cast<const ReminderWorkItem &>(*lists.told(u"Water all"_s));
    QVERIFY(edited.isRepeating() && edited.reminderPriority() > 5);
    QCOMPARE(edited.dueDate()->toDateTime(), QDate(2026, 11, 28).startOfDay());
}

void TestReminderPrograms::tasksTravelThroughAServer()
{
    if (const QString missing = missingProgram({u"todoman"_s, u"radicale"_s, u"vdirsyncer"_s});
        !missing.isEmpty()) {
        QSKIP(qPrintable(missing));
    }
    const QTemporaryDir root;
    SharedLists here(root, u"here"_s);
    SharedLists there(root, u"there"_s);
    const int port = freePort();
    QProcess server;
    server.start(u"radicale"_s, {u"--storage-filesystem-folder"_s, root.filePath(u"server"_s),
                                 u"--server-hosts"_s, u"127.0.0.1:%1"_s.arg(port), u"--auth-type"_s,
                                 u"none"_s, u"--rights-type"_s, u"authenticated"_s});
    if (!server.waitForStarted()) {
        QSKIP("radicale does not start");
    }
    QString configuration = u"[general]\nstatus_path = \"%1/status\"\n"_s.arg(root.path());
    for (const QString &side : {u"here"_s, u"there"_s}) {
        configuration +=
            u"[pair %1]\na = \"%1_files\"\nb = \"%1_server\"\ncollections = [\"home\"]\n"
            "[storage %1_files]\ntype = \"filesystem\"\npath = \"%2/%1/lists\"\nfileext = \".ics\"\n"
            "[storage %1_server]\ntype = \"caldav\"\nurl = \"http://127.0.0.1:%3/\"\n"
            "username = \"ann\"\npassword = \"ann\"\n"_s.arg(side, root.path())
                .arg(port);
    }
    SharedLists::write(root.filePath(u"vdirsyncer.conf"_s), configuration);
    QByteArray output;
    const auto synchronise = [&](const QString &verb) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(u"vdirsyncer"_s, {u"-c"_s, root.filePath(u"vdirsyncer.conf"_s), verb});
        process.write("y\ny\ny\ny\n");
        process.closeWriteChannel();
        process.waitForFinished(60000);
        output = process.readAll();
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    };
    QTRY_VERIFY2_WITH_TIMEOUT(synchronise(u"discover"_s), output.constData(), 30000);

    NewTask task;
    task.name = u"Travel, far"_s;
    const QString id = await(here.source.createTask(task));
    // The two sides come in no order: what one brings, the other may only find the next time.
    QVERIFY2(synchronise(u"sync"_s) && synchronise(u"sync"_s), output.constData());
    const QJsonObject told = there.toldByTodoman(task.name);
    QVERIFY(!told.isEmpty());
    there.todoman({u"done"_s, QString::number(told[u"id"_s].toInt())});
    QVERIFY2(synchronise(u"sync"_s) && synchronise(u"sync"_s), output.constData());
    QVERIFY(here.told(task.name)->isComplete());
    QCOMPARE(here.told(task.name)->id(), id);

    server.terminate();
    QVERIFY(server.waitForFinished());
}

VANTREL_REGISTER_TEST(TestReminderPrograms)

} // namespace vantrel::test

#include "test_reminder_programs.moc"
