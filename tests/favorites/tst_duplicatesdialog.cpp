// The Find Duplicates dialog on the real main window: opened from the Favorites menu and the lists
// menu, one copy of a page kept, the others sent to the trash after a question, and nothing lost
// without a choice.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "favorites/DuplicatesDialog.h"
#include "favorites/FavoritesMenu.h"
#include "favorites/FavoritesPanel.h"
#include "lists/ListsMenu.h"
#include "lists/ListsPanel.h"
#include "mainwindow/Vantrel1.h"
#include "settings/VantrelConf.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "widgets/KeyedTree.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <memory>

class TestDuplicatesDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;
    QTemporaryDir m_data;

    QString fav(const QString& relative) const { return m_app->favorites() + "/" + relative; }
    void shortcut(const QString& relative, const QString& url)
    {
        QDir().mkpath(QFileInfo(fav(relative)).absolutePath());
        QVERIFY(writeAll(fav(relative), ("[InternetShortcut]\r\nURL=" + url + "\r\n").toUtf8()));
    }
    void start(const QByteArray& listFile = "Work[#@!] [#@!] \r\n")
    {
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"), listFile));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
        m_main->show();
        m_main->TabStrip1()->setCurrentIndex(1);
        QVERIFY(QTest::qWaitForWindowExposed(m_main.get()));
        DialogService::clearShown();
    }
    DuplicatesDialog* openFromFavorites()
    {
        rightClickTree(m_main->SSTree1(), QString());
        FavoritesMenu* menu = m_main->favoritesPanel()->menu();
        if (!QTest::qWaitFor([&] { return menu->menu()->isVisible(); }))
            return nullptr;
        chooseFromMenu(menu->menu(), menu->findDuplicatesAction());
        return settled(m_main->findChild<DuplicatesDialog*>());
    }
    static DuplicatesDialog* settled(DuplicatesDialog* dialog)
    {
        if (dialog && !QTest::qWaitFor([&] { return !dialog->searching(); }))
            return nullptr;
        QCoreApplication::processEvents();
        return dialog;
    }
    template<typename T> T* control(DuplicatesDialog* dialog, const char* name)
    {
        return dialog->findChild<T*>(QString::fromLatin1(name));
    }
    // The dialog's tree as "group" and "  [x] title | where | address" lines.
    static QStringList shown(QTreeWidget* tree)
    {
        QStringList lines;
        for (int g = 0; g < tree->topLevelItemCount(); ++g) {
            QTreeWidgetItem* group = tree->topLevelItem(g);
            lines << group->text(0);
            for (int i = 0; i < group->childCount(); ++i) {
                QTreeWidgetItem* copy = group->child(i);
                lines << QStringLiteral("  [%1] %2 | %3 | %4")
                             .arg(copy->checkState(0) == Qt::Checked ? QStringLiteral("x") : QStringLiteral(" "))
                             .arg(copy->text(0), copy->text(1), copy->text(2));
            }
        }
        return lines;
    }

