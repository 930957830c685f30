#include "TestBoard.h"
#include "board/WIPMonitoringModifiers.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** What the board counts, isolates, focuses and enlarges. */
class TestMeasures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m_board = std::make_unique<TestBoard>();
    }
    void cleanup() { m_board.reset(); }

    void theGaugeCountsOpenWorkInOpenColumns();
    void anOverloadIsToldAndShownButNoMoveIsBlamed();
    void aSwimLanesShareIsOfAllOpenWork();

    void isolationIsUndoneWhole();
    void heightsFollowTheScreenDuringIsolation();
    void focusIsHeardOnEachChange();
    void zoomStaysWithinItsBoundsAndSurvivesARestart();

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

void TestMeasures::theGaugeCountsOpenWorkInOpenColumns()
{
    m_board->organize(makeTasks(u"t0 t1 t2 t3 t4 t5"_s));
    move(u"t0"_s, m_board->doing());
    move(u"t1"_s, m_board->doing(), m_board->second());
    board().moveTaskWithoutTellingSource(board().task(u"t2"_s), m_board->done());
    QCOMPARE(board().calculateTotalWIP(), 5);
    QCOMPARE(board().calculateColumnTaskCount(m_board->doing()), 2);

    board().wipGaugeSettings().setIncludeQueueColumns(false);
    QCOMPARE(board().calculateTotalWIP(), 2);

    board().updateTaskCompletionStatus(u"t0"_s, true);
    board().task(u"t1"_s)->setBlocked(true);
    QCOMPARE(board().calculateColumnTaskCount(m_board->doing()), 1);
    board().wipGaugeSettings().setWarnThreshold(1);
    board().wipGaugeSettings().setMaxThreshold(1);
    QCOMPARE(board().getWIPStatus(), (WIPStatus{1, true, false}));
    QCOMPARE(board().calculateColumnTaskCount(ColumnId::create()), 0);
}

void TestMeasures::anOverloadIsToldAndShownButNoMoveIsBlamed()
{
    const WIPMonitoringModifiers monitoring(board(), m_board->notifications, m_board->toasts);
    std::vector<QVariantMap> told;
    m_board->notifications.observe(
        notifications::WIPThresholdChanged, &board(),
        [&told](const Notification &notification) { told.push_back(notification.userInfo); });
    m_board->organize(makeTasks(u"t0 t1 t2"_s));
    board().wipGaugeSettings().setIncludeQueueColumns(false);
    board().wipGaugeSettings().setMaxThreshold(1);

    for (const WorkItemPtr &task : board().tasks()) {
        board().moveTask(task, m_board->doing());
    }
    QVERIFY(board().getWIPStatus().isOverLimit);
    QVERIFY(told.empty() && !m_board->toasts.isShowing());

    board().notifyWIPThresholdChanges(1);
    const QVariantMap expected{{u"wipCount"_s, 3}, {u"isWarning"_s, true}, {u"isOverLimit"_s, true}};
    QCOMPARE(told, std::vector{expected});
    QCOMPARE(m_board->toasts.message(),
             u"WIP limit exceeded! Consider completing tasks before starting new ones."_s);
    QCOMPARE(m_board->toasts.style(), ToastManager::ToastStyle::Warning);
    m_board->advance(3.0);

    board().wipGaugeSettings().setMaxThreshold(3);
    board().notifyWIPThresholdChanges(9);
    QVERIFY(told.size() == 2 && !m_board->toasts.isShowing());
}

void TestMeasures::aSwimLanesShareIsOfAllOpenWork()
{
    QCOMPARE(share(m_board->first()), u"0 0%"_s);
    m_board->organize(makeTasks(u"t0 t1 t2 t3 t4 t5 t6 t7 t8"_s));
    for (const QString &id : {u"t0"_s, u"t1"_s, u"t2"_s}) {
        move(id, m_board->todo(), m_board->second());
    }
    board().task(u"t8"_s)->setComplete(true);

    board().filterManager().toggleFlaggedFilter();
    QVERIFY(board().tasksForColumn(m_board->todo()).empty());
    QCOMPARE(share(m_board->second()), u"3 37%"_s);
    QCOMPARE(share(m_board->first()), u"5 62%"_s);
    QCOMPARE(share(SwimLaneId::create()), u"0 0%"_s);
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

void TestMeasures::heightsFollowTheScreenDuringIsolation()
{
    struct Row
    {
        std::optional<double> screen;
        size_t swimLanes;
        double height;
    };
    for (const Row &row :
         {Row{700.0, 2, 720.0}, Row{1000.0, 3, 740.0}, Row{std::nullopt, 3, 740.0}, Row{1000.0, 13, 150.0}}) {
        m_board->desktop.screen.value = row.screen;
        while (board().swimLaneManager().swimLanes().size() < row.swimLanes) {
            board().addSwimLane(SwimLane::defaultSwimLane());
        }
        board().isolateSwimLane(m_board->second());
        QCOMPARE(board().heightForSwimLane(m_board->second()), row.height);
        QCOMPARE(board().heightForSwimLane(m_board->first()), 60.0);
        QCOMPARE(board().heightForSwimLane(SwimLaneId::create()), 300.0);
        board().clearSwimLaneIsolation();
    }
    SwimLane absurd = *board().swimLaneManager().swimLane(m_board->second());
    absurd.height = -5e9;
    board().swimLaneManager().updateSwimLane(absurd);
    QCOMPARE(board().heightForSwimLane(m_board->second()), 150.0);
    QCOMPARE(board().heightForSwimLane(m_board->first()), 300.0);
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
    for (const auto &[asked, level] :
         {std::pair(5.0, 2.0), {0.0, 0.5}, {std::numeric_limits<double>::quiet_NaN(), 0.5}}) {
        board().setZoom(asked);
        QCOMPARE(board().zoomLevel(), level);
    }
    board().resetZoom();
    board().zoomIn();
    m_board->restart();
    QCOMPARE(board().zoomLevel(), 1.1);

    AppConfiguration absurd = m_board->store->loadAppConfiguration();
    absurd.zoomLevel = 30.0;
    m_board->store->saveAppConfiguration(absurd);
    m_board->restart();
    QCOMPARE(board().zoomLevel(), 2.0);
    QCOMPARE(m_board->store->loadAppConfiguration().zoomLevel, 30.0);
}

VANTREL_REGISTER_TEST(TestMeasures)

} // namespace vantrel::test

#include "test_measures.moc"
