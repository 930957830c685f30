#include "viewmodels/DropPlan.h"

#include <algorithm>

namespace vantrel {

namespace {

constexpr double TopBand = 50.0;
constexpr double BottomBand = 300.0;
constexpr double HeightOfCard = 100.0;

QStringList without(const QStringList &ids, const QStringList &removed)
{
    QStringList rest;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(rest),
                 [&](const QString &id) { return !removed.contains(id); });
    return rest;
}

} // namespace

int calculateTargetPosition(double y, int taskCount)
{
    if (taskCount == 0 || y < TopBand) {
        return 0;
    }
    if (y > BottomBand || taskCount * HeightOfCard < y) {
        return taskCount;
    }
    return std::clamp(static_cast<int>((y - TopBand) / BottomBand * taskCount), 0, taskCount);
}

DropPlan planDrop(const QStringList &shown, const QStringList &all, const QStringList &dragged, int position)
{
    const QStringList shownRest = without(shown, dragged);
    const QStringList allRest = without(all, dragged);
    const qsizetype shownIndex = std::clamp<qsizetype>(position, 0, shownRest.size());
    const bool isAtEnd = shownIndex == shownRest.size();
    const qsizetype index = isAtEnd ? allRest.size() : allRest.indexOf(shownRest[shownIndex]);

    DropPlan plan;
    plan.row = static_cast<int>(isAtEnd ? shown.size() : shown.indexOf(shownRest[shownIndex]));

    // Cards that stand above their new place move down, the last first; only then is the place above filled
    // up.
    std::vector<std::pair<QString, int>> rising;
    int sinking = 0;
    for (int i = 0; i < static_cast<int>(dragged.size()); ++i) {
        const qsizetype current = all.indexOf(dragged[i]);
        const auto before = std::count_if(dragged.begin(), dragged.begin() + i,
                                          [&](const QString &id) { return all.contains(id); });
        if (current >= 0 && current - before < index) {
            plan.moves.insert(plan.moves.begin(), {dragged[i], static_cast<int>(index) + sinking++});
        } else {
            rising.emplace_back(dragged[i], static_cast<int>(index) + i);
        }
    }
    plan.moves.insert(plan.moves.end(), rising.begin(), rising.end());
    return plan;
}

} // namespace vantrel
