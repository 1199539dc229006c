#pragma once

#include <QString>

// DefaultBtns.BLS: captions and addresses of the quick-access page buttons, one line per assigned
// button: number, "[^^]", caption, "[||]", address. Commas are written as "~" and, unlike the list
// and history files, never turned back: a comma comes back as "~" after a save and a restart.
inline constexpr char kButtonFileName[] = "DefaultBtns.BLS";

// Empties BtnTitle and BtnUrl 0..32 (element 33 is left as it is).
void ClearButtons();

// Fills BtnTitle/BtnUrl from the file's text. The load ends at a line without "[^^]" or "[||]"
// and at a button number outside 0..33; earlier lines stay loaded. True when every line was read.
bool ParseButtonText(const QString& text);

// Clears the buttons and reads the file; a missing file leaves every button empty.
bool LoadButtonFile(const QString& path);

// Writes one line per button 0..32 whose caption is not blank, in button order. On success
// ButtonsChanged becomes false; a failure shows "Save Error - ..." and leaves ButtonsChanged and
// the file as they were.
bool SaveButtonFile(const QString& path);
