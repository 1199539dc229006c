// The program's verbs driven on their own, with no window of the program: scripted browser windows,
// the recording dialog service and a manual clock.
#include "ScriptedBrowserWindow.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/Startup.h"
#include "verbs/HistoryModel.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QSignalSpy>
#include <QTemporaryDir>
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
    std::unique_ptr<QTemporaryDir> m_app; // the program folder, where the log goes
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<Verbs> m_verbs;
    QList<ScriptedBrowserWindow*> m_created;
    QList<ListState> m_lists;

    ScriptedBrowserWindow* window(int slot)
    {
        return qobject_cast<ScriptedBrowserWindow*>(m_verbs->pool()->ie(slot));
    }
    void openEight()
    {
        for (int i = 1; i <= 8; ++i)
            QVERIFY(m_verbs->openPage(QString("https://page%1.example/").arg(i), QString(), OpenWhere::NewWindow).ok());
    }
    // One tick of the program's timer, after the clock moved on.
    void tickAfter(double seconds)
    {
        m_clock->advanceSeconds(seconds);
        m_verbs->tick();
    }
    // The lists as the list file would give them: a record for each list, then its pages.
    void setLists()
    {
        QList<QString> names, titles, urls;
        for (const ListState& list : m_lists) {
            names << list.name;
            titles << QString();
            urls << QString();
            for (const ListPageState& page : list.pages) {
                names << list.name;
                titles << page.title;
                urls << page.address;
            }
        }
        m_verbs->lists()->load({names, titles, urls}, int(names.size()));
    }
    RunChoice dashboards(bool several = false, bool loop = false)
    {
        return RunChoice{QStringLiteral("Dashboards"), 30, loop, several, false};
    }

