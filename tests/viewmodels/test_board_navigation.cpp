#include "BoardScreen.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** The cells of most tests: a gap in the middle of the first swimlane, and a second swimlane. */
const QMap<QString, QString> TwoLanes{
    {u"0"_s, u"a b"_s}, {u"2"_s, u"c"_s}, {u"20"_s, u"d"_s}, {u"21"_s, u"e f"_s}};

void press(BoardScreen &screen, int key, int modifiers = Qt::NoModifier)
{
    QVERIFY(screen.view.handleKey(key, modifiers));
}

} // namespace

/** The keyboard's way over the cards. */
class TestBoardNavigation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWalkGoesOverAllCards()
    {
        for (const int key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left}) {
            BoardScreen screen(TwoLanes);
            const bool isForward = key == Qt::Key_Down || key == Qt::Key_Right;
            QStringList seen;
            // Backwards from nothing the walk begins in the last column; what is meant here is the whole way.
            if (!isForward) {
                screen.view.tapCard(u"f"_s, false);
                seen.append(screen.view.focusedTaskId());
            }
            while (seen.size() < 7) {
                press(screen, key);
                QCOMPARE(screen.selected(), screen.view.focusedTaskId());
                seen.append(screen.selected());
            }
            QCOMPARE(seen.join(u' '), isForward ? u"a b c d e f f"_s : u"f e d c b a a"_s);
        }
    }

    void theWalkBeginsAtEitherEndOfWhatIsOpen()
    {
        struct Row
        {
            int key;
            QStringList closed;
            QString focused;
        };
        const QString first = u"Default"_s;
        for (const Row &row : {Row{Qt::Key_Tab, {}, u"a"_s}, Row{Qt::Key_Backtab, {}, u"c"_s},
                               Row{Qt::Key_Tab, {first}, u"d"_s}, Row{Qt::Key_Backtab, {first}, u"f"_s},
                               Row{Qt::Key_Tab, {first, u"Second"_s}, u""_s}}) {
            BoardScreen screen(TwoLanes);
            for (const SwimLane &lane : std::vector(screen->swimLaneManager().swimLanes())) {
                if (row.closed.contains(lane.name)) screen.view.toggleSwimLane(lane.id.text());
            }
            press(screen, row.key);
            QCOMPARE(screen.view.focusedTaskId(), row.focused);
        }
    }

    void closedSwimLanesAreSkipped()
    {
        BoardScreen screen(TwoLanes);
        screen.view.toggleSwimLane(screen.second().text());
        screen.view.tapCard(u"c"_s, false);
        press(screen, Qt::Key_Down);
        QCOMPARE(screen.view.focusedTaskId(), u"c"_s);
    }

    void aFilteredFocusDoesNotStopTheWalk()
    {
        BoardScreen screen(TwoLanes);
        screen.task(u"b"_s)->setFlagged(true);
        screen.view.tapCard(u"d"_s, false);
        screen->filterManager().toggleFlaggedFilter();
        QCOMPARE(screen.shown(u"0"_s), u"b"_s);
        press(screen, Qt::Key_Down);
        QCOMPARE(screen.view.focusedTaskId(), u"b"_s);
    }

    void aSelectionWithoutFocusIsTakenUp()
    {
        BoardScreen screen(TwoLanes);
        screen.select({u"d"_s});
        press(screen, Qt::Key_Down);
        QCOMPARE(screen.view.focusedTaskId(), u"e"_s);
    }

    void tabWalksThePartsOfTheSelectedCard()
    {
        BoardScreen screen(TwoLanes);
        screen.view.tapCard(u"a"_s, false);
        QStringList parts;
        while (screen.view.focusedTaskId() == u"a") {
            press(screen, Qt::Key_Tab);
            parts.append(screen.said().last());
        }
        QCOMPARE(parts.mid(0, 3),
                 (QStringList{u"Name focused"_s, u"Icon focused"_s, u"Lead time focused"_s}));
        QCOMPARE(screen.view.focusedTaskId(), u"b"_s);

        press(screen, Qt::Key_Backtab);
        CellModel &cell = screen.model(u"0"_s);
        QCOMPARE(cell.index(1).data(CellModel::FocusedComponentRole).toInt(), int(KanbanCardFocus::Age));
        QCOMPARE(cell.index(0).data(CellModel::FocusedComponentRole).toInt(), int(KanbanCardFocus::None));
    }

    void escapeGivesUpThePartAndThenTheSelection()
    {
        BoardScreen screen(TwoLanes);
        screen.view.tapCard(u"a"_s, false);
        press(screen, Qt::Key_Tab);
        press(screen, Qt::Key_Escape);
        QCOMPARE(screen.view.navigation().focusedComponent(), KanbanCardFocus::None);
        QCOMPARE(screen.selected(), u"a"_s);
        press(screen, Qt::Key_Escape);
        QCOMPARE(screen.selected(), QString());
        QVERIFY(!screen.view.handleKey(Qt::Key_Escape, Qt::NoModifier));
    }

    void spaceMovesTheFocusedCardOn()
    {
        BoardScreen screen(TwoLanes);
        screen.view.tapCard(u"a"_s, false);
        press(screen, Qt::Key_Tab);
        QVERIFY(!screen.view.handleKey(Qt::Key_Space, Qt::NoModifier));
        press(screen, Qt::Key_Escape);

        screen.store.defaults.set(keys::EnableSpaceToMoveNext, false);
        QVERIFY(!screen.view.handleKey(Qt::Key_Space, Qt::NoModifier));
        screen.store.defaults.set(keys::EnableSpaceToMoveNext, true);
        press(screen, Qt::Key_Space);
        screen.advance(2.0);
        QCOMPARE(screen.shown(u"1"_s), u"a"_s);
        QVERIFY(!screen.view.handleKey(Qt::Key_Space, Qt::ControlModifier));
    }

    void aTapSelectsAndTells()
    {
        BoardScreen screen(TwoLanes);
        QStringList posts;
        for (const NotificationName name :
             {notifications::TaskFocusChanged, notifications::TaskCardSelected}) {
            screen.notifications.observe(name, this, [&posts](const Notification &post) {
                posts.append(post.name.text.toString() + u' ' + post.object.toString());
            });
        }
        const qsizetype before = screen.said().size();
        screen.view.tapCard(u"a"_s, false);
        screen.view.tapCard(u"d"_s, true);
        screen.view.tapCard(u"a"_s, true);
        screen.view.tapCard(u"d"_s, true);
        screen.notifications.removeObserver(this);
        QCOMPARE(screen.said().mid(before), (QStringList{u"Task a selected"_s, u"2 tasks selected"_s,
                                                         u"Task a deselected"_s, u"All tasks deselected"_s}));
        QCOMPARE(posts.mid(0, 4), (QStringList{u"TaskFocusChanged a"_s, u"TaskCardSelected a"_s,
                                               u"TaskFocusChanged d"_s, u"TaskCardSelected d"_s}));
    }

    void aPartThatGoesLosesTheFocus()
    {
        BoardScreen screen(TwoLanes);
        screen.task(u"a"_s)->setNote(u"Note"_s);
        screen.view.tapCard(u"a"_s, false);
        press(screen, Qt::Key_Tab);
        press(screen, Qt::Key_Tab);
        QCOMPARE(screen.view.navigation().focusedComponent(), KanbanCardFocus::NoteIcon);
        screen.task(u"a"_s)->setNote({});
        QCOMPARE(screen.view.navigation().focusedComponent(), KanbanCardFocus::Icon);
    }

    void returnOpensTheTaskInItsSource()
    {
        BoardScreen screen(TwoLanes);
        screen.view.tapCard(u"a"_s, false);
        press(screen, Qt::Key_Return);
        QCOMPARE(screen.desktop.urls.opened, std::vector{QUrl(u"omnifocus:///task/a"_s)});
        QCOMPARE(screen.said().last(), u"Opening task in OmniFocus"_s);
    }
};

VANTREL_REGISTER_TEST(TestBoardNavigation)

} // namespace vantrel::test

#include "test_board_navigation.moc"
