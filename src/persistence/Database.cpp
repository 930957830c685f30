#include "persistence/Database.h"

#include "foundations/Log.h"
#include "persistence/DatabaseSchema.h"

#include <QFile>
#include <QRegularExpression>

#include <sqlite3.h>

#include <array>
#include <utility>

namespace vantrel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds QuietBeforeIdleWork{300};
constexpr std::chrono::seconds PauseBeforeRetry{5};
constexpr int BusyTimeoutMilliseconds = 5000;

/** True if a finding of quick_check tells of a disk that did not answer rather than of a damaged file. */
bool hasReadFailure(const QString &finding)
{
    static const QRegularExpression unreadPage(
        u"unable to get the page. error code=(\\d+)|failed to get page"_s);
    for (auto matches = unreadPage.globalMatch(finding); matches.hasNext();) {
        constexpr int primaryCodeMask = 0xFF;
        const int code = matches.next().captured(1).toInt() & primaryCodeMask;
        if (code != SQLITE_CORRUPT && code != SQLITE_NOTADB) {
            return true;
        }
    }
    return false;
}

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

void Database::open(Date now)
{
    close();
    m_moment = now;
    Health health = openConnection();
    if (health == Health::Unreadable) {
        health = openConnection();
    }
    if (health == Health::Damaged) {
        log::error(u"The database is damaged: " + m_connection.failureMessage());
        health = moveDamagedFileAside(now) ? openConnection() : Health::Unreadable;
    }
    if (health == Health::Sound) {
        configure();
        createTables(m_connection);
    }
    if (health != Health::Sound || !hasTables(m_connection)) {
        log::error(u"Failed to open SQLite database: " + m_connection.failureMessage());
        report(StorageProblem::Kind::DatabaseNotOpened,
               tr("%1 could not be opened: %2. Nothing is saved until the program is started again.")
                   .arg(m_path, failureReason()),
               true);
        m_connection.close();
        return;
    }
    m_journal.begin();
}

Database::Health Database::openConnection()
{
    if (!m_connection.open(m_path, m_vfsName)) {
        return Health::Unreadable;
    }
    sqlite3_busy_timeout(m_connection.handle(), BusyTimeoutMilliseconds);
    return check();
}

Database::Health Database::check()
{
    // Only what the board cannot do without: the journal grows for years, and may be lost.
    SqliteStatement check =
        m_connection.prepare("SELECT quick_check FROM sqlite_schema, pragma_quick_check(name) "
                             "WHERE type = 'table' AND name IN ('taskPositions', "
                             "'eisenhowerAssignments', 'plainTextTasks')");
    while (check.step()) {
        if (const QString finding = check.text(0); finding != u"ok") {
            m_connection.fail({hasReadFailure(finding) ? SQLITE_IOERR : SQLITE_CORRUPT, finding});
            break;
        }
    }
    if (!m_connection.failure()) {
        return Health::Sound;
    }
    const int code = m_connection.failure()->code;
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB ? Health::Damaged : Health::Unreadable;
}

bool Database::moveDamagedFileAside(Date now)
{
    // What the log file of SQLite still holds belongs to the evidence and must not be written back.
    sqlite3_db_config(m_connection.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    m_connection.close();
    const QString aside = siblingPath(u"damaged", now);
    if (!QFile::rename(m_path, aside)) {
        return false;
    }
    for (const QStringView suffix : {u"-wal", u"-shm", u"-journal"}) {
        QFile::rename(m_path + suffix, aside + suffix);
    }
    report(StorageProblem::Kind::DatabaseDamaged,
           tr("%1 is damaged. It is kept as %2, and a new one has been begun.").arg(m_path, aside), true);
    return true;
}

void Database::configure()
{
    if (!m_connection.execute("PRAGMA foreign_keys = ON;")) {
        log::warning(QStringLiteral("Failed to enable foreign keys"));
    }
    // Every commit is on the disk before it counts as done. EXTRA, set before the change to WAL, also keeps
    // the journal of that change from coming back after a power cut; with WAL it is what FULL is. What the
    // log of SQLite has gathered is brought into the database when nobody waits, and within a write only if
    // there was no pause for very long.
    for (const char *pragma : {"PRAGMA synchronous = EXTRA", "PRAGMA journal_mode = WAL",
                               "PRAGMA cache_size = -65536", "PRAGMA temp_store = MEMORY",
                               "PRAGMA wal_autocheckpoint = 16384", "PRAGMA journal_size_limit = 4194304"}) {
        m_connection.execute(pragma);
    }
    if (sqlite3_db_readonly(m_connection.handle(), "main") == 1) {
        report(StorageProblem::Kind::FolderNotWritable,
               tr("%1 cannot be written to. Changes last only until the program ends.").arg(m_path), true);
    }
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
            static constexpr std::array typeNames{"null", "string", "int", "double", "date"};
            log::error(u"Failed to bind " + QLatin1StringView(typeNames.at(parameter.index())) +
                       u" parameter: " + m_connection.failureMessage());
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
    if (result == Attempt::Refused && m_connection.failure()) {
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

std::optional<QString> Database::backUp(Date now)
{
    if (m_backupPath) {
        return m_backupPath;
    }
    const QString path = siblingPath(u"backup", now);
    SqliteConnection copy;
    if (!isOpen() || !copy.open(path, m_vfsName)) {
        return std::nullopt;
    }
    sqlite3_backup *backup = sqlite3_backup_init(copy.handle(), "main", m_connection.handle(), "main");
    constexpr int allPages = -1;
    const bool isCopied = sqlite3_backup_step(backup, allPages) == SQLITE_DONE;
    const bool isFinished = sqlite3_backup_finish(backup) == SQLITE_OK;
    copy.close();
    if (!isCopied || !isFinished) {
        log::error(u"The database could not be copied to " + path);
        QFile::remove(path);
        return std::nullopt;
    }
    m_backupPath = path;
    return path;
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

QString Database::siblingPath(QStringView label, Date now) const
{
    const QString stem =
        m_path + u'.' + label + u'-' + now.toDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString path = stem;
    for (int attempt = 2; QFile::exists(path); ++attempt) {
        path = stem + u'-' + QString::number(attempt);
    }
    return path;
}

} // namespace vantrel
