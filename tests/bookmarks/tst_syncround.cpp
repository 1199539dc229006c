#include "bookmarks/SyncFile.h"
#include "bookmarks/SyncRound.h"

#include "TestSupport.h"
#include "TwoMachines.h"

#include <QTemporaryDir>
#include <QTest>

// Two machines keep their Favorites folders in step through one shared file: what one makes,
// renames, moves or deletes the other gets; what both changed is kept twice; a damaged, half-written
// or newer file is neither applied nor written over; and over hundreds of random edits on both
// sides in turns, both folders hold the same tree and no address vanishes that was not deleted.
class TestSyncRound : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_case = 0;

    std::unique_ptr<TwoMachines> machines(quint32 seed = 1)
    {
        const QString folder = m_dir.filePath(QString::number(++m_case));
        qputenv("XDG_DATA_HOME", (folder + QStringLiteral("/data")).toUtf8());
        QDir().mkpath(folder + QStringLiteral("/data"));
        return std::make_unique<TwoMachines>(folder, seed);
    }
    static void shortcut(const QString& path, const QString& url) { QVERIFY(WriteShortcutFile(path, url)); }
    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QString titleAt(const TreeMerge::Tree& tree, const QString& url)
    {
        for (const TreeMerge::Item& item : tree)
            if (item.url == url)
                return item.title;
        return QString();
    }

