#include "persistence/PersistenceManager.h"

#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "persistence/BoardStore.h"
#include "persistence/ConfigurationFile.h"
#include "persistence/StableIds.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace vantrel {

namespace {

struct FileNames
{
    QStringView database;
    QStringView board;
    QStringView swimLanes;
    QStringView appConfigKey;
};

const FileNames &fileNames(const AppConfig &config)
{
    static constexpr FileNames production{u"taskPositions.sqlite", u"vantrel-board-configuration.json",
                                          u"swimlanes.json", keys::AppConfiguration};
    static constexpr FileNames testing{u"devTaskPositions.sqlite", u"dev-vantrel-board-configuration.json",
                                       u"devSwimlanes.json", keys::DevAppConfiguration};
    return config.isTesting() ? testing : production;
}

} // namespace

PersistenceManager::PersistenceManager(const AppConfig &config, UserDefaults &defaults, FileSaver &saver,
                                       Clock &clock, const QByteArray &vfsName, QObject *parent)
    : QObject(parent), m_config(config), m_defaults(defaults), m_clock(clock)
{
    makeDirectory();
    const auto listen = [this](const StorageProblem &problem) {
        report(problem);
    };
    const auto keepPlacements = [this] {
        m_store->database.queue().sync([this, now = m_clock.now()] { m_store->database.backUp(now); });
    };
    const auto recovered = [this] {
        QMetaObject::invokeMethod(this, &PersistenceManager::writingRecovered, Qt::QueuedConnection);
    };
    const FileNames &names = fileNames(config);
    const QString databasePath = config.filePath(names.database.toString());
    m_isFirstRun = !QFileInfo::exists(databasePath);
    m_store = std::make_unique<BoardStore>(databasePath, vfsName, listen, recovered);
    SerialQueue &queue = m_store->database.queue();
    m_boardFile = std::make_unique<ConfigurationFile<Column>>(
        config.filePath(names.board.toString()), saver, queue,
        ConfigurationFile<Column>::Listener{listen, keepPlacements});
    m_swimLaneFile = std::make_unique<ConfigurationFile<SwimLane>>(
        config.filePath(names.swimLanes.toString()), saver, queue,
        ConfigurationFile<SwimLane>::Listener{listen, keepPlacements});
    queue.async([store = m_store.get(), now = m_clock.now()] { store->database.open(now); });
}

PersistenceManager::~PersistenceManager()
{
    m_boardFile->retry();
    m_swimLaneFile->retry();
}

void PersistenceManager::makeDirectory()
{
    const QFileInfo directory(m_config.directory);
    if (directory.isDir()) {
        return;
    }
    constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;
    if (QDir().mkpath(directory.absolutePath()) && QDir().mkdir(directory.absoluteFilePath(), ownerOnly)) {
        log::info(u"Created app directory at: " + m_config.directory);
        return;
    }
    const QString reason = qt_error_string();
    log::error(u"Failed to create app directory: " + reason);
    report({StorageProblem::Kind::FolderNotWritable,
            tr("The folder %1 could not be made: %2. Nothing is saved.").arg(m_config.directory, reason),
            {},
            true});
}

void PersistenceManager::report(const StorageProblem &problem)
{
    {
        const QMutexLocker lock(&m_problemsMutex);
        m_problems.push_back(problem);
    }
    QMetaObject::invokeMethod(
        this, [this, problem] { Q_EMIT problemFound(problem); }, Qt::QueuedConnection);
}

std::vector<StorageProblem> PersistenceManager::problems() const
{
    const QMutexLocker lock(&m_problemsMutex);
    return m_problems;
}

bool PersistenceManager::isWithoutDatabase() const
{
    const QMutexLocker lock(&m_problemsMutex);
    return std::any_of(m_problems.begin(), m_problems.end(), [](const StorageProblem &problem) {
        return problem.kind == StorageProblem::Kind::DatabaseNotOpened;
    });
}

QString PersistenceManager::taskPositionsDatabaseName() const
{
    return fileNames(m_config).database.toString();
}

std::optional<std::vector<Column>> PersistenceManager::loadBoardConfiguration(bool forceFresh)
{
    return m_boardFile->load(forceFresh);
}

bool PersistenceManager::saveBoardConfiguration(const std::vector<Column> &columns,
                                                std::optional<QUuid> boardId)
{
    std::vector<Column> stored = columns;
    assignStableIds(stored);
    if (!m_boardFile->save(stored)) {
        return false;
    }
    AppConfiguration configuration = loadAppConfiguration();
    configuration.lastBoardId = boardId.value_or(configuration.lastBoardId.value_or(DefaultBoardId));
    saveAppConfiguration(configuration);
    return true;
}

std::optional<std::vector<SwimLane>> PersistenceManager::loadSwimLaneConfiguration(bool forceFresh)
{
    return m_swimLaneFile->load(forceFresh);
}

bool PersistenceManager::saveSwimLaneConfiguration(const std::vector<SwimLane> &swimLanes)
{
    return m_swimLaneFile->save(swimLanes);
}

std::optional<std::vector<Column>> PersistenceManager::cachedBoardConfiguration() const
{
    return m_boardFile->cached();
}

std::optional<std::vector<SwimLane>> PersistenceManager::cachedSwimLaneConfiguration() const
{
    return m_swimLaneFile->cached();
}

StableIdMappings PersistenceManager::getStableIdMappings(const std::vector<Column> &columns,
                                                         const std::vector<SwimLane> &swimLanes)
{
    StableIdMappings mappings;
    for (const Column &column : columns) {
        if (column.stableId) {
            mappings.columns.insert(column.id, *column.stableId);
        }
    }
    for (const SwimLane &lane : swimLanes) {
        mappings.swimLanes.insert(lane.id, lane.stableId);
    }
    return mappings;
}

std::vector<Column> PersistenceManager::currentColumns()
{
    return m_boardFile->load(false).value_or(std::vector<Column>());
}

std::vector<SwimLane> PersistenceManager::currentSwimLanes()
{
    return m_swimLaneFile->load(false).value_or(std::vector<SwimLane>());
}

StableIdMappings PersistenceManager::currentStableIds()
{
    return getStableIdMappings(currentColumns(), currentSwimLanes());
}

AppConfiguration PersistenceManager::loadAppConfiguration()
{
    const std::optional<QByteArray> stored = m_defaults.data(fileNames(m_config).appConfigKey);
    if (const auto configuration = stored ? AppConfiguration::fromJson(*stored) : std::nullopt) {
        return *configuration;
    }
    log::info(QStringLiteral("Created default app configuration"));
    return {};
}

void PersistenceManager::saveAppConfiguration(const AppConfiguration &configuration)
{
    m_defaults.set(fileNames(m_config).appConfigKey, configuration.toJson());
    log::info(QStringLiteral("Saved app configuration"));
}

QCoro::Task<std::optional<QString>> PersistenceManager::backUpDatabase()
{
    return m_store->database.queue().run(
        [store = m_store.get(), now = m_clock.now()] { return store->database.backUp(now); });
}

QCoro::Task<> PersistenceManager::drained()
{
    return m_store->database.queue().run([] {});
}

qsizetype PersistenceManager::pendingJobs() const
{
    return m_store->database.queue().waitingJobs() + m_store->database.backlog();
}

void PersistenceManager::cleanup()
{
    m_boardFile->retry();
    m_swimLaneFile->retry();
    m_boardFile->forgetCache();
    m_swimLaneFile->forgetCache();
    m_store->database.queue().sync([store = m_store.get()] { store->database.close(); });
}

} // namespace vantrel
