#include "bookmarks/XbelBookmarks.h"

#include "WellShapedTree.h"

#include <cstdlib>

// Any bytes: whatever was read, with a problem or without, is a tree within the depth limit, and
// the file written for it is read back as the same tree, without a problem.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const BookmarkRead read = XbelBookmarks::read(bytes);
    if (read.root.kind != BookmarkNode::Kind::Folder || !wellShaped(read.root) || read.root.depth() > kMaxBookmarkDepth)
        std::abort();
    if (size == 0 && read.ok())
        std::abort();
    const BookmarkRead again = XbelBookmarks::read(XbelBookmarks::write(read.root));
    if (!again.ok() || !(again.root == read.root))
        std::abort();
    return 0;
}
