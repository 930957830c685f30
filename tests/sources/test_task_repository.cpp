#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/SourceError.h"
#include "sources/TaskRepository.h"
#include "support/Await.h"
#include "support/FakeTaskManager.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using State = TaskRepositoryLoadingState;

WorkItems tasks(const QStringList &ids)
{
    WorkItems items;
    for (const QString &id : ids) {
        items.push_back(makeTask(id));
    }
    return items;
}

QStringList idsOf(const WorkItems &items)
{
    QStringList ids;
    for (const WorkItemPtr &item : items) {
        ids.append(item->id());
    }
    return ids;
}

/** How a fetch that was not waited for has ended, if it has. */
struct Ending
{
    std::optional<QStringList> ids;
    QString error;
};

QCoro::Task<> watch(QCoro::Task<FetchedTasks> fetch, std::shared_ptr<Ending> ending)
{
    try {
        const FetchedTasks fetched = co_await fetch;
        ending->ids = idsOf(fetched.tasks);
    } catch (const SourceError &error) {
        ending->error = error.message();
    }
}

} // namespace

class TestTaskRepository : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void tasksAreMergedInSourceOrderThoughTheyFinishInAnother();
    void progressCountsTheSourcesAsTheyFinish_data();
    void progressCountsTheSourcesAsTheyFinish();
    void aSourceThatHangsHoldsBackOnlyTheResult();
    void whatCanGoWrongWithASource_data();
    void whatCanGoWrongWithASource();
    void theCausesOfAFailedLoadKeepTheirType();
    void theCacheIsServedForThirtySeconds_data();
    void theCacheIsServedForThirtySeconds();
    void anEmptyResultIsNeverServedFromTheCache();
    void aFailedFetchLeavesTheCacheToServe();
    void aClockSetBackDoesNotKeepTheCacheAlive();
    void fetchesAtTheSameTimeShareOneAnswer();
    void aForcedFetchWaitsForTheRunningOneAndAsksAgain();
    void whatWasInvalidatedMeanwhileIsAskedForAgain_data();
    void whatWasInvalidatedMeanwhileIsAskedForAgain();
    void servingTheCacheDoesNotDisturbTheProgressOfAFetch();
    void anEmptyAnswerOfAnOutsideSourceIsBelievedTheSecondTime();
    void anEmptyAnswerCountsWhereNothingIsAtStake();
    void aTaskAddedByHandIsServedButDoesNotMakeAnEmptyCacheFresh();
    void aTaskAddedWhileSourcesAreAskedIsNotLost();
    void aRemovedTaskIsNotServedAgain();
    void sourcesThatAreOffOrMissingHereAreNotAsked_data();
    void sourcesThatAreOffOrMissingHereAreNotAsked();
    void aRepositoryThatGoesAwayLeavesItsCallersUnharmed();

private:
    struct Setting
    {
        TestStore store;
        LogManager logManager{store.defaults};
        NotificationCenter notifications;
        ManualClock &clock = store.clock;
        FakeTaskManager omniFocus{TaskManagerType::OmniFocus, clock};
        FakeTaskManager reminders{TaskManagerType::Reminders, clock};
        FakeTaskManager plainText{TaskManagerType::PlainText, clock};
        TaskManagerFactory factory{store.defaults, omniFocus, reminders, plainText};
        std::unique_ptr<TaskRepository> repository;
    };

    /** The repository over the sources that are switched on. */
    TaskRepository &repositoryOf(const TaskSourceConfiguration &configuration);
    std::shared_ptr<Ending> startFetch(bool forceRefresh = false);
    QStringList fetchIds(bool forceRefresh = false);
    TaskSources answered();
    void placeOnBoard(const QString &taskId);

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<Setting> m;
};

void TestTaskRepository::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m = std::make_unique<Setting>();
    m->logManager.setMinimumLogLevel(LogLevel::Info);
}

void TestTaskRepository::cleanup()
{
    m.reset();
    m_log.reset();
}

