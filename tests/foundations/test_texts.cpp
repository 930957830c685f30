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
    void readsWholeNumbers()
    {
        using Number = std::optional<qint64>;
        constexpr qint64 smallest = std::numeric_limits<qint64>::min();
        for (const auto &[text, number] : {std::pair(u"42"_s, Number(42)),
                                           {u"+3"_s, 3},
                                           {u"-0"_s, 0},
                                           {u"007"_s, 7},
                                           {u"-9223372036854775808"_s, smallest},
                                           {u"9223372036854775808"_s, {}},
                                           {u" 5"_s, {}},
                                           {u"3.5"_s, {}},
                                           {u"-"_s, {}},
                                           {u"+-1"_s, {}},
                                           {u"٣"_s, {}},
                                           {u""_s, {}}}) {
            QVERIFY2(wholeNumberFromText(text) == number, qPrintable(text));
        }
    }

    void writesReals()
    {
        for (const auto &[number, text] : {std::pair(2.0, u"2.0"_s),
                                           {0.1, u"0.1"_s},
                                           {1.2000000000000002, u"1.2000000000000002"_s},
                                           {1e21, u"1e+21"_s}}) {
            QCOMPARE(realText(number), text);
        }
    }

    void matchesAsUnicodeMeansIt()
    {
        struct Row
        {
            const char *name;
            QString pattern, text, captured;
        };
        const QString word = u"#(\\w+)"_s;
        for (const Row &row :
             {Row{"an umlaut", word, u"#müsli!"_s, u"müsli"_s},
              Row{"a mark of its own", word, u"#e\u0301t"_s, u"e\u0301t"_s},
              Row{"a connector", word, u"#a_b-c"_s, u"a_b"_s},
              Row{"a joiner", word, u"#a\u200Db"_s, u"a\u200Db"_s},
              Row{"no superscript", word, u"#m²"_s, u"m"_s},
              Row{"other digits", u"(\\d+)"_s, u"a١٢b"_s, u"١٢"_s},
              Row{"a blank that does not break", u"a(\\s+)b"_s, u"a\u00A0 b"_s, u"\u00A0 "_s},
              Row{"in a class", u"([\\w-]+)"_s, u"!ü-1!"_s, u"ü-1"_s},
              Row{"an escaped backslash", u"(\\\\w)"_s, u"a\\w"_s, u"\\w"_s},
              Row{"without case", u"(?i)(ÄB)"_s, u"äb"_s, u"äb"_s}}) {
            QVERIFY2(compilePattern(row.pattern).match(row.text).captured(1) == row.captured, row.name);
        }
    }

    void convertsMoments()
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
};

VANTREL_REGISTER_TEST(TestTexts)

} // namespace vantrel::test

#include "test_texts.moc"
