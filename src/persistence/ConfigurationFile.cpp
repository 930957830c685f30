#include "persistence/ConfigurationFile.h"

#include "foundations/Log.h"
#include "persistence/BoardConfigurationJson.h"
#include "persistence/StableIds.h"

#include <QFile>
#include <QMutexLocker>

#include <utility>

namespace vantrel {

namespace {

/** What the two kinds of record do not have in common. */
template <typename Record>
struct Form;

template <>
struct Form<Column>
{
    static constexpr QStringView Loaded = u"Loaded board configuration from: ";
    static constexpr QStringView NotLoaded = u"Failed to load board configuration: ";
    static constexpr QStringView Saved = u"Saved board configuration to: ";
    static constexpr QStringView NotSaved = u"Failed to write board configuration: ";

    static QByteArray encode(const std::vector<Column> &columns) { return encodeColumns(columns); }
    static DecodedRecords<Column> decode(const QByteArray &json) { return decodeColumns(json); }
    static void logMissing() {}
    static void logLoaded(const QString &path) { log::debug(Loaded + path); }
};

template <>
struct Form<SwimLane>
{
    static constexpr QStringView Loaded = u"Loaded swimlane configuration from: ";
    static constexpr QStringView NotLoaded = u"Failed to load swimlane configuration: ";
    static constexpr QStringView Saved = u"Saved swimlane configuration to: ";
    static constexpr QStringView NotSaved = u"Failed to write swimlane configuration: ";

    static QByteArray encode(const std::vector<SwimLane> &lanes) { return encodeSwimLanes(lanes); }
    static DecodedRecords<SwimLane> decode(const QByteArray &json) { return decodeSwimLanes(json); }
    static void logMissing()
    {
        log::info(QStringLiteral("No saved swimlane configuration found, using default"));
    }
    static void logLoaded(const QString &path) { log::info(Loaded + path); }
};

} // namespace

template <typename Record>
ConfigurationFile<Record>::ConfigurationFile(QString path, FileSaver &saver, SerialQueue &queue,
                                             Listener listener)
    : m_path(std::move(path)), m_saver(saver), m_queue(queue), m_listener(std::move(listener))
{
}

template <typename Record>
std::optional<std::vector<Record>> ConfigurationFile<Record>::load(bool forceFresh)
{
    using RecordForm = Form<Record>;
    if (!forceFresh || m_pendingWrites > 0) {
        if (std::optional<std::vector<Record>> known = cached()) {
            return known;
        }
    }
    QFile file(m_path);
    if (!file.exists()) {
        RecordForm::logMissing();
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return handleUnreadable(file.errorString());
    }
    DecodedRecords<Record> decoded = RecordForm::decode(file.readAll());
    if (file.error() != QFileDevice::NoError || !decoded.records) {
        return handleUnreadable(decoded.records ? file.errorString() : decoded.error);
    }
    m_mustNotSave = false;
    RecordForm::logLoaded(m_path);
    if (separateDuplicates(*decoded.records)) {
        log::warning(u"Records of the same identity in " + m_path + u": the later ones get a new one");
        save(*decoded.records);
    } else {
        setCache(decoded.records);
    }
    return decoded.records;
}

template <typename Record>
bool ConfigurationFile<Record>::save(const std::vector<Record> &records)
{
    setCache(records);
    if (m_mustNotSave) {
        report(StorageProblem::Kind::ConfigurationNotSaved,
               tr("%1 could not be read and is left untouched. Changes last only until the program ends.")
                   .arg(m_path),
               {});
        return false;
    }
    ++m_pendingWrites;
    m_queue.async([this, records] {
        write(records);
        --m_pendingWrites;
    });
    return true;
}

template <typename Record>
void ConfigurationFile<Record>::write(const std::vector<Record> &records)
{
    const FileOutcome outcome = m_saver.save(m_path, Form<Record>::encode(records));
    if (!outcome.isOk()) {
        m_unwritten = records;
        log::error(Form<Record>::NotSaved + outcome.error);
        report(StorageProblem::Kind::ConfigurationNotSaved, outcome.error, {});
        return;
    }
    m_unwritten.reset();
    m_isKeptAside = false;
    log::info(Form<Record>::Saved + m_path);
}

template <typename Record>
void ConfigurationFile<Record>::retry()
{
    m_queue.async([this] {
        if (const auto records = std::exchange(m_unwritten, std::nullopt)) {
            write(*records);
        }
    });
}

template <typename Record>
std::optional<std::vector<Record>> ConfigurationFile<Record>::cached() const
{
    const QMutexLocker lock(&m_mutex);
    return m_cache;
}

template <typename Record>
void ConfigurationFile<Record>::forgetCache()
{
    setCache(std::nullopt);
}

template <typename Record>
void ConfigurationFile<Record>::setCache(std::optional<std::vector<Record>> records)
{
    const QMutexLocker lock(&m_mutex);
    m_cache = std::move(records);
}

template <typename Record>
std::optional<std::vector<Record>> ConfigurationFile<Record>::handleUnreadable(const QString &reason)
{
    log::error(Form<Record>::NotLoaded + reason);
    if (m_isKeptAside.exchange(true)) {
        return std::nullopt;
    }
    const FileOutcome kept = m_saver.keepAside(m_path);
    m_mustNotSave = !kept.isOk();
    m_listener.shapeLost();
    report(
        StorageProblem::Kind::ConfigurationUnreadable,
        kept.isOk()
            ? tr("%1 could not be read, and defaults are used. A copy is kept as %2.").arg(m_path, kept.path)
            : tr("%1 could not be read and is left untouched. Defaults are used.").arg(m_path),
        reason);
    return std::nullopt;
}

template <typename Record>
void ConfigurationFile<Record>::report(StorageProblem::Kind kind, const QString &message,
                                       const QString &detail)
{
    m_listener.problemFound({kind, message, detail, false});
}

template class ConfigurationFile<Column>;
template class ConfigurationFile<SwimLane>;

} // namespace vantrel
