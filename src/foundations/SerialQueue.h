#pragma once

#include <QCoroTask>
#include <QObject>

#include <chrono>
#include <condition_variable>
#include <coroutine>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

namespace vantrel {

/**
 * A thread of its own, and the line of jobs before it: for what may be used by one thread only, such as the
 * database's connection, and for slow work that must stay in order.
 *
 * Jobs run one at a time in the order in which they were handed over, from whatever thread. The queue belongs
 * to the thread that made it (the GUI thread): only there may run() be awaited and the queue be destroyed.
 * Destruction runs all waiting jobs, ends the thread and resumes whoever still awaits one. Jobs do not throw.
 */
class SerialQueue
{
public:
    using Job = std::function<void()>;
    /** Returns how long to be quiet before it is called again, or nothing to rest until after the next job.
     */
    using IdleWork = std::function<std::optional<std::chrono::milliseconds>()>;

    /** `name` is the thread's in debuggers and lists of threads; Linux shows 15 characters of it. */
    explicit SerialQueue(std::string name);
    ~SerialQueue();
    Q_DISABLE_COPY_MOVE(SerialQueue)

    /** True on the queue's own thread. */
    bool isCurrent() const;

    /** Hands the job over and returns. */
    void async(Job job);

    /** Runs the job and gives its result, blocking until its turn has come; at once on the queue's thread. */
    template <typename Work>
    std::invoke_result_t<Work> sync(Work work)
    {
        if (isCurrent()) {
            return work();
        }
        std::packaged_task<std::invoke_result_t<Work>()> task(std::move(work));
        auto result = task.get_future();
        async([&task] { task(); });
        return result.get();
    }

    /** Hands the job over and resumes with its result on the queue's own thread of birth. */
    template <typename Work>
    QCoro::Task<std::invoke_result_t<Work>> run(Work work)
    {
        using Result = std::invoke_result_t<Work>;
        if constexpr (std::is_void_v<Result>) {
            Turn turn(*this, [&work] { work(); });
            co_await turn;
        } else {
            std::optional<Result> result;
            Turn turn(*this, [&work, &result] { result.emplace(work()); });
            co_await turn;
            co_return std::move(*result);
        }
    }

    /** Jobs handed over and not finished. */
    qsizetype waitingJobs() const;

    /** Has `work` called on the queue's thread when no job came for `quiet`; set once, before any job. */
    void setIdleWork(std::chrono::milliseconds quiet, IdleWork work);

private:
    /** Suspends a coroutine while its job has its turn. */
    struct Turn
    {
        Turn(SerialQueue &owner, Job work) : queue(owner), job(std::move(work)) {}

        bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> waiter)
        {
            queue.async([this, waiter] {
                job();
                queue.resumeAtHome(waiter);
            });
        }
        void await_resume() const {}

        SerialQueue &queue;
        Job job;
    };

    void resumeAtHome(std::coroutine_handle<> waiter);
    void work();
    /** The next job; nothing when the queue ends. Calls the idle work while there is none. */
    std::optional<Job> nextJob(std::unique_lock<std::mutex> &lock);

    std::string m_name;
    /** Lives on the thread that made the queue; what is posted to it runs there. */
    QObject m_home;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_jobs;
    bool m_isRunningJob = false;
    bool m_isEnding = false;
    std::chrono::milliseconds m_quiet{0};
    IdleWork m_idleWork;
    std::thread m_thread;
};

} // namespace vantrel
