#include "RemotePage.h"

#include "MqttCommand.h"
#include "Secrets.h"
#include "StateMessage.h"
#include "settings/RemoteSettings.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QFile>
#include <QHttpServer>
#include <QJsonDocument>
#include <QNetworkInterface>

static void initRemoteResources()
{
    Q_INIT_RESOURCE(remote); // the page lives in a static library: its resources are pulled in here
}

namespace {

constexpr char kTokenKey[] = "remote-token";

using Status = QHttpServerResponder::StatusCode;

QHttpServerResponse json(const QByteArray& body, Status status = Status::Ok)
{
    return QHttpServerResponse(QByteArrayLiteral("application/json"), body, status);
}

QHttpServerResponse refusal(const QString& reason, Status status)
{
    return json(MqttCommand::result(QJsonValue(), QString(), false, reason), status);
}

} // namespace

RemotePage::RemotePage(Verbs* verbs, DoorHost* host, QObject* parent) : QObject(parent), m_verbs(verbs), m_host(host)
{
    initRemoteResources();
    m_clock.start();
}

RemotePage::~RemotePage() = default;

void RemotePage::applySetting()
{
    const RemoteSettings settings = RemoteSettings::read();
    if (!settings.enabled) {
        stop();
        return;
    }
    QByteArray token = Secrets::read(QString::fromLatin1(kTokenKey)).toLatin1();
    if (token.isEmpty()) {
        token = RemoteAccess::newToken(); // made when the page is first switched on
        Secrets::store(QString::fromLatin1(kTokenKey), QString::fromLatin1(token));
    }
    if (isServing() && settings.port == m_port && settings.localNetwork == m_localNetwork && token == m_token)
        return;
    QString why;
    if (!start(settings.port, settings.localNetwork, token, &why))
        EventLog::write(QStringLiteral("The remote page is not served: %1").arg(why));
}

void RemotePage::renewToken()
{
    const QByteArray token = RemoteAccess::newToken();
    Secrets::store(QString::fromLatin1(kTokenKey), QString::fromLatin1(token));
    if (isServing()) {
        m_token = token;
        m_access.setToken(token);
    }
}

bool RemotePage::start(int port, bool localNetwork, const QByteArray& token, QString* why)
{
    stop();
    m_server = std::make_unique<QHttpServer>();
    m_server->route(QStringLiteral("/"), QHttpServerRequest::Method::Get,
                    [this](const QHttpServerRequest& request) { return file(QStringLiteral("index.html"), request); });
    m_server->route(QStringLiteral("/app.js"), QHttpServerRequest::Method::Get,
                    [this](const QHttpServerRequest& request) { return file(QStringLiteral("app.js"), request); });
    m_server->route(QStringLiteral("/app.css"), QHttpServerRequest::Method::Get,
                    [this](const QHttpServerRequest& request) { return file(QStringLiteral("app.css"), request); });
    m_server->route(QStringLiteral("/api/<arg>"),
                    [this](const QString& verb, const QHttpServerRequest& request) { return api(verb, request); });
    // Whatever is answered: not to be framed, sniffed, kept or told to another site.
    m_server->afterRequest([](QHttpServerResponse&& response) {
        response.addHeader(QByteArrayLiteral("X-Frame-Options"), QByteArrayLiteral("DENY"));
        response.addHeader(QByteArrayLiteral("Content-Security-Policy"),
                           QByteArrayLiteral("default-src 'self'; frame-ancestors 'none'; form-action 'none'"));
        response.addHeader(QByteArrayLiteral("X-Content-Type-Options"), QByteArrayLiteral("nosniff"));
        response.addHeader(QByteArrayLiteral("Referrer-Policy"), QByteArrayLiteral("no-referrer"));
        response.addHeader(QByteArrayLiteral("Cache-Control"), QByteArrayLiteral("no-store"));
        return std::move(response);
    });
    const QHostAddress address = localNetwork ? QHostAddress(QHostAddress::AnyIPv4) : QHostAddress(QHostAddress::LocalHost);
    const quint16 bound = m_server->listen(address, quint16(port));
    if (bound == 0) {
        if (why)
            *why = QStringLiteral("port %1 is taken or not allowed").arg(port);
        m_server.reset();
        return false;
    }
    m_port = bound;
    m_localNetwork = localNetwork;
    m_token = token;
    m_access.setToken(token);
    EventLog::write(QStringLiteral("The remote page is served on %1:%2").arg(address.toString()).arg(m_port));
    return true;
}

