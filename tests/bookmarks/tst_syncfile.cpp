#include "bookmarks/SyncFile.h"
#include "bookmarks/XbelBookmarks.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTimer>
#include <QTest>

// The bookmarks file kept in step across machines: written and read back with its ids, read from
// another program's XBEL, refused whole when damaged, half-written or newer, and two machines in
// turns through its bytes while a sync program leaves it half-written now and then.
class TestSyncFile : public QObject
{
    Q_OBJECT

    using Item = TreeMerge::Item;
    using Tree = TreeMerge::Tree;

    static Tree sample()
    {
        return {{"f1", {"", true, "News & <more>", {}}},
                {"f2", {"f1", true, "Daily \"papers\"", {}}},
                {"b1", {"f2", false, QString::fromUtf8("Caf\xc3\xa9 \xe4\xb8\xad \xf0\x9f\x98\x80"), "https://cafe.example/?a=1&b=2"}},
                {"b2", {"", false, "  blanks kept  \r\n and a line end", "https://top.example/"}},
                {"id with spaces/and&", {"f1", false, "Odd id", "https://odd.example/"}}};
    }

private slots:
    void aTreeIsWrittenAndReadBackWithItsIds()
    {
        const QByteArray bytes = SyncFile::write(sample(), "desk");
        const SyncFile::Read read = SyncFile::read(bytes);
        QVERIFY2(read.ok(), qPrintable(read.problem));
        QCOMPARE(read.tree, sample());
        QCOMPARE(read.machine, QStringLiteral("desk"));
        // The same tree, the same bytes, whatever order it was made in.
        Tree other;
        const Tree tree = sample();
        QStringList ids = tree.keys();
        std::reverse(ids.begin(), ids.end());
        for (const QString& id : ids)
            other.insert(id, tree.value(id));
        QCOMPARE(SyncFile::write(other, "desk"), bytes);
        // Any XBEL reader reads it: the browsers' extensions and the file managers.
        const BookmarkRead xbel = XbelBookmarks::read(bytes);
        QVERIFY(xbel.ok());
        QCOMPARE(xbel.root.linkCount(), 3);
        QCOMPARE(xbel.root.folderCount(), 2);
    }
    void anotherProgramsFileGetsIdsFromItsPlaces()
    {
        // As a file manager writes it: no ids, a separator, an <info> of its own.
        const QByteArray kXbelFile = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\">\n"
                                     "<info><metadata owner=\"http://freedesktop.org\"/></info>\n"
                                     "<folder><title>Work</title><bookmark href=\"https://a.example/\"><title>A</title>"
                                     "</bookmark><separator/><folder><title>Deep</title><bookmark href=\"https://b.example/\">"
                                     "<title>B</title></bookmark></folder></folder>\n"
                                     "<bookmark href=\"https://c.example/\"><title>C</title></bookmark>\n</xbel>\n";
        const SyncFile::Read first = SyncFile::read(kXbelFile);
        QVERIFY2(first.ok(), qPrintable(first.problem));
        QCOMPARE(first.tree.size(), 5);
        QCOMPARE(SyncFile::read(kXbelFile).tree, first.tree); // the same ids each time
        QVERIFY(TreeMerge::isWhole(first.tree));
        // Two entries of one id are both kept.
        const SyncFile::Read twice = SyncFile::read(
            "<xbel version=\"1.0\"><bookmark id=\"x\" href=\"https://a.example/\"><title>A</title></bookmark>"
            "<bookmark id=\"x\" href=\"https://b.example/\"><title>B</title></bookmark></xbel>");
        QVERIFY(twice.ok());
        QCOMPARE(twice.tree.size(), 2);
    }
    void aFileThatIsNotWholeIsNotTaken()
    {
        const QByteArray bytes = SyncFile::write(sample(), "desk");
        for (const qsizetype cut : {qsizetype(0), qsizetype(10), bytes.size() / 2, bytes.size() - 3}) {
            const SyncFile::Read read = SyncFile::read(bytes.left(cut));
            QVERIFY2(!read.ok(), qPrintable(QString::number(cut)));
            QVERIFY(read.tree.isEmpty());
        }
        QVERIFY(SyncFile::read(bytes.left(bytes.size() / 2)).problem.startsWith("the file is not whole"));
        QByteArray newer = bytes;
        newer.replace("vantrel:format=\"1\"", "vantrel:format=\"2\"");
        QVERIFY(SyncFile::read(newer).problem.contains("written by a newer Vantrel"));
        QCOMPARE(SyncFile::read("<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><p></DL>").problem,
                 QStringLiteral("the file is no XBEL bookmarks file"));
        QVERIFY(!SyncFile::read(bytes + "<xbel/>").ok());
    }
    void twoMachinesInTurnsThroughTheFileWhileItIsSometimesHalfWritten()
    {
        QRandomGenerator random(7);
        QByteArray file; // what the synced folder holds now
        Tree a, b, baseA, baseB;
        int made = 0, skipped = 0;
        QSet<QString> everMade, deletedOnPurpose;
        auto edit = [&](Tree& tree, const QString& who) {
            const QStringList ids = tree.keys();
            if (ids.isEmpty() || random.bounded(3) == 0) {
                const QString id = QStringLiteral("%1-%2").arg(who).arg(++made);
                tree.insert(id, {QString(), false, "Page " + id, "https://" + id + ".example/"});
                everMade.insert(id);
            } else if (random.bounded(2) == 0) {
                tree[ids.at(int(random.bounded(ids.size())))].title += "!";
            } else {
                const QString id = ids.at(int(random.bounded(ids.size())));
                tree.remove(id);
                deletedOnPurpose.insert(id);
            }
        };
        // A machine's turn: the file read; applied and written back only when it was whole.
        auto sync = [&](Tree& tree, Tree& base, const QString& me, const QString& other) {
            const SyncFile::Read read = file.isEmpty() ? SyncFile::Read{} : SyncFile::read(file);
            if (!read.ok()) {
                ++skipped;
                return false;
            }
            const TreeMerge::Result r = TreeMerge::merge(base, tree, read.tree, other);
            tree = r.merged;
            base = r.merged;
            const QByteArray bytes = SyncFile::write(r.merged, me);
            // Now and then the sync program has only half of it in place when the other looks.
            file = random.bounded(5) == 0 ? bytes.left(qsizetype(random.bounded(int(bytes.size())))) : bytes;
            if (file.size() != bytes.size())
                QTimer::singleShot(0, [&file, bytes] { file = bytes; });
            return true;
        };
        for (int round = 0; round < 300; ++round) {
            edit(a, "A");
            edit(b, "B");
            sync(a, baseA, "A", "B");
            sync(b, baseB, "B", "A");
            QCoreApplication::processEvents(); // the sync program finishes its writes
            sync(a, baseA, "A", "B");
            QCoreApplication::processEvents();
            // Once the file is whole and both have seen it with nothing new, they hold the same.
            if (sync(b, baseB, "B", "A") && sync(a, baseA, "A", "B")) {
                QCOMPARE(a, b);
                // A half-written file took nothing away that nobody deleted.
                for (const QString& id : everMade)
                    if (!deletedOnPurpose.contains(id))
                        QVERIFY2(a.contains(id), qPrintable(id));
            }
            QCoreApplication::processEvents();
        }
        QVERIFY2(skipped > 0, "no half-written file was met");
        QCOMPARE(SyncFile::read(file).tree, a);
    }
};

QTEST_GUILESS_MAIN(TestSyncFile)
#include "tst_syncfile.moc"
