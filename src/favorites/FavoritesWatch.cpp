#include "FavoritesWatch.h"

#include "FavoritesTree.h"
#include "settings/VantrelConf.h"
#include "core/Globals.h"
#include "widgets/KeyedTree.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QScrollBar>

FavoritesWatch::FavoritesWatch(KeyedTree* tree, FavoritesTree* favorites)
    : QObject(tree), m_tree(tree), m_favorites(favorites)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(kSettleMs);
    connect(&m_settle, &QTimer::timeout, this, &FavoritesWatch::rebuildKeepingState);
    connect(tree, &QTreeWidget::itemExpanded, this, &FavoritesWatch::opened);
    connect(tree, &QTreeWidget::itemCollapsed, this, &FavoritesWatch::closed);
}

void FavoritesWatch::setEnabled(bool on)
{
    if (on == m_enabled)
        return;
    m_enabled = on;
    if (!on) {
        m_settle.stop();
        delete m_watcher;
        m_watcher = nullptr;
        return;
    }
    m_watcher = new QFileSystemWatcher(this);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &FavoritesWatch::folderChanged);
    m_builtAt = QDateTime::currentDateTime();
    rewatch();
}

void FavoritesWatch::applySetting()
{
    const bool wanted = VantrelConf::flag(VantrelConf::kKeepFavoritesInStep);
    if (wanted == m_enabled)
        return;
    setEnabled(wanted);
    if (wanted)
        rebuildKeepingState();
}

QStringList FavoritesWatch::watchedFolders() const
{
    return m_watcher ? m_watcher->directories() : QStringList();
}

void FavoritesWatch::folderChanged()
{
    if (m_enabled)
        m_settle.start();
}

void FavoritesWatch::opened(QTreeWidgetItem* item)
{
    if (!m_enabled || m_rebuilding)
        return;
    const QString folder = static_cast<KeyedNode*>(item)->tag();
    m_watcher->addPath(folder);
    // The folder was not watched while it was closed: it may have changed since the tree read it.
    if (QFileInfo(folder).lastModified() >= m_builtAt)
        m_settle.start();
}

void FavoritesWatch::closed(QTreeWidgetItem* item)
{
    if (!m_enabled || m_rebuilding)
        return;
    m_watcher->removePath(static_cast<KeyedNode*>(item)->tag());
}

void FavoritesWatch::rebuildKeepingState()
{
    // A drag out of the tree holds on to its node: the tree waits for it to end.
    if (m_favorites->mouseDownFlag()) {
        m_settle.start();
        return;
    }
    QStringList open;
    for (const KeyedNode* node : m_tree->nodes())
        if (node->isExpanded())
            open << node->key();
    const auto* current = static_cast<const KeyedNode*>(m_tree->currentItem());
    const QString selected = current ? current->key() : QString();
    const int scrolled = m_tree->verticalScrollBar()->value();

    m_rebuilding = true;
    m_builtAt = QDateTime::currentDateTime();
    m_favorites->RefreshBtn_Click();
    for (const QString& key : open)
        if (KeyedNode* node = m_tree->node(key))
            node->setExpanded(true);
    if (KeyedNode* node = m_tree->node(selected))
        m_tree->setCurrentItem(node);
    m_tree->verticalScrollBar()->setValue(scrolled);
    m_rebuilding = false;
    rewatch();
    emit rebuilt();
}

void FavoritesWatch::rewatch()
{
    if (!m_watcher)
        return; // nothing is watched with the setting off
    QStringList wanted;
    const QString root = globals().FavoritesPath;
    if (!root.isEmpty())
        wanted << root;
    for (const KeyedNode* node : m_tree->nodes())
        if (node->isFolder() && node->isExpanded())
            wanted << node->tag();
    const QStringList now = m_watcher->directories();
    QStringList gone;
    for (const QString& folder : now)
        if (!wanted.contains(folder))
            gone << folder;
    if (!gone.isEmpty())
        m_watcher->removePaths(gone);
    QStringList added;
    for (const QString& folder : wanted)
        if (!now.contains(folder))
            added << folder;
    if (!added.isEmpty())
        m_watcher->addPaths(added);
}
