#pragma once

#include "TreeMerge.h"

#include <QHash>
#include <QString>
#include <QStringList>

// The Favorites folder seen as a tree of bookmarks with stable ids, for the bookmarks file kept in
// step across machines: read with the ids its entries had last time, and made to hold a merged
// tree. An entry keeps its id while it stays where it was, and when it is renamed or moved inside
// the folder, by Vantrel or by a file manager (the file system keeps its inode); a file replaced
// at its place (a shortcut saved again) keeps its id too. A folder's title is its name; a
// shortcut's is its file name without ".url", its address the whole URL= line.
namespace SyncedFolder {

// Folders deeper than this are not followed: a tree that deep is a loop a file system made.
inline constexpr int kMaxDepth = 64;
// Numbered names go up to "Name (1000)".
inline constexpr int kMaxNumber = 1000;

// Where an entry of the tree lies, and what was read of it then.
struct Place
{
    QString path; // below the Favorites folder, as on disk: "News/Radio.url"
    bool folder = false;
    quint64 inode = 0;   // 0: not known
    qint64 modified = 0; // the file's last change (ns since the epoch), to read an address once
    qint64 size = 0;
    QString url;         // the address read from the shortcut then

    bool operator==(const Place&) const = default;
};
using Places = QHash<QString, Place>; // by id

struct Read
{
    TreeMerge::Tree tree;
    Places places;
};

// The tree in the folder `root`. Entries are known again by `known` (what the last read or apply
// gave): an unchanged file's address is taken from there rather than read again.
Read read(const QString& root, const Places& known);

struct Applied
{
    int made = 0;        // folders and shortcuts created
    int moved = 0;       // renamed or moved
    int readdressed = 0; // shortcuts pointed elsewhere
    int trashed = 0;     // entries sent to the trash (a folder with its contents counts once)
    QStringList failed;  // what the system refused, in words
    Places places;       // where each entry lies now; read() takes it as `known`
};

// Makes the folder `root`, which holds `now` (as read()), hold `target`: new folders and shortcuts
// written, renames and moves done, shortcuts pointed to their new addresses in place, and what
// `target` no longer has sent to the desktop's trash. A name already taken in a folder gets a
// numbered name beside it ("Name (2)"); nothing on disk is ever written over.
Applied apply(const QString& root, const Read& now, const TreeMerge::Tree& target);

// `tree` with no two entries of one folder under one name on disk: of those that would share a
// name, the one of the smallest id keeps it and the others are titled "Title (2)", "Title (3)" ...
// The same tree gives the same names on every machine, so that two machines never rename the
// same pair back and forth.
TreeMerge::Tree distinctNames(const TreeMerge::Tree& tree);

// The name on disk an entry titled so gets: a folder's title as a file name can hold it, a
// shortcut's with ".URL" after it.
QString fileName(const TreeMerge::Item& item);

// The file name of a shortcut titled `title`: its title as far as a file name can hold it, with
// ".URL" after it. Unlike a favourite added from a page, a dot in the title is kept ("docs.rs"), so
// that the title read back is the title written.
QString shortcutFileName(const QString& title);

} // namespace SyncedFolder
