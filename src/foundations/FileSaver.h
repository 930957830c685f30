#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <functional>

#include <sys/types.h>

namespace vantrel {

/** How saving or copying a file ended. */
struct FileOutcome
{
    /** The file that was written. */
    QString path;
    /** Names the file and the reason, for the user; empty on success. */
    QString error;

    bool isOk() const { return error.isEmpty(); }
};

/** How a file is saved that other programs use too. */
struct SharedFile
{
    /** Where the content is written first: a path of the same folder that the other programs pass over. */
    QString temporaryPath;
    mode_t mode = 0600;
    /** Asked right before the target is replaced: why that may not be, for the user, or nothing. */
    std::function<QString()> objection;
};

/** The system calls behind FileSaver. Each returns what its POSIX namesake returns and sets errno. */
class FileCalls
{
public:
    FileCalls() = default;
    virtual ~FileCalls() = default;
    Q_DISABLE_COPY_MOVE(FileCalls)

    virtual int open(const char *path, int flags, mode_t mode);
    virtual ssize_t write(int descriptor, const char *bytes, size_t count);
    virtual int fsync(int descriptor);
    virtual int close(int descriptor);
    virtual int rename(const char *from, const char *to);
};

/**
 * Writes every file that is not a database: all or nothing, and durable when save() returns.
 *
 * Temporary file beside the target, write, fsync, rename over the target, fsync of the folder. A failure
 * leaves the old file as it was. Any thread, one call at a time per target. Owned by Services.
 */
class FileSaver
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::FileSaver)
public:
    explicit FileSaver(FileCalls &calls) : m_calls(calls) {}
    Q_DISABLE_COPY_MOVE(FileSaver)

    FileOutcome save(const QString &path, const QByteArray &content);
    FileOutcome save(const QString &path, const QByteArray &content, const SharedFile &sharedFile);

    /**
     * Copies `path` to "{path}.unreadable-{yyyyMMdd-HHmmss}" and tells the copy's path. The original stays.
     * Never replaces an earlier copy.
     */
    FileOutcome keepAside(const QString &path, const QString &label = QStringLiteral("unreadable"));

private:
    FileCalls &m_calls;
};

} // namespace vantrel
