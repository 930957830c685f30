#include "persistence/PriorityStore.h"

#include "foundations/Log.h"
#include "persistence/Database.h"
#include "persistence/sqlite/SqliteTransaction.h"

namespace vantrel {

namespace {
constexpr auto Upsert = "INSERT INTO eisenhowerAssignments (id, priority, lastUpdated) VALUES (?, ?, ?) ON "
                        "CONFLICT(id) DO UPDATE "
                        "SET priority = excluded.priority, lastUpdated = excluded.lastUpdated";
constexpr auto Delete = "DELETE FROM eisenhowerAssignments WHERE id = ?";
constexpr auto SelectAll = "SELECT id, priority FROM eisenhowerAssignments";
} // namespace

bool PriorityStore::save(const QString &taskId, EisenhowerPriority priority, Date now)
{
    const bool isDone = m_database.executeSQL(Upsert, {taskId, rawValue(priority), now});
    if (isDone) {
        log::info(u"Successfully saved Eisenhower priority for task " + taskId);
    } else {
        log::error(u"Failed to save Eisenhower priority for task " + taskId);
    }
    return isDone;
}

bool PriorityStore::remove(const QStringList &taskIds)
{
    SqliteTransaction transaction(m_database.connection());
    if (!transaction.hasBegun()) {
        return false;
    }
    for (const QString &taskId : taskIds) {
        if (!m_database.executeSQL(Delete, {taskId})) {
            log::error(u"Failed to delete Eisenhower priority for task " + taskId);
            return false;
        }
        log::info(u"Successfully deleted Eisenhower priority for task " + taskId);
    }
    return transaction.commit();
}

std::optional<QHash<QString, EisenhowerPriority>> PriorityStore::loadAll()
{
    QHash<QString, EisenhowerPriority> priorities;
    SqliteStatement query = m_database.connection().prepare(SelectAll);
    while (query.step()) {
        if (const auto priority = eisenhowerPriorityFromRawValue(query.text(1))) {
            priorities.insert(query.text(0), *priority);
        }
    }
    return query.hasFailed() ? std::nullopt : std::optional(std::move(priorities));
}

} // namespace vantrel
