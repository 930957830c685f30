#include "foundations/Launch.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "sources/SourceError.h"
#include "sources/TaskRepository.h"
#include "sources/plaintext/PlainTextTaskManager.h"
#include "support/Await.h"
#include "support/FakeTaskManager.h"
#include "support/RawDatabase.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

Column column(const QString &name, ColumnType type, int position)
{
    Column column = aColumn(name, type);
    column.position = position;
    column.stableId = u"stable_"_s + name;
    return column;
}

SwimLane lane(const QString &stableId)
{
    SwimLane lane = aSwimLane(stableId);
    lane.stableId = stableId;
    return lane;
}

PlainTextRecord record(const QString &id, const QString &name = u"Stored"_s)
{
    return aPlainTextRecord(name, id);
}

NewTask named(const QString &name)
{
    NewTask task;
    task.name = name;
    return task;
}

} // namespace

class TestPlainTextTaskManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
        m = std::make_unique<Setting>();
        m->logManager.setMinimumLogLevel(LogLevel::Info);
    }

    void cleanup()
    {
        m.reset();
        m_log.reset();
    }

    void aCreatedTaskIsStoredWithAllThatWasGiven()
    {
        saveUsualBoard();
        NewTask task = named(u"Write"_s);
        task.note = u"a note"_s;
        task.dueDate = m->clock.now() + 10.0;
        task.deferDate = m->clock.now() + 5.0;
        task.project = u"Book"_s;
        task.tags = QStringList{u"Home"_s, u"b"_s, u"c"_s};

        const QString id = await(m->source.createTask(task));

        QCOMPARE(id.size(), 46);
        QCOMPARE(id, u"plaintext-"_s + id.mid(10).toUpper());
        const WorkItemFields &fields = m->source.loadedTasks().front()->fields();
        QCOMPARE(fields.id, id);
        QCOMPARE(fields.name, u"Write"_s);
        QVERIFY(fields.note == task.note && fields.dueDate == task.dueDate &&
                fields.deferDate == task.deferDate);
        QVERIFY(fields.project == (Project{u"Book"_s, u"Book"_s}));
        QVERIFY(fields.tag == (Tag{u"tag-home"_s, u"Home"_s}));
        QVERIFY(fields.creationDate == m->clock.now() && fields.modificationDate == m->clock.now());
        const std::optional<PlainTextRecord> row = storedRow(id);
        QVERIFY(row && row->fields == fields);
        QCOMPARE(row->hashtags, task.tags);
        QCOMPARE(row->originalText, u"- [ ] Write #Home #b #c"_s);
    }

    void aNewTaskGoesToTheFirstOpenColumnAndTheDefaultSwimLane_data()
    {
        using Types = QList<ColumnType>;
        QTest::addColumn<Types>("types");
        QTest::addColumn<QStringList>("lanes");
        QTest::addColumn<std::size_t>("column");
        QTest::addColumn<std::size_t>("lane");
        const auto queue = ColumnType::Queue, active = ColumnType::Active, completed = ColumnType::Completed;
        const QStringList defaultSecond{u"a"_s, u"default_swimlane"_s};
        QTest::newRow("queue first") << Types{queue, active} << defaultSecond << 0ul << 1ul;
        QTest::newRow("completed first") << Types{completed, active, queue} << defaultSecond << 1ul << 1ul;
        QTest::newRow("no choice") << Types{completed, completed} << QStringList{u"a"_s, u"b"_s} << 0ul
                                   << 0ul;
    }

    void aNewTaskGoesToTheFirstOpenColumnAndTheDefaultSwimLane()
    {
        QFETCH(QList<ColumnType>, types);
        QFETCH(QStringList, lanes);
        QFETCH(std::size_t, column);
        QFETCH(std::size_t, lane);
        std::vector<Column> columns;
        for (int i = 0; i < types.size(); ++i) {
            columns.push_back(test::column(QString::number(i), types[i], i));
        }
        std::vector<SwimLane> swimLanes;
        for (const QString &stableId : lanes) {
            swimLanes.push_back(test::lane(stableId));
        }
        saveBoard(columns, swimLanes);

        const auto place = placeOf(create(u"Write"_s));

        QVERIFY(place && place->columnId == columns[column].id && place->swimLaneId == swimLanes[lane].id);
    }

    void newTasksLineUpBehindOneAnother()
    {
        saveUsualBoard();
        QCOMPARE(placeOf(create(u"one"_s))->position, 0);
        QCOMPARE(placeOf(create(u"two"_s))->position, 1);

        // Two that are created at once must not take the same place.
        auto three = m->source.createTask(named(u"three"_s));
        auto four = m->source.createTask(named(u"four"_s));
        QCOMPARE(placeOf(await(std::move(three)))->position, 2);
        QCOMPARE(placeOf(await(std::move(four)))->position, 3);
    }

    void theBoardHearsOfANewTaskAfterItsCreator()
    {
        saveUsualBoard();
        QStringList heard;
        connect(&m->source, &PlainTextTaskManager::taskCreated, this,
                [&](const WorkItemPtr &task) { heard.append(u"cache "_s + task->id()); });
        m->notifications.observe(notifications::TaskAddedToBoardState, this,
                                 [&](const Notification &notification) {
                                     heard.append(u"board "_s + notification.object.toString());
                                 });

        const QString id = create(u"Write"_s);
        QCOMPARE(heard, QStringList());
        m->clock.advance(0.0);

        QCOMPARE(heard, QStringList({u"cache "_s + id, u"board "_s + id}));
    }

    void aTaskCreatedWithoutColumnsGetsItsPlaceLater()
    {
        const QString id = create(u"Write"_s);
        QVERIFY(storedRow(id));
        QVERIFY(!placeOf(id));
        QVERIFY2(!m->clock.hasWaitingWork(), "the board was told of a task without a place");

        QCOMPARE(taskNames(fetch()), QStringList(u"Write"_s));
        QVERIFY(!placeOf(id));
        saveUsualBoard();
        fetch();

        QVERIFY(placeOf(id) && placeOf(id)->columnId == m_todo.id);
    }

    void aFetchKeepsTheObjectsAndChangesThemInPlace()
    {
        saveUsualBoard();
        const auto interned = m->source.intern(record(u"plaintext-1"_s, u"Imported"_s));
        m->store->savePlainTextTask(interned->record());
        const QString created = create(u"Created"_s);
        const WorkItems before = fetch();
        QCOMPARE(before.size(), 2u);
        interned->setEisenhowerPriority(EisenhowerPriority::DoNow);

        PlainTextRecord changed = interned->record();
        changed.fields.name = u"Changed in the store"_s;
        changed.hashtags = QStringList{u"new"_s};
        m->store->savePlainTextTask(changed);
        const WorkItems after = fetch();

        QVERIFY2(std::is_permutation(before.begin(), before.end(), after.begin(), after.end()),
                 "a fetch made other objects");
        QCOMPARE(interned->name(), u"Changed in the store"_s);
        QCOMPARE(interned->hashtags(), QStringList(u"new"_s));
        QVERIFY(interned->eisenhowerPriority() == EisenhowerPriority::DoNow);
        QVERIFY(m->source.intern(record(created)) == m->source.intern(record(created)));
    }

    void aFetchPlacesRowsThatHaveNoPlaceOnce()
    {
        saveUsualBoard();
        create(u"first"_s);
        m->store->savePlainTextTasks({record(u"plaintext-1"_s), record(u"plaintext-2"_s)});

        QCOMPARE(fetch().size(), 3u);
        QCOMPARE(placeOf(u"plaintext-1"_s)->position, 1);
        QCOMPARE(placeOf(u"plaintext-2"_s)->position, 2);
        QCOMPARE(LogWriter::recentMessages().count(u"2 tasks in SQLite without positions!"_s), 1);

        LogWriter::forgetMessages();
        fetch();
        QCOMPARE(LogWriter::recentMessages().filter(u"without"_s), QStringList());
        QCOMPARE(placeOf(u"plaintext-1"_s)->position, 1);
    }

    void anInventedCompletionDateIsStored()
    {
        PlainTextRecord complete = record(u"plaintext-1"_s);
        complete.fields.isComplete = true;
        m->store->savePlainTextTask(complete);
        const Date firstSeen = m->clock.now();

        fetch();
        m->clock.advance(3600.0);

        QVERIFY(fetch().front()->completionDate() == firstSeen);
        QVERIFY(storedRow(u"plaintext-1"_s)->fields.completionDate == firstSeen);
    }

    void aStoreThatCannotBeReadIsAFailureAndNotEmpty()
    {
        for (const QString &lostTable : {u"plainTextTasks"_s, u"taskPositions"_s}) {
            m = std::make_unique<Setting>();
            m->store->savePlainTextTask(record(u"plaintext-1"_s));
            fetch();
            QVERIFY(RawDatabase(m->store.databasePath()).run(u"DROP TABLE "_s + lostTable));

            QVERIFY_THROWS_EXCEPTION(SourceError, fetch());
            QCOMPARE(m->source.loadedTasks().size(), 1u);
        }
    }

    void editsMadeDuringAFetchAreKept()
    {
        saveUsualBoard();
        const QString id = create(u"Old"_s);
        const QString other = create(u"Other"_s);
        auto fetching = m->source.fetchTasks();

        QVERIFY(await(m->source.setTaskName(id, u"New"_s)));
        m->source.intern(record(other))->setBlocked(true); // as the board does, which stores it on its own
        const WorkItems fetched = await(std::move(fetching));

        QCOMPARE(taskNames(fetched), QStringList({u"New"_s, u"Other"_s}));
        QVERIFY2(fetched[1]->isBlocked(), "a block was taken back by an older reading");
        QVERIFY(await(m->source.markTaskComplete(id)));
        QCOMPARE(storedRow(id)->fields.name, u"New"_s);
    }

    void tasksCreatedOrRemovedDuringAFetchStaySo()
    {
        saveUsualBoard();
        create(u"Stays"_s);
        const QString removed = create(u"Removed"_s);
        auto fetching = m->source.fetchTasks();

        QVERIFY(m->source.removePlainTextTasks({removed}));
        auto creating = m->source.createTask(named(u"Created"_s));
        const WorkItems fetched = await(std::move(fetching));
        await(std::move(creating));

        QCOMPARE(taskNames(fetched), QStringList({u"Stays"_s, u"Created"_s}));
        QCOMPARE(taskNames(fetch()), QStringList({u"Stays"_s, u"Created"_s}));
        QVERIFY(!await(m->source.flagTask(removed, true)));
        QVERIFY(!storedRow(removed) && !placeOf(removed));
    }

    void removingAllDuringAFetchLeavesNothing()
    {
        saveUsualBoard();
        m->store->savePlainTextTask(record(u"plaintext-never-fetched"_s));
        auto fetching = m->source.fetchTasks();

        QVERIFY(m->source.removeAllPlainTextTasks());
        auto creating = m->source.createTask(named(u"Created"_s));

        QCOMPARE(taskNames(await(std::move(fetching))), QStringList(u"Created"_s));
        await(std::move(creating));
        QCOMPARE(taskNames(fetch()), QStringList(u"Created"_s));
        QCOMPARE(m->store->loadPlainTextTasks().size(), 1u);
    }

    void twoFetchesAtOnceEndAlike()
    {
        saveUsualBoard();
        const QString id = create(u"one"_s);
        auto first = m->source.fetchTasks();
        await(m->source.setTaskName(id, u"renamed"_s));
        m->store->savePlainTextTask(record(u"plaintext-1"_s, u"two"_s));
        auto second = m->source.forceReloadTasks();

        QCOMPARE(taskNames(await(std::move(first))), QStringList(u"renamed"_s));
        QCOMPARE(taskNames(await(std::move(second))), QStringList({u"renamed"_s, u"two"_s}));
    }

    void aSourceThatGoesAwayDuringAFetchLeavesItsCallersUnharmed()
    {
        m->store->savePlainTextTask(record(u"plaintext-1"_s));
        auto source = std::make_unique<PlainTextTaskManager>(*m->store, m->notifications, m->clock);
        auto fetching = source->fetchTasks();
        auto waiting = source->fetchTasks();

        source.reset();

        QCOMPARE(await(std::move(fetching)).size(), 0u);
        QCOMPARE(await(std::move(waiting)).size(), 0u);
    }

    void theStoreIsWrittenToTheLogOnlyForDebugging()
    {
        m->store->savePlainTextTask(record(u"plaintext-1"_s, u"private matter"_s));
        for (const auto &[level, isTold] : {std::pair(LogLevel::Info, false), {LogLevel::Debug, true}}) {
            m->logManager.setMinimumLogLevel(level);
            await(m->source.forceReloadTasks());
            QCOMPARE(!LogWriter::recentMessages().filter(u"private matter"_s).isEmpty(), isTold);
        }
    }

    void editsAreDatedAndStored()
    {
        saveUsualBoard();
        const QString id = create(u"Write"_s);
        const auto item = m->source.intern(record(id));
        const std::array<std::function<QCoro::Task<bool>()>, 4> edits{
            [&] { return m->source.setTaskName(id, u"Read"_s); },
            [&] { return m->source.flagTask(id, true); }, [&] { return m->source.markTaskComplete(id); },
            [&] {
                return m->source.markTaskIncomplete(id);
            }};

        for (const auto &edit : edits) {
            m->clock.advance(60.0);
            const PlainTextRecord before = item->record();
            QVERIFY(await(edit()));
            QVERIFY(item->record() != before);
            QVERIFY(item->modificationDate() == m->clock.now());
            QVERIFY(storedRow(id) == item->record());
        }
        QCOMPARE(item->originalText(), u"- [ ] Write"_s);
    }

    void removedTasksAreGoneFromStoreAndCache()
    {
        saveUsualBoard();
        TaskRepository repository(m->factory, *m->store, m->notifications, m->clock);
        const QString removed = create(u"Removed"_s);
        const QString kept = create(u"Kept"_s);
        m->clock.advance(0.0);
        QCOMPARE(await(repository.fetchTasks(false)).tasks.size(), 2u);

        QVERIFY(m->source.removePlainTextTasks({removed}));

        QVERIFY(!repository.cachedTask(removed));
        QVERIFY2(!repository.lastFetchTime(), "the next load would be served from before the removal");
        QVERIFY(!storedRow(removed) && !placeOf(removed));
        QVERIFY(storedRow(kept) && placeOf(kept));
        QCOMPARE(taskNames(await(repository.fetchTasks(false)).tasks), QStringList(u"Kept"_s));
    }

    void aLoadTellsOwnTasksAsTheyAreAtItsEnd()
    {
        saveUsualBoard();
        m->factory.setTaskSourceConfiguration({true, false, true});
        TaskRepository repository(m->factory, *m->store, m->notifications, m->clock);
        const QString removed = create(u"Removed"_s);
        m->clock.advance(0.0);
        const auto slowAnswer = m->omniFocus.fetches.giveWhenOpened({makeTask(u"of"_s, u"Outside"_s)});
        auto loading = repository.fetchTasks(false);
        fetch(); // the own source has answered by now

        m->source.removePlainTextTasks({removed});
        create(u"Created"_s);
        m->source.intern(record(u"plaintext-1"_s, u"Imported"_s));
        slowAnswer->countDown();

        const FetchedTasks loaded = await(std::move(loading));
        QCOMPARE(taskNames(loaded.tasks), QStringList({u"Outside"_s, u"Created"_s, u"Imported"_s}));
        QVERIFY(loaded.answeredSources == (TaskSource::PlainText | TaskSource::OmniFocus));
    }

