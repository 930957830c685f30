#include "foundations/Log.h"
#include "persistence/Database.h"
#include "support/Await.h"
#include "support/RawDatabase.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** Placements and blocks: what the store keeps of them, and how it mends them. */
class TestPositions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_store = std::make_unique<TestStore>();
        m_columns = Column::defaultColumns();
        m_lanes = {SwimLane::defaultSwimLane(), lane(u"Home"_s)};
        store().saveBoardConfiguration(m_columns);
        store().saveSwimLaneConfiguration(m_lanes);
    }
    void cleanup() { m_store.reset(); }

    void repairsGapsAndTies_data();
    void repairsGapsAndTies();
    void keepsTheBlockWhenATaskMoves();
    void blocksATaskThatHasNoPlaceYet();
    void unblockingAnUnknownTaskMakesNoRow();
    void findsRowsOfAColumnThatWasMadeAnew();
    void putsATaskWithoutASwimLaneIntoTheDefaultOne();
    void placesTasksBehindTheLastOne();
    void emptiesAColumnAndASwimLaneWithoutLosingABlock();
    void writesNothingOfADeletedTask();
    void readsWhatOthersWrote_data();
    void readsWhatOthersWrote();
    void keepsEveryTextAndMoment_data();
    void keepsEveryTextAndMoment();
    void leavesRowsThatDoNotChangeAlone();
    void readsTheBoardInOnePass();
    void writesNothingOffTheDatabaseThread();

private:
    PersistenceManager &store() { return **m_store; }
    RawDatabase raw() { return RawDatabase(m_store->databasePath()); }
    static SwimLane lane(const QString &name)
    {
        SwimLane lane;
        lane.id = SwimLaneId::create();
        lane.name = name;
        lane.stableId = u"swimlane_" + lane.id.text();
        return lane;
    }
    TaskPosition place(const QString &task, int column, int swimLane, int position) const
    {
        return {task, m_columns.at(column).id, m_lanes.at(swimLane).id, position};
    }
    PersistentTaskPosition row(const QString &task, int column, int swimLane, int position) const
    {
        return {task,
                m_columns.at(column).id,
                position,
                m_store->clock.now(),
                m_columns.at(column).stableId,
                m_lanes.at(swimLane).id,
                m_lanes.at(swimLane).stableId,
                false,
                {}};
    }
    /** "task position" of each row of the cell, as stored. */
    QStringList cell(int column, int swimLane)
    {
        QStringList texts;
        for (const PersistentTaskPosition &row :
             store().loadTaskPositions(m_columns.at(column).id, m_lanes.at(swimLane).id)) {
            texts.append(row.id + u' ' + QString::number(row.position));
        }
        return texts;
    }
    PersistentTaskPosition stored(const QString &task)
    {
        return m_store->position(task).value_or(PersistentTaskPosition());
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    std::vector<Column> m_columns;
    std::vector<SwimLane> m_lanes;
};

void TestPositions::repairsGapsAndTies_data()
{
    QTest::addColumn<QList<int>>("positions");
    QTest::addColumn<QStringList>("repaired");
    QTest::addColumn<bool>("isRepaired");
    QTest::newRow("a tie") << QList<int>{0, 1, 1, 2} << QStringList{u"a 0"_s, u"b 1"_s, u"c 2"_s, u"d 3"_s}
                           << true;
    QTest::newRow("a gap") << QList<int>{0, 2, 3} << QStringList{u"a 0"_s, u"b 1"_s, u"c 2"_s} << true;
    QTest::newRow("not from 0") << QList<int>{4} << QStringList{u"a 0"_s} << true;
    QTest::newRow("negative") << QList<int>{-1, 0} << QStringList{u"a 0"_s, u"b 1"_s} << true;
    QTest::newRow("another order") << QList<int>{2, 0, 1} << QStringList{u"b 0"_s, u"c 1"_s, u"a 2"_s}
                                   << false;
    QTest::newRow("empty") << QList<int>{} << QStringList{} << false;
}

void TestPositions::repairsGapsAndTies()
{
    QFETCH(QList<int>, positions);
    QFETCH(QStringList, repaired);
    std::vector<PersistentTaskPosition> rows;
    for (int i = 0; i < positions.size(); ++i) {
        rows.push_back(row(QString(QChar(u'a' + i)), 0, 0, positions.at(i)));
    }
    rows.push_back(row(u"in another lane"_s, 0, 1, 7));
    store().batchSaveTaskPositions(rows);
    LogWriter::forgetMessages();

    QCOMPARE(cell(0, 0), repaired);

    QTEST(LogWriter::recentMessages().contains(u"Fixed positions in column " + m_columns.at(0).id.text()),
          "isRepaired");
    m_store->reopen();
    QStringList storedTexts = raw().rows(
        u"SELECT id || ' ' || position FROM taskPositions WHERE length(id) = 1 ORDER BY position"_s);
    QCOMPARE(storedTexts, repaired);
    QCOMPARE(stored(u"in another lane"_s).position, 7);
}

