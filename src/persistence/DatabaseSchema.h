#pragma once

namespace vantrel {

class SqliteConnection;

/**
 * Makes the tables that are missing and brings older ones up to date. Unknown tables and columns are left
 * alone: another version of the program may have made them.
 */
void createTables(SqliteConnection &connection);

} // namespace vantrel
