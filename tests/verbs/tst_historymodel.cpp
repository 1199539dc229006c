// The history without a widget: the eight windows' groups, the records of the history file, each
// page once per window, and the records it gives back.
#include "verbs/HistoryModel.h"

#include <QSignalSpy>
#include <QTest>

class TestHistoryModel : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyHistoryHasTheEightWindowsGroups()
    {
        HistoryModel history;
        QSignalSpy reset(&history, &HistoryModel::reset);
        history.clear();
        QCOMPARE(reset.size(), 1);
        QCOMPARE(history.groups().size(), 8);
        QCOMPARE(history.groups().first(), QStringLiteral("Internet Explorer 1"));
        QCOMPARE(history.groups().last(), QStringLiteral("Internet Explorer 8"));
        QCOMPARE(history.count(), 8);
    }

    void theRecordsJoinTheirWindowsGroups()
    {
        HistoryModel history;
        history.clear();
        QList<QString> groups{"Internet Explorer 2", "Internet Explorer 2", "Internet Explorer 9", "Internet Explorer 2"};
        QList<QString> titles{" ", "Paper", "Nowhere", "Paper again"};
        QList<QString> urls{" ", "https://paper.example/", "https://nowhere.example/", "https://paper.example/"};
        history.load({groups, titles, urls}, 4);
        // The group record is there already, a ninth window is none, and a page is kept once.
        QCOMPARE(history.count(), 9);
        QCOMPARE(history.pagesOf("Internet Explorer 2"), (QList<ListPageState>{{"Paper", "https://paper.example/"}}));
    }

    void aWindowsPageIsRecordedOnceAndWrittenAfterTheGroups()
    {
        HistoryModel history;
        history.clear();
        QSignalSpy added(&history, &HistoryModel::pageAdded);
        QVERIFY(history.record("Internet Explorer 1", "Home", "https://home.example/"));
        QVERIFY(!history.record("Internet Explorer 1", "Home later", "https://home.example/"));
        QVERIFY(history.record("Internet Explorer 3", "Home", "https://home.example/"));
        QVERIFY(!history.record("Internet Explorer 12", "Home", "https://home.example/"));
        QCOMPARE(added.size(), 2);
        QList<QString> groups(20), titles(20), urls(20);
        QCOMPARE(history.toRecords({groups, titles, urls}), 10);
        QCOMPARE(groups[0], QStringLiteral("Internet Explorer 1"));
        QCOMPARE(titles[0], QStringLiteral(" "));
        QCOMPARE(groups[8], QStringLiteral("Internet Explorer 1"));
        QCOMPARE(titles[8], QStringLiteral("Home"));
        QCOMPARE(groups[9], QStringLiteral("Internet Explorer 3"));
        QCOMPARE(urls[9], QStringLiteral("https://home.example/"));
    }
};

QTEST_GUILESS_MAIN(TestHistoryModel)
#include "tst_historymodel.moc"
