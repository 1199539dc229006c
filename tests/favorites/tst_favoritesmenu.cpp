#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "bookmarks/XbelBookmarks.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "favorites/FavoritesMenu.h"
#include "favorites/FavoritesPanel.h"
#include "favorites/FavoritesTree.h"
#include "widgets/KeyedTree.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDir>
#include <QDirIterator>
#include <QMenu>
#include <QProgressDialog>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <memory>

// The Favorites tree's menu: bookmarks brought in from files and from the browsers' profiles, the
// folder taken out to the browsers' formats.
class TestFavoritesMenu : public QObject
{
    Q_OBJECT

    Globals& g = globals();
    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    KeyedTree* tree() { return m_main->SSTree1(); }
    FavoritesMenu* menu() { return m_main->favoritesPanel()->menu(); }
    QString fav(const QString& relative) const { return m_app->favorites() + "/" + relative; }
    QString file(const QString& name) const { return m_app->home() + "/" + name; }
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
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        DialogService::clearShown();
    }
    void openMenuOn(const QString& key)
    {
        rightClickTree(tree(), key);
        QTRY_VERIFY(menu()->menu()->isVisible());
    }
    void choose(QAction* action)
    {
        chooseFromMenu(menu()->menu(), action);
    }
    // The Favorites folder as "folder/name -> address" lines, sorted.
    QStringList listing()
    {
        QStringList lines;
        QDirIterator it(m_app->favorites(), QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString relative = QDir(m_app->favorites()).relativeFilePath(path);
            if (it.fileInfo().isDir()) {
                lines << relative + "/";
                continue;
            }
            QString url;
            for (const QByteArray& line : readAll(path).split('\n'))
                if (line.startsWith("URL="))
                    url = QString::fromUtf8(line.mid(4)).trimmed();
            lines << relative + " -> " + url;
        }
        lines.sort();
        return lines;
    }
    QByteArray bookmarksHtml(int folders, int linksEach)
    {
        QByteArray html = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n";
        for (int f = 0; f < folders; ++f) {
            html += "<DT><H3>Folder " + QByteArray::number(f) + "</H3>\n<DL><p>\n";
            for (int l = 0; l < linksEach; ++l)
                html += "<DT><A HREF=\"https://example.com/" + QByteArray::number(f) + "/" + QByteArray::number(l) +
                        "\">Link " + QByteArray::number(l) + "</A>\n";
            html += "</DL><p>\n";
        }
        return html + "</DL><p>\n";
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        QDir().mkpath(m_app->favorites());
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
        shortcut("News/Paper.url", "https://paper.example/");
        start();
        openMenuOn("News");
        QStringList texts;
        for (const QAction* action : menu()->menu()->actions())
            texts << action->text();
        QCOMPARE(texts, (QStringList{"Import Bookmarks...", "Import from Browser...", "", "Export Bookmarks...", "",
                                     "Find Duplicates...", "Check Links..."}));
        menu()->menu()->hide();
    }
    void aBookmarksFileIsImportedWithItsSummaryAndTheTreeShowsIt()
    {
        shortcut("Old.url", "https://old.example/");
        start();
        QVERIFY(writeAll(file("bookmarks.html"),
                         "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<H1>Bookmarks Menu</H1>\n<DL><p>\n"
                         "<DT><A HREF=\"https://old.example/\">Old</A>\n"
                         "<DT><H3 PERSONAL_TOOLBAR_FOLDER=\"true\">Bookmarks Toolbar</H3>\n<DL><p>\n"
                         "<DT><A HREF=\"https://a.example/?x=1&y=2\">A &amp; B</A>\n"
                         "<DT><A HREF=\"place:sort=8\">Most Visited</A>\n<HR>\n</DL><p>\n"
                         "<DT><A HREF=\"https://old.example/other\">Old</A>\n</DL><p>\n"));
        openMenuOn(QString());
        DialogService::setNextFile(DialogService::FileChoice{file("bookmarks.html"), 0});
        choose(menu()->importFileAction());
        QCOMPARE(DialogService::fileCaptions(), QStringList{"Import Bookmarks"});
        QCOMPARE(listing(), (QStringList{"Bookmarks Toolbar/", "Bookmarks Toolbar/A & B.URL -> https://a.example/?x=1&y=2",
                                         "Old (2).URL -> https://old.example/other", "Old.url -> https://old.example/"}));
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"Bookmarks imported: 1 folder made, 2 shortcuts written (1 under a numbered name, as the "
                             "name was taken), 1 already there, 1 left out as not web addresses, 1 separator left out."});
        // The tree was built again from the folder.
        QVERIFY(tree()->node("Bookmarks Toolbar"));
        QVERIFY(tree()->node("Old (2)"));
    }
    void firefoxsDatabasePickedByHandIsImportedAsFromItsProfileAndASecondImportChangesNothing()
    {
        start();
        // The database Firefox ESR wrote, picked under its own name.
        QVERIFY(QFile::copy(VANTREL_TEST_DATA "/browsers/firefox-esr/places.sqlite", file("places.sqlite")));
        openMenuOn(QString());
        DialogService::setNextFile(DialogService::FileChoice{file("places.sqlite"), 0});
        choose(menu()->importFileAction());
        const QStringList first = listing();
        QVERIFY2(first.filter("https://example.com/menu-first").size() == 1, qPrintable(first.join('\n')));
        QVERIFY2(DialogService::shownTexts().value(0).startsWith("Bookmarks imported: "),
                 qPrintable(DialogService::shownTexts().value(0)));
        // Once more: all of it already there, nothing written under a numbered name.
        openMenuOn(QString());
        DialogService::setNextFile(DialogService::FileChoice{file("places.sqlite"), 0});
        choose(menu()->importFileAction());
        QCOMPARE(listing(), first);
        const QString second = DialogService::shownTexts().value(1);
        QVERIFY2(second.contains(" 0 shortcuts written, 16 already there"), qPrintable(second));
    }
    void aLargeImportShowsItsProgressAndCanBeCancelled()
    {
        start();
        QVERIFY(writeAll(file("many.html"), bookmarksHtml(10, 100)));
        bool progressSeen = false;
        // The user cancels as soon as the progress dialog is up.
        auto* watch = new QTimer(this);
        connect(watch, &QTimer::timeout, this, [&] {
            auto* progress = m_main->findChild<QProgressDialog*>("ImportProgress");
            if (!progress)
                for (QWidget* w : QApplication::topLevelWidgets())
                    if (w->objectName() == u"ImportProgress")
                        progress = qobject_cast<QProgressDialog*>(w);
            if (progress && progress->value() > 0) {
                progressSeen = progress->isVisible() && progress->maximum() == 1000;
                progress->cancel();
                watch->stop();
            }
        });
        watch->start(0);
        DialogService::setNextFile(DialogService::FileChoice{file("many.html"), 0});
        choose(menu()->importFileAction());
        delete watch;
        QVERIFY(progressSeen);
        const QStringList said = DialogService::shownTexts();
        QCOMPARE(said.size(), 1);
        QVERIFY2(said.at(0).startsWith("Import cancelled: "), qPrintable(said.at(0)));
        QVERIFY(said.at(0).endsWith(" What was written before stays."));
        const int written = int(listing().filter(" -> ").size());
        QVERIFY2(written > 0 && written < 1000, qPrintable(QString::number(written)));
        QVERIFY(said.at(0).contains(QStringLiteral("%1 shortcuts written").arg(written)));
        QVERIFY(!QApplication::activeModalWidget());
    }
    void aSmallImportShowsNoProgress()
    {
        start();
        QVERIFY(writeAll(file("few.html"), bookmarksHtml(3, 100)));
        auto* watch = new QTimer(this);
        bool progressSeen = false;
        connect(watch, &QTimer::timeout, this, [&] {
            for (QWidget* w : QApplication::topLevelWidgets())
                progressSeen = progressSeen || w->objectName() == u"ImportProgress";
        });
        watch->start(0);
        menu()->importRead(NetscapeBookmarks::read(readAll(file("few.html"))), file("few.html"));
        delete watch;
        QVERIFY(!progressSeen);
        QCOMPARE(listing().filter(" -> ").size(), 300);
    }
    void aDamagedFileIsImportedOnlyWhenTheUserSaysSo()
    {
        start();
        QVERIFY(writeAll(file("cut.html"), "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n<DT><H3>Work</H3>\n<DL><p>\n"
                                           "<DT><A HREF=\"https://a.example/\">A</A>\n<DT><A HREF=\"https://b"));
        DialogService::setNextAnswer(DialogService::Answer::No);
        DialogService::setNextFile(DialogService::FileChoice{file("cut.html"), 0});
        menu()->importFile();
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{file("cut.html") + " is damaged: The file ends inside a folder.\n\n"
                                                "Import the 1 bookmark and 1 folder read before it?"});
        QCOMPARE(listing(), QStringList());
        DialogService::clearShown();
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        DialogService::setNextFile(DialogService::FileChoice{file("cut.html"), 0});
        menu()->importFile();
        QCOMPARE(listing(), (QStringList{"Work/", "Work/A.URL -> https://a.example/"}));
        QCOMPARE(DialogService::shownTexts().constLast(), QStringLiteral("Bookmarks imported: 1 folder made, 1 shortcut written."));
    }
    void filesThatAreNoBookmarksSayWhyAndWriteNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("problem");
        QTest::newRow("empty") << QByteArray() << "x.html" << "The file is not a bookmarks file: it is empty";
        QTest::newRow("broken JSON") << QByteArray("{\"roots\": {\"bookmark_bar\": [") << "Bookmarks"
                                     << "The file is not valid JSON: unterminated array at byte 28";
        QTest::newRow("xbel, wrong nesting")
            << QByteArray("<?xml version=\"1.0\"?>\n<xbel><folder><title>F</title></xbel></folder>") << "b.xbel"
            << "The file is not well-formed XML at line 2: Opening and ending tag mismatch";
    }
    void filesThatAreNoBookmarksSayWhyAndWriteNothing()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QFETCH(QString, problem);
        start();
        QVERIFY(writeAll(file(name), bytes));
        DialogService::setNextFile(DialogService::FileChoice{file(name), 0});
        menu()->importFile();
        QCOMPARE(DialogService::shownTexts(), QStringList{"No bookmarks were imported from " + file(name) + ": " + problem + "."});
        QCOMPARE(listing(), QStringList());
    }
    void aChromiumProfileIsOfferedByNameAndImported()
    {
        const QString profile = m_app->config() + "/chromium/Default";
        QVERIFY(QDir().mkpath(profile));
        QVERIFY(writeAll(m_app->config() + "/chromium/Local State",
                         "{\"profile\":{\"info_cache\":{\"Default\":{\"name\":\"Person 1\"}},"
                         "\"last_used\":\"Default\"}}"));
        QVERIFY(writeAll(profile + "/Bookmarks",
                         "{\"roots\":{\"bookmark_bar\":{\"type\":\"folder\",\"name\":\"Bookmarks bar\",\"children\":["
                         "{\"type\":\"url\",\"name\":\"Caf\\u00e9 \\\"Central\\\"\","
                         "\"url\":\"https://example.com/caf%C3%A9?a=1&b=2\"},"
                         "{\"type\":\"folder\",\"name\":\"Work\",\"children\":["
                         "{\"type\":\"url\",\"name\":\"Wiki\",\"url\":\"https://wiki.example/\"}]}]},"
                         "\"other\":{\"type\":\"folder\",\"name\":\"Other bookmarks\",\"children\":[]},"
                         "\"synced\":{\"type\":\"folder\",\"name\":\"Mobile bookmarks\",\"children\":[]}},"
                         "\"version\":1}"));
        start();
        DialogService::setNextItem(0);
        openMenuOn(QString());
        choose(menu()->importBrowserAction());
        QCOMPARE(DialogService::offeredItems().size(), 1);
        QVERIFY2(DialogService::offeredItems().at(0).contains("Chromium"), qPrintable(DialogService::offeredItems().at(0)));
        QCOMPARE(listing(), (QStringList{"Bookmarks bar/", "Bookmarks bar/Café \"Central\".URL -> https://example.com/caf%C3%A9?a=1&b=2",
                                         "Bookmarks bar/Work/", "Bookmarks bar/Work/Wiki.URL -> https://wiki.example/"}));
        QCOMPARE(DialogService::shownTexts(), QStringList{"Bookmarks imported: 2 folders made, 2 shortcuts written."});
    }
    void withoutBrowsersTheUserIsToldWhatToDo()
    {
        start();
        menu()->importFromBrowser();
        QCOMPARE(DialogService::shownTexts().size(), 1);
        QVERIFY(DialogService::shownTexts().at(0).startsWith("No browser profile with bookmarks was found for you"));
        QCOMPARE(DialogService::offeredItems(), QStringList());
    }
    void theFolderUnderThePointerOrTheWholeFolderIsExported()
    {
        shortcut("News/Paper.url", "https://paper.example/?a=1&b=2");
        shortcut("News/Deep/Radio.url", "https://radio.example/");
        shortcut("Top.url", "https://top.example/");
        start();
        openMenuOn("News");
        DialogService::setNextFile(DialogService::FileChoice{file("news"), 1});
        choose(menu()->exportAction());
        QCOMPARE(DialogService::fileCaptions(), QStringList{"Export Bookmarks of \"News\""});
        QCOMPARE(DialogService::shownTexts(), QStringList{"2 bookmarks in 1 folder exported to " + file("news.xbel") + "."});
        const BookmarkRead xbel = XbelBookmarks::read(readAll(file("news.xbel")));
        QCOMPARE(xbel.problem, QString());
        QCOMPARE(xbel.root.title, QStringLiteral("News"));
        QCOMPARE(xbel.root.children,
                 (QList<BookmarkNode>{BookmarkNode::folder("Deep", {BookmarkNode::link("Radio", "https://radio.example/")}),
                                      BookmarkNode::link("Paper", "https://paper.example/?a=1&b=2")}));
        // On a shortcut, or beside the nodes, the whole Favorites folder goes.
        DialogService::clearShown();
        openMenuOn("Top");
        DialogService::setNextFile(DialogService::FileChoice{file("all.html"), 0});
        choose(menu()->exportAction());
        QCOMPARE(DialogService::fileCaptions(), QStringList{"Export Bookmarks"});
        const BookmarkRead html = NetscapeBookmarks::read(readAll(file("all.html")));
        QCOMPARE(html.problem, QString());
        QCOMPARE(html.root.linkCount(), 3);
        QCOMPARE(html.root.folderCount(), 2);
        QCOMPARE(DialogService::shownTexts(), QStringList{"3 bookmarks in 2 folders exported to " + file("all.html") + "."});
    }
    void theMenuKeyExportsTheCurrentFolder()
    {
        shortcut("News/Paper.url", "https://paper.example/");
        shortcut("Top.url", "https://top.example/");
        start();
        tree()->setFocus();
        tree()->setCurrentItem(tree()->node("News"));
        // The Menu key as the window system hands it on: a context menu event from the keyboard.
        QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QApplication::sendEvent(tree(), &key);
        QTRY_VERIFY(menu()->menu()->isVisible());
        DialogService::setNextFile(DialogService::FileChoice{file("news.html"), 0});
        choose(menu()->exportAction());
        QCOMPARE(NetscapeBookmarks::read(readAll(file("news.html"))).root.linkCount(), 1);
    }
    void anExportThatCannotBeWrittenSaysWhy()
    {
        shortcut("Top.url", "https://top.example/");
        start();
        QDir().mkpath(file("locked"));
        ReadOnlyFolder locked(file("locked"));
        QVERIFY(!menu()->exportFolder(m_app->favorites(), file("locked/all.html")));
        QCOMPARE(DialogService::shownTexts(),
                 QStringList{"The bookmarks could not be exported to " + file("locked/all.html") + ": Permission denied."});
        QVERIFY(!QFile::exists(file("locked/all.html")));
    }
};

VANTREL_GUI_TEST_MAIN(TestFavoritesMenu)
#include "tst_favoritesmenu.moc"
