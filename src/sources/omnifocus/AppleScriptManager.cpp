#include "sources/omnifocus/AppleScriptManager.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "sources/omnifocus/AppleScriptError.h"
#include "sources/omnifocus/OmniFocusScripts.h"

#include <QEventLoop>

#include <utility>

namespace vantrel {

namespace {

using Kind = AppleScriptError::Kind;

constexpr int NotRunningNumber = -600;
constexpr int NotPermittedNumber = -1743;
constexpr double DefaultRetrievalDays = 3.0;

constexpr auto CompilationError = "Failed to create AppleScript - compilation error";

constexpr auto Guidance = R"(Vantrel needs permission to control OmniFocus to update task status.

To enable this:

1. Click "Trigger Permission Dialog" in the Permissions menu (top-right)
2. When the permission dialog appears, select "OK" to allow Vantrel to control OmniFocus

If no dialog appears:
1. Make sure OmniFocus is running
2. Click "Trigger Permission Dialog" again
3. If still no dialog, click "Open System Settings"
4. Go to Privacy & Security → Automation
5. If Vantrel is listed, enable the checkbox for OmniFocus
6. If Vantrel is not listed, return to Vantrel and try "Trigger Permission Dialog" again

After granting permission, click "Try Again" to reload.)";

bool tellsMissingPermission(const QString &message)
{
    return message.contains(u"not authorized") || message.contains(u"permission");
}

AppleScriptError permissionDenied(const QString &logLine)
{
    log::error(logLine);
    return AppleScriptError(Kind::PermissionDenied);
}

QString addresseeOf(const QString &message)
{
    if (message.contains(u"OmniFocus")) return QStringLiteral("OmniFocus");
    if (message.contains(u"System Events")) return QStringLiteral("System Events");
    return QStringLiteral("Unknown app");
}

/** What the system's error of a run means. */
AppleScriptError errorFor(const ScriptOutcome::Failure &failure)
{
    const QString message = failure.message.isEmpty() ? QStringLiteral("Unknown error") : failure.message;
    log::error(QStringLiteral("⚠️ AppleScript execution failed: Error %1: %2")
                   .arg(failure.number.value_or(-1))
                   .arg(message));
    if (!failure.number) {
        log::error(u"⚠️ AppleScript error without code: " + message);
        return AppleScriptError(Kind::ExecutionFailed, message);
    }
    const int number = *failure.number;
    if (number == NotPermittedNumber && message.contains(u"Pro feature")) {
        log::error(u"⚠️ OmniFocus Pro required error detected (-1743): " + message);
        return AppleScriptError(Kind::OmniFocusProRequired);
    }
    if (number == NotPermittedNumber) {
        return permissionDenied(QStringLiteral(
            "⚠️ Permission denied error detected (-1743). User needs to grant automation permission"));
    }
    if (number == NotRunningNumber && tellsMissingPermission(message)) {
        return permissionDenied(QStringLiteral(
            "⚠️ Permission denied error detected (-600). User needs to grant automation permission"));
    }
    if (number == NotRunningNumber) {
        log::error(QStringLiteral("⚠️ OmniFocus app is not running (-600)"));
        log::error(u"⚠️ Script was trying to communicate with: " + addresseeOf(message));
        return AppleScriptError(Kind::OmniFocusNotRunning);
    }
    if (tellsMissingPermission(message)) {
        return permissionDenied(QStringLiteral(
            "⚠️ Permission denied error detected. User needs to grant automation permission"));
    }
    log::error(QStringLiteral("⚠️ AppleScript error %1: %2").arg(number).arg(message));
    return AppleScriptError(Kind::ExecutionFailed, QStringLiteral("Error %1: %2").arg(number).arg(message));
}

/** What an "ERROR: ..." answer means. */
AppleScriptError errorForAnswer(const QString &message, const std::optional<QString> &taskId)
{
    log::error(u"Script failed: " + message);
    if (message.contains(u"running")) return AppleScriptError(Kind::OmniFocusNotRunning);
    if (tellsMissingPermission(message)) return AppleScriptError(Kind::PermissionDenied);
    if (message.contains(u"Can't get task") && taskId) return AppleScriptError(Kind::TaskNotFound, *taskId);
    return AppleScriptError(Kind::ExecutionFailed, message);
}

AppleScriptError compilationFailed()
{
    return AppleScriptError(Kind::ScriptCompilationFailed, QString::fromLatin1(CompilationError));
}

void requireSuccess(const ScriptOutcome &outcome)
{
    if (!outcome.isCompiled) {
        log::error(u"⚠️ " + QString::fromLatin1(CompilationError));
        throw compilationFailed();
    }
    if (outcome.failure) {
        throw errorFor(*outcome.failure);
    }
    log::debug(u"✅ AppleScript execution succeeded with result: " + outcome.text);
}

/** Nothing that could be code may be put into a script. */
void requireSafeId(const QString &taskId)
{
    if (!omnifocus::isSafeTaskId(taskId)) {
        throw AppleScriptError(Kind::TaskNotFound, taskId);
    }
}

bool isPermissionGranted(const ScriptOutcome &outcome)
{
    if (!outcome.isCompiled) {
        log::warning(QStringLiteral("Failed to create AppleScript for permission check"));
        return false;
    }
    if (outcome.failure) {
        const QString message = outcome.failure->message;
        const int number = outcome.failure->number.value_or(-1);
        log::debug(QStringLiteral("Permission check error: code=%1, message=%2").arg(number).arg(message));
        const bool isDenied =
            tellsMissingPermission(message) || number == NotRunningNumber || number == NotPermittedNumber;
        log::warning(isDenied ? QString(u"Permission denied: " + message)
                              : QString(u"Permission error code: " + QString::number(number)));
        return false;
    }
    if (outcome.text != u"PermissionCheckOK") {
        log::warning(u"Permission check failed - unexpected result: " + outcome.text);
        return false;
    }
    log::debug(QStringLiteral("Permission check successful with exact match"));
    return true;
}

} // namespace

