#pragma once

#include "RunError.h"

#include <QString>
#include <QStringList>

// Options.INI: four lines of values, not a profile file. Line 1: MainLeft, MainTop, MainHeight,
// MainWidth, FontType, StartListIndex; line 2: OptBold, OptStartUrl, OptStartList, OptTheater,
// OptOnTop as 1 or 0; line 3: StartUrl; line 4: NewWindowUrl.
inline constexpr char kOptionsFileName[] = "Options.INI";

// Reads the options from the file's text into the shared options. Values read before an error
// are kept; the out-of-range corrections are made only after a complete read.
RunError ReadOptionsText(const QString& text);

// The four lines of the file for the current options.
QStringList FormatOptions();

// Reads AppPath/Options.INI. A missing file shows "Use the Utility Menu Option - Set Program
// Options" and keeps the defaults; any other failure shows "Error Loading Application Options".
void LoadOptions();

// Writes AppPath/Options.INI; a failure shows "Error: <number> - <text>". True on success.
bool SaveOptions();
