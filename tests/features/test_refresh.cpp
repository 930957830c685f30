#include "features/Story.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

/** The user goes on working while a refresh is under way. */
class TestRefresh : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /** Whatever the refresh has read before, its answer must not put anything back. */
    void noMomentOfARefreshLosesAnything()
    {
        for (int moment = 0; moment < 25; ++moment) {
            Story story;
            story.start();
            story.createTasks({u"a"_s, u"b"_s, u"c"_s});
            story.advance(31.0);

            story.beginRefresh();
            for (int turn = 0; turn < moment; ++turn) {
                QCoreApplication::processEvents();
                story.clock.advance(0.0);
            }
            story.move(u"b"_s, u"Done"_s);
            story.rename(u"a"_s, u"A"_s);
            story.block(u"c"_s, u"later"_s);
            story.createTask(u"d"_s);
            story.advance(2.0);

            const auto check = [&](const char *when) {
                const QByteArray at = QByteArray::number(moment) + ' ' + when;
                QVERIFY2(story.shownIn(u"Done"_s) == QStringList{u"b"_s}, at);
                QVERIFY2(story.shownIn(u"To Do"_s) == (QStringList{u"A"_s, u"c"_s, u"d"_s}), at);
                QVERIFY2(story.task(u"b"_s)->isComplete(), at);
                QVERIFY2(story.task(u"c"_s)->blockReason() == u"later"_s, at);
            };
            check("after the refresh");
            story.restart();
            check("after a restart");
        }
    }

    void aRefreshDuringARefreshEndsInTheSameBoard()
    {
        Story story;
        story.startWithOmniFocus({u"milk"_s, u"bread"_s});
        story.createTasks({u"a"_s, u"b"_s});
        story.move(u"milk"_s, u"Doing"_s);
        story.settle();
        story.advance(31.0);
        const auto slow =
            story.omniFocus.fetches.giveWhenOpened({anOmniFocusTask(u"milk"_s), anOmniFocusTask(u"bread"_s)});
        story.omniFocus.fetches.give({anOmniFocusTask(u"milk"_s), anOmniFocusTask(u"bread"_s)});

        story.beginRefresh();
        story.settle();
        story.beginRefresh();
        story.settle();
        slow->countDown();
        story.settle();
        story.advance(1.0);

        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"milk"_s});
        QStringList waiting = story.shownIn(u"To Do"_s);
        waiting.sort();
        QCOMPARE(waiting, (QStringList{u"a"_s, u"b"_s, u"bread"_s}));
    }

    void aTaskThatItsSourceHasDeletedLeavesTheBoard()
    {
        Story story;
        story.startWithOmniFocus({u"milk"_s, u"bread"_s});
        story.advance(31.0);
        story.omniFocus.fetches.give({anOmniFocusTask(u"bread"_s)});

        story.refresh();

        QCOMPARE(story.shownIn(u"To Do"_s), QStringList{u"bread"_s});
    }
};

VANTREL_REGISTER_TEST(TestRefresh)
#include "test_refresh.moc"
