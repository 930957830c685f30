#pragma once

#include "foundations/BaseWorkItem.h"
#include "foundations/Column.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/SwimLane.h"
#include "sources/TaskManagerProtocol.h"

#include <memory>

namespace vantrel::test {

/** A record of the program's own source with that id; everything else is as for a task just typed in. */
inline PlainTextRecord aPlainTextRecord(const QString &name, const QString &id)
{
    PlainTextRecord record;
    record.fields.id = id;
    record.fields.name = name;
    record.fields.creationDate = Date(815302800.0);
    record.fields.modificationDate = record.fields.creationDate;
    return record;
}

/** A task whose id is made of its name: "Buy milk" gives "plaintext-Buy milk". */
inline std::shared_ptr<PlainTextWorkItem> aPlainTextTask(const QString &name)
{
    return std::make_shared<PlainTextWorkItem>(aPlainTextRecord(name, u"plaintext-" + name));
}

/** A task of no particular class. */
inline WorkItemPtr makeTask(const QString &id, const QString &name = QStringLiteral("A task"))
{
    WorkItemFields fields;
    fields.id = id;
    fields.name = name;
    return std::make_shared<BaseWorkItem>(std::move(fields));
}

/** One task for each word: "a b c". */
inline WorkItems makeTasks(const QString &ids)
{
    WorkItems tasks;
    for (const QString &id : ids.split(u' ', Qt::SkipEmptyParts)) {
        tasks.push_back(makeTask(id));
    }
    return tasks;
}

inline QStringList taskIds(const WorkItems &tasks)
{
    QStringList ids;
    for (const WorkItemPtr &task : tasks) {
        ids.append(task->id());
    }
    return ids;
}

inline QStringList taskNames(const WorkItems &tasks)
{
    QStringList names;
    for (const WorkItemPtr &task : tasks) {
        names.append(task->name());
    }
    return names;
}

inline Column aColumn(const QString &name, ColumnType type = ColumnType::Active)
{
    Column column;
    column.id = ColumnId::create();
    column.name = name;
    column.type = type;
    return column;
}

inline SwimLane aSwimLane(const QString &name)
{
    SwimLane lane;
    lane.id = SwimLaneId::create();
    lane.name = name;
    lane.stableId = u"lane_" + name;
    return lane;
}

} // namespace vantrel::test
