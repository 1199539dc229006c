#pragma once

#include <QObject>
#include <QStringList>

class KeyedNode;
class KeyedTree;
class QComboBox;
class Vantrel1;

// The favourite lists tree, SSTree2: each list is a top-level node, its pages are its children
// (key = address + "/" + list name, tag = address, list tag = list name). Lists are made with
// NewListBtn and renamed by editing their label; pages arrive by dropping a window row, a favourite,
// a history entry or a web address; a double click opens a page. The list names are also the items
// of CMBLIST, in tree order.
class ListsTree : public QObject
{
    Q_OBJECT

public:
    static constexpr int kRunCapacity = 251;

    ListsTree(KeyedTree* tree, QComboBox* listNames, Vantrel1* main);

    KeyedTree* tree() const { return m_tree; }

    // Builds the tree and CMBLIST from the list records.
    void LoadListTree();
    // Writes the tree back into the records (one per node, by node index) and the list file.
    void SaveListBtn_Click();
    // Makes "New List", or "New List_2", "New List_3", ... when the name is taken.
    void NewListBtn_Click();
    bool AddListNode(const QString& name);
    bool AddPageToList();
    bool AddPageNode(const QString& listName);
    void RenameList(const QString& oldName, const QString& newName);
    // The addresses of the pages of the list `upperName` (upper-cased), in tree order; at most
    // 251: `overflow` tells when the list holds more.
    QStringList BuildRunList(const QString& upperName, bool* found, bool* overflow = nullptr) const;

    // The handlers, reachable for the program's own drags and for tests.
    void controlDropped(const QString& sourceTag, const QPoint& pos);
    void textDropped(const QString& text, const QString& title, const QPoint& pos);
    void mousePressed();
    void nodeDoubleClicked(KeyedNode* node);
    void labelEdited(KeyedNode* node, const QString& oldText, const QString& newText);

    // ListNodeTag of the node under the last drop; "" when the drop missed the nodes.
    QString DropNodeKey;

private:
    void dropOn(const QPoint& pos);

    KeyedTree* m_tree;
    QComboBox* m_listNames;
    Vantrel1* m_main;
};
