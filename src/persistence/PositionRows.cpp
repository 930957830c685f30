#include "persistence/PositionRows.h"

#include <algorithm>
#include <limits>

namespace vantrel {

namespace {

// All four take their parameters in the order of the columns.

constexpr auto RenumberRow =
    "UPDATE taskPositions SET position = ?3, lastUpdated = ?4, stableColumnId = ?5, stableSwimLaneId = ?7, "
    "blockReason = ?9 WHERE id = ?1 AND columnId = ?2 AND swimLaneId = ?6 AND isBlocked = ?8";

constexpr auto RenumberPlace =
    "UPDATE taskPositions SET position = ?3, lastUpdated = ?4, stableColumnId = ?5, stableSwimLaneId = ?7 "
    "WHERE id = ?1 AND columnId = ?2 AND swimLaneId = ?6 AND (position IS NOT ?3 OR stableColumnId IS NOT ?5 "
    "OR stableSwimLaneId IS NOT ?7)";

constexpr auto UpsertRow =
    "INSERT INTO taskPositions (id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
    "stableSwimLaneId, isBlocked, blockReason) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT(id) DO UPDATE "
    "SET "
    "columnId=excluded.columnId, position=excluded.position, lastUpdated=excluded.lastUpdated, "
    "stableColumnId=excluded.stableColumnId, swimLaneId=excluded.swimLaneId, "
    "stableSwimLaneId=excluded.stableSwimLaneId, isBlocked=excluded.isBlocked, "
    "blockReason=excluded.blockReason";

// The block columns are absent, so those of the row stay.
constexpr auto UpsertPlace =
    "INSERT INTO taskPositions (id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
    "stableSwimLaneId) VALUES (?, ?, ?, ?, ?, ?, ?) ON CONFLICT(id) DO UPDATE SET "
    "columnId=excluded.columnId, position=excluded.position, lastUpdated=excluded.lastUpdated, "
    "stableColumnId=excluded.stableColumnId, swimLaneId=excluded.swimLaneId, "
    "stableSwimLaneId=excluded.stableSwimLaneId WHERE columnId IS NOT excluded.columnId OR position IS NOT "
    "excluded.position OR stableColumnId IS NOT excluded.stableColumnId OR swimLaneId IS NOT "
    "excluded.swimLaneId OR stableSwimLaneId IS NOT excluded.stableSwimLaneId";

std::optional<QString> unlessEmpty(const QString &text)
{
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

int clampedToInt(qint64 number)
{
    return static_cast<int>(
        std::clamp<qint64>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

std::string selectPositions(std::string_view rest)
{
    constexpr std::string_view select =
        "SELECT id, columnId, position, lastUpdated, stableColumnId, swimLaneId, "
        "stableSwimLaneId, isBlocked, blockReason FROM taskPositions ";
    return std::string(select).append(rest);
}

PositionRowReader::Decoded PositionRowReader::decode(QByteArrayView utf8)
{
    const QString text = QString::fromUtf8(utf8);
    return {text, uuidFromText(text)};
}

std::optional<PersistentTaskPosition> PositionRowReader::read()
{
    const std::optional<QUuid> columnId = decoded(1).uuid;
    if (!columnId || m_query.isNull(0)) {
        return std::nullopt;
    }
    PersistentTaskPosition row;
    row.id = m_query.text(0);
    row.columnId = ColumnId{*columnId};
    row.position = clampedToInt(m_query.integer(2));
    row.lastUpdated = Date(m_query.real(3));
    row.stableColumnId = unlessEmpty(decoded(4).text);
    if (const std::optional<QUuid> swimLaneId = decoded(5).uuid) {
        row.swimLaneId = SwimLaneId{*swimLaneId};
    }
    row.stableSwimLaneId = unlessEmpty(decoded(6).text);
    row.isBlocked = m_query.integer(7) == 1;
    row.blockReason = unlessEmpty(m_query.text(8));
    return row;
}

PositionRowWriter::PositionRowWriter(SqliteConnection &connection, Content content)
    : m_content(content),
      m_renumber(connection.prepare(content == Content::Rows ? RenumberRow : RenumberPlace)),
      m_upsert(connection.prepare(content == Content::Rows ? UpsertRow : UpsertPlace))
{
}

bool PositionRowWriter::write(const PersistentTaskPosition &row)
{
    if (!bind(m_renumber, row) || !m_renumber.run()) {
        return false;
    }
    return m_renumber.changedRows() > 0 || (bind(m_upsert, row) && m_upsert.run());
}

bool PositionRowWriter::bind(SqliteStatement &statement, const PersistentTaskPosition &row)
{
    const bool isPlaceBound =
        statement.bind(1, row.id) && statement.bindUnowned(2, encoded(row.columnId.uuid)) &&
        statement.bind(3, row.position) && statement.bind(4, row.lastUpdated) &&
        statement.bindUnowned(5, encoded(row.stableColumnId.value_or(QString()))) &&
        statement.bindUnowned(6, row.swimLaneId ? encoded(row.swimLaneId->uuid) : QByteArray()) &&
        statement.bindUnowned(7, encoded(row.stableSwimLaneId.value_or(QString())));
    return isPlaceBound &&
           (m_content == Content::Places ||
            (statement.bind(8, row.isBlocked) && statement.bind(9, row.blockReason.value_or(QString()))));
}

QByteArray PositionRowWriter::encoded(const QUuid &uuid)
{
    QByteArray &text = m_uuidTexts[uuid];
    if (text.isEmpty()) {
        text = uuidText(uuid).toLatin1();
    }
    return text;
}

QByteArray PositionRowWriter::encoded(const QString &text)
{
    QByteArray &utf8 = m_texts[text];
    if (utf8.isEmpty()) {
        utf8 = text.toUtf8();
    }
    return utf8;
}

} // namespace vantrel
