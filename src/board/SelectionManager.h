#pragma once

#include <QObject>
#include <QStringList>

namespace vantrel {

/** Which cards are selected, in the order in which they were. Owned by BoardState; GUI thread. */
class SelectionManager : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    const QStringList &selectedTaskIds() const { return m_selectedTaskIds; }
    bool isSelected(const QString &id) const { return m_selectedTaskIds.contains(id); }

    /** With `extendSelection` adds the id; without, it becomes the only one. */
    void selectTask(const QString &id, bool extendSelection);
    void deselectTask(const QString &id);
    void deselectAllTasks();
    void toggleTaskSelection(const QString &id);
    /** As deselectTask, but silent when the id is not selected. */
    void removeFromSelection(const QString &taskId);

Q_SIGNALS:
    void selectionChanged();

private:
    void assign(const QStringList &ids);

    QStringList m_selectedTaskIds;
};

} // namespace vantrel
