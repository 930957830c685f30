#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "persistence/BoardConfigurationJson.h"
#include "support/Await.h"
#include "support/FailingFileCalls.h"
#include "support/RawDatabase.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QSignalSpy>
#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

namespace {

const QByteArray GoodColumn =
    R"({"id":"0123456F-89AB-CDEF-0123-456789ABCDEF","name":"To Do","type":"Queue","position":0,"stableId":"s"})";

} // namespace

/** The two files with the shape of the board: read strictly, never overwritten unread. */
class TestConfigurationFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void decodesStrictly_data();
    void decodesStrictly();
    void readsBackWhatWasSaved();
    void givesNothingForAMissingFile();
    void readsAnOutsideChangeOnlyWhenAsked();
    void keepsAnUnreadableFileAndThePlacementsAside();
    void doesNotOverwriteWhatCouldNotBeKeptAside();
    void separatesRecordsCopiedByHand();
    void givesColumnsStableIdsOnce();
    void survivesEveryFailureOfSaving();
    void readsTheAppConfiguration();
    void remembersTheBoardLastSaved();

private:
    static QString boardPath(const TestStore &store)
    {
        return store.config.filePath(u"dev-vantrel-board-configuration.json"_s);
    }
    static QString lanesPath(const TestStore &store) { return store.config.filePath(u"devSwimlanes.json"_s); }

    std::unique_ptr<LogWriter> m_log;
};

void TestConfigurationFiles::decodesStrictly_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<bool>("isGood");
    const auto row = [](const char *name, const char *from, const char *to, bool isGood) {
        QTest::newRow(name) << QByteArray(from) << QByteArray(to) << isGood;
    };
    row("as it is", "", "", true);
    row("an unknown key", "\"name\"", "\"mood\":1,\"name\"", true);
    row("a limit", "\"stableId\"", "\"wipLimit\":3,\"wipLimitType\":\"Column\",\"stableId\"", true);
    row("null for what may be absent", "\"stableId\"", "\"wipLimit\":null,\"stableId\"", true);
    row("a whole number written as a real", "\"position\":0", "\"position\":0.0", true);
    row("an escaped slash", "To Do", "To\\/Do", true);
    row("lower case UUID", "ABCDEF\"", "abcdef\"", true);
    row("a required key is missing", "\"stableId\":\"s\"", "\"x\":1", false);
    row("null for a required key", "\"s\"}", "null}", false);
    row("a fraction", "\"position\":0", "\"position\":0.5", false);
    row("a number too large", "\"position\":0", "\"position\":3e9", false);
    row("an unknown type", "Queue", "queue", false);
    row("a limit that is a text", "\"stableId\"", "\"wipLimit\":\"3\",\"stableId\"", false);
    row("an unknown limit type", "\"stableId\"", "\"wipLimitType\":\"Board\",\"stableId\"", false);
    row("a UUID in braces", "\"0123", "\"{0123", false);
    row("cut off", "}", "", false);
    row("not an object", GoodColumn.constData(), "7", false);
}

void TestConfigurationFiles::decodesStrictly()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QByteArray record = GoodColumn;
    if (!from.isEmpty()) {
        record.replace(from, to);
    }
    const DecodedRecords<Column> decoded = decodeColumns("[" + record + "]");
    QTEST(decoded.records.has_value(), "isGood");
    QCOMPARE(decoded.error.isEmpty(), decoded.records.has_value());
    if (decoded.records && record.contains("wipLimitType")) {
        QCOMPARE(decoded.records->front().wipLimit, std::optional(3));
        QCOMPARE(decoded.records->front().wipLimitType, WIPLimitType::Column);
    }
}

void TestConfigurationFiles::readsBackWhatWasSaved()
{
    TestStore store;
    std::vector<Column> columns = Column::defaultColumns();
    columns[1].colorHex = u"#ff8800"_s;
    columns[1].name = u"Dö/\"ing\" 🔥"_s;
    SwimLane lane = SwimLane::defaultSwimLane();
    lane.isExpanded = false;
    lane.height = 512.25;
    lane.icon.reset();
    lane.colorHex = u"123"_s;

    QVERIFY(store->saveBoardConfiguration(columns));
    QVERIFY(store->saveSwimLaneConfiguration({lane}));
    store.reopen();

    QCOMPARE(store->loadBoardConfiguration(), std::optional(columns));
    QCOMPARE(store->loadSwimLaneConfiguration(), std::optional(std::vector{lane}));
    QVERIFY(contentOf(boardPath(store)).contains(columns.at(0).id.text().toLatin1()));
    QVERIFY(store->saveBoardConfiguration({}));
    store.reopen();
    QCOMPARE(store->loadBoardConfiguration(), std::optional(std::vector<Column>()));
}

