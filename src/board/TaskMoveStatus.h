#pragma once

#include <QString>

namespace vantrel {

/** How far the last operation on a task has got. */
struct TaskMoveStatus
{
    enum class State { Idle, Doing, Success, Failure };

    State state = State::Idle;
    /** What went wrong, while Failure. */
    QString error;

    static TaskMoveStatus idle() { return {}; }
    static TaskMoveStatus doing() { return {State::Doing, {}}; }
    static TaskMoveStatus success() { return {State::Success, {}}; }
    static TaskMoveStatus failure(const QString &error) { return {State::Failure, error}; }

    /** By case only: two failures compare equal whatever their errors. */
    friend bool operator==(const TaskMoveStatus &a, const TaskMoveStatus &b) { return a.state == b.state; }
};

} // namespace vantrel
