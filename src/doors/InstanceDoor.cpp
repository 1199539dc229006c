#include "InstanceDoor.h"

#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QDir>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

struct InstanceDoor::Caller
{
    QPointer<QLocalSocket> socket;
    DoorMessage::Reader reader;
    QTimer silence;
    bool heard = false; // a whole request came: from now on the answer decides
    QMetaObject::Connection watch;
};

InstanceDoor::InstanceDoor(QObject* parent) : QObject(parent) {}

InstanceDoor::~InstanceDoor()
{
    for (Caller* caller : std::as_const(m_callers)) {
        QObject::disconnect(caller->watch);
        delete caller;
    }
}

bool InstanceDoor::listen(const QString& folder)
{
    if (folder.isEmpty())
        return false;
    const QString name = InstancePlace::socketFile(folder);
    QLocalServer::removeServer(name); // only the lock's holder gets here: any socket there is stale
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(name)) {
        EventLog::write(QStringLiteral("the door for other starts could not open: %1").arg(m_server->errorString()));
        return false;
    }
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection())
            admit(socket);
    });
    return true;
}

QString InstanceDoor::serverName() const
{
    return m_server ? m_server->fullServerName() : QString();
}

void InstanceDoor::open(Verbs* verbs, DoorHost* host)
{
    m_verbs = verbs;
    m_host = host;
    const auto waiting = std::exchange(m_waiting, {});
    for (const auto& [socket, request] : waiting) {
        for (Caller* caller : std::as_const(m_callers))
            if (caller->socket == socket)
                carryOut(caller, request);
    }
}

void InstanceDoor::admit(QLocalSocket* socket)
{
    socket->setParent(this);
    // Only the user's own processes: the folder is closed to others, and the peer says who it is.
    struct ucred peer{};
    socklen_t size = sizeof peer;
    if (::getsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 ||
        peer.uid != ::getuid()) {
        EventLog::write(QStringLiteral("a start of another user was turned away"));
        socket->abort();
        socket->deleteLater();
        return;
    }
    auto* caller = new Caller;
    caller->socket = socket;
    m_callers.append(caller);
    caller->silence.setSingleShot(true);
    connect(&caller->silence, &QTimer::timeout, this, [this, caller] {
        drop(caller, QStringLiteral("it said nothing for %1 s").arg(kSilentCallerMs / 1000));
    });
    caller->silence.start(kSilentCallerMs);
    connect(socket, &QLocalSocket::readyRead, this, [this, caller] { read(caller); });
    connect(socket, &QLocalSocket::disconnected, this, [this, caller] { forget(caller); });
    read(caller);
}

void InstanceDoor::read(Caller* caller)
{
    if (!caller->socket)
        return;
    if (caller->heard) {
        caller->socket->readAll(); // one request a connection: what follows is not heard
        return;
    }
    caller->reader.append(caller->socket->readAll());
    const std::optional<QByteArray> payload = caller->reader.next();
    if (caller->reader.refused()) {
        drop(caller, caller->reader.problem());
        return;
    }
    if (!payload)
        return; // not whole yet: the time limit runs on
    QString problem;
    const std::optional<DoorMessage::Request> request = DoorMessage::requestFrom(*payload, &problem);
    if (!request) {
        drop(caller, problem);
        return;
    }
    caller->heard = true;
    caller->silence.stop();
    if (!m_verbs) {
        m_waiting.append({caller->socket, *request}); // the program is still starting
        return;
    }
    carryOut(caller, *request);
}

void InstanceDoor::carryOut(Caller* caller, const DoorMessage::Request& request)
{
    if (!caller->socket || !m_verbs || !m_host)
        return;
    CommandRequest command;
    DoorMessage::Reply reply = DoorCommands::answer(request, *m_verbs, *m_host, &command);
    if (command.action == CommandRequest::Action::Status && command.watch && reply.status == CommandLine::kDone) {
        reply.more = true;
        caller->socket->write(DoorMessage::encode(reply));
        // One line a change, for as long as the caller listens.
        caller->watch = connect(m_verbs, &Verbs::stateChanged, this, [this, caller] {
            if (caller->socket && m_verbs)
                caller->socket->write(DoorMessage::encode(DoorMessage::Reply{
                    CommandLine::kDone, QString::fromUtf8(DoorCommands::stateJson(m_verbs->state())) + u'\n',
                    QString(), true}));
        });
        return;
    }
    caller->socket->write(DoorMessage::encode(reply));
    caller->socket->disconnectFromServer(); // written out first, then closed
}

void InstanceDoor::drop(Caller* caller, const QString& why)
{
    EventLog::write(QStringLiteral("a message from another start was refused: %1").arg(why));
    if (caller->socket)
        caller->socket->abort();
    forget(caller);
}

void InstanceDoor::forget(Caller* caller)
{
    if (!m_callers.removeOne(caller))
        return;
    QObject::disconnect(caller->watch);
    if (caller->socket) {
        caller->socket->disconnect(this);
        caller->socket->deleteLater();
    }
    // Not deleted here: this may run inside one of its own timer's or socket's signals.
    caller->silence.stop();
    QTimer::singleShot(0, this, [caller] { delete caller; });
}
