#include "board/rules/TaskPlacement.h"
#include "support/TestRegistry.h"

#include <QHash>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/**
 * A board whose columns and swimlanes have one letter each, so that a place can be written as "task@q1:3". q
 * and r are queues, a is active, c completed; 1 is the default swimlane. x and 9 existed once.
 */
struct LetteredBoard
{
    QHash<QChar, Column> columns;
    QHash<QChar, SwimLane> swimLanes;

    LetteredBoard()
    {
        const auto add = [this](QChar letter, ColumnType type) {
            Column column;
            column.id = ColumnId::create();
            column.name = letter;
            column.type = type;
            column.stableId = u"stable_"_s + letter;
            columns.insert(letter, column);
        };
        add(u'q', ColumnType::Queue);
        add(u'r', ColumnType::Queue);
        add(u'a', ColumnType::Active);
        add(u'c', ColumnType::Completed);
        add(u'x', ColumnType::Active);
        for (const QChar letter : u"129"_s) {
            SwimLane swimLane;
            swimLane.id = SwimLaneId::create();
            swimLane.name = letter;
            swimLane.stableId = letter == u'1' ? DefaultSwimLaneStableId.toString() : u"lane_"_s + letter;
            swimLanes.insert(letter, swimLane);
        }
    }

    TaskPosition place(const QString &text) const
    {
        const QString where = text.section(u'@', 1);
        return {text.section(u'@', 0, 0), columns[where[0]].id, swimLanes[where[1]].id,
                where.section(u':', 1).section(u'#', 0, 0).toInt()};
    }

    /** "task@q1:3", blocked as "task@q1:3#reason". */
    PersistentTaskPosition row(const QString &text) const
    {
        const TaskPosition position = place(text);
        const QString where = text.section(u'@', 1);
        PersistentTaskPosition row;
        row.id = position.taskId;
        row.columnId = position.columnId;
        row.position = position.position;
        row.stableColumnId = columns[where[0]].stableId;
        row.swimLaneId = position.swimLaneId;
        row.stableSwimLaneId = swimLanes[where[1]].stableId;
        row.isBlocked = text.contains(u'#');
        if (row.isBlocked) {
            row.blockReason = text.section(u'#', 1);
        }
        return row;
    }

    QString text(const TaskPosition &place) const
    {
        const auto column = std::find_if(columns.begin(), columns.end(),
                                         [&](const Column &c) { return c.id == place.columnId; });
        const auto swimLane = std::find_if(swimLanes.begin(), swimLanes.end(),
                                           [&](const SwimLane &s) { return s.id == place.swimLaneId; });
        return place.taskId + u'@' + column.key() + swimLane.key() + u':' + QString::number(place.position);
    }

    QString text(const PersistentTaskPosition &row) const
    {
        const QString shown = text(TaskPosition{row.id, row.columnId, *row.swimLaneId, row.position});
        return row.isBlocked ? shown + u'#' + row.blockReason.value_or(QString()) : shown;
    }
};

QStringList words(const QString &text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

QString sorted(QStringList texts)
{
    texts.sort();
    return texts.join(u' ');
}

/** One board before and after, in letters. */
struct Scene
{
    LetteredBoard board;
    rules::PlacementQuestion question;

    /** A complete task is written with "!". */
    Scene(const QString &columns, const QString &tasks, const QString &rows, const QString &current = {})
    {
        for (const QChar letter : columns) {
            question.columns.push_back(board.columns[letter]);
        }
        question.swimLanes = {board.swimLanes[u'1'], board.swimLanes[u'2']};
        for (const QString &text : words(tasks)) {
            rules::FetchedTask &task = question.tasks.emplace_back();
            task.id = QString(text).remove(u'!');
            task.isComplete = text.endsWith(u'!');
        }
        for (const QString &text : words(rows)) {
            const PersistentTaskPosition row = board.row(text);
            question.memory.positions.push_back(row);
            if (row.isBlocked) {
                question.memory.blockedTaskIds.insert(row.id);
                question.memory.blockReasons.insert(row.id, *row.blockReason);
            }
        }
        for (const QString &text : words(current)) {
            question.current.push_back(board.place(text));
        }
    }

    QString placesOf(const rules::PlacementAnswer &answer) const
    {
        QHash<QString, TaskPosition> places;
        for (const TaskPosition &place : question.current) {
            places.insert(place.taskId, place);
        }
        for (const TaskPosition &place : answer.changed) {
            places.insert(place.taskId, place);
        }
        QStringList texts;
        for (const TaskPosition &place : std::as_const(places)) {
            if (!answer.displaced.contains(place.taskId)) {
                texts.append(board.text(place));
            }
        }
        return sorted(texts);
    }

    QString writtenBy(const rules::PlacementAnswer &answer) const
    {
        QStringList texts;
        for (const PersistentTaskPosition &row : answer.rowsToWrite) {
            texts.append(board.text(row));
        }
        return sorted(texts);
    }

    static QString staleOf(const rules::PlacementAnswer &answer)
    {
        QStringList ids;
        for (const rules::StaleRow &row : answer.stale) {
            ids.append(row.isInCompletedColumn ? row.id + u'!' : row.id);
        }
        return sorted(ids);
    }
};

} // namespace

class TestTaskPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTaskFindsItsPlace_data();
    void everyTaskFindsItsPlace();
    void onlyRowsThatDifferAreWritten();
    void rowsAreStaleOnlyWhereTheSourceAnswered();
    void absentTasksComeBackToTheirTurn();
    void equalNumbersKeepTheOrderShown();
    void aStoreThatLagsBehindYieldsToTheBoard();
    void aBoardThatNoRowKnowsIsReported();
};

void TestTaskPlacement::everyTaskFindsItsPlace_data()
{
    QTest::addColumn<QString>("columns");
    QTest::addColumn<QString>("tasks");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QString>("places");

    const auto row = [](const char *name, const QString &columns, const QString &tasks, const QString &rows,
                        const QString &places) {
        QTest::newRow(name) << columns << tasks << rows << places;
    };
    row("a row is remembered, and its cell numbered from 0", u"qac"_s, u"k l m"_s, u"k@a2:3 l@a2:7 m@a2:9"_s,
        u"k@a2:0 l@a2:1 m@a2:2"_s);
    row("a completed cell keeps gaps and ties", u"qac"_s, u"k! l! m!"_s, u"k@c1:3 l@c1:7 m@c1:7"_s,
        u"k@c1:3 l@c1:7 m@c1:7"_s);
    row("new tasks line up in the first queue", u"qrac"_s, u"k l"_s, u""_s, u"k@q1:0 l@q1:1"_s);
    row("new tasks stand behind remembered ones, whatever their numbers", u"qac"_s, u"n k l"_s,
        u"k@q1:5 l@q1:2"_s, u"k@q1:1 l@q1:0 n@q1:2"_s);
    row("a task completed elsewhere leaves its column, keeping swimlane and number", u"qac"_s, u"k!"_s,
        u"k@a2:4"_s, u"k@c2:4"_s);
    row("without a completed column a complete task stays", u"qa"_s, u"k! n!"_s, u"k@a2:4"_s, u"k@a2:0"_s);
    row("a complete task without a row goes behind the others", u"qac"_s, u"k! l!"_s, u"k@c1:0"_s,
        u"k@c1:0 l@c1:1"_s);
    row("a task reopened elsewhere stays in the completed column", u"qac"_s, u"k"_s, u"k@c1:2"_s,
        u"k@c1:2"_s);
    row("tasks of a lost column start over", u"qac"_s, u"k l!"_s, u"k@x2:0 l@x2:1"_s, u"k@q1:0 l@c1:0"_s);
    row("an earlier row of the same task is found when the later one is lost", u"qac"_s, u"k"_s,
        u"k@a2:0 k@x1:0"_s, u"k@a2:0"_s);
    row("without a queue a new task has no place", u"ac"_s, u"k"_s, u""_s, u""_s);
    row("a lost swimlane is kept in mind", u"qac"_s, u"k"_s, u"k@a9:2"_s, u"k@a9:2"_s);
}

void TestTaskPlacement::everyTaskFindsItsPlace()
{
    QFETCH(QString, columns);
    QFETCH(QString, tasks);
    QFETCH(QString, rows);
    QFETCH(QString, places);

    const Scene scene(columns, tasks, rows);
    QCOMPARE(scene.placesOf(placeTasks(scene.question)), places);

    // The same board again, and a gone task's place with it.
    const Scene again(columns, tasks, rows, places + u" gone@q1:7");
    const rules::PlacementAnswer answer = placeTasks(again.question);
    QVERIFY(answer.changed.empty());
}

