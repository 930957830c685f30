#include "features/Story.h"
#include "support/TestRegistry.h"

#include "foundations/Log.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace vantrel;
using namespace vantrel::test;

/** What a source can do wrong, and what the user keeps nevertheless. */
class TestMisbehavingSources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /** The source's tasks are gone from one refresh; the day before, the user had placed and blocked them. */
    void aTroubledSourceCostsNoPlacement_data()
    {
        QTest::addColumn<QString>("trouble");
        for (const char *trouble : {"fails", "forbidden", "off", "unavailable"}) {
            QTest::newRow(trouble) << QString::fromLatin1(trouble);
        }
    }

    void aTroubledSourceCostsNoPlacement()
    {
        QFETCH(const QString, trouble);
        Story story;
        story.startWithOmniFocus({u"milk"_s, u"bread"_s, u"eggs"_s});
        story.createTask(u"own"_s);
        story.move(u"bread"_s, u"Doing"_s);
        story.settle();
        story.block(u"bread"_s, u"shop is closed"_s);
        story->board->assignEisenhowerPriority(story.task(u"eggs"_s)->id(), EisenhowerPriority::Schedule);
        story.settle();
        story.advance(31.0);

        if (trouble == u"fails") {
            story.omniFocus.fetches.fail(u"no connection"_s);
        } else if (trouble == u"off") {
            story->managers.setTaskSourceConfiguration({.isOmniFocusEnabled = false});
            story->repository.reloadTaskManagers();
        }
        story.omniFocus.hasPermission = trouble != u"forbidden";
        story.omniFocus.isAvailable = trouble != u"unavailable";
        story.refresh();
        QVERIFY(story.shownIn(u"To Do"_s).contains(u"own"_s));

        story.omniFocus.hasPermission = true;
        story.omniFocus.isAvailable = true;
        story.stop();
        story.startWithOmniFocus({u"milk"_s, u"bread"_s, u"eggs"_s});

        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"bread"_s});
        QCOMPARE(story.task(u"bread"_s)->blockReason(), u"shop is closed"_s);
        QCOMPARE(story.task(u"eggs"_s)->eisenhowerPriority(), EisenhowerPriority::Schedule);
        QVERIFY(story.shownIn(u"To Do"_s).contains(u"own"_s));
    }

    /** A source that does not answer must not keep the user from own tasks that are already on the board. */
    void aSourceThatHangsLeavesTheBoardUsable()
    {
        Story story;
        story.startWithOmniFocus({u"milk"_s});
        story.createTask(u"own"_s);
        story.advance(31.0);
        const auto never = story.omniFocus.fetches.giveWhenOpened({anOmniFocusTask(u"milk"_s)});

        story.beginRefresh();
        story.settle();
        story.move(u"own"_s, u"Doing"_s);
        story.createTask(u"another"_s);
        story.advance(60.0);

        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"own"_s});
        QVERIFY(story.shownIn(u"To Do"_s).contains(u"another"_s));
        QVERIFY(story.shownIn(u"To Do"_s).contains(u"milk"_s));
        QVERIFY(story.stop());
        story.startWithOmniFocus({u"milk"_s});
        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"own"_s});
    }

    void anEmptyAnswerIsBelievedOnlyOfTheSourceThatGaveIt()
    {
        Story story;
        story.startWithOmniFocus({u"milk"_s});
        story.createTask(u"own"_s);
        story.move(u"own"_s, u"Doing"_s);
        story.settle();
        story.advance(31.0);
        story.omniFocus.fetches.give({});

        story.refresh();

        QCOMPARE(story.shownIn(u"To Do"_s), QStringList());
        QCOMPARE(story.shownIn(u"Doing"_s), QStringList{u"own"_s});
    }

    void twoTasksOfOneIdAreOneCard()
    {
        const LogWriter log(LogWriter::Output::Silent);
        Story story;
        story.startWithOmniFocus({u"milk"_s});
        story.advance(31.0);
        const WorkItemPtr twin = anOmniFocusTask(u"milk"_s);
        twin->setName(u"the second of the same id"_s);
        story.omniFocus.fetches.give({anOmniFocusTask(u"milk"_s), twin, anOmniFocusTask(u"bread"_s)});

        story.refresh();

        QStringList shown = story.shownIn(u"To Do"_s);
        shown.sort();
        QCOMPARE(shown, (QStringList{u"bread"_s, u"milk"_s}));
        QVERIFY(LogWriter::recentMessages().contains(u"Duplicate values for key: 'milk'"_s));
    }
};

VANTREL_REGISTER_TEST(TestMisbehavingSources)
#include "test_misbehaving_sources.moc"
