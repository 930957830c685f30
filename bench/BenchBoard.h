#pragma once

#include "RawStore.h"
#include "app/Services.h"
#include "support/FakeDesktop.h"

#include <QTemporaryDir>

#include <memory>

namespace vantrel::bench {

/** The program's services on a folder of its own, with a board of 5 columns, 10 swimlanes and as many tasks
 * as wanted. */
class BenchBoard
{
public:
    explicit BenchBoard(int taskCount);
    /** On a folder that fillFolder() has made; the load has only begun. */
    explicit BenchBoard(const QString &folder);
    ~BenchBoard();

    Services &services() { return *m_services; }
    BoardState &board() { return *m_services->board; }
    /** Ends the program, keeping the folder. */
    void stop();
    /** Starts it on the folder; the board is loaded when this returns. */
    void start();
    /** Runs until nothing is under way in the store. */
    void settle();
    /** Puts the shape of the board into the folder's files. */
    void writeShape();

    QString databasePath() const { return m_config.filePath(QStringLiteral("devTaskPositions.sqlite")); }
    const QStringList &columnIds() const { return m_columnIds; }
    const QStringList &swimLaneIds() const { return m_swimLaneIds; }

private:
    void begin();

    QTemporaryDir m_directory;
    AppConfig m_config;
    SystemClock m_clock;
    FileCalls m_files;
    test::FakeDesktop m_desktop;
    std::unique_ptr<Services> m_services;
    QStringList m_columnIds;
    QStringList m_swimLaneIds;
};

/** Makes a folder with the board of BenchBoard(taskCount). */
void fillFolder(const QString &folder, int taskCount);

} // namespace vantrel::bench
