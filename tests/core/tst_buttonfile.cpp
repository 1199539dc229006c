#include "TestSupport.h"
#include "core/ButtonFile.h"
#include "core/DialogService.h"
#include "core/Globals.h"

#include <QTest>

class TestButtonFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    QString buttonFile(const TempAppFolder& app) { return app.file("DefaultBtns.BLS"); }

    void load(const TempAppFolder& app, const QByteArray& bytes)
    {
        QVERIFY(writeAll(buttonFile(app), bytes));
        LoadButtonFile(buttonFile(app));
    }

private slots:
    void savedFileMatchesTheFormatExactly()
    {
        TempAppFolder app;
        g.BtnTitle[0] = "Zero";
        g.BtnUrl[0] = "https://zero.example/";
        g.BtnTitle[5] = "Mail, Web";
        g.BtnUrl[5] = "https://mail.example/";
        g.BtnTitle[32] = "Last";
        g.BtnUrl[32] = "https://last.example/";
        g.BtnTitle[33] = "never written";
        g.BtnTitle[7] = "   "; // blank caption: not written
        g.BtnUrl[7] = "https://lost.example/";
        g.ButtonsChanged = true;
        QVERIFY(SaveButtonFile(buttonFile(app)));
        QCOMPARE(readAll(buttonFile(app)), testData("buttons.golden.BLS"));
        QVERIFY(!g.ButtonsChanged);
    }
    void lineForButtonFiveOnly()
    {
        TempAppFolder app;
        g.BtnTitle[3] = "stale";
        load(app, "5[^^]Five[||]https://five.example/\r\n");
        QCOMPARE(g.BtnTitle[5], QStringLiteral("Five"));
        QCOMPARE(g.BtnUrl[5], QStringLiteral("https://five.example/"));
        for (int i = 0; i <= 32; ++i) {
            if (i == 5)
                continue;
            QVERIFY2(g.BtnTitle[i].isEmpty() && g.BtnUrl[i].isEmpty(), qPrintable(QString::number(i)));
        }
    }
    void commaInCaptionComesBackAsTilde()
    {
        TempAppFolder app;
        g.BtnTitle[2] = "Mail, Web";
        g.BtnUrl[2] = "https://m.example/?a=1,2";
        QVERIFY(SaveButtonFile(buttonFile(app)));
        resetGlobals();
        LoadButtonFile(buttonFile(app));
        QCOMPARE(g.BtnTitle[2], QStringLiteral("Mail~ Web"));
        QCOMPARE(g.BtnUrl[2], QStringLiteral("https://m.example/?a=1~2"));
    }
    void wordAsNumberLandsInElementZero()
    {
        TempAppFolder app;
        load(app, "Five[^^]Word[||]https://w.example/\r\n6[^^]Six[||]u6\r\n");
        QCOMPARE(g.BtnTitle[0], QStringLiteral("Word"));
        QCOMPARE(g.BtnTitle[6], QStringLiteral("Six"));
        QCOMPARE(g.BtnTitle[5], QString());
    }
    void blankCaptionIsNotWrittenSoItsAddressIsLost()
    {
        TempAppFolder app;
        load(app, "4[^^]   [||]https://kept.example/\r\n9[^^]Nine[||]u9\r\n");
        QCOMPARE(g.BtnUrl[4], QStringLiteral("https://kept.example/"));
        QVERIFY(SaveButtonFile(buttonFile(app)));
        QCOMPARE(readAll(buttonFile(app)), QByteArray("9[^^]Nine[||]u9\r\n"));
        LoadButtonFile(buttonFile(app));
        QCOMPARE(g.BtnUrl[4], QString());
    }
    void numberOutsideTheArraysEndsTheLoad()
    {
        TempAppFolder app;
        load(app, "1[^^]One[||]u1\r\n34[^^]Too far[||]u\r\n2[^^]Two[||]u2\r\n");
        QCOMPARE(g.BtnTitle[1], QStringLiteral("One"));
        QCOMPARE(g.BtnTitle[2], QString());
        load(app, "33[^^]Spare[||]u33\r\n-1[^^]Neg[||]u\r\n3[^^]Three[||]u3\r\n");
        QCOMPARE(g.BtnTitle[33], QStringLiteral("Spare"));
        QCOMPARE(g.BtnTitle[3], QString());
    }
    void lineWithoutMarksEndsTheLoad()
    {
        TempAppFolder app;
        load(app, "1[^^]One[||]u1\r\n2[^^]no caption end\r\n3[^^]Three[||]u3\r\n");
        QCOMPARE(g.BtnTitle[1], QStringLiteral("One"));
        QCOMPARE(g.BtnTitle[2], QString());
        QCOMPARE(g.BtnTitle[3], QString());
        load(app, "1[^^]One[||]u1\r\nplain line\r\n3[^^]Three[||]u3\r\n");
        QCOMPARE(g.BtnTitle[3], QString());
    }
    void laterLineForTheSameButtonWins()
    {
        TempAppFolder app;
        load(app, "8[^^]First[||]u1\r\n8[^^]Second[||]u2\r\n");
        QCOMPARE(g.BtnTitle[8], QStringLiteral("Second"));
        QCOMPARE(g.BtnUrl[8], QStringLiteral("u2"));
    }
    void numberIsReadLikeANumber()
    {
        TempAppFolder app;
        load(app, " 1 2[^^]Twelve[||]u\r\n3.6[^^]Rounded[||]u\r\n");
        QCOMPARE(g.BtnTitle[12], QStringLiteral("Twelve"));
        QCOMPARE(g.BtnTitle[4], QStringLiteral("Rounded"));
    }
    void clearingLeavesElement33()
    {
        TempAppFolder app;
        g.BtnTitle[32] = "x";
        g.BtnTitle[33] = "spare";
        g.BtnUrl[33] = "u";
        ClearButtons();
        QCOMPARE(g.BtnTitle[32], QString());
        QCOMPARE(g.BtnTitle[33], QStringLiteral("spare"));
        QCOMPARE(g.BtnUrl[33], QStringLiteral("u"));
    }
    void missingFileLeavesEveryButtonEmptySilently()
    {
        TempAppFolder app;
        g.BtnTitle[1] = "old";
        QVERIFY(!LoadButtonFile(buttonFile(app)));
        QCOMPARE(g.BtnTitle[1], QString());
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void unwritableFolderShowsPermissionDeniedAndKeepsTheFile()
    {
        TempAppFolder app;
        QVERIFY(writeAll(buttonFile(app), "1[^^]Old[||]u\r\n"));
        g.BtnTitle[1] = "New";
        g.ButtonsChanged = true;
        bool saved = true;
        {
            ReadOnlyFolder readOnly(app.path());
            saved = SaveButtonFile(buttonFile(app));
        }
        QVERIFY(!saved);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Save Error - 70 - Permission denied"});
        QVERIFY(g.ButtonsChanged);
        QCOMPARE(readAll(buttonFile(app)), QByteArray("1[^^]Old[||]u\r\n"));
    }
    void byteOrderMarkAndLfOnlyLinesAreRead()
    {
        TempAppFolder app;
        load(app, "\xEF\xBB\xBF"
                  "1[^^]One[||]u1\n2[^^]Tw\xF6[||]u2");
        QCOMPARE(g.BtnTitle[1], QStringLiteral("One"));
        QCOMPARE(g.BtnTitle[2], QString::fromUtf8("Twö"));
    }
    void binaryGarbageAndLongLinesNeitherCrashNorInventButtons()
    {
        TempAppFolder app;
        QByteArray junk;
        for (int i = 0; i < 5000; ++i)
            junk.append(char((i * 7919 + 3) & 0xFF));
        load(app, junk);
        for (int i = 0; i < kButtonCapacity; ++i)
            QVERIFY(g.BtnTitle[i].isEmpty());
        load(app, "3[^^]" + QByteArray(100000, 'c') + "[||]u\r\n");
        QCOMPARE(g.BtnTitle[3].size(), 100000);
    }
    void roundTripOfAllButtons()
    {
        TempAppFolder app;
        for (int i = 0; i < 32; ++i) {
            g.BtnTitle[i] = QString::fromUtf8("Knöpf %1").arg(i);
            g.BtnUrl[i] = QString("https://e.org/%1").arg(i);
        }
        QVERIFY(SaveButtonFile(buttonFile(app)));
        resetGlobals();
        LoadButtonFile(buttonFile(app));
        for (int i = 0; i < 32; ++i) {
            QCOMPARE(g.BtnTitle[i], QString::fromUtf8("Knöpf %1").arg(i));
            QCOMPARE(g.BtnUrl[i], QString("https://e.org/%1").arg(i));
        }
    }
};

QTEST_GUILESS_MAIN(TestButtonFile)
#include "tst_buttonfile.moc"
