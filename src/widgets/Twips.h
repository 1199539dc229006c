#pragma once

#include <QRect>

// The program keeps positions and sizes in twips (1/1440 inch), as its options file always has;
// on screen they become pixels at the screen's logical resolution (15 twips a pixel at 96 DPI).
int twipsToPixels(int twips);
int pixelsToTwips(int pixels);
// A rectangle given in twips, in pixels; a negative width or height becomes 0.
QRect twipsRect(int left, int top, int width, int height);
