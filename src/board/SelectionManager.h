#pragma once

#include <QObject>
#include <QSet>
#include <QStringList>

namespace vantrel {

/** Which cards are selected, in the order in which they were. Owned by BoardState; GUI thread. */
class SelectionManager : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    const QStringList &selectedTaskIds() const { return m_selectedTaskIds; }
    bool isSelected(const QString &id) const { return m_lookup.contains(id); }

    /** With `extendSelection` adds the id; without, it becomes the only one. */
    void selectTask(const QString &id, bool extendSelection);
    void deselectTask(const QString &id);
    void deselectAllTasks();
    void toggleTaskSelection(const QString &id);
    /** For a task that leaves the board. */
    void removeFromSelection(const QString &taskId) { deselectTask(taskId); }

Q_SIGNALS:
    /** The selection is another one now. */
    void selectionChanged();

private:
    QStringList m_selectedTaskIds;
    /** The same ids: each card asks for its own. */
    QSet<QString> m_lookup;
};

} // namespace vantrel
