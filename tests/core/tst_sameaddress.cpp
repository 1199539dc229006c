#include "core/SameAddress.h"

#include <QTest>

// Addresses that are the same page, as a person would say, under one key.
class TestSameAddress : public QObject
{
    Q_OBJECT

private slots:
    void theSamePageHasOneKey_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("dropTracking");
        QTest::addColumn<bool>("same");
        QTest::newRow("case of scheme and host") << "HTTPS://Example.ORG/Page" << "https://example.org/Page" << false << true;
        QTest::newRow("case of the path counts") << "https://example.org/page" << "https://example.org/Page" << false << false;
        QTest::newRow("default port") << "https://example.org:443/a" << "https://example.org/a" << false << true;
        QTest::newRow("http's default port") << "http://example.org:80/" << "http://example.org" << false << true;
        QTest::newRow("another port") << "https://example.org:8443/a" << "https://example.org/a" << false << false;
        QTest::newRow("trailing slash") << "https://example.org/docs/" << "https://example.org/docs" << false << true;
        QTest::newRow("root") << "https://example.org/" << "https://example.org" << false << true;
        QTest::newRow("fragment") << "https://example.org/a#part-2" << "https://example.org/a" << false << true;
        QTest::newRow("bare question mark") << "https://example.org/a?" << "https://example.org/a" << false << true;
        QTest::newRow("scheme counts") << "http://example.org/" << "https://example.org/" << false << false;
        QTest::newRow("www counts") << "https://www.example.org/" << "https://example.org/" << false << false;
        QTest::newRow("query counts") << "https://example.org/?id=1" << "https://example.org/?id=2" << false << false;
        QTest::newRow("tracking kept unless asked") << "https://example.org/?utm_source=x" << "https://example.org/" << false << false;
        QTest::newRow("tracking dropped") << "https://example.org/a?utm_source=news&utm_medium=mail" << "https://example.org/a"
                                          << true << true;
        QTest::newRow("tracking among others") << "https://example.org/a?id=7&fbclid=XYZ&utm_campaign=c"
                                               << "https://example.org/a/?id=7" << true << true;
        QTest::newRow("order of the others counts") << "https://example.org/a?x=1&y=2" << "https://example.org/a?y=2&x=1"
                                                    << true << false;
        QTest::newRow("no url") << "  not a url  " << "not a url" << false << true;
    }
    void theSamePageHasOneKey()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, dropTracking);
        QFETCH(bool, same);
        QCOMPARE(SameAddress::key(a, dropTracking) == SameAddress::key(b, dropTracking), same);
    }
    void trackingParametersAreKnown()
    {
        QVERIFY(SameAddress::isTrackingParameter("utm_source"));
        QVERIFY(SameAddress::isTrackingParameter("UTM_Term"));
        QVERIFY(SameAddress::isTrackingParameter("gclid"));
        QVERIFY(SameAddress::isTrackingParameter("mc_eid"));
        QVERIFY(!SameAddress::isTrackingParameter("id"));
        QVERIFY(!SameAddress::isTrackingParameter("q"));
    }
};

QTEST_GUILESS_MAIN(TestSameAddress)
#include "tst_sameaddress.moc"
