#include "sources/reminders/vdir/IcsTodos.h"

#include "sources/reminders/vdir/IcsDocument.h"
#include "sources/reminders/vdir/IcsParser.h"
#include "sources/reminders/vdir/IcsSeries.h"

#include <QUuid>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vantrel {

namespace {

QByteArray utcText(Date date)
{
    const auto seconds = static_cast<time_t>(date.seconds()) + ReferenceSecondsSince1970;
    return icalText(icaltime_from_timet_with_zone(seconds, 0, icaltimezone_get_utc_timezone()));
}

/** Changes one task of a document. */
class TodoWriter
{
public:
    TodoWriter(IcsDocument &document, IcsDocument::Component todo, Date now)
        : m_document(document), m_todo(todo), m_now(now)
    {
    }

    IcsDocument::Component todo() const { return m_todo; }

    void write(const Reminder &before, const Reminder &wanted)
    {
        if (wanted.title != before.title) {
            writeText("SUMMARY", wanted.title);
        }
        if (wanted.notes != before.notes) {
            writeText("DESCRIPTION", wanted.notes);
        }
        if (wanted.dueDate != before.dueDate) {
            writeDue(wanted.dueDate);
        }
        if (wanted.priority != before.priority) {
            wanted.priority == 0
                ? m_document.remove(m_todo, "PRIORITY")
                : m_document.setValue(m_todo, "PRIORITY", QByteArray::number(wanted.priority));
        }
        if (wanted.isCompleted != before.isCompleted) {
            wanted.isCompleted ? complete() : reopen();
        }
    }

    void complete()
    {
        m_document.setValue(m_todo, "STATUS", "COMPLETED");
        m_document.setProperty(m_todo, "COMPLETED", {}, utcText(m_now));
        m_document.setValue(m_todo, "PERCENT-COMPLETE", "100");
    }

    void reopen()
    {
        m_document.setValue(m_todo, "STATUS", "NEEDS-ACTION");
        m_document.remove(m_todo, "COMPLETED");
        m_document.remove(m_todo, "PERCENT-COMPLETE");
    }

    void advance(const IcsSeries::Step &step)
    {
        if (!step.start.isEmpty()) {
            m_document.setValue(m_todo, "DTSTART", step.start);
        }
        if (!step.due.isEmpty()) {
            m_document.setValue(m_todo, "DUE", step.due);
        }
        m_document.setValue(m_todo, "RRULE", step.rule);
    }

    /** Makes it an occurrence on its own. */
    void detach(const QString &uid)
    {
        for (const char *property : {"RRULE", "EXDATE"}) {
            m_document.remove(m_todo, property);
        }
        m_document.setProperty(m_todo, "UID", {}, IcsDocument::escaped(uid));
    }

    void stamp()
    {
        const QByteArray now = utcText(m_now);
        m_document.setProperty(m_todo, "DTSTAMP", {}, now);
        m_document.setProperty(m_todo, "LAST-MODIFIED", {}, now);
        const int sequence = m_document.value(m_todo, "SEQUENCE").value_or("0").toInt();
        if (sequence < std::numeric_limits<int>::max()) {
            m_document.setValue(m_todo, "SEQUENCE", QByteArray::number(sequence + 1));
        }
    }

private:
    void writeText(QByteArrayView property, const std::optional<QString> &text)
    {
        if (text) {
            m_document.setValue(m_todo, property, IcsDocument::escaped(*text));
        } else {
            m_document.remove(m_todo, property);
        }
    }

    void writeDue(const std::optional<ReminderDueDate> &due)
    {
        if (!due) {
            m_document.remove(m_todo, "DUE");
        } else if (const QDate *day = std::get_if<QDate>(&*due)) {
            m_document.setProperty(m_todo, "DUE", ";VALUE=DATE",
                                   day->toString(QStringLiteral("yyyyMMdd")).toLatin1());
        } else {
            m_document.setProperty(m_todo, "DUE", {}, utcText(std::get<Date>(*due)));
        }
    }

