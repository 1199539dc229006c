#include "BookmarkFixtures.h"
#include "TestSupport.h"
#include "bookmarks/XbelBookmarks.h"

#include <QTest>

// XBEL files: read as the programs that keep bookmarks in XBEL write them, damaged files, and the
// trees Vantrel writes read back as they were.

class TestXbelBookmarks : public QObject
{
    Q_OBJECT

private slots:
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

    // ---- The seed file of the fuzz target ----

    void sampleFileIsReadWhole()
    {
        const BookmarkRead xbel = XbelBookmarks::read(testData("bookmarks.sample.xbel"));
        QCOMPARE(xbel.problem, QString());
        QCOMPARE(xbel.root.linkCount(), 3);
        QCOMPARE(xbel.root.folderCount(), 2);
    }
};

QTEST_GUILESS_MAIN(TestXbelBookmarks)
#include "tst_xbelbookmarks.moc"