private slots:
    void whatOneMachineDoesTheOtherGets()
    {
        auto two = machines();
        const QString desk = two->machine(0).favorites, laptop = two->machine(1).favorites;
        QDir().mkpath(desk + "/News");
        shortcut(desk + "/News/Paper.url", "https://paper.example/");
        shortcut(desk + "/Mail.url", "https://mail.example/");
        const SyncRound::Outcome first = two->round(0);
        QVERIFY(first.problem.isEmpty());
        QVERIFY(first.fileWritten);
        QVERIFY(!first.folderChanged);
        QCOMPARE(SyncFile::read(bytesOf(two->file())).machine, QStringLiteral("desk"));

        const SyncRound::Outcome second = two->round(1);
        QVERIFY(second.folderChanged);
        QCOMPARE(second.made, 3);
        QVERIFY(QFile::exists(laptop + "/News/Paper.URL"));
        QCOMPARE(two->tree(1), two->tree(0));

        // Renamed, moved and deleted on the laptop; on the desk at its next round.
        QVERIFY(QFile::rename(laptop + "/News/Paper.URL", laptop + "/Morning paper.URL"));
        QVERIFY(QFile::remove(laptop + "/Mail.URL"));
        QVERIFY(two->round(1).fileWritten);
        const SyncRound::Outcome back = two->round(0, true);
        QCOMPARE(back.moved, 1);
        QCOMPARE(back.trashed, 1);
        QVERIFY(QFile::exists(desk + "/Morning paper.URL"));
        QVERIFY(!QFile::exists(desk + "/Mail.url"));
        QVERIFY(QFile::exists(qEnvironmentVariable("XDG_DATA_HOME") + "/Trash/files/Mail.url"));
        QCOMPARE(two->tree(1), two->tree(0));
        QVERIFY(two->settle());
        QVERIFY(back.logText(two->file()).contains("1 moved or renamed, 1 sent to the trash"));
    }

    void theSameFavoritesOnBothMachinesAreNotDoubled()
    {
        auto two = machines();
        for (int i = 0; i < 2; ++i) {
            QDir().mkpath(two->machine(i).favorites + "/News");
            shortcut(two->machine(i).favorites + "/News/Paper.url", "https://paper.example/");
        }
        shortcut(two->machine(1).favorites + "/Only here.url", "https://only.example/");
        two->round(0);
        const SyncRound::Outcome joined = two->round(1);
        QCOMPARE(joined.made, 0);
        QVERIFY(two->settle());
        QCOMPARE(two->tree(0).size(), 3);
        QCOMPARE(two->tree(1), two->tree(0));
    }

    void anEntryChangedOnBothSidesIsKeptTwice()
    {
        auto two = machines();
        const QString desk = two->machine(0).favorites, laptop = two->machine(1).favorites;
        shortcut(desk + "/Paper.url", "https://paper.example/");
        QVERIFY(two->settle());
        shortcut(desk + "/Paper.url", "https://paper.example/desk");
        shortcut(laptop + "/Paper.URL", "https://paper.example/laptop");
        two->round(0);
        const SyncRound::Outcome both = two->round(1);
        QCOMPARE(both.copies, QStringList{"Paper (from desk)"});
        QVERIFY(two->settle());
        const TreeMerge::Tree tree = two->tree(1);
        QCOMPARE(titleAt(tree, "https://paper.example/laptop"), QStringLiteral("Paper"));
        QCOMPARE(titleAt(tree, "https://paper.example/desk"), QStringLiteral("Paper (from desk)"));
        QCOMPARE(two->tree(0), tree);
    }

    void aFolderDeletedWhileAShortcutInItIsRenamedComesBack()
    {
        auto two = machines();
        const QString desk = two->machine(0).favorites, laptop = two->machine(1).favorites;
        QDir().mkpath(desk + "/Old");
        shortcut(desk + "/Old/Keep.url", "https://keep.example/");
        shortcut(desk + "/Old/Drop.url", "https://drop.example/");
        QVERIFY(two->settle());
        QVERIFY(QDir(desk + "/Old").removeRecursively());
        QVERIFY(QFile::rename(laptop + "/Old/Keep.URL", laptop + "/Old/Kept.URL"));
        two->round(0);
        two->round(1);
        QVERIFY(two->settle());
        QVERIFY(QFile::exists(desk + "/Old/Kept.URL"));
        QVERIFY(!QFile::exists(laptop + "/Old/Drop.URL")); // deleted on purpose, and not changed
        QCOMPARE(two->tree(1), two->tree(0));
    }

    void aFileThatDoesNotReadWholeIsNeitherAppliedNorWrittenOver_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("cut in the middle of a write") << 0;
        QTest::newRow("from a newer Vantrel") << 1;
        QTest::newRow("no bookmarks file at all") << 2;
    }
    void aFileThatDoesNotReadWholeIsNeitherAppliedNorWrittenOver()
    {
        QFETCH(int, kind);
        auto two = machines();
        const QString desk = two->machine(0).favorites, laptop = two->machine(1).favorites;
        shortcut(desk + "/Paper.url", "https://paper.example/");
        QVERIFY(two->settle());
        QFile::remove(laptop + "/Paper.URL");
        shortcut(laptop + "/New.url", "https://new.example/");
        QVERIFY(two->round(1).fileWritten);
        const QByteArray whole = bytesOf(two->file());
        QByteArray bad = kind == 0 ? whole.left(whole.size() * 2 / 3)
                         : kind == 1 ? QByteArray(whole).replace("vantrel:format=\"1\"", "vantrel:format=\"2\"")
                                     : QByteArray("PK\x03\x04 not XML at all");
        QFile out(two->file());
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bad);
        out.close();

        shortcut(desk + "/Mine.url", "https://mine.example/"); // a change of the desk's own meanwhile
        const SyncRound::Outcome refused = two->round(0, true);
        QVERIFY(!refused.problem.isEmpty());
        QVERIFY(refused.logText(two->file()).contains("not used"));
        QVERIFY(!refused.folderChanged && !refused.fileWritten);
        QCOMPARE(bytesOf(two->file()), bad);
        QVERIFY(QFile::exists(desk + "/Paper.url"));
        QVERIFY(!QFile::exists(desk + "/New.URL"));
        QVERIFY(!two->round(0).fileWritten); // not at a later round either

        // Whole again (the sync program finished): taken, with the desk's change.
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(whole);
        out.close();
        const SyncRound::Outcome taken = two->round(0, true);
        QVERIFY(taken.problem.isEmpty());
        QVERIFY(QFile::exists(desk + "/New.URL"));
        QVERIFY(!QFile::exists(desk + "/Paper.url"));
        QVERIFY(two->settle());
        QVERIFY(QFile::exists(laptop + "/Mine.URL"));
    }

    void aRoundTheSystemRefusedInPartAgreesOnNothing()
    {
        auto two = machines();
        const QString desk = two->machine(0).favorites, laptop = two->machine(1).favorites;
        QDir().mkpath(desk + "/Locked");
        QVERIFY(two->settle());
        shortcut(desk + "/Locked/Page.url", "https://page.example/");
        shortcut(desk + "/Free.url", "https://free.example/");
        two->round(0);
        const QByteArray before = bytesOf(two->file());
        shortcut(laptop + "/Laptop.url", "https://laptop.example/");
        SyncRound::Outcome partly;
        {
            FileSizeLimit full(8); // a disk full: no shortcut can be written
            partly = two->round(1);
        }
        QCOMPARE(partly.failed.size(), 2);
        QCOMPARE(bytesOf(two->file()), before); // the laptop's half is not what both agree on
        QVERIFY(two->settle());
        QVERIFY(QFile::exists(laptop + "/Locked/Page.URL"));
        QVERIFY(QFile::exists(desk + "/Laptop.URL"));
        QCOMPARE(two->tree(1), two->tree(0));
    }

    void theAgreementOutlivesAStart()
    {
        auto two = machines();
        const QString desk = two->machine(0).favorites;
        QDir().mkpath(desk + "/News");
        shortcut(desk + "/News/Paper.url", "https://paper.example/" + QString(3000, u'p'));
        QVERIFY(two->settle());
        const QString saved = m_dir.filePath("FavoritesSync.json");
        QVERIFY(SyncState::save(saved, two->machine(0).state));
        QCOMPARE(SyncState::load(saved), two->machine(0).state);
        // Damaged, it is no agreement, and the next round still loses nothing nor doubles anything.
        QFile damaged(saved);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("{\"format\": 1, \"base\": [");
        damaged.close();
        two->machine(0).state = SyncState::load(saved);
        QCOMPARE(two->machine(0).state, SyncState::State());
        QVERIFY(two->settle());
        QCOMPARE(two->tree(0).size(), 2);
        QCOMPARE(two->tree(1), two->tree(0));
    }

    void randomEditsOnTwoMachinesInTurnsLoseNothing()
    {
        auto two = machines(20261126);
        QVERIFY(two->settle());
        for (int round = 0; round < 60; ++round) {
            for (int side = 0; side < 2; ++side) {
                const int edits = 1 + int(two->random().bounded(6));
                for (int e = 0; e < edits; ++e)
                    two->edit(side);
                // Now and then the file is caught half-written by the sync program.
                if (round % 7 == 3 && side == 1) {
                    const QByteArray whole = bytesOf(two->file());
                    QFile out(two->file());
                    QVERIFY(out.open(QIODevice::WriteOnly));
                    out.write(whole.left(whole.size() / 2));
                    out.close();
                    QVERIFY(!two->round(side, true).problem.isEmpty());
                    QVERIFY(out.open(QIODevice::WriteOnly));
                    out.write(whole);
                    out.close();
                }
                const SyncRound::Outcome outcome = two->round(side);
                QVERIFY2(outcome.problem.isEmpty() && outcome.failed.isEmpty(), qPrintable(outcome.logText(two->file())));
            }
            QVERIFY2(two->settle(), qPrintable(QString::number(round) + u' ' + two->lastSettle()));
            const TreeMerge::Tree desk = two->tree(0), laptop = two->tree(1);
            QCOMPARE(desk, laptop);
            QVERIFY(TreeMerge::isWhole(desk));
            const QSet<QString> missing = two->alive() - TwoMachines::addresses(desk);
            QVERIFY2(missing.isEmpty(), qPrintable(QStringList(missing.cbegin(), missing.cend()).join(u' ')));
        }
        QVERIFY(two->tree(0).size() > 20);
    }
};

QTEST_GUILESS_MAIN(TestSyncRound)
#include "tst_syncround.moc"
