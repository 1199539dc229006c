#pragma once

#include "bookmarks/BookmarkTree.h"

#include <QString>

// Firefox's bookmarks, in the SQLite database places.sqlite of its profile folder: the table
// moz_bookmarks holds every bookmark (type 1), folder (type 2) and separator (type 3) with its
// parent folder and its position there; a bookmark's address is in the row of moz_places its fk
// names. The folders Firefox shows at the top are known by their guid. Vantrel only reads it, to
// take bookmarks over.
namespace FirefoxPlaces {

// The tree in the database `placesFile`. A running Firefox locks the database and keeps its latest
// changes in "places.sqlite-wal" beside it, so the file and that log are copied to a temporary
// folder and the copy is read: the user's files are never opened for writing, and changes Firefox
// has not yet written into the database itself are seen.
//
// The top folders become folders titled as Firefox shows them, "Bookmarks Menu", "Bookmarks
// Toolbar", "Other Bookmarks" and "Mobile Bookmarks", in that order; one with nothing in it is left
// out, and so are the tags (kept as folders of their own, beside the others). Children come in the
// order of their positions. A bookmark whose address is missing is skipped; addresses that are no
// web address (place:, javascript:) are kept as they are. What the tree has no room for (dates,
// keywords, tags, icons) is left behind.
//
// Problems: a file that cannot be read; one that is no SQLite database or lacks Firefox's tables;
// a damaged database (what was read before the damage is kept); folders nested deeper than
// kMaxBookmarkDepth or held in a circle by their parent links (the reading stops there, keeping
// what was read); and Qt's SQLite driver not being installed.
BookmarkRead read(const QString& placesFile);

} // namespace FirefoxPlaces
