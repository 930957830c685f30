#pragma once

#include <QStringList>

#include <utility>
#include <vector>

namespace vantrel {

/**
 * The place in a list of `taskCount` cards that a drop at `y` asks for: the first 50 points mean the top,
 * from 300 points on the end, what lies between is shared evenly. `y` counts from the top of the column at
 * zoom 1.
 */
int calculateTargetPosition(double y, int taskCount);

/** Where dropped cards land in a cell. */
struct DropPlan
{
    /** The shown row in front of which they land, as the rows are before the drop. */
    int row = 0;
    /** The moves that bring them there, in this order: a task, and its position at that moment. */
    std::vector<std::pair<QString, int>> moves;

    friend bool operator==(const DropPlan &, const DropPlan &) = default;
};

/**
 * Plans a drop of `dragged`, in the order of the board, at place `position` of the `shown` cards of a cell.
 * `all` are the cell's cards with those that a filter hides. The cards land one behind the other, whether
 * they come from this cell or from others.
 */
DropPlan planDrop(const QStringList &shown, const QStringList &all, const QStringList &dragged, int position);

} // namespace vantrel
