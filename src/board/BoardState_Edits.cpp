#include "board/BoardState.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/ReminderWorkItem.h"
#include "sources/TaskManagerFactory.h"
#include "sources/omnifocus/AppleScriptError.h"

#include <algorithm>

namespace vantrel {

namespace {

constexpr double PermissionRetryDelay = 0.5;

bool isPlainTextId(const WorkItem &item)
{
    return sourceOf(item.id()) == TaskSource::PlainText;
}

/** The record under which our own store keeps the item; nothing for a task of another source. */
std::optional<PlainTextRecord> storedRecord(const WorkItem &item)
{
    if (const auto *plainText = qobject_cast<const PlainTextWorkItem *>(&item)) {
        return plainText->record();
    }
    if (const auto *base = qobject_cast<const BaseWorkItem *>(&item); base && isPlainTextId(item)) {
        return PlainTextRecord{base->fields(), base->hashtags(), base->originalText()};
    }
    return std::nullopt;
}

} // namespace

TaskUpdate BoardState::updateField(const QString &taskId, std::initializer_list<ItemClass> classes,
                                   const std::function<void(WorkItem &)> &change)
{
    const WorkItemPtr item = findTaskById(taskId);
    if (!item) {
        return {};
    }
    if (std::find(classes.begin(), classes.end(), itemClass(*item)) == classes.end()) {
        return {false, item};
    }
    change(*item);
    touch(taskId);
    return {true, item};
}

void BoardState::saveChanges(WorkItem &item)
{
    if (itemClass(item) == ItemClass::Base && isPlainTextId(item)) {
        log::info(u"Saving plain text task changes for " + item.id());
        item.setModificationDate(m_services.clock.now());
        m_services.persistence.savePlainTextTask(*storedRecord(item));
    }
}

TaskUpdate BoardState::updateTaskName(const QString &taskId, const QString &name)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base},
                       [this, &name](WorkItem &item) {
                           item.setName(name);
                           saveChanges(item);
                       });
}

TaskUpdate BoardState::updateTaskFlagStatus(const QString &taskId, bool isFlagged)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base},
                       [this, isFlagged](WorkItem &item) {
                           item.setFlagged(isFlagged);
                           saveChanges(item);
                       });
}

TaskUpdate BoardState::updateTaskBlockedStatus(const QString &taskId, bool isBlocked)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Base, ItemClass::PlainText},
                       [isBlocked](WorkItem &item) { item.setBlocked(isBlocked); });
}

TaskUpdate BoardState::updateTaskBlockReason(const QString &taskId, const std::optional<QString> &reason)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Base, ItemClass::PlainText},
                       [&reason](WorkItem &item) { item.setBlockReason(reason); });
}

TaskUpdate BoardState::updateReminderPriority(const QString &taskId, int priority)
{
    return updateField(taskId, {ItemClass::Reminder}, [priority](WorkItem &item) {
        static_cast<ReminderWorkItem &>(item).setReminderPriority(priority);
    });
}

TaskUpdate BoardState::updateTaskCompletionStatus(const QString &taskId, bool isComplete,
                                                  std::optional<Date> completionDate)
{
    const TaskUpdate update = updateField(
        taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base}, [&](WorkItem &item) {
            if (item.isComplete() != isComplete) {
                m_services.persistence.journalCompletion(taskId, isComplete);
            }
            item.setComplete(isComplete);
            item.setCompletionDate(isComplete ? completionDate.value_or(m_services.clock.now())
                                              : std::optional<Date>());
            saveChanges(item);
        });
    if (isComplete && update.success) {
        m_priorityManager.handleTaskCompletion(taskId);
    }
    return update;
}

TaskUpdate BoardState::updateTaskCompletionStatus(const QString &taskId, bool isComplete)
{
    const WorkItemPtr item = m_placements.task(taskId);
    if (!item) {
        log::warning(u"Could not find task to update completion status: " + taskId);
        return {};
    }
    if (itemClass(*item) == ItemClass::Unknown) {
        log::warning(u"Could not update completion status for task of unknown type: " + taskId);
        return {false, item};
    }
    setCompletion({item}, isComplete);
    return {true, item};
}

void BoardState::setCompletion(const WorkItems &items, bool isComplete)
{
    std::vector<PlainTextRecord> records;
    QStringList changedElsewhere;
    QStringList ids;
    for (const WorkItemPtr &item : items) {
        const bool changes = item->isComplete() != isComplete;
        item->setComplete(isComplete);
        if (itemClass(*item) == ItemClass::PlainText) {
            item->setCompletionDate(isComplete ? std::optional(m_services.clock.now())
                                               : std::optional<Date>());
        }
        if (const std::optional<PlainTextRecord> record = storedRecord(*item)) {
            records.push_back(*record);
        } else if (changes) {
            changedElsewhere.append(item->id());
        }
        log::info(u"Updated completion status for " + itemClassName(*item) + u": " + item->id() + u" - " +
                  (isComplete ? QStringLiteral("true") : QStringLiteral("false")));
        touch(item->id());
        ids.append(item->id());
    }
    if (!records.empty()) {
        m_services.persistence.savePlainTextTasks(std::move(records));
    }
    m_services.persistence.journalCompletions(changedElsewhere, isComplete);
    if (isComplete) {
        m_priorityManager.handleTaskCompletions(ids);
        for (const QString &id : ids) {
            post(notifications::TaskCompletionAnimation, id, {{QStringLiteral("taskId"), id}});
        }
    }
}

TaskManagerProtocol &BoardState::getTaskManager(const WorkItem &task) const
{
    switch (itemClass(task)) {
    case ItemClass::OmniFocus:
        return m_services.managers.manager(TaskManagerType::OmniFocus);
    case ItemClass::Reminder:
        return m_services.managers.manager(TaskManagerType::Reminders);
    case ItemClass::PlainText:
        return m_services.managers.manager(TaskManagerType::PlainText);
    default:
        throw TaskManagerError::noManagerForType(itemClassName(task));
    }
}

QCoro::Task<bool> BoardState::withRetryOnPermissionError(std::function<QCoro::Task<bool>()> operation)
{
    // The board may be gone after each wait; its services are not.
    Clock &clock = m_services.clock;
    try {
        co_return co_await operation();
    } catch (const AppleScriptError &error) {
        if (error.kind() != AppleScriptError::Kind::PermissionDenied) {
            throw;
        }
    }
    log::warning(QStringLiteral("Permission denied, attempting to trigger permission dialog"));
    co_await clock.sleep(PermissionRetryDelay);
    try {
        co_return co_await operation();
    } catch (const SourceError &error) {
        log::error(u"Failed on retry: " + error.message());
        throw;
    }
}

} // namespace vantrel
