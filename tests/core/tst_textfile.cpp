#include "TestSupport.h"
#include "core/TextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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
    void temporaryFilesAreRecognisedByTheirExactPattern_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("data file") << QByteArray(".Options.INI.1x9z.tmp") << QByteArray("Options.INI");
        QTest::newRow("longest number") << QByteArray(".a.url.3w5e11264sgsf.tmp") << QByteArray("a.url");
        QTest::newRow("dots in the name") << QByteArray(".a.b.c.0.tmp") << QByteArray("a.b.c");
        QTest::newRow("not hidden") << QByteArray("Options.INI.1x9z.tmp") << QByteArray();
        QTest::newRow("no number") << QByteArray(".Options.INI.tmp") << QByteArray();
        QTest::newRow("capitals") << QByteArray(".Options.INI.1X9Z.tmp") << QByteArray();
        QTest::newRow("number too long") << QByteArray(".a.url.12345678901234.tmp") << QByteArray();
        QTest::newRow("other end") << QByteArray(".Options.INI.1x9z.temp") << QByteArray();
        QTest::newRow("no name") << QByteArray("..1x9z.tmp") << QByteArray();
        QTest::newRow("name too long") << QByteArray("." + QByteArray(201, 'n') + ".1.tmp") << QByteArray();
    }
    void temporaryFilesAreRecognisedByTheirExactPattern()
    {
        QFETCH(QByteArray, entry);
        QFETCH(QByteArray, target);
        const auto found = TextFile::temporaryTarget(entry);
        QCOMPARE(found.has_value(), !target.isEmpty());
        if (found)
            QCOMPARE(*found, target);
    }
    void leftoverOfAnInterruptedSaveIsRemovedAndNothingElse()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Options.INI");
        QVERIFY(writeAll(path, "old"));
        QVERIFY(interruptedSave(path, QByteArray(100000, 'x')));
        QCOMPARE(hiddenFiles(dir.path()).size(), 1);
        const QString leftover = hiddenFiles(dir.path()).first();
        QCOMPARE(TextFile::temporaryTarget(leftover.toUtf8()), std::optional<QByteArray>("Options.INI"));
        // Look-alikes of other programs, and temporary files of other names, stay.
        const QStringList others = {".Options.INI.tmp", ".Options.INI.ABC.tmp", ".Notes.txt.1a.tmp",
                                    "Options.INI.1a.tmp"};
        for (const QString& name : others)
            QVERIFY(writeAll(dir.filePath(name), "theirs"));
        QVERIFY(QDir(dir.path()).mkdir(".Options.INI.2b.tmp"));

        const int removed = TextFile::removeLeftovers(
            dir.path(), [](const QByteArray& name) { return name == "Options.INI"; });
        QCOMPARE(removed, 1);
        QVERIFY(!QFileInfo::exists(dir.filePath(leftover)));
        for (const QString& name : others)
            QVERIFY2(QFileInfo::exists(dir.filePath(name)), qPrintable(name));
        QVERIFY(QFileInfo(dir.filePath(".Options.INI.2b.tmp")).isDir());
        QCOMPARE(readAll(path), QByteArray("old"));
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
