#include "persistence/DatabaseQueue.h"

#include <QCoreApplication>
#include <QThread>

#include <pthread.h>

namespace vantrel {

namespace {

thread_local const DatabaseQueue *currentQueue = nullptr;

void nameThisThread()
{
    // Linux takes at most 15 characters.
    constexpr auto name = "vantrel.databas";
#ifdef __APPLE__
    pthread_setname_np("com.vantrel.database");
    static_cast<void>(name);
#else
    pthread_setname_np(pthread_self(), name);
#endif
}

} // namespace

DatabaseQueue::DatabaseQueue() : m_thread([this] { work(); }) {}

DatabaseQueue::~DatabaseQueue()
{
    Q_ASSERT(QThread::currentThread() == m_home.thread());
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
    QCoreApplication::sendPostedEvents(&m_home);
}

bool DatabaseQueue::isCurrent() const
{
    return currentQueue == this;
}

void DatabaseQueue::async(Job job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
}

qsizetype DatabaseQueue::waitingJobs() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<qsizetype>(m_jobs.size()) + (m_isRunningJob ? 1 : 0);
}

void DatabaseQueue::setIdleWork(std::chrono::milliseconds quiet, IdleWork work)
{
    const std::lock_guard lock(m_mutex);
    m_quiet = quiet;
    m_idleWork = std::move(work);
}

void DatabaseQueue::resumeAtHome(std::coroutine_handle<> waiter)
{
    QMetaObject::invokeMethod(
        &m_home, [waiter] { waiter.resume(); }, Qt::QueuedConnection);
}

void DatabaseQueue::work()
{
    currentQueue = this;
    nameThisThread();
    std::unique_lock lock(m_mutex);
    while (const std::optional<Job> job = nextJob(lock)) {
        m_isRunningJob = true;
        lock.unlock();
        (*job)();
        lock.lock();
        m_isRunningJob = false;
    }
}

std::optional<DatabaseQueue::Job> DatabaseQueue::nextJob(std::unique_lock<std::mutex> &lock)
{
    const auto isWoken = [this] {
        return m_isEnding || !m_jobs.empty();
    };
    std::optional<std::chrono::milliseconds> quiet = m_idleWork ? std::optional(m_quiet) : std::nullopt;
    while (quiet && !m_changed.wait_for(lock, *quiet, isWoken)) {
        const IdleWork idleWork = m_idleWork;
        lock.unlock();
        quiet = idleWork();
        lock.lock();
    }
    m_changed.wait(lock, isWoken);
    if (m_jobs.empty()) {
        return std::nullopt;
    }
    Job job = std::move(m_jobs.front());
    m_jobs.pop_front();
    return job;
}

} // namespace vantrel
