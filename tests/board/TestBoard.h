#pragma once

#include "board/BoardState.h"
#include "feedback/Announcer.h"
#include "feedback/SoundManager.h"
#include "feedback/ToastManager.h"
#include "persistence/BackgroundSaveIndicator.h"
#include "sources/TaskManagerFactory.h"
#include "sources/TaskRepository.h"
#include "sources/plaintext/PlainTextTaskManager.h"
#include "support/FakeDesktop.h"
#include "support/FakeTaskManager.h"
#include "support/TestStore.h"

#include <memory>
#include <vector>

namespace vantrel::test {

/**
 * A board on a store of its own, with the default columns "To Do", "Doing" and "Done" and the swimlanes
 * "Default" and "Second". OmniFocus and Reminders do what the test tells them; plain text is the real source.
 */
class TestBoard
{
public:
    enum class Seed { Board, Nothing };

    explicit TestBoard(Seed seed = Seed::Board);
    ~TestBoard();
    Q_DISABLE_COPY_MOVE(TestBoard)

    BoardState &operator*() { return *m_board; }
    BoardState *operator->() { return m_board.get(); }
    TaskRepository &repository() { return *m_repository; }
    PlainTextTaskManager &plainText() { return *m_plainText; }
    TaskManagerFactory &managers() { return *m_factory; }

    /** What the board needs, for a test that makes one of its own. */
    BoardServices services();
    /** Runs all that is due now, on this thread and the others, until nothing is under way. */
    void settle();
    /** Lets that much time pass, and settles. */
    void advance(double seconds);
    void organize(const WorkItems &tasks, TaskSources answered = AllTaskSources);
    /** Ends the program and starts it again on the same store, with an empty board. */
    void restart();

    ColumnId todo() const { return m_board->columnManager().columns().at(0).id; }
    ColumnId doing() const { return m_board->columnManager().columns().at(1).id; }
    ColumnId done() const { return m_board->columnManager().columns().at(2).id; }
    SwimLaneId first() const { return m_board->swimLaneManager().swimLanes().at(0).id; }
    SwimLaneId second() const { return m_board->swimLaneManager().swimLanes().at(1).id; }

    /** The ids of a cell in the first swimlane, unless another is given: "a b c". */
    QString cell(ColumnId column, std::optional<SwimLaneId> swimLane = {}) const;
    /** The stored rows of a cell in their order: "a:0 b:1". */
    QString storedCell(ColumnId column, std::optional<SwimLaneId> swimLane = {});
    /** All ids with a row, sorted. */
    QString storedIds();
    std::optional<PersistentTaskPosition> storedRow(const QString &id) { return store.position(id); }
    /** Stores the ids as a cell of the first swimlane, numbered from 0. */
    void storeCell(ColumnId column, const QStringList &ids);
    /** Numbers as they are in memory: "a:0 b:1". */
    QString numbers(ColumnId column) const;

    TestStore store;
    NotificationCenter notifications;
    FakeDesktop desktop;
    Announcer announcer{desktop.announcements, store.clock};
    SoundManager sounds{desktop.sounds, announcer, store.defaults, store.clock};
    ToastManager toasts{announcer, store.clock};
    BackgroundSaveIndicator saveIndicator{store.clock};
    FakeTaskManager omniFocus{TaskManagerType::OmniFocus, store.clock};
    FakeTaskManager reminders{TaskManagerType::Reminders, store.clock};

private:
    void start();
    void stop();

    std::unique_ptr<PlainTextTaskManager> m_plainText;
    std::unique_ptr<TaskManagerFactory> m_factory;
    std::unique_ptr<TaskRepository> m_repository;
    std::unique_ptr<BoardState> m_board;
};

} // namespace vantrel::test
