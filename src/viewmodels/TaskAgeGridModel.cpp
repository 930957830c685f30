#include "viewmodels/TaskAgeGridModel.h"

#include <QVariantList>

#include <algorithm>

namespace vantrel {

namespace {
constexpr double YoungestCardHeight = 100.0;
} // namespace

AgeCard AgeCard::of(const WorkItem &task, const CardRules &rules)
{
    const CardContent content = cardContent(task, rules);
    const AgeBucket bucket = taskage::bucketForAge(task.age(rules.now));
    AgeCard card;
    card.id = content.id;
    card.title = content.title;
    card.ageText = content.ageText;
    card.sourceIcon = content.sourceIcon;
    card.sourceText = content.sourceText;
    card.zone = rawValue(zoneOf(bucket));
    card.height = YoungestCardHeight * taskage::scalingFactorFor(bucket);
    card.accessibleName = TaskAgeGridModel::tr("%1, age %2").arg(content.title, content.ageText);
    return card;
}

TaskAgeGridModel::TaskAgeGridModel(std::function<CardRules()> rules, QObject *parent)
    : QAbstractListModel(parent), m_rules(std::move(rules))
{
}

int TaskAgeGridModel::rowsFor(std::size_t cards, int columns) const
{
    return (static_cast<int>(cards) + columns - 1) / columns;
}

int TaskAgeGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rowsFor(m_tasks.size(), m_columns);
}

QHash<int, QByteArray> TaskAgeGridModel::roleNames() const
{
    return {{CardsRole, "cards"}, {RowHeightRole, "rowHeight"}, {FirstIndexRole, "firstIndex"}};
}

QVariantList TaskAgeGridModel::cardsOfRow(int row) const
{
    const CardRules rules = m_rules();
    const std::size_t first = static_cast<std::size_t>(row * m_columns);
    const std::size_t end = std::min(first + static_cast<std::size_t>(m_columns), m_tasks.size());
    QVariantList cards;
    for (std::size_t i = first; i < end; ++i) {
        cards.append(QVariant::fromValue(AgeCard::of(*m_tasks[i], rules)));
    }
    return cards;
}

QVariant TaskAgeGridModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    switch (role) {
    case CardsRole:
        return cardsOfRow(index.row());
    case RowHeightRole: {
        // The oldest task of a row comes first.
        const WorkItem &oldest = *m_tasks[static_cast<std::size_t>(index.row() * m_columns)];
        const AgeBucket bucket = taskage::bucketForAge(oldest.age(m_rules().now));
        return YoungestCardHeight * taskage::scalingFactorFor(bucket);
    }
    case FirstIndexRole:
        return index.row() * m_columns;
    default:
        return {};
    }
}

void TaskAgeGridModel::setColumns(int columns)
{
    const int wanted = std::max(1, columns);
    if (wanted == m_columns) {
        return;
    }
    changeTo(rowsFor(m_tasks.size(), wanted), [&] { m_columns = wanted; });
    Q_EMIT columnsChanged();
}

void TaskAgeGridModel::setTasks(std::vector<WorkItemPtr> tasks)
{
    changeTo(rowsFor(tasks.size(), m_columns), [&] { m_tasks = std::move(tasks); });
    Q_EMIT cardsChanged();
}

/** Rows come and go at the end, so that a view stays where it is scrolled to. */
void TaskAgeGridModel::changeTo(int rows, const std::function<void()> &change)
{
    const int before = rowCount();
    if (rows > before) {
        beginInsertRows({}, before, rows - 1);
        change();
        endInsertRows();
    } else if (rows < before) {
        beginRemoveRows({}, rows, before - 1);
        change();
        endRemoveRows();
    } else {
        change();
    }
    rewriteCards();
}

void TaskAgeGridModel::rewriteCards()
{
    if (rowCount() > 0) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

} // namespace vantrel
