#pragma once

#include "sources/TaskManagerProtocol.h"

#include <QCoreApplication>

namespace vantrel {

/**
 * Stands for a source that this platform does not have: it knows its name and its ids, is never asked for
 * tasks, and refuses everything else with its guidance as the reason. GUI thread; owned by Services.
 */
class UnavailableTaskManager final : public TaskManagerProtocol
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::UnavailableTaskManager)
public:
    explicit UnavailableTaskManager(TaskManagerType type) : m_type(type) {}

    QCoro::Task<WorkItems> fetchTasks() override;
    QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonSettings() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    QCoro::Task<QString> createTask(NewTask task) override;
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;

    bool canHandle(const QString &taskId) const override { return hasIdFormOf(m_type, taskId); }
    QString taskManagerName() const override { return rawValue(m_type); }
    bool checkPermissions() override { return false; }
    QString getPermissionsGuidance() const override;
    bool isAvailableOnPlatform() const override { return false; }

private:
    template <typename T>
    QCoro::Task<T> refuse();

    TaskManagerType m_type;
};

} // namespace vantrel
