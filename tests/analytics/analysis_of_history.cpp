// Reads histories from standard input, one JSON object a line, and prints what the analyzers make of each:
// for check_figures.py, which has worked out the same by other means.

#include "analytics/TaskAgeAnalyzer.h"
#include "analytics/ThroughputAnalyzer.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

using namespace vantrel;
using namespace Qt::StringLiterals;

namespace {

constexpr int LookbackDays = 20;

throughput::Tasks tasksOf(const QJsonObject &history)
{
    throughput::Tasks tasks;
    for (const QJsonValue &value : history[u"tasks"_s].toArray()) {
        const QJsonArray pair = value.toArray();
        CompletedTask task;
        if (pair[0].isDouble()) task.completionDate = Date(pair[0].toDouble());
        task.source = static_cast<CompletedTask::Source>(pair[1].toInt());
        tasks.push_back(task);
    }
    return tasks;
}

std::vector<AgedTask> agedTasksOf(const QJsonObject &history)
{
    std::vector<AgedTask> tasks;
    for (const QJsonValue &age : history[u"ages"_s].toArray()) {
        tasks.push_back({QString::number(tasks.size()), age.toDouble()});
    }
    return tasks;
}

QJsonObject analyzed(const throughput::Tasks &tasks, ThroughputPeriod period, const LocalCalendar &calendar)
{
    const auto points = throughput::generateThroughputData(tasks, period, LookbackDays, calendar);
    const auto stacked = throughput::generateStackedThroughputData(tasks, period, LookbackDays, calendar);
    const auto metrics = throughput::calculateMetrics(points, tasks, calendar);
    QJsonArray dates;
    QJsonArray counts;
    for (std::size_t i = 0; i < points.size(); ++i) {
        dates.append(points[i].date.seconds());
        counts.append(
            QJsonArray{points[i].completedCount, stacked[i].omniFocusCount, stacked[i].remindersCount});
    }
    const auto day = metrics.mostProductiveDay;
    return {{u"dates"_s, dates},
            {u"counts"_s, counts},
            {u"average"_s, metrics.averageThroughput},
            {u"peak"_s, metrics.peakThroughput},
            {u"total"_s, metrics.totalCompleted},
            {u"trend"_s, static_cast<int>(metrics.trend)},
            {u"consistency"_s, metrics.consistencyScore},
            {u"bestDay"_s, day ? QJsonValue(day->first) : QJsonValue()},
            {u"bestDayCount"_s, day ? QJsonValue(day->second) : QJsonValue()}};
}

QJsonArray ages(const std::vector<AgedTask> &tasks, const QLocale &locale)
{
    const taskage::TasksByAge byAge = taskage::categorizeTasksByAge(tasks);
    QJsonArray buckets;
    for (const AgeHistogramDataPoint &point : taskage::generateAgeHistogramData(tasks)) {
        const auto &ids = byAge.at(static_cast<std::size_t>(point.ageBucket));
        buckets.append(
            QJsonObject{{u"count"_s, point.count},
                        {u"percentage"_s, point.percentage},
                        {u"text"_s, point.formattedPercentage(locale)},
                        {u"factor"_s, taskage::scalingFactorFor(point.ageBucket)},
                        {u"zone"_s, rawValue(zoneOf(point.ageBucket))},
                        {u"tasks"_s, QJsonArray::fromStringList(QStringList(ids.begin(), ids.end()))}});
    }
    return buckets;
}

QJsonObject analysisOf(const QJsonObject &history)
{
    const LocalCalendar calendar{Date(history[u"now"_s].toDouble()),
                                 QTimeZone(history[u"zone"_s].toString().toLatin1()),
                                 QLocale(history[u"locale"_s].toString())};
    const throughput::Tasks tasks = tasksOf(history);
    QJsonObject result;
    for (const ThroughputPeriod period : AllThroughputPeriods) {
        result[rawValue(period)] = analyzed(tasks, period, calendar);
    }
    result[u"ages"_s] = ages(agedTasksOf(history), QLocale(QLocale::English, QLocale::UnitedStates));
    return result;
}

} // namespace

int main()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return 1;
    }
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        const QJsonObject result = analysisOf(QJsonDocument::fromJson(line).object());
        std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    }
    return 0;
}
