#include "BoardScreen.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/ReminderWorkItem.h"
#include "support/Await.h"
#include "support/TestRegistry.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

ContextMenuEntries entriesOf(const QVariantList &list)
{
    ContextMenuEntries entries;
    for (const QVariant &entry : list) {
        entries.push_back(entry.value<ContextMenuEntry>());
    }
    return entries;
}

/** The titles, what cannot be chosen in brackets, what is marked with a "*", what divides groups as "-". */
QString titles(const ContextMenuEntries &entries)
{
    QStringList titles;
    for (const ContextMenuEntry &entry : entries) {
        const QString title =
            entry.isSeparator() ? u"-"_s : entry.title + (entry.isChecked ? u"*"_s : QString());
        titles.append(entry.isEnabled ? title : u'(' + title + u')');
    }
    return titles.join(u", "_s);
}

/** A board screen with tasks of every source, and the menus of its cards. */
struct MenuScreen : BoardScreen
{
    MenuScreen() : BoardScreen({{u"0"_s, u"a b"_s}, {u"1"_s, u"c"_s}})
    {
        WorkItemFields fields;
        fields.id = u"reminder_1"_s;
        fields.name = u"Call"_s;
        fields.creationDate = store.clock.now();
        (**this).addTask(
            std::make_shared<ReminderWorkItem>(fields, ReminderWorkItem::Details{5, u"List"_s, u"1"_s}),
            todo(), first());
        for (const QString &name : {u"Buy milk"_s, u"Buy bread"_s}) {
            NewTask task;
            task.name = name;
            const QString id = await(plainText().createTask(task));
            plainTextIds.append(id);
            (**this).registerPlainTextTask(await(plainText().fetchTasks()).back(), todo(), first(), 0);
        }
        settle();
    }

    QString menu(const QString &id)
    {
        view.openContextMenu(id);
        return titles(entriesOf(view.contextMenu()->entries()));
    }

    /** Opens the menu of the card and chooses what the path of titles leads to; false if it leads nowhere. */
    bool choose(const QString &id, const QStringList &path)
    {
        view.openContextMenu(id);
        ContextMenuEntries entries = entriesOf(view.contextMenu()->entries());
        for (const QString &title : path) {
            const auto found =
                std::find_if(entries.begin(), entries.end(), [&](const ContextMenuEntry &entry) {
                    return entry.title == title && entry.isEnabled;
                });
            if (found == entries.end()) return false;
            if (title == path.last()) view.contextMenu()->trigger(found->number);
            entries = ContextMenuEntries(found->children);
        }
        settle();
        return true;
    }

    QString reminder = u"reminder_1"_s;
    QStringList plainTextIds;
};

} // namespace

