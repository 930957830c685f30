#pragma once

#include "foundations/Date.h"
#include "sources/TaskManagerProtocol.h"

namespace vantrel::bench {

/** The days that the Analyze screen looks back. */
inline constexpr int LookbackDays = 20;

/** Finished within the last twenty days, half of them in OmniFocus and half as reminders. */
WorkItems finishedItems(Date now, int count);
/** Open tasks of OmniFocus of all ages up to two months. */
WorkItems openItems(Date now, int count);

} // namespace vantrel::bench
