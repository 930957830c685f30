#pragma once

#include "app/MainWindow.h"
#include "app/Services.h"
#include "foundations/Clock.h"
#include "foundations/FileSaver.h"
#include "platform/DesktopPlatform.h"
#include "platform/TerminationSignals.h"
#include "viewmodels/AppViewModel.h"

namespace vantrel {

/**
 * The program from the ports of this desktop to its window, until the user or the system has it end. One
 * instance, made by main() after the QGuiApplication; GUI thread.
 */
class Program
{
public:
    /** Whether the tasks are those of this computer, or samples stand in for OmniFocus. */
    enum class Sources { OfThisComputer, Samples };

    /** To be called before a Program is made. */
    static void nameApplication(const QString &name);

    Program(const AppConfig &config, Sources sources);
    Q_DISABLE_COPY_MOVE(Program)

    /** Brings the window before the others. */
    void raise() { m_window.raise(); }
    /** Runs until the end of the program, and gives its exit code. */
    int exec();

private:
    static Ports ports(Clock &clock, FileCalls &files, const DesktopPlatform &platform, Sources sources);
    void endInOrder();

    SystemClock m_clock;
    FileCalls m_files;
    DesktopPlatform m_platform = makeDesktopPlatform();
    Services m_services;
    AppViewModel m_app;
    MainWindow m_window;
};

} // namespace vantrel
