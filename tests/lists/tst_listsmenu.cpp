#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsMenu.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "surf/SurfPanel.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "widgets/KeyedTree.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include <memory>

// The lists tree's menu: lists made from files, lists written out, pages pasted and dropped in
// numbers.
class TestListsMenu : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    ListsTree* lists() { return m_main->listsPanel()->lists(); }
    ListsMenu* menu() { return m_main->listsPanel()->menu(); }
    KeyedTree* tree() { return m_main->listsPanel()->SSTree2(); }
    QStringList keys() { return treeKeys(tree()); }
    QString file(const QString& name) { return m_app->home() + u'/' + name; }

    void start(const QByteArray& listFile)
    {
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"), listFile));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(2);
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        DialogService::clearShown();
        g.ListsChanged = false;
    }
    // The menu as the user opens it on `key` (none: on empty space) with the mouse.
    void openMenuOn(const QString& key)
    {
        rightClickTree(tree(), key);
        QTRY_VERIFY(menu()->menu()->isVisible());
    }
    void choose(QAction* action)
    {
        QVERIFY(action->isEnabled());
        chooseFromMenu(menu()->menu(), action);
    }
    QStringList pagesOf(const QString& list)
    {
        QStringList urls;
        for (const KeyedNode* node : tree()->nodes())
            if (node->image() == KeyedTree::Page && node->listTag() == list)
                urls << node->tag();
        return urls;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        DialogService::reset();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        DialogService::reset();
    }

    void theMenuHasItsThreeEntries()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\n");
        openMenuOn("https://a.example//Work");
        QStringList texts;
        for (const QAction* action : menu()->menu()->actions())
            texts << action->text();
        QCOMPARE(texts, (QStringList{"Import List...", "Export List...", "", "Paste Pages", "", "Page Settings...",
                                     "Run in Other Windows...", "Stop Running in Other Windows", "",
                                     "Save Open Windows as a List", "Find Duplicates...", "Check Links..."}));
        // No window open: nothing to keep.
        QVERIFY(!menu()->saveOpenWindowsAction()->isEnabled());
        QCOMPARE(menu()->pasteAction()->shortcut(), QKeySequence(QKeySequence::Paste));
        QVERIFY(menu()->exportAction()->isEnabled());
        menu()->menu()->hide();
        // Beside the lists there is no list to export or to paste into.
        openMenuOn(QString());
        QVERIFY(menu()->importAction()->isEnabled());
        QVERIFY(!menu()->exportAction()->isEnabled());
        QVERIFY(!menu()->pasteAction()->isEnabled());
        menu()->menu()->hide();
    }
    void theOpenWindowsAreKeptAsANewListReadyToBeNamed()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\n");
        QVERIFY(m_main->verbs()->openPage("https://two.example/", "Two", OpenWhere::Slot, 2).ok());
        QVERIFY(m_main->verbs()->openPage("https://one.example/", "One", OpenWhere::Slot, 1).ok());
        m_created.at(0)->load("https://two.example/", "Two");
        m_created.at(1)->load("https://one.example/", "One");
        openMenuOn(QString());
        choose(menu()->saveOpenWindowsAction());
        const QStringList names = m_main->verbs()->lists()->names();
        QCOMPARE(names.size(), 2);
        const QString made = names.last();
        QVERIFY2(made.startsWith("Open Windows "), qPrintable(made));
        QCOMPARE(pagesOf(made), (QStringList{"https://one.example/", "https://two.example/"}));
        QCOMPARE(pagesOf("Work"), QStringList{"https://a.example/"});
        // Selected, with its label open for a name: typed and Enter, it is renamed.
        QCOMPARE(tree()->currentItem(), tree()->node(made));
        QTRY_VERIFY(tree()->findChild<QLineEdit*>());
        QLineEdit* editor = tree()->findChild<QLineEdit*>();
        editor->selectAll();
        QTest::keyClicks(editor, "Wall at noon");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(m_main->verbs()->lists()->names(), (QStringList{"Work", "Wall at noon"}));
        QVERIFY(g.ListsChanged);
    }
    void theSurfTabKeepsTheOpenWindowsAsAListToo()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(m_main->verbs()->openPage("https://one.example/", "One", OpenWhere::Slot, 1).ok());
        m_created.at(0)->load("https://one.example/", "One");
        m_main->TabStrip1()->setCurrentIndex(0);
        SurfPanel* surf = m_main->surf();
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), surf->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(surf, &event);
        QTRY_VERIFY(surf->menu()->isVisible());
        QVERIFY(surf->saveOpenWindowsAction()->isEnabled());
        chooseFromMenu(surf->menu(), surf->saveOpenWindowsAction());
        // The Lists tab comes to the front with the new list selected there.
        QCOMPARE(m_main->TabStrip1()->currentIndex(), 2);
        const QString made = m_main->verbs()->lists()->names().last();
        QCOMPARE(pagesOf(made), QStringList{"https://one.example/"});
        QCOMPARE(tree()->currentItem(), tree()->node(made));
    }
    void theMenuKeyOpensTheMenuForTheCurrentList()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\nHome[#@!] [#@!] \r\n");
        tree()->setFocus();
        tree()->setCurrentItem(tree()->node("Home"));
        QTest::keyClick(tree(), Qt::Key_F10, Qt::ShiftModifier);
        QTRY_VERIFY(menu()->menu()->isVisible());
        QVERIFY(menu()->exportAction()->isEnabled());
        DialogService::setNextFile(DialogService::FileChoice{file("home"), 1});
        choose(menu()->exportAction());
        QCOMPARE(DialogService::fileCaptions(), QStringList{"Export List"});
        QVERIFY(QFile::exists(file("home.txt"))); // the list of the current node, Home: empty
        QCOMPARE(readAll(file("home.txt")), QByteArray());
    }
    void aTextFileBecomesANewListNamedAfterIt()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(writeAll(file("Reading.txt"), "# my reading\n\nhttps://a.example/\r\n  https://b.example/x?y=1&z=2  \n"
                                             "not an address\nftp://files.example/\nhttps://a.example/\n"));
        openMenuOn(QString());
        DialogService::setNextFile(DialogService::FileChoice{file("Reading.txt"), 0});
        choose(menu()->importAction());
        QCOMPARE(DialogService::fileCaptions(), QStringList{"Import List"});
        QCOMPARE(pagesOf("Reading"),
                 (QStringList{"https://a.example/", "https://b.example/x?y=1&z=2", "ftp://files.example/"}));
        QVERIFY(g.ListsChanged);
        QCOMPARE(DialogService::shownTexts(), QStringList{"The list \"Reading\" was made with 3 pages."});
        // A second import of the same file makes a second list, numbered as New List names are.
        DialogService::clearShown();
        QCOMPARE(menu()->importListFile(file("Reading.txt")), QStringLiteral("Reading_2"));
        QCOMPARE(pagesOf("Reading_2").size(), 3);
        // Saved, the lists go into the list file as any list does.
        lists()->SaveListBtn_Click();
        QVERIFY(readAll(m_app->file("DefaultList.NLS")).contains("Reading_2[#@!]https://a.example/[#@!]https://a.example/"));
    }
    void anHtmlBookmarksFileBecomesAListWithItsTitles()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(writeAll(file("trip.html"),
                         "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n<DT><H3>Trip</H3>\n<DL><p>\n"
                         "<DT><A HREF=\"https://train.example/?a=1&amp;b=2\">Trains &amp; times</A>\n"
                         "<DT><A HREF=\"javascript:alert(1)\">Bookmarklet</A>\n<HR>\n"
                         "<DT><A HREF=\"https://hotel.example/\"></A>\n</DL><p>\n</DL><p>\n"));
        QCOMPARE(menu()->importListFile(file("trip.html")), QStringLiteral("trip"));
        QCOMPARE(pagesOf("trip"), (QStringList{"https://train.example/?a=1&b=2", "https://hotel.example/"}));
        QCOMPARE(tree()->node("https://train.example/?a=1&b=2/trip")->nodeText(), QStringLiteral("Trains & times"));
        // A page without a title is shown by its address.
        QCOMPARE(tree()->node("https://hotel.example//trip")->nodeText(), QStringLiteral("https://hotel.example/"));
    }
    void aListNameKeepsNothingTheListFileCannotHold()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(writeAll(file("Trips[#@!]2026\tsummer.txt"), "https://a.example/\n"));
        QCOMPARE(menu()->importListFile(file("Trips[#@!]2026\tsummer.txt")), QStringLiteral("Trips 2026 summer"));
        lists()->SaveListBtn_Click();
        QVERIFY(readAll(m_app->file("DefaultList.NLS")).contains("Trips 2026 summer[#@!]https://a.example/[#@!]https://a.example/\r\n"));
    }
    void aFileWithoutAddressesMakesNoList()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(writeAll(file("notes.txt"), "# nothing here\njust words\n"));
        const QStringList before = keys();
        QCOMPARE(menu()->importListFile(file("notes.txt")), QString());
        QCOMPARE(keys(), before);
        QVERIFY(!g.ListsChanged);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"No list was made from " + file("notes.txt") + ": it holds no web address."});
        DialogService::clearShown();
        QCOMPARE(menu()->importListFile(file("missing.txt")), QString());
        QCOMPARE(DialogService::shownTexts(), QStringList{"No list was made from " + file("missing.txt") + ": File not found."});
        DialogService::clearShown();
        QVERIFY(writeAll(file("empty.html"), ""));
        QCOMPARE(menu()->importListFile(file("empty.html")), QString());
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"No list was made from " + file("empty.html") +
                             ": The file is not a bookmarks file: it is empty."});
        QCOMPARE(keys(), before);
    }
    void aDamagedBookmarksFileGivesItsReadablePagesWhenAsked()
    {
        start("Work[#@!] [#@!] \r\n");
        QVERIFY(writeAll(file("cut.html"), "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n"
                                           "<DT><A HREF=\"https://a.example/\">A</A>\n<DT><A HREF=\"https://b"));
        DialogService::setNextAnswer(DialogService::Answer::No);
        QCOMPARE(menu()->importListFile(file("cut.html")), QString());
        QVERIFY(DialogService::shownTexts().constLast().startsWith(file("cut.html") + " is damaged: "));
        QVERIFY(!tree()->node("cut"));
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QCOMPARE(menu()->importListFile(file("cut.html")), QStringLiteral("cut"));
        QCOMPARE(pagesOf("cut"), QStringList{"https://a.example/"});
    }
    void aListIsExportedAsBookmarksOrAsText()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A & B[#@!]https://a.example/?x=1&y=2\r\n"
              "Work[#@!]C[#@!]https://c.example/\r\nHome[#@!] [#@!] \r\nHome[#@!]H[#@!]https://h.example/\r\n");
        openMenuOn("https://c.example//Work");
        DialogService::setNextFile(DialogService::FileChoice{file("work"), 0});
        choose(menu()->exportAction());
        const BookmarkRead read = NetscapeBookmarks::read(readAll(file("work.html")));
        QCOMPARE(read.problem, QString());
        QCOMPARE(read.root.children.size(), 1);
        QCOMPARE(read.root.children.at(0).title, QStringLiteral("Work"));
        QCOMPARE(read.root.children.at(0).children,
                 (QList<BookmarkNode>{BookmarkNode::link("A & B", "https://a.example/?x=1&y=2"),
                                      BookmarkNode::link("C", "https://c.example/")}));
        // The text form: one address a line, and read back as the same list.
        QVERIFY(menu()->exportListFile("Work", file("work.txt"), true));
        QCOMPARE(readAll(file("work.txt")), QByteArray("https://a.example/?x=1&y=2\nhttps://c.example/\n"));
        QCOMPARE(menu()->importListFile(file("work.txt")), QStringLiteral("work"));
        QCOMPARE(pagesOf("work"), pagesOf("Work"));
    }
    void anExportThatCannotBeWrittenSaysWhy()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\n");
        QDir().mkpath(file("locked"));
        ReadOnlyFolder locked(file("locked"));
        QVERIFY(!menu()->exportListFile("Work", file("locked/work.html"), false));
        QCOMPARE(DialogService::shownTexts(), QStringList{"The list could not be exported to " + file("locked/work.html") +
                                                          ": Permission denied."});
    }
    void ctrlVPastesTheClipboardsAddressesIntoTheCurrentList()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\nHome[#@!] [#@!] \r\n");
        QGuiApplication::clipboard()->setText("See https://a.example/ and https://b.example/page, then\n"
                                              "https://c.example/?q=1 and https://b.example/page again.");
        tree()->setFocus();
        tree()->setCurrentItem(tree()->node("https://a.example//Work"));
        QTest::keyClick(tree(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(pagesOf("Work"), (QStringList{"https://a.example/", "https://b.example/page", "https://c.example/?q=1"}));
        QVERIFY(g.ListsChanged);
        QCOMPARE(pagesOf("Home"), QStringList());
        // Each address is in a list once: pasting again adds nothing.
        g.ListsChanged = false;
        QTest::keyClick(tree(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(pagesOf("Work").size(), 3);
        QVERIFY(!g.ListsChanged);
        QCOMPARE(DialogService::shownTexts(), QStringList());
    }
    void pastePagesFromTheMenuGoesToTheListUnderThePointer()
    {
        start("Work[#@!] [#@!] \r\nHome[#@!] [#@!] \r\n");
        QGuiApplication::clipboard()->setText("https://h.example/");
        openMenuOn("Home");
        choose(menu()->pasteAction());
        QCOMPARE(pagesOf("Home"), QStringList{"https://h.example/"});
        QCOMPARE(pagesOf("Work"), QStringList());
        // A clipboard without a web address is said so.
        QGuiApplication::clipboard()->setText("javascript:alert(1) and no address");
        openMenuOn("Home");
        choose(menu()->pasteAction());
        QCOMPARE(DialogService::shownTexts(), QStringList{"The clipboard holds no web address to paste."});
        QCOMPARE(pagesOf("Home").size(), 1);
    }
    void aDropOfSeveralLinksAddsEachOfThem()
    {
        start("Work[#@!] [#@!] \r\nWork[#@!]A[#@!]https://a.example/\r\n");
        QMimeData data;
        data.setUrls({QUrl("https://a.example/"), QUrl("https://d.example/"), QUrl("file:///etc/passwd"),
                      QUrl("https://e.example/")});
        QVERIFY(deliverDrop(tree()->viewport(), &data, treePointOf(tree(), "Work")));
        QCOMPARE(pagesOf("Work"), (QStringList{"https://a.example/", "https://d.example/", "https://e.example/"}));
        QVERIFY(g.ListsChanged);
    }
    void pagesBeyondWhatTheListFileHoldsAreCountedAndSaid()
    {
        QByteArray full = "Work[#@!] [#@!] \r\n";
        for (int i = 1; i < kListCapacity - 2; ++i)
            full += "Work[#@!]P[#@!]https://p.example/" + QByteArray::number(i) + "\r\n";
        start(full);
        QCOMPARE(tree()->nodeCount(), kListCapacity - 2);
        QGuiApplication::clipboard()->setText("https://x.example/1 https://x.example/2 https://x.example/3");
        tree()->setFocus();
        tree()->setCurrentItem(tree()->node("Work"));
        QTest::keyClick(tree(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(tree()->nodeCount(), kListCapacity - 1);
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"2 of the pages could not be added: the lists hold at most 1000 lists and pages together."});
    }
};

VANTREL_GUI_TEST_MAIN(TestListsMenu)
#include "tst_listsmenu.moc"
