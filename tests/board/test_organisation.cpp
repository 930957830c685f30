#include "TestBoard.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"
#include "support/Await.h"
#include "support/RawDatabase.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

WorkItemPtr makeReminder(const QString &id)
{
    WorkItemFields fields;
    fields.id = id;
    return std::make_shared<ReminderWorkItem>(fields, ReminderWorkItem::Details());
}

constexpr TaskSources WithoutOmniFocus{TaskSource::PlainText, TaskSource::Reminders};

} // namespace

/** What a user would lose if the board and its store came apart. */
class TestOrganisation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSourceThatFailsLosesNothing();
    void onlyAnAnswerEmptiesTheStore();
    void aStoreThatCannotBeReadIsLeftAlone();
    void aSecondBoardTouchesNothing();
    void aCardWhoseRowIsHealedMayBeMovedMeanwhile();
    void aColumnRemovedDuringARefreshTakesNoTask();
    void aCardMovedJustBeforeARefreshStays();
    void theLastOfSeveralRefreshesCounts();
    void aTaskDeletedDuringARefreshStaysDeleted();
    void anUnblockedTaskIsNotBlockedAgain();
    void aQuadrantGivenDuringARefreshStays();
    void aBlockedReminderStaysBlocked();
    void aBoardThatStartsOverIsCopiedFirst();
    void aTaskInALostSwimLaneIsStillSeen();
    void theBoardIsNeverEmptyInBetween();
    void anUnchangedBoardIsNotWrittenAgain();
    void focusEndsWithItsTask();
};

/** OmniFocus is not running. Its cards would lose their columns, block reasons and quadrants. */
void TestOrganisation::aSourceThatFailsLosesNothing()
{
    TestBoard board;
    board.storeCell(board.doing(), {u"plaintext-p"_s, u"omni"_s});
    board.store->saveTaskAsBlocked(u"omni"_s, u"waiting for Anna"_s);
    board.store->saveEisenhowerPriority(u"omni"_s, EisenhowerPriority::DoNow);
    board.organize(makeTasks(u"plaintext-p"_s), WithoutOmniFocus);
    QCOMPARE(board.cell(board.doing()), u"plaintext-p"_s);

    board.restart();
    board.organize(makeTasks(u"omni plaintext-p"_s));
    QCOMPARE(board.cell(board.doing()), u"plaintext-p omni"_s);
    const WorkItemPtr task = board->task(u"omni"_s);
    QVERIFY(task->isBlocked());
    QCOMPARE(task->blockReason(), u"waiting for Anna"_s);
    QCOMPARE(task->eisenhowerPriority(), EisenhowerPriority::DoNow);
}

void TestOrganisation::onlyAnAnswerEmptiesTheStore()
{
    TestBoard board;
    board.organize(makeTasks(u"omni plaintext-p"_s));
    board.organize({}, TaskSources());
    QCOMPARE(board.storedIds(), u"omni plaintext-p"_s);
    board.organize({}, TaskSource::PlainText);
    QCOMPARE(board.storedIds(), u"omni"_s);
    board.organize({});
    QCOMPARE(board.storedIds(), QString());
    QCOMPARE(board->taskPositions().count(), 0);
}

/** Every card would go to the first column, and be stored there over the rows that could not be read. */
void TestOrganisation::aStoreThatCannotBeReadIsLeftAlone()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    board->moveTask(board->task(u"b"_s), board.doing());
    board.settle();
    const RawDatabase database(board.store.databasePath());
    QVERIFY(database.run(u"ALTER TABLE eisenhowerAssignments RENAME TO hidden"_s));

    board.organize(makeTasks(u"b n"_s));
    board.organize(makeTasks(u"b n"_s));
    QCOMPARE(board.cell(board.doing()), u"b"_s);
    QCOMPARE(board.cell(board.todo()), u"n"_s);
    QCOMPARE(board.toasts.style(), ToastManager::ToastStyle::Error);
    QCOMPARE(board.desktop.announcements.announcements.size(), 1u + 1u);

    QVERIFY(database.run(u"ALTER TABLE hidden RENAME TO eisenhowerAssignments"_s));
    QCOMPARE(board.storedIds(), u"a b"_s);
    QCOMPARE(board.storedCell(board.doing()), u"b:0"_s);
}

/** A settings window with a board of its own would answer a priority by deleting every row. */
void TestOrganisation::aSecondBoardTouchesNothing()
{
    TestBoard board;
    const BoardState other(board.services(), makeTasks(u"a"_s), BoardState::Observes::Nothing);
    board.settle();
    board.organize(makeTasks(u"a b"_s));
    board->assignEisenhowerPriority(u"a"_s, EisenhowerPriority::Schedule);
    board.settle();
    QCOMPARE(board.storedIds(), u"a b"_s);
    QCOMPARE(board.store->loadAllEisenhowerPriorities().size(), 1);
}

