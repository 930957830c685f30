#include "support/ManualClock.h"

#include <algorithm>
#include <coroutine>

namespace vantrel::test {

void ManualClock::after(double seconds, QObject *owner, std::function<void()> work)
{
    m_waiting.emplace(m_now.seconds() + seconds, Work{owner, std::move(work)});
}

QCoro::Task<> ManualClock::sleep(double seconds)
{
    struct Alarm
    {
        ManualClock &clock;
        double seconds;

        bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> sleeper)
        {
            clock.after(seconds, &clock.m_self, [sleeper] { sleeper.resume(); });
        }
        void await_resume() const {}
    };
    Alarm alarm{*this, seconds};
    co_await alarm;
}

void ManualClock::advance(double seconds)
{
    const double target = m_now.seconds() + seconds;
    while (!m_waiting.empty() && m_waiting.begin()->first <= target) {
        const auto first = m_waiting.begin();
        const Work work = std::move(first->second);
        m_now = Date(std::max(m_now.seconds(), first->first));
        m_waiting.erase(first);
        if (work.owner) {
            work.run();
        }
    }
    m_now = Date(target);
}

} // namespace vantrel::test
