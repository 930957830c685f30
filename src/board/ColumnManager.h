#pragma once

#include "foundations/Column.h"

#include <QObject>

#include <vector>

namespace vantrel {

class PersistenceManager;

/**
 * Owns the columns of the board in their order, and saves them at each change. Owned by BoardState; GUI
 * thread.
 *
 * No queue or active column stands behind a completed one, positions equal indexes, and each type that the
 * board has keeps at least one column.
 */
class ColumnManager : public QObject
{
    Q_OBJECT
public:
    /** Loads the columns; where no file exists yet the default columns are made and saved at once. */
    explicit ColumnManager(PersistenceManager &persistence, QObject *parent = nullptr);

    const std::vector<Column> &columns() const { return m_columns; }
    const Column *column(ColumnId id) const;
    /** Place from the left; -1 for an unknown column. */
    int indexOf(ColumnId id) const;
    const Column *firstOfType(ColumnType type) const;

    /** Puts `column` behind the last of its type, or where its type belongs, and saves. */
    void addColumn(const Column &column);
    /** Replaces the column with that id; a changed type moves it to its new type's group. False if unknown.
     */
    bool updateColumn(const Column &column);
    /** True if another column has the same type. */
    bool canRemoveColumn(const Column &column) const;
    /** The column that takes the tasks of column `id` when it is removed; nullptr where that is refused. */
    const Column *heirOf(ColumnId id) const;
    /** Moves the stored rows of the column to its heir, and removes it; false, with nothing changed, without
     * one. */
    bool removeColumn(ColumnId id);
    /** Takes the column at `from` out and puts it in at `to`; the indexes and the order must be valid. */
    void applyMove(int from, int to);
    /** Takes the columns as they were last loaded or saved. */
    void refreshColumns();

    /** True if nothing but completed columns follows the first completed one. */
    static bool validateColumnTypeOrder(const std::vector<ColumnType> &types);

Q_SIGNALS:
    void columnsChanged();

private:
    void insertByType(const Column &column);
    void renumberAndSave();

    PersistenceManager &m_persistence;
    std::vector<Column> m_columns;
};

} // namespace vantrel
