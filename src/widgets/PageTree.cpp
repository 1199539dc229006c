#include "PageTree.h"

#include "KeyedTree.h"

namespace PageTree {

QString pageKey(const QString& url, const QString& group)
{
    return url + u'/' + group;
}

KeyedNode* addPage(KeyedTree* tree, const QString& group, const QString& title, const QString& url)
{
    KeyedNode* page = tree->addNode(group, pageKey(url, group), title, KeyedTree::Page);
    if (page) {
        page->setTag(url);
        page->setListTag(group);
    }
    return page;
}

int toRecords(const KeyedTree* tree, PageRecords::Arrays arrays)
{
    const qsizetype capacity = arrays.first.size();
    int n = 0;
    for (const KeyedNode* node : tree->nodes()) {
        if (n >= capacity)
            break; // the surplus is dropped without a word
        if (node->image() == KeyedTree::Page) {
            arrays.first[n] = node->listTag();
            arrays.title[n] = node->nodeText();
            arrays.url[n] = node->tag();
        } else {
            // A group is a record with a single blank for its title and address.
            arrays.first[n] = node->key();
            arrays.title[n] = QStringLiteral(" ");
            arrays.url[n] = QStringLiteral(" ");
        }
        ++n;
    }
    return n;
}

} // namespace PageTree
