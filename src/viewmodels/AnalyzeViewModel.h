#pragma once

#include "analytics/CompletedTasksManager.h"
#include "viewmodels/ThroughputChartData.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class Announcer;

/**
 * The Analyze screen: throughput of the last twenty days, as a chart and three figures. Loads when the screen
 * appears, and goes on with that load when it is left and comes back. GUI thread; owned by AppViewModel.
 */
class AnalyzeViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(Screen screen READ screen NOTIFY stateChanged)
    Q_PROPERTY(bool hasContent READ hasContent NOTIFY stateChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QStringList periods READ periods CONSTANT)
    Q_PROPERTY(QStringList chartTypes READ chartTypes CONSTANT)
    Q_PROPERTY(int period READ period WRITE setPeriod NOTIFY analyticsChanged)
    Q_PROPERTY(int chartType READ chartType WRITE setChartType NOTIFY chartTypeChanged)
    Q_PROPERTY(bool stacked READ isStacked NOTIFY chartTypeChanged)
    Q_PROPERTY(QVariantList metricCards READ metricCards NOTIFY analyticsChanged)
    Q_PROPERTY(QString unit READ unit NOTIFY analyticsChanged)
    Q_PROPERTY(vantrel::ThroughputChartData chart READ chart NOTIFY analyticsChanged)
public:
    /** What stands in the window, the first that holds. */
    enum class Screen { Loading, Error, Empty, Content };
    Q_ENUM(Screen)

    AnalyzeViewModel(TaskManagerFactory &factory, NotificationCenter &notifications, Announcer &announcer,
                     Clock &clock, QObject *parent = nullptr);

    /** The screen is shown; loads, from the cache while that is fresh. */
    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear() { m_isShown = false; }
    /** Asks all sources anew. Does nothing during a load. */
    Q_INVOKABLE void refresh();
    /** The button of the error and the empty screen. Does nothing during a load. */
    Q_INVOKABLE void loadData();

    Screen screen() const;
    /** True also while what was there before is loaded anew. */
    bool hasContent() const { return m_hasContent; }
    QString errorMessage() const { return m_completedTasks.errorMessage().value_or(QString()); }
    QStringList periods() const;
    QStringList chartTypes() const;
    int period() const { return static_cast<int>(m_period); }
    void setPeriod(int period);
    int chartType() const { return static_cast<int>(m_chartType); }
    void setChartType(int type);
    bool isStacked() const { return m_chartType == ChartType::StackedColumn; }

    QVariantList metricCards() const { return m_metricCards; }
    QString unit() const { return vantrel::unit(m_period); }
    ThroughputChartData chart() const { return m_chart; }

Q_SIGNALS:
    void stateChanged();
    void analyticsChanged();
    void chartTypeChanged();

private:
    QCoro::Task<> load();
    void handleTasksChanged();
    void analyze();
    void updateAnalytics();
    void announceUpdate();
    /** Only what is on the screen speaks. */
    void say(const QString &text);

    Announcer &m_announcer;
    Clock &m_clock;
    CompletedTasksManager m_completedTasks;
    /** What the analysis needs of the completed tasks. */
    throughput::Tasks m_tasks;
    ThroughputPeriod m_period = ThroughputPeriod::Daily;
    ChartType m_chartType = ChartType::Line;
    ThroughputChartData m_chart;
    QVariantList m_metricCards;
    bool m_isShown = false;
    bool m_isLoading = false;
    bool m_hasContent = false;
};

} // namespace vantrel
