#pragma once

#include "foundations/Clock.h"

#include <QObject>

namespace vantrel {

/**
 * The time that the screens show: it moves on once an interval, so that ages and overdue marks are redrawn
 * with no other event. GUI thread; owned by Services.
 */
class TimeManager : public QObject
{
    Q_OBJECT
public:
    static constexpr double DefaultInterval = 60.0;

    /** Ticks every `updateInterval` seconds from now on. */
    explicit TimeManager(Clock &clock, double updateInterval = DefaultInterval, QObject *parent = nullptr);

    Date currentTime() const { return m_currentTime; }

Q_SIGNALS:
    void currentTimeChanged();

private:
    void tick();
    void scheduleTick();

    Clock &m_clock;
    double m_updateInterval;
    Date m_currentTime;
};

} // namespace vantrel
