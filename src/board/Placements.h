#pragma once

#include "foundations/Ids.h"
#include "foundations/TaskPosition.h"
#include "sources/TaskManagerProtocol.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <vector>

namespace vantrel {

/** How a placement stands to those of its cell that have the same number. */
enum class Tie {
    AsArrived,    ///< behind them, or as before if the placement is not new
    BeforeEquals, ///< in front of all of them
    AfterEquals,  ///< behind all of them
};

/**
 * The two facts of a board, its tasks and their places, and the cells that follow from them.
 *
 * A cell is put in order when it is read, and only if something in it has changed: a move costs the two cells
 * that it touches, whatever the size of the board. A task may be without a place, and a place without a task;
 * neither is in a cell. A place in a swimlane that is gone keeps its swimlane, but is shown in the fallback
 * swimlane's cell. Owned by BoardState; GUI thread.
 */
class Placements
{
public:
    // The tasks

    /** nullptr if there is no such task. */
    WorkItemPtr task(const QString &id) const;
    qsizetype taskCount() const { return static_cast<qsizetype>(m_arrival.size()); }
    /** How many of all tasks, placed or not, are still to be done. */
    int incompleteTaskCount() const;
    /** In the order of their arrival. */
    WorkItems tasks() const;
    /** Adds the task, or puts it in place of the one with its id. */
    void putTask(const WorkItemPtr &task);
    /** Leaves the task's place as it is. */
    void removeTask(QString id);
    struct Replacement
    {
        /** Ids that were given again; of two tasks with one id the first counts. */
        QStringList repeated;
        /** The tasks that are not among those given. */
        WorkItems former;
    };
    /** Makes `tasks` all the tasks there are, leaving places as they are. */
    Replacement replaceTasks(const WorkItems &tasks);
    /** Calls `visit` with each task, in the order of their arrival. */
    template <typename Visit>
    void forEachTask(Visit visit) const
    {
        for (const SlotIndex index : m_arrival) {
            visit(m_slots[index].task);
        }
    }

    // Their places

    /** nullptr if the task has no place; valid until the next change. */
    const TaskPosition *find(const QString &taskId) const;
    qsizetype count() const { return m_placedCount; }
    /** Every place, also those without a task, in no particular order. */
    std::vector<TaskPosition> all() const;
    void set(const TaskPosition &position, Tie tie = Tie::AsArrived);
    /** The same for a task that is there; nothing for another one. */
    void setOfTask(const TaskPosition &position);
    /** False if the task had no place. */
    bool remove(QString taskId);
    /** Forgets the places of tasks that are gone. */
    void removePlacesWithoutTask();
    /**
     * Numbers a cell from 0 in the order that it shows, which changes nothing to see. Gives the ids of the
     * tasks whose number changed.
     */
    QStringList densify(CellId cell);

    // The cells

    /** Which swimlanes exist, and the one that shows the places of all others. */
    void setSwimLanes(const QSet<SwimLaneId> &existing, SwimLaneId fallback);
    SwimLaneId shownSwimLane(SwimLaneId own) const;
    CellId shownCell(const TaskPosition &position) const;
    /** The tasks of a cell in their order. */
    WorkItems cell(CellId cell) const;
    /** The places of a cell in their order. */
    std::vector<TaskPosition> placesIn(CellId cell) const;
    qsizetype size(CellId cell) const;
    /** How many tasks of a cell are still to be done; counted anew only after a change. */
    int incompleteCount(CellId cell) const;
    /** The task's index in the cell that shows it; -1 if none does. */
    qsizetype indexInCell(const QString &taskId) const;
    /** Cells that have held a task since the swimlanes were last set, in no particular order. */
    QList<CellId> cells() const { return m_cells.keys(); }
    /** Grows whenever the tasks of a cell or their order change; 0 for a cell that never held one. */
    quint64 revision(CellId cell) const;
    /** Counts a change of the task itself as a change of its cell. */
    void markChanged(const QString &taskId);

private:
    using SlotIndex = quint32;

    /** What is known under one id. Slots of ids that are gone are used again. */
    struct Slot
    {
        WorkItemPtr task;
        TaskPosition place;
        /** The cell that shows the place. */
        CellId cell;
        /** Orders equal numbers; never used twice, so a cell's item with another rank is out of date. */
        qint64 rank = 0;
        quint32 round = 0;
        /** Where the slot was in m_arrival when its task came; only a guess later. */
        quint32 arrivalIndex = 0;
        bool isPlaced = false;
        bool hasItem = false;
    };

    /** One line of a cell, with the keys of the order beside each other in memory. */
    struct Item
    {
        int position = 0;
        qint64 rank = 0;
        SlotIndex slot = 0;

        bool operator<(const Item &other) const
        {
            return position != other.position ? position < other.position : rank < other.rank;
        }
    };

    struct Cell
    {
        /** Up to `sortedCount` in order; items that are out of date stay until the cell is next read. */
        std::vector<Item> items;
        size_t sortedCount = 0;
        quint64 revision = 0;
        bool isDirty = false;
        int incompleteCount = 0;
        /** The revision and the round for which the count holds. */
        quint64 countedRevision = 0;
        quint32 countedRound = 0;
    };

    SlotIndex slotFor(const QString &id);
    bool isTaskAt(const std::vector<SlotIndex> &arrival, size_t at, const WorkItemPtr &task) const;
    void noteArrival(SlotIndex index);
    void releaseIfEmpty(const QString &id, SlotIndex index);
    void assignTask(SlotIndex index, const WorkItemPtr &task);
    void clearTask(SlotIndex index);
    void place(SlotIndex index, const TaskPosition &position, Tie tie);
    void addItem(SlotIndex index);
    void markDirty(Cell &cell);
    bool isCurrent(const Item &item) const;
    /** The cell, in order; nullptr if it never held a task. */
    Cell *ordered(CellId cell) const;
    int incompleteCount(Cell &cell) const;
    void putInOrder(Cell &cell) const;

    QHash<QString, SlotIndex> m_index;
    /** Mutable with the cells, as reading a cell notes which slots it dropped. */
    mutable std::vector<Slot> m_slots;
    std::vector<SlotIndex> m_freeSlots;
    std::vector<SlotIndex> m_arrival;
    mutable QHash<CellId, Cell> m_cells;
    QSet<SwimLaneId> m_swimLanes;
    SwimLaneId m_fallbackSwimLane;
    qsizetype m_placedCount = 0;
    qint64 m_firstRank = 0;
    qint64 m_lastRank = 0;
    quint64 m_lastRevision = 0;
    /** Grows when all tasks are given anew: their sources may have changed them in place. */
    quint32 m_round = 0;
};

} // namespace vantrel
