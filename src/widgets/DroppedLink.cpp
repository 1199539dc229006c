#include "DroppedLink.h"

#include "core/WebAddress.h"

#include <QMimeData>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextDocumentFragment>
#include <QUrl>

namespace DroppedLink {

namespace {

// "address\ntitle" as Firefox (UTF-16) and older browsers (UTF-8) write it.
QString titleAfterAddress(const QString& pair)
{
    const QStringList lines = pair.split(u'\n');
    return lines.size() >= 2 ? lines.at(1).trimmed() : QString();
}

QString decodeMozUrl(const QByteArray& bytes)
{
    // UTF-16 in the byte order of the machine; a byte-order mark says otherwise.
    QStringDecoder decoder(QStringDecoder::Utf16, QStringDecoder::Flag::Stateless);
    return QString(decoder(bytes)).remove(QChar(0));
}

QString linkTextOfHtml(const QString& html)
{
    // The text of the first link in the fragment, as plain text.
    static const QRegularExpression anchor(QStringLiteral("<a\\b[^>]*>(.*?)</a>"),
                                           QRegularExpression::CaseInsensitiveOption |
                                               QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = anchor.match(html);
    if (!match.hasMatch())
        return QString();
    return QTextDocumentFragment::fromHtml(match.captured(1)).toPlainText().simplified();
}

} // namespace

Link read(const QMimeData* data)
{
    Link link;
    if (!data)
        return link;
    if (data->hasUrls() && !data->urls().isEmpty())
        link.text = data->urls().first().toString();
    else
        link.text = data->text().section(u'\n', 0, 0);
    if (data->hasFormat(QStringLiteral("text/x-moz-url")))
        link.title = titleAfterAddress(decodeMozUrl(data->data(QStringLiteral("text/x-moz-url"))));
    if (link.title.isEmpty() && data->hasFormat(QStringLiteral("_NETSCAPE_URL")))
        link.title = titleAfterAddress(QString::fromUtf8(data->data(QStringLiteral("_NETSCAPE_URL"))));
    if (link.title.isEmpty() && data->hasHtml())
        link.title = linkTextOfHtml(data->html());
    if (link.title == link.text)
        link.title.clear(); // a link whose text is its address carries no title
    return link;
}

QStringList webLinks(const QMimeData* data)
{
    QStringList addresses;
    if (!data || !data->hasUrls())
        return addresses;
    for (const QUrl& url : data->urls()) {
        const QString address = url.toString();
        if (WebAddress::startsWithHttp(address) && !addresses.contains(address))
            addresses.append(address);
    }
    return addresses;
}

} // namespace DroppedLink
