#pragma once

#include <QObject>
#include <QPointer>

class KeyedNode;
class KeyedTree;
class ListsTree;
class OtherWindowsRun;
class PageSettingsDialog;
class QAction;
class QMenu;

// The lists tree's menu (right click, the Menu key or Shift+F10): "Import List..." makes a new list
// from a text file of addresses or a bookmarks file, "Export List..." writes a list out as an HTML
// bookmarks file or a text file of addresses, "Paste Pages" (also Ctrl+V on the tree) adds the web
// addresses the clipboard holds to a list, "Page Settings..." shows and changes how a page (or
// every page of a list) is shown when its list runs, "Run in Other Windows..." runs a list beside
// the run dialog's run in windows of its own, and "Stop Running in Other Windows" ends that.
class ListsMenu : public QObject
{
    Q_OBJECT

public:
    ListsMenu(KeyedTree* tree, ListsTree* lists);

    QMenu* menu() const { return m_menu; }
    QAction* importAction() const { return m_import; }
    QAction* exportAction() const { return m_export; }
    QAction* pasteAction() const { return m_paste; }
    QAction* pageSettingsAction() const { return m_pageSettings; }
    QAction* otherWindowsAction() const { return m_otherWindows; }
    QAction* stopOtherWindowsAction() const { return m_stopOtherWindows; }
    QAction* saveOpenWindowsAction() const { return m_saveOpenWindows; }
    QAction* findDuplicatesAction() const { return m_findDuplicates; }
    QAction* checkLinksAction() const { return m_checkLinks; }
    // The Run in Other Windows dialog while it is open.
    OtherWindowsRun* otherWindowsDialog() const;
    // The Page Settings dialog while it is open.
    PageSettingsDialog* pageSettingsDialog() const;

    // Opens the menu for `node` (a list, a page of it, or none) at `globalPos`.
    void showFor(KeyedNode* node, const QPoint& globalPos);

    // What the entries do, for the node the menu was opened for.
    void importList();
    void exportList();
    void pastePages();
    void editPageSettings();
    void runInOtherWindows();
    // Ends every run of the list in other windows.
    void stopInOtherWindows();

    // Makes a list named after the file from its addresses; the list's name, or "" when none was
    // made (what went wrong has been said).
    QString importListFile(const QString& path);
    // Writes the list's pages to `path`: as text (one address a line) or as an HTML bookmarks file.
    bool exportListFile(const QString& listName, const QString& path, bool asText);

private:
    // The list the menu was opened for: the list's own node or a page's list; "" for none.
    QString targetList() const;

    KeyedTree* m_tree;
    ListsTree* m_lists;
    QMenu* m_menu;
    QAction* m_import;
    QAction* m_export;
    QAction* m_paste;
    QAction* m_pageSettings;
    QAction* m_otherWindows;
    QAction* m_stopOtherWindows;
    QAction* m_saveOpenWindows;
    QAction* m_findDuplicates;
    QAction* m_checkLinks;
    QPointer<OtherWindowsRun> m_otherRun;
    QPointer<PageSettingsDialog> m_dialog;
    QString m_targetKey; // the key of the node the menu was opened for
};
