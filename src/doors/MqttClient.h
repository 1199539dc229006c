#pragma once

#include <QByteArray>
#include <QFutureWatcher>
#include <QObject>
#include <QPair>
#include <QString>
#include <QTimer>

#include <memory>

class QSocketNotifier;
struct mosquitto;
struct mosquitto_message;

// A connection to an MQTT broker through libmosquitto, run by Qt's event loop: the socket watched
// with QSocketNotifier, the keep-alive on a timer, no thread of its own. Only the connect, where a
// name is looked up and a TCP (and TLS) connection begun, runs away from the window's thread, so
// that a broker far away or gone never holds the program up. A lost connection is tried again
// after 1 s, then 2, 4 ... up to 60 s. The session is kept by the broker (a fixed client id, no
// clean start), so that commands sent with QoS 1 while Vantrel was away arrive when it is back.
class MqttClient : public QObject
{
    Q_OBJECT

public:
    struct Settings
    {
        QString host = QStringLiteral("127.0.0.1");
        int port = 1883;
        QString clientId;
        QString user;
        QString password;
        bool tls = false;
        QString caFile;   // the authority the broker's certificate must come from
        QString certFile; // this client's own certificate and key, when the broker asks for one
        QString keyFile;
        QString willTopic; // what the broker says for Vantrel when its connection is lost
        QByteArray willPayload;
        int keepAliveSeconds = 30;
    };

    static constexpr int kFirstRetrySeconds = 1;
    static constexpr int kLastRetrySeconds = 60;

    explicit MqttClient(QObject* parent = nullptr);
    ~MqttClient() override;

    // Connects, and keeps connecting; false with the reason when the settings cannot be used at all
    // (a certificate file that is not there, a client id the library refuses).
    bool start(const Settings& settings, QString* error = nullptr);
    // Leaves the broker cleanly (what was queued is sent first) and stops trying.
    void stop();

    bool isConnected() const { return m_connected; }
    // The wait before the next try, in seconds, while not connected.
    int retryDelaySeconds() const { return m_delay; }

    // Both false while not connected.
    bool publish(const QString& topic, const QByteArray& payload, int qos, bool retain);
    bool subscribe(const QString& pattern, int qos);

signals:
    void connected();
    // The broker took a subscription (its SUBACK came).
    void subscribed();
    void disconnected(const QString& why);
    // A message on a topic subscribed to; handled after libmosquitto is done with it.
    void message(const QString& topic, const QByteArray& payload);

private:
    static void onConnect(mosquitto* mosq, void* self, int rc);
    static void onMessage(mosquitto* mosq, void* self, const mosquitto_message* message);
    static void onPublish(mosquitto* mosq, void* self, int mid);
    static void onSubscribe(mosquitto* mosq, void* self, int mid, int count, const int* grantedQos);

    void beginConnect(bool again);
    void connectFinished();
    void attach();
    void detach();
    void lost(const QString& why);
    void readable();
    void writable();
    void housekeeping();
    void updateWrite();

    mosquitto* m_mosq = nullptr;
    Settings m_settings;
    std::unique_ptr<QSocketNotifier> m_read;
    std::unique_ptr<QSocketNotifier> m_write;
    QTimer m_misc;  // keep-alive and time-outs
    QTimer m_retry;
    // The connect's result code, and errno where it says "see errno" (errno belongs to the thread
    // that ran it).
    QFutureWatcher<QPair<int, int>> m_connecting;
    int m_delay = kFirstRetrySeconds;
    int m_unacknowledged = 0; // QoS 1 messages the broker has not acknowledged yet
    bool m_connected = false;
    bool m_running = false;
};
