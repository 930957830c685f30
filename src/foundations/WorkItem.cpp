#include "foundations/WorkItem.h"

#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace vantrel {

namespace {

constexpr std::array<QStringView, 5> PriorityRawValues{u"doNow", u"schedule", u"delegate", u"eliminate",
                                                       u"unsorted"};
constexpr std::array<QStringView, 5> PriorityNames{u"Do Now", u"Schedule", u"Delegate", u"Eliminate",
                                                   u"Unsorted"};
constexpr std::array<QStringView, 5> FrequencyRawValues{u"DAILY", u"WEEKLY", u"MONTHLY", u"YEARLY",
                                                        u"CUSTOM"};
constexpr std::array<QStringView, 5> FrequencyUnits{u"day", u"week", u"month", u"year", u""};

template <typename Enum, std::size_t N>
QString textOf(const std::array<QStringView, N> &texts, Enum value)
{
    return texts.at(static_cast<std::size_t>(value)).toString();
}

template <typename Enum, std::size_t N>
std::optional<Enum> valueOf(const std::array<QStringView, N> &texts, QStringView text)
{
    const auto found = std::find(texts.begin(), texts.end(), text);
    return found != texts.end() ? std::optional(static_cast<Enum>(found - texts.begin())) : std::nullopt;
}

QString described(const std::optional<Date> &date)
{
    return date ? date->description() : QStringLiteral("nil");
}

} // namespace

QString rawValue(EisenhowerPriority priority)
{
    return textOf(PriorityRawValues, priority);
}

std::optional<EisenhowerPriority> eisenhowerPriorityFromRawValue(QStringView text)
{
    return valueOf<EisenhowerPriority>(PriorityRawValues, text);
}

QString displayName(EisenhowerPriority priority)
{
    return textOf(PriorityNames, priority);
}

QString rawValue(RepeatFrequency frequency)
{
    return textOf(FrequencyRawValues, frequency);
}

std::optional<RepeatFrequency> repeatFrequencyFromRawValue(QStringView text)
{
    return valueOf<RepeatFrequency>(FrequencyRawValues, text);
}

QString detailedDescription(RepeatFrequency frequency, int interval)
{
    if (frequency == RepeatFrequency::Custom) {
        return QStringLiteral("Repeats with custom pattern");
    }
    const QString unit = textOf(FrequencyUnits, frequency);
    if (interval == 1) {
        return u"Repeats every " + unit;
    }
    return u"Repeats every " + QString::number(interval) + u' ' + unit + u's';
}

WorkItem::WorkItem(WorkItemFields fields) : m_fields(std::move(fields)) {}

template <typename T>
void WorkItem::assign(T &field, const T &value, Property property)
{
    if (field != value) {
        field = value;
        noteChange(property);
    }
}

void WorkItem::noteChange(Property property)
{
    ++m_changeCount;
    Q_EMIT changed(property);
}

void WorkItem::setName(const QString &name)
{
    assign(m_fields.name, name, Property::Name);
}

void WorkItem::setCreationDate(Date date)
{
    assign(m_fields.creationDate, date, Property::CreationDate);
}

void WorkItem::setDeferDate(std::optional<Date> date)
{
    assign(m_fields.deferDate, date, Property::DeferDate);
}

void WorkItem::setDueDate(std::optional<Date> date)
{
    assign(m_fields.dueDate, date, Property::DueDate);
}

void WorkItem::setCompletionDate(std::optional<Date> date)
{
    assign(m_fields.completionDate, date, Property::CompletionDate);
}

void WorkItem::setModificationDate(std::optional<Date> date)
{
    assign(m_fields.modificationDate, date, Property::ModificationDate);
}

void WorkItem::setNote(const std::optional<QString> &note)
{
    assign(m_fields.note, note, Property::Note);
}

void WorkItem::setProject(const std::optional<vantrel::Project> &project)
{
    assign(m_fields.project, project, Property::Project);
}

void WorkItem::setTag(const std::optional<vantrel::Tag> &tag)
{
    assign(m_fields.tag, tag, Property::Tag);
}

