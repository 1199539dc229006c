#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

// Asks the web whether the pages of a folder or a list are still there: a HEAD request for each
// address (GET where a site refuses HEAD), a few at a time and fewer to one site, each given a
// time of its own, redirects followed by hand so that a page moved for good is told from one
// moved for a while. What comes back is sorted as a person would: dead, moved for good (with the
// new address), failing for now, fine. Nothing is changed here; the check only tells. A site is
// hostile until proven otherwise: bodies are never read, redirects are counted, and only http and
// https addresses are asked for.
class LinkCheck : public QObject
{
    Q_OBJECT

public:
    enum class Verdict { Fine, Moved, Dead, FailingForNow, NotChecked };

    struct Link
    {
        QString key;     // the favourite's or the list page's key
        QString address;
    };

    struct Outcome
    {
        QString key;
        QString address;
        Verdict verdict = Verdict::NotChecked;
        int status = 0;       // the last HTTP status, 0 when none came
        QString newAddress;   // where a page moved for good went
        QString reason;       // in words: "404 Not Found", "the site's name was not found", ...
        QDateTime checked;    // when the answer came (UTC)
    };

    struct Limits
    {
        int atOnce = 6;
        int perSite = 2;
        int timeoutMs = 15000;
        int maxRedirects = 10;
        int longestRetryAfterSeconds = 30; // a longer wait asked for is "failing for now"
    };

    explicit LinkCheck(QObject* parent = nullptr);
    ~LinkCheck() override;

    void setLimits(const Limits& limits) { m_limits = limits; }
    const Limits& limits() const { return m_limits; }

    // Checks the links (any check going on is cancelled first).
    void start(const QList<Link>& links);
    // Stops asking: what was not answered yet is left out of the outcomes.
    void cancel();
    bool running() const { return m_running; }
    const QList<Outcome>& outcomes() const { return m_outcomes; }

    // The verdict in a few words, as the results window shows it.
    static QString verdictName(Verdict verdict);
    // The site an address belongs to, as the per-site limit counts: scheme, host and port.
    static QString siteOf(const QUrl& url);

signals:
    void progress(int done, int total);
    void checked(const LinkCheck::Outcome& outcome);
    void finished(bool cancelled);

private:
    struct Job
    {
        Link link;
        QUrl url;              // where the next request goes
        QString site;
        bool useGet = false;   // the site refused HEAD
        int hops = 0;
        bool permanent = true; // every redirect so far was for good
        QUrl movedTo;          // the last address reached through redirects for good
        bool retried = false;  // a Retry-After was honoured once already
        QString firstRedirect; // "301 Moved Permanently", as the first redirect said
    };

    void pump();
    void send(Job job);
    void answered(QNetworkReply* reply, Job job);
    void finish(const Job& job, Verdict verdict, int status, const QString& reason);
    bool eligible(const Job& job) const;

    QNetworkAccessManager* m_network;
    Limits m_limits;
    QList<Job> m_waiting;
    QHash<QString, int> m_inFlightBySite;
    int m_inFlight = 0;
    int m_delayed = 0; // jobs waiting out a Retry-After
    int m_total = 0;
    bool m_running = false;
    QList<Outcome> m_outcomes;
    QList<QNetworkReply*> m_replies;
    QList<QTimer*> m_timers;
};

Q_DECLARE_METATYPE(LinkCheck::Outcome)
