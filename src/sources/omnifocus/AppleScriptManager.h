#pragma once

#include "foundations/Clock.h"
#include "foundations/SerialQueue.h"
#include "foundations/UserDefaults.h"
#include "sources/omnifocus/AppleScriptManagerProtocol.h"
#include "sources/omnifocus/ScriptRunner.h"

namespace vantrel {

/**
 * Talks to OmniFocus by scripts: builds them, has them run one after the other on a thread of their own,
 * turns what went wrong into AppleScriptError and reads the answers there too. GUI thread; owned by Services.
 */
class AppleScriptManager final : public AppleScriptManagerProtocol
{
public:
    AppleScriptManager(ScriptRunner &runner, UserDefaults &defaults, Clock &clock,
                       QLocale locale = QLocale());

    QCoro::Task<OmniFocusRecords> fetchTasks() override;
    QCoro::Task<OmniFocusRecords> fetchCompletedTasks(int lookbackDays) override;
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
    bool isBusy() const override { return m_scripts.waitingJobs() > 0; }

private:
    QCoro::Task<ScriptOutcome> executeAppleScript(QString source);
    /** For wrapped scripts, which answer "ERROR: ..." where something failed inside OmniFocus. */
    QCoro::Task<ScriptOutcome> executeAndHandleScript(QString source, std::optional<QString> taskId);
    QCoro::Task<OmniFocusRecords> fetch(QString source);
    QCoro::Task<bool> edit(QString source, QString taskId, QString logLine);

    ScriptRunner &m_runner;
    UserDefaults &m_defaults;
    Clock &m_clock;
    QLocale m_locale;
    SerialQueue m_scripts;
};

} // namespace vantrel
