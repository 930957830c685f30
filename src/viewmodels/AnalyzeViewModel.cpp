#include "viewmodels/AnalyzeViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"

#include <QPointer>

#include <utility>

namespace vantrel {

namespace {
/** Whatever the period: the window is twenty days. */
constexpr int LookbackDays = 20;
} // namespace

AnalyzeViewModel::AnalyzeViewModel(TaskManagerFactory &factory, NotificationCenter &notifications,
                                   Announcer &announcer, Clock &clock, QObject *parent)
    : QObject(parent), m_announcer(announcer), m_clock(clock), m_completedTasks(factory, notifications, clock)
{
    connect(&m_completedTasks, &CompletedTasksManager::changed, this, &AnalyzeViewModel::handleTasksChanged);
    connect(&m_completedTasks, &CompletedTasksManager::announced, this, &AnalyzeViewModel::say);
    notifications.observe(notifications::RefreshTasksRequested, this, [this](const Notification &) {
        if (m_isShown) {
            refresh();
        }
    });
}

void AnalyzeViewModel::say(const QString &text)
{
    if (m_isShown) {
        m_announcer.announce(text);
    }
}

void AnalyzeViewModel::appear()
{
    m_isShown = true;
    loadData();
}

void AnalyzeViewModel::refresh()
{
    if (m_isLoading) {
        return;
    }
    say(tr("Refreshing analytics data. Please wait..."));
    m_completedTasks.clearCache();
    loadData();
}

void AnalyzeViewModel::loadData()
{
    say(tr("Loading analytics data..."));
    if (!m_isLoading) {
        launch(load(), QStringLiteral("Loading completed tasks"));
    }
}

QCoro::Task<> AnalyzeViewModel::load()
{
    const QPointer<AnalyzeViewModel> self(this);
    m_isLoading = true;
    co_await m_completedTasks.fetchCompletedTasks(LookbackDays);
    if (!self) {
        co_return;
    }
    m_isLoading = false;
    announceUpdate();
}

/** What is new is analyzed before anything shows that it has come. */
void AnalyzeViewModel::handleTasksChanged()
{
    if (!m_completedTasks.isLoading()) {
        m_tasks.clear();
        m_tasks.reserve(m_completedTasks.completedTasks().size());
        for (const WorkItemPtr &task : m_completedTasks.completedTasks()) {
            m_tasks.push_back(CompletedTask::from(*task));
        }
        m_hasContent = !m_tasks.empty();
        analyze();
    }
    Q_EMIT stateChanged();
}

void AnalyzeViewModel::analyze()
{
    const LocalCalendar calendar{m_clock.now(), QTimeZone::systemTimeZone(), QLocale()};
    const auto points = throughput::generateThroughputData(m_tasks, m_period, LookbackDays, calendar);
    const auto stacked = throughput::generateStackedThroughputData(m_tasks, m_period, LookbackDays, calendar);
    const ThroughputMetrics metrics = throughput::calculateMetrics(points, m_tasks, calendar);
    m_chart = throughputChartData(points, stacked, m_period, metrics, calendar);
    m_metricCards = vantrel::metricCards(metrics, m_period, calendar.locale);
    Q_EMIT analyticsChanged();
}

void AnalyzeViewModel::updateAnalytics()
{
    analyze();
    announceUpdate();
}

void AnalyzeViewModel::announceUpdate()
{
    if (m_tasks.empty()) {
        say(tr("Analytics updated. No completed tasks found in the selected time period."));
        return;
    }
    say(tr("Analytics updated with %1 completed tasks shown as %2 for %3 view")
            .arg(QString::number(m_tasks.size()), label(m_chartType).toLower(), label(m_period).toLower()));
}

AnalyzeViewModel::Screen AnalyzeViewModel::screen() const
{
    if (m_completedTasks.isLoading()) return Screen::Loading;
    if (m_completedTasks.errorMessage()) return Screen::Error;
    return m_tasks.empty() ? Screen::Empty : Screen::Content;
}

QStringList AnalyzeViewModel::periods() const
{
    QStringList labels;
    for (const ThroughputPeriod period : AllThroughputPeriods) {
        labels.append(label(period));
    }
    return labels;
}

QStringList AnalyzeViewModel::chartTypes() const
{
    QStringList labels;
    for (const ChartType type : AllChartTypes) {
        labels.append(label(type));
    }
    return labels;
}

void AnalyzeViewModel::setPeriod(int period)
{
    if (period < 0 || period >= static_cast<int>(AllThroughputPeriods.size()) || period == this->period()) {
        return;
    }
    m_period = static_cast<ThroughputPeriod>(period);
    updateAnalytics();
    say(tr("Time period changed to %1. Analytics updated.").arg(label(m_period)));
}

void AnalyzeViewModel::setChartType(int type)
{
    if (type < 0 || type >= static_cast<int>(AllChartTypes.size()) || type == chartType()) {
        return;
    }
    m_chartType = static_cast<ChartType>(type);
    Q_EMIT chartTypeChanged();
    say(tr("Chart type changed to %1. Analytics updated.").arg(label(m_chartType)));
}

} // namespace vantrel
