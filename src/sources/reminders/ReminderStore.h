#pragma once

#include "foundations/WorkItem.h"
#include "sources/SourceError.h"

#include <QCoroTask>
#include <QDate>
#include <QObject>

#include <optional>
#include <variant>
#include <vector>

namespace vantrel {

/** The state of access to reminders, with the numbers of EventKit. */
enum class ReminderAuthorization {
    NotDetermined = 0,
    Restricted = 1,
    Denied = 2,
    FullAccess = 3,
    WriteOnly = 4,
    Unknown = 5, ///< whatever a later system may answer
};

/** Where lists are kept: an account, or this computer. */
struct ReminderSource
{
    QString identifier;
    bool isLocal = false;
    friend bool operator==(const ReminderSource &, const ReminderSource &) = default;
};

struct ReminderList
{
    /** Empty for a list that is not saved yet. */
    QString identifier;
    QString title;
    QString sourceIdentifier;
    bool allowsContentModifications = true;
    friend bool operator==(const ReminderList &, const ReminderList &) = default;
};

/** A whole day, or a moment. */
using ReminderDueDate = std::variant<QDate, Date>;

struct ReminderRecurrence
{
    RepeatFrequency frequency = RepeatFrequency::Custom;
    int interval = 1;
    friend bool operator==(const ReminderRecurrence &, const ReminderRecurrence &) = default;
};

/** One reminder as its store has it: a plain record that may cross threads. */
struct Reminder
{
    /** Empty for a reminder that is not saved yet. */
    QString identifier;
    /** The list it is in; nothing if it is in none. */
    std::optional<ReminderList> list;
    std::optional<QString> title;
    std::optional<QString> notes;
    std::optional<ReminderDueDate> dueDate;
    std::optional<Date> creationDate;
    std::optional<Date> completionDate;
    bool isCompleted = false;
    /** As iCalendar counts (RFC 5545, 3.8.1.9): 1 to 4 high, 5 medium, 6 to 9 low, 0 none. */
    int priority = 0;
    /** The first of its rules. */
    std::optional<ReminderRecurrence> recurrence;
    /** Which version of the reminder this is; for the store, which refuses to save over a later one. */
    QByteArray version;
    friend bool operator==(const Reminder &, const Reminder &) = default;
};

/** The reminders of all lists that are to be done, or that were completed in a time. */
struct ReminderPredicate
{
    bool isCompleted = false;
    /** Bounds of the completion date, both included; for completed ones only. */
    Date from;
    Date to;

    static ReminderPredicate incomplete() { return {}; }
    static ReminderPredicate completed(Date from, Date to) { return {true, from, to}; }
};

/** Why a store could not do something, for the user. Domain "ReminderStoreError", code 1. */
class ReminderStoreError : public SourceError
{
public:
    explicit ReminderStoreError(const QString &message)
        : SourceError(QStringLiteral("ReminderStoreError"), 1, message)
    {
    }
};

/**
 * The reminders of the platform. A port, in the terms of EventKit. Used on the GUI thread and never blocks
 * it; the coroutines throw a ReminderStoreError when they fail.
 */
class ReminderStore : public QObject
{
    Q_OBJECT
public:
    virtual ReminderAuthorization authorizationStatus() const = 0;
    /** Asks the user, where the platform can; true if access is granted. */
    virtual QCoro::Task<bool> requestFullAccess() = 0;
    /** How to grant access, where that is not done in the settings of macOS. */
    virtual std::optional<QString> accessGuidance() const { return std::nullopt; }

    virtual QCoro::Task<std::vector<ReminderList>> lists() = 0;
    virtual QCoro::Task<std::optional<ReminderList>> defaultListForNewReminders() = 0;
    virtual QCoro::Task<std::vector<ReminderSource>> sources() = 0;
    /** Makes the list; gives it as saved. */
    virtual QCoro::Task<ReminderList> saveList(ReminderList list) = 0;

    /** Nothing if the platform gave no answer. */
    virtual QCoro::Task<std::optional<std::vector<Reminder>>> fetchReminders(ReminderPredicate predicate) = 0;
    virtual QCoro::Task<std::optional<Reminder>> reminder(QString identifier) = 0;
    /** Makes or changes the reminder; gives its identifier. What a list of this kind cannot keep is dropped.
     */
    virtual QCoro::Task<QString> save(Reminder reminder) = 0;

Q_SIGNALS:
    /** Another program has changed something. */
    void changed();
    /** The user should know this; the store goes on. */
    void problemFound(const QString &message);
};

} // namespace vantrel
