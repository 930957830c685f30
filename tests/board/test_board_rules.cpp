#include "board/rules/ColumnRules.h"
#include "board/rules/Ordering.h"
#include "board/rules/TaskFilter.h"
#include "board/rules/WIPRules.h"
#include "foundations/BaseWorkItem.h"
#include "foundations/OmniFocusTask.h"
#include "foundations/ReminderWorkItem.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** One letter a column: q, a or c. */
std::vector<Column> columnsOf(const QString &types)
{
    std::vector<Column> columns;
    for (const QChar letter : types) {
        Column column;
        column.id = ColumnId::create();
        column.type = letter == u'q'   ? ColumnType::Queue
                      : letter == u'a' ? ColumnType::Active
                                       : ColumnType::Completed;
        columns.push_back(column);
    }
    return columns;
}

std::vector<ColumnType> typesOf(const QString &letters)
{
    std::vector<ColumnType> types;
    for (const Column &column : columnsOf(letters)) {
        types.push_back(column.type);
    }
    return types;
}

WorkItemFields fieldsOf(const QString &id)
{
    WorkItemFields fields;
    fields.id = id;
    return fields;
}

} // namespace

class TestBoardRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completedColumnsEndTheBoard_data();
    void completedColumnsEndTheBoard();
    void aNewColumnJoinsItsType_data();
    void aNewColumnJoinsItsType();
    void anElementMovesToTheIndexAfterItsRemoval_data();
    void anElementMovesToTheIndexAfterItsRemoval();
    void aLimitCountsItsCellOrItsColumn_data();
    void aLimitCountsItsCellOrItsColumn();
    void theGaugeFollowsItsThresholds_data();
    void theGaugeFollowsItsThresholds();
    void aThresholdIsCrossedBothWays_data();
    void aThresholdIsCrossedBothWays();
    void aMaximumOfNothingShowsNoLoad();
    void workloadIsWordedByItsShare_data();
    void workloadIsWordedByItsShare();
    void aFilterShowsWhatAllItsPartsAccept_data();
    void aFilterShowsWhatAllItsPartsAccept();
    void sourcesAreToldByClassNotById();
};

void TestBoardRules::completedColumnsEndTheBoard_data()
{
    QTest::addColumn<QString>("types");
    QTest::addColumn<bool>("isValid");

    QTest::newRow("none") << u""_s << true;
    QTest::newRow("no completed one") << u"aqa"_s << true;
    QTest::newRow("in order") << u"qacc"_s << true;
    QTest::newRow("queue behind active") << u"aqc"_s << true;
    QTest::newRow("active behind completed") << u"qca"_s << false;
    QTest::newRow("completed on both sides") << u"cqc"_s << false;
}

void TestBoardRules::completedColumnsEndTheBoard()
{
    QFETCH(QString, types);
    QTEST(isValidColumnTypeOrder(typesOf(types)), "isValid");
}

void TestBoardRules::aNewColumnJoinsItsType_data()
{
    QTest::addColumn<QString>("board");
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("index");

    QTest::newRow("behind the last of its type") << u"qaac"_s << u"a"_s << 3;
    QTest::newRow("behind the last queue, though it stands behind an active") << u"qaqac"_s << u"q"_s << 3;
    QTest::newRow("behind the last completed") << u"qacc"_s << u"c"_s << 4;
    QTest::newRow("first queue leads") << u"ac"_s << u"q"_s << 0;
    QTest::newRow("first active follows the queues") << u"qqc"_s << u"a"_s << 2;
    QTest::newRow("first active without queues leads") << u"c"_s << u"a"_s << 0;
    QTest::newRow("first completed ends") << u"qa"_s << u"c"_s << 2;
    QTest::newRow("an empty board") << u""_s << u"c"_s << 0;
}

void TestBoardRules::aNewColumnJoinsItsType()
{
    QFETCH(QString, board);
    QFETCH(QString, type);
    QTEST(insertionIndex(columnsOf(board), typesOf(type).front()), "index");
}

