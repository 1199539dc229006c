#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringView>

// Named values a link carries for Vantrel alone, such as how the page of a favourite list is shown
// when the list runs. The HTML and XBEL files keep them in attributes that other browsers pass
// over, so that a list exported and imported again keeps its pages' settings. Names are written in
// lower case, without the prefix or namespace the file gives them.
using BookmarkExtras = QList<QPair<QString, QString>>;

// A file is read by anyone's hand: a link with a flood of values, or with one of many megabytes,
// must not cost more than a few settings would.
inline constexpr qsizetype kMaxBookmarkExtras = 16;
inline constexpr qsizetype kMaxBookmarkExtraLength = 1000;
inline constexpr qsizetype kMaxBookmarkExtraNameLength = 64;

// The name of an extra as it is kept, from the part of an attribute's name after the prefix: in
// lower case, a letter, then letters, digits, "-", "_" or "."; such a name can stand in the
// attributes of HTML and of XML alike. Empty when `raw` cannot be such a name.
inline QString bookmarkExtraName(QStringView raw)
{
    if (raw.isEmpty() || raw.size() > kMaxBookmarkExtraNameLength)
        return QString();
    QString name;
    name.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size(); ++i) {
        char16_t c = raw[i].unicode();
        if (c >= u'A' && c <= u'Z')
            c = char16_t(c - u'A' + u'a');
        const bool letter = c >= u'a' && c <= u'z';
        const bool other = (c >= u'0' && c <= u'9') || c == u'-' || c == u'_' || c == u'.';
        if (!letter && (i == 0 || !other))
            return QString();
        name += QChar(c);
    }
    return name;
}

// Adds the value to `extras` when there is room for it: not past the number a link may carry, not
// longer than a value may be, and not under a name already there (as with any attribute written
// twice, the first counts). `rawName` is read as bookmarkExtraName() reads it. Whether it was added.
inline bool addBookmarkExtra(BookmarkExtras& extras, QStringView rawName, const QString& value)
{
    if (extras.size() >= kMaxBookmarkExtras || value.size() > kMaxBookmarkExtraLength)
        return false;
    const QString name = bookmarkExtraName(rawName);
    if (name.isEmpty())
        return false;
    for (const auto& extra : extras)
        if (extra.first == name)
            return false;
    extras.append({name, value});
    return true;
}

// What a reader would keep of `extras`, in their order. The writers write no more than that, so
// that a file Vantrel wrote reads back as the tree it was written from.
inline BookmarkExtras boundedBookmarkExtras(const BookmarkExtras& extras)
{
    BookmarkExtras kept;
    for (const auto& [name, value] : extras)
        addBookmarkExtra(kept, name, value);
    return kept;
}
