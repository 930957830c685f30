#pragma once

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <vector>

struct sqlite3_vfs;

namespace vantrel::test {

/** The files of a disk as they are found when power comes back: name without folder, and content. */
using DiskImage = QHash<QString, QByteArray>;

/**
 * A file system for SQLite that fails on command, and that knows what would be left after a power cut.
 *
 * Reading and writing go to real files. Besides, it keeps for each file what was synced, and what was written
 * since: of that, a cut keeps any part, sector by sector. One instance, one database at a time; failures may
 * be ordered and the power cut on any thread.
 */
class FaultyVfs
{
public:
    enum class Calls { Writing, Reading };

    FaultyVfs();
    ~FaultyVfs();
    FaultyVfs(const FaultyVfs &) = delete;
    FaultyVfs &operator=(const FaultyVfs &) = delete;

    QByteArray name() const { return m_name; }

    /**
     * The `n`-th call from now on fails with `code`, SQLITE_IOERR or SQLITE_FULL, with `forEver` all later
     * ones too; n = 0 lets all succeed. Writing calls are write, truncate, sync and delete.
     */
    void failAt(int n, int code = 0, bool forEver = false, Calls calls = Calls::Writing);
    /** True if a call was made to fail since failAt(). */
    bool hasFailed() const;

    /** Syncs are not carried out, as under "PRAGMA synchronous = OFF". */
    void ignoreSyncs() { m_ignoresSyncs = true; }

    /** Called before and after each writing call, on the database's thread. */
    void setObserver(std::function<void()> observer) { m_observer = std::move(observer); }

    /** One of the disks that a power cut at this moment may leave. */
    DiskImage cutPower(std::mt19937 &random) const;

private:
    struct Change
    {
        /** -1 sets the length of the file to `length`. */
        qint64 offset = 0;
        qint64 length = 0;
        QByteArray bytes;
    };
    struct File
    {
        QByteArray synced;
        std::vector<Change> unsynced;
        bool isDeleted = false;
    };
    friend struct VfsMethods;

    /** The answer of a call that is to fail now; nothing for one that may go on. */
    std::optional<int> failure(Calls calls);
    void observe() const;
    static void apply(QByteArray &content, const Change &change, std::mt19937 *random);

    QByteArray m_name;
    std::unique_ptr<sqlite3_vfs> m_vfs;
    std::function<void()> m_observer;
    bool m_ignoresSyncs = false;
    /** Guards what follows: the test's thread asks and orders, the database's reads and writes. */
    mutable QMutex m_mutex;
    /** Open files point into it. */
    std::map<QString, File> m_files;
    Calls m_failingCalls = Calls::Writing;
    /** Counts down; the call that finds 1 fails. */
    int m_callsToFailure = 0;
    int m_code = 0;
    bool m_forEver = false;
    bool m_hasFailed = false;
};

} // namespace vantrel::test
