#pragma once

#include "foundations/BaseWorkItem.h"
#include "foundations/Column.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/SwimLane.h"

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
