#pragma once

#include "foundations/Ids.h"
#include "foundations/UserDefaults.h"
#include "sources/TaskManagerProtocol.h"

namespace vantrel {

/**
 * Hands out the sources: one instance each, made with the services, whether switched on or not. The
 * configuration is read from the user defaults at each call. GUI thread; owned by Services.
 */
class TaskManagerFactory
{
public:
    /** The sources must outlive the factory. */
    TaskManagerFactory(UserDefaults &defaults, TaskManagerProtocol &omniFocus, TaskManagerProtocol &reminders,
                       TaskManagerProtocol &plainText);
    Q_DISABLE_COPY_MOVE(TaskManagerFactory)

    /** The source of that type, enabled or not. */
    TaskManagerProtocol &manager(TaskManagerType type) const;

    /**
     * The enabled sources in the order OmniFocus, Reminders, Plain Text. Never empty: with all three off it
     * holds OmniFocus, so ask the configuration whether anything is on.
     */
    std::vector<TaskManagerProtocol *> enabledManagers() const;

    /** The enabled source that owns `taskId`, by the id's form; nullptr if none does. */
    TaskManagerProtocol *enabledManagerFor(const QString &taskId) const;

    TaskSourceConfiguration getTaskSourceConfiguration() const;
    void setTaskSourceConfiguration(const TaskSourceConfiguration &configuration);

private:
    UserDefaults &m_defaults;
    TaskManagerProtocol &m_omniFocus;
    TaskManagerProtocol &m_reminders;
    TaskManagerProtocol &m_plainText;
};

} // namespace vantrel
