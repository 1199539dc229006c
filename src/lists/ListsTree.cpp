#include "ListsTree.h"

#include "surf/SurfPanel.h"
#include "verbs/ListsModel.h"
#include "verbs/PageSettingsStore.h"
#include "verbs/TimedRun.h"
#include "verbs/Verbs.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "favorites/FavoritesTree.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/PageTree.h"

#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>

namespace {
const QString kNewList = QStringLiteral("New List");

} // namespace

ListsTree::ListsTree(KeyedTree* tree, QComboBox* listNames, Verbs* verbs, SurfPanel* rows, FavoritesTree* favorites)
    : QObject(tree), m_tree(tree), m_model(verbs->lists()), m_listNames(listNames), m_verbs(verbs), m_rows(rows),
      m_favorites(favorites)
{
    connect(rows, &SurfPanel::rowPageToList, this, &ListsTree::addRowPageToCurrentList);
    connect(rows, &SurfPanel::saveOpenWindowsWanted, this, &ListsTree::saveOpenWindows);
    connect(m_model, &ListsModel::reset, this, &ListsTree::showAll);
    connect(m_model, &ListsModel::groupAdded, this, &ListsTree::showList);
    connect(m_model, &ListsModel::pageAdded, this, &ListsTree::showPage);
    connect(m_model, &ListsModel::pageAddressChanged, this, &ListsTree::showAll);
    connect(m_model, &ListsModel::pageRemoved, this, [this](const QString& key) {
        if (KeyedNode* node = m_tree->node(key))
            m_tree->removeNode(node);
    });
    connect(m_model, &ListsModel::listRenamed, this, &ListsTree::showRenamed);
    connect(m_model, &ListsModel::titleChanged, this, &ListsTree::showTitle);
    connect(verbs->pageSettings(), &PageSettingsStore::changed, this, &ListsTree::showPageSettings);
    tree->setLabelEditEnabled(true);
    connect(tree, &KeyedTree::controlDropped, this, &ListsTree::controlDropped);
    connect(tree, &KeyedTree::textDropped, this, &ListsTree::textDropped);
    tree->setManyLinksDropEnabled(true);
    connect(tree, &KeyedTree::linksDropped, this, &ListsTree::linksDropped);
    connect(tree, &KeyedTree::mousePressed, this, &ListsTree::mousePressed);
    connect(tree, &KeyedTree::nodeDoubleClicked, this, &ListsTree::nodeDoubleClicked);
    connect(tree, &KeyedTree::labelEdited, this, &ListsTree::labelEdited);
}

void ListsTree::LoadListTree()
{
    Globals& g = globals();
    m_model->load({g.ListName, g.ListTitle, g.ListUrl}, g.ListCount);
}

void ListsTree::showAll()
{
    m_tree->clearNodes();
    m_listNames->clear();
    KeyedTree::BulkInsert bulk(m_tree);
    for (const ListsModel::Entry& entry : m_model->entries()) {
        if (entry.page) {
            PageTree::addPage(m_tree, entry.group, entry.title, entry.url);
        } else if (KeyedNode* list = m_tree->addNode(QString(), entry.key, entry.key, KeyedTree::ClosedFolder)) {
            list->setListTag(entry.key);
            m_listNames->addItem(entry.key);
        }
    }
    m_listNames->setCurrentIndex(-1); // filling the box chooses no list by itself
    showPageSettings();
}

void ListsTree::showList(const QString& name)
{
    if (KeyedNode* list = m_tree->addNode(QString(), name, name, KeyedTree::OpenFolder))
        list->setListTag(name);
}

void ListsTree::showPage(const QString& list, const QString& title, const QString& url)
{
    if (KeyedNode* page = PageTree::addPage(m_tree, list, title, url))
        showPageSettingsOf(page);
}

void ListsTree::showPageSettings()
{
    for (KeyedNode* node : m_tree->nodes())
        if (!node->isFolder())
            showPageSettingsOf(node);
}

void ListsTree::showPageSettingsOf(KeyedNode* page)
{
    const PageSettings settings = m_verbs->pageSettings()->of(page->listTag(), page->tag());
    page->setMarked(!settings.isEmpty());
    page->setToolTip(0, settings.isEmpty() ? QString() : page->tag() + u'\n' + settings.summary());
}

