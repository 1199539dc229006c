#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/ButtonFile.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/FileName.h"
#include "core/Globals.h"
#include "core/TextFile.h"
#include "favorites/FavoritesTree.h"
#include "favorites/QuickButtons.h"
#include "favorites/ShellServices.h"
#include "widgets/ControlDrag.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QDesktopServices>
#include <QDir>
#include <QMimeData>
#include <QTabWidget>
#include <QTest>

#include <memory>
#include <sys/stat.h>

// The Favorites tab on real temporary folders: the tree, its editing, the quick buttons.
class TestFavorites : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;
    QTemporaryDir m_dataHome;

    QString fav(const QString& relative) const { return m_app->favorites() + "/" + relative; }
    void shortcut(const QString& relative, const QString& url)
    {
        QDir().mkpath(QFileInfo(fav(relative)).absolutePath());
        QVERIFY(writeAll(fav(relative), ("[InternetShortcut]\r\nURL=" + url + "\r\n").toUtf8()));
    }
    void start()
    {
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(1);
        DialogService::clearShown();
    }
    KeyedTree* tree() { return m_main->SSTree1(); }
    FavoritesTree* favorites() { return m_main->favorites(); }
    QuickButtons* buttons() { return m_main->quickButtons(); }
    QStringList keys() { return treeKeys(tree()); }
    QPoint pointOf(const QString& key) { return treePointOf(tree(), key); }
    QPoint emptySpace() { return QPoint(5, tree()->viewport()->height() - 3); }
    void dropControl(const QString& tag, const QPoint& pos)
    {
        std::unique_ptr<QMimeData> data(ControlDrag::makeData(tag));
        deliverDrop(tree()->viewport(), data.get(), pos);
    }
    void dropText(const QString& text, const QPoint& pos)
    {
        QMimeData data;
        data.setText(text);
        deliverDrop(tree()->viewport(), &data, pos);
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        QDir().mkpath(m_app->favorites());
        m_created.clear();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        ControlDrag::setTestHook(nullptr);
        Clock::setInstance(nullptr);
    }

    void folderWithoutSubfoldersGivesRootShortcutsInOrder()
    {
        shortcut("b.url", "https://b/");
        shortcut("A.url", "https://a/");
        shortcut("c.URL", "https://c/");
        start();
        QCOMPARE(keys(), (QStringList{"A", "b", "c"}));
        QCOMPARE(tree()->node("c")->image(), int(KeyedTree::Page));
        QVERIFY(!tree()->node("A")->parent());
    }
    void rootShortcutHasItsNameAsKeyTextAndPathAsTag()
    {
        shortcut("a.url", "https://a/");
        start();
        KeyedNode* a = tree()->node("a");
        QVERIFY(a);
        QCOMPARE(a->nodeText(), QStringLiteral("a"));
        QCOMPARE(a->tag(), fav("a.url"));
    }
    void nestedFoldersSitUnderTheirParentsFoldersBeforeShortcuts()
    {
        shortcut("Links/Deep/Deeper/page.url", "https://deep/");
        shortcut("Links/news.url", "https://news/");
        shortcut("Another/x.url", "https://x/");
        shortcut("top.url", "https://top/");
        start();
        QCOMPARE(keys(), (QStringList{"Another", "Links", "Links/Deep", "Links/Deep/Deeper", "Another/x",
                                      "Links/news", "Links/Deep/Deeper/page", "top"}));
        QCOMPARE(tree()->node("Links/Deep/Deeper")->parentNode(), tree()->node("Links/Deep"));
        QCOMPARE(tree()->node("Links/Deep/Deeper/page")->parentNode(), tree()->node("Links/Deep/Deeper"));
        QCOMPARE(tree()->node("Links")->tag(), fav("Links"));
        QCOMPARE(tree()->node("Links/news")->tag(), fav("Links/news.url"));
        QCOMPARE(tree()->node("Links")->image(), int(KeyedTree::ClosedFolder));
    }
    void oddNamesBuildWhatCanBeRead()
    {
        shortcut(QString::fromUtf8("Ünï cödé/Страница.url"), "https://u/");
        shortcut("Same.url", "https://one/");
        shortcut("same.url", "https://two/");
        QVERIFY(QDir().mkpath(fav("folder.url")));
        QVERIFY(writeAll(fav("empty.url"), ""));
        QVERIFY(writeAll(fav("binary.url"), QByteArray("\x00\xff\xfe garbage", 12)));
        QVERIFY(writeAll(fav("other.url"), "[DEFAULT]\r\nURL=https://wrong/\r\n"));
        QVERIFY(QFile::link(m_app->favorites(), fav(QString::fromUtf8("Ünï cödé/loop"))));
        start();
        QVERIFY(tree()->node(QString::fromUtf8("Ünï cödé/Страница")));
        QVERIFY(tree()->node("Same"));
        QVERIFY(tree()->node("same"));
        QVERIFY(tree()->node("folder.url")->isFolder());
        favorites()->nodeClicked(tree()->node("other"));
        QCOMPARE(g.CurrentUrl, QString());
        favorites()->nodeClicked(tree()->node("binary"));
        QCOMPARE(g.CurrentUrl, QString());
    }
    void favoritesFolderOfAnotherNameLosesItsFoldersAsItAlwaysHas()
    {
        start();
        QTemporaryDir other;
        const QString root = other.filePath("Bookmarks");
        QVERIFY(QDir().mkpath(root + "/Links"));
        QVERIFY(writeAll(root + "/Links/in.url", "[InternetShortcut]\r\nURL=https://in/\r\n"));
        QVERIFY(writeAll(root + "/top.url", "[InternetShortcut]\r\nURL=https://top/\r\n"));
        g.FavoritesPath = root;
        favorites()->RefreshBtn_Click();
        // Without "/Favorites/" in the path the folder's key is its path less ten characters, whose
        // parent does not exist: the folder and its shortcuts are skipped; the top stays.
        QCOMPARE(keys(), QStringList{"top"});
    }
    void clickingAFolderChangesNothingAndAShortcutMakesItCurrent()
    {
        shortcut("Links/news.url", "https://news.example/");
        start();
        g.CurrentUrl = "unchanged";
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("Links"));
        QCOMPARE(g.CurrentUrl, QStringLiteral("unchanged"));
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("Links/news"));
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://news.example/"));
        QCOMPARE(g.CurrentTitle, QStringLiteral("Links/news.url"));
        QCOMPARE(g.FavFolderSel, fav("Links/news.url"));
        QCOMPARE(tree()->toolTip(), QStringLiteral("Links/news.url"));
        QCOMPARE(favorites()->shortcutSelected(), 1);
    }
    void doubleClickOpensTheFavourite()
    {
        shortcut("news.url", "https://news.example/");
        start();
        // A double click on an item view is the second click of a pair.
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("news"));
        QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, {}, pointOf("news"));
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://news.example/"});
        QCOMPARE(g.CurrentTitle, QStringLiteral("news.url"));
    }
    void historyEntryDroppedOnEmptySpaceAsksAndNoWritesNothing()
    {
        shortcut("Links/news.url", "https://news/");
        start();
        g.CurrentUrl = "https://history.example/";
        g.CurrentTitle = "History Page";
        DialogService::setNextAnswer(DialogService::Answer::No);
        dropControl("SSTree3", emptySpace());
        QCOMPARE(DialogService::shownTexts(), QStringList{"Do you want to add History Page to Favorites? "});
        QVERIFY(!QFile::exists(fav("History Page.URL")));
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        dropControl("SSTree3", emptySpace());
        QVERIFY(readAll(fav("History Page.URL")).contains("URL=https://history.example/"));
        KeyedNode* added = tree()->node("History Page");
        QVERIFY(added);
        QCOMPARE(added->tag(), fav("History Page.URL"));
        QCOMPARE(tree()->nodes().last(), added); // added at the end, not in name order
    }
    void pageDroppedOnAFolderGoesIntoItWithoutAQuestion()
    {
        shortcut("Links/news.url", "https://news/");
        start();
        g.CurrentUrl = "https://row.example/";
        g.CurrentTitle = "Row Page";
        dropControl("AddBtn", pointOf("Links"));
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(QFile::exists(fav("Links/Row Page.URL")));
        QCOMPARE(tree()->node("Links/Row Page")->parentNode(), tree()->node("Links"));
        QCOMPARE(tree()->dropHighlight(), tree()->node("Links"));
        dropControl("AddBtn", pointOf("Links/news"));
        QCOMPARE(QDir(fav("Links")).entryList(QDir::Files).size(), 2); // nothing added on a shortcut
    }
    void rowsFavoritesButtonFromTheKeyboardAddsThePageToTheChosenFolder()
    {
        shortcut("Links/news.url", "https://news/");
        start();
        g.CurrentUrl = "https://open/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://keys.example/", "Keyed Page");
        m_main->surf()->rows()->showCompleted(1, "https://keys.example/", "Keyed Page");
        bool dragged = false;
        ControlDrag::setTestHook([&](QWidget*, const QMimeData&) { dragged = true; });
        // A favourite chosen in the tree: the page goes beside it, into its folder, unasked.
        tree()->setCurrentItem(tree()->node("Links/news"));
        m_main->TabStrip1()->setCurrentIndex(0);
        QTest::keyClick(m_main->surf()->AddFavBtn(0), Qt::Key_Space);
        QVERIFY(!dragged);
        QVERIFY(DialogService::shownTexts().isEmpty());
        QVERIFY(QFile::exists(fav("Links/Keyed Page.URL")));
        QCOMPARE(m_main->TabStrip1()->currentIndex(), 1);
        QVERIFY(!m_main->surf()->AddFavBtn(0)->isDown());
        // Nothing chosen: the top of Favorites, asked first as a drop beside the folders is.
        tree()->setCurrentItem(nullptr);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::keyClick(m_main->surf()->AddFavBtn(0), Qt::Key_Space);
        QCOMPARE(DialogService::shownTexts(), QStringList{"Do you want to add Keyed Page to Favorites? "});
        QVERIFY(QFile::exists(fav("Keyed Page.URL")));
        ControlDrag::setTestHook(nullptr);
    }
    void dropsFromOtherControlsAreIgnored()
    {
        start();
        g.CurrentTitle = "x";
        dropControl("SSTree2", emptySpace());
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(tree()->nodeCount(), 0);
    }
    void pageWhoseTitleMakesNoFileNameAddsNothingAndSaysNothing()
    {
        shortcut("Links/n.url", "https://n/");
        start();
        g.CurrentUrl = "https://bad.example/";
        g.CurrentTitle = "/leading slash";
        dropControl("AddBtn", pointOf("Links"));
        QVERIFY(DialogService::shownTexts().isEmpty());
        QCOMPARE(tree()->nodeCount(), 2);
    }
    void textFromAnotherProgramIsTakenOnlyWhenItIsAWebAddress()
    {
        shortcut("Links/n.url", "https://n/");
        start();
        g.CurrentUrl = "https://open.example/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://open.example/", "Open Page");
        dropText("ftp://x", pointOf("Links"));
        QCOMPARE(tree()->nodeCount(), 2);
        dropText("  http://leading.example", pointOf("Links")); // the first four characters decide
        QCOMPARE(tree()->nodeCount(), 2);
        dropText("HTTP://x  ", pointOf("Links"));
        QCOMPARE(g.CurrentUrl, QStringLiteral("HTTP://x"));
        QVERIFY(readAll(fav("Links/Open Page.URL")).contains("URL=HTTP://x\r\n"));
        QVERIFY(tree()->node("Links/Open Page"));
    }
    void linkDroppedWithNoWindowOpenIsNamedByItsTitleOrItsHost()
    {
        shortcut("Links/n.url", "https://n/");
        start();
        QMimeData firefox;
        const QString moz = QStringLiteral("http://127.0.0.1:876/second\nThe Second Page");
        firefox.setUrls({QUrl("http://127.0.0.1:876/second")});
        firefox.setData("text/x-moz-url", QByteArray(reinterpret_cast<const char*>(moz.utf16()), moz.size() * 2));
        QVERIFY(deliverDrop(tree()->viewport(), &firefox, pointOf("Links")));
        QVERIFY(readAll(fav("Links/The Second Page.URL")).contains("URL=http://127.0.0.1:876/second\r\n"));
        // A bare address is named after its host, not turned into a file name of its own.
        dropText("https://www.example.org/some/page?x=1", pointOf("Links"));
        QVERIFY(readAll(fav("Links/www.example.URL")).contains("URL=https://www.example.org/some/page?x=1\r\n"));
        QVERIFY(!QFile::exists(fav("Links/http.127.0.0.1-876.second.URL")));
    }
    void mouseDownTakesTheFirstFavouriteOfThatName()
    {
        shortcut("A/same.url", "https://first/");
        shortcut("B/same.url", "https://second/");
        start();
        QTest::mouseClick(buttons()->DistFavBtn(), Qt::LeftButton);
        QVERIFY(buttons()->DistFavBtn()->value());
        QVERIFY(tree()->toolTip() != QStringLiteral("A/same.url"));
        favorites()->mousePressed(pointOf("B/same"));
        QVERIFY(favorites()->mouseDownFlag());
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://first/"));
        QCOMPARE(tree()->toolTip(), QStringLiteral("A/same.url")); // as a click would
    }
    void theWalkAndTheNodesAreTwoSteps()
    {
        shortcut("Links/news.url", "https://news/");
        shortcut("top.url", "https://top/");
        start();
        tree()->clearNodes();
        favorites()->SetUpHoldArray();
        QCOMPARE(tree()->nodeCount(), 0); // walking adds no node
        favorites()->AddFavoriteNodes();
        QCOMPARE(keys(), (QStringList{"Links", "Links/news", "top"}));
    }
    void dragStartsOnlyAfterTheHoldAndOnlyInDistributeMode()
    {
        shortcut("page.url", "https://p/");
        start();
        ManualClock clock(QDateTime(QDate(2026, 1, 1), QTime(12, 0)));
        Clock::setInstance(&clock);
        QStringList drags;
        ControlDrag::setTestHook([&](QWidget* source, const QMimeData& data) {
            drags << source->objectName() + ":" + ControlDrag::sourceTag(&data);
        });
        // Distribute mode off: nothing is recorded, no drag.
        favorites()->mousePressed(pointOf("page"));
        QVERIFY(!favorites()->mouseDownFlag());
        clock.advanceSeconds(1);
        favorites()->mouseMoved(pointOf("page"));
        QVERIFY(drags.isEmpty());
        // On: a move within 0.2 s starts nothing, a later one drags.
        QTest::mouseClick(buttons()->DistFavBtn(), Qt::LeftButton);
        favorites()->mousePressed(pointOf("page"));
        clock.advanceSeconds(0.1);
        favorites()->mouseMoved(pointOf("page"));
        QVERIFY(drags.isEmpty());
        clock.advanceSeconds(0.15);
        favorites()->mouseMoved(pointOf("page"));
        QCOMPARE(drags, QStringList{"SSTree1:SSTree1"});
        // Releasing the mouse ends it.
        favorites()->mousePressed(pointOf("page"));
        favorites()->mouseReleased();
        QVERIFY(!favorites()->mouseDownFlag());
    }
    void favouriteDraggedToButton31FillsTheLastButton()
    {
        shortcut("Links/news.url", "https://news.example/");
        start();
        QTest::mouseClick(buttons()->DistFavBtn(), Qt::LeftButton);
        ControlDrag::setTestHook([&](QWidget*, const QMimeData&) {
            // The user lets go over the last quick button.
            emit buttons()->FavBtn(31)->controlDropped("SSTree1");
        });
        ManualClock clock(QDateTime(QDate(2026, 1, 1), QTime(12, 0)));
        Clock::setInstance(&clock);
        favorites()->mousePressed(pointOf("Links/news"));
        clock.advanceSeconds(0.5);
        favorites()->mouseMoved(pointOf("Links/news"));
        GradientButton* last = buttons()->FavBtn(31);
        QCOMPARE(last->tag(), QStringLiteral("https://news.example/"));
        QCOMPARE(last->toolTip(), QStringLiteral("Links/news.url"));
        QCOMPARE(last->text(), QStringLiteral("news"));
        QVERIFY(!last->icon().isNull());
        QCOMPARE(g.BtnUrl[31], QStringLiteral("https://news.example/"));
        QCOMPARE(g.BtnTitle[31], QStringLiteral("Links/news.url"));
        QVERIFY(g.ButtonsChanged);
        QVERIFY(!favorites()->mouseDownFlag());
        QVERIFY(!m_main->findChild<QWidget*>("FavBtn_32"));
    }
    void dropsNotFromTheTreeAreIgnoredByTheButtons()
    {
        start();
        g.CurrentUrl = "https://row/";
        emit buttons()->FavBtn(3)->controlDropped("AddBtn");
        QCOMPARE(buttons()->FavBtn(3)->tag(), QString());
        QVERIFY(!g.ButtonsChanged);
    }
    void clickingAFreeButtonDoesNothingAndAnAssignedOneOpensItsPage()
    {
        shortcut("news.url", "https://news.example/");
        QVERIFY(writeAll(m_app->file("DefaultBtns.BLS"), "2[^^]news.url[||]https://old.example/\r\n"));
        LoadButtonFile(m_app->file("DefaultBtns.BLS"));
        start();
        QTest::mouseClick(buttons()->FavBtn(0), Qt::LeftButton);
        QVERIFY(m_created.isEmpty());
        QTest::mouseClick(buttons()->FavBtn(2), Qt::LeftButton);
        QCOMPARE(m_created.size(), 1);
        QCOMPARE(m_created[0]->navigations, QStringList{"https://news.example/"});
    }
    void editedShortcutShowsItsNewAddressAtTheNextStart()
    {
        shortcut("Links/news.url", "https://old.example/");
        QVERIFY(writeAll(m_app->file("DefaultBtns.BLS"), "5[^^]Links\\news.url[||]https://old.example/\r\n"));
        shortcut("Links/news.url", "https://new.example/");
        LoadButtonFile(m_app->file("DefaultBtns.BLS"));
        start();
        QCOMPARE(buttons()->FavBtn(5)->tag(), QStringLiteral("https://new.example/"));
        QCOMPARE(g.BtnUrl[5], QStringLiteral("https://new.example/"));
        QCOMPARE(buttons()->FavBtn(5)->text(), QStringLiteral("news"));
    }
    void buttonWhoseShortcutIsGoneShowsItsNameButOpensNothing()
    {
        QVERIFY(writeAll(m_app->file("DefaultBtns.BLS"), "1[^^]gone.url[||]https://gone.example/\r\n"));
        LoadButtonFile(m_app->file("DefaultBtns.BLS"));
        start();
        QCOMPARE(buttons()->FavBtn(1)->text(), QStringLiteral("gone"));
        QTest::mouseClick(buttons()->FavBtn(1), Qt::LeftButton);
        QVERIFY(m_created.isEmpty());
    }
    void saveWritesTheButtonFileAndTheQuestionAtCloseSavesToo()
    {
        shortcut("news.url", "https://news.example/");
        start();
        g.CurrentUrl = "https://news.example/";
        g.CurrentTitle = "news.url";
        g.FavFolderSel = fav("news.url");
        buttons()->AssignPageToButton(0);
        QTest::mouseClick(m_main->SaveBtn(), Qt::LeftButton);
        QCOMPARE(readAll(m_app->file("DefaultBtns.BLS")),
                 QByteArray("0[^^]news.url[||]https://news.example/\r\n"));
        buttons()->AssignPageToButton(7);
        g.ButtonsChanged = true;
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        m_main->Form_Unload();
        QVERIFY(readAll(m_app->file("DefaultBtns.BLS")).contains("7[^^]news.url"));
    }
    void distributeButtonShowsTheHintOfItsTab()
    {
        start();
        GradientButton* d = buttons()->DistFavBtn();
        QCOMPARE(d->text(), QStringLiteral("Click on Favorite Link to go to Web Site"));
        QTest::mouseClick(d, Qt::LeftButton);
        QCOMPARE(d->text(), QStringLiteral("Distribute Favorites to Buttons or Lists"));
        QVERIFY(!buttons()->HistoryToFavorites);
        QTest::mouseClick(d, Qt::LeftButton);
        m_main->TabStrip1()->setCurrentIndex(3);
        QTest::mouseClick(d, Qt::LeftButton);
        QCOMPARE(d->text(), QStringLiteral("Add Browsing History to Favorites"));
        QVERIFY(buttons()->HistoryToFavorites);
        QTest::mouseClick(d, Qt::LeftButton);
        QCOMPARE(d->text(), QStringLiteral("Click on Favorite Link to go to Web Site"));
        QVERIFY(!buttons()->HistoryToFavorites);
        m_main->TabStrip1()->setCurrentIndex(2);
        QTest::mouseClick(d, Qt::LeftButton);
        QCOMPARE(d->text(), QStringLiteral("Distribute Favorites to Buttons or Lists"));
    }
    void deleteAsksAndSendsTheFavouriteToTheTrash()
    {
        qputenv("XDG_DATA_HOME", m_dataHome.path().toUtf8());
        shortcut("Links/news.url", "https://news/");
        start();
        KeyedNode* node = tree()->node("Links/news");
        DialogService::setNextAnswer(DialogService::Answer::No);
        favorites()->deleteRequested(node);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"Do you want to Delete " + fav("Links/news.url") + " from your Favorites?"});
        QVERIFY(tree()->node("Links/news"));
        QVERIFY(QFile::exists(fav("Links/news.url")));
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        tree()->setCurrentItem(tree()->node("Links/news"));
        QTest::keyClick(tree(), Qt::Key_Delete);
        QVERIFY(!tree()->node("Links/news"));
        QVERIFY(!QFile::exists(fav("Links/news.url")));
        QVERIFY(!QDir(m_dataHome.filePath("Trash/files")).entryList(QDir::Files).isEmpty());
        qunsetenv("XDG_DATA_HOME");
    }
    void organizeOpensTheFavoritesFolderInTheFileManager()
    {
        start();
        UrlRecorder recorder;
        QDesktopServices::setUrlHandler("file", &recorder, "open");
        QTest::mouseClick(m_main->OrgFavBtn(), Qt::LeftButton);
        QDesktopServices::unsetUrlHandler("file");
        QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(m_app->favorites())});
    }
    void organizeSaysSoWhenNoFileManagerCanOpenTheFolder()
    {
        start();
        QStringList asked;
        ShellServices::setFolderOpener([&](const QString& path) {
            asked << path;
            return false;
        });
        QTest::mouseClick(m_main->OrgFavBtn(), Qt::LeftButton);
        ShellServices::setFolderOpener(nullptr);
        QCOMPARE(asked, QStringList{m_app->favorites()});
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"No file manager could be started to organize your Favorites folder. Open it yourself: " +
                             m_app->favorites()});
        QCOMPARE(DialogService::shownTitles(), QStringList{g.AppTitle});
    }
    void missingFavoritesFolderLeavesTheTreeEmptyAndSaysNothing()
    {
        start();
        g.FavoritesPath.clear();
        QTest::mouseClick(m_main->RefreshBtn(), Qt::LeftButton);
        QCOMPARE(tree()->nodeCount(), 0);
        g.FavoritesPath = m_app->home() + "/NoSuchFolder";
        QTest::mouseClick(m_main->RefreshBtn(), Qt::LeftButton);
        QCOMPARE(tree()->nodeCount(), 0);
        QVERIFY(DialogService::shownTexts().isEmpty());
    }
    void buildingChangesNoFile()
    {
        shortcut("Links/news.url", "https://news/");
        QVERIFY(writeAll(fav("odd.url"), "\xff\xfe binary"));
        const QByteArray before = readAll(fav("Links/news.url")) + readAll(fav("odd.url"));
        const QDateTime modified = QFileInfo(fav("odd.url")).lastModified();
        start();
        QTest::mouseClick(m_main->RefreshBtn(), Qt::LeftButton);
        QCOMPARE(readAll(fav("Links/news.url")) + readAll(fav("odd.url")), before);
        QCOMPARE(QFileInfo(fav("odd.url")).lastModified(), modified);
    }
    void refreshShowsWhatChangedOnDisk()
    {
        shortcut("one.url", "https://1/");
        start();
        shortcut("two.url", "https://2/");
        QCOMPARE(keys(), QStringList{"one"});
        QTest::mouseClick(m_main->RefreshBtn(), Qt::LeftButton);
        QCOMPARE(keys(), (QStringList{"one", "two"}));
    }
    void namesThatAreNotUtf8AreListedOpenedDeletedAndTakeDrops()
    {
        qputenv("XDG_DATA_HOME", m_dataHome.path().toUtf8());
        // Names as bytes, past any conversion of the test's own helpers.
        auto write = [](const QByteArray& path, const QByteArray& bytes) {
            return TextFile::writeAtomically(FileName::decode(path), bytes).ok();
        };
        auto read = [](const QByteArray& path) { return TextFile::readBytes(FileName::decode(path)).bytes; };
        auto exists = [](const QByteArray& path) {
            struct stat st
            {
            };
            return ::lstat(path.constData(), &st) == 0;
        };
        // A folder and a shortcut named in an old single-byte code page, as copied from an old disk.
        const QByteArray root = QFile::encodeName(m_app->favorites());
        QCOMPARE(::mkdir((root + "/Old\xE9").constData(), 0755), 0);
        QVERIFY(write(root + "/Old\xE9/Caf\xE9.url", "[InternetShortcut]\r\nURL=https://cafe/\r\n"));
        QVERIFY(write(root + "/R\xF6ot.url", "[InternetShortcut]\r\nURL=https://root/\r\n"));
        start();
        const QString folder = FileName::decode("Old\xE9");
        const QString inFolder = folder + '/' + FileName::decode("Caf\xE9");
        QCOMPARE(keys(), (QStringList{folder, inFolder, FileName::decode("R\xF6ot")}));
        QCOMPARE(tree()->node(folder)->nodeText().at(3), QChar(0xDCE9)); // painted as a replacement

        // It opens: a click makes its address current.
        tree()->setCurrentItem(tree()->node(inFolder));
        favorites()->nodeClicked(tree()->node(inFolder));
        QCOMPARE(g.CurrentUrl, QStringLiteral("https://cafe/"));

        // It takes drops: the new shortcut lies in the folder of that very name.
        g.CurrentUrl = "https://row.example/";
        g.CurrentTitle = "Dropped";
        dropControl("AddBtn", pointOf(folder));
        QVERIFY(read(root + "/Old\xE9/Dropped.URL").contains("URL=https://row.example/"));
        QVERIFY(tree()->node(folder + "/Dropped"));

        // It goes to the trash with its own name, and the trash knows where it came from.
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        favorites()->deleteRequested(tree()->node(inFolder));
        QVERIFY(!exists(root + "/Old\xE9/Caf\xE9.url"));
        const QByteArray trash = QFile::encodeName(m_dataHome.filePath("Trash"));
        QVERIFY(exists(trash + "/files/Caf\xE9.url"));
        const QByteArray info = read(trash + "/info/Caf\xE9.url.trashinfo");
        QVERIFY2(info.contains("Path=" + (root + "/Old\xE9/Caf\xE9.url").toPercentEncoding("/")), info.constData());
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        favorites()->deleteRequested(tree()->node(folder));
        QVERIFY(!exists(root + "/Old\xE9"));
        QVERIFY(exists(trash + "/files/Old\xE9/Dropped.URL"));
        qunsetenv("XDG_DATA_HOME");
    }
    void startUpRemovesWhatInterruptedSavesOfShortcutsLeft()
    {
        shortcut("Links/news.url", "https://news/");
        QVERIFY(interruptedSave(fav("Links/news.url"), QByteArray(50000, 'x')));
        QVERIFY(interruptedSave(fav("top.URL"), QByteArray(50000, 'x')));
        QVERIFY(interruptedSave(fav(QString(240, u'n') + ".URL"), QByteArray(50000, 'x'))); // a cut name
        QCOMPARE(hiddenFiles(fav("Links")).size(), 1);
        QCOMPARE(hiddenFiles(m_app->favorites()).size(), 2);
        // Hidden files of other programs stay, temporary or not.
        QVERIFY(writeAll(fav("Links/.notes.txt.1a.tmp"), "theirs"));
        QVERIFY(writeAll(fav(".directory"), "theirs"));
        start();
        QCOMPARE(hiddenFiles(fav("Links")), QStringList{".notes.txt.1a.tmp"});
        QCOMPARE(hiddenFiles(m_app->favorites()), QStringList{".directory"});
        QVERIFY(QFileInfo::exists(fav("Links/news.url")));
        // Only a start tidies: a refresh leaves a save that another program has under way alone.
        QVERIFY(interruptedSave(fav("Links/news.url"), QByteArray(50000, 'x')));
        QTest::mouseClick(m_main->RefreshBtn(), Qt::LeftButton);
        QCOMPARE(hiddenFiles(fav("Links")).size(), 2);
    }
    void rowDraggedOntoTheTreeBecomesAFavourite()
    {
        shortcut("Links/n.url", "https://n/");
        start();
        m_main->TabStrip1()->setCurrentIndex(0);
        g.CurrentUrl = "https://row.example/";
        m_main->NewBtnAction(true);
        m_created[0]->load("https://row.example/", "Row Title");
        ControlDrag::setTestHook([&](QWidget*, const QMimeData& data) {
            deliverDrop(tree()->viewport(), &data, pointOf("Links"));
        });
        QTest::mousePress(m_main->surf()->AddFavBtn(0), Qt::LeftButton);
        QCOMPARE(m_main->TabStrip1()->currentIndex(), 1);
        QVERIFY(readAll(fav("Links/Row Title.URL")).contains("URL=https://row.example/"));
        QVERIFY(!m_main->surf()->RowDragToFavorites);
    }
};

VANTREL_GUI_TEST_MAIN(TestFavorites)
#include "tst_favorites.moc"
