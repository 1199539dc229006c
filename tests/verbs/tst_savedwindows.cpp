// The open windows kept as a new list: their pages in slot order, under a name of the moment, with
// a run's own list left as it was.
#include "VerbsHarness.h"

#include <QTest>

#include <memory>

class TestSavedWindows : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;

    QStringList pagesOf(const QString& list) const
    {
        QStringList pages;
        for (const ListPageState& page : h->verbs->lists()->pages(list.toUpper()))
            pages << page.title + " -> " + page.address;
        return pages;
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->clock.setNow(QDateTime(QDate(2026, 11, 25), QTime(14, 5, 30)));
        h->setLists({{QStringLiteral("Shop"), {{"A", "https://a.example/"}, {"B", "https://b.example/"}}}});
    }
    void cleanup() { h.reset(); }

    void thePagesOfTheOpenWindowsBecomeAListInSlotOrder()
    {
        QVERIFY(h->verbs->openPage("https://three.example/", "Three", OpenWhere::Slot, 3).ok());
        QVERIFY(h->verbs->openPage("https://one.example/", QString(), OpenWhere::Slot, 1).ok());
        h->window(3)->load("https://three.example/", "Page three");
        h->window(1)->load("https://one.example/", "Page one");
        // A window that shows no web page has nothing to keep.
        QVERIFY(h->verbs->openPage("https://five.example/", QString(), OpenWhere::Slot, 5).ok());
        h->window(5)->load("about:blank", QString());
        globals().ListsChanged = false;
        QString made;
        QVERIFY(h->verbs->saveOpenWindowsAsList(&made).ok());
        QCOMPARE(made, QStringLiteral("Open Windows 2026-11-25 14:05"));
        QCOMPARE(pagesOf(made), (QStringList{"Page one -> https://one.example/", "Page three -> https://three.example/"}));
        QVERIFY(globals().ListsChanged);
        // The same minute again: numbered as a new list is.
        QVERIFY(h->verbs->saveOpenWindowsAsList(&made).ok());
        QCOMPARE(made, QStringLiteral("Open Windows 2026-11-25 14:05_2"));
        QCOMPARE(h->verbs->lists()->names(),
                 (QStringList{"Shop", "Open Windows 2026-11-25 14:05", "Open Windows 2026-11-25 14:05_2"}));
    }
    void aRunsListIsLeftAsItWas()
    {
        QVERIFY(h->verbs->runList({QStringLiteral("Shop"), 30, true, false, false}, Caller::Outside).ok());
        h->verbs->tick();
        QVERIFY(h->verbs->openPage("https://other.example/", "Other", OpenWhere::NewWindow, 0, Caller::Outside).ok());
        const QStringList before = pagesOf("Shop");
        QString made;
        QVERIFY(h->verbs->saveOpenWindowsAsList(&made).ok());
        QCOMPARE(pagesOf("Shop"), before);
        QVERIFY(h->verbs->runState().running);
        // The run's window is an open window like the others.
        QCOMPARE(pagesOf(made).size(), 2);
        QVERIFY(pagesOf(made).join(' ').contains("https://a.example/"));
        QVERIFY(pagesOf(made).join(' ').contains("https://other.example/"));
    }
    void aListIsMadeOfPagesEachOnce()
    {
        QString made;
        QVERIFY(h->verbs->makeList("Link check", {{"A", "https://a.example/"}, {"B", "https://b.example/"},
                                                  {"A again", "https://a.example/"}}, &made).ok());
        QCOMPARE(made, QStringLiteral("Link check"));
        QCOMPARE(pagesOf(made), (QStringList{"A -> https://a.example/", "B -> https://b.example/"}));
        QVERIFY(h->verbs->makeList("Link check", {{"C", "https://c.example/"}}, &made).ok());
        QCOMPARE(made, QStringLiteral("Link check_2"));
    }
    void withNoWindowOrNoRoomNothingIsMade()
    {
        QCOMPARE(h->verbs->saveOpenWindowsAsList().code, VerbResult::NoOpenWindows);
        QCOMPARE(h->verbs->saveOpenWindowsAsList().reason(), QStringLiteral("no window shows a web page"));
        QVERIFY(h->verbs->openPage("https://one.example/", QString(), OpenWhere::NewWindow).ok());
        // 999 of the 1000 records of lists and pages taken: no room for a list and its page.
        QList<ListPageState> many;
        for (int i = 0; i < 998; ++i)
            many.append({QString::number(i), QStringLiteral("https://p%1.example/").arg(i)});
        h->setLists({{QStringLiteral("Shop"), many}});
        QCOMPARE(h->verbs->lists()->count(), 999);
        QCOMPARE(h->verbs->saveOpenWindowsAsList().code, VerbResult::ListsFull);
        QCOMPARE(h->verbs->lists()->count(), 999);
        QVERIFY(h->verbs->saveOpenWindowsAsList().reason().contains("1000 lists and pages"));
        // Room for exactly a list and its page.
        many.removeLast();
        h->setLists({{QStringLiteral("Shop"), many}});
        QVERIFY(h->verbs->saveOpenWindowsAsList().ok());
        QCOMPARE(h->verbs->lists()->count(), 1000);
    }
};

QTEST_GUILESS_MAIN(TestSavedWindows)
#include "tst_savedwindows.moc"
