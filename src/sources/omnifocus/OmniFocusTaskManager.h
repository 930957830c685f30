#pragma once

#include "foundations/Clock.h"
#include "foundations/OmniFocusTask.h"
#include "sources/TaskManagerProtocol.h"
#include "sources/omnifocus/AppleScriptManagerProtocol.h"

#include <QHash>

#include <memory>
#include <optional>
#include <utility>

namespace vantrel {

/**
 * OmniFocus as a task source: the bridge, one object for each task that anybody still holds, and a memory of
 * five minutes for its projects and tags, each of which is a slow script. GUI thread; owned by Services.
 */
class OmniFocusTaskManager final : public TaskManagerProtocol
{
public:
    OmniFocusTaskManager(AppleScriptManagerProtocol &bridge, Clock &clock);

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
    bool canHandle(const QString &taskId) const override;
    QString taskManagerName() const override { return QStringLiteral("OmniFocus"); }
    bool checkPermissions() override { return m_bridge.checkOmniFocusPermissions(); }
    QString getPermissionsGuidance() const override { return m_bridge.getPermissionsGuidance(); }
    bool isAvailableOnPlatform() const override { return m_bridge.isAvailable(); }

    void clearCaches();

private:
    template <typename Info>
    struct Catalogue
    {
        std::vector<Info> entries;
        Date timestamp;
    };

    struct Known
    {
        std::weak_ptr<OmniFocusTask> item;
        /** Its changeCount() when the last fetch asked. */
        quint32 changesAtAsking = 0;
    };

    void noteChanges();
    WorkItemPtr intern(omnifocus::TaskRecord record);
    template <typename Info>
    bool isFresh(const std::optional<Catalogue<Info>> &catalogue) const;

    AppleScriptManagerProtocol &m_bridge;
    Clock &m_clock;
    QHash<QString, Known> m_known;
    std::optional<Catalogue<ProjectInfo>> m_projectsCache;
    std::optional<Catalogue<TagInfo>> m_tagsCache;
};

} // namespace vantrel
