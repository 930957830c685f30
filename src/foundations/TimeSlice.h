#pragma once

#include <QElapsedTimer>

namespace vantrel {

/**
 * For long work on the GUI thread, done in pieces: tells when to let the event loop have its turn, so that
 * typing and animations never wait for more than a few milliseconds.
 */
class TimeSlice
{
public:
    TimeSlice() { m_timer.start(); }

    /** True when 2 milliseconds have passed since the start or restart(). */
    bool isUsedUp() const { return m_timer.nsecsElapsed() > 2'000'000; }
    void restart() { m_timer.start(); }

private:
    QElapsedTimer m_timer;
};

} // namespace vantrel
