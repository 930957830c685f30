#pragma once

#include "board/BoardState.h"
#include "sources/TaskCache.h"
#include "viewmodels/ViewMode.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vantrel {

class Announcer;
class TaskManagerFactory;
class TaskRepository;
class ToastManager;
struct LoadFailure;

/**
 * The main loop of the program: one run fetches the tasks of all sources, hands them to the board, and turns
 * every failure into a state of the window: the permission screen, the error screen, or a board without
 * tasks. GUI thread; owned by AppViewModel.
 */
class TaskListViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(Screen screen READ screen NOTIFY stateChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY stateChanged)
    Q_PROPERTY(QString permissionMessage READ permissionMessage NOTIFY stateChanged)
    Q_PROPERTY(QString viewMode READ viewMode NOTIFY viewModeChanged)
    Q_PROPERTY(QVariantList viewModes READ viewModes CONSTANT)
    Q_PROPERTY(bool isRailVisible READ isRailVisible NOTIFY stateChanged)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY viewModeChanged)
public:
    /** What stands in the window, the first that holds. */
    enum class Screen { Loading, Permission, Error, Content };
    Q_ENUM(Screen)

    TaskListViewModel(BoardState &board, TaskRepository &repository, TaskManagerFactory &factory,
                      NotificationCenter &notifications, Announcer &announcer, ToastManager &toasts,
                      Clock &clock, QObject *parent = nullptr);

    /** One run, unless the board has not finished its own first load. Returns at once. */
    Q_INVOKABLE void loadTasks();
    /** The toolbar's button: says so, and runs. */
    Q_INVOKABLE void refresh();
    /** The retry buttons: says so, and runs. */
    Q_INVOKABLE void retry();
    /** Leaves the permission screen for the board, until the next run that needs it. */
    Q_INVOKABLE void continueWithout();
    Q_INVOKABLE void announceFocusOnRetry();
    /** `rawValue` of the mode. */
    Q_INVOKABLE void switchToViewMode(const QString &rawValue);
    void switchToViewMode(ViewMode mode);

    Screen screen() const;
    bool isLoading() const { return m_isLoading; }
    bool needsTaskManagerPermissions() const { return m_needsTaskManagerPermissions; }
    QString errorMessage() const { return m_errorMessage.value_or(QString()); }
    QString permissionMessage() const { return m_permissionMessage.value_or(QString()); }
    const WorkItems &tasks() const { return m_tasks; }
    QString currentTaskSources() const { return m_currentTaskSources; }
    ViewMode currentViewMode() const { return m_viewMode; }
    QString viewMode() const { return infoOf(m_viewMode).rawValue.toString(); }
    /** Maps with "id", "label", "symbol" and "help" of the modes that can be switched to. */
    QVariantList viewModes() const;
    bool isRailVisible() const;
    QString accessibleValue() const;

Q_SIGNALS:
    void stateChanged();
    void viewModeChanged();
    /** The views are to show everything anew. */
    void refreshRequested();

private:
    void observe(NotificationName name, NotificationCenter::Handler handler);
    void observeRepository();
    void observeSettings();
    void observeCommands();
    void refreshUI();
    void handleError(const QString &message);
    void updateCurrentTaskSources();
    QCoro::Task<> run();
    /** False, with the error told, if there is no source to fall back to. */
    bool enableFallback();
    /** Gives what the permission screen is to say, if it is to be shown. */
    std::optional<QString> handleFailure(const LoadFailure &failure);
    void finishRun(const FetchedTasks &fetched, const std::optional<QString> &permissionIssue);
    void switchToPlainText(const QString &message);
    /** Once, until it changes or the user asks anew. */
    void tellOfMissingTasks(const FetchedTasks &fetched);

    BoardState &m_board;
    TaskRepository &m_repository;
    TaskManagerFactory &m_factory;
    NotificationCenter &m_notifications;
    Announcer &m_announcer;
    ToastManager &m_toasts;
    Clock &m_clock;
    WorkItems m_tasks;
    QString m_toldOfMissingTasks;
    std::optional<QString> m_errorMessage;
    bool m_isLoading = false;
    bool m_needsTaskManagerPermissions = false;
    std::optional<QString> m_permissionMessage;
    QString m_currentTaskSources = QStringLiteral("Task Sources");
    ViewMode m_viewMode = ViewMode::Visualize;
};

} // namespace vantrel
