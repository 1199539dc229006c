#include "BookmarkFixtures.h"
#include "TestSupport.h"
#include "bookmarks/NetscapeBookmarks.h"

#include <QTest>

// The HTML bookmarks file: exports as the browsers write them, damaged and hostile files, and the
// trees Vantrel writes read back as they were.

class TestHtmlBookmarks : public QObject
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

    // ---- The seed file of the fuzz target ----

    void sampleFileIsReadWhole()
    {
        const BookmarkRead html = NetscapeBookmarks::read(testData("bookmarks.sample.html"));
        QCOMPARE(html.problem, QString());
        QCOMPARE(html.root.linkCount(), 4);
        QCOMPARE(html.root.folderCount(), 3);
    }
};

QTEST_GUILESS_MAIN(TestHtmlBookmarks)
#include "tst_htmlbookmarks.moc"
