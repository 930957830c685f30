#pragma once

#include "foundations/Clock.h"
#include "foundations/Latch.h"
#include "sources/SourceError.h"
#include "sources/TaskManagerProtocol.h"
#include "support/Builders.h"

#include <QStringList>

#include <deque>
#include <memory>

namespace vantrel::test {

/** The answers that a test has prepared for one kind of request, first come, first served. */
template <typename T>
class Replies
{
public:
    void give(T value) { m_replies.push_back({std::move(value), nullptr, 0.0, nullptr}); }
    void giveAfter(double seconds, T value)
    {
        m_replies.push_back({std::move(value), nullptr, seconds, nullptr});
    }
    /** The answer comes when the latch is counted down, perhaps never. */
    std::shared_ptr<Latch> giveWhenOpened(T value)
    {
        const auto latch = std::make_shared<Latch>();
        m_replies.push_back({std::move(value), nullptr, 0.0, latch});
        return latch;
    }
    void fail(const QString &message) { failWith(SourceError(QStringLiteral("Fake"), 1, message)); }
    template <typename Error>
    void failWith(const Error &error)
    {
        m_replies.push_back({T(), std::make_exception_ptr(error), 0.0, nullptr});
    }

    QCoro::Task<T> next(Clock &clock, QString request)
    {
        if (m_replies.empty()) {
            throw SourceError(QStringLiteral("Fake"), 0, u"no reply was prepared for " + request);
        }
        const Reply reply = std::move(m_replies.front());
        m_replies.pop_front();
        if (reply.seconds > 0.0) {
            co_await clock.sleep(reply.seconds);
        }
        if (reply.latch) {
            co_await *reply.latch;
        }
        if (reply.failure) {
            std::rethrow_exception(reply.failure);
        }
        co_return reply.value;
    }

private:
    struct Reply
    {
        T value;
        std::exception_ptr failure;
        double seconds;
        std::shared_ptr<Latch> latch;
    };

    std::deque<Reply> m_replies;
};

/**
 * A source that does what the test has told it and remembers what it was asked. What has no prepared answer
 * fails; the settings of the due soon window alone succeed unless told otherwise.
 */
class FakeTaskManager final : public TaskManagerProtocol
{
public:
    FakeTaskManager(TaskManagerType type, Clock &clock) : m_type(type), m_clock(clock) {}

    Replies<WorkItems> fetches;
    Replies<WorkItems> completedFetches;
    /** Of all four kinds of edit. */
    Replies<bool> edits;
    Replies<QString> creations;
    Replies<std::vector<ProjectInfo>> projects;
    Replies<std::vector<TagInfo>> tags;
    std::exception_ptr dueSoonFailure;
    bool hasPermission = true;
    bool isAvailable = true;
    QString guidance = QStringLiteral("Please allow it.");

    /** One line a request that is not immediate, such as "flagTask reminder_1 true". */
    QStringList requests;

    QCoro::Task<WorkItems> fetchTasks() override { return reply(fetches, QStringLiteral("fetchTasks")); }
    QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) override
    {
        return reply(completedFetches, u"fetchCompletedTasks " + QString::number(lookbackDays));
    }
    QCoro::Task<> fetchDueSoonSettings() override
    {
        requests.append(QStringLiteral("fetchDueSoonSettings"));
        if (dueSoonFailure) {
            std::rethrow_exception(dueSoonFailure);
        }
        co_return;
    }
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override
    {
        return reply(edits, u"setTaskName " + taskId + u' ' + name);
    }
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override
    {
        return reply(edits, u"flagTask " + taskId + (flagged ? u" true" : u" false"));
    }
    QCoro::Task<bool> markTaskComplete(QString taskId) override
    {
        return reply(edits, u"markTaskComplete " + taskId);
    }
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override
    {
        return reply(edits, u"markTaskIncomplete " + taskId);
    }
    QCoro::Task<QString> createTask(NewTask task) override
    {
        return reply(creations, u"createTask " + task.name);
    }
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override
    {
        return reply(projects, QStringLiteral("fetchAvailableProjects"));
    }
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override
    {
        return reply(tags, QStringLiteral("fetchAvailableTags"));
    }

    bool canHandle(const QString &taskId) const override { return hasIdFormOf(m_type, taskId); }
    QString taskManagerName() const override { return rawValue(m_type); }
    bool checkPermissions() override { return hasPermission; }
    QString getPermissionsGuidance() const override { return guidance; }
    bool isAvailableOnPlatform() const override { return isAvailable; }

private:
    template <typename T>
    QCoro::Task<T> reply(Replies<T> &replies, const QString &request)
    {
        requests.append(request);
        return replies.next(m_clock, request);
    }

    TaskManagerType m_type;
    Clock &m_clock;
};

} // namespace vantrel::test
