#include "MqttClient.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSocketNotifier>
#include <QtConcurrent/QtConcurrentRun>

#include <mosquitto.h>

namespace {

// The library is set up once for the program, and never torn down while it runs.
void initLibrary()
{
    static const int once = mosquitto_lib_init();
    Q_UNUSED(once);
}

QString errorText(int rc, int error = errno)
{
    return rc == MOSQ_ERR_ERRNO ? QString::fromLocal8Bit(strerror(error)) : QString::fromUtf8(mosquitto_strerror(rc));
}

} // namespace

MqttClient::MqttClient(QObject* parent) : QObject(parent)
{
    initLibrary();
    m_misc.setInterval(1000);
    m_retry.setSingleShot(true);
    connect(&m_misc, &QTimer::timeout, this, &MqttClient::housekeeping);
    connect(&m_retry, &QTimer::timeout, this, [this] { beginConnect(true); });
    connect(&m_connecting, &QFutureWatcher<QPair<int, int>>::finished, this, &MqttClient::connectFinished);
}

MqttClient::~MqttClient()
{
    stop();
}

bool MqttClient::start(const Settings& settings, QString* error)
{
    stop();
    const auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        if (m_mosq)
            mosquitto_destroy(m_mosq);
        m_mosq = nullptr;
        return false;
    };
    m_settings = settings;
    m_mosq = mosquitto_new(settings.clientId.toUtf8().constData(), false, this);
    if (!m_mosq)
        return fail(QStringLiteral("the MQTT library refused the client id \"%1\"").arg(settings.clientId));
    mosquitto_int_option(m_mosq, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V311);
    mosquitto_connect_callback_set(m_mosq, &MqttClient::onConnect);
    mosquitto_message_callback_set(m_mosq, &MqttClient::onMessage);
    mosquitto_publish_callback_set(m_mosq, &MqttClient::onPublish);
    mosquitto_subscribe_callback_set(m_mosq, &MqttClient::onSubscribe);
    if (!settings.willTopic.isEmpty()) {
        const int rc = mosquitto_will_set(m_mosq, settings.willTopic.toUtf8().constData(), int(settings.willPayload.size()),
                                          settings.willPayload.constData(), 1, true);
        if (rc != MOSQ_ERR_SUCCESS)
            return fail(QStringLiteral("the last will cannot be set: %1").arg(errorText(rc)));
    }
    if (!settings.user.isEmpty()) {
        const int rc = mosquitto_username_pw_set(m_mosq, settings.user.toUtf8().constData(),
                                                 settings.password.isEmpty() ? nullptr : settings.password.toUtf8().constData());
        if (rc != MOSQ_ERR_SUCCESS)
            return fail(QStringLiteral("the user name cannot be used: %1").arg(errorText(rc)));
    }
    if (settings.tls) {
        for (const QString& file : {settings.caFile, settings.certFile, settings.keyFile})
            if (!file.isEmpty() && !QFile::exists(file))
                return fail(QStringLiteral("the file %1 is not there").arg(file));
        const QByteArray ca = QFile::encodeName(settings.caFile), cert = QFile::encodeName(settings.certFile),
                         key = QFile::encodeName(settings.keyFile);
        const int rc = mosquitto_tls_set(m_mosq, ca.isEmpty() ? nullptr : ca.constData(), nullptr,
                                         cert.isEmpty() ? nullptr : cert.constData(),
                                         key.isEmpty() ? nullptr : key.constData(), nullptr);
        if (rc != MOSQ_ERR_SUCCESS)
            return fail(QStringLiteral("TLS cannot be set up: %1").arg(errorText(rc)));
    }
    m_running = true;
    m_delay = kFirstRetrySeconds;
    beginConnect(false);
    return true;
}

void MqttClient::stop()
{
    m_running = false;
    m_retry.stop();
    if (m_connecting.isRunning())
        m_connecting.waitForFinished();
    if (!m_mosq)
        return;
    if (m_connected) {
        // What was published last (a goodbye, entities taken away) reaches the broker first: the
        // connection is run here until the broker has acknowledged it, for a second at most.
        QElapsedTimer waited;
        waited.start();
        while (m_unacknowledged > 0 && waited.elapsed() < 1000
               && mosquitto_loop(m_mosq, 50, 1) == MOSQ_ERR_SUCCESS) {
        }
        // A clean goodbye: the broker keeps the session and does not send the last will.
        mosquitto_disconnect(m_mosq);
        mosquitto_loop(m_mosq, 50, 1);
    }
    detach();
    m_connected = false;
    mosquitto_destroy(m_mosq);
    m_mosq = nullptr;
}

void MqttClient::beginConnect(bool again)
{
    if (!m_running || !m_mosq || m_connecting.isRunning())
        return;
    // The name lookup and the connect's first steps block: they run away from the window's thread,
    // which does not touch the client meanwhile.
    mosquitto* mosq = m_mosq;
    const QByteArray host = m_settings.host.toUtf8();
    const int port = m_settings.port;
    const int keepAlive = m_settings.keepAliveSeconds;
    m_connecting.setFuture(QtConcurrent::run([mosq, host, port, keepAlive, again] {
        const int rc = again ? mosquitto_reconnect_async(mosq) : mosquitto_connect_async(mosq, host.constData(), port, keepAlive);
        return qMakePair(rc, errno);
    }));
}