/** The refresh would heal the row that it has read, over the move. */
void TestOrganisation::aCardWhoseRowIsHealedMayBeMovedMeanwhile()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    board.store->saveTaskPosition(u"b"_s, board.todo(), 9, board.first());
    board->updateTasks(makeTasks(u"a b n"_s));
    board->moveTask(board->task(u"b"_s), board.doing());
    board->moveTask(board->task(u"n"_s), board.doing(), {}, 0);
    board.settle();
    QCOMPARE(board.cell(board.doing()), u"n b"_s);
    QCOMPARE(board.storedCell(board.doing()), u"n:0 b:1"_s);
}

void TestOrganisation::aColumnRemovedDuringARefreshTakesNoTask()
{
    TestBoard board;
    const Column inbox = aColumn(u"Inbox"_s, ColumnType::Queue);
    board->addColumn(inbox);
    const ColumnId todo = board.todo();
    board.organize(makeTasks(u"a b"_s));
    board->organizeTasks(makeTasks(u"a b n"_s));
    board->removeColumn(todo);
    board.settle();
    QCOMPARE(board.cell(inbox.id), u"a b n"_s);
    QCOMPARE(board.storedCell(inbox.id), u"a:0 b:1 n:2"_s);
}

/** The move waits to be stored when the refresh reads: the card would jump back. */
void TestOrganisation::aCardMovedJustBeforeARefreshStays()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    for (int i = 0; i < 20; ++i) {
        board->moveTask(board->task(u"b"_s), i % 2 ? board.todo() : board.doing(), {}, 0);
    }
    board->moveTask(board->task(u"b"_s), board.doing());
    board->updateTasks(makeTasks(u"a b"_s));
    board.settle();
    QCOMPARE(board.cell(board.doing()), u"b"_s);
    QCOMPARE(board.storedCell(board.doing()), u"b:0"_s);
}

void TestOrganisation::theLastOfSeveralRefreshesCounts()
{
    TestBoard board;
    QSignalSpy organized(&*board, &BoardState::organized);
    board->organizeTasks(makeTasks(u"a b"_s));
    board->organizeTasks({}, TaskSources());
    board->organizeTasks(makeTasks(u"b c"_s));
    board.settle();
    QCOMPARE(organized.count(), 1);
    QCOMPARE(board.cell(board.todo()), u"b c"_s);
    QCOMPARE(board.storedIds(), u"b c"_s);
}

/** Its row would be written back, and be shown for ever as an "Imported Task". */
void TestOrganisation::aTaskDeletedDuringARefreshStaysDeleted()
{
    TestBoard board;
    const WorkItems tasks = makeTasks(u"plaintext-a plaintext-b"_s);
    board.organize(tasks);
    board->selectTask(u"plaintext-a"_s, false);
    board->assignEisenhowerPriority(u"plaintext-a"_s, EisenhowerPriority::DoNow);
    board->organizeTasks(tasks);
    QVERIFY(board->removePlainTextTasks({u"plaintext-a"_s}));
    board.settle();
    board.organize(tasks);
    board->moveTask(tasks.front(), board.doing());
    board.settle();

    QCOMPARE(board->taskCount(), 1);
    QVERIFY(!board->findTaskById(u"plaintext-a"_s));
    QCOMPARE(board.storedIds(), u"plaintext-b"_s);
    QVERIFY(board->selectionManager().selectedTaskIds().isEmpty());
    QVERIFY(board.store->loadAllEisenhowerPriorities().isEmpty());
}

void TestOrganisation::anUnblockedTaskIsNotBlockedAgain()
{
    TestBoard board;
    const WorkItems tasks = makeTasks(u"a"_s);
    board.organize(tasks);
    board.store->saveTaskAsBlocked(u"a"_s, u"why"_s);
    board->organizeTasks(tasks);
    board->updateTaskBlockedStatus(u"a"_s, false);
    board.store->removeTaskFromBlocked(u"a"_s);
    board.settle();
    QVERIFY(!board->task(u"a"_s)->isBlocked());
    QVERIFY(board.store->getBlockedTaskIdsFromSQLite().isEmpty());
}

