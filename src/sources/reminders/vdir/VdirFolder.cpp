#include "sources/reminders/vdir/VdirFolder.h"

#include "foundations/Log.h"
#include "sources/reminders/vdir/IcsTodos.h"
#include "sources/reminders/vdir/ReminderCodec.h"
#include "sources/reminders/vdir/VdirFiles.h"

#include <QFile>
#include <QtConcurrent>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace vantrel {

namespace {

/** A folder that is itself a list. */
constexpr auto Itself = ".";

QByteArray pathOf(const QByteArray &folder, const QByteArray &name)
{
    return folder + '/' + name;
}

QString fallbackId(const QByteArray &name)
{
    return QFile::decodeName(name.chopped(4));
}

} // namespace

/** A file that is to be read, and what it says. */
struct VdirFolder::Reading
{
    QByteArray folder;
    QByteArray name;
    QByteArray path;
    FileStamp surveyed;
    vdir::FileContent content;
    std::optional<std::vector<Reminder>> reminders;
    /** The reminders for the cache; empty if the file is too young to be cached. */
    QByteArray encoded;
};

VdirFolder::VdirFolder(QString path, FileCalls &calls) : m_path(std::move(path)), m_saver(calls) {}

QByteArray VdirFolder::folderPath(const QByteArray &folder) const
{
    const QByteArray root = QFile::encodeName(m_path);
    return folder == Itself ? root : root + '/' + folder;
}

QByteArray VdirFolder::filePath(const QByteArray &folder, const QByteArray &name) const
{
    return folderPath(folder) + '/' + name;
}

// Reading.

QString VdirFolder::titleOf(const QByteArray &folder) const
{
    const vdir::FileContent file = vdir::readFile(filePath(folder, "displayname"));
    const QString title = QString::fromUtf8(file.text).section(u'\n', 0, 0).trimmed();
    if (file.failure == 0 && !title.isEmpty()) {
        return title;
    }
    return folder == Itself ? m_path.section(u'/', -1, -1, QString::SectionSkipEmpty)
                            : QFile::decodeName(folder);
}

ReminderList VdirFolder::listIn(const QByteArray &folder) const
{
    const bool isWritable = ::access(folderPath(folder).constData(), W_OK) == 0;
    return {QFile::decodeName(folder), titleOf(folder), m_path, isWritable};
}

VdirFolder::Result<std::vector<ReminderList>> VdirFolder::readLists() const
{
    const vdir::FolderEntries root = vdir::readFolder(QFile::encodeName(m_path));
    if (root.failure != 0) {
        return {{}, tr("The folder %1 cannot be read: %2.").arg(m_path, vdir::reason(root.failure))};
    }
    std::vector<ReminderList> lists;
    bool isList = false;
    for (const auto &entry : root.entries) {
        isList |= !entry.isFolder;
        if (entry.isFolder) {
            lists.push_back(listIn(entry.name));
        }
    }
    if (isList) {
        lists.push_back(listIn(Itself));
    }
    std::sort(lists.begin(), lists.end(), [](const ReminderList &a, const ReminderList &b) {
        return std::tie(a.title, a.identifier) < std::tie(b.title, b.identifier);
    });
    return {std::move(lists), {}};
}

VdirFolder::Survey VdirFolder::survey() const
{
    Survey survey;
    survey.edition = m_edition;
    Result<std::vector<ReminderList>> lists = readLists();
    survey.error = lists.error;
    for (ReminderList &list : lists.value) {
        const QByteArray folder = QFile::encodeName(list.identifier);
        vdir::FolderEntries entries = vdir::readFolder(folderPath(folder));
        if (entries.failure == ENOENT) {
            continue;
        }
        if (entries.failure != 0) {
            // A list that cannot be read is not an empty list.
            survey.error =
                tr("The list %1 cannot be read: %2.").arg(list.title, vdir::reason(entries.failure));
            break;
        }
        Survey::List surveyed{folder, std::move(list), {}};
        surveyed.files.reserve(entries.entries.size());
        for (auto &entry : entries.entries) {
            if (!entry.isFolder) {
                surveyed.files.emplace_back(std::move(entry.name), entry.stamp);
            }
        }
        survey.lists.push_back(std::move(surveyed));
    }
    return survey;
}

VdirFolder::News VdirFolder::update(Survey survey, std::vector<CachedFile> cache)
{
    News news;
    news.error = survey.error;
    if (!news.error.isEmpty()) {
        return news;
    }
    news.hasChanged = std::exchange(m_hasOwnNews, false);
    takeLists(survey, news);
    takeCache(cache);
    std::vector<Reading> readings = differences(survey, news);
    read(readings);
    for (Reading &reading : readings) {
        takeReading(reading, news);
    }
    news.hasChanged &= m_isIndexed;
    m_isIndexed = true;
    news.folders.append(m_path);
    for (const auto &[folder, list] : m_lists) {
        if (folder != Itself) {
            news.folders.append(QFile::decodeName(folderPath(folder)));
        }
    }
    return news;
}

