#pragma once

#include <algorithm>
#include <vector>

namespace vantrel {

/** Takes the element at `from` out of `list` and puts it in at `to`, an index after the removal. Both valid.
 */
template <typename T>
void moveElement(std::vector<T> &list, int from, int to)
{
    const auto source = list.begin() + from;
    const auto target = list.begin() + to;
    if (from < to) {
        std::rotate(source, source + 1, target + 1);
    } else {
        std::rotate(target, source, source + 1);
    }
}

/** True if an element can be moved from index `from` to index `to`. */
template <typename T>
bool canMoveElement(const std::vector<T> &list, int from, int to)
{
    const auto isIndex = [count = static_cast<int>(list.size())](int index) {
        return index >= 0 && index < count;
    };
    return isIndex(from) && isIndex(to);
}

/** Lets every record's `position` be its index. */
template <typename T>
void numberByIndex(std::vector<T> &list)
{
    int position = 0;
    for (T &record : list) {
        record.position = position++;
    }
}

} // namespace vantrel
