#pragma once

#include "BookmarkTree.h"

// The Favorites folder (or one folder of it) as a bookmark tree, to be written in the formats
// browsers import: its folders in name order, then its shortcuts in name order. A shortcut's title
// is its name without ".URL", unless that title would not name it the same when imported again;
// then it keeps its whole name, so that an export imported into an empty folder gives back the
// same folders, names and addresses.
namespace FavoritesExport {

// The title a shortcut named `fileName` is exported under.
QString titleOf(const QString& fileName);

// The tree of `folder` (a path without a "/" at its end): a folder titled with the folder's name.
BookmarkNode treeOf(const QString& folder);

} // namespace FavoritesExport
