#pragma once

#include <QString>

// What a web page says about itself (its title, its address) is the page's to choose, and a page
// may choose millions of characters. Everything the program takes from a page (row captions,
// tags and tool tips, CurrentTitle and CurrentUrl, history entries and so the records written to
// the files) is cut to this length first, so no page can make painting or saving slow.
inline constexpr qsizetype kMaxPageTextLength = 2048;

// `text` cut to kMaxPageTextLength characters, never in the middle of a surrogate pair.
inline QString boundedPageText(const QString& text)
{
    if (text.size() <= kMaxPageTextLength)
        return text;
    qsizetype length = kMaxPageTextLength;
    if (text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length);
}
