#pragma once

#include <QString>

class QWindow;

// A window raised for a start the desktop launched: the start's startup id (DESKTOP_STARTUP_ID,
// "..._TIME<server time>") says when the person asked, and X11 window managers that prevent focus
// stealing let a window come forward only for a request at least that recent. Under Wayland the
// activation token does that job, handed over by Qt itself.
namespace StartupActivation {

// The X server time in a startup id, 0 when it carries none.
quint32 timeOf(const QString& startupId);

// On X11, brings `window` forward with the startup id's time as the person's own request: the
// window's user time is set to it, the window manager is asked to activate it with that time, and
// the launcher's startup feedback is ended. False when this is not X11 or `startupId` is no id.
bool activate(QWindow* window, const QString& startupId);

} // namespace StartupActivation
