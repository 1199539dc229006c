#include "Twips.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace {
double logicalDpi()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
    return dpi > 0 ? dpi : 96.0;
}
} // namespace

int twipsToPixels(int twips)
{
    return int(std::lround(twips * logicalDpi() / 1440.0));
}

int pixelsToTwips(int pixels)
{
    return int(std::lround(pixels * 1440.0 / logicalDpi()));
}

QRect twipsRect(int left, int top, int width, int height)
{
    return QRect(twipsToPixels(left), twipsToPixels(top), std::max(0, twipsToPixels(width)),
                 std::max(0, twipsToPixels(height)));
}
