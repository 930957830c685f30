#include "viewmodels/TaskCreationError.h"

#include <QCoreApplication>

namespace vantrel {

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("vantrel::TaskCreationError", text);
}

} // namespace

TaskCreationError::TaskCreationError(int code, const QString &message)
    : SourceError(QStringLiteral("TaskCreationError"), code, message)
{
}

TaskCreationError TaskCreationError::unsupportedTaskManager(const QString &name)
{
    const char *const text =
        QT_TRANSLATE_NOOP("vantrel::TaskCreationError",
                          "Task manager '%1' is not yet supported. Please use OmniFocus or Reminders.");
    return {1, translated(text).arg(name)};
}

TaskCreationError TaskCreationError::permissionDenied(const QString &name)
{
    const char *const text =
        QT_TRANSLATE_NOOP("vantrel::TaskCreationError",
                          "Permission denied for %1. Please grant access in the Permissions menu.");
    return {2, translated(text).arg(name)};
}

TaskCreationError TaskCreationError::unknownProject(const QString &name, const QString &project)
{
    const char *const text = QT_TRANSLATE_NOOP("vantrel::TaskCreationError", "%1 has no project named '%2'");
    return {3, translated(text).arg(name, project)};
}

} // namespace vantrel
