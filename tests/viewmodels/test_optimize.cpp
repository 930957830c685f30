#include "board/TestBoard.h"
#include "foundations/NotificationNames.h"
#include "foundations/TimeManager.h"
#include "support/Builders.h"
#include "support/TestRegistry.h"
#include "viewmodels/OptimizeViewModel.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Screen = OptimizeViewModel::Screen;

/** Holds long work at its pauses until the test lets it go on. */
class HeldClock final : public Clock
{
public:
    explicit HeldClock(Clock &clock) : m_clock(clock) {}

    std::shared_ptr<Latch> hold() { return m_latch = std::make_shared<Latch>(); }

    Date now() const override { return m_clock.now(); }
    void after(double seconds, QObject *owner, std::function<void()> work) override
    {
        m_clock.after(seconds, owner, std::move(work));
    }
    QCoro::Task<> sleep(double seconds) override { return m_clock.sleep(seconds); }
    QCoro::Task<> yieldToEventLoop() override
    {
        const std::shared_ptr<Latch> latch = m_latch;
        if (latch) {
            co_await *latch;
        }
    }

private:
    Clock &m_clock;
    std::shared_ptr<Latch> m_latch;
};

} // namespace

/** The Optimize screen: histogram, grid, filter and keyboard. */
class TestOptimize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_modelTester.reset();
        m_screen.reset();
        m_board = std::make_unique<TestBoard>();
        m_time = std::make_unique<TimeManager>(m_board->store.clock);
        m_clock = std::make_unique<HeldClock>(m_board->store.clock);
        m_screen = std::make_unique<OptimizeViewModel>(**m_board, m_board->store.defaults, *m_time,
                                                       m_board->notifications, m_board->announcer, *m_clock);
        m_modelTester = std::make_unique<QAbstractItemModelTester>(m_screen->grid());
    }

    void theScreenGoesThroughItsStates()
    {
        const auto pause = m_clock->hold();
        m_screen->appear();
        QCOMPARE(m_screen->screen(), Screen::Loading);
        pause->countDown();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Empty);
        QCOMPARE(said(),
                 (QStringList{u"Analyzing task age data..."_s, u"Analysis complete. No tasks found."_s}));

        organize({1.0, 40.0});
        m_screen->refreshData();
        m_board->settle();
        QCOMPARE(m_screen->screen(), Screen::Content);
        QCOMPARE(said().mid(2),
                 (QStringList{u"Refreshing task age analysis..."_s, u"Analyzing task age data..."_s,
                              u"Analysis complete. Found 2 tasks across 6 age categories."_s}));

        m_screen->showError(u"No."_s);
        QCOMPARE(m_screen->screen(), Screen::Error);
        m_screen->refreshData();
        QCOMPARE(m_screen->screen(), Screen::Content);
    }

    void aRefreshDuringAnAnalysisDoesNothing()
    {
        const auto pause = m_clock->hold();
        m_screen->appear();
        m_screen->refreshData();
        m_board->notifications.post(notifications::RefreshTasksRequested);
        QCOMPARE(said(), QStringList{u"Analyzing task age data..."_s});
        pause->countDown();
        m_board->settle();
        m_board->notifications.post(notifications::RefreshTasksRequested);
        QVERIFY(said().contains(u"Refreshing task age analysis..."_s));
    }

    void theScreenMayBeLeftDuringAnAnalysis()
    {
        organize({1.0});
        const auto pause = m_clock->hold();
        m_screen->appear();
        m_screen->disappear();
        const QStringList before = said();
        m_screen->appear();
        pause->countDown();
        QCOMPARE(shown(), QStringList{u"a"_s});
        QCOMPARE(said(),
                 before + QStringList{u"Analysis complete. Found 1 tasks across 6 age categories."_s});

        const auto secondPause = m_clock->hold();
        m_screen->refreshData();
        m_screen.reset();
        m_modelTester.reset();
        secondPause->countDown();
        m_board->settle();
    }

    void theGridFollowsTheBoard()
    {
        organize({1.0});
        m_screen->appear();
        const QStringList before = said();
        organize({1.0, 2.0});
        m_board->settle();
        QCOMPARE(shown(), (QStringList{u"b"_s, u"a"_s}));
        QCOMPARE(said(), before);

        m_screen->disappear();
        organize({});
        m_board->settle();
        QCOMPARE(m_screen->grid()->cardCount(), 2);
        m_screen->appear();
        QCOMPARE(m_screen->screen(), Screen::Empty);
    }

    void cardsStandOldestFirstAndGrowWithAge()
    {
        organize({0.0, 30.0, 10.0});
        m_screen->appear();
        QCOMPARE(shown(), (QStringList{u"b"_s, u"c"_s, u"a"_s}));
        for (const auto &[index, height] : {std::pair(0, 220.0), {1, 150.0}, {2, 100.0}}) {
            QCOMPARE(card(index).height, height);
        }
        QCOMPARE(card(0).zone, u"ancient"_s);
        QCOMPARE(card(0).accessibleName, u"b, age 30 days"_s);
        QCOMPARE(card(0).sourceText, u"Plain Text Task"_s);

        const auto rowsWith = [this](int columns) {
            m_screen->grid()->setColumns(columns);
            return m_screen->grid()->rowCount();
        };
        QCOMPARE((QList{rowsWith(2), rowsWith(3), rowsWith(0)}), (QList{2, 1, 3}));
        m_screen->grid()->setColumns(2);
        QCOMPARE(m_screen->grid()->index(1).data(TaskAgeGridModel::CardsRole).toList().size(), 1);
        organize({});
        m_board->settle();
        QCOMPARE(m_screen->grid()->rowCount(), 0);
    }

    void anAgeCanBeChosen()
    {
        organize({0.0, 10.0, 12.0});
        m_screen->appear();
        m_screen->setFilter(m_screen->filters().indexOf(u"1-2 weeks"_s));
        QCOMPARE(shown(), (QStringList{u"c"_s, u"b"_s}));
        QCOMPARE(said().last(), u"Filtering tasks by age: 1-2 weeks"_s);
        m_screen->setFilter(m_screen->filters().indexOf(u"1+ month"_s));
        QCOMPARE(shown(), QStringList());
        QCOMPARE(m_screen->screen(), Screen::Content);
        m_screen->setFilter(0);
        QCOMPARE(shown().size(), 3);
        QCOMPARE(said().last(), u"Showing all tasks"_s);
    }

    void aBarTellsItsShare()
    {
        organize({0.0, 10.0, 12.0});
        m_screen->appear();
        const auto bar = m_screen->bars().at(3).value<AgeBar>();
        QCOMPARE(bar.fraction, 1.0);
        QCOMPARE(m_screen->bars().at(0).value<AgeBar>().fraction, 0.5);
        m_screen->toggleBucket(3);
        QCOMPARE(said().last(), u"1-2 weeks: 2 tasks, 66.7% of total"_s);
        QCOMPARE(m_screen->selectedBucketText(), said().last());
        m_screen->toggleBucket(3);
        QCOMPARE(m_screen->selectedBucket(), -1);
        QVERIFY(m_screen->selectedBucketText().isEmpty());
    }

    void keysWalkTheGridAsItIsShown()
    {
        struct Row
        {
            const char *name;
            QList<int> keys;
            QString selected;
        };
        // Two columns: a b / c d / e
        for (const Row &row :
             {Row{"the first key goes to the first card", {Qt::Key_Down}, u"a"_s},
              Row{"right", {Qt::Key_Home, Qt::Key_Right}, u"b"_s},
              Row{"down a row", {Qt::Key_Home, Qt::Key_Right, Qt::Key_Down}, u"d"_s},
              Row{"up a row", {Qt::Key_End, Qt::Key_Up}, u"c"_s},
              Row{"nothing below", {Qt::Key_End, Qt::Key_Up, Qt::Key_Right, Qt::Key_Down}, u"d"_s},
              Row{"nothing before", {Qt::Key_Home, Qt::Key_Left, Qt::Key_Up}, u"a"_s},
              Row{"space takes back", {Qt::Key_Home, Qt::Key_Space}, {}},
              Row{"and selects again", {Qt::Key_Home, Qt::Key_Space, Qt::Key_Return}, u"a"_s},
              Row{"escape takes back", {Qt::Key_End, Qt::Key_Escape}, {}},
              Row{"and goes on from there", {Qt::Key_Home, Qt::Key_Escape, Qt::Key_Right}, u"b"_s}}) {
            init();
            organize({5.0, 4.0, 3.0, 2.0, 1.0});
            m_screen->appear();
            m_screen->grid()->setColumns(2);
            for (const int key : row.keys) {
                QVERIFY(m_screen->handleKey(key));
            }
            QVERIFY2(m_screen->selectedTaskId().section(u'-', 1) == row.selected, row.name);
        }
        QVERIFY(said().last().startsWith(u"Selected: "_s));
        QVERIFY(!m_screen->handleKey(Qt::Key_Tab));
    }

    void theSelectionStaysOnItsTask()
    {
        organize({3.0, 2.0, 1.0});
        m_screen->appear();
        m_screen->toggleTaskSelection(1);
        QCOMPARE(m_screen->selectedTaskId(), u"plaintext-b"_s);
        organize({1.0, 2.0, 3.0, 4.0});
        m_board->settle();
        QCOMPARE(m_screen->selectedTaskId(), u"plaintext-b"_s);
        QCOMPARE(m_screen->currentIndex(), 2);
        organize({1.0});
        m_board->settle();
        QVERIFY(m_screen->selectedTaskId().isEmpty());
        QCOMPARE(m_screen->currentIndex(), 0);
    }

