#include "board/ColumnManager.h"
#include "board/SwimLaneManager.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

Column newColumn(const QString &name, ColumnType type)
{
    Column column;
    column.id = ColumnId::create();
    column.name = name;
    column.type = type;
    column.position = 99;
    return column;
}

SwimLane newSwimLane(const QString &name)
{
    SwimLane lane;
    lane.id = SwimLaneId::create();
    lane.name = name;
    return lane;
}

template <typename Record>
QString namesOf(const std::vector<Record> &records)
{
    QStringList names;
    for (const Record &record : records) {
        names.append(record.name);
    }
    return names.join(u", ");
}

template <typename Record>
bool isNumberedByIndex(const std::vector<Record> &records)
{
    for (size_t i = 0; i < records.size(); ++i) {
        if (records[i].position != static_cast<int>(i)) return false;
    }
    return true;
}

} // namespace

/** The columns and swimlanes of a board, with the store beneath them. */
class TestBoardShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theFirstStartSavesItsDefaults();
    void columnsStayInTheirGroups();
    void aColumnKeepsItsRole();
    void theLastColumnOfATypeStays();
    void aRemovedColumnLeavesItsRowsAndBlocksToItsHeir();
    void theDefaultSwimLaneIsNeverMissing();
    void aLostSwimLaneFileDoesNotHideTheTasksOfTheDefaultOne();
    void swimLaneHeightsStayWithinBounds_data();
    void swimLaneHeightsStayWithinBounds();
    void theDefaultSwimLaneKeepsItsRole();
    void swimLanesMoveWithinTheirList();
    void aChangeOfSwimLanesIsToldOnTheNextTurn();
    void aRemovedSwimLaneLeavesItsRowsAndBlocksToTheDefaultOne();
    void someSwimLanesCannotBeRemoved();

private:
    std::unique_ptr<SwimLaneManager> swimLanes()
    {
        return std::make_unique<SwimLaneManager>(**m_store, m_notifications, m_store->clock);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    NotificationCenter m_notifications;
};

void TestBoardShape::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m_store = std::make_unique<TestStore>();
}

void TestBoardShape::cleanup()
{
    m_store.reset();
    m_log.reset();
}

void TestBoardShape::theFirstStartSavesItsDefaults()
{
    const std::vector<Column> columns = ColumnManager(**m_store).columns();
    const std::vector<SwimLane> lanes = swimLanes()->swimLanes();
    QCOMPARE(namesOf(columns), u"To Do, Doing, Done"_s);
    QCOMPARE(namesOf(lanes), u"Default"_s);

    m_store->reopen();

    QCOMPARE(ColumnManager(**m_store).columns(), columns);
    QCOMPARE(swimLanes()->swimLanes(), lanes);
}

void TestBoardShape::columnsStayInTheirGroups()
{
    ColumnManager manager(**m_store);
    QSignalSpy changes(&manager, &ColumnManager::columnsChanged);
    Column review = newColumn(u"Review"_s, ColumnType::Active);

    manager.addColumn(review);
    QCOMPARE(namesOf(manager.columns()), u"To Do, Doing, Review, Done"_s);

    review.type = ColumnType::Queue;
    review.name = u"Ideas"_s;
    QVERIFY(manager.updateColumn(review));
    QCOMPARE(namesOf(manager.columns()), u"To Do, Ideas, Doing, Done"_s);

    manager.applyMove(1, 0);
    QCOMPARE(namesOf(manager.columns()), u"Ideas, To Do, Doing, Done"_s);
    QCOMPARE(changes.count(), 3);

    QVERIFY(!manager.updateColumn(newColumn(u"Unknown"_s, ColumnType::Queue)));
    QCOMPARE(changes.count(), 3);
    QVERIFY(isNumberedByIndex(manager.columns()));
    m_store->reopen();
    QCOMPARE(ColumnManager(**m_store).columns(), manager.columns());
}

void TestBoardShape::aColumnKeepsItsRole()
{
    ColumnManager manager(**m_store);
    const Column first = newColumn(u"Later"_s, ColumnType::Queue);
    manager.addColumn(first);
    const QString role = manager.column(first.id)->stableId.value();

    manager.applyMove(1, 0);
    Column renamed = first;
    renamed.name = u"Much later"_s;
    manager.updateColumn(renamed);
    QCOMPARE(manager.column(first.id)->stableId, role);

    // A second one of the old name, at the old place.
    const Column second = newColumn(u"Later"_s, ColumnType::Queue);
    manager.applyMove(1, 0);
    manager.removeColumn(manager.columns()[0].id);
    manager.addColumn(second);
    QCOMPARE(manager.indexOf(second.id), 1);
    QCOMPARE(manager.column(second.id)->stableId, role + u"_2");
}

