#include "foundations/OmniFocusTask.h"
#include "ui/TestWindow.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** The screens of throughput and of task age, by keyboard, by pointer and as a screen reader finds them. */
class TestAnalyticsScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theBoardIsLeftAndFoundAgainAsItWas();
    void choicesAreMadeByKey();
    void theChartIsReadPointByPoint();
    void barsOfTwoSourcesTellThemApart();
    void theGridIsWalkedByKeyAndClicked();
    void tenThousandTasksMakeFewCards();
    void aFailureOffersAnotherTry();

private:
    void start(int openTasks);
    QAccessibleInterface *spoken(const QString &objectName)
    {
        return QAccessible::queryAccessibleInterface(m_window->item(objectName));
    }
    QStringList childNames(const QString &objectName, QAccessible::Role role);
    QString focusedName()
    {
        QAccessibleInterface *focused =
            QAccessible::queryAccessibleInterface(m_window->window().activeFocusItem());
        return focused ? focused->text(QAccessible::Name) : QString();
    }

    std::unique_ptr<TestWindow> m_window;
};

void TestAnalyticsScreens::init()
{
    m_window = std::make_unique<TestWindow>();
}

void TestAnalyticsScreens::cleanup()
{
    QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
    m_window.reset();
}

/** Open tasks, each a day older than the one before, and three finished ones. */
void TestAnalyticsScreens::start(int openTasks)
{
    const Date now = m_window->services.clock.now();
    const auto omniFocusTask = [now](const QString &id, double days, bool isComplete) {
        WorkItemFields fields;
        fields.id = id;
        fields.name = u"Task "_s + id;
        fields.creationDate = now - days * SecondsPerDay;
        fields.isComplete = isComplete;
        if (isComplete) fields.completionDate = fields.creationDate;
        return std::make_shared<OmniFocusTask>(std::move(fields));
    };
    WorkItems open;
    for (int i = 0; i < openTasks; ++i) {
        open.push_back(omniFocusTask(QString::number(i), i % 60, false));
    }
    m_window->services.begin();
    (*m_window)->managers.setTaskSourceConfiguration(
        {.isOmniFocusEnabled = true, .isPlainTextEnabled = false});
    for (int i = 0; i < 3; ++i) {
        m_window->services.omniFocus.fetches.give(open);
    }
    m_window->services.omniFocus.completedFetches.give({omniFocusTask(u"x"_s, 0.0, true),
                                                        omniFocusTask(u"y"_s, 1.0, true),
                                                        omniFocusTask(u"z"_s, 1.0, true)});
    m_window->services.settle();
    m_window->services.advance(1.0);
    m_window->open();
}

QStringList TestAnalyticsScreens::childNames(const QString &objectName, QAccessible::Role role)
{
    QStringList names;
    const std::function<void(QAccessibleInterface *)> collect = [&](QAccessibleInterface *parent) {
        for (int i = 0; parent && i < parent->childCount(); ++i) {
            QAccessibleInterface *child = parent->child(i);
            if (child->role() == role && !child->state().invisible) {
                names.append(child->text(QAccessible::Name));
            }
            collect(child);
        }
    };
    collect(spoken(objectName));
    return names;
}

void TestAnalyticsScreens::theBoardIsLeftAndFoundAgainAsItWas()
{
    start(3);
    BoardState &board = *(*m_window)->board;
    board.selectTask(u"1"_s, false);
    m_window->press(u"Ctrl++"_s);
    const double zoom = board.zoomLevel();

    m_window->press(u"Alt+3"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"throughputChart"_s); }));
    QVERIFY(!m_window->item(u"board"_s));
    m_window->press(u"Alt+4"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"ageHistogram"_s); }));
    QVERIFY(!m_window->item(u"analyzeView"_s));
    m_window->press(u"Alt+1"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"board"_s); }));
    QVERIFY(m_window->item(u"board"_s)->hasActiveFocus());
    QVERIFY(board.selectionManager().isSelected(u"1"_s));
    QCOMPARE(board.zoomLevel(), zoom);
}

void TestAnalyticsScreens::choicesAreMadeByKey()
{
    start(1);
    m_window->press(u"Alt+3"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"throughputChart"_s); }));
    QCOMPARE(m_window->focusName(), u"periodPicker"_s);
    m_window->press(u"Right"_s);
    QCOMPARE(spoken(u"periodPicker"_s)->text(QAccessible::Description), u"Per Week"_s);
    QCOMPARE(childNames(u"throughputChart"_s, QAccessible::Graphic).size(), 3);
    m_window->press(u"Tab"_s);
    m_window->press(u"Return"_s);
    QVERIFY(m_window->item(u"chartTypePicker"_s)
                ->property("popup")
                .value<QObject *>()
                ->property("visible")
                .toBool());
    m_window->press(u"Down"_s);
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"stackedChart"_s); }));
    m_window->press(u"Tab"_s);
    QCOMPARE(m_window->focusName(), u"refreshAnalyticsButton"_s);
    m_window->services.omniFocus.completedFetches.give({});
    m_window->press(u"Space"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"analyzeEmpty"_s); }));
    QCOMPARE(m_window->focusName(), u"actionButton"_s);
}

