#pragma once

#include "foundations/BaseWorkItem.h"
#include "foundations/Clock.h"
#include "sources/TaskManagerProtocol.h"

#include <memory>
#include <vector>

namespace vantrel::test {

/** A working source without any store: its tasks are in memory and their ids begin with "task-". */
class MockTaskManager final : public TaskManagerProtocol
{
public:
    explicit MockTaskManager(Clock &clock) : m_clock(clock) {}

    QCoro::Task<WorkItems> fetchTasks() override;
    /** Made up: one task for every second day of the period. */
    QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonSettings() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    QCoro::Task<QString> createTask(NewTask task) override;
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;

    bool canHandle(const QString &taskId) const override;
    QString taskManagerName() const override;
    bool checkPermissions() override { return true; }
    QString getPermissionsGuidance() const override;

    std::vector<std::shared_ptr<BaseWorkItem>> tasks;

private:
    template <typename Change>
    bool edit(const QString &taskId, Change change);

    Clock &m_clock;
};

} // namespace vantrel::test
