#pragma once

#include "foundations/PlainTextWorkItem.h"
#include "foundations/TaskPosition.h"

#include <QtGlobal>

#include <utility>
#include <vector>

namespace vantrel {

/** Differs from an earlier one if anything may have been stored in between, by whatever program. */
using StoreMark = std::pair<qint64, qint64>;

/** The plain text tasks and all places, as they stood at one moment. */
struct PlainTextReading
{
    StoreMark mark;
    /** Nothing was stored since the mark that was asked about: rows and places were not read. */
    bool isUnchanged = false;
    std::vector<PlainTextRecord> rows;
    std::vector<PersistentTaskPosition> places;
};

} // namespace vantrel
