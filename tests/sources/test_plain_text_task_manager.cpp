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
    Column column;
    column.id = ColumnId::create();
    column.name = name;
    column.type = type;
    column.position = position;
    column.stableId = u"stable_"_s + name;
    return column;
}

SwimLane lane(const QString &name, const QString &stableId)
{
    SwimLane lane;
    lane.id = SwimLaneId::create();
    lane.name = name;
    lane.stableId = stableId;
    return lane;
}

PlainTextRecord record(const QString &id, const QString &name = u"Stored"_s)
{
    PlainTextRecord record;
    record.fields.id = id;
    record.fields.name = name;
    record.fields.creationDate = Date(800000000.0);
    return record;
}

NewTask named(const QString &name)
{
    NewTask task;
    task.name = name;
    return task;
}

QStringList namesOf(const WorkItems &tasks)
{
    QStringList names;
    for (const WorkItemPtr &task : tasks) {
        names.append(task->name());
    }
    return names;
}

} // namespace

class TestPlainTextTaskManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aCreatedTaskIsStoredWithAllThatWasGiven();
    void aNewTaskGoesToTheFirstColumnThatIsNotForFinishedWork_data();
    void aNewTaskGoesToTheFirstColumnThatIsNotForFinishedWork();
    void aNewTaskGoesToTheDefaultSwimLane_data();
    void aNewTaskGoesToTheDefaultSwimLane();
    void newTasksLineUpBehindOneAnother();
    void theBoardHearsOfANewTaskAfterItsCreator();
    void aTaskCreatedWithoutColumnsGetsItsPlaceLater();

    void aFetchKeepsTheObjectsAndChangesThemInPlace();
    void aFetchPlacesRowsThatHaveNoPlaceOnce();
    void anInventedCompletionDateIsStored();
    void theQuadrantOfATaskSurvivesAFetch();
    void aStoreThatCannotBeReadIsAFailureAndNotEmpty_data();
    void aStoreThatCannotBeReadIsAFailureAndNotEmpty();
    void editsMadeDuringAFetchAreKept();
    void tasksCreatedOrRemovedDuringAFetchStaySo();
    void removingAllDuringAFetchLeavesNothing();
    void twoFetchesAtOnceEndAlike();
    void aSourceThatGoesAwayDuringAFetchLeavesItsCallersUnharmed();
    void theStoreIsWrittenToTheLogOnlyForDebugging();

    void editsAreDatedAndStored();
    void editsBeforeTheFirstFetchAreRefused();
    void completedTasksAreToldWhateverThePeriod();
    void removedTasksAreGoneFromStoreAndCache();

    void aLoadTellsOwnTasksAsTheyAreAtItsEnd();

private:
    struct Setting
    {
        TestStore store;
        LogManager logManager{store.defaults};
        NotificationCenter notifications;
        ManualClock &clock = store.clock;
        PlainTextTaskManager source{*store, notifications, clock};
    };

    void saveBoard(const std::vector<Column> &columns, const std::vector<SwimLane> &lanes);
    void saveUsualBoard();
    QString create(const QString &name);
    WorkItems fetch() { return await(m->source.fetchTasks()); }
    std::optional<PersistentTaskPosition> placeOf(const QString &taskId);
    std::optional<PlainTextRecord> storedRow(const QString &taskId);

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<Setting> m;
    Column m_todo = column(u"todo"_s, ColumnType::Queue, 0);
    SwimLane m_lane = lane(u"Default"_s, u"default_swimlane"_s);
};

void TestPlainTextTaskManager::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m = std::make_unique<Setting>();
    m->logManager.setMinimumLogLevel(LogLevel::Info);
}

void TestPlainTextTaskManager::cleanup()
{
    m.reset();
    m_log.reset();
}