TaskRepository &TestTaskRepository::repositoryOf(const TaskSourceConfiguration &configuration)
{
    m->factory.setTaskSourceConfiguration(configuration);
    m->repository = std::make_unique<TaskRepository>(m->factory, *m->store, m->notifications, m->clock);
    return *m->repository;
}

std::shared_ptr<Ending> TestTaskRepository::startFetch(bool forceRefresh)
{
    auto ending = std::make_shared<Ending>();
    launch(watch(m->repository->fetchTasks(forceRefresh), ending), u"fetch"_s);
    return ending;
}

QStringList TestTaskRepository::fetchIds(bool forceRefresh)
{
    return idsOf(await(m->repository->fetchTasks(forceRefresh)).tasks);
}

TaskSources TestTaskRepository::answered()
{
    return await(m->repository->fetchTasks(true)).answeredSources;
}

void TestTaskRepository::placeOnBoard(const QString &taskId)
{
    m->store->saveTaskPosition(taskId, ColumnId::create(), 0, SwimLaneId::create());
}

void TestTaskRepository::tasksAreMergedInSourceOrderThoughTheyFinishInAnother()
{
    TaskRepository &repository = repositoryOf({true, true, true});
    m->omniFocus.fetches.giveAfter(3.0, tasks({u"of1"_s, u"of2"_s}));
    m->reminders.fetches.giveAfter(1.0, tasks({u"reminder_1"_s}));
    m->plainText.fetches.giveAfter(2.0, tasks({u"plaintext-1"_s}));

    const auto ending = startFetch();
    m->clock.advance(3.0);

    QCOMPARE(ending->ids, QStringList({u"of1"_s, u"of2"_s, u"reminder_1"_s, u"plaintext-1"_s}));
    QCOMPARE(idsOf(repository.cachedTasks()), *ending->ids);
    QStringList finished = LogWriter::recentMessages().filter(u"TASK REPOSITORY: Loaded"_s);
    QCOMPARE(finished.size(), 3);
    QVERIFY(finished[0].endsWith(u"Loaded 1 tasks from Reminders"_s));
    QVERIFY(finished[2].endsWith(u"Loaded 2 tasks from OmniFocus"_s));
}

void TestTaskRepository::progressCountsTheSourcesAsTheyFinish_data()
{
    QTest::addColumn<int>("sources");
    QTest::addColumn<QList<double>>("progress");

    QTest::newRow("one") << 1 << QList<double>{0.0, 0.9, 0.95, 1.0};
    QTest::newRow("two") << 2 << QList<double>{0.0, 0.45, 0.9, 0.95, 1.0};
}

