#pragma once

#include "foundations/Clock.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/SerialQueue.h"
#include "foundations/UserDefaults.h"
#include "sources/TaskManagerProtocol.h"
#include "sources/omnifocus/OmniFocusRecords.h"
#include "sources/omnifocus/ScriptRunner.h"

namespace vantrel {

using OmniFocusTasks = std::vector<std::shared_ptr<OmniFocusTask>>;

/** The bridge to OmniFocus. The coroutines throw AppleScriptError. */
class AppleScriptManagerProtocol
{
public:
    AppleScriptManagerProtocol() = default;
    virtual ~AppleScriptManagerProtocol() = default;
    Q_DISABLE_COPY_MOVE(AppleScriptManagerProtocol)

    virtual QCoro::Task<OmniFocusTasks> fetchTasks() = 0;
    virtual QCoro::Task<OmniFocusTasks> fetchCompletedTasks(int lookbackDays) = 0;
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
};

/**
 * Talks to OmniFocus by scripts: builds them, has them run one after the other on a thread of their own,
 * turns what went wrong into AppleScriptError and reads the answers there too. GUI thread; owned by Services.
 */
class AppleScriptManager final : public AppleScriptManagerProtocol
{
public:
    AppleScriptManager(ScriptRunner &runner, UserDefaults &defaults, Clock &clock,
                       QLocale locale = QLocale());

    QCoro::Task<OmniFocusTasks> fetchTasks() override;
    QCoro::Task<OmniFocusTasks> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonMeans() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    QCoro::Task<QString> createTask(NewTask task) override;
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;

    /**
     * Whether OmniFocus may be talked to now. The system may ask the user meanwhile: the window goes on
     * painting, but takes no input.
     */
    bool checkOmniFocusPermissions() override;
    QString getPermissionsGuidance() const override;
    bool isAvailable() const override { return m_runner.isAvailable(); }

private:
    QCoro::Task<ScriptOutcome> executeAppleScript(QString source);
    /** For wrapped scripts, which answer "ERROR: ..." where something failed inside OmniFocus. */
    QCoro::Task<ScriptOutcome> executeAndHandleScript(QString source, std::optional<QString> taskId);
    QCoro::Task<OmniFocusTasks> fetch(QString source);
    QCoro::Task<bool> edit(QString source, QString taskId, QString logLine);

    ScriptRunner &m_runner;
    UserDefaults &m_defaults;
    Clock &m_clock;
    QLocale m_locale;
    SerialQueue m_scripts;
};

} // namespace vantrel
