#include "RealBrowserTrees.h"
#include "TestSupport.h"
#include "bookmarks/BookmarkFiles.h"
#include "bookmarks/ChromiumBookmarks.h"
#include "bookmarks/FavoritesExport.h"
#include "bookmarks/FavoritesImport.h"
#include "bookmarks/InstalledBrowsers.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "core/ProfileString.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTest>

#include <algorithm>

// The bookmark files that real Firefox ESR and Chromium wrote (tests/data/browsers, described in
// its README), read by Vantrel's readers, found in a home laid out as the browsers lay it out,
// imported into Favorites and exported again. The database reader has tests of its own.

namespace {

using Profile = InstalledBrowsers::Profile;

// ---- Files and folders ----

bool copyData(const QString& name, const QString& target)
{
    if (!QDir().mkpath(QFileInfo(target).path()))
        return false;
    QFile::remove(target);
    return QFile::copy(browserFile(name), target);
}

// Every entry below `folder`, relative, folders ending in "/", in code point order.
QStringList listing(const QString& folder)
{
    QStringList all;
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString name = QDir(folder).relativeFilePath(it.filePath());
        all << (it.fileInfo().isDir() ? name + u'/' : name);
    }
    std::sort(all.begin(), all.end());
    return all;
}

// The links of each folder of a tree, "title <address>" sorted, by the folder's path.
void linksOf(const BookmarkNode& node, const QString& path, QMap<QString, QStringList>& out)
{
    QStringList here;
    for (const BookmarkNode& child : node.children) {
        if (child.kind == Kind::Link)
            here << child.title + QStringLiteral(" <") + child.url + u'>';
        else if (child.kind == Kind::Folder)
            linksOf(child, path + child.title + u'/', out);
    }
    here.sort();
    out.insert(path, here);
}

QMap<QString, QStringList> linksOf(const BookmarkNode& root)
{
    QMap<QString, QStringList> out;
    linksOf(root, QStringLiteral("/"), out);
    return out;
}

// The same, read from the shortcut files on disk: the title is the name without ".URL".
QMap<QString, QStringList> linksOnDisk(const QString& folder)
{
    QMap<QString, QStringList> out;
    out[QStringLiteral("/")];
    for (const QString& entry : listing(folder)) {
        if (entry.endsWith(u'/')) {
            out[u'/' + entry];
            continue;
        }
        const qsizetype slash = entry.lastIndexOf(u'/');
        const QString path = u'/' + entry.left(slash + 1);
        const QString name = entry.mid(slash + 1);
        if (!name.endsWith(QLatin1String(".URL")))
            continue;
        const QString url = GetIniString(QStringLiteral("InternetShortcut"), QStringLiteral("URL"), QString(),
                                         folder + u'/' + entry);
        out[path] << name.chopped(4) + QStringLiteral(" <") + url + u'>';
    }
    for (QStringList& links : out)
        links.sort();
    return out;
}

QByteArray shortcutBytes(const QByteArray& url)
{
    return "[DEFAULT]\r\nBASEURL=" + url + "\r\n[InternetShortcut]\r\nURL=" + url + "\r\n";
}

QStringList labels(const QList<Profile>& profiles)
{
    QStringList all;
    for (const Profile& p : profiles)
        all << p.label();
    return all;
}

struct Counts
{
    int folders, written, notWeb, separators;
};

} // namespace

Q_DECLARE_METATYPE(BookmarkFiles::Format)

