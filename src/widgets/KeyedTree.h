#pragma once

#include <QHash>
#include <QTreeWidget>

class KeyedNode;
class QDropEvent;
class QMimeData;

// The program's tree control, shared by the Favorites, Lists and History trees: every node has a
// key unique in its tree, a text, an image (1 closed folder, 2 page, 3 open folder), a tag and a
// list tag. Nodes are found by key, and by index (creation order from 1, renumbered when nodes go).
// Expanding a node whose image is 1 turns it into 3, collapsing turns 3 back into 1.
class KeyedTree : public QTreeWidget
{
    Q_OBJECT

public:
    enum Image { ClosedFolder = 1, Page = 2, OpenFolder = 3 };

    explicit KeyedTree(const QString& name, QWidget* parent = nullptr);

    // Adds a node at the top (parentKey empty) or under the node `parentKey`; nullptr when the key
    // is present already or the parent is missing, as with any keyed tree.
    KeyedNode* addNode(const QString& parentKey, const QString& key, const QString& text, int image);
    KeyedNode* node(const QString& key) const { return m_byKey.value(key); }
    // The node with index `index` (1 = the first created); nullptr outside 1..nodeCount().
    KeyedNode* nodeAt(int index) const;
    int nodeCount() const { return int(m_order.size()); }
    int indexOf(const KeyedNode* node) const;
    const QList<KeyedNode*>& nodes() const { return m_order; }
    // Removes the node and everything below it.
    void removeNode(KeyedNode* node);
    // Gives the node a new key; false (and nothing changes) when the key is taken.
    bool rekey(KeyedNode* node, const QString& newKey);
    void clearNodes();

    KeyedNode* nodeAtPoint(const QPoint& viewportPos) const;
    void setDropHighlight(KeyedNode* node);
    KeyedNode* dropHighlight() const { return m_dropHighlight; }

    // The tag that drags of this tree carry ("SSTree1", ...): the tree's own name.
    QString dragTag() const { return objectName(); }

    // Lets the user edit node labels (F2, or a click on the selected node); labelEdited() tells.
    void setLabelEditEnabled(bool on);
    // Lets a drop of several links from another program (a list of addresses) arrive whole, by
    // linksDropped(); otherwise only its first link is taken, as from any drop.
    void setManyLinksDropEnabled(bool on) { m_manyLinks = on; }

    // While one lives, nodes are gathered away from the view and shown in one step at its end:
    // building a tree of thousands of nodes then costs the view one update.
    class BulkInsert
    {
    public:
        explicit BulkInsert(KeyedTree* tree);
        ~BulkInsert();
        BulkInsert(const BulkInsert&) = delete;
        BulkInsert& operator=(const BulkInsert&) = delete;

    private:
        KeyedTree* m_tree;
    };

signals:
    void nodeClicked(KeyedNode* node);
    void nodeDoubleClicked(KeyedNode* node);
    // A drag of one of the program's controls, identified by its tag, was dropped.
    void controlDropped(const QString& sourceTag, const QPoint& viewportPos);
    // A web address (a link, or text) from another program was dropped; `title` is the page's
    // title when the drop carries one.
    void textDropped(const QString& text, const QString& title, const QPoint& viewportPos);
    // Several web addresses were dropped at once (only with setManyLinksDropEnabled()).
    void linksDropped(const QStringList& addresses, const QPoint& viewportPos);
    // The user asked for the tree's menu: with the mouse (`node` is the node under the pointer, or
    // none) or with the keyboard (the Menu key or Shift+F10: `node` is the current node). The menu
    // goes at `globalPos`.
    void menuRequested(KeyedNode* node, const QPoint& globalPos);
    void deleteRequested(KeyedNode* node);
    // The user finished editing a node's label.
    void labelEdited(KeyedNode* node, const QString& oldText, const QString& newText);
    void mousePressed(const QPoint& viewportPos, Qt::MouseButton button);
    void mouseMoved(const QPoint& viewportPos);
    void mouseReleased();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void forget(QTreeWidgetItem* item);
    // Accepts (or refuses) a drag while it moves and when it drops: the program's own controls as
    // they offer, other programs' web addresses as a copy, nothing else.
    static bool acceptDrag(QDropEvent* event);

    QHash<QString, KeyedNode*> m_byKey;
    QList<KeyedNode*> m_order;
    KeyedNode* m_dropHighlight = nullptr;
    bool m_labelEdit = false;
    bool m_manyLinks = false;
    int m_bulk = 0;
    QList<QTreeWidgetItem*> m_detachedTop;
};

// One node of a KeyedTree.
class KeyedNode : public QTreeWidgetItem
{
public:
    KeyedNode(const QString& key, const QString& text, int image);

    QString key() const { return m_key; }
    // The node's whole text. The tree shows at most its first kMaxPageTextLength characters: a
    // title of millions of characters read from a file would otherwise be measured at every
    // paint.
    QString nodeText() const { return m_text; }
    void setNodeText(const QString& text)
    {
        m_shownText = text;
        setText(0, text);
    }
    // The label as last set by the program, to tell an edit from it.
    QString shownText() const { return m_shownText; }
    void acceptEditedText() { m_shownText = m_text; }

    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant& value) override;
    // A key follows the node's new name; the tree's index of keys must be told (KeyedTree::rekey).
    void setKeyUnchecked(const QString& key) { m_key = key; }
    int image() const { return m_image; }
    void setImage(int image);
    // A small mark on the node's image: the node has something more to it (a page's settings).
    void setMarked(bool marked);
    bool marked() const { return m_marked; }
    QString tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }
    QString listTag() const { return m_listTag; }
    void setListTag(const QString& tag) { m_listTag = tag; }
    KeyedNode* parentNode() const { return static_cast<KeyedNode*>(parent()); }
    bool isFolder() const { return m_image == KeyedTree::ClosedFolder || m_image == KeyedTree::OpenFolder; }

private:
    QString m_key;
    QString m_text;
    QString m_displayed; // what the tree shows of m_text
    QString m_shownText;
    int m_image;
    bool m_marked = false;
    QString m_tag;
    QString m_listTag;
};
