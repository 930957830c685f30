#include "TestBoard.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** A board whose only source is the test's OmniFocus. */
struct LoadingBoard : TestBoard
{
    LoadingBoard() { enableOnly(u"isOmniFocusEnabled"); }

    void enableOnly(QStringView key)
    {
        for (const QStringView other :
             {u"isOmniFocusEnabled", u"isRemindersEnabled", u"isPlainTextEnabled"}) {
            store.defaults.set(other, other == key);
        }
    }
    void load()
    {
        launch((**this).loadDataAsync(), u"load"_s);
        settle();
    }
    void post(NotificationName name, const QVariant &object = {}, const QVariantMap &userInfo = {})
    {
        notifications.post(name, object, userInfo);
        settle();
    }
};

QCoro::Task<> refresh(TaskRepository &repository)
{
    co_await repository.fetchTasks(true);
}

QCoro::Task<> create(PlainTextTaskManager &manager, NewTask task)
{
    co_await manager.createTask(task);
}

} // namespace

class TestLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBarReachesItsEndInSteps();
    void aFailedLoadTellsWhyAndCanBeRepeated();
    void aLaterRefreshLeavesTheStateOfTheLoad();
    void anUpdateClearsTheSelectionAndTellsTheCounts();
    void allTasksComeInTheOrderOfTheBoard();
    void aBurstOfChangesIsToldOnce();
    void updatesFromSettingsDoNotLoop();
    void aPriorityOnAnEmptyBoardEmptiesNothing();
    void eachAssignmentReorganisesOnce();
    void focusIsToggledForTheSelectedTask();
    void aCreatedTaskAppearsAtItsStoredPlace();
    void aCreatedTaskAppearsWithoutReadingTheWholeStore();
    void aCreatedTaskThatIsGoneIsNotShown();
};

void TestLoading::theBarReachesItsEndInSteps()
{
    LoadingBoard board;
    const auto answer = board.omniFocus.fetches.giveWhenOpened(makeTasks(u"a b"_s));
    QStringList seen;
    QObject::connect(&*board, &BoardState::loadingChanged, &*board, [&] {
        const QString now = QString::number(board->loadingProgress()) + u' ' + board->loadingStatusMessage();
        if (seen.isEmpty() || seen.last() != now) {
            seen.append(now);
        }
    });
    board.load();
    QCOMPARE(board->loadingState(), BoardLoadingState::Loading);
    answer->countDown();
    board.settle();
    QVERIFY(seen.contains(u"0 Initializing..."_s));
    QCOMPARE(seen.mid(seen.size() - 2),
             QStringList({u"0.7 Organizing 2 tasks..."_s, u"0.9 Finalizing..."_s}));
    QCOMPARE(board.cell(board.todo()), u"a b"_s);
    board.advance(0.49);
    QCOMPARE(board->loadingProgress(), 0.9);
    board.advance(0.02);
    QCOMPARE(seen.last(), u"1 Loading complete!"_s);
    QCOMPARE(board->loadingState(), BoardLoadingState::Loading);
    board.advance(0.3);
    QCOMPARE(board->loadingState(), BoardLoadingState::Loaded);
}

/** The user has switched to another source meanwhile: it must be that one which is asked. */
void TestLoading::aFailedLoadTellsWhyAndCanBeRepeated()
{
    LoadingBoard board;
    board.omniFocus.fetches.fail(u"OmniFocus is not running"_s);
    board.load();
    QCOMPARE(board->loadingState(), BoardLoadingState::Error);
    QVERIFY(board->loadingError().contains(u"OmniFocus is not running"_s));

    board.enableOnly(u"isRemindersEnabled");
    board.reminders.fetches.give(makeTasks(u"reminder_a"_s));
    board.load();
    board.advance(1.0);
    QCOMPARE(board->loadingState(), BoardLoadingState::Loaded);
    QVERIFY(board->loadingError().isEmpty());
    QCOMPARE(board.cell(board.todo()), u"reminder_a"_s);
}

