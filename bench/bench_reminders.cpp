// A folder of task lists, against bare system calls and libical on the same files in the same run.

#include "Measure.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "persistence/PersistenceManager.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "sources/reminders/vdir/VdirReminderStore.h"
#include "support/Await.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QtConcurrent>

#include <dirent.h>
#include <fcntl.h>
#include <libical/ical.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

constexpr int Pairs = 11;
constexpr int Files = 10000;

/** A task of about 460 bytes, as other programs write them. */
QByteArray todoText(int number)
{
    const QByteArray text = QByteArray::number(number);
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Bench//EN\r\nBEGIN:VTODO\r\nUID:bench-" +
           text +
           "@example.org\r\nDTSTAMP:20261101T100000Z\r\nCREATED:20261101T100000Z\r\nLAST-MODIFIED:"
           "20261102T100000Z\r\nSUMMARY:Write chapter " +
           text +
           " of the long report\r\nDESCRIPTION:Notes of some length\\, with a comma\\nand a second line that "
           "is\r\n  folded as the format wants it to be\r\nDUE:20261224T170000Z\r\nPRIORITY:" +
           QByteArray::number(number % 10) +
           "\r\nSTATUS:NEEDS-ACTION\r\nPERCENT-COMPLETE:0\r\nCATEGORIES:Work,Report\r\nSEQUENCE:2\r\n"
           "END:VTODO\r\nEND:VCALENDAR\r\n";
}

class Bench
{
public:
    Bench()
    {
        QDir(m_root.path()).mkdir(QStringLiteral("list"));
        for (int number = 0; number < Files; ++number) {
            QFile file(list() + QStringLiteral("/bench-%1.ics").arg(number));
            if (!file.open(QIODevice::WriteOnly) || file.write(todoText(number)) < 0) {
                qFatal("the folder could not be filled");
            }
        }
        // What was written just now is not cached.
        usleep(100000);
        m_defaults.set(keys::RemindersFolder, m_root.path());
    }

    QString list() const { return m_root.filePath(QStringLiteral("list")); }
    VdirReminderStore store() { return {m_defaults, m_persistence, m_calls, m_clock}; }
    void settle() { test::await(m_persistence.drained()); }
    void forgetCache()
    {
        m_persistence.saveFileCache("another", {}, {});
        settle();
    }
    UserDefaults &defaults() { return m_defaults; }
    Clock &clock() { return m_clock; }

private:
    QTemporaryDir m_root;
    QTemporaryDir m_data;
    FileCalls m_calls;
    FileSaver m_saver{m_calls};
    SystemClock m_clock;
    AppConfig m_config{AppEnvironment::Testing, m_data.path()};
    UserDefaults m_defaults{m_saver, m_config.filePath(QStringLiteral("defaults.json"))};
    PersistenceManager m_persistence{m_config, m_defaults, m_saver, m_clock};
};

/** Time until all open tasks of a store that knows nothing yet are there. */
double fetchAnew(Bench &bench)
{
    VdirReminderStore store = bench.store();
    size_t found = 0;
    const double elapsed = milliseconds(
        [&] { found = test::await(store.fetchReminders(ReminderPredicate::incomplete()))->size(); });
    if (found != Files) {
        qFatal("tasks are missing");
    }
    bench.settle();
    return elapsed;
}

double readNamesAndStamps(const Bench &bench)
{
    return milliseconds([&bench] {
        DIR *folder = opendir(qPrintable(bench.list()));
        qint64 sum = 0;
        while (const dirent *entry = readdir(folder)) {
            struct stat status
            {
            };
            fstatat(dirfd(folder), entry->d_name, &status, 0);
            sum += status.st_size;
        }
        closedir(folder);
        if (sum == 0) {
            qFatal("an empty folder");
        }
    });
}

struct ParsedFile
{
    QByteArray path;
    size_t sum = 0;
};

/** Reads and parses one file, and looks at what we use. */
void parse(ParsedFile &parsed)
{
    const int file = open(parsed.path.constData(), O_RDONLY);
    char text[4096];
    const ssize_t length = ::read(file, text, sizeof(text) - 1);
    close(file);
    if (length <= 0) {
        return;
    }
    text[length] = '\0';
    icalcomponent *root = icalcomponent_new_from_string(text);
    icalcomponent *todo = icalcomponent_get_first_component(root, ICAL_VTODO_COMPONENT);
    for (icalproperty *property = icalcomponent_get_first_property(todo, ICAL_ANY_PROPERTY); property;
         property = icalcomponent_get_next_property(todo, ICAL_ANY_PROPERTY)) {
        parsed.sum += size_t(icalproperty_isa(property));
    }
    parsed.sum += strlen(icalcomponent_get_uid(todo)) + strlen(icalcomponent_get_summary(todo)) +
                  strlen(icalcomponent_get_description(todo)) +
                  size_t(icaltime_as_timet(icalcomponent_get_due(todo)));
    icalcomponent_free(root);
}

