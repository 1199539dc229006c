#pragma once

#include <QString>

// What a screen reader hears from the program's own controls. Qt describes a checkable push
// button as a check box and a read-only line edit as text; the gradient button keeps its state in
// the checked state and the colour swatch is a line edit that only opens a dialog, so both would
// announce the wrong thing. Installed once, before the first window, it makes the gradient button
// a push button (a toggle button when it is a two-state one, pressed in when its state value says
// so), the colour swatch a push button that names its colour, and the tab strip the group around
// its tab bar, which takes its keyboard stop. The main window installs it
// before it makes its first control.
void installAccessibleControls();

// The caption as a screen reader says it: mnemonic ampersands taken out, "&&" kept as "&".
QString spokenCaption(const QString& caption);
