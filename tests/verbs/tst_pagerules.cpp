// A run that follows its pages' own settings, driven through the verbs with scripted windows and a
// manual clock: a page's own time, a page passed by, the look each window is given, reloads by the
// page's rule, the run held while a person uses its window, and the run keys.
#include "VerbsHarness.h"
#include "settings/VantrelConf.h"
#include "verbs/PageSettingsStore.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class TestPageRules : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    Globals& g = globals();

    ScriptedBrowserWindow* window(int slot) { return h->window(slot); }
    void tickAfter(double seconds) { h->tickAfter(seconds); }
    void set(const QString& address, PageSettings settings)
    {
        QVERIFY(h->verbs->setPageSettings("Walls", address, settings).ok());
    }
    static PageSettings seconds(int n)
    {
        PageSettings s;
        s.seconds = n;
        return s;
    }
    RunChoice walls(bool several = false, bool loop = false, bool keep = false)
    {
        return RunChoice{QStringLiteral("Walls"), 30, loop, several, keep};
    }
    QString log() const { return h->log(); }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"),
                      {{"One", "https://one.example/"}, {"Two", "https://two.example/"},
                       {"Three", "https://three.example/"}}}});
    }
    void cleanup() { h.reset(); }

    void settingsOfAPageThatIsNotInTheListAreRefused()
    {
        QCOMPARE(h->verbs->setPageSettings("Nope", "https://one.example/", seconds(10)).code, VerbResult::NoSuchList);
        QCOMPARE(h->verbs->setPageSettings("Walls", "https://four.example/", seconds(10)).code,
                 VerbResult::NoSuchPage);
        QVERIFY(h->verbs->setPageSettings("WALLS", "https://one.example/", seconds(10)).ok());
        QCOMPARE(h->verbs->pageSettings()->entries().value(0).list, QStringLiteral("Walls"));
    }

    void aPagesOwnTimeReplacesTheIntervalForItsStep()
    {
        set("https://one.example/", seconds(10));
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick(); // one opens
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"});
        QCOMPARE(h->verbs->state().run.secondsToNext, 10.0);
        tickAfter(9.9);
        QCOMPARE(window(1)->navigations.size(), 1);
        tickAfter(0.1); // its ten seconds to the moment, not at the tick after
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        // Two has no time of its own: the run's thirty seconds, counted from the tick after, as ever.
        tickAfter(0.6);
        tickAfter(29.5);
        QCOMPARE(window(1)->navigations.size(), 2);
        tickAfter(0.6);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
    }

    void theStepOfAPageWithItsOwnTimeComesOnTimeWithoutATick()
    {
        Clock::setInstance(nullptr); // the real clock: the run's own timer is what steps it
        set("https://one.example/", seconds(5));
        QVERIFY(h->verbs->runList(walls()).ok());
        QElapsedTimer timer;
        h->verbs->tick();
        timer.start();
        // No timer of the program ticks here: only the run's own step can bring the next page, and
        // not before the page's five seconds. (How close to the moment it comes is a benchmark's
        // business: bench_pagetiming.)
        QTRY_COMPARE_WITH_TIMEOUT(window(1)->navigations.size(), 2, 15000);
        QVERIFY2(timer.elapsed() >= 4990, qPrintable(QString::number(timer.elapsed())));
    }

    // The real clock, with the program's ticks every 0.6 s, until the run shows `pages` pages.
    void runWithTicksUntil(qsizetype pages, int slot = 1)
    {
        QTimer ticks;
        connect(&ticks, &QTimer::timeout, h->verbs.get(), [this] { h->verbs->tick(); });
        ticks.start(600);
        QTRY_COMPARE_WITH_TIMEOUT(window(slot)->navigations.size(), pages, 15000);
    }

    void theNextPageLoadsAheadOfItsStepOnceInTheWindowItComesUpIn()
    {
        Clock::setInstance(nullptr);
        PageSettings zoomed = seconds(5);
        zoomed.zoom = 150;
        set("https://one.example/", seconds(5));
        set("https://two.example/", zoomed);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        // Ahead of the step, in the run's window, with its zoom: half the page's time before it
        // (2.5 s, less the 5 % a coarse timer may fire early), once, though the ticks arm the step
        // again meanwhile.
        QTRY_COMPARE_WITH_TIMEOUT(window(1)->loadedAhead, QStringList{"https://two.example/"}, 4000);
        QVERIFY2(timer.elapsed() >= 2350, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(window(1)->navigations.size(), 1);
        QCOMPARE(window(1)->lookAhead.zoom, 150);
        runWithTicksUntil(2);
        QCOMPARE(window(1)->loadedAhead, QStringList{"https://two.example/"});
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        QCOMPARE(window(1)->calls.filter("when ready").size(), 1); // taken as a page shown once loaded
    }

    void noPageLoadsAheadWherePagesAreShownAsTheyLoadOrKeptOrTheWindowIsNotKnown()
    {
        Clock::setInstance(nullptr);
        set("https://one.example/", seconds(5));
        // Shown as they load: nothing to hide the load behind.
        VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 0);
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        runWithTicksUntil(2);
        QVERIFY(window(1)->loadedAhead.isEmpty());
        h->verbs->stopRun();
        VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 1);
        // Several windows of the run dialog's run: the pool picks the window at the step.
        QVERIFY(h->verbs->runList(walls(true)).ok());
        h->verbs->tick();
        QTRY_VERIFY_WITH_TIMEOUT(window(2) && !window(2)->navigations.isEmpty(), 8000);
        for (ScriptedBrowserWindow* w : std::as_const(h->created))
            QVERIFY(w->loadedAhead.isEmpty());
        // A run in windows of its own knows its next window: it loads there.
        h->verbs->stopRun();
        QVERIFY(h->verbs->runInOtherWindows(walls(false, true), {1}).ok());
        h->verbs->tick();
        QTRY_COMPARE_WITH_TIMEOUT(window(1)->loadedAhead.size(), 1, 5000);
    }

    void aPageReopenedAfterACrashTakesItsLookAgainWhenTheRunGoesOn()
    {
        PageSettings zoomed;
        zoomed.zoom = 150;
        set("https://two.example/", zoomed);
        // The session reopens the windows as plain pages, then the run goes on.
        QVERIFY(h->verbs->openPage("https://one.example/", QString(), OpenWhere::Slot, 1, Caller::Outside).ok());
        QVERIFY(h->verbs->openPage("https://two.example/", QString(), OpenWhere::Slot, 2, Caller::Outside).ok());
        QVERIFY(h->verbs->resumeRunAt(walls(true, true, true), 2).ok());
        QCOMPARE(window(2)->navigations, (QStringList{"https://two.example/", "https://two.example/"}));
        QCOMPARE(window(2)->look.zoom, 150);
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"}); // no look: left as it is
    }

    void aLoopGoesRoundAtTheMomentItsLastPagesOwnTimeEnds()
    {
        h->clock.setNow(QDateTime(QDate(2026, 5, 4), QTime(10, 0)));
        set("https://three.example/", seconds(10));
        QVERIFY(h->verbs->runList(walls(false, true)).ok());
        h->verbs->tick();
        QVERIFY(h->verbs->nextPage().ok());
        QVERIFY(h->verbs->nextPage().ok()); // three, for ten seconds
        tickAfter(10);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        QCOMPARE(h->verbs->state().run.position, 0);
    }

    void aPageSkippedForNowIsPassedBy()
    {
        PageSettings skip;
        skip.skip = true;
        set("https://two.example/", skip);
        QVERIFY(h->verbs->runList(walls(false, true)).ok());
        h->verbs->tick();
        tickAfter(0.6);
        tickAfter(30.6);
        QCOMPARE(window(1)->navigations, (QStringList{"https://one.example/", "https://three.example/"}));
        QVERIFY(h->verbs->previousPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        QVERIFY(h->verbs->nextPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
        // Every page passed by: a looping run waits, showing nothing new, and never spins.
        set("https://one.example/", skip);
        set("https://three.example/", skip);
        const qsizetype before = window(1)->navigations.size();
        for (int i = 0; i < 10; ++i)
            tickAfter(31);
        QCOMPARE(window(1)->navigations.size(), before);
        QVERIFY(g.RunListRunning);
        QCOMPARE(h->verbs->nextPage().code, VerbResult::NoPageThere);
    }

    void eachWindowGetsItsPagesLookAndOtherPagesComeAsTheyAre()
    {
        PageSettings look;
        look.zoom = 150;
        look.scroll = PageSettings::Scroll::Slowly;
        look.seconds = 20;
        set("https://one.example/", look);
        QVERIFY(h->verbs->runList(walls(true)).ok());
        h->verbs->tick();
        QCOMPARE(window(1)->look, look);
        QCOMPARE(window(1)->lookSeconds, 20.0);
        QVERIFY(window(1)->runKeys);
        tickAfter(20);
        QVERIFY(window(2)->look.isEmpty());
        QCOMPARE(window(2)->lookSeconds, 30.0);
        // A page a person opens in a run's window comes as it is.
        QVERIFY(h->verbs->openPage("https://other.example/", QString(), OpenWhere::Slot, 1).ok());
        QVERIFY(window(1)->look.isEmpty());
        // A run stopped gives its windows' keys back to their pages.
        QVERIFY(h->verbs->stopRun().ok());
        QVERIFY(!window(1)->runKeys);
        QVERIFY(!window(2)->runKeys);
    }

    void aLivePageIsReloadedWhileInViewByItsOwnRule()
    {
        PageSettings live;
        live.seconds = 150;
        live.reload = PageSettings::Reload::EveryMinutes;
        live.reloadMinutes = 1;
        set("https://one.example/", live);
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        for (int i = 0; i < 100; ++i)
            tickAfter(0.6); // 60 s
        QCOMPARE(window(1)->navigations, (QStringList{"https://one.example/", "https://one.example/"}));
        for (int i = 0; i < 100; ++i)
            tickAfter(0.6); // 120 s
        QCOMPARE(window(1)->navigations.size(), 3);
        QVERIFY(log().contains("page reloaded: window 1 https://one.example/"));
        // A page without the rule is never loaded again while shown.
        tickAfter(31);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        for (int i = 0; i < 40; ++i)
            tickAfter(0.6);
        QCOMPARE(window(1)->navigations.size(), 4);
    }

    void keptPagesFollowTheirOwnReloadRule()
    {
        PageSettings each;
        each.reload = PageSettings::Reload::EachShow;
        set("https://one.example/", each);
        QVERIFY(h->verbs->runList(walls(true, true, true)).ok());
        h->verbs->tick();
        for (int i = 0; i < 3; ++i) {
            tickAfter(0.6);
            tickAfter(30.6);
        }
        tickAfter(0.6); // round again: one comes forward, loaded again as its rule says
        QCOMPARE(h->created.size(), 3);
        QCOMPARE(window(1)->navigations.size(), 2);
        tickAfter(30.6);
        tickAfter(0.6); // two comes forward as it is, its scroll starting again
        QCOMPARE(window(2)->navigations.size(), 1);
        QVERIFY(window(2)->calls.contains("shown again"));
    }

    void aPersonAtTheWindowHoldsTheRunUntilTheyLeaveItAlone()
    {
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        tickAfter(20); // ten seconds left
        window(1)->url = "https://one.example/";
        emit window(1)->personActed();
        RunState run = h->verbs->state().run;
        QVERIFY(run.paused);
        QVERIFY(run.heldByPerson);
        QCOMPARE(run.slot, 1);
        QVERIFY(h->verbs->state().windows.value(0).runPaused);
        QVERIFY(log().contains("run paused: someone uses window 1 (Walls at page 1)"));
        // They go on using it: the run waits for 60 s after their last input.
        tickAfter(50);
        emit window(1)->personActed();
        tickAfter(59);
        QVERIFY(h->verbs->state().run.paused);
        tickAfter(1.2);
        QVERIFY(!h->verbs->state().run.paused);
        QVERIFY(log().contains("run resumed: nobody used its window for 60 s (Walls)"));
        QCOMPARE(window(1)->navigations.size(), 1); // it had not gone elsewhere
        // Then the ten seconds that were left.
        tickAfter(9.5);
        QCOMPARE(window(1)->navigations.size(), 1);
        tickAfter(1);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
    }

    void aLinkFollowedWhileHeldStaysUntilTheRunGoesOn()
    {
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        window(1)->load("https://one.example/", "One");
        emit window(1)->personActed();
        window(1)->load("https://one.example/elsewhere", "Elsewhere"); // a link the person followed
        tickAfter(30);
        QCOMPARE(window(1)->navigations.size(), 1);
        tickAfter(31); // nobody for a minute: the run's page comes back
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        QVERIFY(log().contains("page brought back: window 1 https://one.example/"));
    }

    void theHoldCanBeSwitchedOffAndAWindowOutsideTheRunDoesNotHoldIt()
    {
        QVERIFY(h->verbs->openPage("https://mine.example/", QString(), OpenWhere::NewWindow).ok());
        QVERIFY(h->verbs->runList(walls(true)).ok());
        h->verbs->tick(); // one in window 2
        emit window(1)->personActed();
        QVERIFY(!h->verbs->state().run.paused);
        QVERIFY(VantrelConf::setValue(VantrelConf::kHandsOnPause, 0));
        emit window(2)->personActed();
        QVERIFY(!h->verbs->state().run.paused);
    }

    void aPauseOnPurposeIsNotEndedByTheHoldsTime()
    {
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        emit window(1)->personActed();
        QVERIFY(h->verbs->pauseRun().ok()); // the person pressed Pause: it holds until Resume
        tickAfter(120);
        QVERIFY(h->verbs->state().run.paused);
        QVERIFY(!h->verbs->state().run.heldByPerson);
    }

    void theRunKeysSteerTheRunFromItsWindows()
    {
        QVERIFY(h->verbs->runList(walls()).ok());
        h->verbs->tick();
        emit window(1)->runKeyPressed(RunKey::Next);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        emit window(1)->runKeyPressed(RunKey::Previous);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        emit window(1)->runKeyPressed(RunKey::PauseOrResume);
        QVERIFY(h->verbs->state().run.paused);
        emit window(1)->runKeyPressed(RunKey::PauseOrResume);
        QVERIFY(!h->verbs->state().run.paused);
    }
};

QTEST_GUILESS_MAIN(TestPageRules)
#include "tst_pagerules.moc"
