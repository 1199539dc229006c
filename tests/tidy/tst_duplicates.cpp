// The same page kept more than once, found in real shortcut files and in the lists; kept or sent
// to the trash through the verbs.
#include "ListRecords.h"
#include "VerbsHarness.h"
#include "shortcuts/ShortcutFile.h"
#include "tidy/Duplicates.h"
#include "verbs/FavoritesModel.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

class TestDuplicates : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    QString favorites() const { return h->folder() + "/Favorites"; }
    void shortcut(const QString& folder, const QString& title, const QString& url)
    {
        const QString path = favorites() + (folder.isEmpty() ? QString() : u'/' + folder);
        QVERIFY(QDir().mkpath(path));
        QVERIFY(CreateFavoriteFile(url, title, path + u'/'));
    }
    QList<Duplicates::Group> found(bool dropTracking = false)
    {
        h->verbs->favorites()->rebuild();
        QList<Duplicates::Page> pages = Duplicates::favoritePages(*h->verbs->favorites());
        Duplicates::readAddresses(pages);
        pages += Duplicates::listPages(*h->verbs->lists());
        return Duplicates::find(pages, dropTracking);
    }
    static QStringList keysOf(const Duplicates::Group& group)
    {
        QStringList keys;
        for (const Duplicates::Page& page : group.pages)
            keys << page.key;
        return keys;
    }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        globals().FavoritesPath = favorites();
        QVERIFY(QDir().mkpath(favorites()));
    }
    void cleanup() { h.reset(); }

    void favouritesOfTheSamePageAreGroupedWithTheirFolders()
    {
        shortcut("", "Debian", "https://www.debian.org/");
        shortcut("Linux", "Debian home", "HTTPS://WWW.Debian.org");
        shortcut("Linux/Old", "debian", "https://www.debian.org:443/#top");
        shortcut("Linux", "LWN", "https://lwn.net/");
        shortcut("News", "LWN again", "https://lwn.net");
        shortcut("News", "Other", "https://other.example/");
        const QList<Duplicates::Group> groups = found();
        QCOMPARE(groups.size(), 2);
        // Most copies first.
        QCOMPARE(groups.at(0).sameAs, QStringLiteral("https://www.debian.org"));
        QCOMPARE(keysOf(groups.at(0)), (QStringList{"Linux/Debian home", "Linux/Old/debian", "Debian"}));
        QCOMPARE(groups.at(0).pages.at(1).place, QStringLiteral("Linux/Old"));
        QCOMPARE(groups.at(0).pages.at(1).address, QStringLiteral("https://www.debian.org:443/#top"));
        QCOMPARE(keysOf(groups.at(1)), (QStringList{"Linux/LWN", "News/LWN again"}));
    }
    void trackingParametersCountOnlyWhenAsked()
    {
        shortcut("", "Shop", "https://shop.example/item?id=4");
        shortcut("", "Shop from the mail", "https://shop.example/item?id=4&utm_source=mail&utm_medium=email");
        QCOMPARE(found(false).size(), 0);
        QCOMPARE(found(true).size(), 1);
    }
    void aListsPagesAreComparedWithinTheirListAlone()
    {
        shortcut("", "A", "https://a.example/");
        h->setLists({{"Wall", {{"A", "https://a.example/"}, {"A again", "https://A.example"}, {"B", "https://b.example/"}}},
                     {"Other", {{"B", "https://b.example/"}}}});
        const QList<Duplicates::Group> groups = found();
        QCOMPARE(groups.size(), 1);
        QCOMPARE(keysOf(groups.at(0)), (QStringList{"https://a.example//Wall", "https://A.example/Wall"}));
        QCOMPARE(groups.at(0).pages.at(0).place, QStringLiteral("Wall"));
    }
    void aFavouriteMovedForGoodPointsToItsNewAddress()
    {
        shortcut("Linux", "Debian", "http://www.debian.org/");
        h->verbs->favorites()->rebuild();
        QSignalSpy changed(h->verbs->favorites(), &FavoritesModel::addressChanged);
        QVERIFY(h->verbs->moveFavorite("Linux/Debian", "https://www.debian.org/").ok());
        QCOMPARE(changed.size(), 1);
        QFile file(favorites() + "/Linux/Debian.URL");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
                 QByteArray("[DEFAULT]\r\nBASEURL=http://www.debian.org/\r\n[InternetShortcut]\r\nURL=https://www.debian.org/\r\n"));
        QCOMPARE(h->verbs->moveFavorite("Linux/Debian", "javascript:alert(1)").code, VerbResult::NotAWebAddress);
        QCOMPARE(h->verbs->moveFavorite("Linux", "https://x.example/").code, VerbResult::NoSuchPage);
        QCOMPARE(h->verbs->moveFavorite("Nope", "https://x.example/").code, VerbResult::NoSuchPage);
    }
    void aListsPageMovedForGoodKeepsItsPlace()
    {
        h->setLists({{"Wall", {{"A", "http://a.example/"}, {"B", "https://b.example/"}}}});
        globals().ListsChanged = false;
        QVERIFY(h->verbs->moveListPage("http://a.example//Wall", "https://a.example/").ok());
        QVERIFY(globals().ListsChanged);
        const QList<ListPageState> pages = h->verbs->lists()->pages("WALL");
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages.at(0).address, QStringLiteral("https://a.example/"));
        QCOMPARE(pages.at(0).title, QStringLiteral("A"));
        QVERIFY(h->verbs->lists()->contains("https://a.example//Wall"));
        // Onto an address the list holds already: refused.
        QCOMPARE(h->verbs->moveListPage("https://a.example//Wall", "https://b.example/").code, VerbResult::NoSuchPage);
    }
    void theCopiesLeftOutGoToTheTrashAndOutOfTheLists()
    {
        shortcut("", "Debian", "https://www.debian.org/");
        shortcut("Linux", "Debian", "https://www.debian.org");
        h->setLists({{"Wall", {{"A", "https://a.example/"}, {"A again", "https://a.example/#x"}}}});
        QList<Duplicates::Group> groups = found();
        QCOMPARE(groups.size(), 2);
        // XDG_DATA_HOME is the scratch folder's, so the trash is too.
        QVERIFY(h->verbs->trashFavorite("Linux/Debian").ok());
        QVERIFY(!QFile::exists(favorites() + "/Linux/Debian.URL"));
        QVERIFY(!h->verbs->favorites()->find("Linux/Debian"));
        QVERIFY(QFile::exists(qEnvironmentVariable("XDG_DATA_HOME") + "/Trash/files/Debian.URL"));
        globals().ListsChanged = false;
        QVERIFY(h->verbs->removeListPage("https://a.example/#x/Wall").ok());
        QVERIFY(globals().ListsChanged);
        QCOMPARE(h->verbs->lists()->pages("WALL").size(), 1);
        QCOMPARE(found().size(), 0);
        QCOMPARE(h->verbs->removeListPage("https://a.example/#x/Wall").code, VerbResult::NoSuchPage);
        QCOMPARE(h->verbs->trashFavorite("Linux/Debian").code, VerbResult::NoSuchPage);
    }
};

int main(int argc, char* argv[])
{
    // The trash of a scratch home, never the person's own.
    QTemporaryDir data;
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    QCoreApplication app(argc, argv);
    TestDuplicates test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_duplicates.moc"
