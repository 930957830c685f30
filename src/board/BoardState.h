#pragma once

#include "board/ColumnManager.h"
#include "board/DragDropManager.h"
#include "board/FilterManager.h"
#include "board/Placements.h"
#include "board/PriorityManager.h"
#include "board/SelectionManager.h"
#include "board/SwimLaneManager.h"
#include "board/TaskMoveStatus.h"
#include "board/WIPGaugeSettings.h"
#include "board/rules/ItemClass.h"
#include "board/rules/WIPRules.h"
#include "exchange/PlainTextTaskExporter.h"
#include "foundations/Clock.h"
#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"
#include "persistence/PersistenceManager.h"
#include "persistence/PersistenceQueue.h"
#include "sources/TaskManagerProtocol.h"

#include <QCoroTask>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

namespace vantrel {

class Announcer;
class BackgroundSaveIndicator;
class Clipboard;
class PlainTextTaskManager;
class Screen;
class SoundManager;
class TaskManagerFactory;
class TaskRepository;
class ToastManager;
class UserDefaults;
struct ParsedPlainTextTask;

enum class BoardLoadingState { NotLoaded, Loading, Loaded, Error };

/** What a board needs of the rest of the program. Everything outlives the board. */
struct BoardServices
{
    Clock &clock;
    NotificationCenter &notifications;
    UserDefaults &defaults;
    PersistenceManager &persistence;
    BackgroundSaveIndicator &saveIndicator;
    TaskManagerFactory &managers;
    TaskRepository &repository;
    SoundManager &sounds;
    Announcer &announcer;
    ToastManager &toasts;
    Screen &screen;
    Clipboard &clipboard;
};

/** How an update of one field of a task ended. */
struct TaskUpdate
{
    bool success = false;
    /** The item found, also where it could not be changed. */
    WorkItemPtr item;
};

/** How an import ended. */
struct ImportResult
{
    /** Tasks that are on the board now. */
    int count = 0;
    /** False while the store cannot take them; it keeps trying. */
    bool isStored = false;
};

/** How an export to the clipboard ended. */
struct ExportResult
{
    /** Tasks that were to be exported. */
    int count = 0;
    /** False without tasks, and where the desktop did not take the text. */
    bool success = false;
};

/**
 * The one object that knows what is on the board.
 *
 * `tasks` and `taskPositions` are the only facts; the cells are derived from them, lazily and cell by cell.
 * Everything that changes the board goes through an operation of this class, which checks, computes with a
 * rule of board/rules, changes members, signals once and hands the write to the store. One board listens to
 * notifications: the program's own. GUI thread; owned by Services.
 */
class BoardState : public QObject
{
    Q_OBJECT
public:
    enum class Observes { Notifications, Nothing };

    explicit BoardState(const BoardServices &services, const WorkItems &tasks = {},
                        Observes observes = Observes::Notifications, QObject *parent = nullptr);
    ~BoardState() override;

    /** The program's board: still empty, with its first load begun. */
    static std::unique_ptr<BoardState> createDefault(const BoardServices &services);

    // Loading (BoardState_Loading.cpp)

    QCoro::Task<> loadDataAsync();
    /** Puts `tasks` in place of the board's; only absent tasks of `answered` sources lose their stored place.
     */
    void updateTasks(const WorkItems &tasks, TaskSources answered = AllTaskSources);
    void updateLoadingProgressFromRepository();
    BoardLoadingState loadingState() const { return m_loadingState; }
    double loadingProgress() const { return m_loadingProgress; }
    QString loadingStatusMessage() const { return m_loadingStatusMessage; }
    /** The text of the failure while loadingState() is Error. */
    QString loadingError() const { return m_loadingError; }
    /** True from the end of the first organisation on: there is a board to show. */
    bool hasBeenOrganized() const { return m_hasBeenOrganized; }

    // The facts, and what is derived from them (BoardState_Collections.cpp)

    const Placements &taskPositions() const { return m_placements; }
    /** nullptr if the board has no such task. */
    WorkItemPtr task(const QString &id) const;
    int taskCount() const;
    /** All tasks of the board, in the order of their arrival. */
    WorkItems tasks() const;
    /** Incomplete tasks once each, in the order of the board; complete ones only where they stand unfinished.
     */
    WorkItems getAllTasks() const;
    /** Those of the ids that have a place, in the order of the board: swimlane, column, place in the cell. */
    QStringList inBoardOrder(const QStringList &ids) const;
    /** The task of the board, or of the repository's cache, which is then taken into the board. */
    WorkItemPtr findTaskById(const QString &id);

