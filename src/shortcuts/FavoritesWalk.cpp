#include "FavoritesWalk.h"

#include "core/FileName.h"
#include "core/TextFile.h"

#include <algorithm>
#include <dirent.h>
#include <sys/stat.h>

namespace FavoritesWalk {

namespace {

const QString kFavoritesMark = QStringLiteral("/Favorites/");

void sortIgnoringCase(QStringList& names)
{
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int c = a.compare(b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a < b;
    });
}

bool isShortcutName(const QString& name)
{
    return name.endsWith(QLatin1String(".url"), Qt::CaseInsensitive);
}

} // namespace

bool isShortcutTemporaryTarget(const QByteArray& name)
{
    constexpr qsizetype kCutLength = 200; // as the temporary file's name cuts a long name
    return name.size() == kCutLength || name.toLower().endsWith(".url");
}

void list(const QString& folder, QStringList* subfolders, QStringList* shortcutFiles, QStringList* leftovers)
{
    const QByteArray native = FileName::encode(folder);
    DIR* dir = ::opendir(native.constData());
    if (!dir)
        return; // an unreadable folder shows nothing below it
    while (const dirent* entry = ::readdir(dir)) {
        const char* raw = entry->d_name;
        if (raw[0] == '.' && (raw[1] == '\0' || (raw[1] == '.' && raw[2] == '\0')))
            continue;
        if (raw[0] == '.') {
            // Hidden entries are not favourites; some are what an interrupted save left.
            if (leftovers && entry->d_type != DT_DIR) {
                const auto target = TextFile::temporaryTarget(QByteArray(raw));
                if (target && isShortcutTemporaryTarget(*target))
                    leftovers->append(FileName::decode(raw));
            }
            continue;
        }
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat st {};
            if (::lstat((native + '/' + raw).constData(), &st) != 0)
                continue;
            type = S_ISDIR(st.st_mode) ? DT_DIR : S_ISLNK(st.st_mode) ? DT_LNK : DT_REG;
        }
        const QString name = FileName::decode(raw);
        if (type == DT_DIR) {
            subfolders->append(name);
        } else if (isShortcutName(name) && type != DT_DIR) {
            // A link counts only when it leads to a file: links to folders are never followed.
            if (type == DT_LNK) {
                struct stat st {};
                if (::stat((native + '/' + raw).constData(), &st) != 0 || !S_ISREG(st.st_mode))
                    continue;
            } else if (type != DT_REG) {
                continue;
            }
            shortcutFiles->append(name);
        }
    }
    ::closedir(dir);
    sortIgnoringCase(*subfolders);
    sortIgnoringCase(*shortcutFiles);
}

Result walk(const QString& root)
{
    Result result;
    if (root.isEmpty())
        return result;
    QStringList rootFolders;
    QStringList leftovers;
    list(root, &rootFolders, &result.rootShortcuts, &leftovers);
    for (const QString& name : leftovers)
        result.leftovers.append(root + u'/' + name);
    for (const QString& name : rootFolders) {
        if (result.folders.size() >= kFolderCapacity)
            break;
        result.folders.append(root + u'/' + name);
    }
    // The array grows while it is walked: each folder's sub-folders go to its end.
    for (qsizetype i = 0; i < result.folders.size(); ++i) {
        QStringList subfolders;
        QStringList shortcuts;
        leftovers.clear();
        list(result.folders[i], &subfolders, &shortcuts, &leftovers);
        for (const QString& name : leftovers)
            result.leftovers.append(result.folders[i] + u'/' + name);
        result.shortcuts.append(shortcuts);
        for (const QString& name : subfolders) {
            if (result.folders.size() >= kFolderCapacity)
                break;
            result.folders.append(result.folders[i] + u'/' + name);
        }
    }
    return result;
}

QString relativePath(const QString& folderPath)
{
    const qsizetype position = folderPath.indexOf(kFavoritesMark) + 1; // counted from 1, 0 when absent
    return folderPath.mid(position + kFavoritesMark.size() - 1);
}

QString shortcutText(const QString& fileName)
{
    return fileName.left(fileName.size() - 4);
}

} // namespace FavoritesWalk
