#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "options/MoreOptions.h"
#include "settings/VantrelConf.h"
#include "options/OptionsPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/WebForm1.h"
#include "core/DialogService.h"
#include "favorites/FavoritesPanel.h"
#include "favorites/FavoritesWatch.h"
#include "sync/FavoritesSync.h"
#include "widgets/KeyedTree.h"

#include <QCheckBox>
#include <QDir>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <memory>

// The Favorites tree following its folder when the user asks for it: other programs' changes show
// within two seconds, with the open folders and the selection kept, and only open folders watched.
class TestFavoritesWatch : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    KeyedTree* tree() { return m_main->SSTree1(); }
    FavoritesWatch* watch() { return m_main->favoritesPanel()->watch(); }
    QString fav(const QString& relative) const { return m_app->favorites() + "/" + relative; }
    void shortcut(const QString& relative, const QString& url)
    {
        QDir().mkpath(QFileInfo(fav(relative)).absolutePath());
        QVERIFY(writeAll(fav(relative), ("[InternetShortcut]\r\nURL=" + url + "\r\n").toUtf8()));
    }
    void start(bool inStep)
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kKeepFavoritesInStep, inStep ? 1 : 0));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(1);
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        DialogService::clearShown();
    }
    void open(const QString& key)
    {
        KeyedNode* node = tree()->node(key);
        QVERIFY(node);
        node->setExpanded(true);
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
    }

    void whatTheBookmarksFileBringsInShowsWithTheFolderWatchOff()
    {
        shortcut("News/Paper.url", "https://paper.example/");
        start(false);
        open("News");
        QVERIFY(!watch()->isEnabled());
        const QString shared = m_app->path() + "/bookmarks.xbel";
        FavoritesSync* sync = m_main->favoritesSync();
        sync->setFile(shared, true);
        sync->syncNow();
        // Another machine adds a page to News through the file.
        QByteArray bytes = readAll(shared);
        const QByteArray paper = "<title>Paper</title>\n    </bookmark>";
        QVERIFY(bytes.contains(paper));
        bytes.replace(paper, paper + "\n    <bookmark id=\"other-1\" href=\"https://radio.example/\"><title>Radio</title></bookmark>");
        QVERIFY(writeAll(shared, bytes));
        QVERIFY(sync->syncNow(true).problem.isEmpty());
        QVERIFY(QFile::exists(fav("News/Radio.URL")));
        QVERIFY(tree()->node("News/Radio"));
        QVERIFY(tree()->node("News")->isExpanded()); // the open folder stays open
    }

    void theSettingIsOffAndTheTreeWaitsForRefresh()
    {
        QCOMPARE(VantrelConf::flag(VantrelConf::kKeepFavoritesInStep), false);
        shortcut("Old.url", "https://old.example/");
        m_main = std::make_unique<Vantrel1>();
        m_main->Form_Load();
        QVERIFY(!watch()->isEnabled());
        QCOMPARE(watch()->watchedFolders(), QStringList());
        shortcut("New.url", "https://new.example/");
        QTest::qWait(FavoritesWatch::kSettleMs * 3);
        QVERIFY(!tree()->node("New"));
    }
    void changesOnDiskAppearKeepingOpenFoldersAndSelection()
    {
        shortcut("News/Paper.url", "https://paper.example/");
        shortcut("News/Local/Town.url", "https://town.example/");
        shortcut("Work/Wiki.url", "https://wiki.example/");
        shortcut("Top.url", "https://top.example/");
        start(true);
        open("News");
        open("News/Local");
        tree()->setCurrentItem(tree()->node("News/Local/Town"));
        // Another program adds a shortcut at the top, one in an open folder, and a folder.
        shortcut("Added.url", "https://added.example/");
        shortcut("News/Local/Weather.url", "https://weather.example/");
        QVERIFY(QDir().mkpath(fav("Music")));
        QTRY_VERIFY_WITH_TIMEOUT(tree()->node("Added") && tree()->node("News/Local/Weather") && tree()->node("Music"),
                                 2000);
        QVERIFY(tree()->node("News")->isExpanded());
        QVERIFY(tree()->node("News/Local")->isExpanded());
        QVERIFY(!tree()->node("Work")->isExpanded());
        QCOMPARE(static_cast<KeyedNode*>(tree()->currentItem())->key(), QStringLiteral("News/Local/Town"));
        // Removed and renamed ones go.
        QVERIFY(QFile::remove(fav("Top.url")));
        QVERIFY(QDir().rename(fav("News/Paper.url"), fav("News/Journal.url")));
        QTRY_VERIFY_WITH_TIMEOUT(!tree()->node("Top") && tree()->node("News/Journal") && !tree()->node("News/Paper"),
                                 2000);
        QVERIFY(tree()->node("News/Local")->isExpanded());
    }
    void aClosedFolderThatChangedIsShownAsItIsWhenOpened()
    {
        shortcut("Work/Wiki.url", "https://wiki.example/");
        start(true);
        QCOMPARE(watch()->watchedFolders(), QStringList{m_app->favorites()});
        QTest::qWait(20); // the folder's time of change comes after the tree read it
        shortcut("Work/Mail.url", "https://mail.example/");
        QTest::qWait(FavoritesWatch::kSettleMs * 2);
        QVERIFY(!tree()->node("Work/Mail")); // closed: not watched, not read
        open("Work");
        QTRY_VERIFY_WITH_TIMEOUT(tree()->node("Work/Mail"), 2000);
        QVERIFY(tree()->node("Work")->isExpanded());
        QCOMPARE(watch()->watchedFolders().size(), 2);
        // Closed again, it is no longer watched.
        tree()->node("Work")->setExpanded(false);
        QCOMPARE(watch()->watchedFolders(), QStringList{m_app->favorites()});
    }
    void sevenThousandFiveHundredFoldersCostOnlyTheOpenOnesAWatch()
    {
        for (int i = 0; i < 75; ++i)
            for (int j = 0; j < 99; ++j)
                QVERIFY(QDir().mkpath(fav(QStringLiteral("F%1/G%2").arg(i).arg(j))));
        start(true);
        QCOMPARE(tree()->nodeCount(), 75 + 75 * 99);
        open("F3");
        open("F3/G7");
        QCOMPARE(watch()->watchedFolders().size(), 3);
        shortcut("F3/G7/Deep.url", "https://deep.example/");
        QTRY_VERIFY_WITH_TIMEOUT(tree()->node("F3/G7/Deep"), 2000);
        QCOMPARE(watch()->watchedFolders().size(), 3);
    }
    void turningItOnInMoreOptionsCatchesUpAtOnce()
    {
        shortcut("Old.url", "https://old.example/");
        start(false);
        shortcut("Meanwhile.url", "https://meanwhile.example/");
        m_main->optionsPanel()->MoreOptionsBtn_Click();
        MoreOptions* more = m_main->optionsPanel()->moreOptions();
        auto* box = more->findChild<QCheckBox*>("KeepTreeInStepWithFolder");
        QVERIFY(box);
        QCOMPARE(box->text(), QStringLiteral("Keep the Favorites tree in step with the folder"));
        QVERIFY(!box->isChecked());
        box->setChecked(true);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(VantrelConf::flag(VantrelConf::kKeepFavoritesInStep));
        QVERIFY(watch()->isEnabled());
        QVERIFY(tree()->node("Meanwhile"));
        shortcut("Later.url", "https://later.example/");
        QTRY_VERIFY_WITH_TIMEOUT(tree()->node("Later"), 2000);
        // And off again: the tree waits for Refresh.
        m_main->optionsPanel()->MoreOptionsBtn_Click();
        more->findChild<QCheckBox*>("KeepTreeInStepWithFolder")->setChecked(false);
        QTest::mouseClick(more->findChild<QPushButton*>("OKBtn"), Qt::LeftButton);
        QVERIFY(!watch()->isEnabled());
        QCOMPARE(watch()->watchedFolders(), QStringList());
    }
};

VANTREL_GUI_TEST_MAIN(TestFavoritesWatch)
#include "tst_favoriteswatch.moc"
