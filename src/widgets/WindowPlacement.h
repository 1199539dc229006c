#pragma once

class QWidget;

// Where the program's windows go on the desktop.

// Keeps a window whole on its screen: its frame (title bar included) is moved inside the screen's
// available area, as far as it fits; a window larger than the area keeps its top left corner in
// it, so its title bar can always be reached.
void keepOnScreen(QWidget* window);

// Makes `window` come up in front of its owner (the window of `owner`): it is owned by it, and when
// the owner stays on top of other windows, so does it; otherwise it would open behind. Call it
// before showing the window.
void keepAboveOwner(QWidget* window, QWidget* owner);

// The program's main window, when it exists.
QWidget* programMainWindow();
