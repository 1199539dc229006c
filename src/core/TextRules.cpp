#include "TextRules.h"

#include <cmath>
#include <limits>

namespace TextRules {

QString trimSpaces(const QString& text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin] == u' ')
        ++begin;
    while (end > begin && text[end - 1] == u' ')
        --end;
    return text.mid(begin, end - begin);
}

namespace {

bool isIgnoredByVal(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n';
}

int digitValue(QChar c, int base)
{
    int d = -1;
    if (c >= u'0' && c <= u'9')
        d = c.unicode() - u'0';
    else if (c >= u'a' && c <= u'f')
        d = c.unicode() - u'a' + 10;
    else if (c >= u'A' && c <= u'F')
        d = c.unicode() - u'A' + 10;
    return d < base ? d : -1;
}

// Reads a radix number after "&H" or "&O"; its value is a 16- or 32-bit two's complement.
double radixValue(const QString& digits, int base)
{
    quint64 v = 0;
    for (QChar c : digits) {
        const int d = digitValue(c, base);
        if (d < 0)
            break;
        v = v * quint64(base) + quint64(d);
        if (v > 0xFFFFFFFFull)
            return std::numeric_limits<double>::infinity();
    }
    if (v <= 0xFFFF)
        return v >= 0x8000 ? double(qint64(v) - 0x10000) : double(v);
    return double(qint32(quint32(v)));
}

// The longest prefix of `s` that forms a decimal number: [sign] digits [. digits] [E|D [sign] digits].
qsizetype decimalPrefix(const QString& s)
{
    qsizetype i = 0;
    const qsizetype n = s.size();
    if (i < n && (s[i] == u'+' || s[i] == u'-'))
        ++i;
    qsizetype mantissaDigits = 0;
    while (i < n && s[i].isDigit() && s[i].unicode() < 128)
        ++i, ++mantissaDigits;
    if (i < n && s[i] == u'.') {
        ++i;
        while (i < n && s[i].isDigit() && s[i].unicode() < 128)
            ++i, ++mantissaDigits;
    }
    if (mantissaDigits == 0)
        return 0;
    if (i < n && (s[i] == u'e' || s[i] == u'E' || s[i] == u'd' || s[i] == u'D')) {
        qsizetype j = i + 1;
        if (j < n && (s[j] == u'+' || s[j] == u'-'))
            ++j;
        const qsizetype expStart = j;
        while (j < n && s[j].isDigit() && s[j].unicode() < 128)
            ++j;
        if (j > expStart)
            i = j;
    }
    return i;
}

double toDouble(QString number)
{
    number.replace(u'd', u'e').replace(u'D', u'e');
    bool ok = false;
    const double v = number.toDouble(&ok);
    return ok ? v : 0.0;
}

// "&H1F" or "&O17" with at least one digit; the digits part is returned in `digits`.
bool radixToken(const QString& s, int* base, QString* digits)
{
    if (s.size() < 3 || s[0] != u'&')
        return false;
    const QChar kind = s[1].toUpper();
    if (kind != u'H' && kind != u'O')
        return false;
    *base = kind == u'H' ? 16 : 8;
    *digits = s.mid(2);
    return true;
}

} // namespace

double val(const QString& text)
{
    QString s;
    s.reserve(text.size());
    for (QChar c : text)
        if (!isIgnoredByVal(c))
            s += c;
    int base = 0;
    QString digits;
    if (radixToken(s, &base, &digits))
        return radixValue(digits, base);
    const qsizetype len = decimalPrefix(s);
    return len ? toDouble(s.left(len)) : 0.0;
}

namespace {

template <typename T> std::optional<T> roundChecked(double value, RunError* error)
{
    const double rounded = std::nearbyint(value); // the default rounding mode sends halves to even
    if (!std::isfinite(rounded) || rounded < double(std::numeric_limits<T>::min()) ||
        rounded > double(std::numeric_limits<T>::max())) {
        if (error)
            *error = RunError::Overflow;
        return std::nullopt;
    }
    return T(rounded);
}

} // namespace

std::optional<int> toInteger(double value, RunError* error)
{
    auto v = roundChecked<int16_t>(value, error);
    return v ? std::optional<int>(*v) : std::nullopt;
}

std::optional<int32_t> toLong(double value, RunError* error)
{
    return roundChecked<int32_t>(value, error);
}

std::optional<double> parseNumberToken(const QString& token, RunError* error)
{
    if (token.isEmpty())
        return 0.0;
    int base = 0;
    QString digits;
    if (radixToken(token, &base, &digits)) {
        bool allDigits = !digits.isEmpty();
        for (QChar c : digits)
            allDigits = allDigits && digitValue(c, base) >= 0;
        if (allDigits)
            return radixValue(digits, base);
    } else if (decimalPrefix(token) == token.size()) {
        return toDouble(token);
    }
    if (error)
        *error = RunError::TypeMismatch;
    return std::nullopt;
}

QStringView stripEnclosingQuotes(QStringView line)
{
    if (line.size() >= 2 && line.front() == u'"' && line.back() == u'"')
        return line.sliced(1, line.size() - 2);
    return line;
}

QString stripEnclosingQuotes(const QString& line)
{
    return stripEnclosingQuotes(QStringView(line)).toString();
}

QStringList inputLines(const QString& text)
{
    QStringList lines;
    forEachInputLine(text, [&](QStringView line) {
        lines.append(line.toString());
        return true;
    });
    return lines;
}

QString printNumber(qint64 value)
{
    return (value < 0 ? QString() : QStringLiteral(" ")) + QString::number(value) + u' ';
}

} // namespace TextRules
