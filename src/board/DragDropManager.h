#pragma once

#include "foundations/Column.h"
#include "foundations/SwimLane.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace vantrel {

/** The column or swimlane being dragged, and the test whether a column may go where it is dropped. */
class DragDropManager : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    using ColumnOrderTest = std::function<bool(const std::vector<ColumnType> &)>;

    const std::optional<Column> &draggedColumn() const { return m_draggedColumn; }
    const std::optional<SwimLane> &draggedSwimLane() const { return m_draggedSwimLane; }
    void setDraggedColumn(const std::optional<Column> &column);
    void setDraggedSwimLane(const std::optional<SwimLane> &swimLane);

    /** The list with the element at `from` moved to `to`, an index after the removal; nothing where that is
     * refused. */
    std::optional<std::vector<Column>> moveColumn(int from, int to, const std::vector<Column> &columns,
                                                  const ColumnOrderTest &validateColumnOrder) const;

Q_SIGNALS:
    void dragChanged();

private:
    std::optional<Column> m_draggedColumn;
    std::optional<SwimLane> m_draggedSwimLane;
};

} // namespace vantrel
