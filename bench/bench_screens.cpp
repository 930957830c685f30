// How long the screens of analytics take from an input to the frame that answers it: 481 hours of 10,000
// finished tasks, and the age grid of 10,000 open ones. On whatever platform and renderer the environment
// names.

#include "Histories.h"
#include "Measure.h"

#include "app/MainWindow.h"
#include "app/Services.h"
#include "support/FakeDesktop.h"
#include "support/FakeTaskManager.h"
#include "viewmodels/AppViewModel.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

constexpr int TaskCount = 10000;
constexpr int Steps = 120;

/** The program with its window, and sources that give what a test of speed needs. */
class Stage
{
public:
    Stage()
    {
        m_desktop.appearance.setPrefersReducedMotion(true);
        services.managers.setTaskSourceConfiguration(
            {.isOmniFocusEnabled = true, .isPlainTextEnabled = false});
        for (int i = 0; i < 4; ++i) {
            m_omniFocus.fetches.give(openItems(clock.now(), TaskCount));
        }
        m_omniFocus.completedFetches.give(finishedItems(clock.now(), TaskCount));
        window()->resize(1280, 820);
        LoopWatch().runUntil([this] { return services.board->loadingState() == BoardLoadingState::Loaded; });
        rest(1000);
        window()->requestActivate();
        rest(200);
    }

    QQuickWindow *window() { return m_main.window(); }

    static void rest(int milliseconds)
    {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /** Sends an input and waits for the frame after it. Gives what the GUI thread has worked for both. */
    double frameAfter(const std::function<void()> &input)
    {
        bool isShown = false;
        const auto connection =
            QObject::connect(window(), &QQuickWindow::frameSwapped, window(), [&isShown] { isShown = true; });
        const double before = threadMilliseconds();
        input();
        window()->update();
        while (!isShown) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
        QObject::disconnect(connection);
        return threadMilliseconds() - before;
    }

    /** Sends as many inputs, each after the frame of the one before. */
    void measure(const QString &what, int count, const std::function<void(int)> &input)
    {
        std::vector<double> frames;
        for (int i = 0; i < count; ++i) {
            frames.push_back(frameAfter([&] { input(i); }));
        }
        report(what,
               QStringLiteral("median %1, 95th %2, worst %3 ms")
                   .arg(median(frames), 0, 'f', 1)
                   .arg(percentile(frames, 0.95), 0, 'f', 1)
                   .arg(*std::max_element(frames.begin(), frames.end()), 0, 'f', 1),
               QStringLiteral("16 ms"));
    }

    QQuickItem *item(const QString &name) { return find(window()->contentItem(), name); }

    void moveMouse(const QPointF &place, Qt::MouseButtons buttons = Qt::NoButton)
    {
        QMouseEvent event(QEvent::MouseMove, place, window()->mapToGlobal(place), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(window(), &event);
    }
    void pressMouse(const QPointF &place, bool isDown)
    {
        QMouseEvent event(isDown ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease, place,
                          window()->mapToGlobal(place), Qt::LeftButton,
                          isDown ? Qt::LeftButton : Qt::NoButton, {});
        QCoreApplication::sendEvent(window(), &event);
    }
    void turnWheel(const QPointF &place, int notches)
    {
        QWheelEvent event(place, window()->mapToGlobal(place), QPoint(), QPoint(0, -120 * notches),
                          Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window(), &event);
    }
    void press(int key)
    {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, {});
            QCoreApplication::sendEvent(window(), &event);
        }
    }

private:
    static QQuickItem *find(QQuickItem *root, const QString &name)
    {
        if (root->isVisible() && root->objectName() == name) return root;
        const QList<QQuickItem *> children = root->childItems();
        for (QQuickItem *child : children) {
            if (QQuickItem *found = root->isVisible() ? find(child, name) : nullptr) return found;
        }
        return nullptr;
    }

