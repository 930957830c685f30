#pragma once

#include <QQmlApplicationEngine>
#include <QStringList>

class QQuickWindow;

namespace vantrel {

class AppViewModel;

/**
 * The main window: the QML engine and the root of the interface in it. Owned by main(), or by whoever else
 * wants to see the window; GUI thread. The view model outlives it.
 */
class MainWindow
{
public:
    explicit MainWindow(AppViewModel &app);
    ~MainWindow();
    Q_DISABLE_COPY_MOVE(MainWindow)

    /** nullptr if the interface could not be loaded; warnings() then says why. */
    QQuickWindow *window() const { return m_window; }

    /** What the engine has complained of so far. */
    QStringList warnings() const { return m_warnings; }

    /** Brings the window before the others. */
    void raise();

private:
    QStringList m_warnings;
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_window = nullptr;
};

} // namespace vantrel
