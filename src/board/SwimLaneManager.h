#pragma once

#include "foundations/Ids.h"
#include "foundations/NotificationCenter.h"
#include "foundations/SwimLane.h"

#include <QCoroTask>
#include <QHash>
#include <QObject>

#include <vector>

namespace vantrel {

class Clock;
class PersistenceManager;

/**
 * Owns the swimlanes of the board in their order, and saves them at each change. There is always a default
 * swimlane: it cannot be removed. Owned by BoardState; GUI thread.
 */
class SwimLaneManager : public QObject
{
    Q_OBJECT
public:
    static constexpr double MinimumHeight = 150.0;
    static constexpr double MaximumHeight = 800.0;

    /** Loads the swimlanes; a missing default swimlane is made and saved at once. */
    SwimLaneManager(PersistenceManager &persistence, NotificationCenter &notifications, Clock &clock,
                    QObject *parent = nullptr);

    const std::vector<SwimLane> &swimLanes() const { return m_swimLanes; }
    const SwimLane *swimLane(SwimLaneId id) const;
    /** Place from the top; -1 for an unknown swimlane. */
    int indexOf(SwimLaneId id) const;
    const SwimLane &defaultSwimLane() const;
    /** "unknown" for an unknown id. */
    QString getSwimLaneName(SwimLaneId id) const;

    /** Appends `swimLane` as it is, but for a missing stable id, or that of the default swimlane. */
    bool addSwimLane(const SwimLane &swimLane);
    /** Replaces the swimlane with that id, which keeps its stable id. */
    void updateSwimLane(const SwimLane &swimLane);
    /** False, with nothing changed, for an index out of range. */
    bool moveSwimLane(int from, int to);
    /** False for an unknown id, the default swimlane and the only one. */
    bool canRemoveSwimLane(SwimLaneId id) const;
    /**
     * Moves the stored rows of the swimlane to the default one, and removes it, all before this returns.
     * What is to be awaited is the store's answer where the swimlane's tasks stood.
     */
    QCoro::Task<QHash<QString, ColumnId>> removeSwimLane(SwimLaneId id);
    /** Clamped to MinimumHeight and MaximumHeight. */
    void updateSwimLaneHeight(SwimLaneId id, double height);
    void toggleSwimLaneExpanded(SwimLaneId id);
    /** Opens (true) and collapses the given swimlanes, as one change. */
    void setExpansionStates(const QHash<SwimLaneId, bool> &states);

Q_SIGNALS:
    void swimLanesChanged();

private:
    void addDefaultSwimLane();
    void saveAndTriggerUpdates();

    PersistenceManager &m_persistence;
    NotificationCenter &m_notifications;
    Clock &m_clock;
    std::vector<SwimLane> m_swimLanes;
};

} // namespace vantrel
