#pragma once

#include <QString>

// How Vantrel reaches an MQTT broker, kept in Vantrel.conf under [Mqtt]: off until a person
// switches it on. The password is never kept here (the desktop's secret store keeps it).
struct MqttSettings
{
    bool enabled = false;
    QString host = QStringLiteral("127.0.0.1");
    int port = 1883;
    bool tls = false;
    QString caFile;
    QString certFile;
    QString keyFile;
    QString user;
    QString node;      // this Vantrel's name on the broker; the host name when empty
    QString baseTopic; // "vantrel/<node>" when empty
    bool homeAssistant = true; // Home Assistant's discovery messages published

    bool operator==(const MqttSettings&) const = default;

    // The node's name as it may stand in a topic: the host name when none is set, and nothing of
    // MQTT's wildcards or level separator.
    QString nodeName() const;
    // Where Vantrel's topics begin, without a "/" at the end.
    QString base() const;

    static MqttSettings read();
    // False when Vantrel.conf could not be written.
    bool write() const;
};
