#include "board/Placements.h"
#include "support/FakeTaskManager.h"
#include "support/TestRegistry.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

const ColumnId Todo = ColumnId::create();
const ColumnId Doing = ColumnId::create();
const SwimLaneId Top = SwimLaneId::create();
const SwimLaneId Bottom = SwimLaneId::create();

QString idsOf(const WorkItems &tasks)
{
    QStringList ids;
    for (const WorkItemPtr &task : tasks) {
        ids.append(task->id());
    }
    return ids.join(u' ');
}

int incompleteAmong(const WorkItems &tasks)
{
    return static_cast<int>(std::count_if(tasks.begin(), tasks.end(),
                                          [](const WorkItemPtr &task) { return !task->isComplete(); }));
}

/** Places with one task for each word, in one cell, numbered from 0. */
Placements rowOf(const QString &ids)
{
    Placements placements;
    placements.setSwimLanes({Top, Bottom}, Top);
    int number = 0;
    for (const QString &id : ids.split(u' ')) {
        placements.putTask(makeTask(id));
        placements.set({id, Todo, Top, number++});
    }
    return placements;
}

} // namespace

class TestPlacements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalNumbersFollowTheIntent();
    void densifyingChangesNothingToSee();
    void onlyTasksWithAPlaceAreInACell();
    void placesOfALostSwimLaneAreShownInTheFallback();
    void aTaskGivenTwiceCountsOnce();
    void onlyWhatChangedHasANewRevision();
    void cellsStayTrueUnderAnyChanges();
};

void TestPlacements::equalNumbersFollowTheIntent()
{
    Placements placements = rowOf(u"a b c d"_s);
    placements.set({u"d"_s, Todo, Top, 1}, Tie::BeforeEquals);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a d b c"_s);
    placements.set({u"a"_s, Todo, Top, 1}, Tie::AfterEquals);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"d b a c"_s);
    placements.set({u"b"_s, Todo, Top, 1});
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"d b a c"_s);
    QCOMPARE(placements.indexInCell(u"a"_s), 2);
}

void TestPlacements::densifyingChangesNothingToSee()
{
    Placements placements = rowOf(u"a b c"_s);
    placements.set({u"c"_s, Todo, Top, 0}, Tie::BeforeEquals);
    placements.set({u"b"_s, Todo, Top, 9});
    const quint64 revision = placements.revision({Top, Todo});

    QCOMPARE(placements.densify({Top, Todo}), QStringList({u"a"_s, u"b"_s}));
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"c a b"_s);
    QCOMPARE(placements.find(u"b"_s)->position, 2);
    QCOMPARE(placements.revision({Top, Todo}), revision);
    QVERIFY(placements.densify({Top, Todo}).isEmpty());
}

void TestPlacements::onlyTasksWithAPlaceAreInACell()
{
    Placements placements = rowOf(u"a b c"_s);
    placements.putTask(makeTask(u"d"_s));
    placements.removeTask(u"b"_s);
    placements.remove(u"c"_s);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a"_s);
    QCOMPARE(idsOf(placements.tasks()), u"a c d"_s);
    QCOMPARE(placements.count(), 2);

    // The task is back before anybody looked, and after.
    placements.putTask(makeTask(u"b"_s));
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a b"_s);
    placements.removeTask(u"b"_s);
    placements.putTask(makeTask(u"b"_s));
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a b"_s);

    placements.removeTask(u"b"_s);
    placements.removePlacesWithoutTask();
    QVERIFY(!placements.find(u"b"_s));
}

void TestPlacements::placesOfALostSwimLaneAreShownInTheFallback()
{
    Placements placements = rowOf(u"a b"_s);
    placements.putTask(makeTask(u"c"_s));
    placements.set({u"c"_s, Todo, Bottom, 0});
    placements.setSwimLanes({Top}, Top);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a c b"_s);
    QCOMPARE(placements.find(u"c"_s)->swimLaneId, Bottom);

    placements.setSwimLanes({Top, Bottom}, Top);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"a b"_s);
    QCOMPARE(idsOf(placements.cell({Bottom, Todo})), u"c"_s);
}

