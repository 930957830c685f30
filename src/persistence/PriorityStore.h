#pragma once

#include "foundations/WorkItem.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace vantrel {

class Database;

/**
 * The table `eisenhowerAssignments`: the quadrant of each task that has one. Owned by PersistenceManager;
 * every operation is for jobs of the database's queue.
 */
class PriorityStore
{
public:
    explicit PriorityStore(Database &database) : m_database(database) {}

    bool save(const QString &taskId, EisenhowerPriority priority, Date now);
    /** All or none. */
    bool remove(const QStringList &taskIds);
    /** Rows with an unknown quadrant are left out. */
    std::optional<QHash<QString, EisenhowerPriority>> loadAll();

private:
    Database &m_database;
};

} // namespace vantrel
