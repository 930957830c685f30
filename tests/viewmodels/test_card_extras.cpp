#include "BoardScreen.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** With the reason "vendor" on the blocked task "a", whose popover is open. */
struct BlockedCard : BoardScreen
{
    BlockedCard() : BoardScreen({{u"1"_s, u"a b"_s}})
    {
        blocking.setBlockedStatus(*task(u"a"_s), true, u"vendor"_s);
        isOpen = popover.open(u"a"_s, KanbanCardFocus::Blocked);
    }

    CardPopover &popover = *view.popover();
    bool isOpen = false;
};

} // namespace

/** What a card shows beside its face: popovers and the celebration of its completion. */
class TestCardExtras : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBlockReasonIsEdited()
    {
        BlockedCard card;
        QVERIFY(card.isOpen);
        QCOMPARE(card.popover.text(), u"vendor"_s);
        card.popover.edit();
        card.popover.saveReason(u"  budget "_s);

        QVERIFY(!card.popover.isEditing());
        QCOMPARE(card.popover.text(), u"budget"_s);
        card.popover.close();
        QCOMPARE(card.said().mid(card.said().size() - 3),
                 (QStringList{u"Block reason saved"_s, u"Block reason popup closed"_s,
                              u"Returned to task card"_s}));
        card.restart();
        QCOMPARE(card.storedRow(u"a"_s)->blockReason, std::optional(u"budget"_s));
    }

    void anEmptiedReasonLeavesTheTaskBlocked()
    {
        BlockedCard card;
        card.popover.edit();
        card.popover.saveReason(u" "_s);
        QCOMPARE(card.said().last(), u"Block reason removed"_s);
        QCOMPARE(card.popover.text(), u"No reason entered"_s);
        QCOMPARE(card.popover.hint(), u"This task is blocked but no reason is provided"_s);
        QVERIFY(card.task(u"a"_s)->isBlocked());
    }

    void aCancelledEditChangesNothing()
    {
        BlockedCard card;
        card.popover.edit();
        card.popover.cancelEditing();
        card.popover.saveReason(u"late"_s);
        QCOMPARE(card.popover.text(), u"vendor"_s);
        QCOMPARE(card.said().last(), u"Editing canceled"_s);
    }

    void unblockingEndsThePopover()
    {
        BlockedCard card;
        card.popover.unblock();
        QCOMPARE(card.popover.kind(), CardPopover::None);
        QVERIFY(!card.task(u"a"_s)->isBlocked());
        QCOMPARE(card.said().last(), u"Task unblocked successfully"_s);
    }

    void onlyPartsWithSomethingToTellOpen()
    {
        BlockedCard card;
        card.popover.close();
        QVERIFY(!card.popover.open(u"b"_s, KanbanCardFocus::Blocked));
        QVERIFY(!card.popover.open(u"a"_s, KanbanCardFocus::NoteIcon));
        QVERIFY(!card.popover.open(u"a"_s, KanbanCardFocus::Age));
        QVERIFY(!card.popover.open(u"gone"_s, KanbanCardFocus::Icon));
        QCOMPARE(card.popover.kind(), CardPopover::None);

        QVERIFY(card.popover.open(u"a"_s, KanbanCardFocus::Icon));
        QCOMPARE(card.popover.title(), u"OmniFocus Task"_s);
        QCOMPARE(card.popover.facts().at(0).toMap().value(u"value"_s).toString(), u"a"_s);
        QCOMPARE(card.popover.facts().at(1).toMap().value(u"value"_s).toString(), u"Blocked"_s);
    }

    void returnOnAFocusedPartOpensIt()
    {
        BlockedCard card;
        card.popover.close();
        card.view.tapCard(u"a"_s, false);
        QSignalSpy opened(&card.popover, &CardPopover::opened);
        while (card.view.navigation().focusedComponent() != KanbanCardFocus::Blocked) {
            QVERIFY(card.view.handleKey(Qt::Key_Tab, Qt::NoModifier));
        }
        QVERIFY(card.view.handleKey(Qt::Key_Return, Qt::NoModifier));
        QCOMPARE(opened.size(), 1);
        QCOMPARE(card.popover.kind(), CardPopover::BlockReason);
    }

    void aNameIsChangedInItsSourceFirst_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("alert");
        QTest::addColumn<QString>("edited");
        const auto row = [](const char *name, const QString &typed, const QString &answer,
                            const QString &after, const QString &alert, const QString &edited) {
            QTest::newRow(name) << typed << answer << after << alert << edited;
        };
        const QString unknown =
            u"The task could not be found where it comes from. Refresh the board and try again."_s;
        row("done", u" New  "_s, u"yes"_s, u"New"_s, {}, {});
        row("unknown there", u"New"_s, u"no"_s, u"Task a"_s, unknown, u"a"_s);
        row("failed", u"New"_s, u"no access"_s, u"Task a"_s, u"no access"_s, u"a"_s);
        row("blank is refused", u" "_s, {}, u"Task a"_s, {}, u"a"_s);
        row("as it was", u"Task a "_s, {}, u"Task a"_s, {}, {});
    }

    void aNameIsChangedInItsSourceFirst()
    {
        QFETCH(QString, typed);
        QFETCH(QString, answer);
        BoardScreen screen({{u"1"_s, u"a b"_s}});
        screen.task(u"a"_s)->setName(u"Task a"_s);
        TaskNameEditor &editor = *screen.view.nameEditor();
        screen.view.tapCard(u"a"_s, false);
        screen.view.handleKey(Qt::Key_Tab, Qt::NoModifier);
        screen.view.handleKey(Qt::Key_Return, Qt::NoModifier);
        QCOMPARE(editor.taskId(), u"a"_s);
        const bool isAnswered = answer == u"yes" || answer == u"no";
        if (isAnswered) {
            screen.omniFocus.edits.giveAfter(1, answer == u"yes");
        } else if (!answer.isEmpty()) {
            screen.omniFocus.edits.fail(answer);
        }
        editor.setProperty("text", typed);
        editor.commit();
        if (isAnswered) {
            // While the source is asked, nothing gets in between.
            editor.cancel();
            editor.begin(u"b"_s);
            QCOMPARE(screen.task(u"a"_s)->name(), u"Task a"_s);
        }
        screen.advance(2);

        QTEST(screen.task(u"a"_s)->name(), "name");
        QTEST(editor.alertMessage(), "alert");
        QTEST(editor.taskId(), "edited");
    }

    void aCompletedTaskCelebratesIfTheUserLikesThat()
    {
        BoardScreen screen({{u"1"_s, u"a b"_s}});
        QSignalSpy wanted(screen.view.celebrations(), &CompletionAnimations::wanted);
        screen.notifications.post(notifications::TaskCompletionAnimation, u"a"_s);
        screen.advance(1);
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(wanted.at(0).at(0).toString(), u"a"_s);
        QVERIFY(screen.said().contains(u"Task completed"_s));

        const QVariantMap spin{{u"type"_s, CompletionAnimations::SpinAndPulse}};
        screen.notifications.post(notifications::TaskCompletionAnimation, u"b"_s, spin);
        QCOMPARE(wanted.at(1).at(1).value<CompletionAnimations::Type>(), CompletionAnimations::SpinAndPulse);

        screen.store.defaults.set(keys::CelebrateCompletion, false);
        screen.notifications.post(notifications::TaskCompletionAnimation, u"b"_s);
        QCOMPARE(wanted.size(), 2);
    }
};

VANTREL_REGISTER_TEST(TestCardExtras)

} // namespace vantrel::test

#include "test_card_extras.moc"
