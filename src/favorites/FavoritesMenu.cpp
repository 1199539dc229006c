#include "FavoritesMenu.h"

#include "DuplicatesDialog.h"
#include "LinkCheckDialog.h"

#include "FavoritesTree.h"
#include "bookmarks/BookmarkFiles.h"
#include "bookmarks/FavoritesExport.h"
#include "bookmarks/InstalledBrowsers.h"
#include "core/Counted.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/Startup.h"
#include "core/TextFile.h"
#include "widgets/KeyedTree.h"
#include "widgets/WindowPlacement.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QProgressDialog>
#include <QStandardPaths>

namespace {

const QStringList kImportFilters = {
    QStringLiteral("Bookmarks (*.html *.htm *.xbel *.json Bookmarks places.sqlite)"),
    QStringLiteral("All files (*)"),
};
const QStringList kExportFilters = {
    QStringLiteral("HTML bookmarks (*.html *.htm)"),
    QStringLiteral("XBEL bookmarks (*.xbel)"),
};

} // namespace

FavoritesMenu::FavoritesMenu(KeyedTree* tree, FavoritesTree* favorites)
    : QObject(tree), m_tree(tree), m_favorites(favorites)
{
    m_menu = new QMenu(tree);
    m_menu->setObjectName(QStringLiteral("FavoritesMenu"));
    m_importFile = m_menu->addAction(QStringLiteral("Import Bookmarks..."), this, &FavoritesMenu::importFile);
    m_importFile->setObjectName(QStringLiteral("ImportBookmarksAction"));
    m_importBrowser = m_menu->addAction(QStringLiteral("Import from Browser..."), this, &FavoritesMenu::importFromBrowser);
    m_importBrowser->setObjectName(QStringLiteral("ImportFromBrowserAction"));
    m_menu->addSeparator();
    m_export = m_menu->addAction(QStringLiteral("Export Bookmarks..."), this, &FavoritesMenu::exportBookmarks);
    m_export->setObjectName(QStringLiteral("ExportBookmarksAction"));
    m_menu->addSeparator();
    m_findDuplicates = m_menu->addAction(QStringLiteral("Find Duplicates..."), this, &FavoritesMenu::findDuplicates);
    m_findDuplicates->setObjectName(QStringLiteral("FindDuplicatesAction"));
    // The folder under the pointer, or all the Favorites.
    m_checkLinks = m_menu->addAction(QStringLiteral("Check Links..."), this, [this] {
        LinkCheckDialog::showFor(m_favorites->verbs(), {false, m_targetKey}, m_tree->window());
    });
    m_checkLinks->setObjectName(QStringLiteral("CheckLinksAction"));
    connect(tree, &KeyedTree::menuRequested, this, &FavoritesMenu::showFor);
}

void FavoritesMenu::showFor(KeyedNode* node, const QPoint& globalPos)
{
    m_targetFolder = node && node->isFolder() ? node->tag() : QString();
    m_targetKey = node && node->isFolder() ? node->key() : QString();
    m_menu->popup(globalPos);
}

void FavoritesMenu::importFile()
{
    const auto file = DialogService::openFile(QStringLiteral("Import Bookmarks"), QDir::homePath(), kImportFilters);
    if (file)
        importRead(BookmarkFiles::read(file->path), QDir::toNativeSeparators(file->path));
}