void TestTaskRepository::progressCountsTheSourcesAsTheyFinish()
{
    QFETCH(int, sources);
    TaskRepository &repository = repositoryOf({sources > 1, false, true});
    m->omniFocus.fetches.give(tasks({u"of"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    QList<double> progress;
    QStringList messages;
    connect(&repository, &TaskRepository::loadingChanged, this, [&] {
        if (progress.isEmpty() || progress.last() != repository.loadingProgress()) {
            progress.append(repository.loadingProgress());
        }
        messages.append(repository.loadingStatusMessage());
    });

    fetchIds();

    QTEST(progress, "progress");
    QCOMPARE(messages.first(), u"Initializing..."_s);
    const QStringList last{
        u"Checking permissions for Plain Text..."_s, u"Fetching due soon settings for Plain Text..."_s,
        u"Loading tasks from Plain Text..."_s,       u"Loaded 1 tasks from Plain Text"_s,
        u"Loaded %1 total tasks"_s.arg(sources),     u"Loading complete!"_s};
    QCOMPARE(messages.mid(messages.size() - last.size()), last);
}

void TestTaskRepository::aSourceThatHangsHoldsBackOnlyTheResult()
{
    TaskRepository &repository = repositoryOf({true, false, true});
    const auto answer = m->omniFocus.fetches.giveWhenOpened(tasks({u"of"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));

    const auto ending = startFetch();
    m->clock.advance(3600.0);
    QVERIFY(!ending->ids);
    QVERIFY(repository.loadingState() == State::Loading);
    QCOMPARE(repository.loadingProgress(), 0.45);

    answer->countDown();
    QCOMPARE(ending->ids, QStringList({u"of"_s, u"plaintext-1"_s}));
    QVERIFY(repository.loadingState() == State::Loaded);
}

void TestTaskRepository::whatCanGoWrongWithASource_data()
{
    QTest::addColumn<QString>("omniFocus"); // "tasks", "nothing", "fails", "settings", "permission"
    QTest::addColumn<QString>("plainText");
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<int>("answered");
    QTest::addColumn<QString>("error");
    const int plainText = static_cast<int>(TaskSource::PlainText);
    const int both = plainText | static_cast<int>(TaskSource::OmniFocus);
    const QStringList own{u"plaintext-1"_s};

    QTest::newRow("all well") << u"tasks"_s << u"tasks"_s << QStringList{u"of"_s, u"plaintext-1"_s} << both
                              << QString();
    QTest::newRow("one fails, the other's tasks are shown")
        << u"fails"_s << u"tasks"_s << own << plainText << QString();
    QTest::newRow("settings that cannot be read are a failure")
        << u"settings"_s << u"tasks"_s << own << plainText << QString();
    QTest::newRow("a missing permission is a failure")
        << u"permission"_s << u"tasks"_s << own << plainText << QString();
    QTest::newRow("one fails, the other has none")
        << u"fails"_s << u"nothing"_s << QStringList() << 0 << u"OmniFocus: it broke"_s;
    QTest::newRow("both fail") << u"permission"_s << u"fails"_s << QStringList() << 0
                               << u"OmniFocus: Please allow it.\nPlain Text: it broke"_s;
    QTest::newRow("both have none") << u"nothing"_s << u"nothing"_s << QStringList() << both << QString();
}

void TestTaskRepository::whatCanGoWrongWithASource()
{
    QFETCH(QString, omniFocus);
    QFETCH(QString, plainText);
    QFETCH(QString, error);
    TaskRepository &repository = repositoryOf({true, false, true});
    const auto prepare = [](FakeTaskManager &source, const QString &what, const QString &id) {
        source.hasPermission = what != u"permission";
        if (what == u"tasks") source.fetches.give(tasks({id}));
        if (what == u"nothing") source.fetches.give({});
        if (what == u"fails") source.fetches.fail(u"it broke"_s);
        if (what == u"settings") {
            source.dueSoonFailure = std::make_exception_ptr(SourceError(u"Fake"_s, 1, u"no window"_s));
        }
    };
    prepare(m->omniFocus, omniFocus, u"of"_s);
    prepare(m->plainText, plainText, u"plaintext-1"_s);
    QStringList posts;
    for (const NotificationName name :
         {notifications::TaskLoadingComplete, notifications::TaskLoadingError}) {
        m->notifications.observe(name, this, [&](const Notification &notification) {
            posts.append(notification.name.text + u' ' + notification.object.toString());
        });
    }

    FetchedTasks fetched;
    QString failure;
    try {
        fetched = await(repository.fetchTasks(false));
    } catch (const TaskRepositoryError &thrown) {
        QCOMPARE(thrown.code(), 1);
        failure = thrown.message();
    }

    QCOMPARE(failure, error);
    QTEST(idsOf(fetched.tasks), "ids");
    QTEST(static_cast<int>(fetched.answeredSources), "answered");
    QVERIFY(repository.loadingState() == (error.isEmpty() ? State::Loaded : State::Error));
    QCOMPARE(repository.errorText(), error);
    QCOMPARE(posts,
             QStringList(error.isEmpty() ? u"TaskLoadingComplete "_s : u"TaskLoadingError "_s + error));
    m->notifications.removeObserver(this);
}

void TestTaskRepository::theCausesOfAFailedLoadKeepTheirType()
{
    struct Special : SourceError
    {
        Special() : SourceError(u"Special"_s, 7, u"special"_s) {}
    };
    repositoryOf({true, true, false});
    m->omniFocus.fetches.failWith(Special());
    m->reminders.hasPermission = false;

    try {
        fetchIds();
        QFAIL("the load did not fail");
    } catch (const TaskRepositoryError &error) {
        QCOMPARE(error.domain(), u"TaskRepositoryError"_s);
        QCOMPARE(error.causes().size(), 2u);
        QCOMPARE(error.causes()[0].source, u"OmniFocus"_s);
        QVERIFY(!error.causes()[0].isPermission);
        QVERIFY_THROWS_EXCEPTION(Special, std::rethrow_exception(error.causes()[0].error));
        QVERIFY(error.causes()[1].isPermission);
        QCOMPARE(error.causes()[1].message, u"Please allow it."_s);
    }
}

void TestTaskRepository::theCacheIsServedForThirtySeconds_data()
{
    QTest::addColumn<double>("age");
    QTest::addColumn<bool>("forceRefresh");
    QTest::addColumn<bool>("isServed");

    QTest::newRow("at once") << 0.0 << false << true;
    QTest::newRow("just before") << 29.99 << false << true;
    QTest::newRow("exactly") << 30.0 << false << false;
    QTest::newRow("forced") << 5.0 << true << false;
}

void TestTaskRepository::theCacheIsServedForThirtySeconds()
{
    QFETCH(double, age);
    QFETCH(bool, forceRefresh);
    QFETCH(bool, isServed);
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-2"_s}));
    fetchIds();
    m->clock.advance(age);

    const FetchedTasks fetched = await(repository.fetchTasks(forceRefresh));

    QCOMPARE(idsOf(fetched.tasks), QStringList(isServed ? u"plaintext-1"_s : u"plaintext-2"_s));
    QVERIFY(fetched.answeredSources == TaskSource::PlainText);
    QCOMPARE(repository.loadingStatusMessage(), isServed ? u"Using cached tasks"_s : u"Loading complete!"_s);
}

void TestTaskRepository::anEmptyResultIsNeverServedFromTheCache()
{
    repositoryOf({false, false, true});
    m->plainText.fetches.give({});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));

    QCOMPARE(fetchIds(), QStringList());
    QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));
}

