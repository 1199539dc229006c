#pragma once

#include "BookmarkTree.h"
#include "InstalledBrowsers.h"

// Bookmark files as the user picks them: read whichever of the browsers' formats a file is in, and
// written in the format its name asks for.
namespace BookmarkFiles {

enum class Format { Html, Xbel, Chromium, FirefoxPlaces };

// A bookmarks file larger than this is no browser's: it is refused before it is read whole.
inline constexpr qint64 kMaxFileBytes = 256 * 1024 * 1024;

// The format the bytes are in, by what they begin with: an SQLite database is Firefox's
// places.sqlite, a JSON object is the Chromium family's Bookmarks file, an XML document whose
// outermost element is <xbel> is XBEL, anything else is read as the HTML bookmarks file (which
// says plainly when it is not one).
Format formatOf(const QByteArray& bytes);

// The tree in the file at `path`, in whichever format it is: a places.sqlite picked by hand is
// read as from Firefox's profile. A file that cannot be read gives a problem with the system's
// reason and an empty tree.
BookmarkRead read(const QString& path);

// The bookmarks of a browser's profile: Firefox's from its database, the Chromium family's from
// their Bookmarks file.
BookmarkRead readProfile(const InstalledBrowsers::Profile& profile);

// The format an export named `path` is written in: XBEL for a name ending in ".xbel", else HTML.
Format formatOfName(const QString& path);

// The file for the tree in `format` (Html or Xbel).
QByteArray write(const BookmarkNode& root, Format format);

} // namespace BookmarkFiles
