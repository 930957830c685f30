#include "foundations/Log.h"
#include "sources/plaintext/PlainTextTaskManager.h"
#include "support/Await.h"
#include "support/MockTaskManager.h"
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
    std::shared_ptr<TaskManagerProtocol> source;
    std::shared_ptr<ManualClock> clock;
    /** An id of the source's form that it does not know. */
    QString unknownId;
};

Subject plainText()
{
    struct Setting
    {
        TestStore store;
        NotificationCenter notifications;
        PlainTextTaskManager source{*store, notifications, store.clock};
    };
    const auto setting = std::make_shared<Setting>();
    return {{setting, &setting->source}, {setting, &setting->store.clock}, u"plaintext-unknown"_s};
}

Subject mock()
{
    const auto clock = std::make_shared<ManualClock>();
    return {std::make_shared<MockTaskManager>(*clock), clock, u"task-unknown"_s};
}

} // namespace

/** What every source promises to the rest of the program; each row of initTestCase_data() is one source. */
class TestTaskManagerContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();
    void aCreatedTaskIsToldByTheNextFetch();
    void idsAreUniqueAndOfTheSourcesForm();
    void editsReachTheTaskThatIsFetched();
    void editsOfUnknownTasksAreRefused();
    void completedTasksAreCompleteAndDated();
    void itNamesItselfAndGrantsAccess();

private:
    WorkItemPtr fetchTask(const QString &id);

    std::unique_ptr<LogWriter> m_log;
    Subject m;
};

void TestTaskManagerContract::initTestCase_data()
{
    QTest::addColumn<std::function<Subject()>>("make");
    QTest::newRow("plain text") << std::function<Subject()>(&plainText);
    QTest::newRow("mock") << std::function<Subject()>(&mock);
}

void TestTaskManagerContract::init()
{
    QFETCH_GLOBAL(std::function<Subject()>, make);
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m = make();
}

void TestTaskManagerContract::cleanup()
{
    m = {};
    m_log.reset();
}

WorkItemPtr TestTaskManagerContract::fetchTask(const QString &id)
{
    const WorkItems tasks = await(m.source->fetchTasks());
    const auto found =
        std::find_if(tasks.begin(), tasks.end(), [&](const WorkItemPtr &task) { return task->id() == id; });
    return found != tasks.end() ? *found : nullptr;
}

void TestTaskManagerContract::aCreatedTaskIsToldByTheNextFetch()
{
    NewTask task;
    task.name = u"Write \"it\" — müsli 🥣"_s;
    task.note = u"two\nlines"_s;
    task.dueDate = m.clock->now() + 86400.5;
    task.project = u"Book"_s;
    task.tags = QStringList{u"Home"_s};

    const WorkItemPtr fetched = fetchTask(await(m.source->createTask(task)));

    QVERIFY(fetched);
    QCOMPARE(fetched->name(), task.name);
    QVERIFY(fetched->note() == task.note);
    QVERIFY(fetched->dueDate() == task.dueDate);
    QCOMPARE(fetched->projectName(), u"Book"_s);
    QCOMPARE(fetched->tagName(), u"Home"_s);
    QVERIFY(!fetched->isComplete());
    QVERIFY(fetched->creationDate() == m.clock->now());
}

void TestTaskManagerContract::idsAreUniqueAndOfTheSourcesForm()
{
    NewTask task;
    task.name = u"Twice"_s;
    const QString first = await(m.source->createTask(task));
    const QString second = await(m.source->createTask(task));

    QVERIFY(first != second);
    QVERIFY(m.source->canHandle(first));
    QVERIFY(m.source->canHandle(m.unknownId));
    QCOMPARE(await(m.source->fetchTasks()).size(), 2u);
}

void TestTaskManagerContract::editsReachTheTaskThatIsFetched()
{
    NewTask task;
    task.name = u"Old"_s;
    const QString id = await(m.source->createTask(task));
    fetchTask(id);
    m.clock->advance(60.0);

    QVERIFY(await(m.source->setTaskName(id, u"New"_s)));
    QVERIFY(await(m.source->flagTask(id, true)));
    QVERIFY(await(m.source->markTaskComplete(id)));
    WorkItemPtr fetched = fetchTask(id);
    QCOMPARE(fetched->name(), u"New"_s);
    QVERIFY(fetched->isFlagged() && fetched->isComplete());
    QVERIFY(fetched->completionDate() == m.clock->now());

    QVERIFY(await(m.source->markTaskIncomplete(id)));
    QVERIFY(await(m.source->flagTask(id, false)));
    fetched = fetchTask(id);
    QVERIFY(!fetched->isFlagged() && !fetched->isComplete() && !fetched->completionDate());
    QCOMPARE(fetched->name(), u"New"_s);
}

void TestTaskManagerContract::editsOfUnknownTasksAreRefused()
{
    fetchTask(m.unknownId);

    QVERIFY(!await(m.source->setTaskName(m.unknownId, u"New"_s)));
    QVERIFY(!await(m.source->flagTask(m.unknownId, true)));
    QVERIFY(!await(m.source->markTaskComplete(m.unknownId)));
    QVERIFY(!await(m.source->markTaskIncomplete(m.unknownId)));
    QVERIFY(!fetchTask(m.unknownId));
}

void TestTaskManagerContract::completedTasksAreCompleteAndDated()
{
    NewTask task;
    task.name = u"Done"_s;
    const QString id = await(m.source->createTask(task));
    fetchTask(id);
    await(m.source->markTaskComplete(id));

    const WorkItems completed = await(m.source->fetchCompletedTasks(7));

    QVERIFY(!completed.empty());
    for (const WorkItemPtr &one : completed) {
        QVERIFY(one->isComplete() && one->completionDate());
    }
}

void TestTaskManagerContract::itNamesItselfAndGrantsAccess()
{
    QVERIFY(!m.source->taskManagerName().isEmpty());
    QVERIFY(!m.source->getPermissionsGuidance().isEmpty());
    QVERIFY(m.source->isAvailableOnPlatform());
    QVERIFY(m.source->checkPermissions());
    await(m.source->fetchDueSoonSettings());
    await(m.source->fetchAvailableProjects());
    await(m.source->fetchAvailableTags());
}

VANTREL_REGISTER_TEST(TestTaskManagerContract)

} // namespace vantrel::test

#include "test_task_manager_contract.moc"
