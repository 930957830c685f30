#include "board/PriorityManager.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

WorkItemPtr task(const QString &id, std::optional<EisenhowerPriority> priority = {}, bool isComplete = false)
{
    WorkItemFields fields;
    fields.id = id;
    fields.eisenhowerPriority = priority;
    fields.isComplete = isComplete;
    return std::make_shared<BaseWorkItem>(fields);
}

} // namespace

/** The Eisenhower matrix and what of it is stored. */
class TestPriorities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_manager.reset(); }

    void assignmentsAreStoredAndToldButNeverUnsorted();
    void theMatrixHasFiveQuadrantsAndNoFinishedTasks();
    void theStoreWinsOverTheItem();
    void onlyTasksOfSourcesThatAnsweredAreOrphans();
    void aFailedDropGoesBackWhereItCameFrom();

private:
    using Assignments = PriorityManager::Assignments;

    Assignments stored() { return (*m_store)->loadAllEisenhowerPriorities(); }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    NotificationCenter m_notifications;
    std::unique_ptr<PriorityManager> m_manager;
    int m_posts = 0;
};

void TestPriorities::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m_store = std::make_unique<TestStore>();
    m_manager = std::make_unique<PriorityManager>(**m_store, m_notifications);
    m_posts = 0;
    m_notifications.observe(notifications::EisenhowerPriorityUpdated, m_manager.get(),
                            [this](const Notification &) { ++m_posts; });
}

void TestPriorities::assignmentsAreStoredAndToldButNeverUnsorted()
{
    (*m_store)->saveEisenhowerPriority(u"old"_s, EisenhowerPriority::Unsorted);
    m_manager->setPriorityAssignments(stored());
    QCOMPARE(stored(), Assignments());

    m_manager->assignPriority(u"a"_s, EisenhowerPriority::DoNow);
    m_manager->assignPriority(u"b"_s, EisenhowerPriority::DoNow);
    m_manager->assignPriority(u"b"_s, EisenhowerPriority::Unsorted);
    const Assignments expected{{u"a"_s, EisenhowerPriority::DoNow}};
    QCOMPARE(stored(), expected);
    QCOMPARE(m_manager->priorityAssignments(), expected);
    QCOMPARE(m_posts, 3);

    m_manager->removePriority(u"a"_s);
    m_manager->removePriority(u"never"_s);
    QCOMPARE(stored(), Assignments());
    QCOMPARE(m_posts, 5);
}

void TestPriorities::theMatrixHasFiveQuadrantsAndNoFinishedTasks()
{
    QCOMPARE(m_manager->tasksByPriority().size(), size_t(5));
    m_manager->assignPriority(u"plaintext-1"_s, EisenhowerPriority::DoNow);
    const WorkItemPtr planned = task(u"a"_s, EisenhowerPriority::Schedule);
    const WorkItemPtr unplanned = task(u"b"_s);
    // Only the two sources that are named leave it to the matrix to drop what is done.
    const WorkItemPtr doneElsewhere = task(u"c"_s, {}, true);

    m_manager->updateTaskCategorization({planned, unplanned, doneElsewhere,
                                         task(u"plaintext-1"_s, EisenhowerPriority::DoNow, true),
                                         task(u"reminder_1"_s, EisenhowerPriority::DoNow, true)});

    const PriorityManager::TasksByPriority &matrix = m_manager->tasksByPriority();
    QCOMPARE(matrix.size(), size_t(5));
    QCOMPARE(matrix.at(EisenhowerPriority::Schedule), std::vector{planned});
    QCOMPARE(matrix.at(EisenhowerPriority::Unsorted), (std::vector{unplanned, doneElsewhere}));
    QVERIFY(matrix.at(EisenhowerPriority::DoNow).empty());
    QCOMPARE(stored(), Assignments());
}

void TestPriorities::theStoreWinsOverTheItem()
{
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Eliminate);
    const WorkItemPtr assigned = task(u"a"_s);
    const WorkItemPtr forgotten = task(u"b"_s, EisenhowerPriority::DoNow);

    m_manager->syncPriorities({assigned, forgotten});

    QCOMPARE(assigned->eisenhowerPriority(), EisenhowerPriority::Eliminate);
    QCOMPARE(forgotten->eisenhowerPriority(), EisenhowerPriority::Unsorted);
}

void TestPriorities::onlyTasksOfSourcesThatAnsweredAreOrphans()
{
    for (const QString &id : {u"plaintext-here"_s, u"plaintext-gone"_s, u"reminder_silent"_s}) {
        m_manager->assignPriority(id, EisenhowerPriority::DoNow);
    }
    m_posts = 0;

    for (int run = 0; run < 2; ++run) {
        m_manager->cleanupOrphanedAssignments({u"plaintext-here"_s}, TaskSource::PlainText);
        QCOMPARE(stored().size(), 2);
        QVERIFY(!stored().contains(u"plaintext-gone"_s));
        QCOMPARE(m_manager->priorityAssignments(), stored());
        QCOMPARE(m_posts, 1);
    }
    m_manager->cleanupOrphanedAssignments({u"plaintext-here"_s});
    QCOMPARE(stored().keys(), QStringList{u"plaintext-here"_s});
}

void TestPriorities::aFailedDropGoesBackWhereItCameFrom()
{
    QVariantMap userInfo;
    m_notifications.observe(
        notifications::PriorityAssignmentFailed, m_manager.get(),
        [&userInfo](const Notification &notification) { userInfo = notification.userInfo; });
    const std::vector<std::pair<std::optional<EisenhowerPriority>, QString>> origins{
        {EisenhowerPriority::Schedule, u"Schedule"_s},
        {EisenhowerPriority::Unsorted, u"Unsorted"_s},
        {std::nullopt, u"Unsorted"_s}};
    for (const auto &[from, name] : origins) {
        m_manager->assignPriority(u"a"_s, EisenhowerPriority::Delegate);
        m_manager->handleDragDropFailure(u"a"_s, from, EisenhowerPriority::Delegate, u"no room"_s);

        QCOMPARE(stored().value(u"a"_s, EisenhowerPriority::Unsorted),
                 from.value_or(EisenhowerPriority::Unsorted));
        QCOMPARE(userInfo, (QVariantMap{{u"taskId"_s, u"a"_s},
                                        {u"error"_s, u"no room"_s},
                                        {u"fromPriority"_s, name},
                                        {u"toPriority"_s, u"Delegate"_s}}));
    }
}

VANTREL_REGISTER_TEST(TestPriorities)

} // namespace vantrel::test

#include "test_priorities.moc"
