#pragma once

#include "BookmarkTree.h"

#include <functional>

// Bookmarks brought into the Favorites folder: folders become sub-folders (an existing one is
// filled, not doubled), links become shortcut files named as any favourite is named. An import
// never overwrites: a shortcut already there with the same name and address is left as it is (so
// importing the same file twice changes nothing), and one with another address gets a numbered
// name beside it ("Name (2).URL"). What is no web address and the separators are counted and left
// out.
struct ImportSummary
{
    int folders = 0;      // folders made
    int written = 0;      // shortcuts written
    int renamed = 0;      // of those, under a numbered name
    int alreadyThere = 0; // left out: the same shortcut is there
    int notWeb = 0;       // left out: not a web address (javascript:, place:, data:, about: ...)
    int separators = 0;   // left out: separators
    int failed = 0;       // could not be written (a folder or file the system refused)
    bool cancelled = false;

    // The message that tells the user what happened.
    QString text() const;
};

namespace FavoritesImport {

// The name a folder titled `title` gets on disk: "/" and NUL cannot stand in a file name and
// become "-"; a blank title, "." and ".." are named "(no name)"; at most 255 bytes.
QString folderName(const QString& title);

// The numbered form of a name taken in its folder: "Name.URL" becomes "Name (2).URL", a folder
// "Name" becomes "Name (2)"; still at most 255 bytes.
QString numberedName(const QString& name, int number);

// Writes the children of `root` into `folder` (which ends with "/"). `progress`, when given, is
// told how many of `root`'s links were handled so far, every few dozen, and stops the import
// when it returns false; what was written stays.
ImportSummary importInto(const BookmarkNode& root, const QString& folder,
                         const std::function<bool(int done, int total)>& progress = {});

} // namespace FavoritesImport
