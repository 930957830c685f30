#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/reminders/RemindersError.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "support/Await.h"
#include "support/FakeReminderStore.h"
#include "support/ManualClock.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Kind = RemindersError::Kind;
using Status = ReminderAuthorization;

/** The source on a store with two lists, of which the second one cannot be written to. */
struct Reminders
{
    Reminders()
    {
        store.now = clock.now();
        store.storedLists = {{u"h"_s, u"Home"_s, u"cloud"_s, true}, {u"s"_s, u"Shared"_s, u"cloud"_s, false}};
        notifications.observe(notifications::RefreshTasksRequested, &owner,
                              [this](const Notification &) { ++refreshes; });
    }

    Reminder &add(const QString &id, std::optional<QString> title)
    {
        Reminder reminder;
        reminder.identifier = id;
        reminder.title = std::move(title);
        reminder.list = store.storedLists.back();
        store.reminders.push_back(reminder);
        return store.reminders.back();
    }

    template <typename T>
    std::optional<Kind> kindOf(QCoro::Task<T> task)
    {
        try {
            await(std::move(task));
        } catch (const RemindersError &error) {
            return error.kind();
        }
        return std::nullopt;
    }

    QObject owner;
    LogWriter log{LogWriter::Output::Silent};
    TestStore files;
    ManualClock clock;
    NotificationCenter notifications;
    FakeReminderStore store;
    RemindersTaskManager source{store, files.defaults, notifications, clock};
    int refreshes = 0;
};

} // namespace

