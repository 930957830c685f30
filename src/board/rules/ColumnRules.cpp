#include "board/rules/ColumnRules.h"

#include <algorithm>

namespace vantrel {

namespace {

/** The index behind the last column of `type`; nothing if there is none. */
std::optional<int> indexBehindLast(const std::vector<Column> &columns, ColumnType type)
{
    const auto last = std::find_if(columns.rbegin(), columns.rend(),
                                   [type](const Column &column) { return column.type == type; });
    return last != columns.rend() ? std::optional(static_cast<int>(last.base() - columns.begin()))
                                  : std::nullopt;
}

} // namespace

bool isValidColumnTypeOrder(const std::vector<ColumnType> &types)
{
    const auto firstCompleted = std::find(types.begin(), types.end(), ColumnType::Completed);
    return std::all_of(firstCompleted, types.end(),
                       [](ColumnType type) { return type == ColumnType::Completed; });
}

int insertionIndex(const std::vector<Column> &columns, ColumnType type)
{
    if (const std::optional<int> behindLast = indexBehindLast(columns, type)) {
        return *behindLast;
    }
    switch (type) {
    case ColumnType::Queue:
        return 0;
    case ColumnType::Active:
        return indexBehindLast(columns, ColumnType::Queue).value_or(0);
    case ColumnType::Completed:
        return static_cast<int>(columns.size());
    }
    Q_UNREACHABLE();
}

bool isWIPLimitExceeded(const Column &column, int incomplete)
{
    return !column.isCompleted() && column.wipLimit && incomplete > *column.wipLimit;
}

} // namespace vantrel
