#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "sources/reminders/RemindersError.h"
#include "sources/reminders/RemindersTaskManager.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

using Kind = RemindersError::Kind;

/** Midnight is how a day without a time of day arrives here. */
ReminderDueDate dueDateOf(Date date)
{
    const QDateTime local = date.toDateTime();
    if (local == local.date().startOfDay()) {
        return local.date();
    }
    return date;
}

std::vector<ReminderList>::const_iterator listTitled(const std::vector<ReminderList> &lists,
                                                     const QString &title)
{
    const auto exact = std::find_if(lists.begin(), lists.end(),
                                    [&title](const ReminderList &list) { return list.title == title; });
    if (exact != lists.end()) {
        return exact;
    }
    return std::find_if(lists.begin(), lists.end(), [&title](const ReminderList &list) {
        return list.title.compare(title, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

// Making.

QCoro::Task<QString> RemindersTaskManager::createTask(NewTask task)
{
    const QPointer self(this);
    log::debug(u"Creating new reminder with name: " + task.name);
    Reminder reminder;
    reminder.list = co_await listFor(task.project);
    reminder.title = task.name;
    reminder.notes = task.note;
    if (task.dueDate) {
        reminder.dueDate = dueDateOf(*task.dueDate);
    }
    if (!task.tags.isEmpty()) {
        reminder.notes = task.note.value_or(QString()) + u"\n\nTags: #" + task.tags.join(u" #");
    }
    if (!self) {
        throw RemindersError(Kind::FetchFailed);
    }
    QString identifier;
    try {
        identifier = co_await m_store.save(reminder);
    } catch (const std::exception &failure) {
        throw RemindersError(Kind::SaveFailed, QString::fromUtf8(failure.what()));
    }
    log::info(u"Successfully created reminder with ID: " + identifier);
    co_return ReminderIdPrefix + identifier;
}

QCoro::Task<ReminderList> RemindersTaskManager::listFor(std::optional<QString> project)
{
    const QPointer self(this);
    const std::vector<ReminderList> lists = co_await m_store.lists();
    std::optional<ReminderList> list = co_await m_store.defaultListForNewReminders();
    if (!self) {
        throw RemindersError(Kind::FetchFailed);
    }
    if (project) {
        const auto found = listTitled(lists, *project);
        if (found != lists.end()) {
            co_return ReminderList(*found);
        }
        co_return co_await makeList(*project, list);
    }
    if (list) {
        co_return ReminderList(*list);
    }
    if (!lists.empty()) {
        co_return ReminderList(lists.front());
    }
    co_return co_await makeList(QStringLiteral("Reminders"), std::nullopt);
}

QCoro::Task<ReminderList> RemindersTaskManager::makeList(QString title,
                                                         std::optional<ReminderList> defaultList)
{
    const QPointer self(this);
    ReminderList list;
    list.title = title;
    if (defaultList) {
        list.sourceIdentifier = defaultList->sourceIdentifier;
    } else {
        const std::vector<ReminderSource> sources = co_await m_store.sources();
        const auto local = std::find_if(sources.begin(), sources.end(),
                                        [](const ReminderSource &source) { return source.isLocal; });
        if (local != sources.end()) {
            list.sourceIdentifier = local->identifier;
        }
    }
    if (!self) {
        throw RemindersError(Kind::FetchFailed);
    }
    co_return co_await m_store.saveList(list);
}

// Edits.

QCoro::Task<bool> RemindersTaskManager::setTaskName(QString taskId, QString name)
{
    Edit change{[name](Reminder &reminder) { reminder.title = name; },
                QStringLiteral("Failed to save reminder name change: "),
                u"Successfully updated reminder name to: " + name};
    return edit(std::move(taskId), std::move(change));
}

QCoro::Task<bool> RemindersTaskManager::setPriority(QString taskId, int priority)
{
    Edit change{[priority](Reminder &reminder) { reminder.priority = priority; },
                QStringLiteral("Failed to save reminder priority change: "),
                u"Successfully updated reminder priority to: " + QString::number(priority)};
    return edit(std::move(taskId), std::move(change));
}

QCoro::Task<bool> RemindersTaskManager::markTaskComplete(QString taskId)
{
    Edit change{[](Reminder &reminder) { reminder.isCompleted = true; },
                QStringLiteral("Failed to save reminder completion: "),
                QStringLiteral("Successfully marked reminder as complete")};
    return edit(std::move(taskId), std::move(change));
}

QCoro::Task<bool> RemindersTaskManager::markTaskIncomplete(QString taskId)
{
    Edit change{[](Reminder &reminder) { reminder.isCompleted = false; },
                QStringLiteral("Failed to save reminder incompletion: "),
                QStringLiteral("Successfully marked reminder as incomplete")};
    return edit(std::move(taskId), std::move(change));
}

QCoro::Task<bool> RemindersTaskManager::flagTask(QString taskId, bool flagged)
{
    Q_UNUSED(taskId)
    Q_UNUSED(flagged)
    log::info(QStringLiteral("Flagging not supported for ReminderWorkItem - use priority system instead"));
    co_return false;
}

QCoro::Task<bool> RemindersTaskManager::edit(QString taskId, Edit edit)
{
    if (!canHandle(taskId)) {
        log::warning(u"Cannot handle taskID: " + taskId);
        co_return false;
    }
    const QPointer self(this);
    const QString identifier = taskId.mid(ReminderIdPrefix.size());
    std::optional<Reminder> reminder = co_await m_store.reminder(identifier);
    if (!reminder || !self) {
        log::warning(u"Could not find reminder with ID: " + identifier);
        co_return false;
    }
    edit.change(*reminder);
    try {
        co_await m_store.save(*reminder);
    } catch (const std::exception &failure) {
        const QString reason = QString::fromUtf8(failure.what());
        log::error(edit.failure + reason);
        throw RemindersError(Kind::SaveFailed, reason);
    }
    log::debug(edit.success);
    co_return true;
}

} // namespace vantrel
