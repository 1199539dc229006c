#include "bookmarks/ChromiumBookmarks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace ChromiumBookmarks {

namespace {

// The text of a JSON string, in whole characters.
QString text(const QJsonValue& value)
{
    return wholeCharacters(value.toString());
}

// Adds the bookmarks and folders under the JSON folder `node` to `folder`. The JSON parser refuses
// documents nested deeper than 1024 levels, and every folder takes two of them, so this goes down
// no further than the trees of the other readers do.
void addChildren(BookmarkNode& folder, const QJsonObject& node)
{
    const QJsonArray children = node.value(u"children").toArray();
    for (const QJsonValue& value : children) {
        const QJsonObject child = value.toObject();
        const QString type = child.value(u"type").toString();
        const QString name = text(child.value(u"name"));
        if (type == u"url") {
            folder.children.append(BookmarkNode::link(name, text(child.value(u"url"))));
        } else if (type == u"folder") {
            BookmarkNode sub = BookmarkNode::folder(name);
            addChildren(sub, child);
            folder.children.append(std::move(sub));
        }
    }
}

} // namespace

BookmarkRead read(const QByteArray& bytes)
{
    BookmarkRead result;
    if (bytes.trimmed().isEmpty()) {
        result.problem = QStringLiteral("The file is not a bookmarks file: it is empty");
        return result;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        result.problem = QStringLiteral("The file is not valid JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset);
        return result;
    }
    const QJsonValue roots = document.object().value(u"roots");
    if (!roots.isObject()) {
        result.problem = QStringLiteral("The file is not a bookmarks file: it has no \"roots\" object");
        return result;
    }
    static const struct
    {
        QStringView key;
        const char* title;
    } kRoots[] = {
        {u"bookmark_bar", "Bookmarks bar"},
        {u"other", "Other bookmarks"},
        {u"synced", "Mobile bookmarks"},
    };
    for (const auto& root : kRoots) {
        BookmarkNode folder = BookmarkNode::folder(QString::fromLatin1(root.title));
        addChildren(folder, roots.toObject().value(root.key).toObject());
        if (!folder.children.isEmpty())
            result.root.children.append(std::move(folder));
    }
    return result;
}

} // namespace ChromiumBookmarks
