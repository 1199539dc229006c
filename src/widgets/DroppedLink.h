#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

// A link that another program drops: the address (the first of a list of links, or the first line
// of plain text) and, where the drop carries it, the page's title: browsers put it in
// "text/x-moz-url" or "_NETSCAPE_URL" (the address, a line end, the title) and give the link's
// text as HTML.
namespace DroppedLink {

struct Link
{
    QString text;
    QString title;
};

Link read(const QMimeData* data);

// The web addresses of a list of links (several pages dragged at once), in order, each once.
QStringList webLinks(const QMimeData* data);

} // namespace DroppedLink
