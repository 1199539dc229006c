#pragma once

#include "bookmarks/ListTransfer.h"
#include "verbs/ProgramState.h"

#include <QObject>
#include <QStringList>

class KeyedNode;
class KeyedTree;
class QComboBox;
class FavoritesTree;
class ListsModel;
class SurfPanel;
class Verbs;

// The favourite lists tree, SSTree2, showing the lists the verbs hold (ListsModel): each list is a
// top-level node, its pages are its children (key = address + "/" + list name, tag = address, list
// tag = list name). What the user does here changes the lists there, and the tree follows them. Lists are made with
// NewListBtn and renamed by editing their label; pages arrive by dropping a window row, a favourite,
// a history entry or a web address; a double click opens a page. The list names are also the items
// of CMBLIST, in tree order.
class ListsTree : public QObject
{
    Q_OBJECT

public:
    ListsTree(KeyedTree* tree, QComboBox* listNames, Verbs* verbs, SurfPanel* rows, FavoritesTree* favorites);

    KeyedTree* tree() const { return m_tree; }
    ListsModel* model() const { return m_model; }
    Verbs* verbs() const { return m_verbs; }

    // Builds the tree and CMBLIST from the list records.
    void LoadListTree();
    // Writes the tree back into the records (one per node, by node index) and the list file.
    void SaveListBtn_Click();
    // Makes "New List", or "New List_2", "New List_3", ... when the name is taken.
    void NewListBtn_Click();
    // Makes a list named `base`, numbered as New List names are when the name is taken; the name it
    // got, or "" when every number is taken.
    QString addNumberedList(const QString& base);

    // What came of adding pages to a list: each address is taken once per list, as with drops.
    struct Added
    {
        int added = 0;
        int alreadyThere = 0;
        int noRoom = 0; // the lists hold at most kListCapacity - 1 lists and pages together
    };
    // Adds the pages to the list `listName`, a page without a title under its address;
    // ListsChanged when any was added.
    Added addPages(const QString& listName, const QList<ListTransfer::Page>& pages);
    // Adds every web address in the clipboard's text to the list of `node` (a list, or a page of it).
    // Said plainly when there is no list or no address.
    void pastePages(KeyedNode* node);
    // "N of the pages could not be added: ..." for pages the lists had no room for.
    static QString noRoomText(int pages);
    bool AddListNode(const QString& name);
    // Keeps the open windows' pages as a new list (the verb), then selects it with its label open
    // for a name of the person's own; what went wrong is said plainly.
    void saveOpenWindows();
    bool AddPageToList();
    bool AddPageNode(const QString& listName);
    // The addresses of the pages of the list `upperName` (upper-cased), in tree order; at most
    // 251: `overflow` tells when the list holds more.
    QStringList BuildRunList(const QString& upperName, bool* found, bool* overflow = nullptr) const;

    // The handlers, reachable for the program's own drags and for tests.
    void controlDropped(const QString& sourceTag, const QPoint& pos);
    // A row's page sent from the keyboard: it goes to the list of the tree's current item; with
    // no list chosen, the person is told to choose one.
    void addRowPageToCurrentList();
    void textDropped(const QString& text, const QString& title, const QPoint& pos);
    void linksDropped(const QStringList& addresses, const QPoint& pos);
    void mousePressed();
    void nodeDoubleClicked(KeyedNode* node);
    void labelEdited(KeyedNode* node, const QString& oldText, const QString& newText);

    // ListNodeTag of the node under the last drop; "" when the drop missed the nodes.
    QString DropNodeKey;

private:
    void dropOn(const QPoint& pos);
    void addAddresses(const QString& listName, const QStringList& addresses);
    // The tree follows the lists.
    void showAll();
    void showList(const QString& name);
    void showPage(const QString& list, const QString& title, const QString& url);
    void showRenamed(const QString& oldName, const QString& newName);
    void showTitle(const QString& key, const QString& title);
    // A page with settings of its own has a mark, and its settings in its tool tip.
    void showPageSettings();
    void showPageSettingsOf(KeyedNode* page);

    KeyedTree* m_tree;
    ListsModel* m_model;
    QComboBox* m_listNames;
    Verbs* m_verbs;
    SurfPanel* m_rows;
    FavoritesTree* m_favorites;
};