private:
    struct Setting
    {
        TestStore store;
        LogManager logManager{store.defaults};
        NotificationCenter notifications;
        ManualClock &clock = store.clock;
        PlainTextTaskManager source{*store, notifications, clock};
        FakeTaskManager omniFocus{TaskManagerType::OmniFocus, clock};
        FakeTaskManager reminders{TaskManagerType::Reminders, clock};
        TaskManagerFactory factory{store.defaults, omniFocus, reminders, source};
    };

    void saveBoard(const std::vector<Column> &columns, const std::vector<SwimLane> &lanes)
    {
        QVERIFY(m->store->saveBoardConfiguration(columns));
        if (!lanes.empty()) {
            QVERIFY(m->store->saveSwimLaneConfiguration(lanes));
        }
    }

    void saveUsualBoard() { saveBoard({m_todo}, {m_lane}); }

    QString create(const QString &name) { return await(m->source.createTask(named(name))); }

    WorkItems fetch() { return await(m->source.fetchTasks()); }
    std::optional<PersistentTaskPosition> placeOf(const QString &taskId) { return m->store.position(taskId); }

    std::optional<PlainTextRecord> storedRow(const QString &taskId)
    {
        for (const PlainTextRecord &row : m->store->loadPlainTextTasks()) {
            if (row.fields.id == taskId) {
                return row;
            }
        }
        return std::nullopt;
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<Setting> m;
    Column m_todo = column(u"todo"_s, ColumnType::Queue, 0);
    SwimLane m_lane = lane(u"default_swimlane"_s);
};

VANTREL_REGISTER_TEST(TestPlainTextTaskManager)

} // namespace vantrel::test

#include "test_plain_text_task_manager.moc"
