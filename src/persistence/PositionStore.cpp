#include "persistence/PositionStore.h"

#include "foundations/Log.h"
#include "persistence/Database.h"
#include "persistence/sqlite/SqliteTransaction.h"

#include <algorithm>
#include <tuple>

namespace vantrel {

namespace {

constexpr auto CountAll = "SELECT count(*) FROM taskPositions";
constexpr auto SelectDefaultSwimLane =
    "SELECT swimLaneId FROM taskPositions WHERE stableSwimLaneId = 'default_swimlane' AND swimLaneId <> '' "
    "GROUP BY swimLaneId ORDER BY count(*) DESC LIMIT 1";
constexpr auto SelectPlace = "SELECT columnId, stableColumnId, swimLaneId, stableSwimLaneId, isBlocked, "
                             "blockReason FROM taskPositions WHERE id = ?";
constexpr auto SelectForVerification =
    "SELECT columnId, swimLaneId, position FROM taskPositions WHERE id = ?";
constexpr auto CountOfTask = "SELECT COUNT(*) FROM taskPositions WHERE id = ?";
constexpr auto UpdatePosition = "UPDATE taskPositions SET position = ? WHERE id = ?";
constexpr auto DeleteTask = "DELETE FROM taskPositions WHERE id = ?";
constexpr auto DeleteColumn = "DELETE FROM taskPositions WHERE columnId = ?";
constexpr auto MoveColumn =
    "UPDATE taskPositions SET columnId = ?, stableColumnId = ?, lastUpdated = ? WHERE columnId = ?";
constexpr auto MoveSwimLane =
    "UPDATE taskPositions SET swimLaneId = ?, stableSwimLaneId = ?, lastUpdated = ? WHERE swimLaneId = ?";

QString laneText(const std::optional<SwimLaneId> &swimLaneId)
{
    return swimLaneId ? swimLaneId->text() : QString();
}

QString orNone(const std::optional<QString> &text)
{
    return text.value_or(QStringLiteral("none"));
}

/** "({column}, {swimlane}, {position})" */
QString described(const QString &column, const QString &swimLane, qint64 position)
{
    return u'(' + column + u", " + swimLane + u", " + QString::number(position) + u')';
}

/**
 * The rows by the text of their column, then position. SQLite could sort them too, but copies each row whole
 * to do it, which takes as long again as reading them.
 */
std::vector<PersistentTaskPosition> orderedByPlace(std::vector<PersistentTaskPosition> rows)
{
    QHash<ColumnId, QString> columnTexts;
    for (const PersistentTaskPosition &row : rows) {
        QString &text = columnTexts[row.columnId];
        if (text.isEmpty()) {
            text = row.columnId.text();
        }
    }
    QStringList sortedTexts = columnTexts.values();
    sortedTexts.sort();
    QHash<ColumnId, qsizetype> ranks;
    for (const auto &[columnId, text] : columnTexts.asKeyValueRange()) {
        ranks.insert(columnId, sortedTexts.indexOf(text));
    }
    std::vector<std::tuple<qsizetype, int, std::size_t>> order;
    order.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        order.emplace_back(ranks.value(rows[i].columnId), rows[i].position, i);
    }
    std::sort(order.begin(), order.end());
    std::vector<PersistentTaskPosition> ordered;
    ordered.reserve(rows.size());
    for (const auto &[rank, position, index] : order) {
        ordered.push_back(std::move(rows[index]));
    }
    return ordered;
}

/** True if the positions are not exactly 0 to n - 1; the reason goes to the log. */
bool needsRepair(const std::vector<PersistentTaskPosition> &rows, ColumnId columnId)
{
    QSet<int> positions;
    for (const PersistentTaskPosition &row : rows) {
        positions.insert(row.position);
    }
    if (positions.size() < static_cast<qsizetype>(rows.size())) {
        log::warning(u"Duplicate positions detected in column " + columnId.text());
        return true;
    }
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        if (!positions.contains(i)) {
            log::warning(u"Gap detected at position " + QString::number(i) + u" in column " +
                         columnId.text());
            return true;
        }
    }
    return false;
}

} // namespace

SqliteConnection &PositionStore::connection()
{
    return m_database.connection();
}

std::optional<std::vector<PersistentTaskPosition>> PositionStore::loadAll()
{
    const std::optional<SqliteConnection::ContentMark> mark = connection().contentMark();
    if (!mark) {
        return std::nullopt;
    }
    if (!m_lastRead || m_lastRead->mark != *mark) {
        std::optional<std::vector<PersistentTaskPosition>> rows = readAll();
        if (!rows) {
            return std::nullopt;
        }
        m_lastRead = LastRead{*mark, orderedByPlace(*std::move(rows))};
    }
    log::info(u"Loaded " + QString::number(m_lastRead->rows.size()) +
              u" task positions from database in a single query");
    return m_lastRead->rows;
}

std::optional<PersistentTaskPosition> PositionStore::load(const QString &taskId)
{
    SqliteStatement query = connection().prepare(selectPositions("WHERE id = ?").c_str());
    query.bind(1, taskId);
    return query.step() ? PositionRowReader(query).read() : std::nullopt;
}