void TestPlainTextTaskManager::saveBoard(const std::vector<Column> &columns,
                                         const std::vector<SwimLane> &lanes)
{
    QVERIFY(m->store->saveBoardConfiguration(columns));
    if (!lanes.empty()) {
        QVERIFY(m->store->saveSwimLaneConfiguration(lanes));
    }
}

void TestPlainTextTaskManager::saveUsualBoard()
{
    saveBoard({m_todo}, {m_lane});
}

QString TestPlainTextTaskManager::create(const QString &name)
{
    return await(m->source.createTask(named(name)));
}

std::optional<PersistentTaskPosition> TestPlainTextTaskManager::placeOf(const QString &taskId)
{
    for (const PersistentTaskPosition &place : m->store->loadAllTaskPositions()) {
        if (place.id == taskId) {
            return place;
        }
    }
    return std::nullopt;
}

std::optional<PlainTextRecord> TestPlainTextTaskManager::storedRow(const QString &taskId)
{
    for (const PlainTextRecord &row : m->store->loadPlainTextTasks()) {
        if (row.fields.id == taskId) {
            return row;
        }
    }
    return std::nullopt;
}

// Creation

void TestPlainTextTaskManager::aCreatedTaskIsStoredWithAllThatWasGiven()
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
    QVERIFY(fields.note == task.note && fields.dueDate == task.dueDate && fields.deferDate == task.deferDate);
    QVERIFY(fields.project == (Project{u"Book"_s, u"Book"_s}));
    QVERIFY(fields.tag == (Tag{u"tag-home"_s, u"Home"_s}));
    QVERIFY(fields.creationDate == m->clock.now() && fields.modificationDate == m->clock.now());
    const std::optional<PlainTextRecord> row = storedRow(id);
    QVERIFY(row && row->fields == fields);
    QCOMPARE(row->hashtags, task.tags);
    QCOMPARE(row->originalText, u"- [ ] Write #Home #b #c"_s);
}

void TestPlainTextTaskManager::aNewTaskGoesToTheFirstColumnThatIsNotForFinishedWork_data()
{
    using Types = QList<ColumnType>;
    QTest::addColumn<QList<ColumnType>>("types");
    QTest::addColumn<int>("chosen");

    QTest::newRow("queue first") << Types{ColumnType::Queue, ColumnType::Active} << 0;
    QTest::newRow("completed first") << Types{ColumnType::Completed, ColumnType::Active, ColumnType::Queue}
                                     << 1;
    QTest::newRow("all completed") << Types{ColumnType::Completed, ColumnType::Completed} << 0;
}

void TestPlainTextTaskManager::aNewTaskGoesToTheFirstColumnThatIsNotForFinishedWork()
{
    QFETCH(QList<ColumnType>, types);
    QFETCH(int, chosen);
    std::vector<Column> columns;
    for (int i = 0; i < types.size(); ++i) {
        columns.push_back(column(QString::number(i), types[i], i));
    }
    saveBoard(columns, {m_lane});

    const auto place = placeOf(create(u"Write"_s));

    QVERIFY(place);
    QVERIFY(place->columnId == columns[static_cast<std::size_t>(chosen)].id);
}

void TestPlainTextTaskManager::aNewTaskGoesToTheDefaultSwimLane_data()
{
    QTest::addColumn<QStringList>("stableIds");
    QTest::addColumn<int>("chosen");

    QTest::newRow("the default one, though second") << QStringList{u"a"_s, u"default_swimlane"_s} << 1;
    QTest::newRow("no default: the first") << QStringList{u"a"_s, u"b"_s} << 0;
}

void TestPlainTextTaskManager::aNewTaskGoesToTheDefaultSwimLane()
{
    QFETCH(QStringList, stableIds);
    QFETCH(int, chosen);
    std::vector<SwimLane> lanes;
    for (const QString &stableId : stableIds) {
        lanes.push_back(lane(stableId, stableId));
    }
    saveBoard({m_todo}, lanes);

    const auto place = placeOf(create(u"Write"_s));

    QVERIFY(place);
    QVERIFY(place->swimLaneId == lanes[static_cast<std::size_t>(chosen)].id);
}