enum class Cores { One, All };

/** All files through libical, and nothing else. */
double parseAll(const Bench &bench, Cores cores)
{
    return milliseconds([&bench, cores] {
        std::vector<ParsedFile> files;
        DIR *folder = opendir(qPrintable(bench.list()));
        while (const dirent *entry = readdir(folder)) {
            if (entry->d_name[0] != '.') {
                files.push_back({QFile::encodeName(bench.list()) + '/' + entry->d_name});
            }
        }
        closedir(folder);
        if (cores == Cores::All) {
            QtConcurrent::blockingMap(files, parse);
        } else {
            std::for_each(files.begin(), files.end(), parse);
        }
        if (std::any_of(files.begin(), files.end(), [](const ParsedFile &file) { return file.sum == 0; })) {
            qFatal("a file was not parsed");
        }
    });
}

void benchReading(Bench &bench)
{
    fetchAnew(bench);
    report(QStringLiteral("10,000 task files unchanged, new start / names and stamps"),
           figure(compare(
               Pairs, [&] { return fetchAnew(bench); }, [&] { return readNamesAndStamps(bench); })),
           QStringLiteral("1.5x"));
    VdirReminderStore store = bench.store();
    const auto fetch = [&store] {
        return milliseconds([&store] { test::await(store.fetchReminders(ReminderPredicate::incomplete())); });
    };
    fetch();
    report(QStringLiteral("10,000 task files unchanged, refresh / names and stamps"),
           figure(compare(Pairs, fetch, [&] { return readNamesAndStamps(bench); })), QStringLiteral("1.5x"));
    report(QStringLiteral("10,000 task files without a cache / libical on one core"),
           figure(compare(
               Pairs,
               [&] {
                   bench.forgetCache();
                   return fetchAnew(bench);
               },
               [&] { return parseAll(bench, Cores::One); })),
           QStringLiteral("0.65x"));
    // What the other cores of this machine are worth: no reading through libical can be below it.
    report(
        QStringLiteral("libical alone, on all cores / on one"),
        figure(compare(
            Pairs, [&] { return parseAll(bench, Cores::All); }, [&] { return parseAll(bench, Cores::One); })),
        QStringLiteral("-"));
}

/** The system calls that an atomic and durable save cannot do without. */
double saveBare(const Bench &bench, const QByteArray &text)
{
    const QByteArray target = QFile::encodeName(bench.list() + QStringLiteral("/bench-2.ics"));
    const QByteArray temporary = target + ".tmp";
    return milliseconds([&] {
        const int file = open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const bool isWritten = write(file, text.constData(), size_t(text.size())) == text.size();
        fsync(file);
        close(file);
        const bool isRenamed = rename(temporary.constData(), target.constData()) == 0;
        const int folder = open(qPrintable(bench.list()), O_RDONLY | O_DIRECTORY);
        fsync(folder);
        close(folder);
        if (!isWritten || !isRenamed) {
            qFatal("the file could not be saved");
        }
    });
}

void benchSaving(Bench &bench)
{
    VdirReminderStore store = bench.store();
    test::await(store.fetchReminders(ReminderPredicate::incomplete()));
    const QString id = QStringLiteral("bench-1@example.org");
    int number = 0;
    const auto save = [&] {
        usleep(60000);
        return milliseconds([&] {
            Reminder reminder = test::await(store.reminder(id)).value();
            reminder.title = QStringLiteral("Title %1").arg(++number);
            test::await(store.save(reminder));
        });
    };
    const auto reference = [&bench] {
        usleep(60000);
        return saveBare(bench, todoText(2));
    };
    report(QStringLiteral("saving one reminder / bare system calls"), figure(compare(31, save, reference)),
           QStringLiteral("2x"));
}

void benchWindow(Bench &bench)
{
    VdirReminderStore store = bench.store();
    NotificationCenter notifications;
    RemindersTaskManager source(store, bench.defaults(), notifications, bench.clock());
    std::vector<double> blocks;
    for (int run = 0; run < Pairs; ++run) {
        bool isDone = false;
        LoopWatch watch;
        launch(
            [](RemindersTaskManager &manager, bool &done) -> QCoro::Task<> {
                const WorkItems tasks = co_await manager.fetchTasks();
                done = tasks.size() == Files;
            }(source, isDone),
            QStringLiteral("bench"));
        watch.runUntil([&isDone] { return isDone; });
        blocks.push_back(watch.longestBlockMilliseconds);
    }
    report(QStringLiteral("fetching 10,000 reminders: longest hold of the GUI"),
           QStringLiteral("median %1 ms").arg(median(blocks), 0, 'f', 2), QStringLiteral("4 ms"));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const LogWriter log(LogWriter::Output::Silent);
    Bench bench;
    benchReading(bench);
    benchSaving(bench);
    benchWindow(bench);
    return 0;
}
