#pragma once

#include "foundations/Column.h"
#include "viewmodels/RowListModel.h"

#include <QtQml/qqmlregistration.h>

#include <vector>

namespace vantrel {

/** What the counts of a column are over the whole board. */
struct ColumnCounts
{
    /** Tasks that the filters let through, done or not. */
    int shown = 0;
    /** Tasks to do in all swimlanes, and in the fullest of them. */
    int incomplete = 0;
    int fullestCell = 0;
};

/** Everything the header of a column shows. A value. */
struct ColumnContent
{
    Q_GADGET
    QML_VALUE_TYPE(columnContent)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString color MEMBER color CONSTANT)
    Q_PROPERTY(bool isActive MEMBER isActive CONSTANT)
    Q_PROPERTY(bool isCompleted MEMBER isCompleted CONSTANT)
    Q_PROPERTY(QString countText MEMBER countText CONSTANT)
    Q_PROPERTY(bool isOverLimit MEMBER isOverLimit CONSTANT)
    Q_PROPERTY(QString help MEMBER help CONSTANT)
    Q_PROPERTY(QString accessibleName MEMBER accessibleName CONSTANT)

public:
    QString id;
    QString name;
    QString symbol;
    /** "#RRGGBB"; empty for the colour of the column's type. */
    QString color;
    bool isActive = false;
    bool isCompleted = false;
    /** "6 / 5" for a column with a limit, else the number of tasks shown. */
    QString countText;
    bool isOverLimit = false;
    QString help;
    QString accessibleName;

    friend bool operator==(const ColumnContent &, const ColumnContent &) = default;
    friend const QString &rowId(const ColumnContent &column) { return column.id; }
};

/**
 * The content of a column's header. A limit for each swimlane is measured by the fullest of them, so that the
 * two figures of "6 / 5" are of one kind.
 */
ColumnContent columnContent(const Column &column, const ColumnCounts &counts);

/** The columns of the board from the left. Owned by BoardViewModel; GUI thread. */
class ColumnListModel : public RowListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
public:
    enum Role { ColumnRole = Qt::UserRole };

    using RowListModel::RowListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void setColumns(const std::vector<ColumnContent> &columns);

private:
    std::vector<ColumnContent> m_columns;
};

} // namespace vantrel
