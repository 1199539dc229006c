#pragma once

#include "bookmarks/BookmarkTree.h"

// Whether a tree a reader gave holds together: only folders hold anything, and a separator has
// neither title nor address. A format without separators gives none at all.
enum class Separators { Allowed, None };

inline bool wellShaped(const BookmarkNode& node, Separators separators = Separators::Allowed)
{
    if (node.kind != BookmarkNode::Kind::Folder && !node.children.isEmpty())
        return false;
    if (node.kind == BookmarkNode::Kind::Separator
        && (separators == Separators::None || !node.title.isEmpty() || !node.url.isEmpty()))
        return false;
    for (const BookmarkNode& child : node.children)
        if (!wellShaped(child, separators))
            return false;
    return true;
}
