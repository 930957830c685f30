#include "board/TestBoard.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"
#include "support/TestRegistry.h"
#include "viewmodels/AnalyzeViewModel.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Screen = AnalyzeViewModel::Screen;
constexpr TaskSourceConfiguration OnlyOmniFocus{.isOmniFocusEnabled = true, .isPlainTextEnabled = false};
constexpr TaskSourceConfiguration Nothing{.isPlainTextEnabled = false};

std::vector<ThroughputDataPoint> pointsOf(const std::vector<int> &counts, Date last)
{
    std::vector<ThroughputDataPoint> points;
    for (const int count : counts) {
        const auto back = static_cast<double>(counts.size() - points.size() - 1);
        points.push_back({last - back * SecondsPerDay, count, ThroughputPeriod::Daily});
    }
    return points;
}

} // namespace

/** The Analyze screen: what it shows in which state, and what it says. */
class TestAnalyze : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_screen.reset();
        m_board = std::make_unique<TestBoard>();
        m_board->managers().setTaskSourceConfiguration(OnlyOmniFocus);
        m_screen = std::make_unique<AnalyzeViewModel>(m_board->managers(), m_board->notifications,
                                                      m_board->announcer, m_board->store.clock);
    }

    void theScreenGoesThroughItsStates()
    {
        const auto answer = m_board->omniFocus.completedFetches.giveWhenOpened({});
        m_screen->appear();
        QCOMPARE(m_screen->screen(), Screen::Loading);
        answer->countDown();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Empty);
        QCOMPARE(said(), (QStringList{
                             u"Loading analytics data..."_s,
                             u"Analytics data loaded. No completed tasks found in the last 20 days."_s,
                             u"Analytics updated. No completed tasks found in the selected time period."_s}));

        m_board->omniFocus.completedFetches.give(finishedTasks({0.0, 1.0, 1.0}));
        m_screen->refresh();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Content);
        QCOMPARE(m_screen->chart().count(), 21);
        QCOMPARE(m_screen->chart().mark(19).summary, u"2 tasks completed"_s);
        QCOMPARE(m_screen->chart().mark(20).summary, u"1 task completed"_s);
        QCOMPARE(said().mid(3),
                 (QStringList{
                     u"Refreshing analytics data. Please wait..."_s, u"Loading analytics data..."_s,
                     u"Analytics data loaded successfully with 3 completed tasks."_s,
                     u"Analytics updated with 3 completed tasks shown as line chart for per day view"_s}));
    }

    void aFailureCanBeTriedAgain()
    {
        m_board->managers().setTaskSourceConfiguration(Nothing);
        m_screen->appear();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Error);
        QCOMPARE(m_screen->errorMessage(),
                 u"No task sources are enabled. Please enable at least one source in Settings."_s);

        m_board->managers().setTaskSourceConfiguration(OnlyOmniFocus);
        m_board->omniFocus.completedFetches.give(finishedTasks({2.0}));
        m_screen->loadData();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Content);
        QVERIFY(m_screen->errorMessage().isEmpty());
    }

    void whatIsOnTheScreenStaysWhileItIsLoadedAnew()
    {
        m_board->omniFocus.completedFetches.give(finishedTasks({2.0}));
        m_screen->appear();
        m_board->settle();

        const auto answer = m_board->omniFocus.completedFetches.giveWhenOpened(finishedTasks({1.0, 2.0}));
        m_screen->refresh();
        QCOMPARE(m_screen->screen(), Screen::Loading);
        QVERIFY(m_screen->hasContent());
        answer->countDown();
        m_board->settle();
        QCOMPARE(m_screen->metricCards().at(2).toMap().value(u"value"_s).toString(), u"2"_s);
    }

    void theScreenMayBeLeftDuringALoad()
    {
        const auto answer = m_board->omniFocus.completedFetches.giveWhenOpened(finishedTasks({1.0}));
        m_screen->appear();
        m_screen->disappear();
        m_screen->appear();
        QCOMPARE(fetches(), 1);
        QCOMPARE(m_screen->screen(), Screen::Loading);

        m_screen->disappear();
        const QStringList before = said();
        answer->countDown();
        m_board->settle();
        QCOMPARE(said(), before);

        m_screen->appear();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Content);
        QCOMPARE(fetches(), 1);

        const auto lateAnswer = m_board->omniFocus.completedFetches.giveWhenOpened({});
        m_screen->refresh();
        const QStringList untilThen = said();
        m_screen.reset();
        lateAnswer->countDown();
        m_board->settle();
        QCOMPARE(said(), untilThen);
    }

    void aRefreshDuringALoadDoesNothing()
    {
        const auto answer = m_board->omniFocus.completedFetches.giveWhenOpened(finishedTasks({1.0}));
        m_screen->appear();
        m_screen->refresh();
        m_board->notifications.post(notifications::RefreshTasksRequested);
        QCOMPARE(fetches(), 1);
        answer->countDown();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Content);

        m_board->omniFocus.completedFetches.give(finishedTasks({1.0}));
        m_board->notifications.post(notifications::RefreshTasksRequested);
        m_board->settle();
        QCOMPARE(fetches(), 2);
        m_screen->disappear();
        m_board->notifications.post(notifications::RefreshTasksRequested);
        QCOMPARE(fetches(), 2);
    }

    void aChoiceIsShownWithoutAskingTheSources()
    {
        m_board->omniFocus.completedFetches.give(finishedTasks({1.0}));
        m_screen->appear();
        m_board->settle();

        m_screen->setPeriod(static_cast<int>(ThroughputPeriod::Hourly));
        // An hour more or less where the clocks were changed.
        QVERIFY(std::abs(m_screen->chart().count() - 481) <= 1);
        QCOMPARE(said().last(), u"Time period changed to Per Hour. Analytics updated."_s);
        m_screen->setPeriod(static_cast<int>(ThroughputPeriod::Weekly));
        QCOMPARE(m_screen->chart().count(), 3);
        m_screen->setChartType(static_cast<int>(ChartType::StackedColumn));
        QVERIFY(m_screen->isStacked());
        QCOMPARE(said().last(), u"Chart type changed to Stacked Column. Analytics updated."_s);
        m_screen->setPeriod(7);
        m_screen->setChartType(-1);
        QCOMPARE(m_screen->chart().count(), 3);
        QCOMPARE(fetches(), 1);
    }

    void theChartIsToldInWords()
    {
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        const LocalCalendar calendar{m_board->store.clock.now(), QTimeZone::utc(), english};
        const auto chart = [&](const std::vector<int> &counts) {
            const auto points = pointsOf(counts, calendar.now);
            const std::vector<StackedThroughputDataPoint> stacked(
                points.size(), {calendar.now, ThroughputPeriod::Daily, 2, 1});
            const auto metrics = throughput::calculateMetrics(points, {}, calendar);
            return throughputChartData(points, stacked, ThroughputPeriod::Daily, metrics, calendar);
        };
        QCOMPARE(chart({0, 0}).summary, u"No completed tasks in this time period"_s);
        QCOMPARE(
            chart({1, 4, 2}).summary,
            u"7 total tasks completed across 3 Per Day periods. Average: 2.3 per day. Range: 1 to 4 tasks."_s);
        QCOMPARE(chart({1, 4, 2}).stackedSummary, u"OmniFocus: 6, Reminders: 3"_s);

        QStringList labels;
        for (const QVariant &axisLabel : chart(std::vector<int>(21, 1)).axisLabels) {
            labels.append(axisLabel.toMap().value(u"text"_s).toString());
        }
        QCOMPARE(labels, (QStringList{u"Oct 13"_s, u"Oct 18"_s, u"Oct 23"_s, u"Oct 28"_s, u"Nov 2"_s}));
    }

    void theScaleIsOfWholeRoundNumbers()
    {
        struct Row
        {
            int peak, step, maximum;
        };
        for (const Row &row :
             {Row{0, 1, 1}, Row{7, 1, 7}, Row{9, 2, 10}, Row{43, 10, 50}, Row{9999, 2000, 10000}}) {
            const CountScale scale = CountScale::upTo(row.peak);
            QCOMPARE(scale.step, row.step);
            QCOMPARE(scale.maximum(), row.maximum);
        }
    }

private:
    WorkItems finishedTasks(const std::vector<double> &daysAgo)
    {
        WorkItems tasks;
        for (const double days : daysAgo) {
            WorkItemFields fields;
            fields.id = u"omni%1"_s.arg(tasks.size());
            fields.isComplete = true;
            fields.completionDate = m_board->store.clock.now() - days * SecondsPerDay;
            tasks.push_back(std::make_shared<OmniFocusTask>(fields));
        }
        return tasks;
    }

    int fetches() const { return static_cast<int>(m_board->omniFocus.requests.size()); }
    QStringList said() { return m_board->announcer.history(); }

    std::unique_ptr<TestBoard> m_board;
    std::unique_ptr<AnalyzeViewModel> m_screen;
};

VANTREL_REGISTER_TEST(TestAnalyze)

} // namespace vantrel::test

#include "test_analyze.moc"
