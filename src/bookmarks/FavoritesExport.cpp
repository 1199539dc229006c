#include "FavoritesExport.h"

#include "shortcuts/FavoritesWalk.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Folders nest as deep as the disk allows; the tree stops where its readers would.
void fill(BookmarkNode& node, const QString& folder, int depth)
{
    QStringList subfolders;
    QStringList shortcuts;
    FavoritesWalk::list(folder, &subfolders, &shortcuts);
    if (depth < kMaxBookmarkDepth)
        for (const QString& name : subfolders) {
            BookmarkNode sub = BookmarkNode::folder(name);
            fill(sub, folder + u'/' + name, depth + 1);
            node.children.append(std::move(sub));
        }
    for (const QString& name : shortcuts) {
        // The whole address goes out: a browser has no limit of its own to cut it to.
        const QString url = ShortcutAddress(folder + u'/' + name);
        node.children.append(BookmarkNode::link(FavoritesExport::titleOf(name), url));
    }
}

} // namespace

namespace FavoritesExport {

QString titleOf(const QString& fileName)
{
    const QString title = FavoritesWalk::shortcutText(fileName);
    // Imported again, the title is named with ".URL"; a name that ends in ".url" in another case
    // stands for the same favourite.
    const std::optional<QString> again = ShortcutFileName(title);
    if (again && again->chopped(4) == fileName.chopped(4))
        return title;
    return fileName; // "a.b.URL" would come back as "a.URL" from "a.b"
}

BookmarkNode treeOf(const QString& folder)
{
    BookmarkNode root = BookmarkNode::folder(QFileInfo(folder).fileName());
    fill(root, folder, 0);
    return root;
}

} // namespace FavoritesExport
