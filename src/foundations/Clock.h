#pragma once

#include "foundations/Date.h"

#include <QCoroTask>
#include <QObject>

#include <functional>

namespace vantrel {

/**
 * The one source of time and of waiting.
 *
 * Everything that asks for the present moment or delays work goes through a Clock, so that a test can turn
 * the hands itself. Used on the GUI thread only.
 */
class Clock
{
public:
    virtual ~Clock() = default;

    virtual Date now() const = 0;

    /**
     * Runs `work` once, `seconds` from now, from the event loop. Nothing runs if `owner` is gone by then.
     * With 0 seconds the work runs on the next turn of the event loop.
     */
    virtual void after(double seconds, QObject *owner, std::function<void()> work) = 0;

    /** Runs `work` on the next turn of the event loop, unless `owner` is gone by then. */
    void soon(QObject *owner, std::function<void()> work) { after(0.0, owner, std::move(work)); }

    /** Suspends the calling coroutine for `seconds`. */
    virtual QCoro::Task<> sleep(double seconds) = 0;

    /**
     * Suspends the calling coroutine until the event loop has handled what is waiting: for long work in
     * pieces. No time passes by it; a test's clock goes on at once.
     */
    virtual QCoro::Task<> yieldToEventLoop() = 0;

protected:
    Clock() = default;
    Q_DISABLE_COPY_MOVE(Clock)
};

/** The clock of the running program. */
class SystemClock final : public Clock
{
public:
    SystemClock() = default;

    Date now() const override;
    void after(double seconds, QObject *owner, std::function<void()> work) override;
    QCoro::Task<> sleep(double seconds) override;
    QCoro::Task<> yieldToEventLoop() override;
};

} // namespace vantrel
