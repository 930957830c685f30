#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>
#include <vector>

namespace vantrel {

class Database;

/** What was once read from a file of another program, and by what one sees that the file is still the same.
 */
struct CachedFile
{
    QByteArray path;
    qint64 inode = 0;
    qint64 size = 0;
    /** Nanoseconds since 1970. */
    qint64 modified = 0;
    /** What was read, in the form of whoever reads it. */
    QByteArray content;
    friend bool operator==(const CachedFile &, const CachedFile &) = default;
};

/**
 * The table `fileCache`: saves reading thousands of small files at each start. It holds nothing that could
 * not be read anew, so that it may be lost at any time. Owned by PersistenceManager; every operation is for
 * jobs of the database's queue.
 */
class FileCacheStore
{
public:
    explicit FileCacheStore(Database &database) : m_database(database) {}

    /** Nothing if the cache holds files of another scope, or cannot be read. */
    std::optional<std::vector<CachedFile>> load(const QByteArray &scope);
    /** Brings the cache up to date; files of another scope are forgotten. False if it stays as it was. */
    bool save(const QByteArray &scope, const std::vector<CachedFile> &changed, const QByteArrayList &removed);

private:
    std::optional<QByteArray> storedScope();

    Database &m_database;
};

} // namespace vantrel
