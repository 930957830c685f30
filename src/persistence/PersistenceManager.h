#pragma once

#include "foundations/AppConfig.h"
#include "foundations/Clock.h"
#include "foundations/Column.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/SwimLane.h"
#include "foundations/UserDefaults.h"
#include "persistence/AppConfiguration.h"
#include "persistence/BoardJournal.h"
#include "persistence/BoardMemory.h"
#include "persistence/FileCacheStore.h"
#include "persistence/PlainTextReading.h"
#include "persistence/StorageProblem.h"

#include <QCoroTask>
#include <QMutex>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vantrel {

struct BoardStore;
template <typename Record>
class ConfigurationFile;

/**
 * All that the program remembers: the database of placements, blocks, quadrants, plain text tasks and the
 * board journal, the two files with the shape of the board, and the application's configuration.
 *
 * Lives on the GUI thread, owned by Services; SQLite is met only on the database thread. Work for it is done
 * strictly in the order of the calls:
 * - save... and delete... return at once. A write that fails for a passing reason (disk full, I/O error) is
 *   kept and tried again before anything later is written, so that what is on the screen is not lost.
 * - read..., write..., place... and drained() are awaited; they resume on the GUI thread.
 * - load... and get... block the caller until the database thread has come to them. They are for tests and
 *   for moments when no window is open; a screen awaits.
 *
 * A failed read is never an empty store: awaited reads give nothing instead, also while failed writes wait,
 * but for readBoardMemory(), which then says that it is behind. Blocking reads give the empty list. What the
 * user should know is told by problemFound().
 */
class PersistenceManager : public QObject
{
    Q_OBJECT
public:
    /**
     * Makes the application directory if it is missing and has the database opened on its own thread, without
     * waiting for it. `vfsName` chooses another virtual file system of SQLite; empty is the default one.
     */
    PersistenceManager(const AppConfig &config, UserDefaults &defaults, FileSaver &saver, Clock &clock,
                       const QByteArray &vfsName = {}, QObject *parent = nullptr);
    /** Finishes all writes first. */
    ~PersistenceManager() override;

    /** All problems found so far, oldest first. */
    std::vector<StorageProblem> problems() const;

    /** True if the database could not be opened: in this run nothing is stored, and nothing can be read. */
    bool isWithoutDatabase() const;

    /** "taskPositions.sqlite", or its name in the testing environment. */
    QString taskPositionsDatabaseName() const;

    // Reading for the board.

    /** All that the board remembers, as one consistent pass; nothing if any of it could not be read. */
    QCoro::Task<std::optional<BoardMemory>> readBoardMemory();
    QCoro::Task<std::optional<std::vector<PersistentTaskPosition>>> readAllTaskPositions();
    /** The row of one task; nothing if it has none or cannot be read. */
    QCoro::Task<std::optional<PersistentTaskPosition>> readTaskPosition(QString taskId);
    QCoro::Task<std::optional<PlainTextReading>> readPlainTextTasks(std::optional<StoreMark> since = {});

    // Placements.

    /**
     * Saves one placement, keeping the block of its row. Without `swimLaneId` the task goes to the default
     * swimlane, else the first one; without any swimlane it is stored with none.
     */
    void saveTaskPosition(const QString &taskId, ColumnId columnId, int position,
                          std::optional<SwimLaneId> swimLaneId);
    /**
     * Saves whole rows in one transaction. Rows that equal the stored ones may be left out by the caller,
     * who then gives the number of all rows as `countForLog`.
     */
    void batchSaveTaskPositions(std::vector<PersistentTaskPosition> rows,
                                std::optional<qsizetype> countForLog = {});
    /** Saves placements in one transaction, keeping the blocks; placements that stand as given are skipped.
     */
    void batchSaveTaskPositions(std::vector<TaskPosition> updates);
    /** The same, resuming after the commit; false if the updates are not stored (yet). */
    QCoro::Task<bool> writeTaskPositions(std::vector<TaskPosition> updates);
    /**
     * Puts the tasks behind the last one of the cell, in their order, as one transaction, and gives the
     * position of the first; nothing if they are not stored (yet).
     */
    QCoro::Task<std::optional<int>> placeTasksAtEnd(QStringList taskIds, ColumnId columnId,
                                                    SwimLaneId swimLaneId);

    /** Every row with a column; see BoardMemory::positions. */
    std::vector<PersistentTaskPosition> loadAllTaskPositions();
    /**
     * The rows of a column or, with `swimLaneId`, of a cell, ordered by position. Columns and swimlanes are
     * found by their stable id where they have one, so rows written under an older UUID are found too.
     * Positions with gaps or ties are renumbered from 0 in the store and in the result; over a whole column
     * that flattens its cells.
     */
    std::vector<PersistentTaskPosition> loadTaskPositions(ColumnId columnId,
                                                          std::optional<SwimLaneId> swimLaneId = {});
    void deleteTaskPosition(const QString &taskId);
    void deleteTaskPositions(const QStringList &taskIds);
    void deleteColumnTaskPositions(ColumnId columnId);
    /** Puts every row of one column into another, each in its own swimlane and with its block. */
    void moveColumnTaskPositions(ColumnId from, ColumnId to);
    /** Puts every row of one swimlane into another, each in its own column and with its block. */
    void moveSwimLaneTaskPositions(SwimLaneId from, SwimLaneId to);
    /**
     * The swimlane that the rows of earlier runs name as the default one, if any does: see
     * SwimLane::isDefault. Waits for the database, unless there was none when the program started.
     */
    std::optional<SwimLaneId> storedDefaultSwimLaneId();

