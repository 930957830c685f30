#pragma once

#include "board/BoardState.h"
#include "viewmodels/BoardNavigation.h"
#include "viewmodels/CardContent.h"
#include "viewmodels/CardPreferences.h"
#include "viewmodels/RowListModel.h"

#include <QtQml/qqmlregistration.h>

#include <vector>

namespace vantrel {

/** What all cells of a board ask. Everything outlives them. */
struct CellContext
{
    BoardState &board;
    const BoardNavigation &navigation;
    const CardPreferences &preferences;
    /** The tasks under the pointer while cards are dragged. */
    const QStringList &draggedTaskIds;
};

inline const QString &rowId(const WorkItemPtr &task)
{
    return task->id();
}

/** A row of a cell: a task, and the ear on its changes. */
class CellRow
{
public:
    CellRow(WorkItemPtr task, QMetaObject::Connection connection)
        : m_task(std::move(task)), m_connection(std::move(connection))
    {
    }
    CellRow(CellRow &&other) noexcept { swap(other); }
    CellRow &operator=(CellRow &&other) noexcept
    {
        swap(other);
        return *this;
    }
    ~CellRow() { QObject::disconnect(m_connection); }

    const WorkItem &task() const { return *m_task; }

    friend const QString &rowId(const CellRow &row) { return rowId(row.m_task); }
    friend bool operator==(const CellRow &row, const WorkItemPtr &task) { return row.m_task == task; }

private:
    void swap(CellRow &other) noexcept
    {
        std::swap(m_task, other.m_task);
        std::swap(m_connection, other.m_connection);
    }

    WorkItemPtr m_task;
    QMetaObject::Connection m_connection;
};

/**
 * The cards of one cell of the board in their order, and what the cell says besides. Reads the cell again
 * only if the board says that it may have changed. Owned by BoardViewModel; GUI thread.
 */
class CellModel : public RowListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the board")
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY emptyTextChanged)
    Q_PROPERTY(QString warning READ warning NOTIFY warningChanged)
    Q_PROPERTY(QString warningScope READ warningScope NOTIFY warningChanged)
    Q_PROPERTY(int dropRow READ dropRow NOTIFY dropRowChanged)
    Q_PROPERTY(double scrollPosition MEMBER m_scrollPosition)
public:
    enum Role {
        CardRole = Qt::UserRole,
        IsSelectedRole,
        IsFocusedRole,
        FocusedComponentRole,
        IsDimmedRole,
        IsDraggedRole,
        OperationErrorRole,
    };

    CellModel(CellId id, const CellContext &context, QObject *parent = nullptr);

    CellId id() const { return m_id; }
    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    /** -1 for a task that this cell does not show. */
    Q_INVOKABLE int rowOf(const QString &taskId) const;

    /** What stands in the empty cell. */
    const QString &emptyText() const { return m_emptyText; }
    /** That the column's limit is exceeded here; empty if it is not. */
    const QString &warning() const { return m_warning; }
    /** Of what the limit is, where that is not this cell. */
    const QString &warningScope() const { return m_warningScope; }
    /** The row in front of which dragged cards would land now; -1 for none. */
    int dropRow() const { return m_dropRow; }
    void setDropRow(int row);

    /** Brings the rows up to date; cheap if the cell has not changed. */
    void update();
    /** The rows' view state may have changed: `roles` of the tasks `ids`, or of all. */
    void refreshState(const QList<int> &roles, const QStringList &ids);
    void refreshState(const QList<int> &roles);

Q_SIGNALS:
    void emptyTextChanged();
    void warningChanged();
    void dropRowChanged();

private:
    CellRow makeRow(const WorkItemPtr &task);
    void handleTaskChanged(const WorkItem *task);
    void updateTexts();
    bool isExceeded(const Column &column) const;

    CellId m_id;
    CellContext m_context;
    std::vector<CellRow> m_rows;
    quint64 m_revision = 0;
    bool m_isRead = false;
    QString m_emptyText;
    QString m_warning;
    QString m_warningScope;
    int m_dropRow = -1;
    /** How far the view was scrolled, for when it comes back. */
    double m_scrollPosition = 0.0;
};

} // namespace vantrel
