#include "BookmarkFixtures.h"
#include "TestSupport.h"
#include "bookmarks/ListTransfer.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "bookmarks/XbelBookmarks.h"
#include "settings/PageSettings.h"

#include <QElapsedTimer>
#include <QTest>

// A link's extras (the settings of a list's page) in the HTML and XBEL files: written where other
// browsers pass over them, read back in any case or prefix, bounded in a hostile file, and absent
// from the files of other browsers, which read as before.

enum class Format { Html, Xbel };
Q_DECLARE_METATYPE(Format)

namespace {

BookmarkRead readAs(Format format, const QByteArray& bytes)
{
    return format == Format::Html ? NetscapeBookmarks::read(bytes) : XbelBookmarks::read(bytes);
}

QByteArray writeAs(Format format, const BookmarkNode& root)
{
    return format == Format::Html ? NetscapeBookmarks::write(root) : XbelBookmarks::write(root);
}

BookmarkNode linkWith(const QString& title, const QString& url, const BookmarkExtras& extras)
{
    return BookmarkNode::link(title, url, extras);
}

// The first link of the tree, at any depth.
BookmarkNode firstLink(const BookmarkNode& node)
{
    for (const BookmarkNode& child : node.children) {
        if (child.kind == Kind::Link)
            return child;
        if (child.kind == Kind::Folder)
            if (const BookmarkNode found = firstLink(child); found.kind == Kind::Link)
                return found;
    }
    return BookmarkNode();
}

bool anyExtras(const BookmarkNode& node)
{
    if (!node.extras.isEmpty())
        return true;
    for (const BookmarkNode& child : node.children)
        if (anyExtras(child))
            return true;
    return false;
}

QByteArray htmlWithTag(const QByteArray& tag)
{
    return "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n<DT>" + tag + "T</A>\n</DL><p>\n";
}

QByteArray xbelWithTag(const QByteArray& tag)
{
    return "<?xml version=\"1.0\"?>\n<xbel version=\"1.0\" xmlns:vantrel=\"https://vantrel.org/xbel/page\">\n"
           + tag + "<title>T</title></bookmark>\n</xbel>\n";
}

} // namespace

class TestBookmarkExtras : public QObject
{
    Q_OBJECT

    // The trees are built inside the tests, not given as test data: a tree as data makes the
    // compiler ask whether trees compare before it has worked out their comparison, which it
    // cannot do for a type that holds a list of itself.
    static void formats()
    {
        QTest::addColumn<Format>("format");
        QTest::newRow("html") << Format::Html;
        QTest::newRow("xbel") << Format::Xbel;
    }

private slots:
    // ---- Writing ----

    void htmlExtrasFollowTheAddressInCapitals()
    {
        const BookmarkNode tree = rootOf({
            linkWith("A", "https://a.example/?x=1&y=2",
                     {{"seconds", "30"}, {"scrollto", "#a&b \"c\" <d> 'e'"}, {"zoom", "fit"}}),
            bookmark("B", "https://b.example/"),
        });
        const QByteArray html = NetscapeBookmarks::write(tree);
        QVERIFY2(html.contains("    <DT><A HREF=\"https://a.example/?x=1&amp;y=2\" VANTREL_SECONDS=\"30\" "
                               "VANTREL_SCROLLTO=\"#a&amp;b &quot;c&quot; &lt;d&gt; 'e'\" VANTREL_ZOOM=\"fit\">A</A>\n"
                               "    <DT><A HREF=\"https://b.example/\">B</A>\n"),
                 html.constData());
        QCOMPARE(html.count("VANTREL_"), 3);
    }

    void xbelExtrasAreAttributesInTheirOwnNamespace()
    {
        const BookmarkNode tree = rootOf({
            folder("F", {linkWith("A", "https://a.example/", {{"seconds", "30"}, {"scrollto", "#a&b \"c\" <d>\n"}})}),
            bookmark("B", "https://b.example/"),
        });
        const QByteArray expected =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE xbel PUBLIC \"+//IDN python.org//DTD XML Bookmark Exchange Language 1.0//EN//XML\" "
            "\"http://pyxml.sourceforge.net/topics/dtds/xbel.dtd\">\n"
            "<xbel version=\"1.0\" xmlns:vantrel=\"https://vantrel.org/xbel/page\">\n"
            "    <folder>\n"
            "        <title>F</title>\n"
            "        <bookmark href=\"https://a.example/\" vantrel:seconds=\"30\" "
            "vantrel:scrollto=\"#a&amp;b &quot;c&quot; &lt;d&gt;&#10;\">\n"
            "            <title>A</title>\n"
            "        </bookmark>\n"
            "    </folder>\n"
            "    <bookmark href=\"https://b.example/\">\n"
            "        <title>B</title>\n"
            "    </bookmark>\n"
            "</xbel>\n";
        QCOMPARE(XbelBookmarks::write(tree), expected);
    }