void TestOrganisation::aQuadrantGivenDuringARefreshStays()
{
    TestBoard board;
    // One that does not answer the assignment by another run.
    BoardState quiet(board.services(), makeTasks(u"a b"_s), BoardState::Observes::Nothing);
    board.settle();
    quiet.assignEisenhowerPriority(u"b"_s, EisenhowerPriority::Delegate);
    quiet.organizeTasks(quiet.tasks());
    await(board.store->drained());
    quiet.assignEisenhowerPriority(u"a"_s, EisenhowerPriority::Schedule);
    quiet.removeEisenhowerPriority(u"b"_s);
    board.settle();
    QCOMPARE(quiet.task(u"a"_s)->eisenhowerPriority(), EisenhowerPriority::Schedule);
    QCOMPARE(quiet.task(u"b"_s)->eisenhowerPriority(), EisenhowerPriority::Unsorted);
}

/** No source can tell a reminder's block: written back from the item, it would be gone with the next load. */
void TestOrganisation::aBlockedReminderStaysBlocked()
{
    TestBoard board;
    board.storeCell(board.todo(), {u"reminder_x"_s, u"reminder_r"_s});
    board.store->saveTaskAsBlocked(u"reminder_r"_s, u"shop is closed"_s);
    board.organize({makeReminder(u"reminder_r"_s)});
    QVERIFY(board->task(u"reminder_r"_s)->isBlocked());

    board.restart();
    board.organize({makeReminder(u"reminder_r"_s)});
    QCOMPARE(board->task(u"reminder_r"_s)->blockReason(), u"shop is closed"_s);
}

void TestOrganisation::aBoardThatStartsOverIsCopiedFirst()
{
    TestBoard board;
    board.store->saveTaskPosition(u"a"_s, ColumnId::create(), 3, board.first());
    board.store->saveTaskPosition(u"gone"_s, ColumnId::create(), 0, board.first());
    board.organize(makeTasks(u"a"_s));
    QCOMPARE(board.storedIds(), u"a"_s);

    const QStringList copies =
        QDir(board.store.directory.path()).entryList({u"devTaskPositions.sqlite.backup-*"_s});
    QCOMPARE(copies.size(), 1);
    const RawDatabase copy(board.store.directory.filePath(copies.first()));
    QCOMPARE(copy.rows(u"SELECT id FROM taskPositions ORDER BY id"_s), QStringList({u"a"_s, u"gone"_s}));
}

void TestOrganisation::aTaskInALostSwimLaneIsStillSeen()
{
    TestBoard board;
    const SwimLaneId lost = SwimLaneId::create();
    board.store->saveTaskPosition(u"a"_s, board.doing(), 0, lost);
    board.organize(makeTasks(u"a"_s));
    QCOMPARE(board.cell(board.doing()), u"a"_s);
    QCOMPARE(board->taskPositions().find(u"a"_s)->swimLaneId, lost);
    QCOMPARE(board.storedRow(u"a"_s)->swimLaneId, lost);

    board->moveTask(board->task(u"a"_s), board.todo());
    board.settle();
    QCOMPARE(board.storedCell(board.todo()), u"a:0"_s);
}

void TestOrganisation::theBoardIsNeverEmptyInBetween()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    QStringList seen;
    QObject::connect(&*board, &BoardState::changed, &*board, [&] { seen.append(board.cell(board.todo())); });
    board->organizeTasks(makeTasks(u"a b c"_s));
    QCOMPARE(board.cell(board.todo()), u"a b"_s);
    board.settle();
    QVERIFY(!seen.contains(QString()));
    QCOMPARE(seen.last(), u"a b c"_s);
}

/** Each refresh would wear the disk, and every task would seem to have been moved just now. */
void TestOrganisation::anUnchangedBoardIsNotWrittenAgain()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    const Date stored = board.storedRow(u"a"_s)->lastUpdated;
    board.advance(60.0);
    const quint64 revision = board->cellRevision({board.first(), board.todo()});
    board.organize(board->tasks());
    QCOMPARE(board.storedRow(u"a"_s)->lastUpdated, stored);
    QCOMPARE(board->cellRevision({board.first(), board.todo()}), revision);
}

void TestOrganisation::focusEndsWithItsTask()
{
    TestBoard board;
    board.organize(makeTasks(u"a b"_s));
    board->focusTask(u"a"_s);
    const size_t soundsBefore = board.desktop.sounds.played.size();
    board.organize(makeTasks(u"b"_s));
    QVERIFY(!board->isTaskFocusActive());
    QCOMPARE(board.desktop.sounds.played.size(), soundsBefore);
}

VANTREL_REGISTER_TEST(TestOrganisation)

} // namespace vantrel::test

#include "test_organisation.moc"
