#include "foundations/Log.h"
#include "persistence/BoardStore.h"
#include "persistence/PersistenceManager.h"
#include "persistence/sqlite/SqliteTransaction.h"

namespace vantrel {

namespace {

/** What `work` reads, waiting for the database thread; the empty value if it cannot be read. */
template <typename Work>
auto readNow(BoardStore &store, Work work)
{
    using Value = typename std::invoke_result_t<Work>::value_type;
    return store.database.queue()
        .sync([&store, &work] { return store.database.read(work); })
        .value_or(Value());
}

/** The same without waiting; nothing if it cannot be read. */
template <typename Work>
QCoro::Task<std::invoke_result_t<Work>> readLater(BoardStore &store, Work work)
{
    return store.database.queue().run([&store, work = std::move(work)] { return store.database.read(work); });
}

std::optional<BoardMemory> boardMemory(BoardStore &store)
{
    if (!store.database.isOpen()) {
        return std::nullopt;
    }
    const bool isBehind = store.database.isBehind();
    store.database.connection().forgetFailure();
    const SqliteSnapshot snapshot(store.database.connection());
    auto positions = store.positions.loadAll();
    auto blockedTaskIds = store.blocks.blockedTaskIds();
    auto blockReasons = store.blocks.blockReasons();
    auto priorities = store.priorities.loadAll();
    if (!positions || !blockedTaskIds || !blockReasons || !priorities) {
        return std::nullopt;
    }
    return BoardMemory{*std::move(positions), *std::move(blockedTaskIds), *std::move(blockReasons),
                       *std::move(priorities), isBehind};
}

std::optional<PlainTextReading> plainTextReading(BoardStore &store, std::optional<StoreMark> since)
{
    const SqliteSnapshot snapshot(store.database.connection());
    const std::optional<StoreMark> mark = store.database.connection().contentMark();
    if (!mark) {
        return std::nullopt;
    }
    if (mark == since) {
        return PlainTextReading{*mark, true, {}, {}};
    }
    auto rows = store.plainTextTasks.loadAll();
    auto places = store.positions.loadAll();
    if (!rows || !places) {
        return std::nullopt;
    }
    return PlainTextReading{*mark, false, *std::move(rows), *std::move(places)};
}

} // namespace

void PersistenceManager::write(std::function<bool()> change)
{
    m_store->database.queue().async(
        [store = m_store.get(), now = m_clock.now(), change = std::move(change)]() mutable {
            store->database.write(now, std::move(change));
        });
}

// Reading for the board.

QCoro::Task<std::optional<BoardMemory>> PersistenceManager::readBoardMemory()
{
    return m_store->database.queue().run([store = m_store.get()] { return boardMemory(*store); });
}

QCoro::Task<std::optional<std::vector<PersistentTaskPosition>>> PersistenceManager::readAllTaskPositions()
{
    return readLater(*m_store, [store = m_store.get()] { return store->positions.loadAll(); });
}

QCoro::Task<std::optional<PersistentTaskPosition>> PersistenceManager::readTaskPosition(QString taskId)
{
    return readLater(*m_store, [store = m_store.get(), taskId] { return store->positions.load(taskId); });
}

QCoro::Task<std::optional<PlainTextReading>>
PersistenceManager::readPlainTextTasks(std::optional<StoreMark> since)
{
    return readLater(*m_store, [store = m_store.get(), since] { return plainTextReading(*store, since); });
}

QCoro::Task<std::optional<std::vector<CachedFile>>> PersistenceManager::readFileCache(QByteArray scope)
{
    return readLater(*m_store, [store = m_store.get(), scope] { return store->fileCache.load(scope); });
}

void PersistenceManager::saveFileCache(const QByteArray &scope, std::vector<CachedFile> changed,
                                       QByteArrayList removed)
{
    write([store = m_store.get(), scope, changed = std::move(changed), removed = std::move(removed)] {
        store->fileCache.save(scope, changed, removed);
        // Not worth another attempt.
        return true;
    });
}

// Placements.

PersistentTaskPosition PersistenceManager::rowFor(const TaskPosition &place,
                                                  const StableIdMappings &stableIds) const
{
    PersistentTaskPosition row;
    row.id = place.taskId;
    row.columnId = place.columnId;
    row.position = place.position;
    row.lastUpdated = m_clock.now();
    row.swimLaneId = place.swimLaneId;
    if (const auto column = stableIds.columns.constFind(place.columnId);
        column != stableIds.columns.constEnd()) {
        row.stableColumnId = *column;
    }
    if (const auto lane = stableIds.swimLanes.constFind(place.swimLaneId);
        lane != stableIds.swimLanes.constEnd()) {
        row.stableSwimLaneId = *lane;
    }
    return row;
}

std::vector<PersistentTaskPosition> PersistenceManager::rowsFor(const std::vector<TaskPosition> &places)
{
    const StableIdMappings stableIds = currentStableIds();
    std::vector<PersistentTaskPosition> rows;
    rows.reserve(places.size());
    for (const TaskPosition &place : places) {
        rows.push_back(rowFor(place, stableIds));
    }
    return rows;
}

void PersistenceManager::saveTaskPosition(const QString &taskId, ColumnId columnId, int position,
                                          std::optional<SwimLaneId> swimLaneId)
{
    const std::vector<SwimLane> lanes = currentSwimLanes();
    if (!swimLaneId && !lanes.empty()) {
        const auto isDefault = [](const SwimLane &lane) {
            return lane.isDefault();
        };
        const auto found = std::find_if(lanes.begin(), lanes.end(), isDefault);
        swimLaneId = found != lanes.end() ? found->id : lanes.front().id;
    }
    PersistentTaskPosition row = rowFor({taskId, columnId, swimLaneId.value_or(SwimLaneId()), position},
                                        getStableIdMappings(currentColumns(), lanes));
    row.swimLaneId = swimLaneId;
    write([store = m_store.get(), row] { return store->positions.save(row); });
}

void PersistenceManager::batchSaveTaskPositions(std::vector<PersistentTaskPosition> rows,
                                                std::optional<qsizetype> countForLog)
{
    const qsizetype count = countForLog.value_or(static_cast<qsizetype>(rows.size()));
    // Shared, for a job is copied on its way.
    const auto shared = std::make_shared<const std::vector<PersistentTaskPosition>>(std::move(rows));
    write([store = m_store.get(), shared, count] { return store->positions.saveRows(*shared, count); });
}

void PersistenceManager::batchSaveTaskPositions(std::vector<TaskPosition> updates)
{
    write([store = m_store.get(), rows = rowsFor(updates)] { return store->positions.savePlaces(rows); });
}

QCoro::Task<bool> PersistenceManager::writeTaskPositions(std::vector<TaskPosition> updates)
{
    return m_store->database.queue().run(
        [store = m_store.get(), now = m_clock.now(), rows = rowsFor(updates)]() mutable {
            return store->database.write(
                now, [store, rows = std::move(rows)] { return store->positions.savePlaces(rows); });
        });
}

QCoro::Task<std::optional<int>> PersistenceManager::placeTasksAtEnd(QStringList taskIds, ColumnId columnId,
                                                                    SwimLaneId swimLaneId)
{
    const StableIdMappings stableIds = currentStableIds();
    const PersistentTaskPosition pattern = rowFor({{}, columnId, swimLaneId, 0}, stableIds);
    const PlaceFilter filter = PlaceFilter::forCell(columnId, swimLaneId, stableIds);
    return m_store->database.queue().run([store = m_store.get(), taskIds, pattern, filter] {
        // Shared, because a change that must wait outlives this job.
        const auto first = std::make_shared<std::optional<int>>();
        const bool isStored = store->database.write(pattern.lastUpdated, [=] {
            *first = store->positions.append(taskIds, pattern, filter);
            return first->has_value();
        });
        return isStored ? *first : std::nullopt;
    });
}

std::vector<PersistentTaskPosition> PersistenceManager::loadAllTaskPositions()
{
    return readNow(*m_store, [this] { return m_store->positions.loadAll(); });
}

std::vector<PersistentTaskPosition>
PersistenceManager::loadTaskPositions(ColumnId columnId, std::optional<SwimLaneId> swimLaneId)
{
    const PlaceFilter filter = PlaceFilter::forCell(columnId, swimLaneId, currentStableIds());
    return readNow(*m_store, [&] { return m_store->positions.loadAndRepair(filter, columnId, swimLaneId); });
}

void PersistenceManager::deleteTaskPosition(const QString &taskId)
{
    deleteTaskPositions({taskId});
}

void PersistenceManager::deleteTaskPositions(const QStringList &taskIds)
{
    for (const QString &taskId : taskIds) {
        log::info(u"💾 Deleting task position for task: " + taskId);
    }
    write([store = m_store.get(), taskIds] { return store->positions.remove(taskIds); });
}

void PersistenceManager::deleteColumnTaskPositions(ColumnId columnId)
{
    write([store = m_store.get(), columnId] { return store->positions.removeColumn(columnId); });
}

void PersistenceManager::moveColumnTaskPositions(ColumnId from, ColumnId to)
{
    write([store = m_store.get(), from, to, stableId = currentStableIds().columns.value(to),
           now = m_clock.now()] { return store->positions.moveColumn(from, to, stableId, now); });
}

void PersistenceManager::moveSwimLaneTaskPositions(SwimLaneId from, SwimLaneId to)
{
    write([store = m_store.get(), from, to, stableId = currentStableIds().swimLanes.value(to),
           now = m_clock.now()] { return store->positions.moveSwimLane(from, to, stableId, now); });
}

std::optional<SwimLaneId> PersistenceManager::storedDefaultSwimLaneId()
{
    if (m_isFirstRun) {
        return std::nullopt;
    }
    return m_store->database.queue().sync(
        [this] { return m_store->database.read([this] { return m_store->positions.defaultSwimLaneId(); }); });
}

// Blocks.

void PersistenceManager::saveTaskAsBlocked(const QString &taskId, const std::optional<QString> &reason)
{
    const auto change = [store = m_store.get(), taskId, reason, now = m_clock.now()] {
        return store->blocks.setTaskBlocked(taskId, true, reason, now);
    };
    if (m_store->database.queue().isCurrent()) {
        log::debug(QStringLiteral("Already on dbQueue, executing block directly in saveTaskAsBlocked"));
        m_store->database.write(m_clock.now(), change);
    } else {
        log::debug(QStringLiteral("Not on dbQueue, using async in saveTaskAsBlocked"));
        write(change);
    }
}

void PersistenceManager::removeTaskFromBlocked(const QString &taskId)
{
    const auto change = [store = m_store.get(), taskId, now = m_clock.now()] {
        return store->blocks.setTaskBlocked(taskId, false, {}, now);
    };
    if (m_store->database.queue().isCurrent()) {
        log::debug(QStringLiteral("Already on dbQueue, executing block directly in removeTaskFromBlocked"));
        m_store->database.write(m_clock.now(), change);
    } else {
        log::debug(QStringLiteral("Not on dbQueue, using async in removeTaskFromBlocked"));
        write(change);
    }
}

QSet<QString> PersistenceManager::getBlockedTaskIdsFromSQLite()
{
    return readNow(*m_store, [this] { return m_store->blocks.blockedTaskIds(); });
}

QHash<QString, QString> PersistenceManager::getBlockReasonsFromSQLite()
{
    return readNow(*m_store, [this] { return m_store->blocks.blockReasons(); });
}

// Quadrants.

void PersistenceManager::saveEisenhowerPriority(const QString &taskId, EisenhowerPriority priority)
{
    log::info(u"💾 Saving Eisenhower priority " + rawValue(priority) + u" for task: " + taskId);
    write([store = m_store.get(), taskId, priority, now = m_clock.now()] {
        return store->priorities.save(taskId, priority, now);
    });
}

void PersistenceManager::deleteEisenhowerPriority(const QString &taskId)
{
    deleteEisenhowerPriorities({taskId});
}

void PersistenceManager::deleteEisenhowerPriorities(const QStringList &taskIds)
{
    for (const QString &taskId : taskIds) {
        log::info(u"💾 Deleting Eisenhower priority for task: " + taskId);
    }
    write([store = m_store.get(), taskIds] { return store->priorities.remove(taskIds); });
}

QHash<QString, EisenhowerPriority> PersistenceManager::loadAllEisenhowerPriorities()
{
    return readNow(*m_store, [this] { return m_store->priorities.loadAll(); });
}

// Plain text tasks.

void PersistenceManager::savePlainTextTask(const PlainTextRecord &record)
{
    savePlainTextTasks({record});
}

void PersistenceManager::savePlainTextTasks(std::vector<PlainTextRecord> records)
{
    for (const PlainTextRecord &record : records) {
        log::debug(u"💾 SAVING PLAIN TEXT TASK TO DATABASE: " + record.fields.name);
        log::debug(u"💾 Task details: originalText=" + record.originalText.value_or(QStringLiteral("nil")) +
                   u", id=" + record.fields.id);
    }
    write([store = m_store.get(), records = std::move(records), now = m_clock.now()] {
        return store->plainTextTasks.save(records, now);
    });
}

QCoro::Task<bool> PersistenceManager::addPlainTextTasks(std::vector<PlainTextRecord> records,
                                                        std::vector<TaskPosition> places)
{
    auto add = [store = m_store.get(), records = std::move(records), rows = rowsFor(places),
                now = m_clock.now()] {
        SqliteTransaction transaction(store->database.connection());
        return transaction.hasBegun() && store->plainTextTasks.save(records, now) &&
               store->positions.savePlaces(rows) && transaction.commit();
    };
    return m_store->database.queue().run(
        [store = m_store.get(), now = m_clock.now(), add = std::move(add)]() mutable {
            return store->database.write(now, std::move(add));
        });
}

std::vector<PlainTextRecord> PersistenceManager::loadPlainTextTasks()
{
    return readNow(*m_store, [this] { return m_store->plainTextTasks.loadAll(); });
}

void PersistenceManager::deletePlainTextTask(const QString &taskId)
{
    log::info(u"💾 Deleting plain text task: " + taskId);
    write([store = m_store.get(), taskId] { return store->plainTextTasks.remove(taskId); });
}

void PersistenceManager::deleteAllPlainTextTasks()
{
    log::info(QStringLiteral("💾 Deleting all plain text tasks"));
    write([store = m_store.get()] { return store->plainTextTasks.removeAll(); });
}

// The board journal.

void PersistenceManager::journalCompletion(const QString &taskId, bool isComplete)
{
    journalCompletions({taskId}, isComplete);
}

void PersistenceManager::journalCompletions(const QStringList &taskIds, bool isComplete)
{
    QStringList ids = taskIds;
    ids.removeIf([](const QString &id) { return sourceOf(id) == TaskSource::PlainText; });
    if (ids.isEmpty()) {
        return;
    }
    write([store = m_store.get(), ids, isComplete] {
        return store->database.journal().addCompletions(ids, isComplete);
    });
}

std::vector<JournalEntry> PersistenceManager::loadJournal(Date since)
{
    return readNow(*m_store, [&] { return m_store->database.journal().load(since); });
}

} // namespace vantrel
