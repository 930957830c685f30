#include "foundations/Log.h"
#include "persistence/Database.h"
#include "persistence/DatabaseSchema.h"

#include <QFile>
#include <QRegularExpression>

#include <sqlite3.h>

namespace vantrel {

using namespace Qt::StringLiterals;

namespace {

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

void Database::open(Date now)
{
    log::debug(QStringLiteral("### --------------- ###"));
    log::debug(QStringLiteral("### Vantrel started ###"));
    log::debug(QStringLiteral("### --------------- ###"));
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
    m_isReadOnly = sqlite3_db_readonly(m_connection.handle(), "main") == 1;
    if (m_isReadOnly) {
        report(StorageProblem::Kind::FolderNotWritable,
               tr("%1 cannot be written to. Changes last only until the program ends.").arg(m_path), true);
    }
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
