#pragma once

#include <QString>
#include <QStringView>

#include <optional>

// The character references in the text and attribute values of the HTML bookmarks file, read as a
// browser reads them. The file's tokenizer finds where a text or value stands; this reads what it
// says.
namespace NetscapeBookmarks::References {

// The value of an ASCII digit in `base` (10 or 16); -1 for anything else.
inline int digitValue(QChar c, int base)
{
    if (c >= u'0' && c <= u'9')
        return c.unicode() - u'0';
    if (base == 16 && c >= u'a' && c <= u'f')
        return c.unicode() - u'a' + 10;
    if (base == 16 && c >= u'A' && c <= u'F')
        return c.unicode() - u'A' + 10;
    return -1;
}

// The text a character reference stands for, from what is between its "&" and ";". A number
// that names no character (0, a surrogate, past U+10FFFF) gives the replacement character, as in a
// browser.
inline std::optional<QString> referenced(QStringView name)
{
    if (name.startsWith(u'#')) {
        QStringView digits = name.sliced(1);
        int base = 10;
        if (!digits.isEmpty() && (digits.front() == u'x' || digits.front() == u'X')) {
            base = 16;
            digits = digits.sliced(1);
        }
        if (digits.isEmpty())
            return std::nullopt;
        char32_t value = 0;
        for (QChar c : digits) {
            const int digit = digitValue(c, base);
            if (digit < 0)
                return std::nullopt;
            value = qMin<char32_t>(value * char32_t(base) + char32_t(digit), 0x110000);
        }
        if (value == 0 || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            value = 0xFFFD;
        return QString::fromUcs4(&value, 1);
    }
    // The names the browsers write, and the capitals that HTML accepts for the first four.
    static const struct
    {
        QStringView name;
        char16_t character;
    } kNames[] = {
        {u"amp", u'&'},  {u"lt", u'<'},  {u"gt", u'>'},  {u"quot", u'"'},  {u"apos", u'\''},
        {u"AMP", u'&'},  {u"LT", u'<'},  {u"GT", u'>'},  {u"QUOT", u'"'},  {u"nbsp", u'\u00A0'},
    };
    for (const auto& entry : kNames)
        if (name == entry.name)
            return QString(QChar(entry.character));
    return std::nullopt;
}

// Text with its character references replaced. An "&" that starts no reference the reader knows
// stays as written: addresses hold raw "&" between the parts of their query.
inline QString decoded(QStringView raw)
{
    if (!raw.contains(u'&'))
        return raw.toString();
    // "&#x0010FFFF;" is the longest reference worth decoding; looking no further for the ";"
    // keeps a text full of "&" from being searched over and over.
    constexpr qsizetype kLongestName = 12;
    QString out;
    out.reserve(raw.size());
    qsizetype i = 0;
    while (i < raw.size()) {
        const QChar c = raw[i];
        if (c == u'&') {
            const QStringView rest = raw.sliced(i + 1, qMin(raw.size() - i - 1, kLongestName + 1));
            const qsizetype semicolon = rest.indexOf(u';');
            if (semicolon > 0) {
                if (const std::optional<QString> text = referenced(rest.first(semicolon))) {
                    out += *text;
                    i += semicolon + 2;
                    continue;
                }
            }
        }
        out += c;
        ++i;
    }
    return out;
}

} // namespace NetscapeBookmarks::References
