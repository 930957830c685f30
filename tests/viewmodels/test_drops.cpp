#include "BoardScreen.h"
#include "foundations/Log.h"
#include "foundations/TaskTransferable.h"
#include "support/TestRegistry.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

QStringList letters(const QString &text)
{
    return text.split(QString(), Qt::SkipEmptyParts);
}

/** As a drag from outside that offers a text. */
QVariantMap textOffer(const QString &text)
{
    return {{u"text/plain"_s, text}};
}

} // namespace

/** Where dragged cards land. */
class TestDrops : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aHeightAsksForAPlace()
    {
        struct Row
        {
            const char *name;
            double y;
            int count, position;
        };
        for (const Row &row :
             {Row{"empty cell", 200.0, 0, 0}, Row{"top band", 49.0, 4, 0}, Row{"its lower end", 50.0, 4, 0},
              Row{"in between", 200.0, 4, 2}, Row{"lower end", 300.0, 4, 3}, Row{"below", 350.0, 4, 4},
              Row{"below, long cell", 350.0, 90, 90}, Row{"behind few cards", 101.0, 1, 1},
              Row{"beside few cards", 100.0, 1, 0}}) {
            QVERIFY2(calculateTargetPosition(row.y, row.count) == row.position, row.name);
        }
    }

    void droppedCardsStandOneBehindTheOther()
    {
        struct Row
        {
            QString name, shown, all, dragged;
            int position;
            QString after;
            int row;
        };
        for (const Row &row :
             {Row{u"from elsewhere"_s, u"abc"_s, u"abc"_s, u"x"_s, 1, u"axbc"_s, 1},
              Row{u"from elsewhere to the end"_s, u"abc"_s, u"abc"_s, u"x"_s, 3, u"abcx"_s, 3},
              Row{u"two from elsewhere"_s, u"abc"_s, u"abc"_s, u"xy"_s, 1, u"axybc"_s, 1},
              Row{u"down in its cell"_s, u"abcd"_s, u"abcd"_s, u"a"_s, 2, u"bcad"_s, 3},
              Row{u"up in its cell"_s, u"abcd"_s, u"abcd"_s, u"d"_s, 1, u"adbc"_s, 1},
              Row{u"past the end of its cell"_s, u"abcd"_s, u"abcd"_s, u"a"_s, 4, u"bcda"_s, 4},
              Row{u"to its own place"_s, u"abcd"_s, u"abcd"_s, u"b"_s, 1, u"abcd"_s, 2},
              Row{u"two down"_s, u"abcde"_s, u"abcde"_s, u"ab"_s, 2, u"cdabe"_s, 4},
              Row{u"two up"_s, u"abcde"_s, u"abcde"_s, u"de"_s, 1, u"adebc"_s, 1},
              Row{u"from both sides"_s, u"abcde"_s, u"abcde"_s, u"ae"_s, 2, u"bcaed"_s, 3},
              Row{u"own and foreign"_s, u"abcd"_s, u"abcd"_s, u"axd"_s, 1, u"baxdc"_s, 2},
              Row{u"in front of a shown card"_s, u"bd"_s, u"abcd"_s, u"x"_s, 1, u"abcxd"_s, 1},
              Row{u"behind what is hidden"_s, u"ab"_s, u"abcd"_s, u"x"_s, 2, u"abcdx"_s, 2}}) {
            const DropPlan plan =
                planDrop(letters(row.shown), letters(row.all), letters(row.dragged), row.position);
            QStringList cell = letters(row.all);
            for (const auto &[id, place] : plan.moves) {
                cell.removeAll(id);
                QVERIFY(place <= cell.size());
                cell.insert(place, id);
            }
            QCOMPARE(row.name + u": " + cell.join(QString()), row.name + u": " + row.after);
            QCOMPARE(plan.row, row.row);
        }
    }

    void aCardLandsWhereTheGapWas()
    {
        BoardScreen screen({{u"0"_s, u"a b c d"_s}, {u"1"_s, u"x y"_s}});
        CellModel &doing = screen.model(u"1"_s);
        const double middle = 200.0 - BoardDrops::ColumnHeaderHeight;

        const QVariantMap offer = screen.view.beginDrag(u"a"_s);
        QVERIFY(screen.model(u"0"_s).index(0).data(CellModel::IsDraggedRole).toBool());
        QVERIFY(screen.view.dragOver(&doing, offer, middle));
        QCOMPARE(doing.dropRow(), 1);
        QVERIFY(screen.view.drop(&doing, offer, middle));
        screen.settle();

        QCOMPARE(screen.shown(u"0"_s), u"b c d"_s);
        QCOMPARE(screen.shown(u"1"_s), u"x a y"_s);
        QCOMPARE(doing.dropRow(), -1);
        QVERIFY(!doing.index(1).data(CellModel::IsDraggedRole).toBool());
    }

    void aSelectionIsDraggedWhole()
    {
        BoardScreen screen({{u"0"_s, u"a b c d"_s}, {u"1"_s, u"x y"_s}});
        screen.select({u"x"_s, u"c"_s, u"a"_s});
        CellModel &todo = screen.model(u"0"_s);

        QCOMPARE(screen.view.draggedTaskCount(u"c"_s), 3);
        QCOMPARE(screen.view.draggedTaskCount(u"b"_s), 1);
        QVERIFY(screen.view.drop(&todo, screen.view.beginDrag(u"c"_s), 0.0));
        screen.settle();
        QCOMPARE(screen.shown(u"0"_s), u"a c x b d"_s);
        QCOMPARE(screen.shown(u"1"_s), u"y"_s);
    }

    void whatIsCompletedLandsOnTop()
    {
        BoardScreen screen({{u"0"_s, u"a"_s}, {u"2"_s, u"x y"_s}});
        screen.omniFocus.edits.give(true);
        CellModel &done = screen.model(u"2"_s);
        QVERIFY(screen.view.dragOver(&done, textOffer(u"a"_s), 250.0));
        QCOMPARE(done.dropRow(), 0);
        QVERIFY(screen.view.drop(&done, textOffer(u"a"_s), 250.0));
        screen.advance(2.0);
        QCOMPARE(screen.shown(u"2"_s), u"a x y"_s);
        QVERIFY(screen.task(u"a"_s)->isComplete());
    }

    void anyOtherTextIsRefused()
    {
        const QString json = TaskTransferable::ContentType.toString();
        BoardScreen screen({{u"0"_s, u"a"_s}});
        CellModel &doing = screen.model(u"1"_s);
        for (const QVariantMap &offer :
             {textOffer(u"Buy milk"_s), QVariantMap(), textOffer(QString(5000, u'a')),
              QVariantMap{{json, u"{\"id\":\"unknown\"}"_s}}, QVariantMap{{json, u"{"_s}}}) {
            QVERIFY(!screen.view.dragOver(&doing, offer, 10.0));
            QVERIFY(!screen.view.drop(&doing, offer, 10.0));
        }
        BoardDrops(*screen).drop(u"Buy milk"_s, screen.cellId(u"1"_s), 10.0);
        screen.settle();
        QCOMPARE(screen->taskCount(), 1);
        QCOMPARE(screen.shown(u"1"_s), QString());
        QCOMPARE(screen.storedIds(), u"a"_s);
    }

    void aCardTravelsInThreeFormats()
    {
        BoardScreen screen({{u"0"_s, u"a"_s}});
        const QVariantMap offer = screen.view.beginDrag(u"a"_s);
        QCOMPARE(offer.value(u"text/plain"_s).toString(), u"a"_s);
        for (const QString &format : {u"com.vantrel.apps.Vantrel.taskTransferable"_s,
                                      u"application/x-vantrel-task-transferable+json"_s}) {
            const auto card = TaskTransferable::fromJson(offer.value(format).toString().toUtf8());
            QVERIFY(card);
            QCOMPARE(*card, (TaskTransferable{u"a"_s, screen.todo(), screen.first()}));
            QVERIFY(screen.view.dragOver(&screen.model(u"1"_s), {{format, offer.value(format)}}, 0.0));
        }
    }
};

VANTREL_REGISTER_TEST(TestDrops)

} // namespace vantrel::test

#include "test_drops.moc"