void TestTaskRepository::aFailedFetchLeavesTheCacheToServe()
{
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    m->plainText.fetches.fail(u"it broke"_s);
    fetchIds();
    m->clock.advance(5.0);
    QVERIFY_THROWS_EXCEPTION(TaskRepositoryError, fetchIds(true));
    QVERIFY(repository.loadingState() == State::Error);

    QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));
    QVERIFY(repository.loadingState() == State::Loaded);
}

void TestTaskRepository::aClockSetBackDoesNotKeepTheCacheAlive()
{
    repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-2"_s}));
    fetchIds();
    m->clock.jumpTo(m->clock.now() - 86400.0);

    QCOMPARE(fetchIds(), QStringList(u"plaintext-2"_s));
}

void TestTaskRepository::fetchesAtTheSameTimeShareOneAnswer()
{
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.giveAfter(1.0, tasks({u"plaintext-1"_s}));
    QList<double> progress;
    connect(&repository, &TaskRepository::loadingChanged, this,
            [&] { progress.append(repository.loadingProgress()); });

    const auto first = startFetch();
    const auto second = startFetch();
    m->clock.advance(1.0);

    QCOMPARE(first->ids, QStringList(u"plaintext-1"_s));
    QCOMPARE(second->ids, first->ids);
    QCOMPARE(m->plainText.requests.count(u"fetchTasks"_s), 1);
    QVERIFY2(std::is_sorted(progress.begin(), progress.end()), "two fetches wrote the progress");
}