void MqttClient::connectFinished()
{
    if (!m_running || !m_mosq || m_connecting.future().resultCount() == 0)
        return;
    const auto [rc, error] = m_connecting.result();
    if (rc != MOSQ_ERR_SUCCESS) {
        lost(QStringLiteral("cannot reach %1:%2 (%3)").arg(m_settings.host).arg(m_settings.port).arg(errorText(rc, error)));
        return;
    }
    attach(); // the CONNECT goes out once the socket takes it; onConnect tells the answer
}

void MqttClient::attach()
{
    detach();
    const int fd = mosquitto_socket(m_mosq);
    if (fd < 0) {
        lost(QStringLiteral("no connection"));
        return;
    }
    m_read = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    m_write = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
    connect(m_read.get(), &QSocketNotifier::activated, this, &MqttClient::readable);
    connect(m_write.get(), &QSocketNotifier::activated, this, &MqttClient::writable);
    m_misc.start();
    updateWrite();
}

void MqttClient::detach()
{
    m_read.reset();
    m_write.reset();
    m_misc.stop();
}

void MqttClient::lost(const QString& why)
{
    detach();
    const bool was = m_connected;
    m_connected = false;
    if (!m_running)
        return;
    m_retry.start(m_delay * 1000);
    m_delay = std::min(m_delay * 2, kLastRetrySeconds);
    if (was || !why.isEmpty())
        emit disconnected(why);
}

void MqttClient::readable()
{
    const int rc = mosquitto_loop_read(m_mosq, 1);
    if (rc != MOSQ_ERR_SUCCESS) {
        lost(QStringLiteral("the connection to %1:%2 was lost (%3)").arg(m_settings.host).arg(m_settings.port).arg(errorText(rc)));
        return;
    }
    updateWrite();
}

void MqttClient::writable()
{
    const int rc = mosquitto_loop_write(m_mosq, 1);
    if (rc != MOSQ_ERR_SUCCESS) {
        lost(QStringLiteral("the connection to %1:%2 was lost (%3)").arg(m_settings.host).arg(m_settings.port).arg(errorText(rc)));
        return;
    }
    updateWrite();
}

void MqttClient::housekeeping()
{
    const int rc = mosquitto_loop_misc(m_mosq);
    if (rc != MOSQ_ERR_SUCCESS) {
        lost(QStringLiteral("the broker at %1:%2 stopped answering").arg(m_settings.host).arg(m_settings.port));
        return;
    }
    updateWrite();
}

void MqttClient::updateWrite()
{
    if (m_write && m_mosq)
        m_write->setEnabled(mosquitto_want_write(m_mosq));
}

bool MqttClient::publish(const QString& topic, const QByteArray& payload, int qos, bool retain)
{
    if (!m_connected)
        return false;
    const int rc = mosquitto_publish(m_mosq, nullptr, topic.toUtf8().constData(), int(payload.size()),
                                     payload.isEmpty() ? nullptr : payload.constData(), qos, retain);
    if (rc == MOSQ_ERR_SUCCESS && qos > 0)
        ++m_unacknowledged;
    updateWrite();
    return rc == MOSQ_ERR_SUCCESS;
}

bool MqttClient::subscribe(const QString& pattern, int qos)
{
    if (!m_connected)
        return false;
    const int rc = mosquitto_subscribe(m_mosq, nullptr, pattern.toUtf8().constData(), qos);
    updateWrite();
    return rc == MOSQ_ERR_SUCCESS;
}

void MqttClient::onConnect(mosquitto*, void* self, int rc)
{
    auto* client = static_cast<MqttClient*>(self);
    if (rc != 0) {
        // Refused (a wrong password, a client id not allowed): tried again later, said now.
        const QString why = QStringLiteral("the broker refused the connection: %1").arg(QString::fromUtf8(mosquitto_connack_string(rc)));
        QMetaObject::invokeMethod(client, [client, why] { client->lost(why); }, Qt::QueuedConnection);
        return;
    }
    client->m_connected = true;
    client->m_delay = kFirstRetrySeconds;
    client->m_unacknowledged = 0; // what was not acknowledged before is sent again by the library
    QMetaObject::invokeMethod(client, &MqttClient::connected, Qt::QueuedConnection);
}

void MqttClient::onPublish(mosquitto*, void* self, int)
{
    auto* client = static_cast<MqttClient*>(self);
    client->m_unacknowledged = std::max(0, client->m_unacknowledged - 1);
}

void MqttClient::onSubscribe(mosquitto*, void* self, int, int, const int*)
{
    auto* client = static_cast<MqttClient*>(self);
    QMetaObject::invokeMethod(client, &MqttClient::subscribed, Qt::QueuedConnection);
}

void MqttClient::onMessage(mosquitto*, void* self, const mosquitto_message* message)
{
    auto* client = static_cast<MqttClient*>(self);
    const QString topic = QString::fromUtf8(message->topic);
    const QByteArray payload(static_cast<const char*>(message->payload), message->payloadlen);
    QMetaObject::invokeMethod(client, [client, topic, payload] { emit client->message(topic, payload); },
                              Qt::QueuedConnection);
}
