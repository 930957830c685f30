#include "support/RawDatabase.h"

#include "persistence/sqlite/SqliteConnection.h"

#include <sqlite3.h>

namespace vantrel::test {

bool RawDatabase::run(const QString &sql) const
{
    SqliteConnection connection;
    if (!connection.open(m_path)) {
        return false;
    }
    sqlite3_busy_timeout(connection.handle(), 5000);
    return sqlite3_exec(connection.handle(), sql.toUtf8().constData(), nullptr, nullptr, nullptr) ==
           SQLITE_OK;
}

QStringList RawDatabase::rows(const QString &sql) const
{
    SqliteConnection connection;
    if (!connection.open(m_path)) {
        return {QStringLiteral("cannot be opened")};
    }
    sqlite3_busy_timeout(connection.handle(), 5000);
    QStringList rows;
    SqliteStatement query = connection.prepare(sql.toUtf8().constData());
    while (query.step()) {
        QStringList values;
        for (int column = 0; column < query.columnCount(); ++column) {
            values.append(query.isNull(column) ? QStringLiteral("NULL") : query.text(column));
        }
        rows.append(values.join(u'|'));
    }
    if (query.hasFailed()) {
        rows.append(connection.failureMessage());
    }
    return rows;
}

} // namespace vantrel::test
