#include "TestSupport.h"
#include "settings/LinkChecksFile.h"

#include <QTemporaryDir>
#include <QTest>

// The side file of the last check of each address: written and read back, the same checks giving
// the same bytes, and entries that cannot be read left out.
class TestLinkChecksFile : public QObject
{
    Q_OBJECT

private slots:
    void checksAreWrittenAndReadBack()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("LinkChecks.conf");
        LinkChecksFile::Checks checks;
        const QDateTime when(QDate(2026, 11, 25), QTime(14, 5, 30), Qt::UTC);
        checks.insert("https://a.example/page?x=1&y=2#top", {when, "moved", 301, "https://b.example/page"});
        checks.insert("https://dead.example/", {when.addSecs(-90000), "dead", 404, {}});
        checks.insert("https://example.org/with space/[brackets]=", {when, "fine", 200, {}});
        QVERIFY(LinkChecksFile::write(path, checks).ok());
        QCOMPARE(LinkChecksFile::read(path), checks);
        const QByteArray first = readAll(path);
        QVERIFY(LinkChecksFile::write(path, LinkChecksFile::read(path)).ok());
        QCOMPARE(readAll(path), first);
        QVERIFY(LinkChecksFile::read(dir.filePath("none.conf")).isEmpty());
    }
    void entriesThatCannotBeReadAreLeftOut()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("LinkChecks.conf");
        QVERIFY(writeAll(path, "[Checks]\n1\\address=https://a.example/\n1\\when=yesterday\n1\\verdict=fine\n"
                               "2\\address=https://b.example/\n2\\when=2026-11-25T10:00:00Z\n2\\verdict=dead\n"
                               "2\\status=404\n3\\when=2026-11-25T10:00:00Z\n3\\verdict=fine\nsize=3\n"));
        const LinkChecksFile::Checks checks = LinkChecksFile::read(path);
        QCOMPARE(checks.size(), 1);
        QCOMPARE(checks.value("https://b.example/").status, 404);
    }
};

QTEST_GUILESS_MAIN(TestLinkChecksFile)
#include "tst_linkchecksfile.moc"