void TestPlacements::aTaskGivenTwiceCountsOnce()
{
    Placements placements = rowOf(u"a b"_s);
    const WorkItemPtr first = makeTask(u"n"_s);
    const WorkItemPtr gone = placements.task(u"a"_s);
    const WorkItemPtr former = placements.task(u"b"_s);
    const auto result = placements.replaceTasks({first, makeTask(u"b"_s), makeTask(u"n"_s)});
    QCOMPARE(result.repeated, QStringList(u"n"_s));
    QCOMPARE(result.former, WorkItems({former, gone}));
    QCOMPARE(placements.task(u"n"_s), first);
    QCOMPARE(idsOf(placements.tasks()), u"n b"_s);
    QCOMPARE(idsOf(placements.cell({Top, Todo})), u"b"_s);
}

void TestPlacements::onlyWhatChangedHasANewRevision()
{
    Placements placements = rowOf(u"a b"_s);
    placements.putTask(makeTask(u"c"_s));
    placements.set({u"c"_s, Doing, Top, 0});
    const auto revisions = [&placements] {
        return std::pair(placements.revision({Top, Todo}), placements.revision({Top, Doing}));
    };
    const auto before = revisions();

    placements.replaceTasks(placements.tasks());
    placements.set({u"a"_s, Todo, Top, 0});
    QCOMPARE(revisions(), before);

    placements.putTask(makeTask(u"a"_s));
    QVERIFY(revisions().first > before.first);
    QCOMPARE(revisions().second, before.second);

    const auto then = revisions();
    placements.set({u"a"_s, Doing, Top, 1});
    QVERIFY(revisions().first > then.first);
    QVERIFY(revisions().second > then.second);
}

/** Against a model that sorts and counts everything each time. */
void TestPlacements::cellsStayTrueUnderAnyChanges()
{
    struct Place
    {
        CellId cell;
        int position;
        int order;
    };
    QRandomGenerator random(20261102);
    Placements placements = rowOf(u"t"_s);
    std::map<QString, Place> model{{u"t"_s, {{Top, Todo}, 0, 0}}};
    QSet<QString> tasks{u"t"_s};
    const std::array cells{CellId{Top, Todo}, CellId{Top, Doing}, CellId{Bottom, Todo}};
    for (int step = 1; step <= 4000; ++step) {
        const QString id = u"t%1"_s.arg(random.bounded(40));
        const CellId cell = cells.at(static_cast<size_t>(random.bounded(3)));
        switch (random.bounded(10)) {
        case 8:
        case 9:
            if (const WorkItemPtr task = placements.task(id)) {
                task->setComplete(!task->isComplete());
                placements.markChanged(id);
            }
            break;
        case 0:
            placements.removeTask(id);
            tasks.remove(id);
            break;
        case 1:
            placements.remove(id);
            model.erase(id);
            break;
        case 2:
        case 3:
            placements.putTask(makeTask(id));
            tasks.insert(id);
            break;
        default: {
            const int position = random.bounded(6);
            const bool inFront = random.bounded(2) == 0;
            placements.set({id, cell.column, cell.swimLane, position},
                           inFront ? Tie::BeforeEquals : Tie::AfterEquals);
            model[id] = {cell, position, inFront ? -step : step};
        }
        }
        if (random.bounded(3) > 0) {
            continue;
        }
        if (random.bounded(50) == 0) {
            // A source that reads its tasks anew changes those it has given before.
            for (const WorkItemPtr &task : placements.tasks())
                task->setComplete(random.bounded(2) == 0);
            placements.replaceTasks(placements.tasks());
        }
        QCOMPARE(placements.incompleteTaskCount(), incompleteAmong(placements.tasks()));
        QCOMPARE(placements.incompleteCount(cell), incompleteAmong(placements.cell(cell)));
        std::vector<std::tuple<int, int, QString>> expected;
        for (const auto &[taskId, place] : model) {
            if (place.cell == cell && tasks.contains(taskId)) {
                expected.emplace_back(place.position, place.order, taskId);
            }
        }
        std::sort(expected.begin(), expected.end());
        QStringList ids;
        for (const auto &[position, order, taskId] : expected) {
            ids.append(taskId);
            QCOMPARE(placements.indexInCell(taskId), ids.size() - 1);
        }
        QCOMPARE(idsOf(placements.cell(cell)), ids.join(u' '));
    }
}

VANTREL_REGISTER_TEST(TestPlacements)

} // namespace vantrel::test

#include "test_placements.moc"
