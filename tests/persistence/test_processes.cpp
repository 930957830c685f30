#include "foundations/Log.h"
#include "support/RawDatabase.h"
#include "support/StoreScript.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <thread>

namespace vantrel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int Kills = 500;
constexpr int Timeout = 20'000;
constexpr int LaneEverySteps = 7;

/** A store script in a process of its own, and how far it says it has come. */
class Worker
{
public:
    Worker(const QString &folder, quint32 seed, int firstStep, const QString &mark, bool savesLanes)
        : m_lastStep(firstStep)
    {
        QStringList arguments{u"work"_s, folder, QString::number(seed), QString::number(firstStep), mark};
        if (savesLanes) {
            arguments.append(u"lanes"_s);
        }
        m_process.start(program(), arguments);
    }

    static QString program() { return QCoreApplication::applicationDirPath() + u"/vantrel_store_script"; }

    /** Waits until it has told of `steps` steps more. */
    bool waitForSteps(int steps)
    {
        QElapsedTimer timer;
        timer.start();
        while (m_told < steps && timer.elapsed() < Timeout) {
            m_process.waitForReadyRead(Timeout);
            read();
        }
        return m_told >= steps;
    }

    /** SIGKILL; the last step that it told of. */
    int kill()
    {
        m_process.kill();
        m_process.waitForFinished(Timeout);
        read();
        return m_lastStep;
    }

    const QStringList &problems() const { return m_problems; }

private:
    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
            bool isStep = false;
            const int step = line.toInt(&isStep);
            if (isStep) {
                m_lastStep = step;
                ++m_told;
            } else {
                m_problems.append(line);
            }
        }
    }

    QProcess m_process;
    int m_lastStep;
    int m_told = 0;
    QStringList m_problems;
};

} // namespace

/** Processes that are killed, that share a folder, and whose disk is full. */
class TestProcesses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void losesNothingAcknowledgedWhenKilled();
    void letsTwoCopiesWriteAtOnce();
    void losesNothingOnAFullDisk();

private:
    std::unique_ptr<LogWriter> m_log;
};

void TestProcesses::losesNothingAcknowledgedWhenKilled()
{
    constexpr quint32 seed = 99;
    TestStore store;
    store.close();
    StoreScript script(seed);
    std::mt19937 random(seed);
    int savedLanes = 0;
    for (int kill = 0; kill < Kills; ++kill) {
        const int firstStep = script.step();
        Worker worker(store.config.directory, seed, firstStep, u"t"_s, true);
        QVERIFY(worker.waitForSteps(1 + static_cast<int>(random() % 12)));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
        const int acknowledged = worker.kill();
        QCOMPARE(worker.problems(), QStringList());
        while (script.step() < acknowledged) {
            script.advance();
        }
        const ScriptedState atLeast = script.state();

        store.open();
        const ScriptedState found = ScriptedState::stored(*store);
        const auto lanes = store->loadSwimLaneConfiguration();
        QVERIFY(store->problems().empty());
        store.close();

        if (found != atLeast) {
            // The step under way may have been stored and not told of.
            script.advance();
            QVERIFY2(found == script.state(), qPrintable(u"after step "_s + QString::number(acknowledged)));
        }
        if (const int lane = acknowledged - acknowledged % LaneEverySteps; lane > firstStep) {
            savedLanes = lane;
        }
        const int foundLanes = lanes ? static_cast<int>(lanes->front().height) : 0;
        QVERIFY(foundLanes >= savedLanes && foundLanes <= acknowledged + 1);
        savedLanes = foundLanes;
    }
    QCOMPARE(RawDatabase(store.databasePath()).integrity(), u"ok"_s);
    qInfo("%d kills, %d steps", Kills, script.step());
}

void TestProcesses::letsTwoCopiesWriteAtOnce()
{
    constexpr int steps = 300;
    TestStore store;
    store.close();
    Worker first(store.config.directory, 1, 0, u"first"_s, false);
    Worker second(store.config.directory, 2, 0, u"second"_s, false);
    QVERIFY(first.waitForSteps(steps) && second.waitForSteps(steps));
    const std::vector<std::tuple<int, quint32, QString>> workers{{first.kill(), 1, u"first"_s},
                                                                 {second.kill(), 2, u"second"_s}};
    QCOMPARE(first.problems() + second.problems(), QStringList());

    store.open();
    const ScriptedState found = ScriptedState::stored(*store);
    for (const auto &[acknowledged, seed, mark] : workers) {
        StoreScript script(seed, mark);
        while (script.step() < acknowledged) {
            script.advance();
        }
        const ScriptedState before = script.state();
        QVERIFY(found.only(mark) == before || found.only(mark) == script.advance());
    }
    store.close();
    QCOMPARE(RawDatabase(store.databasePath()).integrity(), u"ok"_s);
}

void TestProcesses::losesNothingOnAFullDisk()
{
    constexpr int noDisk = 77;
    const QTemporaryDir directory;
    QProcess worker;
    worker.start(Worker::program(), {u"fill-disk"_s, directory.filePath(u"disk"_s)});
    QVERIFY(worker.waitForFinished(Timeout));
    if (worker.exitCode() == noDisk) {
        QSKIP("a small disk may not be mounted here");
    }
    QVERIFY2(worker.exitCode() == 0, worker.readAllStandardError().constData());
}

VANTREL_REGISTER_TEST(TestProcesses)

} // namespace vantrel::test

#include "test_processes.moc"
