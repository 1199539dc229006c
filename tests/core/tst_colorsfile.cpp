#include "TestSupport.h"
#include "core/ColorsFile.h"
#include "core/DialogService.h"
#include "core/Globals.h"

#include <QDir>
#include <QTest>

class TestColorsFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    QString colorsFile(const TempAppFolder& app) { return app.file("Colors.INI"); }

private slots:
    void defaultsAreThoseOfTheColourTable_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<qint64>("value");
        QTest::newRow("WindowBackColor") << 0 << qint64(16744576);
        QTest::newRow("WindowTextColor") << 1 << qint64(-2147483640);
        QTest::newRow("WindowEndColor") << 2 << qint64(16777215);
        QTest::newRow("TabBackColor") << 3 << qint64(16761024);
        QTest::newRow("TabTextColor") << 4 << qint64(16448);
        QTest::newRow("ListBackColor") << 5 << qint64(14737632);
        QTest::newRow("ListTextColor") << 6 << qint64(-2147483630);
        QTest::newRow("ButtonBackColor") << 7 << qint64(0);
        QTest::newRow("ButtonTextColor") << 8 << qint64(0);
        QTest::newRow("ButtonEndColor") << 9 << qint64(16777215);
    }
    void defaultsAreThoseOfTheColourTable()
    {
        QFETCH(int, index);
        QFETCH(qint64, value);
        resetGlobals();
        QCOMPARE(qint64(*globals().colors()[index]), value);
    }
    void defaultColoursAreWrittenExactly()
    {
        TempAppFolder app;
        QVERIFY(SaveColors());
        QCOMPARE(readAll(colorsFile(app)), testData("Colors.default.INI"));
    }
    void firstStartWithoutFileShowsTheHintAndSavingCreatesIt()
    {
        TempAppFolder app;
        LoadColors();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Use the Tools Tab to Set Window Colors"});
        QCOMPARE(g.WindowBackColor, 0xFF8080);
        QVERIFY(SaveColors());
        QCOMPARE(readAll(colorsFile(app)), testData("Colors.default.INI"));
    }
    void savedColoursLoadBackInFileOrder()
    {
        TempAppFolder app;
        int32_t v = 1;
        for (int32_t* c : g.colors())
            *c = v++ * 1000;
        g.WindowTextColor = int32_t(0x8000000F);
        QVERIFY(SaveColors());
        QCOMPARE(readAll(colorsFile(app)),
                 QByteArray(" 1000 -2147483633  3000  4000  5000  6000  7000  8000  9000  10000 \r\n"));
        resetGlobals();
        g.AppPath = app.path();
        LoadColors();
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(g.WindowBackColor, 1000);
        QCOMPARE(g.WindowTextColor, int32_t(0x8000000F));
        QCOMPARE(g.ButtonEndColor, 10000);
    }
    void systemWindowTextReferenceIsKeptAsRead()
    {
        TempAppFolder app;
        QVERIFY(writeAll(colorsFile(app), " 255 -2147483640  0  0  0  0  0  0  0  0 \r\n"));
        LoadColors();
        QCOMPARE(g.WindowTextColor, int32_t(-2147483640));
    }
    void numberThatIsNoColourIsStoredAsRead()
    {
        TempAppFolder app;
        QVERIFY(writeAll(colorsFile(app), " 2147483647  0  0  0  0  0  0  0  0  0 \r\n"));
        LoadColors();
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(g.WindowBackColor, 2147483647);
    }
    void badValueShowsTheLoadErrorAndKeepsWhatWasRead()
    {
        TempAppFolder app;
        QVERIFY(writeAll(colorsFile(app), " 1  2  three  4 \r\n"));
        LoadColors();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Window Colors"});
        QCOMPARE(g.WindowBackColor, 1);
        QCOMPARE(g.WindowTextColor, 2);
        QCOMPARE(g.WindowEndColor, 0xFFFFFF);
    }
    void shortOrOverflowingFileShowsTheLoadError()
    {
        TempAppFolder app;
        QVERIFY(writeAll(colorsFile(app), " 1  2 \r\n"));
        LoadColors();
        QVERIFY(writeAll(colorsFile(app), " 1  99999999999 \r\n"));
        LoadColors();
        QCOMPARE(DialogService::shownTexts(), (QStringList{"Error Loading Application Window Colors",
                                                           "Error Loading Application Window Colors"}));
    }
    void folderInPlaceOfTheFileShowsTheLoadError()
    {
        TempAppFolder app;
        QVERIFY(QDir(app.path()).mkdir("Colors.INI"));
        LoadColors();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Window Colors"});
    }
    void saveFailureShowsErrorAndReturnsFalse()
    {
        TempAppFolder app;
        QVERIFY(writeAll(colorsFile(app), "old"));
        {
            FileSizeLimit limit(10);
            QVERIFY(!SaveColors());
        }
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error: 61 - Disk full"});
        QCOMPARE(readAll(colorsFile(app)), QByteArray("old"));
    }
};

QTEST_GUILESS_MAIN(TestColorsFile)
#include "tst_colorsfile.moc"
