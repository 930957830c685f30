#pragma once

#include "exchange/ParsedTask.h"
#include "foundations/NotificationCenter.h"
#include "sources/TaskManagerProtocol.h"

#include <QCoroTask>
#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace vantrel {

class Announcer;
class Clock;
class TaskManagerFactory;
class TaskRepository;
class ToastManager;
class UserDefaults;

/** What quick entry needs of the program. Everything outlives it. */
struct QuickEntryServices
{
    TaskManagerFactory &managers;
    TaskRepository &repository;
    UserDefaults &defaults;
    NotificationCenter &notifications;
    Announcer &announcer;
    ToastManager &toasts;
    const Clock &clock;
};

/** A ParsedTask as the form shows it, for correction. */
struct EditableTaskData
{
    QString name;
    QString note;
    std::optional<Date> dueDate;
    std::optional<Date> deferDate;
    QString project;
    QString tag;
    std::optional<TaskManagerType> taskManager;
};

/**
 * The form between a line of quick entry and its task: every part can be corrected, and it stays as it is
 * when the task could not be made. Owned by QuickTaskEntryViewModel; GUI thread.
 */
class TaskConfirmationViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QString parsedText READ parsedText NOTIFY changed)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QString note READ note WRITE setNote NOTIFY changed)
    Q_PROPERTY(QString project READ project WRITE setProject NOTIFY changed)
    Q_PROPERTY(QString tag READ tag WRITE setTag NOTIFY changed)
    Q_PROPERTY(QDateTime dueDate READ dueDate WRITE setDueDate NOTIFY changed)
    Q_PROPERTY(QDateTime deferDate READ deferDate WRITE setDeferDate NOTIFY changed)
    Q_PROPERTY(QString omittedTagsText READ omittedTagsText NOTIFY changed)
    Q_PROPERTY(QStringList taskSources READ taskSources NOTIFY changed)
    Q_PROPERTY(int selectedSource READ selectedSource NOTIFY changed)
    Q_PROPERTY(QStringList projectSuggestions READ projectSuggestions NOTIFY changed)
    Q_PROPERTY(QStringList tagSuggestions READ tagSuggestions NOTIFY changed)
    Q_PROPERTY(bool isLoadingMetadata READ isLoadingMetadata NOTIFY changed)
    Q_PROPERTY(bool isCreating READ isCreating NOTIFY changed)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY changed)
public:
    explicit TaskConfirmationViewModel(const QuickEntryServices &services, QObject *parent = nullptr);

    /** Fills the form with what was understood of `line`. */
    void begin(const ParsedTask &task, const QString &line);

    QString parsedText() const { return m_parsedText; }
    QString name() const { return m_editedTask.name; }
    void setName(const QString &name);
    QString note() const { return m_editedTask.note; }
    void setNote(const QString &note);
    QString project() const { return m_editedTask.project; }
    void setProject(const QString &project);
    QString tag() const { return m_editedTask.tag; }
    void setTag(const QString &tag);
    /** Invalid where there is none, as is the next. */
    QDateTime dueDate() const;
    void setDueDate(const QDateTime &date);
    QDateTime deferDate() const;
    void setDeferDate(const QDateTime &date);
    /** A present moment for a date that is to be picked. */
    Q_INVOKABLE QDateTime now() const;

    /** Tells how many tags of the line the task will not have; empty if it has all. */
    QString omittedTagsText() const;
    /** The names of the enabled sources that can take tasks here. */
    QStringList taskSources() const;
    /** The place of the source that will get the task, in taskSources(). */
    int selectedSource() const;
    Q_INVOKABLE void selectSource(int index);
    /** At most five names that the source knows and that contain what is in the field. */
    QStringList projectSuggestions() const;
    QStringList tagSuggestions() const;
    bool isLoadingMetadata() const { return m_metadataRequests > 0; }
    bool isCreating() const { return m_isCreating; }
    QString errorMessage() const { return m_errorMessage; }

    Q_INVOKABLE void createTask();

Q_SIGNALS:
    void changed();
    void taskCreated();

private:
    TaskManagerType selectedTaskManager() const;
    bool isOffered(TaskManagerType type) const;
    void readTaskSources();
    void loadMetadataIfNeeded();
    template <typename Info>
    QCoro::Task<> takeNames(QCoro::Task<std::vector<Info>> fetch, QStringList *names, int generation);
    QCoro::Task<> create(EditableTaskData data, TaskManagerType type);
    QCoro::Task<> createTaskInManager(EditableTaskData data, TaskManagerType type);
    QCoro::Task<NewTask> withNamesKnownToOmniFocus(NewTask task);
    void finish(const EditableTaskData &data, TaskManagerType type);
    void fail(const QString &message);

    QuickEntryServices m_services;
    QString m_parsedText;
    EditableTaskData m_editedTask;
    int m_omittedTags = 0;
    std::vector<TaskManagerType> m_enabledTaskSources;
    std::optional<TaskManagerType> m_metadataSource;
    QStringList m_availableProjects;
    QStringList m_availableTags;
    int m_metadataRequests = 0;
    /** Grows with each change of source, so that late answers of another one are dropped. */
    int m_metadataGeneration = 0;
    bool m_isCreating = false;
    /** The tag that the source did not know. */
    QString m_leftOutTag;
    QString m_errorMessage;
};

} // namespace vantrel
