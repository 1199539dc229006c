#include "RealBrowserTest.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserPage.h"
#include "browser/BrowserProfile.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTest>
#include <QWebEngineView>

#include <csignal>
#include <memory>

// The pool with the real browser engine on local pages: files, and pages of a small HTTP server
// on 127.0.0.1.
class TestBrowserWindow : public RealBrowserTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(startEngine());
        m_server.setPage("/titled.html",
                         "<html><head><title>Served Title</title></head><body>hello</body></html>");
        m_server.setPage("/plain.html", "<html><body>no title here</body></html>");
        m_server.setPage("/frames.html", "<html><head><title>Three Frames</title></head><body>"
                                         "<iframe src='/f1.html'></iframe><iframe src='/f2.html'></iframe>"
                                         "<iframe src='/f3.html'></iframe></body></html>");
        for (const char* f : {"/f1.html", "/f2.html", "/f3.html"})
            m_server.setPage(f, QByteArray("<html><head><title>frame</title></head><body>") + f +
                                    "</body></html>");
        m_server.setPage("/opener.html",
                         "<html><head><title>Opener</title></head><body>"
                         "<a id='l' href='/titled.html' target='_blank'>open</a></body></html>");
    }
    void init() { startMain(); }
    void cleanup() { stopMain(); }

    void rowShowsTheAddressFirstAndThenTheTitle()
    {
        const QString url =
            pageFile("titled.html", "<html><head><title>File Title</title></head><body>x</body></html>");
        QStringList captionsAtStart;
        g.CurrentUrl = url;
        m_main->NewBtnAction(true);
        WebBrowserWindow* w = window(1);
        QVERIFY(w);
        connect(w, &BrowserWindow::beforeNavigate, this, [&] { captionsAtStart << row(1)->text(); });
        QTRY_COMPARE_WITH_TIMEOUT(row(1)->text(), QStringLiteral("File Title"), kLoadTimeoutMs);
        QTRY_COMPARE_WITH_TIMEOUT(row(1)->toolTip(), url, kLoadTimeoutMs);
        QCOMPARE(row(1)->tag(), url);
        QCOMPARE(g.CurrentTitle, QStringLiteral("File Title"));
        QVERIFY(row(1)->isVisibleTo(m_main.get()));
        QVERIFY(w->isVisible());
        QCOMPARE(g.WindowCount, 1);
        QCOMPARE(g.WindowUrl[1], url);

        // A second page in the same window: the row shows its address as soon as it begins.
        const QString second = m_server.url("/titled.html");
        captionsAtStart.clear();
        g.CurrentUrl = second;
        m_main->NewBtnAction(false);
        QTRY_VERIFY_WITH_TIMEOUT(!captionsAtStart.isEmpty(), kLoadTimeoutMs);
        QCOMPARE(captionsAtStart.first(), second);
        QTRY_COMPARE_WITH_TIMEOUT(row(1)->text(), QStringLiteral("Served Title"), kLoadTimeoutMs);
    }
    void untitledPageShowsItsAddress()
    {
        const QString url = m_server.url("/plain.html");
        const QStringList completed = openAndWait(url);
        QCOMPARE(completed, QStringList{url});
        QCOMPARE(row(1)->text(), url);
        QCOMPARE(g.CurrentTitle, url);
    }
    void eachFrameCompletesBeforeItsPageAndIsToldToTheHistory()
    {
        QStringList groups;
        connect(m_main->webForm(), &WebForm1::documentCompleted, this,
                [&](const QString& group) { groups << group; });
        const QStringList completed = openAndWait(m_server.url("/frames.html"), 4);
        QCOMPARE(completed.size(), 4);
        QCOMPARE(completed.last(), m_server.url("/frames.html"));
        QStringList frames = completed.mid(0, 3);
        frames.sort();
        QCOMPARE(frames,
                 (QStringList{m_server.url("/f1.html"), m_server.url("/f2.html"), m_server.url("/f3.html")}));
        QCOMPARE(groups, QStringList(4, QStringLiteral("Internet Explorer 1")));
        QCOMPARE(row(1)->text(), QStringLiteral("Three Frames"));
    }
    void closingAWindowByHandHidesItsRowAndFreesItsSlot()
    {
        openAndWait(m_server.url("/titled.html"));
        openAndWait(m_server.url("/plain.html"));
        QCOMPARE(g.WindowCount, 2);
        window(1)->frame()->close();
        QCOMPARE(g.WindowCount, 1);
        QVERIFY(!row(1)->isVisibleTo(m_main.get()));
        QCOMPARE(g.WindowUrl[1], QString());
        QTRY_VERIFY(!window(1));
        openAndWait(m_server.url("/titled.html"));
        QVERIFY(window(1));
        QCOMPARE(g.WindowCount, 2);
    }
    void eightWindowsThenTheQuestionAndUnloadQuitsThemAll()
    {
        for (int i = 1; i <= 8; ++i)
            QCOMPARE(openAndWait(pageFile(QString("p%1.html").arg(i),
                                          QString("<title>Page %1</title>").arg(i).toUtf8()))
                         .size(),
                     1);
        QCOMPARE(g.WindowCount, 8);
        for (int slot = 1; slot <= 8; ++slot)
            QCOMPARE(row(slot)->text(), QString("Page %1").arg(slot));
        DialogService::setNextAnswer(DialogService::Answer::No);
        open(m_server.url("/titled.html"));
        QCOMPARE(DialogService::shownTexts().size(), 1);
        QList<QPointer<BrowserFrame>> frames;
        for (int slot = 1; slot <= 8; ++slot)
            frames << window(slot)->frame();
        m_main->Form_Unload();
        QCOMPARE(g.WindowCount, 0);
        for (auto& frame : frames)
            QTRY_VERIFY(!frame);
    }
    void linkAskingForANewWindowGetsASlotOfItsOwn()
    {
        openAndWait(m_server.url("/opener.html"));
        QSignalSpy completed(m_main->webForm(), &WebForm1::documentCompleted);
        window(1)->page()->runJavaScript("document.getElementById('l').click();");
        QTRY_VERIFY_WITH_TIMEOUT(window(2), kLoadTimeoutMs);
        QTRY_COMPARE_WITH_TIMEOUT(row(2)->text(), QStringLiteral("Served Title"), kLoadTimeoutMs);
        QCOMPARE(g.WindowCount, 2);
    }
    void theaterModeShowsTheWindowFullScreenWithoutItsBar()
    {
        g.OptTheater = true;
        openAndWait(m_server.url("/titled.html"));
        QVERIFY(window(1)->frame()->isFullScreen());
        QVERIFY(!window(1)->frame()->findChild<QWidget*>("NavigationBar")->isVisible());
    }
    void aBlackedOutWindowIsBlackFullScreenUntilItsNextPage()
    {
        openAndWait(m_server.url("/titled.html"));
        BrowserFrame* frame = window(1)->frame();
        window(1)->setBlackedOut(true);
        QWidget* curtain = frame->findChild<QWidget*>("BlackCurtain");
        QVERIFY(curtain && curtain->isVisible());
        QVERIFY(frame->isFullScreen());
        QVERIFY(!frame->findChild<QWidget*>("NavigationBar")->isVisible());
        QCOMPARE(curtain->geometry(), frame->rect());
        // What the window shows is black, over all of it.
        const QImage shot = frame->grab().toImage();
        QCOMPARE(shot.pixelColor(shot.width() / 2, shot.height() / 2), QColor(Qt::black));
        QCOMPARE(shot.pixelColor(5, 5), QColor(Qt::black));
        // Its next page takes the black away.
        window(1)->navigate(m_server.url("/plain.html"));
        QVERIFY(!curtain->isVisible());
        QVERIFY(!window(1)->blackedOut());
        QTRY_VERIFY(!frame->isFullScreen());
        QVERIFY(frame->findChild<QWidget*>("NavigationBar")->isVisible());
    }
    void crashedPageShowsItsAddressAndLoadsAgain()
    {
        const QString url = m_server.url("/titled.html");
        openAndWait(url);
        BrowserFrame* frame = window(1)->frame();
        const qint64 pid = window(1)->page()->renderProcessPid();
        QVERIFY(pid > 0);
        ::kill(pid_t(pid), SIGKILL);
        QTRY_VERIFY_WITH_TIMEOUT(frame->isShowingCrash(), kLoadTimeoutMs);
        QVERIFY(frame->findChild<QLabel*>("CrashText")->text().contains(url));
        QStringList completed;
        connect(m_main->webForm(), &WebForm1::documentCompleted, this, [&] { completed << g.CurrentUrl; });
        QTest::mouseClick(frame->findChild<QPushButton*>("CrashReloadBtn"), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(completed.contains(url), kLoadTimeoutMs);
        QVERIFY(!frame->isShowingCrash());
    }
    void untrustedCertificateIsRefusedAndShown()
    {
        QSslServer tls;
        QSslConfiguration config = QSslConfiguration::defaultConfiguration();
        config.setLocalCertificate(QSslCertificate(testData("selfsigned.crt")));
        config.setPrivateKey(QSslKey(testData("selfsigned.key"), QSsl::Rsa));
        tls.setSslConfiguration(config);
        QVERIFY(tls.listen(QHostAddress::LocalHost));
        const QString url = QString("https://127.0.0.1:%1/secret.html").arg(tls.serverPort());
        const QStringList completed = openAndWait(url);
        QCOMPARE(completed.size(), 1); // the error page stands in for the document
        auto* bar = window(1)->frame()->findChild<QLabel*>("MessageBar");
        QVERIFY(bar);
        QVERIFY(waitFor([&] { return bar->isVisibleTo(window(1)->frame()); }, kLoadTimeoutMs));
        QVERIFY2(bar->text().contains("127.0.0.1"), qPrintable(bar->text()));
        QVERIFY(bar->text().contains("refused"));
    }
    void downloadsGoToTheDownloadsFolderWithoutOverwriting()
    {
        QTemporaryDir home;
        const QByteArray savedHome = qgetenv("HOME");
        qputenv("HOME", home.path().toUtf8());
        m_server.setResponse("/report.txt", "report contents",
                             "Content-Type: application/octet-stream\r\n"
                             "Content-Disposition: attachment; filename=\"report.txt\"\r\n");
        openAndWait(m_server.url("/plain.html"));
        const QString first = home.filePath("Downloads/report.txt");
        const QString second = home.filePath("Downloads/report (1).txt");
        window(1)->navigate(m_server.url("/report.txt"));
        const bool firstSaved = waitFor([&] { return readAll(first) == "report contents"; }, kLoadTimeoutMs);
        window(1)->navigate(m_server.url("/report.txt"));
        const bool secondSaved =
            waitFor([&] { return readAll(second) == "report contents"; }, kLoadTimeoutMs);
        auto* bar = window(1)->frame()->findChild<QLabel*>("MessageBar");
        const bool told =
            waitFor([&] { return bar->text().startsWith("Downloaded report (1).txt"); }, kLoadTimeoutMs);
        qputenv("HOME", savedHome);
        QVERIFY(firstSaved);
        QVERIFY(secondSaved);
        QVERIFY2(told, qPrintable(bar->text()));
    }
    void threePageListRunsThroughRealWindowsInOrder()
    {
        ManualClock clock(QDateTime(QDate(2026, 6, 1), QTime(9, 0)));
        Clock::setInstance(&clock);
        ListsTree* lists = m_main->listsPanel()->lists();
        QVERIFY(lists->AddListNode("Tour"));
        QStringList urls;
        for (int i = 1; i <= 3; ++i) {
            urls << pageFile(QString("tour%1.html").arg(i),
                             QString("<title>Tour %1</title>").arg(i).toUtf8());
            g.CurrentUrl = urls.last();
            g.CurrentTitle = QString("Tour %1").arg(i);
            QVERIFY(lists->AddPageNode("Tour"));
        }
        QStringList completed; // "slot:address" of each page that completed
        connect(m_main->webForm(), &WebForm1::documentCompleted, this,
                [&](const QString& slot) { completed << slot.right(1) + ":" + g.CurrentUrl; });
        QVERIFY(m_main->BuildRunList("TOUR"));
        g.RunListRunning = true;
        g.RunListMulti = true;
        g.RunInterval = 2; // a short interval for the test
        QList<int> openedAtTick;
        for (int tick = 0; tick < 20 && completed.size() < 3; ++tick) {
            const int windows = g.WindowCount;
            m_main->Timer1_Timer();
            clock.advanceSeconds(0.6);
            if (g.WindowCount > windows) {
                openedAtTick << tick;
                // Each page is let load before the clock goes on, as a person would watch it.
                QVERIFY(waitFor([&] { return completed.size() == openedAtTick.size(); }, kLoadTimeoutMs));
            }
        }
        // At once, then each after more than 2 s (four ticks of 0.6 s) counted as the run counts.
        QCOMPARE(openedAtTick, (QList<int>{0, 4, 9}));
        QCOMPARE(completed, (QStringList{"1:" + urls[0], "2:" + urls[1], "3:" + urls[2]}));
        for (int slot = 1; slot <= 3; ++slot)
            QCOMPARE(row(slot)->text(), QString("Tour %1").arg(slot));
        Clock::setInstance(nullptr);
    }
    void pagesAndTheirFramesAreRecordedUnderTheirWindowsAndComeBackAfterARestart()
    {
        openAndWait(m_server.url("/titled.html"));
        openAndWait(m_server.url("/frames.html"), 4);
        KeyedTree* tree = m_main->historyPanel()->SSTree3();
        QStringList pages;
        for (KeyedNode* node : tree->nodes())
            if (!node->isFolder())
                pages << node->key();
        QCOMPARE(pages.first(), m_server.url("/titled.html") + "/Internet Explorer 1");
        QCOMPARE(tree->node(m_server.url("/titled.html") + "/Internet Explorer 1")->nodeText(),
                 QStringLiteral("Served Title"));
        QCOMPARE(tree->node("Internet Explorer 2")->childCount(), 4); // three frames and their page
        QVERIFY(tree->node(m_server.url("/f2.html") + "/Internet Explorer 2"));
        QVERIFY(tree->node(m_server.url("/frames.html") + "/Internet Explorer 2"));
        QStringList before;
        for (KeyedNode* node : tree->nodes())
            before << node->key() + "|" + node->nodeText();
        m_main->historyPanel()->history()->SaveHistBtn_Click();
        m_main->Form_Unload();
        m_main.reset();

        // The program starts again in the same folder.
        const QString folder = g.AppPath;
        resetGlobals();
        g.AppPath = folder;
        LoadListFile(folder + "/DefaultList.NLS");
        LoadHistoryFile(folder + "/BrowseHistory.LST");
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        QStringList after;
        for (KeyedNode* node : m_main->historyPanel()->SSTree3()->nodes())
            after << node->key() + "|" + node->nodeText();
        QCOMPARE(after, before);
    }
    void addressTypedInTheWindowNavigatesIt()
    {
        openAndWait(m_server.url("/plain.html"));
        auto* address = window(1)->frame()->findChild<QLineEdit*>("AddressEdit");
        QVERIFY(address);
        address->setText(m_server.url("/titled.html"));
        QTest::keyClick(address, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(row(1)->text(), QStringLiteral("Served Title"), kLoadTimeoutMs);
    }
};

VANTREL_GUI_TEST_MAIN(TestBrowserWindow)
#include "tst_browserwindow.moc"
