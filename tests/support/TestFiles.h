#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vantrel::test {

/** "(no file)" if it cannot be read. */
inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

/** Writes as another program may: into the same file, at once. Makes the folder where it is missing. */
inline void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("a test file could not be written");
    }
}

} // namespace vantrel::test
