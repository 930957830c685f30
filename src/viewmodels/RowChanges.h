#pragma once

#include <QStringList>

#include <vector>

namespace vantrel {

/** One step that a list takes on its way to another order. */
struct RowChange
{
    enum class Kind { Remove, Move, Insert };

    Kind kind = Kind::Insert;
    /** The first row removed or inserted, or the row that moves. */
    int first = 0;
    /** Always 1 for a move. */
    int count = 1;
    /** The row at which a moved row stands afterwards. */
    int to = 0;

    friend bool operator==(const RowChange &, const RowChange &) = default;
};

/**
 * The steps that turn the list of ids `before` into `after`, to be carried out one after the other: removals
 * from the back, then moves, then insertions from the front.
 *
 * No id may occur twice in a list. As few rows as possible move; where very many would, they are taken out
 * and put in again instead, which keeps the work linear.
 */
std::vector<RowChange> rowChanges(const QStringList &before, const QStringList &after);

} // namespace vantrel
