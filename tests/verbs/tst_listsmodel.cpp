// The favourite lists without a widget: what the list file's records make of them, what adding and
// renaming do, and the records they give back for the file.
#include "verbs/ListsModel.h"

#include <QSignalSpy>
#include <QTest>

class TestListsModel : public QObject
{
    Q_OBJECT

    QList<QString> m_names, m_titles, m_urls;

    void record(const QString& name, const QString& title = QString(), const QString& url = QString())
    {
        m_names << name;
        m_titles << title;
        m_urls << url;
    }
    PageRecords::Arrays arrays() { return {m_names, m_titles, m_urls}; }

private slots:
    void init()
    {
        m_names.clear();
        m_titles.clear();
        m_urls.clear();
    }

    void recordsMakeListsAndTheirPagesAndLeaveOutWhatCannotBe()
    {
        record("News");
        record("News", "Paper", "https://paper.example/");
        record("News", "Paper again", "https://paper.example/"); // the list holds it already
        record("Gone", "Orphan", "https://orphan.example/");     // no such list
        record("News"); // a second list of that name
        record("Work", " ", " ");
        record("Work", "Mail", "https://mail.example/");
        ListsModel model;
        QSignalSpy reset(&model, &ListsModel::reset);
        model.load(arrays(), int(m_names.size()));
        QCOMPARE(reset.size(), 1);
        QCOMPARE(model.names(), (QStringList{"News", "Work"}));
        QCOMPARE(model.count(), 4);
        QCOMPARE(model.pages("NEWS"), (QList<ListPageState>{{"Paper", "https://paper.example/"}}));
        QCOMPARE(model.pages("news"), QList<ListPageState>()); // found by the name upper-cased
        QCOMPARE(model.pagesOf("Work"), (QList<ListPageState>{{"Mail", "https://mail.example/"}}));
        QVERIFY(model.contains(ListsModel::pageKey("https://mail.example/", "Work")));
    }

    void recordsComeBackInTheOrderTheEntriesWereMade()
    {
        ListsModel model;
        QVERIFY(model.addList("B"));
        QVERIFY(model.addList("A"));
        QVERIFY(model.addPage("B", "One", "https://one.example/"));
        QVERIFY(model.addPage("A", "Two", "https://two.example/"));
        QList<QString> names(10), titles(10), urls(10);
        const int n = model.toRecords({names, titles, urls});
        QCOMPARE(n, 4);
        QCOMPARE(names.first(4), (QList<QString>{"B", "A", "B", "A"}));
        QCOMPARE(titles.first(4), (QList<QString>{" ", " ", "One", "Two"}));
        QCOMPARE(urls.first(4), (QList<QString>{" ", " ", "https://one.example/", "https://two.example/"}));
        // Records beyond the arrays are dropped.
        QList<QString> few(3), fewTitles(3), fewUrls(3);
        QCOMPARE(model.toRecords({few, fewTitles, fewUrls}), 3);
    }

    void addingTakesEachKeyOnce()
    {
        ListsModel model;
        QSignalSpy lists(&model, &ListsModel::groupAdded);
        QSignalSpy pages(&model, &ListsModel::pageAdded);
        QVERIFY(model.addList("News"));
        QVERIFY(!model.addList("News"));
        QVERIFY(model.addPage("News", "Paper", "https://paper.example/"));
        QVERIFY(!model.addPage("News", "Other title", "https://paper.example/"));
        QVERIFY(!model.addPage("Nowhere", "Paper", "https://paper.example/"));
        QCOMPARE(lists.size(), 1);
        QCOMPARE(pages.size(), 1);
        QCOMPARE(pages[0][0].toString(), QStringLiteral("News"));
        QCOMPARE(pages[0][2].toString(), QStringLiteral("https://paper.example/"));
    }

    void renamingAListTakesItsPagesAlong()
    {
        ListsModel model;
        model.addList("News");
        model.addList("Work");
        model.addPage("News", "Paper", "https://paper.example/");
        QSignalSpy renamed(&model, &ListsModel::listRenamed);
        QVERIFY(!model.renameList("News", "Work")); // two lists cannot share a name
        QVERIFY(model.renameList("News", "Daily"));
        QCOMPARE(renamed.size(), 1);
        QCOMPARE(model.names(), (QStringList{"Daily", "Work"}));
        QCOMPARE(model.pagesOf("Daily").size(), 1);
        QVERIFY(model.contains(ListsModel::pageKey("https://paper.example/", "Daily")));
        QVERIFY(!model.contains(ListsModel::pageKey("https://paper.example/", "News")));
        QVERIFY(!model.renameList("Nowhere", "Else"));
    }

    void aPageKeepsItsKeyWhenItsNewOneIsTaken()
    {
        // A list named like a page's key: the page cannot take that key, and keeps its own.
        ListsModel model;
        model.addList("A");
        model.addPage("A", "P", "https://p.example/");
        model.addList("https://p.example//B");
        QVERIFY(model.renameList("A", "B"));
        QVERIFY(model.contains(ListsModel::pageKey("https://p.example/", "A")));
        QCOMPARE(model.pagesOf("B").size(), 1);
    }

    void aPagesTitleCanBeEdited()
    {
        ListsModel model;
        model.addList("News");
        model.addPage("News", "Paper", "https://paper.example/");
        QVERIFY(model.setTitle(ListsModel::pageKey("https://paper.example/", "News"), "The Paper"));
        QVERIFY(!model.setTitle("News", "A list has no title of its own"));
        QCOMPARE(model.pagesOf("News")[0].title, QStringLiteral("The Paper"));
    }
};

QTEST_GUILESS_MAIN(TestListsModel)
#include "tst_listsmodel.moc"
