#include "BookmarkFixtures.h"
#include "TestSupport.h"
#include "bookmarks/ChromiumBookmarks.h"

#include <QTest>

// The Chromium family's Bookmarks file: read as the browsers write it, odd and damaged files.

class TestChromiumBookmarks : public QObject
{
    Q_OBJECT

private slots:
    // ---- Chromium's JSON ----

    void chromiumFileIsRead()
    {
        const BookmarkRead read = ChromiumBookmarks::read(kChromiumFile);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, chromiumFileTree());
    }

    void emptyRootsAreLeftOut()
    {
        const BookmarkRead read = ChromiumBookmarks::read(R"({"roots": {
            "synced": {"children": [{"type": "url", "name": "S", "url": "s"}], "type": "folder"},
            "other": {"children": [], "type": "folder"},
            "bookmark_bar": {"children": [{"type": "url", "name": "B", "url": "b"}], "type": "folder"},
            "workspaces": {"children": [{"type": "url", "name": "W", "url": "w"}], "type": "folder"}
        }, "version": 1})");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({folder("Bookmarks bar", {bookmark("B", "b")}),
                                         folder("Mobile bookmarks", {bookmark("S", "s")})}));
        const BookmarkRead none = ChromiumBookmarks::read(R"({"roots": {}, "version": 1})");
        QCOMPARE(none.problem, QString());
        COMPARE_TREES(none.root, rootOf({}));
    }

    void oddChromiumNodesAreSkipped()
    {
        const BookmarkRead read = ChromiumBookmarks::read(R"({"roots": {"other": {"children": [
            1, "text", null, [], {},
            {"type": "url"},
            {"type": "folder", "name": "No children"},
            {"type": "folder", "name": "Bad children", "children": {"type": "url", "name": "x", "url": "x"}},
            {"type": "url", "name": 5, "url": ["x"]},
            {"type": "URL", "name": "Wrong case", "url": "x"},
            {"type": "url", "name": "Half \ud83d pairs \ude00 \ude00\ud83d", "url": "\ud800"}
        ]}}})");
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({folder("Other bookmarks", {bookmark("", ""), folder("No children"),
                                                                    folder("Bad children"), bookmark("", ""),
                                                                    bookmark(QStringLiteral("Half \uFFFD pairs \uFFFD \uFFFD\uFFFD"),
                                                                             QStringLiteral("\uFFFD"))})}));
    }

    void damagedChromiumFileGivesTheParsersReason_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("problem");
        QTest::newRow("cut short") << QByteArray(kChromiumFile).left(200)
                                   << "The file is not valid JSON: unterminated object at byte 200";
        QTest::newRow("missing comma") << QByteArray("{\"roots\": {} \"version\": 1}")
                                       << "The file is not valid JSON: unterminated object at byte 14";
        QTest::newRow("trailing comma") << QByteArray("{\"roots\": {},}")
                                        << "The file is not valid JSON: object is missing after a comma at byte 14";
        QTest::newRow("no roots") << QByteArray("{\"version\": 1}")
                                  << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("roots not an object") << QByteArray("{\"roots\": [1, 2]}")
                                             << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("an array") << QByteArray("[{\"roots\": {}}]")
                                  << "The file is not a bookmarks file: it has no \"roots\" object";
        QTest::newRow("empty") << QByteArray() << "The file is not a bookmarks file: it is empty";
        QTest::newRow("blank") << QByteArray(" \n") << "The file is not a bookmarks file: it is empty";
        QTest::newRow("binary junk") << binaryJunk() << "The file is not valid JSON: illegal value at byte 1";
        QTest::newRow("nested too deep") << "{\"roots\": " + QByteArray("[").repeated(2000)
                                         << "The file is not valid JSON: too deeply nested document at byte 1034";
    }
    void damagedChromiumFileGivesTheParsersReason()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        const BookmarkRead read = ChromiumBookmarks::read(file);
        QCOMPARE(read.problem, problem);
        COMPARE_TREES(read.root, rootOf({}));
    }

    // ---- The seed file of the fuzz target ----

    void sampleFileIsReadWhole()
    {
        const BookmarkRead json = ChromiumBookmarks::read(testData("Bookmarks.sample.json"));
        QCOMPARE(json.problem, QString());
        QCOMPARE(json.root.linkCount(), 3);
        QCOMPARE(json.root.folderCount(), 3);
    }
};

QTEST_GUILESS_MAIN(TestChromiumBookmarks)
#include "tst_chromiumbookmarks.moc"