void TestBoardRules::anElementMovesToTheIndexAfterItsRemoval_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<std::vector<int>>("result");

    QTest::newRow("to the right") << 0 << 2 << std::vector{1, 2, 0, 3};
    QTest::newRow("to the left") << 3 << 1 << std::vector{0, 3, 1, 2};
    QTest::newRow("nowhere") << 1 << 1 << std::vector{0, 1, 2, 3};
}

void TestBoardRules::anElementMovesToTheIndexAfterItsRemoval()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(std::vector<int>, result);
    std::vector<int> list{0, 1, 2, 3};

    QVERIFY(canMoveElement(list, from, to));
    moveElement(list, from, to);

    QCOMPARE(list, result);
    QVERIFY(!canMoveElement(list, -1, 0));
    QVERIFY(!canMoveElement(list, 0, -1));
    QVERIFY(!canMoveElement(list, 4, 0));
    QVERIFY(!canMoveElement(list, 0, 4));
}

void TestBoardRules::aLimitCountsItsCellOrItsColumn_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isColumnWide");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("cellCount");
    QTest::addColumn<int>("columnCount");
    QTest::addColumn<bool>("isExceeded");

    QTest::newRow("one more in the cell") << u"a"_s << false << 3 << 4 << 4 << true;
    QTest::newRow("as many as allowed") << u"a"_s << false << 3 << 3 << 9 << false;
    QTest::newRow("over all swimlanes") << u"a"_s << true << 3 << 2 << 4 << true;
    QTest::newRow("full column") << u"q"_s << true << 4 << 4 << 4 << false;
    QTest::newRow("finished work is never too much") << u"c"_s << true << 1 << 9 << 9 << false;
}

void TestBoardRules::aLimitCountsItsCellOrItsColumn()
{
    QFETCH(QString, type);
    QFETCH(bool, isColumnWide);
    QFETCH(int, limit);
    QFETCH(int, cellCount);
    QFETCH(int, columnCount);
    Column column = columnsOf(type).front();
    column.wipLimitType = isColumnWide ? WIPLimitType::Column : WIPLimitType::Swimlane;

    QVERIFY(!isWIPLimitExceeded(column, cellCount, columnCount));
    column.wipLimit = limit;
    QTEST(isWIPLimitExceeded(column, cellCount, columnCount), "isExceeded");
}

void TestBoardRules::theGaugeFollowsItsThresholds_data()
{
    QTest::addColumn<int>("warn");
    QTest::addColumn<int>("max");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isWarning");
    QTest::addColumn<bool>("isOverLimit");
    QTest::addColumn<QString>("emoji");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("color");
    QTest::addColumn<QString>("hint");

    const auto row = [](const char *name) -> QTestData & {
        return QTest::newRow(name);
    };
    const QString fine = u"Work in progress within acceptable range. Maximum threshold is %1."_s;
    const QString near = u"Work in progress approaching maximum threshold. Current limit is %1."_s;
    const QString over = u"Work in progress exceeds maximum threshold of %1. Consider completing some tasks "
                         "before starting new ones."_s;
    row("below the warning") << 20 << 30 << 19 << false << false << u"✅"_s << u"Healthy level"_s
                             << u"#22C55E"_s << fine.arg(30);
    row("at the warning") << 20 << 30 << 20 << true << false << u"⚡️"_s << u"Approaching capacity"_s
                          << u"#F59E0B"_s << near.arg(30);
    row("at the maximum") << 20 << 30 << 30 << true << false << u"⚠️"_s << u"At maximum capacity"_s
                          << u"#EF4444"_s << near.arg(30);
    row("past the maximum") << 20 << 30 << 31 << true << true << u"🔥"_s << u"Overloaded"_s << u"#EF4444"_s
                            << over.arg(30);
    row("equal marks, below") << 25 << 25 << 24 << false << false << u"✅"_s << u"Healthy level"_s
                              << u"#22C55E"_s << fine.arg(25);
    row("equal marks, at") << 25 << 25 << 25 << true << false << u"⚠️"_s << u"At maximum capacity"_s
                           << u"#EF4444"_s << near.arg(25);
}

