#include "features/Story.h"
#include "support/TestFiles.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

namespace {

/** A board with plain text tasks, and with reminders in a folder that another program uses too. */
struct Board : Story
{
    explicit Board(bool isFolderChosen = true, bool hasPlainText = true)
    {
        usesReminderFolder = true;
        write(u"milk"_s);
        write(u"odd"_s, "DUE;VALUE=DATE:20261120\nRRULE:FREQ=DAILY\nRDATE:20261201\n");
        begin();
        TaskSourceConfiguration sources;
        sources.isRemindersEnabled = true;
        sources.isPlainTextEnabled = hasPlainText;
        (*this)->managers.setTaskSourceConfiguration(sources);
        if (isFolderChosen) {
            choose();
        }
        settle();
        advance(1.0);
    }

    void choose() { viewModels().remindersFolder()->choose(QUrl::fromLocalFile(lists.path())); }
    QString filePath(const QString &name) const { return lists.filePath(u"home/" + name + u".ics"); }
    void write(const QString &name, const QByteArray &properties = {}) const
    {
        writeFile(filePath(name), "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VTODO\nUID:" + name.toUtf8() +
                                      "\nSUMMARY:" + name.toUtf8() + "\n" + properties +
                                      "END:VTODO\nEND:VCALENDAR\n");
    }
    QByteArray content(const QString &name) const { return contentOf(filePath(name)); }
    TaskMoveStatus status(const QString &name)
    {
        return (*this)->board->taskOperationStatus(task(name)->id());
    }
    QStringList toDo()
    {
        QStringList names = shownIn(u"To Do"_s);
        names.sort();
        return names;
    }

    QTemporaryDir lists;
};

} // namespace

/** Reminders on the board, from the gesture to the file and back. */
class TestRemindersBoard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesReachTheFile()
    {
        Board board;
        board.createTask(u"own"_s);
        board.move(u"milk"_s, u"Done"_s);
        board.settle();
        QVERIFY(board.content(u"milk"_s).contains("STATUS:COMPLETED"));
        QCOMPARE(board.toDo(), (QStringList{u"odd"_s, u"own"_s}));
        board.move(u"milk"_s, u"Doing"_s);
        board.settle();
        QVERIFY(board.content(u"milk"_s).contains("STATUS:NEEDS-ACTION"));

        board.restart();
        QCOMPARE(board.shownIn(u"Doing"_s), QStringList{u"milk"_s});
    }

    void aFailedMoveIsToldAndCanBeTriedAgain()
    {
        Board board;
        const QByteArray before = board.content(u"milk"_s);
        board.files.failAt(1, ENOSPC, true);
        board.move(u"milk"_s, u"Done"_s);
        board.settle();
        board.files.failAt(0);
        QVERIFY(board.status(u"milk"_s).state == TaskMoveStatus::State::Failure);
        QVERIFY2(board.toast().contains(u"No space left on device"), qPrintable(board.toast()));
        QCOMPARE(board.content(u"milk"_s), before);

        board->board->retryFailedOperation(board.task(u"milk"_s)->id());
        board.settle();
        QVERIFY(board.content(u"milk"_s).contains("STATUS:COMPLETED"));
        QVERIFY(board.task(u"milk"_s)->isComplete());

        board.move(u"odd"_s, u"Done"_s);
        board.settle();
        QVERIFY2(board.toast().contains(u"repeats in a way"), qPrintable(board.toast()));
    }

    void aPriorityChosenInTheMenuReachesTheFile()
    {
        Board board;
        TaskContextMenu &menu = *board.viewModels().board()->contextMenu();
        const auto chooseHigh = [&] {
            board.viewModels().board()->openContextMenu(board.task(u"milk"_s)->id());
            const auto priorities = menu.entries().at(1).value<ContextMenuEntry>();
            menu.trigger(priorities.children.back().number);
            board.settle();
        };
        board.files.failAt(1, EROFS, true);
        chooseHigh();
        QCOMPARE(board.toast(), u"Failed to update reminder priority"_s);
        board.files.failAt(0);
        chooseHigh();
        QVERIFY(board.content(u"milk"_s).contains("PRIORITY:1"));
        const auto priorities = menu.entries().at(1).value<ContextMenuEntry>();
        QCOMPARE(priorities.title, u"Change Priority"_s);
        QVERIFY(priorities.children.front().isChecked);
        board.viewModels().board()->openContextMenu(board.task(u"milk"_s)->id());
        QVERIFY(menu.entries().at(1).value<ContextMenuEntry>().children.back().isChecked);
    }

    void whatAnotherProgramWritesAppears()
    {
        Board board;
        board.write(u"bread"_s);
        QVERIFY(QTest::qWaitFor([&board] {
            board.advance(1.0);
            return board.toDo().contains(u"bread"_s);
        }));
    }

    void withoutAFolderTheUserIsAskedForOne()
    {
        Board board(false, false);
        board.viewModels().taskList()->loadTasks();
        board.settle();
        QCOMPARE(board.viewModels().taskList()->screen(), TaskListViewModel::Screen::Permission);
        QVERIFY(board.viewModels().remindersFolder()->isOffered());
        board.choose();
        QVERIFY(QTest::qWaitFor([&board] {
            board.advance(0.5);
            return board.toDo() == QStringList{u"milk"_s, u"odd"_s};
        }));
        QCOMPARE(board.viewModels().taskList()->screen(), TaskListViewModel::Screen::Content);
    }
};

VANTREL_REGISTER_TEST(TestRemindersBoard)

#include "test_reminders_board.moc"
