#pragma once

#include "foundations/TaskPosition.h"
#include "persistence/sqlite/DecodedOnce.h"
#include "persistence/sqlite/SqliteConnection.h"

#include <string>
#include <string_view>

namespace vantrel {

/** A query of the columns that PositionRowReader reads; `rest` is what follows the name of the table. */
std::string selectPositions(std::string_view rest = {});

/** Reads the rows of one query of taskPositions. */
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
    static Decoded decode(QByteArrayView utf8);
    const Decoded &decoded(int column) { return m_decoded(m_query.utf8(column)); }

    const SqliteStatement &m_query;
    DecodedOnce<Decoded> m_decoded{&decode};
};

/**
 * Writes rows of taskPositions, in a transaction of the caller. Texts that repeat are encoded once.
 *
 * Most writes renumber rows that stay in their cell. That is tried first, as an update of columns which the
 * journal does not watch: it costs half of what putting the whole row costs.
 */
class PositionRowWriter
{
public:
    enum class Content {
        /** Inserts or replaces the whole row. */
        Rows,
        /** Writes the place, keeping the block of the stored row. A row that stands there is left alone. */
        Places,
    };

    PositionRowWriter(SqliteConnection &connection, Content content);

    bool write(const PersistentTaskPosition &row);

private:
    bool bind(SqliteStatement &statement, const PersistentTaskPosition &row);
    QByteArray encoded(const QUuid &uuid);
    QByteArray encoded(const QString &text);

    Content m_content;
    SqliteStatement m_renumber;
    SqliteStatement m_upsert;
    QHash<QUuid, QByteArray> m_uuidTexts;
    QHash<QString, QByteArray> m_texts;
};

} // namespace vantrel
