#include "viewmodels/RowChanges.h"

#include <QHash>

#include <algorithm>

namespace vantrel {

namespace {

/** More moves than this would cost a view more than new rows do. */
constexpr std::ptrdiff_t MaximumMoves = 32;

/** Which elements form a longest increasing subsequence: they may stay while the others move. */
std::vector<bool> longestIncreasing(const std::vector<int> &values)
{
    std::vector<int> tails; // index of the smallest last element of a subsequence of each length
    std::vector<int> previous(values.size(), -1);
    for (int i = 0; i < static_cast<int>(values.size()); ++i) {
        const auto place = std::lower_bound(tails.begin(), tails.end(), i,
                                            [&](int a, int b) { return values[a] < values[b]; });
        if (place != tails.begin()) previous[i] = *(place - 1);
        if (place == tails.end()) {
            tails.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> stays(values.size(), false);
    for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = previous[i]) {
        stays[i] = true;
    }
    return stays;
}

/** Lets the rows that would move leave instead, to come back as new ones. */
void dropMovers(std::vector<int> &places, std::vector<int> &kept, std::vector<bool> &stays)
{
    std::vector<int> staying;
    size_t next = 0;
    for (int &place : places) {
        if (place < 0) {
            continue;
        }
        if (stays[next++]) {
            staying.push_back(place);
        } else {
            place = -1;
        }
    }
    kept = std::move(staying);
    stays.assign(kept.size(), true);
}

/** Appends the removal of every row without a place, whole runs at once. */
void appendRemovals(std::vector<RowChange> &changes, const std::vector<int> &places, int offset)
{
    int end = static_cast<int>(places.size());
    while (end > 0) {
        int first = end;
        while (first > 0 && places[static_cast<size_t>(first - 1)] < 0) {
            --first;
        }
        if (first < end) changes.push_back({RowChange::Kind::Remove, offset + first, end - first});
        end = first - 1;
    }
}

/** Appends the moves that sort `current`: each row that does not stay goes behind its predecessor. */
void appendMoves(std::vector<RowChange> &changes, std::vector<int> current, const std::vector<bool> &stays,
                 int offset)
{
    std::vector<std::pair<int, bool>> order; // each value, and whether it stays, in the order wanted
    for (size_t i = 0; i < current.size(); ++i) {
        order.emplace_back(current[i], stays[i]);
    }
    std::sort(order.begin(), order.end());

    for (size_t i = 0; i < order.size(); ++i) {
        if (order[i].second) {
            continue;
        }
        const auto from = std::find(current.begin(), current.end(), order[i].first);
        const int first = static_cast<int>(from - current.begin());
        current.erase(from);
        const auto to =
            i == 0 ? current.begin() : std::find(current.begin(), current.end(), order[i - 1].first) + 1;
        const int place = static_cast<int>(to - current.begin());
        current.insert(to, order[i].first);
        if (first != place) changes.push_back({RowChange::Kind::Move, offset + first, 1, offset + place});
    }
}

void appendInsertions(std::vector<RowChange> &changes, const std::vector<bool> &isThere, int offset)
{
    for (int first = 0; first < static_cast<int>(isThere.size());) {
        int end = first;
        while (end < static_cast<int>(isThere.size()) && !isThere[end]) {
            ++end;
        }
        if (end > first) changes.push_back({RowChange::Kind::Insert, offset + first, end - first});
        first = end + 1;
    }
}

/** How many ids two lists have in common at their beginning, and behind that at their end. */
std::pair<qsizetype, qsizetype> commonEnds(const QStringList &a, const QStringList &b)
{
    const qsizetype shorter = std::min(a.size(), b.size());
    qsizetype head = 0;
    while (head < shorter && a[head] == b[head]) {
        ++head;
    }
    qsizetype tail = 0;
    while (tail < shorter - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) {
        ++tail;
    }
    return {head, tail};
}

} // namespace

std::vector<RowChange> rowChanges(const QStringList &before, const QStringList &after)
{
    const auto [head, tail] = commonEnds(before, after);
    const int offset = static_cast<int>(head);
    if (head + tail == before.size()) { // no row has left its place, the first fill of a list above all
        const int added = static_cast<int>(after.size() - before.size());
        return added > 0 ? std::vector<RowChange>{{RowChange::Kind::Insert, offset, added}}
                         : std::vector<RowChange>{};
    }

    QHash<QString, int> wanted; // the place of each id in what differs of `after`
    for (qsizetype i = head; i < after.size() - tail; ++i) {
        wanted.insert(after[i], static_cast<int>(i - head));
    }
    std::vector<int> places; // where the rows of `before` go; -1 for those that leave
    for (qsizetype i = head; i < before.size() - tail; ++i) {
        places.push_back(wanted.value(before[i], -1));
    }

    std::vector<int> kept;
    std::copy_if(places.begin(), places.end(), std::back_inserter(kept),
                 [](int place) { return place >= 0; });
    std::vector<bool> stays = longestIncreasing(kept);
    if (std::count(stays.begin(), stays.end(), false) > MaximumMoves) {
        dropMovers(places, kept, stays);
    }

    std::vector<bool> isThere(static_cast<size_t>(wanted.size()), false);
    for (const int place : kept) {
        isThere[static_cast<size_t>(place)] = true;
    }
    std::vector<RowChange> changes;
    appendRemovals(changes, places, offset);
    appendMoves(changes, kept, stays, offset);
    appendInsertions(changes, isThere, offset);
    return changes;
}

} // namespace vantrel
