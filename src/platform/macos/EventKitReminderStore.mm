#include "platform/macos/EventKitReminderStore.h"

#include <QCoroFuture>

#include <QPromise>

#import <EventKit/EventKit.h>

namespace vantrel {

namespace {

using Found = std::optional<std::vector<Reminder>>;

ReminderList listFrom(EKCalendar *calendar)
{
    return {QString::fromNSString(calendar.calendarIdentifier), QString::fromNSString(calendar.title),
            QString::fromNSString(calendar.source.sourceIdentifier),
            static_cast<bool>(calendar.allowsContentModifications)};
}

std::optional<QString> textFrom(NSString *text)
{
    return text ? std::optional(QString::fromNSString(text)) : std::nullopt;
}

NSString *textOf(const std::optional<QString> &text)
{
    return text ? text->toNSString() : nil;
}

/** Both count the seconds since the beginning of 2001. */
std::optional<Date> dateFrom(NSDate *date)
{
    return date ? std::optional(Date(date.timeIntervalSinceReferenceDate)) : std::nullopt;
}

NSDate *dateOf(Date date)
{
    return [NSDate dateWithTimeIntervalSinceReferenceDate:date.seconds()];
}

std::optional<ReminderDueDate> dueDateFrom(NSDateComponents *components)
{
    if (!components) {
        return std::nullopt;
    }
    if (components.hour == NSDateComponentUndefined) {
        return ReminderDueDate(QDate(static_cast<int>(components.year), static_cast<int>(components.month),
                                     static_cast<int>(components.day)));
    }
    NSCalendar *calendar = components.calendar ?: NSCalendar.currentCalendar;
    const std::optional<Date> moment = dateFrom([calendar dateFromComponents:components]);
    return moment ? std::optional(ReminderDueDate(*moment)) : std::nullopt;
}

NSDateComponents *dueDateOf(const ReminderDueDate &dueDate)
{
    if (const QDate *day = std::get_if<QDate>(&dueDate)) {
        NSDateComponents *components = [[NSDateComponents alloc] init];
        components.year = day->year();
        components.month = day->month();
        components.day = day->day();
        return components;
    }
    const NSCalendarUnit units = NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay |
                                 NSCalendarUnitHour | NSCalendarUnitMinute | NSCalendarUnitSecond |
                                 NSCalendarUnitTimeZone | NSCalendarUnitCalendar;
    return [NSCalendar.currentCalendar components:units fromDate:dateOf(std::get<Date>(dueDate))];
}

RepeatFrequency frequencyFrom(EKRecurrenceFrequency frequency)
{
    switch (frequency) {
    case EKRecurrenceFrequencyDaily:
        return RepeatFrequency::Daily;
    case EKRecurrenceFrequencyWeekly:
        return RepeatFrequency::Weekly;
    case EKRecurrenceFrequencyMonthly:
        return RepeatFrequency::Monthly;
    case EKRecurrenceFrequencyYearly:
        return RepeatFrequency::Yearly;
    }
    return RepeatFrequency::Custom;
}

Reminder reminderFrom(EKReminder *item)
{
    Reminder reminder;
    reminder.identifier = QString::fromNSString(item.calendarItemIdentifier);
    if (item.calendar) {
        reminder.list = listFrom(item.calendar);
    }
    reminder.title = textFrom(item.title);
    reminder.notes = textFrom(item.notes);
    reminder.dueDate = dueDateFrom(item.dueDateComponents);
    reminder.creationDate = dateFrom(item.creationDate);
    reminder.completionDate = dateFrom(item.completionDate);
    reminder.isCompleted = item.completed;
    reminder.priority = static_cast<int>(item.priority);
    if (EKRecurrenceRule *rule = item.recurrenceRules.firstObject) {
        reminder.recurrence =
            ReminderRecurrence{frequencyFrom(rule.frequency), static_cast<int>(rule.interval)};
    }
    return reminder;
}

/** Throws what EventKit says of its failure. */
void require(bool isDone, NSError *error)
{
    if (!isDone) {
        throw ReminderStoreError(QString::fromNSString(error.localizedDescription));
    }
}

} // namespace

struct EventKitReminderStore::EventStore
{
    EKEventStore *store = [[EKEventStore alloc] init];
    id observer = nil;

    EKReminder *find(const QString &identifier) const
    {
        EKCalendarItem *item = [store calendarItemWithIdentifier:identifier.toNSString()];
        return [item isKindOfClass:EKReminder.class] ? static_cast<EKReminder *>(item) : nil;
    }

