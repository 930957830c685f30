#include "TestBoard.h"
#include "board/TaskBlockingManager.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"
#include "sources/omnifocus/AppleScriptError.h"
#include "support/Await.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

WorkItemFields fieldsOf(const QString &id)
{
    WorkItemFields fields;
    fields.id = id;
    fields.name = u"Old name"_s;
    return fields;
}

const auto OmniFocusId = u"omni"_s;
const auto ReminderId = u"reminder_1"_s;
const auto PlainTextId = u"plaintext-1"_s;
const auto GenericId = u"plaintext-2"_s;

/** One task of each class; the generic one has the id of a plain text task. */
WorkItems oneOfEachClass()
{
    return {std::make_shared<OmniFocusTask>(fieldsOf(OmniFocusId)),
            std::make_shared<ReminderWorkItem>(fieldsOf(ReminderId), ReminderWorkItem::Details()),
            std::make_shared<PlainTextWorkItem>(PlainTextRecord{fieldsOf(PlainTextId), {}, {}}),
            std::make_shared<BaseWorkItem>(fieldsOf(GenericId))};
}

/** What the attempts of an operation do, in their order: an error to throw, or none to succeed. */
struct Attempts
{
    std::vector<std::exception_ptr> failures;
    size_t count = 0;
};

QCoro::Task<bool> attempt(Attempts *attempts)
{
    const std::exception_ptr failure = attempts->failures.at(attempts->count++);
    if (failure) {
        std::rethrow_exception(failure);
    }
    co_return true;
}

} // namespace

/** Changes of one task's fields, and blocking. */
class TestEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_board.reset(); }

    void eachFieldChangesForItsClassesOnly_data();
    void eachFieldChangesForItsClassesOnly();
    void aTaskOnlyInTheCacheCanBeEdited();
    void aPlainTextTaskIsStoredAsItIsCompletedAndReopened();
    void completionIsJournaledAndEndsTheQuadrant();
    void anEditedGenericTaskIsStored();
    void aRefusedPermissionIsTriedOnceMore();

    void aBlockIsStoredWithItsReason();
    void unblockingForgetsTheReasonAndKeepsThePlace();
    void whatCannotBeBlockedIsRefused();

private:
    using Update = std::function<TaskUpdate(BoardState &, const QString &)>;

    TaskBlockingManager blocking()
    {
        return TaskBlockingManager(**m_board, *m_board->store, m_board->services().repository,
                                   m_board->notifications);
    }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestBoard> m_board;
    /** "{name} {object} {taskId}" of the posts that edits make. */
    QStringList m_posts;
};

void TestEdits::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m_board = std::make_unique<TestBoard>();
    m_board->organize(oneOfEachClass());
    m_posts.clear();
    for (const NotificationName name :
         {notifications::TaskCompletionAnimation, notifications::TaskBlockingStatusChanged}) {
        m_board->notifications.observe(name, this, [this](const Notification &notification) {
            m_posts.append(notification.name.text.toString() + u' ' + notification.object.toString());
        });
    }
}

void TestEdits::eachFieldChangesForItsClassesOnly_data()
{
    QTest::addColumn<Update>("update");
    QTest::addColumn<QStringList>("changing");

    const QStringList all{OmniFocusId, ReminderId, PlainTextId, GenericId};
    const QStringList sourceFields{OmniFocusId, ReminderId, GenericId};
    const QStringList blockFields{OmniFocusId, PlainTextId, GenericId};
    const auto row = [](const char *name, const Update &update, const QStringList &changing) {
        QTest::newRow(name) << update << changing;
    };
    row(
        "name", [](auto &board, auto &id) { return board.updateTaskName(id, u"New name"_s); }, sourceFields);
    row(
        "flag", [](auto &board, auto &id) { return board.updateTaskFlagStatus(id, true); }, sourceFields);
    row(
        "block", [](auto &board, auto &id) { return board.updateTaskBlockedStatus(id, true); }, blockFields);
    row(
        "reason", [](auto &board, auto &id) { return board.updateTaskBlockReason(id, u"rain"_s); },
        blockFields);
    row(
        "completion", [](auto &board, auto &id) { return board.updateTaskCompletionStatus(id, true); }, all);
    row(
        "dated completion",
        [](auto &board, auto &id) { return board.updateTaskCompletionStatus(id, true, Date(5.0)); },
        sourceFields);
}

