#include "TestBoard.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** Columns and swimlanes that change or go away under their tasks. */
class TestReshaping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_board = std::make_unique<TestBoard>();
    }
    void cleanup() { m_board.reset(); }

    void tasksOfARemovedColumnKeepTheirSwimLanesOrderAndBlocks();
    void tasksOfARemovedCompletedColumnStayComplete();
    void aMoveStillBeingStoredDoesNotComeBackToARemovedColumn();
    void rowsOfASilentSourceSurviveTheirColumn();
    void whatTheBoardCannotDoWithoutStays();
    void aColumnThatTurnsCompletedCompletesItsTasksHere();
    void columnsMoveWithinTheOrderOfTypes();

    void tasksOfARemovedSwimLaneGoBehindThoseOfTheDefaultOne();
    void aTaskNotYetStoredSurvivesItsSwimLane();
    void rowsOfASilentSourceSurviveTheirSwimLane();
    void isolationEndsBeforeTheSwimLanesChange();

private:
    BoardState &board() { return **m_board; }
    ColumnId addReview(ColumnType type = ColumnType::Active)
    {
        const Column review = aColumn(u"Review"_s, type);
        board().addColumn(review);
        return review.id;
    }
    void move(const QString &id, ColumnId to, std::optional<SwimLaneId> lane = {})
    {
        board().moveTask(board().task(id), to, lane);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestBoard> m_board;
};

void TestReshaping::tasksOfARemovedColumnKeepTheirSwimLanesOrderAndBlocks()
{
    const ColumnId review = addReview();
    m_board->organize(makeTasks(u"a b c d e"_s));
    move(u"a"_s, m_board->doing());
    for (const QString &id : {u"c"_s, u"b"_s})
        move(id, review);
    move(u"d"_s, review, m_board->second());
    m_board->settle();
    board().updateTaskBlockedStatus(u"b"_s, true);
    m_board->store->saveTaskAsBlocked(u"b"_s, u"waits for Anna"_s);

    board().removeColumn(review);
    m_board->settle();

    QCOMPARE(m_board->cell(m_board->doing()), u"a c b"_s);
    QCOMPARE(m_board->cell(m_board->doing(), m_board->second()), u"d"_s);
    QCOMPARE(m_board->cell(m_board->todo()), u"e"_s);
    QCOMPARE(m_board->storedCell(m_board->doing()), u"a:0 c:1 b:2"_s);
    QCOMPARE(m_board->storedCell(m_board->doing(), m_board->second()), u"d:0"_s);
    QCOMPARE(m_board->storedRow(u"b"_s)->blockReason, u"waits for Anna"_s);
    QVERIFY(!board().columnManager().column(review));

    m_board->restart();
    m_board->organize(makeTasks(u"a b c d e"_s));
    QCOMPARE(m_board->cell(m_board->doing()), u"a c b"_s);
    QVERIFY(board().task(u"b"_s)->isBlocked());
}

void TestReshaping::tasksOfARemovedCompletedColumnStayComplete()
{
    const ColumnId archive = addReview(ColumnType::Completed);
    const WorkItems tasks = makeTasks(u"a b"_s);
    tasks[0]->setComplete(true);
    m_board->storeCell(archive, {u"a"_s});
    m_board->organize(tasks);
    QCOMPARE(m_board->cell(archive), u"a"_s);

    board().removeColumn(archive);
    m_board->settle();

    QCOMPARE(m_board->storedCell(m_board->done()), u"a:0"_s);
    QVERIFY(tasks[0]->isComplete());
    QVERIFY(m_board->omniFocus.requests.isEmpty());
}

void TestReshaping::aMoveStillBeingStoredDoesNotComeBackToARemovedColumn()
{
    const ColumnId review = addReview();
    m_board->organize(makeTasks(u"a b c"_s));

    for (const QString &id : {u"a"_s, u"b"_s, u"c"_s})
        move(id, review);
    board().removeColumn(review);
    m_board->settle();

    QCOMPARE(m_board->storedCell(review), QString());
    QCOMPARE(m_board->storedCell(m_board->doing()), u"a:0 b:1 c:2"_s);
}

/** The source does not answer today: its rows are all that knows of its tasks. */
void TestReshaping::rowsOfASilentSourceSurviveTheirColumn()
{
    const ColumnId review = addReview();
    m_board->storeCell(review, {u"omni"_s});
    m_board->store->saveTaskAsBlocked(u"omni"_s, u"rain"_s);
    m_board->organize(makeTasks(u"plaintext-p"_s), TaskSource::PlainText);

    board().removeColumn(review);
    m_board->settle();
    m_board->organize(makeTasks(u"plaintext-p omni"_s));

    QCOMPARE(m_board->cell(m_board->doing()), u"omni"_s);
    QCOMPARE(board().task(u"omni"_s)->blockReason(), u"rain"_s);
}

void TestReshaping::whatTheBoardCannotDoWithoutStays()
{
    m_board->organize(makeTasks(u"a b"_s));

    board().removeColumn(m_board->todo());
    board().removeColumn(ColumnId::create());
    board().removeSwimLane(m_board->first());
    board().removeSwimLane(SwimLaneId::create());
    m_board->settle();

    QCOMPARE(board().columnManager().columns().size(), size_t(3));
    QCOMPARE(board().swimLaneManager().swimLanes().size(), size_t(2));
    QCOMPARE(m_board->storedCell(m_board->todo()), u"a:0 b:1"_s);
}

