#include "WindowDoorHost.h"

#include "Vantrel1.h"
#include "desktop/StartupActivation.h"

#include <QComboBox>
#include <QGuiApplication>

void WindowDoorHost::raise(const QString& activationToken)
{
    if (!m_window)
        return;
    // Under Wayland the window may take the focus only with the token the desktop gave the start
    // that asked; Qt hands the one in the environment over with the next activation.
    if (!activationToken.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    if (m_window->isMinimized())
        m_window->showNormal();
    m_window->show();
    m_window->raise();
    // Under X11 the start's startup id carries the time of the person's request; without it a
    // window manager that prevents focus stealing may only mark the window as wanting attention.
    if (!StartupActivation::activate(m_window->windowHandle(), activationToken))
        m_window->activateWindow();
}

void WindowDoorHost::quit(bool discard)
{
    if (m_window)
        m_window->unloadFromOutside(discard);
}

bool WindowDoorHost::runStartupList()
{
    if (!m_window || m_window->CMBLIST()->currentIndex() < 0)
        return false;
    m_window->StartStartupList();
    return true;
}
