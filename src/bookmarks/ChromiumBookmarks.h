#pragma once

#include "bookmarks/BookmarkTree.h"

#include <QByteArray>

// The "Bookmarks" file in the profile folder of the browsers built on Chromium: JSON whose object
// "roots" holds the three folders the browser shows at the top ("bookmark_bar", "other",
// "synced"), each node with its "type" ("url" or "folder"), "name", "url" and "children".
// Vantrel only reads it, to take bookmarks over; the browser keeps a checksum of its own over it.
namespace ChromiumBookmarks {

// The tree in the file's bytes: the three roots become folders titled as the browsers show them,
// "Bookmarks bar", "Other bookmarks" and "Mobile bookmarks", in that order; a root with nothing in
// it is left out. Nodes of another type, and what the tree has no room for (dates, ids, meta
// information), are skipped. JSON that cannot be parsed gives a problem with the parser's reason
// and nothing read; so does JSON without the "roots" object.
BookmarkRead read(const QByteArray& bytes);

} // namespace ChromiumBookmarks
