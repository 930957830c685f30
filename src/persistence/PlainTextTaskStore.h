#pragma once

#include "foundations/PlainTextWorkItem.h"

#include <QSet>

#include <optional>
#include <vector>

namespace vantrel {

class Database;

/**
 * The table `plainTextTasks`: the tasks of the application's own source. Blocks and quadrants are not here.
 * Owned by PersistenceManager; every operation is for jobs of the database's queue.
 */
class PlainTextTaskStore
{
public:
    /** A task that is deleted here is added to `deletedTasks`, and one that is there is not written. */
    PlainTextTaskStore(Database &database, QSet<QString> &deletedTasks)
        : m_database(database), m_deletedTasks(deletedTasks)
    {
    }

    /** Inserts or updates, all or none. Stored creation dates stay; an absent modification date is `now`. */
    bool save(const std::vector<PlainTextRecord> &records, Date now);
    std::optional<std::vector<PlainTextRecord>> loadAll();
    bool remove(const QString &taskId);
    /** Deletes their placements too. */
    bool removeAll();

private:
    bool saveAll(const std::vector<PlainTextRecord> &records, Date now);
    bool saveOne(const PlainTextRecord &record, Date now);
    bool rememberAllAsDeleted();

    Database &m_database;
    QSet<QString> &m_deletedTasks;
};

} // namespace vantrel
