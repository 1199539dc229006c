#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The walk over the user's Favorites folder that the Favorites tree is built from. Folders are
// listed breadth first (all first-level folders, then all second-level ones, ...), each level in
// name order within its parent; shortcut files are those ending in ".url" in any case. Names sort
// ignoring case. Links to folders are not followed, so a link loop cannot hold the walk up.
namespace FavoritesWalk {

// At most this many folders are held; folders past it are not shown.
constexpr int kFolderCapacity = 7500;

struct Result
{
    QStringList folders;            // full paths, breadth first
    QList<QStringList> shortcuts;   // for each folder, its shortcut file names
    QStringList rootShortcuts;      // shortcut file names directly in the root
    QStringList leftovers;          // full paths of temporary files that interrupted saves of
                                    // shortcuts left behind
};

Result walk(const QString& root);

// The sub-folders (names) and the shortcut files (names) of one folder, each sorted ignoring case.
// Names keep the bytes the file system has (see FileName). `leftovers`, when given, receives the
// names of the temporary files that interrupted saves of shortcuts left in the folder.
void list(const QString& folder, QStringList* subfolders, QStringList* shortcutFiles,
          QStringList* leftovers = nullptr);

// Whether a temporary file was made for `name` by a save of a shortcut: it ends in ".url" (any
// case), or it was long enough to be cut in the temporary file's name.
bool isShortcutTemporaryTarget(const QByteArray& name);

// A folder's path below the Favorites folder: what follows "/Favorites/" (first occurrence,
// case-sensitive). Without that text the path simply loses its first ten characters; a Favorites
// folder of another name therefore gives wrong keys, as it always has.
QString relativePath(const QString& folderPath);

// A shortcut file's name without its last four characters (the ".url").
QString shortcutText(const QString& fileName);

} // namespace FavoritesWalk
