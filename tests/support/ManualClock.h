#pragma once

#include "foundations/Clock.h"

#include <QPointer>

#include <map>

namespace vantrel::test {

/**
 * A clock whose hands the test turns. Starts on Monday 2 November 2026, 09:00 UTC.
 *
 * Work that is due runs inside advance(), in the order of its time, then of its arrival; delays of 0 seconds
 * run in the next advance(), also advance(0). Sleeping coroutines go on inside advance() too.
 */
class ManualClock final : public Clock
{
public:
    Date now() const override { return m_now; }
    void after(double seconds, QObject *owner, std::function<void()> work) override;
    QCoro::Task<> sleep(double seconds) override;
    QCoro::Task<> yieldToEventLoop() override { co_return; }

    /** Moves the hands on, running what falls due on the way with now() at its time. */
    void advance(double seconds);
    /** Moves the hands to `moment`, backwards too, without running anything. */
    void jumpTo(Date moment) { m_now = moment; }

    bool hasWaitingWork() const { return !m_waiting.empty(); }

private:
    struct Work
    {
        QPointer<QObject> owner;
        std::function<void()> run;
    };

    Date m_now = Date(815302800.0);
    QObject m_self;
    /** Due time to work; equal keys keep the order of arrival. */
    std::multimap<double, Work> m_waiting;
};

} // namespace vantrel::test
