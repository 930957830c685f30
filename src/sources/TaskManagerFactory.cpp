#include "sources/TaskManagerFactory.h"

#include "foundations/DefaultsKeys.h"

#include <algorithm>

namespace vantrel {

namespace {

std::optional<TaskManagerType> typeOf(TaskSource source)
{
    switch (source) {
    case TaskSource::OmniFocus:
        return TaskManagerType::OmniFocus;
    case TaskSource::Reminders:
        return TaskManagerType::Reminders;
    case TaskSource::PlainText:
        return TaskManagerType::PlainText;
    case TaskSource::Mock:
        break;
    }
    return std::nullopt;
}

} // namespace

TaskManagerFactory::TaskManagerFactory(UserDefaults &defaults, TaskManagerProtocol &omniFocus,
                                       TaskManagerProtocol &reminders, TaskManagerProtocol &plainText)
    : m_defaults(defaults), m_omniFocus(omniFocus), m_reminders(reminders), m_plainText(plainText)
{
}

TaskManagerProtocol &TaskManagerFactory::manager(TaskManagerType type) const
{
    switch (type) {
    case TaskManagerType::OmniFocus:
        return m_omniFocus;
    case TaskManagerType::Reminders:
        return m_reminders;
    case TaskManagerType::PlainText:
        break;
    }
    return m_plainText;
}

std::vector<TaskManagerProtocol *> TaskManagerFactory::enabledManagers() const
{
    const TaskSourceConfiguration configuration = getTaskSourceConfiguration();
    std::vector<TaskManagerProtocol *> managers;
    if (configuration.isOmniFocusEnabled || !configuration.isAnyEnabled()) {
        managers.push_back(&m_omniFocus);
    }
    if (configuration.isRemindersEnabled) {
        managers.push_back(&m_reminders);
    }
    if (configuration.isPlainTextEnabled) {
        managers.push_back(&m_plainText);
    }
    return managers;
}

TaskManagerProtocol *TaskManagerFactory::enabledManagerFor(const QString &taskId) const
{
    const std::optional<TaskManagerType> type = typeOf(sourceOf(taskId));
    if (!type) {
        return nullptr;
    }
    TaskManagerProtocol &candidate = manager(*type);
    const std::vector<TaskManagerProtocol *> enabled = enabledManagers();
    const bool isEnabled = std::find(enabled.begin(), enabled.end(), &candidate) != enabled.end();
    return isEnabled && candidate.canHandle(taskId) ? &candidate : nullptr;
}

TaskSourceConfiguration TaskManagerFactory::getTaskSourceConfiguration() const
{
    TaskSourceConfiguration configuration;
    const auto read = [this](QStringView key, bool &flag) {
        flag = m_defaults.boolean(key).value_or(flag);
    };
    read(keys::IsOmniFocusEnabled, configuration.isOmniFocusEnabled);
    read(keys::IsRemindersEnabled, configuration.isRemindersEnabled);
    read(keys::IsPlainTextEnabled, configuration.isPlainTextEnabled);
    return configuration;
}

void TaskManagerFactory::setTaskSourceConfiguration(const TaskSourceConfiguration &configuration)
{
    m_defaults.set(keys::IsOmniFocusEnabled, configuration.isOmniFocusEnabled);
    m_defaults.set(keys::IsRemindersEnabled, configuration.isRemindersEnabled);
    m_defaults.set(keys::IsPlainTextEnabled, configuration.isPlainTextEnabled);
}

} // namespace vantrel
