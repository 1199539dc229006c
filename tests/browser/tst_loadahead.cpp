// A run's next page loaded ahead of its step, with the real browser engine on local pages: the
// server is asked for it before the step, the window says nothing of it until the step takes it,
// it comes up at the step's very call, and its events follow then; a page loaded ahead for
// another address, or one that floods its events, goes without a word.
#include "ListRecords.h"
#include "RealBrowserTest.h"
#include "browser/BrowserFrame.h"
#include "core/Clock.h"
#include "settings/VantrelConf.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineView>

class TestLoadAhead : public RealBrowserTest
{
    Q_OBJECT

    QString shownUrl(WebBrowserWindow* w) { return w->frame()->view()->page()->url().toString(); }
    // Window 1 showing /a.html.
    WebBrowserWindow* windowShowingA()
    {
        openAndWait(m_server.url("/a.html"));
        QTest::qWait(500); // A's last events (its load's end) are told before a test listens
        return window(1);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(startEngine());
        m_server.setPage("/a.html", "<html><head><title>A</title></head><body>a</body></html>");
        m_server.setPage("/b.html", "<html><head><title>B</title></head><body>b</body></html>");
        m_server.setPage("/c.html", "<html><head><title>C</title></head><body>c</body></html>");
        m_server.setPage("/flood.html", "<html><head><title>0</title></head><body><script>"
                                        "var n = 0; (function again() { document.title = 'T' + (++n);"
                                        " if (n < 2000) setTimeout(again, 0); })();</script></body></html>");
    }
    void init()
    {
        startMain();
        m_main->show();
    }
    void cleanup()
    {
        m_main->verbs()->stopRun();
        Clock::setInstance(nullptr);
        stopMain();
    }

    void aPageLoadedAheadComesUpAtTheStepAndTellsItsEventsThen()
    {
        WebBrowserWindow* w = windowShowingA();
        QVERIFY(w);
        QSignalSpy began(w, &BrowserWindow::beforeNavigate);
        QSignalSpy loaded(w, &BrowserWindow::loadSucceeded);
        QSignalSpy titles(w, &BrowserWindow::titleChange);
        QSignalSpy completed(w, &BrowserWindow::documentComplete);
        m_server.requests.clear();
        w->loadAhead(m_server.url("/b.html"), PageSettings());
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requests.count("/b.html"), 1, kLoadTimeoutMs);
        QTest::qWait(800); // loaded and drawn beneath
        QCOMPARE(shownUrl(w), m_server.url("/a.html"));
        QVERIFY(w->frame()->hasStagedPage());
        QCOMPARE(began.size() + loaded.size() + titles.size() + completed.size(), 0);
        QCOMPARE(w->locationName(), QStringLiteral("A"));

        w->navigateWhenReady(m_server.url("/b.html"), 10000);
        // Up within the call itself: nothing is left to load.
        QCOMPARE(shownUrl(w), m_server.url("/b.html"));
        QVERIFY(!w->frame()->hasStagedPage());
        QCOMPARE(began.size(), 0); // its events come on the next turn, as a load's would
        QTRY_COMPARE(began.size(), 1);
        QCOMPARE(began.first().first().toString(), m_server.url("/b.html"));
        QTRY_COMPARE(loaded.size(), 1);
        QTRY_COMPARE(completed.size(), 1);
        QTRY_COMPARE(w->locationName(), QStringLiteral("B"));
        QCOMPARE(m_server.requests.count("/b.html"), 1); // not asked for again
        // The window goes on as after any navigation.
        w->navigateWhenReady(m_server.url("/c.html"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(shownUrl(w), m_server.url("/c.html"), kLoadTimeoutMs);
        QTRY_COMPARE(began.size(), 2);
    }

    void aPageLoadedAheadForAnotherAddressGoesWithoutAWord()
    {
        WebBrowserWindow* w = windowShowingA();
        QSignalSpy began(w, &BrowserWindow::beforeNavigate);
        m_server.requests.clear();
        w->loadAhead(m_server.url("/b.html"), PageSettings());
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requests.count("/b.html"), 1, kLoadTimeoutMs);
        w->navigateWhenReady(m_server.url("/c.html"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(shownUrl(w), m_server.url("/c.html"), kLoadTimeoutMs);
        QTRY_VERIFY(!w->frame()->hasStagedPage());
        QTest::qWait(300);
        QCOMPARE(began.size(), 1);
        QCOMPARE(began.first().first().toString(), m_server.url("/c.html"));
        // A navigation of the window's own lets it go all the same.
        w->loadAhead(m_server.url("/b.html"), PageSettings());
        QVERIFY(w->frame()->hasStagedPage());
        w->navigate(m_server.url("/a.html"));
        QVERIFY(!w->frame()->hasStagedPage());
    }

    void aPageThatFloodsItsEventsWhileAheadIsLetGo()
    {
        WebBrowserWindow* w = windowShowingA();
        QSignalSpy titles(w, &BrowserWindow::titleChange);
        w->loadAhead(m_server.url("/flood.html"), PageSettings());
        QVERIFY(w->frame()->hasStagedPage());
        // Long before a page loaded ahead is let go as stale (20 s).
        QTRY_VERIFY_WITH_TIMEOUT(!w->frame()->hasStagedPage(), 8000);
        QCOMPARE(titles.size(), 0);
        QCOMPARE(shownUrl(w), m_server.url("/a.html"));
        // Its step loads it as any page.
        w->navigateWhenReady(m_server.url("/flood.html"), 10000);
        QTRY_COMPARE_WITH_TIMEOUT(shownUrl(w), m_server.url("/flood.html"), kLoadTimeoutMs);
    }

    void aRunsPageWithItsOwnTimeIsInViewAtItsMoment()
    {
        const QString a = m_server.url("/a.html"), b = m_server.url("/b.html");
        Verbs* verbs = m_main->verbs();
        loadLists(verbs->lists(), {{"Walls", {{"A", a}, {"B", b}}}});
        PageSettings five;
        five.seconds = 5;
        QVERIFY(verbs->setPageSettings("Walls", a, five).ok());
        m_server.requests.clear();
        QVERIFY(verbs->runList({"Walls", 30, false, false, false}, Caller::Outside).ok());
        verbs->tick();
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(window(1) && shownUrl(window(1)) == a, kLoadTimeoutMs);
        // B is asked for before A's five seconds are over, while A is shown.
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requests.count("/b.html"), 1, 5000);
        QVERIFY2(clock.elapsed() < 4900, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(verbs->runState().position, 0);
        QCOMPARE(shownUrl(window(1)), a);
        // At the step, B is in view at once.
        QTRY_COMPARE_WITH_TIMEOUT(verbs->runState().position, 1, 8000);
        QCOMPARE(shownUrl(window(1)), b);
        QVERIFY(!window(1)->frame()->hasStagedPage());
        QCOMPARE(m_server.requests.count("/b.html"), 1);
    }
};

VANTREL_GUI_TEST_MAIN(TestLoadAhead)
#include "tst_loadahead.moc"
