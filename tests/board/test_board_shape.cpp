#include "board/ColumnManager.h"
#include "board/SwimLaneManager.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/Builders.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** "0 Default, 1 Home": the names with their positions. */
template <typename Record>
QString listed(const std::vector<Record> &records)
{
    QStringList names;
    for (const Record &record : records) {
        names.append(QString::number(record.position) + u' ' + record.name);
    }
    return names.join(u", ");
}

} // namespace

/** The columns and swimlanes of a board, with the store beneath them. */
class TestBoardShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_store = std::make_unique<TestStore>();
    }
    void cleanup() { m_store.reset(); }

    void theFirstStartSavesItsDefaults();
    void columnsStayInTheirGroups();
    void aColumnKeepsItsRole();
    void theDefaultSwimLaneIsNeverMissing();
    void aLostSwimLaneFileDoesNotHideTheTasksOfTheDefaultOne();
    void swimLaneHeightsStayWithinBounds();
    void theDefaultSwimLaneKeepsItsRole();
    void aChangeOfSwimLanesIsToldOnTheNextTurn();

private:
    PersistenceManager &store() { return **m_store; }
    std::unique_ptr<SwimLaneManager> swimLanes()
    {
        return std::make_unique<SwimLaneManager>(store(), m_notifications, m_store->clock);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    NotificationCenter m_notifications;
};

void TestBoardShape::theFirstStartSavesItsDefaults()
{
    const std::vector<Column> columns = ColumnManager(store()).columns();
    const std::vector<SwimLane> lanes = swimLanes()->swimLanes();
    QCOMPARE(listed(columns), u"0 To Do, 1 Doing, 2 Done"_s);
    QCOMPARE(listed(lanes), u"0 Default"_s);

    m_store->reopen();
    QCOMPARE(ColumnManager(store()).columns(), columns);
    QCOMPARE(swimLanes()->swimLanes(), lanes);
}

void TestBoardShape::columnsStayInTheirGroups()
{
    ColumnManager manager(store());
    QSignalSpy changes(&manager, &ColumnManager::columnsChanged);
    Column review = aColumn(u"Review"_s, ColumnType::Active);
    manager.addColumn(review);
    QCOMPARE(listed(manager.columns()), u"0 To Do, 1 Doing, 2 Review, 3 Done"_s);

    review.type = ColumnType::Queue;
    review.name = u"Ideas"_s;
    QVERIFY(manager.updateColumn(review));
    QCOMPARE(listed(manager.columns()), u"0 To Do, 1 Ideas, 2 Doing, 3 Done"_s);

    QVERIFY(!manager.updateColumn(aColumn(u"Unknown"_s, ColumnType::Queue)));
    QCOMPARE(changes.count(), 2);
    m_store->reopen();
    QCOMPARE(ColumnManager(store()).columns(), manager.columns());
}

void TestBoardShape::aColumnKeepsItsRole()
{
    ColumnManager manager(store());
    const Column first = aColumn(u"Later"_s, ColumnType::Queue);
    manager.addColumn(first);
    const QString role = manager.column(first.id)->stableId.value();

    manager.applyMove(1, 0);
    Column renamed = first;
    renamed.name = u"Much later"_s;
    manager.updateColumn(renamed);
    QCOMPARE(manager.column(first.id)->stableId, role);

    // A second one under the old name, at the old place.
    manager.removeColumn(manager.columns()[1].id);
    const Column second = aColumn(u"Later"_s, ColumnType::Queue);
    manager.addColumn(second);
    QCOMPARE(manager.column(second.id)->position, 1);
    QCOMPARE(manager.column(second.id)->stableId, role + u"_2");
}

