#include "board/BoardState.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
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

PlainTextRecord recordOf(const BaseWorkItem &item)
{
    return {item.fields(), item.hashtags(), item.originalText()};
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

void BoardState::saveChanges(BaseWorkItem &item)
{
    if (isPlainTextId(item)) {
        log::info(u"Saving plain text task changes for " + item.id());
        item.setModificationDate(m_services.clock.now());
        m_services.persistence.savePlainTextTask(recordOf(item));
    }
}

TaskUpdate BoardState::updateTaskName(const QString &taskId, const QString &name)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base},
                       [this, &name](WorkItem &item) {
                           item.setName(name);
                           if (auto *base = qobject_cast<BaseWorkItem *>(&item)) saveChanges(*base);
                       });
}

TaskUpdate BoardState::updateTaskFlagStatus(const QString &taskId, bool isFlagged)
{
    return updateField(taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base},
                       [this, isFlagged](WorkItem &item) {
                           item.setFlagged(isFlagged);
                           if (auto *base = qobject_cast<BaseWorkItem *>(&item)) saveChanges(*base);
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

TaskUpdate BoardState::updateTaskCompletionStatus(const QString &taskId, bool isComplete,
                                                  std::optional<Date> completionDate)
{
    const TaskUpdate update = updateField(
        taskId, {ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::Base}, [&](WorkItem &item) {
            if (item.isComplete() != isComplete && !isPlainTextId(item)) {
                m_services.persistence.journalCompletion(taskId, isComplete);
            }
            item.setComplete(isComplete);
            item.setCompletionDate(isComplete ? completionDate.value_or(m_services.clock.now())
                                              : std::optional<Date>());
            if (auto *base = qobject_cast<BaseWorkItem *>(&item)) saveChanges(*base);
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
    storeCompletion(*item, isComplete);
    log::info(u"Updated completion status for " + itemClassName(*item) + u": " + taskId + u" - " +
              (isComplete ? QStringLiteral("true") : QStringLiteral("false")));
    touch(taskId);
    if (isComplete) {
        m_priorityManager.handleTaskCompletion(taskId);
        post(notifications::TaskCompletionAnimation, taskId, {{QStringLiteral("taskId"), taskId}});
    }
    return {true, item};
}

void BoardState::storeCompletion(WorkItem &item, bool isComplete)
{
    const bool wasComplete = item.isComplete();
    item.setComplete(isComplete);
    if (auto *plainText = qobject_cast<PlainTextWorkItem *>(&item)) {
        plainText->setCompletionDate(isComplete ? std::optional(m_services.clock.now())
                                                : std::optional<Date>());
        m_services.persistence.savePlainTextTask(plainText->record());
    } else if (auto *base = qobject_cast<BaseWorkItem *>(&item); base && isPlainTextId(item)) {
        m_services.persistence.savePlainTextTask(recordOf(*base));
    } else if (wasComplete != isComplete) {
        m_services.persistence.journalCompletion(item.id(), isComplete);
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
