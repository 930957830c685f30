#include "foundations/TimeManager.h"

namespace vantrel {

TimeManager::TimeManager(Clock &clock, double updateInterval, QObject *parent)
    : QObject(parent), m_clock(clock), m_updateInterval(updateInterval), m_currentTime(clock.now())
{
    scheduleTick();
}

void TimeManager::tick()
{
    m_currentTime = m_clock.now();
    scheduleTick();
    Q_EMIT currentTimeChanged();
}

void TimeManager::scheduleTick()
{
    m_clock.after(m_updateInterval, this, [this] { tick(); });
}

} // namespace vantrel