/** What the menu of a card offers, and what comes of it. */
class TestContextMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMenuOffersWhatItsTaskCanDo()
    {
        MenuScreen screen;
        const QString places = u"Move to Column, Send to Swimlane, Focus on Task"_s;
        QCOMPARE(screen.menu(u"a"_s),
                 u"Show in OmniFocus, Copy as Link, -, Rename Task, Flag, "_s + places + u", -, Block"_s);
        // Reminders have no flag, and the board cannot block them.
        QCOMPARE(screen.menu(screen.reminder),
                 u"Open in Reminders, Change Priority, Copy Task ID, -, Rename Task, "_s + places);
        QCOMPARE(screen.menu(screen.plainTextIds.at(0)),
                 u"Mark Complete, Rename Task, Flag, Move to Column, Move to Swimlane, Focus on Task, -, "
                 u"Copy Task Name, Export as Text, -, Block, -, Delete Task…"_s);

        screen.task(u"a"_s)->setBlocked(true);
        screen.task(u"a"_s)->setFlagged(true);
        screen->focusTask(u"a"_s);
        QVERIFY(screen.menu(u"a"_s).endsWith(u"Exit Focus Mode, -, Unblock, Edit Block Reason"_s));
        QVERIFY(screen.menu(u"a"_s).contains(u", Unflag, "_s));
        screen.task(u"b"_s)->setComplete(true);
        QVERIFY(screen.menu(u"b"_s).endsWith(u"(Block)"_s));

        const ContextMenuEntries entries = entriesOf(screen.view.contextMenu()->entries());
        QCOMPARE(titles(entries.at(5).children), u"To Do*, Doing, Done"_s);
        QCOMPARE(titles(entries.at(6).children), u"Default*, Second"_s);
    }

    void aSelectionHasAMenuOfWhatItsTasksShare()
    {
        MenuScreen screen;
        const QString common =
            u"(2 tasks selected), Move to Done, Send to Swimlane, -, Flag, Unflag, Block, Unblock"_s;
        screen.select({u"a"_s, screen.reminder});
        QCOMPARE(screen.menu(u"a"_s), common);
        screen.select({u"a"_s, u"c"_s});
        QCOMPARE(screen.menu(u"c"_s), common + u", -, Open in OmniFocus, Copy Links"_s);
        screen.select(screen.plainTextIds);
        QCOMPARE(screen.menu(screen.plainTextIds.at(0)),
                 common + u", -, Export Selected as Text, Advanced Export..., -, Delete Selected Tasks…"_s);
        // The menu of another card is about that card alone.
        QVERIFY(screen.menu(u"a"_s).startsWith(u"Show in OmniFocus"_s));
        QCOMPARE(screen.selected(), u"a"_s);
    }

    void whatIsChosenIsDone()
    {
        MenuScreen screen;
        const QString milk = screen.plainTextIds.at(0);
        QVERIFY(screen.choose(u"a"_s, {u"Send to Swimlane"_s, u"Second"_s}));
        QCOMPARE(screen.shown(u"20"_s), u"a"_s);
        QCOMPARE(screen.said().last(), u"Task moved to Second swimlane"_s);

        screen.omniFocus.edits.give(true);
        QVERIFY(screen.choose(u"a"_s, {u"Move to Column"_s, u"Done"_s}));
        QCOMPARE(screen.shown(u"22"_s), u"a"_s);
        QCOMPARE(screen.omniFocus.requests.filter(u"mark"_s), QStringList{u"markTaskComplete a"_s});

        QVERIFY(screen.choose(milk, {u"Block"_s, u"Waiting for response"_s}));
        QCOMPARE(screen.task(milk)->blockReason().value_or(QString()), u"Waiting for response"_s);
        QVERIFY(screen.choose(milk, {u"Edit Block Reason"_s}));
        QVERIFY(screen.view.popover()->isEditing());
        QVERIFY(screen.choose(milk, {u"Export as Text"_s}));
        QCOMPARE(screen.desktop.clipboard.content, u"- [ ] Buy milk"_s);
        QCOMPARE(screen.toasts.message(), u"Task exported to clipboard"_s);
        QVERIFY(screen.choose(milk, {u"Rename Task"_s}));
        QCOMPARE(screen.view.nameEditor()->taskId(), milk);

        QVERIFY(screen.choose(u"c"_s, {u"Show in OmniFocus"_s}));
        QCOMPARE(screen.desktop.urls.opened.at(0).toString(), u"omnifocus:///task/c"_s);
        screen.desktop.clipboard.refuses = true;
        QVERIFY(screen.choose(u"c"_s, {u"Copy as Link"_s}));
        QCOMPARE(screen.toasts.message(), u"The clipboard did not take the text. Please try again."_s);
    }

    void completingFollowsTheSource()
    {
        MenuScreen screen;
        const QString milk = screen.plainTextIds.at(0);
        QVERIFY(screen.choose(milk, {u"Mark Complete"_s}));
        QCOMPARE(screen.shown(u"2"_s), milk);
        QVERIFY(screen.task(milk)->isComplete() && screen.task(milk)->completionDate());
        QVERIFY(screen.choose(milk, {u"Mark Incomplete"_s}));
        QVERIFY(!screen.task(milk)->isComplete());
        QVERIFY(screen.shown(u"0"_s).endsWith(milk));

        // A move that its source refuses can be tried again.
        screen.store.defaults.set(keys::IsOmniFocusEnabled, true);
        screen.omniFocus.edits.fail(u"no access"_s);
        QVERIFY(screen.choose(u"a"_s, {u"Move to Column"_s, u"Done"_s}));
        screen.omniFocus.edits.give(true);
        QVERIFY(screen.choose(u"a"_s, {u"Retry"_s}));
        QVERIFY(screen.task(u"a"_s)->isComplete());
        QVERIFY(!screen.menu(u"a"_s).startsWith(u"Retry"_s));
    }

    void aBatchGoesOnBehindARefusal()
    {
        MenuScreen screen;
        screen.select({u"c"_s, u"a"_s, screen.reminder, u"b"_s});
        screen.omniFocus.edits.give(true);
        screen.omniFocus.edits.fail(u"no access"_s);
        screen.omniFocus.edits.give(true);
        QVERIFY(screen.choose(u"a"_s, {u"Flag"_s}));
        QCOMPARE(screen.omniFocus.requests.filter(u"flag"_s),
                 (QStringList{u"flagTask a true"_s, u"flagTask b true"_s, u"flagTask c true"_s}));
        QVERIFY(screen.task(u"a"_s)->isFlagged() && !screen.task(u"b"_s)->isFlagged());
        QVERIFY(screen.task(u"c"_s)->isFlagged() && !screen.task(screen.reminder)->isFlagged());
        QCOMPARE(screen.toasts.message(), u"Unable to change flag on task"_s);

        QVERIFY(screen.choose(u"a"_s, {u"Send to Swimlane"_s, u"Second"_s}));
        QCOMPARE(screen.said().last(), u"4 tasks moved to Second swimlane"_s);
        QCOMPARE(screen.shown(u"20"_s), u"a b reminder_1"_s);
        QCOMPARE(screen.shown(u"21"_s), u"c"_s);
    }

    void deletionAsksFirst()
    {
        MenuScreen screen;
        TaskContextMenu &menu = *screen.view.contextMenu();
        const QString milk = screen.plainTextIds.at(0);
        QVERIFY(screen.choose(milk, {u"Delete Task…"_s}));
        QCOMPARE(menu.question(), u"Delete this task?"_s);
        QVERIFY(menu.questionDetails().contains(u"Buy milk"_s));
        menu.cancelDeletion();
        QVERIFY(menu.question().isEmpty() && screen.task(milk));

        screen.select(screen.plainTextIds);
        QVERIFY(screen.choose(milk, {u"Delete Selected Tasks…"_s}));
        QCOMPARE(menu.question(), u"Delete 2 tasks?"_s);
        menu.confirmDeletion();
        screen.settle();
        QVERIFY(menu.question().isEmpty() && !screen.task(milk));
        QVERIFY(await(screen.plainText().fetchTasks()).empty());
        QVERIFY(!screen.storedIds().contains(u"plaintext"_s));
    }
};

VANTREL_REGISTER_TEST(TestContextMenus)

} // namespace vantrel::test

#include "test_context_menus.moc"
