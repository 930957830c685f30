#include "app/MainWindow.h"
#include "app/Services.h"
#include "persistence/InstanceLock.h"
#include "platform/DesktopPlatform.h"
#include "platform/TerminationSignals.h"
#include "viewmodels/AppViewModel.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdlib>

using namespace vantrel;

namespace {

constexpr std::chrono::seconds LongestGoodbye(10);
/** The board stands by then, and the processor has nothing better to do. */
constexpr double SoundPreparationDelay = 1.0;

void nameApplication()
{
    QGuiApplication::setApplicationName(QStringLiteral("Vantrel"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vantrel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.vantrel.apps.Vantrel"));
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
}

/** The folder of the user's tasks, for nobody else to read. The store says so if it cannot be made. */
AppConfig prepareDirectory()
{
    const AppConfig config{AppEnvironment::Production, userApplicationDirectory()};
    QDir().mkpath(config.directory);
    QFile::setPermissions(config.directory,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return config;
}

void endInOrder(Services &services)
{
    if (!services.shutDown(LongestGoodbye)) {
        // A disk or a program that does not answer would hold up the destructors for ever.
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter;
    // The program reads no command line, and neither shall Qt.
    argc = 1;
    const QGuiApplication application(argc, argv);
    nameApplication();

    const AppConfig config = prepareDirectory();
    InstanceLock lock(config);
    if (lock.acquire() == InstanceLock::Outcome::AlreadyRuns) {
        return 0;
    }

    SystemClock clock;
    FileCalls files;
    const DesktopPlatform platform = makeDesktopPlatform();
    Services services(config, Ports{.clock = clock,
                                    .files = files,
                                    .announcements = *platform.announcements,
                                    .sounds = *platform.sounds,
                                    .appearance = *platform.appearance,
                                    .clipboard = *platform.clipboard,
                                    .urls = *platform.urls,
                                    .screen = *platform.screen,
                                    .desktop = platform.family,
                                    .scripts = platform.scripts.get(),
                                    .reminderStore = platform.reminders.get()});
    AppViewModel app(viewModelServices(services));
    MainWindow window(app);
    if (!window.window()) {
        log::error(u"The window could not be opened: " + window.warnings().join(u'\n'));
        return 1;
    }

    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, &application, [] { QCoreApplication::quit(); });
    QObject::connect(app.commands(), &Commands::quitRequested, &application,
                     [] { QCoreApplication::quit(); });
    QObject::connect(&lock, &InstanceLock::raiseRequested, &application, [&window] { window.raise(); });
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application,
                     [&services] { endInOrder(services); });
    clock.after(SoundPreparationDelay, window.window(), [&services] { services.sounds.prepare(); });
    return QGuiApplication::exec();
}