void FavoritesMenu::importFromBrowser()
{
    const QList<InstalledBrowsers::Profile> profiles = InstalledBrowsers::find(
        QDir::homePath(), QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    if (profiles.isEmpty()) {
        DialogService::message(QStringLiteral("No browser profile with bookmarks was found for you: Vantrel "
                                              "looks for Firefox, Chromium, Google Chrome, Brave, Vivaldi and "
                                              "Microsoft Edge. Export the bookmarks from your browser to a file "
                                              "and use \"Import Bookmarks...\" instead."));
        return;
    }
    QStringList labels;
    for (const InstalledBrowsers::Profile& profile : profiles)
        labels << profile.label();
    const std::optional<int> chosen =
        DialogService::chooseItem(QStringLiteral("Import from Browser"), QStringLiteral("Bring in the bookmarks of:"), labels);
    if (!chosen || *chosen < 0 || *chosen >= profiles.size())
        return;
    const InstalledBrowsers::Profile& profile = profiles.at(*chosen);
    importRead(BookmarkFiles::readProfile(profile), profile.label());
}

void FavoritesMenu::importRead(const BookmarkRead& read, const QString& source)
{
    const qsizetype links = read.root.linkCount();
    const qsizetype folders = read.root.folderCount();
    if (!read.ok()) {
        if (links == 0) { // empty folders alone are not worth a damaged import
            DialogService::message(QStringLiteral("No bookmarks were imported from %1: %2.").arg(source, read.problem));
            return;
        }
        if (!DialogService::question(QStringLiteral("%1 is damaged: %2.\n\nImport the %3 and %4 read before it?")
                                         .arg(source, read.problem, counted(links, "bookmark", "bookmarks"),
                                              counted(folders, "folder", "folders"))))
            return;
    }
    const QString folder = globals().FavoritesPath;
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        DialogService::message(QStringLiteral("No bookmarks were imported: there is no Favorites folder."));
        return;
    }
    std::unique_ptr<QProgressDialog> progress;
    if (links > kProgressFrom) {
        progress = std::make_unique<QProgressDialog>(QStringLiteral("Importing bookmarks from %1...").arg(source),
                                                     QStringLiteral("Cancel"), 0, int(links), programMainWindow());
        progress->setObjectName(QStringLiteral("ImportProgress"));
        progress->setWindowTitle(globals().AppTitle);
        progress->setWindowModality(Qt::ApplicationModal); // the tree is not to change under the import
        progress->setMinimumDuration(0);
        progress->setValue(0);
    }
    const ImportSummary summary = FavoritesImport::importInto(read.root, folder + u'/', [&](int done, int) {
        if (!progress)
            return true;
        progress->setValue(done);
        QApplication::processEvents();
        return !progress->wasCanceled();
    });
    progress.reset();
    m_favorites->RefreshBtn_Click();
    DialogService::message(summary.text());
}

void FavoritesMenu::exportBookmarks()
{
    const QString folder = m_targetFolder.isEmpty() ? globals().FavoritesPath : m_targetFolder;
    const QString name = m_targetFolder.isEmpty() ? QStringLiteral("bookmarks") : QFileInfo(folder).fileName();
    const QString caption = m_targetFolder.isEmpty() ? QStringLiteral("Export Bookmarks")
                                                     : QStringLiteral("Export Bookmarks of \"%1\"").arg(name);
    const auto file =
        DialogService::saveFile(caption, QDir::homePath() + u'/' + name + QStringLiteral(".html"), kExportFilters);
    if (!file)
        return;
    QString path = file->path;
    // The kind chosen in the dialog gives a name without an ending of its own the ending.
    if (QFileInfo(path).suffix().isEmpty())
        path += file->filter == 1 ? QStringLiteral(".xbel") : QStringLiteral(".html");
    exportFolder(folder, path);
}

bool FavoritesMenu::exportFolder(const QString& folder, const QString& path)
{
    if (!QFileInfo(folder).isDir()) {
        DialogService::message(QStringLiteral("Nothing was exported: the folder %1 is not there any more.")
                                   .arg(QDir::toNativeSeparators(folder)));
        return false;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const BookmarkNode tree = FavoritesExport::treeOf(folder);
    const QByteArray bytes = BookmarkFiles::write(tree, BookmarkFiles::formatOfName(path));
    const RunError error = TextFile::writeAtomically(path, bytes);
    QApplication::restoreOverrideCursor();
    if (error) {
        DialogService::message(QStringLiteral("The bookmarks could not be exported to %1: %2.")
                                   .arg(QDir::toNativeSeparators(path), error.text()));
        return false;
    }
    DialogService::message(QStringLiteral("%1 in %2 exported to %3.")
                               .arg(counted(tree.linkCount(), "bookmark", "bookmarks"),
                                    counted(tree.folderCount(), "folder", "folders"), QDir::toNativeSeparators(path)));
    return true;
}

void FavoritesMenu::findDuplicates()
{
    DuplicatesDialog::showFor(m_favorites->verbs(), m_tree->window());
}
