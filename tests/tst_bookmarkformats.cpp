#include "TestSupport.h"
#include "bookmarks/ChromiumBookmarks.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "bookmarks/XbelBookmarks.h"

#include <QTest>

// The browsers' bookmark files: exports as the browsers write them, damaged and hostile files,
// and the trees Vantrel writes read back as they were.

Q_DECLARE_METATYPE(BookmarkNode)

using Kind = BookmarkNode::Kind;

namespace {

BookmarkNode folder(const QString& title, const QList<BookmarkNode>& children = {})
{
    return BookmarkNode::folder(title, children);
}

BookmarkNode bookmark(const QString& title, const QString& url)
{
    return BookmarkNode::link(title, url);
}

BookmarkNode separator()
{
    return BookmarkNode::separator();
}

BookmarkNode rootOf(const QList<BookmarkNode>& children)
{
    return BookmarkNode::folder(QString(), children);
}

BookmarkNode titled(const QString& title, BookmarkNode node)
{
    node.title = title;
    return node;
}

// Characters that would not show in a failure message are written as \x{...}.
QString visible(const QString& text)
{
    QString out;
    for (QChar c : text)
        out += (c.unicode() < 0x20 || c.unicode() == 0x7F) ? QStringLiteral("\\x{%1}").arg(c.unicode(), 0, 16) : QString(c);
    return out;
}

// The tree one node a line, with its depth, for readable failures.
void outline(QString& out, const BookmarkNode& node, int level)
{
    switch (node.kind) {
    case Kind::Link:
        out += QStringLiteral("%1 link [%2] <%3>\n").arg(level).arg(visible(node.title), visible(node.url));
        return;
    case Kind::Separator:
        out += QStringLiteral("%1 separator\n").arg(level);
        return;
    case Kind::Folder:
        out += QStringLiteral("%1 folder [%2]\n").arg(level).arg(visible(node.title));
        for (const BookmarkNode& child : node.children)
            outline(out, child, level + 1);
        return;
    }
}

QString outline(const BookmarkNode& node)
{
    QString out;
    outline(out, node, 0);
    return out;
}

#define COMPARE_TREES(actual, expected)                                                            \
    do {                                                                                           \
        QCOMPARE(outline(actual), outline(expected));                                              \
        QVERIFY((actual) == (expected));                                                           \
    } while (false)

// ---- Fixtures: files as the browsers write them ----

// An export in the style of the browsers that write uppercase tags, an <H1> of their own and
// <DD> descriptions after links and folder headings.
const char kUppercaseExport[] = R"HTML(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<!-- This is an automatically generated file.
     It will be read and overwritten.
     DO NOT EDIT! -->
<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">
<meta http-equiv="Content-Security-Policy"
      content="default-src 'self'; script-src 'none'; img-src data: *; object-src 'none'"></meta>
<TITLE>Bookmarks</TITLE>
<H1>Bookmarks Menu</H1>

<DL><p>
    <DT><A HREF="https://start.example.com/" ADD_DATE="1700000000" LAST_MODIFIED="1700000001">Start page</A>
    <DT><H3 ADD_DATE="1700000002" LAST_MODIFIED="1700000500" PERSONAL_TOOLBAR_FOLDER="true">Bookmarks Toolbar</H3>
    <DL><p>
        <DT><A HREF="https://www.example.org/search?q=cats&amp;page=2" ADD_DATE="1700000100" LAST_MODIFIED="1700000100" ICON_URI="https://www.example.org/favicon.ico" ICON="data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==">Cats &amp; dogs</A>
        <DT><A HREF="https://shop.example.com/cart?item=7&qty=1&lt=3" ADD_DATE="1700000200">  Shop with blanks  </A>
        <DD>Bought the kettle here
        <DT><H3 ADD_DATE="1700000300" LAST_MODIFIED="1700000400">Reading</H3>
        <DD>Things to read later
        <DL><p>
            <DT><A HREF="https://xn--bcher-kva.example/" ADD_DATE="1700000310">Bücher</A>
            <DT><A HREF="https://example.net/a%20b/caf%C3%A9?x=%2F&y=%26" ADD_DATE="1700000320"></A>
            <HR>
            <DT><A HREF="https://example.net/quote" ADD_DATE="1700000330">&quot;Quoted&quot; &lt;tag&gt; &#39;single&#39; &apos;apos&apos; non&nbsp;breaking &#233;t&#xE9; &#x1F600;</A>
        </DL><p>
    </DL><p>
    <HR>
    <DT><H3 ADD_DATE="1700000600" LAST_MODIFIED="1700000700" UNFILED_BOOKMARKS_FOLDER="true">Other Bookmarks</H3>
    <DL><p>
        <DT><A HREF="https://example.com/" ADD_DATE="1700000800" SHORTCUTURL="ex" TAGS="work,home">Example</A>
        <DT><H3 ADD_DATE="1700000900" LAST_MODIFIED="1700000900">Empty</H3>
        <DL><p>
        </DL><p>
    </DL><p>
</DL>
)HTML";

BookmarkNode uppercaseExportTree()
{
    return rootOf({
        bookmark("Start page", "https://start.example.com/"),
        folder("Bookmarks Toolbar",
               {
                   bookmark("Cats & dogs", "https://www.example.org/search?q=cats&page=2"),
                   bookmark("  Shop with blanks  ", "https://shop.example.com/cart?item=7&qty=1&lt=3"),
                   folder("Reading",
                          {
                              bookmark(QStringLiteral("Bücher"), "https://xn--bcher-kva.example/"),
                              bookmark("", "https://example.net/a%20b/caf%C3%A9?x=%2F&y=%26"),
                              separator(),
                              bookmark(QStringLiteral("\"Quoted\" <tag> 'single' 'apos' non\u00A0breaking été ")
                                       + QString::fromUtf8("\xF0\x9F\x98\x80"),
                                   "https://example.net/quote"),
                          }),
               }),
        separator(),
        folder("Other Bookmarks",
               {
                   bookmark("Example", "https://example.com/"),
                   folder("Empty"),
               }),
    });
}

