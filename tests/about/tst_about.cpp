#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "about/About1.h"
#include "about/HelpWindow.h"
#include "about/SystemInfo.h"
#include "options/OptionsPanel.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <memory>

// The about box, the system information, the help, and what makes the program usable by keyboard
// and by assistive tools.
class TestAbout : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;
    QByteArray m_savedPath;

    void start()
    {
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        DialogService::clearShown();
    }
    // A folder on PATH that holds only the programs the test puts there.
    QString fakePath(const QStringList& tools, const QString& marker)
    {
        const QString bin = m_app->file("bin");
        QDir().mkpath(bin);
        for (const QString& tool : tools) {
            const QString path = bin + "/" + tool;
            writeAll(path, QString("#!/bin/sh\necho %1 > '%2'\n").arg(tool, marker).toUtf8());
            QFile::setPermissions(path,
                                  QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
        }
        return bin;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        m_savedPath = qgetenv("PATH");
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        qputenv("PATH", m_savedPath);
    }

    void aboutButtonTwiceOpensOneAboutBox()
    {
        start();
        QTest::mouseClick(m_main->optionsPanel()->AboutBtn(), Qt::LeftButton);
        QTest::mouseClick(m_main->optionsPanel()->AboutBtn(), Qt::LeftButton);
        QCOMPARE(m_main->findChildren<About1*>().size(), 1);
        About1* about = m_main->aboutBox();
        QVERIFY(about->isVisible());
        QVERIFY(g.AboutShown);
        QCOMPARE(about->Label1()->text().contains("Quorlan Software"), true);
        QCOMPARE(about->picIcon()->pixmap().size(), QSize(64, 64));
        QTest::mouseClick(about->OKBtn(), Qt::LeftButton);
        QVERIFY(!about->isVisible());
        QVERIFY(!g.AboutShown);
        QTest::mouseClick(m_main->optionsPanel()->AboutBtn(), Qt::LeftButton);
        QVERIFY(g.AboutShown);
        QCOMPARE(m_main->findChildren<About1*>().size(), 1);
    }
    void makersNameOpensTheSiteInANewWindowBelowEight()
    {
        start();
        m_main->AboutBtn_Click();
        m_main->aboutBox()->Label1_Click();
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{QString::fromLatin1(kDefaultStartUrl)});
        QCOMPARE(g.CurrentTitle, QStringLiteral("Quorlan Software"));
    }
    void makersNameWithEightWindowsGoesOnInAnOpenWindow()
    {
        start();
        for (int i = 0; i < 8; ++i) {
            g.CurrentUrl = QString("https://w%1/").arg(i);
            m_main->NewBtnAction(true);
        }
        m_main->AboutBtn_Click();
        // With eight windows no ninth opens, and nothing is asked: the current window shows the site.
        QTest::mouseClick(m_main->surf()->Button(2), Qt::LeftButton); // the third window is current
        m_main->aboutBox()->Label1_Click();
        QCOMPARE(DialogService::shownTexts(), QStringList{});
        QCOMPARE(m_created.size(), 8);
        QCOMPARE(m_created[2]->navigations.last(), QString::fromLatin1(kDefaultStartUrl));
        QCOMPARE(g.WindowUrl[3], QString::fromLatin1(kDefaultStartUrl));
        QCOMPARE(g.WindowCount, 8);
    }
    void systemInformationStartsTheFirstToolFound()
    {
        const QString marker = m_app->file("started.txt");
        qputenv("PATH", fakePath({"kinfocenter", "gnome-system-monitor"}, marker).toUtf8());
        start();
        m_main->AboutBtn_Click();
        QTest::mouseClick(m_main->aboutBox()->SysBtn(), Qt::LeftButton);
        QVERIFY(waitFor([&] { return QFile::exists(marker); }, 10000));
        QCOMPARE(readAll(marker).trimmed(), QByteArray("kinfocenter"));
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void withoutAToolSystemInformationIsUnavailable()
    {
        qputenv("PATH", fakePath({}, m_app->file("none")).toUtf8());
        start();
        QCOMPARE(SystemInfo::findTool(), QString());
        QVERIFY(!SystemInfo::StartSysInfo());
        QCOMPARE(DialogService::shownTexts(), QStringList{"System Information Is Unavailable At This Time"});
    }
    void helpOpensFromTheButtonsAndF1AndClosesWithTheProgram()
    {
        start();
        QTest::mouseClick(m_main->optionsPanel()->HelpBtn(), Qt::LeftButton);
        HelpWindow* help = m_main->helpWindow();
        QVERIFY(help && help->isVisible());
        QCOMPARE(help->source(), QUrl("qrc:/help/vantrel.html"));
        QVERIFY(help->toPlainText().contains("Run List of Web Pages"));
        // The run keys, the page settings and the runs in other windows are told there too.
        for (const char* told : {"Ctrl+Shift+Space", "Ctrl+Shift+Right", "Ctrl+Shift+Left", "Page Settings...",
                                 "Run in Other Windows...", "Skip for now"})
            QVERIFY2(help->toPlainText().contains(QLatin1String(told)), told);
        help->close();
        m_main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_main.get()));
        QTest::keyClick(m_main.get(), Qt::Key_F1);
        QVERIFY(help->isVisible());
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        help->close();
        QTest::mouseClick(m_main->listsPanel()->runDialog()->HelpBtn(), Qt::LeftButton);
        QVERIFY(help->isVisible());
        m_main->Form_Unload();
        QVERIFY(!help->isVisible());
    }
    void helpFileInTheProgramFolderIsShownInstead()
    {
        QDir().mkpath(m_app->file("Help"));
        QVERIFY(writeAll(m_app->file("Help/Vantrel.html"), "<html><body>Local help page</body></html>"));
        start();
        m_main->showHelp();
        QCOMPARE(m_main->helpWindow()->source(), QUrl::fromLocalFile(m_app->file("Help/Vantrel.html")));
        QVERIFY(m_main->helpWindow()->toPlainText().contains("Local help page"));
    }
    void helpExplainsEveryTab()
    {
        start();
        m_main->showHelp();
        const QString text = m_main->helpWindow()->toPlainText();
        for (const char* part : {"Surf", "Favorites", "Lists", "History", "Options", "DefaultList.NLS",
                                 "BrowseHistory.LST", "DefaultBtns.BLS", "Options.INI", "Colors.INI"})
            QVERIFY2(text.contains(QString::fromLatin1(part)), part);
    }
    void everyButtonAndTreeHasANameAndATip()
    {
        start();
        m_main->AboutBtn_Click();
        m_main->listsPanel()->RunListBtn_Click();
        QStringList missing;
        for (QAbstractButton* button : m_main->findChildren<QAbstractButton*>()) {
            if (qobject_cast<QTabBar*>(button->parent()) || button->objectName().startsWith("qt_"))
                continue; // Qt's own parts of its controls
            if (button->objectName().startsWith("Button_"))
                continue; // a row is named by its page once a window shows one
            const bool named = !button->text().isEmpty() || !button->accessibleName().isEmpty();
            if (!named || button->toolTip().isEmpty())
                missing << button->objectName();
        }
        for (KeyedTree* tree : m_main->findChildren<KeyedTree*>())
            if (tree->toolTip().isEmpty())
                missing << tree->objectName();
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(", ")));
    }
    void keyboardReachesEveryControlOfTheTabs()
    {
        start();
        for (int tab = 0; tab < 5; ++tab) {
            m_main->TabStrip1()->setCurrentIndex(tab);
            QWidget* page = m_main->TabStrip1()->widget(tab);
            for (QAbstractButton* button : page->findChildren<QAbstractButton*>())
                if (button->isVisibleTo(page) && !button->objectName().startsWith("qt_"))
                    QVERIFY2(button->focusPolicy() & Qt::TabFocus, qPrintable(button->objectName()));
        }
        for (KeyedTree* tree : m_main->findChildren<KeyedTree*>())
            QVERIFY(tree->focusPolicy() & Qt::TabFocus);
    }
};

VANTREL_GUI_TEST_MAIN(TestAbout)
#include "tst_about.moc"