void TestLoading::aLaterRefreshLeavesTheStateOfTheLoad()
{
    LoadingBoard board;
    board.omniFocus.fetches.give(makeTasks(u"a"_s));
    board.load();
    board.advance(1.0);
    board->updateLoadingProgressFromRepository();
    board.omniFocus.fetches.fail(u"gone"_s);
    QSignalSpy loading(&*board, &BoardState::loadingChanged);
    launch(refresh(board.repository()), u"refresh"_s);
    board.settle();
    QVERIFY(loading.count() > 0);
    QCOMPARE(board->loadingState(), BoardLoadingState::Loaded);
}

void TestLoading::anUpdateClearsTheSelectionAndTellsTheCounts()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a b"_s));
    board.advance(1.0);
    int told = 0;
    board.notifications.observe(notifications::SwimLaneWIPCountsChanged, &*board,
                                [&told](const Notification &) { ++told; });
    board->selectTask(u"a"_s, false);
    board->updateTasks(makeTasks(u"a b"_s));
    QVERIFY(board->selectionManager().selectedTaskIds().isEmpty());
    board.advance(0.15);
    QCOMPARE(told, 1);
    board.advance(0.1);
    QCOMPARE(told, 2);
}

void TestLoading::allTasksComeInTheOrderOfTheBoard()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a b c d e"_s));
    board->moveTaskWithoutTellingSource(board->task(u"a"_s), board.doing());
    board->moveTask(board->task(u"d"_s), board.todo(), {}, 0);
    for (const QString &id : {u"c"_s, u"e"_s}) {
        board->task(id)->setComplete(true);
    }
    board->moveTaskWithoutTellingSource(board->task(u"e"_s), board.done());
    board->moveTaskWithoutTellingSource(board->task(u"b"_s), board.done());

    QCOMPARE(taskIds(board->getAllTasks()), QStringList({u"d"_s, u"c"_s, u"a"_s, u"b"_s}));
}

void TestLoading::aBurstOfChangesIsToldOnce()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a b c"_s));
    QSignalSpy changed(&*board, &BoardState::changed);
    for (int i = 0; i < 5; ++i) {
        board->moveTask(board->task(u"a"_s), board.todo(), {}, i % 3);
        board->invalidateDerivedCollections();
    }
    QCOMPARE(changed.count(), 0);
    board.store.clock.advance(0.0);
    QCOMPARE(changed.count(), 1);
}

void TestLoading::updatesFromSettingsDoNotLoop()
{
    LoadingBoard board;
    board.settle();
    QVariantList posts;
    board.notifications.observe(notifications::BoardStateChanged, &*board,
                                [&posts](const Notification &post) { posts.append(post.object); });
    QSignalSpy changed(&*board, &BoardState::changed);
    board->triggerUIUpdate();
    board->triggerUIUpdate();
    board.post(notifications::BoardStateChanged);
    QCOMPARE(posts, QVariantList({u"fromSettings"_s, QVariant()}));
    QCOMPARE(changed.count(), 1);

    board.advance(0.6);
    board.post(notifications::BoardStateChanged);
    QVERIFY(board->isUpdating());
    QCOMPARE(changed.count(), 2);
    board.advance(0.2);
    QVERIFY(!board->isUpdating());
}

/** Before the first load has ended, a filter toggle would pass for the news that no task exists. */
void TestLoading::aPriorityOnAnEmptyBoardEmptiesNothing()
{
    LoadingBoard board;
    board.storeCell(board.doing(), {u"a"_s});
    board.post(notifications::EisenhowerPriorityUpdated);
    QCOMPARE(board.storedIds(), u"a"_s);

    board.omniFocus.fetches.giveWhenOpened(makeTasks(u"a"_s));
    board.load();
    board->findTaskById(u"a"_s);
    board.repository().manuallyAddTaskToCache(makeTask(u"b"_s));
    QVERIFY(board->findTaskById(u"b"_s));
    board.post(notifications::EisenhowerPriorityUpdated);
    QCOMPARE(board.storedIds(), u"a"_s);
}

