#include "FileName.h"

#include <utility>

namespace FileName {

namespace {

constexpr char16_t kEscapeBase = 0xDC00; // a raw byte b travels as U+DC00 + b (b >= 0x80)

bool isEscape(char16_t c)
{
    return c >= 0xDC80 && c <= 0xDCFF;
}

// The length of the valid UTF-8 sequence at `p` (1 to 4), 0 when it is not one.
int validSequenceLength(const unsigned char* p, const unsigned char* end)
{
    const unsigned char b = p[0];
    if (b < 0x80)
        return 1;
    int length = 0;
    char32_t min = 0;
    char32_t cp = 0;
    if ((b & 0xE0) == 0xC0) {
        length = 2, min = 0x80, cp = b & 0x1F;
    } else if ((b & 0xF0) == 0xE0) {
        length = 3, min = 0x800, cp = b & 0x0F;
    } else if ((b & 0xF8) == 0xF0) {
        length = 4, min = 0x10000, cp = b & 0x07;
    } else {
        return 0;
    }
    if (end - p < length)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (p[i] & 0x3F);
    }
    // Overlong forms, encoded surrogates and values past Unicode are no characters.
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    return length;
}

// The number of bytes the character starting at index i of `s` takes on the file system, and the
// number of UTF-16 units it spans.
std::pair<int, int> characterAt(const QString& s, qsizetype i)
{
    const char16_t c = s.at(i).unicode();
    if (c < 0x80)
        return {1, 1};
    if (isEscape(c))
        return {1, 1};
    if (QChar::isHighSurrogate(c) && i + 1 < s.size() && QChar::isLowSurrogate(s.at(i + 1).unicode()))
        return {4, 2};
    if (c < 0x800)
        return {2, 1};
    return {3, 1}; // includes a lone surrogate, written as U+FFFD
}

} // namespace

QString decode(const QByteArray& raw)
{
    if (QByteArrayView(raw).isValidUtf8())
        return QString::fromUtf8(raw);
    QString out;
    out.reserve(raw.size());
    const auto* p = reinterpret_cast<const unsigned char*>(raw.constData());
    const auto* end = p + raw.size();
    while (p < end) {
        const int length = validSequenceLength(p, end);
        if (length == 0) {
            out.append(QChar(char16_t(kEscapeBase + *p)));
            ++p;
            continue;
        }
        out.append(QString::fromUtf8(reinterpret_cast<const char*>(p), length));
        p += length;
    }
    return out;
}

bool hasRawBytes(const QString& name)
{
    for (QChar c : name)
        if (isEscape(c.unicode()))
            return true;
    return false;
}

QByteArray encode(const QString& name)
{
    if (!hasRawBytes(name))
        return name.toUtf8();
    QByteArray out;
    out.reserve(name.size() * 2);
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name.at(i).unicode();
        if (!isEscape(c))
            continue;
        out.append(QStringView(name).sliced(runStart, i - runStart).toUtf8());
        out.append(char(c - kEscapeBase));
        runStart = i + 1;
    }
    out.append(QStringView(name).sliced(runStart).toUtf8());
    return out;
}

QString cutToBytes(const QString& name, qsizetype maxBytes)
{
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < name.size();) {
        const auto [size, units] = characterAt(name, i);
        if (bytes + size > maxBytes)
            return name.left(i);
        bytes += size;
        i += units;
    }
    return name;
}

} // namespace FileName
