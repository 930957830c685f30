#pragma once

#include "persistence/BoardJournal.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace vantrel {

class SqliteConnection;

/**
 * The table `boardJournal`: what happened to the tasks of this board, for reports yet to come.
 *
 * Entries are written by triggers of the connection, in the very statement that changes a placement, a block,
 * a completion or a quadrant, so no writer can forget one and none is there without its change. The triggers
 * are temporary: the file itself binds no other program to them. Owned by Database; database thread.
 */
class JournalStore
{
public:
    /** `moment` gives the time of the entries. */
    JournalStore(SqliteConnection &connection, const Date &moment)
        : m_connection(connection), m_moment(moment)
    {
    }

    /** Makes the table if it is missing. Journals from here on, or tells in the log why not. */
    void begin();
    /** Goes on without a journal; changes are stored all the same. */
    void end();
    bool isWriting() const { return m_isWriting; }

    /** Adds completions that no table of ours stores: all or none. */
    bool addCompletions(const QStringList &taskIds, bool isComplete);
    /** Nothing if the journal cannot be read. */
    std::optional<std::vector<JournalEntry>> load(Date since);

private:
    bool registerMoment();

    SqliteConnection &m_connection;
    const Date &m_moment;
    bool m_isWriting = false;
};

} // namespace vantrel
