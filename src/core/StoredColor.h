#pragma once

#include <QColor>
#include <QPalette>

#include <cstdint>
#include <optional>

// A colour as the colours file stores it: 0x00BBGGRR for red, green and blue, or, with the top bit
// set, 0x800000nn for the desktop's colour number nn (8 window text, 18 button text, ...). A system
// colour is looked up in the palette each time it is applied, so it follows the desktop theme.
namespace StoredColor {

struct SystemRole
{
    QPalette::ColorGroup group;
    QPalette::ColorRole role;
};

// Whether the value refers to a desktop colour rather than holding red, green and blue.
bool isSystemColor(int32_t value);

// The palette entry a system colour refers to; none for an unknown colour number.
std::optional<SystemRole> systemRole(int32_t value);

// The colour the value stands for in `palette`; an invalid QColor when it names no colour.
QColor resolve(int32_t value, const QPalette& palette);

// The stored value of an RGB colour (alpha is dropped).
int32_t fromColor(const QColor& color);

} // namespace StoredColor
