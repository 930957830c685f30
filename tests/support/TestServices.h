#pragma once

#include "app/Services.h"
#include "support/FailingFileCalls.h"
#include "support/FakeDesktop.h"
#include "support/FakeTaskManager.h"
#include "support/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace vantrel::test {

/**
 * The whole program but its window, on a folder of its own that is thrown away with it: the Services of
 * production with a manual clock, a desktop that nobody sees and two scriptable sources. Two may live side by
 * side. Not started by the constructor, so that a test can prepare the folder and the sources.
 */
class TestServices
{
public:
    TestServices();
    /** Ends the program as the user's quitting does. */
    ~TestServices();
    Q_DISABLE_COPY_MOVE(TestServices)

    Services &operator*() { return *m_services; }
    Services *operator->() { return m_services.get(); }

    AppViewModel &viewModels() { return *m_viewModels; }

    /** Builds the services and the view models; loading has begun, and goes on with settle(). */
    void begin();
    /** begin(), then waits until the board is loaded or has failed to. */
    void start();
    /** Ends the program in order; false if something could not be stored. */
    bool stop();
    void restart();

    /** Runs all that is due now, on this thread and on the database's, until nothing is under way. */
    void settle();
    /** Lets that much time pass, with all that happens in it. */
    void advance(double seconds);

    QString path(const QString &fileName) const { return config.filePath(fileName); }
    QString databasePath() const { return path(QStringLiteral("devTaskPositions.sqlite")); }
    QString boardFilePath() const { return path(QStringLiteral("dev-vantrel-board-configuration.json")); }
    QString swimLanesFilePath() const { return path(QStringLiteral("devSwimlanes.json")); }

    QTemporaryDir directory;
    AppConfig config{AppEnvironment::Testing, directory.path()};
    ManualClock clock;
    FailingFileCalls files;
    FakeDesktop desktop;
    /** Set before begin(): the real OmniFocus source on these scripts, in place of the scriptable one below.
     */
    ScriptRunner *scripts = nullptr;
    FakeTaskManager omniFocus{TaskManagerType::OmniFocus, clock};
    FakeTaskManager reminders{TaskManagerType::Reminders, clock};
    /** Reminders come from the folder of the user defaults in place of the scriptable source. */
    bool usesReminderFolder = false;
    QByteArray databaseVfs;

private:
    bool isWorking() const;

    std::unique_ptr<Services> m_services;
    std::unique_ptr<AppViewModel> m_viewModels;
};

} // namespace vantrel::test