private slots:
    void init()
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
        m_app = std::make_unique<TempAppFolder>();
        m_created.clear();
        globals().FavoritesPath = m_app->favorites();
        QVERIFY(QDir().mkpath(m_app->favorites()));
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        qunsetenv("XDG_DATA_HOME");
    }

    void theCopiesOfEachPageAreShownWithWhereTheyAre()
    {
        shortcut("Debian.url", "https://www.debian.org/");
        shortcut("Linux/Debian home.URL", "https://www.debian.org");
        shortcut("Linux/Unique.URL", "https://unique.example/");
        start("Wall[#@!] [#@!] \r\nWall[#@!]A[#@!]https://a.example/\r\nWall[#@!]A2[#@!]https://a.example/#top\r\n");
        DuplicatesDialog* dialog = openFromFavorites();
        QVERIFY(dialog);
        QCOMPARE(shown(dialog->tree()), (QStringList{
                                            "https://a.example (2 copies)",
                                            "  [x] A | List: Wall | https://a.example/",
                                            "  [x] A2 | List: Wall | https://a.example/#top",
                                            "https://www.debian.org (2 copies)",
                                            "  [x] Debian home | Favorites/Linux | https://www.debian.org",
                                            "  [x] Debian | Favorites | https://www.debian.org/",
                                        }));
        QVERIFY(control<QLabel>(dialog, "DuplicatesStatus")->text().startsWith("2 pages are kept more than once, 4 copies"));
        // Everything is kept until a person unchecks a copy.
        QVERIFY(!control<QPushButton>(dialog, "TrashBtn")->isEnabled());
    }
    void oneCopyIsKeptAndTheOthersGoToTheTrashAfterAQuestion()
    {
        shortcut("Debian.url", "https://www.debian.org/");
        shortcut("Linux/Debian home.URL", "https://www.debian.org");
        shortcut("Old/debian.URL", "https://www.debian.org:443/#news");
        start();
        DuplicatesDialog* dialog = openFromFavorites();
        QVERIFY(dialog);
        QTreeWidget* tree = dialog->tree();
        QTreeWidgetItem* group = tree->topLevelItem(0);
        QCOMPARE(group->childCount(), 3);
        // Keep the one at the top.
        QTreeWidgetItem* top = nullptr;
        for (int i = 0; i < 3; ++i)
            if (group->child(i)->text(1) == "Favorites")
                top = group->child(i);
        QVERIFY(top);
        tree->setCurrentItem(top);
        QTest::mouseClick(control<QPushButton>(dialog, "KeepOnlyBtn"), Qt::LeftButton);
        QCOMPARE(shown(tree).filter("[x]").size(), 1);
        // Said No: nothing goes.
        DialogService::setNextAnswer(DialogService::Answer::No);
        QTest::mouseClick(control<QPushButton>(dialog, "TrashBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Do you want to send 2 favourites to the trash?"));
        QVERIFY(QFile::exists(fav("Linux/Debian home.URL")));
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(control<QPushButton>(dialog, "TrashBtn"), Qt::LeftButton);
        QVERIFY(settled(dialog));
        QVERIFY(QFile::exists(fav("Debian.url")));
        QVERIFY(!QFile::exists(fav("Linux/Debian home.URL")));
        QVERIFY(!QFile::exists(fav("Old/debian.URL")));
        // In the trash, where the desktop can put them back from; out of the tree.
        QCOMPARE(QDir(m_data.path() + "/Trash/files").entryList(QDir::Files).size(), 2);
        QVERIFY(!m_main->SSTree1()->node("Linux/Debian home"));
        QVERIFY(m_main->SSTree1()->node("Debian"));
        QCOMPARE(tree->topLevelItemCount(), 0);
        QCOMPARE(control<QLabel>(dialog, "DuplicatesStatus")->text(), QStringLiteral("No page is kept more than once."));
    }
    void noCopyOfAPageCanAllGo()
    {
        shortcut("A.url", "https://a.example/");
        shortcut("B.url", "https://a.example");
        start();
        DuplicatesDialog* dialog = openFromFavorites();
        QVERIFY(dialog);
        QTreeWidgetItem* group = dialog->tree()->topLevelItem(0);
        group->child(0)->setCheckState(0, Qt::Unchecked);
        group->child(1)->setCheckState(0, Qt::Unchecked);
        QTest::mouseClick(control<QPushButton>(dialog, "TrashBtn"), Qt::LeftButton);
        QVERIFY(DialogService::shownTexts().last().startsWith("Keep at least one copy of "));
        QVERIFY(QFile::exists(fav("A.url")));
        QVERIFY(QFile::exists(fav("B.url")));
        // Keep All checks them again.
        dialog->tree()->setCurrentItem(group);
        QTest::mouseClick(control<QPushButton>(dialog, "KeepAllBtn"), Qt::LeftButton);
        QCOMPARE(shown(dialog->tree()).filter("[x]").size(), 2);
    }
    void trackingParametersFollowTheSetting()
    {
        shortcut("Shop.url", "https://shop.example/item?id=4");
        shortcut("Shop mail.url", "https://shop.example/item?id=4&utm_source=mail");
        start();
        DuplicatesDialog* dialog = openFromFavorites();
        QVERIFY(dialog);
        QVERIFY(control<QCheckBox>(dialog, "TrackingChk")->isChecked()); // the default
        QCOMPARE(dialog->tree()->topLevelItemCount(), 1);
        control<QCheckBox>(dialog, "TrackingChk")->setChecked(false);
        QVERIFY(settled(dialog));
        QCOMPARE(dialog->tree()->topLevelItemCount(), 0);
        QVERIFY(!VantrelConf::flag(VantrelConf::kDuplicatesIgnoreTracking));
    }
    void theListsMenuOpensItAndAListsCopyLeavesItsList()
    {
        start("Wall[#@!] [#@!] \r\nWall[#@!]A[#@!]https://a.example/\r\nWall[#@!]A2[#@!]https://A.example\r\n");
        m_main->TabStrip1()->setCurrentIndex(2);
        rightClickTree(m_main->listsPanel()->SSTree2(), QString());
        ListsMenu* menu = m_main->listsPanel()->menu();
        QTRY_VERIFY(menu->menu()->isVisible());
        chooseFromMenu(menu->menu(), menu->findDuplicatesAction());
        DuplicatesDialog* dialog = settled(m_main->findChild<DuplicatesDialog*>());
        QVERIFY(dialog);
        QTreeWidgetItem* group = dialog->tree()->topLevelItem(0);
        QVERIFY(group);
        group->child(1)->setCheckState(0, Qt::Unchecked);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(control<QPushButton>(dialog, "TrashBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Do you want to take 1 page out of their lists?"));
        QVERIFY(settled(dialog));
        QCOMPARE(m_main->verbs()->lists()->pages("WALL").size(), 1);
        QVERIFY(!m_main->listsPanel()->SSTree2()->node("https://A.example/Wall"));
        QVERIFY(globals().ListsChanged);
    }
};

VANTREL_GUI_TEST_MAIN(TestDuplicatesDialog)
#include "tst_duplicatesdialog.moc"
