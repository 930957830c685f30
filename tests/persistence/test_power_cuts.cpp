#include "foundations/Log.h"
#include "support/Await.h"
#include "support/FaultyVfs.h"
#include "support/RawDatabase.h"
#include "support/StoreScript.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QFile>
#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int Cuts = 2000;

/** What a number of power cuts did. */
struct Losses
{
    int cuts = 0;
    /** Cuts after which the store was neither as before nor as after the step under way. */
    int wrong = 0;
    int damaged = 0;
};

/** Starts the store on what a cut left. */
class AfterTheCut
{
public:
    AfterTheCut() { m_store.close(); }

    void check(const DiskImage &image, const ScriptedState &before, const ScriptedState &after,
               Losses &losses)
    {
        for (const QString &name : QDir(m_store.config.directory).entryList(QDir::Files)) {
            QFile::remove(m_store.config.filePath(name));
        }
        for (auto file = image.constBegin(); file != image.constEnd(); ++file) {
            writeFile(m_store.config.filePath(file.key()), file.value());
        }
        m_store.open();
        const ScriptedState found = ScriptedState::stored(*m_store);
        ++losses.cuts;
        losses.damaged += m_store->problems().empty() ? 0 : 1;
        losses.wrong += found == before || found == after ? 0 : 1;
        m_store.close();
    }

private:
    TestStore m_store;
};

/** Lets a user work, with a power cut before and after each call to the disk. */
Losses cutPowerOften(bool ignoresSyncs)
{
    std::mt19937 random(20261122);
    Losses losses;
    AfterTheCut afterTheCut;
    for (quint32 seed = 1; losses.cuts < Cuts; ++seed) {
        FaultyVfs vfs;
        if (ignoresSyncs) {
            vfs.ignoreSyncs();
        }
        // The log may be brought in at any pause, while the images of the last step are looked at.
        QMutex mutex;
        std::vector<DiskImage> images;
        vfs.setObserver([&] {
            const QMutexLocker lock(&mutex);
            images.push_back(vfs.cutPower(random));
        });
        TestStore store(vfs.name());
        StoreScript script(seed);
        for (int step = 0; step < 60; ++step) {
            const ScriptedState before = script.state();
            script.advance();
            script.perform(*store);
            await(store->drained());
            // Now and then the log is brought into the database: by an end of the program, or by a pause.
            if (step % 20 == 13) {
                store.reopen();
                await(store->drained());
            }
            if (step == 40) {
                QTest::qWait(400);
                await(store->drained());
            }
            std::vector<DiskImage> imagesOfStep;
            DiskImage acknowledged;
            {
                const QMutexLocker lock(&mutex);
                imagesOfStep.swap(images);
                acknowledged = vfs.cutPower(random);
            }
            for (const DiskImage &image : imagesOfStep) {
                afterTheCut.check(image, before, script.state(), losses);
            }
            // Of what has been acknowledged nothing may go, whenever the power does.
            afterTheCut.check(acknowledged, script.state(), script.state(), losses);
        }
        store.close();
    }
    return losses;
}

} // namespace

/** The power goes at any moment, and of what was not synced any part may be on the disk. */
class TestPowerCuts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void loseNothingThatWasAcknowledged();
    void loseMuchIfNothingIsSynced();

private:
    std::unique_ptr<LogWriter> m_log;
};

void TestPowerCuts::loseNothingThatWasAcknowledged()
{
    const Losses losses = cutPowerOften(false);
    qInfo("%d cuts", losses.cuts);
    QVERIFY(losses.cuts >= Cuts);
    QCOMPARE(losses.damaged, 0);
    QCOMPARE(losses.wrong, 0);
}

/** The control: were this test content with a store that never syncs, the other one would prove nothing. */
void TestPowerCuts::loseMuchIfNothingIsSynced()
{
    const Losses losses = cutPowerOften(true);
    qInfo("%d cuts, %d wrong, %d damaged", losses.cuts, losses.wrong, losses.damaged);
    QVERIFY(losses.wrong > losses.cuts / 10);
}

VANTREL_REGISTER_TEST(TestPowerCuts)

} // namespace vantrel::test

#include "test_power_cuts.moc"