void TestPositions::keepsTheBlockWhenATaskMoves()
{
    const TaskPosition target = place(u"t"_s, 1, 1, 0);
    const std::vector<std::function<void()>> ways{
        [&] { store().saveTaskPosition(u"t"_s, target.columnId, 0, target.swimLaneId); },
        [&] { store().batchSaveTaskPositions(std::vector{target}); },
        [&] { QVERIFY(await(store().writeTaskPositions({target}))); },
        [&] {
            await(store().placeTasksAtEnd({u"t"_s}, target.columnId, target.swimLaneId));
        }};
    for (const auto &move : ways) {
        store().deleteTaskPosition(u"t"_s);
        store().saveTaskPosition(u"t"_s, m_columns.at(0).id, 0, m_lanes.at(0).id);
        store().saveTaskAsBlocked(u"t"_s, u"waits for Ann"_s);

        move();

        PersistentTaskPosition expected = row(u"t"_s, 1, 1, 0);
        expected.isBlocked = true;
        expected.blockReason = u"waits for Ann"_s;
        QCOMPARE(stored(u"t"_s), expected);
    }
}

void TestPositions::blocksATaskThatHasNoPlaceYet()
{
    store().saveTaskAsBlocked(u"new"_s, u"why"_s);
    QCOMPARE(store().getBlockedTaskIdsFromSQLite(), QSet<QString>{u"new"_s});
    QVERIFY(store().loadAllTaskPositions().empty());

    store().batchSaveTaskPositions(std::vector{place(u"new"_s, 0, 0, 0)});

    QCOMPARE(stored(u"new"_s).blockReason, std::optional(u"why"_s));
    QVERIFY(stored(u"new"_s).isBlocked);
}

void TestPositions::unblockingAnUnknownTaskMakesNoRow()
{
    store().removeTaskFromBlocked(u"unknown"_s);
    store().saveTaskAsBlocked(u"known"_s, {});
    store().removeTaskFromBlocked(u"known"_s);

    QVERIFY(store().getBlockedTaskIdsFromSQLite().isEmpty());
    QVERIFY(store().getBlockReasonsFromSQLite().isEmpty());
    QCOMPARE(raw().rows(u"SELECT id, isBlocked FROM taskPositions"_s), QStringList{u"known|0"_s});
}

void TestPositions::findsRowsOfAColumnThatWasMadeAnew()
{
    store().batchSaveTaskPositions(
        std::vector{place(u"a"_s, 0, 0, 0), place(u"b"_s, 0, 1, 0), place(u"c"_s, 1, 0, 0)});
    const ColumnId oldId = m_columns.at(0).id;
    m_columns[0].id = ColumnId::create();
    store().saveBoardConfiguration(m_columns);

    const auto inCell = store().loadTaskPositions(m_columns.at(0).id, m_lanes.at(0).id);
    QCOMPARE(inCell.size(), 1u);
    QCOMPARE(inCell.front().columnId, oldId);
    QCOMPARE(store().loadTaskPositions(m_columns.at(0).id).size(), 2u);
    // A column and a swimlane that the configuration does not know are looked up by their UUIDs.
    QCOMPARE(store().loadTaskPositions(oldId).size(), 2u);
    QCOMPARE(store().loadTaskPositions(ColumnId::create(), SwimLaneId::create()).size(), 0u);
}

void TestPositions::putsATaskWithoutASwimLaneIntoTheDefaultOne()
{
    store().saveTaskPosition(u"t"_s, m_columns.at(0).id, 0, {});
    QCOMPARE(stored(u"t"_s).swimLaneId, std::optional(m_lanes.at(0).id));

    store().saveSwimLaneConfiguration({m_lanes.at(1)});
    store().saveTaskPosition(u"t"_s, m_columns.at(0).id, 0, {});
    QCOMPARE(stored(u"t"_s).swimLaneId, std::optional(m_lanes.at(1).id));

    store().saveSwimLaneConfiguration({});
    store().saveTaskPosition(u"t"_s, m_columns.at(0).id, 0, {});
    QCOMPARE(stored(u"t"_s).swimLaneId, std::nullopt);
    QCOMPARE(stored(u"t"_s).stableSwimLaneId, std::nullopt);
}

