#include "board/PriorityManager.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/Log.h"
#include "foundations/NotificationNames.h"
#include "foundations/OmniFocusTask.h"
#include "support/TestRegistry.h"
#include "support/TestStore.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

template <typename Item = BaseWorkItem>
WorkItemPtr task(const QString &id, bool isComplete = false)
{
    WorkItemFields fields;
    fields.id = id;
    fields.isComplete = isComplete;
    return std::make_shared<Item>(fields);
}

} // namespace

/** The Eisenhower matrix and what of it is stored. */
class TestPriorities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void anAssignmentIsStoredAndTold();
    void unsortedIsNeverStored();
    void aStoredUnsortedRowGoes();
    void theMatrixAlwaysHasItsFiveQuadrants();
    void aCompletedTaskLeavesTheMatrix();
    void theStoreWinsOverTheItem();
    void onlyTasksOfSourcesThatAnsweredAreOrphans();
    void aFailedDropGoesBackWhereItCameFrom_data();
    void aFailedDropGoesBackWhereItCameFrom();

private:
    using Assignments = PriorityManager::Assignments;

    Assignments stored() { return (*m_store)->loadAllEisenhowerPriorities(); }

    std::unique_ptr<LogWriter> m_log;
    std::unique_ptr<TestStore> m_store;
    std::unique_ptr<NotificationCenter> m_notifications;
    std::unique_ptr<PriorityManager> m_manager;
    int m_posts = 0;
};

void TestPriorities::init()
{
    m_log = std::make_unique<LogWriter>(LogWriter::Output::Silent);
    m_store = std::make_unique<TestStore>();
    m_notifications = std::make_unique<NotificationCenter>();
    m_manager = std::make_unique<PriorityManager>(**m_store, *m_notifications);
    m_posts = 0;
    m_notifications->observe(notifications::EisenhowerPriorityUpdated, m_manager.get(),
                             [this](const Notification &) { ++m_posts; });
}

void TestPriorities::cleanup()
{
    m_manager.reset();
    m_store.reset();
    m_log.reset();
}

void TestPriorities::anAssignmentIsStoredAndTold()
{
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::DoNow);
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Delegate);

    const Assignments expected{{u"a"_s, EisenhowerPriority::Delegate}};
    QCOMPARE(stored(), expected);
    QCOMPARE(m_manager->priorityAssignments(), expected);
    QCOMPARE(m_posts, 2);

    m_manager->removePriority(u"a"_s);
    m_manager->removePriority(u"never"_s);
    QCOMPARE(stored(), Assignments());
    QCOMPARE(m_posts, 4);
}

void TestPriorities::unsortedIsNeverStored()
{
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Schedule);
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Unsorted);
    m_manager->assignPriority(u"b"_s, EisenhowerPriority::Unsorted);

    QCOMPARE(stored(), Assignments());
    QCOMPARE(m_manager->priorityAssignments(), Assignments());
}

void TestPriorities::aStoredUnsortedRowGoes()
{
    (*m_store)->saveEisenhowerPriority(u"old"_s, EisenhowerPriority::Unsorted);
    (*m_store)->saveEisenhowerPriority(u"kept"_s, EisenhowerPriority::DoNow);

    m_manager->setPriorityAssignments(stored());

    const Assignments expected{{u"kept"_s, EisenhowerPriority::DoNow}};
    QCOMPARE(m_manager->priorityAssignments(), expected);
    QCOMPARE(stored(), expected);
}

void TestPriorities::theMatrixAlwaysHasItsFiveQuadrants()
{
    QCOMPARE(m_manager->tasksByPriority().size(), size_t(5));
    QSignalSpy changes(m_manager.get(), &PriorityManager::tasksByPriorityChanged);
    const WorkItemPtr first = task(u"a"_s);
    first->setEisenhowerPriority(EisenhowerPriority::Schedule);
    const WorkItemPtr second = task(u"b"_s);

    m_manager->updateTaskCategorization({first, second});
    m_manager->updateTaskCategorization({first, second});

    QCOMPARE(m_manager->tasksByPriority().size(), size_t(5));
    QCOMPARE(m_manager->tasksByPriority().at(EisenhowerPriority::Schedule), std::vector{first});
    QCOMPARE(m_manager->tasksByPriority().at(EisenhowerPriority::Unsorted), std::vector{second});
    QCOMPARE(changes.count(), 1);
}