void ListsTree::showTitle(const QString& key, const QString& title)
{
    KeyedNode* node = m_tree->node(key);
    if (node && node->nodeText() != title)
        node->setNodeText(title);
}

void ListsTree::SaveListBtn_Click()
{
    Globals& g = globals();
    m_listNames->clear();
    const int n = m_model->toRecords({g.ListName, g.ListTitle, g.ListUrl});
    g.ListCount = n;
    for (int i = 0; i < n; ++i)
        if (g.ListUrl[i].trimmed().isEmpty())
            m_listNames->addItem(g.ListName[i]);
    m_listNames->setCurrentIndex(-1);
    SortLists();
    SaveListFile(n);
}

bool ListsTree::AddListNode(const QString& name)
{
    if (!m_model->addList(name))
        return false;
    globals().ListsChanged = true;
    return true;
}

void ListsTree::saveOpenWindows()
{
    QString name;
    const VerbResult result = m_verbs->saveOpenWindowsAsList(&name);
    if (!result.ok()) {
        DialogService::message(QStringLiteral("The open windows could not be kept as a list: %1.").arg(result.reason()));
        return;
    }
    if (KeyedNode* list = m_tree->node(name)) {
        m_tree->setCurrentItem(list);
        m_tree->scrollToItem(list);
        m_tree->setFocus();
        m_tree->editItem(list);
    }
}

void ListsTree::NewListBtn_Click()
{
    addNumberedList(kNewList);
}

QString ListsTree::addNumberedList(const QString& base)
{
    const QString name = m_model->addNumberedList(base);
    if (!name.isEmpty())
        globals().ListsChanged = true;
    return name;
}

ListsTree::Added ListsTree::addPages(const QString& listName, const QList<ListTransfer::Page>& pages)
{
    Added result;
    for (const ListTransfer::Page& page : pages) {
        const QString& url = page.url;
        const QString& title = page.title;
        if (m_model->contains(ListsModel::pageKey(url, listName))) {
            ++result.alreadyThere;
            continue;
        }
        if (m_model->count() >= kListCapacity - 1) {
            ++result.noRoom; // the list file holds no more records
            continue;
        }
        // A page without a title of its own is shown by its address.
        if (!m_model->addPage(listName, title.trimmed().isEmpty() ? url : title, url))
            continue;
        ++result.added;
        // Settings a list exported by Vantrel carried along come back with their page.
        if (!page.extras.isEmpty())
            m_verbs->setPageSettings(listName, url, PageSettings::fromValues(page.extras));
    }
    if (result.added)
        globals().ListsChanged = true;
    return result;
}

QString ListsTree::noRoomText(int pages)
{
    return QStringLiteral("%1 of the pages could not be added: the lists hold at most %2 lists and pages together.")
        .arg(pages)
        .arg(kListCapacity - 1);
}

void ListsTree::addAddresses(const QString& listName, const QStringList& addresses)
{
    QList<ListTransfer::Page> pages; // pasted and dropped addresses come without titles
    for (const QString& address : addresses)
        pages.append({QString(), address});
    const Added added = addPages(listName, pages);
    if (added.noRoom)
        DialogService::message(noRoomText(added.noRoom));
}

void ListsTree::pastePages(KeyedNode* node)
{
    const QString listName = node ? node->listTag() : QString();
    if (listName.isEmpty()) {
        DialogService::message(QStringLiteral("Choose the list to paste the pages into."));
        return;
    }
    const QStringList addresses = ListTransfer::webAddressesIn(QGuiApplication::clipboard()->text());
    if (addresses.isEmpty()) {
        DialogService::message(QStringLiteral("The clipboard holds no web address to paste."));
        return;
    }
    addAddresses(listName, addresses);
}

bool ListsTree::AddPageNode(const QString& listName)
{
    const Globals& g = globals();
    return m_model->addPage(listName, g.CurrentTitle, g.CurrentUrl);
}

