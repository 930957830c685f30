#pragma once

#include "foundations/PlainTextWorkItem.h"
#include "foundations/TaskPosition.h"

#include <QStringList>

#include <vector>

namespace vantrel {

/** What the two tables of the store say together of the plain text tasks. */
struct ReconciledTasks
{
    /** Those with a place in the order of the places, then those without. */
    std::vector<PlainTextRecord> tasks;
    /** Ids that have a place and no row: their text is lost. */
    QStringList withoutRow;
    /** Ids that have a row and no place: they are to be given one. */
    QStringList withoutPlace;
    /** Ids of complete tasks whose row has no completion date: they were given `now`. */
    QStringList withInventedCompletionDate;
};

/**
 * Brings rows and places together. The places decide which tasks exist, so that a task whose row is lost
 * still shows; a row without a place is a task too. Places of other sources are passed over. Any thread.
 */
ReconciledTasks reconcilePlainTextTasks(std::vector<PlainTextRecord> rows,
                                        const std::vector<PersistentTaskPosition> &places, Date now);

} // namespace vantrel
