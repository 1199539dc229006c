// The rules for web addresses: what a favourite or a list page may hold, what a drop from another
// program must begin with, and the name of a page that has no title.
#include "core/WebAddress.h"

#include <QTest>

class TestWebAddress : public QObject
{
    Q_OBJECT

private slots:
    void favouritesHoldWebAddressesOnly_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("web");
        QTest::newRow("http") << "http://example.org/" << true;
        QTest::newRow("https in capitals") << "HTTPS://Example.org/a?b=c" << true;
        QTest::newRow("ftp") << "ftp://files.example.org/x" << true;
        QTest::newRow("blanks around") << "  https://example.org/  " << true;
        QTest::newRow("no host") << "https:///path" << false;
        QTest::newRow("javascript") << "javascript:alert(1)" << false;
        QTest::newRow("place") << "place:folder=BOOKMARKS_MENU" << false;
        QTest::newRow("data") << "data:text/html,hi" << false;
        QTest::newRow("a line end inside") << "https://example.org/\r\n[Other]" << false;
        QTest::newRow("empty") << "" << false;
    }
    void favouritesHoldWebAddressesOnly()
    {
        QFETCH(QString, address);
        QFETCH(bool, web);
        QCOMPARE(WebAddress::isWebAddress(address), web);
    }

    void aDropIsTakenWhenItBeginsWithHttp_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("taken");
        QTest::newRow("http") << "http://example.org/" << true;
        QTest::newRow("any case") << "HtTp://example.org/" << true;
        QTest::newRow("https") << "https://example.org/" << true;
        QTest::newRow("ftp") << "ftp://example.org/" << false;
        QTest::newRow("a word") << "httpd" << true; // the rule looks at the first four letters only
        QTest::newRow("leading blank") << " http://example.org/" << false;
        QTest::newRow("short") << "htt" << false;
    }
    void aDropIsTakenWhenItBeginsWithHttp()
    {
        QFETCH(QString, text);
        QFETCH(bool, taken);
        QCOMPARE(WebAddress::startsWithHttp(text), taken);
    }

    void aPageWithoutTitleIsNamedAfterItsHost()
    {
        QCOMPARE(WebAddress::nameFromAddress("https://news.example.org/today?x=1"), QStringLiteral("news.example.org"));
        QCOMPARE(WebAddress::nameFromAddress("not an address"), QStringLiteral("not an address"));
    }
    void addressesFromOutsideAreHttpOrHttpsOnly()
    {
        QCOMPARE(WebAddress::fromOutside(QStringLiteral("https://example.org/a?b=1")),
                 std::optional<QString>(QStringLiteral("https://example.org/a?b=1")));
        QCOMPARE(WebAddress::fromOutside(QStringLiteral("  example.org ")),
                 std::optional<QString>(QStringLiteral("http://example.org")));
        QCOMPARE(WebAddress::fromOutside(QStringLiteral("HTTP://Example.org/")),
                 std::optional<QString>(QStringLiteral("http://example.org/")));
        for (const char* refused : {"file:///etc/passwd", "/etc/passwd", "javascript:alert(1)", "ftp://example.org/",
                                    "data:text/html,<b>x</b>", "", "   ", "https://", "http://exa\nmple.org/"})
            QVERIFY2(!WebAddress::fromOutside(QString::fromUtf8(refused)), refused);
    }
};

QTEST_GUILESS_MAIN(TestWebAddress)
#include "tst_webaddress.moc"
