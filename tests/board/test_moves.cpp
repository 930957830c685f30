#include "TestBoard.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"
#include "sources/SourceError.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using State = TaskMoveStatus::State;

/** A task whose source is the test's OmniFocus. */
WorkItemPtr makeOmniFocusTask(const QString &id)
{
    WorkItemFields fields;
    fields.id = id;
    fields.name = id;
    return std::make_shared<OmniFocusTask>(fields);
}

WorkItems omniFocusTasks(const QString &ids)
{
    WorkItems tasks;
    for (const QString &id : ids.split(u' ')) {
        tasks.push_back(makeOmniFocusTask(id));
    }
    return tasks;
}

/** A board with the tasks a, b, c and d in its first cell. */
struct FourTasks : TestBoard
{
    FourTasks() { organize(omniFocusTasks(u"a b c d"_s)); }

    WorkItemPtr task(const QString &id) { return (**this).task(id); }
    State stateOf(const QString &id) { return (**this).taskOperationStatus(id).state; }
};

/** Counts the posts of one notification. */
struct Posts : QObject
{
    Posts(NotificationCenter &center, NotificationName name)
    {
        center.observe(name, this, [this](const Notification &post) { objects.append(post.object); });
    }
    QVariantList objects;
};

} // namespace

class TestMoves : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aReorderPutsTheCardWhereItWasDropped();
    void aReorderChangesOneNumber();
    void aReorderOfNothingIsSilent();
    void aNewcomerStandsWhereItWasDropped();
    void aMoveIsToldAndStored();
    void onlyLeavingAnOpenColumnNumbersTheOldCell();
    void aMoveSoundsLikeItsTarget();
    void refusedMovesChangeNothing();
    void aTaskWithoutAPlaceIsTakenAsNew();
    void anUnknownSwimLaneKeepsTheTaskInItsOwn();
    void completingTellsTheSourceOnce();
    void aSourceThatRefusesLeavesTheCard();
    void aFailedMoveCanBeRepeated();
    void aBlockedTaskIsFreedByCompletion();
    void movingBackWhileTheSourceIsToldWins();
    void aTaskReplacedMeanwhileStaysReplaced();
    void theSwimLaneMenuIsSilent();
    void directMovesDoNotPileUp();
    void removingATaskForgetsAllOfIt();
};

void TestMoves::aReorderPutsTheCardWhereItWasDropped()
{
    using Target = std::optional<int>;
    const std::vector<std::tuple<QString, Target, QString>> rows{
        {u"d"_s, 1, u"a d b c"_s},
        {u"a"_s, 2, u"b c a d"_s},
        {u"b"_s, 99, u"a c d b"_s},
        {u"c"_s, -1, u"c a b d"_s},
        // Without a wish the first goes down, and any other up.
        {u"a"_s, {}, u"b a c d"_s},
        {u"d"_s, {}, u"a b d c"_s},
        {u"c"_s, {}, u"a c b d"_s},
    };
    for (const auto &[id, target, order] : rows) {
        FourTasks board;
        board->moveTask(board.task(id), board.todo(), {}, target);
        QCOMPARE(board.cell(board.todo()), order);
        QCOMPARE(board.stateOf(id), State::Success);

        board.restart();
        board.organize(omniFocusTasks(u"d c b a"_s));
        QCOMPARE(board.cell(board.todo()), order);
    }
}

void TestMoves::aReorderChangesOneNumber()
{
    FourTasks board;
    board->moveTask(board.task(u"d"_s), board.todo(), {}, 1);
    QCOMPARE(board.numbers(board.todo()), u"a:0 d:1 b:1 c:2"_s);
    // The second reorder meets equal numbers, and must not be lost among them.
    board->moveTask(board.task(u"c"_s), board.todo(), {}, 2);
    QCOMPARE(board.cell(board.todo()), u"a d c b"_s);
}

void TestMoves::aReorderOfNothingIsSilent()
{
    FourTasks board;
    board->moveTask(board.task(u"a"_s), board.todo(), {}, 0);
    board->moveTask(board.task(u"d"_s), board.todo(), {}, 99);
    QCOMPARE(board.stateOf(u"a"_s), State::Idle);
    QCOMPARE(board.stateOf(u"d"_s), State::Idle);

    board->moveTask(board.task(u"b"_s), board.doing());
    board.advance(2.0);
    board->moveTask(board.task(u"b"_s), board.doing(), {}, 0);
    QCOMPARE(board.stateOf(u"b"_s), State::Idle);
}

