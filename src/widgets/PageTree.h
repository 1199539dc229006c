#pragma once

#include "core/PageRecords.h"

#include <QString>

class KeyedNode;
class KeyedTree;

// The lists and the history keep pages the same way: a page is a child of its group (a list, or a
// browser window's group) with key = address + "/" + group, its title as text, its address as
// tag and the group as list tag; and the tree goes back into the records node by node.
namespace PageTree {

QString pageKey(const QString& url, const QString& group);

// Adds the page under `group`; nullptr when the group is missing or holds the page already.
KeyedNode* addPage(KeyedTree* tree, const QString& group, const QString& title, const QString& url);

// One record per node, by node index: a group gives (group, " ", " "), a page (group, title,
// address). Nodes beyond the arrays are dropped. The number of records is returned.
int toRecords(const KeyedTree* tree, PageRecords::Arrays arrays);

} // namespace PageTree