void TestTaskRepository::aForcedFetchWaitsForTheRunningOneAndAsksAgain()
{
    repositoryOf({false, false, true});
    m->plainText.fetches.giveAfter(2.0, tasks({u"plaintext-1"_s}));
    m->plainText.fetches.giveAfter(1.0, tasks({u"plaintext-2"_s}));

    const auto running = startFetch();
    const auto forced = startFetch(true);
    const auto alsoForced = startFetch(true);
    m->clock.advance(2.0);
    QCOMPARE(running->ids, QStringList(u"plaintext-1"_s));
    QVERIFY(!forced->ids);
    m->clock.advance(1.0);

    QCOMPARE(forced->ids, QStringList(u"plaintext-2"_s));
    QCOMPARE(alsoForced->ids, QStringList(u"plaintext-2"_s));
    QCOMPARE(m->plainText.requests.count(u"fetchTasks"_s), 2);
    QCOMPARE(idsOf(m->repository->cachedTasks()), *forced->ids);
}

void TestTaskRepository::whatWasInvalidatedMeanwhileIsAskedForAgain_data()
{
    QTest::addColumn<bool>("isAskedAtOnce");
    QTest::newRow("while the fetch still runs") << true;
    QTest::newRow("after it") << false;
}

void TestTaskRepository::whatWasInvalidatedMeanwhileIsAskedForAgain()
{
    QFETCH(bool, isAskedAtOnce);
    repositoryOf({false, false, true});
    m->plainText.fetches.giveAfter(1.0, tasks({u"plaintext-1"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-2"_s}));

    const auto running = startFetch();
    m->notifications.post(notifications::TaskSourceConfigurationChanged);
    auto later = isAskedAtOnce ? startFetch() : nullptr;
    m->clock.advance(1.0);
    later = later ? later : startFetch();

    QCOMPARE(running->ids, QStringList(u"plaintext-1"_s));
    QCOMPARE(later->ids, QStringList(u"plaintext-2"_s));
}

void TestTaskRepository::servingTheCacheDoesNotDisturbTheProgressOfAFetch()
{
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    m->plainText.fetches.giveAfter(1.0, tasks({u"plaintext-2"_s}));
    fetchIds();

    const auto forced = startFetch(true);
    QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));

    QVERIFY(repository.loadingState() == State::Loading);
    m->clock.advance(1.0);
    QCOMPARE(forced->ids, QStringList(u"plaintext-2"_s));
}

void TestTaskRepository::anEmptyAnswerOfAnOutsideSourceIsBelievedTheSecondTime()
{
    repositoryOf({true, false, true});
    placeOnBoard(u"of"_s);
    placeOnBoard(u"plaintext-1"_s);
    for (int i = 0; i < 6; ++i) {
        m->plainText.fetches.give({});
    }
    m->omniFocus.fetches.give({});
    m->omniFocus.fetches.give(tasks({u"of"_s}));
    m->omniFocus.fetches.give({});
    m->omniFocus.fetches.fail(u"it broke"_s);
    m->omniFocus.fetches.give({});
    m->omniFocus.fetches.give({});

    QVERIFY2(answered() == TaskSource::PlainText, "the first empty answer was believed");
    QVERIFY(answered().testFlag(TaskSource::OmniFocus));
    QVERIFY2(answered() == TaskSource::PlainText, "an empty answer after tasks was believed");
    QVERIFY_THROWS_EXCEPTION(TaskRepositoryError, answered());
    QVERIFY2(answered() == TaskSource::PlainText, "a failure between two empty answers counted as one");
    QVERIFY(answered().testFlag(TaskSource::OmniFocus));
}

void TestTaskRepository::anEmptyAnswerCountsWhereNothingIsAtStake()
{
    repositoryOf({true, true, false});
    placeOnBoard(u"reminder_1"_s);
    m->omniFocus.fetches.give({});
    m->reminders.fetches.give({});

    QVERIFY(answered() == TaskSource::OmniFocus);
}

void TestTaskRepository::aTaskAddedByHandIsServedButDoesNotMakeAnEmptyCacheFresh()
{
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    const WorkItemPtr early = makeTask(u"plaintext-early"_s);

    repository.manuallyAddTaskToCache(early);
    QVERIFY(repository.cachedTask(u"plaintext-early"_s) == early);
    QVERIFY(!repository.lastFetchTime());
    QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));

    m->clock.advance(20.0);
    repository.manuallyAddTaskToCache(makeTask(u"plaintext-2"_s));
    m->clock.advance(20.0);
    repository.manuallyAddTaskToCache(makeTask(u"plaintext-2"_s, u"again"_s));
    m->clock.advance(5.0);
    QCOMPARE(fetchIds(), QStringList({u"plaintext-1"_s, u"plaintext-2"_s}));
    QCOMPARE(repository.cachedTask(u"plaintext-2"_s)->name(), u"A task"_s);
    QVERIFY2(*repository.lastFetchTime() == m->clock.now() - 25.0, "adding a known task renewed the cache");
}

