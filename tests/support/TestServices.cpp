#include "support/TestServices.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThreadPool>

#include <algorithm>

namespace vantrel::test {

namespace {
constexpr qint64 PatienceMilliseconds = 20000;
} // namespace

TestServices::TestServices() = default;

TestServices::~TestServices()
{
    stop();
}

void TestServices::begin()
{
    m_services =
        std::make_unique<Services>(config, Ports{.clock = clock,
                                                 .files = files,
                                                 .announcements = desktop.announcements,
                                                 .sounds = desktop.sounds,
                                                 .appearance = desktop.appearance,
                                                 .clipboard = desktop.clipboard,
                                                 .urls = desktop.urls,
                                                 .screen = desktop.screen,
                                                 .scripts = scripts,
                                                 .omniFocus = scripts ? nullptr : &omniFocus,
                                                 .reminders = usesReminderFolder ? nullptr : &reminders,
                                                 .databaseVfs = databaseVfs});
    m_viewModels = std::make_unique<AppViewModel>(viewModelServices(*m_services));
}

void TestServices::start()
{
    begin();
    settle();
    // The pauses that let the eye see the progress bar reach its end.
    advance(1.0);
}

bool TestServices::stop()
{
    const bool isStored = !m_services || m_services->shutDown(std::chrono::seconds(10));
    m_viewModels.reset();
    m_services.reset();
    return isStored;
}

void TestServices::restart()
{
    stop();
    start();
}

void TestServices::settle()
{
    QElapsedTimer patience;
    patience.start();
    for (int quietTurns = 0; quietTurns < 5; ++quietTurns) {
        QCoreApplication::processEvents();
        clock.advance(0.0);
        if (isWorking()) {
            quietTurns = 0;
        }
        if (patience.hasExpired(PatienceMilliseconds)) {
            qFatal("the services do not come to rest");
        }
    }
}

bool TestServices::isWorking() const
{
    return m_services->persistence.pendingJobs() > 0 || m_services->reminderFolder.pendingJobs() > 0 ||
           m_services->defaults.pendingJobs() > 0 || m_services->board->persistenceQueue().isProcessing() ||
           m_services->omniFocusBridge->isBusy() || QThreadPool::globalInstance()->activeThreadCount() > 0;
}

void TestServices::advance(double seconds)
{
    const double step = std::max(0.1, seconds / 20.0);
    for (double left = seconds; left > 0.0; left -= step) {
        clock.advance(std::min(left, step));
        settle();
    }
}

} // namespace vantrel::test
