#pragma once

#include <QByteArray>
#include <QProcessEnvironment>

// Which display platform the program asks Qt for. Under Wayland the compositor owns window
// placement, keeping a window on top and hiding other windows, so the options for them would do
// nothing there: when the session also offers X11 compatibility (XWayland: DISPLAY is set) and the
// user chose no platform (QT_QPA_PLATFORM unset), the program runs through it, so that everything
// behaves as on X11. Otherwise Qt's own choice stands.
namespace PlatformChoice {

// "xcb" when the program should run through XWayland; empty to leave the choice to Qt.
QByteArray choose(const QProcessEnvironment& environment);

// Applies choose() to this process, before the application object exists.
void apply();

} // namespace PlatformChoice
