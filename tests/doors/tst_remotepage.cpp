// The remote page's server as a client on 127.0.0.1 sees it: the page and the headers that forbid
// framing and sniffing, the token asked for every API request and compared in constant time, a
// client slowed after a wrong one, commands only as POSTs with the token in a header and the same
// JSON as the broker's, another site's names and forms refused, nothing ever opened but http and
// https, and the token never in the log.
#include "RecordingDoorHost.h"
#include "VerbsHarness.h"
#include "doors/RemoteAccess.h"
#include "doors/RemotePage.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

class TestRemotePage : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    RecordingDoorHost m_host;
    std::unique_ptr<RemotePage> m_page;
    QNetworkAccessManager m_net;
    const QByteArray m_token = RemoteAccess::newToken();

    struct Answer
    {
        int status = 0;
        QByteArray body;
        QNetworkReply* headersFrom = nullptr;
        QMap<QByteArray, QByteArray> headers;
        QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
    };

    Answer ask(const QByteArray& method, const QString& path, const QByteArray& token = {}, const QByteArray& body = {},
               const QByteArray& contentType = "application/json", const QByteArray& host = {})
    {
        QNetworkRequest request(QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_page->port()).arg(path)));
        if (!token.isEmpty())
            request.setRawHeader("X-Vantrel-Token", token);
        if (!body.isEmpty())
            request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
        if (!host.isEmpty())
            request.setRawHeader("Host", host);
        QNetworkReply* reply = m_net.sendCustomRequest(request, method, body);
        QSignalSpy finished(reply, &QNetworkReply::finished);
        finished.wait(5000);
        Answer answer;
        answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        answer.body = reply->readAll();
        for (const auto& [name, value] : reply->rawHeaderPairs())
            answer.headers.insert(name.toLower(), value);
        reply->deleteLater();
        return answer;
    }
    static QString logText()
    {
        QFile file(EventLog::path());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"}}}});
        m_host = RecordingDoorHost();
        m_page = std::make_unique<RemotePage>(h->verbs.get(), &m_host);
        QVERIFY(m_page->start(0, false, m_token));
    }
    void cleanup()
    {
        m_page.reset();
        h.reset();
    }

    void itIsOffUntilSwitchedOn()
    {
        RemotePage page(h->verbs.get(), &m_host);
        page.applySetting(); // nothing in the settings
        QVERIFY(!page.isServing());
    }

    void thePageComesWithHeadersThatForbidFramingAndSniffing()
    {
        const Answer page = ask("GET", "/");
        QCOMPARE(page.status, 200);
        QVERIFY(page.body.contains("<title>Vantrel</title>"));
        QVERIFY(!page.body.contains("src=\"http") && !page.body.contains("href=\"http")); // nothing from elsewhere
        QCOMPARE(page.headers.value("x-frame-options"), QByteArray("DENY"));
        QCOMPARE(page.headers.value("x-content-type-options"), QByteArray("nosniff"));
        QVERIFY(page.headers.value("content-security-policy").contains("frame-ancestors 'none'"));
        QCOMPARE(page.headers.value("cache-control"), QByteArray("no-store"));
        QCOMPARE(ask("GET", "/app.js").headers.value("content-type"), QByteArray("text/javascript; charset=utf-8"));
        QCOMPARE(ask("GET", "/app.css").status, 200);
        QCOMPARE(ask("GET", "/nothing-here").status, 404);
        QVERIFY(m_page->pageAddress().startsWith(QStringLiteral("http://127.0.0.1:%1/#token=").arg(m_page->port())));
    }

    void theApiWantsTheTokenAndSlowsAClientThatGuesses()
    {
        QCOMPARE(ask("GET", "/api/state").status, 401);
        // Right after a miss even the right token waits.
        QCOMPARE(ask("GET", "/api/state", m_token).status, 429);
        QTest::qWait(int(RemoteAccess::kFirstWaitMs) + 100);
        const Answer state = ask("GET", "/api/state", m_token);
        QCOMPARE(state.status, 200);
        QCOMPARE(state.json().value("lists").toArray(), QJsonArray{"Walls"});
        QVERIFY(state.json().contains("windows") && state.json().contains("version"));
        QVERIFY(state.headers.value("x-frame-options") == "DENY");
        // Two misses: two seconds.
        QCOMPARE(ask("GET", "/api/state", "wrong").status, 401);
        QTest::qWait(int(RemoteAccess::kFirstWaitMs) + 100);
        QCOMPARE(ask("GET", "/api/state", m_token + "x").status, 401);
        QTest::qWait(int(RemoteAccess::kFirstWaitMs) + 100);
        QCOMPARE(ask("GET", "/api/state", m_token).status, 429);
        QTest::qWait(int(RemoteAccess::kFirstWaitMs));
        QCOMPARE(ask("GET", "/api/state", m_token).status, 200);
        QVERIFY(!logText().contains(QString::fromLatin1(m_token)));
        QVERIFY(logText().contains("The remote page refused 127.0.0.1: a wrong token"));
    }

    void commandsArePostsWithTheTokenInAHeader()
    {
        Answer open = ask("POST", "/api/open", m_token, "{\"id\": \"p1\", \"address\": \"https://remote.example/\"}");
        QCOMPARE(open.status, 200);
        QCOMPARE(open.json(), (QJsonObject{{"id", "p1"}, {"verb", "open"}, {"ok", true}}));
        QCOMPARE(h->verbs->state().windows.size(), 1);
        QCOMPARE(h->verbs->state().windows.first().address, QStringLiteral("https://remote.example/"));
        Answer run = ask("POST", "/api/run", m_token, "{\"list\": \"Walls\", \"interval\": 9}");
        QCOMPARE(run.status, 200);
        QVERIFY(h->verbs->state().run.running);
        QCOMPARE(ask("POST", "/api/next", m_token, "{}").status, 200);
        QCOMPARE(ask("POST", "/api/stop", m_token, "{}").status, 200);
        QVERIFY(!h->verbs->state().run.running);
        // Not as a GET, nothing but http and https, nothing too long, nothing but the verbs.
        QCOMPARE(ask("GET", "/api/next", m_token).status, 405);
        const Answer script = ask("POST", "/api/open", m_token, "{\"address\": \"javascript:alert(1)\"}");
        QCOMPARE(script.status, 400);
        QCOMPARE(script.json().value("reason").toString(), QStringLiteral("only http and https addresses are opened"));
        QCOMPARE(ask("POST", "/api/open", m_token, "{\"address\": \"file:///etc/passwd\"}").status, 400);
        QCOMPARE(ask("POST", "/api/open", m_token, "{\"address\": \"https://e.org/" + QByteArray(20000, 'a') + "\"}").status, 413);
        QCOMPARE(ask("POST", "/api/quit", m_token, "{}").status, 400);
        QCOMPARE(ask("POST", "/api/next", m_token, "{}").status, 409); // no run: refused with its reason
        QCOMPARE(h->verbs->state().windows.size(), 1);
        QVERIFY(m_host.quits.isEmpty());
    }

    void anotherSitesFormOrNameIsRefused()
    {
        // What a form of another site can send: a form body, no header of ours.
        QCOMPARE(ask("POST", "/api/open", {}, "address=https%3A%2F%2Fevil.example%2F", "application/x-www-form-urlencoded").status, 401);
        QVERIFY(logText().contains("The remote page refused 127.0.0.1: no token"));
        QTest::qWait(int(RemoteAccess::kFirstWaitMs) + 100);
        // A name of another site pointed at 127.0.0.1: refused before the token is looked at.
        const QByteArray ours = QByteArray("127.0.0.1:") + QByteArray::number(m_page->port());
        QCOMPARE(ask("GET", "/api/state", m_token, {}, {}, "evil.example:" + QByteArray::number(m_page->port())).status, 403);
        QCOMPARE(ask("GET", "/", {}, {}, {}, "evil.example").status, 403);
        QCOMPARE(ask("GET", "/api/state", m_token, {}, {}, ours).status, 200);
        QVERIFY(h->verbs->state().windows.isEmpty());
    }

    void tokensAreComparedWholeAndAreLongAndRandom()
    {
        QVERIFY(RemoteAccess::sameBytes("abc", "abc"));
        QVERIFY(!RemoteAccess::sameBytes("abc", "abd"));
        QVERIFY(!RemoteAccess::sameBytes("abc", "abcd"));
        QVERIFY(!RemoteAccess::sameBytes("", "a"));
        const QByteArray a = RemoteAccess::newToken(), b = RemoteAccess::newToken();
        QCOMPARE(a.size(), 43);
        QVERIFY(a != b);
        RemoteAccess access;
        QCOMPARE(access.check("c", "", 0), RemoteAccess::Verdict::WrongToken); // no token set: nobody
        access.setToken(a);
        QCOMPARE(access.check("c", a, 0), RemoteAccess::Verdict::Allowed);
        QCOMPARE(access.check("c", b, 10), RemoteAccess::Verdict::WrongToken);
        QCOMPARE(access.check("other", a, 20), RemoteAccess::Verdict::Allowed); // per client
        QCOMPARE(access.check("c", a, 500), RemoteAccess::Verdict::Waiting);
        QCOMPARE(access.check("c", b, 1010), RemoteAccess::Verdict::WrongToken);
        QCOMPARE(access.waitMs("c", 1010), 2000);
        for (int i = 0; i < 20; ++i)
            access.check("c", b, 1'000'000'000LL * (i + 1));
        QCOMPARE(access.waitMs("c", 20'000'000'000LL), RemoteAccess::kLongestWaitMs);
    }
};

QTEST_GUILESS_MAIN(TestRemotePage)
#include "tst_remotepage.moc"
