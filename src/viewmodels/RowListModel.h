#pragma once

#include "viewmodels/RowChanges.h"

#include <QAbstractListModel>

#include <algorithm>
#include <vector>

namespace vantrel {

/**
 * A list model that is told its new rows whole and finds out itself what was inserted, moved, removed and
 * changed, so that a view can slide its items instead of building them anew.
 *
 * rowId() gives a row's id, which is unique in the list; == tells whether two rows show the same.
 */
class RowListModel : public QAbstractListModel
{
    Q_OBJECT
protected:
    using QAbstractListModel::QAbstractListModel;

    /**
     * Makes `rows`, the rows of this model, equal `next`, making each new or changed row with `make`. A row
     * counts as changed if it differs from its element of `next`.
     */
    template <typename Row, typename Source, typename Make>
    void updateRows(std::vector<Row> &rows, const std::vector<Source> &next, Make make)
    {
        for (const RowChange &change : rowChanges(idsOf(rows), idsOf(next))) {
            carryOut(change, rows, next, make);
        }
        replaceChanged(rows, next, make);
    }

private:
    template <typename Row>
    static QStringList idsOf(const std::vector<Row> &rows)
    {
        QStringList ids;
        ids.reserve(static_cast<qsizetype>(rows.size()));
        for (const Row &row : rows) {
            ids.append(rowId(row));
        }
        return ids;
    }

    template <typename Row, typename Source, typename Make>
    void carryOut(const RowChange &change, std::vector<Row> &rows, const std::vector<Source> &next, Make make)
    {
        const auto first = rows.begin() + change.first;
        const int last = change.first + change.count - 1;
        switch (change.kind) {
        case RowChange::Kind::Remove:
            beginRemoveRows({}, change.first, last);
            rows.erase(first, first + change.count);
            endRemoveRows();
            break;
        case RowChange::Kind::Move: {
            // Qt counts the target before the row has left its place.
            const bool isDown = change.to > change.first;
            beginMoveRows({}, change.first, last, {}, isDown ? change.to + 1 : change.to);
            const auto to = rows.begin() + change.to;
            isDown ? std::rotate(first, first + 1, to + 1) : std::rotate(to, first, first + 1);
            endMoveRows();
            break;
        }
        case RowChange::Kind::Insert: {
            beginInsertRows({}, change.first, last);
            std::vector<Row> added;
            for (int row = change.first; row <= last; ++row) {
                added.push_back(make(next[static_cast<size_t>(row)]));
            }
            rows.insert(first, std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
            endInsertRows();
            break;
        }
        }
    }

    /** One dataChanged() for each run of rows that stayed and differ from what they shall be. */
    template <typename Row, typename Source, typename Make>
    void replaceChanged(std::vector<Row> &rows, const std::vector<Source> &next, Make make)
    {
        std::vector<std::pair<int, int>> runs;
        for (size_t i = 0; i < rows.size(); ++i) {
            if (rows[i] == next[i]) {
                continue;
            }
            rows[i] = make(next[i]);
            const int row = static_cast<int>(i);
            if (runs.empty() || runs.back().second != row - 1) runs.emplace_back(row, row);
            runs.back().second = row;
        }
        for (const auto &[first, last] : runs) {
            Q_EMIT dataChanged(index(first), index(last));
        }
    }
};

} // namespace vantrel