    /** The tasks of a cell in their order, whatever the filters. */
    WorkItems cell(SwimLaneId swimLaneId, ColumnId columnId) const;
    WorkItems tasksByColumn(ColumnId columnId) const;
    /** The same as the board shows them: filtered. */
    WorkItems tasksForColumn(ColumnId columnId) const;
    WorkItems tasksForColumnAndSwimLane(ColumnId columnId, SwimLaneId swimLaneId) const;
    /** The lane in which a placement is shown: its own, or the default one if its own is gone. */
    SwimLaneId resolvedSwimLaneId(const TaskPosition &position) const;
    /** Grows whenever what a cell shows may have changed. Cheap: ask it before comparing lists. */
    quint64 cellRevision(CellId cell) const;

    /** Schedules one changed() for the next turn of the event loop. */
    void invalidateDerivedCollections();
    void rebuildDerivedCollections();
    void triggerUIUpdate();
    bool isUpdating() const { return m_isUpdating; }

    // Organisation (BoardState_Organisation.cpp)

    /** Gives every task its place; the board shows the result when organized() is emitted. */
    void organizeTasks(const WorkItems &tasks, TaskSources answered = AllTaskSources);

    // Moves (BoardState_Moves.cpp)

    void moveTask(const WorkItemPtr &task, ColumnId to, std::optional<SwimLaneId> swimLaneId = {},
                  std::optional<int> position = {});
    /** As moveTask, for a caller that has told the task's source already. */
    void moveTaskWithoutTellingSource(const WorkItemPtr &task, ColumnId to,
                                      std::optional<SwimLaneId> swimLaneId = {},
                                      std::optional<int> position = {});
    void moveTaskToSwimLane(const QString &taskId, SwimLaneId swimLaneId);
    void addTask(const WorkItemPtr &task, ColumnId toColumn, SwimLaneId inSwimLane,
                 std::optional<int> atPosition = {});
    void addTaskToColumn(const WorkItemPtr &task, ColumnId columnId,
                         std::optional<SwimLaneId> swimLaneId = {}, std::optional<int> position = {});
    void removeTaskFromColumn(const QString &taskId, ColumnId columnId,
                              std::optional<SwimLaneId> swimLaneId = {});
    void updateTaskInColumn(const WorkItemPtr &task, ColumnId columnId, SwimLaneId swimLaneId);
    void updateTaskPositions(ColumnId columnId, std::optional<SwimLaneId> swimLaneId = {});
    void reindexTaskPositions(ColumnId columnId, SwimLaneId swimLaneId);
    static bool shouldUpdateOmniFocus(const Column &from, const Column &to);
    void retryFailedOperation(const QString &taskID);
    /** Takes over that a task's source has completed or reopened it, and moves its card to the first column
     * for that. */
    void followSource(const WorkItemPtr &task, bool isComplete);
    TaskMoveStatus taskOperationStatus(const QString &taskId) const;
    /** True if the last direct move asked for was carried out: one that comes too soon after another is not.
     */
    bool didActOnLastDirectMove() const { return m_didActOnLastDirectMove; }
    /** Takes a task that exists in no source any more off the board and out of all that remembers it. */
    void removeTask(const QString &taskId);
    bool removePlainTextTasks(const QStringList &taskIds);
    bool removeAllPlainTextTasks();
    /** Puts a task that its source has just created on the board. */
    void registerPlainTextTask(const WorkItemPtr &task, ColumnId columnId, SwimLaneId swimLaneId,
                               int position);

    // Text in and out (BoardState_Exchange.cpp)

    /**
     * Makes plain text tasks of the lines, in their order at the head of a cell: that of the first queue
     * column and the default swimlane unless others are given; none on a board without columns. They are on
     * the board at once; resumes when they are stored, or cannot be.
     */
    QCoro::Task<ImportResult> importPlainTextTasks(std::vector<ParsedPlainTextTask> tasks,
                                                   std::optional<ColumnId> columnId,
                                                   std::optional<SwimLaneId> swimLaneId);
    /** The tasks as text, in the order of the board; empty without tasks. */
    QString exportText(ExportScope scope, ExportFormat format, std::optional<ColumnId> columnId,
                       std::optional<SwimLaneId> swimLaneId) const;
    /** Puts that text on the clipboard, and says so. */
    ExportResult exportTasksToClipboard(ExportScope scope, ExportFormat format,
                                        std::optional<ColumnId> columnId,
                                        std::optional<SwimLaneId> swimLaneId);
    ExportResult quickExportPlainTextTasks();

