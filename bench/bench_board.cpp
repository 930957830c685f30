// The board and its store, against bare SQLite on the same rows in the same run.

#include "BenchBoard.h"
#include "Measure.h"

#include "board/rules/TaskFilter.h"
#include "foundations/Launch.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

constexpr int Pairs = 11;

/** Fetches all tasks afresh and organises them; returns when the result is on the board and in the store. */
double loadAndOrganize(BenchBoard &bench, LoopWatch *holds = nullptr)
{
    BoardState &board = bench.board();
    bool isDone = false;
    const auto connection =
        QObject::connect(&board, &BoardState::organized, &board, [&isDone] { isDone = true; });
    LoopWatch watch;
    const double elapsed = milliseconds([&] {
        launch(
            [](Services &services) -> QCoro::Task<> {
                const FetchedTasks fetched = co_await services.repository.fetchTasks(true);
                services.board->organizeTasks(fetched.tasks, fetched.answeredSources);
            }(bench.services()),
            QStringLiteral("bench"));
        watch.runUntil([&] { return isDone && bench.services().persistence.pendingJobs() == 0; });
    });
    QObject::disconnect(connection);
    if (holds) {
        *holds = watch;
    }
    return elapsed;
}

struct LoadFigures
{
    Comparison rewritten;
    Comparison unchanged;
};

LoadFigures measureLoad(int tasks)
{
    BenchBoard bench(tasks);
    RawStore raw(bench.databasePath());
    // The reference writes: in a copy, or it would be changing what is to stay unchanged.
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.sqlite"));
    raw.execute("PRAGMA wal_checkpoint(TRUNCATE)");
    QFile::copy(bench.databasePath(), copy);
    RawStore reference(copy);
    const auto readAndUpsert = [&reference] {
        return milliseconds([&reference] { reference.readAndUpsertAll(); });
    };
    LoadFigures figures;
    figures.rewritten = compare(
        Pairs,
        [&] {
            // Every number is off, so that every row is written back.
            raw.execute("UPDATE taskPositions SET position = position * 2 + 1, stableColumnId = 'x'");
            return loadAndOrganize(bench);
        },
        readAndUpsert);
    loadAndOrganize(bench);
    figures.unchanged = compare(
        Pairs, [&] { return loadAndOrganize(bench); }, readAndUpsert);
    return figures;
}

QString figure(const std::vector<LoopWatch> &holds)
{
    std::vector<double> blocks;
    std::vector<double> works;
    for (const LoopWatch &watch : holds) {
        blocks.push_back(watch.longestBlockMilliseconds);
        works.push_back(watch.longestWorkMilliseconds);
    }
    return QStringLiteral("median %1 ms, worst %2 ms (of work %3 ms)")
        .arg(median(blocks), 0, 'f', 2)
        .arg(percentile(blocks, 1.0), 0, 'f', 2)
        .arg(percentile(works, 1.0), 0, 'f', 2);
}

double slope(double small, double large, double factor)
{
    return std::log(large / small) / std::log(factor);
}

void benchLoad()
{
    const LoadFigures thousand = measureLoad(1000);
    const LoadFigures tenThousand = measureLoad(10000);
    const LoadFigures fiftyThousand = measureLoad(50000);
    report(QStringLiteral("load and organise 10,000, every row rewritten"), figure(tenThousand.rewritten),
           QStringLiteral("1.5x"));
    report(QStringLiteral("load and organise 10,000, nothing changed"), figure(tenThousand.unchanged),
           QStringLiteral("0.8x"));
    report(QStringLiteral("load and organise 50,000, nothing changed"), figure(fiftyThousand.unchanged),
           QStringLiteral("-"));
    const QString slopes =
        QStringLiteral("%1, then %2")
            .arg(slope(thousand.unchanged.medianMilliseconds, tenThousand.unchanged.medianMilliseconds, 10),
                 0, 'f', 2)
            .arg(slope(tenThousand.unchanged.medianMilliseconds, fiftyThousand.unchanged.medianMilliseconds,
                       5),
                 0, 'f', 2);
    report(QStringLiteral("growth 1,000 - 10,000 - 50,000 (log-log slope)"), slopes,
           QStringLiteral("1.05, then 1.15"));
}

/** Moves cards between cells; the time until every collection that changed can be read again. */
void benchMove(int tasks)
{
    BenchBoard bench(tasks);
    BoardState &board = bench.board();
    const auto lane = *SwimLaneId::fromText(bench.swimLaneIds().at(3));
    const auto from = *ColumnId::fromText(bench.columnIds().at(0));
    const auto to = *ColumnId::fromText(bench.columnIds().at(1));
    std::vector<double> times;
    std::vector<double> works;
    for (int i = 0; i < 200; ++i) {
        const bool forth = i % 2 == 0;
        const WorkItemPtr task = board.cell(lane, forth ? from : to).front();
        const double before = threadMilliseconds();
        times.push_back(milliseconds([&] {
            board.moveTask(task, forth ? to : from, lane, 0);
            board.cell(lane, from);
            board.cell(lane, to);
        }));
        works.push_back(threadMilliseconds() - before);
        QCoreApplication::processEvents();
    }
    bench.settle();
    const QString text = QStringLiteral("median %1 ms, 99th %2 ms (of work %3 ms)")
                             .arg(median(times), 0, 'f', 3)
                             .arg(percentile(times, 0.99), 0, 'f', 2)
                             .arg(percentile(works, 0.99), 0, 'f', 2);
    report(QStringLiteral("one move, GUI thread, %1 tasks").arg(tasks), text, QStringLiteral("2 ms, 4 ms"));
}

