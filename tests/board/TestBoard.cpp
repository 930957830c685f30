#include "TestBoard.h"

#include "support/Await.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

QString numbered(const std::vector<TaskPosition> &places)
{
    QStringList texts;
    for (const TaskPosition &place : places) {
        texts.append(place.taskId + u':' + QString::number(place.position));
    }
    return texts.join(u' ');
}

} // namespace

TestBoard::TestBoard(Seed seed)
{
    if (seed == Seed::Board) {
        SwimLane second = SwimLane::defaultSwimLane();
        second.name = u"Second"_s;
        second.stableId = u"second"_s;
        store->saveBoardConfiguration(Column::defaultColumns());
        store->saveSwimLaneConfiguration({SwimLane::defaultSwimLane(), second});
    }
    start();
}

TestBoard::~TestBoard()
{
    stop();
}

void TestBoard::start()
{
    m_plainText = std::make_unique<PlainTextTaskManager>(*store, notifications, store.clock);
    m_factory = std::make_unique<TaskManagerFactory>(store.defaults, omniFocus, reminders, *m_plainText);
    m_repository = std::make_unique<TaskRepository>(*m_factory, *store, notifications, store.clock);
    m_board = std::make_unique<BoardState>(services());
}

void TestBoard::stop()
{
    settle();
    m_board.reset();
    m_repository.reset();
    m_factory.reset();
    m_plainText.reset();
}

void TestBoard::restart()
{
    stop();
    store.reopen();
    start();
}

BoardServices TestBoard::services()
{
    return {store.clock,   notifications, store.defaults, *store, saveIndicator,  *m_factory,
            *m_repository, sounds,        announcer,      toasts, desktop.screen, desktop.clipboard};
}

void TestBoard::settle()
{
    // Each round takes all that is under way one wait further; moves are stored one a round.
    for (int round = 0; round < 12; ++round) {
        store.clock.advance(0.0);
        await(store->drained());
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        if (m_board->persistenceQueue().isProcessing()) {
            round = 0;
        }
    }
}

void TestBoard::advance(double seconds)
{
    settle();
    store.clock.advance(seconds);
    settle();
}

void TestBoard::organize(const WorkItems &tasks, TaskSources answered)
{
    m_board->organizeTasks(tasks, answered);
    settle();
}

QString TestBoard::cell(ColumnId column, std::optional<SwimLaneId> swimLane) const
{
    return taskIds(m_board->cell(swimLane.value_or(first()), column)).join(u' ');
}

QString TestBoard::numbers(ColumnId column) const
{
    return numbered(m_board->taskPositions().placesIn({first(), column}));
}

QString TestBoard::storedCell(ColumnId column, std::optional<SwimLaneId> swimLane)
{
    std::vector<TaskPosition> places;
    for (const PersistentTaskPosition &row : store->loadAllTaskPositions()) {
        if (row.columnId == column && row.swimLaneId == swimLane.value_or(first())) {
            places.push_back({row.id, row.columnId, *row.swimLaneId, row.position});
        }
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const TaskPosition &a, const TaskPosition &b) { return a.position < b.position; });
    return numbered(places);
}

QString TestBoard::storedIds()
{
    QStringList ids;
    for (const PersistentTaskPosition &row : store->loadAllTaskPositions()) {
        ids.append(row.id);
    }
    ids.sort();
    return ids.join(u' ');
}

void TestBoard::storeCell(ColumnId column, const QStringList &ids)
{
    for (int number = 0; const QString &id : ids) {
        store->saveTaskPosition(id, column, number++, first());
    }
}

} // namespace vantrel::test