void TestTaskPlacement::onlyRowsThatDifferAreWritten()
{
    for (const auto &[tasks, rows, written] : {
             std::tuple(u"k l"_s, u"k@q1:0 l@q1:1"_s, u""_s),
             {u"k l"_s, u"k@q1:0 l@q1:4"_s, u"l@q1:1"_s},
             {u"k n"_s, u"k@q1:0"_s, u"n@q1:1"_s},
             // A block is carried along, whatever the item says; a lost swimlane is not written.
             {u"k l"_s, u"k@q1:1#waiting l@q1:5"_s, u"k@q1:0#waiting l@q1:1"_s},
             {u"k"_s, u"k@a9:2"_s, u""_s},
         }) {
        const Scene scene(u"qac"_s, tasks, rows);
        QCOMPARE(scene.writtenBy(placeTasks(scene.question)), written);
    }
}

void TestTaskPlacement::rowsAreStaleOnlyWhereTheSourceAnswered()
{
    for (const auto &[answered, stale] :
         {std::pair(AllTaskSources, u"omni plaintext-p! reminder_r"_s),
          {AllTaskSources & ~TaskSources(TaskSource::OmniFocus), u"plaintext-p! reminder_r"_s},
          {TaskSource::PlainText, u"plaintext-p!"_s},
          {TaskSources(), u""_s}}) {
        Scene scene(u"qac"_s, u"k"_s, u"k@q1:0 omni@q1:1 reminder_r@x2:0 plaintext-p@c1:0"_s);
        scene.question.answered = answered;
        QCOMPARE(Scene::staleOf(placeTasks(scene.question)), stale);
    }
}

/** OmniFocus is not running: its tasks vanish from the board for a while, and their order must not. */
void TestTaskPlacement::absentTasksComeBackToTheirTurn()
{
    Scene scene(u"qac"_s, u"plaintext-b plaintext-d plaintext-n"_s,
                u"omni-a@a1:0 plaintext-b@a1:1 omni-c@a1:2 plaintext-d@a1:3 omni-e@q1:0"_s);
    scene.question.answered = TaskSource::PlainText;

    const rules::PlacementAnswer answer = placeTasks(scene.question);
    QCOMPARE(scene.placesOf(answer), u"plaintext-b@a1:0 plaintext-d@a1:1 plaintext-n@q1:0"_s);
    QCOMPARE(scene.writtenBy(answer), u"plaintext-n@q1:1"_s);
}

void TestTaskPlacement::equalNumbersKeepTheOrderShown()
{
    const Scene shown(u"qac"_s, u"k l m"_s, u"m@q1:0 l@q1:0 k@q1:0"_s, u"l@q1:0 k@q1:0 m@q1:0"_s);
    QCOMPARE(shown.placesOf(placeTasks(shown.question)), u"k@q1:1 l@q1:0 m@q1:2"_s);

    const Scene first(u"qac"_s, u"k l m"_s, u"m@q1:0 l@q1:0 k@q1:0"_s);
    QCOMPARE(first.placesOf(placeTasks(first.question)), u"k@q1:2 l@q1:1 m@q1:0"_s);
}

/** A store that could not be read is not an empty one: the board would start over in its first column. */
void TestTaskPlacement::aStoreThatLagsBehindYieldsToTheBoard()
{
    Scene scene(u"qac"_s, u"k l n"_s, u"k@q1:0 l@a2:0 gone@q1:1"_s, u"k@a1:0"_s);
    scene.question.isMemoryUpToDate = false;

    const rules::PlacementAnswer answer = placeTasks(scene.question);
    QCOMPARE(scene.placesOf(answer), u"k@a1:0 l@a2:0 n@q1:0"_s);
    QCOMPARE(scene.writtenBy(answer), QString());
    QCOMPARE(Scene::staleOf(answer), QString());
}

void TestTaskPlacement::aBoardThatNoRowKnowsIsReported()
{
    QVERIFY(placeTasks(Scene(u"qac"_s, u"k"_s, u"k@x1:0"_s).question).matchesNoColumn);
    QVERIFY(!placeTasks(Scene(u"qac"_s, u"k"_s, u"k@x1:0 l@a1:0"_s).question).matchesNoColumn);
    QVERIFY(!placeTasks(Scene(u"qac"_s, u"k"_s, u""_s).question).matchesNoColumn);
}

VANTREL_REGISTER_TEST(TestTaskPlacement)

} // namespace vantrel::test

#include "test_task_placement.moc"
