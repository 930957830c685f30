#include "foundations/Log.h"
#include "support/Await.h"
#include "support/FaultyVfs.h"
#include "support/RawDatabase.h"
#include "support/StoreScript.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QSignalSpy>
#include <QTest>

#include <sqlite3.h>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/**
 * A failure is walked through every call to the disk: whichever fails, the store is as before or as after the
 * change, says so, and has the change as soon as the disk works again.
 */
class TestIoFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void losesNoChangeWhicheverCallFails_data();
    void losesNoChangeWhicheverCallFails();
    void losesNothingWhicheverCallOfClosingFails();
    void losesNothingWhicheverCallOfOpeningFails();
    void readsEverythingOrNothing_data();
    void readsEverythingOrNothing();
    void keepsTheOrderOfChangesThatHadToWait();

private:
    /** What is in the files, read past the faulty file system. */
    static ScriptedState onDisk(const TestStore &store)
    {
        TestStore reader;
        PersistenceManager persistence(store.config, reader.defaults, reader.saver, reader.clock);
        return ScriptedState::stored(persistence);
    }
    static void work(StoreScript &script, TestStore &store, int steps)
    {
        for (int i = 0; i < steps; ++i) {
            script.advance();
            script.perform(*store);
        }
        await(store->drained());
    }

    std::unique_ptr<LogWriter> m_log;
};

void TestIoFailures::losesNoChangeWhicheverCallFails_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("forEver");
    QTest::newRow("an I/O error, once") << SQLITE_IOERR << false;
    QTest::newRow("I/O errors from then on") << SQLITE_IOERR << true;
    QTest::newRow("a disk that is full for a moment") << SQLITE_FULL << false;
    QTest::newRow("a full disk") << SQLITE_FULL << true;
}

void TestIoFailures::losesNoChangeWhicheverCallFails()
{
    QFETCH(int, code);
    QFETCH(bool, forEver);
    int failures = 0;
    // Every kind of step of the script comes several times among the first ones.
    for (int step = 1; step <= 40; ++step) {
        for (int n = 1;; ++n) {
            FaultyVfs vfs;
            TestStore store(vfs.name());
            StoreScript script(11);
            work(script, store, step - 1);
            const ScriptedState before = script.state();
            QSignalSpy recovered(&*store, &PersistenceManager::writingRecovered);

            vfs.failAt(n, code, forEver);
            work(script, store, 1);

            const ScriptedState found = onDisk(store);
            QVERIFY(found == before || found == script.state());
            const bool isStored = found == script.state();
            QVERIFY(isStored || !store->problems().empty());
            for (const StorageProblem &problem : store->problems()) {
                QCOMPARE(problem.kind, StorageProblem::Kind::WriteFailed);
                QVERIFY2(problem.message.contains(store.databasePath()) && !problem.detail.isEmpty(),
                         qPrintable(problem.message));
            }
            const bool hasFailed = vfs.hasFailed();
            vfs.failAt(0);
            QVERIFY(ScriptedState::stored(*store) == script.state());
            QCoreApplication::processEvents();
            QCOMPARE(static_cast<std::size_t>(recovered.size()), store->problems().size());
            store.close();
            QCOMPARE(RawDatabase(store.databasePath()).integrity(), u"ok"_s);
            if (!hasFailed) {
                break;
            }
            ++failures;
        }
    }
    QVERIFY2(failures > 100, qPrintable(QString::number(failures)));
}

void TestIoFailures::losesNothingWhicheverCallOfClosingFails()
{
    int failures = 0;
    for (int n = 1;; ++n) {
        FaultyVfs vfs;
        TestStore store(vfs.name());
        StoreScript script(12);
        work(script, store, 60);

        vfs.failAt(n, SQLITE_IOERR, n % 2 == 0);
        store.close();

        const bool hasFailed = vfs.hasFailed();
        vfs.failAt(0);
        store.open();
        QVERIFY(ScriptedState::stored(*store) == script.state());
        QVERIFY(store->problems().empty());
        if (!hasFailed) {
            break;
        }
        ++failures;
    }
    QVERIFY2(failures >= 5, qPrintable(QString::number(failures)));
}

