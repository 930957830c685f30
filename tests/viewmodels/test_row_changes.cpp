#include "support/TestRegistry.h"
#include "viewmodels/RowChanges.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace vantrel::test {

namespace {

using Kind = RowChange::Kind;

QStringList letters(const QString &text)
{
    QStringList list;
    for (const QChar letter : text) {
        list.append(letter);
    }
    return list;
}

/** Carries the steps out as a model does. */
QStringList carriedOut(QStringList rows, const std::vector<RowChange> &changes, const QStringList &after)
{
    for (const RowChange &change : changes) {
        switch (change.kind) {
        case Kind::Remove:
            rows.remove(change.first, change.count);
            break;
        case Kind::Move:
            rows.move(change.first, change.to);
            break;
        case Kind::Insert:
            for (int row = change.first; row < change.first + change.count; ++row) {
                rows.insert(row, after.value(row));
            }
            break;
        }
    }
    return rows;
}

/** "-0 >3:1 +2" and so on. */
QString written(const std::vector<RowChange> &changes)
{
    QStringList steps;
    for (const RowChange &change : changes) {
        const QString first = QString::number(change.first);
        const QString last =
            change.count > 1 ? QString::number(-(change.first + change.count - 1)) : QString();
        const QString rows = first + last;
        switch (change.kind) {
        case Kind::Remove:
            steps.append(u'-' + rows);
            break;
        case Kind::Move:
            steps.append(u'>' + first + u':' + QString::number(change.to));
            break;
        case Kind::Insert:
            steps.append(u'+' + rows);
            break;
        }
    }
    return steps.join(u' ');
}

} // namespace

class TestRowChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeTakesTheFewestSteps_data();
    void aChangeTakesTheFewestSteps();
    void anyListBecomesAnyOther();
    void aShuffleOfManyRowsDoesNotMoveThemOneByOne();
};

void TestRowChanges::aChangeTakesTheFewestSteps_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("steps");

    QTest::newRow("nothing changed") << "abcd"
                                     << "abcd"
                                     << "";
    QTest::newRow("one moved down") << "abcde"
                                    << "bcdae"
                                    << ">0:3";
    QTest::newRow("one moved up") << "abcde"
                                  << "adbce"
                                  << ">3:1";
    QTest::newRow("neighbours changed places") << "abcd"
                                               << "acbd"
                                               << ">1:2";
    QTest::newRow("one left") << "abcd"
                              << "abd"
                              << "-2";
    QTest::newRow("one came") << "abd"
                              << "abcd"
                              << "+2";
    QTest::newRow("runs leave and come whole") << "abcdef"
                                               << "aefxy"
                                               << "-1-3 +3-4";
    QTest::newRow("all replaced") << "abc"
                                  << "xyz"
                                  << "-0-2 +0-2";
    QTest::newRow("emptied") << "abc"
                             << ""
                             << "-0-2";
    QTest::newRow("filled") << ""
                            << "abc"
                            << "+0-2";
    QTest::newRow("one left, one moved, one came") << "abcde"
                                                   << "xcabd"
                                                   << "-4 >2:0 +0";
}

void TestRowChanges::aChangeTakesTheFewestSteps()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const std::vector<RowChange> changes = rowChanges(letters(before), letters(after));
    QTEST(written(changes), "steps");
    QCOMPARE(carriedOut(letters(before), changes, letters(after)), letters(after));
}

void TestRowChanges::anyListBecomesAnyOther()
{
    QRandomGenerator random(20261102);
    for (int round = 0; round < 2000; ++round) {
        const auto someIds = [&random] {
            QStringList ids;
            for (int i = 0; i < 60; ++i) {
                if (random.bounded(3) > 0) ids.append(QString::number(i));
            }
            for (int swaps = random.bounded(8); swaps > 0; --swaps) {
                ids.move(random.bounded(int(ids.size())), random.bounded(int(ids.size())));
            }
            return ids;
        };
        const QStringList before = someIds();
        const QStringList after = someIds();
        QCOMPARE(carriedOut(before, rowChanges(before, after), after), after);
    }
}

void TestRowChanges::aShuffleOfManyRowsDoesNotMoveThemOneByOne()
{
    QStringList before;
    for (int i = 0; i < 5000; ++i) {
        before.append(QString::number(i));
    }
    QStringList after = before;
    std::reverse(after.begin(), after.end());
    const std::vector<RowChange> changes = rowChanges(before, after);
    QVERIFY(std::none_of(changes.begin(), changes.end(),
                         [](const RowChange &change) { return change.kind == Kind::Move; }));
    QVERIFY(changes.size() <= 4);
    QCOMPARE(carriedOut(before, changes, after), after);
}

VANTREL_REGISTER_TEST(TestRowChanges)

} // namespace vantrel::test

#include "test_row_changes.moc"