/** Also where the cell has gaps and ties, as a completed column may. */
void TestMoves::aNewcomerStandsWhereItWasDropped()
{
    const std::vector<std::pair<std::optional<int>, QString>> rows{{0, u"d:0 a:1 b:2 c:3"_s},
                                                                   {2, u"a:0 b:1 d:2 c:3"_s},
                                                                   {std::nullopt, u"a:0 b:1 c:2 d:3"_s},
                                                                   {99, u"a:0 b:1 c:2 d:3"_s}};
    for (const auto &[position, stored] : rows) {
        TestBoard board;
        board.store->saveTaskPosition(u"a"_s, board.done(), 3, board.first());
        board.store->saveTaskPosition(u"b"_s, board.done(), 7, board.first());
        board.store->saveTaskPosition(u"c"_s, board.done(), 7, board.first());
        board.organize(omniFocusTasks(u"a b c d"_s));
        QCOMPARE(board.numbers(board.done()), u"a:3 b:7 c:7"_s);

        board->moveTaskWithoutTellingSource(board->task(u"d"_s), board.done(), {}, position);
        QCOMPARE(board.cell(board.done()), QString(stored).remove(QRegularExpression(u":\\d"_s)));
        board.settle();
        QCOMPARE(board.storedCell(board.done()), stored);
    }
}

void TestMoves::aMoveIsToldAndStored()
{
    FourTasks board;
    const Posts moved(board.notifications, notifications::TaskMoved);
    const Posts counts(board.notifications, notifications::SwimLaneWIPCountsChanged);
    QSignalSpy changed(&*board, &BoardState::changed);
    board->moveTask(board.task(u"b"_s), board.doing());

    QCOMPARE(moved.objects, QVariantList{u"b"_s});
    QCOMPARE(counts.objects.size(), 1);
    QCOMPARE(counts.objects.first().value<QObject *>(), static_cast<QObject *>(&*board));
    QCOMPARE(board.stateOf(u"b"_s), State::Success);
    board.store.clock.advance(0.0);
    QCOMPARE(changed.count(), 1);
    board.settle();
    QCOMPARE(board.storedCell(board.doing()), u"b:0"_s);
    QCOMPARE(board.storedCell(board.todo()), u"a:0 c:1 d:2"_s);
    QVERIFY(board.omniFocus.requests.isEmpty());

    board.advance(1.4);
    QCOMPARE(board.stateOf(u"b"_s), State::Success);
    board.advance(0.2);
    QCOMPARE(board.stateOf(u"b"_s), State::Idle);
}

void TestMoves::onlyLeavingAnOpenColumnNumbersTheOldCell()
{
    FourTasks board;
    board->moveTask(board.task(u"a"_s), board.todo(), board.second());
    board.settle();
    QCOMPARE(board.storedCell(board.todo()), u"b:1 c:2 d:3"_s);
    QCOMPARE(board.storedCell(board.todo(), board.second()), u"a:0"_s);

    for (const QString &id : {u"b"_s, u"c"_s}) {
        board->moveTaskWithoutTellingSource(board.task(id), board.done());
    }
    board->moveTaskWithoutTellingSource(board.task(u"b"_s), board.doing());
    board.settle();
    QCOMPARE(board.storedCell(board.todo()), u"d:0"_s);
    QCOMPARE(board.storedCell(board.done()), u"c:1"_s);
}

void TestMoves::aMoveSoundsLikeItsTarget()
{
    const std::vector<std::tuple<size_t, bool, Sound, QString>> rows{
        {1, false, Sound::ColumnMove, u"Task moved to Doing column"_s},
        {1, true, Sound::SwimLaneMove, u"Task moved to Second swimlane"_s},
        {2, true, Sound::Completion, u"Task marked complete"_s},
    };
    for (const auto &[column, isOtherSwimLane, sound, announcement] : rows) {
        FourTasks board;
        board.omniFocus.edits.give(true);
        board->moveTask(board.task(u"a"_s), board->columnManager().columns().at(column).id,
                        isOtherSwimLane ? board.second() : board.first());
        QCOMPARE(board.desktop.sounds.played, std::vector<Sound>{sound});
        QCOMPARE(board.announcer.history(), QStringList(announcement));
    }
}

