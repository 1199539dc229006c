#include "MqttDoor.h"

#include "HomeAssistant.h"
#include "MqttCommand.h"
#include "Secrets.h"
#include "StateMessage.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QCoreApplication>

MqttDoor::MqttDoor(Verbs* verbs, DoorHost* host, QObject* parent)
    : QObject(parent), m_verbs(verbs), m_host(host), m_client(this)
{
    m_stateSoon.setSingleShot(true);
    connect(&m_stateSoon, &QTimer::timeout, this, &MqttDoor::publishState);
    connect(&m_client, &MqttClient::connected, this, &MqttDoor::connected);
    connect(&m_client, &MqttClient::subscribed, this, [this] { m_listening = true; });
    connect(&m_client, &MqttClient::disconnected, this, &MqttDoor::disconnected);
    connect(&m_client, &MqttClient::message, this, &MqttDoor::message);
    connect(m_verbs, &Verbs::stateChanged, this, &MqttDoor::stateChanged);
}

MqttDoor::~MqttDoor()
{
    leave(false); // Home Assistant keeps knowing it, as offline
}

void MqttDoor::leave(bool forget)
{
    if (m_client.isConnected()) {
        if (forget)
            publishDiscovery(HomeAssistant::removal(m_settings.nodeName()));
        m_client.publish(topic("availability"), "offline", 1, true); // a clean goodbye sends no will
    }
    m_client.stop();
    m_started = false;
}

void MqttDoor::publishDiscovery(const QList<HomeAssistant::Message>& messages)
{
    for (const HomeAssistant::Message& message : messages)
        m_client.publish(message.topic, message.payload, 1, true);
}

void MqttDoor::announce()
{
    m_lists = m_verbs->listNames();
    if (m_settings.homeAssistant)
        publishDiscovery(HomeAssistant::discovery(m_settings.nodeName(), base(), m_lists,
                                                  QCoreApplication::applicationVersion()));
}

void MqttDoor::applySetting()
{
    const MqttSettings settings = MqttSettings::read();
    setSettings(settings, settings.enabled && !settings.user.isEmpty() ? Secrets::read(QString::fromLatin1(kPasswordKey))
                                                                       : QString());
}

void MqttDoor::setSettings(const MqttSettings& settings, const QString& password)
{
    if (settings == m_settings && password == m_password && m_started == settings.enabled)
        return;
    // Switched off, or Home Assistant's discovery no longer wanted: its entities go too.
    leave(!settings.enabled || !settings.homeAssistant || settings.nodeName() != m_settings.nodeName()
          || settings.base() != m_settings.base());
    m_settings = settings;
    m_password = password;
    m_lastProblem.clear();
    if (!settings.enabled)
        return;
    MqttClient::Settings client;
    client.host = settings.host;
    client.port = settings.port;
    client.clientId = QStringLiteral("vantrel-") + settings.nodeName();
    client.user = settings.user;
    client.password = password;
    client.tls = settings.tls;
    client.caFile = settings.caFile;
    client.certFile = settings.certFile;
    client.keyFile = settings.keyFile;
    client.willTopic = topic("availability");
    client.willPayload = "offline";
    QString why;
    m_started = m_client.start(client, &why);
    if (!m_started)
        EventLog::write(QStringLiteral("MQTT not started: %1").arg(why));
}

QString MqttDoor::topic(const char* leaf) const
{
    return m_settings.base() + u'/' + QLatin1String(leaf);
}

void MqttDoor::connected()
{
    EventLog::write(QStringLiteral("MQTT connected to %1:%2 as %3").arg(m_settings.host).arg(m_settings.port).arg(base()));
    m_lastProblem.clear();
    m_listening = false;
    m_client.subscribe(topic("cmd") + QStringLiteral("/+"), 1);
    m_client.publish(topic("availability"), "online", 1, true);
    announce();
    publishState(); // after every reconnect: what changed meanwhile is told
}

void MqttDoor::disconnected(const QString& why)
{
    // A broker that stays away is said once, not at every try.
    if (why == m_lastProblem)
        return;
    m_lastProblem = why;
    EventLog::write(QStringLiteral("MQTT: %1; trying again in %2 s").arg(why).arg(m_client.retryDelaySeconds()));
}

void MqttDoor::message(const QString& topicName, const QByteArray& payload)
{
    const QString prefix = topic("cmd") + u'/';
    if (!topicName.startsWith(prefix))
        return;
    const QString verb = topicName.mid(prefix.size());
    const MqttCommand::Decoded decoded = MqttCommand::decode(verb, payload);
    bool ok = false;
    QString reason;
    if (!decoded.ok()) {
        reason = decoded.error;
        EventLog::write(QStringLiteral("MQTT command \"%1\" refused: %2").arg(verb.left(100), reason));
    } else {
        const DoorMessage::Reply reply = DoorCommands::carryOut(decoded.request, *m_verbs, *m_host, QString(), QString());
        ok = reply.status == CommandLine::kDone;
        reason = reply.err.trimmed();
    }
    m_client.publish(topic("result"), MqttCommand::result(decoded.id, verb.left(100), ok, reason), 1, false);
    emit commandAnswered(verb, ok);
}

void MqttDoor::stateChanged()
{
    if (!m_client.isConnected())
        return;
    if (m_settings.homeAssistant && m_verbs->listNames() != m_lists)
        announce(); // the select offers the lists there are now
    if (m_stateSoon.isActive())
        return;
    const qint64 since = m_sinceState.isValid() ? m_sinceState.elapsed() : kStateEveryMs;
    if (since >= kStateEveryMs)
        publishState();
    else
        m_stateSoon.start(int(kStateEveryMs - since)); // the latest state goes out then
}

void MqttDoor::publishState()
{
    if (!m_client.isConnected())
        return;
    m_client.publish(topic("state"), StateMessage::json(*m_verbs), 1, true);
    m_sinceState.start();
}
