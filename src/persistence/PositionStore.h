#pragma once

#include "foundations/TaskPosition.h"
#include "persistence/PlaceFilter.h"
#include "persistence/PositionRows.h"
#include "persistence/sqlite/SqliteConnection.h"

#include <QSet>
#include <QStringList>

#include <vector>

namespace vantrel {

class Database;

/**
 * The table `taskPositions`: where tasks stand. Owned by PersistenceManager; every operation is for jobs of
 * the database's queue. Reads give nothing if they fail; writes tell whether all is stored.
 */
class PositionStore
{
public:
    /** Rows of `deletedTasks` are not written any more. */
    PositionStore(Database &database, const QSet<QString> &deletedTasks)
        : m_database(database), m_deletedTasks(deletedTasks)
    {
    }

    /** Ordered by column, then position. Asked again with nothing written meanwhile, it reads nothing. */
    std::optional<std::vector<PersistentTaskPosition>> loadAll();
    /** The row of one task; nothing if it has none either. */
    std::optional<PersistentTaskPosition> load(const QString &taskId);
    /** Gives back the memory that a quick second loadAll() would profit from. */
    void forgetLastRead() { m_lastRead.reset(); }
    /** Ordered and, if there are gaps or ties, renumbered from 0, in the store too. */
    std::optional<std::vector<PersistentTaskPosition>>
    loadAndRepair(const PlaceFilter &filter, ColumnId columnId, std::optional<SwimLaneId> swimLaneId);
    std::optional<SwimLaneId> defaultSwimLaneId();

    /** Saves the place and checks that it is there; the block stays that of the stored row. */
    bool save(const PersistentTaskPosition &row);
    /** Saves whole rows, all or none. */
    bool saveRows(const std::vector<PersistentTaskPosition> &rows, qsizetype countForLog);
    /** Saves places, all or none; the blocks stay those of the stored rows. */
    bool savePlaces(const std::vector<PersistentTaskPosition> &rows);
    /** Puts the tasks behind the `filter`'s last one; `row` says all but the task. Gives the first position.
     */
    std::optional<int> append(const QStringList &taskIds, const PersistentTaskPosition &row,
                              const PlaceFilter &filter);
    bool remove(const QStringList &taskIds);
    bool removeColumn(ColumnId columnId);
    bool moveColumn(ColumnId from, ColumnId to, const QString &stableId, Date now);
    bool moveSwimLane(SwimLaneId from, SwimLaneId to, const QString &stableId, Date now);

private:
    struct LastRead
    {
        SqliteConnection::ContentMark mark;
        std::vector<PersistentTaskPosition> rows;
    };

    SqliteConnection &connection();
    std::optional<std::vector<PersistentTaskPosition>> readAll();
    bool saveBatch(const std::vector<PersistentTaskPosition> &rows, qsizetype countForLog,
                   PositionRowWriter::Content content);
    bool repair(std::vector<PersistentTaskPosition> &rows);
    void logStoredPlace(const PersistentTaskPosition &row);
    std::optional<int> nextPosition(const PlaceFilter &filter);
    bool verify(const PersistentTaskPosition &row);
    bool exists(const QString &taskId);
    bool removeOne(const QString &taskId);

    Database &m_database;
    const QSet<QString> &m_deletedTasks;
    std::optional<LastRead> m_lastRead;
};

} // namespace vantrel
