#pragma once

#include "settings/PageSettings.h"

#include <QString>

// The scripts that give a shown page its look: they run in a world of their own, apart from the
// page's scripts, which can neither see nor stop them.
namespace PageLook {

// The zoom factor of a fixed zoom; 0 for none or "fit the width" (measured once the page loaded).
double fixedZoom(const PageSettings& look);

// Whether the page has drawn anything of its own yet (text, an image, a canvas): a page made by
// its scripts is an empty shell when its load ends, until they have fetched and drawn its content.
QString contentProbe();
// Gives back [the page's width, the window's width] in CSS pixels, for fitting one to the other.
QString widthProbe();
// The zoom that fits a page `pageWidth` wide into `viewWidth` at the zoom `current`, in the
// engine's range.
double fitZoom(double pageWidth, double viewWidth, double current);

// Starts the page's scroll from the top: down evenly over `seconds`, one step a frame, stopping at
// the bottom; or to the target. A person's click, key, wheel or touch stops it. "" when the look
// has no scroll.
QString scrollScript(const PageSettings& look, double seconds);

} // namespace PageLook
