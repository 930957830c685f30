// Throughput and task age of 10,000 tasks, against one pass of integers and against the definition taken at
// its word.

#include "BenchBoard.h"
#include "Histories.h"
#include "Measure.h"

#include "analytics/TaskAgeAnalyzer.h"
#include "analytics/ThroughputAnalyzer.h"
#include "support/FakeTaskManager.h"
#include "viewmodels/AnalyzeViewModel.h"
#include "viewmodels/OptimizeViewModel.h"

#include <QCoreApplication>

#include <array>
#include <random>

using namespace vantrel;
using namespace vantrel::bench;

namespace {

constexpr int Pairs = 11;
constexpr int TaskCount = 10000;
constexpr double SecondsPerHour = 3600.0;

LocalCalendar berlin()
{
    const QTimeZone zone("Europe/Berlin");
    // Summer time ends within the twenty days.
    return {Date::fromDateTime(QDateTime(QDate(2026, 11, 3), QTime(14, 20), zone)), zone,
            QLocale(QLocale::German)};
}

throughput::Tasks completedTasks(const LocalCalendar &calendar)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> back(0.0, LookbackDays * SecondsPerDay);
    throughput::Tasks tasks;
    for (int i = 0; i < TaskCount; ++i) {
        tasks.push_back({calendar.now - back(random), static_cast<CompletedTask::Source>(i % 3)});
    }
    return tasks;
}

std::vector<AgedTask> agedTasks()
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> age(0.0, 60 * SecondsPerDay);
    std::vector<AgedTask> tasks;
    for (int i = 0; i < TaskCount; ++i) {
        tasks.push_back({QString::number(i), age(random)});
    }
    return tasks;
}

/** What no method can do without: each date once, a division, a sum. */
int integerPass(const throughput::Tasks &tasks, Date now, std::vector<int> &counts)
{
    std::fill(counts.begin(), counts.end(), 0);
    const double first = now.seconds() - LookbackDays * SecondsPerDay;
    for (const CompletedTask &task : tasks) {
        const auto hour = static_cast<std::size_t>((task.completionDate->seconds() - first) / SecondsPerHour);
        ++counts[std::min(hour, counts.size() - 1)];
    }
    return counts.front() + counts.back();
}

/** The same for ages: whole days, cut off at a month. */
int integerPass(const std::vector<AgedTask> &tasks)
{
    std::array<int, 29> counts{};
    for (const AgedTask &task : tasks) {
        ++counts[std::min<std::size_t>(static_cast<std::size_t>(task.age / SecondsPerDay), 28)];
    }
    return counts.front() + counts.back();
}

/** The definition: for each point all tasks are asked whether the wall clock shows the same hour for both. */
std::vector<int> filterPerPeriod(const throughput::Tasks &tasks, const LocalCalendar &calendar)
{
    std::vector<int> counts;
    for (const Date point : throughput::timePeriods(calendar, ThroughputPeriod::Hourly, LookbackDays)) {
        const QDateTime local = calendar.dateTime(point);
        counts.push_back(
            static_cast<int>(std::count_if(tasks.begin(), tasks.end(), [&](const CompletedTask &task) {
                const QDateTime completed = calendar.dateTime(*task.completionDate);
                return completed.date() == local.date() && completed.time().hour() == local.time().hour();
            })));
    }
    return counts;
}

/** Repeated, as one run is too short for the clock. */
double perRun(const std::function<void()> &work)
{
    constexpr int runs = 20;
    return milliseconds([&] {
               for (int i = 0; i < runs; ++i) {
                   work();
               }
           }) /
           runs;
}

QString finely(const Comparison &result)
{
    return QStringLiteral("%1x  (%2 ms / %3 ms, %4-%5x)")
        .arg(result.medianRatio, 0, 'f', 2)
        .arg(result.medianMilliseconds, 0, 'f', 3)
        .arg(result.medianReference, 0, 'f', 3)
        .arg(result.lowestRatio, 0, 'f', 2)
        .arg(result.highestRatio, 0, 'f', 2);
}