void TestBoardRules::theGaugeFollowsItsThresholds()
{
    QFETCH(int, warn);
    QFETCH(int, max);
    QFETCH(int, count);
    QFETCH(bool, isWarning);
    QFETCH(bool, isOverLimit);
    const WIPThresholds thresholds{warn, max};
    const WIPGaugeStatus status = wipGaugeStatus(count, thresholds);

    QCOMPARE(wipStatus(count, thresholds), (WIPStatus{count, isWarning, isOverLimit}));
    QTEST(WIPTexts::statusEmoji(status), "emoji");
    QTEST(WIPTexts::statusDescription(status), "description");
    QTEST(hexText(wipGaugeColor(count, thresholds)), "color");
    QTEST(WIPTexts::gaugeAccessibleHint(count, thresholds), "hint");
}

void TestBoardRules::aThresholdIsCrossedBothWays_data()
{
    QTest::addColumn<int>("previous");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isCrossed");

    QTest::newRow("to the warning") << 19 << 20 << true;
    QTest::newRow("above the warning") << 20 << 29 << false;
    QTest::newRow("below the warning again") << 20 << 19 << true;
    QTest::newRow("to the maximum") << 29 << 30 << false;
    QTest::newRow("past the maximum") << 30 << 31 << true;
    QTest::newRow("back to the maximum") << 31 << 30 << true;
    QTest::newRow("from healthy to overloaded at once") << 10 << 40 << true;
    QTest::newRow("unchanged") << 31 << 31 << false;
}

void TestBoardRules::aThresholdIsCrossedBothWays()
{
    QFETCH(int, previous);
    QFETCH(int, count);
    QTEST(isWIPThresholdCrossed(previous, count, {20, 30}), "isCrossed");
}

void TestBoardRules::aMaximumOfNothingShowsNoLoad()
{
    QCOMPARE(hexText(wipGaugeColor(5, {0, 0})), u"#22C55E"_s);
    QCOMPARE(truncatedPercentage(5, 0), 0);
    QCOMPARE(truncatedPercentage(5, -3), 0);
    QCOMPARE(truncatedPercentage(3, 8), 37);
    QCOMPARE(truncatedPercentage(29, 100), 29);
    QCOMPARE(WIPTexts::gaugeText(12, {20, 30}), u"12/30 WIP"_s);
    QCOMPARE(WIPTexts::gaugeAccessibleValue(12, {20, 30}),
             u"12 work items in progress, which is 40% of capacity. Status: Healthy level"_s);
}

void TestBoardRules::workloadIsWordedByItsShare_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("percentage");
    QTest::addColumn<QString>("text");

    const QString share =
        u"This swimlane contains 9 incomplete work items, which is %1 of the total board workload."_s;
    const auto row = [&](const QString &percentage, const QString &sentence) {
        QTest::newRow(qPrintable(percentage)) << 9 << percentage << share.arg(percentage) + sentence;
    };
    const QString high = u" This is a high concentration of work items and may need attention."_s;
    const QString moderate = u" This is a moderate-to-high concentration of work items."_s;
    const QString balanced = u" This is a balanced concentration of work items."_s;
    row(u"75%"_s, high);
    row(u"74%"_s, moderate);
    row(u"50%"_s, moderate);
    row(u"49%"_s, balanced);
    row(u"25%"_s, balanced);
    row(u"24%"_s, u" This is a low concentration of work items."_s);
    row(u"0%"_s, u""_s);
    QTest::newRow("nothing to do") << 0 << u"0%"_s
                                   << u"There are currently no incomplete work items in this swimlane."_s;
}

void TestBoardRules::workloadIsWordedByItsShare()
{
    QFETCH(int, count);
    QFETCH(QString, percentage);
    QTEST(WIPTexts::swimLaneHelp(count, percentage), "text");
}