void TestEdits::eachFieldChangesForItsClassesOnly()
{
    QFETCH(Update, update);
    QFETCH(QStringList, changing);

    QStringList changed;
    for (const WorkItemPtr &task : (*m_board)->tasks()) {
        const WorkItemFields before = task->fields();
        const TaskUpdate result = update(**m_board, task->id());
        QCOMPARE(result.item, task);
        QCOMPARE(task->fields() != before, result.success);
        if (result.success) {
            changed.append(task->id());
        }
    }
    QCOMPARE(changed, changing);

    const TaskUpdate unknown = update(**m_board, u"nobody"_s);
    QVERIFY(!unknown.success);
    QVERIFY(!unknown.item);
}

void TestEdits::aTaskOnlyInTheCacheCanBeEdited()
{
    const WorkItemPtr fetched = makeTask(u"late"_s);
    m_board->services().repository.manuallyAddTaskToCache(fetched);

    const TaskUpdate update = (*m_board)->updateTaskName(u"late"_s, u"New name"_s);

    QVERIFY(update.success);
    QCOMPARE((*m_board)->task(u"late"_s), fetched);
    QCOMPARE(fetched->name(), u"New name"_s);
}

void TestEdits::aPlainTextTaskIsStoredAsItIsCompletedAndReopened()
{
    const Date now = m_board->store.clock.now();
    for (const auto &[isComplete, date] : {std::pair(true, std::optional(now)), {false, std::nullopt}}) {
        (*m_board)->updateTaskCompletionStatus(PlainTextId, isComplete);
        const WorkItemFields stored = m_board->store->loadPlainTextTasks().at(0).fields;
        QCOMPARE(stored.isComplete, isComplete);
        QCOMPARE(stored.completionDate, date);
    }
    QCOMPARE(m_posts, QStringList{u"TaskCompletionAnimation plaintext-1"_s});
}

/** By both roads to a completion, and not for a task that this road does not complete. */
void TestEdits::completionIsJournaledAndEndsTheQuadrant()
{
    BoardState &board = **m_board;
    for (const QString &id : {OmniFocusId, ReminderId, PlainTextId}) {
        board.assignEisenhowerPriority(id, EisenhowerPriority::DoNow);
    }
    for (const bool isComplete : {true, true, false}) {
        board.updateTaskCompletionStatus(OmniFocusId, isComplete);
        board.updateTaskCompletionStatus(ReminderId, isComplete, std::nullopt);
        board.updateTaskCompletionStatus(PlainTextId, isComplete, std::nullopt);
    }
    m_board->settle();

    QCOMPARE(m_board->store->loadAllEisenhowerPriorities().keys(), QStringList{PlainTextId});
    QCOMPARE(board.task(OmniFocusId)->eisenhowerPriority(), EisenhowerPriority::Unsorted);
    QStringList journaled;
    for (const JournalEntry &entry : m_board->store->loadJournal(Date())) {
        if (entry.what == JournalSubject::Completion) {
            journaled.append(entry.taskId + u' ' + entry.to.value());
        }
    }
    QCOMPARE(journaled,
             (QStringList{u"omni true"_s, u"reminder_1 true"_s, u"omni false"_s, u"reminder_1 false"_s}));
}

void TestEdits::anEditedGenericTaskIsStored()
{
    (*m_board)->updateTaskName(GenericId, u"New name"_s);
    (*m_board)->updateTaskFlagStatus(GenericId, true);

    const std::vector<PlainTextRecord> stored = m_board->store->loadPlainTextTasks();
    QCOMPARE(stored.size(), size_t(1));
    QCOMPARE(stored[0].fields.name, u"New name"_s);
    QVERIFY(stored[0].fields.isFlagged);
    QCOMPARE(stored[0].fields.modificationDate, m_board->store.clock.now());
}

