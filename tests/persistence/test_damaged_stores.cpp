#include "foundations/Log.h"
#include "support/Await.h"
#include "support/StoreScript.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <random>

namespace vantrel::test {

using namespace Qt::StringLiterals;
using Kind = StorageProblem::Kind;

/** A file or folder that is not what it should be when the program starts. */
class TestDamagedStores : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_store = std::make_unique<TestStore>();
        StoreScript script(3);
        for (int i = 0; i < 120; ++i) {
            script.advance();
            script.perform(**m_store);
        }
        m_store->close();
        m_original = contentOf(m_store->databasePath());
        QVERIFY(m_original.size() > 20'000);
    }

    void keepsADamagedDatabaseAside_data();
    void keepsADamagedDatabaseAside();
    void survivesAnyDamage();
    void takesAnEmptyFileForANewDatabase();
    void opensNothingInPlaceOfAFolder();
    void makesItsFolder();
    void goesOnWithoutAFolder();
    void tellsThoseWhoListenFromTheStart();

private:
    QStringList filesAside() const
    {
        return QDir(m_store->config.directory)
            .entryList({u"devTaskPositions.sqlite.damaged-*"_s})
            .filter(QRegularExpression(u"[0-9]$"_s));
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    QByteArray m_original;
};

void TestDamagedStores::keepsADamagedDatabaseAside_data()
{
    QTest::addColumn<QByteArray>("content");
    init();
    QTest::newRow("another kind of file") << QByteArray("These are my notes.\n").repeated(500);
    QTest::newRow("shorter than a header") << QByteArray("SQLite");
    QTest::newRow("cut in half") << m_original.first(m_original.size() / 2);
    QTest::newRow("a page of zeros") << QByteArray(m_original).replace(8192, 4096, QByteArray(4096, '\0'));
    QTest::newRow("the schema overwritten") << QByteArray(m_original).replace(100, 200, QByteArray(200, 'x'));
}

void TestDamagedStores::keepsADamagedDatabaseAside()
{
    QFETCH(QByteArray, content);
    TestStore &store = *m_store;
    writeFile(store.databasePath(), content);

    store.open();
    store->saveTaskAsBlocked(u"t"_s, u"why"_s);

    QCOMPARE(store->getBlockedTaskIdsFromSQLite(), QSet<QString>{u"t"_s});
    QCOMPARE(filesAside().size(), 1);
    QCOMPARE(contentOf(store.config.filePath(filesAside().front())), content);
    QCOMPARE(store->problems().size(), 1u);
    const StorageProblem problem = store->problems().front();
    QCOMPARE(problem.kind, Kind::DatabaseDamaged);
    QVERIFY(problem.isPermanent && problem.message.contains(filesAside().front()));
    store.reopen();
    QCOMPARE(store->getBlockedTaskIdsFromSQLite(), QSet<QString>{u"t"_s});
    QVERIFY(store->problems().empty());
    QCOMPARE(filesAside().size(), 1);
}

/** Whatever was done to the file: no crash, and a store that cannot be trusted is kept byte for byte. */
void TestDamagedStores::survivesAnyDamage()
{
    std::mt19937 random(5);
    int damaged = 0;
    for (int round = 0; round < 200; ++round) {
        TestStore store;
        store.close();
        QByteArray content = m_original;
        for (unsigned flip = 0; flip <= random() % 20; ++flip) {
            content[static_cast<qsizetype>(random() % static_cast<unsigned>(content.size()))] =
                static_cast<char>(random());
        }
        writeFile(store.databasePath(), content);
        store.open();
        const auto memory = await(store->readBoardMemory());
        const auto tasks = await(store->readPlainTextTasks());
        store->saveTaskPosition(u"t"_s, ColumnId::create(), 0, {});
        store->deletePlainTextTask(u"plaintext-t-1"_s);
        await(store->drained());
        const std::vector<StorageProblem> problems = store->problems();
        store.close();
        if (problems.empty() || problems.front().kind != Kind::DatabaseDamaged) {
            // A name in the schema that is not ours any more makes a file that is sound, and of no use.
            QVERIFY((memory && tasks) ||
                    (!problems.empty() && problems.front().kind == Kind::DatabaseNotOpened));
            continue;
        }
        ++damaged;
        const QDir directory(store.config.directory);
        const QStringList aside = directory.entryList({u"*.damaged-*"_s});
        QVERIFY(!aside.isEmpty());
        QCOMPARE(contentOf(directory.filePath(aside.front())), content);
        store.open();
        await(store->drained());
        QVERIFY(store->problems().empty());
    }
    // How many it is depends on what the ids of the day put under the same bytes.
    QVERIFY2(damaged > 10, qPrintable(QString::number(damaged)));
}

void TestDamagedStores::takesAnEmptyFileForANewDatabase()
{
    TestStore &store = *m_store;
    writeFile(store.databasePath(), {});
    store.open();
    store->saveTaskAsBlocked(u"t"_s, {});
    QCOMPARE(store->getBlockedTaskIdsFromSQLite().size(), 1);
    QVERIFY(store->problems().empty());
}

void TestDamagedStores::opensNothingInPlaceOfAFolder()
{
    TestStore &store = *m_store;
    QVERIFY(QFile::remove(store.databasePath()));
    QVERIFY(QDir().mkdir(store.databasePath()));
    store.open();
    QVERIFY(!await(store->readBoardMemory()).has_value());
    QCOMPARE(store->problems().size(), 1u);
    QCOMPARE(store->problems().front().kind, Kind::DatabaseNotOpened);
    QVERIFY(store->problems().front().message.contains(store.databasePath()));
    QVERIFY(!store->problems().front().detail.isEmpty());
    QVERIFY(QFileInfo(store.databasePath()).isDir());
}

void TestDamagedStores::makesItsFolder()
{
    TestStore around;
    const AppConfig config{AppEnvironment::Testing, around.config.filePath(u"a/b/Vantrel"_s)};
    PersistenceManager persistence(config, around.defaults, around.saver, around.clock);
    await(persistence.drained());
    QVERIFY(persistence.problems().empty());
    QCOMPARE(QFileInfo(config.directory).permissions() & (QFile::ReadOther | QFile::ReadGroup), 0);
    QVERIFY(QFile::exists(config.filePath(persistence.taskPositionsDatabaseName())));
}

void TestDamagedStores::goesOnWithoutAFolder()
{
    TestStore around;
    writeFile(around.config.filePath(u"file"_s), "not a folder");
    const AppConfig config{AppEnvironment::Testing, around.config.filePath(u"file/Vantrel"_s)};
    PersistenceManager persistence(config, around.defaults, around.saver, around.clock);
    persistence.saveTaskAsBlocked(u"t"_s, {});
    QVERIFY(!await(persistence.readBoardMemory()).has_value());
    persistence.saveBoardConfiguration(Column::defaultColumns());
    await(persistence.drained());
    std::vector<Kind> kinds;
    for (const StorageProblem &problem : persistence.problems()) {
        kinds.push_back(problem.kind);
        QVERIFY(problem.message.contains(config.directory));
    }
    QCOMPARE(kinds,
             (std::vector{Kind::FolderNotWritable, Kind::DatabaseNotOpened, Kind::ConfigurationNotSaved}));
}

void TestDamagedStores::tellsThoseWhoListenFromTheStart()
{
    TestStore &store = *m_store;
    writeFile(store.databasePath(), QByteArray(5000, 'x'));
    store.open();
    QSignalSpy problems(&*store, &PersistenceManager::problemFound);
    await(store->drained());
    QTRY_COMPARE(problems.size(), 1);
}

VANTREL_REGISTER_TEST(TestDamagedStores)

} // namespace vantrel::test

#include "test_damaged_stores.moc"
