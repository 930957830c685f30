#include "features/Story.h"

#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"

#include <QTest>

namespace vantrel::test {

namespace {

QCoro::Task<> createIn(PlainTextTaskManager &source, QString name, std::shared_ptr<QString> id)
{
    NewTask task;
    task.name = std::move(name);
    *id = co_await source.createTask(task);
}

QCoro::Task<> renameIn(PlainTextTaskManager &source, QString id, QString name)
{
    co_await source.setTaskName(id, name);
}

QStringList namesOf(const auto &items)
{
    QStringList names;
    for (const auto &item : items) {
        names.append(item.name);
    }
    return names;
}

} // namespace

QString Story::createTask(const QString &name)
{
    const auto id = std::make_shared<QString>();
    launch(createIn((*this)->plainText, name, id), QStringLiteral("createTask"));
    settle();
    return *id;
}

void Story::createTasks(const QStringList &names)
{
    for (const QString &name : names) {
        createTask(name);
    }
}

void Story::beginRefresh()
{
    (*this)->notifications.post(notifications::RefreshTasksRequested);
}

void Story::refresh()
{
    beginRefresh();
    settle();
    advance(0.5);
}

void Story::move(const QString &name, const QString &toColumn, std::optional<int> position)
{
    (*this)->board->moveTask(task(name), column(toColumn), {}, position);
}

void Story::rename(const QString &oldName, const QString &name)
{
    launch(renameIn((*this)->plainText, task(oldName)->id(), name), QStringLiteral("rename"));
}

void Story::block(const QString &name, const QString &reason)
{
    (*this)->blocking.setBlockedStatus(*task(name), true, reason);
}

void Story::startWithOmniFocus(const QStringList &names)
{
    WorkItems items;
    for (const QString &name : names) {
        items.push_back(anOmniFocusTask(name));
    }
    omniFocus.fetches.give(items);
    begin();
    (*this)->managers.setTaskSourceConfiguration({.isOmniFocusEnabled = true, .isPlainTextEnabled = true});
    settle();
    advance(1.0);
}

QStringList Story::shownIn(const QString &columnName)
{
    QStringList names;
    for (const SwimLane &lane : (*this)->board->swimLaneManager().swimLanes()) {
        for (const WorkItemPtr &item :
             (*this)->board->tasksForColumnAndSwimLane(column(columnName), lane.id)) {
            names.append(item->name());
        }
    }
    return names;
}

QStringList Story::columns()
{
    return namesOf((*this)->board->columnManager().columns());
}

QStringList Story::swimLanes()
{
    return namesOf((*this)->board->swimLaneManager().swimLanes());
}

WorkItemPtr Story::task(const QString &name)
{
    for (const WorkItemPtr &item : (*this)->board->tasks()) {
        if (item->name() == name) {
            return item;
        }
    }
    qFatal("no task on the board is called \"%s\"", qPrintable(name));
}

ColumnId Story::column(const QString &name)
{
    for (const Column &column : (*this)->board->columnManager().columns()) {
        if (column.name == name) {
            return column.id;
        }
    }
    qFatal("no column is called \"%s\"", qPrintable(name));
}

WorkItemPtr anOmniFocusTask(const QString &name)
{
    WorkItemFields fields;
    fields.id = name;
    fields.name = name;
    return std::make_shared<OmniFocusTask>(std::move(fields));
}

} // namespace vantrel::test
