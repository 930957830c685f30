#include "viewmodels/OptimizeViewModel.h"

#include "feedback/Announcer.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "foundations/TimeSlice.h"
#include "viewmodels/TaskCardKeyboardNavigation.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace vantrel {

namespace {

AgeBar barOf(const AgeHistogramDataPoint &point, int highest, const QLocale &locale)
{
    AgeBar bar;
    bar.label = label(point.ageBucket);
    bar.zone = rawValue(zoneOf(point.ageBucket));
    bar.count = point.count;
    bar.share = point.formattedPercentage(locale);
    bar.fraction = highest > 0 ? static_cast<double>(point.count) / highest : 0.0;
    bar.accessibleName =
        OptimizeViewModel::tr("%1: %2 tasks, %3 of total").arg(bar.label).arg(bar.count).arg(bar.share);
    return bar;
}

} // namespace

OptimizeViewModel::OptimizeViewModel(BoardState &board, const UserDefaults &defaults, const TimeManager &time,
                                     NotificationCenter &notifications, Announcer &announcer, Clock &clock,
                                     QObject *parent)
    : QObject(parent),
      m_board(board),
      m_announcer(announcer),
      m_clock(clock),
      m_preferences(defaults, time),
      m_grid([this] { return m_preferences.rules(); })
{
    connect(&m_board, &BoardState::organized, this, &OptimizeViewModel::followBoard);
    connect(&m_preferences, &CardPreferences::changed, &m_grid, &TaskAgeGridModel::rewriteCards);
    notifications.observe(notifications::RefreshTasksRequested, this, [this](const Notification &) {
        if (m_isShown) {
            refreshData();
        }
    });
}

void OptimizeViewModel::say(const QString &text)
{
    if (m_isShown) {
        m_announcer.announce(text);
    }
}

void OptimizeViewModel::appear()
{
    m_isShown = true;
    if (!m_isLoading) {
        generateAnalytics();
    }
}

void OptimizeViewModel::refreshData()
{
    if (m_isLoading) {
        return;
    }
    say(tr("Refreshing task age analysis..."));
    generateAnalytics();
}

void OptimizeViewModel::generateAnalytics()
{
    m_isLoading = true;
    m_errorMessage.reset();
    Q_EMIT stateChanged();
    say(tr("Analyzing task age data..."));
    launch(analyze(), QStringLiteral("Analyzing task age"));
}

/** The board has other tasks now: shown without a word, as the board itself does it. */
void OptimizeViewModel::followBoard()
{
    if (m_isShown) {
        launch(analyze(), QStringLiteral("Analyzing task age"));
    }
}

void OptimizeViewModel::showError(const QString &message)
{
    ++m_generation;
    m_isLoading = false;
    m_errorMessage = message;
    Q_EMIT stateChanged();
}

QCoro::Task<> OptimizeViewModel::analyze()
{
    const QPointer<OptimizeViewModel> self(this);
    const int generation = ++m_generation;
    co_await m_clock.yieldToEventLoop();
    if (!self || generation != m_generation) {
        co_return;
    }
    Analysis analysis = co_await analysisOf(m_board.getAllTasks());
    if (self && generation == m_generation) {
        finish(std::move(analysis));
    }
}

QCoro::Task<OptimizeViewModel::Analysis> OptimizeViewModel::analysisOf(WorkItems tasks)
{
    Clock &clock = m_clock;
    const Date now = clock.now();
    Analysis analysis;
    TimeSlice slice;
    for (const WorkItemPtr &task : tasks) {
        analysis.agedTasks.push_back({task->id(), task->age(now)});
        analysis.taskById.insert(task->id(), task);
        if (slice.isUsedUp()) {
            co_await clock.yieldToEventLoop();
            slice.restart();
        }
    }
    co_await clock.yieldToEventLoop();
    std::stable_sort(analysis.agedTasks.begin(), analysis.agedTasks.end(),
                     [](const AgedTask &a, const AgedTask &b) { return a.age > b.age; });
    co_await clock.yieldToEventLoop();
    analysis.histogram = taskage::generateAgeHistogramData(analysis.agedTasks);
    analysis.tasksByAge = taskage::categorizeTasksByAge(analysis.agedTasks);
    co_return analysis;
}

void OptimizeViewModel::finish(Analysis analysis)
{
    m_analysis = std::move(analysis);
    const QLocale locale;
    int highest = 0;
    for (const AgeHistogramDataPoint &point : m_analysis.histogram) {
        highest = std::max(highest, point.count);
    }
    m_bars.clear();
    for (const AgeHistogramDataPoint &point : m_analysis.histogram) {
        m_bars.append(QVariant::fromValue(barOf(point, highest, locale)));
    }
    if (m_bars.isEmpty()) {
        m_selectedBucket = -1;
    }
    showTasks();
    const bool wasLoading = std::exchange(m_isLoading, false);
    Q_EMIT analysisChanged();
    Q_EMIT selectedBucketChanged();
    Q_EMIT stateChanged();
    if (!wasLoading) {
        return;
    }
    const auto count = m_analysis.agedTasks.size();
    say(count == 0 ? tr("Analysis complete. No tasks found.")
                   : tr("Analysis complete. Found %1 tasks across %2 age categories.")
                         .arg(count)
                         .arg(m_bars.size()));
}

