// Writing the HTML bookmarks file, as the browsers write it.
#include "bookmarks/NetscapeBookmarks.h"

#include <QString>

namespace NetscapeBookmarks {

namespace {

QString escaped(const QString& text)
{
    return text.toHtmlEscaped(); // & < > "
}

// After the link's own attributes, in capitals as the browsers write theirs: VANTREL_ZOOM="150".
void writeExtras(QString& out, const BookmarkExtras& extras)
{
    const QString prefix = kExtraPrefix.toString().toUpper();
    for (const auto& [name, value] : boundedBookmarkExtras(extras))
        out += u' ' + prefix + name.toUpper() + QLatin1String("=\"") + escaped(value) + u'"';
}

void writeChildren(QString& out, const BookmarkNode& folder, int level)
{
    const QString indent(level * 4, u' ');
    for (const BookmarkNode& child : folder.children) {
        out += indent;
        switch (child.kind) {
        case BookmarkNode::Kind::Folder:
            out += QLatin1String("<DT><H3>") + escaped(child.title) + QLatin1String("</H3>\n");
            out += indent + QLatin1String("<DL><p>\n");
            writeChildren(out, child, level + 1);
            out += indent + QLatin1String("</DL><p>\n");
            break;
        case BookmarkNode::Kind::Link:
            out += QLatin1String("<DT><A HREF=\"") + escaped(child.url) + u'"';
            writeExtras(out, child.extras);
            out += u'>' + escaped(child.title) + QLatin1String("</A>\n");
            break;
        case BookmarkNode::Kind::Separator:
            out += QLatin1String("<HR>\n");
            break;
        }
    }
}

} // namespace

QByteArray write(const BookmarkNode& root)
{
    QString out = QStringLiteral("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                                 "<!-- This is an automatically generated file.\n"
                                 "     It will be read and overwritten.\n"
                                 "     DO NOT EDIT! -->\n"
                                 "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                                 "<TITLE>Bookmarks</TITLE>\n"
                                 "<H1>Bookmarks</H1>\n"
                                 "<DL><p>\n");
    writeChildren(out, root, 1);
    out += QLatin1String("</DL><p>\n");
    return out.toUtf8();
}

} // namespace NetscapeBookmarks
