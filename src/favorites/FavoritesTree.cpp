#include "FavoritesTree.h"

#include "shortcuts/FavoritesWalk.h"
#include "ShellServices.h"
#include "shortcuts/ShortcutFile.h"
#include "browser/BrowserWindow.h"
#include "surf/SurfPanel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/PageText.h"
#include "core/TextFile.h"
#include "core/TextRules.h"
#include "core/WebAddress.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QApplication>

#include <utility>

namespace {
constexpr double kDragDelaySeconds = 0.2;
}

FavoritesTree::FavoritesTree(KeyedTree* tree, GradientButton* distributeButton, Verbs* verbs, SurfPanel* rows)
    : QObject(tree), m_tree(tree), m_distribute(distributeButton), m_verbs(verbs), m_rows(rows)
{
    connect(tree, &KeyedTree::nodeClicked, this, &FavoritesTree::nodeClicked);
    connect(tree, &KeyedTree::nodeDoubleClicked, this, &FavoritesTree::nodeDoubleClicked);
    connect(tree, &KeyedTree::controlDropped, this, &FavoritesTree::controlDropped);
    connect(tree, &KeyedTree::textDropped, this, &FavoritesTree::textDropped);
    connect(tree, &KeyedTree::deleteRequested, this, &FavoritesTree::deleteRequested);
    connect(tree, &KeyedTree::mousePressed, this, [this](const QPoint& pos, Qt::MouseButton button) {
        if (button == Qt::LeftButton)
            mousePressed(pos);
    });
    connect(tree, &KeyedTree::mouseMoved, this, &FavoritesTree::mouseMoved);
    connect(tree, &KeyedTree::mouseReleased, this, &FavoritesTree::mouseReleased);
}

bool FavoritesTree::distributing() const
{
    return m_distribute && m_distribute->value();
}

// ---- building ------------------------------------------------------------------------------

void FavoritesTree::RefreshBtn_Click()
{
    m_tree->clearNodes();
    BuildFavoritesTree();
}

void FavoritesTree::BuildFavoritesTree()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    {
        KeyedTree::BulkInsert bulk(m_tree);
        SetUpHoldArray();
        AddFavoriteNodes();
    }
    QApplication::restoreOverrideCursor();
}

void FavoritesTree::SetUpHoldArray()
{
    m_hold = FavoritesWalk::walk(globals().FavoritesPath);
    m_leftovers = m_hold.leftovers;
}

void FavoritesTree::AddFavoriteNodes()
{
    // Folders first, breadth first, so that every parent exists before its children.
    QStringList relative;
    relative.reserve(m_hold.folders.size());
    for (const QString& folder : m_hold.folders) {
        const QString rel = FavoritesWalk::relativePath(folder);
        relative.append(rel);
        const qsizetype slash = rel.lastIndexOf(u'/');
        if (slash < 0)
            AddFavoriteNode(rel, rel, rel, KeyedTree::ClosedFolder, false);
        else
            AddFavoriteNode(rel.left(slash), rel.mid(slash + 1), rel, KeyedTree::ClosedFolder, true);
    }
    // Then each folder's shortcuts, then the shortcuts at the top.
    for (qsizetype i = 0; i < m_hold.folders.size() && i < m_hold.shortcuts.size(); ++i) {
        for (const QString& file : m_hold.shortcuts[i]) {
            const QString text = FavoritesWalk::shortcutText(file);
            AddFavoriteNode(relative[i], text, relative[i] + u'/' + text, KeyedTree::Page, true, file);
        }
    }
    for (const QString& file : m_hold.rootShortcuts) {
        const QString text = FavoritesWalk::shortcutText(file);
        AddFavoriteNode(text, text, text, KeyedTree::Page, false, file);
    }
    m_hold = {}; // the walk is needed no longer
}

int FavoritesTree::removeLeftoverTemporaries()
{
    int removed = 0;
    for (const QString& path : std::exchange(m_leftovers, {}))
        removed += TextFile::removeLeftover(path) ? 1 : 0;
    return removed;
}

KeyedNode* FavoritesTree::AddFavoriteNode(const QString& parentKey, const QString& text, const QString& key,
                                          int image, bool child, const QString& fileName)
{
    KeyedNode* node = child ? m_tree->addNode(parentKey, key, text, image)
                            : m_tree->addNode(QString(), parentKey, parentKey, image);
    if (!node)
        return nullptr; // a key present already, or a missing parent: skipped
    const QString root = globals().FavoritesPath;
    if (image == KeyedTree::Page) {
        // The file as it lies on disk: names differ in case on this file system.
        const QString folder = child ? root + u'/' + parentKey : root;
        node->setTag(
            folder + u'/' +
            (fileName.isEmpty() ? node->key().section(u'/', -1) + QStringLiteral(".url") : fileName));
    } else {
        node->setTag(root + u'/' + node->key());
    }
    return node;
}

// ---- using favourites ----------------------------------------------------------------------

