#include "BenchBoard.h"

#include "Measure.h"

namespace vantrel::bench {

BenchBoard::BenchBoard(int taskCount) : m_config{AppEnvironment::Testing, m_directory.path()}
{
    start();
    writeShape();
    stop();
    RawStore(databasePath()).fill(taskCount, m_columnIds, m_swimLaneIds);
    start();
}

BenchBoard::BenchBoard(const QString &folder) : m_config{AppEnvironment::Testing, folder}
{
    begin();
}

void fillFolder(const QString &folder, int taskCount)
{
    BenchBoard bench(folder);
    LoopWatch().runUntil([&bench] { return bench.board().loadingState() == BoardLoadingState::Loaded; });
    bench.writeShape();
    bench.stop();
    RawStore(bench.databasePath()).fill(taskCount, bench.columnIds(), bench.swimLaneIds());
}

BenchBoard::~BenchBoard() = default;

void BenchBoard::writeShape()
{
    std::vector<Column> columns = Column::defaultColumns();
    for (const char *name : {"Review", "Testing"}) {
        Column column = columns[1];
        column.id = ColumnId::create();
        column.name = QString::fromLatin1(name);
        column.stableId = u"active_" + column.name;
        column.wipLimit.reset();
        columns.insert(columns.end() - 1, column);
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        columns[i].position = static_cast<int>(i);
        m_columnIds.append(columns[i].id.text());
    }
    std::vector<SwimLane> lanes{SwimLane::defaultSwimLane()};
    for (int i = 1; i < 10; ++i) {
        SwimLane lane = SwimLane::defaultSwimLane();
        lane.name = QStringLiteral("Lane %1").arg(i);
        lane.stableId = u"swimlane_" + lane.id.text();
        lane.position = i;
        lanes.push_back(lane);
    }
    for (const SwimLane &lane : lanes) {
        m_swimLaneIds.append(lane.id.text());
    }
    m_services->persistence.saveBoardConfiguration(columns);
    m_services->persistence.saveSwimLaneConfiguration(lanes);
}

void BenchBoard::begin()
{
    m_services = std::make_unique<Services>(
        m_config, Ports{m_clock, m_files, m_desktop.announcements, m_desktop.sounds, m_desktop.appearance,
                        m_desktop.clipboard, m_desktop.urls, m_desktop.screen});
}

void BenchBoard::start()
{
    begin();
    LoopWatch().runUntil([this] { return board().loadingState() == BoardLoadingState::Loaded; });
    settle();
}

void BenchBoard::stop()
{
    m_services->shutDown(std::chrono::seconds(30));
    m_services.reset();
}

void BenchBoard::settle()
{
    LoopWatch().runUntil([this] {
        return !board().persistenceQueue().isProcessing() && m_services->persistence.pendingJobs() == 0;
    });
}

} // namespace vantrel::bench
