#pragma once

#include <QtGlobal>

#include <coroutine>
#include <utility>
#include <vector>

namespace vantrel {

/**
 * Opens for good when it has been counted down to zero: how one coroutine waits for several, or several for
 * one.
 *
 * GUI thread. Whoever waits goes on inside the last countDown(), and keeps the latch alive meanwhile.
 */
class Latch
{
public:
    explicit Latch(int count = 1) : m_count(count) {}
    Q_DISABLE_COPY_MOVE(Latch)

    bool isOpen() const { return m_count <= 0; }

    void countDown()
    {
        --m_count;
        if (isOpen()) {
            for (const std::coroutine_handle<> waiter : std::exchange(m_waiters, {})) {
                waiter.resume();
            }
        }
    }

    auto operator co_await()
    {
        struct Waiting
        {
            Latch &latch;

            bool await_ready() const { return latch.isOpen(); }
            void await_suspend(std::coroutine_handle<> waiter) { latch.m_waiters.push_back(waiter); }
            void await_resume() const {}
        };
        return Waiting{*this};
    }

private:
    int m_count;
    std::vector<std::coroutine_handle<>> m_waiters;
};

} // namespace vantrel
