#pragma once

#include "foundations/WorkItem.h"

#include <array>

namespace vantrel {

/** The concrete class of an item. It decides which source is told and what of the item can be changed; what
 * its id looks like is another matter, see sourceOf(). */
enum class ItemClass { OmniFocus, Reminder, PlainText, Base, Unknown };

inline constexpr std::array AllItemClasses{ItemClass::OmniFocus, ItemClass::Reminder, ItemClass::PlainText,
                                           ItemClass::Base, ItemClass::Unknown};

ItemClass itemClass(const WorkItem &item);

/** "OmniFocusTask" and so on. */
QString itemClassName(const WorkItem &item);

} // namespace vantrel
