#include "TestSupport.h"
#include "settings/ScreenPlaces.h"
#include "settings/ScreensFile.h"

#include <QTest>

// Which monitor a window is fixed to, found again as monitors come and go, and Screens.conf.
class TestScreenPlaces : public QObject
{
    Q_OBJECT

    // Two monitors side by side, as the desktop sets them.
    const Monitor left{"HDMI-1", "Dell Inc.", "DELL U2720Q", "CN0A1", QRect(0, 0, 1920, 1080), true};
    const Monitor right{"DP-2", "Iiyama", "PL2792Q", "11xx7", QRect(1920, 0, 2560, 1440), false};
    const Monitor twin{"DP-3", "Dell Inc.", "DELL U2720Q", "CN0B2", QRect(4480, 0, 1920, 1080), false};

    static SlotPlace fixedTo(const Monitor& m, bool full = true, QRect rect = {})
    {
        SlotPlace p;
        p.slot = 1;
        p.monitor = MonitorId::of(m);
        p.fullScreen = full;
        p.rect = rect;
        return p;
    }

private slots:
    void aMonitorIsNamedAsTheDesktopNamesIt()
    {
        QCOMPARE(left.displayName(), QStringLiteral("Dell Inc. DELL U2720Q (HDMI-1)"));
        QCOMPARE((Monitor{"XWAYLAND0", "", "", "", {}, false}).displayName(), QStringLiteral("XWAYLAND0"));
    }
    void aMonitorIsFoundWhereverItIsPluggedIn()
    {
        Monitor moved = right;
        moved.name = "HDMI-2"; // another port
        QCOMPARE(ScreenPlaces::find(MonitorId::of(right), {left, moved}), std::optional<int>(1));
        // Of two of the same make and model, the serial number tells which.
        Monitor twinOnHdmi = twin;
        twinOnHdmi.name = "HDMI-1";
        QCOMPARE(ScreenPlaces::find(MonitorId::of(left), {twinOnHdmi, right, left}), std::optional<int>(2));
        // Unplugged: missing, even though its twin is there.
        QCOMPARE(ScreenPlaces::find(MonitorId::of(left), {right, twin}), std::nullopt);
    }
    void aMonitorThatTellsNoSerialIsFoundByMakeThenConnector()
    {
        Monitor a = left, b = twin;
        a.serial.clear();
        b.serial.clear();
        QCOMPARE(ScreenPlaces::find(MonitorId::of(a), {b, a}), std::optional<int>(1)); // the connector
        Monitor alone = a;
        alone.name = "DP-9";
        QCOMPARE(ScreenPlaces::find(MonitorId::of(a), {right, alone}), std::optional<int>(1)); // the only one
        // A monitor that tells nothing of itself, as under Xwayland: by its name.
        const Monitor bare{"XWAYLAND1", "", "", "", QRect(1024, 0, 1024, 768), false};
        QCOMPARE(ScreenPlaces::find(MonitorId::of(bare), {Monitor{"XWAYLAND0", "", "", "", {}, true}, bare}), std::optional<int>(1));
        QCOMPARE(ScreenPlaces::find(MonitorId{}, {bare}), std::nullopt);
    }
    void aMonitorReplacedOnTheSameConnectorTakesItsWindows()
    {
        const Monitor other{"HDMI-1", "LG", "27UL500", "", QRect(0, 0, 3840, 2160), true};
        QCOMPARE(ScreenPlaces::find(MonitorId::of(left), {right, other}), std::optional<int>(1));
    }
    void aFullScreenWindowCoversItsMonitor()
    {
        const WindowPlace where = ScreenPlaces::resolve(fixedTo(right), {left, right});
        QCOMPARE(where.mode, WindowPlace::Mode::FullScreen);
        QCOMPARE(where.screen, QStringLiteral("DP-2"));
        QCOMPARE(where.rect, right.geometry);
        QVERIFY(where.onItsOwnMonitor);
    }
    void aRectangleStandsOnItsMonitorAndFollowsItAndStaysInside()
    {
        const SlotPlace p = fixedTo(right, false, QRect(100, 50, 800, 600));
        QCOMPARE(ScreenPlaces::resolve(p, {left, right}).rect, QRect(2020, 50, 800, 600));
        // The desktop puts the monitor on the left now: the window goes with it.
        Monitor swapped = right;
        swapped.geometry.moveTo(-2560, 0);
        const WindowPlace where = ScreenPlaces::resolve(p, {left, swapped});
        QCOMPARE(where.mode, WindowPlace::Mode::Rect);
        QCOMPARE(where.rect, QRect(-2460, 50, 800, 600));
        // Larger than a smaller monitor that stands in: made to fit inside it.
        const SlotPlace big = fixedTo(right, false, QRect(2000, 1000, 800, 600));
        QCOMPARE(ScreenPlaces::resolve(big, {left}).rect, QRect(1120, 480, 800, 600));
    }
    void aWindowWhoseMonitorIsMissingWaitsOnThePrimaryOrHidden()
    {
        SlotPlace p = fixedTo(right);
        Monitor primaryRight = left;
        primaryRight.primary = false;
        const Monitor otherPrimary{"eDP-1", "", "", "", QRect(0, 1080, 1366, 768), true};
        WindowPlace where = ScreenPlaces::resolve(p, {primaryRight, otherPrimary});
        QCOMPARE(where.mode, WindowPlace::Mode::FullScreen);
        QCOMPARE(where.screen, QStringLiteral("eDP-1"));
        QCOMPARE(where.rect, otherPrimary.geometry);
        QVERIFY(!where.onItsOwnMonitor);
        p.missing = SlotPlace::Missing::StayHidden;
        where = ScreenPlaces::resolve(p, {primaryRight, otherPrimary});
        QCOMPARE(where.mode, WindowPlace::Mode::Hidden);
        // Back again: on its own monitor.
        where = ScreenPlaces::resolve(p, {primaryRight, otherPrimary, right});
        QCOMPARE(where.screen, QStringLiteral("DP-2"));
        QVERIFY(where.onItsOwnMonitor);
        // With no monitor at all there is nowhere to wait: left where it is.
        p.missing = SlotPlace::Missing::WaitOnPrimary;
        QCOMPARE(ScreenPlaces::resolve(p, {}).mode, WindowPlace::Mode::Free);
    }
    void aSlotFixedToNoMonitorIsLeftFree()
    {
        SlotPlace p;
        p.slot = 2;
        QCOMPARE(ScreenPlaces::resolve(p, {left, right}), WindowPlace{});
    }
    void theFileKeepsEachSlotsPlaceAsAPersonReadsIt()
    {
        TempAppFolder app;
        SlotPlace a = fixedTo(left);
        a.slot = 3;
        SlotPlace b = fixedTo(right, false, QRect(10, 20, 640, 480));
        b.slot = 1;
        b.missing = SlotPlace::Missing::StayHidden;
        QCOMPARE(ScreensFile::write(ScreensFile::path(), {a, b}), RunError::None);
        const QString text = QString::fromUtf8(readAll(ScreensFile::path()));
        QVERIFY(text.indexOf("[Window1]") < text.indexOf("[Window3]"));
        QVERIFY(text.contains("place=10 20 640 480"));
        QVERIFY(text.contains("place=full-screen"));
        QVERIFY(text.contains("ifMissing=hidden"));
        QVERIFY(text.contains("monitor=HDMI-1"));
        QCOMPARE(ScreensFile::read(ScreensFile::path()), (QList<SlotPlace>{b, a}));
        QCOMPARE(ScreensFile::write(ScreensFile::path(), {}), RunError::None);
        QCOMPARE(ScreensFile::read(ScreensFile::path()), QList<SlotPlace>{});
    }
    void theFileKeepsWhatAWindowShowsWithNothingScheduled()
    {
        TempAppFolder app;
        SlotPlace black = fixedTo(left);
        black.slot = 2;
        black.idle.show = SlotIdle::Show::Black;
        SlotPlace page; // fixed to no monitor, but with a page for its idle time
        page.slot = 5;
        page.idle = {SlotIdle::Show::Page, QStringLiteral("https://closed.example/")};
        SlotPlace nothing; // neither: not written
        nothing.slot = 6;
        QCOMPARE(ScreensFile::write(ScreensFile::path(), {black, page, nothing}), RunError::None);
        const QString text = QString::fromUtf8(readAll(ScreensFile::path()));
        QVERIFY(text.contains("whenIdle=black"));
        QVERIFY(text.contains("idlePage=https://closed.example/"));
        QVERIFY(!text.contains("[Window6]"));
        QCOMPARE(ScreensFile::read(ScreensFile::path()), (QList<SlotPlace>{black, page}));
        QCOMPARE(ScreenPlaces::resolve(page, {left}), WindowPlace{}); // where the desktop puts it
        // A page with no address is the desktop left be.
        QVERIFY(writeAll(ScreensFile::path(), "[Window1]\nwhenIdle=page\n[Window2]\nmonitor=DP-2\nwhenIdle=page\n"));
        const QList<SlotPlace> read = ScreensFile::read(ScreensFile::path());
        QCOMPARE(read.size(), 1);
        QCOMPARE(read[0].idle, SlotIdle{});
    }
    void aFileMendedByHandIsReadAsFarAsItCanBe()
    {
        TempAppFolder app;
        QVERIFY(writeAll(ScreensFile::path(), "[Window2]\nmonitor=DP-2\nplace=1 2 three 4\n"
                                       "[Window4]\nmonitor=HDMI-1\nmanufacturer=\"Acme, Inc.\"\nplace=0 0 0 10\n"
                                       "[Window5]\nplace=full-screen\n"
                                       "[Window6]\nmonitor=HDMI-1\nmanufacturer=\"Acme, Inc.\"\n"
                                       "[Window9]\nmonitor=HDMI-1\n"));
        const QList<SlotPlace> places = ScreensFile::read(ScreensFile::path());
        QCOMPARE(places.size(), 1);
        QCOMPARE(places[0].slot, 6);
        QCOMPARE(places[0].monitor.manufacturer, QStringLiteral("Acme, Inc."));
        QVERIFY(places[0].fullScreen);
        QCOMPARE(places[0].missing, SlotPlace::Missing::WaitOnPrimary);
        QCOMPARE(ScreensFile::read(app.file("none.conf")), QList<SlotPlace>{});
    }
};

QTEST_GUILESS_MAIN(TestScreenPlaces)
#include "tst_screenplaces.moc"
