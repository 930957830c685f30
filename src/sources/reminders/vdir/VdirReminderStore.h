#pragma once

#include "foundations/Clock.h"
#include "foundations/SerialQueue.h"
#include "foundations/UserDefaults.h"
#include "sources/reminders/ReminderStore.h"
#include "sources/reminders/vdir/VdirFolder.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>

#include <functional>
#include <memory>

namespace vantrel {

class PersistenceManager;

/**
 * Reminders in a folder of iCalendar lists, which other programs read, write and synchronise: see VdirFolder.
 * The user chooses the folder (user default "remindersFolder"); until then access is not determined. The
 * folder is watched. All file work is done on a thread of its own. GUI thread; owned by Services.
 */
class VdirReminderStore final : public ReminderStore
{
    Q_OBJECT
public:
    VdirReminderStore(UserDefaults &defaults, PersistenceManager &persistence, FileCalls &calls,
                      Clock &clock);

    ReminderAuthorization authorizationStatus() const override;
    /** Asks nobody: the user chooses the folder when it suits. */
    QCoro::Task<bool> requestFullAccess() override;
    std::optional<QString> accessGuidance() const override;

    QCoro::Task<std::vector<ReminderList>> lists() override;
    /** The first list that can be written to. */
    QCoro::Task<std::optional<ReminderList>> defaultListForNewReminders() override;
    QCoro::Task<std::vector<ReminderSource>> sources() override;
    QCoro::Task<ReminderList> saveList(ReminderList list) override;
    QCoro::Task<std::optional<std::vector<Reminder>>> fetchReminders(ReminderPredicate predicate) override;
    QCoro::Task<std::optional<Reminder>> reminder(QString identifier) override;
    QCoro::Task<QString> save(Reminder reminder) override;

    /**
     * Sees soon whether other programs have changed anything; changed() tells. To be called when the user
     * comes back from them: a file that is written over in its place is no change of its folder, which is all
     * that is watched.
     */
    void lookAgain();

    /** Jobs under way on the thread of files. */
    qsizetype pendingJobs() const { return m_queue.waitingJobs(); }

private:
    /** One chosen folder. Its contents are for jobs of the queue only. */
    struct Chosen
    {
        Chosen(const QString &path, FileCalls &calls) : contents(path, calls) {}
        VdirFolder contents;
        QByteArray cacheScope;
        bool isIndexed = false;
        /** Since the last look into the folder. */
        QElapsedTimer sinceUpdate;
    };

    QString folderPath() const;
    /** The folder of the user default; throws if there is none. */
    std::shared_ptr<Chosen> chosen();
    /** Brings the index up to date. Throws if the folder cannot be read. */
    QCoro::Task<> update(std::shared_ptr<Chosen> folder);
    QCoro::Task<VdirFolder::News> look(std::shared_ptr<Chosen> folder);
    void takeNews(Chosen &folder, VdirFolder::News &news);
    void watch(const QStringList &folders);
    QCoro::Task<> lookForChanges();
    void tellUnreadable(const QStringList &files);
    template <typename T>
    static T valueOf(VdirFolder::Result<T> result);

    UserDefaults &m_defaults;
    PersistenceManager &m_persistence;
    FileCalls &m_calls;
    Clock &m_clock;
    std::shared_ptr<Chosen> m_chosen;
    QFileSystemWatcher m_watcher;
    bool m_isLookAwaited = false;
    /** Something has changed that nobody has fetched yet. */
    bool m_hasUntoldChange = false;
    /** Last: it ends before what its jobs use. */
    SerialQueue m_queue{"com.vantrel.reminders"};
};

} // namespace vantrel
