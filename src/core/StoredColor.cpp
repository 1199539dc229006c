#include "StoredColor.h"

namespace StoredColor {

namespace {

constexpr uint32_t kSystemBit = 0x80000000u;

// The desktop colour numbers in their classic order, each with the palette entry that plays the
// same part in a Qt theme.
struct Entry
{
    int index;
    QPalette::ColorGroup group;
    QPalette::ColorRole role;
};

constexpr Entry kSystemColors[] = {
    {0, QPalette::Active, QPalette::Button},           // scroll bar
    {1, QPalette::Active, QPalette::Window},           // desktop
    {2, QPalette::Active, QPalette::Highlight},        // active title bar
    {3, QPalette::Active, QPalette::Mid},              // inactive title bar
    {4, QPalette::Active, QPalette::Window},           // menu
    {5, QPalette::Active, QPalette::Base},             // window
    {6, QPalette::Active, QPalette::Shadow},           // window frame
    {7, QPalette::Active, QPalette::WindowText},       // menu text
    {8, QPalette::Active, QPalette::WindowText},       // window text
    {9, QPalette::Active, QPalette::HighlightedText},  // title bar text
    {10, QPalette::Active, QPalette::Button},          // active border
    {11, QPalette::Active, QPalette::Button},          // inactive border
    {12, QPalette::Active, QPalette::Mid},             // application workspace
    {13, QPalette::Active, QPalette::Highlight},       // highlight
    {14, QPalette::Active, QPalette::HighlightedText}, // highlighted text
    {15, QPalette::Active, QPalette::Button},          // button face
    {16, QPalette::Active, QPalette::Dark},            // button shadow
    {17, QPalette::Disabled, QPalette::Text},          // grey text
    {18, QPalette::Active, QPalette::ButtonText},      // button text
    {19, QPalette::Disabled, QPalette::WindowText},    // inactive title bar text
    {20, QPalette::Active, QPalette::Light},           // button highlight
    {21, QPalette::Active, QPalette::Shadow},          // 3D dark shadow
    {22, QPalette::Active, QPalette::Midlight},        // 3D light
    {23, QPalette::Active, QPalette::ToolTipText},     // tool tip text
    {24, QPalette::Active, QPalette::ToolTipBase},     // tool tip background
    {26, QPalette::Active, QPalette::Link},            // hot-tracked item
    {27, QPalette::Active, QPalette::Highlight},       // active title bar gradient
    {28, QPalette::Active, QPalette::Mid},             // inactive title bar gradient
    {29, QPalette::Active, QPalette::Highlight},       // menu highlight
    {30, QPalette::Active, QPalette::Window},          // menu bar
};

} // namespace

bool isSystemColor(int32_t value)
{
    return (uint32_t(value) & kSystemBit) != 0;
}

std::optional<SystemRole> systemRole(int32_t value)
{
    const uint32_t v = uint32_t(value);
    if (!(v & kSystemBit) || (v & 0x7FFFFF00u))
        return std::nullopt;
    const int index = int(v & 0xFF);
    for (const Entry& e : kSystemColors)
        if (e.index == index)
            return SystemRole{e.group, e.role};
    return std::nullopt;
}

QColor resolve(int32_t value, const QPalette& palette)
{
    if (isSystemColor(value)) {
        const auto role = systemRole(value);
        return role ? palette.color(role->group, role->role) : QColor();
    }
    const uint32_t v = uint32_t(value);
    if (v > 0xFFFFFFu)
        return QColor();
    return QColor(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF));
}

int32_t fromColor(const QColor& color)
{
    const QColor rgb = color.toRgb();
    return int32_t(uint32_t(rgb.red()) | (uint32_t(rgb.green()) << 8) | (uint32_t(rgb.blue()) << 16));
}

} // namespace StoredColor
