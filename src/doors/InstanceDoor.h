#pragma once

#include "DoorCommands.h"
#include "InstancePlace.h"

#include <QList>
#include <QObject>
#include <QPointer>

class QLocalServer;
class QLocalSocket;
class Verbs;

// The running program's end of the socket: each connection brings one request, read with the
// message reader and a time limit (a caller that says nothing is dropped and blocks nobody), carried
// out through the verbs once they are there, and answered. Only the user's own processes are
// heard. `--status --watch` keeps its connection and hears the state at each change.
class InstanceDoor : public QObject
{
    Q_OBJECT

public:
    static constexpr int kSilentCallerMs = 5000;

    explicit InstanceDoor(QObject* parent = nullptr);
    ~InstanceDoor() override;

    // Starts listening on the socket in `folder` (one left by a killed program is removed first).
    bool listen(const QString& folder);
    // From now on requests are carried out; those that came before are carried out now.
    void open(Verbs* verbs, DoorHost* host);
    QString serverName() const;

private:
    struct Caller;
    void admit(QLocalSocket* socket);
    void read(Caller* caller);
    void carryOut(Caller* caller, const DoorMessage::Request& request);
    void drop(Caller* caller, const QString& why);
    void forget(Caller* caller);

    QLocalServer* m_server = nullptr;
    QPointer<Verbs> m_verbs;
    DoorHost* m_host = nullptr;
    QList<Caller*> m_callers;
    QList<std::pair<QPointer<QLocalSocket>, DoorMessage::Request>> m_waiting; // before open()
};
