#pragma once

#include "foundations/TaskPosition.h"
#include "persistence/sqlite/SqliteConnection.h"

#include <QByteArray>
#include <QHash>

#include <string>
#include <string_view>

namespace vantrel {

/** A query of the columns that PositionRowReader reads; `rest` is what follows the name of the table. */
std::string selectPositions(std::string_view rest = {});

/** Reads the rows of one query of taskPositions. Texts that repeat from row to row are decoded once. */
class PositionRowReader
{
public:
    explicit PositionRowReader(const SqliteStatement &query) : m_query(query) {}

    /** The present row; nothing if it has no id or its column is not a UUID. */
    std::optional<PersistentTaskPosition> read();

private:
    struct Decoded
    {
        QString text;
        std::optional<QUuid> uuid;
    };
    const Decoded &decoded(int column);

    const SqliteStatement &m_query;
    QHash<QByteArray, Decoded> m_decoded;
};

/** Writes rows of taskPositions, in a transaction of the caller. Texts that repeat are encoded once. */
class PositionRowWriter
{
public:
    explicit PositionRowWriter(SqliteConnection &connection) : m_connection(connection) {}

    /** Inserts or replaces the whole row. */
    bool writeRow(const PersistentTaskPosition &row);
    /** Writes the place alone, keeping the block of the stored row. A row that stands there is left alone. */
    bool writePlace(const PersistentTaskPosition &row);

private:
    bool bindPlace(SqliteStatement &upsert, const PersistentTaskPosition &row);
    QByteArray encoded(const QUuid &uuid);
    QByteArray encoded(const QString &text);

    SqliteConnection &m_connection;
    QHash<QUuid, QByteArray> m_uuidTexts;
    QHash<QString, QByteArray> m_texts;
};

} // namespace vantrel
