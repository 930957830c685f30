#include "viewmodels/ThroughputChartData.h"

#include <QCoreApplication>

#include <algorithm>

namespace vantrel {

namespace {

constexpr int MostScaleSteps = 8;
constexpr std::size_t MostAxisLabels = 8;

/** Of the charts' words. */
struct Chart
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::Chart)
};

QString dateText(Date date, const LocalCalendar &calendar)
{
    return calendar.locale.toString(calendar.dateTime(date), QStringLiteral("MMM d"));
}

QString momentText(const ThroughputDataPoint &point, const LocalCalendar &calendar)
{
    return point.period == ThroughputPeriod::Hourly
               ? dateText(point.date, calendar) + u", " + point.label(calendar)
               : point.label(calendar);
}

QString summaryText(int completed)
{
    return (completed == 1 ? Chart::tr("%1 task completed") : Chart::tr("%1 tasks completed")).arg(completed);
}

QString breakdownText(int omniFocus, int reminders, QStringView separator)
{
    return Chart::tr("OmniFocus: %1").arg(omniFocus) + separator + Chart::tr("Reminders: %1").arg(reminders);
}

/** Evenly spaced and counted back from the last point, which is the present. */
QVariantList axisLabelsOf(const std::vector<ThroughputDataPoint> &points, const LocalCalendar &calendar)
{
    QVariantList labels;
    if (points.empty()) {
        return labels;
    }
    const std::size_t last = points.size() - 1;
    std::size_t stride = 1;
    for (const std::size_t candidate : {1, 2, 5, 24, 48, 120}) {
        stride = candidate;
        if (last / stride < MostAxisLabels) {
            break;
        }
    }
    for (std::size_t i = last % stride; i <= last; i += stride) {
        labels.append(QVariantMap{{QStringLiteral("index"), static_cast<int>(i)},
                                  {QStringLiteral("text"), dateText(points[i].date, calendar)}});
    }
    return labels;
}

QString lineSummary(const std::vector<ThroughputDataPoint> &points, ThroughputPeriod period,
                    const ThroughputMetrics &metrics, const QLocale &locale)
{
    if (metrics.totalCompleted == 0) {
        return Chart::tr("No completed tasks in this time period");
    }
    const auto [least, most] = std::minmax_element(
        points.begin(), points.end(), [](const ThroughputDataPoint &a, const ThroughputDataPoint &b) {
            return a.completedCount < b.completedCount;
        });
    return Chart::tr(
               "%1 total tasks completed across %2 %3 periods. Average: %4 per %5. Range: %6 to %7 tasks.")
        .arg(QString::number(metrics.totalCompleted), QString::number(points.size()), label(period),
             locale.toString(metrics.averageThroughput, 'f', 1), unit(period),
             QString::number(least->completedCount), QString::number(most->completedCount));
}

QVariantMap metricCard(const QString &symbol, const QString &title, const QString &value,
                       const QString &caption, const QString &accessibleName)
{
    return {{QStringLiteral("symbol"), symbol},
            {QStringLiteral("title"), title},
            {QStringLiteral("value"), value},
            {QStringLiteral("caption"), caption},
            {QStringLiteral("accessibleName"), accessibleName}};
}

} // namespace

QString label(ChartType type)
{
    return type == ChartType::Line ? Chart::tr("Line Chart") : Chart::tr("Stacked Column");
}

QString label(ThroughputPeriod period)
{
    switch (period) {
    case ThroughputPeriod::Hourly:
        return Chart::tr("Per Hour");
    case ThroughputPeriod::Daily:
        return Chart::tr("Per Day");
    case ThroughputPeriod::Weekly:
        return Chart::tr("Per Week");
    }
    Q_UNREACHABLE();
}

QString unit(ThroughputPeriod period)
{
    switch (period) {
    case ThroughputPeriod::Hourly:
        return Chart::tr("hour");
    case ThroughputPeriod::Daily:
        return Chart::tr("day");
    case ThroughputPeriod::Weekly:
        return Chart::tr("week");
    }
    Q_UNREACHABLE();
}

CountScale CountScale::upTo(int peak)
{
    const int top = std::max(peak, 1);
    for (int power = 1;; power *= 10) {
        for (const int factor : {1, 2, 5}) {
            const int step = factor * power;
            const int steps = (top + step - 1) / step;
            if (steps <= MostScaleSteps) {
                return {step, steps};
            }
        }
    }
}

ThroughputMark ThroughputChartData::mark(int index) const
{
    if (index < 0 || index >= count()) {
        return {};
    }
    const StackedThroughputDataPoint &bySource = stacked[index];
    ThroughputMark mark;
    mark.completed = points[index].completedCount;
    mark.omniFocus = bySource.omniFocusCount;
    mark.reminders = bySource.remindersCount;
    mark.moment = momentText(points[index], calendar);
    mark.summary = summaryText(mark.completed);
    mark.breakdown = breakdownText(mark.omniFocus, mark.reminders, u"\n");
    return mark;
}