    // Edits (BoardState_Edits.cpp)

    TaskUpdate updateTaskName(const QString &taskId, const QString &name);
    TaskUpdate updateTaskFlagStatus(const QString &taskId, bool isFlagged);
    TaskUpdate updateTaskCompletionStatus(const QString &taskId, bool isComplete);
    TaskUpdate updateTaskCompletionStatus(const QString &taskId, bool isComplete,
                                          std::optional<Date> completionDate);
    TaskUpdate updateTaskBlockedStatus(const QString &taskId, bool isBlocked);
    TaskUpdate updateTaskBlockReason(const QString &taskId, const std::optional<QString> &reason);
    TaskUpdate updateReminderPriority(const QString &taskId, int priority);
    /** By the item's class; throws TaskManagerError where no source fits. */
    TaskManagerProtocol &getTaskManager(const WorkItem &task) const;
    QCoro::Task<bool> withRetryOnPermissionError(std::function<QCoro::Task<bool>()> operation);

    // Columns and swimlanes (BoardState_Columns.cpp, BoardState_SwimLanes.cpp)

    void addColumn(const Column &column);
    /** A change of type to or from completed completes or reopens the column's tasks, without telling their
     * sources. */
    void updateColumn(const Column &column);
    /** Its tasks go to the first other column of its type, each in its swimlane; refused without one. */
    void removeColumn(ColumnId id);
    /** Takes the column at `from` out and puts it in at `to`; false where the order of types forbids it. */
    bool moveColumn(int from, int to);
    bool addSwimLane(const SwimLane &swimLane);
    /** Its tasks go to the default swimlane. Refused for the default swimlane, and for an unknown one. */
    void removeSwimLane(SwimLaneId id);

    // Work in progress (BoardState_WIP.cpp)

    WIPStatus getWIPStatus() const;
    void notifyWIPThresholdChanges(int previousWIPCount);
    int calculateTotalWIP() const;
    int calculateColumnTaskCount(ColumnId columnId) const;
    int calculateSwimLaneIncompleteWorkItems(SwimLaneId swimLaneId) const;
    int calculateTotalIncompleteWorkItems() const;
    /** "{n}%" of all incomplete tasks, cut to a whole number. */
    QString calculateSwimLaneIncompletePercentage(SwimLaneId swimLaneId) const;

    // Selection (BoardState_Selection.cpp)

    void selectTask(const QString &id, bool extendSelection);
    void deselectTask(const QString &id);
    void deselectAllTasks();
    void toggleTaskSelection(const QString &id);
    void clearSelection();
    void clearSelectionOnReload();

    // Priorities (BoardState_Priorities.cpp)

    void assignEisenhowerPriority(const QString &taskId, EisenhowerPriority priority);
    void removeEisenhowerPriority(const QString &taskId);
    int getTaskCount(EisenhowerPriority priority) const;
    void updateEisenhowerTaskCategorization();

    // Isolation, focus and zoom (BoardState_Isolation.cpp)

    void isolateSwimLane(SwimLaneId id);
    void clearSwimLaneIsolation();
    bool isSwimLaneIsolationActive() const { return m_isolatedSwimLaneId.has_value(); }
    std::optional<SwimLaneId> isolatedSwimLaneId() const { return m_isolatedSwimLaneId; }
    bool isSwimLaneIsolated(SwimLaneId id) const { return m_isolatedSwimLaneId == id; }
    /** Row height in points as isolation has it now. */
    double heightForSwimLane(SwimLaneId id) const;
    void focusTask(const QString &id);
    void clearTaskFocus();
    bool isTaskFocusActive() const { return m_focusedTaskId.has_value(); }
    std::optional<QString> focusedTaskId() const { return m_focusedTaskId; }
    bool isTaskFocused(const QString &id) const { return m_focusedTaskId == id; }
    static constexpr double MinimumZoom = 0.5;
    static constexpr double MaximumZoom = 2.0;
    double zoomLevel() const { return m_zoomLevel; }
    void zoomIn();
    void zoomOut();
    void resetZoom();
    void setZoom(double level);

