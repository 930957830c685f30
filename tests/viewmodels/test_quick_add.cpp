#include "feedback/Announcer.h"
#include "foundations/NotificationNames.h"
#include "sources/TaskManagerFactory.h"
#include "support/FakeDesktop.h"
#include "support/FakeTaskManager.h"
#include "support/ManualClock.h"
#include "support/TestRegistry.h"
#include "viewmodels/QuickAddViewModel.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** The sheet that adds tasks line by line. */
class TestQuickAdd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void linesTypedFasterThanTasksAreMadeBecomeTasksInOrder();
    void aLineOfBlanksDoesNothing();
    void aFailedLineComesBackToTheField();
    void failedLinesBesideANewOneWaitForAnotherTry();
    void whatIsNoTaskYetOutlivesTheSheet();
    void aDisabledSourceIsToldAndTheLineStays();
    void theSheetMayGoWhileATaskIsMade();

private:
    void type(const QString &line)
    {
        m_sheet->setText(line);
        m_sheet->submit();
    }
    QStringList created() const { return m_source->requests; }

    QTemporaryDir m_folder;
    FileCalls m_calls;
    FileSaver m_saver{m_calls};
    NotificationCenter m_notifications;
    FakeDesktop m_desktop;
    ManualClock m_clock;
    std::unique_ptr<Announcer> m_announcer;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<FakeTaskManager> m_source;
    std::unique_ptr<TaskManagerFactory> m_managers;
    std::unique_ptr<QuickAddViewModel> m_sheet;
};

void TestQuickAdd::init()
{
    m_sheet.reset();
    m_announcer = std::make_unique<Announcer>(m_desktop.announcements, m_clock);
    m_defaults = std::make_unique<UserDefaults>(
        m_saver, m_folder.filePath(QUuid::createUuid().toString(QUuid::WithoutBraces)));
    m_source = std::make_unique<FakeTaskManager>(TaskManagerType::PlainText, m_clock);
    m_managers = std::make_unique<TaskManagerFactory>(*m_defaults, *m_source, *m_source, *m_source);
    m_sheet = std::make_unique<QuickAddViewModel>(*m_managers, m_notifications, *m_announcer);
    m_notifications.post(notifications::ShowQuickTaskEntry);
}

void TestQuickAdd::linesTypedFasterThanTasksAreMadeBecomeTasksInOrder()
{
    for (int i = 0; i < 3; ++i) {
        m_source->creations.giveAfter(1.0, u"id"_s);
    }

    type(u"  one "_s);
    QCOMPARE(m_sheet->text(), QString());
    type(u"two"_s);
    type(u"three"_s);
    QCOMPARE(created(), QStringList{u"createTask one"_s});
    m_clock.advance(3.0);

    QCOMPARE(created(), (QStringList{u"createTask one"_s, u"createTask two"_s, u"createTask three"_s}));
    QCOMPARE(m_sheet->lastAdded(), u"three"_s);
    QVERIFY(m_announcer->history().contains(u"Task 'two' created successfully"_s));
    QVERIFY(m_sheet->isOpen());
}

void TestQuickAdd::aLineOfBlanksDoesNothing()
{
    type(u" \t "_s);
    QCOMPARE(created(), QStringList());
    QCOMPARE(m_sheet->errorMessage(), QString());
}

void TestQuickAdd::aFailedLineComesBackToTheField()
{
    m_source->creations.fail(u"disk full"_s);
    m_source->creations.give(u"id"_s);

    type(u"one"_s);
    QCOMPARE(m_sheet->text(), u"one"_s);
    QCOMPARE(m_sheet->errorMessage(), u"Error creating task: disk full"_s);

    m_sheet->submit();
    QCOMPARE(m_sheet->text(), QString());
    QCOMPARE(m_sheet->errorMessage(), QString());
    QCOMPARE(m_sheet->lastAdded(), u"one"_s);
}

void TestQuickAdd::failedLinesBesideANewOneWaitForAnotherTry()
{
    const auto gate = m_source->creations.giveWhenOpened(u"id"_s);
    m_source->creations.fail(u"disk full"_s);
    m_source->creations.fail(u"disk full"_s);
    m_source->creations.give(u"id"_s);
    m_source->creations.give(u"id"_s);
    type(u"one"_s);
    type(u"two"_s);
    type(u"three"_s);
    m_sheet->setText(u"being typed"_s);

    gate->countDown();
    QCOMPARE(m_sheet->failedLines(), (QStringList{u"two"_s, u"three"_s}));
    QCOMPARE(m_sheet->text(), u"being typed"_s);

    m_sheet->retry();
    QCOMPARE(m_sheet->failedLines(), QStringList());
    QCOMPARE(created().mid(3), (QStringList{u"createTask two"_s, u"createTask three"_s}));
    QCOMPARE(m_sheet->text(), u"being typed"_s);
}

void TestQuickAdd::whatIsNoTaskYetOutlivesTheSheet()
{
    m_source->creations.fail(u"disk full"_s);
    type(u"one"_s);
    m_sheet->close();
    QVERIFY(!m_sheet->isOpen());

    m_notifications.post(notifications::ShowQuickTaskEntry);
    QVERIFY(m_sheet->isOpen());
    QCOMPARE(m_sheet->text(), u"one"_s);
    QCOMPARE(m_sheet->errorMessage(), u"Error creating task: disk full"_s);
}

void TestQuickAdd::aDisabledSourceIsToldAndTheLineStays()
{
    m_managers->setTaskSourceConfiguration({.isOmniFocusEnabled = true, .isPlainTextEnabled = false});

    type(u"one"_s);

    QCOMPARE(m_sheet->errorMessage(), u"Plain text tasks are disabled in settings"_s);
    QCOMPARE(m_sheet->text(), u"one"_s);
    QCOMPARE(created(), QStringList());
}

void TestQuickAdd::theSheetMayGoWhileATaskIsMade()
{
    m_source->creations.giveAfter(1.0, u"id"_s);
    m_source->creations.give(u"id"_s);
    type(u"one"_s);
    type(u"two"_s);

    m_sheet.reset();
    m_clock.advance(1.0);

    QCOMPARE(created(), QStringList{u"createTask one"_s});
}

VANTREL_REGISTER_TEST(TestQuickAdd)

} // namespace vantrel::test

#include "test_quick_add.moc"