void FavoritesTree::nodeClicked(KeyedNode* node)
{
    if (!node || node->isFolder())
        return;
    m_shortcutSelected = 1;
    readFavorite(node->tag());
}

void FavoritesTree::readFavorite(const QString& path)
{
    ReadFavoriteFile(path);
    // With a shortcut selected, the tree's tool tip names the favourite.
    if (m_shortcutSelected == 1)
        m_tree->setToolTip(globals().CurrentTitle);
}

void FavoritesTree::nodeDoubleClicked(KeyedNode* node)
{
    if (!node || node->isFolder())
        return;
    Globals& g = globals();
    g.CurrentTitle = FavoritesRelativeName(node->tag());
    g.FavFolderSel = node->tag();
    m_verbs->NewBtnAction(g.NewWindowMode);
}

void FavoritesTree::deleteRequested(KeyedNode* node)
{
    if (!node)
        return;
    const QString path = node->tag();
    if (!DialogService::question(QStringLiteral("Do you want to Delete ") + path +
                                 QStringLiteral(" from your Favorites?")))
        return;
    m_tree->removeNode(node);
    // A refusal leaves the file where it is; the next refresh shows it again.
    ShellServices::moveToTrash(path);
}

// ---- pages dropped on the tree -------------------------------------------------------------

void FavoritesTree::addDroppedPage(KeyedNode* target, bool askForTopLevel)
{
    Globals& g = globals();
    QString folder;
    QString parentKey;
    if (!target) {
        if (askForTopLevel && !DialogService::question(QStringLiteral("Do you want to add ") +
                                                       g.CurrentTitle + QStringLiteral(" to Favorites? ")))
            return;
        folder = g.FavoritesPath;
    } else if (target->isFolder()) {
        folder = target->tag();
        parentKey = target->key();
    } else {
        return; // a page dropped on a favourite is not added
    }
    g.FavFolderSel = folder + u'/';
    if (!CreateFavoriteFile(g.CurrentUrl, g.CurrentTitle, g.FavFolderSel))
        return;
    const QString file = *ShortcutFileName(g.CurrentTitle);
    const QString text = FavoritesWalk::shortcutText(file);
    if (parentKey.isEmpty())
        AddFavoriteNode(text, text, text, KeyedTree::Page, false, file);
    else
        AddFavoriteNode(parentKey, text, parentKey + u'/' + text, KeyedTree::Page, true, file);
}

void FavoritesTree::controlDropped(const QString& sourceTag, const QPoint& pos)
{
    if (sourceTag != u"SSTree3" && sourceTag != u"AddBtn")
        return;
    KeyedNode* target = m_tree->nodeAtPoint(pos);
    m_tree->setDropHighlight(target);
    addDroppedPage(target, true);
    // This drop is over: a later drop must not be taken for it.
    m_rows->RowDragToFavorites = false;
    m_rows->RowDragToList = false;
}

void FavoritesTree::textDropped(const QString& text, const QString& title, const QPoint& pos)
{
    if (!WebAddress::startsWithHttp(text))
        return;
    Globals& g = globals();
    g.CurrentUrl = TextRules::trimSpaces(text);
    // The page's name: the current browser window's page; with no window open, the title that
    // came with the drop, else the address's host.
    BrowserWindow* window = m_verbs->pool()->ie(g.WindowIndex);
    if (window)
        g.CurrentTitle = boundedPageText(window->locationName());
    else
        g.CurrentTitle = boundedPageText(title.isEmpty() ? WebAddress::nameFromAddress(g.CurrentUrl) : title);
    KeyedNode* target = m_tree->nodeAtPoint(pos);
    m_tree->setDropHighlight(target);
    addDroppedPage(target, true);
}

// ---- dragging a favourite out --------------------------------------------------------------

void FavoritesTree::mousePressed(const QPoint& pos)
{
    if (!distributing() || m_mouseDown)
        return;
    KeyedNode* pressed = m_tree->nodeAtPoint(pos);
    if (!pressed)
        return;
    // The favourite is looked up by its name among all nodes, in the tree's own order, and the
    // first of that name is taken, as it always has been.
    const QString wanted = pressed->nodeText().toUpper();
    KeyedNode* first = nullptr;
    for (KeyedNode* node : m_tree->nodes()) {
        if (node->nodeText().toUpper() == wanted) {
            first = node;
            break;
        }
    }
    if (!first || first->isFolder())
        return;
    m_shortcutSelected = 1;
    readFavorite(first->tag());
    m_mouseDown = true;
    m_mouseDownTime = Clock::secondsSinceMidnight();
}

void FavoritesTree::mouseMoved(const QPoint&)
{
    if (!distributing() || !m_mouseDown)
        return;
    if (Clock::secondsSinceMidnight() - m_mouseDownTime < kDragDelaySeconds)
        return;
    ControlDrag::start(m_tree, m_tree->dragTag());
    m_mouseDown = false; // the drag is over once the mouse is released
}

void FavoritesTree::mouseReleased()
{
    m_mouseDown = false;
}
