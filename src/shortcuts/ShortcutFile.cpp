#include "ShortcutFile.h"

#include "core/FileName.h"
#include "core/Globals.h"
#include "core/ProfileString.h"
#include "core/TextFile.h"
#include "core/TextRules.h"

namespace {
const QString kFavoritesFolderMark = QStringLiteral("/Favorites");
constexpr qsizetype kMaxExtensionDistance = 5;
constexpr qsizetype kMaxNameLength = 250;
constexpr qsizetype kMaxNameBytes = 255; // what a Linux file name holds
} // namespace

void ReadFavoriteFile(const QString& path)
{
    Globals& g = globals();
    g.CurrentUrl = GetIniString(QStringLiteral("InternetShortcut"), QStringLiteral("URL"), QString(), path);
    g.CurrentTitle = FavoritesRelativeName(path);
    g.FavFolderSel = path;
}

QString FavoritesRelativeName(const QString& path)
{
    // Counted from 1 with 0 for "absent", as positions in this rule always were: the name starts
    // after the mark and the separator that follows it. No special case for a missing mark.
    const qsizetype position = path.indexOf(kFavoritesFolderMark) + 1;
    return path.mid(position + kFavoritesFolderMark.size());
}

std::optional<QString> ShortcutFileName(const QString& title)
{
    if (TextRules::trimSpaces(title).isEmpty())
        return std::nullopt;
    QString name = title;
    name.replace(u':', u'-').replace(u'|', u'-');

    // A dot counts as the start of an extension only near the end of the name.
    qsizetype dot = name.lastIndexOf(u'.');
    if (dot >= 0 && name.size() - (dot + 1) > kMaxExtensionDistance)
        dot = -1;
    if (dot < 0)
        name += QStringLiteral(".URL");
    else if (name.mid(dot + 1, 3).toUpper() != QStringLiteral("URL"))
        name = name.left(dot) + QStringLiteral(".URL"); // "example.com" becomes "example.URL"

    // The cut comes after the extension was added, so a long title loses its ".URL".
    if (name.size() > kMaxNameLength)
        name.truncate(kMaxNameLength);

    // Each "/" becomes "." and takes the character before it along: "a/b" becomes ".b".
    for (qsizetype slash = name.indexOf(u'/'); slash >= 0; slash = name.indexOf(u'/')) {
        if (slash == 0)
            return std::nullopt;
        name = name.left(slash - 1) + u'.' + name.mid(slash + 1);
    }
    // 250 characters of Chinese or Cyrillic take more bytes than a file name may hold.
    return FileName::cutToBytes(name, kMaxNameBytes);
}

QString ShortcutAddress(const QString& path)
{
    return GetIniString(QStringLiteral("InternetShortcut"), QStringLiteral("URL"), QString(), path, kWholeProfileValue);
}

bool CreateFavoriteFile(const QString& url, const QString& title, const QString& folder)
{
    const std::optional<QString> name = ShortcutFileName(title);
    if (!name || name->contains(QChar(0)))
        return false;
    return WriteShortcutFile(folder + *name, url);
}

bool WriteShortcutFile(const QString& path, const QString& url)
{
    const QStringList lines = {
        QStringLiteral("[DEFAULT]"),
        QStringLiteral("BASEURL=") + url,
        QStringLiteral("[InternetShortcut]"),
        QStringLiteral("URL=") + url,
    };
    return TextFile::writeLines(path, lines).ok();
}

bool RewriteShortcutAddress(const QString& path, const QString& url)
{
    for (const QChar c : url)
        if (c.unicode() < 0x21 || c.unicode() > 0x7e)
            return false;
    const TextFile::ReadResult file = TextFile::readBytes(path);
    if (!file.error.ok() || file.bytes.startsWith("\xFF\xFE") || file.bytes.startsWith("\xFE\xFF"))
        return false;
    const QByteArray& bytes = file.bytes;
    bool inSection = false;
    qsizetype lineStart = 0;
    while (lineStart < bytes.size()) {
        qsizetype lineEnd = bytes.indexOf('\n', lineStart);
        if (lineEnd < 0)
            lineEnd = bytes.size();
        qsizetype contentEnd = lineEnd;
        while (contentEnd > lineStart && (bytes.at(contentEnd - 1) == '\r'))
            --contentEnd;
        const QByteArray line = bytes.mid(lineStart, contentEnd - lineStart);
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith('[')) {
            const qsizetype close = trimmed.indexOf(']');
            const QByteArray name = trimmed.mid(1, (close < 0 ? trimmed.size() : close) - 1).trimmed();
            inSection = name.compare("InternetShortcut", Qt::CaseInsensitive) == 0;
        } else if (inSection) {
            const qsizetype eq = line.indexOf('=');
            if (eq >= 0 && line.left(eq).trimmed().compare("URL", Qt::CaseInsensitive) == 0) {
                const QByteArray rewritten =
                    bytes.left(lineStart + eq + 1) + url.toLatin1() + bytes.mid(contentEnd);
                return TextFile::writeAtomically(path, rewritten).ok();
            }
        }
        lineStart = lineEnd + 1;
    }
    return false;
}
