#pragma once

#include <QObject>

namespace vantrel {

class BoardState;
class NotificationCenter;
class ToastManager;

/**
 * Watches the board's work in progress while it is used: looks at the thresholds after each move, and warns
 * of an overload. One instance, owned by Services; GUI thread.
 */
class WIPMonitoringModifiers : public QObject
{
    Q_OBJECT
public:
    WIPMonitoringModifiers(BoardState &board, NotificationCenter &notifications, ToastManager &toasts,
                           QObject *parent = nullptr);

private:
    void handleTaskMoved();
    void showOverload();

    BoardState &m_board;
    ToastManager &m_toasts;
};

} // namespace vantrel
