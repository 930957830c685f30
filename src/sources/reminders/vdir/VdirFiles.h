#pragma once

#include "sources/reminders/vdir/VdirFolder.h"

namespace vantrel::vdir {

/** The content of a file, with the stamp that it had when it was read. */
struct FileContent
{
    QByteArray text;
    FileStamp stamp;
    mode_t mode = 0;
    /** errno; 0 if the file was read. */
    int failure = 0;
    bool isTooLarge = false;
    /** Written so lately that a later write may leave the same stamp. */
    bool isYoung = false;
};

/** How long a file stays young, in milliseconds. */
inline constexpr int Youth = 50;

FileContent readFile(const QByteArray &path);
/** Nothing if there is no such file. */
std::optional<FileStamp> stampOf(const QByteArray &path);
/** True for a file that may be a task: temporary files of all programs are passed over. */
bool isTaskFileName(QByteArrayView name);
/** The system's words for an errno. */
QString reason(int failure);

/** The entries of a folder, without "." and ".."; the errno if it cannot be read. */
struct FolderEntries
{
    struct Entry
    {
        QByteArray name;
        bool isFolder = false;
        FileStamp stamp;
    };
    std::vector<Entry> entries;
    int failure = 0;
};
/** Its sub-folders and its task files; links are followed. */
FolderEntries readFolder(const QByteArray &path);

} // namespace vantrel::vdir
