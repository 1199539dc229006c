#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "favorites/FavoritesTree.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QDir>
#include <QMimeData>
#include <QTabWidget>
#include <QTabBar>
#include <QTest>

#include <memory>

// The History tab with scripted browser windows.
class TestHistory : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    HistoryTree* history() { return m_main->historyPanel()->history(); }
    KeyedTree* tree() { return m_main->historyPanel()->SSTree3(); }
    void start(const QByteArray& historyFile = QByteArray())
    {
        if (!historyFile.isNull()) {
            QVERIFY(writeAll(m_app->file("BrowseHistory.LST"), historyFile));
            LoadListFile(m_app->file("DefaultList.NLS"));
            LoadHistoryFile(m_app->file("BrowseHistory.LST"));
        }
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(3);
        DialogService::clearShown();
    }
    QStringList keys() { return treeKeys(tree()); }
    QStringList groups()
    {
        QStringList k;
        for (int slot = 1; slot <= 8; ++slot)
            k << QString("Internet Explorer %1").arg(slot);
        return k;
    }
    QPoint pointOf(const QString& key) { return treePointOf(tree(), key); }
    // The page `url` shown in slot `slot`'s window.
    void show(int slot, const QString& url, const QString& title)
    {
        while (m_created.size() < slot) {
            g.CurrentUrl = "about:blank";
            m_main->NewBtnAction(true);
        }
        m_created[slot - 1]->load(url, title);
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        ControlDrag::setTestHook(nullptr);
    }

    void freshHistoryHasEightEmptyGroups()
    {
        start();
        QCOMPARE(keys(), groups());
        for (KeyedNode* n : tree()->nodes()) {
            QCOMPARE(n->childCount(), 0);
            QCOMPARE(n->image(), int(KeyedTree::ClosedFolder));
        }
        QCOMPARE(tree()->toolTip(), QStringLiteral("Drag and Drop History URL's to Favorites"));
        QVERIFY(!g.HistoryChanged);
    }
    void pageShownTwiceInAWindowIsRecordedOnceThenAgainForAnotherWindow()
    {
        start();
        show(3, "https://same.example/", "First Title");
        show(3, "https://same.example/", "Second Title");
        KeyedNode* group3 = tree()->node("Internet Explorer 3");
        QCOMPARE(group3->childCount(), 1);
        KeyedNode* page = tree()->node("https://same.example//Internet Explorer 3");
        QCOMPARE(page->nodeText(), QStringLiteral("First Title"));
        QCOMPARE(page->tag(), QStringLiteral("https://same.example/"));
        QCOMPARE(page->listTag(), QStringLiteral("Internet Explorer 3"));
        QVERIFY(g.HistoryChanged);
        show(5, "https://same.example/", "Elsewhere");
        QCOMPARE(tree()->node("Internet Explorer 5")->childCount(), 1);
        QVERIFY(tree()->node("https://same.example//Internet Explorer 5"));
    }
    void clearingThenSavingWritesTheEightGroups()
    {
        start();
        show(1, "https://a/", "A");
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(m_main->historyPanel()->ClearHistBtn(), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"Are you sure you want to Clear all Web Page Viewing History"});
        QCOMPARE(keys(), groups());
        QVERIFY(g.HistoryChanged);
        QVERIFY(!QFile::exists(m_app->file("BrowseHistory.LST"))); // only a save writes
        QTest::mouseClick(m_main->historyPanel()->SaveHistBtn(), Qt::LeftButton);
        QByteArray expected;
        for (const QString& group : groups())
            expected += group.toUtf8() + "[#@!] [#@!] \r\n";
        QCOMPARE(readAll(m_app->file("BrowseHistory.LST")), expected);
        QVERIFY(!g.HistoryChanged);
        QCOMPARE(g.HistoryCount, 8);
    }
    void answeringNoToClearingChangesNothing()
    {
        start();
        show(2, "https://b/", "B");
        g.HistoryChanged = false;
        DialogService::setNextAnswer(DialogService::Answer::No);
        history()->ClearHistBtn_Click();
        QVERIFY(tree()->node("https://b//Internet Explorer 2"));
        QVERIFY(!g.HistoryChanged);
    }
    void savedHistoryComesBackAtTheNextStart()
    {
        start();
        show(1, "https://a/", "A, with comma");
        show(2, "https://b/", "B");
        history()->SaveHistBtn_Click();
        m_main.reset();
        resetGlobals();
        g.AppPath = m_app->path();
        LoadListFile(m_app->file("DefaultList.NLS"));
        LoadHistoryFile(m_app->file("BrowseHistory.LST"));
        start();
        QCOMPARE(keys(), (groups() +
                          QStringList{"https://a//Internet Explorer 1", "https://b//Internet Explorer 2"}));
        QCOMPARE(tree()->node("https://a//Internet Explorer 1")->nodeText(), QStringLiteral("A, with comma"));
    }
    void recordedPagesCountAsShownEvenBeforeTheTreeIsLookedAt()
    {
        start("Internet Explorer 1[#@!]Old Title[#@!]https://a.example/\r\n");
        // The page shows again before anything looked at the tree: it is the same page.
        show(1, "https://a.example/", "New Title");
        KeyedTree* t = m_main->historyPanel()->SSTree3();
        QCOMPARE(t->node("Internet Explorer 1")->childCount(), 1);
        QCOMPARE(t->node("https://a.example//Internet Explorer 1")->nodeText(), QStringLiteral("Old Title"));
    }
    void historyIsInPlaceSoonAfterStartWithoutBeingAskedFor()
    {
        start("Internet Explorer 2[#@!]B[#@!]https://b.example/\r\n");
        HistoryTree* h = m_main->historyPanel()->history();
        QVERIFY(waitFor([&] { return h->tree()->node("https://b.example//Internet Explorer 2") != nullptr; },
                        5000));
    }
    void emptyHistoryFileStillGivesTheGroups()
    {
        start("");
        QCOMPARE(g.HistoryCount, 0);
        QCOMPARE(keys(), groups());
    }
    void recordsUnderUnknownGroupsAndDuplicatesAreSkipped()
    {
        start("Internet Explorer 1[#@!] [#@!] \r\nInternet Explorer 1[#@!]A[#@!]https://a/\r\n"
              "Somewhere Else[#@!]X[#@!]https://x/\r\nInternet Explorer 1[#@!]A again[#@!]https://a/\r\n"
              "Internet Explorer 4[#@!]" +
              QByteArray(5000, 'T') +
              "[#@!]https://long/\r\n\r\n"
              "Internet Explorer 2[#@!]After blank[#@!]https://after/\r\n");
        QCOMPARE(keys(), (groups() + QStringList{"https://a//Internet Explorer 1",
                                                 "https://long//Internet Explorer 4"}));
        QCOMPARE(tree()->node("https://a//Internet Explorer 1")->nodeText(), QStringLiteral("A"));
        QCOMPARE(tree()->node("https://long//Internet Explorer 4")->nodeText().size(), 5000);
    }
    void atMost10001RecordsAreSaved()
    {
        start();
        for (int i = 0; i < 10100; ++i) {
            g.CurrentUrl = QString("https://p%1/").arg(i);
            g.CurrentTitle = "t";
            history()->CreateNode3(QString("Internet Explorer %1").arg(i % 8 + 1));
        }
        history()->SaveHistBtn_Click();
        QCOMPARE(readAll(m_app->file("BrowseHistory.LST")).count("\r\n"), 10001);
        QCOMPARE(g.HistoryCount, 10001);
    }
    void doubleClickOpensAPageButNotAGroup()
    {
        start("Internet Explorer 6[#@!]Six[#@!]https://six.example/\r\n");
        history()->nodeDoubleClicked(tree()->node("Internet Explorer 6"));
        QVERIFY(m_created.isEmpty());
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {},
                          pointOf("https://six.example//Internet Explorer 6"));
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {},
                           pointOf("https://six.example//Internet Explorer 6"));
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://six.example/"});
    }
    void pageDraggedOutLandsInTheFavoritesAndInALists()
    {
        QDir().mkpath(m_app->favorites() + "/Saved");
        start("Internet Explorer 2[#@!]Two Page[#@!]https://two.example/\r\n");
        ListsTree* lists = m_main->listsPanel()->lists();
        lists->AddListNode("Keep");
        KeyedTree* favoritesTree = m_main->SSTree1();
        KeyedTree* listsTree = m_main->listsPanel()->SSTree2();
        QString dropOn = "favorites";
        ControlDrag::setTestHook([&](QWidget* source, const QMimeData& data) {
            QCOMPARE(source, static_cast<QWidget*>(tree()));
            if (dropOn == "favorites") {
                deliverDrop(favoritesTree->viewport(), &data,
                            favoritesTree->visualItemRect(favoritesTree->node("Saved")).center());
            } else {
                deliverDrop(listsTree->viewport(), &data,
                            listsTree->visualItemRect(listsTree->node("Keep")).center());
            }
        });
        const QPoint page = pointOf("https://two.example//Internet Explorer 2");
        QTest::mousePress(tree()->viewport(), Qt::LeftButton, {}, page);
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://two.example/"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("Two Page"));
        QTest::mouseMove(tree()->viewport(), page + QPoint(1, 0)); // a small move is still a click
        QVERIFY(!QFile::exists(m_app->favorites() + "/Saved/Two Page.URL"));
        QTest::mouseMove(tree()->viewport(), page + QPoint(40, 0));
        QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, {}, page + QPoint(40, 0));
        QVERIFY(readAll(m_app->favorites() + "/Saved/Two Page.URL").contains("URL=https://two.example/"));
        dropOn = "lists";
        QTest::mousePress(tree()->viewport(), Qt::LeftButton, {}, page);
        QTest::mouseMove(tree()->viewport(), page + QPoint(40, 0));
        QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, {}, page + QPoint(40, 0));
        QVERIFY(listsTree->node("https://two.example//Keep"));
    }
    void pageDraggedOverTheListsTabCaptionBringsItForwardAndLandsInAList()
    {
        start("Internet Explorer 2[#@!]Two Page[#@!]https://two.example/\r\n");
        m_main->listsPanel()->lists()->AddListNode("Keep");
        KeyedTree* listsTree = m_main->listsPanel()->SSTree2();
        QTabBar* tabs = m_main->TabStrip1()->tabBar();
        bool listsInFront = false;
        ControlDrag::setTestHook([&](QWidget*, const QMimeData& data) {
            // Held over the caption "Lists" the drag brings the tab forward; then it lands.
            const QPoint caption = tabs->tabRect(2).center();
            QDragEnterEvent enter(caption, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(tabs, &enter);
            QDragMoveEvent move(caption, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(tabs, &move);
            listsInFront = QTest::qWaitFor([&] { return m_main->TabStrip1()->currentIndex() == 2; }, 3000);
            QDragLeaveEvent leave;
            QApplication::sendEvent(tabs, &leave);
            if (listsInFront && listsTree->isVisible())
                deliverDrop(listsTree->viewport(), &data, treePointOf(listsTree, "Keep"));
        });
        const QPoint page = pointOf("https://two.example//Internet Explorer 2");
        QTest::mousePress(tree()->viewport(), Qt::LeftButton, {}, page);
        QTest::mouseMove(tree()->viewport(), page + QPoint(40, 0));
        QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, {}, page + QPoint(40, 0));
        QVERIFY(listsInFront);
        QVERIFY(listsTree->node("https://two.example//Keep"));
        // The page travels as a globe, not as a picture of the tree.
        QCOMPARE(ControlDrag::lastPicture().toImage(), ControlDrag::pagePicture().toImage());
    }
    void pressOnAGroupStartsNoDrag()
    {
        start();
        bool dragged = false;
        ControlDrag::setTestHook([&](QWidget*, const QMimeData&) { dragged = true; });
        const QPoint group = pointOf("Internet Explorer 1");
        QTest::mousePress(tree()->viewport(), Qt::LeftButton, {}, group);
        QTest::mouseMove(tree()->viewport(), group + QPoint(40, 0));
        QVERIFY(!dragged);
    }
    void closingAsksAndYesSavesTheTree()
    {
        start();
        show(7, "https://seven/", "Seven");
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        m_main->Form_Unload();
        QVERIFY(DialogService::shownTexts().contains("Do you want to save History of Web Page Viewing?"));
        QVERIFY(readAll(m_app->file("BrowseHistory.LST"))
                    .contains("Internet Explorer 7[#@!]Seven[#@!]https://seven/\r\n"));
    }
};

VANTREL_GUI_TEST_MAIN(TestHistory)
#include "tst_history.moc"
