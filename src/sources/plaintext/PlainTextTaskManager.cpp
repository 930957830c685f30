#include "sources/plaintext/PlainTextTaskManager.h"

#include "foundations/Ids.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "persistence/PersistenceManager.h"

#include <QPointer>

#include <algorithm>
#include <functional>

namespace vantrel {

PlainTextTaskManager::PlainTextTaskManager(PersistenceManager &persistence, NotificationCenter &notifications,
                                           Clock &clock, QObject *parent)
    : QObject(parent), m_persistence(persistence), m_notifications(notifications), m_clock(clock)
{
    log::info(QStringLiteral("PlainTextTaskManager initialized"));
}

PlainTextTaskManager::~PlainTextTaskManager() = default;

QCoro::Task<WorkItems> PlainTextTaskManager::fetchCompletedTasks(int)
{
    WorkItems completed;
    std::copy_if(m_loadedTasks.begin(), m_loadedTasks.end(), std::back_inserter(completed),
                 [](const WorkItemPtr &task) { return task->isComplete(); });
    co_return completed;
}

QCoro::Task<> PlainTextTaskManager::fetchDueSoonSettings()
{
    co_return;
}

QCoro::Task<std::vector<ProjectInfo>> PlainTextTaskManager::fetchAvailableProjects()
{
    co_return std::vector<ProjectInfo>();
}

QCoro::Task<std::vector<TagInfo>> PlainTextTaskManager::fetchAvailableTags()
{
    co_return std::vector<TagInfo>();
}

bool PlainTextTaskManager::canHandle(const QString &taskId) const
{
    return hasIdFormOf(TaskManagerType::PlainText, taskId);
}

QString PlainTextTaskManager::taskManagerName() const
{
    return rawValue(TaskManagerType::PlainText);
}

QString PlainTextTaskManager::getPermissionsGuidance() const
{
    return tr("No permissions required for plain text tasks.");
}

// Edits

template <typename Change>
bool PlainTextTaskManager::edit(const QString &taskId, Change change)
{
    const std::shared_ptr<PlainTextWorkItem> item = m_known.value(taskId).item;
    if (!item) {
        return false;
    }
    const Date now = m_clock.now();
    PlainTextRecord record = item->record();
    change(record.fields, now);
    record.fields.modificationDate = now;
    // Stored before anybody hears of it: who then edits the task further must be the later one to write.
    m_persistence.savePlainTextTask(record);
    item->update(record);
    return true;
}

QCoro::Task<bool> PlainTextTaskManager::setTaskName(QString taskId, QString name)
{
    co_return edit(taskId, [&](WorkItemFields &fields, Date) { fields.name = name; });
}

QCoro::Task<bool> PlainTextTaskManager::flagTask(QString taskId, bool flagged)
{
    co_return edit(taskId, [&](WorkItemFields &fields, Date) { fields.isFlagged = flagged; });
}

QCoro::Task<bool> PlainTextTaskManager::markTaskComplete(QString taskId)
{
    co_return edit(taskId, [](WorkItemFields &fields, Date now) {
        fields.isComplete = true;
        fields.completionDate = now;
    });
}

QCoro::Task<bool> PlainTextTaskManager::markTaskIncomplete(QString taskId)
{
    co_return edit(taskId, [](WorkItemFields &fields, Date) {
        fields.isComplete = false;
        fields.completionDate.reset();
    });
}

// Creation

QCoro::Task<QString> PlainTextTaskManager::createTask(NewTask task)
{
    log::info(QStringLiteral("🆕🆕🆕 CREATING NEW PLAIN TEXT TASK 🆕🆕🆕"));
    const PlainTextRecord record = recordFor(task);
    const QString id = record.fields.id;
    const WorkItemPtr item = intern(record);
    m_persistence.savePlainTextTask(record);
    log::debug(u"📝 Task saved to SQLite database: " + id + u" - '" + task.name + u'\'');

    log::debug(u"📌📌📌 SAVING POSITION for new plain text task: " + id + u" 📌📌📌");
    const std::optional<Home> home = homeOfNewTasks(u"📌");
    if (!home) {
        log::error(QStringLiteral("❌ No columns found in board configuration"));
        co_return id;
    }
    log::debug(u"📌 Using swimlane: " + home->swimLane.name + u", ID: " + home->swimLane.id.text());
    const QPointer self(this);
    const QStringList ids(id);
    const std::optional<int> position =
        co_await m_persistence.placeTasksAtEnd(ids, home->column.id, home->swimLane.id);
    if (!self) {
        co_return id;
    }
    if (position) {
        const QString column = home->column.id.text();
        const QString place = QString::number(*position);
        log::debug(u"📌 Adding task at position " + place + u" in column " + column);
        log::debug(QStringLiteral("📌 Task position saved in database"));
        log::info(u"Added new plain text task " + id + u" to column " + column + u" at position " + place);
    }
    m_clock.soon(this, [this, item] { announce(item); });
    co_return id;
}

PlainTextRecord PlainTextTaskManager::recordFor(const NewTask &task) const
{
    const QString uuid = uuidText(QUuid::createUuid());
    const Date now = m_clock.now();
    PlainTextRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = PlainTextIdPrefix + uuid;
    fields.name = task.name;
    fields.note = task.note;
    fields.dueDate = task.dueDate;
    fields.deferDate = task.deferDate;
    fields.creationDate = now;
    fields.modificationDate = now;
    if (task.project) {
        fields.project = Project{*task.project, *task.project};
    }
    record.hashtags = task.tags;
    QString line = u"- [ ] " + task.name;
    if (!task.tags.isEmpty()) {
        fields.tag = Tag{QString(u"tag-" + task.tags.constFirst().toLower()), task.tags.constFirst()};
        line += u" #" + task.tags.join(u" #");
    }
    record.originalText = line;
    log::debug(u"🆕 Created new task ID: " + fields.id + u" from UUID: " + uuid);
    return record;
}

std::optional<PlainTextTaskManager::Home> PlainTextTaskManager::homeOfNewTasks(QStringView logMark) const
{
    const std::vector<Column> columns =
        m_persistence.loadBoardConfiguration().value_or(std::vector<Column>());
    if (columns.empty()) {
        return std::nullopt;
    }
    auto column = std::find_if_not(columns.begin(), columns.end(), std::mem_fn(&Column::isCompleted));
    const bool isAllCompleted = column == columns.end();
    if (isAllCompleted) {
        column = columns.begin();
    }
    log::debug(logMark + (isAllCompleted ? u" Using first column: " : u" Using non-completed column: ") +
               column->name + u", ID: " + column->id.text());

    const std::vector<SwimLane> lanes =
        m_persistence.loadSwimLaneConfiguration().value_or(std::vector<SwimLane>());
    if (lanes.empty()) {
        return Home{*column, SwimLane::defaultSwimLane()};
    }
    const auto lane = std::find_if(lanes.begin(), lanes.end(), std::mem_fn(&SwimLane::isDefault));
    return Home{*column, lane != lanes.end() ? *lane : lanes.front()};
}

void PlainTextTaskManager::announce(const WorkItemPtr &task)
{
    log::debug(u"🔔🔔🔔 SENDING NOTIFICATIONS for new task: " + task->id() + u" 🔔🔔🔔");
    log::debug(QStringLiteral("🔔 Adding task to TaskRepository cache"));
    Q_EMIT taskCreated(task);
    log::debug(u"🔔 Posting taskAddedToBoardState notification with task ID: " + task->id());
    m_notifications.post(notifications::TaskAddedToBoardState, task->id());
}

std::shared_ptr<PlainTextWorkItem> PlainTextTaskManager::intern(PlainTextRecord record)
{
    Known &known = m_known[record.fields.id];
    if (!known.item) {
        known.item = std::make_shared<PlainTextWorkItem>(std::move(record));
        m_loadedTasks.push_back(known.item);
    }
    return known.item;
}

// Removal

bool PlainTextTaskManager::removePlainTextTasks(const QStringList &taskIds)
{
    log::info(u"🧹 Removing " + QString::number(taskIds.size()) + u" specific plain text tasks");
    for (const QString &id : taskIds) {
        m_known.remove(id);
        m_removedIds.insert(id);
        m_persistence.deleteTaskPosition(id);
        m_persistence.deletePlainTextTask(id);
    }
    std::erase_if(m_loadedTasks, [this](const WorkItemPtr &task) { return !m_known.contains(task->id()); });
    log::info(QStringLiteral("✅ Removed specified plain text tasks"));
    Q_EMIT tasksRemoved(taskIds);
    return true;
}

bool PlainTextTaskManager::removeAllPlainTextTasks()
{
    log::info(QStringLiteral("🧹 Removing all plain text tasks from the system"));
    const QStringList removed = m_known.keys();
    m_known.clear();
    m_loadedTasks.clear();
    m_removedIds.unite(QSet<QString>(removed.begin(), removed.end()));
    m_isReadingVoid = true;
    m_persistence.deleteAllPlainTextTasks();
    log::info(u"✅ Successfully removed " + QString::number(removed.size()) + u" plain text tasks");
    Q_EMIT tasksRemoved(removed);
    return true;
}

} // namespace vantrel
