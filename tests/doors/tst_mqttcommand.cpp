#include "doors/MqttCommand.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

// Commands from a broker read whole or refused whole: every verb with what it takes, and payloads
// that are not JSON, keys a verb does not take, wrong types, values out of range, addresses that are
// not http or https, unknown verbs and huge payloads, each refused with its reason and nothing in it.
class TestMqttCommand : public QObject
{
    Q_OBJECT

    using Action = CommandRequest::Action;
    using Where = CommandRequest::Where;

    // JSON written with single quotes, to read in a test.
    static QByteArray j(const char* text) { return QByteArray(text).replace('\'', '"'); }

private slots:
    void eachVerbIsReadWithWhatItTakes()
    {
        auto open = MqttCommand::decode("open", j("{'id': 'r1', 'address': 'https://example.org/a?b=1', 'where': 'slot', 'slot': 3}"));
        QVERIFY2(open.ok(), qPrintable(open.error));
        QCOMPARE(open.request.action, Action::Open);
        QCOMPARE(open.request.pages, QStringList{"https://example.org/a?b=1"});
        QCOMPARE(open.request.where, Where::Slot);
        QCOMPARE(open.request.slot, 3);
        QCOMPARE(open.id.toString(), QStringLiteral("r1"));
        QCOMPARE(MqttCommand::decode("open", j("{'address': 'example.org'}")).request.pages, QStringList{"http://example.org"});
        QCOMPARE(MqttCommand::decode("open", j("{'address': 'https://e.org/', 'where': 'new'}")).request.where, Where::NewWindow);
        QCOMPARE(MqttCommand::decode("open", j("{'address': 'https://e.org/', 'where': 'current'}")).request.where, Where::CurrentWindow);
        QCOMPARE(MqttCommand::decode("open", j("{'address': 'https://e.org/'}")).request.where, Where::AsTheNewButton);

        auto run = MqttCommand::decode("run", j("{'id': 7, 'list': 'Lobby', 'interval': 30, 'loop': true, 'severalWindows': true, 'keepLoaded': true}"));
        QVERIFY2(run.ok(), qPrintable(run.error));
        QCOMPARE(run.request.action, Action::Run);
        QCOMPARE(run.request.list, QStringLiteral("Lobby"));
        QCOMPARE(run.request.intervalSeconds, 30);
        QVERIFY(run.request.loop && run.request.severalWindows && run.request.keepLoaded);
        QCOMPARE(run.id.toInt(), 7);
        const auto plain = MqttCommand::decode("run", j("{'list': 'Lobby'}"));
        QCOMPARE(plain.request.intervalSeconds, 120);
        QVERIFY(!plain.request.loop && !plain.request.severalWindows && !plain.request.keepLoaded);

        QCOMPARE(MqttCommand::decode("reload", j("{'slot': 8}")).request.slot, 8);
        QCOMPARE(MqttCommand::decode("reload", "").request.slot, 0);
        const QList<std::pair<QString, Action>> bare = {{"stop", Action::Stop}, {"next", Action::Next},
            {"previous", Action::Previous}, {"pause", Action::Pause}, {"resume", Action::Resume}, {"raise", Action::Raise}};
        for (const auto& [verb, action] : bare) {
            QCOMPARE(MqttCommand::decode(verb, "").request.action, action);
            QCOMPARE(MqttCommand::decode(verb, "{}").request.action, action);
            QVERIFY(MqttCommand::decode(verb, j("{'id': 'x'}")).ok());
        }
        QCOMPARE(MqttCommand::verbs().size(), 9);
    }

