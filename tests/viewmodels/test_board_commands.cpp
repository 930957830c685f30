#include "BoardScreen.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/SourceError.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel::notifications;

namespace vantrel::test {

namespace {

/** Three in "Doing" of the first swimlane, so that each direction has an end and a middle. */
const QMap<QString, QString> Cells{{u"0"_s, u"q"_s}, {u"1"_s, u"a b c"_s}, {u"21"_s, u"z"_s}};

/** Where a task stands, as "1:0", with the swimlane in front if it is the second: "21:1". */
QString placeOf(BoardScreen &screen, const QString &id)
{
    for (const QString &key : {u"0"_s, u"1"_s, u"2"_s, u"20"_s, u"21"_s, u"22"_s}) {
        if (const int row = screen.model(key).rowOf(id); row >= 0) return key + u':' + QString::number(row);
    }
    return {};
}

} // namespace

/** The commands that act on the selected card. */
class TestBoardCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMoveCommandMovesTheSelectedCard()
    {
        struct Row
        {
            NotificationName command;
            QString task, place, said;
        };
        for (const Row &row :
             {Row{MoveTaskUpRequested, u"b"_s, u"1:0"_s, u"Moved task up in column"_s},
              Row{MoveTaskDownRequested, u"b"_s, u"1:2"_s, u"Moved task down in column"_s},
              Row{MoveTaskUpRequested, u"a"_s, u"1:0"_s, {}},
              Row{MoveTaskDownRequested, u"c"_s, u"1:2"_s, {}},
              Row{MoveTaskToNextColumnRequested, u"q"_s, u"1:3"_s, u"Task moved to Doing column"_s},
              Row{MoveTaskToPreviousColumnRequested, u"b"_s, u"0:1"_s, u"Task moved to To Do column"_s},
              Row{MoveTaskToPreviousColumnRequested, u"q"_s, u"0:0"_s, {}},
              Row{MoveTaskToNextSwimLaneRequested, u"b"_s, u"21:1"_s, u"Moved task to Second swimlane"_s},
              Row{MoveTaskToNextSwimLaneRequested, u"z"_s, u"21:0"_s, {}},
              Row{MoveTaskToPreviousSwimLaneRequested, u"z"_s, u"1:3"_s, u"Moved task to Default swimlane"_s},
              Row{MoveTaskToPreviousSwimLaneRequested, u"b"_s, u"1:1"_s, {}},
              Row{CmdShiftEnterToCompleteRequested, u"b"_s, u"2:0"_s, u"Moved task to Done column"_s}}) {
            BoardScreen screen(Cells);
            screen.omniFocus.edits.give(true);
            screen.store.defaults.set(keys::CelebrateCompletion, false);
            screen.select({row.task});
            const qsizetype before = screen.said().size();
            screen.notifications.post(row.command);
            screen.advance(2.0);
            const QString command = row.command.text + u' ' + row.task + u": ";
            QCOMPARE(command + placeOf(screen, row.task), command + row.place);
            const QStringList said = screen.said().mid(before);
            QCOMPARE(command + said.value(said.size() - 1), command + row.said);
        }
    }

    void aMoveNeedsExactlyOneCard()
    {
        for (const QStringList &selected : {QStringList(), QStringList{u"a"_s, u"b"_s}}) {
            BoardScreen screen(Cells);
            screen.select(selected);
            for (const NotificationName command :
                 {MoveTaskUpRequested, MoveTaskToNextColumnRequested, MoveTaskToNextSwimLaneRequested,
                  CmdShiftEnterToCompleteRequested, ToggleTaskBlockedRequested, ToggleTaskFlagRequested}) {
                screen.notifications.post(command);
            }
            screen.advance(2.0);
            QCOMPARE(screen.shown(u"1"_s), u"a b c"_s);
            QVERIFY(screen.omniFocus.requests.filter(u"flagTask"_s).isEmpty());
        }
    }

    void aMoveThatTheBoardDroppedIsNotAnnounced()
    {
        BoardScreen screen(Cells);
        screen.select({u"c"_s});
        screen.notifications.post(MoveTaskUpRequested);
        screen.notifications.post(MoveTaskUpRequested);
        screen.settle();
        QCOMPARE(screen.shown(u"1"_s), u"a c b"_s);
        QCOMPARE(screen.said().filter(u"Moved task up"_s).size(), 1);
    }

    void aBlockIsToggled()
    {
        BoardScreen screen(Cells);
        screen.select({u"a"_s});
        screen.notifications.post(ToggleTaskBlockedRequested);
        QVERIFY(screen.task(u"a"_s)->isBlocked());
        QCOMPARE(screen.said().last(), u"Task blocked"_s);
        screen.notifications.post(ToggleTaskBlockedRequested);
        QVERIFY(!screen.task(u"a"_s)->isBlocked());
        QCOMPARE(screen.said().last(), u"Task unblocked"_s);

        screen.task(u"a"_s)->setComplete(true);
        screen.notifications.post(ToggleTaskBlockedRequested);
        QVERIFY(!screen.task(u"a"_s)->isBlocked());
        QCOMPARE(screen.toasts.message(), u"Cannot block a completed task"_s);
    }

    void aFlagIsToggledInItsSource()
    {
        for (const QString &answer : {u"yes"_s, u"no"_s, u"error"_s}) {
            BoardScreen screen(Cells);
            answer == u"error" ? screen.omniFocus.edits.fail(u"no access"_s)
                               : screen.omniFocus.edits.give(answer == u"yes");
            screen.select({u"a"_s});
            screen.notifications.post(ToggleTaskFlagRequested);
            screen.settle();
            QVERIFY(screen.omniFocus.requests.contains(u"flagTask a true"_s));
            const bool isDone = answer == u"yes";
            QCOMPARE(screen.task(u"a"_s)->isFlagged(), isDone);
            QCOMPARE(screen.toasts.message(), isDone ? QString() : u"Unable to change flag on task"_s);
            QCOMPARE(screen.said().last(),
                     isDone ? u"Task flagged"_s : u"Alert: Unable to change flag on task"_s);
        }
    }

    void swimLanesZoomAndFiltersObey()
    {
        BoardScreen screen(Cells);
        screen.notifications.post(ToggleSwimLaneExpansionRequested, 1);
        screen.notifications.post(ToggleSwimLaneExpansionRequested, 4);
        QVERIFY(!screen->swimLaneManager().swimLane(screen.second())->isExpanded);
        QVERIFY(LogWriter::recentMessages().contains(u"Invalid swimlane index: 4, valid range is 0-1"_s));

        screen.notifications.post(ZoomInRequested);
        QCOMPARE(screen.view.zoomLevel(), 1.1);
        screen.notifications.post(ResetZoomRequested);
        screen.notifications.post(ZoomOutRequested);
        QCOMPARE(screen.view.zoomLevel(), 0.9);

        screen.notifications.post(ToggleFlaggedFilterRequested);
        QCOMPARE(screen.shown(u"1"_s), QString());
        QCOMPARE(screen.model(u"1"_s).emptyText(), u"No tasks match current filters"_s);
        screen.notifications.post(ToggleFlaggedFilterRequested);
        QCOMPARE(screen.model(u"2"_s).emptyText(), u"Empty column"_s);
    }
};

VANTREL_REGISTER_TEST(TestBoardCommands)

} // namespace vantrel::test

#include "test_board_commands.moc"
