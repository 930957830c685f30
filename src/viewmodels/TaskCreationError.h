#pragma once

#include "sources/SourceError.h"

namespace vantrel {

/** Why quick entry could not make a task, before any source was asked to. Domain "TaskCreationError". */
class TaskCreationError : public SourceError
{
public:
    /** The source cannot take tasks here. */
    static TaskCreationError unsupportedTaskManager(const QString &name);
    static TaskCreationError permissionDenied(const QString &name);
    /** The source has no project of that name, and would not make one. */
    static TaskCreationError unknownProject(const QString &name, const QString &project);

private:
    TaskCreationError(int code, const QString &message);
};

} // namespace vantrel
