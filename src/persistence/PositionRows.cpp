#include "persistence/PositionRows.h"

#include <algorithm>
#include <limits>

namespace vantrel {

namespace {

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

const PositionRowReader::Decoded &PositionRowReader::decoded(int column)
{
    const QByteArrayView utf8 = m_query.utf8(column);
    const auto known = m_decoded.constFind(QByteArray::fromRawData(utf8.data(), utf8.size()));
    if (known != m_decoded.constEnd()) {
        return *known;
    }
    const QString text = QString::fromUtf8(utf8);
    return *m_decoded.insert(utf8.toByteArray(), Decoded{text, uuidFromText(text)});
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

bool PositionRowWriter::writeRow(const PersistentTaskPosition &row)
{
    SqliteStatement upsert = m_connection.prepare(UpsertRow);
    return bindPlace(upsert, row) && upsert.bind(8, row.isBlocked) &&
           upsert.bind(9, row.blockReason.value_or(QString())) && upsert.run();
}

bool PositionRowWriter::writePlace(const PersistentTaskPosition &row)
{
    SqliteStatement upsert = m_connection.prepare(UpsertPlace);
    return bindPlace(upsert, row) && upsert.run();
}

bool PositionRowWriter::bindPlace(SqliteStatement &upsert, const PersistentTaskPosition &row)
{
    return upsert.bind(1, row.id) && upsert.bindUnowned(2, encoded(row.columnId.uuid)) &&
           upsert.bind(3, row.position) && upsert.bind(4, row.lastUpdated) &&
           upsert.bindUnowned(5, encoded(row.stableColumnId.value_or(QString()))) &&
           upsert.bindUnowned(6, row.swimLaneId ? encoded(row.swimLaneId->uuid) : QByteArray()) &&
           upsert.bindUnowned(7, encoded(row.stableSwimLaneId.value_or(QString())));
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
