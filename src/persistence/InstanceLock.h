#pragma once

#include "foundations/AppConfig.h"

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

namespace vantrel {

/**
 * Keeps a second copy of the program off the same application directory. One instance, made by main() before
 * anything is read; GUI thread.
 */
class InstanceLock : public QObject
{
    Q_OBJECT
public:
    enum class Outcome {
        First,       ///< this copy owns the directory from now on
        AlreadyRuns, ///< another copy does; it has been asked to raise its window
        NoLock,      ///< the lock file cannot be made, as in a folder that is not writable
    };

    explicit InstanceLock(const AppConfig &config, QObject *parent = nullptr);

    Outcome acquire();

Q_SIGNALS:
    /** Another copy was started: the user wants to see the window. */
    void raiseRequested();

private:
    void listen();
    void askToRaise() const;

    QLockFile m_file;
    QString m_serverName;
    QLocalServer m_server;
};

} // namespace vantrel
