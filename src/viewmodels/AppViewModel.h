#pragma once

#include "persistence/BackgroundSaveIndicator.h"
#include "viewmodels/AnalyzeViewModel.h"
#include "viewmodels/AppearanceModel.h"
#include "viewmodels/BoardLoadingViewModel.h"
#include "viewmodels/BoardViewModel.h"
#include "viewmodels/Commands.h"
#include "viewmodels/OptimizeViewModel.h"
#include "viewmodels/PermissionHelp.h"
#include "viewmodels/QuickTaskEntryViewModel.h"
#include "viewmodels/RemindersFolderModel.h"
#include "viewmodels/TaskImportViewModel.h"
#include "viewmodels/TaskListViewModel.h"
#include "viewmodels/ToastViewModel.h"
#include "viewmodels/WIPGaugeViewModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vantrel {

class Clipboard;
class TimeManager;
class UrlOpener;

/** What the view models need of the program. Everything outlives them. */
struct ViewModelServices
{
    BoardState &board;
    TaskBlockingManager &blocking;
    TaskRepository &repository;
    TaskManagerFactory &managers;
    NotificationCenter &notifications;
    UserDefaults &defaults;
    Clock &clock;
    TimeManager &time;
    Announcer &announcer;
    SoundManager &sounds;
    ToastManager &toasts;
    UrlOpener &urls;
    Clipboard &clipboard;
    BackgroundSaveIndicator &saveIndicator;
    const DesktopAppearance &appearance;
    DesktopFamily desktop = DesktopFamily::Linux;
};

/** All view models of the main window, as the window gets them. Owned by whoever opens the window; GUI
 * thread. */
class AppViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(vantrel::AppearanceModel *appearance READ appearance CONSTANT)
    Q_PROPERTY(vantrel::BoardLoadingViewModel *loading READ loading CONSTANT)
    Q_PROPERTY(vantrel::TaskListViewModel *taskList READ taskList CONSTANT)
    Q_PROPERTY(vantrel::PermissionHelp *permissionHelp READ permissionHelp CONSTANT)
    Q_PROPERTY(vantrel::BoardViewModel *board READ board CONSTANT)
    Q_PROPERTY(vantrel::AnalyzeViewModel *analyze READ analyze CONSTANT)
    Q_PROPERTY(vantrel::OptimizeViewModel *optimize READ optimize CONSTANT)
    Q_PROPERTY(vantrel::Commands *commands READ commands CONSTANT)
    Q_PROPERTY(vantrel::QuickTaskEntryViewModel *quickEntry READ quickEntry CONSTANT)
    Q_PROPERTY(vantrel::RemindersFolderModel *remindersFolder READ remindersFolder CONSTANT)
    Q_PROPERTY(vantrel::TaskExportViewModel *exporter READ exporter CONSTANT)
    Q_PROPERTY(vantrel::TaskImportViewModel *importer READ importer CONSTANT)
    Q_PROPERTY(vantrel::ToastViewModel *toast READ toast CONSTANT)
    Q_PROPERTY(vantrel::WIPGaugeViewModel *gauge READ gauge CONSTANT)
    Q_PROPERTY(bool saving READ isSaving NOTIFY savingChanged)
    Q_PROPERTY(bool taskFocusActive READ isTaskFocusActive NOTIFY taskFocusChanged)
    Q_PROPERTY(bool boardEmpty READ isBoardEmpty NOTIFY boardEmptyChanged)
public:
    explicit AppViewModel(const ViewModelServices &services, QObject *parent = nullptr);

    AppearanceModel *appearance() { return &m_appearance; }
    BoardLoadingViewModel *loading() { return &m_loading; }
    TaskListViewModel *taskList() { return &m_taskList; }
    PermissionHelp *permissionHelp() { return &m_permissionHelp; }
    BoardViewModel *board() { return &m_board; }
    AnalyzeViewModel *analyze() { return &m_analyze; }
    OptimizeViewModel *optimize() { return &m_optimize; }
    Commands *commands() { return &m_commands; }
    QuickTaskEntryViewModel *quickEntry() { return &m_quickEntry; }
    RemindersFolderModel *remindersFolder() { return &m_remindersFolder; }
    TaskExportViewModel *exporter() { return &m_exporter; }
    TaskImportViewModel *importer() { return &m_importer; }
    ToastViewModel *toast() { return &m_toast; }
    WIPGaugeViewModel *gauge() { return &m_gauge; }
    bool isSaving() const { return m_saveIndicator.isSaving(); }
    bool isTaskFocusActive() const { return m_boardState.isTaskFocusActive(); }
    /** There is a board, and no task on it, whatever the filters. */
    bool isBoardEmpty() const { return m_isBoardEmpty; }

    /** To be called when the content first stands in the window. */
    Q_INVOKABLE void contentAppeared();

Q_SIGNALS:
    void savingChanged();
    void taskFocusChanged();
    void boardEmptyChanged();

private:
    void updateBoardEmpty();

    BoardState &m_boardState;
    NotificationCenter &m_notifications;
    Clock &m_clock;
    BackgroundSaveIndicator &m_saveIndicator;
    AppearanceModel m_appearance;
    BoardLoadingViewModel m_loading;
    TaskListViewModel m_taskList;
    PermissionHelp m_permissionHelp;
    BoardViewModel m_board;
    AnalyzeViewModel m_analyze;
    OptimizeViewModel m_optimize;
    Commands m_commands;
    QuickTaskEntryViewModel m_quickEntry;
    RemindersFolderModel m_remindersFolder;
    TaskExportViewModel m_exporter;
    TaskImportViewModel m_importer;
    ToastViewModel m_toast;
    WIPGaugeViewModel m_gauge;
    bool m_isBoardEmpty = false;
};

} // namespace vantrel
