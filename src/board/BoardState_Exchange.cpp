#include "board/BoardState.h"

#include "exchange/PlainTextTaskParser.h"
#include "feedback/Announcer.h"
#include "feedback/DesktopPorts.h"
#include "foundations/Log.h"
#include "foundations/PlainTextWorkItem.h"
#include "sources/TaskRepository.h"
#include "sources/plaintext/PlainTextTaskManager.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel {

namespace {

/** Without its tag, which joins those of the board. */
PlainTextRecord recordOf(const ParsedPlainTextTask &parsed, Date now)
{
    PlainTextRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = PlainTextIdPrefix + uuidText(QUuid::createUuid());
    fields.name = parsed.text;
    fields.isComplete = parsed.isCompleted;
    fields.creationDate = now;
    fields.modificationDate = now;
    if (parsed.isCompleted) {
        fields.completionDate = now;
    }
    record.hashtags = parsed.hashtags;
    record.originalText = parsed.originalLine;
    return record;
}

QSet<QString> idsOf(const WorkItems &tasks)
{
    QSet<QString> ids;
    for (const WorkItemPtr &task : tasks) {
        ids.insert(task->id());
    }
    return ids;
}

} // namespace

// Text in

QCoro::Task<ImportResult> BoardState::importPlainTextTasks(std::vector<ParsedPlainTextTask> tasks,
                                                           std::optional<ColumnId> columnId,
                                                           std::optional<SwimLaneId> swimLaneId)
{
    PlainTextTaskManager *plainText = plainTextManager();
    const std::optional<ColumnId> column = columnId ? columnId : columnOfImports();
    if (!plainText || !column) {
        log::debug(u"No columns available to import tasks"_s);
        co_return ImportResult();
    }
    const CellId cell{swimLaneId.value_or(m_swimLaneManager.defaultSwimLane().id), *column};
    std::vector<PlainTextRecord> records;
    std::vector<TaskPosition> places;
    for (const ParsedPlainTextTask &parsed : tasks) {
        PlainTextRecord record = recordOf(parsed, m_services.clock.now());
        if (!record.hashtags.isEmpty()) {
            record.fields.tag = findOrCreateTag(record.hashtags.constFirst());
        }
        // One behind the other at the head of the cell: all at its top would turn the list upside down.
        const int position = static_cast<int>(places.size());
        placeInColumn(plainText->intern(record), cell.column, cell.swimLane, position);
        places.push_back({record.fields.id, cell.column, cell.swimLane, position});
        records.push_back(std::move(record));
    }
    auto storing = m_services.persistence.addPlainTextTasks(std::move(records), std::move(places));
    if (m_placements.placesIn(cell).size() > tasks.size()) {
        // Whoever stood there has moved on, in the store too.
        reindexTaskPositions(cell.column, cell.swimLane);
    }
    m_services.repository.invalidateCache();
    m_filterManager.updateAvailableTags(this->tasks());
    invalidateDerivedCollections();
    postSwimLaneWIPCountsChanged();
    ImportResult result{static_cast<int>(tasks.size()), false};
    result.isStored = co_await storing;
    co_return ImportResult(result);
}

std::optional<ColumnId> BoardState::columnOfImports() const
{
    const std::vector<Column> &columns = m_columnManager.columns();
    if (columns.empty()) {
        return std::nullopt;
    }
    const auto queue = std::find_if(columns.begin(), columns.end(),
                                    [](const Column &column) { return column.type == ColumnType::Queue; });
    return queue != columns.end() ? queue->id : columns.front().id;
}

Tag BoardState::findOrCreateTag(const QString &name) const
{
    const QString wantedName = name.trimmed().toLower();
    const QString wantedId = u"tag-" + wantedName;
    for (const WorkItemPtr &task : m_placements.tasks()) {
        const std::optional<Tag> &tag = task->tag();
        if (tag && (tag->name.compare(wantedName, Qt::CaseInsensitive) == 0 || tag->id == wantedId)) {
            return *tag;
        }
    }
    log::debug(u"Created new tag: %1 with ID: %2"_s.arg(name, wantedId));
    return {wantedId, name};
}

// Text out

