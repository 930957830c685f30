#pragma once

namespace vantrel {

class SqliteConnection;

/**
 * Makes the tables that are missing and brings older ones up to date. Unknown tables and columns are left
 * alone: another version of the program may have made them.
 */
void createTables(SqliteConnection &connection);

/** False, with the connection's failure, if a table or column is missing that reading and writing need. */
bool hasTables(SqliteConnection &connection);

} // namespace vantrel
