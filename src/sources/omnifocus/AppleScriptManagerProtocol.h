#pragma once

#include "sources/TaskManagerProtocol.h"
#include "sources/omnifocus/OmniFocusRecords.h"

namespace vantrel {

using OmniFocusRecords = std::vector<omnifocus::TaskRecord>;

/** The bridge to OmniFocus. The coroutines throw AppleScriptError. */
class AppleScriptManagerProtocol
{
public:
    AppleScriptManagerProtocol() = default;
    virtual ~AppleScriptManagerProtocol() = default;
    Q_DISABLE_COPY_MOVE(AppleScriptManagerProtocol)

    virtual QCoro::Task<OmniFocusRecords> fetchTasks() = 0;
    virtual QCoro::Task<OmniFocusRecords> fetchCompletedTasks(int lookbackDays) = 0;
    /** Stores OmniFocus's due soon window in the user defaults. */
    virtual QCoro::Task<> fetchDueSoonMeans() = 0;
    virtual QCoro::Task<bool> setTaskName(QString taskId, QString name) = 0;
    virtual QCoro::Task<bool> flagTask(QString taskId, bool flagged) = 0;
    virtual QCoro::Task<bool> markTaskComplete(QString taskId) = 0;
    virtual QCoro::Task<bool> markTaskIncomplete(QString taskId) = 0;
    virtual QCoro::Task<QString> createTask(NewTask task) = 0;
    virtual QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() = 0;
    virtual QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() = 0;
    virtual bool checkOmniFocusPermissions() = 0;
    virtual QString getPermissionsGuidance() const = 0;
    virtual bool isAvailable() const = 0;
    /** True while a script runs or waits. */
    virtual bool isBusy() const = 0;
};

} // namespace vantrel
