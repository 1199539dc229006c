// Several lists running at once, each in windows of its own, driven through the verbs with
// scripted windows and a manual clock: own timing, own keys and holds, windows never shared, the
// limit of eight over all of them, and one stopped while the others go on.
#include "VerbsHarness.h"
#include "settings/VantrelConf.h"

#include <QSignalSpy>
#include <QTest>

class TestOtherRuns : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    Globals& g = globals();

    ScriptedBrowserWindow* window(int slot) { return h->window(slot); }
    void tickAfter(double seconds) { h->tickAfter(seconds); }
    Verbs* verbs() { return h->verbs.get(); }
    RunChoice lobby(bool several = true, bool loop = true, int interval = 10)
    {
        return RunChoice{QStringLiteral("Lobby"), interval, loop, several, false};
    }
    RunChoice walls() { return RunChoice{QStringLiteral("Walls"), 30, true, false, false}; }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"}}},
                     {QStringLiteral("Lobby"),
                      {{"L1", "https://l1.example/"}, {"L2", "https://l2.example/"}, {"L3", "https://l3.example/"}}}});
    }
    void cleanup() { h.reset(); }

    void twoRunsGoInTheirOwnWindowsOnTheirOwnTime()
    {
        int id = 0;
        QVERIFY(verbs()->runInOtherWindows(lobby(), {5, 6}, Caller::Outside, &id).ok());
        QCOMPARE(id, 2);
        QVERIFY(verbs()->runList(walls(), Caller::Outside).ok());
        verbs()->tick();
        QCOMPARE(window(5)->navigations, QStringList{"https://l1.example/"});
        QCOMPARE(window(1)->navigations, QStringList{"https://w1.example/"});
        // Each run is logged as it is.
        QVERIFY(h->log().contains("run 2 started in windows 5, 6: Lobby"));
        QVERIFY(h->log().contains("run started: Lobby, every 10 s, in several windows, in a loop"));
        QVERIFY(h->log().contains("run started: Walls, every 30 s, in one window, in a loop"));
        // Ten seconds on: the lobby's next page goes round its own windows; the walls wait.
        tickAfter(0.6);
        tickAfter(10.1);
        QCOMPARE(window(6)->navigations, QStringList{"https://l2.example/"});
        tickAfter(0.6);
        tickAfter(10.1);
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://l3.example/"));
        QCOMPARE(window(1)->navigations.size(), 1);
        QCOMPARE(h->created.size(), 3);
        tickAfter(20);
        QCOMPARE(window(1)->navigations.last(), QStringLiteral("https://w2.example/"));
        // The state tells both.
        const ProgramState state = verbs()->state();
        QVERIFY(state.run.running);
        QCOMPARE(state.otherRuns.size(), 1);
        QCOMPARE(state.otherRuns[0].id, 2);
        QCOMPARE(state.otherRuns[0].list, QStringLiteral("Lobby"));
        QCOMPARE(state.otherRuns[0].windows, (QList<int>{5, 6}));
        QCOMPARE(state.otherRuns[0].intervalSeconds, 10);
    }

    void aWindowOfOneRunIsNeverAnothers()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(), {1, 2}).ok());
        QCOMPARE(verbs()->runInOtherWindows(lobby(), {2, 3}).code, VerbResult::SlotOfAnotherRun);
        QCOMPARE(verbs()->runInOtherWindows(lobby(), {9}).code, VerbResult::NoSuchSlot);
        QCOMPARE(verbs()->runInOtherWindows(lobby(), {}).code, VerbResult::NoSuchSlot);
        RunChoice nope = lobby();
        nope.list = "Nope";
        QCOMPARE(verbs()->runInOtherWindows(nope, {3}).code, VerbResult::NoSuchList);
        verbs()->tick();
        // The run dialog's run, over several windows, opens beside them, never in them.
        RunChoice several = walls();
        several.severalWindows = true;
        QVERIFY(verbs()->runList(several, Caller::Outside).ok());
        verbs()->tick();
        QCOMPARE(window(3)->navigations, QStringList{"https://w1.example/"});
        // A page a person opens in a new window also goes to a window no run keeps.
        QVERIFY(verbs()->openPage("https://mine.example/", QString(), OpenWhere::NewWindow).ok());
        QCOMPARE(window(4)->navigations, QStringList{"https://mine.example/"});
        // Nor can a run in other windows take the run dialog's windows.
        QCOMPARE(verbs()->runInOtherWindows(lobby(), {3}).code, VerbResult::SlotOfAnotherRun);
    }

    void theLimitOfEightHoldsOverEveryRun()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(), {1, 2, 3, 4, 5, 6}).ok());
        for (int i = 0; i < 2; ++i)
            QVERIFY(verbs()->openPage(QString("https://p%1.example/").arg(i), QString(), OpenWhere::NewWindow).ok());
        QCOMPARE(window(7)->navigations.size(), 1);
        QCOMPARE(window(8)->navigations.size(), 1);
        // All eight are taken or kept: an outside caller is told, and no run's window is touched.
        QCOMPARE(verbs()->openPage("https://more.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).code,
                 VerbResult::AllWindowsOpen);
        QCOMPARE(h->created.size(), 2);
    }

    void eachRunHasItsOwnKeysAndHold()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(false), {5}).ok());
        QVERIFY(verbs()->runList(walls(), Caller::Outside).ok());
        verbs()->tick();
        emit window(5)->runKeyPressed(RunKey::Next);
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://l2.example/"));
        QCOMPARE(window(1)->navigations.size(), 1);
        emit window(5)->personActed();
        QVERIFY(verbs()->otherRuns().value(0).paused);
        QVERIFY(verbs()->otherRuns().value(0).heldByPerson);
        QVERIFY(!verbs()->state().run.paused);
        QVERIFY(verbs()->state().windows.value(1).runPaused); // window 5's row says so
        QVERIFY(verbs()->state().windows.value(1).runHeldByPerson);
        QVERIFY(!verbs()->state().windows.value(0).runPaused);
        emit window(1)->runKeyPressed(RunKey::PauseOrResume);
        QVERIFY(verbs()->state().run.paused);
        // The verbs reach a run by its number.
        QVERIFY(verbs()->resumeRun(2).ok());
        QVERIFY(!verbs()->otherRuns().value(0).paused);
        QVERIFY(verbs()->previousPage(2).ok());
        QCOMPARE(window(5)->navigations.last(), QStringLiteral("https://l1.example/"));
        QCOMPARE(verbs()->nextPage(7).code, VerbResult::NotRunning);
    }

    void stoppingOneLeavesTheOthersRunning()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(), {5, 6}).ok());
        QVERIFY(verbs()->runList(walls(), Caller::Outside).ok());
        verbs()->tick();
        QVERIFY(verbs()->stopRun(2).ok());
        QVERIFY(verbs()->otherRuns().isEmpty());
        QVERIFY(!window(5)->runKeys);
        QVERIFY(g.RunListRunning);
        tickAfter(31);
        QCOMPARE(window(1)->navigations.size(), 2);
        QCOMPARE(window(5)->navigations.size(), 1);
        // Its windows are free again.
        QVERIFY(verbs()->runInOtherWindows(lobby(), {5}).ok());
        QCOMPARE(verbs()->stopRun(2).code, VerbResult::NotRunning); // numbers are not given twice
        QVERIFY(verbs()->stopRun(3).ok());
        QVERIFY(verbs()->stopRun().ok());
        QVERIFY(!g.RunListRunning);
    }

    void aRunOnceThroughInOtherWindowsEndsByItselfWithoutABox()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(true, false), {5, 6}, Caller::Person).ok());
        for (int i = 0; i < 80 && !verbs()->otherRuns().isEmpty(); ++i) {
            tickAfter(0.6);
            QCoreApplication::processEvents();
        }
        QVERIFY(verbs()->otherRuns().isEmpty());
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(window(5)->navigations, (QStringList{"https://l1.example/", "https://l3.example/"}));
    }

    void bringingAWindowForwardLeavesTheOtherRunsWindowsInView()
    {
        QVERIFY(verbs()->runInOtherWindows(lobby(true, true), {5, 6}).ok());
        verbs()->tick();
        tickAfter(0.6);
        tickAfter(10.1);
        QVERIFY(verbs()->openPage("https://a.example/", QString(), OpenWhere::NewWindow).ok());
        QVERIFY(verbs()->openPage("https://b.example/", QString(), OpenWhere::NewWindow).ok());
        QVERIFY(verbs()->bringForward(1).ok());
        QVERIFY(window(1)->isVisible());
        QVERIFY(!window(2)->isVisible());
        QVERIFY(window(5)->isVisible());
        QVERIFY(window(6)->isVisible());
    }
};

QTEST_GUILESS_MAIN(TestOtherRuns)
#include "tst_otherruns.moc"
