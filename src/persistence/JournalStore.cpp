#include "persistence/JournalStore.h"

#include "foundations/Log.h"
#include "persistence/sqlite/SqliteTransaction.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <utility>

namespace vantrel {

namespace {

constexpr auto CreateBoardJournal =
    "CREATE TABLE IF NOT EXISTS boardJournal (entry INTEGER PRIMARY KEY AUTOINCREMENT, taskId TEXT NOT NULL, "
    "what TEXT NOT NULL, fromValue TEXT, toValue TEXT, fromStableId TEXT, toStableId TEXT, "
    "occurredAt REAL NOT NULL);";

constexpr auto InsertEntry = "INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt) "
                             "VALUES (?, ?, ?, ?, ?)";

constexpr auto SelectSince = "SELECT entry, taskId, what, fromValue, toValue, fromStableId, toStableId, "
                             "occurredAt FROM boardJournal WHERE occurredAt >= ? ORDER BY entry";

struct Trigger
{
    const char *create;
    const char *drop;
};

// The empty text in a column of taskPositions means that there is none.
constexpr std::array Triggers{
    Trigger{R"sql(CREATE TEMP TRIGGER journalPlaced AFTER INSERT ON main.taskPositions BEGIN
        INSERT INTO boardJournal (taskId, what, toValue, toStableId, occurredAt)
            SELECT new.id, 'column', new.columnId, nullif(new.stableColumnId, ''), vantrelMoment()
            WHERE new.columnId <> '';
        INSERT INTO boardJournal (taskId, what, toValue, toStableId, occurredAt)
            SELECT new.id, 'swimLane', new.swimLaneId, nullif(new.stableSwimLaneId, ''), vantrelMoment()
            WHERE new.swimLaneId <> '';
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt)
            SELECT new.id, 'blocked', 'false', 'true', vantrelMoment() WHERE new.isBlocked = 1;
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalPlaced"},
    // One for all changes of a row: each trigger costs every write of a row, also one that changes nothing.
    Trigger{R"sql(CREATE TEMP TRIGGER journalChanged
        AFTER UPDATE OF columnId, swimLaneId, isBlocked ON main.taskPositions
        WHEN new.columnId IS NOT old.columnId OR new.swimLaneId IS NOT old.swimLaneId
            OR new.isBlocked IS NOT old.isBlocked BEGIN
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, fromStableId, toStableId, occurredAt)
            SELECT new.id, 'column', nullif(old.columnId, ''), nullif(new.columnId, ''),
            nullif(old.stableColumnId, ''), nullif(new.stableColumnId, ''), vantrelMoment()
            WHERE new.columnId IS NOT old.columnId;
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, fromStableId, toStableId, occurredAt)
            SELECT new.id, 'swimLane', nullif(old.swimLaneId, ''), nullif(new.swimLaneId, ''),
            nullif(old.stableSwimLaneId, ''), nullif(new.stableSwimLaneId, ''), vantrelMoment()
            WHERE ifnull(new.swimLaneId, '') <> ifnull(old.swimLaneId, '');
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt)
            SELECT new.id, 'blocked', iif(old.isBlocked IS 1, 'true', 'false'),
            iif(new.isBlocked IS 1, 'true', 'false'), vantrelMoment()
            WHERE (new.isBlocked IS 1) <> (old.isBlocked IS 1);
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalChanged"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalRemoved AFTER DELETE ON main.taskPositions BEGIN
        INSERT INTO boardJournal (taskId, what, fromValue, fromStableId, occurredAt)
            SELECT old.id, 'column', old.columnId, nullif(old.stableColumnId, ''), vantrelMoment()
            WHERE old.columnId <> '';
        INSERT INTO boardJournal (taskId, what, fromValue, fromStableId, occurredAt)
            SELECT old.id, 'swimLane', old.swimLaneId, nullif(old.stableSwimLaneId, ''), vantrelMoment()
            WHERE old.swimLaneId <> '';
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt)
            SELECT old.id, 'blocked', 'true', 'false', vantrelMoment() WHERE old.isBlocked = 1;
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalRemoved"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalCreatedComplete AFTER INSERT ON main.plainTextTasks
        WHEN new.isComplete = 1 BEGIN
        INSERT INTO boardJournal (taskId, what, toValue, occurredAt)
            VALUES (new.id, 'completion', 'true', vantrelMoment());
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalCreatedComplete"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalCompletion AFTER UPDATE OF isComplete ON main.plainTextTasks
        WHEN (new.isComplete IS 1) <> (old.isComplete IS 1) BEGIN
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt)
            VALUES (new.id, 'completion', iif(old.isComplete IS 1, 'true', 'false'),
            iif(new.isComplete IS 1, 'true', 'false'), vantrelMoment());
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalCompletion"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalAssigned AFTER INSERT ON main.eisenhowerAssignments BEGIN
        INSERT INTO boardJournal (taskId, what, toValue, occurredAt)
            VALUES (new.id, 'priority', new.priority, vantrelMoment());
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalAssigned"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalReassigned AFTER UPDATE OF priority ON main.eisenhowerAssignments
        WHEN new.priority <> old.priority BEGIN
        INSERT INTO boardJournal (taskId, what, fromValue, toValue, occurredAt)
            VALUES (new.id, 'priority', old.priority, new.priority, vantrelMoment());
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalReassigned"},
    Trigger{R"sql(CREATE TEMP TRIGGER journalUnassigned AFTER DELETE ON main.eisenhowerAssignments BEGIN
        INSERT INTO boardJournal (taskId, what, fromValue, occurredAt)
            VALUES (old.id, 'priority', old.priority, vantrelMoment());
        END)sql",
            "DROP TRIGGER IF EXISTS temp.journalUnassigned"},
};