class TestRealBrowserFiles : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;

    QString firefoxRoot() const { return m_app->config() + QStringLiteral("/mozilla/firefox"); }
    QString chromiumRoot() const { return m_app->config() + QStringLiteral("/chromium"); }

    // The scratch home as the two browsers left it: Firefox's profile root in the config folder
    // (where this Firefox put it), Chromium's user data with both profiles. The profile Firefox does
    // not use holds the database caught running, so that the two profiles' trees differ.
    void layOutHome()
    {
        QVERIFY(copyData("firefox-esr/profiles.ini", firefoxRoot() + "/profiles.ini"));
        QVERIFY(copyData("firefox-esr/installs.ini", firefoxRoot() + "/installs.ini"));
        QVERIFY(copyData("firefox-esr/places.sqlite", firefoxRoot() + "/2rdeqzg0.default-esr/places.sqlite"));
        QVERIFY(
            copyData("firefox-esr/running/places.sqlite", firefoxRoot() + "/jflshc05.default/places.sqlite"));
        QVERIFY(copyData("firefox-esr/running/places.sqlite-wal",
                         firefoxRoot() + "/jflshc05.default/places.sqlite-wal"));
        QVERIFY(copyData("chromium/Local State", chromiumRoot() + "/Local State"));
        QVERIFY(copyData("chromium/Bookmarks", chromiumRoot() + "/Default/Bookmarks"));
        QVERIFY(copyData("chromium/Profile 1/Bookmarks", chromiumRoot() + "/Profile 1/Bookmarks"));
    }

    QString favoritesFolder(const QString& name)
    {
        const QString folder = m_app->favorites() + u'/' + name;
        if (!QDir().mkpath(folder))
            return QString();
        return folder;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        QVERIFY(m_app->isValid());
    }
    void cleanup() { m_app.reset(); }

    // ---- The readers on each file ----

    void firefoxExportIsReadWhole()
    {
        const BookmarkRead read = NetscapeBookmarks::read(testData("browsers/firefox-esr/bookmarks.html"));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, firefoxExportTree());
        QCOMPARE(read.root.linkCount(), 18);
        QCOMPARE(read.root.folderCount(), 6);
        QCOMPARE(read.root.separatorCount(), 2);
    }

    void chromiumBookmarksFilesAreReadWhole_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<BookmarkNode>("expected");
        QTest::newRow("Default") << "chromium/Bookmarks" << chromiumDefaultTree();
        QTest::newRow("Profile 1") << "chromium/Profile 1/Bookmarks" << chromiumProfile1Tree();
    }
    void chromiumBookmarksFilesAreReadWhole()
    {
        QFETCH(QString, file);
        QFETCH(BookmarkNode, expected);
        const BookmarkRead read = ChromiumBookmarks::read(testData("browsers/" + file));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, expected);
    }

    void chromiumExportsHoldWhatItsBookmarksFileHolds_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("html");
        QTest::newRow("Default") << "chromium/Bookmarks"
                                 << "chromium/exported-bookmarks.html";
        QTest::newRow("Profile 1") << "chromium/Profile 1/Bookmarks"
                                   << "chromium/Profile 1/exported-bookmarks.html";
    }
    void chromiumExportsHoldWhatItsBookmarksFileHolds()
    {
        QFETCH(QString, json);
        QFETCH(QString, html);
        const BookmarkRead fromJson = ChromiumBookmarks::read(testData("browsers/" + json));
        const BookmarkRead fromHtml = NetscapeBookmarks::read(testData("browsers/" + html));
        QCOMPARE(fromJson.problem, QString());
        QCOMPARE(fromHtml.problem, QString());
        QVERIFY(fromHtml.root.linkCount() > 0);
        COMPARE_TREES(fromHtml.root, asChromiumExportsIt(fromJson.root));
    }

    void chromiumExportOfProfile1HasTheOtherRootsAtTheTop()
    {
        // Spelled out, so that the mapping above cannot hide a change to both readers.
        const BookmarkRead read =
            NetscapeBookmarks::read(testData("browsers/chromium/Profile 1/exported-bookmarks.html"));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(
            read.root,
            rootOf({
                folder("Bookmarks bar",
                       {
                           bookmark("Bar Link", "https://example.com/bar"),
                           folder("Bar Folder", {bookmark("Nested Link", "https://example.com/nested"),
                                                 folder("Empty Inner")}),
                       }),
                bookmark("Other Link & more", "https://example.com/other?a=1&b=2"),
                folder("Other Folder",
                       {bookmark(QStringLiteral("日本語 <title>"), "https://example.jp/%E6%97%A5")}),
                bookmark("Mobile Link", "https://m.example.com/"),
            }));
        const BookmarkRead defaults =
            NetscapeBookmarks::read(testData("browsers/chromium/exported-bookmarks.html"));
        COMPARE_TREES(defaults.root, chromiumDefaultTree());
    }

    void eachFileIsReadInItsOwnFormat_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<BookmarkFiles::Format>("format");
        QTest::addColumn<BookmarkNode>("expected");
        using F = BookmarkFiles::Format;
        QTest::newRow("Firefox bookmarks.html")
            << "firefox-esr/bookmarks.html" << F::Html << firefoxExportTree();
        QTest::newRow("Chromium Bookmarks") << "chromium/Bookmarks" << F::Chromium << chromiumDefaultTree();
        QTest::newRow("Chromium Profile 1 Bookmarks")
            << "chromium/Profile 1/Bookmarks" << F::Chromium << chromiumProfile1Tree();
        QTest::newRow("Chromium export")
            << "chromium/exported-bookmarks.html" << F::Html << chromiumDefaultTree();
        QTest::newRow("Chromium Profile 1 export") << "chromium/Profile 1/exported-bookmarks.html" << F::Html
                                                   << asChromiumExportsIt(chromiumProfile1Tree());
    }
    void eachFileIsReadInItsOwnFormat()
    {
        QFETCH(QString, file);
        QFETCH(BookmarkFiles::Format, format);
        QFETCH(BookmarkNode, expected);
        const QByteArray bytes = testData("browsers/" + file);
        QVERIFY(!bytes.isEmpty());
        QCOMPARE(BookmarkFiles::formatOf(bytes), format);
        const BookmarkRead direct = format == BookmarkFiles::Format::Chromium
                                        ? ChromiumBookmarks::read(bytes)
                                        : NetscapeBookmarks::read(bytes);
        const BookmarkRead sniffed = BookmarkFiles::read(browserFile(file));
        QCOMPARE(sniffed.problem, QString());
        QCOMPARE(sniffed.problem, direct.problem);
        COMPARE_TREES(sniffed.root, direct.root);
        COMPARE_TREES(sniffed.root, expected);
    }

    // ---- The profiles found in a home the browsers laid out ----

    void profilesAreFoundAsTheBrowsersLeftThem()
    {
        layOutHome();
        const QList<Profile> found = InstalledBrowsers::find(m_app->home(), m_app->config());
        // Firefox: the profile its installation section names first, then the Default=1 one it never
        // used. Chromium: by the names in Local State, the one used last first.
        QCOMPARE(labels(found),
                 (QStringList{"Firefox - default-esr (in use)", "Firefox - default",
                              "Chromium - Work Profile (in use)", "Chromium - Your Chromium"}));
        QCOMPARE(found[0].kind, Profile::Kind::Firefox);
        QCOMPARE(found[0].browser, QStringLiteral("Firefox"));
        QVERIFY(found[0].inUse);
        QCOMPARE(found[0].folder, firefoxRoot() + "/2rdeqzg0.default-esr");
        QCOMPARE(found[0].bookmarksFile(), firefoxRoot() + "/2rdeqzg0.default-esr/places.sqlite");
        QCOMPARE(found[1].kind, Profile::Kind::Firefox);
        QVERIFY(!found[1].inUse);
        QCOMPARE(found[1].folder, firefoxRoot() + "/jflshc05.default");
        QCOMPARE(found[1].bookmarksFile(), firefoxRoot() + "/jflshc05.default/places.sqlite");
        QCOMPARE(found[2].kind, Profile::Kind::Chromium);
        QCOMPARE(found[2].browser, QStringLiteral("Chromium"));
        QVERIFY(found[2].inUse);
        QCOMPARE(found[2].folder, chromiumRoot() + "/Profile 1");
        QCOMPARE(found[2].bookmarksFile(), chromiumRoot() + "/Profile 1/Bookmarks");
        QCOMPARE(found[3].kind, Profile::Kind::Chromium);
        QVERIFY(!found[3].inUse);
        QCOMPARE(found[3].folder, chromiumRoot() + "/Default");
        QCOMPARE(found[3].bookmarksFile(), chromiumRoot() + "/Default/Bookmarks");
    }

    void firefoxProfilesNeedADatabase()
    {
        // Firefox makes the Default=1 profile on its first start and never uses it: until it holds
        // a places.sqlite it has nothing to offer.
        QVERIFY(copyData("firefox-esr/profiles.ini", firefoxRoot() + "/profiles.ini"));
        QVERIFY(copyData("firefox-esr/installs.ini", firefoxRoot() + "/installs.ini"));
        QVERIFY(copyData("firefox-esr/places.sqlite", firefoxRoot() + "/2rdeqzg0.default-esr/places.sqlite"));
        QVERIFY(QDir().mkpath(firefoxRoot() + "/jflshc05.default"));
        QCOMPARE(labels(InstalledBrowsers::find(m_app->home(), m_app->config())),
                 QStringList{"Firefox - default-esr (in use)"});
        QVERIFY(copyData("firefox-esr/places.sqlite", firefoxRoot() + "/jflshc05.default/places.sqlite"));
        QCOMPARE(labels(InstalledBrowsers::find(m_app->home(), m_app->config())),
                 (QStringList{"Firefox - default-esr (in use)", "Firefox - default"}));
        // The profile in use without its database: the other one is offered, not marked in use.
        QVERIFY(QFile::remove(firefoxRoot() + "/2rdeqzg0.default-esr/places.sqlite"));
        QCOMPARE(labels(InstalledBrowsers::find(m_app->home(), m_app->config())),
                 QStringList{"Firefox - default"});
    }

    void chromiumProfilesNeedABookmarksFile()
    {
        QVERIFY(copyData("chromium/Local State", chromiumRoot() + "/Local State"));
        QVERIFY(copyData("chromium/Bookmarks", chromiumRoot() + "/Default/Bookmarks"));
        QVERIFY(QDir().mkpath(chromiumRoot() + "/Profile 1")); // named in Local State, no Bookmarks
        const QList<Profile> found = InstalledBrowsers::find(m_app->home(), m_app->config());
        // The last used profile has no bookmarks: the one left is not marked in use.
        QCOMPARE(labels(found), QStringList{"Chromium - Your Chromium"});
    }

    void eachProfileIsReadWhole()
    {
        layOutHome();
        const QList<Profile> found = InstalledBrowsers::find(m_app->home(), m_app->config());
        QCOMPARE(found.size(), 4);
        const QList<BookmarkNode> expected = {firefoxDatabaseTree(), firefoxRunningTree(),
                                              chromiumProfile1Tree(), chromiumDefaultTree()};
        for (qsizetype i = 0; i < found.size(); ++i) {
            const BookmarkRead read = BookmarkFiles::readProfile(found[i]);
            QCOMPARE(read.problem, QString());
            COMPARE_TREES(read.root, expected[i]);
        }
    }

    // ---- Into Favorites and out again ----

    void eachProfileIsImportedOnceAndExportedAgain()
    {
        layOutHome();
        const QList<Profile> found = InstalledBrowsers::find(m_app->home(), m_app->config());
        QCOMPARE(found.size(), 4);
        // Counted from the trees above: the place: query and the bookmarklet are no web addresses.
        const QList<Counts> counts = {
            {7, 16, 2, 2}, // Firefox default-esr: 18 links, 7 folders, 2 separators
            {8, 18, 2, 2}, // Firefox default (caught running): 2 links and 1 folder more
            {6, 5, 0, 0},  // Chromium Work Profile: the three roots, Bar Folder, Empty Inner, Other Folder
            {6, 16, 1, 0}, // Chromium Your Chromium: 17 links, no place: query, no separators
        };
        for (qsizetype i = 0; i < found.size(); ++i) {
            const QString label = found[i].label();
            const BookmarkRead read = BookmarkFiles::readProfile(found[i]);
            QCOMPARE(read.problem, QString());
            const QString target = favoritesFolder(QStringLiteral("profile %1").arg(i));
            QVERIFY(!target.isEmpty());

            const ImportSummary first = FavoritesImport::importInto(read.root, target + u'/');
            QVERIFY2(first.folders == counts[i].folders, qPrintable(label + ": " + first.text()));
            QVERIFY2(first.written == counts[i].written, qPrintable(label + ": " + first.text()));
            QVERIFY2(first.notWeb == counts[i].notWeb, qPrintable(label + ": " + first.text()));
            QVERIFY2(first.separators == counts[i].separators, qPrintable(label + ": " + first.text()));
            QCOMPARE(first.alreadyThere, 0);
            QCOMPARE(first.renamed, 0);
            QCOMPARE(first.failed, 0);
            QVERIFY(!first.cancelled);
            QCOMPARE(first.written + first.notWeb, int(read.root.linkCount()));
            const QStringList written = listing(target);

            // The second time everything is there already and nothing is written.
            const ImportSummary again = FavoritesImport::importInto(read.root, target + u'/');
            QCOMPARE(again.folders, 0);
            QCOMPARE(again.written, 0);
            QCOMPARE(again.alreadyThere, first.written);
            QCOMPARE(again.notWeb, first.notWeb);
            QCOMPARE(again.separators, first.separators);
            QCOMPARE(again.failed, 0);
            QCOMPARE(listing(target), written);

            // Exported and read back: the same links in the same folders as the import wrote.
            const BookmarkNode tree = FavoritesExport::treeOf(target);
            QCOMPARE(tree.linkCount(), qsizetype(first.written));
            QCOMPARE(tree.folderCount(), qsizetype(first.folders));
            const BookmarkRead back = NetscapeBookmarks::read(NetscapeBookmarks::write(tree));
            QCOMPARE(back.problem, QString());
            COMPARE_TREES(back.root, titled(QString(), tree));
            QCOMPARE(linksOf(back.root), linksOnDisk(target));
        }
    }

    void firefoxExportIsImportedAsFoldersAndShortcuts()
    {
        const BookmarkRead read = BookmarkFiles::read(browserFile("firefox-esr/bookmarks.html"));
        QCOMPARE(read.problem, QString());
        const QString target = favoritesFolder(QStringLiteral("From Firefox"));
        QVERIFY(!target.isEmpty());
        const ImportSummary summary = FavoritesImport::importInto(read.root, target + u'/');
        QCOMPARE(summary.folders, 6);
        QCOMPARE(summary.written, 16);
        QCOMPARE(summary.notWeb, 2);
        QCOMPARE(summary.separators, 2);
        QCOMPARE(summary.alreadyThere, 0);
        QCOMPARE(summary.renamed, 0);
        QCOMPARE(summary.failed, 0);
        // The link without a title is named after its host.
        const QStringList expected = {
            "Bookmarks Toolbar/",
            "Bookmarks Toolbar/After Folder.URL",
            "Bookmarks Toolbar/Example Home.URL",
            "Bookmarks Toolbar/Nested Folder/",
            "Bookmarks Toolbar/Nested Folder/Deeper/",
            "Bookmarks Toolbar/Nested Folder/Deeper/Level 2.URL",
            "Bookmarks Toolbar/Nested Folder/FTP file.URL",
            "Bookmarks Toolbar/Nested Folder/Level 1.URL",
            QStringLiteral("Café 中文 ") + kParty + ".URL",
            "Empty Folder/",
            "Folder <angle> & \"quotes\"/",
            "Folder <angle> & \"quotes\"/Inside odd folder.URL",
            "Menu First.URL",
            "Other Bookmarks/",
            "Other Bookmarks/Other One.URL",
            "Other Bookmarks/Other Two.URL",
            "Padded title.URL",
            "Punycode host.URL",
            "Query & escaped ampersands.URL",
            "Query with raw & in source.URL",
            "Tagged <b> \"quoted\" 'single'.URL",
            "example.URL",
        };
        QCOMPARE(listing(target), expected);
        // Addresses as the file gave them: &amp; decoded to a raw &, %XX and punycode untouched.
        QCOMPARE(readAll(target + "/Query with raw & in source.URL"),
                 shortcutBytes("https://example.com/raw?x=1&y=2"));
        QCOMPARE(readAll(target + "/Query & escaped ampersands.URL"),
                 shortcutBytes("https://example.com/search?a=1&b=2&c=%26d"));
        QCOMPARE(readAll(target + QStringLiteral("/Café 中文 ") + kParty + ".URL"),
                 shortcutBytes("https://example.org/caf%C3%A9?q=%E4%B8%AD%E6%96%87"));
        QCOMPARE(readAll(target + "/Punycode host.URL"), shortcutBytes("http://xn--bcher-kva.example/"));
        QCOMPARE(readAll(target + "/example.URL"), shortcutBytes("https://example.net/empty-title"));
        QCOMPARE(readAll(target + "/Other Bookmarks/Other Two.URL"),
                 shortcutBytes("https://example.com/other-2#frag"));
        QCOMPARE(readAll(target + "/Bookmarks Toolbar/Nested Folder/FTP file.URL"),
                 shortcutBytes("ftp://ftp.example.com/pub/file.txt"));

        // A second import changes nothing.
        const ImportSummary again = FavoritesImport::importInto(read.root, target + u'/');
        QCOMPARE(again.written, 0);
        QCOMPARE(again.folders, 0);
        QCOMPARE(again.alreadyThere, 16);
        QCOMPARE(listing(target), expected);

        // Exported: folders first, then shortcuts, each in name order; read back whole.
        const BookmarkNode tree = FavoritesExport::treeOf(target);
        const BookmarkRead back = NetscapeBookmarks::read(NetscapeBookmarks::write(tree));
        QCOMPARE(back.problem, QString());
        COMPARE_TREES(
            back.root,
            rootOf({
                folder("Bookmarks Toolbar",
                       {
                           folder("Nested Folder",
                                  {
                                      folder("Deeper",
                                             {bookmark("Level 2", "https://example.com/level2?tag=alpha")}),
                                      bookmark("FTP file", "ftp://ftp.example.com/pub/file.txt"),
                                      bookmark("Level 1", "https://example.com/level1"),
                                  }),
                           bookmark("After Folder", "https://example.com/after-folder"),
                           bookmark("Example Home", "https://example.com/"),
                       }),
                folder("Empty Folder"),
                folder("Folder <angle> & \"quotes\"",
                       {bookmark("Inside odd folder", "https://example.com/inside-odd-folder")}),
                firefoxOther(),
                bookmark(QStringLiteral("Café 中文 ") + kParty,
                         "https://example.org/caf%C3%A9?q=%E4%B8%AD%E6%96%87"),
                bookmark("example", "https://example.net/empty-title"),
                bookmark("Menu First", "https://example.com/menu-first"),
                bookmark("Padded title", "https://example.org/padded"),
                bookmark("Punycode host", "http://xn--bcher-kva.example/"),
                bookmark("Query & escaped ampersands", "https://example.com/search?a=1&b=2&c=%26d"),
                bookmark("Query with raw & in source", "https://example.com/raw?x=1&y=2"),
                bookmark("Tagged <b> \"quoted\" 'single'", "https://example.com/tagged"),
            }));
        QCOMPARE(linksOf(back.root), linksOnDisk(target));
    }
};

QTEST_GUILESS_MAIN(TestRealBrowserFiles)
#include "tst_realbrowserfiles.moc"
