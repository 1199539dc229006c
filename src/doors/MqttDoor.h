#pragma once

#include "DoorCommands.h"
#include "HomeAssistant.h"
#include "MqttClient.h"
#include "settings/MqttSettings.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class Verbs;

// Vantrel on an MQTT broker, when a person switched it on: the verbs taken on
// "<base>/cmd/<verb>" (MqttCommand reads them, QoS 1), each answered on "<base>/result" with the
// request's id; the state published retained on "<base>/state" at every change, at most four
// times a second and always the latest; "<base>/availability" "online", and "offline" as the last
// will; Home Assistant's discovery messages (HomeAssistant), taken away when MQTT or the discovery
// is switched off. A caller on the broker is not at the screen: nothing it sends opens a box, and only http
// and https addresses are opened. A command refused is written in the log and answered, never done
// in part.
class MqttDoor : public QObject
{
    Q_OBJECT

public:
    static constexpr int kStateEveryMs = 250;
    // The broker's password in the secret store (Secrets).
    static constexpr char kPasswordKey[] = "mqtt-password";

    MqttDoor(Verbs* verbs, DoorHost* host, QObject* parent = nullptr);
    // Says "offline" and leaves the broker.
    ~MqttDoor() override;

    // Follows the settings in Vantrel.conf.
    void applySetting();
    // Connects with these settings (and `password`), or leaves the broker when they are off.
    void setSettings(const MqttSettings& settings, const QString& password = QString());

    bool isConnected() const { return m_client.isConnected(); }
    // Connected, and the broker took the subscription to the commands.
    bool isListening() const { return m_client.isConnected() && m_listening; }
    QString base() const { return m_settings.base(); }
    // What it runs with now.
    const MqttSettings& settings() const { return m_settings; }
    // Why it is not connected, while it is not; empty while it connects the first time.
    QString problem() const { return m_lastProblem; }
    MqttClient* client() { return &m_client; }

signals:
    // A command from the broker was answered (done or refused).
    void commandAnswered(const QString& verb, bool ok);

private:
    // Says "offline" and leaves; with `forget`, Home Assistant's entities are taken away first.
    void leave(bool forget);
    void publishDiscovery(const QList<HomeAssistant::Message>& messages);
    // Home Assistant's entities, with the lists there are now.
    void announce();
    void connected();
    void disconnected(const QString& why);
    void message(const QString& topic, const QByteArray& payload);
    void stateChanged();
    void publishState();
    QString topic(const char* leaf) const;

    Verbs* m_verbs;
    DoorHost* m_host;
    MqttClient m_client;
    MqttSettings m_settings;
    QString m_password;
    QTimer m_stateSoon;
    QElapsedTimer m_sinceState;
    QString m_lastProblem;
    bool m_started = false;
    bool m_listening = false;
    QStringList m_lists; // the lists the select offers
};
