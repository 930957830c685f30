#include "persistence/FileCacheStore.h"

#include "foundations/Log.h"
#include "persistence/Database.h"
#include "persistence/sqlite/SqliteTransaction.h"

namespace vantrel {

namespace {
/** The row without a path tells the scope of the others. */
constexpr auto SelectScope = "SELECT content FROM fileCache WHERE path = ''";
constexpr auto SelectFiles =
    "SELECT path, inode, size, modified, content FROM fileCache WHERE path <> '' ORDER BY path";
constexpr auto DeleteAll = "DELETE FROM fileCache";
constexpr auto Delete = "DELETE FROM fileCache WHERE path = ?";
constexpr auto Replace =
    "INSERT OR REPLACE INTO fileCache (path, inode, size, modified, content) VALUES (?, ?, ?, ?, ?)";

bool write(SqliteStatement &statement, const CachedFile &file)
{
    return statement.bindUnowned(1, file.path) && statement.bind(2, file.inode) &&
           statement.bind(3, file.size) && statement.bind(4, file.modified) &&
           statement.bindUnowned(5, file.content) && statement.run();
}

} // namespace

std::optional<QByteArray> FileCacheStore::storedScope()
{
    SqliteStatement query = m_database.connection().prepare(SelectScope);
    return query.step() ? std::optional(query.utf8(0).toByteArray()) : std::nullopt;
}

std::optional<std::vector<CachedFile>> FileCacheStore::load(const QByteArray &scope)
{
    const SqliteSnapshot snapshot(m_database.connection());
    if (storedScope() != scope) {
        return std::nullopt;
    }
    std::vector<CachedFile> files;
    SqliteStatement query = m_database.connection().prepare(SelectFiles);
    while (query.step()) {
        files.push_back({query.utf8(0).toByteArray(), query.integer(1), query.integer(2), query.integer(3),
                         query.utf8(4).toByteArray()});
    }
    return query.hasFailed() ? std::nullopt : std::optional(std::move(files));
}

bool FileCacheStore::save(const QByteArray &scope, const std::vector<CachedFile> &changed,
                          const QByteArrayList &removed)
{
    SqliteConnection &connection = m_database.connection();
    SqliteTransaction transaction(connection);
    bool isGood = transaction.hasBegun();
    if (isGood && storedScope() != scope) {
        SqliteStatement replace = connection.prepare(Replace);
        isGood = connection.execute(DeleteAll) &&
                 write(replace, {.path = {}, .inode = 0, .size = 0, .modified = 0, .content = scope});
    }
    SqliteStatement erase = connection.prepare(Delete);
    for (const QByteArray &path : removed) {
        isGood = isGood && erase.bindUnowned(1, path) && erase.run();
    }
    SqliteStatement replace = connection.prepare(Replace);
    for (const CachedFile &file : changed) {
        isGood = isGood && write(replace, file);
    }
    if (isGood && transaction.commit()) {
        return true;
    }
    log::warning(u"The cache of files could not be written: " + connection.failureMessage());
    return false;
}

} // namespace vantrel
