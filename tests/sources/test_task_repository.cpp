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

constexpr TaskSourceConfiguration OwnOnly{false, false, true};

WorkItems tasks(const QStringList &ids)
{
    WorkItems items;
    for (const QString &id : ids) {
        items.push_back(makeTask(id));
    }
    return items;
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
        ending->ids = taskIds(fetched.tasks);
    } catch (const SourceError &error) {
        ending->error = error.message();
    }
}

} // namespace

class TestTaskRepository : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m = std::make_unique<Setting>();
        m->logManager.setMinimumLogLevel(LogLevel::Info);
    }

    void cleanup()
    {
        m.reset();
        m_log.reset();
    }

    void tasksAreMergedInSourceOrderThoughTheyFinishInAnother()
    {
        TaskRepository &repository = repositoryOf({true, true, true});
        m->omniFocus.fetches.giveAfter(3.0, tasks({u"of1"_s, u"of2"_s}));
        m->reminders.fetches.giveAfter(1.0, tasks({u"reminder_1"_s}));
        m->plainText.fetches.giveAfter(2.0, tasks({u"plaintext-1"_s}));

        const auto ending = startFetch();
        m->clock.advance(3.0);

        QCOMPARE(ending->ids, QStringList({u"of1"_s, u"of2"_s, u"reminder_1"_s, u"plaintext-1"_s}));
        QCOMPARE(taskIds(repository.cachedTasks()), *ending->ids);
        QStringList finished = LogWriter::recentMessages().filter(u"TASK REPOSITORY: Loaded"_s);
        QCOMPARE(finished.size(), 3);
        QVERIFY(finished[0].endsWith(u"Loaded 1 tasks from Reminders"_s));
        QVERIFY(finished[2].endsWith(u"Loaded 2 tasks from OmniFocus"_s));
    }

    void progressCountsTheSourcesAsTheyFinishAndOneThatHangsHoldsBackOnlyTheResult()
    {
        TaskRepository &repository = repositoryOf({true, false, true});
        const auto answer = m->omniFocus.fetches.giveWhenOpened(tasks({u"of"_s}));
        m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
        QList<double> progress;
        QStringList messages;
        connect(&repository, &TaskRepository::loadingChanged, this, [&] {
            if (progress.isEmpty() || progress.last() != repository.loadingProgress()) {
                progress.append(repository.loadingProgress());
            }
            messages.append(repository.loadingStatusMessage());
        });

        const auto ending = startFetch();
        m->clock.advance(3600.0);
        QVERIFY(!ending->ids && repository.loadingState() == State::Loading);
        QCOMPARE(progress, (QList{0.0, 0.45}));
        const QStringList own{u"Checking permissions for Plain Text..."_s,
                              u"Fetching due soon settings for Plain Text..."_s,
                              u"Loading tasks from Plain Text..."_s, u"Loaded 1 tasks from Plain Text"_s};
        QCOMPARE(messages.first(), u"Initializing..."_s);
        QCOMPARE(messages.last(own.size()), own);

        answer->countDown();
        QCOMPARE(ending->ids, QStringList({u"of"_s, u"plaintext-1"_s}));
        QVERIFY(repository.loadingState() == State::Loaded);
        QCOMPARE(progress, (QList{0.0, 0.45, 0.9, 0.95, 1.0}));
        QCOMPARE(messages.last(2), QStringList({u"Loaded 2 total tasks"_s, u"Loading complete!"_s}));
    }

    void whatCanGoWrongWithASource_data()
    {
        QTest::addColumn<QString>("omniFocus"); // "tasks", "nothing", "fails", "settings", "permission"
        QTest::addColumn<QString>("plainText");
        QTest::addColumn<QStringList>("ids");
        QTest::addColumn<int>("answered");
        QTest::addColumn<QString>("error");
        const int plainText = static_cast<int>(TaskSource::PlainText);
        const int both = plainText | static_cast<int>(TaskSource::OmniFocus);
        const QStringList own{u"plaintext-1"_s};

        QTest::newRow("all well") << u"tasks"_s << u"tasks"_s << QStringList{u"of"_s, u"plaintext-1"_s}
                                  << both << QString();
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

    void whatCanGoWrongWithASource()
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
        QTEST(taskIds(fetched.tasks), "ids");
        QTEST(static_cast<int>(fetched.answeredSources), "answered");
        QVERIFY(repository.loadingState() == (error.isEmpty() ? State::Loaded : State::Error));
        QCOMPARE(repository.errorText(), error);
        QCOMPARE(posts,
                 QStringList(error.isEmpty() ? u"TaskLoadingComplete "_s : u"TaskLoadingError "_s + error));
        m->notifications.removeObserver(this);
    }

    void theCausesOfAFailedLoadKeepTheirType()
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

    void theCacheIsServedForThirtySeconds_data()
    {
        QTest::addColumn<QStringList>("first");
        QTest::addColumn<double>("age");
        QTest::addColumn<bool>("forceRefresh");
        QTest::addColumn<bool>("isServed");
        const QStringList one{u"plaintext-1"_s};
        QTest::newRow("just before") << one << 29.99 << false << true;
        QTest::newRow("exactly") << one << 30.0 << false << false;
        QTest::newRow("forced") << one << 5.0 << true << false;
        QTest::newRow("an empty one") << QStringList() << 0.0 << false << false;
        QTest::newRow("a clock set back") << one << -86400.0 << false << false;
    }

    void theCacheIsServedForThirtySeconds()
    {
        QFETCH(QStringList, first);
        QFETCH(double, age);
        QFETCH(bool, forceRefresh);
        QFETCH(bool, isServed);
        TaskRepository &repository = repositoryOf(OwnOnly);
        m->plainText.fetches.give(tasks(first));
        m->plainText.fetches.give(tasks({u"plaintext-2"_s}));
        fetchIds();
        m->clock.jumpTo(m->clock.now() + age);

        const FetchedTasks fetched = await(repository.fetchTasks(forceRefresh));

        QCOMPARE(taskIds(fetched.tasks), isServed ? first : QStringList(u"plaintext-2"_s));
        QVERIFY(fetched.answeredSources == TaskSource::PlainText);
        QCOMPARE(repository.loadingStatusMessage(),
                 isServed ? u"Using cached tasks"_s : u"Loading complete!"_s);
    }

    void aFailedFetchLeavesTheCacheToServe()
    {
        TaskRepository &repository = repositoryOf(OwnOnly);
        m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
        m->plainText.fetches.fail(u"it broke"_s);
        fetchIds();
        m->clock.advance(5.0);
        QVERIFY_THROWS_EXCEPTION(TaskRepositoryError, fetchIds(true));
        QVERIFY(repository.loadingState() == State::Error);

        QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));
        QVERIFY(repository.loadingState() == State::Loaded);
    }

    void fetchesAtTheSameTimeShareOneAnswerAndForcedOnesTheNext()
    {
        TaskRepository &repository = repositoryOf(OwnOnly);
        m->plainText.fetches.giveAfter(2.0, tasks({u"plaintext-1"_s}));
        m->plainText.fetches.giveAfter(1.0, tasks({u"plaintext-2"_s}));
        QList<double> progress;
        connect(&repository, &TaskRepository::loadingChanged, this,
                [&] { progress.append(repository.loadingProgress()); });

        const auto running = startFetch();
        const auto sharing = startFetch();
        const auto forced = startFetch(true);
        const auto alsoForced = startFetch(true);
        m->clock.advance(1.9);
        QVERIFY2(std::is_sorted(progress.begin(), progress.end()), "two fetches wrote the progress");
        m->clock.advance(0.1);
        QCOMPARE(running->ids, QStringList(u"plaintext-1"_s));
        QCOMPARE(sharing->ids, running->ids);
        QVERIFY(!forced->ids);
        QCOMPARE(fetchIds(), QStringList(u"plaintext-1"_s));
        QVERIFY2(repository.loadingState() == State::Loading, "serving the cache ended the progress");
        m->clock.advance(1.0);

        QCOMPARE(forced->ids, QStringList(u"plaintext-2"_s));
        QCOMPARE(alsoForced->ids, forced->ids);
        QCOMPARE(m->plainText.requests.count(u"fetchTasks"_s), 2);
        QCOMPARE(taskIds(repository.cachedTasks()), *forced->ids);
    }

    /** While the fetch still runs, and after it. */
    void whatWasInvalidatedMeanwhileIsAskedForAgain()
    {
        for (const bool isAskedAtOnce : {true, false}) {
            repositoryOf(OwnOnly);
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
    }

    void anEmptyAnswerOfAnOutsideSourceIsBelievedTheSecondTime()
    {
        repositoryOf({true, true, true});
        for (const QString &id : {u"of"_s, u"plaintext-1"_s}) {
            m->store->saveTaskPosition(id, ColumnId::create(), 0, SwimLaneId::create());
        }
        for (int i = 0; i < 6; ++i) {
            m->plainText.fetches.give({});
            m->reminders.fetches.give({}); // None of them is on the board: nothing is at stake.
        }
        m->omniFocus.fetches.give({});
        m->omniFocus.fetches.give(tasks({u"of"_s}));
        m->omniFocus.fetches.give({});
        m->omniFocus.fetches.fail(u"it broke"_s);
        m->omniFocus.fetches.give({});
        m->omniFocus.fetches.give({});
        const auto isOmniFocusBelieved = [this] {
            const TaskSources answered = await(m->repository->fetchTasks(true)).answeredSources;
            return answered.testFlag(TaskSource::PlainText) && answered.testFlag(TaskSource::Reminders) &&
                   answered.testFlag(TaskSource::OmniFocus);
        };

        QVERIFY2(!isOmniFocusBelieved(), "the first empty answer was believed");
        QVERIFY(isOmniFocusBelieved());
        QVERIFY2(!isOmniFocusBelieved(), "an empty answer after tasks was believed");
        QVERIFY_THROWS_EXCEPTION(TaskRepositoryError, isOmniFocusBelieved());
        QVERIFY2(!isOmniFocusBelieved(), "a failure between two empty answers counted as one");
        QVERIFY(isOmniFocusBelieved());
    }

    void aTaskAddedByHandIsServedButDoesNotMakeAnEmptyCacheFresh()
    {
        TaskRepository &repository = repositoryOf(OwnOnly);
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
        QVERIFY2(*repository.lastFetchTime() == m->clock.now() - 25.0,
                 "adding a known task renewed the cache");
    }

    void aTaskAddedWhileSourcesAreAskedIsNotLost()
    {
        TaskRepository &repository = repositoryOf({true, false, true});
        m->plainText.fetches.give(tasks({u"plaintext-1"_s}));
        m->omniFocus.fetches.giveAfter(5.0, tasks({u"of"_s}));

        const auto ending = startFetch();
        repository.manuallyAddTaskToCache(makeTask(u"plaintext-2"_s));
        m->clock.advance(5.0);

        QCOMPARE(ending->ids, QStringList({u"of"_s, u"plaintext-1"_s, u"plaintext-2"_s}));
    }

    void aRemovedTaskIsNotServedAgain()
    {
        TaskRepository &repository = repositoryOf(OwnOnly);
        m->plainText.fetches.give(tasks({u"plaintext-1"_s, u"plaintext-2"_s}));
        fetchIds();
        QVERIFY(repository.cachedTask(u"plaintext-1"_s));

        repository.removeTaskFromCache(u"plaintext-1"_s);

        QVERIFY(!repository.cachedTask(u"plaintext-1"_s));
        QCOMPARE(fetchIds(), QStringList(u"plaintext-2"_s));
    }

    void sourcesThatAreOffOrMissingHereAreNotAsked_data()
    {
        QTest::addColumn<bool>("isOmniFocusEnabled");
        QTest::addColumn<bool>("isPlainTextEnabled");
        QTest::addColumn<bool>("isOmniFocusAvailable");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("descriptionAfterFetch");

        QTest::newRow("missing here") << true << true << false << u"Plain Text"_s << u"Plain Text"_s;
        QTest::newRow("only a missing one") << true << false << false << u""_s << u"Plain Text"_s;
        QTest::newRow("all off") << false << false << true << u""_s << u"Plain Text"_s;
    }

    void sourcesThatAreOffOrMissingHereAreNotAsked()
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

    void aRepositoryThatGoesAwayLeavesItsCallersUnharmed()
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
    TaskRepository &repositoryOf(const TaskSourceConfiguration &configuration)
    {
        m->factory.setTaskSourceConfiguration(configuration);
        m->repository = std::make_unique<TaskRepository>(m->factory, *m->store, m->notifications, m->clock);
        return *m->repository;
    }

    std::shared_ptr<Ending> startFetch(bool forceRefresh = false)
    {
        auto ending = std::make_shared<Ending>();
        launch(watch(m->repository->fetchTasks(forceRefresh), ending), u"fetch"_s);
        return ending;
    }

    QStringList fetchIds(bool forceRefresh = false)
    {
        return taskIds(await(m->repository->fetchTasks(forceRefresh)).tasks);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<Setting> m;
};

VANTREL_REGISTER_TEST(TestTaskRepository)

} // namespace vantrel::test

#include "test_task_repository.moc"
