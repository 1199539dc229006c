#include "LinkCheck.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace {

bool isHttp(const QUrl& url)
{
    return (url.scheme() == u"http" || url.scheme() == u"https") && !url.host().isEmpty();
}

QString statusReason(int status, const QByteArray& phrase)
{
    return phrase.isEmpty() ? QString::number(status) : QStringLiteral("%1 %2").arg(status).arg(QString::fromLatin1(phrase));
}

} // namespace

LinkCheck::LinkCheck(QObject* parent) : QObject(parent), m_network(new QNetworkAccessManager(this))
{
    qRegisterMetaType<LinkCheck::Outcome>();
    // Redirects are followed by hand, to tell for good from for a while.
    m_network->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

LinkCheck::~LinkCheck()
{
    // Whoever listens may be half gone already (a parent being destroyed): nothing is told.
    blockSignals(true);
    cancel();
}

QString LinkCheck::siteOf(const QUrl& url)
{
    return url.scheme() + QStringLiteral("://") + url.host().toLower() + u':' +
           QString::number(url.port(url.scheme() == u"https" ? 443 : 80));
}

QString LinkCheck::verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Fine:
        return QStringLiteral("Fine");
    case Verdict::Moved:
        return QStringLiteral("Moved for good");
    case Verdict::Dead:
        return QStringLiteral("Dead");
    case Verdict::FailingForNow:
        return QStringLiteral("Failing for now");
    case Verdict::NotChecked:
        return QStringLiteral("Not checked");
    }
    return QString();
}

void LinkCheck::start(const QList<Link>& links)
{
    cancel();
    m_outcomes.clear();
    m_waiting.clear();
    m_total = int(links.size());
    m_running = true;
    for (const Link& link : links) {
        Job job;
        job.link = link;
        job.url = QUrl(link.address.trimmed(), QUrl::TolerantMode);
        job.site = siteOf(job.url);
        if (!isHttp(job.url)) {
            finish(job, Verdict::NotChecked, 0, QStringLiteral("only http and https addresses are checked"));
            continue;
        }
        m_waiting.append(job);
    }
    pump();
}

void LinkCheck::cancel()
{
    if (!m_running)
        return;
    m_running = false;
    m_waiting.clear();
    const QList<QTimer*> timers = m_timers;
    m_timers.clear();
    qDeleteAll(timers);
    const QList<QNetworkReply*> replies = m_replies;
    m_replies.clear();
    for (QNetworkReply* reply : replies) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    m_inFlight = 0;
    m_delayed = 0;
    m_inFlightBySite.clear();
    emit finished(true);
}

bool LinkCheck::eligible(const Job& job) const
{
    return m_inFlightBySite.value(job.site) < m_limits.perSite;
}

void LinkCheck::pump()
{
    if (!m_running)
        return;
    for (qsizetype i = 0; i < m_waiting.size() && m_inFlight < m_limits.atOnce;) {
        if (eligible(m_waiting.at(i)))
            send(m_waiting.takeAt(i));
        else
            ++i;
    }
    if (m_waiting.isEmpty() && m_inFlight == 0 && m_delayed == 0) {
        m_running = false;
        emit finished(false);
    }
}

void LinkCheck::send(Job job)
{
    QNetworkRequest request(job.url);
    request.setTransferTimeout(m_limits.timeoutMs);
    request.setRawHeader("User-Agent", "Vantrel link check");
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    QNetworkReply* reply = job.useGet ? m_network->get(request) : m_network->head(request);
    ++m_inFlight;
    ++m_inFlightBySite[job.site];
    m_replies.append(reply);
    // A GET is only for its status: the body is never read, the answer is taken at its headers.
    if (job.useGet)
        connect(reply, &QNetworkReply::metaDataChanged, reply, [reply] {
            if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid())
                reply->abort();
        });
    connect(reply, &QNetworkReply::finished, this, [this, reply, job] { answered(reply, job); });
}

