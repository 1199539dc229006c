#include "RealBrowserTest.h"
#include "settings/VantrelConf.h"
#include "watch/WindowRecovery.h"
#include "surf/SurfPanel.h"
#include "surf/WindowStates.h"
#include "verbs/Verbs.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserPage.h"

#include <QLabel>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTest>

#include <csignal>

// Crashed and unreachable pages come back by themselves, with the real browser engine.
class TestRecovery : public RealBrowserTest
{
    Q_OBJECT

    QStringList m_completed;

    QStringList log()
    {
        return QString::fromUtf8(readAll(m_app->file("Vantrel.log"))).split(u'\n', Qt::SkipEmptyParts);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(startEngine());
        m_server.setPage("/wall.html", "<html><head><title>Wall</title></head><body>wall</body></html>");
    }
    void init()
    {
        startMain();
        m_completed.clear();
        connect(m_main->webForm(), &WebForm1::documentCompleted, this, [this] { m_completed << g.CurrentUrl; });
    }
    void cleanup() { stopMain(); }

    void aKilledPageComesBackByItself()
    {
        const QString url = m_server.url("/wall.html");
        QCOMPARE(openAndWait(url), QStringList{url});
        m_completed.clear();
        BrowserFrame* frame = window(1)->frame();
        const qint64 pid = window(1)->page()->renderProcessPid();
        QVERIFY(pid > 0);
        ::kill(pid_t(pid), SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(frame->isShowingCrash(), kLoadTimeoutMs);
        // Two seconds later (at a tick of Timer1) the page is loaded again, without a click.
        QTRY_VERIFY_WITH_TIMEOUT(m_completed.contains(url), kLoadTimeoutMs);
        QVERIFY(!frame->isShowingCrash());
        QCOMPARE(row(1)->text(), QStringLiteral("Wall"));
        QTRY_COMPARE(m_main->webForm()->recovery()->recovery(1).state(), PageRecovery::State::Shown);
        QVERIFY(log().filter(" crash: window 1 " + url).size() == 1);
        QVERIFY(log().filter(" automatic reload: window 1 " + url).size() == 1);
    }
    void aPageThatTakesTooMuchMemoryIsLoadedAgainWhileHidden()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kPageMemoryLimitMB, 300));
        // 500 MB written to, so that the page's process holds it.
        m_server.setPage("/greedy.html", "<html><head><title>Greedy</title></head><body><script>"
                                         "window.kept = new Uint8Array(500 * 1024 * 1024).fill(7);"
                                         "</script>greedy</body></html>");
        const QString url = m_server.url("/greedy.html");
        QCOMPARE(openAndWait(url), QStringList{url});
        const qsizetype asked = m_server.requests.count("/greedy.html");
        window(1)->setVisible(false); // a kept page between its shows
        QTRY_VERIFY_WITH_TIMEOUT(m_server.requests.count("/greedy.html") > asked, kLoadTimeoutMs);
        QCOMPARE(log().filter(QRegularExpression(" reload, too big: window 1 " + QRegularExpression::escape(url) +
                                                 " \\(\\d+ MB, the limit is 300 MB, while hidden\\)$")).size(), 1);
        // Loaded again out of sight, it takes as much again: not loaded round and round.
        QTest::qWait(5000);
        QCOMPARE(m_server.requests.count("/greedy.html"), asked + 1);
    }
    void aPageThatStopsComingIsStoppedAndTriedAgain()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kLoadTimeoutSeconds, 2));
        // The server takes the request and says nothing for a minute.
        m_server.setPage("/stuck.html", "<html><head><title>Stuck</title></head><body>late</body></html>");
        m_server.setDelay("/stuck.html", 60000);
        const QString url = m_server.url("/stuck.html");
        const qsizetype asked = m_server.requests.count("/stuck.html");
        open(url);
        QTRY_VERIFY_WITH_TIMEOUT(log().filter(" load stopped: window 1 " + url + " (still loading after 2 s)").size() == 1,
                                 kLoadTimeoutMs);
        QCOMPARE(m_main->surf()->states()->badge(1)->toolTip(),
                 QStringLiteral("Failed (still loading after 2 s), trying again in 2 s"));
        // Tried again: the server is asked once more, for the same page.
        QTRY_VERIFY_WITH_TIMEOUT(m_server.requests.count("/stuck.html") >= asked + 2, kLoadTimeoutMs);
        QVERIFY(log().filter(" retry: window 1 " + url).size() >= 1);
        QCOMPARE(m_main->verbs()->window(1).address, url);
    }
    void aPageWhoseServerComesUpLateIsShownWhenItIsThere()
    {
        // A port nobody listens on yet: the connection is refused.
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
        const quint16 port = probe.serverPort();
        probe.close();
        const QString url = QString("http://127.0.0.1:%1/late.html").arg(port);
        open(url);
        QTRY_COMPARE_WITH_TIMEOUT(m_main->webForm()->recovery()->recovery(1).state(), PageRecovery::State::Retrying,
                                  kLoadTimeoutMs);
        QVERIFY(m_main->webForm()->recovery()->recovery(1).failures() >= 1);
        QVERIFY(log().filter(" load failed: window 1 " + url).size() >= 1);
        // The window is still where it was sent, not at the engine's error page: that is what the
        // state, the session and a restart after a crash go on with.
        QTest::qWait(500);
        QCOMPARE(m_main->verbs()->window(1).address, url);
        // The server comes up: the next try shows the page.
        LocalHttpServer late;
        late.setPage("/late.html", "<html><head><title>Late Page</title></head><body>late</body></html>");
        QVERIFY(late.start(port));
        QTRY_COMPARE_WITH_TIMEOUT(row(1)->text(), QStringLiteral("Late Page"), kLoadTimeoutMs);
        QVERIFY(m_completed.contains(url));
        QVERIFY(log().filter(" retry: window 1 " + url).size() >= 1);
        QTRY_COMPARE(m_main->surf()->states()->badge(1)->toolTip(), QStringLiteral("Shown"));
    }
};

VANTREL_GUI_TEST_MAIN(TestRecovery)
#include "tst_recovery.moc"