void TestTaskRepository::aTaskAddedWhileSourcesAreAskedIsNotLost()
{
    TaskRepository &repository = repositoryOf({true, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    m->omniFocus.fetches.giveAfter(5.0, tasks({u"of"_s}));

    const auto ending = startFetch();
    repository.manuallyAddTaskToCache(makeTask(u"plaintext-2"_s));
    m->clock.advance(5.0);

    QCOMPARE(ending->ids, QStringList({u"of"_s, u"plaintext-1"_s, u"plaintext-2"_s}));
}

void TestTaskRepository::aRemovedTaskIsNotServedAgain()
{
    TaskRepository &repository = repositoryOf({false, false, true});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s, u"plaintext-2"_s}));
    fetchIds();
    QVERIFY(repository.cachedTask(u"plaintext-1"_s));

    repository.removeTaskFromCache(u"plaintext-1"_s);

    QVERIFY(!repository.cachedTask(u"plaintext-1"_s));
    QCOMPARE(fetchIds(), QStringList(u"plaintext-2"_s));
}

void TestTaskRepository::sourcesThatAreOffOrMissingHereAreNotAsked_data()
{
    QTest::addColumn<bool>("isOmniFocusEnabled");
    QTest::addColumn<bool>("isPlainTextEnabled");
    QTest::addColumn<bool>("isOmniFocusAvailable");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("descriptionAfterFetch");

    QTest::newRow("both") << true << true << true << u"OmniFocus, Plain Text"_s << u"OmniFocus, Plain Text"_s;
    QTest::newRow("missing here") << true << true << false << u"Plain Text"_s << u"Plain Text"_s;
    QTest::newRow("only a missing one") << true << false << false << u""_s << u"Plain Text"_s;
    QTest::newRow("all off") << false << false << true << u""_s << u"Plain Text"_s;
}

void TestTaskRepository::sourcesThatAreOffOrMissingHereAreNotAsked()
{
    QFETCH(bool, isOmniFocusEnabled);
    QFETCH(bool, isPlainTextEnabled);
    QFETCH(bool, isOmniFocusAvailable);
    m->omniFocus.isAvailable = isOmniFocusAvailable;
    TaskRepository &repository = repositoryOf({isOmniFocusEnabled, false, isPlainTextEnabled});
    m->omniFocus.fetches.give({});
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    QTEST(repository.taskManagersDescription(), "description");

    QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));

    QTEST(repository.taskManagersDescription(), "descriptionAfterFetch");
    QVERIFY(m->factory.getTaskSourceConfiguration().isPlainTextEnabled);
    QVERIFY2(!repository.enablePlainTextAsFallback(), "a fallback was made though a source is there");
}

void TestTaskRepository::aRepositoryThatGoesAwayLeavesItsCallersUnharmed()
{
    repositoryOf({true, false, true});
    const auto answer = m->omniFocus.fetches.giveWhenOpened(tasks({u"of"_s}));
    m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
    const auto ending = startFetch();
    const auto forced = startFetch(true);

    m->repository.reset();
    answer->countDown();

    QCOMPARE(ending->ids, QStringList());
    QCOMPARE(forced->ids, QStringList());
}

VANTREL_REGISTER_TEST(TestTaskRepository)

} // namespace vantrel::test

#include "test_task_repository.moc"
