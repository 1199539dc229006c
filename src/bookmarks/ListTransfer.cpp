#include "ListTransfer.h"
#include "core/WebAddress.h"

#include "FavoritesImport.h"
#include "core/TextCodec.h"

#include <QRegularExpression>
#include <QSet>

namespace {

void collect(const BookmarkNode& node, QList<ListTransfer::Page>& pages, QSet<QString>& seen)
{
    for (const BookmarkNode& child : node.children) {
        if (child.kind == BookmarkNode::Kind::Folder)
            collect(child, pages, seen);
        else if (child.kind == BookmarkNode::Kind::Link && WebAddress::isWebAddress(child.url) &&
                 !seen.contains(child.url.trimmed())) {
            seen.insert(child.url.trimmed());
            pages.append({child.title, child.url.trimmed(), child.extras});
        }
    }
}

} // namespace

namespace ListTransfer {

BookmarkNode asBookmarks(const QString& listName, const QList<Page>& pages)
{
    BookmarkNode folder = BookmarkNode::folder(listName);
    for (const Page& page : pages)
        folder.children.append(BookmarkNode::link(page.title, page.url, page.extras));
    return BookmarkNode::folder({}, {folder});
}

QByteArray asText(const QList<Page>& pages)
{
    QByteArray out;
    for (const Page& page : pages)
        out += page.url.toUtf8() + '\n';
    return out;
}

QStringList addressesOfText(const QByteArray& bytes)
{
    QStringList addresses;
    for (const QString& raw : TextCodec::decode(bytes).split(QRegularExpression(QStringLiteral("\r\n|\n|\r")))) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(u'#') || addresses.contains(line))
            continue;
        if (WebAddress::isWebAddress(line))
            addresses.append(line);
    }
    return addresses;
}

QStringList webAddressesIn(const QString& text)
{
    // An address runs to the next blank, or to a bracket or quote that closes it in prose.
    static const QRegularExpression address(QStringLiteral(R"((?:https?|ftp)://[^\s<>"'\x{201d}\x{bb}]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    QStringList addresses;
    for (auto match = address.globalMatch(text); match.hasNext();) {
        QString found = match.next().captured();
        // A sentence's full stop or comma, or a closing bracket it did not open, is not part of it.
        while (!found.isEmpty() && QStringLiteral(".,;:!?").contains(found.back()))
            found.chop(1);
        if (found.endsWith(u')') && found.count(u'(') < found.count(u')'))
            found.chop(1);
        if (WebAddress::isWebAddress(found) && !addresses.contains(found))
            addresses.append(found);
    }
    return addresses;
}

QList<Page> pagesOf(const BookmarkNode& root)
{
    QList<Page> pages;
    QSet<QString> seen;
    collect(root, pages, seen);
    return pages;
}

} // namespace ListTransfer