    ColumnManager &columnManager() { return m_columnManager; }
    const ColumnManager &columnManager() const { return m_columnManager; }
    SwimLaneManager &swimLaneManager() { return m_swimLaneManager; }
    const SwimLaneManager &swimLaneManager() const { return m_swimLaneManager; }
    SelectionManager &selectionManager() { return m_selectionManager; }
    const SelectionManager &selectionManager() const { return m_selectionManager; }
    FilterManager &filterManager() { return m_filterManager; }
    const FilterManager &filterManager() const { return m_filterManager; }
    PriorityManager &priorityManager() { return m_priorityManager; }
    DragDropManager &dragDropManager() { return m_dragDropManager; }
    WIPGaugeSettings &wipGaugeSettings() { return m_wipGaugeSettings; }
    PersistenceQueue &persistenceQueue() { return m_persistenceQueue; }

Q_SIGNALS:
    /** Something on the board changed; at most once a turn of the event loop. */
    void changed();
    /** Loading state, progress or message. */
    void loadingChanged();
    /** A run of organizeTasks has put its result in place. */
    void organized();
    void taskOperationStatusChanged(const QString &taskId);
    void zoomLevelChanged();
    void isolationChanged();
    void taskFocusChanged();

private:
    struct OrganizationRun;
    struct Relocation;
    enum class TellSource { Yes, No };

    void followManagers();
    /** Those of `tasks` that pass the filters. */
    WorkItems shown(WorkItems tasks) const;

    // Loading

    void setLoading(BoardLoadingState state, const QString &error = {});
    void setLoadingProgress(double progress, const QString &message);
    void copyRepositoryProgress();

    // Organisation

    QCoro::Task<> continueOrganizeTasks(quint64 number, TaskSources answered);
    void restartOrganization();
    void noteWhetherStoreWasRead(bool wasRead);
    void clearFocusOfVanishedTask();

    // Moves

    void performMove(const WorkItemPtr &task, ColumnId to, std::optional<SwimLaneId> swimLaneId,
                     std::optional<int> position, TellSource tellSource);
    void handleReorderWithinLocation(const WorkItemPtr &task, const Column &column, SwimLaneId swimLaneId,
                                     std::optional<int> targetPosition);
    void handleMoveBetweenLocations(const Relocation &move);
    void updatePositionsAfterMove(const Relocation &move);
    void giveMoveFeedback(const Relocation &move);
    QCoro::Task<> updateTaskManagerForTaskMove(WorkItemPtr task, Column target, SwimLaneId swimLaneId);
    QCoro::Task<> retryOperation(WorkItemPtr task, TaskPosition place, bool isComplete);
    void takeOverCompletion(const QString &taskId, bool isComplete);
    void finishSourceUpdate(const WorkItemPtr &task, bool isComplete, ColumnId columnId,
                            SwimLaneId swimLaneId);
    bool wasOvertaken(const QString &taskId, bool isComplete) const;
    void failOperation(const QString &taskId, const QString &message, const QString &error);
    void markTaskOperationSuccessful(const QString &taskId, double delay);
    void setTaskOperationStatus(const QString &taskId, const TaskMoveStatus &status);
    /** Puts a task that is new in a cell to its place there: in front of what has the number, or at the end.
     */
    void placeNewcomer(const QString &taskId, CellId cell, std::optional<int> position);
    void placeInColumn(const WorkItemPtr &task, ColumnId columnId, SwimLaneId swimLaneId,
                       std::optional<int> position);
    SwimLaneId existingSwimLane(std::optional<SwimLaneId> swimLaneId) const;
    void densify(CellId cell);
    void appendNumbered(CellId cell, PersistenceOperation &operation) const;
    /** Forgets a task in memory; a plain text task for good. */
    void forgetTask(const QString &taskId);
    bool noteRemoval(bool isRemoved);
    PlainTextTaskManager *plainTextManager() const;

    // Text in and out
    std::optional<ColumnId> columnOfImports() const;
    /** The board's own tag of that name, whatever its capitals, or a new one. */
    Tag findOrCreateTag(const QString &name) const;
    WorkItems tasksOfScope(ExportScope scope, std::optional<ColumnId> columnId,
                           std::optional<SwimLaneId> swimLaneId) const;
    bool isInScope(const WorkItem &task, ExportScope scope) const;
    WorkItems tasksInBoardOrder() const;
    WorkItems tasksBySwimLane(SwimLaneId swimLaneId) const;

