#include "persistence/BlockStore.h"

#include "foundations/Log.h"
#include "persistence/Database.h"

namespace vantrel {

namespace {
constexpr auto SelectRow = "SELECT id FROM taskPositions WHERE id = ?";
constexpr auto UpdateBlock = "UPDATE taskPositions SET isBlocked = ?, blockReason = ? WHERE id = ?";
constexpr auto InsertBlocked = "INSERT INTO taskPositions (id, columnId, position, lastUpdated, isBlocked, "
                               "blockReason) VALUES (?, ?, ?, ?, ?, ?)";
constexpr auto SelectBlocked = "SELECT id FROM taskPositions WHERE isBlocked = 1";
constexpr auto SelectReasons =
    "SELECT id, blockReason FROM taskPositions WHERE isBlocked = 1 AND blockReason "
    "IS NOT NULL AND blockReason != ''";
/** Stands for the place that a blocked task does not have yet. */
constexpr qint64 NoPosition = -1;
} // namespace

bool BlockStore::setTaskBlocked(const QString &taskId, bool isBlocked, const std::optional<QString> &reason,
                                Date now)
{
    if (m_deletedTasks.contains(taskId)) {
        return true;
    }
    log::info(u"💾 Setting task " + taskId + u" blocked status to " + (isBlocked ? u"true" : u"false") +
              u" in SQLite");
    const std::optional<bool> rowExists = hasRow(taskId);
    if (!rowExists) {
        log::error(u"Failed to update blocked status for task " + taskId + u" in SQLite");
        return false;
    }
    const QString storedReason = reason.value_or(QString());
    if (*rowExists) {
        const bool isDone = m_database.executeSQL(UpdateBlock, {qint64(isBlocked), storedReason, taskId});
        if (isDone) {
            log::info(u"Successfully updated blocked status for task " + taskId + u" in SQLite");
        } else {
            log::error(u"Failed to update blocked status for task " + taskId + u" in SQLite");
        }
        return isDone;
    }
    if (!isBlocked) {
        log::warning(u"Task " + taskId +
                     u" not found in SQLite database, but we're unblocking it, so returning success");
        return true;
    }
    log::info(u"Creating blocked task entry with: id=" + taskId +
              u", columnId='', position=-1, isBlocked=1, "
              u"blockReason=" +
              storedReason);
    const bool isDone =
        m_database.executeSQL(InsertBlocked, {taskId, QString(), NoPosition, now, qint64(1), storedReason});
    if (isDone) {
        log::info(u"Created new blocked task entry for " + taskId + u" in SQLite");
    } else {
        log::error(u"Failed to create blocked task entry for " + taskId + u" in SQLite");
    }
    return isDone;
}

std::optional<QSet<QString>> BlockStore::blockedTaskIds()
{
    QSet<QString> ids;
    SqliteStatement query = m_database.connection().prepare(SelectBlocked);
    while (query.step()) {
        ids.insert(query.text(0));
    }
    return query.hasFailed() ? std::nullopt : std::optional(std::move(ids));
}

std::optional<QHash<QString, QString>> BlockStore::blockReasons()
{
    QHash<QString, QString> reasons;
    SqliteStatement query = m_database.connection().prepare(SelectReasons);
    while (query.step()) {
        reasons.insert(query.text(0), query.text(1));
    }
    return query.hasFailed() ? std::nullopt : std::optional(std::move(reasons));
}

std::optional<bool> BlockStore::hasRow(const QString &taskId)
{
    SqliteStatement query = m_database.connection().prepare(SelectRow);
    query.bind(1, taskId);
    const bool isFound = query.step();
    return query.hasFailed() ? std::nullopt : std::optional(isFound);
}

} // namespace vantrel
