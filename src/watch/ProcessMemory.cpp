#include "ProcessMemory.h"

#include <QFile>

namespace ProcessMemory {

qint64 residentBytes(qint64 pid)
{
    if (pid <= 0)
        return 0;
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    // A few dozen short lines. A file of /proc tells no size: it is read until it ends.
    for (const QByteArray& text : status.read(64 * 1024).split('\n')) {
        if (!text.startsWith("VmRSS:"))
            continue;
        const QList<QByteArray> parts = text.mid(6).simplified().split(' ');
        bool ok = false;
        const qint64 kilobytes = parts.value(0).toLongLong(&ok);
        return ok && kilobytes >= 0 && parts.value(1) == "kB" ? kilobytes * 1024 : 0;
    }
    return 0;
}

} // namespace ProcessMemory

PageMemoryGuard::Verdict PageMemoryGuard::look(qint64 bytes, qint64 limit, bool hidden, const QDateTime& now)
{
    if (!hidden)
        m_reloadedWhileHidden = false;
    if (limit <= 0 || bytes <= limit) {
        m_overSince = QDateTime();
        return Verdict::Fine;
    }
    const bool newly = !m_overSince.isValid();
    if (newly)
        m_overSince = now;
    if (hidden ? !m_reloadedWhileHidden : m_overSince.secsTo(now) >= kShownOverLimitSeconds) {
        m_overSince = QDateTime();
        m_reloadedWhileHidden = hidden;
        return Verdict::Reload;
    }
    return newly ? Verdict::OverLimit : Verdict::StillOver;
}
