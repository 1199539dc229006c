// The door of the hours on the verbs with scripted windows and a manual clock: a rotation starts
// when its hours begin and stops when they end, whatever the clock does in between (a sleep over a
// start time, a clock set back); a run somebody started is left alone, a scheduled run somebody
// stopped waits for its next hours, and "where it stopped today" goes on at that page.
#include "VerbsHarness.h"
#include "schedule/Scheduler.h"
#include "screens/ScreenPlacer.h"

#include <QSignalSpy>
#include <QTest>

namespace {
Schedule schedule(const QString& name, const QString& list, const QString& rule, const QList<int>& windows = {})
{
    Schedule s;
    s.name = name;
    s.list = list;
    s.intervalSeconds = 60;
    s.loop = true;
    s.windows = windows;
    s.rules << *ScheduleRule::fromText(rule);
    return s;
}
} // namespace

class TestScheduler : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    std::unique_ptr<Scheduler> scheduler;

    // The machine's clock moves on to `time` of the harness's day (Monday 2026-05-04) and the
    // scheduler looks, as its timer makes it look each second.
    void at(int hour, int minute, int second = 0, int dayOffset = 0)
    {
        h->clock.setNow(QDateTime(QDate(2026, 5, 4).addDays(dayOffset), QTime(hour, minute, second)));
        scheduler->evaluate();
        h->verbs->tick(); // the program's timer: a run opens its page, or steps on
    }
    RunState mainRun() { return h->verbs->state().run; }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Shop"), {{"S1", "https://s1.example/"}, {"S2", "https://s2.example/"},
                                               {"S3", "https://s3.example/"}}},
                     {QStringLiteral("Night"), {{"N1", "https://n1.example/"}, {"N2", "https://n2.example/"}}},
                     {QStringLiteral("Mine"), {{"M1", "https://m1.example/"}}}});
        scheduler = std::make_unique<Scheduler>(h->verbs.get());
    }
    void cleanup()
    {
        scheduler.reset();
        h.reset();
    }

    void aRotationStartsWhenItsHoursBeginAndStopsWhenTheyEnd()
    {
        QSignalSpy changed(scheduler.get(), &Scheduler::changed);
        scheduler->setSchedules({schedule("Opening", "Shop", "Mon-Fri 10:01-10:03")});
        QVERIFY(!mainRun().running);
        at(10, 0, 59);
        QVERIFY(!mainRun().running);
        at(10, 1, 0);
        QVERIFY(mainRun().running);
        QCOMPARE(mainRun().list, QStringLiteral("Shop"));
        QCOMPARE(scheduler->runOf("Opening"), 1);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://s1.example/"});
        at(10, 2, 59);
        QVERIFY(mainRun().running);
        at(10, 3, 0);
        QVERIFY(!mainRun().running);
        QCOMPARE(scheduler->runOf("Opening"), 0);
        QCOMPARE(changed.count(), 2);
        QVERIFY(h->log().contains("schedule \"Opening\": its hours began, Shop runs in the run dialog's window"));
        QVERIFY(h->log().contains("schedule \"Opening\": its hours ended, Shop stopped"));
        QVERIFY(DialogService::shownTexts().isEmpty()); // nobody at the screen is asked anything
    }
    void aWindowWithNothingScheduledShowsBlackOrItsPageOrIsLeftBe()
    {
        SlotPlace black;
        black.slot = 2;
        black.idle.show = SlotIdle::Show::Black;
        SlotPlace page;
        page.slot = 3;
        page.idle = {SlotIdle::Show::Page, QStringLiteral("https://closed.example/")};
        h->verbs->pool()->placer()->setPlaces({black, page});
        scheduler->setSchedules({schedule("Left", "Shop", "Mon-Fri 10:01-10:03", {2}),
                                 schedule("Right", "Night", "Mon-Fri 10:01-10:03", {3}),
                                 schedule("Alone", "Mine", "Mon-Fri 10:01-10:03", {4})});
        // Outside their hours at the start: window 3 shows its page; windows 2 and 4 have none yet.
        at(10, 0, 0);
        QCOMPARE(h->window(3)->navigations, QStringList{"https://closed.example/"});
        QVERIFY(!h->window(2));
        at(10, 1, 0);
        QVERIFY(!h->window(2)->blackedOut());
        QCOMPARE(h->window(3)->navigations.last(), QStringLiteral("https://n1.example/"));
        at(10, 3, 0); // their hours end
        QVERIFY(h->window(2)->blackedOut());
        QVERIFY(h->window(2)->isVisible());
        QCOMPARE(h->window(3)->navigations.last(), QStringLiteral("https://closed.example/"));
        QCOMPARE(h->window(4)->navigations, QStringList{"https://m1.example/"}); // left be
        QVERIFY(!h->window(4)->blackedOut());
        QVERIFY(h->log().contains("nothing scheduled: window 2 shows black"));
        QVERIFY(h->log().contains("nothing scheduled: window 3 shows https://closed.example/"));
        // What they show stays in view; the window left be lets the screen go.
        QCOMPARE(scheduler->idleShown(), (QSet<int>{2, 3}));
        // Nothing more while nothing changes.
        at(10, 4, 0);
        QCOMPARE(h->window(3)->navigations.count("https://closed.example/"), 2);
        // A run taking window 2 again ends its idle time; a window closed ends it too.
        QVERIFY(h->verbs->runInOtherWindows({"Shop", 60, true}, {2}, Caller::Outside).ok());
        h->window(3)->closeByHand();
        at(10, 5, 0);
        QVERIFY(scheduler->idleShown().isEmpty());
    }
    void aWindowWhoseNextRotationFollowsAtOnceNeverShowsItsIdlePage()
    {
        SlotPlace page;
        page.slot = 2;
        page.idle = {SlotIdle::Show::Page, QStringLiteral("https://closed.example/")};
        h->verbs->pool()->placer()->setPlaces({page});
        scheduler->setSchedules({schedule("Day", "Shop", "Mon-Fri 10:00-10:02", {2}),
                                 schedule("Evening", "Night", "Mon-Fri 10:02-10:04", {2})});
        at(10, 0, 0);
        at(10, 2, 0);
        QCOMPARE(h->window(2)->navigations, (QStringList{"https://s1.example/", "https://n1.example/"}));
        at(10, 4, 0);
        QCOMPARE(h->window(2)->navigations.last(), QStringLiteral("https://closed.example/"));
    }
    void aRunStartedByHandIsNotCoveredByAnIdleScreen()
    {
        SlotPlace black;
        black.slot = 1;
        black.idle.show = SlotIdle::Show::Black;
        h->verbs->pool()->placer()->setPlaces({black});
        QVERIFY(h->verbs->runList({"Mine", 60, true}, Caller::Outside).ok());
        h->verbs->tick();
        scheduler->setSchedules({schedule("Opening", "Shop", "Mon-Fri 11:00-12:00")});
        at(10, 0, 0); // outside its hours; window 1 runs the list somebody started
        QVERIFY(!h->window(1)->blackedOut());
        QVERIFY(mainRun().running);
    }
    void aMachineThatSleptThroughTheStartRunsOnWakingAndAClockSetBackStopsIt()
    {
        scheduler->setSchedules({schedule("Opening", "Shop", "Mon-Fri 10:01-12:00")});
        at(9, 0);
        at(11, 30); // woke up long after the start
        QVERIFY(mainRun().running);
        at(9, 30); // the clock set back before the hours
        QVERIFY(!mainRun().running);
        at(13, 0, 0, 5); // slept over a whole weekday's hours into Saturday: nothing
        QVERIFY(!mainRun().running);
    }
    void aRotationInOtherWindowsRunsThereBesideTheDialogsRun()
    {
        scheduler->setSchedules({schedule("Night wall", "Night", "Daily 22:00-06:00", {3, 4}),
                                 schedule("Opening", "Shop", "Mon-Fri 08:00-23:00")});
        at(22, 0);
        QVERIFY(mainRun().running);
        const QList<RunState> others = h->verbs->otherRuns();
        QCOMPARE(others.size(), 1);
        QCOMPARE(others[0].list, QStringLiteral("Night"));
        QCOMPARE(others[0].windows, (QList<int>{3, 4}));
        QCOMPARE(scheduler->runOf("Night wall"), others[0].id);
        at(5, 59, 0, 1);
        QVERIFY(h->verbs->otherRuns().value(0).running);
        at(6, 0, 0, 1);
        QVERIFY(h->verbs->otherRuns().isEmpty() || !h->verbs->otherRuns()[0].running);
    }
    void aRunSomebodyStartedIsLeftAloneAndTheScheduleWaitsForIt()
    {
        QVERIFY(h->verbs->runList(RunChoice{"Mine", 60, true, false, false}, Caller::Person).ok());
        scheduler->setSchedules({schedule("Opening", "Shop", "Mon-Fri 10:01-10:30")});
        at(10, 1);
        QCOMPARE(mainRun().list, QStringLiteral("Mine"));
        QCOMPARE(scheduler->runOf("Opening"), 0);
        QVERIFY(h->verbs->stopRun().ok()); // the person is done with theirs
        at(10, 2);
        QCOMPARE(mainRun().list, QStringLiteral("Shop"));
        // The end of the hours stops only the scheduled run: one started by hand afterwards stays.
        QVERIFY(h->verbs->stopRun().ok());
        QVERIFY(h->verbs->runList(RunChoice{"Mine", 60, true, false, false}, Caller::Person).ok());
        at(10, 31);
        QVERIFY(mainRun().running);
        QCOMPARE(mainRun().list, QStringLiteral("Mine"));
    }
    void aScheduledRunSomebodyStoppedWaitsForItsNextHours()
    {
        scheduler->setSchedules({schedule("Opening", "Shop", "Daily 10:01-10:30")});
        at(10, 1);
        QVERIFY(mainRun().running);
        QVERIFY(h->verbs->stopRun().ok());
        at(10, 2);
        QVERIFY(!mainRun().running);
        QVERIFY(h->log().contains("its run of Shop was stopped; it waits for its next hours"));
        at(10, 31);
        at(10, 1, 0, 1); // the next day's hours
        QVERIFY(mainRun().running);
    }
    void whereItStoppedTodayGoesOnFromThereAndTomorrowAtTheFirstPage()
    {
        Schedule s = schedule("Opening", "Shop", "Daily 10:01-10:30");
        s.rules << *ScheduleRule::fromText("Daily 11:00-11:30");
        s.start = Schedule::Start::WhereItStoppedToday;
        scheduler->setSchedules({s});
        at(10, 1);
        QVERIFY(h->verbs->nextPage().ok()); // the second page shows when the hours end
        at(10, 30);
        QVERIFY(!mainRun().running);
        // The window still shows the second page when the hours begin again; the rotation goes on
        // from there: the third page comes after one interval.
        at(11, 0);
        QVERIFY(mainRun().running);
        QCOMPARE(mainRun().next, 2);
        QVERIFY(h->log().contains("Shop runs in the run dialog's window from page 3"));
        at(11, 1, 1);
        QCOMPARE(h->window(1)->navigations.last(), QStringLiteral("https://s3.example/"));
        at(11, 30);
        at(10, 1, 0, 1); // the next day: from the first page
        QCOMPARE(mainRun().position, 0);
        QCOMPARE(h->window(1)->navigations.last(), QStringLiteral("https://s1.example/"));
    }
    void aRunGoingOnFromTheLastSessionIsTakenAsTheSchedulesOwn()
    {
        QVERIFY(h->verbs->runList(RunChoice{"Shop", 60, true, false, false}, Caller::Outside).ok());
        scheduler->setSchedules({schedule("Opening", "Shop", "Daily 10:00-10:30")});
        QCOMPARE(scheduler->runOf("Opening"), 1);
        at(10, 30);
        QVERIFY(!mainRun().running);
    }
    void aListThatIsNotThereIsSaidOnceAndTriedAgain()
    {
        scheduler->setSchedules({schedule("Gone", "Nowhere", "Daily 10:00-10:30")});
        at(10, 0, 1);
        at(10, 0, 2);
        QCOMPARE(h->log().count("schedule \"Gone\": Nowhere cannot run yet"), 1);
        h->setLists({{QStringLiteral("Nowhere"), {{"W", "https://w.example/"}}}});
        at(10, 0, 3);
        QVERIFY(mainRun().running);
    }
};

QTEST_MAIN(TestScheduler)
#include "tst_scheduler.moc"