std::optional<std::vector<PersistentTaskPosition>> PositionStore::readAll()
{
    std::vector<PersistentTaskPosition> rows;
    if (SqliteStatement count = connection().prepare(CountAll); count.step()) {
        rows.reserve(static_cast<std::size_t>(count.integer(0)));
    }
    SqliteStatement query = connection().prepare(selectPositions().c_str());
    if (!query.isPrepared()) {
        log::error(u"Failed to prepare query for all task positions: " + connection().failureMessage());
        return std::nullopt;
    }
    PositionRowReader reader(query);
    while (query.step()) {
        if (std::optional<PersistentTaskPosition> row = reader.read()) {
            rows.push_back(*std::move(row));
        }
    }
    if (query.hasFailed()) {
        log::error(u"Failed to read all task positions: " + connection().failureMessage());
        return std::nullopt;
    }
    return rows;
}

std::optional<std::vector<PersistentTaskPosition>>
PositionStore::loadAndRepair(const PlaceFilter &filter, ColumnId columnId,
                             std::optional<SwimLaneId> swimLaneId)
{
    log::debug(filter.description);
    std::vector<PersistentTaskPosition> rows;
    {
        const std::string sql = selectPositions("WHERE " + filter.where + " ORDER BY position, rowid");
        SqliteStatement query = connection().prepare(sql.c_str());
        if (!query.isPrepared()) {
            log::error(u"Failed to prepare query for task positions: " + connection().failureMessage());
            return std::nullopt;
        }
        filter.bindTo(query);
        PositionRowReader reader(query);
        while (query.step()) {
            if (std::optional<PersistentTaskPosition> row = reader.read()) {
                rows.push_back(*std::move(row));
            } else {
                log::warning(u"Invalid column UUID in database: " + query.text(1));
            }
        }
        if (query.hasFailed()) {
            log::error(u"Failed to read task positions: " + connection().failureMessage());
            return std::nullopt;
        }
    }
    const QString lane = swimLaneId ? u" and swimlane " + swimLaneId->text() : QString();
    log::info(u"Loaded " + QString::number(rows.size()) + u" task(s) into column " + columnId.text() + lane);
    if (needsRepair(rows, columnId)) {
        log::warning(u"Fixing non-sequential positions in column " + columnId.text());
        std::vector<PersistentTaskPosition> repaired = rows;
        if (repair(repaired)) {
            log::info(u"Fixed positions in column " + columnId.text());
            return repaired;
        }
    }
    return rows;
}

bool PositionStore::repair(std::vector<PersistentTaskPosition> &rows)
{
    SqliteTransaction transaction(connection());
    if (!transaction.hasBegun()) {
        return false;
    }
    SqliteStatement update = connection().prepare(UpdatePosition);
    int position = 0;
    for (PersistentTaskPosition &row : rows) {
        row.position = position++;
        if (!update.bind(1, row.position) || !update.bind(2, row.id) || !update.run()) {
            log::error(u"Failed to fix position for task " + row.id);
            return false;
        }
    }
    return transaction.commit();
}

std::optional<int> PositionStore::nextPosition(const PlaceFilter &filter)
{
    const std::string sql =
        "SELECT max(count(*), ifnull(max(position), -1) + 1) FROM taskPositions WHERE " + filter.where;
    SqliteStatement query = connection().prepare(sql.c_str());
    filter.bindTo(query);
    return query.step() ? std::optional(static_cast<int>(query.integer(0))) : std::nullopt;
}

std::optional<SwimLaneId> PositionStore::defaultSwimLaneId()
{
    SqliteStatement query = connection().prepare(SelectDefaultSwimLane);
    return query.step() ? SwimLaneId::fromText(query.text(0)) : std::nullopt;
}

bool PositionStore::save(const PersistentTaskPosition &row)
{
    if (m_deletedTasks.contains(row.id)) {
        return true;
    }
    log::info(u"💾 Saving task position - Task: " + row.id + u", Column: " + row.columnId.text() +
              u", SwimLane: " + laneText(row.swimLaneId) + u", Position: " + QString::number(row.position) +
              u", StableColumnID: " + orNone(row.stableColumnId) + u", StableSwimLaneID: " +
              orNone(row.stableSwimLaneId));
    logStoredPlace(row);
    SqliteTransaction transaction(connection());
    const QString what =
        row.id + u", column " + row.columnId.text() + u", position " + QString::number(row.position);
    log::debug(u"Trying to UPSERT task position in database: " + what);
    if (!transaction.hasBegun() ||
        !PositionRowWriter(connection(), PositionRowWriter::Content::Places).write(row)) {
        log::error(u"Failed to upsert task position: " + row.id);
        return false;
    }
    log::debug(u"Upserted task position into database: " + what);
    return verify(row) && transaction.commit();
}

