#pragma once

#include "board/BoardState.h"
#include "sources/TaskCache.h"
#include "viewmodels/ViewMode.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <exception>
#include <optional>

namespace vantrel {

class Announcer;
class TaskManagerFactory;
class TaskRepository;

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
    Q_PROPERTY(QStringList remindersGuidance READ remindersGuidance NOTIFY stateChanged)
    Q_PROPERTY(QString viewMode READ viewMode NOTIFY viewModeChanged)
    Q_PROPERTY(QVariantList viewModes READ viewModes CONSTANT)
    Q_PROPERTY(bool isRailVisible READ isRailVisible NOTIFY stateChanged)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY viewModeChanged)
public:
    /** What stands in the window, the first that holds. */
    enum class Screen { Loading, Permission, Error, Content };
    Q_ENUM(Screen)

    TaskListViewModel(BoardState &board, TaskRepository &repository, TaskManagerFactory &factory,
                      NotificationCenter &notifications, Announcer &announcer, Clock &clock,
                      QObject *parent = nullptr);

    /** One run, unless the board has not finished its own first load. Returns at once. */
    Q_INVOKABLE void loadTasks();
    /** The retry buttons: says so, and runs. */
    Q_INVOKABLE void retry();
    Q_INVOKABLE void announceFocusOnRetry();
    /** `rawValue` of the mode. */
    Q_INVOKABLE void switchToViewMode(const QString &rawValue);
    void switchToViewMode(ViewMode mode);

    Screen screen() const;
    bool isLoading() const { return m_isLoading; }
    bool needsTaskManagerPermissions() const { return m_needsTaskManagerPermissions; }
    QString errorMessage() const { return m_errorMessage.value_or(QString()); }
    QString permissionMessage() const { return m_permissionMessage.value_or(QString()); }
    /** Lines that stand below a permission message which speaks of Reminders. */
    QStringList remindersGuidance() const;
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
    void observeNotifications();
    void refreshUI();
    void handleError(const QString &message);
    void updateCurrentTaskSources();
    QCoro::Task<> run();
    QCoro::Task<std::optional<FetchedTasks>> fetch();
    void handleFailure(const std::exception_ptr &error);
    void handleSourceFailure(const std::exception_ptr &error);
    void switchToPlainText();

    BoardState &m_board;
    TaskRepository &m_repository;
    TaskManagerFactory &m_factory;
    NotificationCenter &m_notifications;
    Announcer &m_announcer;
    Clock &m_clock;
    WorkItems m_tasks;
    std::optional<QString> m_errorMessage;
    bool m_isLoading = false;
    bool m_needsTaskManagerPermissions = false;
    std::optional<QString> m_permissionMessage;
    /** What the run under way found missing, for the permission screen. */
    QStringList m_permissionIssues;
    QString m_currentTaskSources = QStringLiteral("Task Sources");
    ViewMode m_viewMode = ViewMode::Visualize;
};

} // namespace vantrel
