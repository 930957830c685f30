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
        column.type = letter == u'q'   ? ColumnType::Queue
                      : letter == u'a' ? ColumnType::Active
                                       : ColumnType::Completed;
        columns.push_back(column);
    }
    return columns;
}

WorkItemFields fieldsOf(const QString &id)
{
    WorkItemFields fields;
    fields.id = id;
    return fields;
}

} // namespace

/** The reasoning of the board on records alone. */
class TestBoardRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsFollowTheOrderOfTheirTypes();
    void aLimitIsExceededByOneMore();
    void theGaugeFollowsItsThresholds();
    void aThresholdIsCrossedBothWays();
    void workloadIsWordedByItsShare();
    void aFilterShowsWhatAllItsPartsAccept_data();
    void aFilterShowsWhatAllItsPartsAccept();
    void sourcesAreToldByClassNotById();
};

void TestBoardRules::columnsFollowTheOrderOfTheirTypes()
{
    for (const auto &[types, isValid] : {std::pair(u""_s, true),
                                         {u"aqa"_s, true},
                                         {u"aqcc"_s, true},
                                         {u"qca"_s, false},
                                         {u"cqc"_s, false}}) {
        std::vector<ColumnType> list;
        for (const Column &column : columnsOf(types)) {
            list.push_back(column.type);
        }
        QVERIFY2(isValidColumnTypeOrder(list) == isValid, qPrintable(types));
    }

    struct Row
    {
        QString board;
        ColumnType type;
        int index;
    };
    for (const Row &row : {Row{u"qaac"_s, ColumnType::Active, 3}, Row{u"qaqac"_s, ColumnType::Queue, 3},
                           Row{u"qacc"_s, ColumnType::Completed, 4}, Row{u"ac"_s, ColumnType::Queue, 0},
                           Row{u"qqc"_s, ColumnType::Active, 2}, Row{u"c"_s, ColumnType::Active, 0},
                           Row{u"qa"_s, ColumnType::Completed, 2}, Row{u""_s, ColumnType::Completed, 0}}) {
        QVERIFY2(insertionIndex(columnsOf(row.board), row.type) == row.index, qPrintable(row.board));
    }
}

void TestBoardRules::aLimitIsExceededByOneMore()
{
    for (const auto &[type, incomplete, isExceeded] :
         {std::tuple(u"a"_s, 4, true), {u"a"_s, 3, false}, {u"q"_s, 4, true}, {u"c"_s, 4, false}}) {
        Column column = columnsOf(type).front();
        QVERIFY(!isWIPLimitExceeded(column, incomplete));
        column.wipLimit = 3;
        QCOMPARE(isWIPLimitExceeded(column, incomplete), isExceeded);
    }
}

void TestBoardRules::theGaugeFollowsItsThresholds()
{
    struct Row
    {
        int warn, max, count;
        bool isWarning, isOverLimit;
        QString emoji, description, color, hint;
    };
    const QString fine = u"Work in progress within acceptable range. Maximum threshold is %1."_s;
    const QString near = u"Work in progress approaching maximum threshold. Current limit is %1."_s;
    const QString over = u"Work in progress exceeds maximum threshold of %1. Consider completing some tasks "
                         "before starting new ones."_s;
    const std::vector<Row> rows{
        {20, 30, 19, false, false, u"✅"_s, u"Healthy level"_s, u"#22C55E"_s, fine},
        {20, 30, 20, true, false, u"⚡️"_s, u"Approaching capacity"_s, u"#F59E0B"_s, near},
        {20, 30, 30, true, false, u"⚠️"_s, u"At maximum capacity"_s, u"#EF4444"_s, near},
        {20, 30, 31, true, true, u"🔥"_s, u"Overloaded"_s, u"#EF4444"_s, over},
        {25, 25, 24, false, false, u"✅"_s, u"Healthy level"_s, u"#22C55E"_s, fine},
        {25, 25, 25, true, false, u"⚠️"_s, u"At maximum capacity"_s, u"#EF4444"_s, near},
        {0, 0, 5, true, true, u"🔥"_s, u"Overloaded"_s, u"#22C55E"_s, over},
    };
    for (const Row &row : rows) {
        const WIPThresholds thresholds{row.warn, row.max};
        const WIPGaugeStatus status = wipGaugeStatus(row.count, thresholds);
        QCOMPARE(wipStatus(row.count, thresholds), (WIPStatus{row.count, row.isWarning, row.isOverLimit}));
        QCOMPARE(WIPTexts::statusEmoji(status), row.emoji);
        QCOMPARE(WIPTexts::statusDescription(status), row.description);
        QCOMPARE(hexText(wipGaugeColor(row.count, thresholds)), row.color);
        QCOMPARE(WIPTexts::gaugeAccessibleHint(row.count, thresholds), row.hint.arg(row.max));
    }
    QCOMPARE(WIPTexts::gaugeText(12, {20, 30}), u"12/30 WIP"_s);
    QCOMPARE(WIPTexts::gaugeAccessibleValue(12, {20, 30}),
             u"12 work items in progress, which is 40% of capacity. Status: Healthy level"_s);
}

