#include "bookmarks/ListTransfer.h"
#include "bookmarks/NetscapeBookmarks.h"

#include <QTest>

// A list's pages out as bookmarks or text, and in from text files, bookmark trees and the clipboard.
class TestListTransfer : public QObject
{
    Q_OBJECT

    static QList<ListTransfer::Page> pages()
    {
        return {{"Debian", "https://www.debian.org/"}, {"Search & find", "https://search.example/?q=a&b=c"}};
    }

private slots:
    void aListGoesOutAsOneFolderOfBookmarks()
    {
        const BookmarkNode tree = ListTransfer::asBookmarks("Morning", pages());
        QCOMPARE(tree.children.size(), 1);
        QCOMPARE(tree.children[0].title, QStringLiteral("Morning"));
        QCOMPARE(tree.children[0].children.size(), 2);
        const BookmarkRead back = NetscapeBookmarks::read(NetscapeBookmarks::write(tree));
        QVERIFY(back.ok());
        QCOMPARE(back.root.children, tree.children);
        QCOMPARE(ListTransfer::pagesOf(back.root).size(), 2);
        QCOMPARE(ListTransfer::pagesOf(back.root)[1].url, QStringLiteral("https://search.example/?q=a&b=c"));
    }
    void aListGoesOutAsTextOneAddressALine()
    {
        QCOMPARE(ListTransfer::asText(pages()), QByteArray("https://www.debian.org/\nhttps://search.example/?q=a&b=c\n"));
        QCOMPARE(ListTransfer::asText({}), QByteArray());
    }
    void aTextFileComesInWithoutCommentsBlanksAndRepeats()
    {
        const QByteArray file = "# my pages\r\n\r\n  https://a.example/  \r\nhttps://b.example/\n# https://c.example/\n"
                                "https://a.example/\nnot an address\njavascript:alert(1)\rftp://files.example/pub/\n";
        QCOMPARE(ListTransfer::addressesOfText(file),
                 (QStringList{"https://a.example/", "https://b.example/", "ftp://files.example/pub/"}));
        QVERIFY(ListTransfer::addressesOfText("").isEmpty());
        QVERIFY(ListTransfer::addressesOfText(QByteArray(100, '\0')).isEmpty());
    }
    void theClipboardsAddressesAreFoundAmongWords()
    {
        const QString text = "See https://a.example/page, and (https://b.example/x_(y)) or <https://c.example/?q=1>.\n"
                             "Also \"HTTP://D.EXAMPLE/\" and https://a.example/page again; mailto:x@y.example "
                             "javascript:void(0) file:///etc/passwd https://e.example/end.";
        QCOMPARE(ListTransfer::webAddressesIn(text),
                 (QStringList{"https://a.example/page", "https://b.example/x_(y)", "https://c.example/?q=1",
                              "HTTP://D.EXAMPLE/", "https://e.example/end"}));
        QVERIFY(ListTransfer::webAddressesIn("no addresses here").isEmpty());
        QCOMPARE(ListTransfer::webAddressesIn("https://one.example/\r\nhttps://two.example/"),
                 (QStringList{"https://one.example/", "https://two.example/"}));
    }
    void pagesOfATreeAreItsWebLinksEachOnce()
    {
        using B = BookmarkNode;
        const B root = B::folder({}, {B::link("A", "https://a.example/"), B::separator(),
                                      B::folder("F", {B::link("B", "https://b.example/"), B::link("A again", "https://a.example/"),
                                                      B::link("JS", "javascript:x()")})});
        const QList<ListTransfer::Page> found = ListTransfer::pagesOf(root);
        QCOMPARE(found.size(), 2);
        QCOMPARE(found[0].title, QStringLiteral("A"));
        QCOMPARE(found[1].url, QStringLiteral("https://b.example/"));
    }
};

QTEST_GUILESS_MAIN(TestListTransfer)
#include "tst_listtransfer.moc"