    // Blocks.

    /** Callable on the database thread too, where it is done at once. A task without a row gets one. */
    void saveTaskAsBlocked(const QString &taskId, const std::optional<QString> &reason);
    void removeTaskFromBlocked(const QString &taskId);
    QSet<QString> getBlockedTaskIdsFromSQLite();
    QHash<QString, QString> getBlockReasonsFromSQLite();

    // Quadrants.

    void saveEisenhowerPriority(const QString &taskId, EisenhowerPriority priority);
    void deleteEisenhowerPriority(const QString &taskId);
    /** As one transaction. */
    void deleteEisenhowerPriorities(const QStringList &taskIds);
    QHash<QString, EisenhowerPriority> loadAllEisenhowerPriorities();

    // Plain text tasks.

    /** Inserts or updates; a stored creation date stays. */
    void savePlainTextTask(const PlainTextRecord &record);
    void savePlainTextTasks(std::vector<PlainTextRecord> records);
    /** Saves new tasks with their places, all or none; resumes after the commit, with false if they are not
     * stored (yet). */
    QCoro::Task<bool> addPlainTextTasks(std::vector<PlainTextRecord> records,
                                        std::vector<TaskPosition> places);
    std::vector<PlainTextRecord> loadPlainTextTasks();
    /** Deletes the task's row; nothing writes this id again in this run, whatever is still under way. */
    void deletePlainTextTask(const QString &taskId);
    /** Deletes all plain text tasks and their placements. */
    void deleteAllPlainTextTasks();

    // The board journal. Changes that are stored here are journaled as they are stored.

    /** Journals a completion. Plain text tasks are passed over: theirs are journaled as they are saved. */
    void journalCompletion(const QString &taskId, bool isComplete);
    /** The same for several tasks, as one transaction. */
    void journalCompletions(const QStringList &taskIds, bool isComplete);
    /** The entries from `since` on, in order. */
    std::vector<JournalEntry> loadJournal(Date since);

    // The cache of what other programs' files say; see FileCacheStore.

    QCoro::Task<std::optional<std::vector<CachedFile>>> readFileCache(QByteArray scope);
    /** A cache that cannot be written is no problem: it is read less from then on. */
    void saveFileCache(const QByteArray &scope, std::vector<CachedFile> changed, QByteArrayList removed);

    // The shape of the board. Loads are cached, and block for a small file; saves return at once.

    /** The columns; nothing if the file is missing or cannot be read. An unreadable file is kept aside. */
    std::optional<std::vector<Column>> loadBoardConfiguration(bool forceFresh = false);
    /** Saves the columns; those without a stable id get one. False if the file must not be replaced. */
    bool saveBoardConfiguration(const std::vector<Column> &columns, std::optional<QUuid> boardId = {});
    std::optional<std::vector<SwimLane>> loadSwimLaneConfiguration(bool forceFresh = false);
    bool saveSwimLaneConfiguration(const std::vector<SwimLane> &swimLanes);
    /** What the last load or save left; nothing before it and after cleanup(). */
    std::optional<std::vector<Column>> cachedBoardConfiguration() const;
    std::optional<std::vector<SwimLane>> cachedSwimLaneConfiguration() const;
    /** The stable ids of those records that have one. */
    static StableIdMappings getStableIdMappings(const std::vector<Column> &columns,
                                                const std::vector<SwimLane> &swimLanes);

    /** Never fails: the default record when there is none or it makes no sense. */
    AppConfiguration loadAppConfiguration();
    void saveAppConfiguration(const AppConfiguration &configuration);

    // Safety and the end.

    /**
     * Copies the database to "{name}.backup-{time}" beside it, at most once a run. The path of the copy, or
     * nothing if it could not be made: then nothing should be overwritten that the copy was to keep.
     */
    QCoro::Task<std::optional<QString>> backUpDatabase();
    /** Resumes when everything asked for before it is done. */
    QCoro::Task<> drained();
    /** Jobs that wait or were not written yet. */
    qsizetype pendingJobs() const;
    /**
     * Forgets the configuration caches and closes the database, after all earlier work. From here on reads
     * are empty and writes are logged and dropped; only for the end of the program.
     */
    void cleanup();

Q_SIGNALS:
    /** Comes from the event loop: whoever connects before it first runs misses nothing. */
    void problemFound(const vantrel::StorageProblem &problem);
    /** Writes that had failed are stored now. */
    void writingRecovered();

private:
    void makeDirectory();
    void report(const StorageProblem &problem);
    std::vector<Column> currentColumns();
    std::vector<SwimLane> currentSwimLanes();
    StableIdMappings currentStableIds();
    PersistentTaskPosition rowFor(const TaskPosition &place, const StableIdMappings &stableIds) const;
    std::vector<PersistentTaskPosition> rowsFor(const std::vector<TaskPosition> &places);
    /** Posts the change, to be made at the present time. */
    void write(std::function<bool()> change);

    AppConfig m_config;
    UserDefaults &m_defaults;
    Clock &m_clock;
    /** There was no database yet. */
    bool m_isFirstRun = false;
    mutable QMutex m_problemsMutex;
    std::vector<StorageProblem> m_problems;
    std::unique_ptr<ConfigurationFile<Column>> m_boardFile;
    std::unique_ptr<ConfigurationFile<SwimLane>> m_swimLaneFile;
    /** Last, so that its thread has ended before anything it reports to goes. */
    std::unique_ptr<BoardStore> m_store;
};

} // namespace vantrel