QString ThroughputChartData::spokenMark(int index, bool isBySource) const
{
    if (index < 0 || index >= count()) {
        return {};
    }
    const StackedThroughputDataPoint &bySource = stacked[index];
    const QString what = isBySource ? breakdownText(bySource.omniFocusCount, bySource.remindersCount, u", ")
                                    : summaryText(points[index].completedCount);
    return momentText(points[index], calendar) + u": " + what;
}

QList<QPointF> ThroughputChartData::line(double width, double height) const
{
    const double pitch = width / std::max(1, count() - 1);
    const double unit = height / completedScale.maximum();
    QList<QPointF> figure;
    for (int i = 0; i < count(); ++i) {
        figure.append({i * pitch, height - points[i].completedCount * unit});
    }
    return figure;
}

QList<QPointF> ThroughputChartData::areaBelowLine(double width, double height) const
{
    QList<QPointF> figure = line(width, height);
    figure.append({{width, height}, {0.0, height}});
    return figure;
}

QList<QPointF> ThroughputChartData::columns(double width, double height, bool isOfBoth) const
{
    const double pitch = width / std::max(1, count());
    const double unit = height / stackedScale.maximum();
    QList<QPointF> figure{{0.0, height}};
    for (int i = 0; i < count(); ++i) {
        const int tasks = stacked[i].omniFocusCount + (isOfBoth ? stacked[i].remindersCount : 0);
        const double top = height - tasks * unit;
        figure.append({{i * pitch, top}, {(i + 1) * pitch, top}});
    }
    figure.append({width, height});
    return figure;
}

QVariantList ThroughputChartData::reminderEdges(double width, double height) const
{
    const double pitch = width / std::max(1, count());
    const double unit = height / stackedScale.maximum();
    QVariantList edges;
    for (int i = 0; i < count(); ++i) {
        if (stacked[i].remindersCount > 0) {
            const double top = height - (stacked[i].omniFocusCount + stacked[i].remindersCount) * unit;
            edges.append(QVariant::fromValue(QList<QPointF>{{i * pitch, top}, {(i + 1) * pitch, top}}));
        }
    }
    return edges;
}

ThroughputChartData throughputChartData(const std::vector<ThroughputDataPoint> &points,
                                        const std::vector<StackedThroughputDataPoint> &stacked,
                                        ThroughputPeriod period, const ThroughputMetrics &metrics,
                                        const LocalCalendar &calendar)
{
    ThroughputChartData data;
    data.points = QList<ThroughputDataPoint>(points.begin(), points.end());
    data.stacked = QList<StackedThroughputDataPoint>(stacked.begin(), stacked.end());
    data.calendar = calendar;
    int highestStack = 0;
    int omniFocus = 0;
    int reminders = 0;
    for (const StackedThroughputDataPoint &point : stacked) {
        highestStack = std::max(highestStack, point.omniFocusCount + point.remindersCount);
        omniFocus += point.omniFocusCount;
        reminders += point.remindersCount;
    }
    data.completedScale = CountScale::upTo(metrics.peakThroughput);
    data.stackedScale = CountScale::upTo(highestStack);
    data.axisLabels = axisLabelsOf(points, calendar);
    data.summary = lineSummary(points, period, metrics, calendar.locale);
    data.stackedSummary = breakdownText(omniFocus, reminders, u", ");
    return data;
}

QVariantList metricCards(const ThroughputMetrics &metrics, ThroughputPeriod period, const QLocale &locale)
{
    const QString average = locale.toString(metrics.averageThroughput, 'f', 0);
    const QString peak = locale.toString(metrics.peakThroughput);
    const QString total = locale.toString(metrics.totalCompleted);
    return {
        metricCard(QStringLiteral("chart.bar.fill"), Chart::tr("Average"), average,
                   Chart::tr("per %1").arg(unit(period)),
                   Chart::tr("%1 tasks completed on average per %2").arg(average, unit(period))),
        metricCard(QStringLiteral("chart.line.uptrend.xyaxis"), Chart::tr("Peak"), peak,
                   Chart::tr("in one %1").arg(unit(period)),
                   Chart::tr("%1 tasks completed in your most productive %2").arg(peak, unit(period))),
        metricCard(QStringLiteral("checkmark.circle.fill"), Chart::tr("Total"), total,
                   Chart::tr("last 20 days"),
                   Chart::tr("%1 total tasks completed in %2").arg(total, Chart::tr("the last 20 days"))),
    };
}

} // namespace vantrel
