#include "foundations/Date.h"
#include "foundations/Pattern.h"
#include "foundations/Text.h"
#include "support/TestRegistry.h"

#include <QTest>

#include <limits>

namespace vantrel::test {

using namespace Qt::StringLiterals;

/** Numbers, hashes, patterns and moments as text. */
class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWholeNumbers_data();
    void readsWholeNumbers();
    void writesReals_data();
    void writesReals();
    void hashesAsFnv1a();
    void matchesAsUnicodeMeansIt_data();
    void matchesAsUnicodeMeansIt();
    void convertsMoments();
};

void TestTexts::readsWholeNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("number");
    QTest::newRow("digits") << u"42"_s << u"42"_s;
    QTest::newRow("a plus") << u"+3"_s << u"3"_s;
    QTest::newRow("a minus") << u"-0"_s << u"0"_s;
    QTest::newRow("leading zeros") << u"007"_s << u"7"_s;
    QTest::newRow("the smallest") << u"-9223372036854775808"_s << u"-9223372036854775808"_s;
    QTest::newRow("one too many") << u"9223372036854775808"_s << u"none"_s;
    QTest::newRow("a blank") << u" 5"_s << u"none"_s;
    QTest::newRow("a fraction") << u"3.5"_s << u"none"_s;
    QTest::newRow("a sign alone") << u"-"_s << u"none"_s;
    QTest::newRow("two signs") << u"+-1"_s << u"none"_s;
    QTest::newRow("digits of another script") << u"٣"_s << u"none"_s;
    QTest::newRow("empty") << u""_s << u"none"_s;
}

void TestTexts::readsWholeNumbers()
{
    QFETCH(QString, text);
    const std::optional<qint64> number = wholeNumberFromText(text);
    QTEST(number ? QString::number(*number) : u"none"_s, "number");
}

void TestTexts::writesReals_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 2.0 << u"2.0"_s;
    QTest::newRow("tenth") << 0.1 << u"0.1"_s;
    QTest::newRow("in full") << 1.2000000000000002 << u"1.2000000000000002"_s;
    QTest::newRow("large") << 1e21 << u"1e+21"_s;
}

void TestTexts::writesReals()
{
    QFETCH(double, number);
    QTEST(realText(number), "text");
    QCOMPARE(realText(number).toDouble(), number);
}

void TestTexts::hashesAsFnv1a()
{
    QCOMPARE(stableHash(u""), 0xcbf29ce484222325u);
    QCOMPARE(stableHash(u"a"), 0xaf63dc4c8601ec8cu);
    QCOMPARE(stableHash(u"foobar"), 0x85944171f73967e8u);
    QVERIFY(stableHash(u"é") != stableHash(u"e\u0301"));
}

void TestTexts::matchesAsUnicodeMeansIt_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("captured");
    QTest::newRow("an umlaut") << u"#(\\w+)"_s << u"#müsli!"_s << u"müsli"_s;
    QTest::newRow("a mark of its own") << u"#(\\w+)"_s << u"#e\u0301t"_s << u"e\u0301t"_s;
    QTest::newRow("a connector") << u"#(\\w+)"_s << u"#a_b-c"_s << u"a_b"_s;
    QTest::newRow("a joiner") << u"#(\\w+)"_s << u"#a\u200Db"_s << u"a\u200Db"_s;
    QTest::newRow("no superscript") << u"#(\\w+)"_s << u"#m²"_s << u"m"_s;
    QTest::newRow("other digits") << u"(\\d+)"_s << u"a١٢b"_s << u"١٢"_s;
    QTest::newRow("a blank that does not break") << u"a(\\s+)b"_s << u"a\u00A0 b"_s << u"\u00A0 "_s;
    QTest::newRow("in a class") << u"([\\w-]+)"_s << u"!ü-1!"_s << u"ü-1"_s;
    QTest::newRow("an escaped backslash") << u"(\\\\w)"_s << u"a\\w"_s << u"\\w"_s;
    QTest::newRow("without case") << u"(?i)(ÄB)"_s << u"äb"_s << u"äb"_s;
}

void TestTexts::matchesAsUnicodeMeansIt()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    const QRegularExpression expression = compilePattern(pattern);
    QVERIFY2(expression.isValid(), qPrintable(expression.errorString()));
    QTEST(expression.match(text).captured(1), "captured");
}

void TestTexts::convertsMoments()
{
    QCOMPARE(Date(0.0).description(), u"2001-01-01 00:00:00 +0000"_s);
    const QDateTime moment(QDate(2026, 3, 29), QTime(1, 59, 59, 999), Qt::UTC);
    QCOMPARE(Date::fromDateTime(moment).toDateTime(), moment);
    QCOMPARE(Date::fromDateTime(QDateTime(QDate(1999, 12, 31), QTime(23, 0), Qt::UTC)).seconds(),
             -31'626'000.0);
    QVERIFY(Date(1.0) < Date(1.0 + 1e-9));
    QCOMPARE(wholeDays(86399.9), 0);
    QCOMPARE(wholeDays(-86400.0 * 2.5), -2);
    QCOMPARE(wholeDays(std::numeric_limits<double>::quiet_NaN()), 0);
    QCOMPARE(wholeDays(std::numeric_limits<double>::infinity()), 0);
}

VANTREL_REGISTER_TEST(TestTexts)

} // namespace vantrel::test

#include "test_texts.moc"
