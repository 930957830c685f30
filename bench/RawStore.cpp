#include "RawStore.h"

#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace vantrel::bench {

namespace {

void require(int code, sqlite3 *db)
{
    if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW) {
        std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(db));
        std::exit(1);
    }
}

sqlite3_stmt *prepare(sqlite3 *db, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    require(sqlite3_prepare_v2(db, sql, -1, &statement, nullptr), db);
    return statement;
}

void bindText(sqlite3_stmt *statement, int index, const std::string &text)
{
    sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

std::string textAt(sqlite3_stmt *statement, int column)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return text ? std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column)))
                : std::string();
}

constexpr const char *Upsert =
    "INSERT INTO taskPositions (id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
    "stableSwimLaneId, "
    "isBlocked, blockReason) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT(id) DO UPDATE SET "
    "columnId=excluded.columnId, position=excluded.position, lastUpdated=excluded.lastUpdated, "
    "stableColumnId=excluded.stableColumnId, swimLaneId=excluded.swimLaneId, "
    "stableSwimLaneId=excluded.stableSwimLaneId, isBlocked=excluded.isBlocked, "
    "blockReason=excluded.blockReason";

struct Row
{
    std::string id, columnId, stableColumnId, swimLaneId, stableSwimLaneId, blockReason;
    long long position;
    double lastUpdated;
    int isBlocked;
};

} // namespace

RawStore::RawStore(const QString &path)
{
    require(sqlite3_open(path.toUtf8().constData(), &m_db), m_db);
    execute("PRAGMA journal_mode=WAL");
    execute("PRAGMA synchronous=FULL");
    execute("PRAGMA busy_timeout=5000");
    execute("PRAGMA cache_size=-65536");
}

RawStore::~RawStore()
{
    sqlite3_close(m_db);
}

void RawStore::execute(const char *sql)
{
    require(sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr), m_db);
}

void RawStore::fill(int tasks, const QStringList &columns, const QStringList &swimLanes)
{
    execute("DELETE FROM plainTextTasks");
    execute("DELETE FROM taskPositions");
    m_count = 0;
    insert(tasks, columns, swimLanes);
    execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

void RawStore::insert(int tasks, const QStringList &columns, const QStringList &swimLanes)
{
    execute("BEGIN IMMEDIATE");
    sqlite3_stmt *task = prepare(
        m_db,
        "INSERT INTO plainTextTasks (id, name, note, creationDate, modificationDate, dueDate, isFlagged, "
        "isComplete, projectName, projectId, tagName, tagId, hashtags, originalText) VALUES (?, ?, ?, ?, ?, "
        "?, "
        "?, ?, ?, ?, ?, ?, ?, ?)");
    sqlite3_stmt *place = prepare(m_db, Upsert);
    const int cells = static_cast<int>(columns.size() * swimLanes.size());
    for (const int end = m_count + tasks; m_count < end; ++m_count) {
        const int i = m_count;
        const QString id = QStringLiteral("plaintext-%1-0000-4000-8000-%2")
                               .arg(i * 2654435761u, 8, 16, QLatin1Char('0'))
                               .arg(i, 12, 10, QLatin1Char('0'))
                               .toUpper()
                               .replace(QStringLiteral("PLAINTEXT"), QStringLiteral("plaintext"));
        const int column = i % static_cast<int>(columns.size());
        const QString name = QStringLiteral("Task number %1 with a few words").arg(i);
        const bool isDone = column == static_cast<int>(columns.size()) - 1;
        bindText(task, 1, id.toStdString());
        bindText(task, 2, name.toStdString());
        bindText(task, 3,
                 i % 3 == 0 ? "A note of some length, as people write them beside their tasks." : "");
        sqlite3_bind_double(task, 4, 815000000.0 + i);
        sqlite3_bind_double(task, 5, 815000000.0 + i);
        if (i % 5 < 2) {
            sqlite3_bind_double(task, 6, 816000000.0 + i);
        } else {
            sqlite3_bind_null(task, 6);
        }
        sqlite3_bind_int(task, 7, i % 17 == 0);
        sqlite3_bind_int(task, 8, isDone);
        bindText(task, 9, "Website");
        bindText(task, 10, "Website");
        bindText(task, 11, "code");
        bindText(task, 12, "tag-code");
        bindText(task, 13, "[\"code\"]");
        bindText(task, 14, "- [ ] " + name.toStdString() + " #code");
        require(sqlite3_step(task), m_db);
        sqlite3_reset(task);

        const int lane = i / static_cast<int>(columns.size()) % static_cast<int>(swimLanes.size());
        bindText(place, 1, id.toStdString());
        bindText(place, 2, columns.at(column).toStdString());
        sqlite3_bind_int64(place, 3, i / cells);
        sqlite3_bind_double(place, 4, 815000000.0);
        bindText(place, 5, QStringLiteral("stable_column_%1").arg(column).toStdString());
        bindText(place, 6, swimLanes.at(lane).toStdString());
        bindText(place, 7,
                 lane == 0 ? "default_swimlane" : QStringLiteral("lane_%1").arg(lane).toStdString());
        sqlite3_bind_int(place, 8, 0);
        bindText(place, 9, "");
        require(sqlite3_step(place), m_db);
        sqlite3_reset(place);
    }
    sqlite3_finalize(task);
    sqlite3_finalize(place);
    execute("COMMIT");
}

void RawStore::readAndUpsertAll()
{
    long long bytes = 0;
    sqlite3_stmt *tasks = prepare(m_db, "SELECT * FROM plainTextTasks");
    while (sqlite3_step(tasks) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(tasks); ++column) {
            bytes += sqlite3_column_bytes(tasks, column);
        }
    }
    sqlite3_finalize(tasks);

    std::vector<Row> rows;
    sqlite3_stmt *places =
        prepare(m_db, "SELECT id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
                      "stableSwimLaneId, isBlocked, blockReason FROM taskPositions");
    while (sqlite3_step(places) == SQLITE_ROW) {
        rows.push_back({textAt(places, 0), textAt(places, 1), textAt(places, 4), textAt(places, 5),
                        textAt(places, 6), textAt(places, 8), sqlite3_column_int64(places, 2),
                        sqlite3_column_double(places, 3), sqlite3_column_int(places, 7)});
    }
    sqlite3_finalize(places);

    execute("BEGIN IMMEDIATE");
    sqlite3_stmt *upsert = prepare(m_db, Upsert);
    for (const Row &row : rows) {
        bindText(upsert, 1, row.id);
        bindText(upsert, 2, row.columnId);
        sqlite3_bind_int64(upsert, 3, row.position);
        sqlite3_bind_double(upsert, 4, row.lastUpdated + 1.0);
        bindText(upsert, 5, row.stableColumnId);
        bindText(upsert, 6, row.swimLaneId);
        bindText(upsert, 7, row.stableSwimLaneId);
        sqlite3_bind_int(upsert, 8, row.isBlocked);
        bindText(upsert, 9, row.blockReason);
        require(sqlite3_step(upsert), m_db);
        sqlite3_reset(upsert);
    }
    sqlite3_finalize(upsert);
    execute("COMMIT");
    if (bytes == 0) {
        std::fprintf(stderr, "the raw program read nothing\n");
        std::exit(1);
    }
}

void RawStore::commitOne(int position)
{
    execute("BEGIN IMMEDIATE");
    const std::string sql = "UPDATE taskPositions SET position = " + std::to_string(position) +
                            " WHERE id = (SELECT id FROM taskPositions LIMIT 1)";
    execute(sql.c_str());
    execute("COMMIT");
}

} // namespace vantrel::bench
