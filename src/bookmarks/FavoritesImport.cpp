#include "FavoritesImport.h"

#include "core/Counted.h"
#include "core/FileName.h"
#include "core/WebAddress.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QUrl>

namespace {

constexpr qsizetype kMaxNameBytes = 255;
constexpr int kProgressEvery = 50;

// Shortcuts come with their extension in any case: ".URL" as Vantrel writes them, ".url" as most
// other programs do. A name stands for the same favourite whatever the case of its extension.
QString sameNameKey(const QString& fileName)
{
    if (fileName.endsWith(QStringLiteral(".url"), Qt::CaseInsensitive))
        return fileName.chopped(4) + QStringLiteral(".url");
    return fileName;
}

class Importer
{
public:
    Importer(const std::function<bool(int, int)>& progress, int total) : m_progress(progress), m_total(total) {}

    ImportSummary summary;

    void folder(const BookmarkNode& node, const QString& path)
    {
        // The shortcuts there now, by the name they stand for, with their names on disk.
        QHash<QString, QString> present;
        for (const QString& name : QDir(path).entryList(QDir::Files | QDir::Hidden | QDir::System))
            present.insert(sameNameKey(name), name);
        for (const BookmarkNode& child : node.children) {
            if (summary.cancelled)
                return;
            switch (child.kind) {
            case BookmarkNode::Kind::Separator:
                ++summary.separators;
                break;
            case BookmarkNode::Kind::Link:
                link(child, path, present);
                if (++m_done % kProgressEvery == 0 && m_progress && !m_progress(m_done, m_total))
                    summary.cancelled = true;
                break;
            case BookmarkNode::Kind::Folder: {
                const QString sub = path + FavoritesImport::folderName(child.title);
                const QFileInfo info(sub);
                if (!info.isDir()) {
                    if (info.exists() || !QDir().mkdir(sub)) {
                        // Its bookmarks cannot go anywhere: counted as not written.
                        summary.failed += int(child.linkCount());
                        break;
                    }
                    ++summary.folders;
                }
                folder(child, sub + u'/');
                break;
            }
            }
        }
    }

private:
    void link(const BookmarkNode& node, const QString& path, QHash<QString, QString>& present)
    {
        const QString url = node.url.trimmed();
        if (!WebAddress::isWebAddress(url)) {
            ++summary.notWeb;
            return;
        }
        // A bookmark without a title is named after its host, as browsers show it.
        std::optional<QString> name = ShortcutFileName(node.title);
        if (!name)
            name = ShortcutFileName(QUrl(url).host());
        if (!name)
            name = QStringLiteral("Bookmark.URL");
        for (int number = 1;; ++number) {
            const QString candidate = number == 1 ? *name : FavoritesImport::numberedName(*name, number);
            const auto there = present.constFind(sameNameKey(candidate));
            if (there != present.cend()) {
                if (ShortcutAddress(path + *there) == url) {
                    ++summary.alreadyThere;
                    return;
                }
                continue;
            }
            if (!WriteShortcutFile(path + candidate, url)) {
                ++summary.failed;
                return;
            }
            present.insert(sameNameKey(candidate), candidate);
            ++summary.written;
            if (number > 1)
                ++summary.renamed;
            return;
        }
    }

    const std::function<bool(int, int)>& m_progress;
    int m_total;
    int m_done = 0;
};

} // namespace

QString ImportSummary::text() const
{
    QStringList parts;
    parts << counted(folders, "folder made", "folders made");
    parts << counted(written, "shortcut written", "shortcuts written") +
                 (renamed ? QStringLiteral(" (%1 under a numbered name, as the name was taken)").arg(renamed)
                          : QString());
    if (alreadyThere)
        parts << QStringLiteral("%1 already there").arg(alreadyThere);
    if (notWeb)
        parts << QStringLiteral("%1 left out as not web addresses").arg(notWeb);
    if (separators)
        parts << counted(separators, "separator left out", "separators left out");
    if (failed)
        parts << QStringLiteral("%1 could not be written").arg(failed);
    QString message = (cancelled ? QStringLiteral("Import cancelled: ") : QStringLiteral("Bookmarks imported: ")) +
                      parts.join(QStringLiteral(", ")) + u'.';
    if (cancelled)
        message += QStringLiteral(" What was written before stays.");
    return message;
}

namespace FavoritesImport {

QString numberedName(const QString& name, int number)
{
    const QString suffix = QStringLiteral(" (%1)").arg(number);
    const bool extension = name.endsWith(QStringLiteral(".URL"));
    const QString base = extension ? name.chopped(4) : name;
    const QString tail = suffix + (extension ? QStringLiteral(".URL") : QString());
    return FileName::cutToBytes(base, kMaxNameBytes - tail.toUtf8().size()) + tail;
}

QString folderName(const QString& title)
{
    QString name = title;
    name.replace(u'/', u'-');
    name.remove(QChar(0));
    if (name.trimmed().isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return QStringLiteral("(no name)");
    return FileName::cutToBytes(name, kMaxNameBytes);
}

ImportSummary importInto(const BookmarkNode& root, const QString& folder,
                         const std::function<bool(int, int)>& progress)
{
    Importer importer(progress, int(root.linkCount()));
    importer.folder(root, folder);
    return importer.summary;
}

} // namespace FavoritesImport
