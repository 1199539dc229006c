#include "TestSupport.h"
#include "core/TextFile.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

class TestTextFile : public QObject
{
    Q_OBJECT
private slots:
    void writesLinesWithCrLfInUtf8()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.txt");
        QVERIFY(TextFile::writeLines(path, {"one", QString::fromUtf8("twö")}).ok());
        QCOMPARE(readAll(path), QByteArray("one\r\ntw\xC3\xB6\r\n"));
    }
    void replacesAnExistingFileAndLeavesNoTemporaryFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.txt");
        QVERIFY(writeAll(path, "old contents that are longer"));
        QVERIFY(TextFile::writeAtomically(path, "new").ok());
        QCOMPARE(readAll(path), QByteArray("new"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.txt"});
    }
    void keepsThePermissionsOfAReplacedFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.txt");
        QVERIFY(writeAll(path, "x"));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const QFile::Permissions before = QFile::permissions(path);
        QVERIFY(TextFile::writeAtomically(path, "y").ok());
        QCOMPARE(QFile::permissions(path), before);
        QVERIFY(!(before & QFile::ReadOther));
    }
    void readsWholeFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.bin");
        QByteArray big(300000, 'x');
        big[123456] = '\0';
        QVERIFY(writeAll(path, big));
        const auto r = TextFile::readBytes(path);
        QVERIFY(r.error.ok());
        QCOMPARE(r.bytes, big);
    }
    void readingAMissingFileIsFileNotFound()
    {
        QTemporaryDir dir;
        QCOMPARE(TextFile::readBytes(dir.filePath("none")).error.number, 53);
        QCOMPARE(TextFile::readBytes(dir.filePath("no/none")).error.number, 76);
        QCOMPARE(TextFile::readBytes(dir.path()).error.number, 75);
    }
    void writingIntoAMissingFolderIsPathNotFound()
    {
        QTemporaryDir dir;
        QCOMPARE(TextFile::writeAtomically(dir.filePath("no/a.txt"), "x").number, 76);
    }
    void writingOverAFolderIsAnAccessError()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("sub"));
        QCOMPARE(TextFile::writeAtomically(dir.filePath("sub"), "x").number, 75);
    }
    void unwritableFolderIsPermissionDeniedAndOldFileStays()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.txt");
        QVERIFY(writeAll(path, "old"));
        {
            ReadOnlyFolder readOnly(dir.path());
            QCOMPARE(TextFile::writeAtomically(path, "new").number, 70);
            QCOMPARE(TextFile::writeAtomically(dir.filePath("b.txt"), "new").number, 70);
        }
        QCOMPARE(readAll(path), QByteArray("old"));
        QVERIFY(!QFile::exists(dir.filePath("b.txt")));
    }
    void fullDiskIsDiskFullAndOldFileStays()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.txt");
        QVERIFY(writeAll(path, "old"));
        {
            FileSizeLimit limit(16);
            QCOMPARE(TextFile::writeAtomically(path, QByteArray(4096, 'n')).number, 61);
        }
        QCOMPARE(readAll(path), QByteArray("old"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.txt"});
    }
};

QTEST_GUILESS_MAIN(TestTextFile)
#include "tst_textfile.moc"