void TestPriorities::aCompletedTaskLeavesTheMatrix()
{
    m_manager->assignPriority(u"plaintext-1"_s, EisenhowerPriority::DoNow);
    m_posts = 0;
    const WorkItemPtr plainText = task(u"plaintext-1"_s, true);
    const WorkItemPtr reminder = task(u"reminder_1"_s, true);
    const WorkItemPtr omniFocus = task<OmniFocusTask>(u"omni"_s, true);

    m_manager->updateTaskCategorization({plainText, reminder, omniFocus});

    QCOMPARE(m_manager->tasksByPriority().at(EisenhowerPriority::Unsorted), std::vector{omniFocus});
    QCOMPARE(stored(), Assignments());
    QCOMPARE(m_posts, 1);

    m_manager->handleTaskCompletion(u"omni"_s);
    QCOMPARE(m_posts, 1);
}

void TestPriorities::theStoreWinsOverTheItem()
{
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Eliminate);
    const WorkItemPtr assigned = task(u"a"_s);
    const WorkItemPtr forgotten = task(u"b"_s);
    forgotten->setEisenhowerPriority(EisenhowerPriority::DoNow);

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

    m_manager->cleanupOrphanedAssignments({u"plaintext-here"_s}, TaskSource::PlainText);
    QCOMPARE(stored().size(), 2);
    QVERIFY(!stored().contains(u"plaintext-gone"_s));
    QCOMPARE(m_manager->priorityAssignments(), stored());
    QCOMPARE(m_posts, 1);

    m_manager->cleanupOrphanedAssignments({u"plaintext-here"_s}, TaskSource::PlainText);
    QCOMPARE(m_posts, 1);

    m_manager->cleanupOrphanedAssignments({u"plaintext-here"_s});
    QCOMPARE(stored().keys(), QStringList{u"plaintext-here"_s});
}

void TestPriorities::aFailedDropGoesBackWhereItCameFrom_data()
{
    QTest::addColumn<std::optional<EisenhowerPriority>>("from");
    QTest::addColumn<Assignments>("result");
    QTest::addColumn<QString>("fromName");

    QTest::newRow("from a quadrant") << std::optional(EisenhowerPriority::Schedule)
                                     << Assignments{{u"a"_s, EisenhowerPriority::Schedule}} << u"Schedule"_s;
    QTest::newRow("from the unsorted")
        << std::optional(EisenhowerPriority::Unsorted) << Assignments() << u"Unsorted"_s;
    QTest::newRow("from nowhere") << std::optional<EisenhowerPriority>() << Assignments() << u"Unsorted"_s;
}

void TestPriorities::aFailedDropGoesBackWhereItCameFrom()
{
    QFETCH(std::optional<EisenhowerPriority>, from);
    QVariantMap userInfo;
    m_notifications->observe(
        notifications::PriorityAssignmentFailed, m_manager.get(),
        [&userInfo](const Notification &notification) { userInfo = notification.userInfo; });
    m_manager->assignPriority(u"a"_s, EisenhowerPriority::Delegate);

    m_manager->handleDragDropFailure(u"a"_s, from, EisenhowerPriority::Delegate, u"no room"_s);

    QFETCH(QString, fromName);
    QTEST(stored(), "result");
    QCOMPARE(userInfo, (QVariantMap{{u"taskId"_s, u"a"_s},
                                    {u"error"_s, u"no room"_s},
                                    {u"fromPriority"_s, fromName},
                                    {u"toPriority"_s, u"Delegate"_s}}));
}

VANTREL_REGISTER_TEST(TestPriorities)

} // namespace vantrel::test

Q_DECLARE_METATYPE(std::optional<vantrel::EisenhowerPriority>)

#include "test_priorities.moc"
