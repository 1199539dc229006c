#include "InstancePlace.h"

#include <QFile>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace InstancePlace {

QString folder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        return QString();
    const QString path = runtime + QStringLiteral("/vantrel");
    ::mkdir(QFile::encodeName(path).constData(), 0700);
    struct stat info{};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISDIR(info.st_mode) ||
        info.st_uid != ::getuid() || (info.st_mode & 077) != 0)
        return QString(); // not ours, or open to others: nothing is said through it
    return path;
}

QString lockFile(const QString& folder)
{
    return folder + QStringLiteral("/instance.lock");
}

QString socketFile(const QString& folder)
{
    return folder + QStringLiteral("/door");
}

} // namespace InstancePlace

InstanceLock::InstanceLock(const QString& folder)
    : m_lock(folder.isEmpty() ? nullptr : std::make_unique<QLockFile>(InstancePlace::lockFile(folder)))
{
}

bool InstanceLock::claim()
{
    if (!m_lock)
        return true; // no runtime folder of the user's own: this start goes on alone
    if (m_lock->isLocked())
        return true;
    // A lock whose program is gone (killed) is stale at once, whatever its age.
    return m_lock->tryLock(0);
}