AppleScriptManager::AppleScriptManager(ScriptRunner &runner, UserDefaults &defaults, Clock &clock,
                                       QLocale locale)
    : m_runner(runner),
      m_defaults(defaults),
      m_clock(clock),
      m_locale(std::move(locale)),
      m_scripts("com.vantrel.scripts")
{
}

QCoro::Task<ScriptOutcome> AppleScriptManager::executeAppleScript(QString source)
{
    log::debug(u"🏃♂️ Running AppleScript: " + source);
    ScriptRunner &runner = m_runner;
    // Named, for g++ 12 destroys a closure inside a co_await expression twice.
    const auto work = [&runner, source] {
        return runner.run(source);
    };
    ScriptOutcome outcome = co_await m_scripts.run(work);
    requireSuccess(outcome);
    co_return outcome;
}

QCoro::Task<ScriptOutcome> AppleScriptManager::executeAndHandleScript(QString source,
                                                                      std::optional<QString> taskId)
{
    ScriptOutcome outcome;
    try {
        outcome = co_await executeAppleScript(source);
    } catch (const AppleScriptError &error) {
        log::error(u"Failed to execute script: " + error.message());
        throw;
    }
    if (outcome.text.startsWith(u"ERROR:")) {
        throw errorForAnswer(outcome.text.remove(QStringLiteral("ERROR: ")), taskId);
    }
    co_return ScriptOutcome(outcome);
}

QCoro::Task<OmniFocusRecords> AppleScriptManager::fetch(QString source)
{
    log::debug(u"🏃♂️ Running AppleScript: " + source);
    struct Answer
    {
        ScriptOutcome outcome;
        OmniFocusRecords records;
    };
    ScriptRunner &runner = m_runner;
    const Date now = m_clock.now();
    const QLocale locale = m_locale;
    // Thousands of texts are read where they come in, and only the records cross to the GUI thread.
    const auto work = [&runner, source, now, locale] {
        Answer answer;
        answer.outcome = runner.run(source);
        const auto items = std::exchange(answer.outcome.items, {});
        answer.records = omnifocus::tasksFromAnswer(items, omnifocus::AnswerDateReader(locale), now);
        return answer;
    };
    Answer answer = co_await m_scripts.run(work);
    requireSuccess(answer.outcome);
    co_return std::move(answer.records);
}

QCoro::Task<OmniFocusRecords> AppleScriptManager::fetchTasks()
{
    return fetch(
        omnifocus::fetchTasksScript(m_defaults.real(keys::RetrievalDays).value_or(DefaultRetrievalDays)));
}

QCoro::Task<OmniFocusRecords> AppleScriptManager::fetchCompletedTasks(int lookbackDays)
{
    return fetch(omnifocus::fetchCompletedTasksScript(lookbackDays));
}

