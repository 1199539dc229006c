// The lists tree shows the lists the verbs hold: what a door changes there shows in the tree, and
// the tree's Save writes it.
#include "ScriptedBrowserWindow.h"
#include "TestSupport.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsPanel.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "widgets/GradientButton.h"
#include "widgets/KeyedTree.h"

#include <QTest>

#include <memory>

class TestListsTree : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<Vantrel1> m_main;
    QList<ScriptedBrowserWindow*> m_created;

    KeyedTree* tree() { return m_main->listsPanel()->SSTree2(); }
    ListsModel* model() { return m_main->verbs()->lists(); }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        QVERIFY(writeAll(m_app->file("DefaultList.NLS"),
                         "News[#@!][#@!]\r\nNews[#@!]Paper[#@!]https://paper.example/\r\n"));
        LoadListFile(m_app->file("DefaultList.NLS"));
        m_main = std::make_unique<Vantrel1>();
        ScriptedBrowserWindow::installOn(m_main->webForm(), &m_created);
        m_main->Form_Load();
    }
    void cleanup()
    {
        m_main.reset();
        m_app.reset();
    }

    void theTreeShowsTheListsOfTheFile()
    {
        QCOMPARE(treeKeys(tree()), (QStringList{"News", "https://paper.example//News"}));
        QCOMPARE(model()->names(), QStringList{"News"});
    }

    void aListAndAPageAddedFromOutsideShowInTheTreeAndAreSaved()
    {
        QVERIFY(model()->addList("Door"));
        QVERIFY(model()->addPage("Door", "Wall", "https://wall.example/"));
        KeyedNode* list = tree()->node("Door");
        QVERIFY(list);
        QCOMPARE(list->listTag(), QStringLiteral("Door"));
        KeyedNode* page = tree()->node("https://wall.example//Door");
        QVERIFY(page);
        QCOMPARE(page->nodeText(), QStringLiteral("Wall"));
        QCOMPARE(page->tag(), QStringLiteral("https://wall.example/"));
        QCOMPARE(page->parentNode(), list);
        QTest::mouseClick(m_main->listsPanel()->SaveListBtn(), Qt::LeftButton);
        QCOMPARE(readAll(m_app->file("DefaultList.NLS")),
                 QByteArray("News[#@!] [#@!] \r\nNews[#@!]Paper[#@!]https://paper.example/\r\n"
                            "Door[#@!] [#@!] \r\nDoor[#@!]Wall[#@!]https://wall.example/\r\n"));
    }

    void aListRenamedFromOutsideIsRenamedInTheTree()
    {
        QVERIFY(model()->renameList("News", "Daily"));
        QVERIFY(!tree()->node("News"));
        QCOMPARE(tree()->node("Daily")->nodeText(), QStringLiteral("Daily"));
        KeyedNode* page = tree()->node("https://paper.example//Daily");
        QVERIFY(page);
        QCOMPARE(page->listTag(), QStringLiteral("Daily"));
    }

    void aListRenamedInTheTreeIsRenamedInTheLists()
    {
        KeyedNode* list = tree()->node("News");
        list->setText(0, "Morning"); // as the label editor ends
        QCOMPARE(model()->names(), QStringList{"Morning"});
        QCOMPARE(model()->pagesOf("Morning").size(), 1);
        QVERIFY(globals().ListsChanged);
    }
};

QTEST_MAIN(TestListsTree)
#include "tst_liststree.moc"
