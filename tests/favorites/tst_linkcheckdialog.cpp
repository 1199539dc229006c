// Check Links on the real main window, against a local site: a folder's links sorted as they
// answer, a moved page pointed to its new address and a dead one sent to the trash by a person's
// choice, the last day's answers remembered, and the pages that need a look kept as a list.
#include "LocalHttpServer.h"
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "favorites/FavoritesMenu.h"
#include "favorites/FavoritesPanel.h"
#include "favorites/LinkCheckDialog.h"
#include "lists/ListsMenu.h"
#include "lists/ListsPanel.h"
#include "mainwindow/Vantrel1.h"
#include "settings/LinkChecksFile.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "widgets/KeyedTree.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include <memory>

class TestLinkCheckDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    std::unique_ptr<LocalHttpServer> m_site;
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
    LinkCheckDialog* openOn(const QString& folderKey)
    {
        rightClickTree(m_main->SSTree1(), folderKey);
        FavoritesMenu* menu = m_main->favoritesPanel()->menu();
        if (!QTest::qWaitFor([&] { return menu->menu()->isVisible(); }))
            return nullptr;
        chooseFromMenu(menu->menu(), menu->checkLinksAction());
        auto* dialog = m_main->findChild<LinkCheckDialog*>();
        return dialog && QTest::qWaitFor([&] { return !dialog->busy(); }, 20000) ? dialog : nullptr;
    }
    static QStringList shown(QTreeWidget* tree)
    {
        QStringList lines;
        for (int g = 0; g < tree->topLevelItemCount(); ++g) {
            QTreeWidgetItem* group = tree->topLevelItem(g);
            lines << group->text(0);
            for (int i = 0; i < group->childCount(); ++i)
                lines << "  " + group->child(i)->text(0) + " | " + group->child(i)->text(1);
        }
        return lines;
    }
    static QTreeWidgetItem* item(QTreeWidget* tree, const QString& title)
    {
        const QList<QTreeWidgetItem*> found = tree->findItems(title, Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }
    template<typename T> static T* control(QWidget* dialog, const char* name)
    {
        return dialog->findChild<T*>(QString::fromLatin1(name));
    }

private slots:
    void init()
    {
        qputenv("XDG_DATA_HOME", m_data.path().toUtf8());
        m_app = std::make_unique<TempAppFolder>();
        globals().FavoritesPath = m_app->favorites();
        m_created.clear();
        m_site = std::make_unique<LocalHttpServer>();
        QVERIFY(m_site->start());
        m_site->setPage("/fine", "<p>fine</p>");
        m_site->setPage("/new-home", "<p>new home</p>");
        m_site->setStatus("/moved", "301 Moved Permanently", "Location: /new-home\r\n");
        m_site->setStatus("/busy", "503 Service Unavailable");
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
        m_site.reset();
        qunsetenv("XDG_DATA_HOME");
    }

    void aFoldersLinksAreSortedAndAPersonChoosesWhatChanges()
    {
        shortcut("Links/Fine.url", m_site->url("/fine"));
        shortcut("Links/Gone.url", m_site->url("/gone"));
        shortcut("Links/Moved.url", m_site->url("/moved"));
        shortcut("Links/Deeper/Busy.url", m_site->url("/busy"));
        shortcut("Elsewhere.url", m_site->url("/elsewhere"));
        start();
        LinkCheckDialog* dialog = openOn("Links");
        QVERIFY(dialog);
        QCOMPARE(shown(dialog->results()), (QStringList{"Dead (1)", "  Gone | Favorites/Links", "Moved for good (1)",
                                                        "  Moved | Favorites/Links", "Failing for now (1)",
                                                        "  Busy | Favorites/Links/Deeper", "Fine (1)",
                                                        "  Fine | Favorites/Links"}));
        QVERIFY(!m_site->requests.contains("/elsewhere")); // another folder
        QVERIFY(control<QLabel>(dialog, "LinkCheckStatus")->text().startsWith("Done. Dead: 1, Moved for good: 1"));
        // Nothing is changed until a person checks it.
        QVERIFY(!control<QPushButton>(dialog, "UpdateMovedBtn")->isEnabled());
        QVERIFY(!control<QPushButton>(dialog, "TrashDeadBtn")->isEnabled());
        item(dialog->results(), "Moved")->setCheckState(0, Qt::Checked);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(control<QPushButton>(dialog, "UpdateMovedBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Do you want to point 1 page to its new address?"));
        QCOMPARE(readAll(fav("Links/Moved.url")), ("[InternetShortcut]\r\nURL=" + m_site->url("/new-home") + "\r\n").toUtf8());
        item(dialog->results(), "Gone")->setCheckState(0, Qt::Checked);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(control<QPushButton>(dialog, "TrashDeadBtn"), Qt::LeftButton);
        QCOMPARE(DialogService::shownTexts().last(), QStringLiteral("Do you want to send 1 favourite to the trash?"));
        QVERIFY(!QFile::exists(fav("Links/Gone.url")));
        QVERIFY(QFile::exists(m_data.path() + "/Trash/files/Gone.url"));
        QVERIFY(!m_main->SSTree1()->node("Links/Gone"));
        QVERIFY(control<QLabel>(dialog, "LinkCheckStatus")->text().startsWith("Done. Dead: 0, Moved for good: 1"));
        // What needs a look is kept as a list.
        QTest::mouseClick(control<QPushButton>(dialog, "KeepListBtn"), Qt::LeftButton);
        const QString list = m_main->verbs()->lists()->names().last();
        QVERIFY2(list.startsWith("Link check "), qPrintable(list));
        QCOMPARE(m_main->verbs()->lists()->pages(list.toUpper()).size(), 2); // moved and busy
        dialog->close();
    }
    void theLastDaysAnswersAreRememberedUnlessAskedAgain()
    {
        shortcut("Links/Fine.url", m_site->url("/fine"));
        shortcut("Links/Gone.url", m_site->url("/gone"));
        start();
        LinkCheckDialog* dialog = openOn("Links");
        QVERIFY(dialog);
        QCOMPARE(m_site->requests.size(), 2);
        QCOMPARE(LinkChecksFile::read(LinkChecksFile::path()).size(), 2);
        dialog->close();
        QTRY_VERIFY(!m_main->findChild<LinkCheckDialog*>());
        dialog = openOn("Links");
        QVERIFY(dialog);
        QCOMPARE(m_site->requests.size(), 2); // not asked again
        QCOMPARE(shown(dialog->results()), (QStringList{"Dead (1)", "  Gone | Favorites/Links", "Fine (1)",
                                                        "  Fine | Favorites/Links"}));
        QVERIFY(control<QLabel>(dialog, "LinkCheckStatus")->text().contains("2 checked within the last day"));
        control<QCheckBox>(dialog, "AskAgainChk")->setChecked(true);
        QTRY_VERIFY_WITH_TIMEOUT(!dialog->busy() && m_site->requests.size() == 4, 20000);
        QVERIFY(!control<QLabel>(dialog, "LinkCheckStatus")->text().contains("within the last day"));
    }
    void closedWhileAskingItRemembersWhatAnswered()
    {
        m_site->setPage("/slow", "<p>slow</p>");
        m_site->setDelay("/slow", 3000);
        shortcut("Links/Fine.url", m_site->url("/fine"));
        for (int i = 0; i < 4; ++i)
            shortcut(QStringLiteral("Links/Slow %1.url").arg(i), m_site->url("/slow") + "?" + QString::number(i));
        start();
        rightClickTree(m_main->SSTree1(), "Links");
        FavoritesMenu* menu = m_main->favoritesPanel()->menu();
        QTRY_VERIFY(menu->menu()->isVisible());
        chooseFromMenu(menu->menu(), menu->checkLinksAction());
        QPointer<LinkCheckDialog> dialog = m_main->findChild<LinkCheckDialog*>();
        QVERIFY(dialog);
        QTRY_VERIFY_WITH_TIMEOUT(dialog->check()->outcomes().size() == 1, 10000);
        QVERIFY(dialog->check()->running());
        dialog->close(); // deleted on close, the slow ones still asked for
        QTRY_VERIFY(!dialog);
        const LinkChecksFile::Checks checks = LinkChecksFile::read(LinkChecksFile::path());
        QCOMPARE(checks.size(), 1);
        QCOMPARE(checks.value(m_site->url("/fine")).verdict, QStringLiteral("fine"));
    }
    void aListsLinksAreCheckedFromTheListsMenu()
    {
        start(("Wall[#@!] [#@!] \r\nWall[#@!]Old[#@!]" + m_site->url("/moved") + "\r\nWall[#@!]Fine[#@!]" +
               m_site->url("/fine") + "\r\nOther[#@!] [#@!] \r\nOther[#@!]X[#@!]" + m_site->url("/gone") + "\r\n")
                  .toUtf8());
        m_main->TabStrip1()->setCurrentIndex(2);
        KeyedTree* lists = m_main->listsPanel()->SSTree2();
        rightClickTree(lists, "Wall");
        ListsMenu* menu = m_main->listsPanel()->menu();
        QTRY_VERIFY(menu->menu()->isVisible());
        chooseFromMenu(menu->menu(), menu->checkLinksAction());
        auto* dialog = m_main->findChild<LinkCheckDialog*>();
        QVERIFY(dialog);
        QTRY_VERIFY_WITH_TIMEOUT(!dialog->busy(), 20000);
        QCOMPARE(shown(dialog->results()), (QStringList{"Moved for good (1)", "  Old | List: Wall", "Fine (1)",
                                                        "  Fine | List: Wall"}));
        item(dialog->results(), "Old")->setCheckState(0, Qt::Checked);
        DialogService::setNextAnswer(DialogService::Answer::Yes);
        QTest::mouseClick(control<QPushButton>(dialog, "UpdateMovedBtn"), Qt::LeftButton);
        const QList<ListPageState> pages = m_main->verbs()->lists()->pages("WALL");
        QCOMPARE(pages.first().address, m_site->url("/new-home"));
        QCOMPARE(pages.first().title, QStringLiteral("Old"));
        QVERIFY(lists->node(m_site->url("/new-home") + "/Wall"));
    }
};

VANTREL_GUI_TEST_MAIN(TestLinkCheckDialog)
#include "tst_linkcheckdialog.moc"
