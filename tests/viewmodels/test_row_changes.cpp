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
    return text.split(QString(), Qt::SkipEmptyParts);
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

/** "-0 >3:1 +2-4" and so on. */
QString written(const std::vector<RowChange> &changes)
{
    QStringList steps;
    for (const RowChange &change : changes) {
        const QString first = QString::number(change.first);
        const int last = change.first + change.count - 1;
        const QString rows = last > change.first ? first + u'-' + QString::number(last) : first;
        if (change.kind == Kind::Remove) steps.append(u'-' + rows);
        if (change.kind == Kind::Move) steps.append(u'>' + first + u':' + QString::number(change.to));
        if (change.kind == Kind::Insert) steps.append(u'+' + rows);
    }
    return steps.join(u' ');
}

} // namespace

class TestRowChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeTakesTheFewestSteps()
    {
        struct Row
        {
            QString before, after, steps;
        };
        for (const Row &row :
             {Row{u"abcd"_s, u"abcd"_s, u""_s}, Row{u"abcde"_s, u"bcdae"_s, u">0:3"_s},
              Row{u"abcde"_s, u"adbce"_s, u">3:1"_s}, Row{u"abcd"_s, u"acbd"_s, u">1:2"_s},
              Row{u"abcd"_s, u"abd"_s, u"-2"_s}, Row{u"abd"_s, u"abcd"_s, u"+2"_s},
              Row{u"abcdef"_s, u"aefxy"_s, u"-1-3 +3-4"_s}, Row{u"abc"_s, u"xyz"_s, u"-0-2 +0-2"_s},
              Row{u"abc"_s, u""_s, u"-0-2"_s}, Row{u""_s, u"abc"_s, u"+0-2"_s},
              Row{u"abcde"_s, u"xcabd"_s, u"-4 >2:0 +0"_s}}) {
            const QStringList before = letters(row.before);
            const QStringList after = letters(row.after);
            const std::vector<RowChange> changes = rowChanges(before, after);
            QCOMPARE(written(changes), row.steps);
            QCOMPARE(carriedOut(before, changes, after), after);
        }
    }

    void anyListBecomesAnyOther()
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

    void aShuffleOfManyRowsDoesNotMoveThemOneByOne()
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
};

VANTREL_REGISTER_TEST(TestRowChanges)

} // namespace vantrel::test

#include "test_row_changes.moc"
