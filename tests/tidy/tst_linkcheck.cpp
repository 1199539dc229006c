// The link check against local sites: each kind of answer sorted as a person would, redirects
// followed by hand, HEAD refused, a wait asked for, the limits of six at once and two a site, and a
// check cancelled.
#include "LocalHttpServer.h"
#include "tidy/LinkCheck.h"
#include "tidy/LinkChecksDue.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

class TestLinkCheck : public QObject
{
    Q_OBJECT

    using Verdict = LinkCheck::Verdict;

    static bool done(LinkCheck& check, int ms = 20000)
    {
        return QTest::qWaitFor([&] { return !check.running(); }, ms);
    }
    static LinkCheck::Outcome of(const LinkCheck& check, const QString& key)
    {
        for (const LinkCheck::Outcome& outcome : check.outcomes())
            if (outcome.key == key)
                return outcome;
        return {};
    }

private slots:
    void eachAnswerIsSortedAsAPersonWould()
    {
        LocalHttpServer site;
        QVERIFY(site.start());
        site.setPage("/fine", "<p>here</p>");
        site.setPage("/new", "<p>new home</p>");
        site.setPage("/final", "<p>final</p>");
        site.setStatus("/removed", "410 Gone");
        site.setStatus("/moved", "301 Moved Permanently", "Location: /new\r\n");
        site.setStatus("/chain", "308 Permanent Redirect", "Location: /chain2\r\n");
        site.setStatus("/chain2", "301 Moved Permanently", "Location: " + site.url("/final").toUtf8() + "\r\n");
        site.setStatus("/temp", "302 Found", "Location: /fine\r\n");
        site.setStatus("/moved-dead", "301 Moved Permanently", "Location: /nothing-here\r\n");
        site.setStatus("/broken", "500 Internal Server Error");
        site.setStatus("/loop", "301 Moved Permanently", "Location: /loop\r\n");
        site.setStatus("/login", "403 Forbidden");
        site.setPage("/nohead", "<p>no head</p>");
        site.refuseHead("/nohead");
        site.setPage("/slow", "<p>slow</p>");
        site.setDelay("/slow", 3000);

        LinkCheck check;
        LinkCheck::Limits limits;
        limits.timeoutMs = 500;
        check.setLimits(limits);
        QSignalSpy finished(&check, &LinkCheck::finished);
        QSignalSpy progress(&check, &LinkCheck::progress);
        const QStringList paths = {"/fine", "/gone", "/removed", "/moved", "/chain", "/temp", "/moved-dead",
                                   "/broken", "/loop", "/login", "/nohead", "/slow"};
        QList<LinkCheck::Link> links;
        for (const QString& path : paths)
            links.append({path, site.url(path)});
        links.append(LinkCheck::Link{"ftp", "ftp://ftp.example.org/pub/"});
        links.append(LinkCheck::Link{"nowhere", "http://no-such-site.invalid/"});
        check.start(links);
        QVERIFY(done(check));
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished.first().first().toBool(), false);
        QCOMPARE(check.outcomes().size(), links.size());
        QCOMPARE(progress.last().at(0).toInt(), int(links.size()));