    NSPredicate *predicateFor(const ReminderPredicate &wanted) const
    {
        if (wanted.isCompleted) {
            return [store predicateForCompletedRemindersWithCompletionDateStarting:dateOf(wanted.from)
                                                                            ending:dateOf(wanted.to)
                                                                         calendars:nil];
        }
        return [store predicateForIncompleteRemindersWithDueDateStarting:nil ending:nil calendars:nil];
    }
};

EventKitReminderStore::EventKitReminderStore() : m_events(std::make_unique<EventStore>())
{
    m_events->observer =
        [NSNotificationCenter.defaultCenter addObserverForName:EKEventStoreChangedNotification
                                                        object:m_events->store
                                                         queue:NSOperationQueue.mainQueue
                                                    usingBlock:^(NSNotification *) {
                                                      Q_EMIT changed();
                                                    }];
}

EventKitReminderStore::~EventKitReminderStore()
{
    [NSNotificationCenter.defaultCenter removeObserver:m_events->observer];
}

ReminderAuthorization EventKitReminderStore::authorizationStatus() const
{
    const NSInteger status = [EKEventStore authorizationStatusForEntityType:EKEntityTypeReminder];
    const bool isKnown = status >= 0 && status < static_cast<NSInteger>(ReminderAuthorization::Unknown);
    return isKnown ? static_cast<ReminderAuthorization>(status) : ReminderAuthorization::Unknown;
}

QCoro::Task<bool> EventKitReminderStore::requestFullAccess()
{
    const auto answer = std::make_shared<QPromise<bool>>();
    answer->start();
    const auto finish = ^(BOOL isGranted, NSError *) {
      answer->addResult(static_cast<bool>(isGranted));
      answer->finish();
    };
    if (@available(macOS 14.0, *)) {
        [m_events->store requestFullAccessToRemindersWithCompletion:finish];
    } else {
        [m_events->store requestAccessToEntityType:EKEntityTypeReminder completion:finish];
    }
    const QFuture<bool> isGranted = answer->future();
    co_return co_await isGranted;
}

QCoro::Task<std::vector<ReminderList>> EventKitReminderStore::lists()
{
    std::vector<ReminderList> lists;
    for (EKCalendar *calendar in [m_events->store calendarsForEntityType:EKEntityTypeReminder]) {
        lists.push_back(listFrom(calendar));
    }
    co_return lists;
}

QCoro::Task<std::optional<ReminderList>> EventKitReminderStore::defaultListForNewReminders()
{
    EKCalendar *calendar = [m_events->store defaultCalendarForNewReminders];
    co_return calendar ? std::optional(listFrom(calendar)) : std::nullopt;
}

QCoro::Task<std::vector<ReminderSource>> EventKitReminderStore::sources()
{
    std::vector<ReminderSource> sources;
    for (EKSource *source in m_events->store.sources) {
        const bool isLocal = source.sourceType == EKSourceTypeLocal;
        sources.push_back({QString::fromNSString(source.sourceIdentifier), isLocal});
    }
    co_return sources;
}

QCoro::Task<ReminderList> EventKitReminderStore::saveList(ReminderList list)
{
    EKCalendar *calendar = [EKCalendar calendarForEntityType:EKEntityTypeReminder eventStore:m_events->store];
    calendar.title = list.title.toNSString();
    calendar.source = [m_events->store sourceWithIdentifier:list.sourceIdentifier.toNSString()];
    NSError *error = nil;
    const bool isSaved = [m_events->store saveCalendar:calendar commit:YES error:&error];
    require(isSaved, error);
    co_return listFrom(calendar);
}

QCoro::Task<Found> EventKitReminderStore::fetchReminders(ReminderPredicate predicate)
{
    const auto answer = std::make_shared<QPromise<Found>>();
    answer->start();
    // Comes on a thread of EventKit's own: only records leave it.
    const auto take = ^(NSArray<EKReminder *> *items) {
      Found found;
      if (items) {
          found.emplace();
          for (EKReminder *item in items) {
              found->push_back(reminderFrom(item));
          }
      }
      answer->addResult(std::move(found));
      answer->finish();
    };
    [m_events->store fetchRemindersMatchingPredicate:m_events->predicateFor(predicate) completion:take];
    const QFuture<Found> found = answer->future();
    co_return co_await found;
}

QCoro::Task<std::optional<Reminder>> EventKitReminderStore::reminder(QString identifier)
{
    EKReminder *item = m_events->find(identifier);
    co_return item ? std::optional(reminderFrom(item)) : std::nullopt;
}

QCoro::Task<QString> EventKitReminderStore::save(Reminder reminder)
{
    EKReminder *item = m_events->find(reminder.identifier);
    if (!item) {
        item = [EKReminder reminderWithEventStore:m_events->store];
    }
    if (reminder.list) {
        item.calendar = [m_events->store calendarWithIdentifier:reminder.list->identifier.toNSString()];
    }
    item.title = textOf(reminder.title);
    item.notes = textOf(reminder.notes);
    item.dueDateComponents = reminder.dueDate ? dueDateOf(*reminder.dueDate) : nil;
    item.priority = static_cast<NSUInteger>(reminder.priority);
    // Sets the completion date too; the exact one follows.
    item.completed = reminder.isCompleted;
    if (reminder.isCompleted && reminder.completionDate) {
        item.completionDate = dateOf(*reminder.completionDate);
    }
    NSError *error = nil;
    const bool isSaved = [m_events->store saveReminder:item commit:YES error:&error];
    require(isSaved, error);
    co_return QString::fromNSString(item.calendarItemIdentifier);
}

} // namespace vantrel