void TestAnalyticsScreens::theChartIsReadPointByPoint()
{
    start(1);
    m_window->press(u"Alt+3"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"throughputChart"_s); }));
    QAccessibleInterface *chart = spoken(u"throughputChart"_s);
    QCOMPARE(chart->role(), QAccessible::Chart);
    QVERIFY(chart->text(QAccessible::Description)
                .startsWith(u"3 total tasks completed across 21 Per Day periods. Average: 0.1 per day."_s));
    const QStringList points = childNames(u"throughputChart"_s, QAccessible::Graphic);
    QCOMPARE(points.size(), 21);
    QCOMPARE(points.at(19), u"Nov 1: 2 tasks completed"_s);

    m_window->item(u"throughputChart"_s)->forceActiveFocus(Qt::TabFocusReason);
    const QImage before = m_window->picture();
    m_window->press(u"Left"_s);
    QCOMPARE(focusedName(), u"Nov 2: 1 task completed"_s);
    m_window->press(u"Left"_s);
    QCOMPARE(focusedName(), u"Nov 1: 2 tasks completed"_s);
    QVERIFY2(m_window->picture() != before, "no hint is shown");
    m_window->press(u"Home"_s);
    QCOMPARE(focusedName(), points.first());
    m_window->press(u"Esc"_s);
    QCOMPARE(m_window->focusName(), u"throughputChart"_s);
}

void TestAnalyticsScreens::barsOfTwoSourcesTellThemApart()
{
    start(1);
    m_window->app().analyze()->setChartType(static_cast<int>(ChartType::StackedColumn));
    m_window->app().analyze()->setPeriod(static_cast<int>(ThroughputPeriod::Hourly));
    m_window->press(u"Alt+3"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"stackedChart"_s); }));
    const QStringList bars = childNames(u"stackedChart"_s, QAccessible::Graphic);
    QVERIFY(bars.size() >= 480);
    QVERIFY2(bars.last().endsWith(u"OmniFocus: 1, Reminders: 0"_s), qPrintable(bars.last()));
}

void TestAnalyticsScreens::theGridIsWalkedByKeyAndClicked()
{
    start(40);
    OptimizeViewModel &optimize = *m_window->app().optimize();
    m_window->press(u"Alt+4"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"ageHistogram"_s); }));
    QCOMPARE(focusedName(), u"0-1 days: 1 tasks, 2.5% of total"_s);
    m_window->press(u"Right"_s);
    m_window->press(u"Space"_s);
    QCOMPARE(optimize.selectedBucket(), 1);
    m_window->press(u"Tab"_s);
    QCOMPARE(m_window->focusName(), u"ageFilter"_s);
    m_window->press(u"Tab"_s);
    QCOMPARE(m_window->focusName(), u"ageGrid"_s);
    m_window->press(u"End"_s);
    QCOMPARE(optimize.selectedTaskId(), u"0"_s);
    QQuickItem *grid = m_window->item(u"ageGrid"_s);
    QVERIFY(m_window->wait(
        [this] { return childNames(u"ageGrid"_s, QAccessible::ListItem).contains(u"Task 0, age Today"_s); }));
    QVERIFY(!grid->property("atYBeginning").toBool());
    m_window->press(u"Up"_s);
    QCOMPARE(optimize.currentIndex(), 39 - optimize.grid()->columns());

    // Back among the controls above the cards the page shows them.
    m_window->press(u"Shift+Tab"_s);
    QVERIFY(m_window->wait([grid] { return grid->property("atYBeginning").toBool(); }));
    m_window->click(u"ageCard-39"_s);
    QCOMPARE(optimize.selectedTaskId(), u"39"_s);
    QVERIFY(grid->hasActiveFocus());
}

void TestAnalyticsScreens::tenThousandTasksMakeFewCards()
{
    start(10000);
    m_window->press(u"Alt+4"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"ageHistogram"_s); }));
    QCOMPARE(m_window->app().optimize()->grid()->cardCount(), 10000);
    const auto cards = childNames(u"ageGrid"_s, QAccessible::ListItem).size();
    QVERIFY2(cards > 5 && cards < 100, qPrintable(QString::number(cards)));
}

void TestAnalyticsScreens::aFailureOffersAnotherTry()
{
    start(1);
    m_window->press(u"Alt+4"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"ageHistogram"_s); }));
    m_window->app().optimize()->showError(u"It did not work."_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"optimizeError"_s); }));
    QCOMPARE(m_window->focusName(), u"actionButton"_s);
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"ageHistogram"_s); }));
}

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestAnalyticsScreens)
#include "test_analytics_screens.moc"
