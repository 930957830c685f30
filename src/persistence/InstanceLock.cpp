#include "persistence/InstanceLock.h"

#include "foundations/Log.h"
#include "foundations/Text.h"

#include <QLocalSocket>
#include <QStandardPaths>

namespace vantrel {

namespace {

constexpr int RaiseTimeoutMilliseconds = 2000;

/** One name for each application directory, short enough for a socket address. */
QString serverNameFor(const AppConfig &config)
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + u"/vantrel-" +
           QString::number(stableHash(config.directory), 16);
}

} // namespace

InstanceLock::InstanceLock(const AppConfig &config, QObject *parent)
    : QObject(parent),
      m_file(config.filePath(QStringLiteral("vantrel.lock"))),
      m_serverName(serverNameFor(config))
{
    // A lock is stale when its process is gone, however long a living one holds it.
    m_file.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            caller->deleteLater();
            Q_EMIT raiseRequested();
        }
    });
}

InstanceLock::Outcome InstanceLock::acquire()
{
    if (m_file.tryLock(0)) {
        listen();
        return Outcome::First;
    }
    if (m_file.error() == QLockFile::LockFailedError) {
        askToRaise();
        return Outcome::AlreadyRuns;
    }
    log::error(u"The lock file cannot be made: " + m_file.fileName());
    return Outcome::NoLock;
}

void InstanceLock::listen()
{
    // A copy that was killed leaves its socket behind; the lock says that nobody listens there.
    QLocalServer::removeServer(m_serverName);
    if (!m_server.listen(m_serverName)) {
        log::warning(u"Other copies cannot ask for the window: " + m_server.errorString());
    }
}

void InstanceLock::askToRaise() const
{
    QLocalSocket socket;
    socket.connectToServer(m_serverName);
    if (!socket.waitForConnected(RaiseTimeoutMilliseconds)) {
        log::warning(u"The running copy could not be asked for its window: " + socket.errorString());
        return;
    }
    socket.disconnectFromServer();
}

} // namespace vantrel
