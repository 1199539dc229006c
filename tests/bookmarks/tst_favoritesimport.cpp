#include "TestSupport.h"
#include "core/WebAddress.h"
#include "bookmarks/FavoritesImport.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "core/Globals.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QFile>
#include <QTest>

// Bookmarks written into the Favorites folder: folders, names, the numbered names, what is left
// out, and an import that changes nothing the second time.
class TestFavoritesImport : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    QString m_folder;

    QStringList listing()
    {
        QStringList all;
        QDir root(m_folder);
        std::function<void(const QString&)> walk = [&](const QString& relative) {
            const QDir dir(root.filePath(relative));
            for (const QFileInfo& entry : dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name)) {
                const QString name = relative.isEmpty() ? entry.fileName() : relative + u'/' + entry.fileName();
                all << (entry.isDir() ? name + u'/' : name);
                if (entry.isDir())
                    walk(name);
            }
        };
        walk(QString());
        return all;
    }
    QString address(const QString& relative)
    {
        ReadFavoriteFile(m_folder + relative);
        return globals().CurrentUrl;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_folder = m_app->favorites() + u'/';
        QVERIFY(QDir().mkpath(m_folder));
    }
    void cleanup() { m_app.reset(); }

    void foldersAndLinksBecomeFoldersAndShortcuts()
    {
        using B = BookmarkNode;
        const B root = B::folder({}, {B::folder("Bookmarks bar", {B::link("Debian", "https://www.debian.org/"),
                                                                  B::separator(),
                                                                  B::link("Bookmarklet", "javascript:alert(1)"),
                                                                  B::folder("News/Daily", {B::link("LWN", "https://lwn.net/")})}),
                                      B::link("", "https://example.org/page"),
                                      B::link("Smart folder", "place:sort=8&maxResults=10"),
                                      B::link("Data", "data:text/html,hi"),
                                      B::link("Blank", "about:blank"),
                                      B::link("Archive", "ftp://ftp.example.net/pub/")});
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
        QCOMPARE(listing(), (QStringList{"Archive.URL", "Bookmarks bar/", "Bookmarks bar/Debian.URL",
                                         "Bookmarks bar/News-Daily/", "Bookmarks bar/News-Daily/LWN.URL",
                                         "example.URL"}));
        QCOMPARE(summary.folders, 2);
        QCOMPARE(summary.written, 4);
        QCOMPARE(summary.notWeb, 4);
        QCOMPARE(summary.separators, 1);
        QCOMPARE(summary.alreadyThere, 0);
        QCOMPARE(summary.renamed, 0);
        // Written as every favourite is written: four lines.
        QCOMPARE(readAll(m_folder + "Bookmarks bar/Debian.URL"),
                 QByteArray("[DEFAULT]\r\nBASEURL=https://www.debian.org/\r\n[InternetShortcut]\r\n"
                            "URL=https://www.debian.org/\r\n"));
        QCOMPARE(address("example.URL"), QStringLiteral("https://example.org/page"));
        QCOMPARE(summary.text(), QStringLiteral("Bookmarks imported: 2 folders made, 4 shortcuts written, 4 left out "
                                                "as not web addresses, 1 separator left out."));
    }
    void aShortcutWhoseExtensionIsInAnotherCaseIsTheSameName()
    {
        // Other programs write ".url"; the favourite "Old" is there whatever the case.
        QVERIFY(writeAll(m_folder + "Old.url", "[InternetShortcut]\r\nURL=https://old.example/\r\n"));
        QVERIFY(writeAll(m_folder + "Mixed.Url", "[InternetShortcut]\r\nURL=https://mixed.example/\r\n"));
        using B = BookmarkNode;
        const B root = B::folder({}, {B::link("Old", "https://old.example/"), B::link("Old", "https://old.example/other"),
                                      B::link("Mixed", "https://mixed.example/")});
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
        QCOMPARE(summary.alreadyThere, 2);
        QCOMPARE(summary.written, 1);
        QCOMPARE(summary.renamed, 1);
        QCOMPARE(listing(), (QStringList{"Mixed.Url", "Old (2).URL", "Old.url"}));
    }
    void importingTheSameFileTwiceChangesNothing()
    {
        const QByteArray html = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n"
                                "<DT><H3>Work</H3>\n<DL><p>\n<DT><A HREF=\"https://a.example/\">A</A>\n"
                                "<DT><A HREF=\"https://b.example/?x=1&amp;y=2\">B</A>\n</DL><p>\n"
                                "<DT><A HREF=\"https://c.example/\">C</A>\n</DL><p>\n";
        const BookmarkRead read = NetscapeBookmarks::read(html);
        QVERIFY(read.ok());
        const ImportSummary first = FavoritesImport::importInto(read.root, m_folder);
        QCOMPARE(first.written, 3);
        QCOMPARE(first.folders, 1);
        const QStringList before = listing();
        const QByteArray bBefore = readAll(m_folder + "Work/B.URL");
        const ImportSummary second = FavoritesImport::importInto(read.root, m_folder);
        QCOMPARE(second.written, 0);
        QCOMPARE(second.folders, 0);
        QCOMPARE(second.alreadyThere, 3);
        QCOMPARE(listing(), before);
        QCOMPARE(readAll(m_folder + "Work/B.URL"), bBefore);
        QCOMPARE(address("Work/B.URL"), QStringLiteral("https://b.example/?x=1&y=2"));
    }
    void aLongAddressAlreadyThereIsRecognisedAndNotWrittenAgain()
    {
        // Longer than the 2047 characters that opening a favourite reads.
        const QString url = "https://long.example/?q=" + QString(3000, u'x');
        using B = BookmarkNode;
        const B root = B::folder({}, {B::link("Very long URL (~3000 chars)", url)});
        QCOMPARE(FavoritesImport::importInto(root, m_folder).written, 1);
        const QStringList before = listing();
        for (int again = 0; again < 2; ++again) {
            const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
            QCOMPARE(summary.written, 0);
            QCOMPARE(summary.alreadyThere, 1);
        }
        QCOMPARE(listing(), before);
        // A different address that shares the first 2047 characters is another bookmark.
        const B other = B::folder({}, {B::link("Very long URL (~3000 chars)", url + "y")});
        QCOMPARE(FavoritesImport::importInto(other, m_folder).renamed, 1);
        QCOMPARE(listing(), (QStringList{"Very long URL (~3000 chars) (2).URL", "Very long URL (~3000 chars).URL"}));
    }
    void aTakenNameGetsANumberAndNothingIsOverwritten()
    {
        QVERIFY(CreateFavoriteFile("https://mine.example/", "News", m_folder));
        using B = BookmarkNode;
        const B root = B::folder({}, {B::link("News", "https://one.example/"), B::link("News", "https://two.example/"),
                                      B::link("News", "https://mine.example/"), B::link("News", "https://one.example/")});
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
        QCOMPARE(listing(), (QStringList{"News (2).URL", "News (3).URL", "News.URL"}));
        QCOMPARE(address("News.URL"), QStringLiteral("https://mine.example/"));
        QCOMPARE(address("News (2).URL"), QStringLiteral("https://one.example/"));
        QCOMPARE(address("News (3).URL"), QStringLiteral("https://two.example/"));
        QCOMPARE(summary.written, 2);
        QCOMPARE(summary.renamed, 2);
        QCOMPARE(summary.alreadyThere, 2);
        QVERIFY(summary.text().contains("2 shortcuts written (2 under a numbered name, as the name was taken)"));
        QVERIFY(summary.text().contains("2 already there"));
    }
    void namesFollowTheRulesOfEveryFavourite()
    {
        using B = BookmarkNode;
        const QString longTitle = QString(300, QChar(0x4e2d)); // 3 bytes each in UTF-8
        const B root = B::folder({}, {B::link("Time: 10|20", "https://t.example/"), B::link("  ", "https://blank.example/x"),
                                      B::link(longTitle, "https://long.example/"), B::folder("", {}),
                                      B::folder("..", {}), B::link("x", "https://x.example/")});
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
        QCOMPARE(summary.folders, 1); // "" and ".." are both "(no name)"
        const QStringList names = listing();
        QVERIFY(names.contains("Time- 10-20.URL"));
        QVERIFY(names.contains("blank.example.URL")); // named after its host
        QVERIFY(names.contains("(no name)/"));
        QVERIFY(names.contains("x.URL"));
        for (const QString& name : names)
            QVERIFY2(name.section(u'/', -1).toUtf8().size() <= 255 || name.endsWith(u'/'), qPrintable(name));
        QCOMPARE(summary.written, 4);
        QCOMPARE(FavoritesImport::folderName("a/b"), QStringLiteral("a-b"));
    }
    void onlyWebAddressesAreShortcuts()
    {
        for (const char* web : {"http://a.example/", "https://a.example/x?y#z", "ftp://a.example/", "HTTPS://A.EXAMPLE/",
                                "https://xn--bcher-kva.example/%C3%A9"})
            QVERIFY2(WebAddress::isWebAddress(web), web);
        for (const char* other : {"javascript:void(0)", "place:type=6", "data:text/plain,x", "about:config", "file:///etc/",
                                  "", "https://", "not an address", "https://a.example/\r\nURL=https://evil.example/"})
            QVERIFY2(!WebAddress::isWebAddress(other), other);
    }
    void aCancelledImportKeepsWhatWasWrittenAndSaysSo()
    {
        BookmarkNode root = BookmarkNode::folder({});
        for (int i = 0; i < 200; ++i)
            root.children << BookmarkNode::link(QString("Page %1").arg(i), QString("https://p%1.example/").arg(i));
        QList<int> told;
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder, [&](int done, int total) {
            told << done;
            return total == 200 && done < 100;
        });
        QCOMPARE(told, (QList<int>{50, 100}));
        QVERIFY(summary.cancelled);
        QCOMPARE(summary.written, 100);
        QCOMPARE(listing().size(), 100);
        QVERIFY(summary.text().startsWith("Import cancelled: "));
        QVERIFY(summary.text().endsWith(" What was written before stays."));
    }
    void aFolderThatCannotBeMadeIsCounted()
    {
        QVERIFY(writeAll(m_folder + "Work", "a file where the folder would go"));
        using B = BookmarkNode;
        const B root = B::folder({}, {B::folder("Work", {B::link("A", "https://a.example/"), B::link("B", "https://b.example/")}),
                                      B::link("C", "https://c.example/")});
        const ImportSummary summary = FavoritesImport::importInto(root, m_folder);
        QCOMPARE(summary.failed, 2);
        QCOMPARE(summary.written, 1);
        QVERIFY(summary.text().contains("2 could not be written"));
    }
};

QTEST_GUILESS_MAIN(TestFavoritesImport)
#include "tst_favoritesimport.moc"