class TestReminders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accessDecides()
    {
        using Failure = std::optional<Kind>;
        for (const auto &[status, failure] :
             {std::pair(Status::NotDetermined, Failure(Kind::AccessDenied)), // refused when asked
              {Status::Restricted, Kind::AccessDenied},
              {Status::Denied, Kind::AccessDenied},
              {Status::FullAccess, {}},
              {Status::WriteOnly, Kind::InsufficientAccess},
              {Status::Unknown, Kind::UnknownAuthorizationStatus}}) {
            Reminders reminders;
            reminders.store.status = status;
            reminders.store.answer = false;
            QCOMPARE(reminders.source.checkPermissions(), status == Status::FullAccess);
            reminders.store.status = status;
            QVERIFY(reminders.kindOf(reminders.source.fetchTasks()) == failure);
            QCOMPARE(reminders.refreshes, 0);
        }
    }

    void grantingAccessRefreshesOnce()
    {
        Reminders reminders;
        reminders.store.status = Status::NotDetermined;
        QVERIFY(!reminders.source.checkPermissions());
        QCoreApplication::processEvents();
        QVERIFY(reminders.source.checkPermissions());
        QCoreApplication::processEvents();
        QCOMPARE(reminders.refreshes, 1);
    }

    void remindersBecomeTasks()
    {
        Reminders reminders;
        Reminder &full = reminders.add(u"1"_s, u"Water plants"_s);
        full.notes = u"All of them"_s;
        full.dueDate = QDate(2026, 11, 30);
        full.creationDate = Date(100.0);
        full.priority = 5;
        full.recurrence = ReminderRecurrence{RepeatFrequency::Weekly, 2};
        reminders.add(u"2"_s, std::nullopt).list.reset();

        const WorkItems tasks = await(reminders.source.fetchTasks());

        QCOMPARE(tasks.size(), 2u);
        const auto &task = dynamic_cast<const ReminderWorkItem &>(*tasks[0]);
        QCOMPARE(task.id(), u"reminder_1"_s);
        QCOMPARE(task.name(), u"Water plants"_s);
        QCOMPARE(task.note(), std::optional(u"All of them"_s));
        QCOMPARE(task.dueDate()->toDateTime(), QDate(2026, 11, 30).startOfDay());
        QCOMPARE(task.creationDate(), Date(100.0));
        QCOMPARE(task.reminderPriority(), 5);
        QCOMPARE(task.project(), std::optional(Project{u"reminders_list_s"_s, u"Shared"_s}));
        QCOMPARE(task.recurrence().pattern, std::optional(u"Repeats every 2 weeks"_s));
        QCOMPARE(tasks[1]->name(), u"Untitled Reminder"_s);
        QCOMPARE(tasks[1]->creationDate(), reminders.clock.now());
        QCOMPARE(tasks[1]->projectName(), std::optional(u"Unknown List"_s));
        QVERIFY(!tasks[1]->isRepeating());

        reminders.store.givesAnswers = false;
        QCOMPARE(reminders.kindOf(reminders.source.fetchTasks()), std::optional(Kind::FetchFailed));
    }

    void finishedRemindersAreFetchedForAsLongAsTheUserWants()
    {
        Reminders reminders;
        for (int days = 0; days < 10; ++days) {
            Reminder &done = reminders.add(QString::number(days), u"Done"_s);
            done.isCompleted = true;
            done.completionDate = reminders.clock.now() - (days + 0.5) * SecondsPerDay;
        }
        reminders.add(u"open"_s, u"Open"_s);

        const WorkItems tasks = await(reminders.source.fetchTasks());
        QCOMPARE(tasks.size(), 4u);
        QCOMPARE(tasks.front()->name(), u"Open"_s);
        reminders.files.defaults.set(keys::RetrievalDays, 5.9);
        QCOMPARE(await(reminders.source.fetchTasks()).size(), 6u);
        QCOMPARE(await(reminders.source.fetchCompletedTasks(8)).size(), 8u);
    }

    void editsAreSavedOnceAndOfKnownRemindersOnly()
    {
        Reminders reminders;
        reminders.add(u"1"_s, u"Old"_s);
        QVERIFY(await(reminders.source.setPriority(u"reminder_1"_s, 9)));
        QCOMPARE(reminders.store.find(u"1"_s)->priority, 9);
        QVERIFY(!await(reminders.source.setTaskName(u"1"_s, u"No prefix"_s)));
        QVERIFY(!await(reminders.source.setPriority(u"reminder_gone"_s, 1)));
        QCOMPARE(reminders.store.saves, 1);
    }

    void whatCannotBeSavedIsToldWithItsReason()
    {
        Reminders reminders;
        reminders.add(u"1"_s, u"Old"_s);
        reminders.store.failure = u"The disk is full."_s;
        try {
            await(reminders.source.markTaskComplete(u"reminder_1"_s));
            QFAIL("nothing was thrown");
        } catch (const RemindersError &error) {
            QCOMPARE(error.message(), u"Failed to save changes to reminder: The disk is full."_s);
        }
        QVERIFY(
            LogWriter::recentMessages().contains(u"Failed to save reminder completion: The disk is full."_s));
        NewTask task;
        task.name = u"New"_s;
        QCOMPARE(reminders.kindOf(reminders.source.createTask(task)), std::optional(Kind::SaveFailed));
    }

    void aNewTaskFindsOrMakesItsList()
    {
        Reminders reminders;
        const auto listOfNew = [&reminders](std::optional<QString> project) {
            NewTask task;
            task.name = u"New"_s;
            task.project = std::move(project);
            const QString id = await(reminders.source.createTask(task)).mid(ReminderIdPrefix.size());
            return *reminders.store.find(id)->list;
        };
        QCOMPARE(listOfNew(std::nullopt).title, u"Home"_s);
        QCOMPARE(listOfNew(u"home"_s).identifier, u"h"_s);
        QCOMPARE(listOfNew(u"Garden"_s).sourceIdentifier, u"local"_s);
        reminders.store.defaultList = reminders.store.storedLists[1];
        QCOMPARE(listOfNew(std::nullopt).title, u"Shared"_s);
        QCOMPARE(listOfNew(u"Work"_s).sourceIdentifier, u"cloud"_s);

        const std::vector<ProjectInfo> projects = await(reminders.source.fetchAvailableProjects());
        QStringList names;
        for (const ProjectInfo &project : projects) {
            names.append(project.name);
        }
        QCOMPARE(names, (QStringList{u"Garden"_s, u"Home"_s, u"Work"_s}));

        reminders.store.storedLists.clear();
        reminders.store.defaultList.reset();
        QCOMPARE(listOfNew(std::nullopt).title, u"Reminders"_s);
    }

    void noteTagsAndDaysOfANewTask()
    {
        Reminders reminders;
        NewTask task;
        task.name = u"New"_s;
        task.note = u"Note"_s;
        task.tags = QStringList{u"a"_s, u"b"_s};
        task.dueDate = Date::fromDateTime(QDate(2026, 12, 1).startOfDay());
        task.deferDate = reminders.clock.now();
        await(reminders.source.createTask(task));
        const Reminder made = reminders.store.reminders.back();
        QCOMPARE(made.notes, std::optional(u"Note\n\nTags: #a #b"_s));
        QVERIFY(made.dueDate == ReminderDueDate(QDate(2026, 12, 1)));

        task.dueDate = *task.dueDate + 60.0;
        await(reminders.source.createTask(task));
        QVERIFY(reminders.store.reminders.back().dueDate == ReminderDueDate(*task.dueDate));
    }
};

VANTREL_REGISTER_TEST(TestReminders)

} // namespace vantrel::test

#include "test_reminders.moc"
