#include "bookmarks/ChromiumBookmarks.h"
#include "WellShapedTree.h"
#include "bookmarks/NetscapeBookmarks.h"

#include <QStringList>

#include <cstdlib>

// Any bytes: a file that is refused yields nothing; a file that is read yields at most the three
// roots, in their order, none of them empty; and what was read goes through the HTML bookmarks
// file unchanged, as it does when bookmarks are taken over from the browser and exported.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const BookmarkRead read = ChromiumBookmarks::read(bytes);
    if (read.root.kind != BookmarkNode::Kind::Folder || !read.root.title.isEmpty() || !read.root.url.isEmpty())
        std::abort();
    if (!read.ok()) {
        if (!read.root.children.isEmpty())
            std::abort();
        return 0;
    }
    const QStringList order = {QStringLiteral("Bookmarks bar"), QStringLiteral("Other bookmarks"),
                               QStringLiteral("Mobile bookmarks")};
    qsizetype next = 0;
    for (const BookmarkNode& root : read.root.children) {
        const qsizetype at = order.indexOf(root.title);
        if (root.kind != BookmarkNode::Kind::Folder || at < next || root.children.isEmpty())
            std::abort();
        next = at + 1;
    }
    if (!wellShaped(read.root, Separators::None) || read.root.depth() > kMaxBookmarkDepth)
        std::abort();
    const BookmarkRead exported = NetscapeBookmarks::read(NetscapeBookmarks::write(read.root));
    if (!exported.ok() || !(exported.root == read.root))
        std::abort();
    return 0;
}
