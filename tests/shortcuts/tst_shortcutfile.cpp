#include "TestSupport.h"
#include "core/Globals.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

class TestShortcutFile : public QObject
{
    Q_OBJECT

    Globals& g = globals();

private slots:
    void fileNameFollowsTheNamingRules_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("name");
        QTest::newRow("colon and bar") << "Home: Main|Page"
                                       << "Home- Main-Page.URL";
        QTest::newRow("url extension in any case") << "news.url"
                                                   << "news.url";
        QTest::newRow("url prefix of a longer extension") << "news.URLX"
                                                          << "news.URLX";
        QTest::newRow("other extension replaced") << "My Site.html"
                                                  << "My Site.URL";
        QTest::newRow("domain loses its last part") << "example.com"
                                                    << "example.URL";
        QTest::newRow("version number") << "Release 1.5"
                                        << "Release 1.URL";
        QTest::newRow("dot far from the end") << "Version 2.0 beta notes"
                                              << "Version 2.0 beta notes.URL";
        QTest::newRow("plain") << "Plain"
                               << "Plain.URL";
        QTest::newRow("trailing dot") << "abc."
                                      << "abc.URL";
        QTest::newRow("slash takes the character before it") << "a/b"
                                                             << ".b.URL";
        QTest::newRow("two slashes") << "one/two/three"
                                     << "on.tw.three.URL";
        QTest::newRow("address as title") << "https://x.org/p"
                                          << "https.x.URL";
        QTest::newRow("title kept untrimmed") << "  padded  "
                                              << "  padded  .URL";
        QTest::newRow("other characters pass") << "a\\b?c*\"<>"
                                               << "a\\b?c*\"<>.URL";
    }
    void fileNameFollowsTheNamingRules()
    {
        QFETCH(QString, title);
        QFETCH(QString, name);
        const auto result = ShortcutFileName(title);
        QVERIFY(result);
        QCOMPARE(*result, name);
    }
    void longTitleIsCutAfterTheExtensionWasAdded()
    {
        const QString title(300, u'x');
        const auto name = ShortcutFileName(title);
        QVERIFY(name);
        QCOMPARE(name->size(), 250);
        QVERIFY(!name->endsWith(".URL"));
        QCOMPARE(ShortcutFileName(QString(246, u'y'))->size(), 250);
        QVERIFY(ShortcutFileName(QString(246, u'y'))->endsWith(".URL"));
    }
    void nonAsciiTitleIsCutFurtherToFitAFileName_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("characters"); // of the name, ".URL" included when it stays
        // 90 Chinese characters take 270 bytes, 130 Cyrillic ones 260: both too long for a name.
        QTest::newRow("chinese") << QString(90, QChar(0x4E2D)) << 85;
        QTest::newRow("cyrillic") << QString(130, QChar(0x0416)) << 127;
        // A character outside the basic plane is four bytes and two UTF-16 units: never split.
        QTest::newRow("emoji") << QString::fromUtf8("\xF0\x9F\x98\x80").repeated(70) << 126;
        QTest::newRow("ascii stays") << QString(300, u'x') << 250;
    }
    void nonAsciiTitleIsCutFurtherToFitAFileName()
    {
        QFETCH(QString, title);
        QFETCH(int, characters);
        const auto name = ShortcutFileName(title);
        QVERIFY(name);
        QCOMPARE(name->size(), characters);
        QVERIFY(name->toUtf8().size() <= 255);
        QVERIFY(!name->back().isHighSurrogate());
        QVERIFY(title.startsWith(name->left(characters - 4)));

        QTemporaryDir dir;
        QVERIFY(CreateFavoriteFile("https://e.org/", title, dir.path() + "/"));
        QVERIFY(QFileInfo(dir.filePath(*name)).isFile());
    }
    void blankTitleOrLeadingSlashGivesNoName()
    {
        QVERIFY(!ShortcutFileName("   "));
        QVERIFY(!ShortcutFileName(""));
        QVERIFY(!ShortcutFileName("/etc"));
        QVERIFY(ShortcutFileName("\tx")); // only spaces count as blank
    }
    void writtenFileMatchesTheFormatExactly()
    {
        QTemporaryDir dir;
        QVERIFY(CreateFavoriteFile("https://www.example.org/a?b=c", "Example Page", dir.path() + "/"));
        QCOMPARE(readAll(dir.filePath("Example Page.URL")), testData("shortcut.golden.url"));
    }
    void anAddressIsRewrittenInPlaceKeepingEveryOtherByte()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Moved.url");
        // As another program wrote it: its own lines, a lower-case key, LF ends, an icon.
        const QByteArray before = "[DEFAULT]\nBASEURL=http://old.example/page\n[InternetShortcut]\nIDList=\n"
                                  "url=http://old.example/page\nIconIndex=0\nIconFile=C:\\x.ico\n\xe9t\xe9\n";
        QVERIFY(writeAll(path, before));
        QVERIFY(RewriteShortcutAddress(path, "https://new.example/page?a=1%20b"));
        QByteArray expected = before;
        expected.replace("url=http://old.example/page\n", "url=https://new.example/page?a=1%20b\n");
        QCOMPARE(readAll(path), expected);
        // CRLF ends are kept; only the URL= line of [InternetShortcut] changes.
        QVERIFY(CreateFavoriteFile("https://a.example/", "Crlf", dir.path() + "/"));
        QVERIFY(RewriteShortcutAddress(dir.filePath("Crlf.URL"), "https://b.example/"));
        QCOMPARE(readAll(dir.filePath("Crlf.URL")),
                 QByteArray("[DEFAULT]\r\nBASEURL=https://a.example/\r\n[InternetShortcut]\r\nURL=https://b.example/\r\n"));
        // Nothing to rewrite, or nothing sane to write: the file stays as it was.
        QVERIFY(writeAll(dir.filePath("NoUrl.url"), "[InternetShortcut]\r\nIconIndex=0\r\n"));
        QVERIFY(!RewriteShortcutAddress(dir.filePath("NoUrl.url"), "https://b.example/"));
        QVERIFY(!RewriteShortcutAddress(dir.filePath("Crlf.URL"), "https://b.example/\r\n[x]"));
        QVERIFY(!RewriteShortcutAddress(dir.filePath("Crlf.URL"), QString::fromUtf8("https://caf\xc3\xa9.example/")));
        QVERIFY(!RewriteShortcutAddress(dir.filePath("missing.url"), "https://b.example/"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 3);
    }
    void blankTitleReturnsFalseAndCreatesNothing()
    {
        QTemporaryDir dir;
        QVERIFY(!CreateFavoriteFile("https://e.org/", "   ", dir.path() + "/"));
        QVERIFY(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).isEmpty());
    }
    void writingTwiceLeavesOneFileWithTheSecondAddress()
    {
        QTemporaryDir dir;
        QVERIFY(CreateFavoriteFile("https://first.example/", "Same", dir.path() + "/"));
        QVERIFY(CreateFavoriteFile("https://second.example/", "Same", dir.path() + "/"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"Same.URL"});
        QVERIFY(readAll(dir.filePath("Same.URL")).contains("URL=https://second.example/\r\n"));
        QVERIFY(!readAll(dir.filePath("Same.URL")).contains("first"));
    }
    void addressIsWrittenAsReceived()
    {
        QTemporaryDir dir;
        const QString url = QString::fromUtf8("  https://e.org/ä b,c~d  ");
        QVERIFY(CreateFavoriteFile(url, "Spaces", dir.path() + "/"));
        QCOMPARE(readAll(dir.filePath("Spaces.URL")), QByteArray("[DEFAULT]\r\nBASEURL=") + url.toUtf8() +
                                                          "\r\n[InternetShortcut]\r\nURL=" + url.toUtf8() +
                                                          "\r\n");
    }
    void failuresReturnFalseSilently()
    {
        QTemporaryDir dir;
        QVERIFY(!CreateFavoriteFile("u", "/leading slash", dir.path() + "/"));
        QVERIFY(!CreateFavoriteFile("u", "fine", dir.filePath("missing") + "/"));
        QVERIFY(!CreateFavoriteFile("u", QString("nul") + QChar(0) + "x", dir.path() + "/"));
        {
            ReadOnlyFolder readOnly(dir.path());
            QVERIFY(!CreateFavoriteFile("u", "denied", dir.path() + "/"));
        }
        QVERIFY(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).isEmpty());
    }
    void relativeNameFollowsTheFavoritesFolder()
    {
        QCOMPARE(FavoritesRelativeName("/home/a/Favorites/Links/News.url"), QStringLiteral("Links/News.url"));
        QCOMPARE(FavoritesRelativeName("/home/a/Favorites/News.url"), QStringLiteral("News.url"));
        // First occurrence, case-sensitive.
        QCOMPARE(FavoritesRelativeName("/x/Favorites/Favorites/a.url"), QStringLiteral("Favorites/a.url"));
        QCOMPARE(FavoritesRelativeName("/x/favorites/Favorites/a.url"), QStringLiteral("a.url"));
        // Without the folder name the path simply loses its first ten characters.
        QCOMPARE(FavoritesRelativeName("/home/a/Bookmarks/x.url"), QStringLiteral("okmarks/x.url"));
        QCOMPARE(FavoritesRelativeName("short"), QString());
    }
    void readingMakesTheShortcutCurrent()
    {
        resetGlobals();
        QTemporaryDir dir;
        const QString folder = dir.filePath("Favorites/Links");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(CreateFavoriteFile("https://news.example/", "News", folder + "/"));
        const QString path = folder + "/News.URL";
        ReadFavoriteFile(path);
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://news.example/"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("Links/News.URL"));
        QCOMPARE(g.FavFolderSel, path);
    }
    void theWholeAddressIsReadWhereItIsComparedOrCarried()
    {
        resetGlobals();
        QTemporaryDir dir;
        const QString path = dir.filePath("Long.url");
        const QString url = "https://long.example/?q=" + QString(3000, u'a');
        QVERIFY(WriteShortcutFile(path, url));
        QCOMPARE(ShortcutAddress(path), url);
        ReadFavoriteFile(path); // opened as a favourite: cut as it always was
        QCOMPARE(g.CurrentUrl.size(), 2047);
        QVERIFY(writeAll(dir.filePath("None.url"), "[Other]\r\nURL=https://not.here/\r\n"));
        QCOMPARE(ShortcutAddress(dir.filePath("None.url")), QString());
        QCOMPARE(ShortcutAddress(dir.filePath("missing.url")), QString());
    }
    void readingAFileWithoutTheKeyGivesAnEmptyAddress()
    {
        resetGlobals();
        QTemporaryDir dir;
        const QString path = dir.filePath("Favorites/Other.url");
        QVERIFY(QDir().mkpath(dir.filePath("Favorites")));
        QVERIFY(writeAll(path, "[Other]\r\nURL=https://not.here/\r\n"));
        ReadFavoriteFile(path);
        QCOMPARE(g.CurrentUrl, QString());
        QCOMPARE(g.CurrentTitle, QStringLiteral("Other.url"));
        QCOMPARE(g.FavFolderSel, path);

        ReadFavoriteFile(dir.filePath("Favorites/missing.url"));
        QCOMPARE(g.CurrentUrl, QString());
        QCOMPARE(g.CurrentTitle, QStringLiteral("missing.url"));
    }
};

QTEST_GUILESS_MAIN(TestShortcutFile)
#include "tst_shortcutfile.moc"
