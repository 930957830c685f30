#pragma once

#include <QString>

#include <sqlite3.h>

namespace vantrel::bench {

/**
 * The floor: a program of bare SQLite on the program's own database file, with nothing but prepared
 * statements. Reads both tables and writes all placements back.
 */
class RawStore
{
public:
    explicit RawStore(const QString &path);
    ~RawStore();
    RawStore(const RawStore &) = delete;
    RawStore &operator=(const RawStore &) = delete;

    void execute(const char *sql);
    /** Fills the tables with `tasks` plain text tasks, spread over the cells of the board's stored shape. */
    void fill(int tasks, const QStringList &columns, const QStringList &swimLanes);
    /** Adds tasks in one transaction. */
    void insert(int tasks, const QStringList &columns, const QStringList &swimLanes);
    /** SELECT of both tables, every column touched, and an upsert of every placement in one transaction. */
    void readAndUpsertAll();
    /** One commit of one row. */
    void commitOne(int position);

private:
    sqlite3 *m_db = nullptr;
    int m_count = 0;
};

} // namespace vantrel::bench
