#pragma once

#include "persistence/sqlite/SqliteStatement.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <string>
#include <utility>

struct sqlite3;

namespace vantrel {

/** Why SQLite refused something. */
struct SqliteFailure
{
    /** Primary result code, as SQLITE_FULL. */
    int code = 0;
    QString message;
};

/**
 * One connection to one database file, with its statements, each prepared once and kept. Closed when it goes.
 * Used on one thread; owned by Database.
 */
class SqliteConnection
{
public:
    SqliteConnection() = default;
    ~SqliteConnection() { close(); }
    Q_DISABLE_COPY_MOVE(SqliteConnection)

    /** Opens or makes the file; an empty `vfsName` is SQLite's default. False leaves a failure(). */
    bool open(const QString &path, const QByteArray &vfsName = {});
    bool isOpen() const { return m_handle != nullptr; }
    void close();

    /** The kept statement for `sql`, ready to be bound; not usable again before the one given is gone. */
    SqliteStatement prepare(const char *sql);
    /** Runs one statement and passes over any rows. */
    bool execute(const char *sql);
    /** True outside of a transaction. */
    bool isAutocommit() const;

    using ContentMark = std::pair<qint64, qint64>;
    /** Differs from an earlier one if anything may have been written since, by whatever connection. */
    std::optional<ContentMark> contentMark();

    /** The first failure since forgetFailure(): what follows it, as a rollback, does not hide it. */
    const std::optional<SqliteFailure> &failure() const { return m_failure; }
    void forgetFailure() { m_failure.reset(); }
    /** Notes a failure that SQLite told of in a result. */
    void fail(SqliteFailure failure) { m_failure = std::move(failure); }
    QString failureMessage() const { return m_failure ? m_failure->message : QString(); }

    sqlite3 *handle() const { return m_handle; }

private:
    friend class SqliteStatement;
    void noteFailure();

    sqlite3 *m_handle = nullptr;
    std::map<std::string, sqlite3_stmt *, std::less<>> m_statements;
    std::optional<SqliteFailure> m_failure;
};

} // namespace vantrel
