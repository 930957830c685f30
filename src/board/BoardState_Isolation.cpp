#include "board/BoardState.h"
#include "feedback/DesktopPorts.h"
#include "feedback/SoundManager.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/Text.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

namespace {

constexpr double UnknownSwimLaneHeight = 300.0;
constexpr double StripHeight = 60.0;
constexpr double ShareOfScreen = 0.9;
constexpr double HeightWithoutScreen = 900.0;
constexpr double MinimumIsolatedSpace = 800.0;
constexpr double SpaceForEachOther = 80.0;

constexpr double ZoomStep = 0.1;
constexpr double DefaultZoom = 1.0;

} // namespace

void BoardState::isolateSwimLane(SwimLaneId id)
{
    if (isSwimLaneIsolated(id)) {
        clearSwimLaneIsolation();
        return;
    }
    if (!m_swimLaneManager.swimLane(id)) {
        return;
    }
    m_preIsolationExpansionStates.clear();
    QHash<SwimLaneId, bool> isolatedStates;
    for (const SwimLane &lane : m_swimLaneManager.swimLanes()) {
        m_preIsolationExpansionStates.insert(lane.id, lane.isExpanded);
        isolatedStates.insert(lane.id, lane.id == id);
    }
    m_isolatedSwimLaneId = id;
    m_swimLaneManager.setExpansionStates(isolatedStates);
    Q_EMIT isolationChanged();
    post(notifications::SwimLaneIsolationChanged);
    log::info(u"Isolated swimlane: " + id.text(), LogCategory::Swimlanes);
}

void BoardState::clearSwimLaneIsolation()
{
    if (!isSwimLaneIsolationActive()) {
        return;
    }
    m_isolatedSwimLaneId.reset();
    m_swimLaneManager.setExpansionStates(std::exchange(m_preIsolationExpansionStates, {}));
    Q_EMIT isolationChanged();
    post(notifications::SwimLaneIsolationChanged);
    log::info(QStringLiteral("Cleared swimlane isolation"), LogCategory::Swimlanes);
}

double BoardState::heightForSwimLane(SwimLaneId id) const
{
    constexpr double minimum = SwimLaneManager::MinimumHeight;
    const SwimLane *lane = m_swimLaneManager.swimLane(id);
    if (!lane) {
        return UnknownSwimLaneHeight;
    }
    if (!isSwimLaneIsolationActive()) {
        return std::clamp(lane->height, minimum, SwimLaneManager::MaximumHeight);
    }
    if (!isSwimLaneIsolated(id)) {
        return StripHeight;
    }
    const std::optional<double> screenHeight = m_services.screen.height();
    const double space = screenHeight ? *screenHeight * ShareOfScreen : HeightWithoutScreen;
    const auto others = static_cast<double>(m_swimLaneManager.swimLanes().size() - 1);
    return std::max(std::max(space, MinimumIsolatedSpace) - SpaceForEachOther * others, minimum);
}

void BoardState::focusTask(const QString &id)
{
    const bool wasFocused = isTaskFocused(id);
    clearTaskFocus();
    if (wasFocused) {
        return;
    }
    m_focusedTaskId = id;
    Q_EMIT taskFocusChanged();
    m_services.sounds.playSound(Sound::TaskFocus, tr("Task focus mode activated"));
    post(notifications::TaskFocusModeChanged);
    log::info(u"Focused on task: " + id, LogCategory::FocusControl);
}

void BoardState::clearTaskFocus()
{
    if (!isTaskFocusActive()) {
        return;
    }
    m_focusedTaskId.reset();
    Q_EMIT taskFocusChanged();
    m_services.sounds.playSound(Sound::TaskFocus, tr("Task focus mode exited"));
    post(notifications::TaskFocusModeChanged);
    log::info(QStringLiteral("Cleared task focus"), LogCategory::FocusControl);
}

void BoardState::zoomIn()
{
    if (m_zoomLevel < MaximumZoom) {
        changeZoom(m_zoomLevel + ZoomStep);
        log::info(u"Zoomed in to level: " + realText(m_zoomLevel));
    }
}

void BoardState::zoomOut()
{
    if (m_zoomLevel > MinimumZoom) {
        changeZoom(m_zoomLevel - ZoomStep);
        log::info(u"Zoomed out to level: " + realText(m_zoomLevel));
    }
}

void BoardState::resetZoom()
{
    changeZoom(DefaultZoom);
    log::info(QStringLiteral("Reset zoom to default level"));
}

void BoardState::setZoom(double level)
{
    if (!std::isnan(level)) {
        changeZoom(level);
        log::info(u"Set zoom level to: " + realText(m_zoomLevel));
    }
}

void BoardState::changeZoom(double level)
{
    const double clamped = std::clamp(level, MinimumZoom, MaximumZoom);
    if (clamped == m_zoomLevel) {
        return;
    }
    m_zoomLevel = clamped;
    AppConfiguration configuration = m_services.persistence.loadAppConfiguration();
    configuration.zoomLevel = clamped;
    m_services.persistence.saveAppConfiguration(configuration);
    Q_EMIT zoomLevelChanged();
}

} // namespace vantrel
