#include "sources/reminders/vdir/VdirReminderStore.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "persistence/PersistenceManager.h"
#include "sources/reminders/vdir/ReminderCodec.h"

#include <QFileInfo>
#include <QPointer>
#include <QTimeZone>

#include <algorithm>

namespace vantrel {

namespace {

/** A program that writes several files is let finish. */
constexpr double ChangeDelay = 0.3;
/** What was read so lately need not be looked at again, in milliseconds. */
constexpr qint64 FreshTime = 1000;
constexpr qsizetype MostNamedFiles = 3;

} // namespace

VdirReminderStore::VdirReminderStore(UserDefaults &defaults, PersistenceManager &persistence,
                                     FileCalls &calls, Clock &clock)
    : m_defaults(defaults), m_persistence(persistence), m_calls(calls), m_clock(clock)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &VdirReminderStore::lookAgain);
}

// Access.

QString VdirReminderStore::folderPath() const
{
    return m_defaults.text(keys::RemindersFolder).value_or(QString());
}

ReminderAuthorization VdirReminderStore::authorizationStatus() const
{
    const QString path = folderPath();
    if (path.isEmpty()) {
        return ReminderAuthorization::NotDetermined;
    }
    const QFileInfo folder(path);
    return folder.isDir() && folder.isReadable() && folder.isExecutable() ? ReminderAuthorization::FullAccess
                                                                          : ReminderAuthorization::Denied;
}

QCoro::Task<bool> VdirReminderStore::requestFullAccess()
{
    co_return authorizationStatus() == ReminderAuthorization::FullAccess;
}

std::optional<QString> VdirReminderStore::accessGuidance() const
{
    if (const QString path = folderPath(); !path.isEmpty()) {
        return tr("The folder %1 cannot be read. Make it readable, or choose another folder with task lists.")
            .arg(path);
    }
    return tr(
        "Choose the folder that holds your task lists: one sub-folder a list, one iCalendar file a task, "
        "as todoman and vdirsyncer keep them.");
}

std::shared_ptr<VdirReminderStore::Chosen> VdirReminderStore::chosen()
{
    const QString path = folderPath();
    if (path.isEmpty()) {
        throw ReminderStoreError(tr("No folder with task lists is chosen."));
    }
    if (!m_chosen || m_chosen->contents.path() != path) {
        m_chosen = std::make_shared<Chosen>(path, m_calls);
        // Times without a zone are read as those of the zone one is in.
        m_chosen->cacheScope =
            QByteArray(ReminderCodecVersion) + ' ' + QTimeZone::systemTimeZoneId() + ' ' + path.toUtf8();
    }
    return m_chosen;
}

// Looking into the folder.

QCoro::Task<> VdirReminderStore::update(std::shared_ptr<Chosen> folder)
{
    const QPointer self(this);
    VdirFolder::News news = co_await look(folder);
    if (!self) {
        co_return;
    }
    takeNews(*folder, news);
    if (!news.error.isEmpty()) {
        throw ReminderStoreError(news.error);
    }
}

QCoro::Task<VdirFolder::News> VdirReminderStore::look(std::shared_ptr<Chosen> folder)
{
    SerialQueue &queue = m_queue;
    if (folder->isIndexed) {
        const auto lookAgain = [folder] {
            return folder->contents.update(folder->contents.survey());
        };
        co_return co_await queue.run(lookAgain);
    }
    // The database is read while the disk is looked at.
    const auto survey = [folder] {
        return folder->contents.survey();
    };
    const QPointer self(this);
    QCoro::Task<VdirFolder::Survey> surveying = queue.run(survey);
    std::optional<std::vector<CachedFile>> cache = co_await m_persistence.readFileCache(folder->cacheScope);
    VdirFolder::Survey found = co_await surveying;
    if (!self) {
        co_return VdirFolder::News();
    }
    // Given away, so that thousands of names and texts are thrown away over there.
    const auto takeOver = [folder, &cache, &found] {
        return folder->contents.update(std::move(found),
                                       cache ? std::move(*cache) : std::vector<CachedFile>());
    };
    co_return co_await queue.run(takeOver);
}

void VdirReminderStore::takeNews(Chosen &folder, VdirFolder::News &news)
{
    if (!news.error.isEmpty() || m_chosen.get() != &folder) {
        return;
    }
    folder.isIndexed = true;
    folder.sinceUpdate.start();
    m_hasUntoldChange |= news.hasChanged;
    if (!news.changed.empty() || !news.removed.isEmpty()) {
        m_persistence.saveFileCache(folder.cacheScope, std::move(news.changed), news.removed);
    }
    watch(news.folders);
    tellUnreadable(news.unreadable);
}

