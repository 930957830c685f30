#pragma once

#include "foundations/WorkItem.h"

#include <QCoroTask>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace vantrel {

/** The sources that a user can switch on. */
enum class TaskManagerType { OmniFocus, Reminders, PlainText };

inline constexpr std::array AllTaskManagerTypes{TaskManagerType::OmniFocus, TaskManagerType::Reminders,
                                                TaskManagerType::PlainText};

/** Stored text and display name: "OmniFocus", "Reminders", "Plain Text". */
QString rawValue(TaskManagerType type);
std::optional<TaskManagerType> taskManagerTypeFromRawValue(QStringView text);

/**
 * True if `taskId` looks like an id of that source. OmniFocus ids have no form of their own, so that plain
 * text ids look like them too: sourceOf() tells a task's source.
 */
bool hasIdFormOf(TaskManagerType type, QStringView taskId);

/** Which sources are switched on. */
struct TaskSourceConfiguration
{
    bool isOmniFocusEnabled = false;
    bool isRemindersEnabled = false;
    bool isPlainTextEnabled = true;

    bool isAnyEnabled() const { return isOmniFocusEnabled || isRemindersEnabled || isPlainTextEnabled; }

    friend bool operator==(const TaskSourceConfiguration &, const TaskSourceConfiguration &) = default;
};

/** A project, or a reminders list, that a source offers for completion. */
struct ProjectInfo
{
    QString id;
    QString name;
    bool isActive = true;
    friend bool operator==(const ProjectInfo &, const ProjectInfo &) = default;
};

/** A tag that a source offers for completion. */
struct TagInfo
{
    QString id;
    QString name;
    bool isActive = true;
    friend bool operator==(const TagInfo &, const TagInfo &) = default;
};

/** What is needed to create a task in any source. */
struct NewTask
{
    QString name;
    std::optional<QString> note;
    std::optional<Date> dueDate;
    std::optional<Date> deferDate;
    std::optional<QString> project;
    /** Without "#". */
    QStringList tags;
};

using WorkItems = std::vector<WorkItemPtr>;

/**
 * The contract of a task source. The rest of the program talks to a source through this only.
 *
 * Lives on the GUI thread; slow work inside goes to a worker. The coroutines throw a SourceError when they
 * fail, and never give an empty list for "it failed".
 */
class TaskManagerProtocol
{
public:
    TaskManagerProtocol() = default;
    virtual ~TaskManagerProtocol() = default;
    Q_DISABLE_COPY_MOVE(TaskManagerProtocol)

    virtual QCoro::Task<WorkItems> fetchTasks() = 0;
    virtual QCoro::Task<WorkItems> fetchCompletedTasks(int lookbackDays) = 0;
    /** Learns the source's due soon window and stores it in the user defaults. */
    virtual QCoro::Task<> fetchDueSoonSettings() = 0;

    /** Edits; true if the source knew the task and changed it. */
    virtual QCoro::Task<bool> setTaskName(QString taskId, QString name) = 0;
    virtual QCoro::Task<bool> flagTask(QString taskId, bool flagged) = 0;
    virtual QCoro::Task<bool> markTaskComplete(QString taskId) = 0;
    virtual QCoro::Task<bool> markTaskIncomplete(QString taskId) = 0;

    /** Gives the new task's id. */
    virtual QCoro::Task<QString> createTask(NewTask task) = 0;

    virtual QCoro::Task<std::vector<ProjectInfo>> fetchAvailableProjects() = 0;
    virtual QCoro::Task<std::vector<TagInfo>> fetchAvailableTags() = 0;

    /** True if an id looks like this source's, see hasIdFormOf(): ask sourceOf() first. */
    virtual bool canHandle(const QString &taskId) const = 0;
    virtual QString taskManagerName() const = 0;
    virtual bool checkPermissions() = 0;
    /** Shown to the user when access is missing. */
    virtual QString getPermissionsGuidance() const = 0;

    /** False where the platform has no such source at all; it is then never asked. */
    virtual bool isAvailableOnPlatform() const { return true; }
};

/** Completes the task in its source, or reopens it there; false if the source does not know it. */
QCoro::Task<bool> markTask(TaskManagerProtocol &manager, const QString &taskId, bool isComplete);

} // namespace vantrel
