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

#include <cstdio>

using namespace vantrel;

namespace {

constexpr std::chrono::seconds LongestGoodbye(10);

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

} // namespace

int main(int argc, char *argv[])
{
    // Where the ffmpeg back end finds no sound card it ends the program.
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND")) {
        qputenv("QT_MEDIA_BACKEND", "gstreamer");
    }
    const LogWriter logWriter;
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
                                    .screen = *platform.screen});
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
                     [&services] { services.shutDown(LongestGoodbye); });
    // Preparing the sounds may take a moment: after the first frame.
    clock.after(1.0, window.window(), [&platform] { platform.sounds->prepare(); });
    return QGuiApplication::exec();
}
