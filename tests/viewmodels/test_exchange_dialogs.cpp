#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"
#include "support/TestServices.h"
#include "viewmodels/AppViewModel.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** The dialogs through which text comes in and goes out, and the commands that need none. */
class TestExchangeDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_services = std::make_unique<TestServices>();
        m_services->start();
    }

    void aListIsShownBeforeItComesIn()
    {
        post(notifications::ShowTaskImportView);
        QVERIFY(!importer().canPreview());
        m_services->desktop.clipboard.content = u"- [ ] a #x\n- [x] b #x #y\n"_s;
        importer().pasteFromClipboard();
        importer().parseInput();
        QCOMPARE(importer().counts(), (QStringList{u"2 tasks found"_s, u"1 completed"_s, u"2 tags"_s}));
        QCOMPARE(importer().tasks().at(1).toMap().value(u"symbol"_s), u"checkmark.square"_s);
        QCOMPARE(importer().importText(), u"Import 2 Tasks"_s);
        QCOMPARE(board().taskCount(), 0);

        importer().setSelectedColumn(2);
        importer().importTasks();
        importer().importTasks();
        QCOMPARE(importer().confirmation(), QString());
        m_services->settle();
        QCOMPARE(importer().confirmation(), u"2 tasks have been imported successfully."_s);
        QCOMPARE(board().tasksByColumn(board().columnManager().columns().at(1).id).size(), 2U);
        importer().close();
        QCOMPARE(importer().inputText(), QString());
    }

    void whatTheLimitCutsOffIsSaid()
    {
        struct Row
        {
            int blankLines, taskLines, ignored;
            QString button;
        };
        post(notifications::ShowTaskImportView);
        for (const Row &row : {Row{0, 25, 0, u"Import 25 Tasks"_s}, Row{0, 1, 0, u"Import 1 Task"_s},
                               Row{0, 26, 1, u"Import 25 Tasks (Limited)"_s},
                               Row{10, 20, 5, u"Import 15 Tasks (Limited)"_s}}) {
            importer().setInputText(u"x"_s + QString(row.blankLines + 1, u'\n') +
                                    u"x\n"_s.repeated(row.taskLines - 1));
            importer().parseInput();
            QCOMPARE(
                importer().limitWarning(),
                row.ignored == 0
                    ? QString()
                    : u"Note: Import limited to 25 tasks (%1 additional tasks ignored)"_s.arg(row.ignored));
            QCOMPARE(importer().importText(), row.button);
            importer().backToEdit();
        }
    }

    void aListThatWasNotImportedIsThereAgain()
    {
        post(notifications::ShowTaskImportView);
        importer().setInputText(u"a"_s);
        importer().parseInput();
        importer().backToEdit();
        QCOMPARE(importer().inputText(), u"a"_s);
        importer().parseInput();
        importer().close();
        post(notifications::ShowTaskImportView);
        QVERIFY(!importer().isPreviewMode());
        QCOMPARE(importer().inputText(), u"a"_s);
    }

    void importIsForPlainTextOnly()
    {
        (*m_services)
            ->managers.setTaskSourceConfiguration({.isOmniFocusEnabled = true, .isPlainTextEnabled = false});
        post(notifications::ShowTaskImportView);
        QVERIFY(!importer().isOpen());
        QCOMPARE((*m_services)->toasts.message(), u"Plain text tasks are disabled in settings"_s);
    }

    void thePreviewFollowsTheBoard()
    {
        post(notifications::ShowTaskExportView);
        QCOMPARE(exporter().previewLines(), QStringList{u"No tasks to export"_s});
        QVERIFY(!exporter().hasText());
        import(u"a\nb"_s);
        QCOMPARE(exporter().exportText(), u"- [ ] a\n- [ ] b"_s);
        exporter().selectFormat(1);
        QCOMPARE(exporter().exportText(), u"# To Do\n\n- [ ] a\n- [ ] b"_s);

        exporter().copyToClipboard();
        QVERIFY(exporter().showSuccess());
        QCOMPARE(m_services->desktop.clipboard.content, exporter().exportText());
    }

    void onlyScopesThatMakeSenseAreOffered()
    {
        import(u"a"_s);
        post(notifications::ShowTaskExportView);
        QCOMPARE(exporter().scopes().size(), 5);
        exporter().selectScope(3);
        QVERIFY(exporter().asksForColumn());
        QVERIFY(!exporter().hasText());
        exporter().selectColumn(0);
        QCOMPARE(exporter().exportText(), u"- [ ] a"_s);

        board().selectTask(board().tasks().front()->id(), false);
        QCOMPARE(exporter().scopes().at(3), u"Selected Tasks"_s);
        exporter().selectScope(0);
        (*m_services)
            ->managers.setTaskSourceConfiguration({.isRemindersEnabled = true, .isPlainTextEnabled = false});
        post(notifications::TaskSourceAvailabilityChanged);
        QCOMPARE(exporter().scopes().at(exporter().selectedScope()), u"All Tasks"_s);
    }

    void aRefusedClipboardIsTold()
    {
        import(u"a"_s);
        m_services->desktop.clipboard.refuses = true;
        post(notifications::ShowTaskExportView);
        exporter().copyToClipboard();
        QVERIFY(!exporter().showSuccess());
        QVERIFY(!exporter().errorMessage().isEmpty());
        post(notifications::QuickExportVisibleTasks);
        QCOMPARE((*m_services)->toasts.style(), ToastManager::ToastStyle::Error);
    }

    void quickExportsTellWhatTheyDid()
    {
        post(notifications::QuickExportVisibleTasks);
        post(notifications::QuickExportPlainTextTasks);
        const QStringList said = (*m_services)->announcer.history();
        QVERIFY(said.contains(u"No tasks to export"_s));
        QVERIFY(said.contains(u"No plain text tasks to export"_s));
        QVERIFY(!(*m_services)->toasts.isShowing());

        import(u"a\nb"_s);
        post(notifications::QuickExportPlainTextTasks);
        QCOMPARE((*m_services)->toasts.message(), u"Exported 2 plain text tasks to clipboard"_s);
        QCOMPARE((*m_services)->announcer.history().filter(u"Exported"_s).size(), 1);
        QCOMPARE(m_services->desktop.clipboard.content, u"- [ ] a\n- [ ] b"_s);
    }

private:
    TaskImportViewModel &importer() { return *m_services->viewModels().importer(); }
    TaskExportViewModel &exporter() { return *m_services->viewModels().exporter(); }
    BoardState &board() { return *(*m_services)->board; }
    void post(NotificationName name)
    {
        (*m_services)->notifications.post(name);
        m_services->settle();
    }
    void import(const QString &text)
    {
        post(notifications::ShowTaskImportView);
        importer().setInputText(text);
        importer().parseInput();
        importer().importTasks();
        importer().close();
        m_services->settle();
    }

    std::unique_ptr<TestServices> m_services;
};

VANTREL_REGISTER_TEST(TestExchangeDialogs)

} // namespace vantrel::test

#include "test_exchange_dialogs.moc"