void RemotePage::stop()
{
    m_server.reset();
    m_port = 0;
}

QString RemotePage::pageAddress() const
{
    QString host = QStringLiteral("127.0.0.1");
    if (m_localNetwork) {
        for (const QHostAddress& address : QNetworkInterface::allAddresses())
            if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback()) {
                host = address.toString();
                break;
            }
    }
    return QStringLiteral("http://%1:%2/#token=%3").arg(host).arg(m_port).arg(QString::fromLatin1(m_token));
}

bool RemotePage::hostIsOurs(const QHttpServerRequest& request) const
{
    // A page of another site can make its own name point to 127.0.0.1; its requests then still
    // carry its name. Only this server's names are answered.
    const QByteArray host = request.value(QByteArrayLiteral("Host")).toLower();
    const QByteArray port = ':' + QByteArray::number(m_port);
    if (host == "127.0.0.1" + port || host == "localhost" + port || host == "[::1]" + port)
        return true;
    if (!m_localNetwork)
        return false;
    for (const QHostAddress& address : QNetworkInterface::allAddresses())
        if (host == address.toString().toLatin1() + port)
            return true;
    return false;
}

QHttpServerResponse RemotePage::file(const QString& name, const QHttpServerRequest& request)
{
    if (!hostIsOurs(request))
        return refusal(QStringLiteral("not this server's name"), Status::Forbidden);
    QFile resource(QStringLiteral(":/remote/") + name);
    if (!resource.open(QIODevice::ReadOnly))
        return QHttpServerResponse(Status::NotFound);
    const QByteArray type = name.endsWith(QLatin1String(".js"))    ? QByteArrayLiteral("text/javascript; charset=utf-8")
                            : name.endsWith(QLatin1String(".css")) ? QByteArrayLiteral("text/css; charset=utf-8")
                                                                   : QByteArrayLiteral("text/html; charset=utf-8");
    return QHttpServerResponse(type, resource.readAll());
}

QHttpServerResponse RemotePage::api(const QString& verb, const QHttpServerRequest& request)
{
    if (!hostIsOurs(request))
        return refusal(QStringLiteral("not this server's name"), Status::Forbidden);
    const QString client = request.remoteAddress().toString();
    const QByteArray shown = request.value(QByteArrayLiteral("X-Vantrel-Token"));
    switch (m_access.check(client, shown, m_clock.elapsed())) {
    case RemoteAccess::Verdict::Waiting:
        return refusal(QStringLiteral("too many wrong tokens: wait"), Status::TooManyRequests);
    case RemoteAccess::Verdict::WrongToken:
        // Whether a token came at all tells a guess from a page of another site; the token never.
        EventLog::write(QStringLiteral("The remote page refused %1: %2").arg(client, shown.isEmpty() ? QStringLiteral("no token")
                                                                                              : QStringLiteral("a wrong token")));
        return refusal(shown.isEmpty() ? QStringLiteral("no token") : QStringLiteral("a wrong token"), Status::Unauthorized);
    case RemoteAccess::Verdict::Allowed:
        break;
    }
    if (verb == u"state") {
        if (request.method() != QHttpServerRequest::Method::Get)
            return refusal(QStringLiteral("the state is read with GET"), Status::MethodNotAllowed);
        return json(StateMessage::json(*m_verbs));
    }
    // What changes something comes as a POST, with the token in its header.
    if (request.method() != QHttpServerRequest::Method::Post)
        return refusal(QStringLiteral("a command is sent with POST"), Status::MethodNotAllowed);
    if (request.body().size() > kMaxBody)
        return refusal(QStringLiteral("the body is longer than %1 bytes").arg(kMaxBody), Status::PayloadTooLarge);
    const MqttCommand::Decoded decoded = MqttCommand::decode(verb, request.body());
    if (!decoded.ok()) {
        EventLog::write(QStringLiteral("Remote page command \"%1\" refused: %2").arg(verb.left(100), decoded.error));
        return json(MqttCommand::result(decoded.id, verb.left(100), false, decoded.error), Status::BadRequest);
    }
    const DoorMessage::Reply reply = DoorCommands::carryOut(decoded.request, *m_verbs, *m_host, QString(), QString());
    const bool ok = reply.status == CommandLine::kDone;
    return json(MqttCommand::result(decoded.id, verb, ok, reply.err.trimmed()), ok ? Status::Ok : Status::Conflict);
}