void OptimizeViewModel::showTasks()
{
    std::vector<WorkItemPtr> shown;
    if (m_filter == 0) {
        for (const AgedTask &task : m_analysis.agedTasks) {
            shown.push_back(m_analysis.taskById.value(task.id));
        }
    } else {
        for (const QString &id : m_analysis.tasksByAge.at(static_cast<std::size_t>(m_filter - 1))) {
            shown.push_back(m_analysis.taskById.value(id));
        }
    }
    m_grid.setTasks(std::move(shown));
    keepSelectionAmongShown();
}

/** The selection and the keyboard stay on their task, if it is still shown. */
void OptimizeViewModel::keepSelectionAmongShown()
{
    const std::vector<WorkItemPtr> &shown = m_grid.tasks();
    const auto selected = std::find_if(shown.begin(), shown.end(), [this](const WorkItemPtr &task) {
        return task->id() == m_selectedTaskId;
    });
    if (selected != shown.end()) {
        m_currentIndex = static_cast<int>(selected - shown.begin());
    } else {
        m_selectedTaskId.clear();
        m_currentIndex = std::min(m_currentIndex, m_grid.cardCount() - 1);
    }
    Q_EMIT selectionChanged();
}

OptimizeViewModel::Screen OptimizeViewModel::screen() const
{
    if (m_isLoading) return Screen::Loading;
    if (m_errorMessage) return Screen::Error;
    return m_bars.isEmpty() ? Screen::Empty : Screen::Content;
}

QVariantList OptimizeViewModel::zones() const
{
    QVariantList zones;
    for (const AgeZone zone : AllAgeZones) {
        zones.append(QVariantMap{{QStringLiteral("zone"), rawValue(zone)},
                                 {QStringLiteral("text"), legendText(zone)}});
    }
    return zones;
}

QString OptimizeViewModel::selectedBucketText() const
{
    return m_bars.value(m_selectedBucket).value<AgeBar>().accessibleName;
}

void OptimizeViewModel::toggleBucket(int row)
{
    if (row < 0 || row >= m_bars.size()) {
        return;
    }
    m_selectedBucket = m_selectedBucket == row ? -1 : row;
    Q_EMIT selectedBucketChanged();
    if (m_selectedBucket >= 0) {
        say(selectedBucketText());
    }
}

QStringList OptimizeViewModel::filters() const
{
    QStringList labels{tr("All Ages")};
    for (const AgeBucket bucket : AllAgeBuckets) {
        labels.append(label(bucket));
    }
    return labels;
}

void OptimizeViewModel::setFilter(int filter)
{
    if (filter < 0 || filter > static_cast<int>(AllAgeBuckets.size()) || filter == m_filter) {
        return;
    }
    m_filter = filter;
    showTasks();
    Q_EMIT filterChanged();
    say(m_filter == 0 ? tr("Showing all tasks")
                      : tr("Filtering tasks by age: %1").arg(filters().at(m_filter)));
}

void OptimizeViewModel::toggleTaskSelection(int index)
{
    if (index < 0 || index >= m_grid.cardCount()) {
        return;
    }
    if (m_grid.tasks()[static_cast<std::size_t>(index)]->id() == m_selectedTaskId) {
        m_currentIndex = index;
        clearSelection();
    } else {
        select(index);
    }
}

void OptimizeViewModel::select(int index)
{
    const WorkItem &task = *m_grid.tasks()[static_cast<std::size_t>(index)];
    m_currentIndex = index;
    m_selectedTaskId = task.id();
    Q_EMIT selectionChanged();
    const CardRules rules = m_preferences.rules();
    say(tr("Selected: %1, age %2").arg(task.name(), rules.helper.formattedAge(task, rules.now)));
}

void OptimizeViewModel::clearSelection()
{
    m_selectedTaskId.clear();
    Q_EMIT selectionChanged();
}

bool OptimizeViewModel::handleKey(int key)
{
    switch (key) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        toggleTaskSelection(m_currentIndex);
        return m_currentIndex >= 0;
    case Qt::Key_Escape: {
        const bool hadSelection = !m_selectedTaskId.isEmpty();
        clearSelection();
        return hadSelection;
    }
    default:
        break;
    }
    const std::optional<int> next = cardAfterKey(key, {m_currentIndex, m_grid.cardCount(), m_grid.columns()});
    if (next && (*next != m_currentIndex || m_selectedTaskId.isEmpty())) {
        select(*next);
    }
    return next.has_value();
}

} // namespace vantrel
