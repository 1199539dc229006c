#include "RealBrowserTest.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserPage.h"
#include "core/DialogService.h"
#include "core/PageText.h"
#include "history/HistoryPanel.h"
#include "widgets/KeyedTree.h"

#include <QSignalSpy>
#include <QTest>
#include <QWebEnginePage>

#include <sys/stat.h>

// Pages that try to freeze or fool the program, with the real browser engine.
class TestHostilePages : public RealBrowserTest
{
    Q_OBJECT

    QStringList m_completed; // the address of every document reported complete, in order

    // Opens `url` and waits until the row's caption is `caption` (which the page sets once it
    // has done its worst), then a while longer for anything that should not come.
    bool openAndWaitForCaption(const QString& url, const QString& caption)
    {
        open(url);
        if (!waitFor([&] { return row(1)->text() == caption; }, kLoadTimeoutMs))
            return false;
        QTest::qWait(1000);
        return true;
    }
    QStringList historyPages()
    {
        QStringList pages;
        for (KeyedNode* node : m_main->historyPanel()->SSTree3()->nodes())
            if (!node->isFolder())
                pages << node->nodeText();
        return pages;
    }

private slots:
    void initTestCase()
    {
        // The profile folder does not exist yet: the engine's first page makes it.
        BrowserProfile::setStorageFolder(m_profile.filePath("Browser"));
        BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });
        QVERIFY(m_server.start());
        m_server.setPage("/titled.html", "<html><head><title>Served Title</title></head><body>x</body></html>");
    }
    void init()
    {
        startMain();
        m_completed.clear();
        connect(m_main->webForm(), &WebForm1::documentCompleted, this, [this] { m_completed << g.CurrentUrl; });
    }
    void cleanup() { stopMain(); }

    void browserProfileIsPrivateToTheUser()
    {
        openAndWait(m_server.url("/titled.html"));
        struct stat st
        {
        };
        QCOMPARE(::stat(QFile::encodeName(m_profile.filePath("Browser")).constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, mode_t(0700));
    }
    void anEnormousTitleIsCutOnItsRowAndInTheHistory()
    {
        const QString url = pageFile("huge.html", "<html><head><title>Small</title></head><body><script>"
                                                  "document.title = 'T'.repeat(5000000);"
                                                  "</script></body></html>");
        QVERIFY(openAndWaitForCaption(url, QString(kMaxPageTextLength, u'T')));
        QCOMPARE(m_completed, QStringList{url});
        QCOMPARE(g.CurrentTitle, QString(kMaxPageTextLength, u'T'));
        QCOMPARE(historyPages(), QStringList{QString(kMaxPageTextLength, u'T')});
        QVERIFY(window(1)->frame()->windowTitle().size() <= kMaxPageTextLength);
    }
    void loadEventsAPageDispatchesItselfCompleteNothing()
    {
        m_server.setPage("/forger.html",
                         "<html><head><title>Forger</title></head><body><script>"
                         "window.addEventListener('load', function () {"
                         "  setTimeout(function () {"
                         "    history.pushState({}, '', '/forger.html?moved');"
                         "    for (var i = 0; i < 20; i++) window.dispatchEvent(new Event('load'));"
                         "    document.dispatchEvent(new Event('DOMContentLoaded'));"
                         "    window.dispatchEvent(new Event('DOMContentLoaded'));"
                         "    document.title = 'Forged';"
                         "    for (var i = 0; i < 5; i++) window.dispatchEvent(new Event('load'));"
                         "  }, 100);"
                         "});"
                         "</script></body></html>");
        QVERIFY(openAndWaitForCaption(m_server.url("/forger.html"), "Forged"));
        QCOMPARE(m_completed, QStringList{m_server.url("/forger.html")});
        QCOMPARE(historyPages(), QStringList{"Forger"});
    }
    void aReportWithAGuessedTokenIsIgnored()
    {
        // The page writes reports of its own into the console: with a guessed token, with the
        // shape of a real one, and with whatever it can find of the real one in its own world.
        m_server.setPage("/guesser.html",
                         "<html><head><title>Guesser</title></head><body><script>"
                         "window.addEventListener('load', function () { setTimeout(function () {"
                         "  var sep = String.fromCharCode(31);"
                         "  var guesses = ['vantrel-00000000000000000000000000000000', 'vantrel-', '',"
                         "                 String(window.token), String(window.vantrelToken)];"
                         "  for (var g of guesses) {"
                         "    console.log([g, 'l', '1', location.href + '?forged', 'Forged'].join(sep));"
                         "    console.log([g, 'c', '1', location.href + '?forged', 'Forged'].join(sep));"
                         "  }"
                         "  document.title = 'Guessed';"
                         "}, 100); });"
                         "</script></body></html>");
        QVERIFY(openAndWaitForCaption(m_server.url("/guesser.html"), "Guessed"));
        QCOMPARE(m_completed, QStringList{m_server.url("/guesser.html")});
        QCOMPARE(historyPages(), QStringList{"Guesser"});
    }
    void aSameOriginFrameCannotCompleteItsParent()
    {
        m_server.setPage("/child.html", "<html><body><script>"
                                        "window.addEventListener('load', function () { setTimeout(function () {"
                                        "  for (var i = 0; i < 10; i++) {"
                                        "    parent.dispatchEvent(new Event('load'));"
                                        "    parent.document.dispatchEvent(new Event('load'));"
                                        "  }"
                                        "  parent.document.title = 'Framed';"
                                        "}, 200); });"
                                        "</script></body></html>");
        m_server.setPage("/parent.html", "<html><head><title>Parent</title></head><body>"
                                         "<iframe src='/child.html'></iframe></body></html>");
        QVERIFY(openAndWaitForCaption(m_server.url("/parent.html"), "Framed"));
        QCOMPARE(m_completed, (QStringList{m_server.url("/child.html"), m_server.url("/parent.html")}));
    }
    void movingWithinTheDocumentCompletesNothing()
    {
        m_server.setPage("/mover.html", "<html><head><title>Mover</title></head><body><script>"
                                        "var n = 0;"
                                        "window.addEventListener('load', function () {"
                                        "  var step = setInterval(function () {"
                                        "    location.hash = 'part' + (++n);"
                                        "    if (n == 10) { clearInterval(step); document.title = 'Moved'; }"
                                        "  }, 50);"
                                        "});"
                                        "</script></body></html>");
        QVERIFY(openAndWaitForCaption(m_server.url("/mover.html"), "Moved"));
        QCOMPARE(m_completed, QStringList{m_server.url("/mover.html")});
    }
    void aStormOfScriptPopupsWithEightWindowsOpenAsksOnce()
    {
        for (int i = 1; i <= 8; ++i)
            QCOMPARE(openAndWait(pageFile(QString("w%1.html").arg(i), QString("<title>W%1</title>").arg(i).toUtf8()))
                         .size(),
                     1);
        QSignalSpy requests(window(1), &BrowserWindow::newWindowRequested);
        DialogService::setNextAnswer(DialogService::Answer::No);
        DialogService::setNextAnswer(DialogService::Answer::No); // a second question would take this
        window(1)->page()->runJavaScript(
            QString("for (var i = 0; i < 50; i++) window.open('%1?' + i);").arg(m_server.url("/titled.html")));
        QVERIFY(waitFor([&] { return requests.size() == 50; }, kLoadTimeoutMs));
        QTest::qWait(200);
        for (const QList<QVariant>& request : requests)
            QCOMPARE(request.at(1).toBool(), false); // made by the page, not by the user
        QCOMPARE(DialogService::shownTexts().size(), 1);
        QCOMPARE(g.WindowCount, 8);
    }
};

VANTREL_GUI_TEST_MAIN(TestHostilePages)
#include "tst_hostilepages.moc"
