#include "foundations/NotificationNames.h"
#include "ui/TestWindow.h"

#include <QAccessible>
#include <QInputMethodEvent>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

constexpr TaskSourceConfiguration OnlyReminders{.isRemindersEnabled = true, .isPlainTextEnabled = false};

} // namespace

/** The window around the board: keys, sheet, menu, screens and notices. */
class TestShell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tasksAreTypedOneAfterTheOther();
    void aLineStaysWhileAnInputMethodComposes();
    void aLineThatFailedIsNotLost();
    void keysOfTheBoardRestUnderTheSheet();
    void aPaneIsReachedByKey();
    void theMenuRunsACommandByKey();
    void aQuickRefreshShowsNoScreenAndASlowOneDoes();
    void aFailedRefreshCanBeTriedAgain();
    void aMissingPermissionIsExplained();
    void aFailedFirstLoadCanBeTriedAgain();
    void aNoticeIsShownAndDismissed();
    void theGaugeStandsWhileItIsSwitchedOn();
    void theSheetOpensByAssistiveTechnology();
    void everyControlHasAName();

private:
    void start() { m_window->start(); }
    void startWithReminders(const WorkItems &tasks);
    QStringList namesOnBoard();

    std::unique_ptr<TestWindow> m_window;
};

void TestShell::init()
{
    m_window = std::make_unique<TestWindow>();
}

void TestShell::cleanup()
{
    QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
    m_window.reset();
}

void TestShell::startWithReminders(const WorkItems &tasks)
{
    m_window->services.begin();
    (*m_window)->managers.setTaskSourceConfiguration(OnlyReminders);
    m_window->services.reminders.fetches.give(tasks);
    m_window->services.settle();
    m_window->services.advance(1.0);
    (*m_window)->repository.invalidateCache();
    m_window->open();
}

QStringList TestShell::namesOnBoard()
{
    QStringList names;
    BoardState &board = *(*m_window)->board;
    for (const WorkItemPtr &item : board.cell(board.swimLaneManager().swimLanes().front().id,
                                              board.columnManager().columns().front().id)) {
        names.append(item->name());
    }
    return names;
}

void TestShell::tasksAreTypedOneAfterTheOther()
{
    start();
    QVERIFY(m_window->item(u"addFirstTask"_s));

    m_window->press(u"Ctrl+N"_s);
    QCOMPARE(m_window->focusName(), u"quickAddField"_s);
    QStringList expected;
    for (int i = 1; i <= 20; ++i) {
        m_window->type(u"task %1"_s.arg(i));
        QTest::keyClick(&m_window->window(), Qt::Key_Return);
        expected.append(u"task %1"_s.arg(i));
    }
    QVERIFY(m_window->wait([&] { return namesOnBoard() == expected; }));
    QVERIFY(!m_window->item(u"addFirstTask"_s));
    QCOMPARE(m_window->item(u"quickAddField"_s)->property("text").toString(), QString());

    m_window->press(u"Esc"_s);
    QVERIFY(!m_window->item(u"quickAddSheet"_s));
    QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
}

void TestShell::aLineStaysWhileAnInputMethodComposes()
{
    start();
    m_window->press(u"Ctrl+N"_s);
    QInputMethodEvent composing(u"にほん"_s, {});
    QCoreApplication::sendEvent(m_window->window().activeFocusItem(), &composing);
    m_window->press(u"Return"_s);
    QCOMPARE(namesOnBoard(), QStringList());

    QInputMethodEvent committed;
    committed.setCommitString(u"日本"_s);
    QCoreApplication::sendEvent(m_window->window().activeFocusItem(), &committed);
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return namesOnBoard() == QStringList{u"日本"_s}; }));
}

void TestShell::aLineThatFailedIsNotLost()
{
    startWithReminders({});
    m_window->press(u"Ctrl+N"_s);
    m_window->type(u"one"_s);
    m_window->press(u"Return"_s);

    QCOMPARE(m_window->item(u"quickAddError"_s)->property("text").toString(),
             u"Plain text tasks are disabled in settings"_s);
    m_window->press(u"Esc"_s);
    m_window->press(u"Ctrl+N"_s);
    QCOMPARE(m_window->item(u"quickAddField"_s)->property("text").toString(), u"one"_s);
}

void TestShell::keysOfTheBoardRestUnderTheSheet()
{
    start();
    m_window->press(u"Ctrl+N"_s);
    m_window->press(u"Ctrl++"_s);
    QCOMPARE((*m_window)->board->zoomLevel(), 1.0);
    m_window->press(u"Esc"_s);
    m_window->press(u"Ctrl++"_s);
    QVERIFY((*m_window)->board->zoomLevel() > 1.0);
}

void TestShell::aPaneIsReachedByKey()
{
    start();
    const QImage before = m_window->picture();
    m_window->press(u"F6"_s);
    QVERIFY(m_window->item(u"toolbar"_s)->hasActiveFocus());
    QCOMPARE(m_window->focusName(), u"refreshButton"_s);
    const QRectF place = m_window->item(u"refreshButton"_s)->mapRectToScene({-4, -4, 40, 40});
    QVERIFY2(m_window->picture().copy(place.toRect()) != before.copy(place.toRect()), "no focus ring");

    m_window->press(u"Tab"_s);
    QVERIFY(m_window->focusName() != u"refreshButton"_s);
    m_window->press(u"Shift+F6"_s);
    QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
}

void TestShell::theMenuRunsACommandByKey()
{
    start();
    m_window->press(u"F10"_s);
    for (const char *key : {"Down", "Right"}) {
        m_window->press(QString::fromLatin1(key));
    }
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"quickAddSheet"_s); }));
    m_window->press(u"Esc"_s);

    m_window->press(u"F10"_s);
    m_window->press(u"Esc"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"content"_s)->hasActiveFocus(); }));
}

