#include "support/MockTaskManager.h"

#include "foundations/Ids.h"
#include "foundations/Log.h"

#include <algorithm>

namespace vantrel::test {

QCoro::Task<WorkItems> MockTaskManager::fetchTasks()
{
    co_return WorkItems(tasks.begin(), tasks.end());
}

QCoro::Task<WorkItems> MockTaskManager::fetchCompletedTasks(int lookbackDays)
{
    WorkItems completed;
    for (int day = 0; day < lookbackDays; day += 2) {
        WorkItemFields fields;
        fields.id = u"completed-task-" + QString::number(day + 1);
        fields.name = u"Completed task " + QString::number(day + 1);
        fields.project = Project{QStringLiteral("proj-1"), QStringLiteral("Project Alpha")};
        fields.tag = Tag{QStringLiteral("tag-1"), QStringLiteral("Work")};
        fields.isComplete = true;
        fields.completionDate = m_clock.now() - day * SecondsPerDay;
        fields.creationDate = *fields.completionDate - SecondsPerDay;
        completed.push_back(std::make_shared<BaseWorkItem>(fields));
    }
    log::info(u"Generated " + QString::number(completed.size()) + u" mock completed tasks");
    co_return completed;
}

QCoro::Task<> MockTaskManager::fetchDueSoonSettings()
{
    co_return;
}

template <typename Change>
bool MockTaskManager::edit(const QString &taskId, Change change)
{
    const auto found =
        std::find_if(tasks.begin(), tasks.end(), [&](const auto &task) { return task->id() == taskId; });
    if (found == tasks.end()) {
        return false;
    }
    change(**found);
    return true;
}

QCoro::Task<bool> MockTaskManager::setTaskName(QString taskId, QString name)
{
    co_return edit(taskId, [&](WorkItem &task) { task.setName(name); });
}

QCoro::Task<bool> MockTaskManager::flagTask(QString taskId, bool flagged)
{
    co_return edit(taskId, [&](WorkItem &task) { task.setFlagged(flagged); });
}

QCoro::Task<bool> MockTaskManager::markTaskComplete(QString taskId)
{
    co_return edit(taskId, [this](WorkItem &task) {
        task.setComplete(true);
        task.setCompletionDate(m_clock.now());
    });
}

QCoro::Task<bool> MockTaskManager::markTaskIncomplete(QString taskId)
{
    co_return edit(taskId, [](WorkItem &task) {
        task.setComplete(false);
        task.setCompletionDate(std::nullopt);
    });
}

QCoro::Task<QString> MockTaskManager::createTask(NewTask task)
{
    WorkItemFields fields;
    fields.id = MockIdPrefix + uuidText(QUuid::createUuid());
    fields.name = task.name;
    fields.note = task.note;
    fields.dueDate = task.dueDate;
    fields.deferDate = task.deferDate;
    fields.creationDate = m_clock.now();
    fields.modificationDate = m_clock.now();
    if (task.project) {
        fields.project = Project{QString(u"proj-" + task.project->toLower()), *task.project};
    }
    if (!task.tags.isEmpty()) {
        fields.tag = Tag{QString(u"tag-" + task.tags.constFirst().toLower()), task.tags.constFirst()};
    }
    fields.isFlagged = task.tags.contains(u"urgent") || task.tags.contains(u"important");
    tasks.push_back(std::make_shared<BaseWorkItem>(fields, task.tags));
    log::debug(u"Created mock task with ID: " + fields.id + u", name: " + fields.name);
    co_return fields.id;
}

QCoro::Task<std::vector<ProjectInfo>> MockTaskManager::fetchAvailableProjects()
{
    co_return std::vector<ProjectInfo>();
}

QCoro::Task<std::vector<TagInfo>> MockTaskManager::fetchAvailableTags()
{
    co_return std::vector<TagInfo>();
}

bool MockTaskManager::canHandle(const QString &taskId) const
{
    return taskId.startsWith(MockIdPrefix);
}

QString MockTaskManager::taskManagerName() const
{
    return QStringLiteral("Mock Task Manager");
}

QString MockTaskManager::getPermissionsGuidance() const
{
    return QStringLiteral("This is a mock task manager for testing purposes. No permissions are required.");
}

} // namespace vantrel::test