void TestLoading::eachAssignmentReorganisesOnce()
{
    LoadingBoard board;
    board.storeCell(board.doing(), {u"reminder_r"_s});
    board.organize(makeTasks(u"a b"_s), TaskSource::OmniFocus);
    QSignalSpy organized(&*board, &BoardState::organized);
    board->assignEisenhowerPriority(u"a"_s, EisenhowerPriority::DoNow);
    board.settle();
    board->assignEisenhowerPriority(u"b"_s, EisenhowerPriority::DoNow);
    board.settle();
    QCOMPARE(organized.count(), 2);
    // The sources that did not answer then have not answered now.
    QCOMPARE(board.storedIds(), u"a b reminder_r"_s);

    // The menu's command is for the matrix.
    board.post(notifications::EisenhowerPriorityUpdated, {}, {{u"priority"_s, u"doNow"_s}});
    QCOMPARE(organized.count(), 2);
}

void TestLoading::focusIsToggledForTheSelectedTask()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a"_s));
    board.post(notifications::ToggleTaskFocusModeRequested);
    QVERIFY(!board->isTaskFocusActive());
    board->selectTask(u"a"_s, false);
    board.post(notifications::ToggleTaskFocusModeRequested);
    QVERIFY(board->isTaskFocused(u"a"_s));
    board.post(notifications::ToggleTaskFocusModeRequested);
    QVERIFY(!board->isTaskFocusActive());
}

void TestLoading::aCreatedTaskAppearsAtItsStoredPlace()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a b"_s), TaskSource::OmniFocus);
    NewTask task;
    task.name = u"Buy milk"_s;
    launch(create(board.plainText(), task), u"create"_s);
    board.settle();
    const WorkItems shown = board->cell(board.first(), board.todo());
    QCOMPARE(shown.size(), 3u);
    QCOMPARE(shown.back()->name(), u"Buy milk"_s);
    const QString order = board.cell(board.todo());

    board.restart();
    WorkItems tasks = makeTasks(u"a b"_s);
    tasks.insert(tasks.begin(), makeTask(shown.back()->id()));
    board.organize(tasks);
    QCOMPARE(board.cell(board.todo()), order);
}

void TestLoading::aCreatedTaskAppearsWithoutReadingTheWholeStore()
{
    LoadingBoard board;
    LogManager logManager(board.store.defaults);
    logManager.setMinimumLogLevel(LogLevel::Info);
    const auto restore = qScopeGuard([&] { logManager.setMinimumLogLevel(LogLevel::Notice); });
    const LogWriter writer(LogWriter::Output::Silent);
    LogWriter::forgetMessages();
    NewTask task;
    for (const QString &name : {u"one"_s, u"two"_s}) {
        task.name = name;
        launch(create(board.plainText(), task), u"create"_s);
        board.settle();
    }
    QCOMPARE(board->cell(board.first(), board.todo()).size(), 2u);
    const QStringList log = LogWriter::recentMessages();
    QCOMPARE(log.filter(u"Found task position in persistence manager: 1"_s).size(), 1);
    const QStringList readings = log.filter(u"from database in a single query"_s);
    QVERIFY2(readings.isEmpty(), qPrintable(readings.join(u'\n')));
}

void TestLoading::aCreatedTaskThatIsGoneIsNotShown()
{
    LoadingBoard board;
    board.organize(makeTasks(u"a"_s), TaskSource::OmniFocus);
    board.post(notifications::TaskAddedToBoardState, u"plaintext-gone"_s);
    QCOMPARE(board.cell(board.todo()), u"a"_s);
    QCOMPARE(board->taskCount(), 1);
}

VANTREL_REGISTER_TEST(TestLoading)

} // namespace vantrel::test

#include "test_loading.moc"
