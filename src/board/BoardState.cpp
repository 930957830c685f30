#include "board/BoardState.h"

#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {
constexpr double FirstCountDelay = 0.5;
constexpr double UpdateGuardTime = 0.5;
} // namespace

BoardState::BoardState(const BoardServices &services, const WorkItems &tasks, Observes observes,
                       QObject *parent)
    : QObject(parent),
      m_services(services),
      m_columnManager(services.persistence),
      m_swimLaneManager(services.persistence, services.notifications, services.clock),
      m_filterManager(services.notifications, services.defaults),
      m_priorityManager(services.persistence, services.notifications),
      m_wipGaugeSettings(services.defaults),
      m_persistenceQueue(services.persistence, services.saveIndicator)
{
    followManagers();
    if (observes == Observes::Notifications) {
        observeNotifications();
    }
    invalidateDerivedCollections();
    m_zoomLevel =
        std::clamp(m_services.persistence.loadAppConfiguration().zoomLevel, MinimumZoom, MaximumZoom);
    if (!tasks.empty()) {
        organizeTasks(tasks);
    }
    m_services.clock.after(FirstCountDelay, this, [this] { postSwimLaneWIPCountsChanged(); });
}

BoardState::~BoardState()
{
    m_services.notifications.removeObserver(this);
}

std::unique_ptr<BoardState> BoardState::createDefault(const BoardServices &services)
{
    auto board = std::make_unique<BoardState>(services);
    BoardState *loading = board.get();
    services.clock.soon(loading, [loading] { launch(loading->loadDataAsync(), u"loadDataAsync"_s); });
    return board;
}

void BoardState::followManagers()
{
    const auto followSwimLanes = [this] {
        QSet<SwimLaneId> existing;
        for (const SwimLane &swimLane : m_swimLaneManager.swimLanes()) {
            existing.insert(swimLane.id);
        }
        m_placements.setSwimLanes(existing, m_swimLaneManager.defaultSwimLane().id);
        invalidateDerivedCollections();
    };
    followSwimLanes();
    connect(&m_swimLaneManager, &SwimLaneManager::swimLanesChanged, this, followSwimLanes);
    connect(&m_columnManager, &ColumnManager::columnsChanged, this, [this] {
        restartOrganization();
        invalidateDerivedCollections();
    });
    connect(&m_filterManager, &FilterManager::filtersChanged, this, [this] {
        ++m_filterRevision;
        invalidateDerivedCollections();
    });
}

void BoardState::invalidateDerivedCollections()
{
    if (m_isChangeScheduled) {
        return;
    }
    m_isChangeScheduled = true;
    m_services.clock.soon(this, [this] {
        m_isChangeScheduled = false;
        Q_EMIT changed();
    });
}

void BoardState::triggerUIUpdate()
{
    if (m_isUpdating) {
        log::info(u"UI update already in progress, skipping to avoid loops"_s);
        return;
    }
    m_isUpdating = true;
    Q_EMIT changed();
    post(notifications::BoardStateChanged, u"fromSettings"_s);
    log::info(u"Triggered UI update after external board state change"_s);
    m_services.clock.after(UpdateGuardTime, this, [this] { m_isUpdating = false; });
}

void BoardState::post(NotificationName name, const QVariant &object, const QVariantMap &userInfo)
{
    m_services.notifications.post(name, object, userInfo);
}

void BoardState::postSwimLaneWIPCountsChanged()
{
    post(notifications::SwimLaneWIPCountsChanged, QVariant::fromValue<QObject *>(this));
}

} // namespace vantrel
