// One start of one window, told as JSON on stdout: what bench_window compares. Not run by hand.
//
// window_probe empty|static START_NS, window_probe board START_NS FOLDER [SECONDS_IDLE]

#include "BenchBoard.h"
#include "Measure.h"

#include "app/MainWindow.h"
#include "viewmodels/AppViewModel.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <ctime>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

double nanoseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

struct Probe
{
    double startedAt = 0.0;
    QJsonObject figures;

    double sinceStart() const { return (nanoseconds(CLOCK_MONOTONIC) - startedAt) / 1e6; }

    /** Waits for the next frame. Returns when it was shown, in milliseconds since the start. */
    double awaitFrame(QQuickWindow *window)
    {
        double shownAt = 0.0;
        const auto connection = QObject::connect(window, &QQuickWindow::frameSwapped, window,
                                                 [this, &shownAt] { shownAt = sinceStart(); });
        window->update();
        LoopWatch().runUntil([&shownAt] { return shownAt > 0.0; });
        QObject::disconnect(connection);
        return shownAt;
    }

    void tell(const QString &what, double value) { figures.insert(what, value); }
};

/** Items whose object name begins with `prefix`, the delegates of views among them. */
int countItems(const QQuickItem *item, const QString &prefix)
{
    int count = item->objectName().startsWith(prefix) ? 1 : 0;
    const QList<QQuickItem *> children = item->childItems();
    for (const QQuickItem *child : children) {
        count += countItems(child, prefix);
    }
    return count;
}

void probeReference(Probe &probe, const QString &file)
{
    QQmlApplicationEngine engine;
    engine.load(QUrl(u"qrc:/bench/" + file));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    probe.tell(QStringLiteral("firstFrame"), probe.awaitFrame(window));
    probe.tell(QStringLiteral("residentKiB"), static_cast<double>(residentKiB()));
}

/** Moves the first card of a cell to the next one, as a drop does, until the frame is shown and the batch
 * durable. */
void probeMoves(Probe &probe, BenchBoard &bench, QQuickWindow *window)
{
    BoardState &board = bench.board();
    const auto &columns = board.columnManager().columns();
    const SwimLaneId lane = board.swimLaneManager().swimLanes().front().id;
    std::vector<double> moves;
    std::vector<double> floors;
    RawStore raw(bench.databasePath());
    for (int i = 0; i < 40; ++i) {
        const bool forth = i % 2 == 0;
        moves.push_back(milliseconds([&] {
            const ColumnId from = columns[forth ? 0 : 1].id;
            const ColumnId to = columns[forth ? 1 : 0].id;
            board.moveTask(board.cell(lane, from).front(), to, lane, 0);
            probe.awaitFrame(window);
            bench.settle();
        }));
        floors.push_back(milliseconds([&] {
            probe.awaitFrame(window);
            raw.commitOne(i);
        }));
    }
    probe.tell(QStringLiteral("moveMedian"), median(moves));
    probe.tell(QStringLiteral("move95"), percentile(moves, 0.95));
    probe.tell(QStringLiteral("moveFloorMedian"), median(floors));
}

void rest(double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

void probeIdle(Probe &probe, int seconds)
{
    // What the load leaves to be shown, the sign of saving as the last, has faded by then.
    rest(3.0);
    const double before = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
    rest(seconds);
    const double used = (nanoseconds(CLOCK_PROCESS_CPUTIME_ID) - before) / 1e6;
    probe.tell(QStringLiteral("idleCpuAMinute"), used * 60.0 / seconds);
}

void probeBoard(Probe &probe, const QString &folder, int idleSeconds)
{
    BenchBoard bench(folder);
    AppViewModel app(viewModelServices(bench.services()));
    MainWindow main(app);
    QQuickWindow *window = main.window();
    probe.tell(QStringLiteral("firstFrame"), probe.awaitFrame(window));
    const QString card = QStringLiteral("column-");
    LoopWatch().runUntil(
        [&] { return bench.board().hasBeenOrganized() && countItems(window->contentItem(), card) > 20; });
    probe.tell(QStringLiteral("completeBoard"), probe.awaitFrame(window));
    LoopWatch().runUntil([&] { return bench.board().loadingState() == BoardLoadingState::Loaded; });
    bench.settle();
    rest(1.5);
    probe.tell(QStringLiteral("residentKiB"), static_cast<double>(residentKiB()));
    probe.tell(QStringLiteral("delegates"), countItems(window->contentItem(), card));
    if (idleSeconds > 0) {
        probeIdle(probe, idleSeconds);
        probeMoves(probe, bench, window);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter(LogWriter::Output::Silent);
    QGuiApplication application(argc, argv);
    Probe probe;
    const QByteArray mode = argc > 1 ? argv[1] : "";
    probe.startedAt = argc > 2 ? QByteArray(argv[2]).toDouble() : 0.0;
    if (mode == "empty") {
        probeReference(probe, QStringLiteral("EmptyWindow.qml"));
    } else if (mode == "static") {
        probeReference(probe, QStringLiteral("StaticBoard.qml"));
    } else if (mode == "board" && argc > 3) {
        probeBoard(probe, QString::fromLocal8Bit(argv[3]), argc > 4 ? QByteArray(argv[4]).toInt() : 0);
    } else {
        return 2;
    }
    std::printf("%s\n", QJsonDocument(probe.figures).toJson(QJsonDocument::Compact).constData());
    return 0;
}
