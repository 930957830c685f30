#include "sources/reminders/RemindersTaskManager.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Ids.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/TimeSlice.h"
#include "sources/reminders/RemindersError.h"

#include <QPointer>

#include <algorithm>

namespace vantrel {

namespace {

using Kind = RemindersError::Kind;

constexpr QStringView ListIdPrefix = u"reminders_list_";
constexpr double DefaultRetrievalDays = 3.0;

constexpr auto Guidance = R"(Vantrel needs permission to access your Reminders.

Please follow these steps to grant access:
1. Open System Settings (System Preferences on older macOS)
2. Go to Privacy & Security
3. Select Reminders from the list
4. Enable access for Vantrel

If Vantrel is not listed, try using the Reminders feature once to trigger the permission dialog.)";

Date moment(const ReminderDueDate &dueDate)
{
    if (const QDate *day = std::get_if<QDate>(&dueDate)) {
        return Date::fromDateTime(day->startOfDay());
    }
    return std::get<Date>(dueDate);
}

Recurrence recurrenceOf(const ReminderRecurrence &rule)
{
    return {true, rule.frequency, rule.interval, detailedDescription(rule.frequency, rule.interval)};
}

void logRecurrence(const Reminder &reminder, const QString &title)
{
    if (!log::isDebugEnabled()) {
        return;
    }
    if (!reminder.recurrence) {
        log::debug(u"📅 Reminder '" + title + u"' has no recurrence rules.");
        return;
    }
    const Recurrence recurrence = recurrenceOf(*reminder.recurrence);
    log::debug(u"📅 Detected recurring reminder: " + title + u" with pattern: " + *recurrence.pattern);
    log::debug(u"📅 Setting recurrence info for reminder '" + title + u"': isRepeating=true, frequency=" +
               rawValue(*recurrence.frequency) + u", interval=" + QString::number(*recurrence.interval) +
               u", pattern=" + *recurrence.pattern);
}

/** What keeps the tasks of a store with this status from being read; nothing with full access. */
std::optional<Kind> errorOf(ReminderAuthorization status)
{
    switch (status) {
    case ReminderAuthorization::FullAccess:
        return std::nullopt;
    case ReminderAuthorization::NotDetermined:
    case ReminderAuthorization::Restricted:
    case ReminderAuthorization::Denied:
        return Kind::AccessDenied;
    case ReminderAuthorization::WriteOnly:
        return Kind::InsufficientAccess;
    case ReminderAuthorization::Unknown:
        break;
    }
    return Kind::UnknownAuthorizationStatus;
}

} // namespace

RemindersTaskManager::RemindersTaskManager(ReminderStore &store, UserDefaults &defaults,
                                           NotificationCenter &notifications, Clock &clock, QObject *parent)
    : QObject(parent), m_store(store), m_defaults(defaults), m_notifications(notifications), m_clock(clock)
{
    log::info(QStringLiteral("Initializing RemindersTaskManager with EventKit"));
}

// Access.

bool RemindersTaskManager::checkPermissions()
{
    switch (m_store.authorizationStatus()) {
    case ReminderAuthorization::NotDetermined:
        log::info(QStringLiteral("Reminders access not yet determined, will prompt for permission"));
        launch(askForAccess(), QStringLiteral("Asking for access to reminders"));
        return false;
    case ReminderAuthorization::Restricted:
    case ReminderAuthorization::Denied:
        log::warning(QStringLiteral("Access to reminders denied or restricted"));
        return false;
    case ReminderAuthorization::FullAccess:
        log::info(QStringLiteral("Full access to reminders granted"));
        launch(verifyAccess(), QStringLiteral("Verifying access to reminders"));
        return true;
    case ReminderAuthorization::WriteOnly:
        log::warning(QStringLiteral("Only write access to reminders granted, need full access"));
        return false;
    case ReminderAuthorization::Unknown:
        break;
    }
    log::warning(QStringLiteral("Unknown reminders authorization status"));
    return false;
}

