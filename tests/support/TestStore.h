#pragma once

#include "foundations/AppConfig.h"
#include "foundations/FileSaver.h"
#include "foundations/UserDefaults.h"
#include "persistence/PersistenceManager.h"
#include "support/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace vantrel::test {

/** A store on a folder of its own that is thrown away with it, and all that it needs. */
class TestStore
{
public:
    explicit TestStore(QByteArray vfsName = {}) : m_vfsName(std::move(vfsName)) { open(); }

    PersistenceManager &operator*() { return *m_persistence; }
    PersistenceManager *operator->() { return m_persistence.get(); }

    /** Closes the store and opens it again, as the next start of the program does. */
    void reopen()
    {
        close();
        open();
    }
    void close() { m_persistence.reset(); }
    void open()
    {
        m_persistence = std::make_unique<PersistenceManager>(config, defaults, saver, clock, m_vfsName);
    }

    /** The stored row of a task, if it has one. */
    std::optional<PersistentTaskPosition> position(const QString &taskId)
    {
        for (const PersistentTaskPosition &row : m_persistence->loadAllTaskPositions()) {
            if (row.id == taskId) return row;
        }
        return std::nullopt;
    }

    QTemporaryDir directory;
    AppConfig config{AppEnvironment::Testing, directory.path()};
    FileCalls calls;
    FileSaver saver{calls};
    UserDefaults defaults{saver, config.filePath(QStringLiteral("devUser-defaults.json"))};
    ManualClock clock;

    QString databasePath() const { return config.filePath(QStringLiteral("devTaskPositions.sqlite")); }

private:
    QByteArray m_vfsName;
    std::unique_ptr<PersistenceManager> m_persistence;
};

} // namespace vantrel::test
