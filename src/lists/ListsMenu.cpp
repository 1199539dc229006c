#include "ListsMenu.h"

#include "favorites/DuplicatesDialog.h"
#include "favorites/LinkCheckDialog.h"

#include "ListsTree.h"
#include "OtherWindowsRun.h"
#include "PageSettingsDialog.h"
#include "verbs/ListsModel.h"
#include "verbs/PageSettingsStore.h"
#include "verbs/Verbs.h"
#include "bookmarks/BookmarkFiles.h"
#include "bookmarks/ListTransfer.h"
#include "core/Counted.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/TextFile.h"
#include "widgets/KeyedTree.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QShortcut>

namespace {

const QStringList kImportFilters = {QStringLiteral("Addresses and bookmarks (*.txt *.html *.htm *.xbel places.sqlite)"),
                                    QStringLiteral("All files (*)")};
const QStringList kExportFilters = {QStringLiteral("HTML bookmarks (*.html *.htm)"),
                                    QStringLiteral("Text, one address a line (*.txt)"),
                                    QStringLiteral("XBEL bookmarks (*.xbel)")};

// Whether a file is read as bookmarks rather than as lines of addresses: by its name.
bool isBookmarksFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == u"html" || suffix == u"htm" || suffix == u"xbel" || suffix == u"json" || suffix == u"sqlite";
}

// A list's name from a file's: what the list file cannot hold (its delimiter, line ends) goes.
QString listNameOf(const QString& path)
{
    QString name = QFileInfo(path).completeBaseName();
    name.replace(QStringLiteral("[#@!]"), QStringLiteral(" "));
    for (QChar& c : name)
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            c = u' ';
    name = name.trimmed();
    return name.isEmpty() ? QStringLiteral("Imported List") : name;
}

} // namespace

ListsMenu::ListsMenu(KeyedTree* tree, ListsTree* lists) : QObject(tree), m_tree(tree), m_lists(lists)
{
    m_menu = new QMenu(tree);
    m_menu->setObjectName(QStringLiteral("ListsMenu"));
    m_import = m_menu->addAction(QStringLiteral("Import List..."), this, &ListsMenu::importList);
    m_import->setObjectName(QStringLiteral("ImportListAction"));
    m_export = m_menu->addAction(QStringLiteral("Export List..."), this, &ListsMenu::exportList);
    m_export->setObjectName(QStringLiteral("ExportListAction"));
    m_menu->addSeparator();
    m_paste = m_menu->addAction(QStringLiteral("Paste Pages"), this, &ListsMenu::pastePages);
    m_paste->setObjectName(QStringLiteral("PastePagesAction"));
    m_paste->setShortcut(QKeySequence::Paste);
    m_paste->setShortcutContext(Qt::WidgetShortcut); // the key itself is the tree's, below
    m_paste->setShortcutVisibleInContextMenu(true);
    m_menu->addSeparator();
    m_pageSettings = m_menu->addAction(QStringLiteral("Page Settings..."), this, &ListsMenu::editPageSettings);
    m_pageSettings->setObjectName(QStringLiteral("PageSettingsAction"));
    m_otherWindows = m_menu->addAction(QStringLiteral("Run in Other Windows..."), this, &ListsMenu::runInOtherWindows);
    m_otherWindows->setObjectName(QStringLiteral("RunInOtherWindowsAction"));
    m_stopOtherWindows =
        m_menu->addAction(QStringLiteral("Stop Running in Other Windows"), this, &ListsMenu::stopInOtherWindows);
    m_stopOtherWindows->setObjectName(QStringLiteral("StopOtherWindowsAction"));
    m_menu->addSeparator();
    m_saveOpenWindows =
        m_menu->addAction(QStringLiteral("Save Open Windows as a List"), m_lists, &ListsTree::saveOpenWindows);
    m_saveOpenWindows->setObjectName(QStringLiteral("SaveOpenWindowsAction"));
    m_findDuplicates = m_menu->addAction(QStringLiteral("Find Duplicates..."), this, [this] {
        DuplicatesDialog::showFor(m_lists->verbs(), m_tree->window());
    });
    m_findDuplicates->setObjectName(QStringLiteral("FindDuplicatesAction"));
    // The list under the pointer, or all of them.
    m_checkLinks = m_menu->addAction(QStringLiteral("Check Links..."), this, [this] {
        LinkCheckDialog::showFor(m_lists->verbs(), {true, targetList()}, m_tree->window());
    });
    m_checkLinks->setObjectName(QStringLiteral("CheckLinksAction"));
    auto* paste = new QShortcut(QKeySequence::Paste, tree, nullptr, nullptr, Qt::WidgetShortcut);
    connect(paste, &QShortcut::activated, this, [this] {
        auto* node = static_cast<KeyedNode*>(m_tree->currentItem());
        m_lists->pastePages(node);
    });
    connect(tree, &KeyedTree::menuRequested, this, &ListsMenu::showFor);
}

