#pragma once

#include <QObject>
#include <QStringList>

class FavoritesModel;
class GradientButton;
class KeyedNode;
class KeyedTree;
class SurfPanel;
class Verbs;

// The Favorites tree, SSTree1: the user's Favorites folder as folders and shortcuts, as the verbs
// hold it (FavoritesModel), read again on demand; a click makes a favourite the current page, a double click opens it; pages dropped on
// it become new shortcut files; Delete sends a favourite to the trash; with the distribute mode on,
// a favourite can be dragged out to the quick buttons and the lists.
class FavoritesTree : public QObject
{
    Q_OBJECT

public:
    FavoritesTree(KeyedTree* tree, GradientButton* distributeButton, Verbs* verbs, SurfPanel* rows);
    Verbs* verbs() const { return m_verbs; }

    KeyedTree* tree() const { return m_tree; }

    // RefreshBtn: clears the tree and builds it again from the folder.
    void RefreshBtn_Click();
    void BuildFavoritesTree();
    // The walk: every folder below the Favorites folder, breadth first, with its shortcuts.
    void SetUpHoldArray();
    // The folder nodes from the walk, then each folder's shortcuts, then those at the top.
    void AddFavoriteNodes();
    // Removes the temporary files that interrupted saves of shortcuts left in the folders the
    // last build walked; done once at start-up. Returns how many went.
    int removeLeftoverTemporaries();

    // The handlers, reachable for the program's own drags and for tests.
    void nodeClicked(KeyedNode* node);
    void nodeDoubleClicked(KeyedNode* node);
    void controlDropped(const QString& sourceTag, const QPoint& pos);
    // A row's page sent from the keyboard: it goes to the folder of the tree's current item (a
    // favourite's own folder), or, asked first, to the top of Favorites.
    void addRowPageToCurrentFolder();
    void textDropped(const QString& text, const QString& title, const QPoint& pos);
    void deleteRequested(KeyedNode* node);
    void mousePressed(const QPoint& pos);
    void mouseMoved(const QPoint& pos);
    void mouseReleased();
    // Drags the favourite out as a press and a move on its node do (in distribute mode only).
    void dragOut(KeyedNode* node);

    // A favourite is being dragged out of the tree (the mouse went down on it in distribute mode).
    bool mouseDownFlag() const { return m_mouseDown; }
    // Ends the drag out of the tree (a drop took it).
    void endDrag() { m_mouseDown = false; }
    int shortcutSelected() const { return m_shortcutSelected; }

private:
    bool distributing() const;
    // Writes a shortcut for CurrentUrl/CurrentTitle into the folder under the drop point (or,
    // asked, into the Favorites folder) and shows it in the tree.
    void addDroppedPage(KeyedNode* target, bool askForTopLevel);
    // The tree follows the Favorites: all of them, one added, one gone. A node's tag is its full
    // path: the folder's, or the shortcut file's as it lies on disk.
    void showAll();
    void showAdded(const QString& key);
    void showRemoved(const QString& key);

    KeyedTree* m_tree;
    FavoritesModel* m_model;
    GradientButton* m_distribute;
    Verbs* m_verbs;
    SurfPanel* m_rows;
    int m_shortcutSelected = 0;
    void readFavorite(const QString& path);

    bool m_mouseDown = false;
    double m_mouseDownTime = 0;
};
