#include "persistence/PlainTextTaskStore.h"

#include "foundations/Log.h"
#include "persistence/Database.h"
#include "persistence/sqlite/DecodedOnce.h"
#include "persistence/sqlite/SqliteTransaction.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace vantrel {

namespace {

constexpr auto Upsert =
    "INSERT INTO plainTextTasks (id, name, note, creationDate, modificationDate, dueDate, deferDate, "
    "completionDate, isFlagged, isComplete, projectName, projectId, tagName, tagId, hashtags, originalText) "
    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT(id) DO UPDATE SET "
    "name=excluded.name, note=excluded.note, modificationDate=excluded.modificationDate, "
    "dueDate=excluded.dueDate, deferDate=excluded.deferDate, completionDate=excluded.completionDate, "
    "isFlagged=excluded.isFlagged, isComplete=excluded.isComplete, projectName=excluded.projectName, "
    "projectId=excluded.projectId, tagName=excluded.tagName, tagId=excluded.tagId, "
    "hashtags=excluded.hashtags, originalText=excluded.originalText";

// By name: in a file that gained the last two columns one by one they may stand in the other order.
constexpr auto SelectAll =
    "SELECT id, name, note, creationDate, modificationDate, dueDate, deferDate, completionDate, isFlagged, "
    "isComplete, projectName, projectId, tagName, tagId, hashtags, originalText FROM plainTextTasks";

constexpr auto CountAll = "SELECT count(*) FROM plainTextTasks";
constexpr auto DeleteOne = "DELETE FROM plainTextTasks WHERE id = ?";
constexpr auto DeleteAll = "DELETE FROM plainTextTasks";
constexpr auto DeleteAllPositions = "DELETE FROM taskPositions WHERE id LIKE 'plaintext-%'";
constexpr auto SelectAllIds =
    "SELECT id FROM plainTextTasks UNION SELECT id FROM taskPositions WHERE id LIKE 'plaintext-%'";

QString encodedHashtags(const QStringList &hashtags)
{
    return QString::fromUtf8(
        QJsonDocument(QJsonArray::fromStringList(hashtags)).toJson(QJsonDocument::Compact));
}

QStringList decodedHashtags(QByteArrayView json)
{
    if (json.isEmpty() || json == "[]") {
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.toByteArray(), &error);
    const QJsonArray array = document.array();
    const bool isTextOnly =
        std::all_of(array.begin(), array.end(), [](const QJsonValue &value) { return value.isString(); });
    if (!document.isArray() || !isTextOnly) {
        log::error(u"Failed to decode hashtags JSON: " + error.errorString());
        return {};
    }
    QStringList hashtags;
    for (const QJsonValue &value : array) {
        hashtags.append(value.toString());
    }
    return hashtags;
}

/** Reads the rows of SelectAll. */
class RecordReader
{
public:
    explicit RecordReader(const SqliteStatement &query) : m_query(query) {}

    PlainTextRecord read();

private:
    /** Of a project or a tag: there only if both its id and its name are. */
    template <typename Named>
    std::optional<Named> named(int nameColumn, int idColumn)
    {
        if (m_query.isNull(nameColumn) || m_query.isNull(idColumn)) {
            return std::nullopt;
        }
        const QString id = m_text(m_query.utf8(idColumn));
        return Named{id, m_text(m_query.utf8(nameColumn))};
    }

    const SqliteStatement &m_query;
    DecodedOnce<QString> m_text{[](QByteArrayView utf8) {
        return QString::fromUtf8(utf8);
    }};
    DecodedOnce<QStringList> m_hashtags{&decodedHashtags};
};

PlainTextRecord RecordReader::read()
{
    PlainTextRecord record;
    WorkItemFields &fields = record.fields;
    fields.id = m_query.text(0);
    fields.name = m_query.text(1);
    fields.note = m_query.optionalText(2);
    fields.creationDate = Date(m_query.real(3));
    fields.modificationDate = m_query.optionalDate(4);
    fields.dueDate = m_query.optionalDate(5);
    fields.deferDate = m_query.optionalDate(6);
    fields.completionDate = m_query.optionalDate(7);
    fields.isFlagged = m_query.integer(8) == 1;
    fields.isComplete = m_query.integer(9) == 1;
    fields.project = named<Project>(10, 11);
    fields.tag = named<Tag>(12, 13);
    record.hashtags = m_hashtags(m_query.utf8(14));
    record.originalText = m_query.optionalText(15);
    return record;
}

SqlValue valueOf(const std::optional<QString> &text)
{
    return text ? SqlValue(*text) : SqlValue();
}

SqlValue valueOf(const std::optional<Date> &date)
{
    return date ? SqlValue(*date) : SqlValue();
}

} // namespace

