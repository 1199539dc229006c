#include "BookmarkFixtures.h"
#include "PlacesDatabase.h"
#include "TestSupport.h"
#include "bookmarks/BookmarkFiles.h"
#include "bookmarks/ChromiumBookmarks.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "bookmarks/XbelBookmarks.h"

#include <QDir>
#include <QFile>
#include <QTest>

// A bookmarks file as the user picks it: read in whichever format it is in, written in the format
// its name asks for.
class TestBookmarkFiles : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    QString file(const QString& name) const { return m_app->home() + u'/' + name; }

private slots:
    void init() { m_app = std::make_unique<TempAppFolder>(); }
    void cleanup() { m_app.reset(); }

    void theFormatIsToldByWhatTheFileBeginsWith_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("format");
        using F = BookmarkFiles::Format;
        QTest::newRow("html export") << QByteArray(kUppercaseExport) << int(F::Html);
        QTest::newRow("lowercase html") << QByteArray(kLowercaseExport) << int(F::Html);
        QTest::newRow("xbel") << QByteArray(kXbelFile) << int(F::Xbel);
        QTest::newRow("xbel without declaration") << QByteArray("<xbel version=\"1.0\"></xbel>") << int(F::Xbel);
        QTest::newRow("chromium json") << QByteArray(kChromiumFile) << int(F::Chromium);
        QTest::newRow("json after a byte-order mark and blanks") << QByteArray("\xEF\xBB\xBF \n\t{\"roots\":{}}")
                                                                   << int(F::Chromium);
        QTest::newRow("xhtml page") << QByteArray("<?xml version=\"1.0\"?>\n<!-- c -->\n<html><body/></html>")
                                    << int(F::Html);
        QTest::newRow("other xml") << QByteArray("<?xml version=\"1.0\"?><rss/>") << int(F::Xbel);
        QTest::newRow("empty") << QByteArray() << int(F::Html);
        QTest::newRow("text") << QByteArray("https://a.example/\n") << int(F::Html);
        QTest::newRow("sqlite database") << QByteArray("SQLite format 3\0\x10\0", 19) << int(F::FirefoxPlaces);
    }
    void theFormatIsToldByWhatTheFileBeginsWith()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, format);
        QCOMPARE(int(BookmarkFiles::formatOf(bytes)), format);
    }
    void eachFormatGoesToItsReader()
    {
        QVERIFY(writeAll(file("a.html"), kUppercaseExport));
        QVERIFY(writeAll(file("b.xbel"), kXbelFile));
        QVERIFY(writeAll(file("Bookmarks"), kChromiumFile));
        COMPARE_TREES(BookmarkFiles::read(file("a.html")).root, uppercaseExportTree());
        COMPARE_TREES(BookmarkFiles::read(file("b.xbel")).root, xbelFileTree());
        COMPARE_TREES(BookmarkFiles::read(file("Bookmarks")).root, chromiumFileTree());
        // The name does not decide: an XBEL file named .html is read as XBEL.
        QVERIFY(writeAll(file("xbel.html"), kXbelFile));
        COMPARE_TREES(BookmarkFiles::read(file("xbel.html")).root, xbelFileTree());
    }
    void firefoxsDatabasePickedByHandIsReadAsFromItsProfile()
    {
        // Copied out of a profile under a name of the person's choice.
        {
            Places places(file("picked.sqlite"));
            addKnownBookmarks(places);
            QVERIFY(!places.failed());
        }
        const BookmarkRead read = BookmarkFiles::read(file("picked.sqlite"));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, knownBookmarksTree());
        // A database that is not Firefox's says so, not that it is no bookmarks file.
        {
            Places other(file("other.sqlite"));
            other.exec("CREATE TABLE notes (id INTEGER)");
        }
        const BookmarkRead other = BookmarkFiles::read(file("other.sqlite"));
        QVERIFY(!other.ok());
        QVERIFY2(!other.problem.contains("not a bookmarks file"), qPrintable(other.problem));
    }
    void aFileThatCannotBeReadSaysWhy()
    {
        QCOMPARE(BookmarkFiles::read(file("missing.html")).problem,
                 QStringLiteral("The file cannot be read: No such file or directory"));
        QVERIFY(QDir().mkpath(file("folder.html")));
        QCOMPARE(BookmarkFiles::read(file("folder.html")).problem, QStringLiteral("The file cannot be read: it is a folder"));
        QVERIFY(writeAll(file("locked.html"), kUppercaseExport));
        QVERIFY(QFile::setPermissions(file("locked.html"), QFile::WriteOwner));
        ReadOnlyFolder asUser(m_app->home(), 0755); // root reads any file: the check runs as a user
        QCOMPARE(BookmarkFiles::read(file("locked.html")).problem, QStringLiteral("The file cannot be read: Permission denied"));
    }
    void aFileTooLargeForBookmarksIsRefusedUnread()
    {
        QFile huge(file("huge.html"));
        QVERIFY(huge.open(QIODevice::WriteOnly));
        QVERIFY(huge.resize(BookmarkFiles::kMaxFileBytes + 1)); // sparse: no disk used
        huge.close();
        const BookmarkRead read = BookmarkFiles::read(file("huge.html"));
        QCOMPARE(read.problem, QStringLiteral("The file is not a bookmarks file: it is larger than 256 MB"));
        QCOMPARE(read.root.children.size(), 0);
    }
    void anExportIsWrittenInTheFormatItsNameAsksFor()
    {
        using F = BookmarkFiles::Format;
        QCOMPARE(BookmarkFiles::formatOfName("/x/bookmarks.xbel"), F::Xbel);
        QCOMPARE(BookmarkFiles::formatOfName("/x/bookmarks.XBEL"), F::Xbel);
        QCOMPARE(BookmarkFiles::formatOfName("/x/bookmarks.html"), F::Html);
        QCOMPARE(BookmarkFiles::formatOfName("/x/bookmarks"), F::Html);
        const BookmarkNode tree = uppercaseExportTree();
        QCOMPARE(BookmarkFiles::write(tree, F::Html), NetscapeBookmarks::write(tree));
        QCOMPARE(BookmarkFiles::write(tree, F::Xbel), XbelBookmarks::write(tree));
    }
};

QTEST_GUILESS_MAIN(TestBookmarkFiles)
#include "tst_bookmarkfiles.moc"
