// Draws the main window, with the real interface on a sample board, into a picture. Needs no display.

#include "SampleBoard.h"
#include "SampleHistory.h"

#include "app/MainWindow.h"
#include "app/Services.h"
#include "foundations/TimeManager.h"
#include "support/FakeDesktop.h"
#include "support/FakeTaskManager.h"
#include "viewmodels/AppViewModel.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFont>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <functional>

using namespace vantrel;

namespace {

struct Wishes
{
    QString path = QStringLiteral("vantrel.png");
    bool isDark = false;
    bool isEmpty = false;
    SampleSources sources = SampleSources::PlainText;
    bool hasHistory = false;
    QSize size{1280, 820};
    QString command;
    QString text;
    QString state;
};

/** What can be shown besides a board at rest. */
void bringAbout(const QString &state, Services &services, AppViewModel &app)
{
    BoardViewModel &view = *app.board();
    if (state.contains(u"hours")) app.analyze()->setPeriod(static_cast<int>(ThroughputPeriod::Hourly));
    if (state.contains(u"columns")) app.analyze()->setChartType(static_cast<int>(ChartType::StackedColumn));
    BoardState &board = *services.board;
    const auto &lanes = board.swimLaneManager().swimLanes();
    const auto &columns = board.columnManager().columns();
    const WorkItems doing = board.cell(lanes.front().id, columns.at(1).id);
    if (state == u"focus") {
        board.focusTask(doing.front()->id());
    } else if (state == u"isolation") {
        board.isolateSwimLane(lanes.at(1).id);
    } else if (state == u"selection") {
        for (const WorkItemPtr &task : doing) {
            board.toggleTaskSelection(task->id());
        }
    } else if (state == u"block") {
        view.tapCard(doing.at(1)->id(), false);
        view.popover()->open(doing.at(1)->id(), KanbanCardFocus::Blocked);
    } else if (state == u"menu") {
        view.tapCard(doing.at(1)->id(), false);
        view.openContextMenu(doing.at(1)->id());
    }
}

/** Runs the event loop until `isDone`, ten seconds at most. */
bool runUntil(const std::function<bool()> &isDone)
{
    QElapsedTimer timer;
    timer.start();
    while (!isDone() && !timer.hasExpired(10000)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return isDone();
}

void rest(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

int draw(const Wishes &wishes)
{
    const QTemporaryDir directory;
    const AppConfig config{AppEnvironment::Testing, directory.path()};
    SystemClock clock;
    if (wishes.hasHistory) {
        writeAgingTasks(config, clock);
    } else if (!wishes.isEmpty) {
        writeSampleBoard(config, clock, wishes.sources);
    }
    FileCalls files;
    test::FakeDesktop desktop;
    desktop.appearance.setColorScheme(wishes.isDark ? DesktopAppearance::ColorScheme::Dark
                                                    : DesktopAppearance::ColorScheme::Light);
    desktop.appearance.setPrefersReducedMotion(true);
    test::FakeTaskManager omniFocus{TaskManagerType::OmniFocus, clock};
    test::FakeTaskManager reminders{TaskManagerType::Reminders, clock};
    Ports ports{clock,
                files,
                desktop.announcements,
                desktop.sounds,
                desktop.appearance,
                desktop.clipboard,
                desktop.urls,
                desktop.screen};
    if (wishes.hasHistory) {
        ports.omniFocus = &omniFocus;
        ports.reminders = &reminders;
    }
    Services services(config, ports);
    if (wishes.hasHistory) {
        services.managers.setTaskSourceConfiguration(
            {.isOmniFocusEnabled = true, .isRemindersEnabled = true, .isPlainTextEnabled = true});
        omniFocus.fetches.give({});
        omniFocus.completedFetches.give(finishedTasks(TaskManagerType::OmniFocus, clock.now()));
        reminders.fetches.give({});
        reminders.completedFetches.give(finishedTasks(TaskManagerType::Reminders, clock.now()));
    }
    services.board->wipGaugeSettings().setEnabled(true);
    services.board->wipGaugeSettings().setMaxThreshold(15);
    services.board->wipGaugeSettings().setWarnThreshold(10);
    AppViewModel app(viewModelServices(services));
    MainWindow window(app);
    if (!window.window()) {
        std::fprintf(stderr, "%s\n", qPrintable(window.warnings().join(u'\n')));
        return 1;
    }
    window.window()->resize(wishes.size);
    runUntil([&] { return services.board->loadingState() == BoardLoadingState::Loaded; });
    rest(600);
    if (!wishes.isEmpty) {
        const auto &lanes = services.board->swimLaneManager().swimLanes();
        const WorkItems cards =
            services.board->cell(lanes.front().id, services.board->columnManager().columns().front().id);
        if (!cards.empty()) {
            services.board->selectTask(cards.front()->id(), false);
        }
    }
    if (!wishes.command.isEmpty()) {
        if (Command *command = app.commands()->command(wishes.command)) {
            command->trigger();
        }
    }
    if (app.quickEntry()->isOpen()) {
        app.quickEntry()->setInputText(wishes.text);
        app.quickEntry()->parseAndContinue();
    }
    if (app.importer()->isOpen()) {
        app.importer()->setInputText(wishes.text);
        app.importer()->parseInput();
    }
    rest(100);
    if (!wishes.isEmpty) {
        bringAbout(wishes.state, services, app);
    }
    rest(400);
    const bool isSaved = window.window()->grabWindow().save(wishes.path);
    for (const QString &warning : window.warnings()) {
        std::fprintf(stderr, "%s\n", qPrintable(warning));
    }
    return isSaved ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    // The scale must be known before there is an application to parse the arguments.
    const auto valueOf = [argc, argv](const char *name) -> const char * {
        for (int i = 1; i + 1 < argc; ++i) {
            if (qstrcmp(argv[i], name) == 0) return argv[i + 1];
        }
        return nullptr;
    };
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    if (const char *scale = valueOf("--scale")) {
        qputenv("QT_SCALE_FACTOR", scale);
    }
    const LogWriter logWriter(LogWriter::Output::Silent);
    QGuiApplication application(argc, argv);
    QGuiApplication::setFont(QFont(QStringLiteral("Inter"), 10));

    QCommandLineParser parser;
    const QCommandLineOption out(QStringLiteral("out"), QStringLiteral("The picture to write."),
                                 QStringLiteral("file"));
    const QCommandLineOption dark(QStringLiteral("dark"), QStringLiteral("In the dark scheme."));
    const QCommandLineOption light(QStringLiteral("light"), QStringLiteral("In the light scheme (default)."));
    const QCommandLineOption empty(QStringLiteral("empty"), QStringLiteral("The board of a first start."));
    const QCommandLineOption demo(QStringLiteral("demo"),
                                  QStringLiteral("With sample tasks of all sources."));
    const QCommandLineOption history(QStringLiteral("history"),
                                     QStringLiteral("Tasks of all ages, and twenty days of finished ones."));
    const QCommandLineOption scale(QStringLiteral("scale"), QStringLiteral("Pixels a point."),
                                   QStringLiteral("n"));
    const QCommandLineOption command(QStringLiteral("command"),
                                     QStringLiteral("A command to run first, by its id."),
                                     QStringLiteral("id"));
    const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("Points, as 1280x820."),
                                  QStringLiteral("wxh"));
    const QCommandLineOption state(
        QStringLiteral("state"),
        QStringLiteral("One of: focus, isolation, selection, block, menu, hours, columns, hours-columns."),
        QStringLiteral("name"));
    const QCommandLineOption text(QStringLiteral("text"),
                                  QStringLiteral("What to type into quick entry or import, going on."),
                                  QStringLiteral("text"));
    parser.addOptions({out, dark, light, empty, demo, history, scale, command, text, size, state});
    parser.addHelpOption();
    parser.process(application);

    Wishes wishes;
    if (parser.isSet(out)) wishes.path = parser.value(out);
    wishes.isDark = parser.isSet(dark);
    wishes.isEmpty = parser.isSet(empty);
    if (parser.isSet(demo)) wishes.sources = SampleSources::All;
    wishes.hasHistory = parser.isSet(history);
    wishes.command = parser.value(command);
    wishes.text = parser.value(text);
    wishes.state = parser.value(state);
    const QStringList sides = parser.value(size).split(u'x');
    if (sides.size() == 2) wishes.size = QSize(sides.at(0).toInt(), sides.at(1).toInt());
    return draw(wishes);
}
