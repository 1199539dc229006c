#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/ListRun.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "settings/VantrelConf.h"
#include "options/OptionsPanel.h"
#include "favorites/FavoritesTree.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "lists/RunList1.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QMimeData>
#include <QTabWidget>
#include <QPushButton>
#include <QTest>

#include <memory>

// The Lists tab and the timed run, with scripted browser windows and a clock the test moves.
class TestLists : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;
    std::unique_ptr<ManualClock> m_clock;

    ListsTree* lists() { return m_main->listsPanel()->lists(); }
    KeyedTree* tree() { return m_main->listsPanel()->SSTree2(); }
    ListRun& run() { return m_main->listsPanel()->run(); }
    void start(const QByteArray& listFile = QByteArray())
    {
        if (!listFile.isNull()) {
            QVERIFY(writeAll(m_app->file("DefaultList.NLS"), listFile));
            LoadListFile(m_app->file("DefaultList.NLS"));
        }
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(2);
        DialogService::clearShown();
    }
    QStringList keys() { return treeKeys(tree()); }
    QPoint pointOf(const QString& key) { return treePointOf(tree(), key); }
    void dropRow(const QString& key)
    {
        std::unique_ptr<QMimeData> data(ControlDrag::makeData("AddListBtn"));
        deliverDrop(tree()->viewport(), data.get(), pointOf(key));
    }
    void addPage(const QString& list, const QString& url, const QString& title)
    {
        g.CurrentUrl = url;
        g.CurrentTitle = title;
        QVERIFY(lists()->AddPageNode(list));
    }
    RunList1* openDialog()
    {
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        return m_main->listsPanel()->runDialog();
    }
    // Ticks Timer1 every 0.6 s of the test's clock for `seconds`; the pages opened, in order.
    QStringList tickFor(double seconds)
    {
        QStringList opened;
        for (double t = 0; t < seconds; t += 0.6) {
            const int before = openedCount();
            m_main->Timer1_Timer();
            if (openedCount() > before)
                opened << g.CurrentUrl;
            m_clock->advanceSeconds(0.6);
        }
        return opened;
    }
    int openedCount()
    {
        int n = 0;
        for (auto* w : m_created)
            n += w->navigations.size();
        return n;
    }
    QStringList broughtForward()
    {
        QStringList windows;
        for (const QByteArray& line : readAll(m_app->file("Vantrel.log")).split('\n'))
            if (line.contains(" page brought forward: "))
                windows << QString::fromUtf8(line).section(u' ', 5, 5);
        return windows;
    }
    void runKeepingPages(const QByteArray& lists, const QString& list)
    {
        start(lists);
        RunList1* dialog = openDialog();
        dialog->CMBLIST()->setCurrentIndex(dialog->CMBLIST()->findText(list));
        dialog->CMBTIME()->setCurrentIndex(0); // 30 seconds
        dialog->CHKPAGE()->setChecked(true);
        dialog->CHKLOOP()->setChecked(true);
        dialog->CHKKEEP()->setChecked(true);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
    }
    // Starts a run of `list` from the dialog with the interval row `interval`.
    RunList1* go(const QString& list, int interval, bool multi = true, bool loop = false)
    {
        RunList1* dialog = openDialog();
        dialog->CMBLIST()->setCurrentIndex(dialog->CMBLIST()->findText(list));
        dialog->CMBTIME()->setCurrentIndex(interval);
        dialog->CHKPAGE()->setChecked(multi);
        dialog->CHKLOOP()->setChecked(loop);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
        return dialog;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 1), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        Clock::setInstance(nullptr);
        ControlDrag::setTestHook(nullptr);
    }

    // ---- the lists tree ----------------------------------------------------------------
    void threeNewListsAreNumbered()
    {
        start();
        for (int i = 0; i < 3; ++i)
            QTest::mouseClick(m_main->listsPanel()->NewListBtn(), Qt::LeftButton);
        QCOMPARE(keys(), (QStringList{"New List", "New List_2", "New List_3"}));
        QCOMPARE(tree()->node("New List_2")->image(), int(KeyedTree::OpenFolder));
        QCOMPARE(tree()->node("New List_3")->listTag(), QStringLiteral("New List_3"));
        QVERIFY(g.ListsChanged);
    }
    void listsAndPagesLoadFromTheRecords()
    {
        start(
            "News[#@!] [#@!] \r\nNews[#@!]Paper[#@!]https://paper/\r\nMissing[#@!]Lost[#@!]https://lost/\r\n"
            "News[#@!]Paper again[#@!]https://paper/\r\nNews[#@!] [#@!] \r\nSport[#@!] [#@!] \r\n"
            "Sport[#@!]Scores~ today[#@!]https://scores/?a=1~b\r\n");
        QCOMPARE(keys(),
                 (QStringList{"News", "https://paper//News", "Sport", "https://scores/?a=1,b/Sport"}));
        KeyedNode* page = tree()->node("https://paper//News");
        QCOMPARE(page->nodeText(), QStringLiteral("Paper"));
        QCOMPARE(page->tag(), QStringLiteral("https://paper/"));
        QCOMPARE(page->listTag(), QStringLiteral("News"));
        QCOMPARE(page->parentNode(), tree()->node("News"));
        QCOMPARE(tree()->node("Sport")->image(), int(KeyedTree::ClosedFolder));
        QCOMPARE(tree()->node("https://scores/?a=1,b/Sport")->nodeText(), QStringLiteral("Scores, today"));
        QCOMPARE(m_main->CMBLIST()->count(), 2);
        QCOMPARE(m_main->CMBLIST()->itemText(1), QStringLiteral("Sport"));
    }
    void savingWritesOneRecordPerNodeAndRebuildsTheListNames()
    {
        start("A[#@!] [#@!] \r\nA[#@!]One[#@!]https://1/\r\n");
        lists()->AddListNode("B");
        addPage("B", "https://2/", "Two, with comma");
        addPage("A", "https://3/", "Three");
        QTest::mouseClick(m_main->listsPanel()->SaveListBtn(), Qt::LeftButton);
        QCOMPARE(readAll(m_app->file("DefaultList.NLS")),
                 QByteArray("A[#@!] [#@!] \r\nA[#@!]One[#@!]https://1/\r\nB[#@!] [#@!] \r\nB[#@!]Two~ with "
                            "comma[#@!]https://2/\r\n"
                            "A[#@!]Three[#@!]https://3/\r\n"));
        QCOMPARE(g.ListCount, 5);
        QVERIFY(!g.ListsChanged);
        QCOMPARE(m_main->CMBLIST()->count(), 2);
        QCOMPARE(m_main->CMBLIST()->itemText(1), QStringLiteral("B"));
    }
    void emptyListIsSavedAsOneBlankRecordAndComesBack()
    {
        start();
        lists()->AddListNode("Empty");
        lists()->SaveListBtn_Click();
        QCOMPARE(readAll(m_app->file("DefaultList.NLS")), QByteArray("Empty[#@!] [#@!] \r\n"));
        resetGlobals();
        g.AppPath = m_app->path();
        LoadListFile(m_app->file("DefaultList.NLS"));
        lists()->LoadListTree();
        QCOMPARE(keys(), QStringList{"Empty"});
        QVERIFY(tree()->node("Empty")->isFolder());
    }
    void atMost1001RecordsAreSaved()
    {
        start();
        lists()->AddListNode("Big");
        for (int i = 0; i < 1005; ++i)
            addPage("Big", QString("https://p%1/").arg(i), "t");
        lists()->SaveListBtn_Click();
        QCOMPARE(readAll(m_app->file("DefaultList.NLS")).count("\r\n"), 1001);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void samePageOnceInEachList()
    {
        start("A[#@!] [#@!] \r\nB[#@!] [#@!] \r\n");
        g.CurrentUrl = "https://open/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://page.example/", "The Page");
        m_main->surf()->Button(0)->setTag("https://page.example/");
        g.CurrentUrl = "https://page.example/";
        g.CurrentTitle = "The Page";
        dropRow("A");
        dropRow("A");
        QCOMPARE(tree()->node("A")->childCount(), 1);
        dropRow("B");
        QCOMPARE(tree()->node("B")->childCount(), 1);
        QCOMPARE(tree()->node("https://page.example//B")->nodeText(), QStringLiteral("The Page"));
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void rowsListButtonFromTheKeyboardAddsThePageToTheChosenList()
    {
        start("A[#@!] [#@!] \r\nA[#@!]First[#@!]https://first/\r\nB[#@!] [#@!] \r\n");
        g.CurrentUrl = "https://open/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://page.example/", "The Page");
        m_main->surf()->rows()->showCompleted(1, "https://page.example/", "The Page");
        bool dragged = false;
        ControlDrag::setTestHook([&](QWidget*, const QMimeData&) { dragged = true; });
        m_main->TabStrip1()->setCurrentIndex(0);
        // No list chosen yet: the person is told what to do, and nothing is added.
        tree()->setCurrentItem(nullptr);
        QTest::keyClick(m_main->surf()->AddListBtn(0), Qt::Key_Space);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"Choose a list in the Lists tab first, then press the row's list button again."});
        QCOMPARE(m_main->TabStrip1()->currentIndex(), 2);
        // A page of list A chosen: the row's page joins A.
        tree()->setCurrentItem(tree()->node("https://first//A"));
        QTest::keyClick(m_main->surf()->AddListBtn(0), Qt::Key_Space);
        QVERIFY(tree()->node("https://page.example//A"));
        QVERIFY(!tree()->node("https://page.example//B"));
        QVERIFY(!dragged);
        ControlDrag::setTestHook(nullptr);
    }
    void dropOnAPageAddsToThatPagesList()
    {
        start("A[#@!] [#@!] \r\nA[#@!]First[#@!]https://first/\r\n");
        g.CurrentUrl = "https://second/";
        g.CurrentTitle = "Second";
        dropRow("https://first//A");
        KeyedNode* added = tree()->node("https://second//A");
        QVERIFY(added);
        QCOMPARE(added->parentNode(), tree()->node("A"));
        QCOMPARE(tree()->node("https://first//A")->childCount(), 0);
        QCOMPARE(lists()->DropNodeKey, QStringLiteral("A"));
    }
    void dropBesideTheListsDoesNothing()
    {
        start("A[#@!] [#@!] \r\n");
        g.CurrentUrl = "https://x/";
        std::unique_ptr<QMimeData> data(ControlDrag::makeData("AddListBtn"));
        deliverDrop(tree()->viewport(), data.get(), QPoint(5, tree()->viewport()->height() - 3));
        QCOMPARE(tree()->nodeCount(), 1);
        QCOMPARE(lists()->DropNodeKey, QString());
    }
    void webAddressDroppedFromAnotherProgramAddsTheCurrentWindowsPage()
    {
        start("A[#@!] [#@!] \r\n");
        QMimeData text;
        text.setText("https://from.outside/");
        deliverDrop(tree()->viewport(), &text, pointOf("A"));
        QCOMPARE(tree()->nodeCount(), 1); // no browser window: nothing to add
        g.CurrentUrl = "https://open/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://window.page/", "Window Page");
        QMimeData ftp;
        ftp.setText("ftp://x");
        deliverDrop(tree()->viewport(), &ftp, pointOf("A"));
        QCOMPARE(tree()->nodeCount(), 1);
        deliverDrop(tree()->viewport(), &text, pointOf("A"));
        QVERIFY(tree()->node("https://window.page//A"));
        QCOMPARE(tree()->node("https://window.page//A")->nodeText(), QStringLiteral("Window Page"));
    }
    void favouritesAndHistoryEntriesCanBeDroppedToo()
    {
        start("A[#@!] [#@!] \r\n");
        g.CurrentUrl = "https://fav/";
        g.CurrentTitle = "Links/fav.url";
        std::unique_ptr<QMimeData> fav(ControlDrag::makeData("SSTree1"));
        deliverDrop(tree()->viewport(), fav.get(), pointOf("A"));
        g.CurrentUrl = "https://hist/";
        g.CurrentTitle = "History";
        std::unique_ptr<QMimeData> hist(ControlDrag::makeData("SSTree3"));
        deliverDrop(tree()->viewport(), hist.get(), pointOf("A"));
        std::unique_ptr<QMimeData> other(ControlDrag::makeData("AddBtn"));
        g.CurrentUrl = "https://other/";
        deliverDrop(tree()->viewport(), other.get(), pointOf("A"));
        QCOMPARE(keys(), (QStringList{"A", "https://fav//A", "https://hist//A"}));
    }
    void pressingTheMouseOnTheListsEndsAFavouritesDrag()
    {
        start("A[#@!] [#@!] \r\n");
        m_main->surf()->RowDragToFavorites = true;
        QTest::mousePress(tree()->viewport(), Qt::LeftButton, {}, pointOf("A"));
        QVERIFY(!m_main->favorites()->mouseDownFlag());
        QVERIFY(!m_main->surf()->RowDragToFavorites);
    }
    void renamingAListTakesItsPagesAlong()
    {
        start("Old[#@!] [#@!] \r\nOld[#@!]P1[#@!]https://1/\r\nOld[#@!]P2[#@!]https://2/\r\nOther[#@!] [#@!] "
              "\r\n");
        KeyedNode* list = tree()->node("Old");
        list->setText(0, "Fresh"); // what finishing the label edit does
        QVERIFY(tree()->node("Fresh"));
        QVERIFY(!tree()->node("Old"));
        QVERIFY(tree()->node("https://1//Fresh"));
        QCOMPARE(tree()->node("https://2//Fresh")->listTag(), QStringLiteral("Fresh"));
        QVERIFY(g.ListsChanged);
        bool found = false;
        QCOMPARE(lists()->BuildRunList("FRESH", &found), (QStringList{"https://1/", "https://2/"}));
        QVERIFY(found);
        // A name that is taken is refused and the label goes back.
        tree()->node("Fresh")->setText(0, "Other");
        QVERIFY(tree()->node("Fresh"));
        QCOMPARE(tree()->node("Fresh")->nodeText(), QStringLiteral("Fresh"));
    }
    void editingAPagesLabelChangesOnlyItsTitle()
    {
        start("L[#@!] [#@!] \r\nL[#@!]Title[#@!]https://1/\r\n");
        tree()->node("https://1//L")->setText(0, "Better Title");
        QVERIFY(tree()->node("https://1//L"));
        QCOMPARE(tree()->node("https://1//L")->nodeText(), QStringLiteral("Better Title"));
    }
    void doubleClickOpensAPageButNotAList()
    {
        start("L[#@!] [#@!] \r\nL[#@!]Title[#@!]https://page.example/\r\n");
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("L"));
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("L"));
        QVERIFY(m_created.isEmpty());
        lists()->nodeDoubleClicked(tree()->node("https://page.example//L"));
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://page.example/"});
    }

    // ---- the run dialog -------------------------------------------------------------------
    void intervalTable_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("seconds");
        const QList<QPair<QString, int>> rows = {
            {"30 seconds", 30}, {"1 minute", 60},   {"2 minute", 120},  {"3 minute", 180}, {"4 minute", 240},
            {"5 minute", 300},  {"6 minute", 360},  {"7 minute", 420},  {"8 minute", 480}, {"9 minute", 540},
            {"10 minute", 600}, {"12 minute", 720}, {"15 minute", 1000}};
        for (int i = 0; i < rows.size(); ++i)
            QTest::newRow(qPrintable(rows[i].first)) << i << rows[i].first << rows[i].second;
    }
    void intervalTable()
    {
        QFETCH(int, row);
        QFETCH(QString, text);
        QFETCH(int, seconds);
        start("L[#@!] [#@!] \r\nL[#@!]t[#@!]https://1/\r\nM[#@!] [#@!] \r\n");
        RunList1* dialog = go("L", row);
        QCOMPARE(dialog->CMBTIME()->itemText(row), text);
        QCOMPARE(g.RunInterval, seconds);
        QCOMPARE(dialog->CMBTIME()->count(), 13);
    }
    void dialogShowsItsCaptionsAndChoosesItsDefaults()
    {
        start("L[#@!] [#@!] \r\nM[#@!] [#@!] \r\n");
        m_main->move(twipsToPixels(3000), 0);
        RunList1* dialog = openDialog();
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Run List of Web Pages"));
        QCOMPARE(dialog->CMBLIST()->currentIndex(), 0);
        QCOMPARE(dialog->CMBTIME()->currentText(), QStringLiteral("2 minute"));
        QCOMPARE(dialog->CHKPAGE()->text(), QStringLiteral("Use Multiple Internet Explorer Windows"));
        QCOMPARE(dialog->CHKLOOP()->toolTip(),
                 QStringLiteral("Run List in One Internet Explorer Window instead of 8"));
        QCOMPARE(dialog->GoBtn()->toolTip(), QStringLiteral("Set Program Window Options"));
        QCOMPARE(dialog->HelpBtn()->toolTip(), QStringLiteral("Help with Program Options"));
        QCOMPARE(dialog->x(), twipsToPixels(5000));
        QVERIFY(g.RunListShown);
        QCOMPARE(g.NextRunItem, 1);
        dialog->close();
        m_main->move(twipsToPixels(6000), 0);
        openDialog();
        QCOMPARE(m_main->listsPanel()->runDialog()->x(), twipsToPixels(1000));
    }
    void withOneListNothingIsChosenAndGoAsksForOne()
    {
        start("Only[#@!] [#@!] \r\n");
        RunList1* dialog = openDialog();
        QCOMPARE(dialog->CMBLIST()->currentIndex(), -1);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Please Select a List"});
        QVERIFY(!g.RunListRunning);
        dialog->CMBLIST()->setCurrentIndex(0);
        dialog->CMBTIME()->setCurrentIndex(-1);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Please Select a Time Interval"));
        QVERIFY(!g.RunListRunning);
    }

    // ---- the timed run --------------------------------------------------------------------
    void pagesOpenAtTheFirstTickThenMoreThanAnIntervalApartThenTheRunCompletes()
    {
        start("L[#@!] [#@!] "
              "\r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nL[#@!]c[#@!]https://c/\r\nM[#@!] "
              "[#@!] \r\n");
        go("L", 0); // 30 seconds
        QVERIFY(g.RunListRunning);
        QCOMPARE(tickFor(0.6), QStringList{"https://a/"}); // at once
        QCOMPARE(tickFor(30.0), QStringList());            // not yet: strictly more than 30 s
        QCOMPARE(tickFor(1.2), QStringList{"https://b/"});
        QCOMPARE(tickFor(31.2), QStringList{"https://c/"});
        QCOMPARE(m_created.size(), 3); // each in a window of its own
        QVERIFY(DialogService::shownTexts().isEmpty());
        tickFor(31.2); // one more interval: the end
        QCOMPARE(DialogService::shownTexts(), QStringList{"    List Run Complete"});
        QVERIFY(!g.RunListRunning);
        QCOMPARE(run().RunPos, 0);
        QCOMPARE(run().RunStart, 0.0);
    }
    void fifteenMinutesMeansOneThousandSeconds()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        go("L", 12);
        QCOMPARE(tickFor(0.6), QStringList{"https://a/"});
        QCOMPARE(tickFor(999.6), QStringList());
        QCOMPARE(tickFor(1.8), QStringList{"https://b/"});
    }
    void listWithoutPagesCompletesAtTheFirstTick()
    {
        start("Empty[#@!] [#@!] \r\nM[#@!] [#@!] \r\n");
        go("Empty", 0);
        m_main->Timer1_Timer();
        QCOMPARE(DialogService::shownTexts(), QStringList{"    List Run Complete"});
        QVERIFY(!g.RunListRunning);
    }
    void loopingListWithoutPagesRestartsSilentlyForever()
    {
        start("Empty[#@!] [#@!] \r\nM[#@!] [#@!] \r\n");
        go("Empty", 0, true, true);
        tickFor(120);
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(g.RunListRunning);
        QVERIFY(m_created.isEmpty());
    }
    void loopingRunStartsAgainOneIntervalAfterItsLastPage()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        go("L", 0, false, true);
        // Tick for two and a half rounds and note when each page opens.
        QList<QPair<int, QString>> opened; // tick number, address
        for (int tick = 0; tick < 200; ++tick) {
            const int before = openedCount();
            m_main->Timer1_Timer();
            if (openedCount() > before)
                opened.append({tick, g.CurrentUrl});
            m_clock->advanceSeconds(0.6);
        }
        // a at once; b after more than 30 s counted from the tick after a; the restart one
        // interval after b (no page); a again one tick after the restart.
        QCOMPARE(opened.size(), 4);
        // Ticks are 0.6 s apart: 51 ticks make the first 30.6 s, strictly more than 30.
        QCOMPARE(opened[0], qMakePair(0, QStringLiteral("https://a/")));
        QCOMPARE(opened[1], qMakePair(51, QStringLiteral("https://b/")));  // counted from the first tick
        QCOMPARE(opened[2], qMakePair(104, QStringLiteral("https://a/"))); // 52 + 51 = restart, then one tick
        QCOMPARE(opened[3], qMakePair(155, QStringLiteral("https://b/")));
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(m_created.size(), 1); // one window throughout
    }
    void runAcrossMidnightWaitsWithoutCorrection()
    {
        m_clock->setNow(QDateTime(QDate(2026, 5, 1), QTime(23, 59, 50)));
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        go("L", 0);
        QCOMPARE(tickFor(0.6), QStringList{"https://a/"});
        // The wait began at 23:59:50; after midnight the clock reads small numbers again, the
        // time passed is negative, and the run waits on: no page, no message, still running.
        QCOMPARE(tickFor(600), QStringList());
        QVERIFY(g.RunListRunning);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void closingTheDialogStopsTheRunWithoutAWord()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        RunList1* dialog = go("L", 0, true, true);
        tickFor(0.6);
        QVERIFY(g.RunListRunning);
        dialog->close();
        QVERIFY(!g.RunListRunning);
        QVERIFY(!g.RunListLoop);
        QVERIFY(!g.RunListShown);
        QCOMPARE(tickFor(60), QStringList());
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void runButtonDuringARunStopsItAndBringsTheDialogForward()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        RunList1* dialog = go("L", 0);
        tickFor(0.6);
        QCOMPARE(run().RunPos, 1);
        QTest::mouseClick(m_main->listsPanel()->RunListBtn(), Qt::LeftButton);
        QVERIFY(!g.RunListRunning);
        QCOMPARE(run().RunPos, 0);
        QCOMPARE(m_main->listsPanel()->runDialog(), dialog);
        QVERIFY(dialog->isVisible());
    }
    void goDuringARunCarriesOnWithTheNewList()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\n"
              "M[#@!] [#@!] \r\nM[#@!]x[#@!]https://x/\r\nM[#@!]y[#@!]https://y/\r\n");
        RunList1* dialog = go("L", 0);
        QCOMPARE(tickFor(0.6), QStringList{"https://a/"});
        dialog->CMBLIST()->setCurrentIndex(1);
        QTest::mouseClick(dialog->GoBtn(), Qt::LeftButton);
        QCOMPARE(tickFor(31.2), QStringList{"https://y/"}); // the new list, from the position reached
    }
    void oneWindowRunGoesOnInTheWindowUsedLast()
    {
        start("L[#@!] [#@!] \r\nL[#@!]a[#@!]https://a/\r\nL[#@!]b[#@!]https://b/\r\nM[#@!] [#@!] \r\n");
        g.CurrentUrl = "https://one/";
        m_main->NewBtnAction(true);
        g.CurrentUrl = "https://two/";
        m_main->NewBtnAction(true);
        QTest::mouseClick(m_main->surf()->Button(0), Qt::LeftButton); // window 1 is current
        go("L", 0, false);
        QCOMPARE(g.NextRunItem, 1);
        tickFor(0.6);
        tickFor(31.2);
        QCOMPARE(m_created[0]->navigations, (QStringList{"https://one/", "https://a/", "https://b/"}));
        QCOMPARE(m_created.size(), 2);
    }
    void runOfMoreThan251PagesRunsTheFirst251AndSaysSo()
    {
        start();
        lists()->AddListNode("Long");
        for (int i = 0; i < 260; ++i)
            addPage("Long", QString("https://p%1/").arg(i), "t");
        QVERIFY(m_main->BuildRunList("LONG"));
        QCOMPARE(run().RunCount(), 251);
        QCOMPARE(run().pages().last(), QStringLiteral("https://p250/"));
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error - 9 - Subscript out of range"});
        DialogService::clearShown();
        QCOMPARE(lists()->BuildRunList("LONG", nullptr).size(), 251);
    }
    void startUpListOpensItsPagesEachInAWindowOnce()
    {
        QVERIFY(writeAll(m_app->file("Options.INI"),
                         " 7100  250  8100  4700  1  1 \r\n 0  0  1  0  1 \r\na\r\nb\r\n"));
        start("A[#@!] [#@!] \r\nB[#@!] [#@!] \r\nB[#@!]b1[#@!]https://b1/\r\nB[#@!]b2[#@!]https://b2/\r\n");
        QCOMPARE(m_main->CMBLIST()->currentText(), QStringLiteral("B"));
        QVERIFY(g.RunListRunning);
        QVERIFY(g.RunListMulti);
        QVERIFY(!g.RunListLoop);
        QCOMPARE(g.RunListName, QStringLiteral("B"));
        QCOMPARE(tickFor(0.6), QStringList{"https://b1/"});
        QCOMPARE(tickFor(31.2 + 90), QStringList{"https://b2/"}); // the default interval stays 30 s
        QCOMPARE(m_created.size(), 2);
    }
    void noStartUpListChosenRunsNothingAndStaysUnchosen()
    {
        QVERIFY(writeAll(m_app->file("Options.INI"),
                         " 7100  250  8100  4700  1 -1 \r\n 0  0  1  0  1 \r\na\r\nb\r\n"));
        start("A[#@!] [#@!] \r\nA[#@!]a1[#@!]https://a1/\r\nB[#@!] [#@!] \r\n");
        QCOMPARE(m_main->CMBLIST()->count(), 2);
        QCOMPARE(m_main->CMBLIST()->currentIndex(), -1);
        QVERIFY(!g.RunListRunning);
        QCOMPARE(tickFor(5), QStringList{});
        QVERIFY(m_created.isEmpty());
        // Apply keeps "no list"; so do saving the lists and a new start.
        QTest::mouseClick(m_main->optionsPanel()->findChild<QPushButton*>("WinOptnBtn"), Qt::LeftButton);
        QCOMPARE(g.StartListIndex, -1);
        QVERIFY(readAll(m_app->file("Options.INI")).split('\r').first().simplified().endsWith(" 1 -1"));
        lists()->SaveListBtn_Click();
        QCOMPARE(m_main->CMBLIST()->currentIndex(), -1);
        // A list that the user chooses is kept and runs.
        m_main->CMBLIST()->setCurrentIndex(0);
        QTest::mouseClick(m_main->optionsPanel()->findChild<QPushButton*>("WinOptnBtn"), Qt::LeftButton);
        QCOMPARE(g.StartListIndex, 0);
    }
    void startUpListIndexBeyondTheListsIsReported()
    {
        QVERIFY(writeAll(m_app->file("Options.INI"),
                         " 7100  250  8100  4700  1  5 \r\n 0  0  0  0  1 \r\na\r\nb\r\n"));
        QVERIFY(writeAll(m_app->file("Colors.INI"), testData("Colors.default.INI")));
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"), "A[#@!] [#@!] \r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        QCOMPARE(DialogService::shownTexts(), QStringList{"Error - 380 - Invalid property value"});
    }
    void closingTheRunDialogEndsTheRunSoTheNextGoStartsAtTheFirstPage()
    {
        start("A[#@!] [#@!] \r\nA[#@!]a1[#@!]https://a1/\r\nA[#@!]a2[#@!]https://a2/\r\n"
              "A[#@!]a3[#@!]https://a3/\r\nB[#@!] [#@!] \r\n");
        RunList1* dialog = go("A", 0);
        QCOMPARE(tickFor(0.6), QStringList{"https://a1/"});
        dialog->close();
        QCOMPARE(run().RunPos, 0);
        QCOMPARE(run().RunStart, 0.0);
        QVERIFY(!g.RunListRunning);
        QCOMPARE(tickFor(60), QStringList{});
        // A new Go starts again at the first page, at once.
        go("A", 0);
        QCOMPARE(tickFor(0.6), QStringList{"https://a1/"});
    }
    void keptPagesAreBroughtForwardInsteadOfLoadedAgain()
    {
        runKeepingPages("A[#@!] [#@!] \r\nA[#@!]a1[#@!]https://a1/\r\nA[#@!]a2[#@!]https://a2/\r\n"
                        "A[#@!]a3[#@!]https://a3/\r\nB[#@!] [#@!] \r\n",
                        "A");
        RunList1* dialog = m_main->listsPanel()->runDialog();
        QCOMPARE(dialog->CHKKEEP()->text(), QStringLiteral("Keep Pages Loaded"));
        QCOMPARE(dialog->CHKKEEP()->toolTip(),
                 QStringLiteral("Switch between the open windows instead of loading each page again"));
        // The first round gives each page its window; the rounds after it load nothing.
        QCOMPARE(tickFor(600), (QStringList{"https://a1/", "https://a2/", "https://a3/"}));
        QCOMPARE(m_created.size(), 3);
        const QStringList forward = broughtForward();
        QVERIFY(forward.size() >= 9);
        for (int i = 0; i < forward.size(); ++i)
            QCOMPARE(forward[i], QString::number(i % 3 + 1)); // windows 1, 2, 3, 1, 2, 3 ...
        // Each brought forward as a click on its row: shown, the others hidden.
        const int current = g.WindowIndex;
        for (int slot = 1; slot <= 3; ++slot)
            QCOMPARE(m_created[slot - 1]->isVisible(), slot == current);
        // A window that went elsewhere gets its page loaded again, as a run loads any page.
        g.WindowUrl[1] = "https://elsewhere/";
        QCOMPARE(tickFor(200), QStringList{"https://a1/"});
        QCOMPARE(m_created.size(), 4);
    }
    void keptPagesAreReloadedWhenTheSettingSays()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kKeptReloadMinutes, 1));
        runKeepingPages("A[#@!] [#@!] \r\nA[#@!]a1[#@!]https://a1/\r\nA[#@!]a2[#@!]https://a2/\r\n", "A");
        // Every visit comes a minute or more after the page's last load: each loads it again, in
        // its own window.
        const QStringList loads = tickFor(400);
        QVERIFY(loads.size() > 4);
        QCOMPARE(m_created.size(), 2);
        for (const QString& url : m_created[0]->navigations)
            QCOMPARE(url, QStringLiteral("https://a1/"));
        for (const QString& url : m_created[1]->navigations)
            QCOMPARE(url, QStringLiteral("https://a2/"));
    }
    void withoutKeepPagesALoopOpensEveryPageAgain()
    {
        start("A[#@!] [#@!] \r\nA[#@!]a1[#@!]https://a1/\r\nA[#@!]a2[#@!]https://a2/\r\n");
        go("A", 0, true, true);
        QVERIFY(tickFor(400).size() > 4);
        QVERIFY(m_created.size() > 2); // each page opened again in a window of its own
        QVERIFY(broughtForward().isEmpty());
    }
    void closingTheProgramClosesTheRunDialog()
    {
        start("L[#@!] [#@!] \r\nM[#@!] [#@!] \r\n");
        RunList1* dialog = openDialog();
        m_main->Form_Unload();
        QVERIFY(!dialog->isVisible());
        QVERIFY(!g.RunListShown);
    }
};

VANTREL_GUI_TEST_MAIN(TestLists)
#include "tst_lists.moc"