    // Notifications (BoardState_Notifications.cpp)
    void observeNotifications();
    void handleSwimLaneChangedNotification(const Notification &notification);
    void handleDirectTaskMoveNotification(const Notification &notification);
    void handlePriorityFilterChangedNotification(const Notification &notification);
    void handleToggleTaskFocusModeNotification(const Notification &notification);
    void handleTaskAddedToBoardStateNotification(const Notification &notification);
    QCoro::Task<> takeOverPlainTextTask(QString taskId);
    QCoro::Task<> addPlainTextTask(QString taskId);
    QCoro::Task<WorkItemPtr> plainTextTask(QString taskId);
    QCoro::Task<WorkItemPtr> reloadedPlainTextTask(QString taskId);
    std::optional<TaskPosition> placeWithoutRow(const QString &taskId) const;
    void moveDirectly(const WorkItemPtr &task, CellId cell, int position);
    void guardUpdate();
    void post(NotificationName name, const QVariant &object = {}, const QVariantMap &userInfo = {});

    // Edits (BoardState_Edits.cpp)

    /** Changes a task of one of `classes`; a task of another class is found but not changed. */
    TaskUpdate updateField(const QString &taskId, std::initializer_list<ItemClass> classes,
                           const std::function<void(WorkItem &)> &change);
    /** Stores a generic item that is a plain text task by its id, as it is now. */
    void saveChanges(WorkItem &item);
    /** Completes or reopens items of known classes, and stores that together. */
    void setCompletion(const WorkItems &items, bool isComplete);

    // Columns and swimlanes that go away (BoardState_SwimLanes.cpp)

    using PlaceTest = std::function<bool(const TaskPosition &)>;
    using PlaceChange = std::function<void(TaskPosition &)>;
    /** Changes all places that `isMeant`: each goes behind its new cell, in the old order. Gives these cells.
     */
    QSet<CellId> relocate(const PlaceTest &isMeant, const PlaceChange &change);
    /** Has the cells stored as they show, in one operation. */
    void storeCells(const QSet<CellId> &cells);

    // Priorities (BoardState_Priorities.cpp)
    void setQuadrant(const QString &taskId, EisenhowerPriority priority);

    // Zoom (BoardState_Isolation.cpp)
    void changeZoom(double level);

    // Every change of the facts (BoardState_Collections.cpp)

    /**
     * To be called for each task whose fields, place or quadrant are changed by an operation: its cell shows
     * anew, and an organisation under way does not undo the change.
     */
    void touch(const QString &taskId);
    /** Places a task, touching it. */
    void setPlacement(const TaskPosition &position, Tie tie = Tie::AsArrived);
    /** Takes a task from its place, touching it. */
    bool removePlacement(const QString &taskId);
    void postSwimLaneWIPCountsChanged();

    BoardServices m_services;

    BoardLoadingState m_loadingState = BoardLoadingState::NotLoaded;
    double m_loadingProgress = 0.0;
    QString m_loadingStatusMessage;
    QString m_loadingError;
    bool m_hasBeenOrganized = false;

    ColumnManager m_columnManager;
    SwimLaneManager m_swimLaneManager;
    SelectionManager m_selectionManager;
    FilterManager m_filterManager;
    PriorityManager m_priorityManager;
    DragDropManager m_dragDropManager;
    WIPGaugeSettings m_wipGaugeSettings;
    PersistenceQueue m_persistenceQueue;

    Placements m_placements;
    /** What was touched since the organisation under way began. */
    QSet<QString> m_touchedTaskIds;
    /** Plain text tasks deleted in this run: no fetch that began earlier brings them back. */
    QSet<QString> m_deletedTaskIds;
    bool m_isOrganizing = false;
    /** Grows with each organizeTasks(): an older run finds that it is not meant any more. */
    quint64 m_organizationRun = 0;
    TaskSources m_lastAnswered = AllTaskSources;
    bool m_hasToldOfFailedRead = false;
    quint64 m_filterRevision = 0;
    /** Lives while the repository's progress is followed. */
    std::unique_ptr<QObject> m_repositoryWatch;
    bool m_isUpdating = false;
    bool m_didActOnLastDirectMove = false;
    bool m_isChangeScheduled = false;

    QHash<QString, TaskMoveStatus> m_taskOperationStatus;

    std::optional<SwimLaneId> m_isolatedSwimLaneId;
    QHash<SwimLaneId, bool> m_preIsolationExpansionStates;
    std::optional<QString> m_focusedTaskId;
    double m_zoomLevel = 1.0;
};

} // namespace vantrel
