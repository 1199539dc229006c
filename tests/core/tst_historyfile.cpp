#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"

#include <QTest>

class TestHistoryFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();

    void setRecord(int i, const QString& group, const QString& title, const QString& url)
    {
        g.HistGroup[i] = group;
        g.HistTitle[i] = title;
        g.HistUrl[i] = url;
    }
    QString historyFile(const TempAppFolder& app) { return app.file("BrowseHistory.LST"); }

private slots:
    void savedFileMatchesTheFormatExactly()
    {
        TempAppFolder app;
        setRecord(0, "Internet Explorer 1", "Start Page", "https://www.example.org/");
        setRecord(1, "Internet Explorer 2", "A, B", "https://b.example/?x=1,y=2");
        g.HistoryChanged = true;
        QVERIFY(SaveHistoryFile(2));
        QCOMPARE(readAll(historyFile(app)), testData("history.golden.LST"));
        QVERIFY(!g.HistoryChanged);
    }
    void titleWithCommaSurvivesSaveAndRestart()
    {
        TempAppFolder app;
        setRecord(0, "Internet Explorer 3", "Shops, Prices", "https://s.example/");
        QVERIFY(SaveHistoryFile(1));
        resetGlobals();
        g.AppPath = app.path();
        LoadListFile(app.file("DefaultList.NLS")); // the start-up order: lists, then history
        QVERIFY(LoadHistoryFile(historyFile(app)));
        QCOMPARE(g.HistoryCount, 1);
        QCOMPARE(g.HistTitle[0], QStringLiteral("Shops, Prices"));
        QCOMPARE(g.HistGroup[0], QStringLiteral("Internet Explorer 3"));
    }
    void emptyFileGivesNoHistoryButTheFileExists()
    {
        TempAppFolder app;
        QVERIFY(writeAll(historyFile(app), ""));
        g.HistoryCount = 4;
        LoadHistoryFile(historyFile(app));
        QCOMPARE(g.HistoryCount, 0);
        QVERIFY(QFile::exists(historyFile(app)));
    }
    void missingFileIsSilent()
    {
        TempAppFolder app;
        QVERIFY(!LoadHistoryFile(historyFile(app)));
        QCOMPARE(g.HistoryCount, 0);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void loadingDoesNotClearTheArrays()
    {
        TempAppFolder app;
        g.HistTitle[5] = "left over";
        QVERIFY(writeAll(historyFile(app), "G[#@!]t[#@!]u\r\n"));
        LoadHistoryFile(historyFile(app));
        QCOMPARE(g.HistoryCount, 1);
        QCOMPARE(g.HistTitle[5], QStringLiteral("left over"));
    }
    void savingWritesOneLinePerTreeNode()
    {
        TempAppFolder app;
        for (int i = 0; i < 6; ++i)
            setRecord(i, "G", "t", "u");
        g.HistoryCount = 6;
        QVERIFY(SaveHistoryFile(4));
        QCOMPARE(readAll(historyFile(app)).count("\r\n"), 4);
        QVERIFY(SaveHistoryFile(0));
        QCOMPARE(readAll(historyFile(app)), QByteArray());
    }
    void badLineEndsTheLoadKeepingEarlierRecords()
    {
        TempAppFolder app;
        QVERIFY(
            writeAll(historyFile(app), "G[#@!]t1[#@!]u1\r\nG[#@!]t2[#@!]u2\r\njunk\r\nG[#@!]t4[#@!]u4\r\n"));
        QVERIFY(!LoadHistoryFile(historyFile(app)));
        QCOMPARE(g.HistoryCount, 2);
        QCOMPARE(g.HistUrl[1], QStringLiteral("u2"));
        QCOMPARE(g.HistUrl[3], QString());
    }
    void atMost10001RecordsAreLoaded()
    {
        TempAppFolder app;
        QByteArray bytes;
        for (int i = 0; i < 10003; ++i)
            bytes += "Internet Explorer 1[#@!]t" + QByteArray::number(i) + "[#@!]u\r\n";
        QVERIFY(writeAll(historyFile(app), bytes));
        LoadHistoryFile(historyFile(app));
        QCOMPARE(g.HistoryCount, 10001);
        QCOMPARE(g.HistTitle[10000], QStringLiteral("t10000"));
    }
    void unwritableFolderShowsPermissionDeniedAndKeepsTheFile()
    {
        TempAppFolder app;
        QVERIFY(writeAll(historyFile(app), "old\r\n"));
        setRecord(0, "G", "t", "u");
        g.HistoryChanged = true;
        bool saved = true;
        {
            ReadOnlyFolder readOnly(app.path());
            saved = SaveHistoryFile(1);
        }
        QVERIFY(!saved);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 70 - Permission denied"});
        QVERIFY(g.HistoryChanged);
        QCOMPARE(readAll(historyFile(app)), QByteArray("old\r\n"));
    }
    void fullDiskShowsDiskFull()
    {
        TempAppFolder app;
        for (int i = 0; i < 50; ++i)
            setRecord(i, "Internet Explorer 1", "Some page title", "https://example.org/");
        g.HistoryChanged = true;
        {
            FileSizeLimit limit(100);
            QVERIFY(!SaveHistoryFile(50));
        }
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 61 - Disk full"});
        QVERIFY(g.HistoryChanged);
        QVERIFY(!QFile::exists(historyFile(app)));
    }
    void binaryGarbageNeitherCrashesNorInventsRecords()
    {
        TempAppFolder app;
        QByteArray junk;
        for (int i = 0; i < 8000; ++i)
            junk.append(char((i * 2654435761u) >> 24));
        QVERIFY(writeAll(historyFile(app), junk));
        LoadHistoryFile(historyFile(app));
        QCOMPARE(g.HistoryCount, 0);
    }
    void longTitlesAndOldCodePageAreRead()
    {
        TempAppFolder app;
        const QByteArray title(70000, 'x');
        QVERIFY(writeAll(historyFile(app), "G[#@!]" + title + "[#@!]u\nG[#@!]\xE0 la carte[#@!]v"));
        LoadHistoryFile(historyFile(app));
        QCOMPARE(g.HistoryCount, 2);
        QCOMPARE(g.HistTitle[0].size(), 70000);
        QCOMPARE(g.HistTitle[1], QString::fromUtf8("à la carte"));
    }
};

QTEST_GUILESS_MAIN(TestHistoryFile)
#include "tst_historyfile.moc"