private:
    /** Tasks named after their place in the list: "a", "b", "c". */
    void organize(const std::vector<double> &agesInDays)
    {
        WorkItems tasks;
        for (const double age : agesInDays) {
            const QString name(QChar(u'a' + static_cast<int>(tasks.size())));
            tasks.push_back(aPlainTextTask(name));
            tasks.back()->setCreationDate(m_board->store.clock.now() - age * SecondsPerDay);
        }
        m_board->organize(tasks);
    }

    QStringList shown()
    {
        QStringList titles;
        for (int i = 0; i < m_screen->grid()->cardCount(); ++i) {
            titles.append(card(i).title);
        }
        return titles;
    }

    AgeCard card(int index)
    {
        const int columns = m_screen->grid()->columns();
        const QModelIndex row = m_screen->grid()->index(index / columns);
        return row.data(TaskAgeGridModel::CardsRole).toList().at(index % columns).value<AgeCard>();
    }

    QStringList said() { return m_board->announcer.history(); }

    std::unique_ptr<TestBoard> m_board;
    std::unique_ptr<TimeManager> m_time;
    std::unique_ptr<HeldClock> m_clock;
    std::unique_ptr<OptimizeViewModel> m_screen;
    std::unique_ptr<QAbstractItemModelTester> m_modelTester;
};

VANTREL_REGISTER_TEST(TestOptimize)

} // namespace vantrel::test

#include "test_optimize.moc"