// An export with lowercase tags and attributes quoted with ', with " or not at all.
const char kLowercaseExport[] = R"HTML(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<!-- This is an automatically generated file.
     It will be read and overwritten.
     DO NOT EDIT! -->
<meta http-equiv="Content-Type" content="text/html; charset=UTF-8">
<title>Bookmarks</title>
<h1>Bookmarks</h1>
<dl><p>
    <dt><h3 add_date="1690000000" last_modified="1690000300" personal_toolbar_folder="true">Bookmarks bar</h3>
    <dl><p>
        <dt><a href='https://news.example.com/?a=1&b=2' add_date=1690000001 icon="data:image/png;base64,iVBORw0KGgo=">News &amp; weather</a>
        <dt><a add_date=1690000002 href=https://example.org/path?x=1>Unquoted</a>
        <dt><a href = "https://spaced.example/" >Spaced</a>
        <dt><h3 add_date="1690000003">Empty folder</h3>
        <dl><p>
        </dl><p>
    </dl><p>
    <dt><a href="https://example.com/%E2%82%AC">Euro €</a>
</dl><p>
)HTML";

BookmarkNode lowercaseExportTree()
{
    return rootOf({
        folder("Bookmarks bar",
               {
                   bookmark("News & weather", "https://news.example.com/?a=1&b=2"),
                   bookmark("Unquoted", "https://example.org/path?x=1"),
                   bookmark("Spaced", "https://spaced.example/"),
                   folder("Empty folder"),
               }),
        bookmark(QStringLiteral("Euro €"), "https://example.com/%E2%82%AC"),
    });
}

const char kXbelFile[] = R"XML(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE xbel PUBLIC "+//IDN python.org//DTD XML Bookmark Exchange Language 1.0//EN//XML" "http://pyxml.sourceforge.net/topics/dtds/xbel.dtd">
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks">
 <title>My bookmarks</title>
 <info>
  <metadata owner="http://www.freedesktop.org">
   <bookmark:applications>
    <bookmark:application name="Files" exec="files %u" modified="2023-01-01T00:00:00Z" count="2"/>
   </bookmark:applications>
  </metadata>
 </info>
 <folder folded="no">
  <title>Work</title>
  <desc>Pages for the office</desc>
  <bookmark href="https://intranet.example.com/wiki?page=Main&amp;lang=en" added="2023-01-02T00:00:00Z">
   <title>Wiki &amp; notes</title>
   <info><metadata owner="http://www.example.org"><icon name="text-html"/></metadata></info>
   <desc>The team wiki</desc>
  </bookmark>
  <separator/>
  <folder folded="yes"><title>Deep</title><bookmark href="file:///home/user/Documents/"><title>Documents</title></bookmark></folder>
  <unknown><bookmark href="https://hidden.example/"><title>Inside an unknown element</title></bookmark></unknown>
 </folder>
 <alias ref="work"/>
 <bookmark href="https://example.org/caf%C3%A9"><title>  Caf&#233; &lt;&gt; &quot;x&quot;  </title></bookmark>
</xbel>
)XML";

BookmarkNode xbelFileTree()
{
    BookmarkNode root = rootOf({
        folder("Work",
               {
                   bookmark("Wiki & notes", "https://intranet.example.com/wiki?page=Main&lang=en"),
                   separator(),
                   folder("Deep", {bookmark("Documents", "file:///home/user/Documents/")}),
               }),
        bookmark(QStringLiteral("  Café <> \"x\"  "), "https://example.org/caf%C3%A9"),
    });
    root.title = "My bookmarks";
    return root;
}

const char kChromiumFile[] = R"JSON({
   "checksum": "0123456789abcdef0123456789abcdef",
   "roots": {
      "bookmark_bar": {
         "children": [ {
            "date_added": "13300000000000000",
            "date_last_used": "0",
            "guid": "00000000-0000-4000-a000-000000000001",
            "id": "5",
            "meta_info": { "power_bookmark_meta": "" },
            "name": "Caf\u00e9 \"Central\"",
            "type": "url",
            "url": "https:\/\/example.com\/caf%C3%A9?a=1&b=2"
         }, {
            "children": [ {
               "date_added": "13300000000000001",
               "guid": "00000000-0000-4000-a000-000000000002",
               "id": "7",
               "name": "Tab\tand back\\slash \ud83d\ude00",
               "type": "url",
               "url": "https:\/\/xn--bcher-kva.example\/"
            }, {
               "children": [ ],
               "id": "8",
               "name": "",
               "type": "folder"
            } ],
            "date_added": "13300000000000002",
            "date_modified": "13300000000000003",
            "guid": "00000000-0000-4000-a000-000000000003",
            "id": "6",
            "name": "Folder \/ sub",
            "type": "folder"
         }, {
            "id": "9",
            "name": "Of a kind the reader does not know",
            "type": "note"
         } ],
         "id": "1",
         "name": "Bookmarks bar",
         "type": "folder"
      },
      "other": {
         "children": [ {
            "id": "10",
            "name": "  Blanks kept  ",
            "type": "url",
            "url": "http:\/\/other.example\/"
         } ],
         "id": "2",
         "name": "Other bookmarks",
         "type": "folder"
      },
      "synced": {
         "children": [ {
            "id": "11",
            "name": "Timetable",
            "type": "url",
            "url": "https:\/\/m.transit.example\/lines\/12"
         } ],
         "id": "3",
         "name": "Mobile bookmarks",
         "type": "folder"
      }
   },
   "version": 1
}
)JSON";