void TestConfigurationFiles::givesNothingForAMissingFile()
{
    TestStore store;
    QCOMPARE(store->loadBoardConfiguration(), std::nullopt);
    QCOMPARE(store->loadSwimLaneConfiguration(), std::nullopt);
    QVERIFY(LogWriter::recentMessages().contains(u"No saved swimlane configuration found, using default"_s));
    QVERIFY(store->problems().empty());
    QVERIFY(!QFile::exists(boardPath(store)));
}

void TestConfigurationFiles::readsAnOutsideChangeOnlyWhenAsked()
{
    TestStore store;
    store->saveBoardConfiguration(Column::defaultColumns());
    await(store->drained());
    writeFile(boardPath(store), "[" + GoodColumn + "]");
    QCOMPARE(store->loadBoardConfiguration()->size(), 3u);
    QCOMPARE(store->loadBoardConfiguration(true)->size(), 1u);
    QCOMPARE(store->loadBoardConfiguration()->size(), 1u);
}

void TestConfigurationFiles::keepsAnUnreadableFileAndThePlacementsAside()
{
    TestStore store;
    store->saveTaskPosition(u"t"_s, ColumnId::create(), 3, {});
    writeFile(boardPath(store), "[{\"half\":");
    QSignalSpy problems(&*store, &PersistenceManager::problemFound);

    QCOMPARE(store->loadBoardConfiguration(), std::nullopt);
    QCOMPARE(store->loadBoardConfiguration(true), std::nullopt);
    QVERIFY(store->saveBoardConfiguration(Column::defaultColumns()));

    // As it will be, and as it is.
    QCOMPARE(store->loadBoardConfiguration(true)->size(), 3u);
    await(store->drained());
    QCOMPARE(store->loadBoardConfiguration(true)->size(), 3u);
    const QDir directory(store.config.directory);
    const QStringList kept = directory.entryList({u"dev-vantrel-board-configuration.json.unreadable-*"_s});
    QCOMPARE(kept.size(), 1);
    QCOMPARE(contentOf(directory.filePath(kept.front())), QByteArray("[{\"half\":"));
    const QStringList backups = directory.entryList({u"devTaskPositions.sqlite.backup-*"_s});
    QCOMPARE(backups.size(), 1);
    QCOMPARE(
        RawDatabase(directory.filePath(backups.front())).rows(u"SELECT id, position FROM taskPositions"_s),
        QStringList{u"t|3"_s});
    QCOMPARE(await(store->backUpDatabase()), std::optional(directory.filePath(backups.front())));
    QTRY_COMPARE(problems.size(), 1);
    const auto problem = problems.front().front().value<StorageProblem>();
    QCOMPARE(problem.kind, StorageProblem::Kind::ConfigurationUnreadable);
    QVERIFY(problem.message.contains(kept.front()));
}

void TestConfigurationFiles::doesNotOverwriteWhatCouldNotBeKeptAside()
{
    TestStore store;
    FailingFileCalls calls;
    FileSaver saver(calls);
    writeFile(lanesPath(store), "broken");
    PersistenceManager persistence(store.config, store.defaults, saver, store.clock);
    calls.failAt(1, ENOSPC, true);
    QCOMPARE(persistence.loadSwimLaneConfiguration(), std::nullopt);
    calls.failAt(0);

    QVERIFY(!persistence.saveSwimLaneConfiguration({SwimLane::defaultSwimLane()}));

    QCOMPARE(contentOf(lanesPath(store)), QByteArray("broken"));
    // The board goes on with what it gave.
    QCOMPARE(persistence.loadSwimLaneConfiguration()->size(), 1u);
    QCOMPARE(persistence.problems().back().kind, StorageProblem::Kind::ConfigurationNotSaved);
    // Once the user has mended the file, it is read and written again.
    const QByteArray mended = encodeSwimLanes({SwimLane::defaultSwimLane()});
    writeFile(lanesPath(store), mended);
    QVERIFY(persistence.loadSwimLaneConfiguration(true).has_value());
    QVERIFY(persistence.saveSwimLaneConfiguration({}));
}

void TestConfigurationFiles::separatesRecordsCopiedByHand()
{
    TestStore store;
    writeFile(boardPath(store), "[" + GoodColumn + "," + GoodColumn + "]");
    const SwimLane lane = SwimLane::defaultSwimLane();
    writeFile(lanesPath(store), encodeSwimLanes({lane, lane}));

    const auto columns = store->loadBoardConfiguration();
    const auto lanes = store->loadSwimLaneConfiguration();

    QVERIFY(columns && columns->size() == 2 && lanes && lanes->size() == 2);
    QCOMPARE(columns->at(0).stableId, std::optional(u"s"_s));
    QCOMPARE(columns->at(1).stableId, std::optional(u"s_2"_s));
    QVERIFY(columns->at(0).id != columns->at(1).id);
    QCOMPARE(lanes->at(0), lane);
    QCOMPARE(lanes->at(1).stableId, u"swimlane_" + lanes->at(1).id.text());
    // The new identities are there after a restart too, so that tasks placed by them stay.
    store.reopen();
    QCOMPARE(store->loadBoardConfiguration(), columns);
    QCOMPARE(store->loadSwimLaneConfiguration(), lanes);
}

