#pragma once

#include "ScreenPlaces.h"
#include "core/RunError.h"

#include <QList>

// "Screens.conf" in the program folder: the monitor each browsing slot's window is fixed to, an
// INI file of Vantrel's own beside "Vantrel.conf", one group a slot ([Window1] .. [Window8]),
// replaced as a whole and atomically each time it is written. A person can read and mend it:
//   monitor=HDMI-1, manufacturer=..., model=..., serial=...   the monitor as it was chosen
//   place=full-screen, or place=100 50 1280 720                 (x y width height on the monitor)
//   ifMissing=primary, or ifMissing=hidden
//   whenIdle=desktop, black or page, with idlePage=https://...   while no schedule runs there
// A group with neither a monitor nor a choice for its idle time is left out; so is a place that
// cannot be read.
namespace ScreensFile {

inline constexpr char kFileName[] = "Screens.conf";

QString path();

// The slots' places in the file, by slot; none when there is no file.
QList<SlotPlace> read(const QString& path);
RunError write(const QString& path, const QList<SlotPlace>& places);

} // namespace ScreensFile
