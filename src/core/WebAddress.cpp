#include "WebAddress.h"

#include <QUrl>

#include <algorithm>

namespace WebAddress {

bool isWebAddress(const QString& url)
{
    if (std::any_of(url.cbegin(), url.cend(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; }))
        return false;
    const QUrl parsed(url.trimmed());
    const QString scheme = parsed.scheme().toLower();
    return parsed.isValid() && !parsed.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https") || scheme == QLatin1String("ftp"));
}

bool startsWithHttp(const QString& text)
{
    return text.left(4).compare(QLatin1String("http"), Qt::CaseInsensitive) == 0;
}

QString nameFromAddress(const QString& address)
{
    const QString host = QUrl(address.trimmed()).host();
    return host.isEmpty() ? address : host;
}

std::optional<QString> fromOutside(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || std::any_of(trimmed.cbegin(), trimmed.cend(), [](QChar c) {
            return c.unicode() < 0x20 || c.unicode() == 0x7f;
        }))
        return std::nullopt;
    const QUrl url = QUrl::fromUserInput(trimmed);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || url.host().isEmpty() || (scheme != u"http" && scheme != u"https"))
        return std::nullopt;
    return url.toString();
}

} // namespace WebAddress
