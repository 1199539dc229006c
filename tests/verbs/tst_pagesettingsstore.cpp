// The page settings follow the lists without a widget: set and saved, taken along when a list is
// renamed, dropped with a page that left its list, and never a change to the lists themselves.
#include "core/Globals.h"
#include "settings/ListPagesFile.h"
#include "verbs/ListsModel.h"
#include "verbs/PageSettingsStore.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class TestPageSettingsStore : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;

    static PageSettings seconds(int n)
    {
        PageSettings s;
        s.seconds = n;
        return s;
    }

    static void load(ListsModel& model, const QList<std::array<QString, 3>>& records)
    {
        QList<QString> names, titles, urls;
        for (const auto& r : records) {
            names << r[0];
            titles << r[1];
            urls << r[2];
        }
        model.load({names, titles, urls}, int(records.size()));
    }

private slots:
    void init()
    {
        resetGlobals();
        m_dir = std::make_unique<QTemporaryDir>();
        globals().AppPath = m_dir->path();
    }

    void aPageGetsItsSettingsAndTheFileKeepsThem()
    {
        ListsModel lists;
        PageSettingsStore store(&lists, nullptr);
        load(lists, {{"Walls", " ", " "}, {"Walls", "A", "http://a/"}, {"Walls", "B", "http://b/"}});
        QSignalSpy changed(&store, &PageSettingsStore::changed);
        QVERIFY(store.set("walls", "http://a/", seconds(10)).ok());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(store.of("WALLS", "http://a/").seconds, 10);
        QVERIFY(!store.has("Walls", "http://b/"));
        QCOMPARE(ListPagesFile::read(ListPagesFile::path()).size(), 1);

        // Another start reads them back.
        ListsModel again;
        PageSettingsStore reread(&again, nullptr);
        load(again, {{"Walls", " ", " "}, {"Walls", "A renamed", "http://a/"}, {"Walls", "B", "http://b/"}});
        QCOMPARE(reread.of("Walls", "http://a/").seconds, 10);

        // Empty settings take them away.
        QVERIFY(store.set("Walls", "http://a/", PageSettings()).ok());
        QVERIFY(!store.has("Walls", "http://a/"));
        QVERIFY(ListPagesFile::read(ListPagesFile::path()).isEmpty());
    }

    void aRenamedListTakesItsPagesSettingsAlong()
    {
        ListsModel lists;
        PageSettingsStore store(&lists, nullptr);
        load(lists, {{"Walls", " ", " "}, {"Walls", "A", "http://a/"}});
        QVERIFY(store.set("Walls", "http://a/", seconds(20)).ok());
        QVERIFY(lists.renameList("Walls", "Screens"));
        QCOMPARE(store.of("Screens", "http://a/").seconds, 20);
        QVERIFY(!store.has("Walls", "http://a/"));
        QCOMPARE(ListPagesFile::read(ListPagesFile::path()).value(0).list, QStringLiteral("Screens"));
    }

    void aPageNoLongerInItsListLosesItsSettingsAndTheListsStayAsTheyAre()
    {
        ListsModel lists;
        PageSettingsStore store(&lists, nullptr);
        load(lists, {{"Walls", " ", " "}, {"Walls", "A", "http://a/"}, {"Walls", "B", "http://b/"},
                     {"Gone", " ", " "}, {"Gone", "C", "http://c/"}});
        QVERIFY(store.set("Walls", "http://a/", seconds(10)).ok());
        QVERIFY(store.set("Walls", "http://b/", seconds(20)).ok());
        QVERIFY(store.set("Gone", "http://c/", seconds(30)).ok());
        // The list file edited by hand: page B and the list "Gone" are no more; A moved to the end.
        load(lists, {{"Walls", " ", " "}, {"Walls", "New", "http://new/"}, {"Walls", "A", "http://a/"}});
        QCOMPARE(store.entries().size(), 1);
        QCOMPARE(store.of("Walls", "http://a/").seconds, 10);
        QCOMPARE(ListPagesFile::read(ListPagesFile::path()).size(), 1);
        QCOMPARE(lists.pages("WALLS").size(), 2);

        // Lists that could not be read leave the settings alone.
        load(lists, {});
        QCOMPARE(store.entries().size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestPageSettingsStore)
#include "tst_pagesettingsstore.moc"