void WorkItem::setComplete(bool isComplete)
{
    assign(m_fields.isComplete, isComplete, Property::IsComplete);
}

void WorkItem::setFlagged(bool isFlagged)
{
    assign(m_fields.isFlagged, isFlagged, Property::IsFlagged);
}

void WorkItem::setBlocked(bool isBlocked)
{
    assign(m_fields.isBlocked, isBlocked, Property::IsBlocked);
}

void WorkItem::setBlockReason(const std::optional<QString> &reason)
{
    assign(m_fields.blockReason, reason, Property::BlockReason);
}

void WorkItem::setEisenhowerPriority(std::optional<vantrel::EisenhowerPriority> priority)
{
    assign(m_fields.eisenhowerPriority, priority, Property::EisenhowerPriority);
}

void WorkItem::setRecurrence(const vantrel::Recurrence &recurrence)
{
    assign(m_recurrence, recurrence, Property::Recurrence);
}

void WorkItem::update(const WorkItemFields &fields)
{
    setName(fields.name);
    setNote(fields.note);
    setDueDate(fields.dueDate);
    setCompletionDate(fields.completionDate);
    setCreationDate(fields.creationDate);
    setModificationDate(fields.modificationDate);
    setFlagged(fields.isFlagged);
    setProject(fields.project);
    setTag(fields.tag);
    setComplete(fields.isComplete);
    setBlocked(fields.isBlocked);
    setBlockReason(fields.blockReason);
    setDeferDate(fields.deferDate);
    setEisenhowerPriority(fields.eisenhowerPriority);
}

std::optional<QString> WorkItem::projectName() const
{
    return m_fields.project ? std::optional(m_fields.project->name) : std::nullopt;
}

std::optional<QString> WorkItem::projectId() const
{
    return m_fields.project ? std::optional(m_fields.project->id) : std::nullopt;
}

std::optional<QString> WorkItem::tagName() const
{
    return m_fields.tag ? std::optional(m_fields.tag->name) : std::nullopt;
}

std::optional<QString> WorkItem::tagId() const
{
    return m_fields.tag ? std::optional(m_fields.tag->id) : std::nullopt;
}

std::optional<double> WorkItem::leadTime() const
{
    if (!m_fields.completionDate) {
        return std::nullopt;
    }
    const Date start =
        m_fields.deferDate ? std::max(m_fields.creationDate, *m_fields.deferDate) : m_fields.creationDate;
    return *m_fields.completionDate - start;
}

bool WorkItem::isOverdue(Date now) const
{
    return m_fields.dueDate && !m_fields.isComplete && now > *m_fields.dueDate;
}

bool WorkItem::isAging(Date now, int warningDays) const
{
    return wholeDays(age(now)) > warningDays;
}

Status WorkItem::status(Date now) const
{
    if (isOverdue(now)) return Status::Overdue;
    if (m_fields.isBlocked) return Status::Blocked;
    if (m_fields.isComplete) return Status::Completed;
    if (m_fields.deferDate && *m_fields.deferDate > now) return Status::Deferred;
    return Status::Active;
}

bool WorkItem::isEquivalentTo(const WorkItem &other) const
{
    return metaObject() == other.metaObject() && m_fields.id == other.m_fields.id &&
           m_fields.isBlocked == other.m_fields.isBlocked &&
           m_fields.blockReason == other.m_fields.blockReason;
}

QString WorkItem::describedFields(const QString &afterName) const
{
    return u"id: " + m_fields.id + u", name: \"" + m_fields.name + u'"' + afterName + u", creationDate: " +
           m_fields.creationDate.description() + u", dueDate: \"" + described(m_fields.dueDate) +
           u"\", deferDate: \"" + described(m_fields.deferDate) + u"\", project: " +
           projectName().value_or(QStringLiteral("nil")) + u", isBlocked: " +
           (m_fields.isBlocked ? u"true" : u"false") + u", blockReason: " +
           m_fields.blockReason.value_or(QStringLiteral("nil"));
}

} // namespace vantrel