    IcsDocument &m_document;
    IcsDocument::Component m_todo;
    Date m_now;
};

/** The text's component of each task; nothing if text and parser do not see the same tasks. */
std::optional<std::vector<IcsDocument::Component>> componentsOf(const IcsDocument &document,
                                                                const ParsedIcs &parsed)
{
    std::vector<IcsDocument::Component> components = document.components("VTODO");
    if (components.size() != parsed.todos.size()) {
        return std::nullopt;
    }
    return components;
}

/**
 * Other programs settle an occurrence by a component of its own and leave the series where it was: here it is
 * brought to the occurrence that is due.
 */
QByteArray withSeriesBroughtForward(const QByteArray &text, const QString &fallbackId)
{
    QByteArray result = text;
    const std::optional<ParsedIcs> parsed = parseIcs(text, fallbackId);
    for (size_t place = 0; parsed && parsed->hasOverrides && place < parsed->todos.size(); ++place) {
        const IcsTodo &todo = parsed->todos[place];
        std::optional<IcsDocument> document = IcsDocument::parse(result);
        const auto components = document ? componentsOf(*document, *parsed) : std::nullopt;
        if (!components || !todo.isRecurring || todo.isOverride) {
            continue;
        }
        const IcsSeries series(todo.calendar, todo.component, *document, (*components)[place]);
        if (!series.isPresentSettled()) {
            continue;
        }
        const IcsSeries::Step step = series.next();
        if (step.kind == IcsSeries::Step::Kind::Advanced) {
            TodoWriter(*document, (*components)[place], Date()).advance(step);
            result = document->text();
        }
    }
    return result;
}

/** `text`, if it is another than before, with line breaks as iCalendar has them and no other control
 * characters: they have no form there. */
std::optional<QString> storable(const std::optional<QString> &text, const std::optional<QString> &before)
{
    if (!text || text == before) {
        return text;
    }
    QString clean = *text;
    clean.remove(u'\r');
    clean.removeIf([](QChar c) { return c.unicode() < 0x20 && c != u'\n' && c != u'\t'; });
    return clean.isEmpty() ? std::nullopt : std::optional(clean);
}

bool isSame(const std::optional<ReminderDueDate> &a, const std::optional<ReminderDueDate> &b)
{
    if (a && b && std::holds_alternative<Date>(*a) && std::holds_alternative<Date>(*b)) {
        return std::abs(std::get<Date>(*a) - std::get<Date>(*b)) < 1.0;
    }
    return a == b;
}

bool isReadBack(const QByteArray &text, const QString &fallbackId, const Reminder &wanted)
{
    const auto reminders = IcsTodos::read(text, fallbackId);
    return reminders && std::any_of(reminders->begin(), reminders->end(), [&wanted](const Reminder &one) {
               return one.identifier == wanted.identifier && one.title == wanted.title &&
                      one.notes == wanted.notes && one.priority == wanted.priority &&
                      one.isCompleted == wanted.isCompleted && isSame(one.dueDate, wanted.dueDate);
           });
}

/** Removes all tasks but one from the document. */
void removeOthers(IcsDocument &document, const IcsDocument::Component &kept)
{
    std::vector<IcsDocument::Component> all = document.components("VTODO");
    std::reverse(all.begin(), all.end());
    for (const IcsDocument::Component &one : all) {
        if (one.begin != kept.begin) {
            document.remove(one);
        }
    }
}

} // namespace

std::optional<std::vector<Reminder>> IcsTodos::read(const QByteArray &text, const QString &fallbackId)
{
    std::optional<ParsedIcs> parsed = IcsDocument::isWhole(text) ? parseIcs(text, fallbackId) : std::nullopt;
    if (!parsed) {
        return std::nullopt;
    }
    if (parsed->hasOverrides) {
        parsed = parseIcs(withSeriesBroughtForward(text, fallbackId), fallbackId);
    }
    std::vector<Reminder> reminders;
    for (IcsTodo &todo : parsed->todos) {
        if (!todo.isCancelled) {
            reminders.push_back(std::move(todo.reminder));
        }
    }
    return reminders;
}

