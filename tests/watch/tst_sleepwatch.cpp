// The machine's sleep as logind tells it: a fake logind (python3-dbusmock's template) on a private
// bus says PrepareForSleep, and the watch tells going to sleep and waking up; the same signal sent
// by another program on the bus changes nothing.
#include "TestSupport.h"
#include "core/Globals.h"
#include "watch/SleepWatch.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

class TestSleepWatch : public QObject
{
    Q_OBJECT

    QProcess m_bus;
    QProcess m_logind;
    QString m_address;
    std::unique_ptr<TempAppFolder> m_app;

    // Asks the fake logind to send PrepareForSleep(sleeping) as logind would.
    bool logindSays(bool sleeping)
    {
        QDBusConnection caller = QDBusConnection::connectToBus(m_address, QStringLiteral("caller"));
        QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                           "org.freedesktop.DBus.Mock", "EmitSignal");
        call << QStringLiteral("org.freedesktop.login1.Manager") << QStringLiteral("PrepareForSleep")
             << QStringLiteral("b") << QVariantList{sleeping};
        return caller.call(call, QDBus::BlockWithGui, 10000).type() == QDBusMessage::ReplyMessage;
    }

private slots:
    void initTestCase()
    {
        m_bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        QVERIFY(m_bus.waitForStarted());
        QVERIFY(m_bus.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_bus.readLine().trimmed());
        // The bus stands in for the system bus: the fake logind takes its name there.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("DBUS_SYSTEM_BUS_ADDRESS", m_address);
        m_logind.setProcessEnvironment(env);
        m_logind.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_logind.start("/usr/bin/python3", {"-m", "dbusmock", "--system", "--template", "logind"});
        QVERIFY(m_logind.waitForStarted());
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, QStringLiteral("looker"));
        QVERIFY(waitFor([&] { return bus.interface()->isServiceRegistered("org.freedesktop.login1").value(); }, 20000));
    }
    void cleanupTestCase()
    {
        m_logind.kill();
        m_logind.waitForFinished();
        m_bus.kill();
        m_bus.waitForFinished();
    }
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
    }

    void sleepAndWakingAreTold()
    {
        SleepWatch watch(QDBusConnection::connectToBus(m_address, QStringLiteral("watch1")));
        QVERIFY(watch.listening());
        QSignalSpy asleep(&watch, &SleepWatch::goingToSleep);
        QSignalSpy awake(&watch, &SleepWatch::wokeUp);
        QVERIFY(logindSays(true));
        QTRY_COMPARE(asleep.count(), 1);
        QVERIFY(logindSays(false));
        QTRY_COMPARE(awake.count(), 1);
        const QByteArray log = readAll(m_app->file("Vantrel.log"));
        QVERIFY(log.contains("the machine goes to sleep"));
        QVERIFY(log.contains("the machine woke up"));
    }
    void anotherProgramSayingItChangesNothing()
    {
        SleepWatch watch(QDBusConnection::connectToBus(m_address, QStringLiteral("watch2")));
        QSignalSpy awake(&watch, &SleepWatch::wokeUp);
        QDBusConnection stranger = QDBusConnection::connectToBus(m_address, QStringLiteral("stranger"));
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                                         "PrepareForSleep");
        signal << false;
        QVERIFY(stranger.send(signal));
        QTest::qWait(500);
        QCOMPARE(awake.count(), 0);
        QVERIFY(logindSays(false)); // while logind itself is heard
        QTRY_COMPARE(awake.count(), 1);
    }
    void withoutABusNothingIsToldAndNothingBreaks()
    {
        SleepWatch watch(QDBusConnection(QStringLiteral("none")));
        QVERIFY(!watch.listening());
    }
};

QTEST_MAIN(TestSleepWatch)
#include "tst_sleepwatch.moc"
