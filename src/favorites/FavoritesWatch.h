#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QTimer>

class FavoritesTree;
class KeyedTree;
class QFileSystemWatcher;
class QTreeWidgetItem;

// Keeps the Favorites tree in step with the folder, when the user asks for it ("Keep the Favorites
// tree in step with the folder" on More Options): what another program (a file manager, a synced
// folder) adds, removes or renames appears in the tree by itself, with the same folders open and
// the same node selected.
//
// Only the folders the user can see into are watched: the Favorites folder itself and every open
// folder of the tree. A folder of thousands therefore costs a handful of the system's file watches,
// however many folders it holds; a closed folder that changed is seen when it is opened.
class FavoritesWatch : public QObject
{
    Q_OBJECT

public:
    // Changes come in bursts (a file manager moving fifty files): the tree is built once the
    // folder has been quiet this long.
    static constexpr int kSettleMs = 300;

    FavoritesWatch(KeyedTree* tree, FavoritesTree* favorites);

    // Starts (or stops) watching the folders the tree shows now.
    void setEnabled(bool on);
    bool isEnabled() const { return m_enabled; }
    // Follows the setting: turned on, the tree first catches up with what changed while nobody
    // watched.
    void applySetting();
    // The folders watched now.
    QStringList watchedFolders() const;

    // Builds the tree again from the folder, keeping the open folders, the selected node and how
    // far the tree was scrolled; also with the setting off, for a change Vantrel made itself (the
    // bookmarks file kept in step).
    void rebuildKeepingState();

signals:
    // The tree was built again because the folder changed.
    void rebuilt();

private:
    void folderChanged();
    void opened(QTreeWidgetItem* item);
    void closed(QTreeWidgetItem* item);
    void rewatch();

    KeyedTree* m_tree;
    FavoritesTree* m_favorites;
    QFileSystemWatcher* m_watcher = nullptr;
    QTimer m_settle;
    QDateTime m_builtAt; // when the tree last read the folder
    bool m_enabled = false;
    bool m_rebuilding = false;
};
