// Vantrel's interface on a private session bus started by the test (dbus-daemon), called from a
// second connection as another program would: the verbs as methods, refusals as D-Bus errors in
// words, the state as properties with PropertiesChanged, and a signal for each page shown.
#include "RecordingDoorHost.h"
#include "VerbsHarness.h"
#include "doors/BusDoor.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace {

// What a program on the bus hears of Vantrel's properties.
class PropertiesListener : public QObject
{
    Q_OBJECT
public:
    QList<QVariantMap> changes;
public slots:
    void changed(const QString& interface, const QVariantMap& properties, const QStringList&)
    {
        if (interface == QLatin1String(BusDoor::kInterface))
            changes << properties;
    }
};

} // namespace

class TestBusDoor : public QObject
{
    Q_OBJECT

    QProcess m_daemon;
    QString m_address;
    std::unique_ptr<VerbsHarness> h;
    RecordingDoorHost host;
    std::unique_ptr<BusDoor> door;
    int m_connections = 0;

    QDBusConnection connect(const QString& role)
    {
        return QDBusConnection::connectToBus(m_address, role + QString::number(++m_connections));
    }
    // A call from another program's connection; the door answers on this thread meanwhile.
    QDBusMessage call(const QString& method, const QVariantList& arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(BusDoor::kService, BusDoor::kPath, BusDoor::kInterface, method);
        message.setArguments(arguments);
        return m_client.call(message, QDBus::BlockWithGui, 10000);
    }
    QDBusConnection m_client{QString()};

private slots:
    void initTestCase()
    {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        QVERIFY(m_daemon.waitForStarted());
        QVERIFY(m_daemon.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_daemon.readLine().trimmed());
        QVERIFY(!m_address.isEmpty());
    }
    void cleanupTestCase()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"}}}});
        host = RecordingDoorHost();
        door = std::make_unique<BusDoor>(h->verbs.get(), &host);
        QString why;
        QVERIFY2(door->publish(connect("vantrel"), &why), qPrintable(why));
        m_client = connect("caller");
        QVERIFY(m_client.isConnected());
    }
    void cleanup()
    {
        door.reset(); // its connection goes with the name
        h.reset();
    }

    void theVerbsAreMethods()
    {
        QDBusMessage reply = call("Open", {QStringList{"https://a.example/"}, QString("new-window"), 0});
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://a.example/"});
        reply = call("Open", {QStringList{"https://b.example/"}, QString("slot"), 4});
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(h->window(4)->navigations, QStringList{"https://b.example/"});
        QCOMPARE(call("Run", {QString("walls"), 30, true, false, false}).type(), QDBusMessage::ReplyMessage);
        QVERIFY(h->verbs->state().run.running);
        QCOMPARE(call("Pause").type(), QDBusMessage::ReplyMessage);
        QVERIFY(h->verbs->state().run.paused);
        QCOMPARE(call("Resume").type(), QDBusMessage::ReplyMessage);
        QCOMPARE(call("Stop").type(), QDBusMessage::ReplyMessage);
        QVERIFY(!h->verbs->state().run.running);
        QCOMPARE(call("Raise", {QString("tok")}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(host.raised, QStringList{"tok"});
        QCOMPARE(call("Quit", {false}).type(), QDBusMessage::ReplyMessage);
        QTRY_COMPARE(host.quits, QList<bool>{false});
    }
    void refusalsAreErrorsInWords()
    {
        QDBusMessage reply = call("Open", {QStringList{"file:///etc/passwd"}, QString(), 0});
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
        QCOMPARE(reply.errorName(), QString::fromLatin1(BusDoor::kRefused));
        QCOMPARE(reply.errorMessage(), QStringLiteral("\"file:///etc/passwd\" is not an http or https address."));
        QVERIFY(h->created.isEmpty());
        reply = call("Run", {QString("Shop"), 30, false, false, false});
        QCOMPARE(reply.errorMessage(), QStringLiteral("There is no list \"Shop\". The lists are: Walls."));
        reply = call("Stop");
        QCOMPARE(reply.errorMessage(), QStringLiteral("No list is running."));
        reply = call("Open", {QStringList{"https://a.example/"}, QString("upstairs"), 0});
        QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
        reply = call("Open", {QStringList{"https://a.example/"}, QString("slot"), 9});
        QCOMPARE(reply.type(), QDBusMessage::ErrorMessage);
        QCOMPARE(reply.errorMessage(), QStringLiteral("There is no window 9: the windows are 1 to 8."));
        QVERIFY(DialogService::shownTexts().isEmpty()); // nobody at the screen was asked anything
    }
    void aStartsWholeArgumentsAreHandedOverAndAnsweredAsOnTheSocket()
    {
        QDBusMessage reply = call("HandOver", {QStringList{"--current-window", "https://a.example/"}, QString("/tmp"),
                                               QString("tok")});
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(reply.arguments().value(0).toInt(), 0);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://a.example/"});
        // A refusal is the start's answer to print and end with, not an error of the call.
        reply = call("HandOver", {QStringList{"--run", "Shop"}, QString(), QString()});
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(reply.arguments().value(0).toInt(), 3);
        QCOMPARE(reply.arguments().value(2).toString(), QStringLiteral("There is no list \"Shop\". The lists are: Walls.\n"));
        reply = call("HandOver", {QStringList{"--slot", "nine", "https://a.example/"}, QString(), QString()});
        QCOMPARE(reply.arguments().value(0).toInt(), 2);
        QVERIFY(reply.arguments().value(2).toString().contains("nine"));
        reply = call("HandOver", {QStringList{"--status"}, QString(), QString()});
        QCOMPARE(reply.arguments().value(0).toInt(), 0);
        QVERIFY2(reply.arguments().value(1).toString().contains("\"address\":\"https://a.example/\""),
                 qPrintable(reply.arguments().value(1).toString()));
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void theStateIsReadAndEachChangeIsTold()
    {
        PropertiesListener listener;
        QVERIFY(m_client.connect(BusDoor::kService, BusDoor::kPath, "org.freedesktop.DBus.Properties",
                                 "PropertiesChanged", &listener, SLOT(changed(QString, QVariantMap, QStringList))));
        QCOMPARE(call("Run", {QString("Walls"), 60, true, false, false}).type(), QDBusMessage::ReplyMessage);
        QTRY_VERIFY(!listener.changes.isEmpty());
        bool toldRunning = false;
        for (const QVariantMap& change : std::as_const(listener.changes))
            toldRunning = toldRunning || (change.value("Running").toBool() && change.value("List").toString() == u"Walls");
        QVERIFY(toldRunning);
        const QDBusMessage running =
            m_client.call(QDBusMessage::createMethodCall(BusDoor::kService, BusDoor::kPath,
                                                         "org.freedesktop.DBus.Properties", "Get")
                              << QString::fromLatin1(BusDoor::kInterface) << QStringLiteral("Running"),
                          QDBus::BlockWithGui);
        QCOMPARE(running.arguments().value(0).value<QDBusVariant>().variant().toBool(), true);
        const QDBusMessage status = call("Status");
        const QJsonObject state = QJsonDocument::fromJson(status.arguments().value(0).toString().toUtf8()).object();
        QCOMPARE(state.value("run").toObject().value("list").toString(), QStringLiteral("Walls"));
    }
    void aPageShownIsASignal()
    {
        QSignalSpy spy(door.get(), &BusDoor::PageShown);
        QVERIFY(m_client.connect(BusDoor::kService, BusDoor::kPath, BusDoor::kInterface, "PageShown", this,
                                 SLOT(pageShownOnTheBus(int, QString, QString))));
        m_heard.clear();
        QCOMPARE(call("Open", {QStringList{"https://a.example/"}, QString("new-window"), 0}).type(),
                 QDBusMessage::ReplyMessage);
        h->window(1)->load(QStringLiteral("https://a.example/"), QStringLiteral("Page A"));
        QTRY_COMPARE(m_heard, QStringList{"1 https://a.example/ Page A"});
    }
    void theDesktopActivatesOpensAndRunsTheLaunchersActions()
    {
        const auto application = [&](const QString& method, const QVariantList& arguments) {
            QDBusMessage message = QDBusMessage::createMethodCall(BusDoor::kService, BusDoor::kPath,
                                                                  "org.freedesktop.Application", method);
            message.setArguments(arguments);
            return m_client.call(message, QDBus::BlockWithGui, 10000);
        };
        const QVariantMap token{{"activation-token", QString("desktop-token")}};
        QCOMPARE(application("Activate", {token}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(host.raised, QStringList{"desktop-token"});
        QCOMPARE(application("Open", {QStringList{"https://opened.example/"}, QVariantMap()}).type(),
                 QDBusMessage::ReplyMessage);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://opened.example/"});
        globals().NewWindowUrl = QStringLiteral("https://new.example/");
        QCOMPARE(application("ActivateAction", {QString("new-window"), QVariantList(), QVariantMap()}).type(),
                 QDBusMessage::ReplyMessage);
        QCOMPARE(h->window(2)->navigations, QStringList{"https://new.example/"});
        QDBusMessage reply = application("ActivateAction", {QString("stop"), QVariantList(), QVariantMap()});
        QCOMPARE(reply.errorMessage(), QStringLiteral("No list is running."));
        reply = application("ActivateAction", {QString("run-startup-list"), QVariantList(), QVariantMap()});
        QCOMPARE(reply.errorMessage(), QStringLiteral("No start-up list is chosen in the options."));
        QCOMPARE(host.startupRuns, 1);
        reply = application("ActivateAction", {QString("format-disk"), QVariantList(), QVariantMap()});
        QCOMPARE(reply.errorName(), QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs"));
    }
    void theInterfaceIsTheOneDescribed()
    {
        const QDBusMessage reply = m_client.call(
            QDBusMessage::createMethodCall(BusDoor::kService, BusDoor::kPath, "org.freedesktop.DBus.Introspectable",
                                           "Introspect"),
            QDBus::BlockWithGui);
        const QString xml = reply.arguments().value(0).toString();
        for (const char* part : {"<interface name=\"org.vantrel.Vantrel\">", "<method name=\"Open\">",
                                 "<method name=\"Status\">", "<method name=\"HandOver\">",
                                 "<signal name=\"PageShown\">",
                                 "name=\"SecondsToNext\""})
            QVERIFY2(xml.contains(QLatin1String(part)), part);
    }
    void theNameIsOneProgramsOnly()
    {
        BusDoor second(h->verbs.get(), &host);
        QString why;
        QVERIFY(!second.publish(connect("second"), &why));
        QCOMPARE(why, QStringLiteral("the name org.vantrel.Vantrel is another program's"));
        QVERIFY(!BusDoor(h->verbs.get(), &host).publish(QDBusConnection(QStringLiteral("none")), &why));
        QCOMPARE(why, QStringLiteral("no session bus"));
    }

public slots:
    void pageShownOnTheBus(int slot, const QString& address, const QString& title)
    {
        m_heard << QStringLiteral("%1 %2 %3").arg(slot).arg(address, title);
    }

private:
    QStringList m_heard;
};

QTEST_GUILESS_MAIN(TestBusDoor)
#include "tst_busdoor.moc"