void TestBoardRules::aFilterShowsWhatAllItsPartsAccept_data()
{
    QTest::addColumn<FilterSelection>("selection");
    QTest::addColumn<bool>("hidesDone");
    QTest::addColumn<QString>("shown");

    FilterSelection selection;
    const auto row = [&selection](const char *name, const QString &shown, bool hidesDone = false) {
        QTest::newRow(name) << selection << hidesDone << shown;
    };
    row("nothing filters, so completed tasks stay", u"home work plain nameless done"_s, true);

    selection.tagIDs = {u"t1"_s};
    row("a tag", u"home done"_s);
    row("a tag, without completed tasks", u"home"_s, true);
    selection.tagIDs.insert(UntaggedTagID.toString());
    row("a tag or none", u"home plain nameless done"_s);
    selection.tagIDs = {u"t3"_s};
    row("the id of a nameless tag", u"nameless"_s);
    selection.tagIDs = {u"gone"_s};
    row("a tag that nobody bears", u""_s);

    selection = {};
    selection.flaggedOnly = true;
    row("flagged", u"work done"_s);
    selection.tagIDs = {u"t1"_s};
    row("flagged and a tag", u"done"_s);

    selection = {};
    selection.priorities = {EisenhowerPriority::Unsorted};
    row("unsorted, also without any quadrant", u"home plain nameless done"_s);
    selection.priorities = {EisenhowerPriority::DoNow, EisenhowerPriority::Schedule};
    row("quadrants are alternatives", u"work"_s);

    selection = {};
    selection.sourceIDs = {u"omnifocus"_s};
    row("a source", u"work"_s);
    selection.sourceIDs.insert(u"generic"_s);
    row("sources are alternatives", u"home work plain nameless done"_s);
    selection.sourceIDs = {u"plaintext"_s};
    row("a source without tasks", u""_s);
}

void TestBoardRules::aFilterShowsWhatAllItsPartsAccept()
{
    QFETCH(FilterSelection, selection);
    QFETCH(bool, hidesDone);
    QFETCH(QString, shown);
    const TaskFilter filter(selection,
                            hidesDone ? TaskFilter::DoneTasks::Hidden : TaskFilter::DoneTasks::Shown);

    BaseWorkItem home(fieldsOf(u"home"_s));
    home.setTag(Tag{u"t1"_s, u"Home"_s});
    home.setEisenhowerPriority(EisenhowerPriority::Unsorted);
    OmniFocusTask work(fieldsOf(u"work"_s));
    work.setTag(Tag{u"t2"_s, u"Work"_s});
    work.setFlagged(true);
    work.setEisenhowerPriority(EisenhowerPriority::DoNow);
    const BaseWorkItem plain(fieldsOf(u"plain"_s));
    BaseWorkItem nameless(fieldsOf(u"nameless"_s));
    nameless.setTag(Tag{u"t3"_s, u""_s});
    BaseWorkItem done(fieldsOf(u"done"_s));
    done.setTag(Tag{u"t1"_s, u"Home"_s});
    done.setFlagged(true);
    done.setComplete(true);

    QStringList accepted;
    for (const WorkItem *task :
         std::initializer_list<const WorkItem *>{&home, &work, &plain, &nameless, &done}) {
        if (filter.accepts(*task)) {
            accepted.append(task->id());
        }
    }
    QCOMPARE(accepted.join(u' '), shown);
}

void TestBoardRules::sourcesAreToldByClassNotById()
{
    const auto id = u"plaintext-1"_s;

    QCOMPARE(TaskFilter::sourceIdentifier(PlainTextWorkItem(PlainTextRecord{fieldsOf(id), {}, {}})),
             u"plaintext"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(BaseWorkItem(fieldsOf(id))), u"generic"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(OmniFocusTask(fieldsOf(id))), u"omnifocus"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(ReminderWorkItem(fieldsOf(id), {})), u"reminders"_s);
}

VANTREL_REGISTER_TEST(TestBoardRules)

} // namespace vantrel::test

Q_DECLARE_METATYPE(vantrel::FilterSelection)

#include "test_board_rules.moc"