    QTemporaryDir m_directory;

public:
    SystemClock clock;

private:
    FileCalls m_files;
    test::FakeDesktop m_desktop;
    test::FakeTaskManager m_omniFocus{TaskManagerType::OmniFocus, clock};
    Ports ports()
    {
        Ports ports{clock,
                    m_files,
                    m_desktop.announcements,
                    m_desktop.sounds,
                    m_desktop.appearance,
                    m_desktop.clipboard,
                    m_desktop.urls,
                    m_desktop.screen};
        ports.omniFocus = &m_omniFocus;
        return ports;
    }

public:
    Services services{AppConfig{AppEnvironment::Testing, m_directory.path()}, ports()};
    AppViewModel app{viewModelServices(services)};

private:
    MainWindow m_main{app};
};

void measureResize(Stage &stage, const QString &what)
{
    stage.measure(what, 40, [&](int i) {
        stage.window()->resize(1280 - 8 * (i < 20 ? i : 40 - i), 820);
        QCoreApplication::processEvents();
    });
    stage.window()->resize(1280, 820);
    Stage::rest(200);
}

void measureChart(Stage &stage, ChartType type, const QString &objectName)
{
    AnalyzeViewModel &analyze = *stage.app.analyze();
    const QString name = label(type);
    analyze.setChartType(static_cast<int>(type));
    Stage::rest(300);
    stage.measure(name + u": from days to hours and back", 10, [&](int i) {
        analyze.setPeriod(static_cast<int>(i % 2 == 0 ? ThroughputPeriod::Hourly : ThroughputPeriod::Daily));
    });
    analyze.setPeriod(static_cast<int>(ThroughputPeriod::Hourly));
    Stage::rest(300);
    QQuickItem *chart = stage.item(objectName);
    const QPointF left = chart->mapToScene(QPointF(70, chart->height() / 2));
    const double stride = (chart->width() - 150) / Steps;
    stage.measure(name + u": the pointer crosses 481 hours", Steps,
                  [&](int i) { stage.moveMouse(left + QPointF(i * stride, 0)); });
    stage.moveMouse(QPointF(5, 5));
    chart->forceActiveFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Home);
    stage.measure(name + u": keys walk along them", Steps, [&](int) { stage.press(Qt::Key_Right); });
    measureResize(stage, name + u": the window is resized");
}

void measureGrid(Stage &stage)
{
    QQuickItem *grid = stage.item(QStringLiteral("ageGrid"));
    const QPointF middle = grid->mapToScene(QPointF(grid->width() / 2, grid->height() / 2));
    stage.measure(QStringLiteral("age grid of 10,000: the wheel turns"), Steps,
                  [&](int) { stage.turnWheel(middle, 1); });
    stage.measure(QStringLiteral("age grid: the wheel turns fast"), Steps,
                  [&](int i) { stage.turnWheel(middle, i < Steps / 2 ? 12 : -12); });
    grid->forceActiveFocus(Qt::TabFocusReason);
    stage.press(Qt::Key_Home);
    stage.measure(QStringLiteral("age grid: keys go down row by row"), Steps,
                  [&](int) { stage.press(Qt::Key_Down); });
    stage.measure(QStringLiteral("age grid: from end to end by key"), 10,
                  [&](int i) { stage.press(i % 2 == 0 ? Qt::Key_End : Qt::Key_Home); });
    const QPointF bar = grid->mapToScene(QPointF(grid->width() - 5, 10));
    stage.moveMouse(bar);
    stage.pressMouse(bar, true);
    stage.measure(QStringLiteral("age grid: the scroll bar is dragged"), Steps, [&](int i) {
        stage.moveMouse(bar + QPointF(0, i * (grid->height() - 60) / Steps), Qt::LeftButton);
    });
    stage.pressMouse(bar + QPointF(0, grid->height() - 60), false);
    measureResize(stage, QStringLiteral("age grid: the window is resized"));
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter(LogWriter::Output::Silent);
    QGuiApplication application(argc, argv);
    Stage stage;
    stage.app.commands()->command(QStringLiteral("switchToAnalyze"))->trigger();
    Stage::rest(1000);
    measureChart(stage, ChartType::Line, QStringLiteral("throughputChart"));
    measureChart(stage, ChartType::StackedColumn, QStringLiteral("stackedChart"));
    stage.app.commands()->command(QStringLiteral("switchToOptimize"))->trigger();
    Stage::rest(1500);
    measureGrid(stage);
    return 0;
}