void TestBoardShape::theDefaultSwimLaneIsNeverMissing()
{
    for (const std::vector<SwimLane> &stored : {std::vector<SwimLane>(), {aSwimLane(u"Home"_s)}}) {
        store().saveSwimLaneConfiguration(stored);
        m_store->reopen();
        const std::vector<SwimLane> lanes = swimLanes()->swimLanes();
        QCOMPARE(listed(lanes), stored.empty() ? u"0 Default"_s : u"0 Default, 1 Home"_s);
        QVERIFY(lanes.front().isDefault());

        m_store->reopen();
        QCOMPARE(swimLanes()->swimLanes(), lanes);
    }
}

void TestBoardShape::aLostSwimLaneFileDoesNotHideTheTasksOfTheDefaultOne()
{
    const ColumnId column = ColumnManager(store()).columns().front().id;
    const SwimLaneId before = swimLanes()->defaultSwimLane().id;
    store().saveTaskPosition(u"plaintext-1"_s, column, 0, before);
    m_store->close();
    QVERIFY(QFile::remove(m_store->config.filePath(u"devSwimlanes.json"_s)));
    m_store->open();

    QCOMPARE(swimLanes()->defaultSwimLane().id, before);
}

void TestBoardShape::swimLaneHeightsStayWithinBounds()
{
    const auto manager = swimLanes();
    QSignalSpy changes(manager.get(), &SwimLaneManager::swimLanesChanged);
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    for (const auto &[height, stored] : {std::pair(100.0, 150.0),
                                         {150.0, 150.0},
                                         {800.0, 800.0},
                                         {1000.0, 800.0},
                                         {noNumber, 150.0},
                                         {300.0, 300.0}}) {
        manager->updateSwimLaneHeight(manager->defaultSwimLane().id, height);
        QCOMPARE(manager->defaultSwimLane().height, stored);
    }
    manager->updateSwimLaneHeight(SwimLaneId::create(), 555.0);
    QCOMPARE(changes.count(), 4);
}

void TestBoardShape::theDefaultSwimLaneKeepsItsRole()
{
    const auto manager = swimLanes();
    SwimLane renamed = manager->defaultSwimLane();
    renamed.name = u"Everything"_s;
    renamed.stableId = u"swimlane_other"_s;
    manager->updateSwimLane(renamed);
    SwimLane second = aSwimLane(u"Second"_s);
    second.stableId = DefaultSwimLaneStableId.toString();
    manager->addSwimLane(second);

    QCOMPARE(manager->defaultSwimLane().name, u"Everything"_s);
    QCOMPARE(manager->swimLane(second.id)->stableId, u"swimlane_" + second.id.text());
    QCOMPARE(manager->getSwimLaneName(second.id), u"Second"_s);
    QCOMPARE(manager->getSwimLaneName(SwimLaneId::create()), u"unknown"_s);
}

void TestBoardShape::aChangeOfSwimLanesIsToldOnTheNextTurn()
{
    const auto manager = swimLanes();
    manager->addSwimLane(aSwimLane(u"A"_s));
    manager->addSwimLane(aSwimLane(u"B"_s));
    m_store->clock.advance(0.0);
    std::vector<QVariant> posted;
    m_notifications.observe(notifications::BoardStateChanged, manager.get(),
                            [&](const Notification &notification) { posted.push_back(notification.object); });

    manager->setExpansionStates({{manager->swimLanes()[1].id, false}, {manager->swimLanes()[2].id, false}});
    QVERIFY(posted.empty());
    m_store->clock.advance(0.0);
    QCOMPARE(posted, std::vector<QVariant>{QVariant()});

    QVERIFY(manager->moveSwimLane(2, 0));
    QVERIFY(!manager->moveSwimLane(0, 3));
    QCOMPARE(listed(manager->swimLanes()), u"0 B, 1 Default, 2 A"_s);
    manager->toggleSwimLaneExpanded(manager->swimLanes()[2].id);
    QVERIFY(manager->swimLanes()[2].isExpanded);
    QVERIFY(!manager->swimLanes()[0].isExpanded);
}

VANTREL_REGISTER_TEST(TestBoardShape)

} // namespace vantrel::test

#include "test_board_shape.moc"
