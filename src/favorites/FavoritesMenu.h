#pragma once

#include "bookmarks/BookmarkTree.h"
#include "bookmarks/FavoritesImport.h"

#include <QObject>

class FavoritesTree;
class KeyedNode;
class KeyedTree;
class QAction;
class QMenu;

// The Favorites tree's menu (right click, the Menu key or Shift+F10), which moves bookmarks between
// the Favorites folder and the browsers: "Import Bookmarks..." from a bookmarks file in any of the
// browsers' formats, "Import from Browser..." from a profile of a browser installed for the user,
// and "Export Bookmarks..." of the folder under the pointer (or the whole Favorites folder) as an
// HTML bookmarks file or XBEL.
class FavoritesMenu : public QObject
{
    Q_OBJECT

public:
    // Imports of more bookmarks than this show their progress, and can be cancelled.
    static constexpr int kProgressFrom = 300;

    FavoritesMenu(KeyedTree* tree, FavoritesTree* favorites);

    QMenu* menu() const { return m_menu; }
    QAction* importFileAction() const { return m_importFile; }
    QAction* importBrowserAction() const { return m_importBrowser; }
    QAction* exportAction() const { return m_export; }
    QAction* findDuplicatesAction() const { return m_findDuplicates; }
    QAction* checkLinksAction() const { return m_checkLinks; }

    // Opens the menu for `node` (a folder, a shortcut, or none) at `globalPos`.
    void showFor(KeyedNode* node, const QPoint& globalPos);

    // What the entries do.
    void importFile();
    void importFromBrowser();
    void exportBookmarks();
    // The pages kept more than once, in a dialog of their own.
    void findDuplicates();

    // Brings what was read from `source` into the Favorites folder, with progress, the summary
    // and the tree rebuilt; a damaged file's readable part only when the user says so.
    void importRead(const BookmarkRead& read, const QString& source);
    // Writes the folder `folder` (a path) to `path`, in the format its name asks for.
    bool exportFolder(const QString& folder, const QString& path);

private:
    KeyedTree* m_tree;
    FavoritesTree* m_favorites;
    QMenu* m_menu;
    QAction* m_importFile;
    QAction* m_importBrowser;
    QAction* m_export;
    QAction* m_findDuplicates;
    QAction* m_checkLinks;
    QString m_targetFolder; // the folder the menu was opened for; "" for the whole Favorites folder
    QString m_targetKey;    // its key in the tree
};
