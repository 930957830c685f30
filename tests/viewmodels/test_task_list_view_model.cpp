#include "board/TestBoard.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/Launch.h"
#include "foundations/NotificationNames.h"
#include "sources/omnifocus/AppleScriptError.h"
#include "support/TestRegistry.h"
#include "viewmodels/PermissionHelp.h"
#include "viewmodels/TaskListViewModel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Screen = TaskListViewModel::Screen;

/** The main loop over a board whose sources do what the test tells them. */
class MainLoop : public TestBoard
{
public:
    explicit MainLoop(const TaskSourceConfiguration &sources)
    {
        managers().setTaskSourceConfiguration(sources);
        list = std::make_unique<TaskListViewModel>(**this, repository(), managers(), notifications, announcer,
                                                   toasts, store.clock);
    }

    /** The board's own load, with these tasks of OmniFocus. */
    void loadBoard(const WorkItems &tasks = {})
    {
        omniFocus.fetches.give(tasks);
        launch((**this).loadDataAsync(), u"load"_s);
        advance(1.0);
        // What was loaded must not be served again.
        repository().invalidateCache();
    }
    void run()
    {
        list->loadTasks();
        settle();
    }
    QString onBoard() const { return cell(todo()); }

    std::unique_ptr<TaskListViewModel> list;
};

constexpr TaskSourceConfiguration OnlyOmniFocus{.isOmniFocusEnabled = true, .isPlainTextEnabled = false};

const QString Denied = u"AppleScript Permission denied - grant automation permission"_s;

} // namespace

