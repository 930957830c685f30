#include "viewmodels/CardContent.h"

#include "foundations/Ids.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/PlainTextWorkItem.h"
#include "foundations/ReminderWorkItem.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace vantrel {

namespace {

/** Writes the card of one task. */
class CardWriter
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::CardContent)
public:
    CardWriter(const WorkItem &task, const CardRules &rules) : m_task(task), m_rules(rules) {}

    CardContent write();

    static QString name(KanbanCardFocus::Value component);
    static QString interval(double seconds);

private:
    void writeSource();
    void writePriority();
    void writeBlock();
    void writeRecurrence();
    void writeDueDate();
    QString describe() const;
    QList<CardPartContent> parts() const;

    const WorkItem &m_task;
    const CardRules &m_rules;
    CardContent m_card;
};

CardContent CardWriter::write()
{
    m_card.id = m_task.id();
    m_card.title = m_task.name();
    m_card.note = m_task.note().value_or(QString());
    if (m_rules.showProjectInfo) m_card.project = m_task.projectName().value_or(QString());
    if (const QString tag = m_task.tagName().value_or(QString()); !tag.isEmpty()) m_card.tag = u'#' + tag;
    m_card.isComplete = m_task.isComplete();
    m_card.isFlagged = m_task.isFlagged();
    m_card.hasFlagStripe = m_task.isFlagged() && m_rules.showFlaggedEffects;
    writeSource();
    writePriority();
    writeBlock();
    writeRecurrence();
    writeDueDate();
    m_card.ageText = m_rules.helper.formattedAge(m_task, m_rules.now);
    m_card.ageDescription = tr("Task was created %1 ago").arg(interval(m_task.age(m_rules.now)));
    m_card.isAging = !m_task.isComplete() && m_task.isAging(m_rules.now, m_rules.workAgeWarningDays);
    m_card.accessibleDescription = describe();
    m_card.parts = parts();
    return m_card;
}

void CardWriter::writeSource()
{
    if (qobject_cast<const OmniFocusTask *>(&m_task)) {
        m_card.sourceIcon = QStringLiteral("checkmark.circle");
        m_card.sourceText = tr("OmniFocus Task");
    } else if (qobject_cast<const ReminderWorkItem *>(&m_task)) {
        m_card.sourceIcon = QStringLiteral("list.bullet");
        m_card.sourceText = tr("Reminder Task");
    } else if (sourceOf(m_task.id()) == TaskSource::PlainText) {
        m_card.sourceIcon = QStringLiteral("doc.text");
        m_card.sourceText = tr("Plain Text Task");
    } else {
        m_card.sourceIcon = QStringLiteral("square");
        m_card.sourceText = tr("Unknown Source");
    }
}

void CardWriter::writePriority()
{
    const auto *reminder = qobject_cast<const ReminderWorkItem *>(&m_task);
    switch (reminder ? reminder->priorityBand() : ReminderPriority::None) {
    case ReminderPriority::High:
        m_card.priorityIcon = QStringLiteral("exclamationmark.3");
        m_card.priorityText = tr("High Priority");
        break;
    case ReminderPriority::Medium:
        m_card.priorityIcon = QStringLiteral("exclamationmark.2");
        m_card.priorityText = tr("Medium Priority");
        break;
    case ReminderPriority::Low:
        m_card.priorityIcon = QStringLiteral("exclamationmark");
        m_card.priorityText = tr("Low Priority");
        break;
    case ReminderPriority::None:
        break;
    }
}

void CardWriter::writeBlock()
{
    m_card.isBlocked = m_task.isBlocked();
    if (!m_card.isBlocked) {
        return;
    }
    const QString reason = m_task.blockReason().value_or(QString());
    m_card.blockedText = reason.isEmpty() ? tr("Blocked") : reason;
}

void CardWriter::writeRecurrence()
{
    if (!m_task.isRepeating()) {
        return;
    }
    const int interval = m_task.recurrence().interval.value_or(1);
    QString period;
    switch (m_task.recurrence().frequency.value_or(RepeatFrequency::Custom)) {
    case RepeatFrequency::Daily:
        m_card.recurrenceIcon = QStringLiteral("arrow.clockwise");
        period = tr("every %1 days").arg(interval);
        break;
    case RepeatFrequency::Weekly:
        m_card.recurrenceIcon = QStringLiteral("calendar");
        period = tr("every %1 weeks").arg(interval);
        break;
    case RepeatFrequency::Monthly:
        m_card.recurrenceIcon = QStringLiteral("arrow.triangle.2.circlepath");
        period = tr("every %1 months").arg(interval);
        break;
    case RepeatFrequency::Yearly:
        m_card.recurrenceIcon = QStringLiteral("calendar.badge.clock");
        period = tr("every %1 years").arg(interval);
        break;
    case RepeatFrequency::Custom:
        m_card.recurrenceIcon = QStringLiteral("clock.arrow.2.circlepath");
        period = tr("with custom pattern");
        break;
    }
    m_card.recurrenceText = tr("Recurring task") + u' ' + period;
}

void CardWriter::writeDueDate()
{
    if (!m_task.dueDate()) {
        return;
    }
    m_card.dueText = m_rules.helper.formattedDueDate(m_task, m_rules.now).value_or(QString());
    QString state;
    if (m_task.isComplete()) {
        m_card.dueTone = CardTone::Done;
        state = tr("Task is completed");
    } else if (m_task.isOverdue(m_rules.now)) {
        m_card.dueTone = CardTone::Overdue;
        state = tr("Task is overdue");
    } else if (m_rules.helper.isDueSoon(m_task.dueDate(), m_rules.now)) {
        m_card.dueTone = CardTone::Soon;
        state = tr("Task is due soon");
    } else {
        m_card.dueTone = CardTone::Later;
    }
    m_card.dueDescription = tr("Due %1").arg(m_rules.helper.formattedDueString(*m_task.dueDate()));
    if (!state.isEmpty()) m_card.dueDescription += u". " + state;
}

