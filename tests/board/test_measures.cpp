#include "TestBoard.h"
#include "board/WIPMonitoringModifiers.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

WorkItems makeTasks(int count)
{
    WorkItems tasks;
    for (int i = 0; i < count; ++i) {
        tasks.push_back(makeTask(u"t"_s + QString::number(i)));
    }
    return tasks;
}

} // namespace

/** What the board counts, isolates, focuses and enlarges. */
class TestMeasures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theGaugeCountsOpenWorkInOpenColumns();
    void aCrossedThresholdIsTold();
    void anOverloadIsShownButNoMoveIsBlamed();
    void aSwimLanesShareIsOfAllOpenWork();
    void countsIgnoreTheFilters();

    void isolationIsUndoneWhole();
    void isolatedHeightsFollowTheScreen_data();
    void isolatedHeightsFollowTheScreen();
    void heightsWithoutIsolationAreTheSwimLanesOwn();
    void focusIsHeardOnEachChange();
    void zoomStaysWithinItsBoundsAndSurvivesARestart();
    void aStoredZoomThatMakesNoSenseIsClamped();

    void aQuadrantIsKeptInStepOnTheItemTheBoardAndTheStore();
    void aCompletedTaskLosesItsQuadrantForGood();

private:
    BoardState &board() { return **m_board; }
    void move(const QString &id, ColumnId to, std::optional<SwimLaneId> lane = {})
    {
        board().moveTask(board().task(id), to, lane);
    }
    QString share(SwimLaneId lane)
    {
        return QString::number(board().calculateSwimLaneIncompleteWorkItems(lane)) + u' ' +
               board().calculateSwimLaneIncompletePercentage(lane);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestBoard> m_board;
};

void TestMeasures::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m_board = std::make_unique<TestBoard>();
}

void TestMeasures::cleanup()
{
    m_board.reset();
    m_log.reset();
}

void TestMeasures::theGaugeCountsOpenWorkInOpenColumns()
{
    m_board->organize(makeTasks(6));
    move(u"t0"_s, m_board->doing());
    move(u"t1"_s, m_board->doing(), m_board->second());
    board().moveTaskWithoutTellingSource(board().task(u"t2"_s), m_board->done());
    QCOMPARE(board().calculateTotalWIP(), 5);
    QCOMPARE(board().calculateColumnTaskCount(m_board->doing()), 2);

    board().wipGaugeSettings().setIncludeQueueColumns(false);
    QCOMPARE(board().calculateTotalWIP(), 2);

    board().task(u"t0"_s)->setComplete(true);
    board().task(u"t1"_s)->setBlocked(true);
    QCOMPARE(board().calculateColumnTaskCount(m_board->doing()), 1);
    board().wipGaugeSettings().setWarnThreshold(1);
    board().wipGaugeSettings().setMaxThreshold(1);
    QCOMPARE(board().getWIPStatus(), (WIPStatus{1, true, false}));
    QCOMPARE(board().calculateColumnTaskCount(ColumnId::create()), 0);
}

void TestMeasures::aCrossedThresholdIsTold()
{
    m_board->organize(makeTasks(3));
    board().wipGaugeSettings().setMaxThreshold(2);
    std::vector<QVariantMap> told;
    m_board->notifications.observe(
        notifications::WIPThresholdChanged, this,
        [&told](const Notification &notification) { told.push_back(notification.userInfo); });

    board().notifyWIPThresholdChanges(3);
    QVERIFY(told.empty());
    board().notifyWIPThresholdChanges(2);

    QCOMPARE(told.size(), size_t(1));
    QCOMPARE(told[0], (QVariantMap{{u"wipCount"_s, 3}, {u"isWarning"_s, true}, {u"isOverLimit"_s, true}}));
    QVERIFY(LogWriter::recentMessages().contains(
        u"WIP threshold crossed: count=3, warning=true, overLimit=true"_s));
}