void ListsMenu::showFor(KeyedNode* node, const QPoint& globalPos)
{
    m_targetKey = node ? node->key() : QString();
    const bool onList = !targetList().isEmpty();
    m_export->setEnabled(onList);
    m_paste->setEnabled(onList);
    m_pageSettings->setEnabled(onList);
    m_otherWindows->setEnabled(onList);
    bool runsElsewhere = false;
    for (const RunState& run : m_lists->verbs()->otherRuns())
        runsElsewhere = runsElsewhere || (onList && run.list.toUpper() == targetList().toUpper());
    m_stopOtherWindows->setEnabled(runsElsewhere);
    m_saveOpenWindows->setEnabled(!m_lists->verbs()->windows().isEmpty());
    m_menu->popup(globalPos);
}

QString ListsMenu::targetList() const
{
    const KeyedNode* node = m_tree->node(m_targetKey);
    return node ? node->listTag() : QString();
}

void ListsMenu::importList()
{
    const auto file = DialogService::openFile(QStringLiteral("Import List"), QDir::homePath(), kImportFilters);
    if (file)
        importListFile(file->path);
}

QString ListsMenu::importListFile(const QString& path)
{
    QList<ListTransfer::Page> pages;
    if (isBookmarksFile(path)) {
        const BookmarkRead read = BookmarkFiles::read(path);
        pages = ListTransfer::pagesOf(read.root);
        if (!read.ok() && !pages.isEmpty()
            && !DialogService::question(QStringLiteral("%1 is damaged: %2.\n\nMake a list of the %3 pages read before it?")
                                            .arg(QDir::toNativeSeparators(path), read.problem)
                                            .arg(pages.size())))
            return QString();
        if (!read.ok() && pages.isEmpty()) {
            DialogService::message(QStringLiteral("No list was made from %1: %2.")
                                       .arg(QDir::toNativeSeparators(path), read.problem));
            return QString();
        }
    } else {
        const TextFile::ReadResult read = TextFile::readBytes(path);
        if (read.error) {
            DialogService::message(QStringLiteral("No list was made from %1: %2.")
                                       .arg(QDir::toNativeSeparators(path), read.error.text()));
            return QString();
        }
        for (const QString& address : ListTransfer::addressesOfText(read.bytes))
            pages.append({QString(), address});
    }
    if (pages.isEmpty()) {
        DialogService::message(QStringLiteral("No list was made from %1: it holds no web address.")
                                   .arg(QDir::toNativeSeparators(path)));
        return QString();
    }
    const QString name = m_lists->addNumberedList(listNameOf(path));
    if (name.isEmpty())
        return QString();
    const ListsTree::Added added = m_lists->addPages(name, pages);
    if (KeyedNode* list = m_tree->node(name)) {
        list->setExpanded(true);
        m_tree->setCurrentItem(list);
    }
    QString said =
        QStringLiteral("The list \"%1\" was made with %2.").arg(name, counted(added.added, "page", "pages"));
    if (added.noRoom)
        said += u' ' + ListsTree::noRoomText(added.noRoom);
    DialogService::message(said);
    return name;
}

