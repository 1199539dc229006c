#include "core/PlatformChoice.h"

#include <QTest>

// Under Wayland with XWayland offered the program runs through X11; otherwise Qt chooses.
class TestPlatformChoice : public QObject
{
    Q_OBJECT
private slots:
    void platformFollowsTheSession_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QByteArray>("platform");
        QTest::newRow("wayland with xwayland") << QStringList{"WAYLAND_DISPLAY=wayland-0", "DISPLAY=:0"}
                                               << QByteArray("xcb");
        QTest::newRow("wayland session type with xwayland")
            << QStringList{"XDG_SESSION_TYPE=wayland", "DISPLAY=:1"} << QByteArray("xcb");
        QTest::newRow("wayland without xwayland") << QStringList{"WAYLAND_DISPLAY=wayland-0"} << QByteArray();
        QTest::newRow("the user chose wayland")
            << QStringList{"WAYLAND_DISPLAY=wayland-0", "DISPLAY=:0", "QT_QPA_PLATFORM=wayland"} << QByteArray();
        QTest::newRow("the user chose offscreen")
            << QStringList{"WAYLAND_DISPLAY=wayland-0", "DISPLAY=:0", "QT_QPA_PLATFORM=offscreen"} << QByteArray();
        QTest::newRow("x11 session") << QStringList{"DISPLAY=:0", "XDG_SESSION_TYPE=x11"} << QByteArray();
        QTest::newRow("no display at all") << QStringList{} << QByteArray();
        QTest::newRow("empty wayland display") << QStringList{"WAYLAND_DISPLAY=", "DISPLAY=:0"} << QByteArray();
    }
    void platformFollowsTheSession()
    {
        QFETCH(QStringList, variables);
        QFETCH(QByteArray, platform);
        QProcessEnvironment environment;
        for (const QString& variable : variables)
            environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        QCOMPARE(PlatformChoice::choose(environment), platform);
    }
};

QTEST_GUILESS_MAIN(TestPlatformChoice)
#include "tst_platformchoice.moc"