QCoro::Task<> RemindersTaskManager::askForAccess()
{
    const QPointer self(this);
    const bool isGranted = co_await m_store.requestFullAccess();
    log::info(isGranted ? QStringLiteral("Requested Reminders access: granted")
                        : QStringLiteral("Requested Reminders access: denied or failed"));
    if (isGranted && self) {
        m_notifications.post(notifications::RefreshTasksRequested);
    }
}

QCoro::Task<> RemindersTaskManager::verifyAccess()
{
    log::info(QStringLiteral("Verifying full access to reminders with explicit check"));
    try {
        if (co_await m_store.requestFullAccess()) {
            log::info(QStringLiteral("Re-verified Reminders access: confirmed"));
            co_return;
        }
        log::warning(QStringLiteral("Re-verified Reminders access: denied"));
        log::warning(QStringLiteral("Permission verification failed despite showing as granted"));
    } catch (const std::exception &failure) {
        log::error(u"Error verifying reminders access: " + QString::fromUtf8(failure.what()));
    }
}

QCoro::Task<> RemindersTaskManager::ensureAccess()
{
    ReminderAuthorization status = m_store.authorizationStatus();
    if (status == ReminderAuthorization::NotDetermined) {
        const bool isGranted = co_await m_store.requestFullAccess();
        status = isGranted ? ReminderAuthorization::FullAccess : ReminderAuthorization::Denied;
    }
    if (const std::optional<Kind> error = errorOf(status)) {
        throw RemindersError(*error);
    }
}

QString RemindersTaskManager::getPermissionsGuidance() const
{
    return m_store.accessGuidance().value_or(QString::fromUtf8(Guidance));
}

// Reading.

QCoro::Task<WorkItems> RemindersTaskManager::fetchTasks()
{
    const QPointer self(this);
    log::info(QStringLiteral("Fetching tasks from Reminders using EventKit"));
    const Date start = m_clock.now();
    co_await ensureAccess();
    const std::vector<ReminderList> lists = co_await m_store.lists();
    log::info(QStringLiteral("Found %1 reminder lists").arg(lists.size()));
    std::vector<Reminder> open = co_await fetch(ReminderPredicate::incomplete());
    if (!self) {
        co_return WorkItems();
    }
    const double days = m_defaults.real(keys::RetrievalDays).value_or(DefaultRetrievalDays);
    std::vector<Reminder> done = co_await fetch(completedInLastDays(static_cast<int>(days)));
    const auto tasks = std::make_shared<WorkItems>();
    tasks->reserve(open.size() + done.size());
    if (self) {
        co_await append(tasks, std::move(open));
    }
    if (self) {
        co_await append(tasks, std::move(done));
    }
    if (!self) {
        co_return WorkItems();
    }
    const auto recurring = std::count_if(tasks->begin(), tasks->end(),
                                         [](const WorkItemPtr &task) { return task->isRepeating(); });
    log::info(QStringLiteral("📊 Reminders Task Summary: Total tasks: %1, Recurring tasks: %2")
                  .arg(tasks->size())
                  .arg(recurring));
    log::info(QStringLiteral("📊 BENCHMARK: Reminders fetchTasks - %1 ms for %2 tasks")
                  .arg((m_clock.now() - start) * 1000.0, 0, 'f', 1)
                  .arg(tasks->size()));
    log::info(QStringLiteral("Successfully fetched %1 reminders").arg(tasks->size()));
    co_return std::move(*tasks);
}

QCoro::Task<WorkItems> RemindersTaskManager::fetchCompletedTasks(int lookbackDays)
{
    const QPointer self(this);
    log::info(QStringLiteral("Fetching completed tasks from Reminders for analysis (lookback: %1 days)")
                  .arg(lookbackDays));
    co_await ensureAccess();
    std::vector<Reminder> done = co_await fetch(completedInLastDays(lookbackDays));
    const auto tasks = std::make_shared<WorkItems>();
    if (self) {
        co_await append(tasks, std::move(done));
    }
    log::info(QStringLiteral("Successfully fetched %1 completed reminders").arg(tasks->size()));
    co_return std::move(*tasks);
}