bool ListsTree::AddPageToList()
{
    if (!AddPageNode(DropNodeKey))
        return false; // already in that list: nothing happens, nothing is said
    globals().ListsChanged = true;
    m_rows->RowDragToList = false;
    return true;
}

void ListsTree::dropOn(const QPoint& pos)
{
    KeyedNode* target = m_tree->nodeAtPoint(pos);
    DropNodeKey = target ? target->listTag() : QString();
    if (DropNodeKey.isEmpty())
        return; // dropped beside the lists
    AddPageToList();
}

void ListsTree::addRowPageToCurrentList()
{
    const auto* current = static_cast<KeyedNode*>(m_tree->currentItem());
    m_tree->setFocus(Qt::OtherFocusReason);
    DropNodeKey = current ? current->listTag() : QString();
    if (DropNodeKey.isEmpty()) {
        DialogService::message(QStringLiteral("Choose a list in the Lists tab first, then press the row's list button again."));
        return;
    }
    AddPageToList();
}

void ListsTree::controlDropped(const QString& sourceTag, const QPoint& pos)
{
    // A window row's list button, a favourite or a history entry: each set CurrentUrl and
    // CurrentTitle when its drag began.
    if (sourceTag != u"AddListBtn" && sourceTag != u"SSTree1" && sourceTag != u"SSTree3")
        return;
    dropOn(pos);
}

void ListsTree::textDropped(const QString& text, const QString&, const QPoint& pos)
{
    if (text.left(4).toLower() != u"http")
        return;
    // The page comes from the current browser window's row.
    Globals& g = globals();
    if (g.WindowIndex < 1 || g.WindowIndex > kWindowSlots)
        return;
    const GradientButton* row = m_rows->Button(g.WindowIndex - 1);
    if (row->tag().trimmed().isEmpty())
        return;
    g.CurrentUrl = row->tag();
    g.CurrentTitle = row->text();
    dropOn(pos);
}

void ListsTree::linksDropped(const QStringList& addresses, const QPoint& pos)
{
    KeyedNode* target = m_tree->nodeAtPoint(pos);
    if (!target || target->listTag().isEmpty())
        return; // dropped beside the lists
    addAddresses(target->listTag(), addresses);
}

void ListsTree::mousePressed()
{
    // A drag begun in the Favorites or the history tree ends here, so that it drops on the lists.
    m_favorites->endDrag();
    m_rows->RowDragToFavorites = false;
    m_rows->RowDragToList = false;
}

void ListsTree::nodeDoubleClicked(KeyedNode* node)
{
    if (!node || node->isFolder())
        return;
    Globals& g = globals();
    g.CurrentUrl = node->tag();
    m_verbs->NewBtnAction(g.NewWindowMode);
}

void ListsTree::labelEdited(KeyedNode* node, const QString& oldText, const QString& newText)
{
    if (node->image() == KeyedTree::Page) {
        m_model->setTitle(node->key(), newText); // a page keeps its key; its label is its title
        return;
    }
    if (!m_model->renameList(node->key(), newText)) {
        node->setNodeText(oldText); // two lists cannot share a name
        return;
    }
    globals().ListsChanged = true;
}

void ListsTree::showRenamed(const QString& oldName, const QString& newName)
{
    if (KeyedNode* list = m_tree->node(oldName)) {
        m_tree->rekey(list, newName);
        if (list->nodeText() != newName)
            list->setNodeText(newName);
    }
    for (KeyedNode* node : m_tree->nodes()) {
        if (node->listTag().trimmed() != oldName)
            continue;
        node->setListTag(newName);
        if (node->image() == KeyedTree::Page)
            m_tree->rekey(node, PageGroups::pageKey(node->tag(), newName));
    }
    const int index = m_listNames->findText(oldName);
    if (index >= 0)
        m_listNames->setItemText(index, newName);
    showPageSettings(); // the pages' settings went along with the list
}

QStringList ListsTree::BuildRunList(const QString& upperName, bool* found, bool* overflow) const
{
    const QStringList urls = TimedRun::runAddresses(m_model->pages(upperName), overflow);
    if (found && !urls.isEmpty())
        *found = true;
    return urls;
}
