#include "foundations/Log.h"
#include "support/Await.h"
#include "support/RawDatabase.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** The tasks of the application's own source, and databases of other versions. */
class TestPlainTextTasks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent); }

    void readsBackWhatWasSaved_data();
    void readsBackWhatWasSaved();
    void takesTheTimeOfSavingForAnAbsentModificationDate();
    void losesOnlyHashtagsThatMakeNoSense_data();
    void losesOnlyHashtagsThatMakeNoSense();
    void deletesAllOfItsOwnTasksAndNoOthers();
    void bringsAnOldDatabaseUpToDate_data();
    void bringsAnOldDatabaseUpToDate();
    void leavesANewerDatabaseAsItIs();

private:
    static PlainTextRecord fullRecord()
    {
        PlainTextRecord record;
        record.fields.id = u"plaintext-1"_s;
        record.fields.name = u"Call Ann"_s;
        record.fields.note = u"about the \"boat\"\nsoon"_s;
        record.fields.creationDate = Date(1.1);
        record.fields.modificationDate = Date(2.2);
        record.fields.dueDate = Date(3.3);
        record.fields.deferDate = Date(4.4);
        record.fields.completionDate = Date(5.5);
        record.fields.isFlagged = true;
        record.fields.isComplete = true;
        record.fields.project = Project{u"p"_s, u"Project"_s};
        record.fields.tag = Tag{u"tag-calls"_s, u"calls"_s};
        record.hashtags = {u"calls"_s, u"mü/\"\\sli"_s};
        record.originalText = u"- [ ] Call Ann #calls"_s;
        return record;
    }
    static QStringList schema(const TestStore &store)
    {
        return RawDatabase(store.databasePath())
            .rows(u"SELECT m.name || ' ' || c.name || ' ' || c.type || ' ' || c.\"notnull\" || ' ' || c.pk "
                  u"FROM "
                  "sqlite_schema m, pragma_table_info(m.name) c WHERE m.type = 'table' ORDER BY 1"_s);
    }

    std::unique_ptr<LogWriter> m_log;
};

void TestPlainTextTasks::readsBackWhatWasSaved_data()
{
    QTest::addColumn<int>("what");
    QTest::newRow("everything there") << 0;
    QTest::newRow("everything absent that may be") << 1;
    QTest::newRow("empty texts are not absent ones") << 2;
}

void TestPlainTextTasks::readsBackWhatWasSaved()
{
    QFETCH(int, what);
    PlainTextRecord record = fullRecord();
    if (what == 1) {
        record = {};
        record.fields.id = u"plaintext-2"_s;
        record.fields.name = u"bare"_s;
        record.fields.modificationDate = Date(7.0);
    }
    if (what == 2) {
        record.fields.name = QString();
        record.fields.note = u""_s;
        record.originalText = u""_s;
    }
    TestStore store;
    store->savePlainTextTask(record);
    store.reopen();

    const std::optional<PlainTextReading> read = await(store->readPlainTextTasks());

    QVERIFY(read.has_value());
    QCOMPARE(read->rows, std::vector{record});
    QVERIFY(await(store->readPlainTextTasks(read->mark))->isUnchanged);
    record.fields.name += u'!';
    store->savePlainTextTask(record);
    const std::optional<PlainTextReading> again = await(store->readPlainTextTasks(read->mark));
    QVERIFY(!again->isUnchanged);
    QCOMPARE(again->rows, std::vector{record});
}

void TestPlainTextTasks::takesTheTimeOfSavingForAnAbsentModificationDate()
{
    TestStore store;
    PlainTextRecord record = fullRecord();
    record.fields.modificationDate.reset();
    store->savePlainTextTask(record);
    QCOMPARE(store->loadPlainTextTasks().front().fields.modificationDate, std::optional(store.clock.now()));
}

void TestPlainTextTasks::losesOnlyHashtagsThatMakeNoSense_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<QStringList>("hashtags");
    QTest::newRow("null") << u"NULL"_s << QStringList();
    QTest::newRow("empty text") << u"''"_s << QStringList();
    QTest::newRow("cut off") << u"'[\"a\", \"b'"_s << QStringList();
    QTest::newRow("an object") << u"'{\"a\": 1}'"_s << QStringList();
    QTest::newRow("a number among texts") << u"'[\"a\", 1]'"_s << QStringList();
    QTest::newRow("escaped") << u"'[\"a\\/b\", \"\\u00fc\"]'"_s << QStringList{u"a/b"_s, u"ü"_s};
}

void TestPlainTextTasks::losesOnlyHashtagsThatMakeNoSense()
{
    QFETCH(QString, json);
    TestStore store;
    store->savePlainTextTask(fullRecord());
    await(store->drained());
    QVERIFY(RawDatabase(store.databasePath()).run(u"UPDATE plainTextTasks SET hashtags = " + json));

    const std::vector<PlainTextRecord> read = store->loadPlainTextTasks();

    QCOMPARE(read.size(), 1u);
    QTEST(read.front().hashtags, "hashtags");
    QCOMPARE(read.front().fields, fullRecord().fields);
}

