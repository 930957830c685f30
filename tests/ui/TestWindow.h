#pragma once

#include "app/MainWindow.h"
#include "support/TestServices.h"
#include "viewmodels/AppViewModel.h"

#include <QImage>
#include <QKeySequence>
#include <QQuickItem>
#include <QQuickWindow>

#include <functional>
#include <memory>

namespace vantrel::test {

/**
 * The whole program with its window, offscreen. The clock is turned by hand; only what Qt Quick does by
 * itself takes real time, and little of it, as the fake desktop asks for no motion.
 */
class TestWindow
{
public:
    TestWindow();
    ~TestWindow();
    Q_DISABLE_COPY_MOVE(TestWindow)

    /** Starts the program and waits until its window shows a loaded board. */
    void start();
    /** Opens the window of services that were begun by the test. */
    void open();
    /** Ends the program as its user does, and starts it again on the same folder. */
    void restart();

    Services &operator*() { return *services; }
    Services *operator->() { return services.operator->(); }
    AppViewModel &app() { return services.viewModels(); }
    QQuickWindow &window() { return *m_window->window(); }

    /** The item of that object name that can be seen; nullptr if there is none. */
    QQuickItem *item(const QString &objectName) const;
    /** The item with the focus. */
    QString focusName() const;
    /** Runs both clocks until `isTrue`, five seconds of real time at most; false if that was not enough. */
    bool wait(const std::function<bool()> &isTrue);

    void click(const QString &objectName);
    /** One key combination after the other: "Ctrl+N", "Tab Tab Return". */
    void press(const QString &keys);
    void type(const QString &text);

    QImage picture();
    /** What Qt and the QML engine have complained of since the start, but for what the environment is to
     * blame. */
    QString complaints() const;

    TestServices services;

private:
    std::unique_ptr<MainWindow> m_window;
};

} // namespace vantrel::test