void ListsMenu::exportList()
{
    const QString list = targetList();
    if (list.isEmpty())
        return;
    const auto file = DialogService::saveFile(QStringLiteral("Export List"),
                                              QDir::homePath() + u'/' + list + QStringLiteral(".html"), kExportFilters);
    if (!file)
        return;
    const bool asText = file->filter == 1;
    QString path = file->path;
    // The kind chosen in the dialog gives a name without an ending of its own the ending.
    if (QFileInfo(path).suffix().isEmpty())
        path += asText ? QStringLiteral(".txt") : file->filter == 2 ? QStringLiteral(".xbel") : QStringLiteral(".html");
    exportListFile(list, path, asText || QFileInfo(path).suffix().toLower() == u"txt");
}

bool ListsMenu::exportListFile(const QString& listName, const QString& path, bool asText)
{
    QList<ListTransfer::Page> pages;
    // The pages' settings travel along in attributes other browsers leave alone.
    const PageSettingsStore* settings = m_lists->verbs()->pageSettings();
    for (const ListPageState& page : m_lists->model()->pagesOf(listName))
        pages.append({page.title, page.address, settings->of(listName, page.address).values()});
    // An XBEL file by its name; an HTML bookmarks file otherwise.
    const bool xbel = QFileInfo(path).suffix().toLower() == u"xbel";
    const QByteArray bytes = asText ? ListTransfer::asText(pages)
                                    : BookmarkFiles::write(ListTransfer::asBookmarks(listName, pages),
                                                           xbel ? BookmarkFiles::Format::Xbel : BookmarkFiles::Format::Html);
    if (const RunError error = TextFile::writeAtomically(path, bytes)) {
        DialogService::message(QStringLiteral("The list could not be exported to %1: %2.")
                                   .arg(QDir::toNativeSeparators(path), error.text()));
        return false;
    }
    return true;
}

void ListsMenu::pastePages()
{
    m_lists->pastePages(m_tree->node(m_targetKey));
}

PageSettingsDialog* ListsMenu::pageSettingsDialog() const
{
    return m_dialog;
}

OtherWindowsRun* ListsMenu::otherWindowsDialog() const
{
    return m_otherRun;
}

void ListsMenu::runInOtherWindows()
{
    const QString list = targetList();
    if (list.isEmpty())
        return;
    if (m_otherRun)
        m_otherRun->close();
    m_otherRun = new OtherWindowsRun(list, m_lists->verbs(), m_tree->window());
    m_otherRun->show();
}

void ListsMenu::stopInOtherWindows()
{
    const QString list = targetList();
    Verbs* verbs = m_lists->verbs();
    for (const RunState& run : verbs->otherRuns())
        if (run.list.toUpper() == list.toUpper())
            verbs->stopRun(run.id);
}

void ListsMenu::editPageSettings()
{
    const KeyedNode* node = m_tree->node(m_targetKey);
    const QString list = targetList();
    if (!node || list.isEmpty())
        return;
    Verbs* verbs = m_lists->verbs();
    // A page's own settings; for a list, those its pages share (none when they differ).
    QStringList addresses;
    QString what;
    if (node->isFolder()) {
        for (const ListPageState& page : m_lists->model()->pagesOf(list))
            addresses << page.address;
        what = QStringLiteral("Every page of the list \"%1\" (%2)").arg(list, counted(int(addresses.size()), "page", "pages"));
    } else {
        addresses << node->tag();
        what = node->nodeText() + u'\n' + node->tag();
    }
    if (addresses.isEmpty()) {
        DialogService::message(QStringLiteral("The list \"%1\" has no pages.").arg(list));
        return;
    }
    PageSettings shown = verbs->pageSettings()->of(list, addresses.first());
    for (const QString& address : addresses)
        if (verbs->pageSettings()->of(list, address) != shown)
            shown = PageSettings();
    if (m_dialog)
        m_dialog->close();
    m_dialog = new PageSettingsDialog(what, shown, globals().RunInterval, m_tree->window());
    connect(m_dialog, &PageSettingsDialog::chosen, this, [verbs, list, addresses](const PageSettings& settings) {
        for (const QString& address : addresses) {
            const VerbResult result = verbs->setPageSettings(list, address, settings);
            if (!result.ok()) {
                DialogService::message(QStringLiteral("The page settings were not kept: %1.").arg(result.reason()));
                return;
            }
        }
    });
    m_dialog->show();
}
