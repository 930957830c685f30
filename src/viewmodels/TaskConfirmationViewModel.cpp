#include "viewmodels/TaskConfirmationViewModel.h"

#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "viewmodels/TaskCreationError.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

constexpr int MaximumSuggestions = 5;

QStringList filteredSuggestions(const QStringList &suggestions, const QString &text)
{
    QStringList filtered;
    for (const QString &suggestion : suggestions) {
        if (filtered.size() < MaximumSuggestions && suggestion.contains(text, Qt::CaseInsensitive)) {
            filtered.append(suggestion);
        }
    }
    return filtered;
}

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

QDateTime dateTimeOf(const std::optional<Date> &date)
{
    return date ? date->toDateTime() : QDateTime();
}

std::optional<Date> dateOf(const QDateTime &dateTime)
{
    return dateTime.isValid() ? std::optional(Date::fromDateTime(dateTime)) : std::nullopt;
}

} // namespace

TaskConfirmationViewModel::TaskConfirmationViewModel(const QuickEntryServices &services, QObject *parent)
    : QObject(parent), m_services(services)
{
    readTaskSources();
    services.notifications.observe(notifications::TaskSourceConfigurationChanged, this,
                                   [this](const Notification &) {
                                       readTaskSources();
                                       Q_EMIT changed();
                                   });
}

void TaskConfirmationViewModel::begin(const ParsedTask &task, const QString &line)
{
    log::debug(u"TaskConfirmationView initialized with parsed task: " + task.name);
    m_parsedText = line;
    m_editedTask = {.name = task.name,
                    .note = task.note.value_or(QString()),
                    .dueDate = task.dueDate,
                    .deferDate = task.deferDate,
                    .project = task.project.value_or(QString()),
                    .tag = task.tags.value(0),
                    .taskManager = task.taskManager};
    m_omittedTags = std::max(0, static_cast<int>(task.tags.size()) - 1);
    m_errorMessage.clear();
    m_metadataSource.reset();
    readTaskSources();
    loadMetadataIfNeeded();
    Q_EMIT changed();
}

// The fields

void TaskConfirmationViewModel::setName(const QString &name)
{
    m_editedTask.name = name;
    Q_EMIT changed();
}

void TaskConfirmationViewModel::setNote(const QString &note)
{
    m_editedTask.note = note;
    Q_EMIT changed();
}

void TaskConfirmationViewModel::setProject(const QString &project)
{
    m_editedTask.project = project;
    Q_EMIT changed();
}

void TaskConfirmationViewModel::setTag(const QString &tag)
{
    m_editedTask.tag = tag;
    Q_EMIT changed();
}

QDateTime TaskConfirmationViewModel::dueDate() const
{
    return dateTimeOf(m_editedTask.dueDate);
}

void TaskConfirmationViewModel::setDueDate(const QDateTime &date)
{
    m_editedTask.dueDate = dateOf(date);
    Q_EMIT changed();
}

QDateTime TaskConfirmationViewModel::deferDate() const
{
    return dateTimeOf(m_editedTask.deferDate);
}

void TaskConfirmationViewModel::setDeferDate(const QDateTime &date)
{
    m_editedTask.deferDate = dateOf(date);
    Q_EMIT changed();
}

QDateTime TaskConfirmationViewModel::now() const
{
    return m_services.clock.now().toDateTime();
}

QString TaskConfirmationViewModel::omittedTagsText() const
{
    switch (m_omittedTags) {
    case 0:
        return {};
    case 1:
        return tr("1 more tag will be left out");
    default:
        return tr("%1 more tags will be left out").arg(m_omittedTags);
    }
}

// The source