void TestEdits::aRefusedPermissionIsTriedOnceMore()
{
    using Kind = AppleScriptError::Kind;
    const auto refused = std::make_exception_ptr(AppleScriptError(Kind::PermissionDenied));
    const auto notRunning = std::make_exception_ptr(AppleScriptError(Kind::OmniFocusNotRunning));
    struct Row
    {
        std::vector<std::exception_ptr> failures;
        size_t attempts;
        bool succeeds;
    };
    for (const Row &row : {Row{{nullptr}, 1, true}, Row{{refused, nullptr}, 2, true},
                           Row{{refused, refused}, 2, false}, Row{{notRunning}, 1, false}}) {
        Attempts attempts{row.failures};
        QCoro::Task<bool> task =
            (*m_board)->withRetryOnPermissionError([&attempts] { return attempt(&attempts); });
        m_board->store.clock.advance(0.4);
        QCOMPARE(attempts.count, size_t(1));
        m_board->store.clock.advance(0.2);
        bool succeeds = false;
        try {
            succeeds = await(std::move(task));
        } catch (const AppleScriptError &) {
        }
        QCOMPARE(attempts.count, row.attempts);
        QCOMPARE(succeeds, row.succeeds);
    }
}

void TestEdits::aBlockIsStoredWithItsReason()
{
    TaskBlockingManager manager = blocking();
    const WorkItemPtr task = (*m_board)->task(OmniFocusId);

    QVERIFY(manager.toggleBlockedStatus(*task, u"waits for Anna"_s));

    QVERIFY(task->isBlocked());
    QCOMPARE(m_posts, QStringList{u"TaskBlockingStatusChanged omni"_s});
    m_board->restart();
    m_board->organize(oneOfEachClass());
    QVERIFY((*m_board)->task(OmniFocusId)->isBlocked());
    QCOMPARE((*m_board)->task(OmniFocusId)->blockReason(), u"waits for Anna"_s);
}

void TestEdits::unblockingForgetsTheReasonAndKeepsThePlace()
{
    TaskBlockingManager manager = blocking();
    const WorkItemPtr task = (*m_board)->task(OmniFocusId);
    (*m_board)->moveTask(task, m_board->doing());
    m_board->settle();
    manager.setBlockedStatus(*task, true, u"rain"_s);
    QVERIFY(manager.setBlockReason(*task, u"snow"_s));
    QCOMPARE(m_board->store->getBlockReasonsFromSQLite().value(OmniFocusId), u"snow"_s);
    (*m_board)->updateTaskCompletionStatus(OmniFocusId, true);

    QVERIFY(manager.toggleBlockedStatus(*task, std::nullopt));

    QVERIFY(!task->isBlocked() && !task->blockReason());
    QVERIFY(m_board->store->getBlockedTaskIdsFromSQLite().isEmpty());
    QVERIFY(m_board->store->getBlockReasonsFromSQLite().isEmpty());
    QCOMPARE(m_board->storedCell(m_board->doing()), u"omni:0"_s);
}

void TestEdits::whatCannotBeBlockedIsRefused()
{
    TaskBlockingManager manager = blocking();
    const WorkItemPtr done = (*m_board)->task(OmniFocusId);
    done->setComplete(true);

    QVERIFY(!manager.toggleBlockedStatus(*done, u"rain"_s));
    QVERIFY(!manager.setBlockedStatus(*done, true, u"rain"_s));
    QVERIFY(!manager.toggleBlockedStatus(*(*m_board)->task(ReminderId), u"rain"_s));
    QVERIFY(!manager.setBlockReason(*(*m_board)->task(ReminderId), u"rain"_s));
    QVERIFY(!manager.toggleBlockedStatus(*makeTask(u"nobody"_s), u"rain"_s));

    QVERIFY(!done->isBlocked());
    QVERIFY(m_posts.isEmpty());
    QVERIFY(m_board->store->getBlockedTaskIdsFromSQLite().isEmpty());
    const QStringList log = LogWriter::recentMessages();
    QVERIFY(log.contains(u"🔐 BLOCKING: Cannot block a completed task: omni"_s));
    QVERIFY(log.contains(u"🔐 BLOCKING: Task nobody still not found in BoardState.shared after retry"_s));
}

VANTREL_REGISTER_TEST(TestEdits)

} // namespace vantrel::test

#include "test_edits.moc"
