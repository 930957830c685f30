#include "sources/omnifocus/OmniFocusTaskManager.h"

#include "foundations/Log.h"
#include "foundations/TimeSlice.h"

namespace vantrel {

namespace {
constexpr double CacheExpirationInterval = 300.0;
} // namespace

OmniFocusTaskManager::OmniFocusTaskManager(AppleScriptManagerProtocol &bridge, Clock &clock)
    : m_bridge(bridge), m_clock(clock)
{
}

QCoro::Task<WorkItems> OmniFocusTaskManager::fetchTasks()
{
    const Date start = m_clock.now();
    noteChanges();
    OmniFocusRecords records = co_await m_bridge.fetchTasks();
    const double milliseconds = (m_clock.now() - start) * 1000.0;
    log::info(QStringLiteral("📊 BENCHMARK: OmniFocus fetchTasks - %1 ms for %2 tasks")
                  .arg(milliseconds, 0, 'f', 1)
                  .arg(records.size()));
    WorkItems tasks;
    tasks.reserve(records.size());
    TimeSlice slice;
    for (omnifocus::TaskRecord &record : records) {
        tasks.push_back(intern(std::move(record)));
        if (slice.isUsedUp()) {
            co_await m_clock.yieldToEventLoop();
            slice.restart();
        }
    }
    co_return tasks;
}

/** These objects are the caller's own: a completed task's record tells less than an active one's. */
QCoro::Task<WorkItems> OmniFocusTaskManager::fetchCompletedTasks(int lookbackDays)
{
    OmniFocusRecords records = co_await m_bridge.fetchCompletedTasks(lookbackDays);
    WorkItems tasks;
    tasks.reserve(records.size());
    TimeSlice slice;
    for (omnifocus::TaskRecord &record : records) {
        tasks.push_back(std::make_shared<OmniFocusTask>(std::move(record.fields)));
        if (slice.isUsedUp()) {
            co_await m_clock.yieldToEventLoop();
            slice.restart();
        }
    }
    co_return tasks;
}

void OmniFocusTaskManager::noteChanges()
{
    m_known.removeIf([](const auto &known) { return known.value().item.expired(); });
    for (Known &known : m_known) {
        known.changesAtAsking = known.item.lock()->changeCount();
    }
}

WorkItemPtr OmniFocusTaskManager::intern(omnifocus::TaskRecord record)
{
    Known &known = m_known[record.fields.id];
    std::shared_ptr<OmniFocusTask> item = known.item.lock();
    if (!item) {
        item = std::make_shared<OmniFocusTask>(std::move(record.fields));
        known.item = item;
    } else if (item->changeCount() != known.changesAtAsking) {
        // Changed here while the script ran: what was read may be older.
        return item;
    } else {
        // Blocks and quadrants are the board's own.
        record.fields.isBlocked = item->isBlocked();
        record.fields.blockReason = item->blockReason();
        record.fields.eisenhowerPriority = item->eisenhowerPriority();
        item->update(record.fields);
    }
    const Recurrence &recurrence = record.recurrence;
    item->setRecurrenceInfo(recurrence.isRepeating, recurrence.frequency, recurrence.interval,
                            recurrence.pattern);
    return item;
}

QCoro::Task<> OmniFocusTaskManager::fetchDueSoonSettings()
{
    return m_bridge.fetchDueSoonMeans();
}

QCoro::Task<bool> OmniFocusTaskManager::setTaskName(QString taskId, QString name)
{
    return m_bridge.setTaskName(std::move(taskId), std::move(name));
}

QCoro::Task<bool> OmniFocusTaskManager::flagTask(QString taskId, bool flagged)
{
    return m_bridge.flagTask(std::move(taskId), flagged);
}

QCoro::Task<bool> OmniFocusTaskManager::markTaskComplete(QString taskId)
{
    return m_bridge.markTaskComplete(std::move(taskId));
}

QCoro::Task<bool> OmniFocusTaskManager::markTaskIncomplete(QString taskId)
{
    return m_bridge.markTaskIncomplete(std::move(taskId));
}

QCoro::Task<QString> OmniFocusTaskManager::createTask(NewTask task)
{
    return m_bridge.createTask(std::move(task));
}

template <typename Info>
bool OmniFocusTaskManager::isFresh(const std::optional<Catalogue<Info>> &catalogue) const
{
    return catalogue && m_clock.now() - catalogue->timestamp < CacheExpirationInterval;
}

QCoro::Task<std::vector<ProjectInfo>> OmniFocusTaskManager::fetchAvailableProjects()
{
    if (isFresh(m_projectsCache)) {
        log::debug(QStringLiteral("🗃️ Returning cached projects (%1 items)")
                       .arg(m_projectsCache->entries.size()));
        co_return std::vector<ProjectInfo>(m_projectsCache->entries);
    }
    log::info(QStringLiteral("📥 Fetching fresh projects from OmniFocus"));
    const std::vector<ProjectInfo> projects = co_await m_bridge.fetchAvailableProjects();
    log::debug(QStringLiteral("%1 projects from AppleScript manager").arg(projects.size()));
    m_projectsCache = {projects, m_clock.now()};
    co_return std::vector<ProjectInfo>(projects);
}

QCoro::Task<std::vector<TagInfo>> OmniFocusTaskManager::fetchAvailableTags()
{
    if (isFresh(m_tagsCache)) {
        log::debug(
            QStringLiteral("🗃️ Returning cached tags (%1 items)").arg(m_tagsCache->entries.size()));
        co_return std::vector<TagInfo>(m_tagsCache->entries);
    }
    log::info(QStringLiteral("📥 Fetching fresh tags from OmniFocus"));
    const std::vector<TagInfo> tags = co_await m_bridge.fetchAvailableTags();
    m_tagsCache = {tags, m_clock.now()};
    co_return std::vector<TagInfo>(tags);
}

void OmniFocusTaskManager::clearCaches()
{
    m_projectsCache.reset();
    m_tagsCache.reset();
    log::info(QStringLiteral("🗑️ Cleared projects and tags cache"));
}

bool OmniFocusTaskManager::canHandle(const QString &taskId) const
{
    return hasIdFormOf(TaskManagerType::OmniFocus, taskId);
}

} // namespace vantrel
