#include "doors/HomeAssistant.h"
#include "doors/MqttCommand.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTest>

// Home Assistant's discovery of Vantrel: each entity's topic and config exactly as the fixtures
// (written from Home Assistant's documentation) say, only keys its component documents, the
// required ones there, and every command an entity sends one that the verbs take.
class TestHomeAssistant : public QObject
{
    Q_OBJECT

    static QJsonObject fixture(const QString& name)
    {
        QFile file(QStringLiteral(VANTREL_TEST_DATA "/homeassistant/%1.json").arg(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no fixture %s", qPrintable(name));
        return QJsonDocument::fromJson(file.readAll()).object();
    }
    static QList<HomeAssistant::Message> sample(const QStringList& lists = {"Lobby", "Walls"})
    {
        return HomeAssistant::discovery("wall", "vantrel/wall", lists, "9.9");
    }
    static QJsonObject configOn(const QList<HomeAssistant::Message>& messages, const QString& topic)
    {
        for (const HomeAssistant::Message& message : messages)
            if (message.topic == topic)
                return QJsonDocument::fromJson(message.payload).object();
        return {};
    }
    // A Jinja template of Home Assistant's with "{{ value | tojson }}" in it, rendered for `value`.
    static QByteArray render(const QString& commandTemplate, const QString& value)
    {
        const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).chopped(1).mid(1);
        return commandTemplate.toUtf8().replace("{{ value | tojson }}", json);
    }

private slots:
    void eachEntityIsWhatTheFixtureSays()
    {
        const QList<HomeAssistant::Message> messages = sample();
        const QStringList names = {"sensor_page", "sensor_list", "select_run", "button_next", "button_previous",
                                   "button_stop", "button_reload", "switch_pause", "text_open"};
        QCOMPARE(messages.size(), names.size());
        for (qsizetype i = 0; i < names.size(); ++i) {
            const QJsonObject expected = fixture(names.at(i));
            QCOMPARE(messages.at(i).topic, expected.value("topic").toString());
            QCOMPARE(QJsonDocument::fromJson(messages.at(i).payload).object(), expected.value("config").toObject());
        }
    }

    void onlyDocumentedKeysAndTheRequiredOnes()
    {
        const QSet<QString> shared = {"name", "unique_id", "object_id", "availability_topic", "payload_available",
                                      "payload_not_available", "device", "icon"};
        const QHash<QString, QSet<QString>> allowed = {
            {"sensor", {"state_topic", "value_template", "json_attributes_topic", "json_attributes_template"}},
            {"select", {"command_topic", "command_template", "options", "state_topic", "value_template"}},
            {"button", {"command_topic", "payload_press"}},
            {"switch", {"command_topic", "payload_on", "payload_off", "state_topic", "value_template", "state_on", "state_off"}},
            {"text", {"command_topic", "command_template", "mode", "min", "max"}},
        };
        const QHash<QString, QStringList> required = {{"sensor", {"state_topic"}}, {"select", {"command_topic", "options"}},
                                                      {"button", {"command_topic"}}, {"switch", {"command_topic"}},
                                                      {"text", {"command_topic"}}};
        for (const HomeAssistant::Message& message : sample()) {
            const QStringList parts = message.topic.split(u'/');
            QCOMPARE(parts.size(), 5);
            QCOMPARE(parts.first(), QStringLiteral("homeassistant"));
            QCOMPARE(parts.last(), QStringLiteral("config"));
            const QString component = parts.at(1);
            const QJsonObject config = QJsonDocument::fromJson(message.payload).object();
            for (const QString& key : config.keys())
                QVERIFY2(shared.contains(key) || allowed.value(component).contains(key), qPrintable(component + ": " + key));
            for (const QString& key : required.value(component))
                QVERIFY2(config.contains(key), qPrintable(component + " lacks " + key));
            const QJsonObject device = config.value("device").toObject();
            QCOMPARE(device.value("identifiers").toArray(), QJsonArray{"vantrel_wall"});
            QVERIFY(config.value("unique_id").toString().startsWith("vantrel_wall_"));
        }
    }

    void everyCommandAnEntitySendsIsOneTheVerbsTake()
    {
        const QList<HomeAssistant::Message> messages = sample();
        using Action = CommandRequest::Action;
        const QList<std::pair<QString, Action>> buttons = {{"next", Action::Next}, {"previous", Action::Previous},
                                                           {"stop", Action::Stop}, {"reload", Action::Reload}};
        for (const auto& [verb, action] : buttons) {
            const QJsonObject config = configOn(messages, "homeassistant/button/wall/" + verb + "/config");
            QCOMPARE(config.value("command_topic").toString(), "vantrel/wall/cmd/" + verb);
            const auto decoded = MqttCommand::decode(verb, config.value("payload_press").toString().toUtf8());
            QVERIFY2(decoded.ok(), qPrintable(decoded.error));
            QCOMPARE(decoded.request.action, action);
        }
        const QJsonObject pause = configOn(messages, "homeassistant/switch/wall/pause/config");
        QCOMPARE(MqttCommand::decode("pause", pause.value("payload_on").toString().toUtf8()).request.action, Action::Pause);
        QCOMPARE(MqttCommand::decode("pause", pause.value("payload_off").toString().toUtf8()).request.action, Action::Resume);

        const QJsonObject select = configOn(messages, "homeassistant/select/wall/run/config");
        const auto run = MqttCommand::decode("run", render(select.value("command_template").toString(), "Walls \"B\""));
        QVERIFY2(run.ok(), qPrintable(run.error));
        QCOMPARE(run.request.list, QStringLiteral("Walls \"B\""));
        QVERIFY(run.request.loop);

        const QJsonObject text = configOn(messages, "homeassistant/text/wall/open/config");
        const auto open = MqttCommand::decode("open", render(text.value("command_template").toString(), "https://e.org/x"));
        QVERIFY2(open.ok(), qPrintable(open.error));
        QCOMPARE(open.request.pages, QStringList{"https://e.org/x"});
        // What a person types there that is no web address is refused, as from anywhere else.
        QVERIFY(!MqttCommand::decode("open", render(text.value("command_template").toString(), "javascript:alert(1)")).ok());
    }

    void withoutListsThereIsNoSelectAndRemovalEmptiesEveryTopic()
    {
        const QList<HomeAssistant::Message> none = sample({});
        QCOMPARE(none.size(), 9);
        for (const HomeAssistant::Message& message : none)
            QCOMPARE(message.payload.isEmpty(), message.topic == "homeassistant/select/wall/run/config");
        const QList<HomeAssistant::Message> removal = HomeAssistant::removal("wall");
        QCOMPARE(removal.size(), 9);
        QSet<QString> topics;
        for (const HomeAssistant::Message& message : removal) {
            QVERIFY(message.payload.isEmpty());
            topics.insert(message.topic);
        }
        for (const HomeAssistant::Message& message : sample())
            QVERIFY(topics.contains(message.topic));
    }
};

QTEST_GUILESS_MAIN(TestHomeAssistant)
#include "tst_homeassistant.moc"
