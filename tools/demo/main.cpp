// The program on a sample of all its sources, in a folder that is thrown away: to be played with.

#include "SampleBoard.h"

#include "app/MainWindow.h"
#include "app/Services.h"
#include "platform/DesktopPlatform.h"
#include "platform/TerminationSignals.h"
#include "viewmodels/AppViewModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>

using namespace vantrel;

namespace {

constexpr std::chrono::seconds LongestGoodbye(10);

void nameApplication()
{
    QGuiApplication::setApplicationName(QStringLiteral("Vantrel Demo"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vantrel Demo"));
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
}

} // namespace

int main(int argc, char *argv[])
{
    const LogWriter logWriter;
    const QGuiApplication application(argc, argv);
    nameApplication();

    const QTemporaryDir directory;
    const AppConfig config{AppEnvironment::Testing, directory.path()};
    SystemClock clock;
    writeSampleBoard(config, clock, SampleSources::All);
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
                                    .desktop = platform.family});
    services.sounds.prepare();
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
    const int code = QGuiApplication::exec();
    return services.shutDown(LongestGoodbye) ? code : 1;
}
