#pragma once

#include "foundations/Clock.h"
#include "foundations/NotificationCenter.h"
#include "foundations/ReminderWorkItem.h"
#include "foundations/UserDefaults.h"
#include "sources/TaskManagerProtocol.h"
#include "sources/reminders/ReminderStore.h"

#include <QObject>

namespace vantrel {

/**
 * Reminders as a task source. Keeps no tasks: each fetch asks the store. Reminders have no flag, tag or defer
 * date; priority has an operation of its own. GUI thread; owned by Services.
 */
class RemindersTaskManager final : public QObject, public TaskManagerProtocol
{
    Q_OBJECT
public:
    RemindersTaskManager(ReminderStore &store, UserDefaults &defaults, NotificationCenter &notifications,
                         Clock &clock, QObject *parent = nullptr);

    /** The open ones, then those completed in the last days, as many as the user wants to see. */
    QCoro::Task<WorkItems> fetchTasks() override;
    QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) override;
    QCoro::Task<> fetchDueSoonSettings() override;
    QCoro::Task<bool> setTaskName(QString taskId, QString name) override;
    /** False always: there is no flag. */
    QCoro::Task<bool> flagTask(QString taskId, bool flagged) override;
    /** Priorities as iCalendar counts them: see ReminderWorkItem::Details. */
    QCoro::Task<bool> setPriority(QString taskId, int priority);
    QCoro::Task<bool> markTaskComplete(QString taskId) override;
    QCoro::Task<bool> markTaskIncomplete(QString taskId) override;
    /** A project that is no list becomes one. The tags go into the note; the defer date has no place. */
    QCoro::Task<QString> createTask(NewTask task) override;
    /** The lists that can be written to. */
    QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() override;
    QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() override;

    bool canHandle(const QString &taskId) const override;
    QString taskManagerName() const override;
    /** Does not ask, but starts to ask where the user has not been asked yet. */
    bool checkPermissions() override;
    QString getPermissionsGuidance() const override;

private:
    /** What an edit does to the reminder, and its words in the log. */
    struct Edit
    {
        std::function<void(Reminder &)> change;
        QString failure;
        QString success;
    };

    QCoro::Task<> askForAccess();
    QCoro::Task<> verifyAccess();
    /** Throws unless there is full access. */
    QCoro::Task<> ensureAccess();
    QCoro::Task<std::vector<Reminder>> fetch(ReminderPredicate predicate);
    /** Makes the tasks piece by piece, so that the window stays alive. */
    QCoro::Task<> append(std::shared_ptr<WorkItems> tasks, std::vector<Reminder> reminders);
    ReminderPredicate completedInLastDays(int days) const;
    std::shared_ptr<ReminderWorkItem> createWorkItem(const Reminder &reminder) const;
    QCoro::Task<ReminderList> listFor(std::optional<QString> project);
    QCoro::Task<ReminderList> makeList(QString title, std::optional<ReminderList> defaultList);
    QCoro::Task<bool> edit(QString taskId, Edit edit);

    ReminderStore &m_store;
    UserDefaults &m_defaults;
    NotificationCenter &m_notifications;
    Clock &m_clock;
};

} // namespace vantrel
