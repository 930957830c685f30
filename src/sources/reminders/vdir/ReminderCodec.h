#pragma once

#include "sources/reminders/ReminderStore.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace vantrel {

/** The form of encodeReminders(): to be changed with it, so that what an older program has kept is not read.
 */
inline constexpr auto ReminderCodecVersion = "1";

/** The reminders of a file as bytes, without their lists and versions; for a cache on this computer only. */
QByteArray encodeReminders(const std::vector<Reminder> &reminders);
/** Nothing if `bytes` do not come from encodeReminders(). */
std::optional<std::vector<Reminder>> decodeReminders(QByteArrayView bytes);

} // namespace vantrel
