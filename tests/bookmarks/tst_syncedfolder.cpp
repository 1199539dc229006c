#include "bookmarks/SyncedFolder.h"
#include "shortcuts/ShortcutFile.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// The Favorites folder as a tree with stable ids: what a file manager does to it keeps each
// entry's id, and a merged tree is written into real folders and shortcut files, numbered where a
// name is taken, deletions in the desktop's trash, nothing written over.
class TestSyncedFolder : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_root;

    QString at(const QString& path) const { return m_root + u'/' + path; }
    void shortcut(const QString& path, const QString& url) const { QVERIFY(WriteShortcutFile(at(path), url)); }
    void folder(const QString& path) const { QVERIFY(QDir().mkpath(at(path))); }
    static QString idOf(const SyncedFolder::Read& read, const QString& path)
    {
        for (auto it = read.places.cbegin(); it != read.places.cend(); ++it)
            if (it->path == path)
                return it.key();
        return QString();
    }
    QStringList trashed() const
    {
        return QDir(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

private slots:
    void init()
    {
        QVERIFY(m_dir.isValid());
        m_root = m_dir.filePath(QStringLiteral("Favorites-%1").arg(QDateTime::currentMSecsSinceEpoch()));
        QVERIFY(QDir().mkpath(m_root));
        qputenv("XDG_DATA_HOME", m_dir.filePath(QStringLiteral("data")).toUtf8());
        QDir(m_dir.filePath(QStringLiteral("data"))).removeRecursively();
        QVERIFY(QDir().mkpath(m_dir.filePath(QStringLiteral("data"))));
    }

    void theFolderReadsAsATree()
    {
        folder("News/Daily");
        shortcut("News/Paper.url", "https://paper.example/");
        shortcut("News/Daily/Radio.URL", "https://radio.example/");
        shortcut("Top.url", "https://top.example/" + QString(3000, u'a'));
        QFile(at("News/notes.txt")).open(QIODevice::WriteOnly); // not a favourite
        const SyncedFolder::Read read = SyncedFolder::read(m_root, {});
        QCOMPARE(read.tree.size(), 5);
        const QString news = idOf(read, "News"), daily = idOf(read, "News/Daily");
        QCOMPARE(read.tree.value(news), (TreeMerge::Item{"", true, "News", ""}));
        QCOMPARE(read.tree.value(daily), (TreeMerge::Item{news, true, "Daily", ""}));
        QCOMPARE(read.tree.value(idOf(read, "News/Daily/Radio.URL")),
                 (TreeMerge::Item{daily, false, "Radio", "https://radio.example/"}));
        // The whole address, however long.
        QCOMPARE(read.tree.value(idOf(read, "Top.url")).url.size(), 3000 + 20);
        QVERIFY(TreeMerge::isWhole(read.tree));
    }

    void anEntryKeepsItsIdWhateverAFileManagerDoes()
    {
        folder("News");
        folder("Work");
        shortcut("News/Paper.url", "https://paper.example/");
        shortcut("News/Radio.url", "https://radio.example/");
        shortcut("Mail.url", "https://mail.example/");
        const SyncedFolder::Read first = SyncedFolder::read(m_root, {});
        QCOMPARE(SyncedFolder::read(m_root, first.places).tree, first.tree); // read again: the same

        QVERIFY(QFile::rename(at("News/Paper.url"), at("Work/Morning paper.url"))); // moved and renamed
        QVERIFY(QDir().rename(at("News"), at("Work/News"))); // a folder moved with what it holds
        QVERIFY(QFile::remove(at("Mail.url")));
        shortcut("Mail.url", "https://mail.example/inbox"); // saved again: another file, same place
        shortcut("New.url", "https://new.example/");
        const SyncedFolder::Read second = SyncedFolder::read(m_root, first.places);

        QCOMPARE(idOf(second, "Work/Morning paper.url"), idOf(first, "News/Paper.url"));
        QCOMPARE(second.tree.value(idOf(first, "News/Paper.url")).parent, idOf(first, "Work"));
        QCOMPARE(idOf(second, "Work/News"), idOf(first, "News"));
        QCOMPARE(idOf(second, "Work/News/Radio.url"), idOf(first, "News/Radio.url"));
        QCOMPARE(idOf(second, "Mail.url"), idOf(first, "Mail.url"));
        QCOMPARE(second.tree.value(idOf(first, "Mail.url")).url, QStringLiteral("https://mail.example/inbox"));
        const QString added = idOf(second, "New.url");
        QVERIFY(!added.isEmpty() && !first.tree.contains(added));
        QCOMPARE(second.tree.size(), 6);
    }

    void aMergedTreeIsWrittenIntoTheFolder()
    {
        folder("News");
        folder("Old");
        shortcut("News/Paper.url", "https://paper.example/");
        shortcut("Old/Gone.url", "https://gone.example/");
        QFile keep(at("News/Radio.url"));
        QVERIFY(keep.open(QIODevice::WriteOnly));
        keep.write("[InternetShortcut]\r\nURL=https://radio.example/\r\nIconIndex=3\r\n");
        keep.close();
        const SyncedFolder::Read now = SyncedFolder::read(m_root, {});
        const QString news = idOf(now, "News"), old = idOf(now, "Old"), paper = idOf(now, "News/Paper.url"),
                      radio = idOf(now, "News/Radio.url");

        TreeMerge::Tree target = now.tree;
        target.remove(old);
        target.remove(idOf(now, "Old/Gone.url"));
        target.insert("w", {"", true, "Work/Home", ""});                   // "/" cannot stand in a name
        target.insert("w2", {"w", true, "Projects", ""});
        target.insert("b", {"w2", false, "docs.rs", "https://docs.rs/"}); // the dot stays
        target[paper].title = "Morning paper";
        target[news].parent = "w";
        target[radio].url = "https://radio.example/live";

        const SyncedFolder::Applied applied = SyncedFolder::apply(m_root, now, target);
        QVERIFY2(applied.failed.isEmpty(), qPrintable(applied.failed.join(u'\n')));
        QCOMPARE(applied.made, 3);
        QCOMPARE(applied.moved, 2);
        QCOMPARE(applied.readdressed, 1);
        QCOMPARE(applied.trashed, 1); // the folder, with what it held
        QVERIFY(QFile::exists(at("Work-Home/Projects/docs.rs.URL")));
        QVERIFY(QFile::exists(at("Work-Home/News/Morning paper.URL")));
        QVERIFY(!QFile::exists(at("Old")));
        QCOMPARE(trashed(), QStringList{"Old"});
        // The address rewritten in place: the shortcut's other lines and line ends stay.
        QFile radioFile(at("Work-Home/News/Radio.url"));
        QVERIFY(radioFile.open(QIODevice::ReadOnly));
        QCOMPARE(radioFile.readAll(), QByteArray("[InternetShortcut]\r\nURL=https://radio.example/live\r\nIconIndex=3\r\n"));

        // Read back with what the apply says: the same ids, the target but for the name a file can hold.
        const SyncedFolder::Read after = SyncedFolder::read(m_root, applied.places);
        TreeMerge::Tree expected = target;
        expected["w"].title = "Work-Home";
        QCOMPARE(after.tree, expected);
    }

    void aTakenNameIsNumberedAndNothingIsWrittenOver()
    {
        shortcut("Shop.url", "https://shop.example/");
        QFile(at("Notes.URL")).open(QIODevice::WriteOnly); // unreadable as a shortcut, yet a file
        const SyncedFolder::Read now = SyncedFolder::read(m_root, {});
        TreeMerge::Tree target = now.tree;
        target.insert("a", {"", false, "Shop", "https://other-shop.example/"});
        const SyncedFolder::Applied applied = SyncedFolder::apply(m_root, now, target);
        QVERIFY(applied.failed.isEmpty());
        QVERIFY(QFile::exists(at("Shop (2).URL")));
        QCOMPARE(SyncedFolder::read(m_root, applied.places).tree.value("a").url, QStringLiteral("https://other-shop.example/"));
        QCOMPARE(SyncedFolder::read(m_root, applied.places).tree.value(idOf(now, "Shop.url")).url,
                 QStringLiteral("https://shop.example/"));
    }

    void twoShortcutsSwappingNamesKeepThem()
    {
        shortcut("A.url", "https://a.example/");
        shortcut("B.url", "https://b.example/");
        const SyncedFolder::Read now = SyncedFolder::read(m_root, {});
        const QString a = idOf(now, "A.url"), b = idOf(now, "B.url");
        TreeMerge::Tree target = now.tree;
        target[a].title = "B";
        target[b].title = "C";
        const SyncedFolder::Applied applied = SyncedFolder::apply(m_root, now, target);
        QVERIFY(applied.failed.isEmpty());
        QCOMPARE(SyncedFolder::read(m_root, applied.places).tree, target);
    }

    void aDeletedFolderLetsWhatIsKeptOutFirst()
    {
        folder("Old/Deep");
        shortcut("Old/Deep/Keep.url", "https://keep.example/");
        shortcut("Old/Drop.url", "https://drop.example/");
        const SyncedFolder::Read now = SyncedFolder::read(m_root, {});
        const QString keep = idOf(now, "Old/Deep/Keep.url");
        TreeMerge::Tree target{{keep, {"", false, "Keep", "https://keep.example/"}}};
        const SyncedFolder::Applied applied = SyncedFolder::apply(m_root, now, target);
        QVERIFY(applied.failed.isEmpty());
        QVERIFY(QFile::exists(at("Keep.URL")));
        QVERIFY(!QFile::exists(at("Old")));
        // The shortcut that went alone first, then the folder once what it kept had moved out.
        QCOMPARE(trashed(), (QStringList{"Drop.url", "Old"}));
        QCOMPARE(SyncedFolder::read(m_root, applied.places).tree, target);
    }

    void namesSharedInAFolderAreToldApartAlikeEverywhere()
    {
        const TreeMerge::Tree tree{{"b", {"", true, "F1", ""}},
                                   {"a", {"", true, "F1", ""}},
                                   {"c", {"", true, "F1 (2)", ""}},
                                   {"d", {"", false, "F1", "https://f.example/"}}, // a shortcut: another name
                                   {"e", {"", false, "Shop", "https://shop.example/"}},
                                   {"f", {"", false, "Shop", "https://shop.example/other"}},
                                   {"g", {"a", false, "Shop", "https://shop.example/"}}}; // another folder
        TreeMerge::Tree expected = tree;
        expected["b"].title = "F1 (3)"; // "F1 (2)" is taken already
        expected["f"].title = "Shop (2)";
        QCOMPARE(SyncedFolder::distinctNames(tree), expected);
        QCOMPARE(SyncedFolder::distinctNames(expected), expected);
    }

    void whatTheSystemRefusesIsSaid()
    {
        folder("Locked");
        const SyncedFolder::Read now = SyncedFolder::read(m_root, {});
        TreeMerge::Tree target = now.tree;
        target.insert("x", {idOf(now, "Locked"), false, "Page", "https://page.example/"});
        target.insert("y", {"", false, "Free", "https://free.example/"});
        // The folder became a file after it was read: nothing can be written into it.
        QVERIFY(QDir(at("Locked")).removeRecursively());
        QVERIFY(QFile(at("Locked")).open(QIODevice::WriteOnly));
        const SyncedFolder::Applied applied = SyncedFolder::apply(m_root, now, target);
        QCOMPARE(applied.failed.size(), 1);
        QVERIFY(applied.failed.first().contains("Locked/Page.URL"));
        QCOMPARE(applied.made, 1);
        QVERIFY(QFile::exists(at("Free.URL")));
    }
};

QTEST_GUILESS_MAIN(TestSyncedFolder)
#include "tst_syncedfolder.moc"