QCoro::Task<> AppleScriptManager::fetchDueSoonMeans()
{
    const ScriptOutcome outcome = co_await executeAppleScript(omnifocus::fetchDueSoonScript());
    const std::optional<omnifocus::DueSoonSettings> settings = omnifocus::dueSoonFromAnswer(outcome.text);
    if (!settings) {
        log::warning(u"Received odd response from AppleScript: " + outcome.text);
        co_return;
    }
    const std::optional<double> oldDays = m_defaults.real(keys::DueSoonDays);
    if (oldDays != settings->days) {
        log::info(QStringLiteral("🔄 Due soon days changed from %1 to %2, updating defaults...")
                      .arg(oldDays.value_or(0.0))
                      .arg(settings->days));
        m_defaults.set(keys::DueSoonDays, settings->days);
    }
    const std::optional<QString> oldTime = m_defaults.text(keys::DueSoonTime);
    if (oldTime != settings->time) {
        log::info(u"🔄 Due soon time changed from " + oldTime.value_or(QStringLiteral("nil")) + u" to " +
                  settings->time + u", updating defaults...");
        m_defaults.set(keys::DueSoonTime, settings->time);
    }
}

QCoro::Task<bool> AppleScriptManager::edit(QString source, QString taskId, QString logLine)
{
    co_await executeAndHandleScript(source, taskId);
    log::info(logLine);
    co_return true;
}

QCoro::Task<bool> AppleScriptManager::setTaskName(QString taskId, QString name)
{
    requireSafeId(taskId);
    if (!omnifocus::isSafeTaskName(name)) {
        throw compilationFailed();
    }
    const QString source = omnifocus::setTaskNameScript(taskId, name);
    const QString logLine = u"✅ Update task " + taskId + u" name to " + name;
    co_return co_await edit(source, taskId, logLine);
}

QCoro::Task<bool> AppleScriptManager::flagTask(QString taskId, bool flagged)
{
    requireSafeId(taskId);
    const QString logLine = u"✅ Updated task " + taskId;
    co_return co_await edit(omnifocus::flagTaskScript(taskId, flagged), taskId, logLine);
}

QCoro::Task<bool> AppleScriptManager::markTaskComplete(QString taskId)
{
    requireSafeId(taskId);
    const QString logLine = u"✅ Updated task " + taskId;
    co_return co_await edit(omnifocus::markCompleteScript(taskId), taskId, logLine);
}

QCoro::Task<bool> AppleScriptManager::markTaskIncomplete(QString taskId)
{
    requireSafeId(taskId);
    const QString logLine = u"✅ Updated task " + taskId;
    co_return co_await edit(omnifocus::markIncompleteScript(taskId), taskId, logLine);
}

QCoro::Task<QString> AppleScriptManager::createTask(NewTask task)
{
    const std::optional<QString> noTask;
    const ScriptOutcome outcome = co_await executeAndHandleScript(omnifocus::createTaskScript(task), noTask);
    if (outcome.text.isEmpty()) {
        throw AppleScriptError(Kind::ExecutionFailed,
                               QStringLiteral("Failed to create task - no ID returned"));
    }
    log::info(u"✅ Created new task '" + task.name + u"' with ID: " + outcome.text);
    co_return QString(outcome.text);
}

QCoro::Task<std::vector<ProjectInfo>> AppleScriptManager::fetchAvailableProjects()
{
    const std::optional<QString> noTask;
    const ScriptOutcome outcome = co_await executeAndHandleScript(omnifocus::fetchProjectsScript(), noTask);
    co_return omnifocus::projectsFromAnswer(outcome.items);
}

QCoro::Task<std::vector<TagInfo>> AppleScriptManager::fetchAvailableTags()
{
    const std::optional<QString> noTask;
    const ScriptOutcome outcome = co_await executeAndHandleScript(omnifocus::fetchTagsScript(), noTask);
    co_return omnifocus::tagsFromAnswer(outcome.items);
}

bool AppleScriptManager::checkOmniFocusPermissions()
{
    if (!m_runner.isAvailable()) {
        log::warning(QStringLiteral("Failed to create AppleScript for permission check"));
        return false;
    }
    ScriptOutcome outcome;
    QEventLoop loop;
    m_scripts.async([this, &outcome, &loop] {
        outcome = m_runner.run(omnifocus::permissionCheckScript());
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    return isPermissionGranted(outcome);
}

QString AppleScriptManager::getPermissionsGuidance() const
{
    return QString::fromUtf8(Guidance);
}

} // namespace vantrel
