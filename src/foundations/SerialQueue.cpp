#include "foundations/SerialQueue.h"

#include <QCoreApplication>
#include <QThread>

#include <string>
#include <string_view>

#include <pthread.h>

namespace vantrel {

namespace {

thread_local const SerialQueue *currentQueue = nullptr;

void nameThisThread(const std::string &name)
{
#ifdef Q_OS_DARWIN
    pthread_setname_np(name.c_str());
#else
    constexpr std::size_t longest = 15;
    pthread_setname_np(pthread_self(), name.substr(0, longest).c_str());
#endif
}

} // namespace

SerialQueue::SerialQueue(std::string name) : m_name(std::move(name)), m_thread([this] { work(); }) {}

SerialQueue::~SerialQueue()
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

bool SerialQueue::isCurrent() const
{
    return currentQueue == this;
}

void SerialQueue::async(Job job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
}

qsizetype SerialQueue::waitingJobs() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<qsizetype>(m_jobs.size()) + (m_isRunningJob ? 1 : 0);
}

void SerialQueue::setIdleWork(std::chrono::milliseconds quiet, IdleWork work)
{
    const std::lock_guard lock(m_mutex);
    m_quiet = quiet;
    m_idleWork = std::move(work);
}

void SerialQueue::resumeAtHome(std::coroutine_handle<> waiter)
{
    QMetaObject::invokeMethod(
        &m_home, [waiter] { waiter.resume(); }, Qt::QueuedConnection);
}

void SerialQueue::work()
{
    currentQueue = this;
    nameThisThread(m_name);
    std::unique_lock lock(m_mutex);
    while (const std::optional<Job> job = nextJob(lock)) {
        m_isRunningJob = true;
        lock.unlock();
        (*job)();
        lock.lock();
        m_isRunningJob = false;
    }
}

std::optional<SerialQueue::Job> SerialQueue::nextJob(std::unique_lock<std::mutex> &lock)
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
