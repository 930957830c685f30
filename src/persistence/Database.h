#pragma once

#include "foundations/Date.h"
#include "foundations/SerialQueue.h"
#include "persistence/JournalStore.h"
#include "persistence/StorageProblem.h"
#include "persistence/sqlite/SqliteConnection.h"

#include <QCoreApplication>

#include <atomic>
#include <deque>
#include <functional>
#include <variant>
#include <vector>

namespace vantrel {

/** A parameter of a statement: null, text, integer, real or date. */
using SqlValue = std::variant<std::monostate, QString, qint64, double, Date>;

/**
 * The database file: its queue, its one connection, and the care that every write takes.
 *
 * A write that fails for a passing reason stays first in line: it is tried again before any later write and
 * whenever the queue is idle, so that writes happen in their order and none is lost while the program runs.
 * Owned by PersistenceManager. What is not said to be for any thread is for jobs on the queue.
 */
class Database
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::Database)
public:
    /** Called on the queue's thread. */
    struct Listener
    {
        std::function<void(const StorageProblem &)> problemFound;
        std::function<void()> writingRecovered;
        std::function<void()> becameIdle;
    };
    /** Writes by the open connection; true when all is stored. May be called again if it was not. */
    using Change = std::function<bool()>;

    Database(QString path, QByteArray vfsName, Listener listener);
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    SerialQueue &queue() { return m_queue; }
    const QString &path() const { return m_path; }

    /** Opens the file, moving a damaged one aside, and brings the schema up to date. */
    void open(Date now);
    /** Tries once more what could not be written yet, then closes. */
    void close();
    bool isOpen() const { return m_connection.isOpen(); }
    SqliteConnection &connection() { return m_connection; }
    JournalStore &journal() { return m_journal; }

    /** Runs one statement that gives no rows. Off the queue it writes nothing. */
    bool executeSQL(const char *sql, const std::vector<SqlValue> &parameters = {});

    /** Performs the change after all earlier ones; `now` is the time that the journal gives it. */
    bool write(Date now, Change change);
    /** Tries again what could not be written. True if some of it still waits: what is read now lacks it. */
    bool isBehind() { return writeBacklog() == Attempt::Postponed; }
    /** What `work` reads, or nothing if the store cannot be read or would tell of times gone by. */
    template <typename Work>
    std::invoke_result_t<Work> read(Work work)
    {
        if (!isOpen() || isBehind()) {
            return std::nullopt;
        }
        m_connection.forgetFailure();
        return work();
    }
    /** Changes not written yet; any thread. */
    qsizetype backlog() const { return m_backlogSize; }

    /** Copies the database to a new file beside it, once; its path, or nothing if that fails. */
    std::optional<QString> backUp(Date now);

private:
    enum class Attempt { Stored, Refused, Postponed };
    enum class Health { Sound, Damaged, Unreadable };
    struct Waiting
    {
        Date moment;
        Change change;
    };

    Health openConnection();
    Health check();
    bool moveDamagedFileAside(Date now);
    void configure();
    /** Writes what waits, in order, until one must wait longer. The result of the last one tried. */
    Attempt writeBacklog();
    Attempt attempt(const Waiting &waiting);
    bool makeAgain(const Change &change);
    bool hasPassingFailure() const;
    void reportWriteFailure(Attempt result);
    std::optional<std::chrono::milliseconds> workWhenIdle();
    void report(StorageProblem::Kind kind, const QString &message, bool isPermanent);
    /** The reason of the last failure, in words that tell the user what to do. */
    QString failureReason() const;
    /** "{path}.{label}-{yyyyMMdd-HHmmss}", a name that no file has yet. */
    QString siblingPath(QStringView label, Date now) const;

    QString m_path;
    QByteArray m_vfsName;
    Listener m_listener;
    SqliteConnection m_connection;
    /** The time of the change under way. */
    Date m_moment;
    JournalStore m_journal{m_connection, m_moment};
    std::deque<Waiting> m_backlog;
    std::atomic<qsizetype> m_backlogSize = 0;
    bool m_hasToldOfPostponed = false;
    bool m_hasToldOfRefused = false;
    /** The file could not be written to when it was opened: there is no use in trying again. */
    bool m_isReadOnly = false;
    bool m_hasUncheckpointedWrites = false;
    /** The disk was found full: SQLite's own log is kept small until all is quiet again. */
    bool m_isShortOfSpace = false;
    std::optional<QString> m_backupPath;
    /** Last: its thread has ended before the rest goes. */
    SerialQueue m_queue{"com.vantrel.database"};
};

} // namespace vantrel