void VdirFolder::takeLists(const Survey &survey, News &news)
{
    std::map<QByteArray, List> lists;
    for (const Survey::List &surveyed : survey.lists) {
        auto known = m_lists.extract(surveyed.folder);
        List list = known ? std::move(known.mapped()) : List();
        news.hasChanged |= list.list != surveyed.list;
        list.list = surveyed.list;
        lists.emplace(surveyed.folder, std::move(list));
    }
    m_lists.swap(lists);
    for (const auto &[folder, list] : lists) {
        news.hasChanged = true;
        m_arePlacesKnown = false;
        for (auto file = list.files.keyBegin(); file != list.files.keyEnd(); ++file) {
            news.removed.append(pathOf(folder, *file));
        }
    }
}

void VdirFolder::takeCache(const std::vector<CachedFile> &cache)
{
    struct Decoded
    {
        const CachedFile *file;
        std::optional<std::vector<Reminder>> reminders;
    };
    std::vector<Decoded> decoded;
    decoded.reserve(cache.size());
    for (const CachedFile &cached : cache) {
        decoded.push_back({&cached, {}});
    }
    QtConcurrent::blockingMap(decoded,
                              [](Decoded &one) { one.reminders = decodeReminders(one.file->content); });
    QByteArrayView folder;
    auto list = m_lists.end();
    for (auto &[cachedFile, reminders] : decoded) {
        const CachedFile &cached = *cachedFile;
        const qsizetype slash = cached.path.lastIndexOf('/');
        const QByteArrayView own = QByteArrayView(cached.path).first(std::max<qsizetype>(slash, 0));
        // The cache is sorted: mostly it is the list of the file before.
        if (list == m_lists.end() || own != folder) {
            folder = own;
            list = m_lists.find(own.toByteArray());
        }
        if (list == m_lists.end() || !reminders) {
            continue;
        }
        QHash<QByteArray, File> &files = list->second.files;
        if (files.isEmpty()) {
            files.reserve(static_cast<qsizetype>(cache.size()));
        }
        File &file = files[cached.path.mid(slash + 1)];
        if (file.stamp == FileStamp()) {
            file.stamp = {cached.inode, cached.size, cached.modified};
            file.reminders = std::move(*reminders);
        }
        m_arePlacesKnown = false;
    }
}

std::vector<VdirFolder::Reading> VdirFolder::differences(const Survey &survey, News &news)
{
    std::vector<Reading> readings;
    for (const Survey::List &surveyed : survey.lists) {
        QHash<QByteArray, File> &files = m_lists[surveyed.folder].files;
        files.reserve(static_cast<qsizetype>(surveyed.files.size()));
        qsizetype known = 0;
        for (const auto &[name, stamp] : surveyed.files) {
            const auto file = files.constFind(name);
            known += file != files.constEnd() ? 1 : 0;
            if (file == files.constEnd() || (file->stamp != stamp && file->edition <= survey.edition)) {
                readings.push_back(
                    {surveyed.folder, name, filePath(surveyed.folder, name), stamp, {}, {}, {}});
            }
        }
        if (known < files.size()) {
            forgetVanished(surveyed, survey.edition, news);
        }
    }
    return readings;
}

void VdirFolder::forgetVanished(const Survey::List &surveyed, qint64 edition, News &news)
{
    QSet<QByteArray> present;
    for (const auto &[name, stamp] : surveyed.files) {
        present.insert(name);
    }
    m_lists[surveyed.folder].files.removeIf([&](auto file) {
        if (present.contains(file.key()) || file->edition > edition) {
            return false;
        }
        news.removed.append(pathOf(surveyed.folder, file.key()));
        news.hasChanged |= !file->reminders.empty();
        m_arePlacesKnown = false;
        return true;
    });
}

void VdirFolder::read(std::vector<Reading> &readings)
{
    QtConcurrent::blockingMap(readings, [](Reading &reading) {
        reading.content = vdir::readFile(reading.path);
        if (reading.content.failure == 0 && !reading.content.isTooLarge) {
            reading.reminders = IcsTodos::read(reading.content.text, fallbackId(reading.name));
        }
        if (reading.reminders && !reading.content.isYoung) {
            reading.encoded = encodeReminders(*reading.reminders);
        }
        reading.content.text.clear();
    });
}

