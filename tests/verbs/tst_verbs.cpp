// The program's verbs driven on their own, with no window of the program: scripted browser windows,
// the recording dialog service and a manual clock.
#include "VerbsHarness.h"
#include "core/Startup.h"
#include "verbs/HistoryModel.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {
const QString kMaximumQuestion =
    QStringLiteral("        That's It - Maximum is 8 ! - Continue in Last Window ?");
}

class TestVerbs : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<VerbsHarness> h;
    QList<ListState> m_lists;

    ScriptedBrowserWindow* window(int slot) { return h->window(slot); }
    void openEight()
    {
        for (int i = 1; i <= 8; ++i)
            QVERIFY(h->verbs->openPage(QString("https://page%1.example/").arg(i), QString(), OpenWhere::NewWindow).ok());
    }
    void tickAfter(double seconds) { h->tickAfter(seconds); }
    void setLists() { h->setLists(m_lists); }
    RunChoice dashboards(bool several = false, bool loop = false)
    {
        return RunChoice{QStringLiteral("Dashboards"), 30, loop, several, false};
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        m_lists = {{QStringLiteral("Dashboards"),
                    {{"One", "https://one.example/"}, {"Two", "https://two.example/"}, {"Three", "https://three.example/"}}},
                   {QStringLiteral("Empty"), {}}};
        setLists();
    }
    void cleanup() { h.reset(); }

    // ---- windows

    void openingInANewWindowTakesTheLowestFreeSlot()
    {
        QVERIFY(h->verbs->openPage("https://a.example/", "A", OpenWhere::NewWindow).ok());
        QVERIFY(h->verbs->openPage("https://b.example/", "B", OpenWhere::NewWindow).ok());
        QCOMPARE(h->created.size(), 2);
        QCOMPARE(window(2)->navigations, QStringList{"https://b.example/"});
        window(1)->closeByHand();
        QVERIFY(h->verbs->openPage("https://c.example/", QString(), OpenWhere::NewWindow).ok());
        QCOMPARE(window(1)->navigations, QStringList{"https://c.example/"});
        const ProgramState state = h->verbs->state();
        QCOMPARE(state.windows.size(), 2);
        QCOMPARE(state.windows[0].slot, 1);
        QCOMPARE(state.windows[0].address, QStringLiteral("https://c.example/"));
        QCOMPARE(state.currentSlot, 1);
    }

    void openingInTheCurrentWindowReusesIt()
    {
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        QVERIFY(h->verbs->openPage("https://b.example/", QString(), OpenWhere::CurrentWindow).ok());
        QCOMPARE(h->created.size(), 1);
        QCOMPARE(window(1)->navigations, (QStringList{"https://a.example/", "https://b.example/"}));
    }

    void openingInASlotUsesThatSlot()
    {
        QVERIFY(h->verbs->openPage("https://five.example/", "Five", OpenWhere::Slot, 5).ok());
        QVERIFY(window(5));
        QCOMPARE(g.WindowCount, 1);
        QCOMPARE(g.WindowIndex, 5);
        // A slot that holds a window sends that window to the page.
        QVERIFY(h->verbs->openPage("https://again.example/", QString(), OpenWhere::Slot, 5).ok());
        QCOMPARE(h->created.size(), 1);
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://again.example/"));
        const VerbResult nine = h->verbs->openPage("https://x.example/", QString(), OpenWhere::Slot, 9);
        QCOMPARE(nine.code, VerbResult::NoSuchSlot);
        QCOMPARE(nine.reason(), QStringLiteral("there is no window 9: the windows are 1 to 8"));
    }

    void anOutsideCallerAtTheLimitGetsAReasonAndNoQuestion()
    {
        openEight();
        const VerbResult result =
            h->verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside);
        QCOMPARE(result.code, VerbResult::AllWindowsOpen);
        QCOMPARE(result.reason(), QStringLiteral("all eight windows are open"));
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(!g.LastWindowMode);
        QCOMPARE(h->created.size(), 8);
        QCOMPARE(h->verbs->openPage("https://x.example/", QString(), OpenWhere::Slot, 3, Caller::Outside).code,
                 VerbResult::Ok); // slot 3 is open: its window goes there
    }

    void aPersonAtTheLimitIsAskedAndNoLeavesEverythingAsItWas()
    {
        openEight();
        DialogService::setNextAnswer(DialogService::Answer::No);
        const VerbResult result = h->verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow);
        QCOMPARE(result.code, VerbResult::Declined);
        QCOMPARE(DialogService::shownTexts(), QStringList{kMaximumQuestion});
        QVERIFY(!g.LastWindowMode);
    }

    void aPersonWhoSaysYesGoesOnInTheLastWindow()
    {
        openEight();
        QSignalSpy chosen(h->verbs.get(), &Verbs::lastWindowModeChosen);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QVERIFY(h->verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow).ok());
        QVERIFY(g.LastWindowMode);
        QCOMPARE(chosen.size(), 1);
        QVERIFY(h->verbs->openPage("https://tenth.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        QCOMPARE(window(8)->navigations.last(), QStringLiteral("https://tenth.example/"));
    }

    void bringingForwardShowsOnlyThatWindow()
    {
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        h->verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        QSignalSpy forward(h->verbs.get(), &Verbs::windowBroughtForward);
        QVERIFY(h->verbs->bringForward(1).ok());
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
        QCOMPARE(forward.size(), 1);
        QCOMPARE(forward[0][0].toInt(), 2);
        QCOMPARE(forward[0][1].toInt(), 1);
        QCOMPARE(h->verbs->bringForward(0).code, VerbResult::NoSuchSlot);
    }

    void closingAWindowFreesItsSlot()
    {
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        QVERIFY(h->verbs->closeWindow(1).ok());
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(g.WindowUrl[1].isEmpty());
        QVERIFY(h->verbs->state().windows.isEmpty());
        QCOMPARE(h->verbs->closeWindow(1).code, VerbResult::SlotEmpty);
        QCOMPARE(h->verbs->closeWindow(12).code, VerbResult::NoSuchSlot);
    }

    void closingEveryWindowEmptiesEverySlot()
    {
        h->verbs->closeAllWindows(); // none open yet: nothing to do
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        h->verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        h->verbs->closeAllWindows();
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(h->verbs->state().windows.isEmpty());
        QVERIFY(window(1) == nullptr && window(2) == nullptr);
        QVERIFY(!g.WebFormBusy);
    }

    void reloadingLoadsTheWindowsPageAgain()
    {
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/moved", "Moved");
        QVERIFY(h->verbs->reload(1).ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://a.example/moved"));
        QCOMPARE(h->verbs->reload(2).code, VerbResult::SlotEmpty);
    }

    void theStateFollowsTheWindowsTitlesAndAddresses()
    {
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/home", "Home of A");
        const WindowState w = h->verbs->window(1);
        QCOMPARE(w.title, QStringLiteral("Home of A"));
        QCOMPARE(w.address, QStringLiteral("https://a.example/home"));
        QVERIFY(w.current);
        QCOMPARE(w.page, PageRecovery::State::Idle); // scripted windows report no top-frame loads
        QCOMPARE(h->verbs->state().lists.size(), 2);
        QCOMPARE(h->verbs->state().lists[0].pages[1].address, QStringLiteral("https://two.example/"));
    }

    void aDocumentAWindowCompletesGoesIntoItsHistory()
    {
        h->verbs->history()->clear();
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/home", "Home of A");
        QCOMPARE(h->verbs->history()->pagesOf("Internet Explorer 1"),
                 (QList<ListPageState>{{"Home of A", "https://a.example/home"}}));
        QVERIFY(g.HistoryChanged);
    }

    void changesOfOneTurnAreToldOnce()
    {
        QSignalSpy changed(h->verbs.get(), &Verbs::stateChanged);
        h->verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        h->verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        h->verbs->bringForward(1);
        QCOMPARE(changed.size(), 0); // not before the event loop turns
        QTRY_COMPARE(changed.size(), 1);
        QTest::qWait(20);
        QCOMPARE(changed.size(), 1);
        h->verbs->closeWindow(2);
        QTRY_COMPARE(changed.size(), 2);
    }

    void theNewWindowModeIsAVerbToo()
    {
        QSignalSpy mode(h->verbs.get(), &Verbs::newWindowModeChanged);
        h->verbs->setNewWindowMode(false);
        QVERIFY(!g.NewWindowMode);
        QVERIFY(!h->verbs->state().newWindowMode);
        QCOMPARE(mode.size(), 1);
    }

    // ---- the run

    void anOutsideCallerCannotRunAListThatIsNotThereOrEmpty()
    {
        RunChoice choice = dashboards();
        choice.list = QStringLiteral("Nowhere");
        QCOMPARE(h->verbs->runList(choice, Caller::Outside).code, VerbResult::NoSuchList);
        choice.list = QStringLiteral("Empty");
        QCOMPARE(h->verbs->runList(choice, Caller::Outside).code, VerbResult::EmptyList);
        choice = dashboards();
        choice.intervalSeconds = 0;
        QCOMPARE(h->verbs->runList(choice, Caller::Outside).code, VerbResult::BadInterval);
        QVERIFY(!g.RunListRunning);
    }

    void aRunOpensItsPagesOnTheClock()
    {
        QVERIFY(h->verbs->runList(dashboards(true), Caller::Outside).ok());
        QVERIFY(g.RunListRunning);
        h->verbs->tick(); // the first page opens at once
        QCOMPARE(h->created.size(), 1);
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"});
        tickAfter(29.4); // the first page's wait began with it
        QCOMPARE(h->created.size(), 1);
        tickAfter(1.2);
        QCOMPARE(h->created.size(), 2);
        QCOMPARE(window(2)->navigations, QStringList{"https://two.example/"});
        const RunState run = h->verbs->state().run;
        QVERIFY(run.running);
        QCOMPARE(run.list, QStringLiteral("Dashboards"));
        QCOMPARE(run.position, 1);
        QCOMPARE(run.count, 3);
        QCOMPARE(run.intervalSeconds, 30);
        QVERIFY(run.severalWindows);
    }

    void nextShowsTheFollowingPageAtOnceAndRestartsItsTime()
    {
        h->verbs->runList(dashboards(), Caller::Outside);
        h->verbs->tick();
        tickAfter(10);
        QVERIFY(h->verbs->nextPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        QCOMPARE(h->verbs->state().run.position, 1);
        QCOMPARE(h->verbs->state().run.secondsToNext, 30.0);
        tickAfter(29);
        QCOMPARE(window(1)->navigations.size(), 2);
        tickAfter(1.5);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
        // The last page is shown: a run that does not loop has no next page.
        QCOMPARE(h->verbs->nextPage().code, VerbResult::NoPageThere);
    }

    void previousGoesBackOneStepAndALoopGoesRound()
    {
        h->verbs->runList(dashboards(false, true), Caller::Outside);
        h->verbs->tick();
        QVERIFY(h->verbs->nextPage().ok()); // two
        QVERIFY(h->verbs->previousPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        QCOMPARE(h->verbs->state().run.position, 0);
        QVERIFY(h->verbs->previousPage().ok()); // round to the last
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
        QVERIFY(h->verbs->nextPage().ok()); // and round to the first
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
    }

    void previousAtTheFirstPageOfARunOnceThroughHasNoPage()
    {
        h->verbs->runList(dashboards(), Caller::Outside);
        h->verbs->tick();
        QCOMPARE(h->verbs->previousPage().code, VerbResult::NoPageThere);
        QCOMPARE(window(1)->navigations.size(), 1);
    }

    void aPausedRunKeepsItsPlaceAndItsRemainingTime()
    {
        h->verbs->runList(dashboards(), Caller::Outside);
        h->verbs->tick();
        tickAfter(20); // 20 of its 30 seconds gone
        QVERIFY(h->verbs->pauseRun().ok());
        QVERIFY(h->verbs->state().run.paused);
        QCOMPARE(qRound(h->verbs->state().run.secondsToNext), 10);
        tickAfter(600);
        QCOMPARE(window(1)->navigations.size(), 1);
        QCOMPARE(qRound(h->verbs->state().run.secondsToNext), 10);
        QVERIFY(h->verbs->resumeRun().ok());
        QVERIFY(!h->verbs->state().run.paused);
        tickAfter(9);
        QCOMPARE(window(1)->navigations.size(), 1);
        tickAfter(1.5);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
    }

    void stoppingEndsTheRunAndTheVerbsOfARunThenSaySo()
    {
        h->verbs->runList(dashboards(), Caller::Outside);
        h->verbs->tick();
        QVERIFY(h->verbs->stopRun().ok());
        QVERIFY(!g.RunListRunning);
        QVERIFY(!h->verbs->state().run.running);
        for (const VerbResult& r : {h->verbs->stopRun(), h->verbs->nextPage(), h->verbs->previousPage(),
                                    h->verbs->pauseRun(), h->verbs->resumeRun()})
            QCOMPARE(r.code, VerbResult::NotRunning);
    }

    void aRunFromOutsideEndsWithoutABox()
    {
        QSignalSpy completed(h->verbs.get(), &Verbs::runCompleted);
        h->verbs->runList(dashboards(), Caller::Outside);
        for (int i = 0; i < 200 && g.RunListRunning; ++i)
            tickAfter(0.6);
        QVERIFY(!g.RunListRunning);
        QCOMPARE(completed.size(), 1);
        QCOMPARE(completed[0][0].value<Caller>(), Caller::Outside);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }

    void aListLongerThanARunIsToldAndRunsItsFirstPages()
    {
        QList<ListPageState> many;
        for (int i = 0; i < 300; ++i)
            many.append({QString::number(i), QString("https://p%1.example/").arg(i)});
        m_lists[0].pages = many;
        setLists();
        QSignalSpy tooLong(h->verbs.get(), &Verbs::runListTooLong);
        QVERIFY(h->verbs->runList(dashboards(), Caller::Outside).ok());
        QCOMPARE(tooLong.size(), 1);
        QCOMPARE(h->verbs->state().run.count, Verbs::kRunCapacity);
    }

    void keptPagesComeForwardInsteadOfLoadingAgain()
    {
        RunChoice choice = dashboards(true, true);
        choice.keepPagesLoaded = true;
        h->verbs->runList(choice, Caller::Outside);
        h->verbs->tick();
        for (int i = 0; i < 3; ++i) {
            tickAfter(0.6);
            tickAfter(30.6);
        }
        tickAfter(0.6); // the loop begins again at the tick after its last page
        // The first round gave each page a window; the second brings the first one forward.
        QCOMPARE(h->created.size(), 3);
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"});
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
    }
};

QTEST_GUILESS_MAIN(TestVerbs)
#include "tst_verbs.moc"