void TestMeasures::anOverloadIsShownButNoMoveIsBlamed()
{
    const WIPMonitoringModifiers monitoring(board(), m_board->notifications, m_board->toasts);
    m_board->organize(makeTasks(3));
    board().wipGaugeSettings().setIncludeQueueColumns(false);
    board().wipGaugeSettings().setMaxThreshold(1);

    for (const WorkItemPtr &task : board().tasks()) {
        board().moveTask(task, m_board->doing());
    }
    QVERIFY(board().getWIPStatus().isOverLimit);
    QVERIFY(!m_board->toasts.isShowing());

    board().notifyWIPThresholdChanges(1);
    QVERIFY(m_board->toasts.isShowing());
    QCOMPARE(m_board->toasts.message(),
             u"WIP limit exceeded! Consider completing tasks before starting new ones."_s);
    QCOMPARE(m_board->toasts.style(), ToastManager::ToastStyle::Warning);
    m_board->advance(3.0);

    board().wipGaugeSettings().setMaxThreshold(3);
    board().notifyWIPThresholdChanges(9);
    QVERIFY(!m_board->toasts.isShowing());
}

void TestMeasures::aSwimLanesShareIsOfAllOpenWork()
{
    QCOMPARE(share(m_board->first()), u"0 0%"_s);
    m_board->organize(makeTasks(9));
    for (const QString &id : {u"t0"_s, u"t1"_s, u"t2"_s}) {
        move(id, m_board->todo(), m_board->second());
    }
    board().task(u"t8"_s)->setComplete(true);

    QCOMPARE(share(m_board->second()), u"3 37%"_s);
    QCOMPARE(share(m_board->first()), u"5 62%"_s);
    QCOMPARE(share(SwimLaneId::create()), u"0 0%"_s);
}

void TestMeasures::countsIgnoreTheFilters()
{
    m_board->organize(makeTasks(3));
    board().filterManager().toggleFlaggedFilter();

    QVERIFY(board().tasksForColumn(m_board->todo()).empty());
    QCOMPARE(board().calculateTotalWIP(), 3);
    QCOMPARE(share(m_board->first()), u"3 100%"_s);
}

void TestMeasures::isolationIsUndoneWhole()
{
    const SwimLaneId first = m_board->first();
    const SwimLaneId second = m_board->second();
    const auto isExpanded = [this](SwimLaneId id) {
        return board().swimLaneManager().swimLane(id)->isExpanded;
    };
    board().swimLaneManager().toggleSwimLaneExpanded(second);
    QSignalSpy changes(&board(), &BoardState::isolationChanged);
    board().clearSwimLaneIsolation();
    board().isolateSwimLane(SwimLaneId::create());
    QCOMPARE(changes.count(), 0);

    board().isolateSwimLane(second);
    QVERIFY(board().isSwimLaneIsolated(second));
    QVERIFY(!isExpanded(first));
    QVERIFY(isExpanded(second));

    board().isolateSwimLane(second);
    QVERIFY(!board().isSwimLaneIsolationActive());
    QVERIFY(isExpanded(first));
    QVERIFY(!isExpanded(second));
    QCOMPARE(changes.count(), 2);
}

void TestMeasures::isolatedHeightsFollowTheScreen_data()
{
    QTest::addColumn<double>("screen");
    QTest::addColumn<int>("swimLanes");
    QTest::addColumn<double>("height");

    QTest::newRow("two others") << 1000.0 << 3 << 740.0;
    QTest::newRow("no screen") << -1.0 << 3 << 740.0;
    QTest::newRow("a small screen") << 700.0 << 2 << 720.0;
    QTest::newRow("more swimlanes than room") << 1000.0 << 13 << 150.0;
}

void TestMeasures::isolatedHeightsFollowTheScreen()
{
    QFETCH(double, screen);
    QFETCH(int, swimLanes);
    m_board->desktop.screen.value = screen > 0 ? std::optional(screen) : std::nullopt;
    while (static_cast<int>(board().swimLaneManager().swimLanes().size()) < swimLanes) {
        board().addSwimLane(SwimLane::defaultSwimLane());
    }

    board().isolateSwimLane(m_board->second());

    QTEST(board().heightForSwimLane(m_board->second()), "height");
    QCOMPARE(board().heightForSwimLane(m_board->first()), 60.0);
    QCOMPARE(board().heightForSwimLane(SwimLaneId::create()), 300.0);
}

void TestMeasures::heightsWithoutIsolationAreTheSwimLanesOwn()
{
    board().swimLaneManager().updateSwimLaneHeight(m_board->second(), 444.0);
    QCOMPARE(board().heightForSwimLane(m_board->second()), 444.0);
    QCOMPARE(board().heightForSwimLane(m_board->first()), 300.0);

    SwimLane absurd = *board().swimLaneManager().swimLane(m_board->second());
    absurd.height = -5e9;
    board().swimLaneManager().updateSwimLane(absurd);
    QCOMPARE(board().heightForSwimLane(m_board->second()), 150.0);
}

