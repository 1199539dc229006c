#include "watch/KeptPages.h"

#include <QTest>

// Which step of a run brings a window forward instead of loading its page again.
class TestKeptPages : public QObject
{
    Q_OBJECT

    QStringList m_shown = QStringList(9); // what slots 1 to 8 show
    QList<int> m_loadedIn = QList<int>(9); // where the run loaded each page last
    std::function<QString(int)> shows() { return [this](int slot) { return m_shown[slot]; }; }
    std::function<int(int)> loadedIn() { return [this](int position) { return m_loadedIn.value(position); }; }
    int keptSlot(const KeptPages& kept, int position, const QString& url)
    {
        return kept.keptSlot(position, url, loadedIn(), shows());
    }

private slots:
    void init()
    {
        m_shown = QStringList(9);
        m_loadedIn = QList<int>(9);
    }

    void afterTheFirstRoundEachPageHasItsWindow()
    {
        KeptPages kept;
        kept.start(3, true, true);
        QVERIFY(kept.active());
        const QStringList urls = {"https://a/", "https://b/", "https://c/"};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(keptSlot(kept, i, urls[i]), 0); // the first round loads
            m_shown[i + 1] = urls[i];
            m_loadedIn[i] = i + 1;
        }
        for (int i = 0; i < 3; ++i)
            QCOMPARE(keptSlot(kept, i, urls[i]), i + 1);
    }
    void aWindowThatWentElsewhereOrClosedLoadsAgain()
    {
        KeptPages kept;
        kept.start(2, true, true);
        m_shown[1] = "https://a/";
        m_loadedIn[0] = 1;
        m_shown[1] = "https://elsewhere/";
        QCOMPARE(keptSlot(kept, 0, "https://a/"), 0);
        m_shown[1] = QString();
        QCOMPARE(keptSlot(kept, 0, "https://a/"), 0);
    }
    void twoPagesInOneWindowAreNotKept()
    {
        KeptPages kept;
        kept.start(2, true, true);
        m_shown[8] = "https://b/";
        m_loadedIn[0] = 8;
        m_loadedIn[1] = 8;
        QCOMPARE(keptSlot(kept, 1, "https://b/"), 0);
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
        m_loadedIn[0] = 1;
        QCOMPARE(keptSlot(kept, 0, "https://a/"), 0);
    }
};

QTEST_GUILESS_MAIN(TestKeptPages)
#include "tst_keptpages.moc"
