#pragma once

#include "RunError.h"

#include <QString>

// Colors.INI: one line of the ten window colours as signed decimal numbers, in the order of
// Globals::colors().
inline constexpr char kColorsFileName[] = "Colors.INI";

// Reads the ten colours from the file's text; values read before an error are kept.
RunError ReadColorsText(const QString& text);

// The line of the file for the current colours (without its line end).
QString FormatColors();

// Reads AppPath/Colors.INI. A missing file shows "Use the Tools Tab to Set Window Colors" and
// keeps the defaults; any other failure shows "Error Loading Application Window Colors".
void LoadColors();

// Writes AppPath/Colors.INI; a failure shows "Error: <number> - <text>". True on success.
bool SaveColors();
