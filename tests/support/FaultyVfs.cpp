#include "support/FaultyVfs.h"

#include <QFileInfo>

#include <sqlite3.h>

#include <cstring>

namespace vantrel::test {

namespace {

constexpr qint64 SectorSize = 512;

QString nameOf(const char *path)
{
    return QFileInfo(QString::fromUtf8(path)).fileName();
}

} // namespace

/** SQLite's view of the file system: C functions over a FaultyVfs and the default file system. */
struct VfsMethods
{
    /** What SQLite allocates for an open file; that of the default file system lies directly behind it. */
    struct Handle
    {
        sqlite3_file base;
        FaultyVfs *owner;
        /** Null for files that are not watched, as the shared memory and temporary files. */
        FaultyVfs::File *file;

        sqlite3_file *real() { return reinterpret_cast<sqlite3_file *>(this + 1); }
    };

    static Handle &handle(sqlite3_file *file) { return *reinterpret_cast<Handle *>(file); }
    static sqlite3_file *real(sqlite3_file *file) { return handle(file).real(); }
    static const sqlite3_io_methods *methods(sqlite3_file *file) { return real(file)->pMethods; }
    static FaultyVfs &owner(sqlite3_vfs *vfs) { return *static_cast<FaultyVfs *>(vfs->pAppData); }
    static sqlite3_vfs *defaultVfs()
    {
        static sqlite3_vfs *const vfs = sqlite3_vfs_find(nullptr);
        return vfs;
    }

    /** Carries out a writing call, unless it is to fail. */
    template <typename Call>
    static int writing(FaultyVfs &vfs, Call call)
    {
        vfs.observe();
        if (const std::optional<int> failure = vfs.failure(FaultyVfs::Calls::Writing)) {
            return *failure;
        }
        const int code = call();
        vfs.observe();
        return code;
    }

    static int open(sqlite3_vfs *vfs, sqlite3_filename path, sqlite3_file *file, int flags, int *outFlags);
    static int remove(sqlite3_vfs *vfs, const char *path, int syncFolder);

    static int read(sqlite3_file *file, void *bytes, int count, sqlite3_int64 offset)
    {
        const std::optional<int> failure = handle(file).owner->failure(FaultyVfs::Calls::Reading);
        return failure ? *failure : methods(file)->xRead(real(file), bytes, count, offset);
    }

    static int write(sqlite3_file *file, const void *bytes, int count, sqlite3_int64 offset)
    {
        return writing(*handle(file).owner, [&] {
            const QMutexLocker lock(&handle(file).owner->m_mutex);
            if (handle(file).file) {
                const QByteArray copy(static_cast<const char *>(bytes), count);
                handle(file).file->unsynced.push_back({offset, count, copy});
            }
            return methods(file)->xWrite(real(file), bytes, count, offset);
        });
    }

    static int truncate(sqlite3_file *file, sqlite3_int64 size)
    {
        return writing(*handle(file).owner, [&] {
            const QMutexLocker lock(&handle(file).owner->m_mutex);
            if (handle(file).file) {
                handle(file).file->unsynced.push_back({-1, size, {}});
            }
            return methods(file)->xTruncate(real(file), size);
        });
    }

    static int sync(sqlite3_file *file, int)
    {
        FaultyVfs &vfs = *handle(file).owner;
        return writing(vfs, [&] {
            const QMutexLocker lock(&vfs.m_mutex);
            if (FaultyVfs::File *const watched = handle(file).file; watched && !vfs.m_ignoresSyncs) {
                for (const FaultyVfs::Change &change : watched->unsynced) {
                    FaultyVfs::apply(watched->synced, change, nullptr);
                }
                watched->unsynced.clear();
            }
            // The real file need not be durable: what counts is what is noted here.
            return SQLITE_OK;
        });
    }

    static int sectorSize(sqlite3_file *) { return static_cast<int>(SectorSize); }