void TestPlainTextTaskManager::newTasksLineUpBehindOneAnother()
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

void TestPlainTextTaskManager::theBoardHearsOfANewTaskAfterItsCreator()
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

void TestPlainTextTaskManager::aTaskCreatedWithoutColumnsGetsItsPlaceLater()
{
    const QString id = create(u"Write"_s);
    QVERIFY(storedRow(id));
    QVERIFY(!placeOf(id));
    QVERIFY2(!m->clock.hasWaitingWork(), "the board was told of a task without a place");

    QCOMPARE(namesOf(fetch()), QStringList(u"Write"_s));
    QVERIFY(!placeOf(id));
    saveUsualBoard();
    fetch();

    QVERIFY(placeOf(id) && placeOf(id)->columnId == m_todo.id);
}

// Fetching

void TestPlainTextTaskManager::aFetchKeepsTheObjectsAndChangesThemInPlace()
{
    saveUsualBoard();
    const auto interned = m->source.intern(record(u"plaintext-1"_s, u"Imported"_s));
    m->store->savePlainTextTask(interned->record());
    const QString created = create(u"Created"_s);
    const WorkItems before = fetch();
    QCOMPARE(before.size(), 2u);

    PlainTextRecord changed = interned->record();
    changed.fields.name = u"Changed in the store"_s;
    changed.hashtags = QStringList{u"new"_s};
    m->store->savePlainTextTask(changed);
    const WorkItems after = fetch();

    QVERIFY2(std::is_permutation(before.begin(), before.end(), after.begin(), after.end()),
             "a fetch made other objects");
    QCOMPARE(interned->name(), u"Changed in the store"_s);
    QCOMPARE(interned->hashtags(), QStringList(u"new"_s));
    QVERIFY(m->source.intern(record(created)) == m->source.intern(record(created)));
}

void TestPlainTextTaskManager::aFetchPlacesRowsThatHaveNoPlaceOnce()
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

void TestPlainTextTaskManager::anInventedCompletionDateIsStored()
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

void TestPlainTextTaskManager::theQuadrantOfATaskSurvivesAFetch()
{
    m->store->savePlainTextTask(record(u"plaintext-1"_s));
    const WorkItemPtr task = fetch().front();
    task->setEisenhowerPriority(EisenhowerPriority::DoNow);

    fetch();

    QVERIFY(task->eisenhowerPriority() == EisenhowerPriority::DoNow);
}

void TestPlainTextTaskManager::aStoreThatCannotBeReadIsAFailureAndNotEmpty_data()
{
    QTest::addColumn<QString>("lostTable");
    QTest::newRow("rows") << u"plainTextTasks"_s;
    QTest::newRow("places") << u"taskPositions"_s;
}

void TestPlainTextTaskManager::aStoreThatCannotBeReadIsAFailureAndNotEmpty()
{
    QFETCH(QString, lostTable);
    m->store->savePlainTextTask(record(u"plaintext-1"_s));
    fetch();
    QVERIFY(RawDatabase(m->store.databasePath()).run(u"DROP TABLE "_s + lostTable));

    QVERIFY_THROWS_EXCEPTION(SourceError, fetch());
    QCOMPARE(m->source.loadedTasks().size(), 1u);
}

void TestPlainTextTaskManager::editsMadeDuringAFetchAreKept()
{
    saveUsualBoard();
    const QString id = create(u"Old"_s);
    const QString other = create(u"Other"_s);
    auto fetching = m->source.fetchTasks();

    QVERIFY(await(m->source.setTaskName(id, u"New"_s)));
    m->source.intern(record(other))->setBlocked(true); // as the board does, which stores it on its own
    const WorkItems fetched = await(std::move(fetching));

    QCOMPARE(namesOf(fetched), QStringList({u"New"_s, u"Other"_s}));
    QVERIFY2(fetched[1]->isBlocked(), "a block was taken back by an older reading");
    QVERIFY(await(m->source.markTaskComplete(id)));
    QCOMPARE(storedRow(id)->fields.name, u"New"_s);
}

