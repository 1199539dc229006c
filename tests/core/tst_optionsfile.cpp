#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/OptionsFile.h"

#include <QDir>
#include <QTest>

class TestOptionsFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    QString optionsFile(const TempAppFolder& app) { return app.file("Options.INI"); }

    void load(const TempAppFolder& app, const QByteArray& bytes)
    {
        QVERIFY(writeAll(optionsFile(app), bytes));
        LoadOptions();
    }

private slots:
    void defaultOptionsAreWrittenExactly()
    {
        TempAppFolder app;
        QVERIFY(SaveOptions());
        QCOMPARE(readAll(optionsFile(app)), testData("Options.default.INI"));
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void firstStartWithoutFileShowsTheHintOnceAndKeepsDefaults()
    {
        TempAppFolder app;
        LoadOptions();
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"Use the Utility Menu Option - Set Program Options"});
        QCOMPARE(DialogService::shownTitles(), QStringList{"Vantrel 2.0"});
        QCOMPARE(g.MainLeft, 7100);
        QCOMPARE(g.MainWidth, 4700);
        QVERIFY(g.OptOnTop);
        QVERIFY(!g.OptStartUrl);
        // Saving (what Apply does) then creates the file.
        QVERIFY(SaveOptions());
        QCOMPARE(readAll(optionsFile(app)), testData("Options.default.INI"));
    }
    void savedOptionsLoadBack()
    {
        TempAppFolder app;
        g.MainLeft = -300;
        g.MainTop = 1200;
        g.MainHeight = 9000;
        g.MainWidth = 5000;
        g.FontType = 4;
        g.StartListIndex = -1;
        g.OptBold = true;
        g.OptStartList = true;
        g.OptOnTop = false;
        g.StartUrl = "https://start.example/";
        g.NewWindowUrl = "https://new.example/page";
        QVERIFY(SaveOptions());
        QCOMPARE(readAll(optionsFile(app)),
                 QByteArray("-300  1200  9000  5000  4 -1 \r\n 1  0  1  0  0 \r\nhttps://start.example/\r\n"
                            "https://new.example/page\r\n"));
        resetGlobals();
        g.AppPath = app.path();
        LoadOptions();
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(g.MainLeft, -300);
        QCOMPARE(g.MainTop, 1200);
        QCOMPARE(g.MainHeight, 9000);
        QCOMPARE(g.MainWidth, 5000);
        QCOMPARE(g.FontType, 4);
        QCOMPARE(g.StartListIndex, -1);
        QVERIFY(g.OptBold);
        QVERIFY(!g.OptStartUrl);
        QVERIFY(g.OptStartList);
        QVERIFY(!g.OptTheater);
        QVERIFY(!g.OptOnTop);
        QCOMPARE(g.StartUrl, QStringLiteral("https://start.example/"));
        QCOMPARE(g.NewWindowUrl, QStringLiteral("https://new.example/page"));
    }
    void flagsAreOnOnlyWhenExactlyOne()
    {
        TempAppFolder app;
        load(app, " 7100  250  8100  4700  1  0 \r\n 1  1  1  1  1 \r\na\r\nb\r\n");
        QVERIFY(g.OptBold && g.OptStartUrl && g.OptStartList && g.OptTheater && g.OptOnTop);
        load(app, " 7100  250  8100  4700  1  0 \r\n 2  1  -1  0  2 \r\na\r\nb\r\n");
        QVERIFY(!g.OptBold);
        QVERIFY(g.OptStartUrl);
        QVERIFY(!g.OptStartList);
        QVERIFY(!g.OptTheater);
        QVERIFY(!g.OptOnTop);
    }
    void outOfRangeGeometryIsCorrected()
    {
        TempAppFolder app;
        load(app, " 9000  6500  400  2000  1  0 \r\n 0  0  0  0  1 \r\na\r\nb\r\n");
        QCOMPARE(g.MainLeft, 8800);
        QCOMPARE(g.MainTop, 6000);
        QCOMPARE(g.MainHeight, 7100);
        QCOMPARE(g.MainWidth, 9600);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void numbersMaySitOnOneLineOrBeSeparatedByCommas()
    {
        TempAppFolder app;
        load(app, "100,200,3000,4000,2,1,0,1,0,0,1\r\nhttps://s.example/\r\nhttps://n.example/\r\n");
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(g.MainTop, 200);
        QCOMPARE(g.StartListIndex, 1);
        QVERIFY(g.OptStartUrl);
        QVERIFY(g.OptOnTop);
        QCOMPARE(g.NewWindowUrl, QStringLiteral("https://n.example/"));
    }
    void commaInAnAddressEndsItWhenReadBack()
    {
        TempAppFolder app;
        g.StartUrl = "https://a.example/?x=1,2";
        g.NewWindowUrl = "https://n.example/";
        QVERIFY(SaveOptions());
        LoadOptions();
        QCOMPARE(g.StartUrl, QStringLiteral("https://a.example/?x=1"));
        QCOMPARE(g.NewWindowUrl, QStringLiteral("2"));
    }
    void wordInsteadOfNumberShowsTheLoadErrorAndKeepsWhatWasRead()
    {
        TempAppFolder app;
        load(app, " 9000  6500  left  2000  1  0 \r\n 1  1  1  1  1 \r\na\r\nb\r\n");
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
        QCOMPARE(g.MainLeft, 9000); // read before the error, and no correction after it
        QCOMPARE(g.MainTop, 6500);
        QCOMPARE(g.MainHeight, 8100);
        QVERIFY(!g.OptBold);
        QCOMPARE(g.StartUrl, QString::fromLatin1(kDefaultStartUrl));
    }
    void shortFileShowsTheLoadErrorAndSetsNoFlags()
    {
        TempAppFolder app;
        load(app, " 7000  300  8000  4000  2  0 \r\n 1  1  1  1  0 \r\n");
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
        QCOMPARE(g.MainLeft, 7000);
        QCOMPARE(g.FontType, 2);
        QVERIFY(!g.OptBold);
        QVERIFY(g.OptOnTop);
    }
    void emptyFileShowsTheLoadError()
    {
        TempAppFolder app;
        load(app, "");
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
        QCOMPARE(g.MainLeft, 7100);
    }
    void numberTooLargeForTheWindowShowsTheLoadError()
    {
        TempAppFolder app;
        load(app, " 99999  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\na\r\nb\r\n");
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
        QCOMPARE(g.MainLeft, 7100);
    }
    void folderInPlaceOfTheFileShowsTheLoadError()
    {
        TempAppFolder app;
        QVERIFY(QDir(app.path()).mkdir("Options.INI"));
        LoadOptions();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
    }
    void byteOrderMarkAndLfOnlyLinesAreRead()
    {
        TempAppFolder app;
        load(app, "\xEF\xBB\xBF 100  200  3000  4000  0  0 \n 1  0  0  0  1 "
                  "\nhttps://s.example/\nhttps://n.example/");
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(g.MainLeft, 100);
        QVERIFY(g.OptBold);
        QCOMPARE(g.NewWindowUrl, QStringLiteral("https://n.example/"));
    }
    void binaryGarbageShowsTheLoadError()
    {
        TempAppFolder app;
        QByteArray junk;
        for (int i = 0; i < 3000; ++i)
            junk.append(char((i * 131 + 7) & 0xFF));
        load(app, junk);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error Loading Application Options"});
    }
    void saveFailureShowsErrorWithNumberAndText()
    {
        TempAppFolder app;
        {
            ReadOnlyFolder readOnly(app.path());
            QVERIFY(!SaveOptions());
        }
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error: 70 - Permission denied"});
        QVERIFY(!QFile::exists(optionsFile(app)));
    }
};

QTEST_GUILESS_MAIN(TestOptionsFile)
#include "tst_optionsfile.moc"