void TestBoardShape::theLastColumnOfATypeStays()
{
    ColumnManager manager(**m_store);
    const std::vector<Column> before = manager.columns();

    for (const Column &column : before) {
        QVERIFY(!manager.canRemoveColumn(column));
        QVERIFY(!manager.heirOf(column.id));
        QVERIFY(!manager.removeColumn(column.id));
    }
    QVERIFY(!manager.removeColumn(ColumnId::create()));

    QCOMPARE(manager.columns(), before);
    QVERIFY(LogWriter::recentMessages().contains(u"Cannot remove column - would violate constraints"_s));
}

void TestBoardShape::aRemovedColumnLeavesItsRowsAndBlocksToItsHeir()
{
    ColumnManager columns(**m_store);
    const SwimLaneId lane = swimLanes()->defaultSwimLane().id;
    const Column review = newColumn(u"Review"_s, ColumnType::Active);
    columns.addColumn(review);
    const ColumnId doing = columns.columns()[1].id;
    (*m_store)->saveTaskPosition(u"plaintext-1"_s, review.id, 4, lane);
    (*m_store)->saveTaskAsBlocked(u"plaintext-1"_s, u"waits for the printer"_s);

    QVERIFY(columns.removeColumn(review.id));

    const std::vector<PersistentTaskPosition> rows = (*m_store)->loadAllTaskPositions();
    QCOMPARE(rows.size(), size_t(1));
    QCOMPARE(rows[0].columnId, doing);
    QCOMPARE(rows[0].swimLaneId, lane);
    QCOMPARE(rows[0].blockReason, u"waits for the printer"_s);
    QVERIFY(rows[0].isBlocked);
}

void TestBoardShape::theDefaultSwimLaneIsNeverMissing()
{
    const SwimLane home = newSwimLane(u"Home"_s);
    for (const std::vector<SwimLane> &stored : {std::vector<SwimLane>(), std::vector<SwimLane>{home}}) {
        (*m_store)->saveSwimLaneConfiguration(stored);
        m_store->reopen();

        const std::vector<SwimLane> lanes = swimLanes()->swimLanes();

        QCOMPARE(lanes.size(), stored.size() + 1);
        QVERIFY(lanes.front().isDefault());
        QVERIFY(isNumberedByIndex(lanes));
        m_store->reopen();
        QCOMPARE(swimLanes()->swimLanes(), lanes);
    }
}

void TestBoardShape::aLostSwimLaneFileDoesNotHideTheTasksOfTheDefaultOne()
{
    const ColumnId column = ColumnManager(**m_store).columns().front().id;
    const SwimLaneId before = swimLanes()->defaultSwimLane().id;
    (*m_store)->saveTaskPosition(u"plaintext-1"_s, column, 0, before);
    m_store->close();
    QVERIFY(QFile::remove(m_store->config.filePath(u"devSwimlanes.json"_s)));
    m_store->open();

    QCOMPARE(swimLanes()->defaultSwimLane().id, before);
}

void TestBoardShape::swimLaneHeightsStayWithinBounds_data()
{
    QTest::addColumn<double>("height");
    QTest::addColumn<double>("stored");
    QTest::addColumn<int>("changes");

    QTest::newRow("too low") << 100.0 << 150.0 << 1;
    QTest::newRow("lowest") << 150.0 << 150.0 << 1;
    QTest::newRow("highest") << 800.0 << 800.0 << 1;
    QTest::newRow("too high") << 1000.0 << 800.0 << 1;
    QTest::newRow("the same saves nothing") << 300.0 << 300.0 << 0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 150.0 << 1;
}

void TestBoardShape::swimLaneHeightsStayWithinBounds()
{
    QFETCH(double, height);
    const auto manager = swimLanes();
    QSignalSpy changes(manager.get(), &SwimLaneManager::swimLanesChanged);

    manager->updateSwimLaneHeight(manager->defaultSwimLane().id, height);
    manager->updateSwimLaneHeight(SwimLaneId::create(), 555.0);

    QTEST(manager->defaultSwimLane().height, "stored");
    QTEST(static_cast<int>(changes.count()), "changes");
}

void TestBoardShape::theDefaultSwimLaneKeepsItsRole()
{
    const auto manager = swimLanes();
    SwimLane renamed = manager->defaultSwimLane();
    renamed.name = u"Everything"_s;
    renamed.stableId = u"swimlane_other"_s;

    manager->updateSwimLane(renamed);
    SwimLane second = newSwimLane(u"Second"_s);
    second.stableId = DefaultSwimLaneStableId.toString();
    manager->addSwimLane(second);
    const SwimLane third = newSwimLane(u"Third"_s);
    manager->addSwimLane(third);

    QCOMPARE(manager->defaultSwimLane().name, u"Everything"_s);
    QCOMPARE(manager->swimLane(second.id)->stableId, u"swimlane_" + second.id.text());
    QCOMPARE(manager->swimLane(third.id)->stableId, u"swimlane_" + third.id.text());
    QCOMPARE(manager->getSwimLaneName(third.id), u"Third"_s);
    QCOMPARE(manager->getSwimLaneName(SwimLaneId::create()), u"unknown"_s);
}

