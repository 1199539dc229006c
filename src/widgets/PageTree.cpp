#include "PageTree.h"

#include "KeyedTree.h"
#include "verbs/PageGroups.h"

namespace PageTree {

KeyedNode* addPage(KeyedTree* tree, const QString& group, const QString& title, const QString& url)
{
    KeyedNode* page = tree->addNode(group, PageGroups::pageKey(url, group), title, KeyedTree::Page);
    if (page) {
        page->setTag(url);
        page->setListTag(group);
    }
    return page;
}

} // namespace PageTree