void TestPositions::placesTasksBehindTheLastOne()
{
    const ColumnId column = m_columns.at(0).id;
    const SwimLaneId swimLane = m_lanes.at(0).id;
    auto first = store().placeTasksAtEnd({u"a"_s, u"b"_s}, column, swimLane);
    auto second = store().placeTasksAtEnd({u"c"_s}, column, swimLane);
    QCOMPARE(await(std::move(first)), std::optional(0));
    QCOMPARE(await(std::move(second)), std::optional(2));
    QCOMPARE(cell(0, 0), (QStringList{u"a 0"_s, u"b 1"_s, u"c 2"_s}));

    store().batchSaveTaskPositions(std::vector{place(u"a"_s, 0, 0, 8)});
    QCOMPARE(await(store().placeTasksAtEnd({u"d"_s}, column, swimLane)), std::optional(9));
}

void TestPositions::emptiesAColumnAndASwimLaneWithoutLosingABlock()
{
    store().batchSaveTaskPositions(std::vector{place(u"a"_s, 0, 1, 3), place(u"b"_s, 1, 1, 0)});
    store().saveTaskAsBlocked(u"a"_s, u"why"_s);

    store().moveColumnTaskPositions(m_columns.at(0).id, m_columns.at(1).id);
    store().deleteColumnTaskPositions(m_columns.at(0).id);
    store().moveSwimLaneTaskPositions(m_lanes.at(1).id, m_lanes.at(0).id);

    PersistentTaskPosition expected = row(u"a"_s, 1, 0, 3);
    expected.isBlocked = true;
    expected.blockReason = u"why"_s;
    QCOMPARE(stored(u"a"_s), expected);
    QCOMPARE(stored(u"b"_s), row(u"b"_s, 1, 0, 0));

    store().deleteColumnTaskPositions(m_columns.at(1).id);
    QVERIFY(store().loadAllTaskPositions().empty());
}

void TestPositions::writesNothingOfADeletedTask()
{
    const QString id = u"plaintext-1"_s;
    PlainTextRecord record;
    record.fields.id = id;
    store().savePlainTextTask(record);
    store().batchSaveTaskPositions(std::vector{place(id, 0, 0, 0)});

    store().deleteTaskPosition(id);
    store().deletePlainTextTask(id);
    store().saveTaskPosition(id, m_columns.at(0).id, 0, {});
    store().batchSaveTaskPositions(std::vector{row(id, 0, 0, 0)});
    store().batchSaveTaskPositions(std::vector{place(id, 0, 0, 0)});
    await(store().placeTasksAtEnd({id}, m_columns.at(0).id, m_lanes.at(0).id));
    store().saveTaskAsBlocked(id, {});
    store().savePlainTextTask(record);

    QVERIFY(store().loadPlainTextTasks().empty());
    QCOMPARE(raw().rows(u"SELECT count(*) FROM taskPositions"_s), QStringList{u"0"_s});
}

void TestPositions::readsWhatOthersWrote_data()
{
    QTest::addColumn<QString>("values");
    QTest::addColumn<int>("rows");
    const QString uuid = u"'0123456F-89AB-CDEF-0123-456789ABCDEF'"_s;
    QTest::newRow("lower case UUID") << uuid.toLower() + u", 0, 1.5, NULL, NULL, NULL, 0, NULL" << 1;
    QTest::newRow("all texts empty") << uuid + u", 0, 1.5, '', '', '', 0, ''" << 1;
    QTest::newRow("not a UUID") << u"'column', 0, 1.5, '', '', '', 0, ''"_s << 0;
    QTest::newRow("braces") << u"'{0123456F-89AB-CDEF-0123-456789ABCDEF}', 0, 1.5, '', '', '', 0, ''"_s << 0;
    QTest::newRow("blocked by another number") << uuid + u", 0, 1.5, '', '', '', 2, 'why'" << 1;
    QTest::newRow("a position beyond any board") << uuid + u", 99999999999, 1.5, '', '', '', 0, ''" << 1;
    QTest::newRow("a swimlane that is none") << uuid + u", 0, 1.5, '', 'lane', '', 0, ''" << 1;
}

void TestPositions::readsWhatOthersWrote()
{
    QFETCH(QString, values);
    QVERIFY(store().loadAllTaskPositions().empty());
    QVERIFY(raw().run(u"INSERT INTO taskPositions VALUES ('t', " + values + u')'));

    const std::vector<PersistentTaskPosition> rows = store().loadAllTaskPositions();

    QTEST(static_cast<int>(rows.size()), "rows");
    for (const PersistentTaskPosition &row : rows) {
        QVERIFY(row.columnId == ColumnId::fromText(u"0123456F-89AB-CDEF-0123-456789ABCDEF"));
        QCOMPARE(row.swimLaneId, std::nullopt);
        QCOMPARE(row.stableColumnId, std::nullopt);
        QVERIFY(!row.isBlocked);
    }
}

