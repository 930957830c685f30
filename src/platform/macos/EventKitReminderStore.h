#pragma once

#include "sources/reminders/ReminderStore.h"

#include <memory>

namespace vantrel {

/** The user's reminders through EventKit. GUI thread. */
class EventKitReminderStore final : public ReminderStore
{
public:
    EventKitReminderStore();
    ~EventKitReminderStore() override;

    ReminderAuthorization authorizationStatus() const override;
    QCoro::Task<bool> requestFullAccess() override;

    QCoro::Task<std::vector<ReminderList>> lists() override;
    QCoro::Task<std::optional<ReminderList>> defaultListForNewReminders() override;
    QCoro::Task<std::vector<ReminderSource>> sources() override;
    QCoro::Task<ReminderList> saveList(ReminderList list) override;

    QCoro::Task<std::optional<std::vector<Reminder>>> fetchReminders(ReminderPredicate predicate) override;
    QCoro::Task<std::optional<Reminder>> reminder(QString identifier) override;
    QCoro::Task<QString> save(Reminder reminder) override;

private:
    struct EventStore;
    std::unique_ptr<EventStore> m_events;
};

} // namespace vantrel
