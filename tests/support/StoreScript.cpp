#include "support/StoreScript.h"

#include <algorithm>

namespace vantrel::test {

namespace {

constexpr int MostTasks = 40;

QUuid uuidOf(uint number)
{
    return QUuid(number, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
}

PersistentTaskPosition rowFor(const QString &id, const ScriptedPlace &place)
{
    PersistentTaskPosition row;
    row.id = id;
    row.columnId = *place.columnId;
    row.position = place.position;
    row.swimLaneId = place.swimLaneId;
    row.isBlocked = place.isBlocked;
    row.blockReason = place.blockReason;
    return row;
}

template <typename Map>
Map withMark(const Map &map, const QString &mark)
{
    Map marked;
    for (const auto &[id, value] : map) {
        if (id.contains(mark)) {
            marked.emplace(id, value);
        }
    }
    return marked;
}

} // namespace

ScriptedState ScriptedState::stored(PersistenceManager &persistence)
{
    ScriptedState state;
    for (const PlainTextRecord &record : persistence.loadPlainTextTasks()) {
        state.tasks.emplace(record.fields.id, record);
    }
    for (const QString &id : persistence.getBlockedTaskIdsFromSQLite()) {
        state.places[id].isBlocked = true;
    }
    const QHash<QString, QString> reasons = persistence.getBlockReasonsFromSQLite();
    for (auto reason = reasons.cbegin(); reason != reasons.cend(); ++reason) {
        state.places[reason.key()].blockReason = reason.value();
    }
    for (const PersistentTaskPosition &row : persistence.loadAllTaskPositions()) {
        state.places[row.id] = {row.columnId, row.swimLaneId, row.position, row.isBlocked, row.blockReason};
    }
    const QHash<QString, EisenhowerPriority> priorities = persistence.loadAllEisenhowerPriorities();
    for (auto priority = priorities.cbegin(); priority != priorities.cend(); ++priority) {
        state.priorities.emplace(priority.key(), priority.value());
    }
    return state;
}

ScriptedState ScriptedState::only(const QString &mark) const
{
    return {withMark(tasks, mark), withMark(places, mark), withMark(priorities, mark)};
}

StoreScript::StoreScript(quint32 seed, QString mark) : m_random(seed), m_mark(std::move(mark))
{
    for (uint i = 0; i < 3; ++i) {
        m_columns.push_back(ColumnId{uuidOf(100 + i)});
        m_lanes.push_back(SwimLaneId{uuidOf(200 + i)});
    }
}

const ScriptedState &StoreScript::advance()
{
    ++m_step;
    if (m_ids.size() < 3) {
        createTask();
        return m_state;
    }
    switch (below(12)) {
    case 0:
        m_ids.size() < MostTasks ? createTask() : removeTask();
        break;
    case 1:
        m_ids.size() < MostTasks ? importTasks() : removeTask();
        break;
    case 2:
        editTask();
        break;
    case 3:
        placeTask();
        break;
    case 4:
    case 5:
    case 6:
        moveSeveral();
        break;
    case 7:
        rewriteRows();
        break;
    case 8:
        block(true);
        break;
    case 9:
        block(false);
        break;
    case 10:
        prioritize();
        break;
    default:
        removePlace();
    }
    return m_state;
}

QString StoreScript::anyTask()
{
    return m_ids.at(static_cast<std::size_t>(below(static_cast<int>(m_ids.size()))));
}

PlainTextRecord StoreScript::newTask()
{
    PlainTextRecord record;
    record.fields.id = u"plaintext-" + m_mark + u'-' + QString::number(++m_created);
    record.fields.name = u"Task number " + QString::number(m_created);
    record.fields.creationDate = Date(m_step);
    record.fields.modificationDate = Date(m_step + 0.5);
    record.originalText = u"- [ ] " + record.fields.name;
    m_ids.push_back(record.fields.id);
    m_state.tasks[record.fields.id] = record;
    return record;
}

void StoreScript::createTask()
{
    m_action = [record = newTask()](PersistenceManager &persistence) {
        persistence.savePlainTextTask(record);
    };
}

void StoreScript::importTasks()
{
    std::vector<PlainTextRecord> records;
    std::vector<TaskPosition> places;
    for (int i = 0; i < 3; ++i) {
        records.push_back(newTask());
        const QString &id = records.back().fields.id;
        places.push_back({id, m_columns.front(), m_lanes.front(), i});
        m_state.places[id] = {m_columns.front(), m_lanes.front(), i, false, {}};
    }
    m_action = [records, places](PersistenceManager &persistence) {
        persistence.addPlainTextTasks(records, places);
    };
}

void StoreScript::editTask()
{
    PlainTextRecord &record = m_state.tasks[anyTask()];
    record.fields.name += u" edited " + QString(below(200), u'ä');
    record.fields.isComplete = !record.fields.isComplete;
    record.fields.completionDate = record.fields.isComplete ? std::optional(Date(m_step)) : std::nullopt;
    record.hashtags.append(QString::number(m_step));
    m_action = [record](PersistenceManager &persistence) {
        persistence.savePlainTextTask(record);
    };
}

void StoreScript::placeTask()
{
    const QString id = anyTask();
    ScriptedPlace &place = m_state.places[id];
    place.columnId = m_columns.at(static_cast<std::size_t>(below(3)));
    place.swimLaneId = m_lanes.at(static_cast<std::size_t>(below(3)));
    place.position = below(100);
    m_action = [id, place](PersistenceManager &persistence) {
        persistence.saveTaskPosition(id, *place.columnId, place.position, place.swimLaneId);
    };
}

void StoreScript::moveSeveral()
{
    std::vector<TaskPosition> updates;
    const ColumnId column = m_columns.at(static_cast<std::size_t>(below(3)));
    const SwimLaneId lane = m_lanes.at(static_cast<std::size_t>(below(3)));
    const int count = 1 + below(static_cast<int>(m_ids.size()));
    for (int i = 0; i < count; ++i) {
        const QString &id = m_ids.at(static_cast<std::size_t>(i));
        ScriptedPlace &place = m_state.places[id];
        place.columnId = column;
        place.swimLaneId = lane;
        place.position = m_step + i;
        updates.push_back({id, column, lane, place.position});
    }
    m_action = [updates](PersistenceManager &persistence) {
        persistence.batchSaveTaskPositions(updates);
    };
}

void StoreScript::rewriteRows()
{
    std::vector<PersistentTaskPosition> rows;
    for (const QString &id : m_ids) {
        const auto place = m_state.places.find(id);
        if (place != m_state.places.end() && place->second.columnId) {
            place->second.position = below(50);
            rows.push_back(rowFor(id, place->second));
        }
    }
    m_action = [rows](PersistenceManager &persistence) {
        persistence.batchSaveTaskPositions(rows);
    };
}

void StoreScript::block(bool isBlocked)
{
    const QString id = anyTask();
    if (!isBlocked) {
        // A row without a place is not told of once it is not blocked any more.
        if (const auto place = m_state.places.find(id); place != m_state.places.end()) {
            place->second.isBlocked = false;
            place->second.blockReason.reset();
            if (!place->second.columnId) {
                m_state.places.erase(place);
            }
        }
        m_action = [id](PersistenceManager &persistence) {
            persistence.removeTaskFromBlocked(id);
        };
        return;
    }
    const QString reason = u"waits since " + QString::number(m_step);
    m_state.places[id].isBlocked = true;
    m_state.places[id].blockReason = reason;
    m_action = [id, reason](PersistenceManager &persistence) {
        persistence.saveTaskAsBlocked(id, reason);
    };
}

void StoreScript::prioritize()
{
    const QString id = anyTask();
    if (m_state.priorities.contains(id)) {
        m_state.priorities.erase(id);
        m_action = [id](PersistenceManager &persistence) {
            persistence.deleteEisenhowerPriority(id);
        };
        return;
    }
    const EisenhowerPriority priority = AllEisenhowerPriorities.at(static_cast<std::size_t>(below(4)));
    m_state.priorities[id] = priority;
    m_action = [id, priority](PersistenceManager &persistence) {
        persistence.saveEisenhowerPriority(id, priority);
    };
}

void StoreScript::removePlace()
{
    const QString id = anyTask();
    m_state.places.erase(id);
    m_action = [id](PersistenceManager &persistence) {
        persistence.deleteTaskPosition(id);
    };
}

void StoreScript::removeTask()
{
    // Its place and quadrant stay, as they do until the board is next organised.
    const QString id = anyTask();
    std::erase(m_ids, id);
    m_state.tasks.erase(id);
    m_action = [id](PersistenceManager &persistence) {
        persistence.deletePlainTextTask(id);
    };
}

} // namespace vantrel::test
