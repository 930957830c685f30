#include "features/Story.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

/** What a user does in a day, and finds again the next morning. */
class TestUsersDay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstStartShowsTheDefaultBoard()
    {
        Story story;
        story.start();

        QCOMPARE(story->board->loadingState(), BoardLoadingState::Loaded);
        QCOMPARE(story.columns(), (QStringList{u"To Do"_s, u"Doing"_s, u"Done"_s}));
        QCOMPARE(story.swimLanes(), QStringList{u"Default"_s});
        QCOMPARE(story.toast(), QString());
    }

    void anOrderMadeByHandSurvivesARefreshAndARestart()
    {
        Story story;
        story.start();
        QStringList byHand;
        for (int i = 1; i <= 12; ++i) {
            byHand.append(u"Task %1"_s.arg(i));
        }
        story.createTasks(byHand);
        QCOMPARE(story.shownIn(u"To Do"_s), byHand);
        story.move(byHand.last(), u"To Do"_s, 0);
        story.settle();
        story.advance(1.0);
        story.move(byHand.first(), u"To Do"_s, 11);
        story.settle();
        byHand.swapItemsAt(0, 11);
        QCOMPARE(story.shownIn(u"To Do"_s), byHand);

        story.advance(31.0);
        story.refresh();
        QCOMPARE(story.shownIn(u"To Do"_s), byHand);
        story.restart();
        QCOMPARE(story.shownIn(u"To Do"_s), byHand);
    }

    void aTaskMovedToDoneIsDoneUntilItIsTakenBack()
    {
        Story story;
        story.start();
        story.createTasks({u"Pay the rent"_s, u"Call Mum"_s});
        story.move(u"Pay the rent"_s, u"Done"_s);
        story.settle();
        story.advance(2.0);
        const std::optional<Date> completed = story.task(u"Pay the rent"_s)->completionDate();
        QVERIFY(completed);
        story.restart();
        QCOMPARE(story.shownIn(u"Done"_s), QStringList{u"Pay the rent"_s});
        QVERIFY(story.task(u"Pay the rent"_s)->isComplete() && !story.task(u"Call Mum"_s)->isComplete());
        QCOMPARE(story.task(u"Pay the rent"_s)->completionDate(), completed);

        story.move(u"Pay the rent"_s, u"Doing"_s);
        story.settle();
        story.advance(2.0);
        story.restart();
        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"Pay the rent"_s});
        QVERIFY(!story.task(u"Pay the rent"_s)->isComplete());
        QVERIFY(!story.task(u"Pay the rent"_s)->completionDate());
    }

    /** The user moves, blocks and renames, and quits in the same breath: none of it has reached the disk. */
    void whatIsDoneInTheLastMomentIsKept()
    {
        Story story;
        story.start();
        story.createTasks({u"a"_s, u"b"_s, u"c"_s});

        story.move(u"c"_s, u"Doing"_s);
        story.move(u"a"_s, u"Doing"_s, 0);
        story.block(u"c"_s, u"waiting for the plumber"_s);
        story.rename(u"b"_s, u"B, but better"_s);
        story->board->assignEisenhowerPriority(story.task(u"a"_s)->id(), EisenhowerPriority::DoNow);
        QVERIFY(story.stop());
        story.start();

        QCOMPARE(story.shownIn(u"Doing"_s), (QStringList{u"a"_s, u"c"_s}));
        QCOMPARE(story.shownIn(u"To Do"_s), QStringList{u"B, but better"_s});
        QVERIFY(story.task(u"c"_s)->isBlocked());
        QCOMPARE(story.task(u"c"_s)->blockReason(), u"waiting for the plumber"_s);
        QCOMPARE(story.task(u"a"_s)->eisenhowerPriority(), EisenhowerPriority::DoNow);
    }
};

VANTREL_REGISTER_TEST(TestUsersDay)
#include "test_users_day.moc"
