#pragma once

#include "sources/TaskManagerProtocol.h"

namespace vantrel {

/**
 * The scripts that are sent to OmniFocus. Their texts are resource files, filled in at marked places only;
 * anything else in them, however odd it reads, is what OmniFocus has been talked to with and stays.
 */
namespace omnifocus {

inline constexpr QStringView BundleId = u"com.omnigroup.OmniFocus4";

QString permissionCheckScript();
/** `retrievalDays` is written as a real: "3.0". */
QString fetchTasksScript(double retrievalDays);
QString fetchCompletedTasksScript(int lookbackDays);
QString fetchProjectsScript();
QString fetchTagsScript();
QString fetchDueSoonScript();

/**
 * The edits insert ids and names as they come: callers let only what isSafeTaskId() and isSafeTaskName()
 * accept through.
 */
QString setTaskNameScript(const QString &taskId, const QString &name);
QString flagTaskScript(const QString &taskId, bool flagged);
QString markCompleteScript(const QString &taskId);
QString markIncompleteScript(const QString &taskId);

/** Name, project and tags are escaped; the note has no place in the script. Dates are read in local time. */
QString createTaskScript(const NewTask &task);

/** Ids that OmniFocus gives: ASCII letters, digits, "_", "." and "-", at most 64. Anything else could be
 * code. */
bool isSafeTaskId(QStringView taskId);
/** False for a name that would end the quoted text it is put into, and so could not compile, or would be
 * code. */
bool isSafeTaskName(QStringView name);

} // namespace omnifocus

} // namespace vantrel