void benchAnalyzers()
{
    const LocalCalendar calendar = berlin();
    const throughput::Tasks tasks = completedTasks(calendar);
    const std::vector<AgedTask> aged = agedTasks();
    std::vector<int> counts(LookbackDays * 24 + 1);
    int seen = 0;
    const auto onePass = [&] {
        return perRun([&] { seen += integerPass(tasks, calendar.now, counts); });
    };
    const auto series = [&](ThroughputPeriod period) {
        const auto points = throughput::generateThroughputData(tasks, period, LookbackDays, calendar);
        seen += points.back().completedCount;
    };
    report(QStringLiteral("481 hours of 10,000 finished tasks / one integer pass"),
           finely(compare(
               Pairs, [&] { return perRun([&] { series(ThroughputPeriod::Hourly); }); }, onePass)),
           QStringLiteral("5x"));
    report(QStringLiteral("20 days and the age buckets of 10,000 / an integer pass of each"),
           finely(compare(
               Pairs,
               [&] {
                   return perRun([&] {
                       series(ThroughputPeriod::Daily);
                       seen += taskage::generateAgeHistogramData(aged).front().count;
                   });
               },
               [&] {
                   return perRun(
                       [&] { seen += integerPass(tasks, calendar.now, counts) + integerPass(aged); });
               })),
           QStringLiteral("5x, 0.25 ms"));

    std::vector<int> byDefinition;
    const Comparison naive = compare(
        Pairs, [&] { return milliseconds([&] { byDefinition = filterPerPeriod(tasks, calendar); }); },
        [&] { return perRun([&] { series(ThroughputPeriod::Hourly); }); });
    const auto points =
        throughput::generateThroughputData(tasks, ThroughputPeriod::Hourly, LookbackDays, calendar);
    const bool areEqual =
        std::equal(points.begin(), points.end(), byDefinition.begin(), byDefinition.end(),
                   [](const ThroughputDataPoint &point, int count) { return point.completedCount == count; });
    report(QStringLiteral("a filter for each of 481 hours / ours"),
           finely(naive) + (areEqual ? QStringLiteral(" same figures") : QStringLiteral(" FIGURES DIFFER")),
           QStringLiteral("-"));
    if (seen < 0) {
        std::printf("%d\n", seen);
    }
}

/** The longest time that a screen's work keeps the window from drawing, until the screen gives `done`. */
template <typename Screen>
double longestHold(Screen &screen, void (Screen::*done)(), Clock &clock, const std::function<void()> &begin)
{
    bool isDone = false;
    const auto connection = QObject::connect(&screen, done, &screen, [&isDone] { isDone = true; });
    clock.soon(&screen, begin);
    LoopWatch watch;
    watch.runUntil([&isDone] { return isDone; });
    QObject::disconnect(connection);
    return watch.longestBlockMilliseconds;
}

void reportHolds(const QString &what, const std::vector<double> &holds)
{
    report(what,
           QStringLiteral("median %1 ms, worst %2 ms")
               .arg(median(holds), 0, 'f', 2)
               .arg(*std::max_element(holds.begin(), holds.end()), 0, 'f', 2),
           QStringLiteral("4 ms"));
}

void benchOptimizeScreen()
{
    BenchBoard bench(TaskCount);
    Services &services = bench.services();
    OptimizeViewModel screen(*services.board, services.defaults, services.time, services.notifications,
                             services.announcer, services.clock);
    std::vector<double> holds;
    for (int i = 0; i < Pairs; ++i) {
        holds.push_back(longestHold(screen, &OptimizeViewModel::analysisChanged, services.clock,
                                    [&] { screen.appear(); }));
    }
    reportHolds(QStringLiteral("task age of 10,000: longest hold of the GUI"), holds);
}

void benchAnalyzeScreen()
{
    BenchBoard bench(10);
    Services &services = bench.services();
    test::FakeTaskManager source{TaskManagerType::OmniFocus, services.clock};
    TaskManagerFactory managers(services.defaults, source, source, source);
    managers.setTaskSourceConfiguration({.isOmniFocusEnabled = true, .isPlainTextEnabled = false});
    AnalyzeViewModel screen(managers, services.notifications, services.announcer, services.clock);
    screen.setPeriod(static_cast<int>(ThroughputPeriod::Hourly));
    const WorkItems items = finishedItems(services.clock.now(), TaskCount);
    std::vector<double> holds;
    for (int i = 0; i < Pairs; ++i) {
        source.completedFetches.giveAfter(0.01, items);
        holds.push_back(longestHold(screen, &AnalyzeViewModel::analyticsChanged, services.clock,
                                    [&] { screen.refresh(); }));
    }
    reportHolds(QStringLiteral("481 hours of 10,000 finished tasks: longest hold of the GUI"), holds);
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter(LogWriter::Output::Silent);
    QCoreApplication application(argc, argv);
    benchAnalyzers();
    benchOptimizeScreen();
    benchAnalyzeScreen();
    return 0;
}
