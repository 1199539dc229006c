// The remote page in a real browser (Debian's chromium, headless, through chromedriver and
// python3-selenium): opened with the token it shows the rotation, and Next moves it in Vantrel;
// without the token, or with a wrong one, it opens nothing; "javascript:" and "file:" addresses
// typed into it are refused; a page of another site that sends a form to the API stops nothing.
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
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestRemoteBrowser : public QObject
{
    Q_OBJECT

private slots:
    void aPersonOnAPhoneAndAnotherSite()
    {
        VerbsHarness h;
        h.setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"},
                                               {"W3", "https://w3.example/"}}}});
        QVERIFY(h.verbs->runList({QStringLiteral("Walls"), 600, true, false, false}, Caller::Outside).ok());
        QVERIFY(h.verbs->state().run.running);
        const int positionBefore = h.verbs->state().run.position;
        RecordingDoorHost host;
        RemotePage page(h.verbs.get(), &host);
        const QByteArray token = RemoteAccess::newToken();
        QVERIFY(page.start(0, false, token));
        QTemporaryDir profile;

        QProcess browser;
        browser.setProcessChannelMode(QProcess::SeparateChannels);
        browser.start(QStringLiteral("/usr/bin/python3"),
                      {QStringLiteral(VANTREL_TESTS_DIR "/doors/remote_page_browser.py"),
                       QStringLiteral("http://127.0.0.1:%1").arg(page.port()), QString::fromLatin1(token), profile.path()});
        QVERIFY(browser.waitForStarted(10000));
        // The event loop turns while the browser works: this process is the server it talks to.
        QVERIFY(QTest::qWaitFor([&] { return browser.state() == QProcess::NotRunning; }, 120000));
        const QByteArray errors = browser.readAllStandardError();
        QVERIFY2(browser.exitCode() == 0, errors.constData());
        const QJsonObject seen = QJsonDocument::fromJson(browser.readAllStandardOutput()).object();
        QVERIFY2(!seen.isEmpty(), errors.constData());

        QVERIFY(seen.value("tokenLeftTheAddress").toBool());
        QCOMPARE(seen.value("runBefore").toString(), QStringLiteral("Walls: page %1 of 3").arg(positionBefore + 1));
        QCOMPARE(seen.value("runAfterNext").toString(), QStringLiteral("Walls: page %1 of 3").arg(positionBefore + 2));
        QCOMPARE(h.verbs->state().run.position, positionBefore + 1); // Next was done in Vantrel
        for (const WindowState& window : h.verbs->state().windows) // the windows as Vantrel has them
            QVERIFY2(seen.value("windowsShown").toString().contains(window.address), qPrintable(seen.value("windowsShown").toString()));
        QCOMPARE(seen.value("javascriptAnswer").toString(), QStringLiteral("only http and https addresses are opened"));
        QCOMPARE(seen.value("fileAnswer").toString(), QStringLiteral("only http and https addresses are opened"));
        QCOMPARE(seen.value("pickerLists").toArray(), QJsonArray{"Walls"});
        QCOMPARE(seen.value("withoutToken").toString(), QStringLiteral("No access"));
        QVERIFY(seen.value("lockedShown").toBool());
        QVERIFY(seen.value("wrongToken").toString() == "No access" || seen.value("wrongToken").toString() == "Wait a moment");
        // The other site's form reached the server and was refused for want of a token.
        QFile log(EventLog::path());
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("The remote page refused 127.0.0.1: no token"));
        // Nothing that was refused was done: the run goes on, no page was opened.
        QVERIFY(h.verbs->state().run.running);
        for (const WindowState& window : h.verbs->state().windows)
            QVERIFY2(window.address.startsWith("https://w"), qPrintable(window.address)); // only the run's pages
    }
};

QTEST_GUILESS_MAIN(TestRemoteBrowser)
#include "tst_remotebrowser.moc"