void VdirFolder::takeReading(Reading &reading, News &news)
{
    if (reading.content.failure == ENOENT) {
        return;
    }
    File &file = m_lists[reading.folder].files[reading.name];
    if (!reading.reminders) {
        reportUnreadable(reading, file, news);
        return;
    }
    if (file.reminders != *reading.reminders || file.isUnreadable) {
        file.reminders = std::move(*reading.reminders);
        news.hasChanged = true;
        m_arePlacesKnown = false;
    }
    file.isUnreadable = false;
    file.stamp = reading.content.stamp;
    if (reading.content.isYoung) {
        file.stamp.modified = 0;
        return;
    }
    news.changed.push_back({pathOf(reading.folder, reading.name), file.stamp.inode, file.stamp.size,
                            file.stamp.modified, std::move(reading.encoded)});
}

/** What the file said before stays in the index: its task does not leave the board for a file half written.
 */
void VdirFolder::reportUnreadable(const Reading &reading, File &file, News &news) const
{
    const bool isKnown = file.isUnreadable;
    file.isUnreadable = true;
    file.stamp = reading.surveyed;
    const QString path = QFile::decodeName(reading.path);
    const QString why = reading.content.failure != 0
                            ? tr("%1 cannot be read: %2.").arg(path, vdir::reason(reading.content.failure))
                            : tr("%1 cannot be understood as a task, and is left as it is.").arg(path);
    log::warning(why);
    if (!isKnown) {
        news.unreadable.append(why);
    }
}

// The reminders.

const QHash<QString, VdirFolder::Place> &VdirFolder::places()
{
    if (m_arePlacesKnown) {
        return m_places;
    }
    m_places.clear();
    m_seconds.clear();
    qsizetype count = 0;
    for (const auto &[folder, list] : m_lists) {
        count += list.files.size();
    }
    m_places.reserve(count);
    for (const auto &[folder, list] : m_lists) {
        for (auto file = list.files.begin(); file != list.files.end(); ++file) {
            for (const Reminder &reminder : file->reminders) {
                addPlace({folder, file.key(), reminder.identifier});
            }
        }
    }
    m_arePlacesKnown = true;
    return m_places;
}

void VdirFolder::addPlace(Place place)
{
    const auto other = m_places.find(place.identifier);
    if (other == m_places.end()) {
        const QString identifier = place.identifier;
        m_places.insert(identifier, std::move(place));
        return;
    }
    if (other->folder == place.folder && other->name == place.name) {
        return;
    }
    // The same task in two lists, or copied within one: the first one keeps the identifier.
    if (std::tie(place.folder, place.name) < std::tie(other->folder, other->name)) {
        std::swap(place, *other);
    }
    const QByteArray path = pathOf(place.folder, place.name);
    m_seconds.insert(path);
    m_places.insert(place.identifier + u'@' + QFile::decodeName(path), place);
}

QString VdirFolder::identifierOf(const Reminder &reminder, const QByteArray &folder,
                                 const QByteArray &name) const
{
    if (m_seconds.isEmpty() || !m_seconds.contains(pathOf(folder, name))) {
        return reminder.identifier;
    }
    return reminder.identifier + u'@' + QFile::decodeName(pathOf(folder, name));
}

std::vector<Reminder> VdirFolder::reminders(const ReminderPredicate &predicate)
{
    // Both this and the search below only read the lists.
    QFuture<void> placing = QtConcurrent::run([this] { places(); });
    struct Found
    {
        // Beside each other: thousands are sorted by them.
        std::optional<Date> created;
        QStringView identifier;
        const Reminder *reminder;
        const QByteArray *name;
        const QByteArray *folder;
        const List *list;
    };
    std::vector<Found> found;
    for (const auto &[folder, list] : m_lists) {
        for (auto file = list.files.begin(); file != list.files.end(); ++file) {
            for (const Reminder &reminder : file->reminders) {
                const Date completed = reminder.completionDate.value_or(Date());
                if (reminder.isCompleted == predicate.isCompleted &&
                    (!predicate.isCompleted || (completed >= predicate.from && completed <= predicate.to))) {
                    found.push_back(
                        {reminder.creationDate, reminder.identifier, &reminder, &file.key(), &folder, &list});
                }
            }
        }
    }
    std::sort(found.begin(), found.end(), [](const Found &a, const Found &b) {
        return std::tie(a.created, a.identifier, *a.folder, *a.name) <
               std::tie(b.created, b.identifier, *b.folder, *b.name);
    });
    placing.waitForFinished();
    std::vector<Reminder> reminders;
    reminders.reserve(found.size());
    for (const Found &one : found) {
        reminders.push_back(*one.reminder);
        reminders.back().list = one.list->list;
        reminders.back().identifier = identifierOf(*one.reminder, *one.folder, *one.name);
    }
    return reminders;
}

} // namespace vantrel