BookmarkNode chromiumFileTree()
{
    return rootOf({
        folder("Bookmarks bar",
               {
                   bookmark(QStringLiteral("Café \"Central\""), "https://example.com/caf%C3%A9?a=1&b=2"),
                   folder("Folder / sub",
                          {
                              bookmark(QStringLiteral("Tab\tand back\\slash ") + QString::fromUtf8("\xF0\x9F\x98\x80"),
                                   "https://xn--bcher-kva.example/"),
                              folder(""),
                          }),
               }),
        folder("Other bookmarks", {bookmark("  Blanks kept  ", "http://other.example/")}),
        folder("Mobile bookmarks", {bookmark("Timetable", "https://m.transit.example/lines/12")}),
    });
}

// ---- Trees to write ----

// Every character that needs escaping somewhere, text that looks like markup or references,
// letters from other scripts, characters outside the basic plane, and blanks at either end.
QString awkwardText(int n)
{
    return QStringLiteral(" %1 & < > \" ' &amp; &#39; &lt;b&gt; <!-- --> ]]> é ü ß 中文 עברית ").arg(n)
           + QString::fromUtf8("\xF0\x9F\x98\x80 \xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD ");
}

QString awkwardUrl(int n)
{
    return QStringLiteral("https://xn--caf-dma.example/a b/%1?q=1&r=<2>\"x\"'y'&amp;#frag%20é").arg(n)
           + QString::fromUtf8("\xF0\x9F\x98\x80");
}

// A chain of folders `depth` deep, each holding an awkward link, a separator, an empty folder
// and a link with an empty title, then the next folder. `controls` are put into every title.
BookmarkNode deepAwkwardTree(int depth, const QString& controls)
{
    BookmarkNode inner = folder(awkwardText(depth) + controls);
    for (int level = depth - 1; level >= 0; --level) {
        BookmarkNode outer = folder(awkwardText(level) + controls,
                                    {
                                        bookmark(controls + awkwardText(level), awkwardUrl(level)),
                                        separator(),
                                        folder(QString()),
                                        bookmark(QString(), QString()),
                                        std::move(inner),
                                    });
        inner = std::move(outer);
    }
    return rootOf({inner, bookmark(QStringLiteral("last"), QStringLiteral("about:blank"))});
}

// Folders `depth` deep, each with one link.
BookmarkNode deepChain(int depth)
{
    BookmarkNode inner = folder(QStringLiteral("F%1").arg(depth), {bookmark("L", "u")});
    for (int level = depth - 1; level >= 1; --level)
        inner = folder(QStringLiteral("F%1").arg(level), {bookmark("L", "u"), std::move(inner)});
    return rootOf({inner});
}

BookmarkNode wideTree(int folders, int linksEach)
{
    BookmarkNode root = rootOf({});
    for (int f = 0; f < folders; ++f) {
        BookmarkNode sub = folder(QStringLiteral("Folder %1 & more").arg(f));
        for (int l = 0; l < linksEach; ++l)
            sub.children.append(bookmark(QStringLiteral("Link %1 <%2>").arg(f).arg(l),
                                     QStringLiteral("https://example.com/%1/%2?a=1&b=2").arg(f).arg(l)));
        root.children.append(std::move(sub));
    }
    return root;
}

// Bytes that are nothing like a bookmarks file, with NULs and invalid UTF-8.
QByteArray binaryJunk()
{
    QByteArray junk("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
    for (int i = 0; i < 4096; ++i)
        junk.append(char((i * 7919 + 13) % 256));
    return junk;
}

} // namespace

class TestBookmarkFormats : public QObject
{
    Q_OBJECT

private slots:
    // ---- The tree ----

    void treeCountsWhatIsBelow()
    {
        const BookmarkNode tree = uppercaseExportTree();
        QCOMPARE(tree.linkCount(), 7);
        QCOMPARE(tree.folderCount(), 4);
        QCOMPARE(tree.separatorCount(), 2);
        QCOMPARE(tree.depth(), 2);
        QCOMPARE(folder("leaf").depth(), 0);
        QCOMPARE(deepAwkwardTree(100, QString()).depth(), 101);
        QCOMPARE(deepChain(kMaxBookmarkDepth).depth(), kMaxBookmarkDepth);
    }

    // ---- HTML: reading ----