void LinkCheck::answered(QNetworkReply* reply, Job job)
{
    m_replies.removeOne(reply);
    reply->deleteLater();
    --m_inFlight;
    if (--m_inFlightBySite[job.site] <= 0)
        m_inFlightBySite.remove(job.site);

    const QVariant statusValue = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const int status = statusValue.isValid() ? statusValue.toInt() : 0;
    const QByteArray phrase = reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toByteArray();

    if (status == 0) {
        switch (reply->error()) {
        case QNetworkReply::HostNotFoundError:
            finish(job, Verdict::Dead, 0, QStringLiteral("the site's name was not found"));
            break;
        case QNetworkReply::OperationCanceledError:
        case QNetworkReply::TimeoutError:
            finish(job, Verdict::FailingForNow, 0,
                   QStringLiteral("no answer within %1 s").arg(m_limits.timeoutMs / 1000.0, 0, 'g', 3));
            break;
        default:
            finish(job, Verdict::FailingForNow, 0, reply->errorString());
            break;
        }
        pump();
        return;
    }
    if (!job.useGet && (status == 405 || status == 501)) {
        job.useGet = true; // the site does not take HEAD: ask again with GET
        m_waiting.prepend(job);
        pump();
        return;
    }
    if (status >= 300 && status < 400 && status != 304) {
        const QUrl location = reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
        const QUrl next = job.url.resolved(location);
        if (location.isEmpty() || !isHttp(next)) {
            finish(job, Verdict::FailingForNow, status, statusReason(status, phrase) + QStringLiteral(" to nowhere"));
        } else if (++job.hops > m_limits.maxRedirects) {
            finish(job, Verdict::FailingForNow, status, QStringLiteral("more than %1 redirects").arg(m_limits.maxRedirects));
        } else {
            const bool forGood = status == 301 || status == 308;
            if (job.firstRedirect.isEmpty())
                job.firstRedirect = statusReason(status, phrase);
            job.permanent = job.permanent && forGood;
            if (job.permanent)
                job.movedTo = next;
            job.url = next;
            job.site = siteOf(next);
            m_waiting.prepend(job);
        }
        pump();
        return;
    }
    if ((status == 429 || status == 503) && !job.retried) {
        // Asked to come back later: once, when the wait is short enough to be worth it.
        const QByteArray after = reply->rawHeader("Retry-After").trimmed();
        bool number = false;
        int seconds = after.toInt(&number);
        if (!number) {
            const QDateTime when = QDateTime::fromString(QString::fromLatin1(after), Qt::RFC2822Date);
            seconds = when.isValid() ? int(QDateTime::currentDateTimeUtc().secsTo(when)) : -1;
        }
        if (!after.isEmpty() && seconds >= 0 && seconds <= m_limits.longestRetryAfterSeconds) {
            job.retried = true;
            ++m_delayed;
            auto* timer = new QTimer(this);
            timer->setSingleShot(true);
            m_timers.append(timer);
            connect(timer, &QTimer::timeout, this, [this, timer, job] {
                m_timers.removeOne(timer);
                timer->deleteLater();
                --m_delayed;
                m_waiting.prepend(job);
                pump();
            });
            timer->start(seconds * 1000);
            pump();
            return;
        }
    }
    if (status == 404 || status == 410)
        finish(job, Verdict::Dead, status, statusReason(status, phrase));
    else if (status == 429 || status >= 500)
        finish(job, Verdict::FailingForNow, status, statusReason(status, phrase));
    else if (status >= 200 && job.hops > 0 && job.permanent && job.movedTo.isValid() && status < 400)
        finish(job, Verdict::Moved, status, job.firstRedirect + QStringLiteral(", then ") + statusReason(status, phrase));
    else if (status >= 400)
        // Forbidden, a login asked for, a bad request: the page is there, or the site says nothing.
        finish(job, status == 401 || status == 403 ? Verdict::Fine : Verdict::FailingForNow, status,
               statusReason(status, phrase));
    else
        finish(job, Verdict::Fine, status, statusReason(status, phrase));
    pump();
}

void LinkCheck::finish(const Job& job, Verdict verdict, int status, const QString& reason)
{
    Outcome outcome;
    outcome.key = job.link.key;
    outcome.address = job.link.address;
    outcome.verdict = verdict;
    outcome.status = status;
    outcome.reason = reason;
    outcome.checked = QDateTime::currentDateTimeUtc();
    if (verdict == Verdict::Moved)
        outcome.newAddress = job.movedTo.toString(QUrl::FullyEncoded);
    m_outcomes.append(outcome);
    emit checked(outcome);
    emit progress(int(m_outcomes.size()), m_total);
}
