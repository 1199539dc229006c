// The time of the person's request in a desktop's startup id, which lets a window manager that
// prevents focus stealing bring Vantrel's window forward. (The raise itself is tried on a real X
// display with a window manager by check_x11_raise.sh.)
#include "desktop/StartupActivation.h"

#include <QTest>

class TestStartupActivation : public QObject
{
    Q_OBJECT

private slots:
    void theTimeIsTheNumberAfterTheLastTimeMark()
    {
        QCOMPARE(StartupActivation::timeOf("xfce4-panel-1234-host-vantrel_TIME46909093"), 46909093u);
        QCOMPARE(StartupActivation::timeOf("a_TIME1_TIME77"), 77u);
        QCOMPARE(StartupActivation::timeOf("4294967295_TIME4294967295"), 4294967295u);
    }
    void anIdWithoutATimeOrWithGarbageHasNone()
    {
        QCOMPARE(StartupActivation::timeOf(QString()), 0u);
        QCOMPARE(StartupActivation::timeOf("wayland-token-abc"), 0u);
        QCOMPARE(StartupActivation::timeOf("x_TIME"), 0u);
        QCOMPARE(StartupActivation::timeOf("x_TIME12ab"), 0u);
        QCOMPARE(StartupActivation::timeOf("x_TIME-5"), 0u);
        QCOMPARE(StartupActivation::timeOf("x_TIME4294967296"), 0u); // past an X time
    }
    void offTheX11DisplayNothingIsSentAndTheCallerActivatesAsUsual()
    {
        QVERIFY(!StartupActivation::activate(nullptr, "x_TIME5"));
    }
};

QTEST_MAIN(TestStartupActivation)
#include "tst_startupactivation.moc"
