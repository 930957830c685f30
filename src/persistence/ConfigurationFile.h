#pragma once

#include "foundations/FileSaver.h"
#include "foundations/SerialQueue.h"
#include "persistence/StorageProblem.h"

#include <QCoreApplication>
#include <QMutex>

#include <atomic>
#include <functional>
#include <optional>
#include <vector>

namespace vantrel {

/**
 * One of the two files with the shape of the board, and what was last read from it or saved to it. `Record`
 * is Column or SwimLane.
 *
 * A file that cannot be read is kept aside before anything is written, and is not replaced if that fails.
 * Loaded and saved on the GUI thread; cached() may be asked on any. What is saved is written on the
 * database's queue, so that it reaches the disk before the placements that follow it. Owned by
 * PersistenceManager.
 */
template <typename Record>
class ConfigurationFile
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::ConfigurationFile)
public:
    struct Listener
    {
        /** Called on the queue too. */
        std::function<void(const StorageProblem &)> problemFound;
        /** Called once a file could not be read, before defaults take over. */
        std::function<void()> shapeLost;
    };

    ConfigurationFile(QString path, FileSaver &saver, SerialQueue &queue, Listener listener);
    Q_DISABLE_COPY_MOVE(ConfigurationFile)

    /**
     * The cached records, or those of the file; nothing if it is missing or cannot be read. What is still on
     * its way to the disk is what the file says.
     */
    std::optional<std::vector<Record>> load(bool forceFresh);
    /** Caches the records and has them written. False if the file must not be replaced. */
    bool save(const std::vector<Record> &records);
    /** Has written again what could not be. */
    void retry();

    std::optional<std::vector<Record>> cached() const;
    void forgetCache();

private:
    /** On the queue. */
    void write(const std::vector<Record> &records);
    std::optional<std::vector<Record>> handleUnreadable(const QString &reason);
    void setCache(std::optional<std::vector<Record>> records);
    void report(StorageProblem::Kind kind, const QString &message, const QString &detail);

    QString m_path;
    FileSaver &m_saver;
    SerialQueue &m_queue;
    Listener m_listener;
    mutable QMutex m_mutex;
    std::optional<std::vector<Record>> m_cache;
    bool m_mustNotSave = false;
    std::atomic<bool> m_isKeptAside = false;
    std::atomic<int> m_pendingWrites = 0;
    /** What could not be written. Met on the queue only. */
    std::optional<std::vector<Record>> m_unwritten;
};

} // namespace vantrel