void TestMeasures::focusIsHeardOnEachChange()
{
    int posts = 0;
    m_board->notifications.observe(notifications::TaskFocusModeChanged, this,
                                   [&posts](const Notification &) { ++posts; });
    board().clearTaskFocus();
    QCOMPARE(posts, 0);

    board().focusTask(u"a"_s);
    board().focusTask(u"b"_s);
    QVERIFY(board().isTaskFocused(u"b"_s));
    board().focusTask(u"b"_s);

    QVERIFY(!board().isTaskFocusActive());
    QCOMPARE(posts, 4);
    QCOMPARE(m_board->announcer.history(),
             (QStringList{u"Task focus mode activated"_s, u"Task focus mode exited"_s,
                          u"Task focus mode activated"_s, u"Task focus mode exited"_s}));
}

void TestMeasures::zoomStaysWithinItsBoundsAndSurvivesARestart()
{
    QSignalSpy changes(&board(), &BoardState::zoomLevelChanged);
    board().setZoom(1.95);
    board().zoomIn();
    board().zoomIn();
    QCOMPARE(board().zoomLevel(), 2.0);
    QCOMPARE(changes.count(), 2);

    board().setZoom(0.55);
    board().zoomOut();
    board().zoomOut();
    QCOMPARE(board().zoomLevel(), 0.5);

    board().setZoom(5.0);
    QCOMPARE(board().zoomLevel(), 2.0);
    board().setZoom(0.0);
    QCOMPARE(board().zoomLevel(), 0.5);
    board().setZoom(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(board().zoomLevel(), 0.5);

    board().resetZoom();
    board().zoomIn();
    m_board->restart();
    QCOMPARE(board().zoomLevel(), 1.1);
}

void TestMeasures::aStoredZoomThatMakesNoSenseIsClamped()
{
    for (const auto &[stored, shown] : {std::pair(0.1, 0.5), std::pair(3.0, 2.0)}) {
        AppConfiguration configuration = m_board->store->loadAppConfiguration();
        configuration.zoomLevel = stored;
        m_board->store->saveAppConfiguration(configuration);
        m_board->restart();

        QCOMPARE(board().zoomLevel(), shown);
        QCOMPARE(m_board->store->loadAppConfiguration().zoomLevel, stored);
    }
}

void TestMeasures::aQuadrantIsKeptInStepOnTheItemTheBoardAndTheStore()
{
    m_board->organize(makeTasks(2));

    board().assignEisenhowerPriority(u"t0"_s, EisenhowerPriority::DoNow);
    QCOMPARE(board().task(u"t0"_s)->eisenhowerPriority(), EisenhowerPriority::DoNow);
    QCOMPARE(board().getTaskCount(EisenhowerPriority::DoNow), 1);
    QCOMPARE(board().getTaskCount(EisenhowerPriority::Unsorted), 1);
    m_board->settle();
    m_board->restart();
    m_board->organize(makeTasks(2));
    QCOMPARE(board().task(u"t0"_s)->eisenhowerPriority(), EisenhowerPriority::DoNow);

    board().removeEisenhowerPriority(u"t0"_s);
    QCOMPARE(board().getTaskCount(EisenhowerPriority::Unsorted), 2);
    m_board->settle();
    QVERIFY(m_board->store->loadAllEisenhowerPriorities().isEmpty());
    QCOMPARE(board().task(u"t0"_s)->eisenhowerPriority(), EisenhowerPriority::Unsorted);
}

void TestMeasures::aCompletedTaskLosesItsQuadrantForGood()
{
    m_board->organize(makeTasks(2));
    board().assignEisenhowerPriority(u"t0"_s, EisenhowerPriority::DoNow);
    m_board->settle();

    board().task(u"t0"_s)->setComplete(true);
    board().updateEisenhowerTaskCategorization();
    QCOMPARE(board().getTaskCount(EisenhowerPriority::DoNow), 0);
    QVERIFY(m_board->store->loadAllEisenhowerPriorities().isEmpty());

    board().task(u"t0"_s)->setComplete(false);
    m_board->settle();
    board().updateEisenhowerTaskCategorization();
    QCOMPARE(board().getTaskCount(EisenhowerPriority::Unsorted), 2);
}

VANTREL_REGISTER_TEST(TestMeasures)

} // namespace vantrel::test

#include "test_measures.moc"