void TestPlainTextTaskManager::tasksCreatedOrRemovedDuringAFetchStaySo()
{
    saveUsualBoard();
    create(u"Stays"_s);
    const QString removed = create(u"Removed"_s);
    auto fetching = m->source.fetchTasks();

    QVERIFY(m->source.removePlainTextTasks({removed}));
    auto creating = m->source.createTask(named(u"Created"_s));
    const WorkItems fetched = await(std::move(fetching));
    await(std::move(creating));

    QCOMPARE(namesOf(fetched), QStringList({u"Stays"_s, u"Created"_s}));
    QCOMPARE(namesOf(fetch()), QStringList({u"Stays"_s, u"Created"_s}));
    QVERIFY(!await(m->source.flagTask(removed, true)));
    QVERIFY(!storedRow(removed) && !placeOf(removed));
}

void TestPlainTextTaskManager::removingAllDuringAFetchLeavesNothing()
{
    saveUsualBoard();
    m->store->savePlainTextTask(record(u"plaintext-never-fetched"_s));
    auto fetching = m->source.fetchTasks();

    QVERIFY(m->source.removeAllPlainTextTasks());
    auto creating = m->source.createTask(named(u"Created"_s));

    QCOMPARE(namesOf(await(std::move(fetching))), QStringList(u"Created"_s));
    await(std::move(creating));
    QCOMPARE(namesOf(fetch()), QStringList(u"Created"_s));
    QCOMPARE(m->store->loadPlainTextTasks().size(), 1u);
}

void TestPlainTextTaskManager::twoFetchesAtOnceEndAlike()
{
    saveUsualBoard();
    const QString id = create(u"one"_s);
    auto first = m->source.fetchTasks();
    await(m->source.setTaskName(id, u"renamed"_s));
    m->store->savePlainTextTask(record(u"plaintext-1"_s, u"two"_s));
    auto second = m->source.forceReloadTasks();

    QCOMPARE(namesOf(await(std::move(first))), QStringList(u"renamed"_s));
    QCOMPARE(namesOf(await(std::move(second))), QStringList({u"renamed"_s, u"two"_s}));
}

void TestPlainTextTaskManager::aSourceThatGoesAwayDuringAFetchLeavesItsCallersUnharmed()
{
    m->store->savePlainTextTask(record(u"plaintext-1"_s));
    auto source = std::make_unique<PlainTextTaskManager>(*m->store, m->notifications, m->clock);
    auto fetching = source->fetchTasks();
    auto waiting = source->fetchTasks();

    source.reset();

    QCOMPARE(await(std::move(fetching)).size(), 0u);
    QCOMPARE(await(std::move(waiting)).size(), 0u);
}

void TestPlainTextTaskManager::theStoreIsWrittenToTheLogOnlyForDebugging()
{
    m->store->savePlainTextTask(record(u"plaintext-1"_s, u"private matter"_s));

    await(m->source.forceReloadTasks());
    QCOMPARE(LogWriter::recentMessages().filter(u"private matter"_s), QStringList());

    m->logManager.setMinimumLogLevel(LogLevel::Debug);
    await(m->source.forceReloadTasks());
    QVERIFY(LogWriter::recentMessages().contains(u"📊 SQLite database contains 1 plain text tasks:"_s));
    QVERIFY(!LogWriter::recentMessages().filter(u"private matter"_s).isEmpty());
}

// Edits