/** What a screen reader says behind the task's name. */
QString CardWriter::describe() const
{
    QStringList sentences{m_card.sourceText};
    if (m_card.isBlocked) {
        const QString reason = m_task.blockReason().value_or(QString());
        sentences += reason.isEmpty() ? tr("Blocked task") : tr("Blocked: %1").arg(reason);
    }
    if (m_card.isFlagged) sentences += tr("Flagged");
    if (m_card.isAging) sentences += tr("Aging task");
    if (!m_card.note.isEmpty()) sentences += tr("Task has a note");
    sentences += {m_card.priorityText,   m_card.project,        m_card.tag,
                  m_card.recurrenceText, m_card.dueDescription, m_card.ageDescription};
    sentences.removeAll(QString());
    return sentences.join(u". ");
}

QList<CardPartContent> CardWriter::parts() const
{
    using namespace KanbanCardFocus;
    QList<CardPartContent> parts{{Icon, CardTone::Quiet, m_card.sourceIcon, {}, m_card.sourceText}};
    const auto add = [&parts](bool isThere, const CardPartContent &part) {
        if (isThere) parts.append(part);
    };
    add(!m_card.priorityIcon.isEmpty(),
        {None, CardTone::Alarm, m_card.priorityIcon, {}, m_card.priorityText});
    add(!m_card.note.isEmpty(), {NoteIcon, CardTone::Quiet, QStringLiteral("note"), {}, m_card.note});
    add(m_card.isFlagged, {None, CardTone::Flag, QStringLiteral("flag"), {}, tr("Flagged")});
    add(!m_card.recurrenceIcon.isEmpty(),
        {Recurring, CardTone::Quiet, m_card.recurrenceIcon, {}, m_card.recurrenceText});
    add(m_card.isBlocked, {Blocked, CardTone::Alarm, QStringLiteral("exclamationmark.triangle"),
                           m_card.blockedText, tr("Blocked task. Click to see or add reason.")});
    add(!m_card.tag.isEmpty(), {KanbanCardFocus::Tag, CardTone::Tag, {}, m_card.tag, {}});
    add(!m_card.dueText.isEmpty(), {DueDate, m_card.dueTone, QStringLiteral("calendar.badge.clock"),
                                    m_card.dueText, m_card.dueDescription});
    return parts;
}

QString CardWriter::interval(double seconds)
{
    struct Unit
    {
        qint64 seconds;
        const char *one;
        const char *several;
    };
    static constexpr std::array Units{Unit{86400, QT_TR_NOOP("1 day"), QT_TR_NOOP("%1 days")},
                                      Unit{3600, QT_TR_NOOP("1 hour"), QT_TR_NOOP("%1 hours")},
                                      Unit{60, QT_TR_NOOP("1 minute"), QT_TR_NOOP("%1 minutes")},
                                      Unit{1, QT_TR_NOOP("1 second"), QT_TR_NOOP("%1 seconds")}};
    QStringList words;
    auto rest = static_cast<qint64>(std::max(0.0, std::trunc(seconds)));
    for (const Unit &unit : Units) {
        const qint64 n = rest / unit.seconds;
        rest %= unit.seconds;
        if (n > 0) words += n == 1 ? tr(unit.one) : tr(unit.several).arg(n);
    }
    return words.isEmpty() ? tr("%1 seconds").arg(0) : words.mid(0, 2).join(tr(" and "));
}

QString CardWriter::name(KanbanCardFocus::Value component)
{
    switch (component) {
    case KanbanCardFocus::Name:
        return tr("Name");
    case KanbanCardFocus::NoteIcon:
        return tr("Note");
    case KanbanCardFocus::Icon:
        return tr("Icon");
    case KanbanCardFocus::Blocked:
        return tr("Blocked");
    case KanbanCardFocus::Project:
        return tr("Project");
    case KanbanCardFocus::Tag:
        return tr("Tag");
    case KanbanCardFocus::Recurring:
        return tr("Recurring");
    case KanbanCardFocus::DueDate:
        return tr("Due date");
    case KanbanCardFocus::Age:
        return tr("Lead time");
    case KanbanCardFocus::None:
        break;
    }
    return {};
}

} // namespace

QVariantList CardContent::partList() const
{
    QVariantList list;
    for (const CardPartContent &part : parts) {
        list.append(QVariant::fromValue(part));
    }
    return list;
}

CardContent cardContent(const WorkItem &task, const CardRules &rules)
{
    return CardWriter(task, rules).write();
}

QList<KanbanCardFocus::Value> visibleComponents(const CardContent &card)
{
    QList<KanbanCardFocus::Value> components{KanbanCardFocus::Name};
    if (!card.note.isEmpty()) components += KanbanCardFocus::NoteIcon;
    components += KanbanCardFocus::Icon;
    if (card.isBlocked) components += KanbanCardFocus::Blocked;
    if (!card.project.isEmpty()) components += KanbanCardFocus::Project;
    if (!card.tag.isEmpty()) components += KanbanCardFocus::Tag;
    if (!card.dueText.isEmpty()) components += KanbanCardFocus::DueDate;
    components += KanbanCardFocus::Age;
    return components;
}

QString accessibilityName(KanbanCardFocus::Value component)
{
    return CardWriter::name(component);
}

QString formatTimeInterval(double seconds)
{
    return CardWriter::interval(seconds);
}

} // namespace vantrel