void TestBoardShape::swimLanesMoveWithinTheirList()
{
    const auto manager = swimLanes();
    manager->addSwimLane(newSwimLane(u"A"_s));
    manager->addSwimLane(newSwimLane(u"B"_s));

    QVERIFY(manager->moveSwimLane(2, 0));
    QCOMPARE(namesOf(manager->swimLanes()), u"B, Default, A"_s);
    QVERIFY(isNumberedByIndex(manager->swimLanes()));
    for (const auto &[from, to] : {std::pair(-1, 0), std::pair(0, -1), std::pair(3, 0), std::pair(0, 3)}) {
        QVERIFY(!manager->moveSwimLane(from, to));
    }
    QCOMPARE(namesOf(manager->swimLanes()), u"B, Default, A"_s);
}

void TestBoardShape::aChangeOfSwimLanesIsToldOnTheNextTurn()
{
    const auto manager = swimLanes();
    manager->addSwimLane(newSwimLane(u"A"_s));
    manager->addSwimLane(newSwimLane(u"B"_s));
    m_store->clock.advance(0.0);
    std::vector<QVariant> posted;
    m_notifications.observe(notifications::BoardStateChanged, manager.get(),
                            [&](const Notification &notification) { posted.push_back(notification.object); });

    manager->setExpansionStates({{manager->swimLanes()[0].id, true},
                                 {manager->swimLanes()[1].id, false},
                                 {manager->swimLanes()[2].id, false}});
    QVERIFY(posted.empty());
    m_store->clock.advance(0.0);
    QCOMPARE(posted, std::vector<QVariant>{QVariant()});

    manager->toggleSwimLaneExpanded(manager->swimLanes()[1].id);
    QVERIFY(manager->swimLanes()[1].isExpanded);
    QVERIFY(!manager->swimLanes()[2].isExpanded);
}

void TestBoardShape::aRemovedSwimLaneLeavesItsRowsAndBlocksToTheDefaultOne()
{
    const ColumnManager columns(**m_store);
    const ColumnId todo = columns.columns()[0].id;
    const ColumnId doing = columns.columns()[1].id;
    const auto manager = swimLanes();
    const SwimLane home = newSwimLane(u"Home"_s);
    manager->addSwimLane(home);
    manager->addSwimLane(newSwimLane(u"Work"_s));
    (*m_store)->saveTaskPosition(u"plaintext-1"_s, todo, 0, home.id);
    (*m_store)->saveTaskPosition(u"plaintext-2"_s, todo, 1, home.id);
    (*m_store)->saveTaskPosition(u"plaintext-3"_s, doing, 7, home.id);
    (*m_store)->saveTaskAsBlocked(u"plaintext-3"_s, u"rain"_s);

    const QHash<QString, ColumnId> moved = manager->removeSwimLane(home.id);

    const QHash<QString, ColumnId> expected{
        {u"plaintext-1"_s, todo}, {u"plaintext-2"_s, todo}, {u"plaintext-3"_s, doing}};
    QCOMPARE(moved, expected);
    for (const PersistentTaskPosition &row : (*m_store)->loadAllTaskPositions()) {
        QCOMPARE(row.swimLaneId, manager->defaultSwimLane().id);
        QCOMPARE(row.columnId, expected.value(row.id));
        QCOMPARE(row.isBlocked, row.id == u"plaintext-3"_s);
    }
    QCOMPARE(namesOf(manager->swimLanes()), u"Default, Work"_s);
    QVERIFY(isNumberedByIndex(manager->swimLanes()));
}

void TestBoardShape::someSwimLanesCannotBeRemoved()
{
    const auto manager = swimLanes();
    QVERIFY(!manager->canRemoveSwimLane(manager->defaultSwimLane().id));
    manager->addSwimLane(newSwimLane(u"Home"_s));
    const std::vector<SwimLane> before = manager->swimLanes();

    QVERIFY(manager->removeSwimLane(manager->defaultSwimLane().id).isEmpty());
    QVERIFY(manager->removeSwimLane(SwimLaneId::create()).isEmpty());
    QCOMPARE(manager->swimLanes(), before);
}

VANTREL_REGISTER_TEST(TestBoardShape)

} // namespace vantrel::test

#include "test_board_shape.moc"
