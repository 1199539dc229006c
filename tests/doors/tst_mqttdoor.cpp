// Vantrel on a real Mosquitto broker started by the test, with Debian's mosquitto_sub and
// mosquitto_pub as the other side: availability and the retained state, each command doing what
// its verb does and answered with its id, bad payloads refused with nothing changed, the state at
// most four times a second and always the latest, and the broker killed and started again: Vantrel
// comes back, tells its state again, and no QoS 1 command sent meanwhile is lost.
#include "MosquittoBroker.h"
#include "RecordingDoorHost.h"
#include "VerbsHarness.h"
#include "doors/MqttDoor.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestMqttDoor : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<MosquittoBroker> m_broker;
    std::unique_ptr<VerbsHarness> h;
    RecordingDoorHost m_host;
    std::unique_ptr<MqttDoor> m_door;
    int m_case = 0;

    static constexpr const char* kBase = "vantrel/wall";

    MqttSettings settings() const
    {
        MqttSettings s;
        s.enabled = true;
        s.port = m_broker->port();
        s.node = "wall";
        return s;
    }
    QString topic(const char* leaf) const { return QString::fromLatin1(kBase) + u'/' + QLatin1String(leaf); }
    bool send(const char* verb, const QByteArray& payload)
    {
        return MosquittoSub::publish(m_broker->port(), topic("cmd") + u'/' + QLatin1String(verb), payload);
    }
    // JSON written with single quotes, to read in a test.
    static QByteArray j(const char* text) { return QByteArray(text).replace('\'', '"'); }
    static QJsonObject json(const QString& text) { return QJsonDocument::fromJson(text.toUtf8()).object(); }
    // The results received, by id.
    static QJsonObject resultFor(MosquittoSub& sub, const QString& id)
    {
        for (const QString& payload : sub.payloads("vantrel/wall/result"))
            if (json(payload).value("id").toString() == id)
                return json(payload);
        return {};
    }
    static QString logText()
    {
        QFile file(EventLog::path());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    // Switched on, connected, and heard by `sub`: the retained state has come, so the door has
    // subscribed to its commands and the subscriber listens.
    bool connectHeard(MosquittoSub& sub)
    {
        m_door->setSettings(settings());
        return QTest::qWaitFor([&] { return m_door->isListening() && !sub.payloads(topic("state")).isEmpty(); }, 10000);
    }
    QStringList addresses() const
    {
        QStringList list;
        for (const WindowState& window : h->verbs->state().windows)
            list << window.address;
        return list;
    }

private slots:
    void init()
    {
        m_broker = std::make_unique<MosquittoBroker>(m_dir.filePath(QString::number(++m_case)));
        QVERIFY(m_broker->start());
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"}}}});
        m_host = RecordingDoorHost();
        m_door = std::make_unique<MqttDoor>(h->verbs.get(), &m_host);
    }
    void cleanup()
    {
        m_door.reset();
        h.reset();
        m_broker.reset();
    }

    void itIsOffUntilSwitchedOnAndThenTellsItsState()
    {
        m_door->applySetting(); // nothing in the settings: off
        QTest::qWait(300);
        QVERIFY(!m_door->isConnected());
        QVERIFY(!m_broker->log().contains("vantrel-"));

        m_door->setSettings(settings());
        QVERIFY(QTest::qWaitFor([this] { return m_door->isConnected(); }, 5000));
        QCOMPARE(m_door->base(), QStringLiteral("vantrel/wall"));
        MosquittoSub sub(m_broker->port(), "vantrel/wall/#");
        QVERIFY(QTest::qWaitFor([&] { return !sub.payloads(topic("state")).isEmpty(); }, 5000));
        QCOMPARE(sub.payloads(topic("availability")), QStringList{"online"});
        const QJsonObject state = json(sub.payloads(topic("state")).last());
        QVERIFY(state.contains("windows") && state.contains("runs"));
        QCOMPARE(state.value("version").toString(), QCoreApplication::applicationVersion());

        // Switched off: it says goodbye, "offline" stays.
        MqttSettings off = settings();
        off.enabled = false;
        m_door->setSettings(off);
        QVERIFY(!m_door->isConnected());
        QVERIFY(QTest::qWaitFor([&] { return sub.payloads(topic("availability")).contains("offline"); }, 5000));
    }

    void homeAssistantFindsItAndForgetsItWhenSwitchedOff()
    {
        MosquittoSub discovery(m_broker->port(), "homeassistant/#");
        MosquittoSub sub(m_broker->port(), "vantrel/wall/#");
        QVERIFY(connectHeard(sub));
        const QString select = QStringLiteral("homeassistant/select/wall/run/config");
        QVERIFY(QTest::qWaitFor([&] { return discovery.lines().size() >= 9; }, 5000));
        QCOMPARE(json(discovery.payloads(select).last()).value("options").toArray(), QJsonArray{"Walls"});
        QCOMPARE(json(discovery.payloads("homeassistant/button/wall/next/config").last()).value("command_topic").toString(),
                 QStringLiteral("vantrel/wall/cmd/next"));
        // The select offers the lists there are.
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}}}, {QStringLiteral("Lobby"), {{"L1", "https://l1.example/"}}}});
        QVERIFY(QTest::qWaitFor([&] {
            return json(discovery.payloads(select).last()).value("options").toArray() == QJsonArray{"Walls", "Lobby"};
        }, 5000));
        // A press of the switch in Home Assistant pauses and resumes.
        QVERIFY(send("run", j("{'id': 'r', 'list': 'Lobby'}")));
        QVERIFY(QTest::qWaitFor([&] { return h->verbs->state().run.running; }, 5000));
        QVERIFY(send("pause", j("{'paused': true}")));
        QVERIFY(QTest::qWaitFor([&] { return h->verbs->state().run.paused; }, 5000));
        QVERIFY(send("pause", j("{'paused': false}")));
        QVERIFY(QTest::qWaitFor([&] { return !h->verbs->state().run.paused; }, 5000));
        // Switched off: every entity's topic is emptied, so Home Assistant forgets them.
        discovery.clear();
        MqttSettings off = settings();
        off.enabled = false;
        m_door->setSettings(off);
        QVERIFY2(QTest::qWaitFor([&] { return discovery.lines().size() >= 9; }, 5000), qPrintable(discovery.lines().join(u'\n')));
        for (const QString& line : discovery.lines())
            QVERIFY2(line.endsWith("/config (null)"), qPrintable(line)); // how mosquitto_sub shows an empty message
        // A retained message no longer there: a new subscriber hears nothing.
        MosquittoSub late(m_broker->port(), "homeassistant/#");
        QTest::qWait(500);
        QVERIFY(late.lines().isEmpty());
    }

    void eachCommandDoesWhatItsVerbDoes()
    {
        MosquittoSub sub(m_broker->port(), "vantrel/wall/#");
        QVERIFY(connectHeard(sub));

        QVERIFY(send("open", j("{'id': 'a1', 'address': 'https://page.example/one'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "a1").isEmpty(); }, 5000));
        QCOMPARE(resultFor(sub, "a1"), (QJsonObject{{"id", "a1"}, {"verb", "open"}, {"ok", true}}));
        QCOMPARE(addresses(), QStringList{"https://page.example/one"});
        // The state follows.
        QVERIFY(QTest::qWaitFor([&] {
            const QStringList states = sub.payloads(topic("state"));
            return !states.isEmpty() && states.last().contains("https://page.example/one");
        }, 5000));

        QVERIFY(send("open", j("{'id': 'a2', 'address': 'https://page.example/two', 'where': 'slot', 'slot': 3}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "a2").isEmpty(); }, 5000));
        QCOMPARE(h->verbs->state().windows.size(), 2);
        QVERIFY(send("run", j("{'id': 'r1', 'list': 'walls', 'interval': 5, 'loop': true}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "r1").isEmpty(); }, 5000));
        QVERIFY(resultFor(sub, "r1").value("ok").toBool());
        QVERIFY(h->verbs->state().run.running);
        QCOMPARE(h->verbs->state().run.list, QStringLiteral("Walls"));
        const int before = h->verbs->state().run.position;
        QVERIFY(send("next", j("{'id': 'n1'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "n1").isEmpty(); }, 5000));
        QCOMPARE(h->verbs->state().run.position, (before + 1) % 2);
        QVERIFY(send("pause", j("{'id': 'p1'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "p1").isEmpty(); }, 5000));
        QVERIFY(h->verbs->state().run.paused);
        QVERIFY(send("resume", j("{'id': 'p2'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "p2").isEmpty(); }, 5000));
        QVERIFY(!h->verbs->state().run.paused);
        QVERIFY(send("stop", j("{'id': 's1'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "s1").isEmpty(); }, 5000));
        QVERIFY(!h->verbs->state().run.running);
        QVERIFY(send("raise", j("{'id': 'up'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "up").isEmpty(); }, 5000));
        QCOMPARE(m_host.raised, QStringList{QString()});
        // A verb that cannot be done answers why.
        QVERIFY(send("next", j("{'id': 'n2'}")));
        QVERIFY(QTest::qWaitFor([&] { return !resultFor(sub, "n2").isEmpty(); }, 5000));
        QCOMPARE(resultFor(sub, "n2").value("ok").toBool(), false);
        QVERIFY(!resultFor(sub, "n2").value("reason").toString().isEmpty());
    }

    void badPayloadsAreRefusedAndNothingChanges()
    {
        MosquittoSub sub(m_broker->port(), "vantrel/wall/#");
        QVERIFY(connectHeard(sub));
        const QList<std::pair<const char*, QByteArray>> bad = {
            {"open", "{\"id\": \"b1\", \"address\": \"javascript:alert(1)\"}"},
            {"open", j("{'id': 'b2', 'address': 'file:///etc/passwd'}")},
            {"open", j("{'id': 'b3', 'address': 7}")},
            {"open", j("{'id': 'b4', 'address': 'https://e.org/', 'where': 'slot', 'slot': 12}")},
            {"run", j("{'id': 'b5', 'list': 'Walls', 'interval': 'fast'}")},
            {"next", j("{'id': 'b6', 'please': true}")},
            {"quit", j("{'id': 'b7'}")},
            {"open", "not json at all"},
            {"open", j("{'id': 'b9', 'address': 'https://e.org/") + QByteArray(30000, 'x') + "\"}"},
        };
        for (const auto& [verb, payload] : bad)
            QVERIFY(send(verb, payload));
        QVERIFY(QTest::qWaitFor([&] { return sub.payloads(topic("result")).size() >= bad.size(); }, 10000));
        QCOMPARE(sub.payloads(topic("result")).size(), bad.size());
        for (const QString& payload : sub.payloads(topic("result")))
            QCOMPARE(json(payload).value("ok").toBool(true), false);
        QCOMPARE(resultFor(sub, "b1").value("reason").toString(), QStringLiteral("only http and https addresses are opened"));
        QCOMPARE(resultFor(sub, "b7").value("reason").toString(), QStringLiteral("there is no verb \"quit\""));
        QVERIFY(h->verbs->state().windows.isEmpty());
        QVERIFY(!h->verbs->state().run.running);
        QVERIFY(m_host.quits.isEmpty());
        QVERIFY(logText().contains("MQTT command \"open\" refused: only http and https addresses are opened"));
        QVERIFY(m_door->isConnected());
    }

    void theStateGoesOutAtMostFourTimesASecondAndTheLatestLast()
    {
        MosquittoSub sub(m_broker->port(), "vantrel/wall/state");
        QVERIFY(connectHeard(sub));
        QTest::qWait(300);
        sub.clear();
        QElapsedTimer burst;
        burst.start();
        for (int i = 1; i <= 20; ++i) {
            QVERIFY(h->verbs->openPage(QStringLiteral("https://burst.example/%1").arg(i), QString(), OpenWhere::Slot, 1,
                                       Caller::Outside).ok());
            QTest::qWait(25);
        }
        const qint64 lasted = burst.elapsed();
        QTest::qWait(600);
        const QStringList states = sub.payloads(topic("state"));
        // One at the first change, then one each quarter of a second while changes come.
        const qsizetype most = 2 + lasted / MqttDoor::kStateEveryMs;
        QVERIFY2(states.size() >= 2 && states.size() <= most,
                 qPrintable(QStringLiteral("%1 states in %2 ms").arg(states.size()).arg(lasted)));
        QVERIFY(states.last().contains("https://burst.example/20"));
    }

    void tlsFromTheTestsOwnAuthorityAndAPassword()
    {
        // An authority, and the broker's certificate from it for 127.0.0.1, made with openssl.
        const QString folder = m_dir.filePath("tls");
        QDir().mkpath(folder);
        const auto run = [&](const QStringList& arguments) {
            QProcess process;
            process.setWorkingDirectory(folder);
            process.start("openssl", arguments);
            return process.waitForFinished(30000) && process.exitCode() == 0;
        };
        QVERIFY(run({"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "ca.key", "-out", "ca.pem", "-days", "2",
                     "-subj", "/CN=Vantrel test authority"}));
        QVERIFY(run({"req", "-newkey", "rsa:2048", "-nodes", "-keyout", "server.key", "-out", "server.csr", "-subj", "/CN=127.0.0.1"}));
        QFile names(folder + "/names.ext");
        QVERIFY(names.open(QIODevice::WriteOnly));
        names.write("subjectAltName=IP:127.0.0.1\n");
        names.close();
        QVERIFY(run({"x509", "-req", "-in", "server.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial", "-out",
                     "server.pem", "-days", "2", "-extfile", "names.ext"}));
        QCOMPARE(QProcess::execute("mosquitto_passwd", {"-b", "-c", folder + "/passwd", "wall", "s3cret"}), 0);
        MosquittoBroker secure(m_dir.filePath("secure"), {"cafile " + folder + "/ca.pem", "certfile " + folder + "/server.pem",
                                                         "keyfile " + folder + "/server.key", "allow_anonymous false",
                                                         "password_file " + folder + "/passwd"});
        QVERIFY(secure.start());
        MqttSettings s = settings();
        s.port = secure.port();
        s.tls = true;
        s.caFile = folder + "/ca.pem";
        s.user = "wall";
        // A wrong password: refused, said, and tried again later.
        m_door->setSettings(s, "wrong");
        QVERIFY(QTest::qWaitFor([&] { return m_door->problem().contains("refused"); }, 5000));
        QVERIFY(!m_door->isConnected());
        // Without TLS the broker does not answer as MQTT at all.
        MqttSettings plain = s;
        plain.tls = false;
        m_door->setSettings(plain, "s3cret");
        QTest::qWait(1500);
        QVERIFY(!m_door->isConnected());
        // TLS from the authority, and the password: connected, and the commands work.
        m_door->setSettings(s, "s3cret");
        QVERIFY(QTest::qWaitFor([&] { return m_door->isListening(); }, 10000));
        QProcess pub;
        pub.start("mosquitto_pub", {"-h", "127.0.0.1", "-p", QString::number(secure.port()), "--cafile", folder + "/ca.pem",
                                    "-u", "wall", "-P", "s3cret", "-q", "1", "-t", "vantrel/wall/cmd/open", "-m",
                                    "{\"address\": \"https://secure.example/\"}"});
        QVERIFY(pub.waitForFinished(10000) && pub.exitCode() == 0);
        QVERIFY(QTest::qWaitFor([&] { return addresses().contains("https://secure.example/"); }, 5000));
        // The password is nowhere in the log.
        QVERIFY(!logText().contains("s3cret"));
    }

    void aVantrelThatDiesLeavesItsLastWill()
    {
        MosquittoSub sub(m_broker->port(), "vantrel/dying/availability");
        QProcess child;
        child.start(QStringLiteral(MQTT_DOOR_CHILD), {QString::number(m_broker->port()), QStringLiteral("dying")});
        QVERIFY(child.waitForStarted(5000));
        QVERIFY(QTest::qWaitFor([&] { return child.readAllStandardOutput().contains("listening"); }, 10000));
        QVERIFY(QTest::qWaitFor([&] { return sub.payloads("vantrel/dying/availability").contains("online"); }, 5000));
        // Killed, with no goodbye: the broker tells the others in its place.
        child.kill();
        QVERIFY(child.waitForFinished(5000));
        QVERIFY(QTest::qWaitFor([&] { return sub.payloads("vantrel/dying/availability").endsWith("offline"); }, 10000));
        // And it stays said, for whoever asks later.
        MosquittoSub later(m_broker->port(), "vantrel/dying/availability");
        QVERIFY(QTest::qWaitFor([&] { return later.payloads("vantrel/dying/availability") == QStringList{"offline"}; }, 5000));
    }

    void theBrokerGoneAndBackLosesNoCommand()
    {
        {
            MosquittoSub first(m_broker->port(), "vantrel/wall/state");
            QVERIFY(connectHeard(first));
        }
        m_broker->stop();
        QVERIFY(QTest::qWaitFor([this] { return !m_door->isConnected(); }, 5000));
        // The program goes on meanwhile; the state changes while nobody hears.
        QVERIFY(h->verbs->openPage("https://while.example/", QString(), OpenWhere::NewWindow, 0, Caller::Outside).ok());
        QVERIFY(m_broker->start());
        // A command sent at once, before Vantrel is back: the broker keeps it for Vantrel's session.
        QVERIFY(send("open", j("{'id': 'late', 'address': 'https://late.example/', 'where': 'slot', 'slot': 2}")));
        MosquittoSub sub(m_broker->port(), "vantrel/wall/#");
        QVERIFY(QTest::qWaitFor([this] { return m_door->isConnected(); }, 15000));
        QVERIFY2(QTest::qWaitFor([&] { return addresses().contains("https://late.example/"); }, 5000), qPrintable(m_broker->log()));
        QVERIFY(QTest::qWaitFor([&] {
            const QStringList states = sub.payloads(topic("state"));
            return !states.isEmpty() && states.last().contains("https://while.example/")
                   && states.last().contains("https://late.example/");
        }, 5000));
        QCOMPARE(sub.payloads(topic("availability")).last(), QStringLiteral("online"));
    }
};

QTEST_GUILESS_MAIN(TestMqttDoor)
#include "tst_mqttdoor.moc"
