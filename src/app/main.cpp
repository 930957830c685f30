#include "app/Program.h"
#include "foundations/Log.h"
#include "persistence/InstanceLock.h"

#include <QDir>
#include <QGuiApplication>

using namespace vantrel;

namespace {

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
    const LogWriter logWriter;
    // The program reads no command line, and neither shall Qt.
    argc = 1;
    const QGuiApplication application(argc, argv);
    Program::nameApplication(QStringLiteral("Vantrel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.vantrel.apps.Vantrel"));

    const AppConfig config = prepareDirectory();
    InstanceLock lock(config);
    if (lock.acquire() == InstanceLock::Outcome::AlreadyRuns) {
        return EXIT_SUCCESS;
    }
    Program program(config, Program::Sources::OfThisComputer);
    QObject::connect(&lock, &InstanceLock::raiseRequested, &application, [&program] { program.raise(); });
    return program.exec();
}
