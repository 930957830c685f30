#pragma once

#include <QCoroTask>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>

namespace vantrel::test {

namespace detail {

template <typename T>
struct Outcome
{
    std::exception_ptr failure;
    std::optional<T> value;
    bool isDone = false;
    QEventLoop loop;
};

template <>
struct Outcome<void>
{
    std::exception_ptr failure;
    bool isDone = false;
    QEventLoop loop;
};

template <typename T>
QCoro::Task<> watch(QCoro::Task<T> task, std::shared_ptr<Outcome<T>> outcome)
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await task;
        } else {
            outcome->value.emplace(co_await task);
        }
    } catch (...) {
        outcome->failure = std::current_exception();
    }
    outcome->isDone = true;
    outcome->loop.quit();
}

} // namespace detail

/** Runs the event loop until `task` ends; gives its result or its exception. Throws when `limit` has passed.
 */
template <typename T>
T await(QCoro::Task<T> task, std::chrono::milliseconds limit = std::chrono::seconds(10))
{
    auto outcome = std::make_shared<detail::Outcome<T>>();
    detail::watch(std::move(task), outcome);
    if (!outcome->isDone) {
        QTimer::singleShot(limit, &outcome->loop, &QEventLoop::quit);
        outcome->loop.exec();
    }
    if (!outcome->isDone) {
        throw std::runtime_error("the task did not finish in time");
    }
    if (outcome->failure) {
        std::rethrow_exception(outcome->failure);
    }
    if constexpr (!std::is_void_v<T>) {
        return std::move(*outcome->value);
    }
}

} // namespace vantrel::test
