#include "viewmodels/TaskConfirmationViewModel.h"

#include "foundations/Clock.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/UserDefaults.h"
#include "sources/TaskManagerFactory.h"

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

} // namespace vantrel
