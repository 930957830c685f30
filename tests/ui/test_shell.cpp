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
    void init() { m_window = std::make_unique<TestWindow>(); }

    void cleanup()
    {
        QVERIFY2(m_window->complaints().isEmpty(), qPrintable(m_window->complaints()));
        m_window.reset();
    }

    void tasksAreTypedOneAfterTheOther()
    {
        start();
        QVERIFY(m_window->item(u"addFirstTask"_s));

        m_window->press(u"Ctrl+N"_s);
        QStringList expected;
        for (int i = 1; i <= 5; ++i) {
            QCOMPARE(m_window->focusName(), u"taskInputField"_s);
            m_window->type(u"task %1"_s.arg(i));
            m_window->press(u"Return"_s);
            QCOMPARE(m_window->focusName(), u"taskNameField"_s);
            m_window->press(u"Return"_s);
            expected.append(u"task %1"_s.arg(i));
            QVERIFY(m_window->wait([&] { return namesOnBoard() == expected; }));
            QVERIFY(!m_window->item(u"quickEntrySheet"_s));
            m_window->press(u"Ctrl+N"_s);
        }
        QVERIFY(!m_window->item(u"addFirstTask"_s));
        QCOMPARE(m_window->item(u"taskInputField"_s)->property("text").toString(), QString());

        m_window->press(u"Esc"_s);
        QVERIFY(!m_window->item(u"quickEntrySheet"_s));
        QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
    }

    void aLineStaysWhileAnInputMethodComposes()
    {
        start();
        m_window->press(u"Ctrl+N"_s);
        compose(u"にほん"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(m_window->focusName(), u"taskInputField"_s);
        commit(u"日本"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(m_window->focusName(), u"taskNameField"_s);

        compose(u"ご"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(namesOnBoard(), QStringList());
        commit(u"語"_s);
        m_window->press(u"Return"_s);
        QVERIFY(m_window->wait([this] { return namesOnBoard() == QStringList{u"日本語"_s}; }));
    }

    void aLineThatFailedIsNotLost()
    {
        startWithReminders({});
        m_window->services.reminders.creations.fail(u"disk full"_s);
        m_window->press(u"Ctrl+N"_s);
        m_window->type(u"one #two"_s);
        m_window->press(u"Return Return"_s);
        QCOMPARE(m_window->item(u"taskCreationError"_s)->property("text").toString(),
                 u"Error creating task: disk full"_s);
        m_window->type(u"X"_s);

        m_window->press(u"Esc Esc"_s);
        QVERIFY(!m_window->item(u"quickEntrySheet"_s));
        m_window->press(u"Ctrl+N"_s);
        QCOMPARE(m_window->item(u"taskInputField"_s)->property("text").toString(), u"one #two"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(m_window->item(u"taskNameField"_s)->property("text").toString(), u"oneX"_s);
        QCOMPARE(m_window->item(u"tagField"_s)->property("text").toString(), u"two"_s);
    }

    void aTaskIsCorrectedByKeyAlone()
    {
        startWithReminders({});
        m_window->services.reminders.projects.give({{u"1"_s, u"Garden"_s}, {u"2"_s, u"Office"_s}});
        m_window->services.reminders.creations.give(u"reminder_1"_s);
        m_window->services.reminders.fetches.give({});
        m_window->press(u"Ctrl+N"_s);
        m_window->type(u"mow tomorrow [gar]"_s);
        m_window->press(u"Return Tab Tab"_s);
        QCOMPARE(m_window->focusName(), u"projectField"_s);
        m_window->press(u"Down Return"_s);
        QCOMPARE(m_window->item(u"projectField"_s)->property("text").toString(), u"Garden"_s);

        m_window->press(u"Tab Tab"_s);
        QCOMPARE(m_window->focusName(), u"dueDateField"_s);
        TaskConfirmationViewModel &form = *m_window->services.viewModels().quickEntry()->confirmation();
        const QDateTime tomorrow = form.dueDate();
        m_window->press(u"Return Down Left Return"_s);
        QCOMPARE(form.dueDate(), tomorrow.addDays(6));
        QVERIFY(m_window->wait([this] { return m_window->focusName() == u"dueDateField"; }));
        m_window->press(u"Del"_s);
        QVERIFY(!form.dueDate().isValid());

        m_window->press(u"Shift+Tab Return"_s);
        QVERIFY(m_window->wait([this] { return !m_window->item(u"quickEntrySheet"_s); }));
        QVERIFY(m_window->services.reminders.requests.contains(u"createTask mow"_s));
    }

    void aListComesInAndGoesOutByKeyAlone()
    {
        start();
        m_window->services.desktop.clipboard.content = u"- [ ] one #tag\n- [x] two"_s;
        m_window->press(u"Ctrl+I Tab"_s);
        QCOMPARE(m_window->focusName(), u"pasteButton"_s);
        m_window->press(u"Return Tab Tab"_s);
        QCOMPARE(m_window->focusName(), u"previewButton"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(m_window->focusName(), u"importButton"_s);
        m_window->press(u"Return"_s);
        QCOMPARE(namesOnBoard(), (QStringList{u"one"_s, u"two"_s}));
        QCOMPARE(m_window->focusName(), u"noticeButton"_s);
        m_window->press(u"Return"_s);
        QVERIFY(m_window->wait([this] { return m_window->item(u"content"_s)->hasActiveFocus(); }));

        m_window->services.desktop.clipboard.content.clear();
        m_window->press(u"Ctrl+E"_s);
        QCOMPARE(m_window->focusName(), u"exportScopePicker"_s);
        m_window->press(u"Right"_s);
        QCOMPARE(m_window->services.viewModels().exporter()->selectedScope(), 1);
        for (int i = 0; i < 10 && m_window->focusName() != u"copyExportButton"; ++i) {
            m_window->press(u"Tab"_s);
        }
        m_window->press(u"Return"_s);
        QCOMPARE(m_window->services.desktop.clipboard.content, u"- [ ] one #tag\n- [x] two"_s);
        m_window->press(u"Return Esc"_s);
        QVERIFY(m_window->wait([this] { return m_window->item(u"content"_s)->hasActiveFocus(); }));
    }

    void keysOfTheBoardRestUnderTheSheet()
    {
        start();
        m_window->press(u"Ctrl+N Ctrl++"_s);
        QCOMPARE((*m_window)->board->zoomLevel(), 1.0);
        m_window->press(u"Esc Ctrl++"_s);
        QVERIFY((*m_window)->board->zoomLevel() > 1.0);
    }

    void aPaneIsReachedByKey()
    {
        start();
        const QImage before = m_window->picture();
        m_window->press(u"F6"_s);
        QVERIFY(m_window->item(u"rail"_s)->hasActiveFocus());
        m_window->press(u"F6"_s);
        QVERIFY(m_window->item(u"toolbar"_s)->hasActiveFocus());
        QCOMPARE(m_window->focusName(), u"refreshButton"_s);
        const QRectF place = m_window->item(u"refreshButton"_s)->mapRectToScene({-4, -4, 40, 40});
        QVERIFY2(m_window->picture().copy(place.toRect()) != before.copy(place.toRect()), "no focus ring");

        m_window->press(u"Tab"_s);
        QVERIFY(m_window->focusName() != u"refreshButton"_s);
        m_window->press(u"Shift+F6 Shift+F6"_s);
        QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
    }

    void theMenuRunsACommandByKey()
    {
        start();
        m_window->press(u"F10 Down Right Return"_s);
        QVERIFY(m_window->wait([this] { return m_window->item(u"quickEntrySheet"_s); }));
        m_window->press(u"Esc"_s);

        m_window->press(u"F10 Esc"_s);
        QVERIFY(m_window->wait([this] { return m_window->item(u"content"_s)->hasActiveFocus(); }));
    }

    void aQuickRefreshShowsNoScreenAndASlowOneDoes()
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

    void aFailedRefreshCanBeTriedAgain()
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

    void aMissingPermissionIsExplained()
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

    void aFailedFirstLoadCanBeTriedAgain()
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

    void aNoticeIsShownAndDismissed()
    {
        start();
        const QString notice = u"toast-notification"_s;
        QVERIFY(!m_window->item(notice));
        (*m_window)->toasts.show(u"The disk is full"_s, ToastManager::ToastStyle::Error,
                                 {.isPermanent = true});
        QVERIFY(m_window->wait([&] { return m_window->item(notice); }));
        QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(m_window->item(notice));
        QCOMPARE(spoken->text(QAccessible::Name), u"Error notification: The disk is full"_s);

        m_window->press(u"F6"_s);
        QVERIFY(m_window->item(notice)->hasActiveFocus());
        m_window->press(u"Return"_s);
        QVERIFY(m_window->wait([&] { return !m_window->item(notice); }));
        QVERIFY(m_window->item(u"content"_s)->hasActiveFocus());
    }

    void theGaugeStandsWhileItIsSwitchedOn()
    {
        start();
        QVERIFY(!m_window->item(u"gauge"_s));
        (*m_window)->board->wipGaugeSettings().setEnabled(true);
        QVERIFY(m_window->wait([this] { return m_window->item(u"gauge"_s); }));
        QCOMPARE(QAccessible::queryAccessibleInterface(m_window->item(u"gauge"_s))->text(QAccessible::Name),
                 u"Work in progress gauge"_s);
    }

    void theSheetOpensByAssistiveTechnology()
    {
        start();
        QAccessibleInterface *button = QAccessible::queryAccessibleInterface(m_window->item(u"addButton"_s));
        QCOMPARE(button->text(QAccessible::Name), u"Quick Add Task"_s);
        QCOMPARE(button->role(), QAccessible::Button);
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(m_window->wait([this] { return m_window->item(u"quickEntrySheet"_s); }));
    }

    void everyControlHasAName()
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
                QVERIFY2(spoken && !spoken->text(QAccessible::Name).isEmpty(),
                         qPrintable(item->objectName() + u' ' +
                                    QString::fromLatin1(item->metaObject()->className())));
            }
            for (QQuickItem *child : item->childItems()) {
                look(child);
            }
        };
        look(m_window->window().contentItem());
        QVERIFY(controls > 6);
    }

private:
    void start() { m_window->start(); }
    void startWithReminders(const WorkItems &tasks)
    {
        m_window->services.begin();
        (*m_window)->managers.setTaskSourceConfiguration(OnlyReminders);
        m_window->services.reminders.fetches.give(tasks);
        m_window->services.settle();
        m_window->services.advance(1.0);
        (*m_window)->repository.invalidateCache();
        m_window->open();
    }

    QStringList namesOnBoard()
    {
        QStringList names;
        BoardState &board = *(*m_window)->board;
        for (const WorkItemPtr &item : board.cell(board.swimLaneManager().swimLanes().front().id,
                                                  board.columnManager().columns().front().id)) {
            names.append(item->name());
        }
        return names;
    }

    void compose(const QString &text)
    {
        QInputMethodEvent event(text, {});
        QCoreApplication::sendEvent(m_window->window().activeFocusItem(), &event);
    }

    void commit(const QString &text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(m_window->window().activeFocusItem(), &event);
    }

    std::unique_ptr<TestWindow> m_window;
};

} // namespace vantrel::test

QTEST_MAIN(vantrel::test::TestShell)
#include "test_shell.moc"
