// The link check of 2,000 links on local sites whose answers take 50 ms (ten sites on the
// loopback addresses, 200 links each), beside the floor in the same run: a plain
// QNetworkAccessManager loop of HEAD requests keeping as many in flight as the check asks at
// once. Medians of three runs each; the check's ratio to the floor (target: at most 1.2x).
#include "BenchSupport.h"
#include "SlowSites.h"
#include "tidy/LinkCheck.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <cstdio>

namespace {

constexpr int kLinks = 2000;
constexpr int kSites = 10;
constexpr int kDelayMs = 50;
constexpr int kRuns = 3;

double checkOnce(const QList<LinkCheck::Link>& links)
{
    LinkCheck check;
    QEventLoop loop;
    QObject::connect(&check, &LinkCheck::finished, &loop, &QEventLoop::quit);
    QElapsedTimer timer;
    timer.start();
    check.start(links);
    if (check.running())
        loop.exec();
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    int fine = 0;
    for (const LinkCheck::Outcome& outcome : check.outcomes())
        fine += outcome.verdict == LinkCheck::Verdict::Fine ? 1 : 0;
    if (fine != links.size())
        std::printf("  (only %d of %lld links answered fine)\n", fine, static_cast<long long>(links.size()));
    return ms;
}

double floorOnce(const QList<LinkCheck::Link>& links, int atOnce)
{
    QNetworkAccessManager network;
    QEventLoop loop;
    int next = 0;
    int inFlight = 0;
    int done = 0;
    std::function<void()> pump = [&] {
        while (inFlight < atOnce && next < links.size()) {
            QNetworkReply* reply = network.head(QNetworkRequest(QUrl(links.at(next++).address)));
            ++inFlight;
            QObject::connect(reply, &QNetworkReply::finished, &loop, [&, reply] {
                reply->deleteLater();
                --inFlight;
                if (++done == links.size())
                    loop.quit();
                else
                    pump();
            });
        }
    };
    QElapsedTimer timer;
    timer.start();
    pump();
    loop.exec();
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    SlowSites sites(kSites, kDelayMs);
    if (sites.count() < kSites) {
        std::printf("only %d of the %d loopback sites could listen\n", sites.count(), kSites);
        return 1;
    }
    QList<LinkCheck::Link> links;
    for (int i = 0; i < kLinks; ++i)
        links.append({QString::number(i), sites.url(i % kSites, i)});
    const int atOnce = LinkCheck::Limits().atOnce;
    std::vector<double> ours, floor;
    for (int run = 0; run < kRuns; ++run) {
        ours.push_back(checkOnce(links));
        floor.push_back(floorOnce(links, atOnce));
    }
    std::printf("link check: %d links on %d local sites answering after %d ms, %d at once (2 a site), medians of %d "
                "runs; %d answers in all\n",
                kLinks, kSites, kDelayMs, atOnce, kRuns, sites.answered);
    report("check 2,000 links", median(ours), "QNetworkAccessManager loop", median(floor), 1.2);
    return median(ours) <= 1.2 * median(floor) ? 0 : 1;
}
