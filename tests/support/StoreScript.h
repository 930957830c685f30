#pragma once

#include "persistence/PersistenceManager.h"

#include <map>
#include <random>
#include <set>

namespace vantrel::test {

/** What a board would show of one task. */
struct ScriptedPlace
{
    std::optional<ColumnId> columnId;
    std::optional<SwimLaneId> swimLaneId;
    int position = 0;
    bool isBlocked = false;
    std::optional<QString> blockReason;

    friend bool operator==(const ScriptedPlace &, const ScriptedPlace &) = default;
};

/** All that a store remembers, as far as the script changes it. */
struct ScriptedState
{
    std::map<QString, PlainTextRecord> tasks;
    std::map<QString, ScriptedPlace> places;
    std::map<QString, EisenhowerPriority> priorities;

    friend bool operator==(const ScriptedState &, const ScriptedState &) = default;

    /** What `persistence` holds. */
    static ScriptedState stored(PersistenceManager &persistence);
    /** The rows of those tasks alone whose ids contain `mark`. */
    ScriptedState only(const QString &mark) const;
};

/**
 * A user at work: an endless sequence of creations, moves, edits, blocks and deletions, the same for the same
 * seed. Each step is stored as one, so a store is always where one of the steps left it.
 */
class StoreScript
{
public:
    /** `mark` is a part of all its ids, so that two scripts do not touch the same tasks. */
    explicit StoreScript(quint32 seed, QString mark = QStringLiteral("t"));

    /** Decides on the next step and gives the state that it leads to. */
    const ScriptedState &advance();
    const ScriptedState &state() const { return m_state; }
    int step() const { return m_step; }
    /** Has `persistence` store the step decided on last. */
    void perform(PersistenceManager &persistence) const { m_action(persistence); }

private:
    using Action = std::function<void(PersistenceManager &)>;

    int below(int limit) { return static_cast<int>(m_random() % static_cast<quint32>(limit)); }
    QString anyTask();
    PlainTextRecord newTask();
    void createTask();
    void importTasks();
    void editTask();
    void placeTask();
    void moveSeveral();
    void rewriteRows();
    void block(bool isBlocked);
    void prioritize();
    void removePlace();
    void removeTask();

    std::mt19937 m_random;
    QString m_mark;
    std::vector<ColumnId> m_columns;
    std::vector<SwimLaneId> m_lanes;
    std::vector<QString> m_ids;
    int m_created = 0;
    int m_step = 0;
    ScriptedState m_state;
    Action m_action;
};

} // namespace vantrel::test