    /** A call that the default file system answers alone. */
    template <auto Method, typename... Arguments>
    static auto pass(sqlite3_file *file, Arguments... arguments)
    {
        return (methods(file)->*Method)(real(file), arguments...);
    }
};

namespace {

using M = sqlite3_io_methods;
const sqlite3_io_methods FaultyFileMethods{2,
                                           &VfsMethods::pass<&M::xClose>,
                                           &VfsMethods::read,
                                           &VfsMethods::write,
                                           &VfsMethods::truncate,
                                           &VfsMethods::sync,
                                           &VfsMethods::pass<&M::xFileSize, sqlite3_int64 *>,
                                           &VfsMethods::pass<&M::xLock, int>,
                                           &VfsMethods::pass<&M::xUnlock, int>,
                                           &VfsMethods::pass<&M::xCheckReservedLock, int *>,
                                           &VfsMethods::pass<&M::xFileControl, int, void *>,
                                           &VfsMethods::sectorSize,
                                           &VfsMethods::pass<&M::xDeviceCharacteristics>,
                                           &VfsMethods::pass<&M::xShmMap, int, int, int, void volatile **>,
                                           &VfsMethods::pass<&M::xShmLock, int, int, int>,
                                           &VfsMethods::pass<&M::xShmBarrier>,
                                           &VfsMethods::pass<&M::xShmUnmap, int>,
                                           nullptr,
                                           nullptr};

} // namespace

int VfsMethods::open(sqlite3_vfs *vfs, sqlite3_filename path, sqlite3_file *file, int flags, int *outFlags)
{
    FaultyVfs &faulty = owner(vfs);
    Handle &opened = handle(file);
    opened.base.pMethods = nullptr;
    opened.owner = &faulty;
    opened.file = nullptr;
    const int code = defaultVfs()->xOpen(defaultVfs(), path, opened.real(), flags, outFlags);
    if (code == SQLITE_OK) {
        const QMutexLocker lock(&faulty.m_mutex);
        opened.base.pMethods = &FaultyFileMethods;
        if (path && (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL)) != 0) {
            opened.file = &faulty.m_files[nameOf(path)];
            if (opened.file->isDeleted) {
                *opened.file = {};
            }
        }
    }
    return code;
}

int VfsMethods::remove(sqlite3_vfs *vfs, const char *path, int syncFolder)
{
    FaultyVfs &faulty = owner(vfs);
    return writing(faulty, [&] {
        const QMutexLocker lock(&faulty.m_mutex);
        if (syncFolder != 0) {
            faulty.m_files.erase(nameOf(path));
        } else if (const auto file = faulty.m_files.find(nameOf(path)); file != faulty.m_files.end()) {
            file->second.isDeleted = true;
        }
        return defaultVfs()->xDelete(defaultVfs(), path, 0);
    });
}

FaultyVfs::FaultyVfs() : m_vfs(std::make_unique<sqlite3_vfs>(*VfsMethods::defaultVfs()))
{
    static int count = 0;
    m_name = "faulty-" + QByteArray::number(++count);
    m_vfs->zName = m_name.constData();
    m_vfs->pAppData = this;
    m_vfs->szOsFile += static_cast<int>(sizeof(VfsMethods::Handle));
    m_vfs->xOpen = &VfsMethods::open;
    m_vfs->xDelete = &VfsMethods::remove;
    sqlite3_vfs_register(m_vfs.get(), 0);
}

FaultyVfs::~FaultyVfs()
{
    sqlite3_vfs_unregister(m_vfs.get());
}

void FaultyVfs::failAt(int n, int code, bool forEver, Calls calls)
{
    const QMutexLocker lock(&m_mutex);
    m_callsToFailure = n;
    m_code = code;
    m_forEver = forEver;
    m_failingCalls = calls;
    m_hasFailed = false;
}

bool FaultyVfs::hasFailed() const
{
    const QMutexLocker lock(&m_mutex);
    return m_hasFailed;
}

std::optional<int> FaultyVfs::failure(Calls calls)
{
    const QMutexLocker lock(&m_mutex);
    if (calls != m_failingCalls || m_callsToFailure == 0) {
        return std::nullopt;
    }
    if (m_callsToFailure > 1) {
        --m_callsToFailure;
        return std::nullopt;
    }
    m_callsToFailure = m_forEver ? 1 : 0;
    m_hasFailed = true;
    return m_code;
}

void FaultyVfs::observe() const
{
    if (m_observer) {
        m_observer();
    }
}

void FaultyVfs::apply(QByteArray &content, const Change &change, std::mt19937 *random)
{
    if (change.offset < 0) {
        if (!random || (*random)() % 2 == 0) {
            content.resize(change.length, '\0');
        }
        return;
    }
    for (qint64 done = 0; done < change.length;) {
        const qint64 offset = change.offset + done;
        const qint64 count = std::min(SectorSize - offset % SectorSize, change.length - done);
        if (!random || (*random)() % 2 == 0) {
            if (content.size() < offset + count) {
                content.resize(offset + count, '\0');
            }
            std::memcpy(content.data() + offset, change.bytes.constData() + done,
                        static_cast<std::size_t>(count));
        }
        done += count;
    }
}

DiskImage FaultyVfs::cutPower(std::mt19937 &random) const
{
    const QMutexLocker lock(&m_mutex);
    DiskImage image;
    // Whole changes may be on the disk or not, and a part of the cuts tears each of them besides.
    const bool tears = random() % 2 == 0;
    for (const auto &[name, file] : m_files) {
        if (file.isDeleted && random() % 2 == 0) {
            continue;
        }
        QByteArray content = file.synced;
        for (const Change &change : file.unsynced) {
            if (tears) {
                apply(content, change, &random);
            } else if (random() % 2 == 0) {
                apply(content, change, nullptr);
            }
        }
        image.insert(name, content);
    }
    return image;
}

} // namespace vantrel::test
