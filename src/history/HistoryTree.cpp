#include "HistoryTree.h"

#include "verbs/HistoryModel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "widgets/ControlDrag.h"
#include "widgets/KeyedTree.h"
#include "widgets/PageTree.h"

#include <QApplication>
#include <QTimer>

namespace {
// Soon after the main window appears.
constexpr int kLoadDelayMs = 500;

} // namespace

HistoryTree::HistoryTree(KeyedTree* tree, Verbs* verbs)
    : QObject(tree), m_tree(tree), m_model(verbs->history()), m_verbs(verbs)
{
    connect(tree, &KeyedTree::nodeDoubleClicked, this, &HistoryTree::nodeDoubleClicked);
    connect(tree, &KeyedTree::mousePressed, this, &HistoryTree::mousePressed);
    connect(tree, &KeyedTree::mouseMoved, this, &HistoryTree::mouseMoved);
    connect(tree, &KeyedTree::mouseReleased, this, &HistoryTree::mouseReleased);
    connect(m_model, &HistoryModel::reset, this, [this] {
        if (!m_loadPending)
            LoadHistoryTree();
    });
    connect(m_model, &HistoryModel::pageAdded, this, [this](const QString& group, const QString& title, const QString& url) {
        if (!m_loadPending)
            PageTree::addPage(m_tree, group, title, url);
    });
}

void HistoryTree::CreateHistoryRoots()
{
    m_model->clear();
    globals().HistoryChanged = true;
}

void HistoryTree::LoadHistoryTreeLater()
{
    // The records go into the history at once; the tree is built from it when first needed.
    m_loadPending = true;
    Globals& g = globals();
    m_model->load({g.HistGroup, g.HistTitle, g.HistUrl}, g.HistoryCount);
    QTimer::singleShot(kLoadDelayMs, this, &HistoryTree::ensureLoaded);
}

void HistoryTree::ensureLoaded()
{
    if (!m_loadPending)
        return;
    m_loadPending = false;
    LoadHistoryTree();
}

bool HistoryTree::CreateNode3(const QString& group)
{
    const Globals& g = globals();
    if (!m_model->record(group, g.CurrentTitle, g.CurrentUrl))
        return false; // shown before in this window: its first title and place stay
    globals().HistoryChanged = true;
    return true;
}

void HistoryTree::LoadHistoryTree()
{
    m_tree->clearNodes();
    KeyedTree::BulkInsert bulk(m_tree);
    for (const HistoryModel::Entry& entry : m_model->entries()) {
        if (entry.page)
            PageTree::addPage(m_tree, entry.group, entry.title, entry.url);
        else
            m_tree->addNode(QString(), entry.key, entry.key, KeyedTree::ClosedFolder);
    }
}

void HistoryTree::SaveHistBtn_Click()
{
    ensureLoaded();
    Globals& g = globals();
    const int n = m_model->toRecords({g.HistGroup, g.HistTitle, g.HistUrl});
    g.HistoryCount = n;
    SaveHistoryFile(n);
}

void HistoryTree::ClearHistBtn_Click()
{
    if (!DialogService::question(
            QStringLiteral("Are you sure you want to Clear all Web Page Viewing History")))
        return;
    CreateHistoryRoots();
}

void HistoryTree::nodeDoubleClicked(KeyedNode* node)
{
    m_pagePressed = false;
    if (!node || node->isFolder())
        return;
    Globals& g = globals();
    g.CurrentUrl = node->tag();
    m_verbs->NewBtnAction(g.NewWindowMode);
}

void HistoryTree::mousePressed(const QPoint& pos, Qt::MouseButton)
{
    KeyedNode* node = m_tree->nodeAtPoint(pos);
    m_pagePressed = node && !node->isFolder();
    if (!m_pagePressed)
        return;
    Globals& g = globals();
    g.CurrentUrl = node->tag();
    g.CurrentTitle = node->nodeText();
    m_pressPos = pos;
}

void HistoryTree::mouseMoved(const QPoint& pos)
{
    // The drag begins once the pointer leaves the pressed spot, so that clicks and double clicks
    // stay clicks.
    if (!m_pagePressed || (pos - m_pressPos).manhattanLength() < QApplication::startDragDistance())
        return;
    m_pagePressed = false;
    ControlDrag::start(m_tree, m_tree->dragTag(), ControlDrag::pagePicture());
}

void HistoryTree::dragOut(KeyedNode* node)
{
    if (!node || node->isFolder())
        return;
    Globals& g = globals();
    g.CurrentUrl = node->tag();
    g.CurrentTitle = node->nodeText();
    ControlDrag::start(m_tree, m_tree->dragTag(), ControlDrag::pagePicture());
}

void HistoryTree::mouseReleased()
{
    m_pagePressed = false;
}
