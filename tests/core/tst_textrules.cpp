#include "core/SequentialInput.h"
#include "core/TextRules.h"

#include <QTest>

using namespace TextRules;

class TestTextRules : public QObject
{
    Q_OBJECT
private slots:
    void valReadsTheLeadingNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        QTest::newRow("digits") << "12" << 12.0;
        QTest::newRow("word") << "Five" << 0.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("trailing text") << "7abc" << 7.0;
        QTest::newRow("blanks anywhere") << " 1 2\t3" << 123.0;
        QTest::newRow("fraction") << "5.5x" << 5.5;
        QTest::newRow("exponent") << "1e3" << 1000.0;
        QTest::newRow("sign") << "-4" << -4.0;
        QTest::newRow("hex") << "&H1F" << 31.0;
        QTest::newRow("hex 16-bit negative") << "&HFFFF" << -1.0;
        QTest::newRow("octal") << "&O17" << 15.0;
        QTest::newRow("lone dot") << "." << 0.0;
    }
    void valReadsTheLeadingNumber()
    {
        QFETCH(QString, text);
        QFETCH(double, value);
        QCOMPARE(val(text), value);
    }
    void integersRoundHalvesToEven()
    {
        RunError e;
        QCOMPARE(*toInteger(2.5, &e), 2);
        QCOMPARE(*toInteger(3.5, &e), 4);
        QCOMPARE(*toInteger(-2.5, &e), -2);
        QCOMPARE(*toInteger(32767, &e), 32767);
        QVERIFY(e.ok());
        QVERIFY(!toInteger(32768, &e));
        QCOMPARE(e.number, 6);
        QCOMPARE(*toLong(-2147483648.0, &e), int32_t(-2147483647 - 1));
        e = RunError();
        QVERIFY(!toLong(2147483648.0, &e));
        QCOMPARE(e.number, 6);
    }
    void numberTokensMustBeWholeNumbers()
    {
        RunError e;
        QCOMPARE(*parseNumberToken("", &e), 0.0);
        QCOMPARE(*parseNumberToken("-12", &e), -12.0);
        QCOMPARE(*parseNumberToken("&H10", &e), 16.0);
        QVERIFY(e.ok());
        QVERIFY(!parseNumberToken("12abc", &e));
        QCOMPARE(e.number, 13);
        QVERIFY(!parseNumberToken("abc", &e));
    }
    void printedNumbersHaveSignPlaceAndTrailingBlank()
    {
        QCOMPARE(printNumber(7100), QStringLiteral(" 7100 "));
        QCOMPARE(printNumber(0), QStringLiteral(" 0 "));
        QCOMPARE(printNumber(-1), QStringLiteral("-1 "));
        QCOMPARE(printNumber(-2147483640), QStringLiteral("-2147483640 "));
    }
    void onePairOfEnclosingQuotesIsRemoved()
    {
        QCOMPARE(stripEnclosingQuotes("\"a[#@!]b\""), QStringLiteral("a[#@!]b"));
        QCOMPARE(stripEnclosingQuotes("\"\"x\"\""), QStringLiteral("\"x\""));
        QCOMPARE(stripEnclosingQuotes("\"open"), QStringLiteral("\"open"));
        QCOMPARE(stripEnclosingQuotes("\""), QStringLiteral("\""));
        QCOMPARE(inputLines("\"a\"\r\nb,c\r\n"), (QStringList{"a", "b,c"}));
    }
    void trimRemovesSpacesOnly()
    {
        QCOMPARE(trimSpaces("  a b  "), QStringLiteral("a b"));
        QCOMPARE(trimSpaces("\ta\t"), QStringLiteral("\ta\t"));
        QCOMPARE(trimSpaces("   "), QString());
    }
    void sequentialInputCrossesLinesAndSplitsAtBlanksAndCommas()
    {
        SequentialInput in(" 1  2,3\r\n\r\n 4 \r\n  some text , next\r\n\"quoted, with comma\" tail\r\nlast");
        double v = 0;
        RunError e;
        for (double expected : {1.0, 2.0, 3.0, 4.0}) {
            QVERIFY(in.readNumber(&v, &e));
            QCOMPARE(v, expected);
        }
        QString s;
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QStringLiteral("some text"));
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QStringLiteral("next"));
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QStringLiteral("quoted, with comma"));
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QStringLiteral("last"));
        QVERIFY(!in.readString(&s, &e));
        QCOMPARE(e.number, 62);
    }
    void sequentialInputReadsAnEmptyLineAsEmptyString()
    {
        SequentialInput in(" 1 \r\n\r\nb\r\n");
        double v = 0;
        RunError e;
        QString s;
        QVERIFY(in.readNumber(&v, &e));
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QString());
        QVERIFY(in.readString(&s, &e));
        QCOMPARE(s, QStringLiteral("b"));
    }
    void sequentialInputRefusesWordsAsNumbers()
    {
        SequentialInput in("12 left");
        double v = 0;
        RunError e;
        QVERIFY(in.readNumber(&v, &e));
        QVERIFY(!in.readNumber(&v, &e));
        QCOMPARE(e.number, 13);
        SequentialInput empty("  \r\n");
        QVERIFY(!empty.readNumber(&v, &e));
        QCOMPARE(e.number, 62);
    }
};

QTEST_GUILESS_MAIN(TestTextRules)
#include "tst_textrules.moc"