ReminderPredicate RemindersTaskManager::completedInLastDays(int days) const
{
    const Date now = m_clock.now();
    return ReminderPredicate::completed(Date::fromDateTime(now.toDateTime().addDays(-days)), now);
}

QCoro::Task<std::vector<Reminder>> RemindersTaskManager::fetch(ReminderPredicate predicate)
{
    std::optional<std::vector<Reminder>> reminders = co_await m_store.fetchReminders(predicate);
    if (!reminders) {
        throw RemindersError(Kind::FetchFailed);
    }
    co_return std::move(*reminders);
}

QCoro::Task<> RemindersTaskManager::append(std::shared_ptr<WorkItems> tasks, std::vector<Reminder> reminders)
{
    const QPointer self(this);
    TimeSlice slice;
    for (const Reminder &reminder : reminders) {
        tasks->push_back(createWorkItem(reminder));
        if (slice.isUsedUp()) {
            co_await m_clock.yieldToEventLoop();
            if (!self) {
                co_return;
            }
            slice.restart();
        }
    }
}

std::shared_ptr<ReminderWorkItem> RemindersTaskManager::createWorkItem(const Reminder &reminder) const
{
    WorkItemFields fields;
    fields.id = ReminderIdPrefix + reminder.identifier;
    fields.name = reminder.title.value_or(tr("Untitled Reminder"));
    fields.note = reminder.notes;
    if (reminder.dueDate) {
        fields.dueDate = moment(*reminder.dueDate);
    }
    fields.creationDate = reminder.creationDate ? *reminder.creationDate : m_clock.now();
    fields.completionDate = reminder.completionDate;
    fields.isComplete = reminder.isCompleted;
    const QString listName = reminder.list ? reminder.list->title : tr("Unknown List");
    const QString listId = reminder.list ? reminder.list->identifier : QString();
    fields.project = Project{ListIdPrefix + listId, listName};
    logRecurrence(reminder, fields.name);

    auto task = std::make_shared<ReminderWorkItem>(
        std::move(fields), ReminderWorkItem::Details{reminder.priority, listName, reminder.identifier});
    if (reminder.recurrence) {
        const Recurrence recurrence = recurrenceOf(*reminder.recurrence);
        task->setRecurrenceInfo(true, recurrence.frequency, recurrence.interval, recurrence.pattern);
    }
    return task;
}

QCoro::Task<> RemindersTaskManager::fetchDueSoonSettings()
{
    log::debug(QStringLiteral("fetchDueSoonSettings called for Reminders (no-op)"));
    co_return;
}

QCoro::Task<std::vector<ProjectInfo>> RemindersTaskManager::fetchAvailableProjects()
{
    log::info(QStringLiteral("Fetching available reminder lists as projects"));
    if (m_store.authorizationStatus() == ReminderAuthorization::NotDetermined) {
        log::info(QStringLiteral("Requesting access to reminders"));
        co_await m_store.requestFullAccess();
    } else {
        log::info(QStringLiteral("Full access to reminders already granted"));
    }
    const std::vector<ReminderList> lists = co_await m_store.lists();
    std::vector<ProjectInfo> projects;
    for (const ReminderList &list : lists) {
        if (!list.allowsContentModifications) {
            log::info(u"Skipping read-only calendar: " + list.title);
            continue;
        }
        projects.push_back({ListIdPrefix + list.identifier, list.title, true});
    }
    std::sort(projects.begin(), projects.end(),
              [](const ProjectInfo &a, const ProjectInfo &b) { return a.name < b.name; });
    log::info(QStringLiteral("%1 available reminder lists").arg(projects.size()));
    co_return projects;
}

QCoro::Task<std::vector<TagInfo>> RemindersTaskManager::fetchAvailableTags()
{
    co_return std::vector<TagInfo>();
}

bool RemindersTaskManager::canHandle(const QString &taskId) const
{
    return hasIdFormOf(TaskManagerType::Reminders, taskId);
}

QString RemindersTaskManager::taskManagerName() const
{
    return rawValue(TaskManagerType::Reminders);
}

} // namespace vantrel