void TestConfigurationFiles::givesColumnsStableIdsOnce()
{
    TestStore store;
    std::vector<Column> columns = Column::defaultColumns();
    columns[0].stableId = u"default_queue"_s;
    Column second = columns[0];
    second.id = ColumnId::create();
    second.stableId.reset();
    columns.push_back(second);

    store->saveBoardConfiguration(columns);

    const std::vector<Column> saved = store->loadBoardConfiguration().value();
    QCOMPARE(saved.at(0).stableId, std::optional(u"default_queue"_s));
    QCOMPARE(saved.at(3).stableId, std::optional(u"default_queue_2"_s));
    columns = saved;
    columns[3].position = 9;
    columns[3].name = u"renamed"_s;
    store->saveBoardConfiguration(columns);
    QCOMPARE(store->loadBoardConfiguration()->at(3).stableId, std::optional(u"default_queue_2"_s));
}

void TestConfigurationFiles::survivesEveryFailureOfSaving()
{
    int failures = 0;
    for (int n = 1;; ++n) {
        TestStore store;
        FailingFileCalls calls;
        FileSaver saver(calls);
        calls.limitWrites(100);
        auto persistence =
            std::make_unique<PersistenceManager>(store.config, store.defaults, saver, store.clock);
        const std::vector<Column> before = Column::defaultColumns();
        std::vector<Column> after = before;
        after[0].name = u"Renamed"_s;
        persistence->saveBoardConfiguration(before);
        await(persistence->drained());

        calls.failAt(n);
        persistence->saveBoardConfiguration(after);
        await(persistence->drained());

        const bool hasFailed = calls.hasFailed();
        const bool isSaved = persistence->problems().empty();
        const DecodedRecords<Column> onDisk = decodeColumns(contentOf(boardPath(store)));
        QVERIFY2(onDisk.records, qPrintable(onDisk.error));
        QVERIFY(*onDisk.records == before || *onDisk.records == after);
        QVERIFY(isSaved || hasFailed);
        QVERIFY(!isSaved || *onDisk.records == after);
        // What could not be saved is shown on, and saved at the end if that is possible then.
        QCOMPARE(persistence->loadBoardConfiguration(), std::optional(after));
        persistence.reset();
        QCOMPARE(decodeColumns(contentOf(boardPath(store))).records, std::optional(after));
        QCOMPARE(QDir(store.config.directory).entryList({u"*.saving"_s}), QStringList());
        if (!hasFailed) {
            break;
        }
        ++failures;
    }
    QVERIFY2(failures >= 8, qPrintable(QString::number(failures)));
}

void TestConfigurationFiles::readsTheAppConfiguration()
{
    const AppConfiguration withoutBoard{std::nullopt, 30.0, false, 2.0};
    const std::vector<std::pair<QByteArray, AppConfiguration>> rows{
        {"", {}},
        {R"({"refresh)", {}},
        {R"({"refreshInterval":30,"autoSyncEnabled":false})", {}},
        {R"({"refreshInterval":30,"autoSyncEnabled":"no","zoomLevel":2})", {}},
        {R"({"refreshInterval":30,"autoSyncEnabled":false,"zoomLevel":2})", withoutBoard},
    };
    for (const auto &[stored, expected] : rows) {
        TestStore store;
        if (!stored.isEmpty()) {
            store.defaults.set(keys::DevAppConfiguration, stored);
        }
        QCOMPARE(store->loadAppConfiguration(), expected);
        QCOMPARE(store.defaults.data(keys::DevAppConfiguration).value_or(QByteArray()), stored);
    }
}

void TestConfigurationFiles::remembersTheBoardLastSaved()
{
    TestStore store;
    store->saveAppConfiguration({std::nullopt, 30.0, false, 1.25});
    store->saveBoardConfiguration({});
    QCOMPARE(store->loadAppConfiguration(), (AppConfiguration{DefaultBoardId, 30.0, false, 1.25}));
    const QUuid other = QUuid::createUuid();
    store->saveBoardConfiguration({}, other);
    store->saveBoardConfiguration({});
    QCOMPARE(store->loadAppConfiguration().lastBoardId, std::optional(other));
}

VANTREL_REGISTER_TEST(TestConfigurationFiles)

} // namespace vantrel::test

#include "test_configuration_files.moc"
