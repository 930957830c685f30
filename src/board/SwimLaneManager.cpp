#include "board/SwimLaneManager.h"

#include "board/rules/Ordering.h"
#include "foundations/Clock.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/Text.h"
#include "persistence/PersistenceManager.h"
#include "persistence/StableIds.h"

#include <algorithm>

namespace vantrel {

namespace {

bool hasDefault(const std::vector<SwimLane> &swimLanes)
{
    return std::any_of(swimLanes.begin(), swimLanes.end(),
                       [](const SwimLane &lane) { return lane.isDefault(); });
}

/** What is not a number at all becomes the minimum too. */
double clampedHeight(double height)
{
    return height >= SwimLaneManager::MinimumHeight ? std::min(height, SwimLaneManager::MaximumHeight)
                                                    : SwimLaneManager::MinimumHeight;
}

} // namespace

SwimLaneManager::SwimLaneManager(PersistenceManager &persistence, NotificationCenter &notifications,
                                 Clock &clock, QObject *parent)
    : QObject(parent), m_persistence(persistence), m_notifications(notifications), m_clock(clock)
{
    m_swimLanes = m_persistence.loadSwimLaneConfiguration().value_or(std::vector<SwimLane>());
    if (!hasDefault(m_swimLanes)) {
        addDefaultSwimLane();
    }
}

const SwimLane *SwimLaneManager::swimLane(SwimLaneId id) const
{
    const int index = indexOf(id);
    return index >= 0 ? &m_swimLanes[index] : nullptr;
}

int SwimLaneManager::indexOf(SwimLaneId id) const
{
    const auto found = std::find_if(m_swimLanes.begin(), m_swimLanes.end(),
                                    [id](const SwimLane &lane) { return lane.id == id; });
    return found != m_swimLanes.end() ? static_cast<int>(found - m_swimLanes.begin()) : -1;
}

const SwimLane &SwimLaneManager::defaultSwimLane() const
{
    return *std::find_if(m_swimLanes.begin(), m_swimLanes.end(),
                         [](const SwimLane &lane) { return lane.isDefault(); });
}

QString SwimLaneManager::getSwimLaneName(SwimLaneId id) const
{
    const SwimLane *lane = swimLane(id);
    return lane ? lane->name : QStringLiteral("unknown");
}

bool SwimLaneManager::addSwimLane(const SwimLane &swimLane)
{
    SwimLane added = swimLane;
    if (added.stableId.isEmpty() || added.isDefault()) {
        added.stableId = stableIdForSwimLane(added.id);
    }
    m_swimLanes.push_back(added);
    saveAndTriggerUpdates();
    return true;
}

void SwimLaneManager::updateSwimLane(const SwimLane &swimLane)
{
    const int index = indexOf(swimLane.id);
    if (index < 0) {
        return;
    }
    SwimLane &stored = m_swimLanes[index];
    const QString stableId = stored.stableId;
    stored = swimLane;
    // The role of a swimlane is not for editors to change, least of all that of the default one.
    stored.stableId = stableId;
    saveAndTriggerUpdates();
}

bool SwimLaneManager::moveSwimLane(int from, int to)
{
    if (!canMoveElement(m_swimLanes, from, to)) {
        return false;
    }
    moveElement(m_swimLanes, from, to);
    numberByIndex(m_swimLanes);
    saveAndTriggerUpdates();
    return true;
}

bool SwimLaneManager::canRemoveSwimLane(SwimLaneId id) const
{
    const SwimLane *lane = swimLane(id);
    return lane && !lane->isDefault() && m_swimLanes.size() >= 2;
}

QCoro::Task<QHash<QString, ColumnId>> SwimLaneManager::removeSwimLane(SwimLaneId id)
{
    QHash<QString, ColumnId> movedTasks;
    if (!canRemoveSwimLane(id)) {
        co_return movedTasks;
    }
    auto askedRows = m_persistence.readAllTaskPositions();
    m_persistence.moveSwimLaneTaskPositions(id, defaultSwimLane().id);
    m_swimLanes.erase(m_swimLanes.begin() + indexOf(id));
    numberByIndex(m_swimLanes);
    saveAndTriggerUpdates();
    auto rows = co_await std::move(askedRows);
    for (const PersistentTaskPosition &row :
         std::move(rows).value_or(std::vector<PersistentTaskPosition>())) {
        if (row.swimLaneId == id) {
            movedTasks.insert(row.id, row.columnId);
        }
    }
    co_return movedTasks;
}

void SwimLaneManager::updateSwimLaneHeight(SwimLaneId id, double height)
{
    const int index = indexOf(id);
    const double clamped = clampedHeight(height);
    if (index < 0 || m_swimLanes[index].height == clamped) {
        return;
    }
    m_swimLanes[index].height = clamped;
    saveAndTriggerUpdates();
    log::info(u"Updated swimlane height to " + realText(clamped), LogCategory::Swimlanes);
}

void SwimLaneManager::toggleSwimLaneExpanded(SwimLaneId id)
{
    if (const SwimLane *lane = swimLane(id)) {
        setExpansionStates({{id, !lane->isExpanded}});
    }
}

void SwimLaneManager::setExpansionStates(const QHash<SwimLaneId, bool> &states)
{
    bool hasChanged = false;
    for (SwimLane &lane : m_swimLanes) {
        const bool isExpanded = states.value(lane.id, lane.isExpanded);
        if (isExpanded != lane.isExpanded) {
            lane.isExpanded = isExpanded;
            hasChanged = true;
            log::info(u"Toggled swimlane expanded state to " +
                          (isExpanded ? QStringLiteral("true") : QStringLiteral("false")),
                      LogCategory::Swimlanes);
        }
    }
    if (hasChanged) {
        saveAndTriggerUpdates();
    }
}

void SwimLaneManager::addDefaultSwimLane()
{
    SwimLane lane = SwimLane::defaultSwimLane();
    // With the file lost, the placements of the default swimlane still name it by its old id.
    if (const std::optional<SwimLaneId> known = m_persistence.storedDefaultSwimLaneId()) {
        if (indexOf(*known) < 0) {
            lane.id = *known;
        }
    }
    m_swimLanes.insert(m_swimLanes.begin(), lane);
    numberByIndex(m_swimLanes);
    m_persistence.saveSwimLaneConfiguration(m_swimLanes);
}

void SwimLaneManager::saveAndTriggerUpdates()
{
    m_persistence.saveSwimLaneConfiguration(m_swimLanes);
    Q_EMIT swimLanesChanged();
    m_clock.soon(this, [this] { m_notifications.post(notifications::BoardStateChanged); });
}

} // namespace vantrel