IcsEdit IcsTodos::edit(const QByteArray &original, const QString &fallbackId, const Reminder &before,
                       const Reminder &wantedReminder, Date now)
{
    Reminder wanted = wantedReminder;
    wanted.title = storable(wanted.title, before.title);
    wanted.notes = storable(wanted.notes, before.notes);
    const bool isCompletion = wanted.isCompleted && !before.isCompleted;
    const QByteArray text = isCompletion ? withSeriesBroughtForward(original, fallbackId) : original;

    const std::optional<ParsedIcs> parsed = parseIcs(text, fallbackId);
    std::optional<IcsDocument> document = IcsDocument::parse(text);
    const auto components = parsed && document ? componentsOf(*document, *parsed) : std::nullopt;
    if (!components) {
        return {
            .text = {}, .completedText = {}, .completedUid = {}, .refusal = tr("It cannot be understood.")};
    }
    const auto found = std::find_if(parsed->todos.begin(), parsed->todos.end(), [&](const IcsTodo &todo) {
        return todo.reminder.identifier == before.identifier;
    });
    if (found == parsed->todos.end()) {
        return {
            .text = {}, .completedText = {}, .completedUid = {}, .refusal = tr("It is not there any more.")};
    }
    const IcsDocument::Component component = (*components)[size_t(found - parsed->todos.begin())];

    IcsEdit edit;
    // As written: a rule that libical does not understand is still one.
    const bool isSeries =
        !found->isOverride && document->count(component, "RRULE") + document->count(component, "RDATE") > 0;
    if (isCompletion && isSeries) {
        const IcsSeries series(found->calendar, found->component, *document, component);
        const IcsSeries::Step step = series.next();
        if (step.kind == IcsSeries::Step::Kind::Refused) {
            edit.refusal = step.refusal;
            return edit;
        }
        if (step.kind == IcsSeries::Step::Kind::Advanced) {
            completeOccurrence(*document, component, step, before, wanted, now, edit);
            return edit;
        }
    }
    TodoWriter writer(*document, component, now);
    writer.write(before, wanted);
    writer.stamp();
    edit.text = document->text();
    if (!isReadBack(edit.text, fallbackId, wanted)) {
        edit.refusal = tr("It could not be read back as it would have been written.");
    }
    return edit;
}

void IcsTodos::completeOccurrence(const IcsDocument &document, const IcsDocument::Component &component,
                                  const IcsSeries::Step &step, const Reminder &before, const Reminder &wanted,
                                  Date now, IcsEdit &edit)
{
    IcsDocument completed = document;
    edit.completedUid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    TodoWriter copy(completed, component, now);
    copy.write(before, wanted);
    copy.detach(edit.completedUid);
    copy.stamp();
    removeOthers(completed, copy.todo());
    edit.completedText = completed.text();
    Reminder done = wanted;
    done.identifier = edit.completedUid;

    IcsDocument advanced = document;
    Reminder reopened = wanted;
    reopened.isCompleted = false;
    TodoWriter series(advanced, component, now);
    series.write(before, reopened);
    series.reopen();
    series.advance(step);
    series.stamp();
    edit.text = advanced.text();

    const auto remaining = read(edit.text, before.identifier);
    const bool isOpen =
        remaining && std::any_of(remaining->begin(), remaining->end(), [&](const Reminder &one) {
            return one.identifier == before.identifier && !one.isCompleted;
        });
    if (!isOpen || !isReadBack(edit.completedText, done.identifier, done)) {
        edit.refusal = tr("It could not be read back as it would have been written.");
    }
}

QByteArray IcsTodos::make(const Reminder &reminder, const QString &uid, Date now)
{
    const QByteArray head = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Vantrel//Vantrel//EN\r\n"
                            "BEGIN:VTODO\r\nUID:" +
                            IcsDocument::escaped(uid) + "\r\nCREATED:" + utcText(now) + "\r\n";
    std::optional<IcsDocument> document = IcsDocument::parse(head + "END:VTODO\r\nEND:VCALENDAR\r\n");
    TodoWriter writer(*document, document->components("VTODO").front(), now);
    Reminder wanted = reminder;
    wanted.title = storable(reminder.title, {});
    wanted.notes = storable(reminder.notes, {});
    writer.stamp();
    writer.write(Reminder(), wanted);
    return document->text();
}

} // namespace vantrel
