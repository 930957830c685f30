#include "foundations/Clock.h"

#include <QCoroTimer>
#include <QTimer>

#include <chrono>
#include <cmath>

namespace vantrel {

namespace {
std::chrono::milliseconds toMilliseconds(double seconds)
{
    return std::chrono::milliseconds(std::llround(seconds * 1000.0));
}
} // namespace

Date SystemClock::now() const
{
    // Not QDateTime::currentDateTime(): its milliseconds would make two quick edits the same moment.
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count();
    constexpr double referenceSecondsSince1970 = 978307200.0;
    return Date(static_cast<double>(microseconds) / 1e6 - referenceSecondsSince1970);
}

void SystemClock::after(double seconds, QObject *owner, std::function<void()> work)
{
    QTimer::singleShot(toMilliseconds(seconds), owner, std::move(work));
}

QCoro::Task<> SystemClock::sleep(double seconds)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(toMilliseconds(seconds));
    co_await timer;
}

QCoro::Task<> SystemClock::yieldToEventLoop()
{
    // A timer, not a posted event: those are delivered until none is left, before any input.
    return sleep(0.0);
}

} // namespace vantrel