void PositionStore::logStoredPlace(const PersistentTaskPosition &row)
{
    SqliteStatement query = connection().prepare(SelectPlace);
    query.bind(1, row.id);
    if (!query.step()) {
        return;
    }
    const QString column = query.text(0);
    const QString swimLane = query.text(2);
    log::debug(u"Found existing position for task " + row.id + u" in column " + column + u" with stable ID " +
               query.text(1));
    log::debug(u"Task belongs to swimlane " + swimLane + u" with stable ID " + query.text(3));
    if (query.integer(4) == 1) {
        log::debug(u"Task is blocked with reason: " + query.text(5));
    }
    if (column != row.columnId.text() || swimLane != laneText(row.swimLaneId)) {
        // The upsert replaces it; deleting it first would journal a task that leaves and comes again.
        log::debug(u"Task " + row.id + u" is moving from column/swimlane " + column + u'/' + swimLane +
                   u" to " + row.columnId.text() + u'/' + laneText(row.swimLaneId) +
                   u" - deleting old position");
    }
}

bool PositionStore::verify(const PersistentTaskPosition &row)
{
    SqliteStatement query = connection().prepare(SelectForVerification);
    query.bind(1, row.id);
    if (!query.step()) {
        log::error(u"Verification failed: Could not find task " + row.id +
                   u" in database after save. Rolling back.");
        return false;
    }
    const QString wanted = described(row.columnId.text(), laneText(row.swimLaneId), row.position);
    const QString found = described(query.text(0), query.text(1), query.integer(2));
    if (found != wanted) {
        log::error(u"Verification failed: Expected " + wanted + u" but got " + found);
        return false;
    }
    return true;
}

bool PositionStore::saveRows(const std::vector<PersistentTaskPosition> &rows, qsizetype countForLog)
{
    return saveBatch(rows, countForLog, PositionRowWriter::Content::Rows);
}

bool PositionStore::savePlaces(const std::vector<PersistentTaskPosition> &rows)
{
    log::info(u"Batch saving " + QString::number(rows.size()) + u" task position updates");
    return saveBatch(rows, static_cast<qsizetype>(rows.size()), PositionRowWriter::Content::Places);
}

bool PositionStore::saveBatch(const std::vector<PersistentTaskPosition> &rows, qsizetype countForLog,
                              PositionRowWriter::Content content)
{
    SqliteTransaction transaction(connection());
    PositionRowWriter writer(connection(), content);
    const auto isWritten = [&](const PersistentTaskPosition &row) {
        if (m_deletedTasks.contains(row.id) || writer.write(row)) {
            return true;
        }
        log::error(u"Failed to upsert task position: " + row.id + u" in batch operation");
        return false;
    };
    if (!transaction.hasBegun() || !std::all_of(rows.begin(), rows.end(), isWritten) ||
        !transaction.commit()) {
        log::error(QStringLiteral("Failed batch operation for task positions, rolled back transaction"));
        return false;
    }
    log::info(u"Successfully batch saved " + QString::number(countForLog) +
              u" task positions in a single transaction");
    return true;
}

bool PositionStore::exists(const QString &taskId)
{
    SqliteStatement query = connection().prepare(CountOfTask);
    query.bind(1, taskId);
    return query.step() && query.integer(0) > 0;
}

std::optional<int> PositionStore::append(const QStringList &taskIds, const PersistentTaskPosition &row,
                                         const PlaceFilter &filter)
{
    const std::optional<int> first = nextPosition(filter);
    if (!first) {
        return std::nullopt;
    }
    std::vector<PersistentTaskPosition> rows;
    int position = *first;
    for (const QString &taskId : taskIds) {
        rows.push_back(row);
        rows.back().id = taskId;
        rows.back().position = position++;
    }
    return savePlaces(rows) ? first : std::nullopt;
}

bool PositionStore::remove(const QStringList &taskIds)
{
    SqliteTransaction transaction(connection());
    return transaction.hasBegun() &&
           std::all_of(taskIds.begin(), taskIds.end(),
                       [this](const QString &taskId) { return removeOne(taskId); }) &&
           transaction.commit();
}

bool PositionStore::removeOne(const QString &taskId)
{
    if (!exists(taskId)) {
        log::warning(u"Task " + taskId + u" not found in persistence - nothing to delete");
        return !connection().failure();
    }
    if (!m_database.executeSQL(DeleteTask, {taskId})) {
        log::error(u"Failed to delete task position: " + taskId);
        return false;
    }
    if (exists(taskId)) {
        log::error(u"Verification failed: Task " + taskId + u" still exists in database after deletion");
        return false;
    }
    return true;
}

bool PositionStore::removeColumn(ColumnId columnId)
{
    const bool isDone = m_database.executeSQL(DeleteColumn, {columnId.text()});
    if (isDone) {
        log::info(u"Deleted all task positions for column: " + columnId.text());
    } else {
        log::error(u"Failed to delete task positions for column: " + columnId.text());
    }
    return isDone;
}

bool PositionStore::moveColumn(ColumnId from, ColumnId to, const QString &stableId, Date now)
{
    return m_database.executeSQL(MoveColumn, {to.text(), stableId, now, from.text()});
}

bool PositionStore::moveSwimLane(SwimLaneId from, SwimLaneId to, const QString &stableId, Date now)
{
    return m_database.executeSQL(MoveSwimLane, {to.text(), stableId, now, from.text()});
}

} // namespace vantrel
