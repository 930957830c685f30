#pragma once

#include "foundations/Date.h"

#include <QObject>
#include <QStringList>
#include <QUrl>

#include <array>
#include <memory>
#include <optional>

namespace vantrel {

/** A quadrant of the Eisenhower matrix. `Unsorted` is a value of its own, not the same as none. */
enum class EisenhowerPriority { DoNow, Schedule, Delegate, Eliminate, Unsorted };

inline constexpr std::array AllEisenhowerPriorities{
    EisenhowerPriority::DoNow, EisenhowerPriority::Schedule, EisenhowerPriority::Delegate,
    EisenhowerPriority::Eliminate, EisenhowerPriority::Unsorted};

/** The stored text, "doNow" to "unsorted". */
QString rawValue(EisenhowerPriority priority);
std::optional<EisenhowerPriority> eisenhowerPriorityFromRawValue(QStringView text);
/** "Do Now" to "Unsorted". */
QString displayName(EisenhowerPriority priority);

/** How often a task repeats; the raw values of all but `Custom` are those of iCalendar's FREQ (RFC
 * 5545, 3.3.10). */
enum class RepeatFrequency { Daily, Weekly, Monthly, Yearly, Custom };

QString rawValue(RepeatFrequency frequency);
std::optional<RepeatFrequency> repeatFrequencyFromRawValue(QStringView text);
/** "Repeats every day", "Repeats every 3 weeks", "Repeats with custom pattern". */
QString detailedDescription(RepeatFrequency frequency, int interval);

/** A task's state as one word; see WorkItem::status for the precedence. */
enum class Status { Blocked, Completed, Active, Overdue, Deferred };

struct Project
{
    QString id;
    QString name;
    friend bool operator==(const Project &, const Project &) = default;
    friend size_t qHash(const Project &project, size_t seed = 0)
    {
        return qHashMulti(seed, project.id, project.name);
    }
};

struct Tag
{
    QString id;
    QString name;
    friend bool operator==(const Tag &, const Tag &) = default;
    friend size_t qHash(const Tag &tag, size_t seed = 0) { return qHashMulti(seed, tag.id, tag.name); }
};

/** What a source reports of a task's recurrence. */
struct Recurrence
{
    bool isRepeating = false;
    std::optional<RepeatFrequency> frequency;
    /** Every n periods. */
    std::optional<int> interval;
    /** The source's own text. */
    std::optional<QString> pattern;
    friend bool operator==(const Recurrence &, const Recurrence &) = default;
};

/** The values that every task has, whatever its source: a plain record that may cross threads. */
struct WorkItemFields
{
    QString id;
    QString name;
    std::optional<QString> note;
    std::optional<Date> dueDate;
    std::optional<Date> completionDate;
    /** Start of the task's age. */
    Date creationDate;
    std::optional<Date> modificationDate;
    bool isFlagged = false;
    std::optional<Project> project;
    std::optional<Tag> tag;
    bool isComplete = false;
    /** Board-owned, kept in the position store, never written to a source; so are the reason and the
     * quadrant. */
    bool isBlocked = false;
    std::optional<QString> blockReason;
    /** Not actionable before this. */
    std::optional<Date> deferDate;
    std::optional<EisenhowerPriority> eisenhowerPriority;

    friend bool operator==(const WorkItemFields &, const WorkItemFields &) = default;
};

/**
 * One task of any source: what the board, the analytics and the exporters see.
 *
 * Shared by id: board, cache and source hold the same object, so a change made by one is seen by all, through
 * changed(). Lives on the GUI thread and never leaves it; other threads get fields().
 */
class WorkItem : public QObject
{
    Q_OBJECT
public:
    enum class Property {
        Name,
        CreationDate,
        DeferDate,
        DueDate,
        CompletionDate,
        ModificationDate,
        Note,
        Project,
        Tag,
        IsComplete,
        IsFlagged,
        IsBlocked,
        BlockReason,
        EisenhowerPriority,
        Recurrence,
        SourceDetail, ///< something only one class has: hashtags, original text, list, reminder priority
    };
    Q_ENUM(Property)

