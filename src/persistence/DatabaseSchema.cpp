#include "persistence/DatabaseSchema.h"

#include "foundations/Log.h"
#include "persistence/sqlite/SqliteConnection.h"

#include <algorithm>
#include <array>

namespace vantrel {

namespace {

constexpr auto CreateTaskPositions =
    "CREATE TABLE IF NOT EXISTS taskPositions (id TEXT PRIMARY KEY, columnId TEXT NOT NULL, position INTEGER "
    "NOT NULL, lastUpdated REAL NOT NULL, stableColumnId TEXT, swimLaneId TEXT, stableSwimLaneId TEXT, "
    "isBlocked INTEGER DEFAULT 0, blockReason TEXT);";

constexpr auto CreateEisenhowerAssignments =
    "CREATE TABLE IF NOT EXISTS eisenhowerAssignments (id TEXT PRIMARY KEY, priority TEXT NOT NULL, "
    "lastUpdated REAL NOT NULL);";

constexpr auto CreatePlainTextTasks =
    "CREATE TABLE IF NOT EXISTS plainTextTasks (id TEXT PRIMARY KEY, name TEXT NOT NULL, note TEXT, "
    "creationDate REAL NOT NULL, modificationDate REAL NOT NULL, dueDate REAL, deferDate REAL, "
    "completionDate REAL, isFlagged INTEGER DEFAULT 0, isComplete INTEGER DEFAULT 0, projectName TEXT, "
    "projectId TEXT, tagName TEXT, tagId TEXT, hashtags TEXT, originalText TEXT);";

/** May be lost at any time, and is not missed by hasTables(). */
constexpr auto CreateFileCache =
    "CREATE TABLE IF NOT EXISTS fileCache (path BLOB PRIMARY KEY, inode INTEGER "
    "NOT NULL, size INTEGER NOT NULL, modified INTEGER NOT NULL, content BLOB NOT "
    "NULL) WITHOUT ROWID;";

void createTable(SqliteConnection &connection, const char *sql, const QString &success,
                 const QString &failure)
{
    if (connection.execute(sql)) {
        log::info(success);
    } else {
        log::error(failure);
    }
}

void addColumn(SqliteConnection &connection, const char *sql, const QString &success, const QString &failure)
{
    if (connection.execute(sql)) {
        log::info(success);
    } else {
        log::warning(failure);
    }
}

/** Databases of the first versions lack the last two columns of plainTextTasks. */
void migrateDatabase(SqliteConnection &connection)
{
    log::info(QStringLiteral("Checking if database needs migration..."));
    bool hasHashtags = false;
    bool hasOriginalText = false;
    {
        SqliteStatement columns = connection.prepare("PRAGMA table_info(plainTextTasks);");
        while (columns.step()) {
            const QString name = columns.text(1);
            hasHashtags = hasHashtags || name == u"hashtags";
            hasOriginalText = hasOriginalText || name == u"originalText";
        }
    }
    if (hasHashtags && hasOriginalText) {
        log::info(QStringLiteral("Database schema is up to date, no migration needed"));
        return;
    }
    log::info(QStringLiteral("Database needs migration to add new columns"));
    if (!hasHashtags) {
        addColumn(connection, "ALTER TABLE plainTextTasks ADD COLUMN hashtags TEXT;",
                  QStringLiteral("Added hashtags column to plainTextTasks table"),
                  QStringLiteral("Failed to add hashtags column (it might already exist)"));
    }
    if (!hasOriginalText) {
        addColumn(connection, "ALTER TABLE plainTextTasks ADD COLUMN originalText TEXT;",
                  QStringLiteral("Added originalText column to plainTextTasks table"),
                  QStringLiteral("Failed to add originalText column (it might already exist)"));
    }
    log::info(QStringLiteral("Database migration completed"));
}

} // namespace

void createTables(SqliteConnection &connection)
{
    createTable(connection, CreateTaskPositions,
                QStringLiteral("Task positions database initialized successfully"),
                QStringLiteral("Failed to initialize task positions database"));
    createTable(connection, CreateEisenhowerAssignments,
                QStringLiteral("Eisenhower assignments database initialized successfully"),
                QStringLiteral("Failed to initialize Eisenhower assignments database"));
    createTable(connection, CreatePlainTextTasks,
                QStringLiteral("Plain text tasks database initialized successfully"),
                QStringLiteral("Failed to initialize plain text tasks database"));
    createTable(connection, CreateFileCache, QStringLiteral("File cache initialized successfully"),
                QStringLiteral("Failed to initialize file cache"));
    migrateDatabase(connection);
}

bool hasTables(SqliteConnection &connection)
{
    constexpr std::array probes{"SELECT id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
                                "stableSwimLaneId, isBlocked, "
                                "blockReason FROM taskPositions LIMIT 0",
                                "SELECT id, priority, lastUpdated FROM eisenhowerAssignments LIMIT 0",
                                "SELECT id, name, note, creationDate, modificationDate, dueDate, deferDate, "
                                "completionDate, isFlagged, "
                                "isComplete, projectName, projectId, tagName, tagId, hashtags, originalText "
                                "FROM plainTextTasks LIMIT 0"};
    connection.forgetFailure();
    return std::all_of(probes.begin(), probes.end(),
                       [&](const char *probe) { return connection.execute(probe); });
}

} // namespace vantrel
