#include "features/Story.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

/** The computer's clock is set, in either direction, while the program runs or between two runs. */
class TestJumpingClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClockThatJumpsLosesNothing()
    {
        for (const double jump : {-3600.0, -57.0 * 365 * SecondsPerDay, 3650 * SecondsPerDay}) {
            Story story;
            story.startWithOmniFocus({u"milk"_s});
            story.createTasks({u"a"_s, u"b"_s});

            story.clock.jumpTo(story.clock.now() + jump);
            story.move(u"b"_s, u"Doing"_s);
            story.settle();
            story.advance(2.0);
            story.move(u"a"_s, u"Doing"_s, 0);
            story.settle();
            story.createTask(u"c"_s);
            // The tasks of the last fetch are kept for 30 seconds; a clock set back must not make that years.
            story.advance(31.0);
            story.omniFocus.fetches.give({anOmniFocusTask(u"milk"_s), anOmniFocusTask(u"bread"_s)});
            story.refresh();

            QCOMPARE(story.shownIn(u"Doing"_s), (QStringList{u"a"_s, u"b"_s}));
            QVERIFY(story.shownIn(u"To Do"_s).contains(u"bread"_s));
            QVERIFY(story.stop());
            story.startWithOmniFocus({u"milk"_s});
            QCOMPARE(story.shownIn(u"Doing"_s), (QStringList{u"a"_s, u"b"_s}));
            QStringList waiting = story.shownIn(u"To Do"_s);
            waiting.sort();
            QCOMPARE(waiting, (QStringList{u"c"_s, u"milk"_s}));
        }
    }
};

VANTREL_REGISTER_TEST(TestJumpingClock)
#include "test_jumping_clock.moc"
