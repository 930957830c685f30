#include "BoardScreen.h"
#include "foundations/DefaultsKeys.h"
#include "foundations/OmniFocusTask.h"
#include "support/TestRegistry.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

/** Counts what one model tells its views. */
struct Told
{
    explicit Told(QAbstractItemModel &model)
        : tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal),
          inserted(&model, &QAbstractItemModel::rowsInserted),
          moved(&model, &QAbstractItemModel::rowsMoved),
          removed(&model, &QAbstractItemModel::rowsRemoved),
          changed(&model, &QAbstractItemModel::dataChanged),
          reset(&model, &QAbstractItemModel::modelReset)
    {
    }

    /** "+1 >0 -0 ~2": rows inserted, moved, removed and changed. */
    QString counts() const
    {
        return u"+%1 >%2 -%3 ~%4"_s.arg(inserted.count())
            .arg(moved.count())
            .arg(removed.count())
            .arg(changed.count());
    }

    QAbstractItemModelTester tester;
    QSignalSpy inserted;
    QSignalSpy moved;
    QSignalSpy removed;
    QSignalSpy changed;
    QSignalSpy reset;
};

ColumnContent column(BoardScreen &screen, int row)
{
    return screen.view.columns()->index(row).data(ColumnListModel::ColumnRole).value<ColumnContent>();
}

SwimLaneContent lane(BoardScreen &screen, int row)
{
    return screen.view.swimLanes()->index(row).data(SwimLaneListModel::SwimLaneRole).value<SwimLaneContent>();
}

} // namespace

