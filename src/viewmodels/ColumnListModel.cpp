#include "viewmodels/ColumnListModel.h"

#include "board/rules/ColumnRules.h"
#include "foundations/Color.h"

namespace vantrel {

namespace {

QString symbolOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Queue:
        return QStringLiteral("pause.circle.fill");
    case ColumnType::Active:
        return QStringLiteral("play.circle.fill");
    case ColumnType::Completed:
        break;
    }
    return QStringLiteral("checkmark.circle");
}

} // namespace

ColumnContent columnContent(const Column &column, const ColumnCounts &counts)
{
    const bool isLimited = !column.isCompleted() && column.wipLimit;
    const bool isColumnWide = column.wipLimitType == WIPLimitType::Column;
    const int wipDisplayCount = isColumnWide ? counts.incomplete : counts.fullestCell;

    ColumnContent content;
    content.id = column.id.text();
    content.name = column.name;
    content.symbol = symbolOf(column.type);
    if (column.colorHex) content.color = hexText(colorFromHex(*column.colorHex));
    content.isActive = column.type == ColumnType::Active;
    content.isCompleted = column.isCompleted();
    content.countText = isLimited
                            ? QString::number(wipDisplayCount) + u" / " + QString::number(*column.wipLimit)
                            : QString::number(counts.shown);
    content.isOverLimit = isWIPLimitExceeded(column, wipDisplayCount);
    content.accessibleName = ColumnListModel::tr("column header for %1 [type %2] - %3 tasks")
                                 .arg(column.name, rawValue(column.type))
                                 .arg(counts.shown);
    QStringList help;
    if (content.isOverLimit) {
        help += ColumnListModel::tr("This column has more tasks than its set limit");
        content.accessibleName +=
            ColumnListModel::tr(" (wip exceeded, current count is %1)").arg(wipDisplayCount);
    }
    if (isLimited && isColumnWide) help += ColumnListModel::tr("This limit applies across all swimlanes");
    content.help = help.join(u'\n');
    return content;
}

int ColumnListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ColumnListModel::data(const QModelIndex &index, int role) const
{
    const bool isKnown = checkIndex(index, CheckIndexOption::IndexIsValid) && role == ColumnRole;
    return isKnown ? QVariant::fromValue(m_columns[static_cast<size_t>(index.row())]) : QVariant();
}

QHash<int, QByteArray> ColumnListModel::roleNames() const
{
    return {{ColumnRole, "column"}};
}

void ColumnListModel::setColumns(const std::vector<ColumnContent> &columns)
{
    updateRows(m_columns, columns, [](const ColumnContent &column) { return column; });
}

} // namespace vantrel
