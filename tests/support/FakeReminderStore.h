#pragma once

#include "sources/reminders/ReminderStore.h"

#include <algorithm>
#include <vector>

namespace vantrel::test {

/** Reminders in memory, with an answer to the question for access and failures as a test wants them. */
class FakeReminderStore final : public ReminderStore
{
public:
    ReminderAuthorization authorizationStatus() const override { return status; }
    QCoro::Task<bool> requestFullAccess() override
    {
        ++requests;
        if (status == ReminderAuthorization::NotDetermined) {
            status = answer ? ReminderAuthorization::FullAccess : ReminderAuthorization::Denied;
        }
        co_return status == ReminderAuthorization::FullAccess;
    }

    QCoro::Task<std::vector<ReminderList>> lists() override
    {
        co_return std::vector<ReminderList>(storedLists);
    }
    QCoro::Task<std::optional<ReminderList>> defaultListForNewReminders() override
    {
        co_return std::optional<ReminderList>(defaultList);
    }
    QCoro::Task<std::vector<ReminderSource>> sources() override
    {
        co_return std::vector<ReminderSource>{{QStringLiteral("cloud"), false},
                                              {QStringLiteral("local"), true}};
    }
    QCoro::Task<ReminderList> saveList(ReminderList list) override
    {
        failIfWanted();
        list.identifier = QStringLiteral("list-") + QString::number(storedLists.size() + 1);
        storedLists.push_back(list);
        co_return list;
    }

    QCoro::Task<std::optional<std::vector<Reminder>>> fetchReminders(ReminderPredicate predicate) override
    {
        if (!givesAnswers) {
            co_return std::nullopt;
        }
        std::vector<Reminder> found;
        for (const Reminder &one : reminders) {
            if (one.isCompleted == predicate.isCompleted &&
                (!predicate.isCompleted || (one.completionDate && *one.completionDate >= predicate.from &&
                                            *one.completionDate <= predicate.to))) {
                found.push_back(one);
            }
        }
        co_return std::optional(std::move(found));
    }
    QCoro::Task<std::optional<Reminder>> reminder(QString identifier) override
    {
        const Reminder *found = find(identifier);
        co_return found ? std::optional(*found) : std::nullopt;
    }
    QCoro::Task<QString> save(Reminder reminder) override
    {
        failIfWanted();
        ++saves;
        if (reminder.isCompleted && !reminder.completionDate) {
            reminder.completionDate = now;
        } else if (!reminder.isCompleted) {
            reminder.completionDate.reset();
        }
        if (Reminder *known = find(reminder.identifier)) {
            *known = reminder;
        } else {
            reminder.identifier = QString::number(reminders.size() + 1);
            reminder.creationDate = now;
            reminders.push_back(reminder);
        }
        co_return QString(reminder.identifier);
    }

    Reminder *find(const QString &identifier)
    {
        const auto found = std::find_if(reminders.begin(), reminders.end(),
                                        [&](const Reminder &one) { return one.identifier == identifier; });
        return found != reminders.end() ? &*found : nullptr;
    }

    ReminderAuthorization status = ReminderAuthorization::FullAccess;
    /** The user's, when asked for access. */
    bool answer = true;
    int requests = 0;
    int saves = 0;
    bool givesAnswers = true;
    /** Why nothing can be saved; empty while it can. */
    QString failure;
    Date now;
    std::vector<ReminderList> storedLists;
    std::optional<ReminderList> defaultList;
    std::vector<Reminder> reminders;

private:
    void failIfWanted() const
    {
        if (!failure.isEmpty()) {
            throw ReminderStoreError(failure);
        }
    }
};

} // namespace vantrel::test
