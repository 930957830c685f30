#include "board/WIPMonitoringModifiers.h"

#include "board/BoardState.h"
#include "feedback/ToastManager.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"

namespace vantrel {

WIPMonitoringModifiers::WIPMonitoringModifiers(BoardState &board, NotificationCenter &notifications,
                                               ToastManager &toasts, QObject *parent)
    : QObject(parent), m_board(board), m_toasts(toasts)
{
    notifications.observe(notifications::TaskMoved, this,
                          [this](const Notification &) { handleTaskMoved(); });
    notifications.observe(notifications::WIPThresholdChanged, this, [this](const Notification &notification) {
        if (notification.userInfo.value(QStringLiteral("isOverLimit")).toBool()) {
            showOverload();
        }
    });
}

/** The move has been made by now, so only what else changed since can cross a threshold here: a user who
 * moves a card on purpose is not told off for it. */
void WIPMonitoringModifiers::handleTaskMoved()
{
    const int count = m_board.calculateTotalWIP();
    m_board.invalidateDerivedCollections();
    m_board.notifyWIPThresholdChanges(count);
}

void WIPMonitoringModifiers::showOverload()
{
    m_toasts.show(tr("WIP limit exceeded! Consider completing tasks before starting new ones."),
                  ToastManager::ToastStyle::Warning);
    log::info(QStringLiteral("WIP limit exceeded - notification displayed"));
}

} // namespace vantrel
