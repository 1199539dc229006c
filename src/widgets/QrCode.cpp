#include "QrCode.h"

#include <QPainter>

#include <qrencode.h>

#include <memory>

namespace QrCode {

namespace {

constexpr int kQuietZone = 4;

std::unique_ptr<QRcode, void (*)(QRcode*)> encode(const QString& text)
{
    return {QRcode_encodeString(text.toUtf8().constData(), 0, QR_ECLEVEL_M, QR_MODE_8, 1), &QRcode_free};
}

} // namespace

int modules(const QString& text)
{
    const auto code = encode(text);
    return code ? code->width : 0;
}

QImage image(const QString& text, int scale)
{
    const auto code = encode(text);
    if (!code)
        return {};
    const int side = (code->width + 2 * kQuietZone) * scale;
    QImage picture(side, side, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int y = 0; y < code->width; ++y)
        for (int x = 0; x < code->width; ++x)
            if (code->data[y * code->width + x] & 1) // the low bit is the module's colour
                painter.fillRect((x + kQuietZone) * scale, (y + kQuietZone) * scale, scale, scale, Qt::black);
    return picture;
}

} // namespace QrCode
