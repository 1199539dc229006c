#include "SameAddress.h"

#include <QUrl>
#include <QUrlQuery>

namespace SameAddress {

bool isTrackingParameter(const QString& name)
{
    static const QStringList kClickIds = {
        QStringLiteral("fbclid"), QStringLiteral("gclid"),  QStringLiteral("gclsrc"), QStringLiteral("dclid"),
        QStringLiteral("gbraid"), QStringLiteral("wbraid"), QStringLiteral("msclkid"), QStringLiteral("mc_cid"),
        QStringLiteral("mc_eid"), QStringLiteral("igshid"), QStringLiteral("yclid"),  QStringLiteral("twclid"),
        QStringLiteral("_hsenc"), QStringLiteral("_hsmi"),  QStringLiteral("mkt_tok"), QStringLiteral("oly_enc_id"),
        QStringLiteral("oly_anon_id"), QStringLiteral("vero_id"), QStringLiteral("_openstat"),
    };
    return name.startsWith(QStringLiteral("utm_"), Qt::CaseInsensitive) || kClickIds.contains(name.toLower());
}

QString key(const QString& address, bool dropTracking)
{
    const QString trimmed = address.trimmed();
    QUrl url(trimmed, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return trimmed;
    // QUrl keeps the scheme and host in lower case already.
    url.setFragment(QString());
    const int defaultPort = url.scheme() == u"https" ? 443 : url.scheme() == u"http" ? 80 : url.scheme() == u"ftp" ? 21 : -1;
    if (url.port() == defaultPort)
        url.setPort(-1);
    QString path = url.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/'))
        path.chop(1);
    url.setPath(path, QUrl::TolerantMode);
    if (url.hasQuery() && url.query().isEmpty())
        url.setQuery(QString()); // a bare "?" asks for nothing
    if (dropTracking && url.hasQuery()) {
        QUrlQuery query(url);
        QList<QPair<QString, QString>> kept;
        for (const auto& item : query.queryItems(QUrl::FullyEncoded))
            if (!isTrackingParameter(item.first))
                kept.append(item);
        query.setQueryItems(kept);
        if (kept.isEmpty())
            url.setQuery(QString());
        else
            url.setQuery(query);
    }
    return url.toString(QUrl::FullyEncoded);
}

} // namespace SameAddress
