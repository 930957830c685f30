// The program on a sample of all its sources, in a folder that is thrown away: to be played with.

#include "SampleBoard.h"

#include "app/Program.h"
#include "foundations/Log.h"

#include <QGuiApplication>
#include <QTemporaryDir>

using namespace vantrel;

int main(int argc, char *argv[])
{
    const LogWriter logWriter;
    const QGuiApplication application(argc, argv);
    Program::nameApplication(QStringLiteral("Vantrel Demo"));

    const QTemporaryDir directory;
    const AppConfig config{AppEnvironment::Testing, directory.path()};
    SystemClock clock;
    writeSampleBoard(config, clock, SampleSources::All);
    return Program(config, Program::Sources::Samples).exec();
}