void TaskConfirmationViewModel::readTaskSources()
{
    const TaskSourceConfiguration configuration = m_services.managers.getTaskSourceConfiguration();
    const auto isEnabled = [&configuration](TaskManagerType type) {
        switch (type) {
        case TaskManagerType::OmniFocus:
            return configuration.isOmniFocusEnabled;
        case TaskManagerType::Reminders:
            return configuration.isRemindersEnabled;
        case TaskManagerType::PlainText:
            break;
        }
        return configuration.isPlainTextEnabled;
    };
    m_enabledTaskSources.clear();
    for (const TaskManagerType type : AllTaskManagerTypes) {
        if (isEnabled(type) && m_services.managers.manager(type).isAvailableOnPlatform()) {
            m_enabledTaskSources.push_back(type);
        }
    }
    log::debug(u"Enabled task sources: " + taskSources().join(u", "));
}

QStringList TaskConfirmationViewModel::taskSources() const
{
    QStringList names;
    for (const TaskManagerType type : m_enabledTaskSources) {
        names.append(rawValue(type));
    }
    return names;
}

bool TaskConfirmationViewModel::isOffered(TaskManagerType type) const
{
    return std::find(m_enabledTaskSources.begin(), m_enabledTaskSources.end(), type) !=
           m_enabledTaskSources.end();
}

TaskManagerType TaskConfirmationViewModel::selectedTaskManager() const
{
    if (m_editedTask.taskManager && isOffered(*m_editedTask.taskManager)) {
        return *m_editedTask.taskManager;
    }
    const std::optional<TaskManagerType> preferred = taskManagerTypeFromRawValue(
        m_services.defaults.text(keys::DefaultTaskManagerForQuickEntry).value_or(QString()));
    if (preferred && isOffered(*preferred)) {
        return *preferred;
    }
    return m_enabledTaskSources.empty() ? TaskManagerType::PlainText : m_enabledTaskSources.front();
}

int TaskConfirmationViewModel::selectedSource() const
{
    return static_cast<int>(taskSources().indexOf(rawValue(selectedTaskManager())));
}

void TaskConfirmationViewModel::selectSource(int index)
{
    m_editedTask.taskManager = m_enabledTaskSources.at(static_cast<std::size_t>(index));
    loadMetadataIfNeeded();
    Q_EMIT changed();
}

// Completion

QStringList TaskConfirmationViewModel::projectSuggestions() const
{
    return filteredSuggestions(m_availableProjects, m_editedTask.project.trimmed());
}

QStringList TaskConfirmationViewModel::tagSuggestions() const
{
    return filteredSuggestions(m_availableTags, m_editedTask.tag.trimmed());
}

void TaskConfirmationViewModel::loadMetadataIfNeeded()
{
    const TaskManagerType type = selectedTaskManager();
    if (m_metadataSource == type) {
        return;
    }
    m_metadataSource = type;
    m_availableProjects.clear();
    m_availableTags.clear();
    m_metadataRequests = 0;
    const int generation = ++m_metadataGeneration;
    if (!isOffered(type)) {
        log::info(u"Skipping metadata loading for unsupported or disabled manager: " + rawValue(type));
        return;
    }
    log::info(u"Loading metadata for " + rawValue(type));
    m_metadataRequests = 2;
    TaskManagerProtocol &manager = m_services.managers.manager(type);
    launch(takeNames(manager.fetchAvailableProjects(), &m_availableProjects, generation),
           QStringLiteral("Loading projects"));
    launch(takeNames(manager.fetchAvailableTags(), &m_availableTags, generation),
           QStringLiteral("Loading tags"));
}

template <typename Info>
QCoro::Task<> TaskConfirmationViewModel::takeNames(QCoro::Task<std::vector<Info>> fetch, QStringList *names,
                                                   int generation)
{
    const QPointer self(this);
    std::vector<Info> infos;
    try {
        infos = co_await fetch;
    } catch (const std::exception &failure) {
        // Completion is a help, not a condition.
        log::info(u"No names to complete with: " + QString::fromUtf8(failure.what()));
    }
    if (!self || generation != m_metadataGeneration) {
        co_return;
    }
    for (const Info &info : infos) {
        if (info.isActive) {
            names->append(info.name);
        }
    }
    --m_metadataRequests;
    Q_EMIT changed();
}

// Creation

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
