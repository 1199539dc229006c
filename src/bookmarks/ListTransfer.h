#pragma once

#include "BookmarkTree.h"

#include <QStringList>

// A favourite list's pages going out to other programs and coming in from them: as an HTML
// bookmarks file (one folder named after the list), as a plain text file of addresses, and as
// whatever text the clipboard holds.
namespace ListTransfer {

struct Page
{
    QString title;
    QString url;
    BookmarkExtras extras = {}; // the page's settings as named values, carried by its bookmark
};

// The list as a bookmark tree: one folder named after the list, its pages in order, each with its
// extras.
BookmarkNode asBookmarks(const QString& listName, const QList<Page>& pages);

// The list's addresses, one a line (LF), as other programs read such files.
QByteArray asText(const QList<Page>& pages);

// The addresses of a plain text file: one a line, "#" comments and blank lines skipped, blanks at
// either end of a line dropped; only web addresses (http, https, ftp), each once, in order.
QStringList addressesOfText(const QByteArray& bytes);

// Every web address in `text` (the clipboard's), wherever it stands among other words, each once,
// in order.
QStringList webAddressesIn(const QString& text);

// The links of a bookmark tree, at any depth, in order: their titles, web addresses and extras,
// each address once (the first link to it counts).
QList<Page> pagesOf(const BookmarkNode& root);

} // namespace ListTransfer