        QCOMPARE(of(check, "/fine").verdict, Verdict::Fine);
        QCOMPARE(of(check, "/gone").verdict, Verdict::Dead);
        QCOMPARE(of(check, "/gone").reason, QStringLiteral("404 Not Found"));
        QCOMPARE(of(check, "/removed").verdict, Verdict::Dead);
        QCOMPARE(of(check, "/moved").verdict, Verdict::Moved);
        QCOMPARE(of(check, "/moved").newAddress, site.url("/new"));
        QCOMPARE(of(check, "/moved").reason, QStringLiteral("301 Moved Permanently, then 200 OK"));
        QCOMPARE(of(check, "/chain").verdict, Verdict::Moved);
        QCOMPARE(of(check, "/chain").newAddress, site.url("/final"));
        QCOMPARE(of(check, "/temp").verdict, Verdict::Fine); // moved for a while is no move
        QCOMPARE(of(check, "/moved-dead").verdict, Verdict::Dead);
        QCOMPARE(of(check, "/broken").verdict, Verdict::FailingForNow);
        QCOMPARE(of(check, "/loop").verdict, Verdict::FailingForNow);
        QCOMPARE(of(check, "/loop").reason, QStringLiteral("more than 10 redirects"));
        QCOMPARE(of(check, "/login").verdict, Verdict::Fine);
        QCOMPARE(of(check, "/nohead").verdict, Verdict::Fine);
        QCOMPARE(of(check, "/slow").verdict, Verdict::FailingForNow);
        QVERIFY2(of(check, "/slow").reason.startsWith("no answer within"), qPrintable(of(check, "/slow").reason));
        QCOMPARE(of(check, "ftp").verdict, Verdict::NotChecked);
        QCOMPARE(of(check, "nowhere").verdict, Verdict::Dead);
        QCOMPARE(of(check, "nowhere").reason, QStringLiteral("the site's name was not found"));
        // HEAD first; GET only where HEAD was refused; and no page body was asked for but that one.
        QCOMPARE(site.methods.count("GET"), 1);
        QCOMPARE(site.requests.at(site.methods.indexOf("GET")), QStringLiteral("/nohead"));
    }
    void aShortWaitAskedForIsHonouredOnce()
    {
        LocalHttpServer site;
        QVERIFY(site.start());
        site.setPage("/busy", "<p>ok now</p>");
        site.setStatus("/busy", "429 Too Many Requests", "Retry-After: 1\r\n", 1);
        site.setPage("/later", "<p>much later</p>");
        site.setStatus("/later", "503 Service Unavailable", "Retry-After: 3600\r\n");
        LinkCheck check;
        QElapsedTimer timer;
        timer.start();
        check.start({{"busy", site.url("/busy")}, {"later", site.url("/later")}});
        QVERIFY(done(check));
        QCOMPARE(of(check, "busy").verdict, Verdict::Fine);
        QVERIFY(timer.elapsed() >= 900);
        QCOMPARE(site.requests.count("/busy"), 2);
        // An hour is too long to wait: failing for now, asked once.
        QCOMPARE(of(check, "later").verdict, Verdict::FailingForNow);
        QCOMPARE(site.requests.count("/later"), 1);
    }
    void sixAtOnceAndTwoToASite()
    {
        std::vector<std::unique_ptr<LocalHttpServer>> sites;
        QList<LinkCheck::Link> links;
        for (int s = 0; s < 5; ++s) {
            sites.push_back(std::make_unique<LocalHttpServer>());
            QVERIFY(sites.back()->start());
            sites.back()->setDelayForAll(150);
            for (int i = 0; i < 6; ++i) {
                sites.back()->setPage(QStringLiteral("/p%1").arg(i), "<p>page</p>");
                links.append({QStringLiteral("%1-%2").arg(s).arg(i), sites.back()->url(QStringLiteral("/p%1").arg(i))});
            }
        }
        int mostAtOnce = 0;
        QTimer sample;
        connect(&sample, &QTimer::timeout, this, [&] {
            int now = 0;
            for (const auto& site : sites)
                now += site->inFlight;
            mostAtOnce = std::max(mostAtOnce, now);
        });
        sample.start(5);
        LinkCheck check;
        check.start(links);
        QVERIFY(done(check));
        QCOMPARE(check.outcomes().size(), 30);
        for (const auto& site : sites)
            QVERIFY2(site->mostInFlight <= 2, qPrintable(QString::number(site->mostInFlight)));
        QVERIFY2(mostAtOnce <= 6 && mostAtOnce >= 4, qPrintable(QString::number(mostAtOnce)));
    }
    void onlyLinksNotCheckedInTheLastDayAreAskedAgain()
    {
        const QDateTime now(QDate(2026, 11, 25), QTime(12, 0), Qt::UTC);
        LinkChecksFile::Checks checks;
        checks.insert("https://fresh.example/", {now.addSecs(-3600), "moved", 301, "https://new.example/"});
        checks.insert("https://old.example/", {now.addSecs(-25 * 3600), "fine", 200, {}});
        checks.insert("https://later.example/", {now.addSecs(3600), "fine", 200, {}}); // a clock set back
        const QList<LinkCheck::Link> links = {{"a", "https://fresh.example/"}, {"b", "https://old.example/"},
                                              {"c", "https://never.example/"}, {"d", "https://later.example/"}};
        const LinkChecksDue::Split split = LinkChecksDue::split(links, checks, now, false);
        QCOMPARE(split.remembered.size(), 1);
        QCOMPARE(split.remembered.first().key, QStringLiteral("a"));
        QCOMPARE(split.remembered.first().verdict, Verdict::Moved);
        QCOMPARE(split.remembered.first().newAddress, QStringLiteral("https://new.example/"));
        QCOMPARE(split.due.size(), 3);
        QCOMPARE(LinkChecksDue::split(links, checks, now, true).due.size(), 4);
        // An answer is kept for its address; a link not checked is not.
        LinkCheck::Outcome outcome{"c", "https://never.example/", Verdict::Dead, 404, {}, "404 Not Found", now};
        LinkChecksDue::remember(checks, outcome);
        QCOMPARE(checks.value("https://never.example/").verdict, QStringLiteral("dead"));
        outcome.address = "ftp://x.example/";
        outcome.verdict = Verdict::NotChecked;
        LinkChecksDue::remember(checks, outcome);
        QVERIFY(!checks.contains("ftp://x.example/"));
    }
    void aCancelledCheckStopsAsking()
    {
        LocalHttpServer site;
        QVERIFY(site.start());
        site.setDelayForAll(300);
        QList<LinkCheck::Link> links;
        for (int i = 0; i < 10; ++i) {
            site.setPage(QStringLiteral("/p%1").arg(i), "<p>page</p>");
            links.append({QString::number(i), site.url(QStringLiteral("/p%1").arg(i))});
        }
        LinkCheck check;
        QSignalSpy finished(&check, &LinkCheck::finished);
        check.start(links);
        QTRY_VERIFY(!check.outcomes().isEmpty());
        check.cancel();
        QVERIFY(!check.running());
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished.first().first().toBool(), true);
        const qsizetype answered = check.outcomes().size();
        QVERIFY(answered < 10);
        QTest::qWait(700);
        QCOMPARE(check.outcomes().size(), answered);
        QVERIFY(site.requests.size() < 10);
    }
};

QTEST_GUILESS_MAIN(TestLinkCheck)
#include "tst_linkcheck.moc"
