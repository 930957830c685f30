#pragma once

#include "sources/reminders/ReminderStore.h"
#include "sources/reminders/vdir/IcsSeries.h"

#include <QByteArray>
#include <QCoreApplication>

#include <optional>
#include <vector>

namespace vantrel {

/** How the text of a file is to be after an edit. */
struct IcsEdit
{
    QByteArray text;
    /** Of a series of which one occurrence was completed: that one, as a file of its own, and its UID. */
    QByteArray completedText;
    QString completedUid;
    /** Why the edit is refused, for the user; empty if it is not. Nothing may be written then. */
    QString refusal;
};

/**
 * The tasks of an iCalendar text: read through libical, changed line by line, so that what is not understood
 * here stays as it is. Without state; any thread.
 */
class IcsTodos
{
    Q_DECLARE_TR_FUNCTIONS(vantrel::IcsTodos)
public:
    /** Larger files are not read. */
    static constexpr qint64 LargestFile = 8 * 1024 * 1024;

    /**
     * The tasks of the text, without list; nothing if it is not iCalendar, or not all of it. An occurrence of
     * a series that has a component of its own has the identifier "{UID}/{RECURRENCE-ID}". Cancelled tasks
     * are left out. A task without UID gets `fallbackId`.
     */
    static std::optional<std::vector<Reminder>> read(const QByteArray &text, const QString &fallbackId);

    /** Brings what differs between `before`, which is in the text, and `wanted` into the text. */
    static IcsEdit edit(const QByteArray &text, const QString &fallbackId, const Reminder &before,
                        const Reminder &wanted, Date now);

    /** The text of a new file. */
    static QByteArray make(const Reminder &reminder, const QString &uid, Date now);

private:
    /** Keeps the completed occurrence as a task of its own and lets the series go on with the next one. */
    static void completeOccurrence(const IcsDocument &document, const IcsDocument::Component &component,
                                   const IcsSeries::Step &step, const Reminder &before,
                                   const Reminder &wanted, Date now, IcsEdit &edit);
};

} // namespace vantrel
