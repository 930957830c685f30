#pragma once

#include "support/TestServices.h"

#include <QStringList>

namespace vantrel::test {

/** The program as its user meets it, in the words of a user: names of tasks, columns and swimlanes. */
class Story : public TestServices
{
public:
    // What the user does

    /** As quick entry does. Gives the id. */
    QString createTask(const QString &name);
    void createTasks(const QStringList &names);
    /** Asks for a refresh and waits until the board shows its result. */
    void refresh();
    /** Asks for a refresh, and returns while it is under way. */
    void beginRefresh();
    void move(const QString &task, const QString &toColumn, std::optional<int> position = {});
    void rename(const QString &task, const QString &name);
    void block(const QString &task, const QString &reason);
    /** Starts the program with the OmniFocus source on, which gives these tasks. */
    void startWithOmniFocus(const QStringList &names);

    // What the user sees

    /** The names in a column from top to bottom, whatever the swimlane. */
    QStringList shownIn(const QString &column);
    QStringList columns();
    QStringList swimLanes();
    QString toast() { return (*this)->toasts.isShowing() ? (*this)->toasts.message() : QString(); }

    WorkItemPtr task(const QString &name);
    ColumnId column(const QString &name);
};

/** A task as the OmniFocus source would give it; its id is its name. */
WorkItemPtr anOmniFocusTask(const QString &name);

} // namespace vantrel::test
