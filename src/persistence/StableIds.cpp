#include "persistence/StableIds.h"

#include <QSet>

namespace vantrel {

namespace {

QSet<QString> stableIdsOf(const std::vector<Column> &columns)
{
    QSet<QString> ids;
    for (const Column &column : columns) {
        if (column.stableId) {
            ids.insert(*column.stableId);
        }
    }
    return ids;
}

/** `wanted`, or `wanted` with "_2", "_3" and so on: the first that is free. */
QString firstFree(const QString &wanted, const QSet<QString> &taken)
{
    QString id = wanted;
    for (int number = 2; taken.contains(id); ++number) {
        id = wanted + u'_' + QString::number(number);
    }
    return id;
}

} // namespace

QString stableIdForSwimLane(SwimLaneId id)
{
    return u"swimlane_" + id.text();
}

void assignStableIds(std::vector<Column> &columns)
{
    QSet<QString> taken = stableIdsOf(columns);
    for (Column &column : columns) {
        if (!column.stableId) {
            column.stableId = firstFree(generateStableId(column.type, column.name, column.position), taken);
            taken.insert(*column.stableId);
        }
    }
}

bool separateDuplicates(std::vector<Column> &columns)
{
    const QSet<QString> allStableIds = stableIdsOf(columns);
    QSet<ColumnId> ids;
    QSet<QString> stableIds;
    bool isChanged = false;
    for (Column &column : columns) {
        if (ids.contains(column.id)) {
            column.id = ColumnId::create();
            isChanged = true;
        }
        if (column.stableId && stableIds.contains(*column.stableId)) {
            column.stableId = firstFree(*column.stableId, allStableIds + stableIds);
            isChanged = true;
        }
        ids.insert(column.id);
        stableIds.insert(column.stableId.value_or(QString()));
    }
    return isChanged;
}

bool separateDuplicates(std::vector<SwimLane> &swimLanes)
{
    QSet<SwimLaneId> ids;
    QSet<QString> stableIds;
    bool isChanged = false;
    for (SwimLane &lane : swimLanes) {
        if (ids.contains(lane.id)) {
            lane.id = SwimLaneId::create();
            isChanged = true;
        }
        if (stableIds.contains(lane.stableId)) {
            lane.stableId = stableIdForSwimLane(lane.id);
            isChanged = true;
        }
        ids.insert(lane.id);
        stableIds.insert(lane.stableId);
    }
    return isChanged;
}

} // namespace vantrel
