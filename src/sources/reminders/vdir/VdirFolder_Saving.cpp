#include "sources/reminders/vdir/IcsTodos.h"
#include "sources/reminders/vdir/VdirFiles.h"
#include "sources/reminders/vdir/VdirFolder.h"

#include <QFile>
#include <QThread>
#include <QUuid>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vantrel {

namespace {

constexpr mode_t OwnerOnly = 0600;

QString fallbackId(const QByteArray &name)
{
    return QFile::decodeName(name.chopped(4));
}

QByteArray versionOf(const FileStamp &stamp)
{
    return QByteArray::number(stamp.inode) + ' ' + QByteArray::number(stamp.size) + ' ' +
           QByteArray::number(stamp.modified);
}

/** The content of a file that nobody has written just now, so that its stamp tells it from any later one. */
vdir::FileContent readSettledFile(const QByteArray &path)
{
    constexpr int attempts = 20;
    vdir::FileContent content = vdir::readFile(path);
    for (int attempt = 1; content.isYoung && attempt < attempts; ++attempt) {
        QThread::msleep(vdir::Youth);
        content = vdir::readFile(path);
    }
    return content;
}

std::optional<Reminder> find(const std::optional<std::vector<Reminder>> &reminders, const QString &identifier)
{
    if (reminders) {
        for (const Reminder &reminder : *reminders) {
            if (reminder.identifier == identifier) {
                return reminder;
            }
        }
    }
    return std::nullopt;
}

/** A name that needs no care on any file system, or nothing. */
QString folderNameFor(const QString &title)
{
    QString name;
    for (const QChar c : title) {
        name.append(c.isLetterOrNumber() || c == u' ' || c == u'-' || c == u'_' ? c : QChar(u'-'));
    }
    constexpr qsizetype longest = 60;
    return name.left(longest).trimmed();
}

} // namespace

VdirFolder::Result<std::optional<Reminder>> VdirFolder::reminder(const QString &identifier)
{
    const auto place = places().constFind(identifier);
    if (place == places().constEnd()) {
        return {};
    }
    const vdir::FileContent content = readSettledFile(filePath(place->folder, place->name));
    if (content.failure == ENOENT) {
        return {};
    }
    const QString path = QFile::decodeName(filePath(place->folder, place->name));
    if (content.failure != 0) {
        return {{}, tr("%1 cannot be read: %2.").arg(path, vdir::reason(content.failure))};
    }
    const auto reminders = IcsTodos::read(content.text, fallbackId(place->name));
    if (!reminders) {
        return {{}, tr("%1 cannot be understood as a task, and is left as it is.").arg(path)};
    }
    std::optional<Reminder> found = find(reminders, place->identifier);
    if (found) {
        found->identifier = identifier;
        found->list = m_lists[place->folder].list;
        found->version = versionOf(content.stamp);
    }
    return {std::move(found), {}};
}

VdirFolder::Result<QString> VdirFolder::save(const Reminder &reminder, Date now)
{
    if (reminder.identifier.isEmpty()) {
        return create(reminder, now);
    }
    const auto place = places().constFind(reminder.identifier);
    if (place == places().constEnd()) {
        return {{}, tr("The task is not there any more.")};
    }
    return change(Place(*place), reminder, now);
}

VdirFolder::Result<QString> VdirFolder::create(const Reminder &reminder, Date now)
{
    if (!reminder.list) {
        return {{}, tr("The task is in no list.")};
    }
    const QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const Place place{QFile::encodeName(reminder.list->identifier), uid.toLatin1() + ".ics", uid};
    const QByteArray text = IcsTodos::make(reminder, uid, now);
    if (const QString error = write(place, text, std::nullopt, OwnerOnly); !error.isEmpty()) {
        return {{}, error};
    }
    noteWritten(place, text);
    return {uid, {}};
}

VdirFolder::Result<QString> VdirFolder::change(const Place &place, const Reminder &reminder, Date now)
{
    const QByteArray path = filePath(place.folder, place.name);
    const vdir::FileContent content = vdir::readFile(path);
    if (content.failure != 0) {
        return {{}, tr("%1 cannot be read: %2.").arg(QFile::decodeName(path), vdir::reason(content.failure))};
    }
    const auto before = find(IcsTodos::read(content.text, fallbackId(place.name)), place.identifier);
    if (!before || versionOf(content.stamp) != reminder.version) {
        return {{}, tr("Another program has changed the task meanwhile. Please try again.")};
    }
    Reminder wanted = reminder;
    wanted.identifier = place.identifier;
    const IcsEdit edit = IcsTodos::edit(content.text, fallbackId(place.name), *before, wanted, now);
    if (!edit.refusal.isEmpty()) {
        return {{}, edit.refusal};
    }
    const Place completed{place.folder, edit.completedUid.toLatin1() + ".ics", edit.completedUid};
    if (!edit.completedText.isEmpty()) {
        if (const QString error = write(completed, edit.completedText, std::nullopt, content.mode);
            !error.isEmpty()) {
            return {{}, error};
        }
    }
    if (const QString error = write(place, edit.text, content.stamp, content.mode); !error.isEmpty()) {
        if (!edit.completedText.isEmpty() && vdir::stampOf(path) == content.stamp) {
            ::unlink(filePath(completed.folder, completed.name).constData());
        }
        return {{}, error};
    }
    noteWritten(place, edit.text);
    if (!edit.completedText.isEmpty()) {
        noteWritten(completed, edit.completedText);
        m_hasOwnNews = true;
    }
    return {reminder.identifier, {}};
}

QString VdirFolder::write(const Place &place, const QByteArray &text,
                          const std::optional<FileStamp> &expected, mode_t mode)
{
    const QByteArray path = filePath(place.folder, place.name);
    const QByteArray temporary =
        filePath(place.folder, '.' + QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + ".tmp");
    const auto objection = [&path, &expected]() -> QString {
        if (vdir::stampOf(path) == expected) {
            return {};
        }
        return tr("Another program has changed the task meanwhile. Please try again.");
    };
    return m_saver.save(QFile::decodeName(path), text, {QFile::decodeName(temporary), mode, objection}).error;
}

void VdirFolder::noteWritten(const Place &place, const QByteArray &text)
{
    File &file = m_lists[place.folder].files[place.name];
    // No stamp: the next survey reads it, and finds nothing new.
    file.stamp = {};
    file.reminders = IcsTodos::read(text, fallbackId(place.name)).value_or(std::vector<Reminder>());
    file.edition = ++m_edition;
    for (const Reminder &reminder : file.reminders) {
        addPlace({place.folder, place.name, reminder.identifier});
    }
}

VdirFolder::Result<ReminderList> VdirFolder::saveList(const ReminderList &list)
{
    const QString plainName = folderNameFor(list.title);
    QByteArray name = QFile::encodeName(plainName);
    if (name.isEmpty() || vdir::stampOf(folderPath(name))) {
        name = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    }
    constexpr mode_t ownerOnly = 0700;
    if (::mkdir(folderPath(name).constData(), ownerOnly) != 0) {
        return {{}, tr("The list %1 could not be made: %2.").arg(list.title, vdir::reason(errno))};
    }
    if (QFile::decodeName(name) != list.title) {
        const QString path = QFile::decodeName(filePath(name, "displayname"));
        const QString error = m_saver.save(path, list.title.toUtf8(), {path + u".tmp", OwnerOnly, {}}).error;
        if (!error.isEmpty()) {
            ::rmdir(folderPath(name).constData());
            return {{}, error};
        }
    }
    List &made = m_lists[name];
    made.list = listIn(name);
    return {made.list, {}};
}

} // namespace vantrel
