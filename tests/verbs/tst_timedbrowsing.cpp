#include "ListRecords.h"
#include "RealBrowserTest.h"
#include "settings/VantrelConf.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserPage.h"
#include "core/Clock.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "history/HistoryPanel.h"
#include "widgets/KeyedTree.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QTest>
#include <QWebEngineView>

// A run's next page comes up only once it has loaded, with the real browser engine.
class TestTimedBrowsing : public RealBrowserTest
{
    Q_OBJECT

    QStringList m_completed;

    // The run sends window 1 to `url`, as a one-window run's step does.
    void runStepTo(const QString& url)
    {
        g.RunListRunning = true;
        g.WindowIndex = 1;
        g.CurrentUrl = url;
        m_main->webForm()->RunNavigating = true;
        m_main->NewBtnAction(false);
        m_main->webForm()->RunNavigating = false;
    }
    QString shownUrl() { return window(1)->frame()->view()->page()->url().toString(); }

private slots:
    void initTestCase()
    {
        QVERIFY(startEngine());
        m_server.setPage("/first.html", "<html><head><title>First</title></head><body style='background:#c00'>1</body></html>");
        m_server.setPage("/slow.html", "<html><head><title>Slow</title></head><body style='background:#00c'>2</body></html>");
        m_server.setDelay("/slow.html", 1500);
        m_server.setPage("/never.html", "<html><head><title>Never</title></head><body>3</body></html>");
        m_server.setDelay("/never.html", 20000);
    }
    void init()
    {
        startMain();
        m_completed.clear();
        connect(m_main->webForm(), &WebForm1::documentCompleted, this, [this] { m_completed << g.CurrentUrl; });
        m_main->show();
    }
    void cleanup()
    {
        g.RunListRunning = false;
        stopMain();
    }

