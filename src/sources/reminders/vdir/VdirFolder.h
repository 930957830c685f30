#pragma once

#include "foundations/FileSaver.h"
#include "persistence/FileCacheStore.h"
#include "sources/reminders/ReminderStore.h"

#include <QByteArrayList>
#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <map>
#include <optional>
#include <vector>

namespace vantrel {

/** By what a file is seen to be the same. */
struct FileStamp
{
    qint64 inode = 0;
    qint64 size = 0;
    /** Nanoseconds since 1970. */
    qint64 modified = 0;
    friend bool operator==(const FileStamp &, const FileStamp &) = default;
};

/**
 * A folder of task lists as CalDAV clients keep it on disk: a sub-folder a list, with its title in the file
 * `displayname`, and an iCalendar file a task. Keeps an index of what the files said when they were last
 * read.
 *
 * All of it blocks: it belongs to one worker thread. Nothing throws; what cannot be done is told in words for
 * the user.
 */
class VdirFolder
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::VdirFolder)
public:
    /** The folder as one pass over names and stamps sees it. */
    struct Survey
    {
        struct List
        {
            QByteArray folder;
            ReminderList list;
            std::vector<std::pair<QByteArray, FileStamp>> files;
        };
        std::vector<List> lists;
        qint64 edition = 0;
        /** Why the folder cannot be read; empty if it can. */
        QString error;
    };
    /** What a survey has brought. */
    struct News
    {
        /** Why the folder cannot be read; the index is as it was then. */
        QString error;
        /** Another program has changed a task or a list. */
        bool hasChanged = false;
        /** Files that cannot be read, and were not known to be so. */
        QStringList unreadable;
        /** For the cache. */
        std::vector<CachedFile> changed;
        QByteArrayList removed;
        /** The folders to be watched. */
        QStringList folders;
    };
    template <typename T>
    struct Result
    {
        T value = {};
        QString error;
    };

    VdirFolder(QString path, FileCalls &calls);

    const QString &path() const { return m_path; }

    Result<std::vector<ReminderList>> readLists() const;
    Survey survey() const;
    /** Reads what differs from the index; `cache` tells of files that no index knows yet. */
    News update(Survey survey, std::vector<CachedFile> cache = {});

    std::vector<Reminder> reminders(const ReminderPredicate &predicate);
    /** Reads the reminder's file anew. Nothing if there is no such reminder in the index. */
    Result<std::optional<Reminder>> reminder(const QString &identifier);
    /** Gives the identifier. */
    Result<QString> save(const Reminder &reminder, Date now);
    Result<ReminderList> saveList(const ReminderList &list);

private:
    struct File
    {
        FileStamp stamp;
        /** With the identifiers that the file gives, which may not be the only ones of their kind. */
        std::vector<Reminder> reminders;
        bool isUnreadable = false;
        /** When this program wrote it last. */
        qint64 edition = 0;
    };
    struct List
    {
        ReminderList list;
        QHash<QByteArray, File> files;
    };
    struct Place
    {
        QByteArray folder;
        QByteArray name;
        /** In the file. */
        QString identifier;
    };
    struct Reading;

    QByteArray folderPath(const QByteArray &folder) const;
    QByteArray filePath(const QByteArray &folder, const QByteArray &name) const;
    ReminderList listIn(const QByteArray &folder) const;
    QString titleOf(const QByteArray &folder) const;
    void takeLists(const Survey &survey, News &news);
    void takeCache(const std::vector<CachedFile> &cache);
    /** What has to be read; what is gone leaves the index. */
    std::vector<Reading> differences(const Survey &survey, News &news);
    void forgetVanished(const Survey::List &surveyed, qint64 edition, News &news);
    static void read(std::vector<Reading> &readings);
    void takeReading(Reading &reading, News &news);
    void reportUnreadable(const Reading &reading, File &file, News &news) const;
    const QHash<QString, Place> &places();
    Result<QString> create(const Reminder &reminder, Date now);
    Result<QString> change(const Place &place, const Reminder &reminder, Date now);
    /** Puts the text in the place of what `expected` tells, or where nothing is; the reason if it cannot. */
    QString write(const Place &place, const QByteArray &text, const std::optional<FileStamp> &expected,
                  mode_t mode);
    void noteWritten(const Place &place, const QByteArray &text);
    void addPlace(Place place);
    /** The identifier that the program knows the file's reminder by. */
    QString identifierOf(const Reminder &reminder, const QByteArray &folder, const QByteArray &name) const;

    QString m_path;
    FileSaver m_saver;
    std::map<QByteArray, List> m_lists;
    /** By the identifier that the program knows. */
    QHash<QString, Place> m_places;
    /** "{list}/{file}" of reminders whose identifier another file has too, and comes first. */
    QSet<QByteArray> m_seconds;
    bool m_arePlacesKnown = false;
    bool m_isIndexed = false;
    /** A change of ours has made more of a task than whoever asked for it knows. */
    bool m_hasOwnNews = false;
    qint64 m_edition = 0;
};

} // namespace vantrel
