#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"

#include <QTest>

class TestListFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();

    void setRecord(int i, const QString& name, const QString& title, const QString& url)
    {
        g.ListName[i] = name;
        g.ListTitle[i] = title;
        g.ListUrl[i] = url;
    }
    QString listFile(const TempAppFolder& app) { return app.file("DefaultList.NLS"); }

private slots:
    void savedFileMatchesTheFormatExactly()
    {
        TempAppFolder app;
        setRecord(0, "News", "Daily Paper, Morning", "https://news.example/today?a=1,b=2");
        setRecord(1, "News", "Weather", "https://weather.example/");
        setRecord(2, "Work", "", "");
        g.ListsChanged = true;
        QVERIFY(SaveListFile(3));
        QCOMPARE(readAll(listFile(app)), testData("list.golden.NLS"));
        QVERIFY(!g.ListsChanged);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void goldenFileLoadsIntoTheArrays()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), testData("list.golden.NLS")));
        QVERIFY(LoadListFile(listFile(app)));
        QCOMPARE(g.ListCount, 3);
        QCOMPARE(g.ListTitle[0], QStringLiteral("Daily Paper, Morning"));
        QCOMPARE(g.ListUrl[0], QStringLiteral("https://news.example/today?a=1,b=2"));
        QCOMPARE(g.ListName[1], QStringLiteral("News"));
        QCOMPARE(g.ListName[2], QStringLiteral("Work"));
    }
    void titleWithCommaSurvivesSaveAndLoad()
    {
        TempAppFolder app;
        setRecord(0, "L", "A, B", "u");
        QVERIFY(SaveListFile(1));
        QVERIFY(readAll(listFile(app)).contains("A~ B"));
        resetGlobals();
        g.AppPath = app.path();
        LoadListFile(listFile(app));
        QCOMPARE(g.ListTitle[0], QStringLiteral("A, B"));
    }
    void tildeInTitleComesBackAsComma()
    {
        TempAppFolder app;
        setRecord(0, "L", "A~B", "u");
        QVERIFY(SaveListFile(1));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListTitle[0], QStringLiteral("A,B"));
    }
    void emptyFileGivesNoLists()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), ""));
        g.ListCount = 7;
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 0);
    }
    void nameWithTwoDelimitersHasEmptyTitleAndAddress()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "Only Name[#@!][#@!]\r\n"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 1);
        QCOMPARE(g.ListName[0], QStringLiteral("Only Name"));
        QCOMPARE(g.ListTitle[0], QString());
        QCOMPARE(g.ListUrl[0], QString());
    }
    void lineWithOneDelimiterEndsTheLoadBeforeIt()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "A[#@!]t1[#@!]u1\r\nBroken[#@!]no second\r\nC[#@!]t3[#@!]u3\r\n"));
        QVERIFY(!LoadListFile(listFile(app)));
        QCOMPARE(g.ListCount, 1);
        QCOMPARE(g.ListUrl[0], QStringLiteral("u1"));
        // The bad line's list name is already in place, uncounted; nothing after it is read.
        QCOMPARE(g.ListName[1], QStringLiteral("Broken"));
        QCOMPARE(g.ListTitle[1], QString());
        QCOMPARE(g.ListName[2], QString());
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void lineWithoutDelimitersEndsTheLoad()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "A[#@!]t[#@!]u\r\n\r\nB[#@!]t[#@!]u\r\n"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 1);
        QCOMPARE(g.ListName[1], QString());
    }
    void loadingClearsTheHistoryEvenWhenTheListFileIsMissing()
    {
        TempAppFolder app;
        g.HistGroup[0] = "Internet Explorer 1";
        g.HistUrl[9999] = "u";
        g.HistoryCount = 2;
        QVERIFY(!LoadListFile(listFile(app)));
        QCOMPARE(g.HistGroup[0], QString());
        QCOMPARE(g.HistUrl[9999], QString());
        QCOMPARE(g.HistoryCount, 0);
        QCOMPARE(g.ListCount, 0);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void clearingLeavesTheLastElementOfEachArray()
    {
        TempAppFolder app;
        setRecord(999, "a", "b", "c");
        setRecord(1000, "x", "y", "z");
        g.HistTitle[10000] = "kept";
        ClearListsAndHistory();
        QCOMPARE(g.ListName[999], QString());
        QCOMPARE(g.ListName[1000], QStringLiteral("x"));
        QCOMPARE(g.ListUrl[1000], QStringLiteral("z"));
        QCOMPARE(g.HistTitle[10000], QStringLiteral("kept"));
    }
    void savingWritesOneLinePerTreeNodeWhateverListCountHolds()
    {
        TempAppFolder app;
        for (int i = 0; i < 5; ++i)
            setRecord(i, "L", QString("t%1").arg(i), "u");
        g.ListCount = 5;
        QVERIFY(SaveListFile(3));
        QCOMPARE(readAll(listFile(app)).count("\r\n"), 3);
        g.ListCount = 1;
        QVERIFY(SaveListFile(3));
        QCOMPARE(readAll(listFile(app)).count("\r\n"), 3);
    }
    void atMost1001RecordsAreLoaded()
    {
        TempAppFolder app;
        QByteArray bytes;
        for (int i = 0; i < 1005; ++i)
            bytes += "L[#@!]t" + QByteArray::number(i) + "[#@!]u\r\n";
        QVERIFY(writeAll(listFile(app), bytes));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 1001);
        QCOMPARE(g.ListTitle[1000], QStringLiteral("t1000"));
    }
    void savingMoreNodesThanRecordsIsSubscriptOutOfRange()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "old\r\n"));
        g.ListsChanged = true;
        QVERIFY(!SaveListFile(1002));
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 9 - Subscript out of range"});
        QVERIFY(g.ListsChanged);
        QCOMPARE(readAll(listFile(app)), QByteArray("old\r\n"));
    }
    void unwritableFolderShowsPermissionDeniedAndKeepsTheFile()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "old\r\n"));
        setRecord(0, "L", "t", "u");
        g.ListsChanged = true;
        bool saved = true;
        {
            ReadOnlyFolder readOnly(app.path());
            saved = SaveListFile(1);
        }
        QVERIFY(!saved);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 70 - Permission denied"});
        QCOMPARE(DialogService::shownTitles(), QStringList{"Vantrel 2.0"});
        QVERIFY(g.ListsChanged);
        QCOMPARE(readAll(listFile(app)), QByteArray("old\r\n"));
    }
    void fullDiskShowsDiskFullAndKeepsTheFile()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "old\r\n"));
        for (int i = 0; i < 100; ++i)
            setRecord(i, "List", "A long enough title", "https://example.org/");
        g.ListsChanged = true;
        bool saved = true;
        {
            FileSizeLimit limit(64);
            saved = SaveListFile(100);
        }
        QVERIFY(!saved);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 61 - Disk full"});
        QVERIFY(g.ListsChanged);
        QCOMPARE(readAll(listFile(app)), QByteArray("old\r\n"));
    }
    void missingProgramFolderShowsPathNotFound()
    {
        TempAppFolder app;
        g.AppPath = app.file("gone");
        QVERIFY(!SaveListFile(0));
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 76 - Path not found"});
    }
    void sortingMovesNoRecord()
    {
        TempAppFolder app;
        setRecord(0, "Zeta", "z", "1");
        setRecord(1, "Alpha", "a", "2");
        setRecord(2, "Mid", "m", "3");
        g.ListCount = 3;
        SortLists();
        QCOMPARE(g.ListName[0], QStringLiteral("Zeta"));
        QCOMPARE(g.ListName[1], QStringLiteral("Alpha"));
        QCOMPARE(g.ListUrl[2], QStringLiteral("3"));
    }
    void byteOrderMarkLfOnlyAndOldCodePageAreRead()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app),
                         "\xEF\xBB\xBFL[#@!]Caf\xC3\xA9[#@!]u1\nL[#@!]t2[#@!]u2\rL[#@!]t3[#@!]u3"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 3);
        QCOMPARE(g.ListName[0], QStringLiteral("L"));
        QCOMPARE(g.ListTitle[0], QString::fromUtf8("Café"));
        QCOMPARE(g.ListUrl[2], QStringLiteral("u3"));

        QVERIFY(writeAll(listFile(app), "L[#@!]Caf\xE9 \x93x\x94[#@!]u\r\n"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListTitle[0], QString::fromUtf8("Café “x”"));
    }
    void nonAsciiSurvivesSaveAndLoad()
    {
        TempAppFolder app;
        setRecord(0, QString::fromUtf8("Čtení"), QString::fromUtf8("日本語のページ"), "https://例え.jp/");
        QVERIFY(SaveListFile(1));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListName[0], QString::fromUtf8("Čtení"));
        QCOMPARE(g.ListTitle[0], QString::fromUtf8("日本語のページ"));
    }
    void quotedLineLosesItsQuotesAndCommaFromOutsideIsKept()
    {
        TempAppFolder app;
        QVERIFY(writeAll(listFile(app), "\"L[#@!]t[#@!]u\"\r\nL[#@!]a,b[#@!]u\r\n"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 2);
        QCOMPARE(g.ListName[0], QStringLiteral("L"));
        QCOMPARE(g.ListUrl[0], QStringLiteral("u"));
        QCOMPARE(g.ListTitle[1], QStringLiteral("a,b"));
    }
    void veryLongLineIsReadWhole()
    {
        TempAppFolder app;
        const QByteArray title(200000, 'T');
        QVERIFY(writeAll(listFile(app), "L[#@!]" + title + "[#@!]u\r\n"));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 1);
        QCOMPARE(g.ListTitle[0].size(), 200000);
    }
    void binaryGarbageNeitherCrashesNorInventsRecords()
    {
        TempAppFolder app;
        QByteArray junk;
        for (int i = 0; i < 5000; ++i)
            junk.append(char((i * 7919) & 0xFF));
        QVERIFY(writeAll(listFile(app), junk));
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 0);
    }
    void roundTripOfManyRecords()
    {
        TempAppFolder app;
        for (int i = 0; i < 1001; ++i)
            setRecord(i, QString("List %1").arg(i % 7), QString("Title, %1 ~").arg(i),
                      QString("https://e.org/%1").arg(i));
        QVERIFY(SaveListFile(1001));
        const QByteArray first = readAll(listFile(app));
        resetGlobals();
        g.AppPath = app.path();
        LoadListFile(listFile(app));
        QCOMPARE(g.ListCount, 1001);
        QCOMPARE(g.ListTitle[500], QStringLiteral("Title, 500 ,")); // the "~" comes back as ","
        QVERIFY(SaveListFile(1001));
        QCOMPARE(readAll(listFile(app)), first);
    }
};

QTEST_GUILESS_MAIN(TestListFile)
#include "tst_listfile.moc"
