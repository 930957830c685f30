#include "foundations/Log.h"
#include "foundations/SerialQueue.h"
#include "persistence/BackgroundSaveIndicator.h"
#include "persistence/InstanceLock.h"
#include "persistence/PersistenceQueue.h"
#include "support/Await.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** How writes find their way to the store: the database thread, the queue of moves, the sign that tells. */
class TestSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void runsJobsInTheirOrder();
    void finishesEverythingBeforeItEnds();
    void storesMovesOneAfterTheOther();
    void showsThatSavingGoesOn();
    void letsOneCopyIntoADirectory();
    void dropsWorkAfterTheEnd();

private:
    std::unique_ptr<LogWriter> m_log;
};

void TestSaving::runsJobsInTheirOrder()
{
    SerialQueue queue("test");
    std::vector<int> order;
    QVERIFY(!queue.isCurrent());
    for (int i = 0; i < 100; ++i) {
        queue.async([&order, i] { order.push_back(i); });
    }
    auto awaited = queue.run([&] {
        order.push_back(100);
        return queue.isCurrent();
    });
    // On the queue itself a job does not wait for the jobs before it.
    QCOMPARE(queue.sync([&] { return queue.sync([&] { return order.size(); }); }), 101u);
    QVERIFY(await(std::move(awaited)));
    std::vector<int> expected(101);
    std::iota(expected.begin(), expected.end(), 0);
    QCOMPARE(order, expected);
    QTRY_COMPARE(queue.waitingJobs(), 0);
}

QCoro::Task<> markWhenDone(QCoro::Task<> task, bool *isDone)
{
    co_await task;
    *isDone = true;
}

void TestSaving::finishesEverythingBeforeItEnds()
{
    int done = 0;
    bool isResumed = false;
    {
        SerialQueue queue("test");
        for (int i = 0; i < 50; ++i) {
            queue.async([&done] { ++done; });
        }
        markWhenDone(queue.run([&done] { ++done; }), &isResumed);
    }
    QCOMPARE(done, 51);
    QVERIFY(isResumed);
}

void TestSaving::storesMovesOneAfterTheOther()
{
    TestStore store;
    BackgroundSaveIndicator indicator(store.clock);
    PersistenceQueue queue(*store, indicator);
    const ColumnId column = ColumnId::create();
    const SwimLaneId lane = SwimLaneId::create();
    QSignalSpy idle(&queue, &PersistenceQueue::becameIdle);

    for (int i = 0; i < 20; ++i) {
        queue.enqueue({{TaskPosition{u"t"_s, column, lane, i}, TaskPosition{u"u"_s, column, lane, 20 - i}}});
    }
    QCOMPARE(indicator.activeSaves(), 20);
    QCOMPARE(queue.waitingOperations(), 19);
    await(queue.drained());

    QCOMPARE(idle.size(), 1);
    QCOMPARE(indicator.activeSaves(), 0);
    QVERIFY(!queue.isProcessing());
    const std::vector<PersistentTaskPosition> rows = store->loadAllTaskPositions();
    QCOMPARE(rows.size(), 2u);
    QCOMPARE(rows.at(0).id + u' ' + QString::number(rows.at(0).position), u"u 1"_s);
    QCOMPARE(rows.at(1).id + u' ' + QString::number(rows.at(1).position), u"t 19"_s);
}

void TestSaving::showsThatSavingGoesOn()
{
    ManualClock clock;
    BackgroundSaveIndicator indicator(clock);
    QSignalSpy changes(&indicator, &BackgroundSaveIndicator::isSavingChanged);

    indicator.endSave();
    QCOMPARE(indicator.activeSaves(), 0);
    indicator.beginSave();
    indicator.beginSave();
    QVERIFY(!indicator.isSaving());
    clock.advance(0.0);
    QVERIFY(indicator.isSaving());
    indicator.endSave();
    clock.advance(10.0);
    QVERIFY(indicator.isSaving());
    indicator.endSave();
    clock.advance(0.3);
    // A new save comes before the delay is over.
    indicator.beginSave();
    clock.advance(0.3);
    QVERIFY(indicator.isSaving());
    indicator.endSave();
    clock.advance(1.0);
    QVERIFY(!indicator.isSaving());
    QCOMPARE(changes.size(), 4);
}

void TestSaving::letsOneCopyIntoADirectory()
{
    TestStore store;
    InstanceLock first(store.config);
    QCOMPARE(first.acquire(), InstanceLock::Outcome::First);
    QSignalSpy raised(&first, &InstanceLock::raiseRequested);
    {
        InstanceLock second(store.config);
        QCOMPARE(second.acquire(), InstanceLock::Outcome::AlreadyRuns);
    }
    QTRY_COMPARE(raised.size(), 1);

    TestStore elsewhere;
    InstanceLock other(elsewhere.config);
    QCOMPARE(other.acquire(), InstanceLock::Outcome::First);
    InstanceLock nowhere({AppEnvironment::Testing, u"/proc/nowhere"_s});
    QCOMPARE(nowhere.acquire(), InstanceLock::Outcome::NoLock);
}

void TestSaving::dropsWorkAfterTheEnd()
{
    TestStore store;
    store->saveTaskPosition(u"a"_s, ColumnId::create(), 0, {});
    store->cleanup();
    LogWriter::forgetMessages();

    store->saveTaskPosition(u"b"_s, ColumnId::create(), 0, {});
    QVERIFY(!await(store->readBoardMemory()).has_value());
    QVERIFY(!await(store->writeTaskPositions({})));
    QVERIFY(store->loadAllTaskPositions().empty());
    QVERIFY(LogWriter::recentMessages().contains(u"Database connection not established"_s));

    store.reopen();
    QCOMPARE(store->loadAllTaskPositions().size(), 1u);
}

VANTREL_REGISTER_TEST(TestSaving)

} // namespace vantrel::test

#include "test_saving.moc"
