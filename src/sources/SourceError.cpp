#include "sources/SourceError.h"

namespace vantrel {

TaskManagerError::TaskManagerError(QString message)
    : SourceError(QStringLiteral("TaskManagerError"), 1, std::move(message))
{
}

TaskManagerError TaskManagerError::noManagerForType(const QString &typeName)
{
    return TaskManagerError(u"No task manager available for WorkItem type: " + typeName);
}

TaskManagerError TaskManagerError::noManagerForId(const QString &taskId)
{
    return TaskManagerError(u"No task manager can handle task ID: " + taskId);
}

TaskRepositoryError::TaskRepositoryError(const QString &message, std::vector<Cause> causes)
    : SourceError(QStringLiteral("TaskRepositoryError"), 1, message), m_causes(std::move(causes))
{
}

} // namespace vantrel
