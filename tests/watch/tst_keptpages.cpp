#include "watch/KeptPages.h"

#include <QTest>

// Which step of a run brings a window forward instead of loading its page again.
class TestKeptPages : public QObject
{
    Q_OBJECT

    QStringList m_shown = QStringList(9); // what slots 1 to 8 show
    std::function<QString(int)> shows() { return [this](int slot) { return m_shown[slot]; }; }

private slots:
    void init() { m_shown = QStringList(9); }

    void afterTheFirstRoundEachPageHasItsWindow()
    {
        KeptPages kept;
        kept.start(3, true, true);
        QVERIFY(kept.active());
        const QStringList urls = {"https://a/", "https://b/", "https://c/"};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(kept.keptSlot(i, urls[i], shows()), 0); // the first round loads
            m_shown[i + 1] = urls[i];
            kept.loaded(i, i + 1, 10.0 * i);
        }
        for (int i = 0; i < 3; ++i)
            QCOMPARE(kept.keptSlot(i, urls[i], shows()), i + 1);
    }
    void aWindowThatWentElsewhereOrClosedLoadsAgain()
    {
        KeptPages kept;
        kept.start(2, true, true);
        m_shown[1] = "https://a/";
        kept.loaded(0, 1, 0);
        m_shown[1] = "https://elsewhere/";
        QCOMPARE(kept.keptSlot(0, "https://a/", shows()), 0);
        m_shown[1] = QString();
        QCOMPARE(kept.keptSlot(0, "https://a/", shows()), 0);
    }
    void twoPagesInOneWindowAreNotKept()
    {
        KeptPages kept;
        kept.start(2, true, true);
        m_shown[8] = "https://b/";
        kept.loaded(0, 8, 0);
        kept.loaded(1, 8, 1);
        QCOMPARE(kept.keptSlot(1, "https://b/", shows()), 0);
    }
    void withoutTheChoiceOrWithOneWindowOrNinePagesNothingIsKept_data()
    {
        QTest::addColumn<int>("pages");
        QTest::addColumn<bool>("keep");
        QTest::addColumn<bool>("several");
        QTest::newRow("not chosen") << 3 << false << true;
        QTest::newRow("one window") << 3 << true << false;
        QTest::newRow("nine pages") << 9 << true << true;
        QTest::newRow("no pages") << 0 << true << true;
    }
    void withoutTheChoiceOrWithOneWindowOrNinePagesNothingIsKept()
    {
        QFETCH(int, pages);
        QFETCH(bool, keep);
        QFETCH(bool, several);
        KeptPages kept;
        kept.start(pages, keep, several);
        QVERIFY(!kept.active());
        m_shown[1] = "https://a/";
        kept.loaded(0, 1, 0);
        QCOMPARE(kept.keptSlot(0, "https://a/", shows()), 0);
    }
    void aKeptPageIsReloadedWhenItsTimeHasCome()
    {
        KeptPages kept;
        kept.start(2, true, true);
        kept.loaded(0, 1, 100);
        QVERIFY(!kept.reloadDue(0, 100 + 299, 300));
        QVERIFY(kept.reloadDue(0, 100 + 300, 300));
        QVERIFY(!kept.reloadDue(0, 100000, 0)); // never
    }
};

QTEST_GUILESS_MAIN(TestKeptPages)
#include "tst_keptpages.moc"