void TestPlainTextTaskManager::editsAreDatedAndStored()
{
    saveUsualBoard();
    const QString id = create(u"Write"_s);
    const auto item = m->source.intern(record(id));
    const std::array<std::function<QCoro::Task<bool>()>, 4> edits{
        [&] { return m->source.setTaskName(id, u"Read"_s); }, [&] { return m->source.flagTask(id, true); },
        [&] { return m->source.markTaskComplete(id); },
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

void TestPlainTextTaskManager::editsBeforeTheFirstFetchAreRefused()
{
    m->store->savePlainTextTask(record(u"plaintext-1"_s));

    QVERIFY(!await(m->source.setTaskName(u"plaintext-1"_s, u"New"_s)));

    QCOMPARE(storedRow(u"plaintext-1"_s)->fields.name, u"Stored"_s);
}

void TestPlainTextTaskManager::completedTasksAreToldWhateverThePeriod()
{
    PlainTextRecord old = record(u"plaintext-1"_s, u"long ago"_s);
    old.fields.isComplete = true;
    old.fields.completionDate = m->clock.now() - 400.0 * SecondsPerDay;
    m->store->savePlainTextTasks({old, record(u"plaintext-2"_s, u"open"_s)});
    QCOMPARE(await(m->source.fetchCompletedTasks(1000)).size(), 0u);

    fetch();

    QCOMPARE(namesOf(await(m->source.fetchCompletedTasks(1))), QStringList(u"long ago"_s));
}

void TestPlainTextTaskManager::removedTasksAreGoneFromStoreAndCache()
{
    saveUsualBoard();
    FakeTaskManager omniFocus(TaskManagerType::OmniFocus, m->clock);
    FakeTaskManager reminders(TaskManagerType::Reminders, m->clock);
    TaskManagerFactory factory(m->store.defaults, omniFocus, reminders, m->source);
    TaskRepository repository(factory, *m->store, m->notifications, m->clock);
    const QString removed = create(u"Removed"_s);
    const QString kept = create(u"Kept"_s);
    m->clock.advance(0.0);
    QCOMPARE(await(repository.fetchTasks(false)).tasks.size(), 2u);

    QVERIFY(m->source.removePlainTextTasks({removed}));

    QVERIFY(!repository.cachedTask(removed));
    QVERIFY2(!repository.lastFetchTime(), "the next load would be served from before the removal");
    QVERIFY(!storedRow(removed) && !placeOf(removed));
    QVERIFY(storedRow(kept) && placeOf(kept));
    QCOMPARE(namesOf(await(repository.fetchTasks(false)).tasks), QStringList(u"Kept"_s));
}

void TestPlainTextTaskManager::aLoadTellsOwnTasksAsTheyAreAtItsEnd()
{
    saveUsualBoard();
    FakeTaskManager omniFocus(TaskManagerType::OmniFocus, m->clock);
    FakeTaskManager reminders(TaskManagerType::Reminders, m->clock);
    TaskManagerFactory factory(m->store.defaults, omniFocus, reminders, m->source);
    factory.setTaskSourceConfiguration({true, false, true});
    TaskRepository repository(factory, *m->store, m->notifications, m->clock);
    const QString removed = create(u"Removed"_s);
    m->clock.advance(0.0);
    const auto slowAnswer = omniFocus.fetches.giveWhenOpened({makeTask(u"of"_s, u"Outside"_s)});
    auto loading = repository.fetchTasks(false);
    fetch(); // the own source has answered by now

    m->source.removePlainTextTasks({removed});
    create(u"Created"_s);
    m->source.intern(record(u"plaintext-1"_s, u"Imported"_s));
    slowAnswer->countDown();

    const FetchedTasks loaded = await(std::move(loading));
    QCOMPARE(namesOf(loaded.tasks), QStringList({u"Outside"_s, u"Created"_s, u"Imported"_s}));
    QVERIFY(loaded.answeredSources == (TaskSource::PlainText | TaskSource::OmniFocus));
}

VANTREL_REGISTER_TEST(TestPlainTextTaskManager)

} // namespace vantrel::test

#include "test_plain_text_task_manager.moc"
