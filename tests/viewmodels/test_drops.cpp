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
    QStringList list;
    for (const QChar letter : text) {
        list.append(letter);
    }
    return list;
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
    void aHeightAsksForAPlace_data();
    void aHeightAsksForAPlace();
    void droppedCardsStandOneBehindTheOther_data();
    void droppedCardsStandOneBehindTheOther();
    void aCardLandsWhereTheGapWas();
    void aSelectionIsDraggedWhole();
    void whatIsCompletedLandsOnTop();
    void anyOtherTextIsRefused_data();
    void anyOtherTextIsRefused();
    void aCardTravelsInThreeFormats();
};

void TestDrops::aHeightAsksForAPlace_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("position");

    QTest::newRow("empty cell") << 200.0 << 0 << 0;
    QTest::newRow("top band") << 49.0 << 4 << 0;
    QTest::newRow("its lower end") << 50.0 << 4 << 0;
    QTest::newRow("in between") << 200.0 << 4 << 2;
    QTest::newRow("lower end") << 300.0 << 4 << 3;
    QTest::newRow("below") << 350.0 << 4 << 4;
    QTest::newRow("below, long cell") << 350.0 << 90 << 90;
    QTest::newRow("behind few cards") << 101.0 << 1 << 1;
    QTest::newRow("beside few cards") << 100.0 << 1 << 0;
}

void TestDrops::aHeightAsksForAPlace()
{
    QFETCH(double, y);
    QFETCH(int, count);
    QTEST(calculateTargetPosition(y, count), "position");
}

void TestDrops::droppedCardsStandOneBehindTheOther_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("all");
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("row");

    QTest::newRow("from elsewhere") << "abc"
                                    << "abc"
                                    << "x" << 1 << "axbc" << 1;
    QTest::newRow("from elsewhere to the end") << "abc"
                                               << "abc"
                                               << "x" << 3 << "abcx" << 3;
    QTest::newRow("two from elsewhere") << "abc"
                                        << "abc"
                                        << "xy" << 1 << "axybc" << 1;
    QTest::newRow("down in its cell") << "abcd"
                                      << "abcd"
                                      << "a" << 2 << "bcad" << 3;
    QTest::newRow("up in its cell") << "abcd"
                                    << "abcd"
                                    << "d" << 1 << "adbc" << 1;
    QTest::newRow("past the end of its cell") << "abcd"
                                              << "abcd"
                                              << "a" << 4 << "bcda" << 4;
    QTest::newRow("to its own place") << "abcd"
                                      << "abcd"
                                      << "b" << 1 << "abcd" << 2;
    QTest::newRow("two down") << "abcde"
                              << "abcde"
                              << "ab" << 2 << "cdabe" << 4;
    QTest::newRow("two up") << "abcde"
                            << "abcde"
                            << "de" << 1 << "adebc" << 1;
    QTest::newRow("from both sides") << "abcde"
                                     << "abcde"
                                     << "ae" << 2 << "bcaed" << 3;
    QTest::newRow("own and foreign") << "abcd"
                                     << "abcd"
                                     << "axd" << 1 << "baxdc" << 2;
    QTest::newRow("in front of a shown card") << "bd"
                                              << "abcd"
                                              << "x" << 1 << "abcxd" << 1;
    QTest::newRow("behind what is hidden") << "ab"
                                           << "abcd"
                                           << "x" << 2 << "abcdx" << 2;
}

void TestDrops::droppedCardsStandOneBehindTheOther()
{
    QFETCH(QString, shown);
    QFETCH(QString, all);
    QFETCH(QString, dragged);
    QFETCH(int, position);
    const DropPlan plan = planDrop(letters(shown), letters(all), letters(dragged), position);

    QStringList cell = letters(all);
    for (const auto &[id, place] : plan.moves) {
        cell.removeAll(id);
        QVERIFY(place <= cell.size());
        cell.insert(place, id);
    }
    QTEST(cell.join(QString()), "after");
    QTEST(plan.row, "row");
}

void TestDrops::aCardLandsWhereTheGapWas()
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

void TestDrops::aSelectionIsDraggedWhole()
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

void TestDrops::whatIsCompletedLandsOnTop()
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

void TestDrops::anyOtherTextIsRefused_data()
{
    QTest::addColumn<QVariantMap>("offer");
    const QString json = TaskTransferable::ContentType.toString();
    QTest::newRow("some text") << textOffer(u"Buy milk"_s);
    QTest::newRow("nothing") << QVariantMap();
    QTest::newRow("a novel") << textOffer(QString(5000, u'a'));
    QTest::newRow("a card of another board") << QVariantMap{{json, u"{\"id\":\"unknown\"}"_s}};
    QTest::newRow("no JSON") << QVariantMap{{json, u"{"_s}};
}

void TestDrops::anyOtherTextIsRefused()
{
    QFETCH(QVariantMap, offer);
    BoardScreen screen({{u"0"_s, u"a"_s}});
    CellModel &doing = screen.model(u"1"_s);
    QVERIFY(!screen.view.dragOver(&doing, offer, 10.0));
    QVERIFY(!screen.view.drop(&doing, offer, 10.0));
    BoardDrops(*screen).drop(u"Buy milk"_s, screen.cellId(u"1"_s), 10.0);
    screen.settle();
    QCOMPARE(screen->taskCount(), 1);
    QCOMPARE(screen.shown(u"1"_s), QString());
    QCOMPARE(screen.storedIds(), u"a"_s);
}

void TestDrops::aCardTravelsInThreeFormats()
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

VANTREL_REGISTER_TEST(TestDrops)

} // namespace vantrel::test

#include "test_drops.moc"