    void nothingIsWrittenForLinksWithoutExtras()
    {
        const BookmarkNode plain = rootOf({uppercaseExportTree(), lowercaseExportTree(), xbelFileTree()});
        QVERIFY(!NetscapeBookmarks::write(plain).contains("VANTREL"));
        QVERIFY(!XbelBookmarks::write(plain).contains("vantrel"));
        QVERIFY(XbelBookmarks::write(plain).contains("<xbel version=\"1.0\">\n"));
        // Extras a folder should not carry, or that no reader would keep, need no namespace either.
        BookmarkNode odd = rootOf({folder("F"), linkWith("A", "a", {{"no name", "1"}, {"", "2"}})});
        odd.children[0].extras = {{"seconds", "30"}};
        QVERIFY(!NetscapeBookmarks::write(odd).contains("VANTREL"));
        QVERIFY(!XbelBookmarks::write(odd).contains("vantrel"));
    }

    // ---- Round trips ----

    void extrasComeBackAsTheyWent_data()
    {
        formats();
    }
    void extrasComeBackAsTheyWent()
    {
        QFETCH(Format, format);
        const BookmarkExtras awkward = {
            {"scrollto", awkwardText(1)},
            {"note", QStringLiteral("tab\there, line\nthere, &amp; &#39; ]]> \"quoted\" 'single'")},
            {"empty", QString()},
            {"long", QString(kMaxBookmarkExtraLength, u'x')},
            {"with-dash_and.dot9", "1"},
        };
        BookmarkExtras many;
        for (int i = 0; i < kMaxBookmarkExtras; ++i)
            many.append({QStringLiteral("n%1").arg(i), QString::number(i)});
        const BookmarkNode tree = rootOf({
            linkWith("A", "https://a.example/", {{"seconds", "30"}, {"zoom", "150"}}),
            folder("Deep", {folder("Deeper", {linkWith(awkwardText(2), awkwardUrl(3), awkward)})}),
            bookmark("Plain", "https://plain.example/"),
            separator(),
            linkWith("Many", "https://many.example/", many),
        });
        const BookmarkRead read = readAs(format, writeAs(format, tree));
        QCOMPARE(read.problem, QString());
        QCOMPARE(firstLink(read.root.children[1]).extras, awkward);
        QCOMPARE(read.root.children[4].extras, many);
        COMPARE_TREES(read.root, tree);
    }

    void writersKeepOnlyWhatReadersKeep_data()
    {
        formats();
    }
    void writersKeepOnlyWhatReadersKeep()
    {
        QFETCH(Format, format);
        BookmarkExtras given = {{"Zoom", "150"},
                                {"zoom", "200"},
                                {"bad name", "1"},
                                {"9lives", "1"},
                                {"too-long", QString(kMaxBookmarkExtraLength + 1, u'x')},
                                {QString(kMaxBookmarkExtraNameLength + 1, u'n'), "1"}};
        for (int i = 0; i < 20; ++i)
            given.append({QStringLiteral("n%1").arg(i), QString::number(i)});
        BookmarkExtras kept = {{"zoom", "150"}};
        for (int i = 0; i < kMaxBookmarkExtras - 1; ++i)
            kept.append({QStringLiteral("n%1").arg(i), QString::number(i)});
        QCOMPARE(boundedBookmarkExtras(given), kept);
        const BookmarkRead read = readAs(format, writeAs(format, rootOf({linkWith("A", "a", given)})));
        QCOMPARE(read.problem, QString());
        QCOMPARE(firstLink(read.root).extras, kept);
    }

    // ---- Reading ----