void TestShell::aQuickRefreshShowsNoScreenAndASlowOneDoes()
{
    startWithReminders({makeTask(u"reminder_a"_s)});
    m_window->services.reminders.fetches.give({makeTask(u"reminder_a"_s)});
    m_window->press(u"Ctrl+R"_s);
    QVERIFY(m_window->item(u"board"_s));
    QTest::qWait(200);
    QVERIFY(m_window->item(u"board"_s));

    (*m_window)->repository.invalidateCache();
    const auto gate = m_window->services.reminders.fetches.giveWhenOpened({makeTask(u"reminder_a"_s)});
    m_window->press(u"F5"_s);
    QVERIFY(m_window->item(u"board"_s));
    QTRY_VERIFY(m_window->item(u"loadingScreen"_s));
    QVERIFY(!m_window->item(u"board"_s));

    gate->countDown();
    QVERIFY(m_window->wait([this] { return m_window->item(u"board"_s); }));
    QVERIFY(m_window->item(u"board"_s)->hasActiveFocus());
}

void TestShell::aFailedRefreshCanBeTriedAgain()
{
    startWithReminders({makeTask(u"reminder_a"_s)});
    m_window->services.reminders.fetches.fail(u"odd"_s);
    m_window->press(u"Ctrl+R"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"errorScreen"_s); }));
    QVERIFY(!m_window->item(u"board"_s));
    QCOMPARE(m_window->focusName(), u"actionButton"_s);
    QVERIFY((*m_window)->announcer.history().contains(u"Focused on Retry button"_s));

    m_window->services.reminders.fetches.give({makeTask(u"reminder_a"_s)});
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"board"_s); }));
    QVERIFY(!m_window->item(u"errorScreen"_s));
}

void TestShell::aMissingPermissionIsExplained()
{
    startWithReminders({makeTask(u"reminder_a"_s)});
    m_window->services.reminders.hasPermission = false;
    m_window->press(u"Ctrl+R"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"permissionScreen"_s); }));
    QCOMPARE(m_window->focusName(), u"actionButton"_s);
    QVERIFY((*m_window)->announcer.history().contains(u"Focused on Try Again button"_s));

    m_window->click(u"continueButton"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"board"_s); }));
}

void TestShell::aFailedFirstLoadCanBeTriedAgain()
{
    m_window->services.begin();
    (*m_window)->managers.setTaskSourceConfiguration(OnlyReminders);
    m_window->services.reminders.fetches.fail(u"odd"_s);
    m_window->services.settle();
    m_window->open();
    QVERIFY(m_window->wait([this] { return m_window->item(u"boardErrorScreen"_s); }));
    QCOMPARE(m_window->focusName(), u"actionButton"_s);

    m_window->services.reminders.fetches.give({makeTask(u"reminder_a"_s)});
    m_window->click(u"actionButton"_s);
    QVERIFY(m_window->wait([this] { return m_window->item(u"board"_s); }));
    QVERIFY(!m_window->item(u"boardErrorScreen"_s));
    QVERIFY(!m_window->item(u"errorScreen"_s));
}

void TestShell::aNoticeIsShownAndDismissed()
{
    start();
    const QString notice = u"toast-notification"_s;
    QVERIFY(!m_window->item(notice));
    (*m_window)->toasts.show(u"The disk is full"_s, ToastManager::ToastStyle::Error, {.isPermanent = true});
    QVERIFY(m_window->wait([&] { return m_window->item(notice); }));
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(m_window->item(notice));
    QCOMPARE(spoken->text(QAccessible::Name), u"Error notification: The disk is full"_s);

    m_window->press(u"F6"_s);
    QVERIFY(m_window->item(notice)->hasActiveFocus());
    m_window->press(u"Return"_s);
    QVERIFY(m_window->wait([&] { return !m_window->item(notice); }));
    QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
}

void TestShell::theGaugeStandsWhileItIsSwitchedOn()
{
    start();
    QVERIFY(!m_window->item(u"gauge"_s));
    (*m_window)->board->wipGaugeSettings().setEnabled(true);
    QVERIFY(m_window->wait([this] { return m_window->item(u"gauge"_s); }));
    QCOMPARE(QAccessible::queryAccessibleInterface(m_window->item(u"gauge"_s))->text(QAccessible::Name),
             u"Work in progress gauge"_s);
}

void TestShell::theSheetOpensByAssistiveTechnology()
{
    start();
    QAccessibleInterface *button = QAccessible::queryAccessibleInterface(m_window->item(u"addButton"_s));
    QCOMPARE(button->text(QAccessible::Name), u"Quick Add Task"_s);
    QCOMPARE(button->role(), QAccessible::Button);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(m_window->wait([this] { return m_window->item(u"quickAddSheet"_s); }));
}

void TestShell::everyControlHasAName()
{
    start();
    (*m_window)->toasts.show(u"A notice"_s, ToastManager::ToastStyle::Info);
    m_window->press(u"Ctrl+N"_s);
    int controls = 0;
    const std::function<void(QQuickItem *)> look = [&](QQuickItem *item) {
        if (!item->isVisible()) {
            return;
        }
        if (item->activeFocusOnTab()) {
            ++controls;
            QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
            QVERIFY2(
                spoken && !spoken->text(QAccessible::Name).isEmpty(),
                qPrintable(item->objectName() + u' ' + QString::fromLatin1(item->metaObject()->className())));
        }
        for (QQuickItem *child : item->childItems()) {
            look(child);
        }
    };
    look(m_window->window().contentItem());
    QVERIFY(controls > 6);
}

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestShell)
#include "test_shell.moc"