void TestReshaping::aColumnThatTurnsCompletedCompletesItsTasksHere()
{
    const ColumnId review = addReview();
    m_board->organize(makeTasks(u"a b"_s));
    move(u"a"_s, review);
    m_board->settle();
    Column archive = *board().columnManager().column(review);

    archive.type = ColumnType::Completed;
    board().updateColumn(archive);
    m_board->settle();
    QVERIFY(board().task(u"a"_s)->isComplete());
    QVERIFY(!board().task(u"b"_s)->isComplete());
    QCOMPARE(board().columnManager().indexOf(review), 3);
    QCOMPARE(m_board->storedCell(review), u"a:0"_s);

    archive.name = u"Renamed"_s;
    board().updateColumn(archive);
    QVERIFY(board().task(u"a"_s)->isComplete());

    archive.type = ColumnType::Queue;
    board().updateColumn(archive);
    m_board->settle();
    QVERIFY(!board().task(u"a"_s)->isComplete());
    QCOMPARE(board().columnManager().indexOf(review), 1);
    QVERIFY(m_board->omniFocus.requests.isEmpty());
}

void TestReshaping::columnsMoveWithinTheOrderOfTypes()
{
    const ColumnId review = addReview();
    QSignalSpy changes(&board(), &BoardState::changed);

    QVERIFY(board().moveColumn(0, 2));
    QCOMPARE(board().columnManager().indexOf(review), 1);
    QVERIFY(board().moveColumn(1, 1));
    m_board->store.clock.advance(0.0);
    QCOMPARE(changes.count(), 1);

    QVERIFY(!board().moveColumn(3, 0));
    QVERIFY(!board().moveColumn(0, 4));
    QVERIFY(!board().moveColumn(-1, 0));
    QVERIFY(LogWriter::recentMessages().contains(u"Column move validation failed"_s));
    QCOMPARE(board().columnManager().indexOf(review), 1);
}

void TestReshaping::tasksOfARemovedSwimLaneGoBehindThoseOfTheDefaultOne()
{
    const SwimLaneId second = m_board->second();
    m_board->organize(makeTasks(u"a b c d"_s));
    move(u"b"_s, m_board->todo(), second);
    move(u"a"_s, m_board->todo(), second);
    move(u"d"_s, m_board->doing(), second);
    m_board->settle();
    m_board->store->saveTaskAsBlocked(u"a"_s, u"rain"_s);
    int countsTold = 0;
    m_board->notifications.observe(notifications::SwimLaneWIPCountsChanged, this,
                                   [&countsTold](const Notification &) { ++countsTold; });

    board().removeSwimLane(second);
    QCOMPARE(countsTold, 1);
    m_board->settle();

    QCOMPARE(m_board->cell(m_board->todo()), u"c b a"_s);
    QCOMPARE(m_board->storedCell(m_board->todo()), u"c:0 b:1 a:2"_s);
    QCOMPARE(m_board->storedCell(m_board->doing()), u"d:0"_s);
    QCOMPARE(m_board->storedRow(u"a"_s)->blockReason, u"rain"_s);
    m_board->restart();
    m_board->organize(makeTasks(u"a b c d"_s));
    QCOMPARE(m_board->cell(m_board->todo()), u"c b a"_s);
    QCOMPARE(board().swimLaneManager().swimLanes().size(), size_t(1));
}

void TestReshaping::aTaskNotYetStoredSurvivesItsSwimLane()
{
    const SwimLaneId second = m_board->second();
    board().addTask(makeTask(u"new"_s), m_board->doing(), second);
    QCOMPARE(m_board->storedIds(), QString());

    board().removeSwimLane(second);
    m_board->settle();

    QCOMPARE(m_board->cell(m_board->doing()), u"new"_s);
    QCOMPARE(board().taskPositions().find(u"new"_s)->swimLaneId, m_board->first());
    QCOMPARE(m_board->storedCell(m_board->doing()), u"new:0"_s);
}

void TestReshaping::rowsOfASilentSourceSurviveTheirSwimLane()
{
    const SwimLaneId second = m_board->second();
    m_board->store->saveTaskPosition(u"omni"_s, m_board->doing(), 0, second);
    m_board->organize(makeTasks(u"plaintext-p"_s), TaskSource::PlainText);

    board().removeSwimLane(second);
    m_board->settle();
    m_board->organize(makeTasks(u"plaintext-p omni"_s));

    QCOMPARE(board().taskPositions().find(u"omni"_s)->swimLaneId, m_board->first());
    QCOMPARE(m_board->cell(m_board->doing()), u"omni"_s);
}

void TestReshaping::isolationEndsBeforeTheSwimLanesChange()
{
    const SwimLane third = aSwimLane(u"Third"_s);
    board().isolateSwimLane(m_board->second());
    board().addSwimLane(third);
    QVERIFY(!board().isSwimLaneIsolationActive());
    for (const SwimLane &lane : board().swimLaneManager().swimLanes()) {
        QVERIFY(lane.isExpanded);
    }

    board().isolateSwimLane(m_board->second());
    board().removeSwimLane(m_board->second());
    QVERIFY(!board().isSwimLaneIsolationActive());
    QVERIFY(m_board->second() == third.id);
    QVERIFY(board().swimLaneManager().defaultSwimLane().isExpanded);
}

VANTREL_REGISTER_TEST(TestReshaping)

} // namespace vantrel::test

#include "test_reshaping.moc"
