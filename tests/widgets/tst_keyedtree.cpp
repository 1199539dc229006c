#include "TestSupport.h"
#include "widgets/ControlDrag.h"
#include "widgets/KeyedTree.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QApplication>
#include <QTest>

class TestKeyedTree : public QObject
{
    Q_OBJECT
private slots:
    void keysAreUniqueAndParentsMustExist()
    {
        KeyedTree tree("SSTree9");
        QVERIFY(tree.addNode("", "A", "a", KeyedTree::ClosedFolder));
        QVERIFY(!tree.addNode("", "A", "again", KeyedTree::Page));
        QVERIFY(!tree.addNode("missing", "B", "b", KeyedTree::Page));
        KeyedNode* child = tree.addNode("A", "A/c", "c", KeyedTree::Page);
        QVERIFY(child);
        QCOMPARE(child->parentNode(), tree.node("A"));
        QCOMPARE(tree.nodeCount(), 2);
        QCOMPARE(tree.node("A/c")->nodeText(), QStringLiteral("c"));
        QCOMPARE(tree.dragTag(), QStringLiteral("SSTree9"));
    }
    void nodeIndexesFollowCreationAndCloseUpWhenNodesGo()
    {
        KeyedTree tree("SSTree9");
        tree.addNode("", "1", "one", KeyedTree::ClosedFolder);
        tree.addNode("1", "1/2", "two", KeyedTree::Page);
        tree.addNode("", "3", "three", KeyedTree::Page);
        tree.addNode("1", "1/4", "four", KeyedTree::Page);
        QCOMPARE(tree.nodeAt(1)->key(), QStringLiteral("1"));
        QCOMPARE(tree.nodeAt(4)->key(), QStringLiteral("1/4"));
        QCOMPARE(tree.indexOf(tree.node("3")), 3);
        tree.removeNode(tree.node("1")); // with its children
        QCOMPARE(tree.nodeCount(), 1);
        QCOMPARE(tree.nodeAt(1)->key(), QStringLiteral("3"));
        QVERIFY(!tree.node("1/2"));
        QVERIFY(!tree.nodeAt(2));
        QVERIFY(!tree.nodeAt(0));
        QVERIFY(tree.addNode("", "1", "one again", KeyedTree::Page)); // the key is free again
        tree.clearNodes();
        QCOMPARE(tree.nodeCount(), 0);
        QVERIFY(!tree.node("3"));
    }
    void expandingOpensTheFolderImageAndCollapsingClosesIt()
    {
        KeyedTree tree("SSTree9");
        KeyedNode* folder = tree.addNode("", "F", "folder", KeyedTree::ClosedFolder);
        tree.addNode("F", "F/p", "page", KeyedTree::Page);
        folder->setExpanded(true);
        QCOMPARE(folder->image(), int(KeyedTree::OpenFolder));
        folder->setExpanded(false);
        QCOMPARE(folder->image(), int(KeyedTree::ClosedFolder));
        QVERIFY(folder->isFolder());
        QVERIFY(!tree.node("F/p")->isFolder());
    }
    void tagsAndListTagsAreKeptPerNode()
    {
        KeyedTree tree("SSTree9");
        KeyedNode* n = tree.addNode("", "k", "t", KeyedTree::Page);
        n->setTag("https://e.org/");
        n->setListTag("List 1");
        QCOMPARE(tree.node("k")->tag(), QStringLiteral("https://e.org/"));
        QCOMPARE(tree.node("k")->listTag(), QStringLiteral("List 1"));
    }
    void dropsAreToldWithTheirSourceOrTheirText()
    {
        KeyedTree tree("SSTree9");
        tree.resize(200, 200);
        tree.show();
        QSignalSpy controls(&tree, &KeyedTree::controlDropped);
        QSignalSpy texts(&tree, &KeyedTree::textDropped);
        std::unique_ptr<QMimeData> control(ControlDrag::makeData("AddBtn"));
        QVERIFY(deliverDrop(tree.viewport(), control.get(), QPoint(10, 10)));
        QCOMPARE(controls.size(), 1);
        QCOMPARE(controls[0][0].toString(), QStringLiteral("AddBtn"));
        QMimeData link;
        link.setUrls({QUrl("https://dropped.example/page")});
        QVERIFY(deliverDrop(tree.viewport(), &link, QPoint(10, 10)));
        QMimeData text;
        text.setText("HTTP://x\nsecond line");
        QCOMPARE(texts.size(), 1);
        QVERIFY(deliverDrop(tree.viewport(), &text, QPoint(10, 10)));
        QCOMPARE(texts.size(), 2);
        QCOMPARE(texts[0][0].toString(), QStringLiteral("https://dropped.example/page"));
        QCOMPARE(texts[1][0].toString(), QStringLiteral("HTTP://x"));
    }
    void anotherProgramsDragIsTakenOnlyAsACopyOfAWebAddress()
    {
        KeyedTree tree("SSTree9");
        tree.resize(200, 200);
        tree.show();
        QSignalSpy texts(&tree, &KeyedTree::textDropped);
        const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
        // Text that is no web address is refused while it is being dragged, and at the drop.
        QMimeData words;
        words.setText("a paragraph from an editor");
        QDragEnterEvent enter(QPoint(10, 10), offered, &words, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree.viewport(), &enter);
        QVERIFY(!enter.isAccepted());
        QDragMoveEvent move(QPoint(10, 10), offered, &words, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree.viewport(), &move);
        QVERIFY(!move.isAccepted());
        QDropEvent drop(QPointF(10, 10), offered, &words, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree.viewport(), &drop);
        QVERIFY(!drop.isAccepted());
        QCOMPARE(texts.size(), 0);
        // A web address is taken as a copy, whatever the other program proposed: its original stays.
        QMimeData link;
        link.setText("https://kept.example/");
        QDragEnterEvent linkEnter(QPoint(10, 10), offered, &link, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree.viewport(), &linkEnter);
        QVERIFY(linkEnter.isAccepted());
        QDragMoveEvent linkMove(QPoint(10, 10), offered, &link, Qt::LeftButton, Qt::NoModifier);
        linkMove.setDropAction(Qt::MoveAction); // as the other program would have it
        QApplication::sendEvent(tree.viewport(), &linkMove);
        QVERIFY(linkMove.isAccepted());
        QCOMPARE(linkMove.dropAction(), Qt::CopyAction);
        QDropEvent linkDrop(QPointF(10, 10), offered, &link, Qt::LeftButton, Qt::NoModifier);
        linkDrop.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(tree.viewport(), &linkDrop);
        QVERIFY(linkDrop.isAccepted());
        QCOMPARE(linkDrop.dropAction(), Qt::CopyAction);
        QCOMPARE(texts.size(), 1);
        // A drag that can only be moved is refused: taking it would delete the original.
        QDragEnterEvent moveOnly(QPoint(10, 10), Qt::MoveAction, &link, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(tree.viewport(), &moveOnly);
        QVERIFY(!moveOnly.isAccepted());
    }
    void aDroppedLinkBringsTheTitleItCarries_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("title");
        QByteArray moz;
        const QString mozText = QStringLiteral("https://second.example/\nThe Second Page");
        moz.append(reinterpret_cast<const char*>(mozText.utf16()), mozText.size() * 2);
        QTest::newRow("text/x-moz-url") << "text/x-moz-url" << moz << "The Second Page";
        QTest::newRow("_NETSCAPE_URL") << "_NETSCAPE_URL" << QByteArray("https://second.example/\nNetscape Title")
                                       << "Netscape Title";
        QTest::newRow("link text") << "text/html"
                                   << QByteArray("<meta charset='utf-8'><a href='https://second.example/'>Link "
                                                 "<b>text</b> &amp; more</a>")
                                   << "Link text & more";
        QTest::newRow("none") << "text/x-other" << QByteArray("x") << "";
    }
    void aDroppedLinkBringsTheTitleItCarries()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, title);
        KeyedTree tree("SSTree9");
        tree.resize(200, 200);
        QSignalSpy texts(&tree, &KeyedTree::textDropped);
        QMimeData data;
        data.setUrls({QUrl("https://second.example/")});
        data.setData(format, bytes);
        QVERIFY(deliverDrop(tree.viewport(), &data, QPoint(10, 10)));
        QCOMPARE(texts.size(), 1);
        QCOMPARE(texts[0][0].toString(), QStringLiteral("https://second.example/"));
        QCOMPARE(texts[0][1].toString(), title);
    }
    void deleteKeyAsksForTheCurrentNode()
    {
        KeyedTree tree("SSTree9");
        KeyedNode* n = tree.addNode("", "k", "t", KeyedTree::Page);
        tree.setCurrentItem(n);
        QSignalSpy asked(&tree, &KeyedTree::deleteRequested);
        QTest::keyClick(&tree, Qt::Key_Delete);
        QCOMPARE(asked.size(), 1);
        QCOMPARE(tree.nodeCount(), 1); // the owner decides
    }
    void dropHighlightMarksAndSelects()
    {
        KeyedTree tree("SSTree9");
        KeyedNode* n = tree.addNode("", "k", "t", KeyedTree::ClosedFolder);
        tree.setDropHighlight(n);
        QCOMPARE(tree.dropHighlight(), n);
        QCOMPARE(tree.currentItem(), n);
        tree.removeNode(n);
        QVERIFY(!tree.dropHighlight());
    }
};

VANTREL_GUI_TEST_MAIN(TestKeyedTree)
#include "tst_keyedtree.moc"
