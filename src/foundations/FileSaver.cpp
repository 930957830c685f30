#include "foundations/FileSaver.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace vantrel {

namespace {

/** An open descriptor that is closed when its owner forgets to. */
class Descriptor
{
public:
    Descriptor(FileCalls &calls, int number) : m_calls(calls), m_number(number) {}
    ~Descriptor()
    {
        if (m_number >= 0) {
            m_calls.close(m_number);
        }
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }
    bool close() { return m_calls.close(std::exchange(m_number, -1)) == 0; }

private:
    FileCalls &m_calls;
    int m_number;
};

bool writeAll(FileCalls &calls, int descriptor, const QByteArray &content)
{
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t count = calls.write(descriptor, content.constData() + written,
                                          static_cast<size_t>(content.size() - written));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        written += count;
    }
    return true;
}

bool syncFolder(FileCalls &calls, const QByteArray &path)
{
    Descriptor folder(calls, calls.open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
    return folder.isOpen() && calls.fsync(folder.number()) == 0;
}

} // namespace

int FileCalls::open(const char *path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileCalls::write(int descriptor, const char *bytes, size_t count)
{
    return ::write(descriptor, bytes, count);
}

int FileCalls::fsync(int descriptor)
{
    return ::fsync(descriptor);
}

int FileCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int FileCalls::rename(const char *from, const char *to)
{
    return std::rename(from, to);
}

FileOutcome FileSaver::save(const QString &path, const QByteArray &content)
{
    constexpr mode_t ownerOnly = 0600;
    return save(path, content, {path + u".saving", ownerOnly, {}});
}

FileOutcome FileSaver::save(const QString &path, const QByteArray &content, const SharedFile &sharedFile)
{
    const QByteArray target = QFile::encodeName(path);
    const QByteArray temporary = QFile::encodeName(sharedFile.temporaryPath);
    const auto failed = [&] {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        ::unlink(temporary.constData());
        return FileOutcome{path, tr("%1 could not be saved: %2.").arg(path, reason)};
    };

    Descriptor file(m_calls, m_calls.open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                                          sharedFile.mode));
    if (!file.isOpen() || !writeAll(m_calls, file.number(), content) || m_calls.fsync(file.number()) != 0 ||
        !file.close()) {
        return failed();
    }
    if (const QString objection = sharedFile.objection ? sharedFile.objection() : QString();
        !objection.isEmpty()) {
        ::unlink(temporary.constData());
        return {path, objection};
    }
    if (m_calls.rename(temporary.constData(), target.constData()) != 0) {
        return failed();
    }
    if (!syncFolder(m_calls, QFile::encodeName(QFileInfo(path).absolutePath()))) {
        return failed();
    }
    return {path, {}};
}

FileOutcome FileSaver::keepAside(const QString &path, const QString &label)
{
    const QString stem =
        path + u'.' + label + u'-' + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString copy = stem;
    for (int attempt = 2; QFile::exists(copy); ++attempt) {
        copy = stem + u'-' + QString::number(attempt);
    }
    QFile original(path);
    if (!original.open(QIODevice::ReadOnly)) {
        return {copy, tr("%1 could not be read: %2.").arg(path, original.errorString())};
    }
    return save(copy, original.readAll());
}

} // namespace vantrel