    void theShownPageStaysUntilTheNextHasLoaded()
    {
        const QString first = m_server.url("/first.html");
        QCOMPARE(openAndWait(first), QStringList{first});
        m_completed.clear();
        const QString slow = m_server.url("/slow.html?a");
        QStringList captionsAtStart;
        connect(window(1), &BrowserWindow::beforeNavigate, this, [&] { captionsAtStart << row(1)->text(); });
        runStepTo(slow);
        // While the next page loads, the window still shows the one before.
        QTest::qWait(700);
        QCOMPARE(shownUrl(), first);
        QVERIFY(window(1)->frame()->hasStagedPage());
        // The events come as for any navigation: the row shows the new address at once.
        QTRY_VERIFY(!captionsAtStart.isEmpty());
        QCOMPARE(captionsAtStart.first(), slow);
        QVERIFY(m_completed.isEmpty());
        // Loaded, it comes up in one step, completed and recorded once.
        QTRY_COMPARE_WITH_TIMEOUT(shownUrl(), slow, kLoadTimeoutMs);
        QVERIFY(!window(1)->frame()->hasStagedPage());
        QTRY_COMPARE_WITH_TIMEOUT(m_completed, QStringList{slow}, kLoadTimeoutMs);
        QCOMPARE(row(1)->text(), QStringLiteral("Slow"));
        QCOMPARE(window(1)->frame()->windowTitle(), QStringLiteral("Slow"));
    }
    void aPageThatTakesTooLongIsShownAsFarAsItHasCome()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kReadySeconds, 1));
        QCOMPARE(openAndWait(m_server.url("/first.html")).size(), 1);
        QElapsedTimer timer;
        timer.start();
        runStepTo(m_server.url("/never.html"));
        QVERIFY(window(1)->frame()->hasStagedPage());
        QTRY_VERIFY_WITH_TIMEOUT(!window(1)->frame()->hasStagedPage(), 5000);
        QCOMPARE(window(1)->frame()->view()->page(), static_cast<QWebEnginePage*>(window(1)->page()));
        QCOMPARE(window(1)->page()->requestedUrl().toString(), m_server.url("/never.html"));
        QVERIFY(timer.elapsed() >= 900);
        QVERIFY(timer.elapsed() < 5000);
    }
    void aRunsNewWindowComesIntoViewOnlyWithItsPageLoaded()
    {
        const QString slow = m_server.url("/slow.html?new");
        g.RunListRunning = true;
        g.CurrentUrl = slow;
        m_main->webForm()->RunNavigating = true;
        m_main->NewBtnAction(true);
        m_main->webForm()->RunNavigating = false;
        BrowserFrame* frame = window(1)->frame();
        // Made and loading, drawn off the screen: the desktop does not see it yet.
        QTest::qWait(700);
        QVERIFY(frame->isOffScreen());
        QVERIFY(frame->testAttribute(Qt::WA_DontShowOnScreen));
        QVERIFY(window(1)->isVisible()); // as far as the program knows, it is shown
        QCOMPARE(row(1)->text(), slow); // and its row says where it goes, as for any window
        QTRY_VERIFY_WITH_TIMEOUT(!frame->isOffScreen(), kLoadTimeoutMs);
        QVERIFY(frame->isVisible());
        QCOMPARE(shownUrl(), slow);
        QTRY_COMPARE_WITH_TIMEOUT(m_completed, QStringList{slow}, kLoadTimeoutMs);
    }
    void aRunsWindowOutOfViewComesBackOnlyWithItsNextPageDrawn()
    {
        QCOMPARE(openAndWait(m_server.url("/first.html")).size(), 1);
        window(1)->setVisible(false); // reused by a run after the others had their turn
        const QString slow = m_server.url("/slow.html?again");
        runStepTo(slow);
        BrowserFrame* frame = window(1)->frame();
        QTest::qWait(700);
        QVERIFY(frame->isOffScreen()); // mapped now, it would show nothing drawn
        QVERIFY(frame->testAttribute(Qt::WA_DontShowOnScreen));
        QTRY_VERIFY_WITH_TIMEOUT(!frame->isOffScreen(), kLoadTimeoutMs);
        QVERIFY(frame->isVisible());
        QCOMPARE(shownUrl(), slow);
        QTRY_VERIFY_WITH_TIMEOUT(m_completed.contains(slow), kLoadTimeoutMs);
        QCOMPARE(row(1)->text(), QStringLiteral("Slow"));
    }
    void aNewWindowOutsideARunIsShownAtOnce()
    {
        g.CurrentUrl = m_server.url("/slow.html?person");
        m_main->NewBtnAction(true);
        QVERIFY(!window(1)->frame()->isOffScreen());
        QVERIFY(window(1)->frame()->isVisible());
    }
    void aKeptWindowComesUpBeforeTheOthersGo()
    {
        QCOMPARE(openAndWait(m_server.url("/first.html")).size(), 1);
        QCOMPARE(openAndWait(m_server.url("/slow.html?kept")).size(), 1);
        window(1)->setVisible(false); // kept, out of view, as a run leaves it
        QVERIFY(window(2)->frame()->isVisible());
        bool secondGoneBeforeFirstUp = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            if (!window(2)->frame()->isVisible() && !(window(1)->frame()->isVisible() && !window(1)->frame()->isOffScreen()))
                secondGoneBeforeFirstUp = true;
        });
        watch.start(1);
        m_main->webForm()->RunNavigating = true;
        m_main->webForm()->SelectieWindow(1);
        m_main->webForm()->RunNavigating = false;
        QTRY_VERIFY_WITH_TIMEOUT(!window(2)->frame()->isVisible(), 5000);
        watch.stop();
        QVERIFY(window(1)->frame()->isVisible());
        QVERIFY(!window(1)->frame()->isOffScreen());
        QVERIFY(!secondGoneBeforeFirstUp);
    }
    void aPageThatDrawsItselfAfterItsLoadComesUpOnceDrawn()
    {
        // An application's shell: empty when its load ends, drawn by its script a while later.
        m_server.setPage("/shell.html", "<html><head><title>Shell</title></head><body><div id='app'></div><script>"
                                        "addEventListener('load', function () { setTimeout(function () {"
                                        " document.getElementById('app').textContent = 'Drawn'; }, 900); });"
                                        "</script></body></html>");
        QCOMPARE(openAndWait(m_server.url("/first.html")).size(), 1);
        const qsizetype before = m_completed.size();
        runStepTo(m_server.url("/shell.html"));
        QTRY_VERIFY_WITH_TIMEOUT(m_completed.size() > before, 10000); // loaded, not drawn yet
        QTest::qWait(300);
        QCOMPARE(shownUrl(), m_server.url("/first.html"));
        QTRY_COMPARE_WITH_TIMEOUT(shownUrl(), m_server.url("/shell.html"), 5000);
        QString text;
        window(1)->frame()->view()->page()->runJavaScript("document.getElementById('app').textContent",
                                                          [&](const QVariant& v) { text = v.toString(); });
        QTRY_COMPARE(text, QStringLiteral("Drawn"));
    }
    // A looping run of /first.html and /second.html over two windows that keeps its pages, in
    // theater view or not, until window 1 has been brought forward again.
    void runKeptRoundOnce(bool theater, ManualClock& clock)
    {
        g.OptTheater = theater;
        Verbs* verbs = m_main->verbs();
        loadLists(verbs->lists(), {{"Kept", {{"1", m_server.url("/first.html")}, {"2", m_server.url("/second.html")}}}});
        QVERIFY(verbs->runList({"Kept", 30, true, true, true}, Caller::Outside).ok());
        verbs->tick();
        QTRY_VERIFY_WITH_TIMEOUT(window(1) && window(1)->isVisible() && !window(1)->frame()->isOffScreen(), 10000);
        clock.advanceSeconds(31);
        verbs->tick();
        QTRY_VERIFY_WITH_TIMEOUT(window(2) && window(2)->isVisible() && !window(2)->frame()->isOffScreen(), 10000);
        for (int tick = 0; tick < 3 && verbs->runState().position != 0; ++tick) {
            clock.advanceSeconds(31);
            verbs->tick(); // round again: window 1 comes forward, kept
        }
        QCOMPARE(verbs->runState().position, 0);
        QCOMPARE(verbs->runState().slot, 1);
        QTRY_VERIFY(window(1)->isVisible() && !window(1)->frame()->isOffScreen());
        QTest::qWait(300); // whatever is to go out of view has gone
    }
    void inTheaterViewAKeptRunsWindowsWaitBeneathAndOneStaysWhenItStops()
    {
        m_server.setPage("/second.html", "<html><head><title>Second</title></head><body>2</body></html>");
        ManualClock clock(QDateTime(QDate(2026, 5, 4), QTime(10, 0)));
        Clock::setInstance(&clock);
        runKeptRoundOnce(true, clock);
        QVERIFY(window(2)->isVisible()); // beneath, drawn, to come forward by being raised
        m_main->verbs()->stopRun();
        QVERIFY(!window(2)->isVisible());
        QVERIFY(window(1)->isVisible());
        // Not full screen, the other windows go out of view as they always have.
        stopMain();
        startMain();
        runKeptRoundOnce(false, clock);
        QVERIFY(!window(2)->isVisible());
        m_main->verbs()->stopRun();
        Clock::setInstance(nullptr);
        g.OptTheater = false;
    }
    void withTheSettingOffOrOutsideARunThePageChangesAtOnce()
    {
        QCOMPARE(openAndWait(m_server.url("/first.html")).size(), 1);
        // The user's own navigation in the same window: shown at once.
        g.WindowIndex = 1;
        g.CurrentUrl = m_server.url("/slow.html?b");
        m_main->NewBtnAction(false);
        QTRY_COMPARE(shownUrl(), m_server.url("/slow.html?b"));
        QVERIFY(!window(1)->frame()->hasStagedPage());
        QVERIFY(VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 0));
        runStepTo(m_server.url("/slow.html?c"));
        QTRY_COMPARE(shownUrl(), m_server.url("/slow.html?c"));
        QVERIFY(!window(1)->frame()->hasStagedPage());
    }
};

VANTREL_GUI_TEST_MAIN(TestTimedBrowsing)
#include "tst_timedbrowsing.moc"