    void whatIsNotWhatTheVerbTakesIsRefusedWhole_data()
    {
        QTest::addColumn<QString>("verb");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("reason");
        QTest::newRow("unknown verb") << "quit" << QByteArray("{}") << "there is no verb \"quit\"";
        QTest::newRow("not JSON") << "next" << QByteArray("next please") << "the payload is not a JSON object";
        QTest::newRow("a JSON array") << "next" << QByteArray("[1]") << "the payload is not a JSON object";
        QTest::newRow("cut JSON") << "open" << QByteArray(j("{'address': 'https://e")) << "the payload is not a JSON object";
        QTest::newRow("a key it does not take") << "next" << QByteArray(j("{'slot': 1}")) << "\"next\" takes no \"slot\"";
        QTest::newRow("no address") << "open" << QByteArray("{}") << "\"address\" must be given, as text";
        QTest::newRow("address a number") << "open" << QByteArray(j("{'address': 5}")) << "\"address\" must be given, as text";
        QTest::newRow("javascript:") << "open" << j("{'address': 'javascript:alert(1)'}") << "only http and https addresses are opened";
        QTest::newRow("file:") << "open" << QByteArray(j("{'address': 'file:///etc/passwd'}")) << "only http and https addresses are opened";
        QTest::newRow("a shortcut file") << "open" << QByteArray(j("{'address': '/home/x/Favorites/a.url'}")) << "only http and https addresses are opened";
        QTest::newRow("where unknown") << "open" << QByteArray(j("{'address': 'https://e.org/', 'where': 'moon'}")) << "\"where\" must be \"default\", \"new\", \"current\" or \"slot\"";
        QTest::newRow("slot 9") << "open" << QByteArray(j("{'address': 'https://e.org/', 'where': 'slot', 'slot': 9}")) << "\"slot\" must be a whole number from 1 to 8";
        QTest::newRow("slot 1.5") << "reload" << QByteArray(j("{'slot': 1.5}")) << "\"slot\" must be a whole number from 1 to 8";
        QTest::newRow("slot as text") << "reload" << QByteArray(j("{'slot': '2'}")) << "\"slot\" must be a whole number from 1 to 8";
        QTest::newRow("slot without where") << "open" << QByteArray(j("{'address': 'https://e.org/', 'slot': 2}")) << "\"slot\" goes with \"where\": \"slot\"";
        QTest::newRow("no list") << "run" << QByteArray(j("{'interval': 5}")) << "\"list\" must be given, as the list's name";
        QTest::newRow("interval 0") << "run" << QByteArray(j("{'list': 'A', 'interval': 0}")) << "\"interval\" must be a whole number from 1 to 86400";
        QTest::newRow("loop as text") << "run" << QByteArray(j("{'list': 'A', 'loop': 'yes'}")) << "\"loop\" must be true or false";
        QTest::newRow("id an object") << "next" << QByteArray(j("{'id': {}}")) << "\"id\" must be text of at most 200 characters or a whole number";
        QTest::newRow("huge") << "open" << (QByteArray(j("{'address': 'https://e.org/")) + QByteArray(20000, 'a') + "\"}")
                              << "the payload is longer than 16384 bytes";
    }
    void whatIsNotWhatTheVerbTakesIsRefusedWhole()
    {
        QFETCH(QString, verb);
        QFETCH(QByteArray, payload);
        QFETCH(QString, reason);
        const MqttCommand::Decoded decoded = MqttCommand::decode(verb, payload);
        QVERIFY(!decoded.ok());
        QCOMPARE(decoded.error, reason);
        QVERIFY(decoded.request.pages.isEmpty() && decoded.request.list.isEmpty() && decoded.request.slot == 0);
    }

    void theResultNamesTheRequest()
    {
        const QJsonObject done = QJsonDocument::fromJson(MqttCommand::result(QJsonValue("r1"), "next", true, QString())).object();
        QCOMPARE(done, (QJsonObject{{"id", "r1"}, {"verb", "next"}, {"ok", true}}));
        const QJsonObject refused = QJsonDocument::fromJson(MqttCommand::result(QJsonValue(), "open", false, "no")).object();
        QCOMPARE(refused, (QJsonObject{{"id", QJsonValue()}, {"verb", "open"}, {"ok", false}, {"reason", "no"}}));
    }
};

QTEST_GUILESS_MAIN(TestMqttCommand)
#include "tst_mqttcommand.moc"
