#pragma once

#include "sources/reminders/ReminderStore.h"
#include "sources/reminders/vdir/IcalHandle.h"

#include <optional>
#include <vector>

namespace vantrel {

/** One VTODO of a parsed text. The components belong to the ParsedIcs. */
struct IcsTodo
{
    Reminder reminder;
    icalcomponent *component = nullptr;
    icalcomponent *calendar = nullptr;
    /** An occurrence of a series, with a component of its own. */
    bool isOverride = false;
    bool isCancelled = false;
    bool isRecurring = false;
};

/** An iCalendar text as libical understands it. */
struct ParsedIcs
{
    IcalHandle<icalcomponent> root;
    /** In the order of the text. */
    std::vector<IcsTodo> todos;
    bool hasOverrides = false;
};

/** Nothing if the text is not iCalendar. A task without UID gets `fallbackId`. Any thread. */
std::optional<ParsedIcs> parseIcs(const QByteArray &text, const QString &fallbackId);

inline constexpr qint64 ReferenceSecondsSince1970 = 978307200;

} // namespace vantrel
