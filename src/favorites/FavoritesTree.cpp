#include "FavoritesTree.h"

#include "ShellServices.h"
#include "shortcuts/ShortcutFile.h"
#include "browser/BrowserWindow.h"
#include "surf/SurfPanel.h"
#include "verbs/FavoritesModel.h"
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
    : QObject(tree), m_tree(tree), m_model(verbs->favorites()), m_distribute(distributeButton), m_verbs(verbs),
      m_rows(rows)
{
    connect(rows, &SurfPanel::rowPageToFavorites, this, &FavoritesTree::addRowPageToCurrentFolder);
    connect(m_model, &FavoritesModel::reset, this, &FavoritesTree::showAll);
    connect(m_model, &FavoritesModel::added, this, &FavoritesTree::showAdded);
    connect(m_model, &FavoritesModel::removed, this, &FavoritesTree::showRemoved);
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
    BuildFavoritesTree();
}

void FavoritesTree::BuildFavoritesTree()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    SetUpHoldArray();
    AddFavoriteNodes();
    QApplication::restoreOverrideCursor();
}

void FavoritesTree::SetUpHoldArray()
{
    m_model->walk();
}

void FavoritesTree::AddFavoriteNodes()
{
    m_model->takeWalk();
}

int FavoritesTree::removeLeftoverTemporaries()
{
    int removed = 0;
    for (const QString& path : m_model->takeLeftovers())
        removed += TextFile::removeLeftover(path) ? 1 : 0;
    return removed;
}

void FavoritesTree::showAll()
{
    m_tree->clearNodes();
    KeyedTree::BulkInsert bulk(m_tree);
    for (const FavoritesModel::Entry& entry : m_model->entries())
        if (KeyedNode* node = m_tree->addNode(entry.parentKey, entry.key, entry.text,
                                              entry.folder ? KeyedTree::ClosedFolder : KeyedTree::Page))
            node->setTag(entry.path);
}

void FavoritesTree::showAdded(const QString& key)
{
    const FavoritesModel::Entry* entry = m_model->find(key);
    if (!entry)
        return;
    if (KeyedNode* node = m_tree->addNode(entry->parentKey, entry->key, entry->text,
                                          entry->folder ? KeyedTree::ClosedFolder : KeyedTree::Page))
        node->setTag(entry->path);
}

void FavoritesTree::showRemoved(const QString& key)
{
    m_tree->removeNode(m_tree->node(key));
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
    m_model->remove(node->key());
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
    m_model->addShortcut(parentKey, *ShortcutFileName(g.CurrentTitle));
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

void FavoritesTree::addRowPageToCurrentFolder()
{
    auto* current = static_cast<KeyedNode*>(m_tree->currentItem());
    while (current && !current->isFolder())
        current = current->parentNode();
    m_tree->setFocus(Qt::OtherFocusReason);
    addDroppedPage(current, true);
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

void FavoritesTree::dragOut(KeyedNode* node)
{
    if (!distributing() || m_mouseDown || !node || node->isFolder())
        return;
    m_shortcutSelected = 1;
    readFavorite(node->tag());
    m_mouseDown = true;
    ControlDrag::start(m_tree, m_tree->dragTag());
    m_mouseDown = false;
}

void FavoritesTree::mouseReleased()
{
    m_mouseDown = false;
}