bool PlainTextTaskStore::save(const std::vector<PlainTextRecord> &records, Date now)
{
    const bool isDone = saveAll(records, now);
    for (const PlainTextRecord &record : records) {
        if (isDone) {
            log::info(u"Successfully saved plain text task: " + record.fields.id);
        } else {
            log::error(u"Failed to save plain text task: " + record.fields.id);
        }
    }
    return isDone;
}

bool PlainTextTaskStore::saveAll(const std::vector<PlainTextRecord> &records, Date now)
{
    SqliteTransaction transaction(m_database.connection());
    return transaction.hasBegun() &&
           std::all_of(records.begin(), records.end(),
                       [&](const PlainTextRecord &record) { return saveOne(record, now); }) &&
           transaction.commit();
}

bool PlainTextTaskStore::saveOne(const PlainTextRecord &record, Date now)
{
    const WorkItemFields &fields = record.fields;
    if (m_deletedTasks.contains(fields.id)) {
        return true;
    }
    const std::vector<SqlValue> values{fields.id,
                                       fields.name,
                                       valueOf(fields.note),
                                       fields.creationDate,
                                       fields.modificationDate.value_or(now),
                                       valueOf(fields.dueDate),
                                       valueOf(fields.deferDate),
                                       valueOf(fields.completionDate),
                                       qint64(fields.isFlagged),
                                       qint64(fields.isComplete),
                                       fields.project ? SqlValue(fields.project->name) : SqlValue(),
                                       fields.project ? SqlValue(fields.project->id) : SqlValue(),
                                       fields.tag ? SqlValue(fields.tag->name) : SqlValue(),
                                       fields.tag ? SqlValue(fields.tag->id) : SqlValue(),
                                       encodedHashtags(record.hashtags),
                                       valueOf(record.originalText)};
    return m_database.executeSQL(Upsert, values);
}

std::optional<std::vector<PlainTextRecord>> PlainTextTaskStore::loadAll()
{
    SqliteStatement query = m_database.connection().prepare(SelectAll);
    if (!query.isPrepared()) {
        log::error(u"Failed to prepare query for plain text tasks: " +
                   m_database.connection().failureMessage());
        return std::nullopt;
    }
    std::vector<PlainTextRecord> records;
    if (SqliteStatement count = m_database.connection().prepare(CountAll); count.step()) {
        records.reserve(static_cast<std::size_t>(count.integer(0)));
    }
    RecordReader reader(query);
    while (query.step()) {
        if (!query.isNull(0) && !query.isNull(1)) {
            records.push_back(reader.read());
        }
    }
    if (query.hasFailed()) {
        log::error(u"Failed to read plain text tasks: " + m_database.connection().failureMessage());
        return std::nullopt;
    }
    log::info(u"Loaded " + QString::number(records.size()) + u" plain text tasks from database");
    return records;
}

bool PlainTextTaskStore::remove(const QString &taskId)
{
    m_deletedTasks.insert(taskId);
    const bool isDone = m_database.executeSQL(DeleteOne, {taskId});
    if (isDone) {
        log::info(u"Successfully deleted plain text task: " + taskId);
    } else {
        log::error(u"Failed to delete plain text task: " + taskId);
    }
    return isDone;
}

bool PlainTextTaskStore::removeAll()
{
    // Together or not at all: a placement without its task would come back as a task without a name.
    SqliteTransaction transaction(m_database.connection());
    const bool isBegun = transaction.hasBegun() && rememberAllAsDeleted();
    const bool areTasksDeleted = isBegun && m_database.executeSQL(DeleteAll);
    const bool arePlacesDeleted = isBegun && m_database.executeSQL(DeleteAllPositions);
    const bool isDone = areTasksDeleted && arePlacesDeleted && transaction.commit();
    if (isDone) {
        log::info(QStringLiteral("Successfully deleted all plain text tasks data"));
        log::info(QStringLiteral("Successfully deleted all plain text task positions"));
        return true;
    }
    log::error(QStringLiteral("Failed to delete all plain text tasks data"));
    log::error(QStringLiteral("Failed to delete all plain text task positions"));
    return false;
}

bool PlainTextTaskStore::rememberAllAsDeleted()
{
    SqliteStatement query = m_database.connection().prepare(SelectAllIds);
    while (query.step()) {
        m_deletedTasks.insert(query.text(0));
    }
    return !query.hasFailed();
}

} // namespace vantrel
