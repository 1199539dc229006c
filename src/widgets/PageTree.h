#pragma once

#include <QString>

class KeyedNode;
class KeyedTree;

// The lists and the history show pages the same way: a page is a child of its group (a list, or a
// browser window's group) with the key PageGroups gives it (address + "/" + group), its title as
// text, its address as tag and the group as list tag.
namespace PageTree {

// Adds the page under `group`; nullptr when the group is missing or holds the page already.
KeyedNode* addPage(KeyedTree* tree, const QString& group, const QString& title, const QString& url);

} // namespace PageTree
