#pragma once

#include "foundations/Clock.h"
#include "sources/omnifocus/AppleScriptManagerProtocol.h"

namespace vantrel {

/**
 * OmniFocus for those who do not have it: fifteen sample tasks, read as the real application's answers are.
 * It knows every edit for as long as it lives, so that a sample board can be played with. GUI thread; owned
 * by Services in the testing environment.
 */
class MockAppleScriptManagerProxy final : public AppleScriptManagerProtocol
{
public:
    explicit MockAppleScriptManagerProxy(Clock &clock) : m_clock(clock) {}

    QCoro::Task<OmniFocusRecords> fetchTasks() override;
    /** Made up: one task for every second day of the period. */
    QCoro::Task<OmniFocusRecords> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonMeans() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    QCoro::Task<QString> createTask(NewTask task) override;
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;
    bool checkOmniFocusPermissions() override { return true; }
    QString getPermissionsGuidance() const override;
    bool isAvailable() const override { return true; }
    bool isBusy() const override { return false; }

private:
    void loadSample();
    template <typename Change>
    void edit(const QString &taskId, Change change);
    bool setComplete(const QString &taskId, std::optional<Date> completionDate);

    Clock &m_clock;
    /** Read at the first fetch. */
    OmniFocusRecords m_tasks;
    bool m_isLoaded = false;
};

} // namespace vantrel
