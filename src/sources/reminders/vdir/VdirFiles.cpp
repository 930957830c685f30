#include "sources/reminders/vdir/VdirFiles.h"

#include "sources/reminders/vdir/IcsTodos.h"

#include <QtConcurrent>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel::vdir {

namespace {

#ifdef Q_OS_DARWIN
timespec modificationOf(const struct stat &status)
{
    return status.st_mtimespec;
}
#else
timespec modificationOf(const struct stat &status)
{
    return status.st_mtim;
}
#endif

FileStamp stampFrom(const struct stat &status)
{
    constexpr qint64 nanoseconds = 1'000'000'000;
    const timespec modified = modificationOf(status);
    return {static_cast<qint64>(status.st_ino), static_cast<qint64>(status.st_size),
            modified.tv_sec * nanoseconds + modified.tv_nsec};
}

/** A write that follows a reading within the grain of the file system's clock would not show in the stamp. */
bool isYoung(const FileStamp &stamp)
{
    constexpr qint64 grain = Youth * 1'000'000LL;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return std::abs(now.tv_sec * 1'000'000'000LL + now.tv_nsec - stamp.modified) < grain;
}

bool readAll(int descriptor, QByteArray &text)
{
    qsizetype length = 0;
    while (true) {
        constexpr qsizetype step = 4096;
        if (length == text.size()) {
            text.resize(length + step);
        }
        const ssize_t count =
            ::read(descriptor, text.data() + length, static_cast<size_t>(text.size() - length));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count == 0) {
            text.resize(length);
            return true;
        }
        length += std::max<ssize_t>(count, 0);
    }
}

struct FolderCloser
{
    void operator()(DIR *folder) const { closedir(folder); }
};

} // namespace

FileContent readFile(const QByteArray &path)
{
    FileContent content;
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status
    {
    };
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        content.failure = errno;
    } else if (!S_ISREG(status.st_mode)) {
        content.failure = EINVAL;
    } else if (status.st_size > IcsTodos::LargestFile) {
        content.isTooLarge = true;
        content.stamp = stampFrom(status);
    } else {
        content.text.resize(static_cast<qsizetype>(status.st_size) + 1);
        content.failure = readAll(descriptor, content.text) ? 0 : errno;
        content.stamp = stampFrom(status);
        content.mode = status.st_mode & 0777;
        content.isYoung = isYoung(content.stamp);
    }
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return content;
}

std::optional<FileStamp> stampOf(const QByteArray &path)
{
    struct stat status
    {
    };
    return ::stat(path.constData(), &status) == 0 ? std::optional(stampFrom(status)) : std::nullopt;
}

bool isTaskFileName(QByteArrayView name)
{
    return !name.startsWith('.') && name.endsWith(".ics");
}

QString reason(int failure)
{
    return QString::fromLocal8Bit(std::strerror(failure));
}

FolderEntries readFolder(const QByteArray &path)
{
    FolderEntries result;
    const std::unique_ptr<DIR, FolderCloser> folder(::opendir(path.constData()));
    if (!folder) {
        result.failure = errno;
        return result;
    }
    std::vector<FolderEntries::Entry> &entries = result.entries;
    errno = 0;
    while (const dirent *entry = ::readdir(folder.get())) {
        const QByteArrayView name(entry->d_name);
        const bool mayBeFolder =
            entry->d_type == DT_DIR || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (!name.startsWith('.') && (mayBeFolder || isTaskFileName(name))) {
            entries.push_back({name.toByteArray(), false, {}});
        }
        errno = 0;
    }
    result.failure = errno;
    const int descriptor = ::dirfd(folder.get());
    QtConcurrent::blockingMap(entries, [descriptor](FolderEntries::Entry &entry) {
        struct stat status
        {
        };
        if (::fstatat(descriptor, entry.name.constData(), &status, 0) == 0) {
            entry.isFolder = S_ISDIR(status.st_mode);
            entry.stamp = stampFrom(status);
        }
    });
    std::erase_if(entries, [](const FolderEntries::Entry &entry) {
        return entry.stamp == FileStamp() || !(entry.isFolder || isTaskFileName(entry.name));
    });
    return result;
}

} // namespace vantrel::vdir
