#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "settings/VantrelConf.h"
#include "watch/WindowRecovery.h"
#include "surf/WindowStates.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "widgets/GradientButton.h"

#include <QLabel>
#include <QRegularExpression>
#include <QTest>

#include <memory>

// Crashed and unreachable pages come back by themselves, on the program's clock, with scripted
// windows. The real engine is tried in tst_hostilepages and tst_recovery.
class TestWindowRecovery : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    std::unique_ptr<ManualClock> m_clock;
    QList<ScriptedBrowserWindow*> m_created;

    ScriptedBrowserWindow* open(const QString& url)
    {
        g.CurrentUrl = url;
        m_main->NewBtnAction(true);
        return m_created.last();
    }
    // Ticks Timer1 every 0.6 s for `seconds`; the ticks (counted from 1) at which `w` retried.
    QList<int> retriesWithin(ScriptedBrowserWindow* w, double seconds, int* tick)
    {
        QList<int> at;
        for (double t = 0; t < seconds; t += 0.6) {
            m_clock->advanceSeconds(0.6);
            ++*tick;
            const qsizetype before = w->calls.count("retry");
            m_main->Timer1_Timer();
            if (w->calls.count("retry") > before)
                at << *tick;
        }
        return at;
    }
    QLabel* badge(int slot) { return m_main->surf()->states()->badge(slot); }
    QStringList logLines()
    {
        QStringList lines;
        for (const QByteArray& line : readAll(m_app->file("Vantrel.log")).split('\n'))
            if (!line.isEmpty())
                lines << QString::fromUtf8(line).section(u' ', 1); // without the time
        return lines;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 1), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
        m_created.clear();
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
    }
    void cleanup()
    {
        m_main.reset();
        Clock::setInstance(nullptr);
        m_app.reset();
    }

    void aPageKilledWhileItLoadsIsReloadedAfterItsCrashAndItsFailedLoad()
    {
        ScriptedBrowserWindow* w = open("https://wall.example/");
        emit w->loadBegan("https://wall.example/");
        emit w->pageCrashed("https://wall.example/");
        // The engine then says the load that was going failed: the reload stands.
        emit w->loadFailed("https://wall.example/", "net::ERR_FAILED", false);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Crashed, loading again in 2 s"));
        int tick = 0;
        QCOMPARE(retriesWithin(w, 3, &tick).size(), 1);
        // A failure of another address is no part of the crash.
        emit w->pageCrashed("https://wall.example/");
        emit w->loadFailed("https://other.example/", "net::ERR_FAILED", false);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Could not be loaded: net::ERR_FAILED"));
    }
    void aCrashedPageIsReloadedAfterTwoSecondsThreeTimesThenLeft()
    {
        ScriptedBrowserWindow* w = open("https://wall.example/");
        int tick = 0;
        for (int crash = 1; crash <= 3; ++crash) {
            emit w->pageCrashed("https://wall.example/");
            QVERIFY(badge(1)->isVisible());
            QCOMPARE(badge(1)->toolTip(), QStringLiteral("Crashed, loading again in 2 s"));
            const int before = tick;
            QCOMPARE(retriesWithin(w, 3, &tick).size(), 1);
            QVERIFY(tick - before >= 3); // not before two seconds
            emit w->loadSucceeded("https://wall.example/");
            QCOMPARE(badge(1)->toolTip(), QStringLiteral("Shown"));
            m_clock->advanceSeconds(60);
        }
        // The fourth within ten minutes: the window keeps its crash panel and waits.
        emit w->pageCrashed("https://wall.example/");
        QCOMPARE(retriesWithin(w, 30, &tick), QList<int>{});
        QCOMPARE(m_main->webForm()->recovery()->recovery(1).state(), PageRecovery::State::GivenUp);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Crashed too often: it waits for its Reload button"));
        // The row itself is as it was: its caption, tag and tool tip.
        QCOMPARE(m_main->surf()->Button(0)->toolTip(), QString());
        const QStringList log = logLines();
        QCOMPARE(log.count("crash: window 1 https://wall.example/"), 4);
        QCOMPARE(log.count("automatic reload: window 1 https://wall.example/"), 3);
        QCOMPARE(log.count("given up: window 1 https://wall.example/"), 1);
        QCOMPARE(log.first(), QStringLiteral("page opened: window 1 https://wall.example/"));
    }
    void anUnreachablePageIsTriedAgainEverLessOftenUntilItLoads()
    {
        ScriptedBrowserWindow* w = open("https://late.example/");
        int tick = 0;
        QList<int> spacing;
        int last = 0;
        for (int failure = 0; failure < 4; ++failure) {
            emit w->loadFailed("https://late.example/", "net::ERR_CONNECTION_REFUSED", true);
            const QList<int> at = retriesWithin(w, 20, &tick);
            QCOMPARE(at.size(), 1);
            spacing << at.first() - last;
            last = at.first();
            tick = last; // the retry's own time; what the window reports next follows it
            emit w->loadBegan("https://late.example/");
        }
        // 2, 4, 8, 16 seconds at ticks of 0.6 s: 4, 7, 14, 27 ticks after each failure.
        QCOMPARE(spacing, (QList<int>{4, 7, 14, 27}));
        emit w->loadSucceeded("https://late.example/");
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Shown"));
        QVERIFY(logLines().contains("load failed: window 1 https://late.example/ (net::ERR_CONNECTION_REFUSED)"));
        QCOMPARE(logLines().count("retry: window 1 https://late.example/"), 4);
    }
    void aPageStillLoadingAfterItsTimeIsStoppedAndTriedAgain()
    {
        ScriptedBrowserWindow* w = open("https://stuck.example/");
        emit w->loadBegan("https://stuck.example/");
        int tick = 0;
        QCOMPARE(retriesWithin(w, 59, &tick), QList<int>{});
        QCOMPARE(w->calls.count("stop"), 0);
        // At 60 s it is stopped; the retry follows 2 s later, as after a network failure.
        const QList<int> at = retriesWithin(w, 3.5, &tick);
        QCOMPARE(w->calls.count("stop"), 1);
        QCOMPARE(at.size(), 1);
        QVERIFY(logLines().contains("load stopped: window 1 https://stuck.example/ (still loading after 60 s)"));
        QVERIFY(logLines().contains("retry: window 1 https://stuck.example/"));
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Loading https://stuck.example/"));
        // The retry's load is given its own time again; one that finishes is left alone.
        emit w->loadBegan("https://stuck.example/");
        QCOMPARE(retriesWithin(w, 30, &tick), QList<int>{});
        emit w->loadSucceeded("https://stuck.example/");
        QCOMPARE(retriesWithin(w, 60, &tick), QList<int>{});
        QCOMPARE(w->calls.count("stop"), 1);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Shown"));
    }
    void theRowSaysAStoppedLoadAndNeverLetsItLoadAsLongAsItTakes()
    {
        ScriptedBrowserWindow* w = open("https://stuck.example/");
        emit w->loadBegan("https://stuck.example/");
        int tick = 0;
        retriesWithin(w, 60.5, &tick);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Failed (still loading after 60 s), trying again in 2 s"));
        QVERIFY(VantrelConf::setValue(VantrelConf::kLoadTimeoutSeconds, 0));
        emit w->loadBegan("https://slow.example/");
        retriesWithin(w, 600, &tick);
        QCOMPARE(w->calls.count("stop"), 1);
    }
    void afterASleepPagesShownLongerThanTheSettingAreLoadedAgain()
    {
        ScriptedBrowserWindow* old = open("https://old.example/");
        emit old->loadBegan("https://old.example/");
        emit old->loadSucceeded("https://old.example/");
        m_clock->advanceSeconds(9 * 60);
        ScriptedBrowserWindow* fresh = open("https://fresh.example/");
        emit fresh->loadBegan("https://fresh.example/");
        emit fresh->loadSucceeded("https://fresh.example/");
        ScriptedBrowserWindow* failing = open("https://failing.example/");
        emit failing->loadBegan("https://failing.example/");
        emit failing->loadFailed("https://failing.example/", "refused", true);
        m_clock->advanceSeconds(2 * 60); // the first shown 11 minutes ago, the second 2
        m_main->webForm()->recovery()->wokeUp();
        QCOMPARE(old->calls.count("retry"), 1);
        QCOMPARE(fresh->calls.count("retry"), 0);
        QCOMPARE(failing->calls.count("retry"), 0); // its own retry is due anyway
        QVERIFY(logLines().contains("reload after sleep: window 1 https://old.example/"));
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Loading https://old.example/"));
        // With the setting at 0, every shown page comes again.
        QVERIFY(VantrelConf::setValue(VantrelConf::kReloadAfterSleepMinutes, 0));
        m_main->webForm()->recovery()->wokeUp();
        QCOMPARE(fresh->calls.count("retry"), 1);
        QCOMPARE(old->calls.count("retry"), 1); // still loading from the last wake: not again
    }
    void theRowsStateSaysWhenItTriesAgain()
    {
        ScriptedBrowserWindow* w = open("https://late.example/");
        emit w->loadFailed("https://late.example/", "net::ERR_NAME_NOT_RESOLVED", true);
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Failed (net::ERR_NAME_NOT_RESOLVED), trying again in 2 s"));
        QVERIFY(!badge(1)->pixmap().isNull());
        QVERIFY(m_main->surf()->Button(0)->leftInset() > 0); // the caption keeps clear of it
    }
    void sendingTheWindowElsewhereEndsTheTries()
    {
        ScriptedBrowserWindow* w = open("https://late.example/");
        emit w->loadFailed("https://late.example/", "refused", true);
        g.WindowIndex = 1;
        g.CurrentUrl = "https://other.example/";
        m_main->NewBtnAction(false);
        int tick = 0;
        QCOMPARE(retriesWithin(w, 10, &tick), QList<int>{});
        // The user's own navigation elsewhere ends them as well.
        emit w->loadFailed("https://other.example/", "refused", true);
        emit w->loadBegan("https://typed.example/");
        QCOMPARE(retriesWithin(w, 10, &tick), QList<int>{});
    }
    void theNetworkComingBackRetriesAtOnce()
    {
        ScriptedBrowserWindow* w = open("https://late.example/");
        for (int i = 0; i < 6; ++i)
            emit w->loadFailed("https://late.example/", "refused", true); // now 64 s apart
        m_main->webForm()->recovery()->networkBack();
        int tick = 0;
        QCOMPARE(retriesWithin(w, 0.6, &tick), QList<int>{1});
    }
    void otherFailuresAndTheSettingOffAreNotRetried()
    {
        ScriptedBrowserWindow* w = open("https://gone.example/");
        emit w->loadFailed("https://gone.example/", "404", false);
        int tick = 0;
        QCOMPARE(retriesWithin(w, 5, &tick), QList<int>{});
        QCOMPARE(badge(1)->toolTip(), QStringLiteral("Could not be loaded: 404"));
        QVERIFY(VantrelConf::setValue(VantrelConf::kNetworkRetry, 0));
        emit w->loadFailed("https://gone.example/", "refused", true);
        QCOMPARE(retriesWithin(w, 5, &tick), QList<int>{});
    }
    void aPageWhoseProcessGrowsPastTheLimitIsLoadedAgainWhileHidden()
    {
        // This test's own process stands for the page's: it holds more than 1 MB.
        QVERIFY(VantrelConf::setValue(VantrelConf::kPageMemoryLimitMB, 1));
        ScriptedBrowserWindow* shown = open("https://shown.example/");
        shown->pagePid = QCoreApplication::applicationPid();
        ScriptedBrowserWindow* kept = open("https://kept.example/");
        kept->pagePid = QCoreApplication::applicationPid();
        kept->setVisible(false); // a kept page between its shows
        int tick = 0;
        retriesWithin(kept, 2.5, &tick);
        QCOMPARE(kept->calls.count("retry"), 1);
        QCOMPARE(shown->calls.count("retry"), 0);
        const QStringList log = logLines();
        QVERIFY(!log.filter(QRegularExpression("^reload, too big: window 2 https://kept.example/ \\(\\d+ MB, the limit is 1 MB, while hidden\\)$")).isEmpty());
        QVERIFY(!log.filter(QRegularExpression("^page too big: window 1 https://shown.example/ \\(\\d+ MB, the limit is 1 MB\\)$")).isEmpty());
        QCOMPARE(badge(2)->toolTip(), QStringLiteral("Loading https://kept.example/ again: its page took more than 1 MB"));
        // Still too big out of sight: not loaded round and round.
        retriesWithin(kept, 60, &tick);
        QCOMPARE(kept->calls.count("retry"), 1);
        // The page always shown comes again after five minutes over the limit.
        retriesWithin(shown, 240, &tick);
        QCOMPARE(shown->calls.count("retry"), 1);
        QVERIFY(!logLines().filter(QRegularExpression("^reload, too big: window 1 https://shown.example/ \\(\\d+ MB, the limit is 1 MB\\)$")).isEmpty());
    }
    void pagesWithinTheLimitOrWithNoLimitAreNotLoadedAgain()
    {
        ScriptedBrowserWindow* w = open("https://wall.example/");
        w->pagePid = QCoreApplication::applicationPid();
        w->setVisible(false);
        int tick = 0;
        QVERIFY(VantrelConf::setValue(VantrelConf::kPageMemoryLimitMB, 65536));
        retriesWithin(w, 10, &tick);
        QVERIFY(VantrelConf::setValue(VantrelConf::kPageMemoryLimitMB, 0));
        retriesWithin(w, 10, &tick);
        QCOMPARE(w->calls.count("retry"), 0);
        QVERIFY(logLines().filter("too big").isEmpty());
    }
    void aClosedWindowIsNeitherRetriedNorShown()
    {
        ScriptedBrowserWindow* w = open("https://late.example/");
        emit w->loadFailed("https://late.example/", "refused", true);
        w->closeByHand();
        QVERIFY(!badge(1)->isVisible());
        QCOMPARE(m_main->surf()->Button(0)->leftInset(), 0);
        for (int i = 0; i < 10; ++i) {
            m_clock->advanceSeconds(0.6);
            m_main->Timer1_Timer(); // nothing happens to the window that is gone
        }
        QVERIFY(!m_main->webForm()->recovery()->due(1).isValid());
    }
};

VANTREL_GUI_TEST_MAIN(TestWindowRecovery)
#include "tst_windowrecovery.moc"
