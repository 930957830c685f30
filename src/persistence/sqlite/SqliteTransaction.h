#pragma once

#include "persistence/sqlite/SqliteConnection.h"

namespace vantrel {

/**
 * Takes the database for writing, and undoes what was written unless commit() succeeds. Within another one it
 * is a part of that, which alone commits or undoes all of it.
 *
 * SQLite has already rolled back by itself after some failures, as on a full disk; that is no second failure.
 */
class SqliteTransaction
{
public:
    explicit SqliteTransaction(SqliteConnection &connection)
        : m_connection(connection),
          m_isPart(!connection.isAutocommit()),
          m_hasBegun(m_isPart || connection.execute("BEGIN IMMEDIATE TRANSACTION"))
    {
    }
    ~SqliteTransaction()
    {
        if (m_hasBegun && !m_isPart && !m_connection.isAutocommit()) {
            m_connection.execute("ROLLBACK");
        }
    }
    Q_DISABLE_COPY_MOVE(SqliteTransaction)

    /** False if the database could not be taken; nothing may be written then. */
    bool hasBegun() const { return m_hasBegun; }
    bool commit() { return m_isPart || m_connection.execute("COMMIT"); }

private:
    SqliteConnection &m_connection;
    bool m_isPart;
    bool m_hasBegun;
};

/** Makes several queries see one and the same moment of the database. */
class SqliteSnapshot
{
public:
    explicit SqliteSnapshot(SqliteConnection &connection) : m_connection(connection)
    {
        m_connection.execute("BEGIN");
    }
    ~SqliteSnapshot()
    {
        if (!m_connection.isAutocommit()) {
            m_connection.execute("COMMIT");
        }
    }
    Q_DISABLE_COPY_MOVE(SqliteSnapshot)

private:
    SqliteConnection &m_connection;
};

} // namespace vantrel
