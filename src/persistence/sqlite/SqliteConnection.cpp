#include "persistence/sqlite/SqliteConnection.h"

#include <sqlite3.h>

namespace vantrel {

namespace {

/** SQLite's count of its memory costs a lock for each allocation, and nobody looks at it. */
void configureOnce()
{
    static const int done = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    static_cast<void>(done);
}

} // namespace

bool SqliteConnection::open(const QString &path, const QByteArray &vfsName)
{
    configureOnce();
    close();
    forgetFailure();
    const int code = sqlite3_open_v2(path.toUtf8().constData(), &m_handle,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX |
                                         SQLITE_OPEN_EXRESCODE,
                                     vfsName.isEmpty() ? nullptr : vfsName.constData());
    if (code != SQLITE_OK) {
        noteFailure();
        close();
        return false;
    }
    return true;
}

void SqliteConnection::close()
{
    for (const auto &[sql, statement] : m_statements) {
        sqlite3_finalize(statement);
    }
    m_statements.clear();
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
}

SqliteStatement SqliteConnection::prepare(const char *sql)
{
    const auto kept = m_statements.find(sql);
    if (kept != m_statements.end()) {
        return SqliteStatement(*this, kept->second);
    }
    sqlite3_stmt *statement = nullptr;
    if (!m_handle ||
        sqlite3_prepare_v3(m_handle, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK) {
        noteFailure();
        return SqliteStatement(*this, nullptr);
    }
    m_statements.emplace(sql, statement);
    return SqliteStatement(*this, statement);
}

bool SqliteConnection::execute(const char *sql)
{
    SqliteStatement statement = prepare(sql);
    while (statement.step()) {
    }
    return !statement.hasFailed();
}

bool SqliteConnection::isAutocommit() const
{
    return !m_handle || sqlite3_get_autocommit(m_handle) != 0;
}

std::optional<SqliteConnection::ContentMark> SqliteConnection::contentMark()
{
    // The pragma tells of the commits of others only, the count of changes of this connection's only.
    SqliteStatement version = prepare("PRAGMA data_version");
    return version.step() ? std::optional(ContentMark(version.integer(0), sqlite3_total_changes64(m_handle)))
                          : std::nullopt;
}

void SqliteConnection::noteFailure()
{
    if (!m_failure) {
        constexpr int primaryCodeMask = 0xFF;
        m_failure = SqliteFailure{sqlite3_errcode(m_handle) & primaryCodeMask,
                                  QString::fromUtf8(sqlite3_errmsg(m_handle))};
    }
}

} // namespace vantrel
