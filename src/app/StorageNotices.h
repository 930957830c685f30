#pragma once

#include "feedback/ToastManager.h"
#include "persistence/StorageProblem.h"

#include <QObject>

#include <deque>

namespace vantrel {

class PersistenceManager;
class UserDefaults;

/**
 * Tells the user what is wrong with storage, one toast at a time, each of which stays until it is dismissed:
 * a toast of something else only covers it for its time. GUI thread; owned by the program's Services.
 */
class StorageNotices : public QObject
{
    Q_OBJECT
public:
    /** Also tells what was found before anybody could listen. */
    StorageNotices(PersistenceManager &persistence, UserDefaults &defaults, ToastManager &toasts,
                   QObject *parent = nullptr);

    /** Another problem of files that the user must learn of. */
    void tell(const QString &message);

private:
    void add(const StorageProblem &problem);
    void handleRecovery();
    void handleToastChange();
    void showFirst();

    ToastManager &m_toasts;
    /** What the user has not dismissed yet; the first one is, or was last, on show. */
    std::deque<StorageProblem> m_problems;
    /** True while the toast on show is that of the first problem. */
    bool m_isShown = false;
    /** The user has been told that something is not stored yet. */
    bool m_isRecoveryAwaited = false;
};

} // namespace vantrel