    void htmlExtrasAreReadInAnyCaseAmongOtherAttributes()
    {
        const BookmarkRead read = NetscapeBookmarks::read(htmlWithTag(
            "<A HREF=\"https://a.example/\" ADD_DATE=\"1688000100\" vantrel_seconds=30 Vantrel_Zoom='150' "
            "ICON=\"data:image/png;base64,AAAA\" VANTREL_SCROLLTO=\"#a&amp;b &quot;c&quot; &#233;\" DATA-VANTREL_X=\"1\" "
            "VANTREL=\"2\" VANTREL_=\"3\" VANTRELZOOM=\"4\" VANTREL_a:b=\"5\" vantrel_SECONDS=\"99\" VANTREL_SKIP>"));
        QCOMPARE(read.problem, QString());
        const BookmarkNode link = firstLink(read.root);
        QCOMPARE(link.url, QStringLiteral("https://a.example/"));
        QCOMPARE(link.title, QStringLiteral("T"));
        QCOMPARE(link.extras, (BookmarkExtras{{"seconds", "30"},
                                              {"zoom", "150"},
                                              {"scrollto", QStringLiteral("#a&b \"c\" é")},
                                              {"skip", ""}}));
        // A folder's heading carries none.
        const BookmarkRead heading = NetscapeBookmarks::read(
            "<DL><p><DT><H3 VANTREL_SECONDS=\"30\">F</H3><DL><p><DT><A HREF=a>A</A></DL><p></DL><p>");
        COMPARE_TREES(heading.root, rootOf({folder("F", {bookmark("A", "a")})}));
    }

    void xbelExtrasAreReadByTheirNamespace()
    {
        const BookmarkRead read = XbelBookmarks::read(
            "<?xml version=\"1.0\"?>\n<xbel version=\"1.0\" xmlns:v=\"https://vantrel.org/xbel/page\" "
            "xmlns:vantrel=\"https://other.example/\">\n<folder><title>F</title>\n"
            "<bookmark href=\"https://a.example/\" seconds=\"1\" vantrel:seconds=\"2\" v:Seconds=\"30\" "
            "v:scrollto=\"#a&amp;b\" v:bad.=\"ok\" xmlns:w=\"https://vantrel.org/xbel/page\" w:zoom=\"fit\">"
            "<title>A</title></bookmark>\n</folder>\n</xbel>\n");
        QCOMPARE(read.problem, QString());
        const BookmarkNode link = firstLink(read.root);
        QCOMPARE(link.title, QStringLiteral("A"));
        QCOMPARE(link.extras, (BookmarkExtras{{"seconds", "30"}, {"scrollto", "#a&b"}, {"bad.", "ok"}, {"zoom", "fit"}}));
        QVERIFY(read.root.children[0].extras.isEmpty());
    }

    void filesOfOtherBrowsersCarryNoExtras_data()
    {
        QTest::addColumn<Format>("format");
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("upper-case export") << Format::Html << QByteArray(kUppercaseExport);
        QTest::newRow("lower-case export") << Format::Html << QByteArray(kLowercaseExport);
        QTest::newRow("html sample") << Format::Html << testData("bookmarks.sample.html");
        QTest::newRow("xbel") << Format::Xbel << QByteArray(kXbelFile);
        QTest::newRow("xbel sample") << Format::Xbel << testData("bookmarks.sample.xbel");
    }
    void filesOfOtherBrowsersCarryNoExtras()
    {
        QFETCH(Format, format);
        QFETCH(QByteArray, file);
        const BookmarkRead read = readAs(format, file);
        QCOMPARE(read.problem, QString());
        QVERIFY(read.root.linkCount() > 0);
        QVERIFY(!anyExtras(read.root));
    }

    // ---- Hostile files ----