QString BoardState::exportText(ExportScope scope, ExportFormat format, std::optional<ColumnId> columnId,
                               std::optional<SwimLaneId> swimLaneId) const
{
    const PlainTextTaskExporter exporter;
    const WorkItems tasks = tasksOfScope(scope, columnId, swimLaneId);
    std::vector<ExportGroup> groups;
    switch (format) {
    case ExportFormat::PlainCheckbox:
        return exporter.exportTasks(tasks);
    case ExportFormat::ColumnOrganized:
        for (const Column &column : m_columnManager.columns()) {
            groups.push_back({column.name, idsOf(tasksByColumn(column.id))});
        }
        break;
    case ExportFormat::SwimLaneOrganized:
        for (const SwimLane &swimLane : m_swimLaneManager.swimLanes()) {
            groups.push_back({swimLane.name, idsOf(tasksBySwimLane(swimLane.id))});
        }
        break;
    }
    return exporter.exportTasksBySwimLanes(tasks, groups);
}

ExportResult BoardState::exportTasksToClipboard(ExportScope scope, ExportFormat format,
                                                std::optional<ColumnId> columnId,
                                                std::optional<SwimLaneId> swimLaneId)
{
    const auto count = static_cast<int>(tasksOfScope(scope, columnId, swimLaneId).size());
    if (count == 0 || !m_services.clipboard.setText(exportText(scope, format, columnId, swimLaneId))) {
        return {count, false};
    }
    m_services.announcer.announce(tr("Exported %1 tasks to clipboard").arg(count));
    return {count, true};
}

ExportResult BoardState::quickExportPlainTextTasks()
{
    const WorkItems tasks = tasksOfScope(ExportScope::PlainTextTasks, {}, {});
    const auto count = static_cast<int>(tasks.size());
    if (count == 0 || !m_services.clipboard.setText(PlainTextTaskExporter().exportTasks(tasks))) {
        return {count, false};
    }
    m_services.announcer.announce(tr("Exported %1 plain text tasks to clipboard").arg(count));
    return {count, true};
}

WorkItems BoardState::tasksOfScope(ExportScope scope, std::optional<ColumnId> columnId,
                                   std::optional<SwimLaneId> swimLaneId) const
{
    switch (scope) {
    case ExportScope::SelectedColumn:
        return columnId ? tasksByColumn(*columnId) : WorkItems();
    case ExportScope::SelectedSwimLane:
        return swimLaneId ? tasksBySwimLane(*swimLaneId) : WorkItems();
    default:
        break;
    }
    WorkItems tasks = tasksInBoardOrder();
    std::erase_if(tasks, [this, scope](const WorkItemPtr &task) { return !isInScope(*task, scope); });
    return tasks;
}

bool BoardState::isInScope(const WorkItem &task, ExportScope scope) const
{
    switch (scope) {
    case ExportScope::PlainTextTasks:
        return qobject_cast<const PlainTextWorkItem *>(&task) != nullptr;
    case ExportScope::VisibleTasks: {
        // Tasks without a tag stay: a filter by tag does not tell whether they are meant.
        const QSet<QString> &tags = m_filterManager.selectedTagIDs();
        const bool passesTags = tags.isEmpty() || !task.tag() || tags.contains(task.tag()->id);
        return passesTags && (!m_filterManager.isFlaggedFilterActive() || task.isFlagged());
    }
    case ExportScope::SelectedTasks:
        return m_selectionManager.isSelected(task.id());
    default:
        return true;
    }
}

WorkItems BoardState::tasksInBoardOrder() const
{
    WorkItems tasks;
    for (const SwimLane &swimLane : m_swimLaneManager.swimLanes()) {
        const WorkItems members = tasksBySwimLane(swimLane.id);
        tasks.insert(tasks.end(), members.begin(), members.end());
    }
    return tasks;
}

WorkItems BoardState::tasksBySwimLane(SwimLaneId swimLaneId) const
{
    WorkItems tasks;
    for (const Column &column : m_columnManager.columns()) {
        const WorkItems members = cell(swimLaneId, column.id);
        tasks.insert(tasks.end(), members.begin(), members.end());
    }
    return tasks;
}

} // namespace vantrel
