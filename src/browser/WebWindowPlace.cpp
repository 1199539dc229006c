// Where a browser window stands and how: shown or hidden, theater view, its place on the
// monitors, black with nothing shown, and where the system says it is.
#include "WebBrowserWindow.h"

#include "BrowserFrame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

void WebBrowserWindow::setVisible(bool visible)
{
    if (!m_frame)
        return;
    ++m_showing; // shown or hidden on purpose: a first page still loading no longer decides
    if (visible)
        m_frame->showInMode();
    else
        m_frame->hide();
}

bool WebBrowserWindow::isVisible() const
{
    return m_frame && m_frame->isVisible();
}

void WebBrowserWindow::setTheaterMode(bool on)
{
    if (m_frame)
        m_frame->setTheaterMode(on);
}

bool WebBrowserWindow::theaterMode() const
{
    return m_frame && m_frame->theaterMode();
}

void WebBrowserWindow::setPlace(const WindowPlace& place)
{
    BrowserWindow::setPlace(place);
    if (m_frame)
        m_frame->setPlace(place);
}

void WebBrowserWindow::setBlackedOut(bool on)
{
    BrowserWindow::setBlackedOut(on);
    if (m_frame)
        m_frame->setBlackedOut(on);
}

QString WebBrowserWindow::monitor() const
{
    // Where the system says the window is, not where it was asked to go: under X11 the monitor
    // under the middle of the window as the X server placed it; under Wayland, where a window
    // knows no position, the output the compositor says its surface is on.
    if (!m_frame || !m_frame->isVisible() || m_frame->isOffScreen() || !m_frame->windowHandle())
        return QString();
    const QScreen* screen = QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
                                ? m_frame->windowHandle()->screen()
                                : QGuiApplication::screenAt(m_frame->geometry().center());
    return screen ? screen->name() : QString();
}

bool WebBrowserWindow::isFullScreen() const
{
    return m_frame && m_frame->isVisible() && !m_frame->isOffScreen() && m_frame->isFullScreen();
}
