#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace vantrel::bench {

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

inline double percentile(std::vector<double> values, double share)
{
    std::sort(values.begin(), values.end());
    const auto index = static_cast<std::size_t>(share * static_cast<double>(values.size()));
    return values.empty() ? 0.0 : values[std::min(index, values.size() - 1)];
}

/** Milliseconds that `work` takes. */
inline double milliseconds(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/** Milliseconds that this thread has worked since it began. */
double threadMilliseconds();

/** What a thing costs, and what its reference costs, measured in turns: the machine's pace changes between
 * runs. */
struct Comparison
{
    double medianRatio = 0.0;
    double medianMilliseconds = 0.0;
    double medianReference = 0.0;
    double lowestRatio = 0.0;
    double highestRatio = 0.0;
};

inline Comparison compare(int pairs, const std::function<double()> &thing,
                          const std::function<double()> &reference)
{
    std::vector<double> ratios;
    std::vector<double> things;
    std::vector<double> references;
    thing();
    reference();
    for (int i = 0; i < pairs; ++i) {
        const double a = thing();
        const double b = reference();
        things.push_back(a);
        references.push_back(b);
        ratios.push_back(a / b);
    }
    return {median(ratios), median(things), median(references),
            *std::min_element(ratios.begin(), ratios.end()), *std::max_element(ratios.begin(), ratios.end())};
}

/** One line of the report: what, figure, aim. */
inline void report(const QString &what, const QString &figure, const QString &aim)
{
    std::printf("%-58s %-46s aim %s\n", qPrintable(what), qPrintable(figure), qPrintable(aim));
    std::fflush(stdout);
}

inline QString figure(const Comparison &result)
{
    return QStringLiteral("%1x  (%2 ms / %3 ms, %4-%5x)")
        .arg(result.medianRatio, 0, 'f', 2)
        .arg(result.medianMilliseconds, 0, 'f', 1)
        .arg(result.medianReference, 0, 'f', 1)
        .arg(result.lowestRatio, 0, 'f', 2)
        .arg(result.highestRatio, 0, 'f', 2);
}

/** Resident memory of this process in KiB. */
long residentKiB();

/** Runs the event loop until `isDone`, noting the longest time that it was not free. */
struct LoopWatch
{
    double longestBlockMilliseconds = 0.0;
    /** The longest that this thread itself worked in one turn: without what other programs took from it. */
    double longestWorkMilliseconds = 0.0;
    void runUntil(const std::function<bool()> &isDone);
    /** Notes `work` as one turn; gives how long it took. */
    double note(const std::function<void()> &work);
};

} // namespace vantrel::bench
