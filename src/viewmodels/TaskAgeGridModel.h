#pragma once

#include "analytics/TaskAgeAnalyzer.h"
#include "foundations/WorkItem.h"
#include "viewmodels/CardContent.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace vantrel {

/** One card of the age grid. A value. */
struct AgeCard
{
    Q_GADGET
    QML_VALUE_TYPE(ageCard)
    Q_PROPERTY(QString id MEMBER id CONSTANT)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString ageText MEMBER ageText CONSTANT)
    Q_PROPERTY(QString sourceIcon MEMBER sourceIcon CONSTANT)
    Q_PROPERTY(QString sourceText MEMBER sourceText CONSTANT)
    Q_PROPERTY(QString zone MEMBER zone CONSTANT)
    Q_PROPERTY(double height MEMBER height CONSTANT)
    Q_PROPERTY(QString accessibleName MEMBER accessibleName CONSTANT)

public:
    QString id;
    QString title;
    QString ageText;
    QString sourceIcon;
    QString sourceText;
    /** The raw value of its AgeZone. */
    QString zone;
    /** In points: the older, the higher. */
    double height = 0.0;
    QString accessibleName;

    static AgeCard of(const WorkItem &task, const CardRules &rules);
};

/**
 * The age grid, one row of the model a row of cards: a list view then makes only the rows that are seen,
 * whatever their heights. Cards are made when they are asked for. Owned by OptimizeViewModel; GUI thread.
 */
class TaskAgeGridModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(int columns READ columns WRITE setColumns NOTIFY columnsChanged)
    Q_PROPERTY(int cardCount READ cardCount NOTIFY cardsChanged)
public:
    enum Role { CardsRole = Qt::UserRole + 1, RowHeightRole, FirstIndexRole };

    /** `rules` tells how cards are to be written at the moment. */
    explicit TaskAgeGridModel(std::function<CardRules()> rules, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int columns() const { return m_columns; }
    void setColumns(int columns);
    int cardCount() const { return static_cast<int>(m_tasks.size()); }

    const std::vector<WorkItemPtr> &tasks() const { return m_tasks; }
    /** In the order in which they are shown. */
    void setTasks(std::vector<WorkItemPtr> tasks);
    /** The rules, or what they make of the tasks, have changed. */
    void rewriteCards();

Q_SIGNALS:
    void columnsChanged();
    void cardsChanged();

private:
    int rowsFor(std::size_t cards, int columns) const;
    QVariantList cardsOfRow(int row) const;
    /** Carries out `change` between the signals that tell of a list with `rows` rows. */
    void changeTo(int rows, const std::function<void()> &change);

    std::function<CardRules()> m_rules;
    std::vector<WorkItemPtr> m_tasks;
    int m_columns = 1;
};

} // namespace vantrel
