#include "feedback/Announcer.h"
#include "feedback/ToastManager.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"
#include "support/TestServices.h"
#include "viewmodels/AppViewModel.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

/** From a line in the user's own words to a task in one of the sources. */
class TestQuickEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_services = std::make_unique<TestServices>();
        m_services->start();
    }

    void theFormShowsWhatWasUnderstood()
    {
        understand(u" \t "_s);
        QVERIFY(!entry().isShowingConfirmation());
        understand(u"Write report tomorrow [Website Redesign] tags: a, b, c in plain text start on monday"_s);

        QVERIFY(entry().isShowingConfirmation());
        QCOMPARE(form().name(), u"Write report in plain text"_s);
        QCOMPARE(form().project(), u"Website Redesign"_s);
        QCOMPARE(form().tag(), u"a"_s);
        QCOMPARE(form().omittedTagsText(), u"2 more tags will be left out"_s);
        QCOMPARE(form().dueDate(), form().now().addDays(1));
        QCOMPARE(form().deferDate().date().dayOfWeek(), int(Qt::Monday));
        QVERIFY((*m_services)
                    ->announcer.history()
                    .contains(u"Task parsed successfully. Opening confirmation screen."_s));
    }

    void theSourceShown()
    {
        struct Row
        {
            QString line, setting;
            bool isRemindersEnabled;
            QString shown;
        };
        for (const Row &row : {Row{u"named in reminders"_s, u"Plain Text"_s, true, u"Reminders"_s},
                               Row{u"by the setting"_s, u"Plain Text"_s, true, u"Plain Text"_s},
                               Row{u"without a setting"_s, u"nonsense"_s, true, u"OmniFocus"_s},
                               Row{u"named but off in reminders"_s, u"Plain Text"_s, false, u"Plain Text"_s},
                               Row{u"setting off"_s, u"Reminders"_s, false, u"OmniFocus"_s}}) {
            enable(true, row.isRemindersEnabled, true);
            (*m_services)->defaults.set(keys::DefaultTaskManagerForQuickEntry, row.setting);
            understand(row.line);
            QCOMPARE(row.line + u": " + form().taskSources().value(form().selectedSource()),
                     row.line + u": " + row.shown);
            entry().backToInput();
        }
    }

    void aSourceThatIsNotThereIsNotOffered()
    {
        m_services->omniFocus.isAvailable = false;
        enable(true, true, true);
        understand(u"a in omnifocus"_s);
        QCOMPARE(form().taskSources(), (QStringList{u"Reminders"_s, u"Plain Text"_s}));

        enable(true, false, false);
        (*m_services)->notifications.post(notifications::TaskSourceConfigurationChanged);
        create();
        QVERIFY(form().errorMessage().contains(u"is not yet supported"_s));
    }

    void namesAreCompletedFromTheChosenSource()
    {
        enable(false, true, true);
        m_services->reminders.projects.give({{u"1"_s, u"Garden"_s},
                                             {u"2"_s, u"Office"_s},
                                             {u"3"_s, u"Old Garden"_s, false},
                                             {u"4"_s, u"Kindergarden"_s}});
        understand(u"a in reminders [GARD]"_s);
        QCOMPARE(form().projectSuggestions(), (QStringList{u"Garden"_s, u"Kindergarden"_s}));
        QVERIFY(!form().isLoadingMetadata());
        form().setProject({});
        QCOMPARE(form().projectSuggestions().size(), 3);

        form().selectSource(1);
        m_services->settle();
        QCOMPARE(form().projectSuggestions(), QStringList());
    }

    void aLateAnswerOfAnotherSourceIsDropped()
    {
        enable(false, true, true);
        const auto gate = m_services->reminders.projects.giveWhenOpened({{u"1"_s, u"Garden"_s}});
        understand(u"a in reminders"_s);
        QVERIFY(form().isLoadingMetadata());
        form().selectSource(1);
        m_services->settle();
        gate->countDown();
        m_services->settle();
        QCOMPARE(form().projectSuggestions(), QStringList());
        QVERIFY(!form().isLoadingMetadata());
    }

    void aPlainTextTaskReachesTheBoard()
    {
        understand(u"Call Bob #phone tomorrow"_s);
        form().setName(u"  Call Bob now "_s);
        const QDateTime due = form().dueDate();
        create();

        const WorkItems tasks = (*m_services)->board->tasks();
        QCOMPARE(tasks.size(), 1U);
        QCOMPARE(tasks.front()->name(), u"Call Bob now"_s);
        QCOMPARE(tasks.front()->tagName(), u"phone"_s);
        QCOMPARE(tasks.front()->dueDate()->toDateTime(), due);
        QVERIFY(!entry().isOpen());
        QCOMPARE(entry().inputText(), QString());
        QVERIFY((*m_services)->announcer.history().contains(u"Task 'Call Bob now' created successfully"_s));
    }

    void aTaskOfAnOutsideSourceIsFetched()
    {
        enable(false, true, true);
        m_services->reminders.creations.give(u"reminder_1"_s);
        m_services->reminders.fetches.give({makeTask(u"reminder_1"_s)});
        understand(u"a in reminders"_s);
        create();
        m_services->advance(1.0);
        QVERIFY((*m_services)->board->task(u"reminder_1"_s));
    }

    void whatFailedStaysAsItWas()
    {
        enable(false, true, false);
        m_services->reminders.hasPermission = false;
        understand(u"a [P] #t"_s);
        create();
        QCOMPARE(form().errorMessage(),
                 u"Error creating task: Permission denied for Reminders. Please grant access "
                 "in the Permissions menu."_s);
        m_services->reminders.hasPermission = true;
        m_services->reminders.creations.fail(u"disk full"_s);
        create();
        QCOMPARE(form().errorMessage(), u"Error creating task: disk full"_s);
        form().setName(u"  "_s);
        create();
        QCOMPARE(form().errorMessage(), u"Task name is required"_s);

        QVERIFY(entry().isOpen());
        QVERIFY(!form().isCreating());
        QCOMPARE(form().project(), u"P"_s);
        QCOMPARE(form().tag(), u"t"_s);
        QCOMPARE(creations(m_services->reminders).size(), 1);
    }

    void correctionsOutliveTheSheetUntilTheLineChanges()
    {
        understand(u"one"_s);
        form().setName(u"corrected"_s);
        entry().backToInput();
        QCOMPARE(entry().inputText(), u"one"_s);
        entry().close();
        QVERIFY(!entry().isOpen());

        understand(u"one"_s);
        QCOMPARE(form().name(), u"corrected"_s);
        entry().backToInput();
        understand(u"two"_s);
        QCOMPARE(form().name(), u"two"_s);
    }

    void omniFocusIsOnlyToldNamesThatItKnows()
    {
        enable(true, false, true);
        const std::vector<ProjectInfo> projects{{u"1"_s, u"Garden"_s}};
        const std::vector<TagInfo> tags{{u"1"_s, u"Home"_s}};
        // Asked for completion first, then at each attempt.
        for (int i = 0; i < 3; ++i) {
            m_services->omniFocus.projects.give(projects);
            m_services->omniFocus.tags.give(tags);
        }
        m_services->omniFocus.creations.give(u"task"_s);
        m_services->omniFocus.fetches.give({});
        understand(u"a [Gardn] #hom"_s);
        create();
        QCOMPARE(form().errorMessage(), u"Error creating task: OmniFocus has no project named 'Gardn'"_s);
        QCOMPARE(creations(m_services->omniFocus), QStringList());

        form().setProject(u"garden"_s);
        create();
        QCOMPARE(creations(m_services->omniFocus), QStringList{u"createTask a"_s});
        QCOMPARE((*m_services)->toasts.message(), u"OmniFocus has no tag 'hom': it was left out"_s);
    }

    void theFormMayGoWhileATaskIsMade()
    {
        enable(false, true, false);
        const auto gate = m_services->reminders.creations.giveWhenOpened(u"reminder_1"_s);
        understand(u"a"_s);
        create();
        QVERIFY(form().isCreating());
        entry().close();
        QVERIFY2(entry().isOpen(), "what is not a task yet was put out of sight");
        m_services->stop();
        gate->countDown();
    }

private:
    QuickTaskEntryViewModel &entry() { return *m_services->viewModels().quickEntry(); }
    TaskConfirmationViewModel &form() { return *entry().confirmation(); }
    void enable(bool omniFocus, bool reminders, bool plainText)
    {
        (*m_services)->managers.setTaskSourceConfiguration({omniFocus, reminders, plainText});
    }
    void understand(const QString &line)
    {
        (*m_services)->notifications.post(notifications::ShowQuickTaskEntry);
        entry().setInputText(line);
        entry().parseAndContinue();
        m_services->settle();
    }
    void create()
    {
        form().createTask();
        m_services->settle();
    }
    QStringList creations(const FakeTaskManager &source) const
    {
        return source.requests.filter(u"createTask"_s);
    }

    std::unique_ptr<TestServices> m_services;
};

VANTREL_REGISTER_TEST(TestQuickEntry)

} // namespace vantrel::test

#include "test_quick_entry.moc"
