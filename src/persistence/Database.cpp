#include "persistence/Database.h"

#include "foundations/Log.h"

#include <sqlite3.h>

#include <array>
#include <utility>

namespace vantrel {

namespace {

constexpr std::chrono::milliseconds QuietBeforeIdleWork{300};
constexpr std::chrono::seconds PauseBeforeRetry{5};

/** By the alternatives of SqlValue. */
constexpr std::array<QStringView, 5> BindFailures{
    u"Failed to bind null parameter: ", u"Failed to bind string parameter: ",
    u"Failed to bind int parameter: ", u"Failed to bind double parameter: ",
    u"Failed to bind date parameter: "};

} // namespace

Database::Database(QString path, QByteArray vfsName, Listener listener)
    : m_path(std::move(path)), m_vfsName(std::move(vfsName)), m_listener(std::move(listener))
{
    m_queue.setIdleWork(QuietBeforeIdleWork, [this] { return workWhenIdle(); });
}

Database::~Database()
{
    m_queue.sync([this] { close(); });
}

void Database::close()
{
    if (!isOpen()) {
        return;
    }
    if (writeBacklog() == Attempt::Postponed) {
        log::error(QString::number(m_backlog.size()) + u" changes could not be stored: " +
                   m_connection.failureMessage());
        m_backlog.clear();
        m_backlogSize = 0;
    }
    m_connection.close();
}

bool Database::executeSQL(const char *sql, const std::vector<SqlValue> &parameters)
{
    if (!m_queue.isCurrent()) {
        log::error(
            QStringLiteral("executeSQL called from outside dbQueue - this is a thread safety violation"));
        return false;
    }
    if (!isOpen()) {
        log::error(QStringLiteral("Database connection not established"));
        return false;
    }
    SqliteStatement statement = m_connection.prepare(sql);
    if (!statement.isPrepared()) {
        log::error(u"Failed to prepare SQL statement: " + m_connection.failureMessage());
        return false;
    }
    int place = 0;
    for (const SqlValue &parameter : parameters) {
        ++place;
        const bool isBound =
            std::visit([&](const auto &value) { return statement.bind(place, value); }, parameter);
        if (!isBound) {
            log::error(BindFailures.at(parameter.index()) + m_connection.failureMessage());
            return false;
        }
    }
    return statement.run();
}

bool Database::write(Date now, Change change)
{
    if (!isOpen()) {
        log::error(QStringLiteral("Database connection not established"));
        return false;
    }
    m_backlog.push_back({now, std::move(change)});
    ++m_backlogSize;
    return writeBacklog() == Attempt::Stored;
}

Database::Attempt Database::writeBacklog()
{
    Attempt result = Attempt::Stored;
    while (!m_backlog.empty()) {
        result = attempt(m_backlog.front());
        if (result != Attempt::Stored) {
            reportWriteFailure(result);
        }
        if (result == Attempt::Postponed) {
            return result;
        }
        m_hasToldOfRefused = result == Attempt::Refused;
        m_backlog.pop_front();
        --m_backlogSize;
    }
    if (std::exchange(m_hasToldOfPostponed, false)) {
        m_listener.writingRecovered();
    }
    return result;
}

Database::Attempt Database::attempt(const Waiting &waiting)
{
    m_moment = waiting.moment;
    m_hasUncheckpointedWrites = true;
    if (m_isShortOfSpace) {
        m_connection.execute("PRAGMA wal_checkpoint(TRUNCATE)");
    }
    m_connection.forgetFailure();
    if (waiting.change()) {
        return Attempt::Stored;
    }
    if (hasPassingFailure()) {
        // The log may be what fills the disk: the next attempt brings it in first.
        m_isShortOfSpace = m_isShortOfSpace || m_connection.failure()->code == SQLITE_FULL;
        return Attempt::Postponed;
    }
    if (!m_connection.failure() || !m_journal.isWriting()) {
        return Attempt::Refused;
    }
    // The journal may be what is at fault, and no change is lost for its sake.
    const QString reason = m_connection.failureMessage();
    m_journal.end();
    if (makeAgain(waiting.change)) {
        log::error(u"The board journal is given up for this run: " + reason);
        return Attempt::Stored;
    }
    const bool isPostponed = hasPassingFailure();
    m_journal.begin();
    return isPostponed ? Attempt::Postponed : Attempt::Refused;
}

bool Database::makeAgain(const Change &change)
{
    m_connection.forgetFailure();
    return change();
}

bool Database::hasPassingFailure() const
{
    if (!m_connection.failure()) {
        return false;
    }
    switch (m_connection.failure()->code) {
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_NOMEM:
    case SQLITE_CANTOPEN:
    case SQLITE_PROTOCOL:
        return true;
    case SQLITE_READONLY:
        return !m_isReadOnly;
    default:
        return false;
    }
}

void Database::reportWriteFailure(Attempt result)
{
    if (result == Attempt::Postponed && !std::exchange(m_hasToldOfPostponed, true)) {
        report(StorageProblem::Kind::WriteFailed,
               tr("Changes cannot be saved to %1: %2. They are kept and saved as soon as that is possible.")
                   .arg(m_path, failureReason()),
               false);
    }
    if (result == Attempt::Refused && m_connection.failure() && !m_hasToldOfRefused) {
        report(StorageProblem::Kind::WriteFailed,
               tr("A change could not be saved to %1: %2.").arg(m_path, failureReason()), true);
    }
}

std::optional<std::chrono::milliseconds> Database::workWhenIdle()
{
    m_listener.becameIdle();
    if (!isOpen()) {
        return std::nullopt;
    }
    if (writeBacklog() == Attempt::Postponed) {
        return PauseBeforeRetry;
    }
    m_isShortOfSpace = false;
    if (std::exchange(m_hasUncheckpointedWrites, false)) {
        m_connection.execute("PRAGMA wal_checkpoint(PASSIVE)");
    }
    return std::nullopt;
}

void Database::report(StorageProblem::Kind kind, const QString &message, bool isPermanent)
{
    m_listener.problemFound({kind, message, m_connection.failureMessage(), isPermanent});
}

QString Database::failureReason() const
{
    const std::optional<SqliteFailure> &failure = m_connection.failure();
    switch (failure ? failure->code : SQLITE_OK) {
    case SQLITE_FULL:
        return tr("the disk is full");
    case SQLITE_READONLY:
        return tr("the file cannot be written to");
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return tr("another program is using the file");
    case SQLITE_IOERR:
        return tr("the disk reports an error");
    default:
        return m_connection.failureMessage();
    }
}

} // namespace vantrel