    const WorkItemFields &fields() const { return m_fields; }

    /** Grows with every change: to tell whether the item is still what it was when one last looked. */
    quint32 changeCount() const { return m_changeCount; }

    const QString &id() const { return m_fields.id; }
    const QString &name() const { return m_fields.name; }
    Date creationDate() const { return m_fields.creationDate; }
    std::optional<Date> deferDate() const { return m_fields.deferDate; }
    std::optional<Date> dueDate() const { return m_fields.dueDate; }
    std::optional<Date> completionDate() const { return m_fields.completionDate; }
    std::optional<Date> modificationDate() const { return m_fields.modificationDate; }
    const std::optional<QString> &note() const { return m_fields.note; }
    const std::optional<Project> &project() const { return m_fields.project; }
    const std::optional<Tag> &tag() const { return m_fields.tag; }
    bool isComplete() const { return m_fields.isComplete; }
    bool isFlagged() const { return m_fields.isFlagged; }
    bool isBlocked() const { return m_fields.isBlocked; }
    const std::optional<QString> &blockReason() const { return m_fields.blockReason; }
    std::optional<EisenhowerPriority> eisenhowerPriority() const { return m_fields.eisenhowerPriority; }
    const Recurrence &recurrence() const { return m_recurrence; }
    bool isRepeating() const { return m_recurrence.isRepeating; }

    void setName(const QString &name);
    void setCreationDate(Date date);
    void setDeferDate(std::optional<Date> date);
    void setDueDate(std::optional<Date> date);
    void setCompletionDate(std::optional<Date> date);
    void setModificationDate(std::optional<Date> date);
    void setNote(const std::optional<QString> &note);
    void setProject(const std::optional<Project> &project);
    void setTag(const std::optional<Tag> &tag);
    void setComplete(bool isComplete);
    void setFlagged(bool isFlagged);
    void setBlocked(bool isBlocked);
    void setBlockReason(const std::optional<QString> &reason);
    void setEisenhowerPriority(std::optional<EisenhowerPriority> priority);

    /** Takes over all fields but the id, one changed() for each that differs. */
    void update(const WorkItemFields &fields);

    std::optional<QString> projectName() const;
    std::optional<QString> projectId() const;
    std::optional<QString> tagName() const;
    std::optional<QString> tagId() const;

    /** Seconds from the creation date to `now`; negative for a task of the future. */
    double age(Date now) const { return now - m_fields.creationDate; }

    /** Seconds from the later of creation and defer date to completion, possibly negative; nothing while
     * open. */
    std::optional<double> leadTime() const;

    /** True if the due date has passed and the task is not complete. */
    bool isOverdue(Date now) const;

    /** True if the task is more than `warningDays` whole days old. */
    bool isAging(Date now, int warningDays) const;

    /** The first that holds of overdue, blocked, completed, deferred, active. */
    Status status(Date now) const;

    /** The deep link into the source application; invalid where there is none. */
    virtual QUrl appSpecificLink() const { return {}; }

    virtual QString debugDescription() const = 0;

    /** Same class, id, block state and reason: what makes an item another value to a view. */
    bool isEquivalentTo(const WorkItem &other) const;

Q_SIGNALS:
    void changed(vantrel::WorkItem::Property property);

protected:
    explicit WorkItem(WorkItemFields fields);

    void setRecurrence(const Recurrence &recurrence);
    /** Counts a change and tells of it. */
    void noteChange(Property property);
    /** "id: ..., name: ..." up to the block reason, with `afterName` behind the name. */
    QString describedFields(const QString &afterName = {}) const;

private:
    template <typename T>
    void assign(T &field, const T &value, Property property);

    WorkItemFields m_fields;
    Recurrence m_recurrence;
    quint32 m_changeCount = 0;
};

using WorkItemPtr = std::shared_ptr<WorkItem>;

} // namespace vantrel