void TestBoardRules::aThresholdIsCrossedBothWays()
{
    for (const auto &[previous, count] : {std::pair(19, 20), {20, 19}, {30, 31}, {31, 30}, {10, 40}}) {
        QVERIFY(isWIPThresholdCrossed(previous, count, {20, 30}));
    }
    for (const auto &[previous, count] : {std::pair(20, 29), {29, 30}, {31, 31}}) {
        QVERIFY(!isWIPThresholdCrossed(previous, count, {20, 30}));
    }
}

void TestBoardRules::workloadIsWordedByItsShare()
{
    QCOMPARE(truncatedPercentage(3, 8), 37);
    QCOMPARE(truncatedPercentage(29, 100), 29);
    QCOMPARE(truncatedPercentage(5, 0), 0);

    const QString share =
        u"This swimlane contains 9 incomplete work items, which is %1% of the total board workload."_s;
    const QString high = u" This is a high concentration of work items and may need attention."_s;
    const QString moderate = u" This is a moderate-to-high concentration of work items."_s;
    const QString balanced = u" This is a balanced concentration of work items."_s;
    const QString low = u" This is a low concentration of work items."_s;
    for (const auto &[percentage, sentence] : {std::pair(75, high),
                                               {74, moderate},
                                               {50, moderate},
                                               {49, balanced},
                                               {25, balanced},
                                               {24, low},
                                               {0, u""_s}}) {
        QCOMPARE(WIPTexts::swimLaneHelp(9, QString::number(percentage) + u'%'),
                 share.arg(percentage) + sentence);
    }
    QCOMPARE(WIPTexts::swimLaneHelp(0, u"0%"_s),
             u"There are currently no incomplete work items in this swimlane."_s);
}

void TestBoardRules::aFilterShowsWhatAllItsPartsAccept_data()
{
    QTest::addColumn<FilterSelection>("selection");
    QTest::addColumn<bool>("hidesDone");
    QTest::addColumn<QString>("shown");

    using Priority = EisenhowerPriority;
    const auto row = [](const char *name, const FilterSelection &selection, const QString &shown,
                        bool hidesDone = false) {
        QTest::newRow(name) << selection << hidesDone << shown;
    };
    const QString all = u"home work plain nameless done"_s;
    row("nothing filters, so completed tasks stay", {}, all, true);
    row("a tag", {{u"t1"_s}, {}, {}, false}, u"home done"_s);
    row("a tag, without completed tasks", {{u"t1"_s}, {}, {}, false}, u"home"_s, true);
    row("a tag or none", {{u"t1"_s, u"untagged"_s}, {}, {}, false}, u"home plain nameless done"_s);
    row("the id of a nameless tag", {{u"t3"_s}, {}, {}, false}, u"nameless"_s);
    row("a tag that nobody bears", {{u"gone"_s}, {}, {}, false}, u""_s);
    row("flagged", {{}, {}, {}, true}, u"work done"_s);
    row("flagged and a tag", {{u"t1"_s}, {}, {}, true}, u"done"_s);
    row("unsorted or none", {{}, {Priority::Unsorted}, {}, false}, u"home plain nameless done"_s);
    row("quadrants are alternatives", {{}, {Priority::DoNow, Priority::Schedule}, {}, false}, u"work"_s);
    row("a source", {{}, {}, {u"omnifocus"_s}, false}, u"work"_s);
    row("sources are alternatives", {{}, {}, {u"omnifocus"_s, u"generic"_s}, false}, all);
    row("a source without tasks", {{}, {}, {u"plaintext"_s}, false}, u""_s);
}

void TestBoardRules::aFilterShowsWhatAllItsPartsAccept()
{
    QFETCH(FilterSelection, selection);
    QFETCH(bool, hidesDone);
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
    QTEST(accepted.join(u' '), "shown");
}

void TestBoardRules::sourcesAreToldByClassNotById()
{
    const WorkItemFields fields = fieldsOf(u"plaintext-1"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(PlainTextWorkItem({fields, {}, {}})), u"plaintext"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(BaseWorkItem(fields)), u"generic"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(OmniFocusTask(fields)), u"omnifocus"_s);
    QCOMPARE(TaskFilter::sourceIdentifier(ReminderWorkItem(fields, {})), u"reminders"_s);
}

VANTREL_REGISTER_TEST(TestBoardRules)

} // namespace vantrel::test

#include "test_board_rules.moc"
