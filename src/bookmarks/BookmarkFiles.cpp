#include "BookmarkFiles.h"

#include "ChromiumBookmarks.h"
#include "FirefoxPlaces.h"
#include "NetscapeBookmarks.h"
#include "XbelBookmarks.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace BookmarkFiles {

namespace {

// What every SQLite database file begins with.
const QByteArray kSqliteHeader("SQLite format 3\0", 16);

} // namespace

Format formatOf(const QByteArray& bytes)
{
    if (bytes.startsWith(kSqliteHeader))
        return Format::FirefoxPlaces;
    qsizetype at = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (at < bytes.size() && QChar::isSpace(uchar(bytes.at(at))))
        ++at;
    if (at < bytes.size() && bytes.at(at) == '{')
        return Format::Chromium;
    if (bytes.mid(at, 5) != "<?xml" && bytes.mid(at, 5).toLower() != "<xbel")
        return Format::Html;
    // An XHTML export also begins as XML: only its outermost element tells it from XBEL.
    QXmlStreamReader xml(bytes);
    while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::StartElement) {
    }
    const bool page = xml.isStartElement() && xml.name().compare(u"html", Qt::CaseInsensitive) == 0;
    return page ? Format::Html : Format::Xbel;
}

BookmarkRead read(const QString& path)
{
    BookmarkRead result;
    QFile file(path);
    if (QFileInfo(path).isDir()) {
        result.problem = QStringLiteral("The file cannot be read: it is a folder");
        return result;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        result.problem = QStringLiteral("The file cannot be read: %1").arg(file.errorString());
        return result;
    }
    // A database is read through SQLite, from a copy, whatever its size.
    if (file.peek(kSqliteHeader.size()) == kSqliteHeader) {
        file.close();
        return FirefoxPlaces::read(path);
    }
    if (file.size() > kMaxFileBytes) {
        result.problem = QStringLiteral("The file is not a bookmarks file: it is larger than %1 MB")
                             .arg(kMaxFileBytes / (1024 * 1024));
        return result;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        result.problem = QStringLiteral("The file cannot be read: %1").arg(file.errorString());
        return result;
    }
    switch (formatOf(bytes)) {
    case Format::Chromium:
        return ChromiumBookmarks::read(bytes);
    case Format::Xbel:
        return XbelBookmarks::read(bytes);
    case Format::Html:
    case Format::FirefoxPlaces: // told by the peek above
        break;
    }
    return NetscapeBookmarks::read(bytes);
}

BookmarkRead readProfile(const InstalledBrowsers::Profile& profile)
{
    if (profile.kind == InstalledBrowsers::Profile::Kind::Firefox)
        return FirefoxPlaces::read(profile.bookmarksFile());
    return read(profile.bookmarksFile());
}

Format formatOfName(const QString& path)
{
    return path.endsWith(QStringLiteral(".xbel"), Qt::CaseInsensitive) ? Format::Xbel : Format::Html;
}

QByteArray write(const BookmarkNode& root, Format format)
{
    return format == Format::Xbel ? XbelBookmarks::write(root) : NetscapeBookmarks::write(root);
}

} // namespace BookmarkFiles
