// The search fields above the three trees on the real main window: Ctrl+F, results as a person
// types, a page opened with Enter, a drag from the results, and Escape giving the tree back as it was.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "favorites/FavoritesTree.h"
#include "history/HistoryPanel.h"
#include "lists/ListsPanel.h"
#include "mainwindow/Vantrel1.h"
#include "search/SearchKeeper.h"
#include "widgets/ControlDrag.h"
#include "widgets/KeyedTree.h"
#include "widgets/TreeSearch.h"

#include <QDir>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <memory>

class TestTreeSearch : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    void shortcut(const QString& relative, const QString& url)
    {
        const QString path = m_app->favorites() + "/" + relative;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QVERIFY(writeAll(path, ("[InternetShortcut]\r\nURL=" + url + "\r\n").toUtf8()));
    }
    void start()
    {
        shortcut("Linux/Debian.URL", "https://www.debian.org/");
        shortcut("News/Café Müller.URL", "https://cafe-mueller.example/");
        shortcut("News/Daily/Paper.URL", "https://paper.example/");
        shortcut("Top.URL", "https://top.example/");
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "Wall[#@!] [#@!] \r\nWall[#@!]Weather today[#@!]https://weather.example/\r\n"));
        QVERIFY(writeAll(m_app->file("BrowseHistory.LST"),
                         "Internet Explorer 1[#@!] [#@!] \r\nInternet Explorer 1[#@!]Release notes[#@!]https://notes.example/\r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        LoadHistoryFile(m_app->file("BrowseHistory.LST"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(1);
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        QTRY_VERIFY_WITH_TIMEOUT(!m_main->searchKeeper()->busy() && m_main->searchKeeper()->index()->size() == 6, 10000);
        DialogService::clearShown();
    }
    static QStringList rows(QTreeWidget* results)
    {
        QStringList rows;
        for (int i = 0; i < results->topLevelItemCount(); ++i)
            rows << results->topLevelItem(i)->text(0) + " | " + results->topLevelItem(i)->text(1);
        return rows;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        globals().FavoritesPath = m_app->favorites();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        ControlDrag::setTestHook({});
    }

    void typingFindsAFavouriteAndEnterOpensIt()
    {
        start();
        KeyedTree* tree = m_main->SSTree1();
        tree->node("News")->setExpanded(true);
        QTest::keyClick(m_main.get(), Qt::Key_F, Qt::ControlModifier);
        QLineEdit* field = m_main->findChild<QLineEdit*>("FavoritesSearch");
        QVERIFY(field);
        QTRY_VERIFY(field->hasFocus());
        QTest::keyClicks(field, "muller CAFE");
        QTreeWidget* results = m_main->findChild<QTreeWidget*>("FavoritesResults");
        QVERIFY(results->isVisible());
        QVERIFY(!tree->isVisible());
        QCOMPARE(rows(results), QStringList{"Café Müller | News"});
        QTest::keyClick(field, Qt::Key_Return);
        // Opened as a double-click on the tree opens it.
        QTRY_COMPARE(m_created.size(), 1);
        QCOMPARE(m_created.first()->navigations.value(0), QStringLiteral("https://cafe-mueller.example/"));
        // Escape: the tree as it was, its open folder open.
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(field->text().isEmpty());
        QVERIFY(tree->isVisible());
        QVERIFY(!results->isVisible());
        QVERIFY(tree->node("News")->isExpanded());
        QVERIFY(tree->hasFocus());
    }
    void anAddressFindsItAndWordsNarrowTheList()
    {
        start();
        TreeSearch* search = m_main->favoritesSearch();
        search->field()->setText("example");
        QCOMPARE(search->results()->topLevelItemCount(), 3);
        search->field()->setText("top");
        QCOMPARE(rows(search->results()), QStringList{"Top | Favorites"});
        QVERIFY(search->results()->topLevelItem(0)->toolTip(0).contains("https://top.example/"));
        search->field()->setText("example pap");
        QCOMPARE(rows(search->results()), QStringList{"Paper | News/Daily"});
        search->field()->setText("nothing like it");
        QCOMPARE(search->results()->topLevelItemCount(), 0);
    }
    void eachTabSearchesItsOwnTree()
    {
        start();
        m_main->TabStrip1()->setCurrentIndex(2);
        QTest::keyClick(m_main.get(), Qt::Key_F, Qt::ControlModifier);
        QLineEdit* lists = m_main->findChild<QLineEdit*>("ListsSearch");
        QTRY_VERIFY(lists->hasFocus());
        QTest::keyClicks(lists, "weather");
        QCOMPARE(rows(m_main->listsSearch()->results()), QStringList{"Weather today | Wall"});
        m_main->TabStrip1()->setCurrentIndex(3);
        QTest::keyClick(m_main.get(), Qt::Key_F, Qt::ControlModifier);
        QTRY_VERIFY(m_main->findChild<QLineEdit*>("HistorySearch")->hasFocus());
        // From the Surf tab, the Favorites' field.
        m_main->TabStrip1()->setCurrentIndex(0);
        QTest::keyClick(m_main.get(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(m_main->TabStrip1()->currentIndex(), 1);
        QTRY_VERIFY(m_main->findChild<QLineEdit*>("FavoritesSearch")->hasFocus());
    }
    void aDragFromTheResultsIsADragFromTheTree()
    {
        start();
        QWidget* source = nullptr;
        QString tag;
        ControlDrag::setTestHook([&](QWidget* from, const QMimeData& data) {
            source = from;
            tag = ControlDrag::sourceTag(&data);
        });
        m_main->TabStrip1()->setCurrentIndex(3);
        TreeSearch* search = m_main->historySearch();
        search->field()->setText("release");
        QCOMPARE(search->results()->topLevelItemCount(), 1);
        QWidget* viewport = search->results()->viewport();
        const QPoint at = search->results()->visualItemRect(search->results()->topLevelItem(0)).center();
        QMouseEvent press(QEvent::MouseButtonPress, at, viewport->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(viewport, &press);
        const QPoint away = at + QPoint(40, 0);
        QMouseEvent move(QEvent::MouseMove, away, viewport->mapToGlobal(away), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(viewport, &move);
        QCOMPARE(source, m_main->historyPanel()->SSTree3());
        QCOMPARE(tag, QStringLiteral("SSTree3"));
        QCOMPARE(globals().CurrentUrl, QStringLiteral("https://notes.example/"));
        QCOMPARE(globals().CurrentTitle, QStringLiteral("Release notes"));
    }
};

VANTREL_GUI_TEST_MAIN(TestTreeSearch)
#include "tst_treesearch.moc"