private slots:
    void init()
    {
        resetGlobals();
        DialogService::reset();
        m_app = std::make_unique<QTemporaryDir>();
        globals().AppPath = m_app->path();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 4), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
        m_created.clear();
        m_verbs = std::make_unique<Verbs>();
        ScriptedBrowserWindow::installOn(m_verbs->pool(), &m_created);
        m_lists = {{QStringLiteral("Dashboards"),
                    {{"One", "https://one.example/"}, {"Two", "https://two.example/"}, {"Three", "https://three.example/"}}},
                   {QStringLiteral("Empty"), {}}};
        setLists();
    }
    void cleanup()
    {
        m_verbs.reset();
        Clock::setInstance(nullptr);
        DialogService::reset();
        m_app.reset();
    }

    // ---- windows

    void openingInANewWindowTakesTheLowestFreeSlot()
    {
        QVERIFY(m_verbs->openPage("https://a.example/", "A", OpenWhere::NewWindow).ok());
        QVERIFY(m_verbs->openPage("https://b.example/", "B", OpenWhere::NewWindow).ok());
        QCOMPARE(m_created.size(), 2);
        QCOMPARE(window(2)->navigations, QStringList{"https://b.example/"});
        window(1)->closeByHand();
        QVERIFY(m_verbs->openPage("https://c.example/", QString(), OpenWhere::NewWindow).ok());
        QCOMPARE(window(1)->navigations, QStringList{"https://c.example/"});
        const ProgramState state = m_verbs->state();
        QCOMPARE(state.windows.size(), 2);
        QCOMPARE(state.windows[0].slot, 1);
        QCOMPARE(state.windows[0].address, QStringLiteral("https://c.example/"));
        QCOMPARE(state.currentSlot, 1);
    }

    void openingInTheCurrentWindowReusesIt()
    {
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        QVERIFY(m_verbs->openPage("https://b.example/", QString(), OpenWhere::CurrentWindow).ok());
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(window(1)->navigations, (QStringList{"https://a.example/", "https://b.example/"}));
    }

    void openingInASlotUsesThatSlot()
    {
        QVERIFY(m_verbs->openPage("https://five.example/", "Five", OpenWhere::Slot, 5).ok());
        QVERIFY(window(5));
        QCOMPARE(g.WindowCount, 1);
        QCOMPARE(g.WindowIndex, 5);
        // A slot that holds a window sends that window to the page.
        QVERIFY(m_verbs->openPage("https://again.example/", QString(), OpenWhere::Slot, 5).ok());
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://again.example/"));
        const VerbResult nine = m_verbs->openPage("https://x.example/", QString(), OpenWhere::Slot, 9);
        QCOMPARE(nine.code, VerbResult::NoSuchSlot);
        QCOMPARE(nine.reason(), QStringLiteral("there is no window 9: the windows are 1 to 8"));
    }

    void anOutsideCallerAtTheLimitGetsAReasonAndNoQuestion()
    {
        openEight();
        const VerbResult result =
            m_verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside);
        QCOMPARE(result.code, VerbResult::AllWindowsOpen);
        QCOMPARE(result.reason(), QStringLiteral("all eight windows are open"));
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(!g.LastWindowMode);
        QCOMPARE(m_created.size(), 8);
        QCOMPARE(m_verbs->openPage("https://x.example/", QString(), OpenWhere::Slot, 3, Caller::Outside).code,
                 VerbResult::Ok); // slot 3 is open: its window goes there
    }

    void aPersonAtTheLimitIsAskedAndNoLeavesEverythingAsItWas()
    {
        openEight();
        DialogService::setNextAnswer(DialogService::Answer::No);
        const VerbResult result = m_verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow);
        QCOMPARE(result.code, VerbResult::Declined);
        QCOMPARE(DialogService::shownTexts(), QStringList{kMaximumQuestion});
        QVERIFY(!g.LastWindowMode);
    }

    void aPersonWhoSaysYesGoesOnInTheLastWindow()
    {
        openEight();
        QSignalSpy chosen(m_verbs.get(), &Verbs::lastWindowModeChosen);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QVERIFY(m_verbs->openPage("https://ninth.example/", QString(), OpenWhere::NewWindow).ok());
        QVERIFY(g.LastWindowMode);
        QCOMPARE(chosen.size(), 1);
        QVERIFY(m_verbs->openPage("https://tenth.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        QCOMPARE(window(8)->navigations.last(), QStringLiteral("https://tenth.example/"));
    }

    void bringingForwardShowsOnlyThatWindow()
    {
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        m_verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        QSignalSpy forward(m_verbs.get(), &Verbs::windowBroughtForward);
        QVERIFY(m_verbs->bringForward(1).ok());
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
        QCOMPARE(forward.size(), 1);
        QCOMPARE(forward[0][0].toInt(), 2);
        QCOMPARE(forward[0][1].toInt(), 1);
        QCOMPARE(m_verbs->bringForward(0).code, VerbResult::NoSuchSlot);
    }

    void closingAWindowFreesItsSlot()
    {
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        QVERIFY(m_verbs->closeWindow(1).ok());
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(g.WindowUrl[1].isEmpty());
        QVERIFY(m_verbs->state().windows.isEmpty());
        QCOMPARE(m_verbs->closeWindow(1).code, VerbResult::SlotEmpty);
        QCOMPARE(m_verbs->closeWindow(12).code, VerbResult::NoSuchSlot);
    }

    void closingEveryWindowEmptiesEverySlot()
    {
        m_verbs->closeAllWindows(); // none open yet: nothing to do
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        m_verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        m_verbs->closeAllWindows();
        QCOMPARE(g.WindowCount, 0);
        QVERIFY(m_verbs->state().windows.isEmpty());
        QVERIFY(window(1) == nullptr && window(2) == nullptr);
        QVERIFY(!g.WebFormBusy);
    }

    void reloadingLoadsTheWindowsPageAgain()
    {
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/moved", "Moved");
        QVERIFY(m_verbs->reload(1).ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://a.example/moved"));
        QCOMPARE(m_verbs->reload(2).code, VerbResult::SlotEmpty);
    }

    void theStateFollowsTheWindowsTitlesAndAddresses()
    {
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/home", "Home of A");
        const WindowState w = m_verbs->window(1);
        QCOMPARE(w.title, QStringLiteral("Home of A"));
        QCOMPARE(w.address, QStringLiteral("https://a.example/home"));
        QVERIFY(w.current);
        QCOMPARE(w.page, PageRecovery::State::Idle); // scripted windows report no top-frame loads
        QCOMPARE(m_verbs->state().lists.size(), 2);
        QCOMPARE(m_verbs->state().lists[0].pages[1].address, QStringLiteral("https://two.example/"));
    }

    void aDocumentAWindowCompletesGoesIntoItsHistory()
    {
        m_verbs->history()->clear();
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        window(1)->load("https://a.example/home", "Home of A");
        QCOMPARE(m_verbs->history()->pagesOf("Internet Explorer 1"),
                 (QList<ListPageState>{{"Home of A", "https://a.example/home"}}));
        QVERIFY(g.HistoryChanged);
    }

    void changesOfOneTurnAreToldOnce()
    {
        QSignalSpy changed(m_verbs.get(), &Verbs::stateChanged);
        m_verbs->openPage("https://a.example/", QString(), OpenWhere::NewWindow);
        m_verbs->openPage("https://b.example/", QString(), OpenWhere::NewWindow);
        m_verbs->bringForward(1);
        QCOMPARE(changed.size(), 0); // not before the event loop turns
        QTRY_COMPARE(changed.size(), 1);
        QTest::qWait(20);
        QCOMPARE(changed.size(), 1);
        m_verbs->closeWindow(2);
        QTRY_COMPARE(changed.size(), 2);
    }

    void theNewWindowModeIsAVerbToo()
    {
        QSignalSpy mode(m_verbs.get(), &Verbs::newWindowModeChanged);
        m_verbs->setNewWindowMode(false);
        QVERIFY(!g.NewWindowMode);
        QVERIFY(!m_verbs->state().newWindowMode);
        QCOMPARE(mode.size(), 1);
    }

    // ---- the run

    void anOutsideCallerCannotRunAListThatIsNotThereOrEmpty()
    {
        RunChoice choice = dashboards();
        choice.list = QStringLiteral("Nowhere");
        QCOMPARE(m_verbs->runList(choice, Caller::Outside).code, VerbResult::NoSuchList);
        choice.list = QStringLiteral("Empty");
        QCOMPARE(m_verbs->runList(choice, Caller::Outside).code, VerbResult::EmptyList);
        choice = dashboards();
        choice.intervalSeconds = 0;
        QCOMPARE(m_verbs->runList(choice, Caller::Outside).code, VerbResult::BadInterval);
        QVERIFY(!g.RunListRunning);
    }

    void aRunOpensItsPagesOnTheClock()
    {
        QVERIFY(m_verbs->runList(dashboards(true), Caller::Outside).ok());
        QVERIFY(g.RunListRunning);
        m_verbs->tick(); // the first page opens at once
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"});
        tickAfter(29.4); // the first page's wait began with it
        QCOMPARE(m_created.size(), 1);
        tickAfter(1.2);
        QCOMPARE(m_created.size(), 2);
        QCOMPARE(window(2)->navigations, QStringList{"https://two.example/"});
        const RunState run = m_verbs->state().run;
        QVERIFY(run.running);
        QCOMPARE(run.list, QStringLiteral("Dashboards"));
        QCOMPARE(run.position, 1);
        QCOMPARE(run.count, 3);
        QCOMPARE(run.intervalSeconds, 30);
        QVERIFY(run.severalWindows);
    }

    void nextShowsTheFollowingPageAtOnceAndRestartsItsTime()
    {
        m_verbs->runList(dashboards(), Caller::Outside);
        m_verbs->tick();
        tickAfter(10);
        QVERIFY(m_verbs->nextPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
        QCOMPARE(m_verbs->state().run.position, 1);
        QCOMPARE(m_verbs->state().run.secondsToNext, 30.0);
        tickAfter(29);
        QCOMPARE(window(1)->navigations.size(), 2);
        tickAfter(1.5);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
        // The last page is shown: a run that does not loop has no next page.
        QCOMPARE(m_verbs->nextPage().code, VerbResult::NoPageThere);
    }

    void previousGoesBackOneStepAndALoopGoesRound()
    {
        m_verbs->runList(dashboards(false, true), Caller::Outside);
        m_verbs->tick();
        QVERIFY(m_verbs->nextPage().ok()); // two
        QVERIFY(m_verbs->previousPage().ok());
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
        QCOMPARE(m_verbs->state().run.position, 0);
        QVERIFY(m_verbs->previousPage().ok()); // round to the last
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://three.example/"));
        QVERIFY(m_verbs->nextPage().ok()); // and round to the first
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://one.example/"));
    }

    void previousAtTheFirstPageOfARunOnceThroughHasNoPage()
    {
        m_verbs->runList(dashboards(), Caller::Outside);
        m_verbs->tick();
        QCOMPARE(m_verbs->previousPage().code, VerbResult::NoPageThere);
        QCOMPARE(window(1)->navigations.size(), 1);
    }

    void aPausedRunKeepsItsPlaceAndItsRemainingTime()
    {
        m_verbs->runList(dashboards(), Caller::Outside);
        m_verbs->tick();
        tickAfter(20); // 20 of its 30 seconds gone
        QVERIFY(m_verbs->pauseRun().ok());
        QVERIFY(m_verbs->state().run.paused);
        QCOMPARE(qRound(m_verbs->state().run.secondsToNext), 10);
        tickAfter(600);
        QCOMPARE(window(1)->navigations.size(), 1);
        QCOMPARE(qRound(m_verbs->state().run.secondsToNext), 10);
        QVERIFY(m_verbs->resumeRun().ok());
        QVERIFY(!m_verbs->state().run.paused);
        tickAfter(9);
        QCOMPARE(window(1)->navigations.size(), 1);
        tickAfter(1.5);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://two.example/"));
    }

    void stoppingEndsTheRunAndTheVerbsOfARunThenSaySo()
    {
        m_verbs->runList(dashboards(), Caller::Outside);
        m_verbs->tick();
        QVERIFY(m_verbs->stopRun().ok());
        QVERIFY(!g.RunListRunning);
        QVERIFY(!m_verbs->state().run.running);
        for (const VerbResult& r : {m_verbs->stopRun(), m_verbs->nextPage(), m_verbs->previousPage(),
                                    m_verbs->pauseRun(), m_verbs->resumeRun()})
            QCOMPARE(r.code, VerbResult::NotRunning);
    }

    void aRunFromOutsideEndsWithoutABox()
    {
        QSignalSpy completed(m_verbs.get(), &Verbs::runCompleted);
        m_verbs->runList(dashboards(), Caller::Outside);
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
        QSignalSpy tooLong(m_verbs.get(), &Verbs::runListTooLong);
        QVERIFY(m_verbs->runList(dashboards(), Caller::Outside).ok());
        QCOMPARE(tooLong.size(), 1);
        QCOMPARE(m_verbs->state().run.count, Verbs::kRunCapacity);
    }

    void keptPagesComeForwardInsteadOfLoadingAgain()
    {
        RunChoice choice = dashboards(true, true);
        choice.keepPagesLoaded = true;
        m_verbs->runList(choice, Caller::Outside);
        m_verbs->tick();
        for (int i = 0; i < 3; ++i) {
            tickAfter(0.6);
            tickAfter(30.6);
        }
        tickAfter(0.6); // the loop begins again at the tick after its last page
        // The first round gave each page a window; the second brings the first one forward.
        QCOMPARE(m_created.size(), 3);
        QCOMPARE(window(1)->navigations, QStringList{"https://one.example/"});
        QCOMPARE(g.WindowIndex, 1);
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
    }
};

QTEST_GUILESS_MAIN(TestVerbs)
#include "tst_verbs.moc"