void TestIoFailures::losesNothingWhicheverCallOfOpeningFails()
{
    int failures = 0;
    for (const int steps : {0, 30}) {
        for (int n = 1;; ++n) {
            FaultyVfs vfs;
            TestStore store(vfs.name());
            StoreScript script(13);
            work(script, store, steps);
            store.close();
            if (steps == 0) {
                QVERIFY(QFile::remove(store.databasePath()));
            }

            vfs.failAt(n, SQLITE_IOERR, n % 2 == 0);
            store.open();
            await(store->drained());

            const bool hasFailed = vfs.hasFailed();
            vfs.failAt(0);
            store.reopen();
            QVERIFY(ScriptedState::stored(*store) == script.state());
            work(script, store, 1);
            QVERIFY(ScriptedState::stored(*store) == script.state());
            QVERIFY(store->problems().empty());
            QCOMPARE(QDir(store.config.directory).entryList({u"*.damaged*"_s}), QStringList());
            if (!hasFailed) {
                break;
            }
            ++failures;
        }
    }
    QVERIFY2(failures >= 10, qPrintable(QString::number(failures)));
}

void TestIoFailures::readsEverythingOrNothing_data()
{
    QTest::addColumn<bool>("forEver");
    QTest::newRow("one page") << false;
    QTest::newRow("all pages from then on") << true;
}

void TestIoFailures::readsEverythingOrNothing()
{
    QFETCH(bool, forEver);
    FaultyVfs vfs;
    TestStore store(vfs.name());
    StoreScript script(14);
    work(script, store, 150);
    const auto complete = await(store->readBoardMemory());
    QVERIFY(complete.has_value());
    int nothing = 0;
    for (int n = 1;; ++n) {
        vfs.failAt(n, SQLITE_IOERR_READ, forEver, FaultyVfs::Calls::Reading);
        store.reopen();

        const auto memory = await(store->readBoardMemory());
        const auto tasks = await(store->readPlainTextTasks());

        QVERIFY(!memory || memory->positions == complete->positions);
        QVERIFY(!tasks || tasks->rows.size() == script.state().tasks.size());
        nothing += !memory || !tasks ? 1 : 0;
        const bool hasFailed = vfs.hasFailed();
        vfs.failAt(0);
        store.reopen();
        QVERIFY(ScriptedState::stored(*store) == script.state());
        if (!hasFailed) {
            QVERIFY(memory && tasks);
            break;
        }
    }
    QVERIFY(!forEver || nothing > 5);
}

void TestIoFailures::keepsTheOrderOfChangesThatHadToWait()
{
    FaultyVfs vfs;
    TestStore store(vfs.name());
    StoreScript script(15);
    work(script, store, 30);
    const ScriptedState before = script.state();
    vfs.failAt(1, SQLITE_FULL, true);

    work(script, store, 100);

    QVERIFY(onDisk(store) == before);
    QCOMPARE(store->problems().size(), 1u);
    QTRY_COMPARE(store->pendingJobs(), 100);
    const auto memory = await(store->readBoardMemory());
    QVERIFY(memory && memory->isBehind);
    QVERIFY(!await(store->readPlainTextTasks()).has_value());
    QVERIFY(!await(store->writeTaskPositions({{u"x"_s, ColumnId::create(), SwimLaneId::create(), 0}})));
    vfs.failAt(0);
    const ScriptedState stored = ScriptedState::stored(*store);
    QCOMPARE(stored.tasks, script.state().tasks);
    QCOMPARE(stored.priorities, script.state().priorities);
    QVERIFY(stored.places.contains(u"x"_s));
    QTRY_COMPARE(store->pendingJobs(), 0);
}

VANTREL_REGISTER_TEST(TestIoFailures)

} // namespace vantrel::test

#include "test_io_failures.moc"
