#include "viewmodels/AppViewModel.h"

#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"

#include <utility>

namespace vantrel {

namespace {
constexpr double ContentDelay = 0.3;
ExchangeServices exchangeServices(const ViewModelServices &services)
{
    return {services.board,     services.managers, services.notifications,
            services.announcer, services.toasts,   services.clipboard};
}

} // namespace

AppViewModel::AppViewModel(const ViewModelServices &services, QObject *parent)
    : QObject(parent),
      m_boardState(services.board),
      m_notifications(services.notifications),
      m_clock(services.clock),
      m_saveIndicator(services.saveIndicator),
      m_appearance(services.appearance),
      m_loading(services.board),
      m_taskList(services.board, services.repository, services.managers, services.notifications,
                 services.announcer, services.toasts, services.clock),
      m_permissionHelp(services.managers, services.urls, services.desktop),
      m_board({services.board, services.blocking, services.notifications, services.defaults, services.time,
               services.announcer, services.sounds, services.toasts, services.urls, services.clipboard,
               services.desktop}),
      m_analyze(services.managers, services.notifications, services.announcer, services.clock),
      m_optimize(services.board, services.defaults, services.time, services.notifications, services.announcer,
                 services.clock),
      m_commands(services.notifications, services.defaults, services.desktop),
      m_quickEntry({services.managers, services.repository, services.defaults, services.notifications,
                    services.announcer, services.toasts, services.clock}),
      m_remindersFolder(services.defaults, services.notifications, services.desktop),
      m_exporter(exchangeServices(services)),
      m_importer(exchangeServices(services)),
      m_toast(services.toasts),
      m_gauge(services.board)
{
    connect(&m_saveIndicator, &BackgroundSaveIndicator::isSavingChanged, this, &AppViewModel::savingChanged);
    connect(&m_boardState, &BoardState::taskFocusChanged, this, &AppViewModel::taskFocusChanged);
    connect(&m_boardState, &BoardState::organized, this, &AppViewModel::updateBoardEmpty);
    connect(&m_boardState, &BoardState::changed, this, &AppViewModel::updateBoardEmpty);
    connect(&m_taskList, &TaskListViewModel::viewModeChanged, this,
            [this] { m_commands.setViewMode(m_taskList.currentViewMode()); });
}

void AppViewModel::updateBoardEmpty()
{
    const bool isEmpty = m_boardState.hasBeenOrganized() && m_boardState.taskCount() == 0;
    if (std::exchange(m_isBoardEmpty, isEmpty) != isEmpty) {
        Q_EMIT boardEmptyChanged();
    }
}

void AppViewModel::contentAppeared()
{
    m_taskList.loadTasks();
    m_clock.after(ContentDelay, this, [this] {
        log::debug(QStringLiteral("Triggering SwimLane WIP count update when content view appears"));
        m_notifications.post(notifications::SwimLaneWIPCountsChanged,
                             QVariant::fromValue<QObject *>(&m_boardState));
    });
}

} // namespace vantrel