    void hostileExtrasAreBounded_data()
    {
        QTest::addColumn<Format>("format");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<BookmarkExtras>("extras");
        BookmarkExtras first16;
        QByteArray many;
        QByteArray manyXml;
        for (int i = 0; i < 1000; ++i) {
            if (i < kMaxBookmarkExtras)
                first16.append({QStringLiteral("n%1").arg(i), QString::number(i)});
            many += " VANTREL_N" + QByteArray::number(i) + "=\"" + QByteArray::number(i) + '"';
            manyXml += " vantrel:n" + QByteArray::number(i) + "=\"" + QByteArray::number(i) + '"';
        }
        const QByteArray atLimit(kMaxBookmarkExtraLength, 'v');
        const QByteArray overLimit(kMaxBookmarkExtraLength + 1, 'v');
        const QByteArray huge(10'000'000, 'v');
        const QByteArray longName(kMaxBookmarkExtraNameLength + 1, 'n');
        const QByteArray escapedAtLimit = QByteArray("&amp;").repeated(kMaxBookmarkExtraLength);
        QTest::newRow("html, 1000 extras") << Format::Html << htmlWithTag("<A HREF=a" + many + ">") << first16;
        QTest::newRow("xbel, 1000 extras") << Format::Xbel << xbelWithTag("<bookmark href=\"a\"" + manyXml + ">")
                                           << first16;
        QTest::newRow("html, long values")
            << Format::Html
            << htmlWithTag("<A HREF=a VANTREL_HUGE=\"" + huge + "\" VANTREL_OVER=\"" + overLimit + "\" VANTREL_AT=\""
                           + atLimit + "\" VANTREL_ESCAPED=\"" + escapedAtLimit + "\" VANTREL_" + longName + "=1>")
            << BookmarkExtras{{"at", QString(atLimit)}, {"escaped", QString(kMaxBookmarkExtraLength, u'&')}};
        QTest::newRow("xbel, long values")
            << Format::Xbel
            << xbelWithTag("<bookmark href=\"a\" vantrel:huge=\"" + huge + "\" vantrel:over=\"" + overLimit
                           + "\" vantrel:at=\"" + atLimit + "\" vantrel:escaped=\"" + escapedAtLimit + "\" vantrel:"
                           + longName + "=\"1\">")
            << BookmarkExtras{{"at", QString(atLimit)}, {"escaped", QString(kMaxBookmarkExtraLength, u'&')}};
        QTest::newRow("html, 100,000 attributes")
            << Format::Html << htmlWithTag("<A HREF=a" + QByteArray(" VANTREL_X=\"1\"").repeated(100'000) + ">")
            << BookmarkExtras{{"x", "1"}};
    }
    void hostileExtrasAreBounded()
    {
        QFETCH(Format, format);
        QFETCH(QByteArray, file);
        QFETCH(BookmarkExtras, extras);
        QElapsedTimer timer;
        timer.start();
        const BookmarkRead read = readAs(format, file);
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(read.problem, QString());
        QCOMPARE(read.root.linkCount(), 1);
        QCOMPARE(firstLink(read.root).extras, extras);
        // What was read is written and read again as it was.
        const BookmarkRead again = readAs(format, writeAs(format, read.root));
        QCOMPARE(again.problem, QString());
        COMPARE_TREES(again.root, read.root);
    }

    // ---- A list's pages and their settings ----

    void pageSettingsTravelWithTheList_data()
    {
        formats();
    }
    void pageSettingsTravelWithTheList()
    {
        QFETCH(Format, format);
        PageSettings timed;
        timed.seconds = 45;
        timed.zoom = PageSettings::kFitWidth;
        timed.reload = PageSettings::Reload::EveryMinutes;
        timed.reloadMinutes = 5;
        timed.scroll = PageSettings::Scroll::ToTarget;
        timed.scrollTarget = QStringLiteral("div.prices > a[href=\"x&y\"]");
        PageSettings skipped;
        skipped.zoom = 150;
        skipped.reload = PageSettings::Reload::EachShow;
        skipped.scroll = PageSettings::Scroll::Slowly;
        skipped.skip = true;
        PageSettings never;
        never.reload = PageSettings::Reload::Never;
        const QList<PageSettings> settings = {timed, skipped, never, PageSettings()};
        QList<ListTransfer::Page> pages;
        for (int i = 0; i < settings.size(); ++i)
            pages.append({QStringLiteral("Page %1 & more").arg(i), QStringLiteral("https://p%1.example/?a=1&b=2").arg(i),
                          settings[i].values()});

        const BookmarkNode tree = ListTransfer::asBookmarks("Morning", pages);
        QCOMPARE(tree.children[0].children[0].extras, timed.values());
        const QByteArray file = writeAs(format, tree);
        const BookmarkRead read = readAs(format, file);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root.children[0], tree.children[0]);
        const QList<ListTransfer::Page> back = ListTransfer::pagesOf(read.root);
        QCOMPARE(back.size(), settings.size());
        for (int i = 0; i < settings.size(); ++i) {
            QCOMPARE(back[i].title, pages[i].title);
            QCOMPARE(back[i].url, pages[i].url);
            QCOMPARE(back[i].extras, pages[i].extras);
            QCOMPARE(PageSettings::fromValues(back[i].extras), settings[i]);
        }
    }

    void aLinksExtrasBecomeItsPages()
    {
        const BookmarkNode root = rootOf({
            linkWith("A", "https://a.example/", {{"seconds", "30"}}),
            folder("F", {bookmark("B", "https://b.example/"),
                         linkWith("A again", "https://a.example/", {{"seconds", "60"}})}),
        });
        const QList<ListTransfer::Page> pages = ListTransfer::pagesOf(root);
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages[0].extras, (BookmarkExtras{{"seconds", "30"}})); // the first link to an address counts
        QVERIFY(pages[1].extras.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestBookmarkExtras)
#include "tst_bookmarkextras.moc"