void TestMoves::refusedMovesChangeNothing()
{
    FourTasks board;
    const WorkItemPtr stranger = makeOmniFocusTask(u"stranger"_s);
    board->moveTask(stranger, ColumnId::create());
    QVERIFY(!board.task(u"stranger"_s));
    board->moveTaskToSwimLane(u"stranger"_s, board.second());
    board->moveTaskToSwimLane(u"a"_s, SwimLaneId::create());
    board->retryFailedOperation(u"stranger"_s);
    QCOMPARE(board.cell(board.todo()), u"a b c d"_s);
    QVERIFY(board.desktop.sounds.played.empty());
}

void TestMoves::aTaskWithoutAPlaceIsTakenAsNew()
{
    FourTasks board;
    const WorkItemPtr stranger = makeOmniFocusTask(u"n"_s);
    board->moveTask(stranger, board.todo(), {}, 1);
    QCOMPARE(board.cell(board.todo()), u"a n b c d"_s);
    QCOMPARE(board.stateOf(u"n"_s), State::Idle);
    QVERIFY(board.desktop.sounds.played.empty());
}

void TestMoves::anUnknownSwimLaneKeepsTheTaskInItsOwn()
{
    FourTasks board;
    board->moveTask(board.task(u"a"_s), board.doing(), SwimLaneId::create());
    QCOMPARE(board.cell(board.doing()), u"a"_s);
    board->addTaskToColumn(board.task(u"b"_s), board.doing(), SwimLaneId::create());
    QCOMPARE(board.cell(board.doing()), u"a b"_s);
}

void TestMoves::completingTellsTheSourceOnce()
{
    FourTasks board;
    const auto answer = board.omniFocus.edits.giveWhenOpened(true);
    board->moveTask(board.task(u"a"_s), board.done());
    QCOMPARE(board.stateOf(u"a"_s), State::Doing);
    QVERIFY(!board.task(u"a"_s)->isComplete());
    answer->countDown();
    board.settle();
    QCOMPARE(board.omniFocus.requests, QStringList(u"markTaskComplete a"_s));
    QVERIFY(board.task(u"a"_s)->isComplete());
    board.advance(2.9);
    QCOMPARE(board.stateOf(u"a"_s), State::Success);
    board.advance(0.2);
    QCOMPARE(board.stateOf(u"a"_s), State::Idle);

    board.omniFocus.edits.give(true);
    board->moveTask(board.task(u"a"_s), board.doing());
    board.settle();
    QCOMPARE(board.omniFocus.requests.last(), u"markTaskIncomplete a"_s);
    QVERIFY(!board.task(u"a"_s)->isComplete());
}

void TestMoves::aSourceThatRefusesLeavesTheCard()
{
    FourTasks board;
    board.omniFocus.edits.fail(u"OmniFocus is busy"_s);
    board->moveTask(board.task(u"a"_s), board.done());
    board.advance(10.0);
    QCOMPARE(board.cell(board.done()), u"a"_s);
    QVERIFY(!board.task(u"a"_s)->isComplete());
    QCOMPARE(board.stateOf(u"a"_s), State::Failure);
    QCOMPARE(board->taskOperationStatus(u"a"_s).error, u"OmniFocus is busy"_s);
    QVERIFY(board.announcer.history().last().contains(
        u"Failed to update OmniFocus for task a: OmniFocus is busy"_s));
    QCOMPARE(board.storedCell(board.done()), u"a:0"_s);
}

void TestMoves::aFailedMoveCanBeRepeated()
{
    FourTasks board;
    board.store.defaults.set(u"isOmniFocusEnabled", true);
    board.omniFocus.edits.fail(u"no"_s);
    board.omniFocus.edits.fail(u"still no"_s);
    board.omniFocus.edits.give(true);
    board->moveTask(board.task(u"a"_s), board.done());
    board.settle();
    board->retryFailedOperation(u"a"_s);
    board.settle();
    QCOMPARE(board->taskOperationStatus(u"a"_s).error, u"still no"_s);
    board->retryFailedOperation(u"a"_s);
    board.settle();
    QVERIFY(board.task(u"a"_s)->isComplete());
    QCOMPARE(board.stateOf(u"a"_s), State::Success);
    QCOMPARE(board.omniFocus.requests.count(u"markTaskComplete a"_s), 3);

    board.store.defaults.set(u"isOmniFocusEnabled", false);
    board->retryFailedOperation(u"a"_s);
    board.settle();
    QCOMPARE(board->taskOperationStatus(u"a"_s).error, u"No task manager can handle task ID: a"_s);
}

