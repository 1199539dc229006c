#include "ScreenAwake.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>

namespace {
const QString kService = QStringLiteral("org.freedesktop.ScreenSaver");
// Desktops publish the service under either path.
const QStringList kPaths = {QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("/ScreenSaver")};
} // namespace

ScreenAwake::~ScreenAwake()
{
    release();
}

bool ScreenAwake::hold(const QString& reason, QString* why)
{
    if (m_held)
        return true;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        if (why)
            *why = QStringLiteral("no session bus (%1)").arg(bus.lastError().message());
        return false;
    }
    QString error = QStringLiteral("the desktop offers no %1 service").arg(kService);
    for (const QString& path : kPaths) {
        QDBusInterface saver(kService, path, kService, bus);
        const QDBusReply<uint> cookie = saver.call(QStringLiteral("Inhibit"), QStringLiteral("Vantrel"), reason);
        if (cookie.isValid()) {
            m_cookie = cookie.value();
            m_path = path;
            m_held = true;
            return true;
        }
        error = cookie.error().message();
    }
    if (why)
        *why = error;
    return false;
}

void ScreenAwake::release()
{
    if (!m_held)
        return;
    m_held = false;
    QDBusInterface saver(kService, m_path, kService, QDBusConnection::sessionBus());
    saver.call(QStringLiteral("UnInhibit"), m_cookie);
}