/** What the models of the board tell their views. */
class TestBoardModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMoveTellsTheTwoCellsAloneAndAsFewRowsAsItTakes()
    {
        BoardScreen screen({{u"0"_s, u"a b c d"_s}, {u"1"_s, u"x"_s}, {u"20"_s, u"z"_s}});
        Told from(screen.model(u"0"_s));
        Told to(screen.model(u"1"_s));
        Told other(screen.model(u"20"_s));
        screen->moveTask(screen.task(u"a"_s), screen.todo(), screen.first(), 2);
        screen.settle();
        QCOMPARE(screen.shown(u"0"_s), u"b c a d"_s);
        QCOMPARE(from.counts().left(8), u"+0 >1 -0"_s);

        screen->moveTask(screen.task(u"c"_s), screen.doing(), screen.first(), 0);
        screen.settle();
        QCOMPARE(screen.shown(u"1"_s), u"c x"_s);
        QCOMPARE(from.counts().left(8), u"+0 >1 -1"_s);
        QCOMPARE(to.counts().left(8), u"+1 >0 -0"_s);
        QCOMPARE(other.counts(), u"+0 >0 -0 ~0"_s);
        QCOMPARE(from.reset.count() + to.reset.count(), 0);
    }

    void aFilterTakesRowsOutAndPutsThemBack()
    {
        BoardScreen screen({{u"0"_s, u"a b c d e"_s}});
        screen.task(u"b"_s)->setFlagged(true);
        Told told(screen.model(u"0"_s));
        screen->filterManager().toggleFlaggedFilter();
        QCOMPARE(screen.shown(u"0"_s), u"b"_s);
        screen->filterManager().toggleFlaggedFilter();
        QCOMPARE(screen.shown(u"0"_s), u"a b c d e"_s);
        QCOMPARE(told.counts(), u"+2 >0 -2 ~0"_s);
    }

    void aChangedTaskChangesItsCardAloneAndAMinuteTheCell()
    {
        BoardScreen screen({{u"0"_s, u"a b c"_s}});
        Told told(screen.model(u"0"_s));
        const auto changedRows = [&told](int change) {
            const QList<QVariant> &arguments = told.changed.at(change);
            return std::pair(arguments.at(0).toModelIndex().row(), arguments.at(1).toModelIndex().row());
        };
        screen.task(u"b"_s)->setName(u"Other"_s);
        QCOMPARE(told.counts(), u"+0 >0 -0 ~1"_s);
        QCOMPARE(changedRows(0), std::pair(1, 1));
        screen.store.clock.advance(60.0);
        QCOMPARE(told.counts(), u"+0 >0 -0 ~2"_s);
        QCOMPARE(changedRows(1), std::pair(0, 2));
    }

    void aPreferenceRedrawsTheCards()
    {
        BoardScreen screen({{u"0"_s, u"a"_s}});
        screen.task(u"a"_s)->setProject(Project{u"p"_s, u"Family"_s});
        Told told(screen.model(u"0"_s));
        screen.store.defaults.set(keys::ShowProjectInfo, false);
        QCOMPARE(told.changed.count(), 1);
        QCOMPARE(screen.model(u"0"_s).index(0).data(CellModel::CardRole).value<CardContent>().project,
                 QString());
        screen.store.defaults.set(keys::SoundsEnabled, false);
        QCOMPARE(told.changed.count(), 1);
    }

    void aReplacedTaskObjectIsListenedTo()
    {
        BoardScreen screen({{u"0"_s, u"a b"_s}});
        WorkItemFields fields = screen.task(u"b"_s)->fields();
        fields.name = u"Fetched anew"_s;
        const auto fresh = std::make_shared<OmniFocusTask>(fields);
        Told told(screen.model(u"0"_s));
        screen.organize({screen.task(u"a"_s), fresh});
        const int changes = told.changed.count();
        QVERIFY(changes >= 1);
        QCOMPARE(told.inserted.count() + told.removed.count(), 0);
        screen.task(u"b"_s)->setFlagged(true);
        QCOMPARE(told.changed.count(), changes + 1);
    }

    void selectionAndFocusAreTold()
    {
        BoardScreen screen({{u"0"_s, u"a b"_s}, {u"1"_s, u"x"_s}});
        Told told(screen.model(u"0"_s));
        screen.select({u"a"_s});
        QVERIFY(screen.model(u"0"_s).index(0).data(CellModel::IsSelectedRole).toBool());
        QCOMPARE(told.changed.count(), 1);
        screen.view.tapCard(u"x"_s, false);
        QVERIFY(!screen.model(u"0"_s).index(0).data(CellModel::IsSelectedRole).toBool());
        QVERIFY(screen.model(u"1"_s).index(0).data(CellModel::IsFocusedRole).toBool());
        QCOMPARE(screen.view.selectedCount(), 1);
    }

    void headersAndCellsCountAndWarn()
    {
        struct Row
        {
            WIPLimitType type;
            int limit;
            QString count;
            bool isOver;
            QString first, second;
        };
        const QString warning = u"WIP Limit Exceeded!"_s;
        // Two tasks in the first swimlane, one in the second.
        for (const Row &row : {Row{WIPLimitType::Column, 0, u"3"_s, false, {}, {}},
                               Row{WIPLimitType::Column, 3, u"3 / 3"_s, false, {}, {}},
                               Row{WIPLimitType::Column, 2, u"3 / 2"_s, true, warning + u"(Column-wide)",
                                   warning + u"(Column-wide)"},
                               Row{WIPLimitType::Swimlane, 2, u"2 / 2"_s, false, {}, {}},
                               Row{WIPLimitType::Swimlane, 1, u"2 / 1"_s, true, warning, {}}}) {
            BoardScreen screen({{u"1"_s, u"a b"_s}, {u"21"_s, u"c"_s}});
            Column doing = *screen->columnManager().column(screen.doing());
            doing.wipLimit = row.limit > 0 ? std::optional(row.limit) : std::nullopt;
            doing.wipLimitType = row.type;
            screen->updateColumn(doing);
            screen.settle();
            const ColumnContent header = column(screen, 1);
            QCOMPARE(header.countText, row.count);
            QCOMPARE(header.isOverLimit, row.isOver);
            QVERIFY(header.accessibleName.startsWith(u"column header for Doing [type Active] - 3 tasks"));
            const auto warned = [&screen](const QString &cell) {
                return QString(screen.model(cell).warning() + screen.model(cell).warningScope());
            };
            QCOMPARE(warned(u"1"_s), row.first);
            QCOMPARE(warned(u"21"_s), row.second);
        }
    }

    void theWorkloadHasItsColour()
    {
        for (const auto &[percent, color] : {std::pair(75, u"#EF4444"_s),
                                             {74, u"#F59E0B"_s},
                                             {50, u"#F59E0B"_s},
                                             {49, u"#22C55E"_s},
                                             {25, u"#22C55E"_s},
                                             {24, u""_s}}) {
            const SwimLaneContent content = swimLaneContent(
                SwimLane::defaultSwimLane(), {3, QString::number(percent) + u'%', 300.0, false});
            QCOMPARE(content.workload, u"3 · %1%"_s.arg(percent));
            QCOMPARE(content.workloadColor, color);
        }
    }

    void columnsAndSwimLanesComeAndGo()
    {
        BoardScreen screen({{u"0"_s, u"a"_s}, {u"20"_s, u"b"_s}});
        Told columns(*screen.view.columns());
        Told lanes(*screen.view.swimLanes());
        const Column review = aColumn(u"Review"_s);
        screen->addColumn(review);
        screen.settle();
        QCOMPARE(column(screen, 2).name, u"Review"_s);
        QCOMPARE(columns.inserted.count(), 1);
        QVERIFY(screen.view.cell(screen.first().text(), review.id.text()));

        const SwimLaneId second = screen.second();
        QCOMPARE(lane(screen, 1).workload, u"1 · 50%"_s);
        screen->removeSwimLane(second);
        screen.settle();
        QCOMPARE(lanes.removed.count(), 1);
        QCOMPARE(lane(screen, 0).workload, u"2 · 100%"_s);
        QCOMPARE(screen.shown(u"0"_s), u"a b"_s);
        QVERIFY(!screen.view.cell(second.text(), review.id.text()));
        QCOMPARE(columns.reset.count() + lanes.reset.count(), 0);
    }

    void isolationIsNamedAndEnds()
    {
        BoardScreen screen({{u"0"_s, u"a"_s}});
        screen.view.toggleIsolation(screen.second().text());
        QCOMPARE(screen.view.isolationTitle(), u"Focus Mode: Second"_s);
        QVERIFY(lane(screen, 1).isIsolated);
        QVERIFY(!lane(screen, 0).isExpanded);
        screen.view.clearIsolation();
        QCOMPARE(screen.view.isolationTitle(), QString());
        QVERIFY(lane(screen, 0).isExpanded);
    }

    void aFailedMoveIsMarkedAndRepeated()
    {
        BoardScreen screen({{u"1"_s, u"a"_s}});
        screen.managers().setTaskSourceConfiguration({.isOmniFocusEnabled = true});
        screen.omniFocus.edits.fail(u"no access"_s);
        screen->moveTask(screen.task(u"a"_s), screen.done());
        screen.advance(2.0);
        const QModelIndex card = screen.model(u"2"_s).index(0);
        QVERIFY(card.data(CellModel::OperationErrorRole).toString().contains(u"no access"));

        screen.omniFocus.edits.give(true);
        screen.view.retry(u"a"_s);
        screen.advance(2.0);
        QCOMPARE(card.data(CellModel::OperationErrorRole).toString(), QString());
    }

    void taskFocusDimsTheOthers()
    {
        BoardScreen screen({{u"0"_s, u"a b"_s}});
        const auto isDimmed = [&screen](int row) {
            return screen.model(u"0"_s).index(row).data(CellModel::IsDimmedRole).toBool();
        };
        screen->focusTask(u"a"_s);
        QVERIFY(!isDimmed(0) && isDimmed(1));
        screen->clearTaskFocus();
        QVERIFY(!isDimmed(0) && !isDimmed(1));
    }
};

VANTREL_REGISTER_TEST(TestBoardModels)

} // namespace vantrel::test

#include "test_board_models.moc"
