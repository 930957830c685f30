#pragma once

#include "foundations/Date.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

namespace vantrel {

class Database;

/**
 * The block columns of `taskPositions`: which tasks are blocked, and why. Owned by PersistenceManager; every
 * operation is for jobs of the database's queue.
 */
class BlockStore
{
public:
    BlockStore(Database &database, const QSet<QString> &deletedTasks)
        : m_database(database), m_deletedTasks(deletedTasks)
    {
    }

    /** A blocked task without a row gets one without a place; unblocking such a task is no failure. */
    bool setTaskBlocked(const QString &taskId, bool isBlocked, const std::optional<QString> &reason,
                        Date now);
    std::optional<QSet<QString>> blockedTaskIds();
    std::optional<QHash<QString, QString>> blockReasons();

private:
    std::optional<bool> hasRow(const QString &taskId);

    Database &m_database;
    const QSet<QString> &m_deletedTasks;
};

} // namespace vantrel
