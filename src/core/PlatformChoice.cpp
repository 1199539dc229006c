#include "PlatformChoice.h"

namespace PlatformChoice {

QByteArray choose(const QProcessEnvironment& environment)
{
    if (environment.contains(QStringLiteral("QT_QPA_PLATFORM")))
        return {}; // the user's choice
    const bool wayland = !environment.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty() ||
                         environment.value(QStringLiteral("XDG_SESSION_TYPE")) == QLatin1String("wayland");
    const bool x11Offered = !environment.value(QStringLiteral("DISPLAY")).isEmpty();
    return wayland && x11Offered ? QByteArrayLiteral("xcb") : QByteArray();
}

void apply()
{
    const QByteArray platform = choose(QProcessEnvironment::systemEnvironment());
    if (!platform.isEmpty())
        qputenv("QT_QPA_PLATFORM", platform);
}

} // namespace PlatformChoice