constexpr std::array<std::pair<JournalSubject, QStringView>, 5> SubjectNames{{
    {JournalSubject::Column, u"column"},
    {JournalSubject::SwimLane, u"swimLane"},
    {JournalSubject::Completion, u"completion"},
    {JournalSubject::Blocked, u"blocked"},
    {JournalSubject::Priority, u"priority"},
}};

std::optional<JournalSubject> subjectFromName(QStringView name)
{
    const auto found = std::find_if(SubjectNames.begin(), SubjectNames.end(),
                                    [name](const auto &subject) { return subject.second == name; });
    return found != SubjectNames.end() ? std::optional(found->first) : std::nullopt;
}

void giveMoment(sqlite3_context *context, int, sqlite3_value **)
{
    const auto *moment = static_cast<const Date *>(sqlite3_user_data(context));
    sqlite3_result_double(context, moment->seconds());
}

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

void JournalStore::begin()
{
    m_isWriting = registerMoment() && m_connection.execute(CreateBoardJournal) &&
                  std::all_of(Triggers.begin(), Triggers.end(), [this](const Trigger &trigger) {
                      return m_connection.execute(trigger.create);
                  });
    if (!m_isWriting) {
        log::error(u"The board journal cannot be written: " + m_connection.failureMessage());
        end();
    }
}

void JournalStore::end()
{
    m_isWriting = false;
    for (const Trigger &trigger : Triggers) {
        m_connection.execute(trigger.drop);
    }
}

bool JournalStore::addCompletions(const QStringList &taskIds, bool isComplete)
{
    if (!m_isWriting) {
        return true;
    }
    SqliteTransaction transaction(m_connection);
    if (!transaction.hasBegun()) {
        return false;
    }
    for (const QString &taskId : taskIds) {
        SqliteStatement insert = m_connection.prepare(InsertEntry);
        insert.bind(1, taskId);
        insert.bind(2, u"completion");
        insert.bind(3, boolText(!isComplete));
        insert.bind(4, boolText(isComplete));
        insert.bind(5, m_moment);
        if (!insert.run()) {
            return false;
        }
    }
    return transaction.commit();
}

std::optional<std::vector<JournalEntry>> JournalStore::load(Date since)
{
    std::vector<JournalEntry> entries;
    SqliteStatement select = m_connection.prepare(SelectSince);
    select.bind(1, since);
    while (select.step()) {
        const std::optional<JournalSubject> subject = subjectFromName(select.text(2));
        if (!subject) {
            continue;
        }
        entries.push_back({select.integer(0), select.text(1), *subject, select.optionalText(3),
                           select.optionalText(4), select.optionalText(5), select.optionalText(6),
                           Date(select.real(7))});
    }
    return select.hasFailed() ? std::nullopt : std::optional(std::move(entries));
}

bool JournalStore::registerMoment()
{
    // The flag is what lets a trigger of the temporary schema call it, and nothing that a file brings along.
    void *moment = const_cast<Date *>(&m_moment);
    return sqlite3_create_function_v2(m_connection.handle(), "vantrelMoment", 0,
                                      SQLITE_UTF8 | SQLITE_DIRECTONLY, moment, &giveMoment, nullptr, nullptr,
                                      nullptr) == SQLITE_OK;
}

} // namespace vantrel
