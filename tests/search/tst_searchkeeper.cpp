// The one search index of the three trees kept in step with the Favorites folder, the lists and the
// history, made away from the window's thread.
#include "VerbsHarness.h"
#include "search/SearchKeeper.h"
#include "shortcuts/ShortcutFile.h"
#include "verbs/FavoritesModel.h"
#include "verbs/HistoryModel.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

class TestSearchKeeper : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    std::unique_ptr<SearchKeeper> keeper;
    QString favorites() const { return h->folder() + "/Favorites"; }

    QStringList found(const QString& query, SearchIndex::Tree tree)
    {
        const std::shared_ptr<const SearchIndex> index = keeper->index();
        QStringList keys;
        for (const int i : index->find(query, tree, 50).best)
            keys << index->entry(i).key + " -> " + index->entry(i).address;
        return keys;
    }
    bool settled()
    {
        return QTest::qWaitFor([this] { return !keeper->busy(); }, 10000);
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        globals().FavoritesPath = favorites();
        QVERIFY(QDir().mkpath(favorites() + "/Linux"));
        QVERIFY(CreateFavoriteFile("https://www.debian.org/", "Debian", favorites() + "/Linux/"));
        h->verbs->favorites()->rebuild();
        h->setLists({{"Wall", {{"Weather", "https://weather.example/"}}}});
        keeper = std::make_unique<SearchKeeper>(h->verbs.get());
    }
    void cleanup()
    {
        keeper.reset();
        h.reset();
    }

    void theThreeTreesAreFoundEachInItsOwn()
    {
        QSignalSpy changed(keeper.get(), &SearchKeeper::changed);
        keeper->rebuildNow();
        QVERIFY(settled());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(found("debian", SearchIndex::Tree::Favorites), QStringList{"Linux/Debian -> https://www.debian.org/"});
        QCOMPARE(found("weather", SearchIndex::Tree::Lists), QStringList{"https://weather.example//Wall -> https://weather.example/"});
        QVERIFY(found("weather", SearchIndex::Tree::Favorites).isEmpty());
        h->verbs->history()->clear(); // the eight windows, each with its history
        QVERIFY(h->verbs->history()->record("Internet Explorer 1", "Release notes", "https://notes.example/"));
        QVERIFY(settled());
        QCOMPARE(found("release", SearchIndex::Tree::History).size(), 1);
    }
    void changesAreFollowedAMomentLaterInOneNewIndex()
    {
        keeper->rebuildNow();
        QVERIFY(settled());
        QSignalSpy changed(keeper.get(), &SearchKeeper::changed);
        // A burst: a favourite written, a list page added, another favourite.
        QVERIFY(CreateFavoriteFile("https://lwn.net/", "LWN", favorites() + "/Linux/"));
        QVERIFY(h->verbs->favorites()->addShortcut("Linux", "LWN.URL"));
        QVERIFY(h->verbs->lists()->addPage("Wall", "Traffic", "https://traffic.example/"));
        QVERIFY(CreateFavoriteFile("https://kernel.org/", "Kernel", favorites() + "/"));
        QVERIFY(h->verbs->favorites()->addShortcut(QString(), "Kernel.URL"));
        QVERIFY(settled());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(found("lwn", SearchIndex::Tree::Favorites).size(), 1);
        QCOMPARE(found("kernel", SearchIndex::Tree::Favorites).size(), 1);
        QCOMPARE(found("traffic", SearchIndex::Tree::Lists).size(), 1);
        // Taken out: gone from the index too.
        QVERIFY(h->verbs->favorites()->remove("Linux/LWN"));
        QVERIFY(settled());
        QCOMPARE(found("lwn", SearchIndex::Tree::Favorites), QStringList{});
    }
    void aShortcutRewrittenIsReadAgain()
    {
        keeper->rebuildNow();
        QVERIFY(settled());
        const QString path = favorites() + "/Linux/Debian.URL";
        QVERIFY(WriteShortcutFile(path, "https://www.debian.org/moved/"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
        file.close();
        h->verbs->favorites()->rebuild();
        QVERIFY(settled());
        QCOMPARE(found("moved", SearchIndex::Tree::Favorites), QStringList{"Linux/Debian -> https://www.debian.org/moved/"});
    }
};

QTEST_GUILESS_MAIN(TestSearchKeeper)
#include "tst_searchkeeper.moc"
