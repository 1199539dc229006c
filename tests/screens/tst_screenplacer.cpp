// Windows kept on their monitors while monitors come and go, with scripted windows, the manual
// clock and a list of monitors that the test changes; the rotations go on all the while.
#include "TestSupport.h"
#include "VerbsHarness.h"
#include "screens/ScreenPlacer.h"

#include <QTest>

class TestScreenPlacer : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    QList<Monitor> monitors;
    const Monitor left{"HDMI-1", "Dell Inc.", "DELL U2720Q", "CN0A1", QRect(0, 0, 1920, 1080), true};
    const Monitor right{"DP-2", "Iiyama", "PL2792Q", "11xx7", QRect(1920, 0, 2560, 1440), false};

    ScreenPlacer* placer() { return h->verbs->pool()->placer(); }
    static SlotPlace fixed(int slot, const Monitor& m, bool full = true, QRect rect = {})
    {
        SlotPlace p;
        p.slot = slot;
        p.monitor = MonitorId::of(m);
        p.fullScreen = full;
        p.rect = rect;
        return p;
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Left wall"), {{"A1", "https://a1.example/"}, {"A2", "https://a2.example/"}}},
                     {QStringLiteral("Right wall"), {{"B1", "https://b1.example/"}, {"B2", "https://b2.example/"}}}});
        monitors = {left, right};
        placer()->setMonitorsForTest([this] { return monitors; });
    }
    void cleanup() { h.reset(); }

    void aNewWindowIsPutInItsPlaceBeforeItIsShown()
    {
        placer()->setPlaces({fixed(2, right), fixed(1, left, false, QRect(10, 10, 800, 600))});
        QVERIFY(h->verbs->runInOtherWindows({"Right wall", 30, true}, {2}, Caller::Outside).ok());
        h->verbs->tick();
        ScriptedBrowserWindow* w = h->window(2);
        QVERIFY(w);
        QCOMPARE(w->place().mode, WindowPlace::Mode::FullScreen);
        QCOMPARE(w->place().screen, QStringLiteral("DP-2"));
        QCOMPARE(w->place().rect, right.geometry);
        // Placed before the window was first made visible.
        QVERIFY(w->calls.contains("visible"));
        QVERIFY(w->placeWhenFirstShown.has_value());
        QCOMPARE(*w->placeWhenFirstShown, w->place());
    }
    void aWindowWhoseMonitorGoesWaitsOnThePrimaryAndComesBackWhileItsRotationGoesOn()
    {
        placer()->setPlaces({fixed(2, right)});
        QVERIFY(h->verbs->runInOtherWindows({"Right wall", 30, true}, {2}, Caller::Outside).ok());
        h->verbs->tick();
        ScriptedBrowserWindow* w = h->window(2);
        w->load("https://b1.example/", "B1");
        monitors = {left}; // unplugged
        placer()->placeAll();
        QCOMPARE(w->place().screen, QStringLiteral("HDMI-1"));
        QCOMPARE(w->place().rect, left.geometry);
        QVERIFY(!w->place().onItsOwnMonitor);
        QVERIFY(h->log().contains("monitor missing: window 2 waits on HDMI-1 (DP-2 is not there)"));
        // The rotation goes on in the same window, on the monitor it waits on.
        h->tickAfter(31);
        QCOMPARE(w->navigations.last(), QStringLiteral("https://b2.example/"));
        QCOMPARE(h->window(2), w);
        Monitor back = right;
        back.name = "HDMI-2"; // plugged into another port
        back.geometry.moveTo(-2560, 0);
        monitors = {left, back};
        placer()->placeAll();
        QCOMPARE(w->place().screen, QStringLiteral("HDMI-2"));
        QCOMPARE(w->place().rect, back.geometry);
        QVERIFY(h->log().contains("monitor back: window 2 on HDMI-2"));
        QCOMPARE(h->verbs->state().otherRuns.size(), 1);
        QVERIFY(!w->calls.contains("quit"));
    }
    void aWindowThatWaitsHiddenIsOutOfSightUntilItsMonitorIsBack()
    {
        SlotPlace p = fixed(1, right);
        p.missing = SlotPlace::Missing::StayHidden;
        placer()->setPlaces({p});
        QVERIFY(h->verbs->openPage("https://page.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        ScriptedBrowserWindow* w = h->window(1);
        monitors = {left};
        placer()->placeAll();
        QCOMPARE(w->place().mode, WindowPlace::Mode::Hidden);
        QVERIFY(h->log().contains("monitor missing: window 1 waits out of sight (DP-2 is not there)"));
        monitors = {right, left};
        placer()->placeAll();
        QCOMPARE(w->place().mode, WindowPlace::Mode::FullScreen);
        QCOMPARE(w->place().screen, QStringLiteral("DP-2"));
    }
    void aMonitorThatMovesTakesItsWindowsAlong()
    {
        placer()->setPlaces({fixed(1, right, false, QRect(100, 100, 640, 480))});
        QVERIFY(h->verbs->openPage("https://page.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        ScriptedBrowserWindow* w = h->window(1);
        QCOMPARE(w->place().rect, QRect(2020, 100, 640, 480));
        monitors[1].geometry.moveTo(0, 1080); // now below the other one
        placer()->placeAll();
        QCOMPARE(w->place().mode, WindowPlace::Mode::Rect);
        QCOMPARE(w->place().rect, QRect(100, 1180, 640, 480));
    }
    void newPlacesTakeEffectAtOnceAndAnUnfixedSlotIsLeftFree()
    {
        QVERIFY(h->verbs->openPage("https://page.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        ScriptedBrowserWindow* w = h->window(1);
        QCOMPARE(w->place(), WindowPlace{});
        placer()->setPlaces({fixed(1, left)});
        QCOMPARE(w->place().screen, QStringLiteral("HDMI-1"));
        placer()->setPlaces({});
        QCOMPARE(w->place(), WindowPlace{});
        QVERIFY(!h->log().contains("monitor"));
    }
};

VANTREL_GUI_TEST_MAIN(TestScreenPlacer)
#include "tst_screenplacer.moc"
