#include "viewmodels/TaskConfirmationViewModel.h"

#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "viewmodels/TaskCreationError.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

/** `name` as the source writes it; nothing if the source does not know it. */
template <typename Info>
std::optional<QString> knownSpelling(const std::vector<Info> &infos, const QString &name)
{
    const auto found = std::find_if(infos.begin(), infos.end(), [&](const Info &info) {
        return info.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == infos.end() ? std::nullopt : std::optional(found->name);
}

std::optional<QString> presentText(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
}

NewTask newTaskOf(const EditableTaskData &data)
{
    NewTask task;
    task.name = data.name.trimmed();
    task.note = presentText(data.note);
    task.dueDate = data.dueDate;
    task.deferDate = data.deferDate;
    task.project = presentText(data.project);
    if (const std::optional<QString> tag = presentText(data.tag)) {
        task.tags = {*tag};
    }
    return task;
}

} // namespace

void TaskConfirmationViewModel::createTask()
{
    if (m_isCreating) {
        return;
    }
    log::info(QStringLiteral("Starting task creation process"));
    if (m_editedTask.name.trimmed().isEmpty()) {
        log::info(QStringLiteral("Create task canceled: Empty task name"));
        m_errorMessage = tr("Task name is required");
        Q_EMIT changed();
        m_services.announcer.announce(m_errorMessage, AnnouncementPriority::High);
        return;
    }
    m_isCreating = true;
    m_errorMessage.clear();
    Q_EMIT changed();
    launch(create(m_editedTask, selectedTaskManager()), QStringLiteral("Creating a task"));
}

QCoro::Task<> TaskConfirmationViewModel::create(EditableTaskData data, TaskManagerType type)
{
    const QPointer self(this);
    QString error;
    try {
        co_await createTaskInManager(data, type);
    } catch (const std::exception &failure) {
        error = QString::fromUtf8(failure.what());
    }
    if (!self) {
        co_return;
    }
    m_isCreating = false;
    if (error.isEmpty()) {
        finish(data, type);
    } else {
        fail(error);
    }
}

QCoro::Task<> TaskConfirmationViewModel::createTaskInManager(EditableTaskData data, TaskManagerType type)
{
    const QPointer self(this);
    const QString name = rawValue(type);
    log::info(u"Using selected task manager: " + name);
    if (!isOffered(type)) {
        throw TaskCreationError::unsupportedTaskManager(name);
    }
    TaskManagerProtocol &manager = m_services.managers.manager(type);
    log::info(u"Checking permissions for " + name);
    if (!manager.checkPermissions()) {
        log::error(u"Permission denied for " + name);
        throw TaskCreationError::permissionDenied(name);
    }
    NewTask task = newTaskOf(data);
    m_leftOutTag.clear();
    if (type == TaskManagerType::OmniFocus) {
        task = co_await withNamesKnownToOmniFocus(task);
        if (!self) {
            co_return;
        }
    }
    log::debug(u"Creating task in " + name + u" with name: " + task.name);
    const QString id = co_await manager.createTask(task);
    log::info(u"Successfully created task with ID: " + id + u" in " + name);
}

/**
 * OmniFocus makes a task before it looks for its project and tag: an unknown name would fail with the task
 * made, and the next attempt would make it twice.
 */
QCoro::Task<NewTask> TaskConfirmationViewModel::withNamesKnownToOmniFocus(NewTask task)
{
    const QPointer self(this);
    TaskManagerProtocol &omniFocus = m_services.managers.manager(TaskManagerType::OmniFocus);
    if (task.project) {
        const std::vector<ProjectInfo> projects = co_await omniFocus.fetchAvailableProjects();
        const QString wanted = *task.project;
        task.project = knownSpelling(projects, wanted);
        if (!task.project) {
            throw TaskCreationError::unknownProject(rawValue(TaskManagerType::OmniFocus), wanted);
        }
    }
    if (!task.tags.isEmpty()) {
        const std::vector<TagInfo> tags = co_await omniFocus.fetchAvailableTags();
        const std::optional<QString> tag = knownSpelling(tags, task.tags.constFirst());
        if (!tag && self) {
            m_leftOutTag = task.tags.constFirst();
        }
        task.tags = tag ? QStringList(*tag) : QStringList();
    }
    co_return NewTask(task);
}

void TaskConfirmationViewModel::finish(const EditableTaskData &data, TaskManagerType type)
{
    log::info(QStringLiteral("Task created successfully"));
    Q_EMIT changed();
    m_services.announcer.announce(tr("Task '%1' created successfully").arg(data.name.trimmed()));
    if (!m_leftOutTag.isEmpty()) {
        m_services.toasts.show(tr("OmniFocus has no tag '%1': it was left out").arg(m_leftOutTag),
                               ToastManager::ToastStyle::Warning);
    }
    if (type != TaskManagerType::PlainText) {
        // The board learns of a plain text task from its source, in the place that it was given there.
        m_services.repository.invalidateCache();
        m_services.notifications.post(notifications::RefreshTasksRequested);
    }
    Q_EMIT taskCreated();
}

void TaskConfirmationViewModel::fail(const QString &message)
{
    log::error(u"Failed to create task: " + message);
    m_errorMessage = tr("Error creating task: %1").arg(message);
    Q_EMIT changed();
    m_services.announcer.announce(m_errorMessage, AnnouncementPriority::High);
}

} // namespace vantrel
