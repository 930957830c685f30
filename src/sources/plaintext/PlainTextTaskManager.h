#pragma once

#include "foundations/Clock.h"
#include "foundations/Column.h"
#include "foundations/Latch.h"
#include "foundations/NotificationCenter.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/SwimLane.h"
#include "persistence/PlainTextReading.h"
#include "sources/TaskManagerProtocol.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QSet>

#include <memory>
#include <optional>

namespace vantrel {

class PersistenceManager;
struct ReconciledTasks;

/**
 * The source whose tasks live in the program itself: rows of the store, beside their places on the board.
 *
 * There is one object a task. A fetch changes it in place, so that whoever holds it (board, cache, this
 * source) sees the same; what was edited while a fetch read the store keeps the edit. Nothing here waits for
 * the disk. GUI thread; owned by Services.
 */
class PlainTextTaskManager final : public QObject, public TaskManagerProtocol
{
    Q_OBJECT
public:
    PlainTextTaskManager(PersistenceManager &persistence, NotificationCenter &notifications, Clock &clock,
                         QObject *parent = nullptr);
    ~PlainTextTaskManager() override;

    /**
     * Reads the store and brings rows and places together. Throws a SourceError if it cannot be read; where
     * there is no store at all, the tasks in memory are all there is.
     */
    QCoro::Task<WorkItems> fetchTasks() override;
    /** The complete ones of loadedTasks(), however long ago they were completed. */
    QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonSettings() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    /** Stores the task at the end of its cell; the board is told on the next turn of the event loop. */
    QCoro::Task<QString> createTask(NewTask task) override;
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;

    bool canHandle(const QString &taskId) const override;
    QString taskManagerName() const override;
    bool checkPermissions() override { return true; }
    QString getPermissionsGuidance() const override;

    /** The tasks of the last fetch and those that came since, without those removed. Edits act on these. */
    const WorkItems &loadedTasks() const { return m_loadedTasks; }

    /** Writes the whole store to the log, where debug lines are wanted, then fetches. */
    QCoro::Task<WorkItems> forceReloadTasks();

    /**
     * The one object of the task with this record's id, made from the record if there is none yet. For
     * whoever creates tasks of this source by other roads and stores them too.
     */
    std::shared_ptr<PlainTextWorkItem> intern(PlainTextRecord record);

    /** Removes rows and places for good; true. What the store cannot do at once it does later. */
    bool removePlainTextTasks(const QStringList &taskIds);
    bool removeAllPlainTextTasks();

Q_SIGNALS:
    /** A task created here has its place; the notification follows. */
    void taskCreated(const vantrel::WorkItemPtr &task);
    void tasksRemoved(const QStringList &taskIds);

private:
    /** How a task stands to the fetch that is under way, or was last. */
    enum class Sighting {
        Expected, ///< known when the fetch read the store
        Seen,     ///< told by that reading
        Newer,    ///< made since
    };

    struct Known
    {
        std::shared_ptr<PlainTextWorkItem> item;
        /** changeCount() when the fetch read the store. */
        quint32 changesAtReading = 0;
        Sighting sighting = Sighting::Newer;
    };

    struct Home
    {
        Column column;
        SwimLane swimLane;
    };

    // Fetching (PlainTextTaskManager_Fetching.cpp)
    QCoro::Task<> readAndTakeOver();
    /** nullptr if nothing was stored since the last fetch, if there is no store, or if this object is gone.
     */
    QCoro::Task<std::shared_ptr<ReconciledTasks>> readStore();
    QCoro::Task<> takeOverAll(std::shared_ptr<ReconciledTasks> told);
    void expectAllTasks();
    QCoro::Task<> placeAtEnd(QStringList taskIds);
    /** The task as the store tells it; nullptr if it was removed since. */
    WorkItemPtr takeOver(PlainTextRecord record);
    void replaceLoadedTasks(WorkItems tasks);
    void storeCompletionDates(const QStringList &taskIds);
    QCoro::Task<> logStore();

    template <typename Change>
    bool edit(const QString &taskId, Change change);
    PlainTextRecord recordFor(const NewTask &task) const;
    /** Where tasks without a place go; nothing on a board without columns. `logMark` begins the log lines. */
    std::optional<Home> homeOfNewTasks(QStringView logMark) const;
    void announce(const WorkItemPtr &task);

    PersistenceManager &m_persistence;
    NotificationCenter &m_notifications;
    Clock &m_clock;
    WorkItems m_loadedTasks;
    QHash<QString, Known> m_known;
    QSet<QString> m_removedIds;
    /** How many of them there were when the fetch under way read the store. */
    qsizetype m_removedAtReading = 0;
    /** What the store was like when m_loadedTasks were read from it. */
    std::optional<StoreMark> m_mark;
    /** All that a fetch under way has read was removed since. */
    bool m_isReadingVoid = false;
    /** The fetch under way; the next one waits for it. */
    std::shared_ptr<Latch> m_fetch;
};

} // namespace vantrel
