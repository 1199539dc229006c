#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

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
