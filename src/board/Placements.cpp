#include "board/Placements.h"

#include <algorithm>

namespace vantrel {

WorkItemPtr Placements::task(const QString &id) const
{
    const auto found = m_index.constFind(id);
    return found == m_index.cend() ? nullptr : m_slots[*found].task;
}

int Placements::incompleteTaskCount() const
{
    int count = 0;
    size_t shownCount = 0;
    for (Cell &cell : m_cells) {
        putInOrder(cell);
        shownCount += cell.items.size();
        count += incompleteCount(cell);
    }
    if (shownCount == m_arrival.size()) {
        return count;
    }
    return static_cast<int>(std::count_if(m_arrival.begin(), m_arrival.end(), [this](SlotIndex index) {
        return !m_slots[index].task->isComplete();
    }));
}

WorkItems Placements::tasks() const
{
    WorkItems tasks;
    tasks.reserve(m_arrival.size());
    forEachTask([&tasks](const WorkItemPtr &task) { tasks.push_back(task); });
    return tasks;
}

void Placements::putTask(const WorkItemPtr &task)
{
    const SlotIndex index = slotFor(task->id());
    if (!m_slots[index].task) {
        noteArrival(index);
    }
    assignTask(index, task);
}

void Placements::removeTask(QString id)
{
    const auto found = m_index.constFind(id);
    if (found == m_index.cend() || !m_slots[*found].task) {
        return;
    }
    const SlotIndex index = *found;
    std::erase(m_arrival, index);
    clearTask(index);
    releaseIfEmpty(id, index);
}

Placements::Replacement Placements::replaceTasks(const WorkItems &tasks)
{
    Replacement result;
    const std::vector<SlotIndex> before = std::exchange(m_arrival, {});
    m_arrival.reserve(tasks.size());
    m_index.reserve(static_cast<qsizetype>(tasks.size()));
    m_slots.reserve(tasks.size());
    ++m_round;
    // Tasks mostly come in the order in which they came before: then no id is looked up.
    size_t next = 0;
    for (const WorkItemPtr &task : tasks) {
        const SlotIndex index = isTaskAt(before, next, task) ? before[next] : slotFor(task->id());
        Slot &slot = m_slots[index];
        if (slot.round == m_round) {
            result.repeated.append(task->id());
            continue;
        }
        next = slot.arrivalIndex + 1;
        slot.round = m_round;
        if (slot.task && slot.task != task) {
            result.former.push_back(slot.task);
        }
        noteArrival(index);
        assignTask(index, task);
    }
    for (const SlotIndex index : before) {
        if (m_slots[index].round != m_round) {
            result.former.push_back(m_slots[index].task);
            clearTask(index);
            releaseIfEmpty(result.former.back()->id(), index);
        }
    }
    return result;
}

bool Placements::isTaskAt(const std::vector<SlotIndex> &arrival, size_t at, const WorkItemPtr &task) const
{
    const WorkItem *known = at < arrival.size() ? m_slots[arrival[at]].task.get() : nullptr;
    return known && (known == task.get() || known->id() == task->id());
}

void Placements::noteArrival(SlotIndex index)
{
    m_slots[index].arrivalIndex = static_cast<quint32>(m_arrival.size());
    m_arrival.push_back(index);
}

const TaskPosition *Placements::find(const QString &taskId) const
{
    const auto found = m_index.constFind(taskId);
    return found == m_index.cend() || !m_slots[*found].isPlaced ? nullptr : &m_slots[*found].place;
}

std::vector<TaskPosition> Placements::all() const
{
    std::vector<TaskPosition> places;
    places.reserve(static_cast<size_t>(m_placedCount));
    for (const Slot &slot : m_slots) {
        if (slot.isPlaced) {
            places.push_back(slot.place);
        }
    }
    return places;
}

void Placements::set(const TaskPosition &position, Tie tie)
{
    place(slotFor(position.taskId), position, tie);
}

void Placements::setOfTask(const TaskPosition &position)
{
    const auto found = m_index.constFind(position.taskId);
    if (found != m_index.cend() && m_slots[*found].task) {
        place(*found, position, Tie::AsArrived);
    }
}

void Placements::place(SlotIndex index, const TaskPosition &position, Tie tie)
{
    Slot &slot = m_slots[index];
    if (slot.isPlaced && slot.place == position && tie == Tie::AsArrived) {
        return;
    }
    if (slot.isPlaced) {
        markDirty(m_cells[slot.cell]);
    } else {
        slot.isPlaced = true;
        ++m_placedCount;
    }
    slot.place = position;
    slot.cell = shownCell(position);
    slot.rank = tie == Tie::BeforeEquals ? --m_firstRank : ++m_lastRank;
    slot.hasItem = false;
    addItem(index);
}

bool Placements::remove(QString taskId)
{
    const auto found = m_index.constFind(taskId);
    if (found == m_index.cend() || !m_slots[*found].isPlaced) {
        return false;
    }
    const SlotIndex index = *found;
    Slot &slot = m_slots[index];
    slot.isPlaced = false;
    slot.hasItem = false;
    --m_placedCount;
    markDirty(m_cells[slot.cell]);
    releaseIfEmpty(taskId, index);
    return true;
}

void Placements::removePlacesWithoutTask()
{
    for (const Slot &slot : m_slots) {
        if (slot.isPlaced && !slot.task) {
            remove(slot.place.taskId);
        }
    }
}

QStringList Placements::densify(CellId cell)
{
    QStringList changed;
    if (!ordered(cell)) {
        return changed;
    }
    int number = 0;
    for (Item &item : m_cells[cell].items) {
        if (item.position != number) {
            item.position = number;
            m_slots[item.slot].place.position = number;
            changed.append(m_slots[item.slot].place.taskId);
        }
        ++number;
    }
    return changed;
}

void Placements::setSwimLanes(const QSet<SwimLaneId> &existing, SwimLaneId fallback)
{
    if (existing == m_swimLanes && fallback == m_fallbackSwimLane) {
        return;
    }
    m_swimLanes = existing;
    m_fallbackSwimLane = fallback;
    for (Cell &cell : m_cells) {
        cell.items.clear();
        cell.sortedCount = 0;
        cell.isDirty = false;
        cell.revision = ++m_lastRevision;
    }
    for (SlotIndex index = 0; index < m_slots.size(); ++index) {
        Slot &slot = m_slots[index];
        if (slot.isPlaced) {
            slot.cell = shownCell(slot.place);
            slot.hasItem = false;
            addItem(index);
        }
    }
}

SwimLaneId Placements::shownSwimLane(SwimLaneId own) const
{
    return m_swimLanes.contains(own) ? own : m_fallbackSwimLane;
}

CellId Placements::shownCell(const TaskPosition &position) const
{
    return {shownSwimLane(position.swimLaneId), position.columnId};
}

WorkItems Placements::cell(CellId cell) const
{
    WorkItems tasks;
    if (const Cell *found = ordered(cell)) {
        tasks.reserve(found->items.size());
        for (const Item &item : found->items) {
            tasks.push_back(m_slots[item.slot].task);
        }
    }
    return tasks;
}

std::vector<TaskPosition> Placements::placesIn(CellId cell) const
{
    std::vector<TaskPosition> places;
    if (const Cell *found = ordered(cell)) {
        places.reserve(found->items.size());
        for (const Item &item : found->items) {
            places.push_back(m_slots[item.slot].place);
        }
    }
    return places;
}

qsizetype Placements::size(CellId cell) const
{
    const Cell *found = ordered(cell);
    return found ? static_cast<qsizetype>(found->items.size()) : 0;
}

int Placements::incompleteCount(CellId cell) const
{
    Cell *found = ordered(cell);
    return found ? incompleteCount(*found) : 0;
}

/** Of a cell in order. */
int Placements::incompleteCount(Cell &cell) const
{
    if (cell.countedRevision != cell.revision || cell.countedRound != m_round) {
        cell.countedRevision = cell.revision;
        cell.countedRound = m_round;
        cell.incompleteCount =
            static_cast<int>(std::count_if(cell.items.begin(), cell.items.end(), [this](const Item &item) {
                return !m_slots[item.slot].task->isComplete();
            }));
    }
    return cell.incompleteCount;
}

qsizetype Placements::indexInCell(const QString &taskId) const
{
    const auto index = m_index.constFind(taskId);
    if (index == m_index.cend() || !m_slots[*index].isPlaced || !m_slots[*index].task) {
        return -1;
    }
    const Slot &slot = m_slots[*index];
    const std::vector<Item> &items = ordered(slot.cell)->items;
    return std::lower_bound(items.begin(), items.end(), Item{slot.place.position, slot.rank, *index}) -
           items.begin();
}

quint64 Placements::revision(CellId cell) const
{
    const auto found = m_cells.constFind(cell);
    return found == m_cells.cend() ? 0 : found->revision;
}

void Placements::markChanged(const QString &taskId)
{
    const auto found = m_index.constFind(taskId);
    if (found != m_index.cend() && m_slots[*found].isPlaced) {
        m_cells[m_slots[*found].cell].revision = ++m_lastRevision;
    }
}

Placements::SlotIndex Placements::slotFor(const QString &id)
{
    const qsizetype known = m_index.size();
    SlotIndex &index = m_index[id];
    if (m_index.size() == known) {
        return index;
    }
    if (m_freeSlots.empty()) {
        index = static_cast<SlotIndex>(m_slots.size());
        m_slots.emplace_back();
    } else {
        index = m_freeSlots.back();
        m_freeSlots.pop_back();
    }
    return index;
}

void Placements::releaseIfEmpty(const QString &id, SlotIndex index)
{
    if (m_slots[index].task || m_slots[index].isPlaced) {
        return;
    }
    m_index.remove(id);
    m_slots[index] = Slot();
    m_freeSlots.push_back(index);
}

void Placements::assignTask(SlotIndex index, const WorkItemPtr &task)
{
    Slot &slot = m_slots[index];
    if (slot.task == task) {
        return;
    }
    slot.task = task;
    if (!slot.isPlaced) {
        return;
    }
    if (slot.hasItem) {
        markDirty(m_cells[slot.cell]);
    } else {
        addItem(index);
    }
}

void Placements::clearTask(SlotIndex index)
{
    Slot &slot = m_slots[index];
    slot.task.reset();
    if (slot.isPlaced) {
        markDirty(m_cells[slot.cell]);
    }
}

void Placements::addItem(SlotIndex index)
{
    Slot &slot = m_slots[index];
    if (!slot.task) {
        return;
    }
    Cell &cell = m_cells[slot.cell];
    cell.items.push_back({slot.place.position, slot.rank, index});
    slot.hasItem = true;
    markDirty(cell);
}

void Placements::markDirty(Cell &cell)
{
    cell.isDirty = true;
    cell.revision = ++m_lastRevision;
}

bool Placements::isCurrent(const Item &item) const
{
    Slot &slot = m_slots[item.slot];
    if (!slot.isPlaced || slot.rank != item.rank) {
        return false;
    }
    if (!slot.task) {
        slot.hasItem = false;
    }
    return slot.hasItem;
}

Placements::Cell *Placements::ordered(CellId cell) const
{
    const auto found = m_cells.find(cell);
    if (found == m_cells.end()) {
        return nullptr;
    }
    putInOrder(*found);
    return &*found;
}

/** Drops what is out of date, sorts what was added and merges it into what was in order already. */
void Placements::putInOrder(Cell &cell) const
{
    if (!cell.isDirty) {
        return;
    }
    const auto isStale = [this](const Item &item) {
        return !isCurrent(item);
    };
    const auto added = cell.items.begin() + static_cast<std::ptrdiff_t>(cell.sortedCount);
    const auto keptEnd = std::remove_if(cell.items.begin(), added, isStale);
    const auto addedEnd = std::remove_if(added, cell.items.end(), isStale);
    const auto end = std::move(added, addedEnd, keptEnd);
    std::sort(keptEnd, end);
    std::inplace_merge(cell.items.begin(), keptEnd, end);
    cell.items.erase(end, cell.items.end());
    cell.sortedCount = cell.items.size();
    cell.isDirty = false;
}

} // namespace vantrel