void TestMoves::aBlockedTaskIsFreedByCompletion()
{
    FourTasks board;
    const Posts posts(board.notifications, notifications::TaskBlockingStatusChanged);
    board->updateTaskBlockedStatus(u"a"_s, true);
    board->updateTaskBlockReason(u"a"_s, u"why"_s);
    board.store->saveTaskAsBlocked(u"a"_s, u"why"_s);
    board.omniFocus.edits.give(true);
    board->moveTask(board.task(u"a"_s), board.done());
    board.settle();
    QVERIFY(!board.task(u"a"_s)->isBlocked());
    QVERIFY(!board.task(u"a"_s)->blockReason());
    QVERIFY(board.store->getBlockedTaskIdsFromSQLite().isEmpty());
    QCOMPARE(posts.objects, QVariantList{u"a"_s});
}

/** The slow answer to the first move would complete a task that stands in progress again. */
void TestMoves::movingBackWhileTheSourceIsToldWins()
{
    FourTasks board;
    const auto slow = board.omniFocus.edits.giveWhenOpened(true);
    board.omniFocus.edits.give(true);
    board->moveTask(board.task(u"a"_s), board.done());
    board->moveTask(board.task(u"a"_s), board.doing());
    board.settle();
    slow->countDown();
    board.settle();
    QCOMPARE(board.cell(board.doing()), u"a"_s);
    QVERIFY(!board.task(u"a"_s)->isComplete());
}

void TestMoves::aTaskReplacedMeanwhileStaysReplaced()
{
    FourTasks board;
    const auto slow = board.omniFocus.edits.giveWhenOpened(true);
    board->moveTask(board.task(u"a"_s), board.done());
    const WorkItems fetchedAgain = omniFocusTasks(u"a b c d"_s);
    board.organize(fetchedAgain);
    slow->countDown();
    board.settle();
    QCOMPARE(board.task(u"a"_s), fetchedAgain.front());
    QVERIFY(fetchedAgain.front()->isComplete());
    QCOMPARE(board.cell(board.done()), u"a"_s);
}

void TestMoves::theSwimLaneMenuIsSilent()
{
    FourTasks board;
    const Posts moved(board.notifications, notifications::TaskMoved);
    board->moveTaskToSwimLane(u"b"_s, board.second());
    board.settle();
    QCOMPARE(board.cell(board.todo(), board.second()), u"b"_s);
    QCOMPARE(board.storedCell(board.todo()), u"a:0 c:1 d:2"_s);
    QCOMPARE(board.storedCell(board.todo(), board.second()), u"b:0"_s);
    QVERIFY(moved.objects.isEmpty());
    QVERIFY(board.desktop.sounds.played.empty());
}

/** A key held down: what is dropped must not be announced as done. */
void TestMoves::directMovesDoNotPileUp()
{
    FourTasks board;
    const auto moveDown = [&board](int position) {
        board.notifications.post(notifications::TaskDirectMoveRequested, {},
                                 {{u"task"_s, u"a"_s},
                                  {u"columnId"_s, QVariant::fromValue(board.todo())},
                                  {u"swimLaneId"_s, QVariant::fromValue(board.first())},
                                  {u"position"_s, position}});
    };
    moveDown(1);
    QVERIFY(board->didActOnLastDirectMove());
    board.advance(0.05);
    moveDown(2);
    QVERIFY(!board->didActOnLastDirectMove());
    QCOMPARE(board.cell(board.todo()), u"b a c d"_s);
    board.advance(0.1);
    moveDown(2);
    QCOMPARE(board.cell(board.todo()), u"b c a d"_s);
}

void TestMoves::removingATaskForgetsAllOfIt()
{
    FourTasks board;
    board->selectTask(u"a"_s, false);
    board->focusTask(u"a"_s);
    board->assignEisenhowerPriority(u"a"_s, EisenhowerPriority::DoNow);
    board->moveTask(board.task(u"a"_s), board.doing());
    board->removeTask(u"a"_s);
    board.settle();
    QVERIFY(!board.task(u"a"_s));
    QVERIFY(!board->isTaskFocusActive());
    QVERIFY(board->selectionManager().selectedTaskIds().isEmpty());
    QCOMPARE(board.stateOf(u"a"_s), State::Idle);
    QCOMPARE(board.storedIds(), u"b c d"_s);
    QVERIFY(board.store->loadAllEisenhowerPriorities().isEmpty());

    // It is its source that says what exists: another fetch may bring it back.
    board.organize(omniFocusTasks(u"a b c d"_s));
    QVERIFY(board.task(u"a"_s));
}

VANTREL_REGISTER_TEST(TestMoves)

} // namespace vantrel::test

#include "test_moves.moc"
