#include "foundations/DefaultsKeys.h"
#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "sources/SourceError.h"
#include "sources/omnifocus/AppleScriptManager.h"
#include "sources/omnifocus/OmniFocusTaskManager.h"
#include "sources/plaintext/PlainTextTaskManager.h"
#include "sources/reminders/RemindersTaskManager.h"
#include "sources/reminders/vdir/VdirReminderStore.h"
#include "support/Await.h"
#include "support/Builders.h"
#include "support/ScriptedOmniFocus.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** A source with all that it needs, freshly made for one test. */
struct Subject
{
    virtual ~Subject() = default;
    virtual TaskManagerProtocol &source() = 0;

    LogWriter log{LogWriter::Output::Silent};
    TestStore store;
    NotificationCenter notifications;
    /** An id of the source's form that it does not know. */
    QString unknownId;
};

struct PlainText final : Subject
{
    PlainText() { unknownId = u"plaintext-unknown"_s; }
    TaskManagerProtocol &source() override { return manager; }

    PlainTextTaskManager manager{*store, notifications, store.clock};
};

struct OmniFocus final : Subject
{
    OmniFocus()
    {
        unknownId = u"unknown"_s;
        app.projects.append(u"Book"_s);
    }
    TaskManagerProtocol &source() override { return manager; }

    ScriptedOmniFocus app;
    AppleScriptManager bridge{app, store.defaults, store.clock,
                              QLocale(QLocale::English, QLocale::Australia)};
    OmniFocusTaskManager manager{bridge, store.clock};
};

struct Reminders final : Subject
{
    Reminders()
    {
        unknownId = u"reminder_unknown"_s;
        store.defaults.set(keys::RemindersFolder, folder.path());
    }
    TaskManagerProtocol &source() override { return manager; }

    QTemporaryDir folder;
    VdirReminderStore reminders{store.defaults, *store, store.calls, store.clock};
    RemindersTaskManager manager{reminders, store.defaults, notifications, store.clock};
};

template <typename T>
std::unique_ptr<Subject> make()
{
    return std::make_unique<T>();
}

} // namespace

/** What every source promises to the rest of the program; each row of initTestCase_data() is one source. */
class TestTaskManagerContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        using Make = std::function<std::unique_ptr<Subject>()>;
        QTest::addColumn<Make>("make");
        QTest::newRow("plain text") << Make(&make<PlainText>);
        QTest::newRow("OmniFocus") << Make(&make<OmniFocus>);
        QTest::newRow("reminders") << Make(&make<Reminders>);
    }

    void init()
    {
        QFETCH_GLOBAL(std::function<std::unique_ptr<Subject>()>, make);
        m = make();
    }

    void cleanup() { m.reset(); }

    void aCreatedTaskIsToldByTheNextFetch()
    {
        const QString name = u"Write \"it\" — müsli 🥣"_s;
        const QString first = create(name);
        const QString second = create(name);

        QVERIFY(first != second);
        QVERIFY(m->source().canHandle(first) && m->source().canHandle(m->unknownId));
        QVERIFY(!m->source().canHandle(u"task-1"_s));
        QCOMPARE(m->source().canHandle(u"reminder_1"_s), m->unknownId.startsWith(ReminderIdPrefix));
        QCOMPARE(await(m->source().fetchTasks()).size(), 2u);
        const WorkItemPtr fetched = find(second);
        QVERIFY(fetched && !fetched->isComplete() && fetched->creationDate() <= m->store.clock.now());
        QCOMPARE(fetched->name(), name);
        QCOMPARE(fetched->projectName(), u"Book"_s);
    }

    void editsReachTheTaskThatIsFetched()
    {
        const QString id = create(u"Old"_s);
        find(id);
        m->store.clock.advance(60.0);

        QVERIFY(await(m->source().setTaskName(id, u"New"_s)));
        QVERIFY(await(m->source().markTaskComplete(id)));
        const WorkItems completed = await(m->source().fetchCompletedTasks(7));
        QCOMPARE(taskNames(completed), QStringList{u"New"_s});
        QVERIFY(completed.front()->isComplete() && completed.front()->completionDate());

        QVERIFY(await(m->source().markTaskIncomplete(id)));
        const WorkItemPtr reopened = find(id);
        QVERIFY(reopened && !reopened->isComplete() && !reopened->completionDate());
        QCOMPARE(reopened->name(), u"New"_s);
        QCOMPARE(await(m->source().fetchCompletedTasks(7)).size(), 0u);

        // A source without flags says so.
        const bool canFlag = await(m->source().flagTask(id, true));
        QCOMPARE(find(id)->isFlagged(), canFlag);
    }

    void editsOfUnknownTasksAreRefused()
    {
        const QString known = create(u"Known"_s);
        const auto isRefused = [](QCoro::Task<bool> edit) {
            try {
                return !await(std::move(edit));
            } catch (const SourceError &) {
                return true;
            }
        };
        TaskManagerProtocol &source = m->source();
        QVERIFY(isRefused(source.setTaskName(m->unknownId, u"New"_s)));
        QVERIFY(isRefused(source.flagTask(m->unknownId, true)));
        QVERIFY(isRefused(source.markTaskComplete(m->unknownId)));
        QVERIFY(isRefused(source.markTaskIncomplete(m->unknownId)));
        QCOMPARE(taskIds(await(source.fetchTasks())), QStringList{known});
    }

private:
    QString create(const QString &name)
    {
        NewTask task;
        task.name = name;
        task.project = u"Book"_s;
        return await(m->source().createTask(task));
    }

    WorkItemPtr find(const QString &id)
    {
        const WorkItems tasks = await(m->source().fetchTasks());
        const auto found = std::find_if(tasks.begin(), tasks.end(),
                                        [&](const WorkItemPtr &task) { return task->id() == id; });
        return found != tasks.end() ? *found : nullptr;
    }

    std::unique_ptr<Subject> m;
};

VANTREL_REGISTER_TEST(TestTaskManagerContract)

} // namespace vantrel::test

#include "test_task_manager_contract.moc"
