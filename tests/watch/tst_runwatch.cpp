#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "watch/RunWatch.h"
#include "settings/VantrelConf.h"
#include "mainwindow/Vantrel1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "widgets/GradientButton.h"

#include <QComboBox>
#include <QDBusConnection>
#include <QProcess>
#include <QTest>

#include <memory>

// The desktop's screen saver as the freedesktop service offers it, on a bus of the test's own.
class FakeScreenSaver : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    QStringList calls;
public slots:
    uint Inhibit(const QString& application, const QString& reason)
    {
        calls << "Inhibit " + application + ": " + reason;
        return 42;
    }
    void UnInhibit(uint cookie) { calls << QString("UnInhibit %1").arg(cookie); }
};

// A run's start and end are logged, and the screen stays awake while it goes.
class TestRunWatch : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    QProcess m_bus;
    FakeScreenSaver m_saver;
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    std::unique_ptr<ManualClock> m_clock;
    QList<ScriptedBrowserWindow*> m_created;

    void startWithList()
    {
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "Wall[#@!] [#@!] \r\nWall[#@!]a[#@!]https://a/\r\nWall[#@!]b[#@!]https://b/\r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
    }
    RunList1* go()
    {
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        RunList1* dialog = m_main->listsPanel()->runDialog();
        dialog->CMBLIST()->setCurrentIndex(0);
        dialog->CMBTIME()->setCurrentIndex(0);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
        return dialog;
    }
    void ticks(double seconds)
    {
        for (double t = 0; t < seconds; t += 0.6) {
            m_main->Timer1_Timer();
            m_clock->advanceSeconds(0.6);
        }
    }
    QStringList logLines()
    {
        QStringList lines;
        for (const QByteArray& line : readAll(m_app->file("Vantrel.log")).split('\n'))
            if (!line.isEmpty())
                lines << QString::fromUtf8(line).section(u' ', 1);
        return lines;
    }

private slots:
    void initTestCase()
    {
        m_bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        QVERIFY(m_bus.waitForStarted());
        QVERIFY(m_bus.waitForReadyRead(10000));
        const QByteArray address = m_bus.readLine().trimmed();
        QVERIFY(!address.isEmpty());
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.isConnected());
    }
    void cleanupTestCase()
    {
        m_bus.kill();
        m_bus.waitForFinished();
    }
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 1), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
        m_created.clear();
        m_saver.calls.clear();
    }
    void cleanup()
    {
        m_main.reset();
        Clock::setInstance(nullptr);
        m_app.reset();
        QDBusConnection::sessionBus().unregisterObject("/org/freedesktop/ScreenSaver");
        QDBusConnection::sessionBus().unregisterService("org.freedesktop.ScreenSaver");
    }

    void aRunKeepsTheScreenAwakeAndIsLoggedUntilItCompletes()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerService("org.freedesktop.ScreenSaver"));
        QVERIFY(bus.registerObject("/org/freedesktop/ScreenSaver", &m_saver, QDBusConnection::ExportAllSlots));
        startWithList();
        go();
        ticks(1.2);
        QVERIFY(m_main->listsPanel()->runWatch()->screenHeld());
        QCOMPARE(m_saver.calls, QStringList{"Inhibit Vantrel: A list of pages is running"});
        DialogService::setNextAnswer(DialogService::Answer::Yes); // "List Run Complete"
        ticks(150);
        QVERIFY2(!g.RunListRunning, qPrintable(logLines().join('\n')));
        QCOMPARE(m_saver.calls, (QStringList{"Inhibit Vantrel: A list of pages is running", "UnInhibit 42"}));
        const QStringList log = logLines();
        QVERIFY2(log.contains("run started: Wall, every 30 s, in one window, once"), qPrintable(log.join('\n')));
        QVERIFY(log.contains("run completed"));
        QCOMPARE(log.indexOf("run started: Wall, every 30 s, in one window, once"), 0);
        QVERIFY(log.indexOf("run completed") > log.indexOf("page opened: window 1 https://b/"));
    }
    void closingTheDialogStopsTheRunAndLetsTheScreenSleep()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerService("org.freedesktop.ScreenSaver"));
        QVERIFY(bus.registerObject("/org/freedesktop/ScreenSaver", &m_saver, QDBusConnection::ExportAllSlots));
        startWithList();
        RunList1* dialog = go();
        ticks(0.6);
        dialog->close();
        ticks(0.6);
        QCOMPARE(m_saver.calls.last(), QStringLiteral("UnInhibit 42"));
        QVERIFY(logLines().contains("run stopped"));
    }
    void withTheSettingOffTheScreenIsLeftAlone()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerService("org.freedesktop.ScreenSaver"));
        QVERIFY(bus.registerObject("/org/freedesktop/ScreenSaver", &m_saver, QDBusConnection::ExportAllSlots));
        QVERIFY(VantrelConf::setValue(VantrelConf::kKeepScreenAwake, 0));
        startWithList();
        go();
        ticks(1.2);
        QCOMPARE(m_saver.calls, QStringList{});
    }
    void withoutTheServiceTheLogSaysSo()
    {
        startWithList();
        go();
        ticks(1.2);
        QVERIFY(g.RunListRunning);
        QVERIFY(!m_main->listsPanel()->runWatch()->screenHeld());
        QVERIFY(!logLines().filter("the screen cannot be kept awake: ").isEmpty());
    }
    void theProgramsEndLetsTheScreenSleep()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerService("org.freedesktop.ScreenSaver"));
        QVERIFY(bus.registerObject("/org/freedesktop/ScreenSaver", &m_saver, QDBusConnection::ExportAllSlots));
        startWithList();
        go();
        ticks(0.6);
        m_main->Form_Unload();
        m_main.reset();
        QCOMPARE(m_saver.calls.last(), QStringLiteral("UnInhibit 42"));
    }
};

VANTREL_GUI_TEST_MAIN(TestRunWatch)
#include "tst_runwatch.moc"
