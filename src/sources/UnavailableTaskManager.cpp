#include "sources/UnavailableTaskManager.h"

#include "sources/SourceError.h"

namespace vantrel {

template <typename T>
QCoro::Task<T> UnavailableTaskManager::refuse()
{
    throw SourceError(QStringLiteral("UnavailableSource"), 1, getPermissionsGuidance());
    co_return T();
}

QCoro::Task<WorkItems> UnavailableTaskManager::fetchTasks()
{
    return refuse<WorkItems>();
}

QCoro::Task<WorkItems> UnavailableTaskManager::fetchCompletedTasks(int)
{
    return refuse<WorkItems>();
}

QCoro::Task<> UnavailableTaskManager::fetchDueSoonSettings()
{
    return refuse<void>();
}

QCoro::Task<bool> UnavailableTaskManager::setTaskName(QString, QString)
{
    return refuse<bool>();
}

QCoro::Task<bool> UnavailableTaskManager::flagTask(QString, bool)
{
    return refuse<bool>();
}

QCoro::Task<bool> UnavailableTaskManager::markTaskComplete(QString)
{
    return refuse<bool>();
}

QCoro::Task<bool> UnavailableTaskManager::markTaskIncomplete(QString)
{
    return refuse<bool>();
}

QCoro::Task<QString> UnavailableTaskManager::createTask(NewTask)
{
    return refuse<QString>();
}

QCoro::Task<std::vector<ProjectInfo>> UnavailableTaskManager::fetchAvailableProjects()
{
    return refuse<std::vector<ProjectInfo>>();
}

QCoro::Task<std::vector<TagInfo>> UnavailableTaskManager::fetchAvailableTags()
{
    return refuse<std::vector<TagInfo>>();
}

QString UnavailableTaskManager::getPermissionsGuidance() const
{
    return tr("%1 is not available on this system.").arg(rawValue(m_type));
}

} // namespace vantrel
