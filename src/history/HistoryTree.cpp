#include "HistoryTree.h"

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

HistoryTree::HistoryTree(KeyedTree* tree, Verbs* verbs) : QObject(tree), m_tree(tree), m_verbs(verbs)
{
    connect(tree, &KeyedTree::nodeDoubleClicked, this, &HistoryTree::nodeDoubleClicked);
    connect(tree, &KeyedTree::mousePressed, this, &HistoryTree::mousePressed);
    connect(tree, &KeyedTree::mouseMoved, this, &HistoryTree::mouseMoved);
    connect(tree, &KeyedTree::mouseReleased, this, &HistoryTree::mouseReleased);
}

void HistoryTree::CreateHistoryRoots()
{
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        const QString group = WebForm1::slotName(slot);
        m_tree->addNode(QString(), group, group, KeyedTree::ClosedFolder);
    }
    globals().HistoryChanged = true;
}

void HistoryTree::LoadHistoryTreeLater()
{
    m_loadPending = true;
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
    ensureLoaded();
    Globals& g = globals();
    if (!PageTree::addPage(m_tree, group, g.CurrentTitle, g.CurrentUrl))
        return false; // shown before in this window: its first title and place stay
    g.HistoryChanged = true;
    return true;
}

void HistoryTree::LoadHistoryTree()
{
    const Globals& g = globals();
    KeyedTree::BulkInsert bulk(m_tree);
    const int count = std::clamp(g.HistoryCount, 0, kHistoryCapacity);
    for (int i = 0; i < count; ++i) {
        if (g.HistUrl[i].trimmed().isEmpty())
            continue; // a group record: the group is there already
        // A page under a group that is not one of the windows' is skipped.
        PageTree::addPage(m_tree, g.HistGroup[i], g.HistTitle[i], g.HistUrl[i]);
    }
}

void HistoryTree::SaveHistBtn_Click()
{
    ensureLoaded();
    Globals& g = globals();
    const int n = PageTree::toRecords(m_tree, {g.HistGroup, g.HistTitle, g.HistUrl});
    g.HistoryCount = n;
    SaveHistoryFile(n);
}

void HistoryTree::ClearHistBtn_Click()
{
    if (!DialogService::question(
            QStringLiteral("Are you sure you want to Clear all Web Page Viewing History")))
        return;
    m_tree->clearNodes();
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

void HistoryTree::mouseReleased()
{
    m_pagePressed = false;
}
