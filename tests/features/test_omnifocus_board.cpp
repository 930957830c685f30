#include "features/Story.h"
#include "support/ScriptedOmniFocus.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

namespace {

using State = TaskMoveStatus::State;

const ScriptOutcome::Failure Denied{-1743, u"Not authorised to send Apple events to OmniFocus."_s};
const ScriptOutcome::Failure NotRunning{-600, u"Application isn't running."_s};
const ScriptOutcome::Failure ProRequired{-1743, u"AppleScript is a Pro feature."_s};

/** A board with plain text tasks, and with OmniFocus behind the real bridge. */
struct Board : Story
{
    explicit Board(const std::optional<ScriptOutcome::Failure> &failure = {}, bool hasPlainText = true)
    {
        scripts = &app;
        app.failure = failure;
        for (const QString &name : {u"milk"_s, u"bread"_s}) {
            ScriptedOmniFocus::Task task;
            task.id = u"id-" + name;
            task.name = name;
            app.tasks.push_back(task);
        }
        begin();
        (*this)->managers.setTaskSourceConfiguration(
            {.isOmniFocusEnabled = true, .isPlainTextEnabled = hasPlainText});
        settle();
        advance(1.0);
    }

    /** A refresh that asks the sources. */
    void refreshAnew()
    {
        advance(31.0);
        refresh();
    }

    TaskMoveStatus status(const QString &name)
    {
        return (*this)->board->taskOperationStatus(task(name)->id());
    }
    bool isDoneInOmniFocus(const QString &name) { return !app.find(u"id-" + name)->completed.isEmpty(); }

    ScriptedOmniFocus app;
};

} // namespace

/** OmniFocus on the board, from the gesture to the script and back. */
class TestOmniFocusBoard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesReachOmniFocus()
    {
        Board board;
        board.createTask(u"own"_s);
        board.move(u"milk"_s, u"Done"_s);
        board.move(u"own"_s, u"Done"_s);
        board.settle();
        QVERIFY(board.isDoneInOmniFocus(u"milk"_s));
        QCOMPARE(board.status(u"milk"_s).state, State::Success);

        board.move(u"milk"_s, u"To Do"_s);
        board.settle();
        QVERIFY(!board.isDoneInOmniFocus(u"milk"_s));
        board.refreshAnew();
        QVERIFY(board.shownIn(u"To Do"_s).contains(u"milk"_s));
    }

    void aRefusedCompletionWaitsOnTheCard_data()
    {
        QTest::addColumn<ScriptOutcome::Failure>("failure");
        QTest::addColumn<QString>("reason");
        QTest::newRow("denied") << Denied << u"Vantrel does not have permission to control OmniFocus."_s;
        QTest::newRow("not running") << NotRunning << u"OmniFocus isn't running."_s;
        QTest::newRow("no Pro") << ProRequired << u"OmniFocus Pro is required for scripting."_s;
    }

    /** The card stays where the user put it, says what is wrong, and offers to try again. */
    void aRefusedCompletionWaitsOnTheCard()
    {
        QFETCH(const ScriptOutcome::Failure, failure);
        QFETCH(const QString, reason);
        Board board;
        board.app.failure = failure;
        board.move(u"milk"_s, u"Done"_s);
        board.advance(1.5);

        QCOMPARE(board.shownIn(u"Done"_s), QStringList{u"milk"_s});
        QCOMPARE(board.status(u"milk"_s).state, State::Failure);
        QCOMPARE(board.status(u"milk"_s).error, reason);
        QCOMPARE(board.toast(), u"Failed to update OmniFocus for task milk: "_s + reason);

        board.app.failure.reset();
        board->board->retryFailedOperation(u"id-milk"_s);
        board.settle();
        QVERIFY(board.isDoneInOmniFocus(u"milk"_s));
        QVERIFY(board.task(u"milk"_s)->isComplete());
        board.advance(4.0);
        QCOMPARE(board.status(u"milk"_s).state, State::Idle);
    }

    /** The system's question is answered while the first attempt waits. */
    void permissionGivenMeanwhileIsNoFailure()
    {
        Board board;
        board.app.failure = Denied;
        board.move(u"milk"_s, u"Done"_s);
        board.settle();
        QCOMPARE(board.status(u"milk"_s).state, State::Doing);
        board.app.failure.reset();
        board.advance(1.5);
        QVERIFY(board.isDoneInOmniFocus(u"milk"_s));
        QCOMPARE(board.toast(), QString());
    }

    /** The other sources' tasks stand, the user hears why the rest is missing, and its places are kept. */
    void aFailingOmniFocusCostsOnlyItsOwnTasks()
    {
        Board board;
        board.createTask(u"own"_s);
        board.move(u"bread"_s, u"Doing"_s);
        board.settle();
        board.app.failure = NotRunning;
        board.refreshAnew();
        QCOMPARE(board.shownIn(u"To Do"_s) + board.shownIn(u"Doing"_s), QStringList{u"own"_s});
        QVERIFY2(board.toast().startsWith(u"The tasks of OmniFocus are missing: Vantrel needs permission"),
                 qPrintable(board.toast()));
        QCOMPARE(board.viewModels().taskList()->screen(), TaskListViewModel::Screen::Content);

        board.app.failure.reset();
        board.refresh();
        QCOMPARE(board.shownIn(u"Doing"_s), QStringList{u"bread"_s});
    }

    /** OmniFocus alone, and no permission from the start: the way to give it, not a dead end. */
    void aFirstStartWithoutPermissionAsksForIt()
    {
        Board board(Denied, false);
        TaskListViewModel &list = *board.viewModels().taskList();
        board.viewModels().contentAppeared();
        board.settle();
        QCOMPARE(list.screen(), TaskListViewModel::Screen::Permission);
        board.app.failure.reset();
        list.retry();
        board.settle();
        QCOMPARE(list.screen(), TaskListViewModel::Screen::Content);
        QCOMPARE(board.shownIn(u"To Do"_s).size(), 2);
    }

    /** What another program changes shows on the card that is there, with the board's own marks on it. */
    void aRefreshChangesTheCardThatIsThere()
    {
        Board board;
        const WorkItemPtr card = board.task(u"milk"_s);
        board.block(u"milk"_s, u"shop is closed"_s);
        board.settle();
        board.app.find(u"id-milk"_s)->name = u"oat milk"_s;
        board.refreshAnew();
        QCOMPARE(board.task(u"oat milk"_s), card);
        QCOMPARE(card->blockReason(), u"shop is closed"_s);
    }
};

VANTREL_REGISTER_TEST(TestOmniFocusBoard)
#include "test_omnifocus_board.moc"
