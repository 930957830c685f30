#pragma once

#include "foundations/FileSaver.h"
#include "persistence/StorageProblem.h"

#include <QCoreApplication>
#include <QMutex>

#include <functional>
#include <optional>
#include <vector>

namespace vantrel {

/**
 * One of the two files with the shape of the board, and what was last read from it or saved to it. `Record`
 * is Column or SwimLane.
 *
 * A file that cannot be read is kept aside before anything is written, and is not replaced if that fails.
 * Owned by PersistenceManager. Loaded and saved on the GUI thread; cached() may be asked on any.
 */
template <typename Record>
class ConfigurationFile
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::ConfigurationFile)
public:
    struct Listener
    {
        std::function<void(const StorageProblem &)> problemFound;
        /** Called once a file could not be read, before defaults take over. */
        std::function<void()> shapeLost;
    };

    ConfigurationFile(QString path, FileSaver &saver, Listener listener);
    Q_DISABLE_COPY_MOVE(ConfigurationFile)

    /** The cached records, or those of the file; nothing if it is missing or cannot be read. */
    std::optional<std::vector<Record>> load(bool forceFresh);
    /** False if the records are not on the disk; they are cached all the same. */
    bool save(const std::vector<Record> &records);
    /** Saves again what save() could not. */
    void retry();

    std::optional<std::vector<Record>> cached() const;
    void forgetCache();

private:
    std::optional<std::vector<Record>> handleUnreadable(const QString &reason);
    void setCache(std::optional<std::vector<Record>> records);
    void report(StorageProblem::Kind kind, const QString &message, const QString &detail);

    QString m_path;
    FileSaver &m_saver;
    Listener m_listener;
    mutable QMutex m_mutex;
    std::optional<std::vector<Record>> m_cache;
    bool m_isKeptAside = false;
    bool m_mustNotSave = false;
    bool m_isUnsaved = false;
};

} // namespace vantrel
