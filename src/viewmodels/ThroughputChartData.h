#pragma once

#include "analytics/ThroughputAnalyzer.h"

#include <QList>
#include <QPointF>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

/** How a throughput series is drawn. */
enum class ChartType { Line, StackedColumn };

inline constexpr std::array AllChartTypes{ChartType::Line, ChartType::StackedColumn};

/** "Line Chart", "Stacked Column". */
QString label(ChartType type);
/** "Per Hour", "Per Day", "Per Week". */
QString label(ThroughputPeriod period);
/** "hour", "day", "week". */
QString unit(ThroughputPeriod period);

/** One point or bar of the charts, and what is said of it. A value. */
struct ThroughputMark
{
    Q_GADGET
    QML_VALUE_TYPE(throughputMark)
    Q_PROPERTY(int completed MEMBER completed CONSTANT)
    Q_PROPERTY(int omniFocus MEMBER omniFocus CONSTANT)
    Q_PROPERTY(int reminders MEMBER reminders CONSTANT)
    Q_PROPERTY(QString moment MEMBER moment CONSTANT)
    Q_PROPERTY(QString summary MEMBER summary CONSTANT)
    Q_PROPERTY(QString breakdown MEMBER breakdown CONSTANT)

public:
    int completed = 0;
    int omniFocus = 0;
    int reminders = 0;
    /** "Nov 17"; an hour is told with its date. */
    QString moment;
    /** "7 tasks completed". */
    QString summary;
    /** "OmniFocus: 3", "Reminders: 4", one a line. */
    QString breakdown;
};

/** The y axis of a chart that counts tasks: whole numbers from 0 to a round one that takes in the peak. */
struct CountScale
{
    Q_GADGET
    QML_VALUE_TYPE(countScale)
    Q_PROPERTY(int step MEMBER step CONSTANT)
    Q_PROPERTY(int steps MEMBER steps CONSTANT)
    Q_PROPERTY(int maximum READ maximum CONSTANT)

public:
    int step = 1;
    int steps = 1;

    int maximum() const { return step * steps; }

    /** At most eight steps of 1, 2, 5, 10, 20, ... tasks. */
    static CountScale upTo(int peak);

    friend bool operator==(const CountScale &, const CountScale &) = default;
};

/**
 * Everything the charts of one period show. A value, cheap to copy: the words for a mark and the figures to
 * draw are made when they are asked for.
 */
struct ThroughputChartData
{
    Q_GADGET
    QML_VALUE_TYPE(throughputChartData)
    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(vantrel::CountScale completedScale MEMBER completedScale CONSTANT)
    Q_PROPERTY(vantrel::CountScale stackedScale MEMBER stackedScale CONSTANT)
    Q_PROPERTY(QVariantList axisLabels MEMBER axisLabels CONSTANT)
    Q_PROPERTY(QString summary MEMBER summary CONSTANT)
    Q_PROPERTY(QString stackedSummary MEMBER stackedSummary CONSTANT)

public:
    QList<ThroughputDataPoint> points;
    QList<StackedThroughputDataPoint> stacked;
    LocalCalendar calendar;
    CountScale completedScale;
    CountScale stackedScale;
    /** Maps with "index" and "text", at most eight. */
    QVariantList axisLabels;
    /** The line in one sentence, for those who do not see it. */
    QString summary;
    QString stackedSummary;

    int count() const { return static_cast<int>(points.size()); }
    /** Empty if there is none of that index. */
    Q_INVOKABLE vantrel::ThroughputMark mark(int index) const;
    /** "Nov 17: 7 tasks completed"; with the breakdown by source for the columns. */
    Q_INVOKABLE QString spokenMark(int index, bool isBySource) const;

    // Figures to be drawn in a plot of that size, with y growing downwards.

    /** Through all points, from edge to edge. */
    Q_INVOKABLE QList<QPointF> line(double width, double height) const;
    /** What lies below the line. */
    Q_INVOKABLE QList<QPointF> areaBelowLine(double width, double height) const;
    /** The outline of columns that stand side by side without a gap: of OmniFocus, or of both sources. */
    Q_INVOKABLE QList<QPointF> columns(double width, double height, bool isOfBoth) const;
    /** The upper edges of the columns that have reminders on top: a list of points for each. */
    Q_INVOKABLE QVariantList reminderEdges(double width, double height) const;
};

ThroughputChartData throughputChartData(const std::vector<ThroughputDataPoint> &points,
                                        const std::vector<StackedThroughputDataPoint> &stacked,
                                        ThroughputPeriod period, const ThroughputMetrics &metrics,
                                        const LocalCalendar &calendar);

/** Maps with "symbol", "title", "value", "caption" and "accessibleName": average, peak and total. */
QVariantList metricCards(const ThroughputMetrics &metrics, ThroughputPeriod period, const QLocale &locale);

} // namespace vantrel
