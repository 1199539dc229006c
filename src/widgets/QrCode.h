#pragma once

#include <QImage>
#include <QString>

// A QR code of a text (an address to open on a phone), made by Debian's libqrencode: dark
// modules on white with the quiet zone of four modules the standard asks for, each module
// `scale` pixels wide. A null image when the text does not fit in a QR code.
namespace QrCode {

QImage image(const QString& text, int scale = 4);

// The modules across, without the quiet zone (0 when the text does not fit).
int modules(const QString& text);

} // namespace QrCode
