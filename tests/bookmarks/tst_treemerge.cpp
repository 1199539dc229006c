#include "bookmarks/TreeMerge.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

// Two sides' trees of bookmarks made one against the tree they last agreed on: each kind of change,
// the same entry changed on both sides, a folder deleted under a change, moves into each other, and
// thousands of random edits on two machines in turns through one shared tree.
class TestTreeMerge : public QObject
{
    Q_OBJECT

    using Item = TreeMerge::Item;
    using Tree = TreeMerge::Tree;

    static Item link(const QString& parent, const QString& title, const QString& url) { return {parent, false, title, url}; }
    static Item folder(const QString& parent, const QString& title) { return {parent, true, title, QString()}; }
    static Tree sample()
    {
        return {{"f1", folder("", "News")}, {"f2", folder("", "Work")}, {"f3", folder("f1", "Daily")},
                {"b1", link("f1", "Paper", "https://paper.example/")}, {"b2", link("f3", "Radio", "https://radio.example/")},
                {"b3", link("", "Top", "https://top.example/")}, {"b4", link("f2", "Mail", "https://mail.example/")}};
    }

private slots:
    void whatOneSideChangedIsTaken()
    {
        const Tree base = sample();
        Tree mine = base, theirs = base;
        mine["b1"].title = "Morning paper";
        theirs["b1"].url = "https://paper.example/today";
        theirs["b4"].parent = "f1";
        mine.insert("b5", link("f2", "Wiki", "https://wiki.example/"));
        theirs.insert("b6", link("", "Shop", "https://shop.example/"));
        theirs.remove("b3");
        const TreeMerge::Result r = TreeMerge::merge(base, mine, theirs, "laptop");
        QCOMPARE(r.merged.value("b1"), link("f1", "Morning paper", "https://paper.example/today"));
        QCOMPARE(r.merged.value("b4").parent, QStringLiteral("f1"));
        QVERIFY(r.merged.contains("b5"));
        QVERIFY(r.merged.contains("b6"));
        QVERIFY(!r.merged.contains("b3"));
        QVERIFY(r.copies.isEmpty() && r.kept.isEmpty() && r.broughtBack.isEmpty());
        QVERIFY(TreeMerge::isWhole(r.merged));
        // Nothing changed on either side: the base again.
        QCOMPARE(TreeMerge::merge(base, base, base, "laptop").merged, base);
    }
    void anEntryChangedDifferentlyOnBothSidesIsKeptTwice()
    {
        const Tree base = sample();
        Tree mine = base, theirs = base;
        mine["b1"].title = "Paper (mine)";
        theirs["b1"].title = "Paper (theirs)";
        mine["b2"].title = "Radio 1";
        theirs["b2"].title = "Radio 1"; // the same change: once
        const TreeMerge::Result r = TreeMerge::merge(base, mine, theirs, "laptop");
        QCOMPARE(r.merged.value("b1").title, QStringLiteral("Paper (mine)"));
        QCOMPARE(r.copies, QStringList{"b1~laptop"});
        QCOMPARE(r.merged.value("b1~laptop"), link("f1", "Paper (theirs) (from laptop)", "https://paper.example/"));
        QCOMPARE(r.merged.value("b2").title, QStringLiteral("Radio 1"));
        QCOMPARE(r.merged.size(), base.size() + 1);
    }
    void aChangeBeatsADeletion()
    {
        const Tree base = sample();
        Tree mine = base, theirs = base;
        mine.remove("b1");
        theirs["b1"].url = "https://paper.example/new";
        const TreeMerge::Result r = TreeMerge::merge(base, mine, theirs, "laptop");
        QCOMPARE(r.merged.value("b1").url, QStringLiteral("https://paper.example/new"));
        QCOMPARE(r.kept, QStringList{"b1"});
    }
    void aFolderDeletedOnOneSideComesBackToHoldWhatTheOtherRenamedInIt()
    {
        const Tree base = sample();
        Tree mine = base, theirs = base;
        // Deleted here with all it holds; the other side renamed the radio inside it.
        for (const QString& id : {"f1", "f3", "b1", "b2"})
            mine.remove(id);
        theirs["b2"].title = "Radio 4";
        const TreeMerge::Result r = TreeMerge::merge(base, mine, theirs, "laptop");
        QCOMPARE(r.merged.value("b2").title, QStringLiteral("Radio 4"));
        QVERIFY(r.merged.contains("f3"));
        QVERIFY(r.merged.contains("f1"));
        QVERIFY(!r.merged.contains("b1")); // deleted, and left alone on the other side
        QCOMPARE(r.broughtBack, (QStringList{"f1", "f3"}));
        QVERIFY(TreeMerge::isWhole(r.merged));
    }
    void foldersMovedIntoEachOtherKeepThisSidesPlaces()
    {
        const Tree base = sample();
        Tree mine = base, theirs = base;
        mine["f1"].parent = "f2";
        theirs["f2"].parent = "f1";
        const TreeMerge::Result r = TreeMerge::merge(base, mine, theirs, "laptop");
        QVERIFY(TreeMerge::isWhole(r.merged));
        QCOMPARE(r.merged.value("f1").parent, QStringLiteral("f2"));
        QCOMPARE(r.merged.value("f2").parent, QString());
    }
    void twoMachinesInTurnsEndWithTheSameTreeAndLoseNothing()
    {
        QRandomGenerator random(20261125);
        Tree file, a, b, baseA, baseB;
        QSet<QString> everMade, deletedOnPurpose;
        int made = 0, edits = 0, copies = 0, kept = 0, back = 0;
        auto edit = [&](Tree& tree, const QString& who) {
            const QStringList ids = tree.keys();
            const int kind = int(random.bounded(7));
            const QString someId = ids.isEmpty() ? QString() : ids.at(int(random.bounded(ids.size())));
            QStringList folders;
            for (auto it = tree.cbegin(); it != tree.cend(); ++it)
                if (it->folder)
                    folders << it.key();
            folders.sort();
            const QString someFolder = folders.isEmpty() || random.bounded(4) == 0 ? QString()
                                                                                      : folders.at(int(random.bounded(folders.size())));
            ++edits;
            if (kind <= 1 || someId.isEmpty()) {
                const QString id = QStringLiteral("%1-%2").arg(who).arg(++made);
                tree.insert(id, kind == 1 ? folder(someFolder, "Folder " + id)
                                          : link(someFolder, "Page " + id, "https://" + id + ".example/"));
                everMade.insert(id);
            } else if (kind == 2) {
                tree[someId].title += " renamed by " + who;
            } else if (kind == 3 && !tree.value(someId).folder) {
                tree[someId].url += "?by=" + who;
            } else if (kind == 4) {
                // A move that keeps the tree whole.
                Tree moved = tree;
                moved[someId].parent = someFolder;
                if (TreeMerge::isWhole(moved))
                    tree = moved;
            } else if (kind == 5) {
                // Deleted with all it holds.
                QSet<QString> going{someId};
                bool grew = true;
                while (grew) {
                    grew = false;
                    for (auto it = tree.cbegin(); it != tree.cend(); ++it)
                        if (!going.contains(it.key()) && going.contains(it->parent)) {
                            going.insert(it.key());
                            grew = true;
                        }
                }
                for (const QString& id : going) {
                    tree.remove(id);
                    deletedOnPurpose.insert(id);
                }
            }
        };
        auto sync = [&](Tree& tree, Tree& base, const QString& other) {
            const TreeMerge::Result r = TreeMerge::merge(base, tree, file, other);
            QVERIFY(TreeMerge::isWhole(r.merged));
            copies += int(r.copies.size());
            kept += int(r.kept.size());
            back += int(r.broughtBack.size());
            for (const QString& id : r.copies)
                everMade.insert(id);
            tree = r.merged;
            file = r.merged;
            base = r.merged;
        };
        for (int round = 0; round < 400; ++round) {
            const int n = 1 + int(random.bounded(6));
            for (int i = 0; i < n; ++i)
                edit(a, "A");
            for (int i = 0; i < n; ++i)
                edit(b, "B");
            sync(a, baseA, "B");
            sync(b, baseB, "A");
            sync(a, baseA, "B");
            // Both hold the same tree, and the file is it.
            QCOMPARE(a, b);
            QCOMPARE(a, file);
            // Nothing vanished that was not deleted on purpose.
            for (const QString& id : everMade)
                if (!deletedOnPurpose.contains(id))
                    QVERIFY2(a.contains(id), qPrintable(id));
        }
        QVERIFY(edits > 2000);
        // The hard cases came up: the same entry changed on both sides, changes under deletions.
        QVERIFY2(copies > 0 && kept > 0 && back > 0,
                 qPrintable(QStringLiteral("copies %1, kept %2, brought back %3").arg(copies).arg(kept).arg(back)));
    }
};

QTEST_GUILESS_MAIN(TestTreeMerge)
#include "tst_treemerge.moc"
