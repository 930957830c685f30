#include "sources/plaintext/PlainTextReconciliation.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

constexpr Date Now(1000000.0);
constexpr Date Created(500000.0);

PlainTextRecord row(const QString &id)
{
    PlainTextRecord record;
    record.fields.id = id;
    record.fields.name = u"Name of "_s + id;
    record.fields.creationDate = Created;
    record.fields.modificationDate = Created + 1.0;
    record.originalText = u"- [ ] as typed"_s;
    return record;
}

PersistentTaskPosition place(const QString &id)
{
    PersistentTaskPosition position;
    position.id = id;
    position.lastUpdated = Now - 60.0;
    return position;
}

QStringList idsOf(const std::vector<PlainTextRecord> &tasks)
{
    QStringList ids;
    for (const PlainTextRecord &task : tasks) {
        ids.append(task.fields.id);
    }
    return ids;
}

} // namespace

class TestPlainTextReconciliation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesComeFirstInTheirOrderThenRowsWithoutAPlace()
    {
        const ReconciledTasks told = reconcilePlainTextTasks(
            {row(u"plaintext-1"_s), row(u"plaintext-2"_s), row(u"plaintext-3"_s), row(u"plaintext-4"_s)},
            {place(u"plaintext-3"_s), place(u"reminder_1"_s), place(u"omnifocus"_s), place(u"plaintext-1"_s)},
            Now);

        QCOMPARE(idsOf(told.tasks),
                 QStringList({u"plaintext-3"_s, u"plaintext-1"_s, u"plaintext-2"_s, u"plaintext-4"_s}));
        QCOMPARE(told.withoutPlace, QStringList({u"plaintext-2"_s, u"plaintext-4"_s}));
        QCOMPARE(told.withoutRow, QStringList());
    }

    void aPlaceWithoutARowShowsUnderAMadeUpName()
    {
        PersistentTaskPosition lost = place(u"plaintext-12345678-ABCDEFGH"_s);
        lost.isBlocked = true;
        lost.blockReason = u"waiting"_s;

        const ReconciledTasks told = reconcilePlainTextTasks({}, {lost}, Now);

        QCOMPARE(told.withoutRow, QStringList(lost.id));
        QCOMPARE(told.tasks.size(), 1u);
        const PlainTextRecord &task = told.tasks.front();
        QCOMPARE(task.fields.name, u"Imported Task ABCDEFGH"_s);
        QCOMPARE(task.originalText, u"- [ ] Imported Task ABCDEFGH"_s);
        QVERIFY(task.fields.creationDate == lost.lastUpdated - 86400.0);
        QVERIFY(task.fields.modificationDate == lost.lastUpdated);
        QVERIFY(!task.fields.isComplete);
        QVERIFY(task.fields.isBlocked);
        QCOMPARE(task.fields.blockReason, u"waiting"_s);
    }

    void storedFieldsArePassedOnUnchanged()
    {
        PlainTextRecord full = row(u"plaintext-1"_s);
        full.fields.note = u"note"_s;
        full.fields.dueDate = Now + 5.0;
        full.fields.deferDate = Now + 6.0;
        full.fields.isFlagged = true;
        full.fields.isComplete = true;
        full.fields.completionDate = Now - 7.0;
        full.fields.project = Project{u"p"_s, u"Project"_s};
        full.fields.tag = Tag{u"t"_s, u"Tag"_s};
        full.hashtags = QStringList{u"other"_s};

        QVERIFY(reconcilePlainTextTasks({full}, {place(u"plaintext-1"_s)}, Now).tasks.front() == full);
        QVERIFY(reconcilePlainTextTasks({full}, {}, Now).tasks.front() == full);
    }

    void missingFieldsAreFilledIn()
    {
        for (const bool isComplete : {false, true}) {
            for (const bool hasPlace : {false, true}) {
                PlainTextRecord bare = row(u"plaintext-1"_s);
                bare.fields.modificationDate.reset();
                bare.fields.isComplete = isComplete;
                bare.fields.isBlocked = !isComplete;
                bare.originalText.reset();
                PersistentTaskPosition blocked = place(bare.fields.id);
                blocked.isBlocked = isComplete;
                blocked.blockReason = u"why"_s;
                const std::vector<PersistentTaskPosition> places(hasPlace ? 1 : 0, blocked);

                const ReconciledTasks told = reconcilePlainTextTasks({bare}, places, Now);

                const PlainTextRecord &task = told.tasks.front();
                QCOMPARE(task.originalText,
                         isComplete ? u"- [x] Name of plaintext-1"_s : u"- [ ] Name of plaintext-1"_s);
                QVERIFY(task.fields.modificationDate == (hasPlace ? Now - 60.0 : Now));
                QVERIFY(task.fields.completionDate == (isComplete ? std::optional(Now) : std::nullopt));
                QCOMPARE(told.withInventedCompletionDate.size(), isComplete ? 1 : 0);
                QVERIFY2(!hasPlace || task.fields.isBlocked == isComplete, "the block is that of the place");
                QCOMPARE(task.fields.blockReason, hasPlace ? std::optional(u"why"_s) : std::nullopt);
            }
        }
    }

    void theTagComesFromTheFirstHashtagUnlessThereIsOne()
    {
        PlainTextRecord hashtagged = row(u"plaintext-1"_s);
        hashtagged.hashtags = QStringList{u"Home"_s, u"Work"_s};
        PlainTextRecord reopened = row(u"plaintext-2"_s);
        reopened.fields.completionDate = Now;

        const ReconciledTasks told = reconcilePlainTextTasks({hashtagged, reopened}, {}, Now);

        QVERIFY(told.tasks[0].fields.tag == (Tag{u"tag-home"_s, u"Home"_s}));
        QVERIFY(!told.tasks[1].fields.tag);
        QVERIFY2(!told.tasks[1].fields.completionDate, "an open task has no completion date");
    }
};

VANTREL_REGISTER_TEST(TestPlainTextReconciliation)

} // namespace vantrel::test

#include "test_plain_text_reconciliation.moc"
