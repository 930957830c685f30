#include "board/BoardState.h"
#include "foundations/Log.h"

#include <algorithm>
#include <tuple>

namespace vantrel {

bool BoardState::addSwimLane(const SwimLane &swimLane)
{
    clearSwimLaneIsolation();
    return m_swimLaneManager.addSwimLane(swimLane);
}

void BoardState::removeSwimLane(SwimLaneId id)
{
    if (!m_swimLaneManager.canRemoveSwimLane(id)) {
        return;
    }
    if (isSwimLaneIsolated(id)) {
        clearSwimLaneIsolation();
    }
    const SwimLaneId target = m_swimLaneManager.defaultSwimLane().id;
    const QSet<CellId> entered = relocate([id](const TaskPosition &place) { return place.swimLaneId == id; },
                                          [target](TaskPosition &place) { place.swimLaneId = target; });
    // Where its tasks stood is known here: nobody awaits the store's answer.
    std::ignore = m_swimLaneManager.removeSwimLane(id);
    storeCells(entered);
    invalidateDerivedCollections();
    postSwimLaneWIPCountsChanged();
}

QSet<CellId> BoardState::relocate(const PlaceTest &isMeant, const PlaceChange &change)
{
    std::vector<TaskPosition> shown;
    for (const CellId &cell : m_placements.cells()) {
        const std::vector<TaskPosition> places = m_placements.placesIn(cell);
        std::copy_if(places.begin(), places.end(), std::back_inserter(shown), isMeant);
    }
    for (TaskPosition place : m_placements.all()) {
        if (isMeant(place) && !m_placements.task(place.taskId)) {
            change(place);
            setPlacement(place);
        }
    }
    QHash<CellId, int> nextPosition;
    for (TaskPosition place : shown) {
        change(place);
        const CellId cell = m_placements.shownCell(place);
        if (!nextPosition.contains(cell)) {
            densify(cell);
            nextPosition.insert(cell, static_cast<int>(m_placements.size(cell)));
        }
        place.position = nextPosition[cell]++;
        setPlacement(place);
    }
    return QSet<CellId>(nextPosition.keyBegin(), nextPosition.keyEnd());
}

void BoardState::storeCells(const QSet<CellId> &cells)
{
    PersistenceOperation operation;
    for (const CellId &cell : cells) {
        appendNumbered(cell, operation);
    }
    if (!operation.taskPositionUpdates.empty()) {
        m_persistenceQueue.enqueue(std::move(operation));
    }
}

} // namespace vantrel