void VdirReminderStore::watch(const QStringList &folders)
{
    const QStringList watched = m_watcher.directories();
    QStringList unwanted;
    std::copy_if(watched.begin(), watched.end(), std::back_inserter(unwanted),
                 [&folders](const QString &path) { return !folders.contains(path); });
    if (!unwanted.isEmpty()) {
        m_watcher.removePaths(unwanted);
    }
    m_watcher.addPaths(folders);
}

void VdirReminderStore::lookAgain()
{
    if (std::exchange(m_isLookAwaited, true)) {
        return;
    }
    m_clock.after(ChangeDelay, this, [this] {
        m_isLookAwaited = false;
        launch(lookForChanges(), QStringLiteral("Looking for changed reminders"));
    });
}

QCoro::Task<> VdirReminderStore::lookForChanges()
{
    if (!m_chosen || !m_chosen->isIndexed || m_chosen->contents.path() != folderPath()) {
        co_return;
    }
    const QPointer self(this);
    co_await update(m_chosen);
    if (self && std::exchange(m_hasUntoldChange, false)) {
        Q_EMIT changed();
    }
}

void VdirReminderStore::tellUnreadable(const QStringList &files)
{
    if (files.isEmpty()) {
        return;
    }
    QString message = files.mid(0, MostNamedFiles).join(u'\n');
    if (const int more = int(files.size() - MostNamedFiles); more > 0) {
        message += u'\n' + tr("And %n more.", nullptr, more);
    }
    Q_EMIT problemFound(message);
}

template <typename T>
T VdirReminderStore::valueOf(VdirFolder::Result<T> result)
{
    if (!result.error.isEmpty()) {
        throw ReminderStoreError(result.error);
    }
    return std::move(result.value);
}

// Lists.

QCoro::Task<std::vector<ReminderList>> VdirReminderStore::lists()
{
    const std::shared_ptr<Chosen> folder = chosen();
    const auto work = [folder] {
        return folder->contents.readLists();
    };
    co_return valueOf(co_await m_queue.run(work));
}

QCoro::Task<std::optional<ReminderList>> VdirReminderStore::defaultListForNewReminders()
{
    const std::vector<ReminderList> all = co_await lists();
    const auto writable = std::find_if(
        all.begin(), all.end(), [](const ReminderList &list) { return list.allowsContentModifications; });
    co_return writable != all.end() ? std::optional(*writable) : std::nullopt;
}

QCoro::Task<std::vector<ReminderSource>> VdirReminderStore::sources()
{
    const std::vector<ReminderSource> folder{{folderPath(), true}};
    co_return folder;
}

QCoro::Task<ReminderList> VdirReminderStore::saveList(ReminderList list)
{
    const std::shared_ptr<Chosen> folder = chosen();
    const auto work = [folder, list] {
        return folder->contents.saveList(list);
    };
    co_return valueOf(co_await m_queue.run(work));
}

// Reminders.

QCoro::Task<std::optional<std::vector<Reminder>>>
VdirReminderStore::fetchReminders(ReminderPredicate predicate)
{
    const QPointer self(this);
    const std::shared_ptr<Chosen> folder = chosen();
    // Who wants the finished ones has mostly just asked for the open ones.
    const bool isFresh =
        folder->isIndexed && predicate.isCompleted && !folder->sinceUpdate.hasExpired(FreshTime);
    if (!isFresh) {
        co_await update(folder);
    }
    if (!self) {
        co_return std::nullopt;
    }
    if (!predicate.isCompleted) {
        m_hasUntoldChange = false;
    }
    const auto work = [folder, predicate] {
        return folder->contents.reminders(predicate);
    };
    std::vector<Reminder> reminders = co_await m_queue.run(work);
    co_return std::optional(std::move(reminders));
}

QCoro::Task<std::optional<Reminder>> VdirReminderStore::reminder(QString identifier)
{
    const QPointer self(this);
    const std::shared_ptr<Chosen> folder = chosen();
    const auto work = [folder, identifier] {
        return folder->contents.reminder(identifier);
    };
    if (folder->isIndexed) {
        std::optional<Reminder> found = valueOf(co_await m_queue.run(work));
        if (found || !self) {
            co_return found;
        }
    }
    // Another program may have given its file another name.
    co_await update(folder);
    if (!self) {
        co_return std::nullopt;
    }
    co_return valueOf(co_await m_queue.run(work));
}

QCoro::Task<QString> VdirReminderStore::save(Reminder reminder)
{
    const std::shared_ptr<Chosen> folder = chosen();
    const auto work = [folder, reminder, now = m_clock.now()] {
        return folder->contents.save(reminder, now);
    };
    co_return valueOf(co_await m_queue.run(work));
}

} // namespace vantrel
