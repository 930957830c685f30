#pragma once

#include "sources/TaskManagerProtocol.h"

namespace vantrel {

struct AppConfig;
class Clock;

/** Fills an empty folder with open tasks of all ages, from today's to those of over a month. */
void writeAgingTasks(const AppConfig &config, Clock &clock);

/** What was finished in the last twenty days in that source: now many, now few.
 */
WorkItems finishedTasks(TaskManagerType source, Date now);

} // namespace vantrel