void TestPlainTextTasks::deletesAllOfItsOwnTasksAndNoOthers()
{
    TestStore store;
    const ColumnId column = ColumnId::create();
    store->savePlainTextTask(fullRecord());
    for (const QString &id : {u"plaintext-1"_s, u"plaintext-lost"_s, u"reminder_1"_s, u"abc"_s}) {
        store->saveTaskPosition(id, column, 0, {});
    }

    store->deleteAllPlainTextTasks();
    store->saveTaskPosition(u"plaintext-1"_s, column, 0, {});

    QVERIFY(store->loadPlainTextTasks().empty());
    QCOMPARE(RawDatabase(store.databasePath()).rows(u"SELECT id FROM taskPositions ORDER BY id"_s),
             (QStringList{u"abc"_s, u"reminder_1"_s}));
}

void TestPlainTextTasks::bringsAnOldDatabaseUpToDate_data()
{
    QTest::addColumn<QString>("lastColumns");
    QTest::addColumn<int>("startsWithoutMigration");
    QTest::newRow("before hashtags") << u""_s << 1;
    QTest::newRow("with hashtags alone") << u", hashtags TEXT"_s << 1;
    QTest::newRow("with the original text alone") << u", originalText TEXT"_s << 1;
    QTest::newRow("in the other order") << u", originalText TEXT, hashtags TEXT"_s << 2;
}

void TestPlainTextTasks::bringsAnOldDatabaseUpToDate()
{
    QFETCH(QString, lastColumns);
    TestStore store;
    store.close();
    QVERIFY(QFile::remove(store.databasePath()));
    LogWriter::forgetMessages();
    const RawDatabase raw(store.databasePath());
    QVERIFY(raw.run(
        u"CREATE TABLE plainTextTasks (id TEXT PRIMARY KEY, name TEXT NOT NULL, note TEXT, creationDate REAL "
        "NOT NULL, modificationDate REAL NOT NULL, dueDate REAL, deferDate REAL, completionDate REAL, "
        "isFlagged "
        "INTEGER DEFAULT 0, isComplete INTEGER DEFAULT 0, projectName TEXT, projectId TEXT, tagName TEXT, "
        "tagId "
        "TEXT" +
        lastColumns +
        u"); INSERT INTO plainTextTasks (id, name, creationDate, modificationDate, isComplete) "
        "VALUES ('plaintext-1', 'old', 1.5, 2.5, 1)"));
    store.open();

    std::vector<PlainTextRecord> read = store->loadPlainTextTasks();
    QCOMPARE(read.size(), 1u);
    QCOMPARE(read.front().fields.name, u"old"_s);
    QVERIFY(read.front().fields.isComplete);
    QVERIFY(read.front().hashtags.isEmpty());
    QCOMPARE(read.front().originalText, std::nullopt);

    PlainTextRecord record = fullRecord();
    store->savePlainTextTask(record);
    record.fields.creationDate = Date(1.5);
    QCOMPARE(store->loadPlainTextTasks(), std::vector{record});
    store.reopen();
    QCOMPARE(store->loadPlainTextTasks(), std::vector{record});
    QTEST(static_cast<int>(LogWriter::recentMessages().filter(u"no migration needed"_s).size()),
          "startsWithoutMigration");
    TestStore fresh;
    fresh.close();
    QCOMPARE(schema(store), schema(fresh));
}

void TestPlainTextTasks::leavesANewerDatabaseAsItIs()
{
    TestStore store;
    store->savePlainTextTask(fullRecord());
    store.close();
    const RawDatabase raw(store.databasePath());
    QVERIFY(raw.run(
        u"PRAGMA user_version = 7; CREATE TABLE attachments (id TEXT PRIMARY KEY, bytes BLOB); "
        "INSERT INTO attachments VALUES ('a', x'00ff'); ALTER TABLE plainTextTasks ADD COLUMN mood TEXT "
        "DEFAULT 'calm'"_s));
    store.open();
    PlainTextRecord record = fullRecord();
    record.fields.name = u"renamed"_s;
    store->savePlainTextTask(record);

    QCOMPARE(store->loadPlainTextTasks(), std::vector{record});
    QVERIFY(store->problems().empty());
    store.close();
    QCOMPARE(raw.rows(u"PRAGMA user_version"_s), QStringList{u"7"_s});
    QCOMPARE(raw.rows(u"SELECT id, hex(bytes) FROM attachments"_s), QStringList{u"a|00FF"_s});
    QCOMPARE(raw.rows(u"SELECT mood FROM plainTextTasks"_s), QStringList{u"calm"_s});
}

VANTREL_REGISTER_TEST(TestPlainTextTasks)

} // namespace vantrel::test

#include "test_plain_text_tasks.moc"
