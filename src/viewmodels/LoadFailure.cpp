#include "viewmodels/LoadFailure.h"

#include "sources/TaskManagerProtocol.h"
#include "sources/omnifocus/AppleScriptError.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace vantrel {

namespace {

using Kind = LoadFailure::Kind;

/** The platform's automation errors that mean a missing permission. */
constexpr std::array PermissionCodes{-600, -1743, -1728};

QString translated(const char *text)
{
    return QCoreApplication::translate("vantrel::LoadFailure", text);
}

LoadFailure automationDenied()
{
    return {Kind::PermissionMissing,
            translated(QT_TRANSLATE_NOOP("vantrel::LoadFailure",
                                         "AppleScript Permission denied - grant automation permission"))};
}

LoadFailure permissionIssue(const QString &text)
{
    return {Kind::PermissionMissing,
            translated(QT_TRANSLATE_NOOP("vantrel::LoadFailure", "Permission issue: %1")).arg(text)};
}

LoadFailure judgeScriptError(const AppleScriptError &error)
{
    switch (error.kind()) {
    case AppleScriptError::Kind::OmniFocusNotRunning:
        return {Kind::Message,
                translated(QT_TRANSLATE_NOOP("vantrel::LoadFailure", "⚠️ OmniFocus isn't running."))};
    case AppleScriptError::Kind::PermissionDenied:
        return automationDenied();
    case AppleScriptError::Kind::OmniFocusProRequired:
        return {Kind::ProRequired,
                translated(QT_TRANSLATE_NOOP("vantrel::LoadFailure",
                                             "⚠️ OmniFocus Pro is required for scripting. OmniFocus has "
                                             "been disabled as a task source. "
                                             "Plain Text has been enabled as a fallback."))};
    default:
        return {Kind::Other, error.message()};
    }
}

LoadFailure judgeCause(const TaskRepositoryError::Cause &cause)
{
    if (cause.isPermission) {
        return cause.source == rawValue(TaskManagerType::OmniFocus)
                   ? automationDenied()
                   : permissionIssue(cause.source + u": " + cause.message);
    }
    return cause.error ? judgeLoadFailure(cause.error) : LoadFailure{Kind::Other, cause.message};
}

LoadFailure judgeCauses(const TaskRepositoryError &error)
{
    for (const TaskRepositoryError::Cause &cause : error.causes()) {
        const LoadFailure failure = judgeCause(cause);
        if (failure.kind != Kind::Other) {
            return failure;
        }
    }
    return {Kind::Other, error.message()};
}

} // namespace

LoadFailure judgeLoadFailure(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const TaskRepositoryError &failure) {
        return judgeCauses(failure);
    } catch (const AppleScriptError &failure) {
        return judgeScriptError(failure);
    } catch (const SourceError &failure) {
        const bool isPermission = std::find(PermissionCodes.begin(), PermissionCodes.end(), failure.code()) !=
                                  PermissionCodes.end();
        return isPermission ? permissionIssue(failure.message())
                            : LoadFailure{Kind::Other, failure.message()};
    } catch (const std::exception &failure) {
        return {Kind::Other, QString::fromUtf8(failure.what())};
    }
}

QString noticeOfMissingTasks(const std::vector<TaskRepositoryError::Cause> &failures)
{
    QStringList lines;
    // The guidance of a source fills a screen: its first line says what is missing.
    for (const TaskRepositoryError::Cause &cause : failures) {
        lines.append(translated(QT_TRANSLATE_NOOP("vantrel::LoadFailure", "The tasks of %1 are missing: %2"))
                         .arg(cause.source, cause.message.section(u'\n', 0, 0)));
    }
    return lines.join(u'\n');
}

} // namespace vantrel