void TestPositions::keepsEveryTextAndMoment_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << u"it's \"so\"; DROP TABLE taskPositions; --"_s;
    QTest::newRow("emoji and marks") << u"👩‍👩‍👧 é e\u0301 ⚠️"_s;
    QTest::newRow("right to left") << u"مهمة עברית"_s;
    QTest::newRow("a zero inside") << u"a"_s + QChar(u'\0') + u'b';
    QTest::newRow("lines and tabs") << u"a\nb\tc\r\n"_s;
    QTest::newRow("very long") << QString(300'000, u'ü');
}

void TestPositions::keepsEveryTextAndMoment()
{
    QFETCH(QString, text);
    m_store->clock.jumpTo(Date(815302800.1 + 1e-7));
    PersistentTaskPosition written = row(text, 0, 0, 5);
    written.isBlocked = true;
    written.blockReason = text;

    store().batchSaveTaskPositions(std::vector{written});
    m_store->reopen();

    QCOMPARE(stored(text), written);
    QCOMPARE(store().getBlockReasonsFromSQLite().value(text), text);
}

void TestPositions::leavesRowsThatDoNotChangeAlone()
{
    const Date before = m_store->clock.now();
    store().batchSaveTaskPositions(std::vector{place(u"a"_s, 0, 0, 0), place(u"b"_s, 0, 0, 1)});
    m_store->clock.advance(60.0);

    store().batchSaveTaskPositions(std::vector{place(u"a"_s, 0, 0, 0), place(u"b"_s, 0, 0, 2)});

    QCOMPARE(stored(u"a"_s).lastUpdated, before);
    QCOMPARE(stored(u"b"_s).lastUpdated, before + 60.0);
}

void TestPositions::readsTheBoardInOnePass()
{
    store().batchSaveTaskPositions(std::vector{place(u"c"_s, 1, 0, 1), place(u"a"_s, 1, 1, 0),
                                               place(u"b"_s, 1, 0, 1), place(u"d"_s, 0, 0, 9)});
    store().saveTaskAsBlocked(u"a"_s, u"why"_s);
    store().saveTaskAsBlocked(u"b"_s, {});
    store().saveTaskAsBlocked(u"nowhere"_s, u"lost"_s);
    store().saveEisenhowerPriority(u"a"_s, EisenhowerPriority::DoNow);
    store().saveEisenhowerPriority(u"b"_s, EisenhowerPriority::Schedule);
    store().deleteEisenhowerPriority(u"b"_s);
    await(store().drained());
    QVERIFY(raw().run(u"INSERT INTO eisenhowerAssignments VALUES ('x', 'someday', 0)"_s));

    const std::optional<BoardMemory> memory = await(store().readBoardMemory());

    QVERIFY(memory.has_value());
    QStringList order;
    for (const PersistentTaskPosition &row : memory->positions) {
        order.append(row.id);
    }
    const bool isFirstColumnFirst = m_columns.at(0).id.text() < m_columns.at(1).id.text();
    QCOMPARE(order.join(u' '), isFirstColumnFirst ? u"d a c b"_s : u"a c b d"_s);
    QCOMPARE(memory->blockedTaskIds, (QSet<QString>{u"a"_s, u"b"_s, u"nowhere"_s}));
    QCOMPARE(memory->blockReasons, (QHash<QString, QString>{{u"a"_s, u"why"_s}, {u"nowhere"_s, u"lost"_s}}));
    QCOMPARE(memory->priorities.size(), 1);
    QCOMPARE(memory->priorities.value(u"a"_s), EisenhowerPriority::DoNow);
    QVERIFY(!memory->isBehind);
}

void TestPositions::writesNothingOffTheDatabaseThread()
{
    Database database(m_store->config.filePath(u"other.sqlite"_s), {},
                      {[](const auto &) {}, [] {},
                       [] {
                       }});
    database.queue().sync([&] { database.open(Date()); });

    QVERIFY(!database.executeSQL("DELETE FROM taskPositions"));
    QVERIFY(LogWriter::recentMessages().contains(
        u"executeSQL called from outside dbQueue - this is a thread safety violation"_s));
    QVERIFY(database.queue().sync([&] { return database.executeSQL("DELETE FROM taskPositions"); }));
}

VANTREL_REGISTER_TEST(TestPositions)

} // namespace vantrel::test

#include "test_positions.moc"
