#pragma once

#include "DoorCommands.h"
#include "RemoteAccess.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>

#include <memory>

class QHttpServer;
class QHttpServerRequest;
class QHttpServerResponse;
class Verbs;

// "Control Vantrel from a browser": a page for a phone (HTML, CSS and JavaScript from Vantrel's
// resources, nothing fetched elsewhere) and the JSON API under it, served by Qt HTTP Server on
// 127.0.0.1, or on every address of the machine when a person chose the local network.
//   GET  /               the page          (no token: it holds nothing)
//   GET  /api/state      the state         (the token in the header X-Vantrel-Token)
//   POST /api/<verb>     a command, its body the same JSON as the broker's (MqttCommand), answered
//                        with the same result
// The page asks for the state every second rather than keeping a stream open: Qt HTTP Server as
// Debian ships it answers each request whole and cannot stream Server-Sent Events.
// Every answer forbids framing, sniffing, caching and referrers; a request whose Host is not this
// server's (a page of another site rebinding a name to 127.0.0.1) is refused; a command needs the
// token in a header, which no form of another site can send.
class RemotePage : public QObject
{
    Q_OBJECT

public:
    static constexpr int kDefaultPort = 8765;
    static constexpr qsizetype kMaxBody = 16 * 1024;

    RemotePage(Verbs* verbs, DoorHost* host, QObject* parent = nullptr);
    ~RemotePage() override;

    // Serves on `port` of 127.0.0.1, or of every address with `localNetwork`; false with the
    // reason when the port cannot be had.
    bool start(int port, bool localNetwork, const QByteArray& token, QString* why = nullptr);
    void stop();
    bool isServing() const { return m_port != 0; }
    int port() const { return m_port; }

    // The settings of Vantrel.conf and the token from the secret store.
    void applySetting();
    // A new token, kept and served at once: the old one opens nothing any more.
    void renewToken();

    // The address a person opens, with the token in its fragment; on the local network, with the
    // machine's first address there.
    QString pageAddress() const;

private:
    QHttpServerResponse api(const QString& verb, const QHttpServerRequest& request);
    QHttpServerResponse file(const QString& name, const QHttpServerRequest& request);
    bool hostIsOurs(const QHttpServerRequest& request) const;

    Verbs* m_verbs;
    DoorHost* m_host;
    std::unique_ptr<QHttpServer> m_server;
    RemoteAccess m_access;
    QByteArray m_token;
    QElapsedTimer m_clock;
    int m_port = 0;
    bool m_localNetwork = false;
};
