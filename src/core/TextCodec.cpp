#include "TextCodec.h"

#include <QStringDecoder>

namespace TextCodec {

namespace {

// Windows-1252 differs from Latin-1 only in 0x80..0x9F. The five bytes the code page leaves
// undefined keep their C1 control characters, so they survive a round trip.
const char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool startsWith(const QByteArray& bytes, std::initializer_list<unsigned char> prefix)
{
    if (bytes.size() < qsizetype(prefix.size()))
        return false;
    qsizetype i = 0;
    for (unsigned char c : prefix)
        if (static_cast<unsigned char>(bytes[i++]) != c)
            return false;
    return true;
}

} // namespace

QString decodeWindows1252(const QByteArray& bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar* dst = out.data();
    for (char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        *dst++ = (b >= 0x80 && b <= 0x9F) ? QChar(kHighControls[b - 0x80]) : QChar(b);
    }
    return out;
}

QString decode(const QByteArray& bytes)
{
    QByteArrayView view(bytes);
    if (startsWith(bytes, {0xEF, 0xBB, 0xBF}))
        view = view.sliced(3);
    QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = utf8.decode(view);
    if (!utf8.hasError())
        return text;
    return decodeWindows1252(view.toByteArray());
}

QString decodeWithUtf16(const QByteArray& bytes)
{
    if (startsWith(bytes, {0xFF, 0xFE}) || startsWith(bytes, {0xFE, 0xFF})) {
        QStringDecoder utf16(QStringConverter::Utf16); // reads and drops the byte-order mark
        return utf16.decode(bytes);
    }
    return decode(bytes);
}

QByteArray encode(const QString& text)
{
    return text.toUtf8();
}

QStringList splitLines(const QString& text)
{
    QStringList lines;
    const qsizetype n = text.size();
    qsizetype start = 0;
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text[i];
        if (c != u'\r' && c != u'\n')
            continue;
        lines.append(text.mid(start, i - start));
        if (c == u'\r' && i + 1 < n && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < n)
        lines.append(text.mid(start));
    return lines;
}

QString joinLines(const QStringList& lines)
{
    QString out;
    qsizetype total = 0;
    for (const QString& line : lines)
        total += line.size() + 2;
    out.reserve(total);
    for (const QString& line : lines) {
        out += line;
        out += QLatin1String("\r\n");
    }
    return out;
}

} // namespace TextCodec