void benchRefresh()
{
    BenchBoard bench(10000);
    RawStore raw(bench.databasePath());
    std::vector<LoopWatch> holds(Pairs);
    for (int i = 0; i < Pairs; ++i) {
        const std::string sql = "UPDATE plainTextTasks SET name = 'Changed in run " + std::to_string(i) +
                                "' WHERE rowid % 500 = " + std::to_string(i);
        raw.execute(sql.c_str());
        loadAndOrganize(bench, &holds[static_cast<std::size_t>(i)]);
    }
    report(QStringLiteral("refresh, 20 of 10,000 changed: longest hold of the GUI"), figure(holds),
           QStringLiteral("4 ms"));
}

void benchMemory()
{
    const auto used = [](int tasks) {
        const long before = residentKiB();
        BenchBoard bench(tasks);
        return residentKiB() - before;
    };
    // The first board pays for what all share.
    const auto first = std::make_unique<BenchBoard>(100);
    const long small = used(10000);
    const long large = used(50000);
    report(QStringLiteral("memory a further task, 10,000 to 50,000"),
           QStringLiteral("%1 KiB").arg(static_cast<double>(large - small) / 40000.0, 0, 'f', 2),
           QStringLiteral("2 KiB"));
}

void benchCounts()
{
    BenchBoard bench(10000);
    BoardState &board = bench.board();
    const auto lane = *SwimLaneId::fromText(bench.swimLaneIds().at(3));
    const auto from = *ColumnId::fromText(bench.columnIds().at(0));
    const auto to = *ColumnId::fromText(bench.columnIds().at(1));
    std::vector<double> times;
    for (int i = 0; i < 100; ++i) {
        const bool forth = i % 2 == 0;
        board.moveTask(board.cell(lane, forth ? from : to).front(), forth ? to : from, lane, 0);
        times.push_back(milliseconds([&] {
            board.getWIPStatus();
            for (const SwimLane &each : board.swimLaneManager().swimLanes()) {
                board.calculateSwimLaneIncompletePercentage(each.id);
            }
        }));
        QCoreApplication::processEvents();
    }
    bench.settle();
    report(QStringLiteral("gauge and all workloads after a move, 10,000 tasks"),
           QStringLiteral("median %1 ms").arg(median(times), 0, 'f', 3), QStringLiteral("2 ms"));
}

void benchFilter()
{
    BenchBoard bench(10000);
    BoardState &board = bench.board();
    const WorkItems tasks = board.tasks();
    board.filterManager().toggleTagFilter(QStringLiteral("tag-code"));
    // Both copy what passes; the reference looks at one flag, which all tasks have alike.
    const auto copyOf = [&tasks](const auto &isWanted) {
        WorkItems wanted;
        std::copy_if(tasks.begin(), tasks.end(), std::back_inserter(wanted), isWanted);
        return wanted.size();
    };
    std::size_t accepted = 0;
    std::size_t passed = 0;
    const Comparison result = compare(
        Pairs,
        [&] {
            return milliseconds([&] {
                const TaskFilter filter = board.filterManager().taskFilter();
                accepted = copyOf([&filter](const WorkItemPtr &task) { return filter.accepts(*task); });
            });
        },
        [&] {
            return milliseconds(
                [&] { passed = copyOf([](const WorkItemPtr &task) { return !task->isBlocked(); }); });
        });
    if (accepted != tasks.size() || passed != tasks.size()) {
        std::fprintf(stderr, "the filter let %zu of %zu tasks pass\n", accepted, tasks.size());
        std::exit(1);
    }
    report(QStringLiteral("filter over 10,000 tasks / bare pass that copies as many"), figure(result),
           QStringLiteral("5x, 0.7 ms"));
}

void benchPriority()
{
    BenchBoard bench(10000);
    BoardState &board = bench.board();
    const WorkItems tasks = board.tasks();
    std::vector<LoopWatch> holds;
    for (int i = 0; i < Pairs; ++i) {
        bool isDone = false;
        const auto connection =
            QObject::connect(&board, &BoardState::organized, &board, [&isDone] { isDone = true; });
        LoopWatch watch;
        watch.note([&] {
            board.assignEisenhowerPriority(tasks[static_cast<std::size_t>(i)]->id(),
                                           EisenhowerPriority::DoNow);
        });
        watch.runUntil([&] { return isDone && bench.services().persistence.pendingJobs() == 0; });
        QObject::disconnect(connection);
        holds.push_back(watch);
    }
    report(QStringLiteral("priority assignment, 10,000 tasks: longest hold of the GUI"), figure(holds),
           QStringLiteral("4 ms"));
}

/** The parts, by the names that the command line may give; all without. */
const std::map<std::string_view, std::function<void()>> Parts{
    {"load", benchLoad},
    {"move",
     [] {
         benchMove(10000);
         benchMove(50000);
     }},
    {"refresh", benchRefresh},
    {"counts", benchCounts},
    {"filter", benchFilter},
    {"priority", benchPriority},
    {"memory", benchMemory},
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc > 1) {
        for (int i = 1; i < argc; ++i) {
            Parts.at(argv[i])();
        }
        return 0;
    }
    for (const auto &[name, part] : Parts) {
        part();
    }
    return 0;
}
