#include "app/Program.h"

#include "foundations/Log.h"

#include <QFont>
#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdlib>

namespace vantrel {

namespace {

constexpr std::chrono::seconds LongestGoodbye(10);
/** The board stands by then, and the processor has nothing better to do. */
constexpr double SoundPreparationDelay = 1.0;

} // namespace

void Program::nameApplication(const QString &name)
{
    QGuiApplication::setApplicationName(name);
    QGuiApplication::setApplicationDisplayName(name);
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
}

Program::Program(const AppConfig &config, Sources sources)
    : m_services(config, ports(m_clock, m_files, m_platform, sources)),
      m_app(viewModelServices(m_services)),
      m_window(m_app)
{
}

Ports Program::ports(Clock &clock, FileCalls &files, const DesktopPlatform &platform, Sources sources)
{
    Ports ports{clock,
                files,
                *platform.announcements,
                *platform.sounds,
                *platform.appearance,
                *platform.clipboard,
                *platform.urls,
                *platform.screen,
                platform.family};
    if (sources == Sources::OfThisComputer) {
        ports.scripts = platform.scripts.get();
        ports.reminderStore = platform.reminders.get();
    }
    return ports;
}

int Program::exec()
{
    if (!m_window.window()) {
        log::error(u"The window could not be opened: " + m_window.warnings().join(u'\n'));
        return EXIT_FAILURE;
    }
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::received, qApp, [] { QCoreApplication::quit(); });
    QObject::connect(m_app.commands(), &Commands::quitRequested, qApp, [] { QCoreApplication::quit(); });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [this] { endInOrder(); });
    QObject::connect(qApp, &QGuiApplication::applicationStateChanged, qApp,
                     [this](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive) {
                             m_services.reminderFolder.lookAgain();
                         }
                     });
    m_clock.after(SoundPreparationDelay, m_window.window(), [this] { m_services.sounds.prepare(); });
    return QGuiApplication::exec();
}

void Program::endInOrder()
{
    if (!m_services.shutDown(LongestGoodbye)) {
        // A disk or a program that does not answer would hold up the destructors for ever.
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace vantrel