/** One run of the program's main loop, and the screens that follow from it. */
class TestTaskListViewModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRunPutsTheFetchedTasksOnTheBoard()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.loadBoard({makeTask(u"a"_s)});
        QSignalSpy states(loop.list.get(), &TaskListViewModel::stateChanged);
        const auto gate = loop.omniFocus.fetches.giveWhenOpened({makeTask(u"a"_s), makeTask(u"b"_s)});

        loop.notifications.post(notifications::RefreshTasksRequested);
        loop.settle();
        QCOMPARE(loop.list->screen(), Screen::Loading);
        QCOMPARE(loop.onBoard(), u"a"_s);

        gate->countDown();
        loop.settle();
        QCOMPARE(loop.list->screen(), Screen::Content);
        QCOMPARE(loop.onBoard(), u"a b"_s);
        QCOMPARE(loop.list->tasks().size(), size_t(2));
        QVERIFY(states.count() >= 2);
    }

    void aRunWaitsForTheBoardsOwnLoad()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.run();
        QCOMPARE(loop.omniFocus.requests, QStringList());
        QCOMPARE(loop.list->screen(), Screen::Content);
    }

    void eachFailureHasItsScreen()
    {
        struct Row
        {
            std::exception_ptr failure;
            Screen screen;
            QString message;
        };
        const auto notRunning = AppleScriptError(AppleScriptError::Kind::OmniFocusNotRunning);
        const auto odd = SourceError(u"Fake"_s, 1, u"odd"_s);
        for (const Row &row :
             {Row{std::make_exception_ptr(notRunning), Screen::Error, u"⚠️ OmniFocus isn't running."_s},
              Row{nullptr, Screen::Permission, Denied},
              Row{std::make_exception_ptr(odd), Screen::Error, u"Error loading tasks: OmniFocus: odd"_s}}) {
            MainLoop loop(OnlyOmniFocus);
            loop.loadBoard({makeTask(u"a"_s)});

            loop.omniFocus.hasPermission = row.failure != nullptr;
            loop.omniFocus.dueSoonFailure = row.failure;
            loop.run();

            QCOMPARE(loop.list->screen(), row.screen);
            const bool isPermission = row.screen == Screen::Permission;
            QCOMPARE(isPermission ? loop.list->permissionMessage() : loop.list->errorMessage(), row.message);

            loop.omniFocus.hasPermission = true;
            loop.omniFocus.dueSoonFailure = nullptr;
            loop.omniFocus.fetches.give({makeTask(u"a"_s)});
            loop.list->retry();
            loop.settle();
            QCOMPARE(loop.list->screen(), Screen::Content);
            QCOMPARE(loop.onBoard(), u"a"_s);
        }
    }

    void aFailedRunForgetsNoPlacement()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.loadBoard({makeTask(u"a"_s), makeTask(u"b"_s)});
        (*loop).moveTask((*loop).task(u"a"_s), loop.doing());
        loop.settle();

        loop.omniFocus.fetches.fail(u"odd"_s);
        loop.run();
        QCOMPARE((*loop).taskCount(), 0);
        QCOMPARE(loop.storedIds(), u"a b"_s);

        loop.omniFocus.fetches.give({makeTask(u"a"_s), makeTask(u"b"_s)});
        loop.run();
        QCOMPARE(loop.cell(loop.doing()), u"a"_s);
    }

    void reportsWithoutARunShowTheErrorScreen()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.loadBoard();

        loop.notifications.post(notifications::TaskLoadingError);
        loop.settle();
        QCOMPARE(loop.list->errorMessage(), u"Unknown error occurred while loading tasks"_s);

        loop.omniFocus.fetches.give({});
        loop.run();
        QCOMPARE(loop.list->screen(), Screen::Content);
    }

    void anUnusableEditionOfOmniFocusIsSwitchedOff()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.loadBoard({makeTask(u"a"_s)});
        int posts = 0;
        loop.notifications.observe(notifications::TaskSourceConfigurationChanged, loop.list.get(),
                                   [&](const Notification &) { ++posts; });
        loop.omniFocus.fetches.failWith(AppleScriptError(AppleScriptError::Kind::OmniFocusProRequired));

        loop.run();
        QVERIFY(loop.list->errorMessage().startsWith(u"⚠️ OmniFocus Pro is required for scripting."));
        QCOMPARE(loop.managers().getTaskSourceConfiguration(),
                 (TaskSourceConfiguration{.isOmniFocusEnabled = false, .isPlainTextEnabled = true}));
        QCOMPARE(loop.list->currentTaskSources(), u"Plain Text"_s);
        QCOMPARE(posts, 1);

        const auto requests = loop.omniFocus.requests;
        loop.advance(0.5);
        QCOMPARE(loop.list->screen(), Screen::Content);
        QCOMPARE(loop.omniFocus.requests, requests);
    }

    void theBoardsSecondAttemptClearsTheFirstOnesError()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.omniFocus.fetches.fail(u"odd"_s);
        launch((*loop).loadDataAsync(), u"load"_s);
        loop.advance(1.0);
        QCOMPARE(loop.list->screen(), Screen::Error);

        loop.loadBoard({makeTask(u"a"_s)});
        QCOMPARE(loop.list->screen(), Screen::Content);
    }

    void theHelpIsThatOfTheDesktop()
    {
        MainLoop loop({.isRemindersEnabled = true, .isPlainTextEnabled = false});
        loop.reminders.fetches.give({});
        launch((*loop).loadDataAsync(), u"load"_s);
        loop.advance(1.0);
        loop.repository().invalidateCache();
        loop.reminders.hasPermission = false;
        loop.run();
        const QString message = loop.list->permissionMessage();
        QCOMPARE(message, u"Permission issue: Reminders: Please allow it."_s);

        PermissionHelp mac(loop.managers(), loop.desktop.urls, DesktopFamily::Mac);
        QCOMPARE(mac.steps().size(), 4);
        QCOMPARE(mac.remindersGuidance(message).size(), 10);
        QCOMPARE(mac.remindersGuidance(Denied), QStringList());
        mac.openSystemSettings(message);
        mac.openSystemSettings(Denied);
        QVERIFY(loop.desktop.urls.opened.front().toString().endsWith(u"Privacy_Reminders"));
        QVERIFY(loop.desktop.urls.opened.back().toString().endsWith(u"Privacy_Automation"));
        const PermissionHelp linux(loop.managers(), loop.desktop.urls, DesktopFamily::Linux);
        QVERIFY(linux.steps().isEmpty() && linux.remindersGuidance(message).isEmpty());
    }

    void theUserMayGoOnWithoutASource()
    {
        MainLoop loop(OnlyOmniFocus);
        loop.loadBoard({makeTask(u"a"_s)});
        loop.omniFocus.hasPermission = false;
        loop.run();
        QCOMPARE(loop.list->screen(), Screen::Permission);
        loop.list->continueWithout();
        QCOMPARE(loop.list->screen(), Screen::Content);
        loop.run();
        QCOMPARE(loop.list->screen(), Screen::Permission);
    }

    void settingsRefreshTheScreenOnlyWhenTheySaySo()
    {
        MainLoop loop(OnlyOmniFocus);
        QSignalSpy refreshes(loop.list.get(), &TaskListViewModel::refreshRequested);
        using namespace notifications;

        for (const NotificationName name : {ColumnsUpdated, SwimlanesUpdated, BoardStateChanged}) {
            loop.notifications.post(name);
            loop.notifications.post(name, u"other"_s);
        }
        QCOMPARE(refreshes.count(), 0);
        for (const NotificationName name : {ColumnsUpdated, SwimlanesUpdated, BoardStateChanged}) {
            loop.notifications.post(name, u"fromSettings"_s);
        }
        loop.notifications.post(TagFilterUpdated);
        QCOMPARE(refreshes.count(), 4);
    }

    void aSwitchIsSpokenAndCountsAgain()
    {
        MainLoop loop(OnlyOmniFocus);
        int counts = 0;
        loop.notifications.observe(notifications::SwimLaneWIPCountsChanged, loop.list.get(),
                                   [&](const Notification &) { ++counts; });

        loop.notifications.post(notifications::SwitchToVisualizeView);
        QCOMPARE(loop.desktop.announcements.announcements.back().text, u"Switched to Visualize view"_s);
        QCOMPARE(loop.desktop.announcements.announcements.back().priority, AnnouncementPriority::High);
        QCOMPARE(counts, 0);
        loop.advance(0.2);
        QCOMPARE(counts, 1);
    }

    void aModeWithoutAScreenIsNotOffered()
    {
        MainLoop loop(OnlyOmniFocus);
        for (const ViewModeInfo &mode : AllViewModes) {
            loop.list->switchToViewMode(mode.mode);
            const auto offered = loop.list->viewModes();
            const bool isOffered =
                std::any_of(offered.begin(), offered.end(), [&mode](const QVariant &offer) {
                    return offer.toMap().value(u"id"_s).toString() == mode.rawValue;
                });
            QCOMPARE(loop.list->currentViewMode() == mode.mode, isOffered);
        }
    }
};

VANTREL_REGISTER_TEST(TestTaskListViewModel)

} // namespace vantrel::test

#include "test_task_list_view_model.moc"