    void uppercaseExportIsRead()
    {
        const BookmarkRead read = NetscapeBookmarks::read(kUppercaseExport);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, uppercaseExportTree());
    }
    void lowercaseExportIsRead()
    {
        const BookmarkRead read = NetscapeBookmarks::read(kLowercaseExport);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, lowercaseExportTree());
    }
    void windowsLineEndsAndByteOrderMarkChangeNothing()
    {
        QByteArray bytes = QByteArray(kLowercaseExport).replace("\n", "\r\n");
        bytes.prepend("\xEF\xBB\xBF");
        const BookmarkRead read = NetscapeBookmarks::read(bytes);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, lowercaseExportTree());
    }

    void referencesAreDecoded_data()
    {
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("title");
        QTest::newRow("amp") << "a &amp; b" << "a & b";
        QTest::newRow("lt gt") << "&lt;b&gt;" << "<b>";
        QTest::newRow("quot") << "&quot;x&quot;" << "\"x\"";
        QTest::newRow("apos and #39") << "&apos;&#39;" << "''";
        QTest::newRow("nbsp") << "a&nbsp;b" << QStringLiteral("a\u00A0b");
        QTest::newRow("capitals") << "&AMP;&LT;&GT;&QUOT;" << "&<>\"";
        QTest::newRow("decimal") << "&#233;&#00065;" << QStringLiteral("éA");
        QTest::newRow("hexadecimal") << "&#xE9;&#X41;&#x1f600;" << QStringLiteral("éA") + QString::fromUtf8("\xF0\x9F\x98\x80");
        QTest::newRow("no character") << "&#0;&#xD800;&#x110000;&#99999999999;" << QStringLiteral("\uFFFD\uFFFD\uFFFD\uFFFD");
        QTest::newRow("unknown name kept") << "&copy; &bogus;" << "&copy; &bogus;";
        QTest::newRow("no semicolon kept") << "&amp &lt &#65" << "&amp &lt &#65";
        QTest::newRow("empty references kept") << "&; &#; &#x;" << "&; &#; &#x;";
        QTest::newRow("lone ampersands") << "& && &&&;" << "& && &&&;";
        QTest::newRow("decoded once") << "&amp;amp; &amp;#39;" << "&amp; &#39;";
        QTest::newRow("far semicolon") << "&aaaaaaaaaaaaaaaaaaaa;" << "&aaaaaaaaaaaaaaaaaaaa;";
    }
    void referencesAreDecoded()
    {
        QFETCH(QString, written);
        QFETCH(QString, title);
        const QByteArray file = "<DL><p><DT><A HREF=\"" + written.toUtf8() + "\">" + written.toUtf8() + "</A></DL>";
        const BookmarkRead read = NetscapeBookmarks::read(file);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({bookmark(title, title)}));
    }

    void titlesAreKeptAsWritten()
    {
        const BookmarkRead read = NetscapeBookmarks::read(
            "<DL><p><DT><A HREF=x>  two\n lines\t</A><DT><H3> </H3><DL></DL><DT><A HREF=y></A><DT><A HREF=z>a<b>b</b>c</A></DL>");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({bookmark("  two\n lines\t", "x"), folder(" "), bookmark("", "y"), bookmark("abc", "z")}));
    }

    void attributesInAnyForm_data()
    {
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<QString>("url");
        QTest::newRow("double quotes") << QByteArray("<A HREF=\"a'b\">") << "a'b";
        QTest::newRow("single quotes") << QByteArray("<A HREF='a\"b'>") << "a\"b";
        QTest::newRow("unquoted") << QByteArray("<A HREF=http://x/y?a=1&b=2>") << "http://x/y?a=1&b=2";
        QTest::newRow("unquoted with slash at end") << QByteArray("<A HREF=http://x/>") << "http://x/";
        QTest::newRow("blanks around =") << QByteArray("<A\n  HREF \t=\n 'u' >") << "u";
        QTest::newRow("any case") << QByteArray("<a hReF=\"u\">") << "u";
        QTest::newRow("after others") << QByteArray("<A ADD_DATE=1 ICON=\"data:,>\" HREF=\"u\">") << "u";
        QTest::newRow("valueless before") << QByteArray("<A FOLDED HREF=\"u\">") << "u";
        QTest::newRow("first of two") << QByteArray("<A HREF=\"one\" HREF=\"two\">") << "one";
        QTest::newRow("missing") << QByteArray("<A NAME=\"x\">") << "";
        QTest::newRow("empty") << QByteArray("<A HREF=\"\">") << "";
        QTest::newRow("valueless") << QByteArray("<A HREF>") << "";
        QTest::newRow("multi-line value") << QByteArray("<A HREF=\"a\nb\">") << "a\nb";
        QTest::newRow("greater-than in value") << QByteArray("<A HREF=\"a>b\">") << "a>b";
        QTest::newRow("self-closing slash") << QByteArray("<A HREF=\"u\"/>") << "u";
    }
    void attributesInAnyForm()
    {
        QFETCH(QByteArray, tag);
        QFETCH(QString, url);
        const BookmarkRead read = NetscapeBookmarks::read("<DL><p><DT>" + tag + "T</A></DL><p>");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({bookmark("T", url)}));
    }

    void olderCodePageIsReadWhenNotUtf8()
    {
        // "Café" in Windows-1252, with no declaration of UTF-8: an export from before UTF-8.
        const BookmarkRead old = NetscapeBookmarks::read("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n"
                                                         "<DT><A HREF=\"https://x.example/\">Caf\xE9 \x80</A>\n</DL><p>\n");
        QCOMPARE(old.problem, QString());
        COMPARE_TREES(old.root, rootOf({bookmark(QStringLiteral("Café €"), "https://x.example/")}));
        // Declared as UTF-8: a damaged byte costs that character only.
        const BookmarkRead damaged = NetscapeBookmarks::read(
            "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n<DL><p>\n"
            "<DT><A HREF=\"https://x.example/\">Caf\xC3\xA9 \xE9</A>\n</DL><p>\n");
        QCOMPARE(damaged.problem, QString());
        COMPARE_TREES(damaged.root, rootOf({bookmark(QStringLiteral("Café \uFFFD"), "https://x.example/")}));
    }

    void looseStructureIsRead_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<BookmarkNode>("tree");
        QTest::newRow("no </A>") << QByteArray("<DL><p><DT><A HREF=a>One<DT><A HREF=b>Two</A></DL>")
                                 << rootOf({bookmark("One", "a"), bookmark("Two", "b")});
        QTest::newRow("no </H3>") << QByteArray("<DL><p><DT><H3>F<DL><p><DT><A HREF=a>A</A></DL></DL>")
                                  << rootOf({folder("F", {bookmark("A", "a")})});
        QTest::newRow("heading with no list") << QByteArray("<DL><p><DT><H3>F</H3><DT><A HREF=a>A</A></DL>")
                                              << rootOf({folder("F"), bookmark("A", "a")});
        QTest::newRow("</H3> ends a link") << QByteArray("<DL><DT><A HREF=a>A</H3>B</DL>")
                                           << rootOf({bookmark("A", "a")});
        QTest::newRow("</A> ends a heading") << QByteArray("<DL><DT><H3>F</A><DL><DT><A HREF=a>A</A></DL></DL>")
                                             << rootOf({folder("F", {bookmark("A", "a")})});
        QTest::newRow("link inside a heading") << QByteArray("<DL><DT><H3>F<A HREF=a>A</A></H3></DL>")
                                               << rootOf({folder("F"), bookmark("A", "a")});
        QTest::newRow("list with no heading") << QByteArray("<DL><DL><DT><A HREF=a>A</A></DL></DL>")
                                              << rootOf({folder("", {bookmark("A", "a")})});
        QTest::newRow("one </DL> too many") << QByteArray("<DL><DT><A HREF=a>A</A></DL></DL></DL><DT><A HREF=b>B</A>")
                                            << rootOf({bookmark("A", "a"), bookmark("B", "b")});
        QTest::newRow("links before any list") << QByteArray("<!DOCTYPE NETSCAPE-Bookmark-file-1><DT><A HREF=a>A</A><DL></DL>")
                                               << rootOf({bookmark("A", "a")});
        QTest::newRow("a < that starts no tag") << QByteArray("<DL><DT><A HREF=a>1 < 2 <3 </ x</A></DL>")
                                                << rootOf({bookmark("1 < 2 <3 </ x", "a")});
        QTest::newRow("comment in a title") << QByteArray("<DL><DT><A HREF=a>A<!-- <DL> -->B</A></DL>")
                                            << rootOf({bookmark("AB", "a")});
        QTest::newRow("description text not kept") << QByteArray("<DL><DT><A HREF=a>A</A><DD>about <b>A</b></DL>")
                                                    << rootOf({bookmark("A", "a")});
        QTest::newRow("separator between folders") << QByteArray("<DL><DT><H3>F</H3><DL></DL><HR><DT><H3>G</H3><DL></DL></DL>")
                                                   << rootOf({folder("F"), separator(), folder("G")});
        QTest::newRow("doctype and no list") << QByteArray("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<TITLE>Bookmarks</TITLE>")
                                             << rootOf({});
    }
    void looseStructureIsRead()
    {
        QFETCH(QByteArray, file);
        QFETCH(BookmarkNode, tree);
        const BookmarkRead read = NetscapeBookmarks::read(file);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, tree);
    }

    void damagedHtmlKeepsWhatWasRead_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<BookmarkNode>("tree");
        QTest::newRow("folder not closed")
            << QByteArray("<DL><p><DT><A HREF=a>A</A><DT><H3>F</H3><DL><p><DT><A HREF=b>B</A>")
            << "The file ends inside a folder" << rootOf({bookmark("A", "a"), folder("F", {bookmark("B", "b")})});
        QTest::newRow("folders not closed, cut in a title")
            << QByteArray("<DL><DT><H3>F</H3><DL><DT><H3>G</H3><DL><DT><A HREF=b>Be")
            << "The file ends inside a folder" << rootOf({folder("F", {folder("G", {bookmark("Be", "b")})})});
        QTest::newRow("cut in a tag inside a folder")
            << QByteArray("<DL><DT><H3>F</H3><DL><DT><A HREF=\"https://cut.exa")
            << "The file ends inside a folder" << rootOf({folder("F")});
        QTest::newRow("list not closed")
            << QByteArray("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n<DT><A HREF=a>A</A>\n")
            << "The file ends inside its list of bookmarks" << rootOf({bookmark("A", "a")});
        QTest::newRow("cut in a tag") << QByteArray("<DL><DT><A HREF=a>A</A></DL><A HREF=\"b")
                                      << "The file ends in the middle of a tag" << rootOf({bookmark("A", "a")});
        QTest::newRow("cut in an end tag") << QByteArray("<DL><DT><A HREF=a>A</A></DL")
                                           << "The file ends inside its list of bookmarks" << rootOf({bookmark("A", "a")});
        QTest::newRow("cut in a comment") << QByteArray("<DL><DT><A HREF=a>A</A></DL><!-- the rest")
                                          << "The file ends inside a comment" << rootOf({bookmark("A", "a")});
        QTest::newRow("cut in the doctype") << QByteArray("<!DOCTYPE NETSCAPE-Bookmark-file-1")
                                            << "The file ends in the middle of a tag" << rootOf({});
        QTest::newRow("empty") << QByteArray() << "The file is not a bookmarks file: it is empty" << rootOf({});
        QTest::newRow("blank") << QByteArray(" \r\n\t\n") << "The file is not a bookmarks file: it is empty"
                               << rootOf({});
        QTest::newRow("binary junk") << binaryJunk()
                                     << "The file is not a bookmarks file: it has neither the bookmarks heading "
                                        "nor a list of bookmarks"
                                     << rootOf({});
        QTest::newRow("a web page with links")
            << QByteArray("<html><body><p><a href=\"https://x.example/\">X</a></p></body></html>")
            << "The file is not a bookmarks file: it has neither the bookmarks heading nor a list of bookmarks"
            << rootOf({bookmark("X", "https://x.example/")});
        QTest::newRow("xml") << QByteArray(kXbelFile)
                             << "The file is not a bookmarks file: it has neither the bookmarks heading nor a "
                                "list of bookmarks"
                             << rootOf({});
    }
    void damagedHtmlKeepsWhatWasRead()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        QFETCH(BookmarkNode, tree);
        const BookmarkRead read = NetscapeBookmarks::read(file);
        QCOMPARE(read.problem, problem);
        QVERIFY(!read.ok());
        COMPARE_TREES(read.root, tree);
    }

    void everyCutOfAnExportIsReadWithoutHarm()
    {
        // Every prefix of a real export, as a download or a copy cut short would leave it: no
        // crash, and never more links than the whole file has.
        const QByteArray whole(kUppercaseExport);
        const qsizetype listStart = whole.indexOf("<DL>") + 4;
        for (qsizetype size = 0; size < whole.size(); ++size) {
            const BookmarkRead read = NetscapeBookmarks::read(whole.left(size));
            QVERIFY(read.root.linkCount() <= 7);
            if (size >= listStart && size < whole.size() - 1)
                QVERIFY2(!read.ok(), qPrintable(QString::number(size)));
        }
    }

    void foldersNestedTooDeepStopTheReading()
    {
        const QByteArray file = "<DL><p>" + QByteArray("<DT><H3>F</H3><DL><p>").repeated(kMaxBookmarkDepth + 50)
                                + "<DT><A HREF=a>A</A>" + QByteArray("</DL><p>").repeated(kMaxBookmarkDepth + 51);
        const BookmarkRead read = NetscapeBookmarks::read(file);
        QCOMPARE(read.problem, QStringLiteral("The folders are nested more than 1000 deep"));
        QCOMPARE(read.root.depth(), kMaxBookmarkDepth);
        QCOMPARE(read.root.linkCount(), 0);
        // Stray lists with no heading count as folders too.
        const BookmarkRead lists = NetscapeBookmarks::read(QByteArray("<DL>").repeated(100000));
        QCOMPARE(lists.problem, QStringLiteral("The folders are nested more than 1000 deep"));
        QCOMPARE(lists.root.depth(), kMaxBookmarkDepth);
        // Exactly at the limit is fine.
        const QByteArray deepest = "<DL><p>" + QByteArray("<DT><H3>F</H3><DL><p>").repeated(kMaxBookmarkDepth)
                                   + QByteArray("</DL><p>").repeated(kMaxBookmarkDepth + 1);
        const BookmarkRead atLimit = NetscapeBookmarks::read(deepest);
        QCOMPARE(atLimit.problem, QString());
        QCOMPARE(atLimit.root.depth(), kMaxBookmarkDepth);
    }

    void hostileHtmlIsReadQuickly()
    {
        // Inputs that would make a careless reader search the rest of the file again and again.
        const QList<QByteArray> files = {
            "<DL><DT><A HREF=a>" + QByteArray("&").repeated(200000) + ";</A></DL>",
            "<DL><DT><A HREF=a>" + QByteArray("&#1").repeated(100000) + "</A></DL>",
            QByteArray("<").repeated(200000),
            QByteArray("<a ").repeated(100000),
            QByteArray("<!").repeated(100000),
            "<DL>" + QByteArray("<DT><A HREF=a>A").repeated(50000),
            "<DL>" + QByteArray("<DT><H3>F</H3>").repeated(50000) + "</DL>",
        };
        for (const QByteArray& file : files) {
            QElapsedTimer timer;
            timer.start();
            const BookmarkRead read = NetscapeBookmarks::read(file);
            QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
            Q_UNUSED(read);
        }
    }

    // ---- HTML: writing ----

    void htmlIsWrittenAsTheBrowsersWriteIt()
    {
        BookmarkNode tree = rootOf({
            folder("Work & play", {bookmark("A <b>", "https://x.example/?a=1&b=\"2\"'3'")}),
            separator(),
            folder("Empty"),
            bookmark(QStringLiteral("Café"), "https://top.example/"),
        });
        tree.title = "Not written";
        const QByteArray expected = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                                    "<!-- This is an automatically generated file.\n"
                                    "     It will be read and overwritten.\n"
                                    "     DO NOT EDIT! -->\n"
                                    "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                                    "<TITLE>Bookmarks</TITLE>\n"
                                    "<H1>Bookmarks</H1>\n"
                                    "<DL><p>\n"
                                    "    <DT><H3>Work &amp; play</H3>\n"
                                    "    <DL><p>\n"
                                    "        <DT><A HREF=\"https://x.example/?a=1&amp;b=&quot;2&quot;'3'\">A &lt;b&gt;</A>\n"
                                    "    </DL><p>\n"
                                    "    <HR>\n"
                                    "    <DT><H3>Empty</H3>\n"
                                    "    <DL><p>\n"
                                    "    </DL><p>\n"
                                    "    <DT><A HREF=\"https://top.example/\">Caf\xC3\xA9</A>\n"
                                    "</DL><p>\n";
        QCOMPARE(NetscapeBookmarks::write(tree), expected);
        QCOMPARE(NetscapeBookmarks::write(rootOf({})),
                 expected.left(expected.indexOf("<DL><p>\n") + 8) + "</DL><p>\n");
    }

    void htmlRoundTripKeepsAwkwardTrees_data()
    {
        QTest::addColumn<BookmarkNode>("tree");
        // Every control character HTML text can hold as it is, NUL included.
        QString controls;
        for (char16_t c = 0; c < 0x20; ++c)
            controls += QChar(c);
        controls += QChar(0x7F);
        controls += QChar(0x85);
        controls += QChar(0xFEFF);
        QTest::newRow("awkward, 100 deep") << deepAwkwardTree(100, controls);
        QTest::newRow("10,000 links") << wideTree(100, 100);
        QTest::newRow("empty") << rootOf({});
        QTest::newRow("only separators") << rootOf({separator(), separator()});
        QTest::newRow("1000 deep") << deepChain(kMaxBookmarkDepth);
        QTest::newRow("the exports") << rootOf({uppercaseExportTree(), lowercaseExportTree(), chromiumFileTree()});
    }
    void htmlRoundTripKeepsAwkwardTrees()
    {
        QFETCH(BookmarkNode, tree);
        const BookmarkRead read = NetscapeBookmarks::read(NetscapeBookmarks::write(tree));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, tree);
    }

    // ---- XBEL ----

    void xbelIsRead()
    {
        const BookmarkRead read = XbelBookmarks::read(kXbelFile);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, xbelFileTree());
    }

    void xbelIsWrittenWithTheXmlWriter()
    {
        BookmarkNode tree = rootOf({
            folder("Work & play", {bookmark("A <b>", "https://x.example/?a=1&b=\"2\"")}),
            separator(),
            bookmark(QStringLiteral("Café"), "https://top.example/"),
            folder(""),
        });
        const QByteArray expected =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE xbel PUBLIC \"+//IDN python.org//DTD XML Bookmark Exchange Language 1.0//EN//XML\" "
            "\"http://pyxml.sourceforge.net/topics/dtds/xbel.dtd\">\n"
            "<xbel version=\"1.0\">\n"
            "    <folder>\n"
            "        <title>Work &amp; play</title>\n"
            "        <bookmark href=\"https://x.example/?a=1&amp;b=&quot;2&quot;\">\n"
            "            <title>A &lt;b&gt;</title>\n"
            "        </bookmark>\n"
            "    </folder>\n"
            "    <separator/>\n"
            "    <bookmark href=\"https://top.example/\">\n"
            "        <title>Caf\xC3\xA9</title>\n"
            "    </bookmark>\n"
            "    <folder>\n"
            "        <title></title>\n"
            "    </folder>\n"
            "</xbel>\n";
        QCOMPARE(XbelBookmarks::write(tree), expected);
        tree.title = "Mine";
        QVERIFY(XbelBookmarks::write(tree).contains("<xbel version=\"1.0\">\n    <title>Mine</title>\n    <folder>"));
    }

    void xbelRoundTripKeepsAwkwardTrees_data()
    {
        QTest::addColumn<BookmarkNode>("tree");
        BookmarkNode awkward = deepAwkwardTree(100, QStringLiteral("\t\n\r\r\n \n\r"));
        awkward.title = awkwardText(-1) + "\r";
        QTest::newRow("awkward, 100 deep") << awkward;
        QTest::newRow("10,000 links") << wideTree(100, 100);
        QTest::newRow("empty") << rootOf({});
        QTest::newRow("blank titles") << rootOf({bookmark(" ", " "), folder("\n", {bookmark("\t", "\t")}), bookmark("\r", "\r")});
        QTest::newRow("1000 deep") << deepChain(kMaxBookmarkDepth);
        QTest::newRow("the exports") << rootOf({uppercaseExportTree(), lowercaseExportTree(), chromiumFileTree()});
    }
    void xbelRoundTripKeepsAwkwardTrees()
    {
        QFETCH(BookmarkNode, tree);
        const BookmarkRead read = XbelBookmarks::read(XbelBookmarks::write(tree));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, tree);
    }

    void xbelLeavesOutWhatXmlCannotHold()
    {
        QString controls = QStringLiteral("a\x01\x08\x0B\x0C\x1F");
        for (char16_t c : {u'\0', u'\uFFFE', u'\uFFFF', char16_t(0xD800), u'b', char16_t(0xDC00), u'\x7F'})
            controls += QChar(c);
        const BookmarkNode tree = rootOf({bookmark(controls, controls), folder(controls)});
        const BookmarkRead read = XbelBookmarks::read(XbelBookmarks::write(tree));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({bookmark("ab\x7F", "ab\x7F"), folder("ab\x7F")}));
    }

    void damagedXbelGivesTheXmlReadersReason_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<BookmarkNode>("tree");
        QTest::newRow("cut short") << QByteArray(kXbelFile).left(QByteArray(kXbelFile).indexOf("<separator/>"))
                                   << "The file is not well-formed XML at line 20: Premature end of document"
                                   << titled("My bookmarks", rootOf({folder("Work", {bookmark("Wiki & notes", "https://intranet.example.com/wiki?page=Main&lang=en")})}));
        QTest::newRow("wrong nesting")
            << QByteArray("<xbel>\n<folder><title>F</title>\n<bookmark href=\"a\"><title>A</title></folder>\n</xbel>")
            << "The file is not well-formed XML at line 3: Opening and ending tag mismatch"
            << rootOf({folder("F", {bookmark("A", "a")})});
        QTest::newRow("unclosed attribute") << QByteArray("<xbel><bookmark href=\"a><title>A</title></bookmark></xbel>")
                                            << "The file is not well-formed XML at line 1: Unexpected '<'"
                                            << rootOf({});
        QTest::newRow("undeclared entity")
            << QByteArray("<xbel><bookmark href=\"a\"><title>A&nbsp;B</title></bookmark></xbel>")
            << "The file is not well-formed XML at line 1: Entity 'nbsp' not declared"
            << rootOf({bookmark("A", "a")});
        // With an external DTD, the XML reader keeps a reference it cannot resolve as text, and
        // in an attribute lets even a NUL through.
        QTest::newRow("NUL in an unresolved reference")
            << QByteArray("<!DOCTYPE e PUBLIC \"\" \"\"><xbel><bookmark href=\"&m\0;\">", 53)
            << "The file is not well-formed XML at line 1: Premature end of document"
            << rootOf({bookmark("", "&m;")});
        QTest::newRow("NUL in an undeclared entity")
            << QByteArray("<xbel>\n<bookmark href=\"x&am\0\0p;y\"><title>T</title></bookmark>\n</xbel>", 69)
            << QStringLiteral("The file is not well-formed XML at line 2: Entity 'am\uFFFD\uFFFDp' not declared")
            << rootOf({});
        QTest::newRow("junk after the end")
            << QByteArray("<xbel><bookmark href=\"a\"><title>A</title></bookmark></xbel><xbel/>")
            << "The file is not well-formed XML at line 1: Extra content at end of document"
            << rootOf({bookmark("A", "a")});
        QTest::newRow("another root element") << QByteArray("<?xml version=\"1.0\"?>\n<html><body/></html>")
                                              << "The file is not a bookmarks file: its outermost element is "
                                                 "<html>, not <xbel>"
                                              << rootOf({});
        QTest::newRow("html") << QByteArray(kUppercaseExport)
                              << "The file is not a bookmarks file: its outermost element is <META>, not <xbel>"
                              << rootOf({});
        QTest::newRow("empty") << QByteArray() << "The file is not a bookmarks file: it is empty" << rootOf({});
        QTest::newRow("blank") << QByteArray("\n\n") << "The file is not a bookmarks file: it is empty" << rootOf({});
        QTest::newRow("binary junk") << binaryJunk()
                                     << "The file is not well-formed XML at line 1: Encountered incorrectly "
                                        "encoded content"
                                     << rootOf({});
    }
    void damagedXbelGivesTheXmlReadersReason()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        QFETCH(BookmarkNode, tree);
        const BookmarkRead read = XbelBookmarks::read(file);
        QCOMPARE(read.problem, problem);
        COMPARE_TREES(read.root, tree);
    }

    void xbelFoldersNestedTooDeepStopTheReading()
    {
        const QByteArray file = "<xbel>" + QByteArray("<folder><title>F</title>").repeated(kMaxBookmarkDepth + 1)
                                + QByteArray("</folder>").repeated(kMaxBookmarkDepth + 1) + "</xbel>";
        const BookmarkRead read = XbelBookmarks::read(file);
        QCOMPARE(read.problem, QStringLiteral("The folders are nested more than 1000 deep"));
        QCOMPARE(read.root.depth(), kMaxBookmarkDepth);
    }

    void everyCutOfAnXbelFileIsReadWithoutHarm()
    {
        const QByteArray whole(kXbelFile);
        for (qsizetype size = 0; size < whole.size(); ++size) {
            const BookmarkRead read = XbelBookmarks::read(whole.left(size));
            QVERIFY(read.root.linkCount() <= 3);
            QVERIFY2(!read.ok() || size >= whole.size() - 1, qPrintable(QString::number(size)));
        }
    }

    // ---- Chromium's JSON ----

    void chromiumFileIsRead()
    {
        const BookmarkRead read = ChromiumBookmarks::read(kChromiumFile);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, chromiumFileTree());
    }

    void emptyRootsAreLeftOut()
    {
        const BookmarkRead read = ChromiumBookmarks::read(R"({"roots": {
            "synced": {"children": [{"type": "url", "name": "S", "url": "s"}], "type": "folder"},
            "other": {"children": [], "type": "folder"},
            "bookmark_bar": {"children": [{"type": "url", "name": "B", "url": "b"}], "type": "folder"},
            "workspaces": {"children": [{"type": "url", "name": "W", "url": "w"}], "type": "folder"}
        }, "version": 1})");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({folder("Bookmarks bar", {bookmark("B", "b")}),
                                         folder("Mobile bookmarks", {bookmark("S", "s")})}));
        const BookmarkRead none = ChromiumBookmarks::read(R"({"roots": {}, "version": 1})");
        QCOMPARE(none.problem, QString());
        COMPARE_TREES(none.root, rootOf({}));
    }

    void oddChromiumNodesAreSkipped()
    {
        const BookmarkRead read = ChromiumBookmarks::read(R"({"roots": {"other": {"children": [
            1, "text", null, [], {},
            {"type": "url"},
            {"type": "folder", "name": "No children"},
            {"type": "folder", "name": "Bad children", "children": {"type": "url", "name": "x", "url": "x"}},
            {"type": "url", "name": 5, "url": ["x"]},
            {"type": "URL", "name": "Wrong case", "url": "x"},
            {"type": "url", "name": "Half \ud83d pairs \ude00 \ude00\ud83d", "url": "\ud800"}
        ]}}})");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({folder("Other bookmarks", {bookmark("", ""), folder("No children"),
                                                                    folder("Bad children"), bookmark("", ""),
                                                                    bookmark(QStringLiteral("Half \uFFFD pairs \uFFFD \uFFFD\uFFFD"),
                                                                             QStringLiteral("\uFFFD"))})}));
    }

    void damagedChromiumFileGivesTheParsersReason_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("problem");
        QTest::newRow("cut short") << QByteArray(kChromiumFile).left(200)
                                   << "The file is not valid JSON: unterminated object at byte 200";
        QTest::newRow("missing comma") << QByteArray("{\"roots\": {} \"version\": 1}")
                                       << "The file is not valid JSON: unterminated object at byte 14";
        QTest::newRow("trailing comma") << QByteArray("{\"roots\": {},}")
                                        << "The file is not valid JSON: object is missing after a comma at byte 14";
        QTest::newRow("no roots") << QByteArray("{\"version\": 1}")
                                  << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("roots not an object") << QByteArray("{\"roots\": [1, 2]}")
                                             << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("an array") << QByteArray("[{\"roots\": {}}]")
                                  << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("empty") << QByteArray() << "The file is not a bookmarks file: it is empty";
        QTest::newRow("blank") << QByteArray(" \n") << "The file is not a bookmarks file: it is empty";
        QTest::newRow("binary junk") << binaryJunk() << "The file is not valid JSON: illegal value at byte 1";
        QTest::newRow("nested too deep") << "{\"roots\": " + QByteArray("[").repeated(2000)
                                         << "The file is not valid JSON: too deeply nested document at byte 1034";
    }
    void damagedChromiumFileGivesTheParsersReason()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        const BookmarkRead read = ChromiumBookmarks::read(file);
        QCOMPARE(read.problem, problem);
        COMPARE_TREES(read.root, rootOf({}));
    }

    // ---- The seed files of the fuzz targets ----

    void sampleFilesAreReadWhole()
    {
        const BookmarkRead html = NetscapeBookmarks::read(testData("bookmarks.sample.html"));
        QCOMPARE(html.problem, QString());
        QCOMPARE(html.root.linkCount(), 4);
        QCOMPARE(html.root.folderCount(), 3);
        const BookmarkRead xbel = XbelBookmarks::read(testData("bookmarks.sample.xbel"));
        QCOMPARE(xbel.problem, QString());
        QCOMPARE(xbel.root.linkCount(), 3);
        QCOMPARE(xbel.root.folderCount(), 2);
        const BookmarkRead json = ChromiumBookmarks::read(testData("Bookmarks.sample.json"));
        QCOMPARE(json.problem, QString());
        QCOMPARE(json.root.linkCount(), 3);
        QCOMPARE(json.root.folderCount(), 3);
    }
};

QTEST_GUILESS_MAIN(TestBookmarkFormats)
#include "tst_bookmarkformats.moc"
