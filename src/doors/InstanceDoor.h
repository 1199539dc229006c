#pragma once

#include "DoorCommands.h"

#include <QList>
#include <QLockFile>
#include <QObject>
#include <QPointer>

#include <memory>

class QLocalServer;
class QLocalSocket;
class Verbs;

// Where the user's one Vantrel is found: a lock file and a socket in a folder of the user's runtime
// folder that only the user can open.
namespace InstancePlace {
// The folder ($XDG_RUNTIME_DIR/vantrel), made with mode 0700 when missing; empty when it cannot
// be made or is not the user's own and closed to others.
QString folder();
QString lockFile(const QString& folder);
QString socketFile(const QString& folder);
} // namespace InstancePlace

// The lock that makes one program of every start of the same user. A lock left by a program that
// was killed is taken over.
class InstanceLock
{
public:
    explicit InstanceLock(const QString& folder);
    // True when this start is now the one program; false while another one holds the lock.
    bool claim();
    bool held() const { return m_lock && m_lock->isLocked(); }

private:
    std::unique_ptr<QLockFile> m_lock;
};

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
