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
    void aMoveCommandMovesTheSelectedCard_data();
    void aMoveCommandMovesTheSelectedCard();
    void aMoveNeedsExactlyOneCard_data();
    void aMoveNeedsExactlyOneCard();
    void aMoveThatTheBoardDroppedIsNotAnnounced();
    void theKeysToCompleteCanBeSwitchedOff();
    void aBlockIsToggled();
    void aFlagIsToggledInItsSource_data();
    void aFlagIsToggledInItsSource();
    void swimLanesZoomAndFiltersObey();
};

void TestBoardCommands::aMoveCommandMovesTheSelectedCard_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("task");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("said");

    const auto row = [](const char *title, NotificationName command, const QString &task,
                        const QString &place, const QString &said) {
        QTest::newRow(title) << command.text.toString() << task << place << said;
    };
    row("up", MoveTaskUpRequested, u"b"_s, u"1:0"_s, u"Moved task up in column"_s);
    row("down", MoveTaskDownRequested, u"b"_s, u"1:2"_s, u"Moved task down in column"_s);
    row("up at the top", MoveTaskUpRequested, u"a"_s, u"1:0"_s, {});
    row("down at the end", MoveTaskDownRequested, u"c"_s, u"1:2"_s, {});
    row("right", MoveTaskToNextColumnRequested, u"q"_s, u"1:3"_s, u"Task moved to Doing column"_s);
    row("left", MoveTaskToPreviousColumnRequested, u"b"_s, u"0:1"_s, u"Task moved to To Do column"_s);
    row("left at the edge", MoveTaskToPreviousColumnRequested, u"q"_s, u"0:0"_s, {});
    row("next swimlane", MoveTaskToNextSwimLaneRequested, u"b"_s, u"21:1"_s,
        u"Moved task to Second swimlane"_s);
    row("next swimlane at the bottom", MoveTaskToNextSwimLaneRequested, u"z"_s, u"21:0"_s, {});
    row("previous swimlane", MoveTaskToPreviousSwimLaneRequested, u"z"_s, u"1:3"_s,
        u"Moved task to Default swimlane"_s);
    row("previous swimlane at the top", MoveTaskToPreviousSwimLaneRequested, u"b"_s, u"1:1"_s, {});
    row("done", CmdShiftEnterToCompleteRequested, u"b"_s, u"2:0"_s, u"Moved task to Done column"_s);
}

void TestBoardCommands::aMoveCommandMovesTheSelectedCard()
{
    QFETCH(QString, command);
    QFETCH(QString, task);
    BoardScreen screen(Cells);
    screen.omniFocus.edits.give(true);
    screen.store.defaults.set(keys::CelebrateCompletion, false);
    screen.select({task});
    const qsizetype before = screen.said().size();
    screen.notifications.post({command});
    screen.advance(2.0);
    QTEST(placeOf(screen, task), "place");
    QTEST(screen.said().mid(before).isEmpty() ? QString() : screen.said().last(), "said");
}

void TestBoardCommands::aMoveNeedsExactlyOneCard_data()
{
    QTest::addColumn<QStringList>("selected");
    QTest::newRow("none") << QStringList();
    QTest::newRow("two") << QStringList{u"a"_s, u"b"_s};
}

void TestBoardCommands::aMoveNeedsExactlyOneCard()
{
    QFETCH(QStringList, selected);
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
    QVERIFY(LogWriter::recentMessages().contains(
        u"Cannot move task vertically: %1 tasks selected, need exactly 1"_s.arg(selected.size())));
}

void TestBoardCommands::aMoveThatTheBoardDroppedIsNotAnnounced()
{
    BoardScreen screen(Cells);
    screen.select({u"c"_s});
    screen.notifications.post(MoveTaskUpRequested);
    screen.notifications.post(MoveTaskUpRequested);
    screen.settle();
    QCOMPARE(screen.shown(u"1"_s), u"a c b"_s);
    QCOMPARE(screen.said().filter(u"Moved task up"_s).size(), 1);
}

void TestBoardCommands::theKeysToCompleteCanBeSwitchedOff()
{
    BoardScreen screen(Cells);
    screen.store.defaults.set(keys::EnableCmdShiftEnterToComplete, false);
    screen.select({u"a"_s});
    screen.notifications.post(CmdShiftEnterToCompleteRequested);
    screen.settle();
    QCOMPARE(placeOf(screen, u"a"_s), u"1:0"_s);
}

void TestBoardCommands::aBlockIsToggled()
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

void TestBoardCommands::aFlagIsToggledInItsSource_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isFlagged");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("toast");
    QTest::newRow("done") << "yes" << true << "Task flagged"
                          << "";
    QTest::newRow("refused") << "no" << false << "Alert: Unable to change flag on task"
                             << "Unable to change flag on task";
    QTest::newRow("failed") << "error" << false << "Alert: Unable to change flag on task"
                            << "Unable to change flag on task";
}

void TestBoardCommands::aFlagIsToggledInItsSource()
{
    QFETCH(QString, answer);
    BoardScreen screen(Cells);
    answer == u"error" ? screen.omniFocus.edits.fail(u"no access"_s)
                       : screen.omniFocus.edits.give(answer == u"yes");
    screen.select({u"a"_s});
    screen.notifications.post(ToggleTaskFlagRequested);
    screen.settle();
    QVERIFY(screen.omniFocus.requests.contains(u"flagTask a true"_s));
    QTEST(screen.task(u"a"_s)->isFlagged(), "isFlagged");
    QTEST(screen.toasts.message(), "toast");
    QTEST(screen.said().last(), "said");
}

void TestBoardCommands::swimLanesZoomAndFiltersObey()
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

VANTREL_REGISTER_TEST(TestBoardCommands)

} // namespace vantrel::test

#include "test_board_commands.moc"
