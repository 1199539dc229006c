#include "core/RunError.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

class TestRunError : public QObject
{
    Q_OBJECT
private slots:
    void errnoMapsToClassicNumbers_data()
    {
        QTest::addColumn<int>("err");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("EACCES") << EACCES << 70 << "Permission denied";
        QTest::newRow("EPERM") << EPERM << 70 << "Permission denied";
        QTest::newRow("EROFS") << EROFS << 70 << "Permission denied";
        QTest::newRow("ENOSPC") << ENOSPC << 61 << "Disk full";
        QTest::newRow("EDQUOT") << EDQUOT << 61 << "Disk full";
        QTest::newRow("EFBIG") << EFBIG << 61 << "Disk full";
        QTest::newRow("EIO") << EIO << 57 << "Device I/O error";
        QTest::newRow("ENOTDIR") << ENOTDIR << 76 << "Path not found";
        QTest::newRow("EISDIR") << EISDIR << 75 << "Path/File access error";
        QTest::newRow("ENAMETOOLONG") << ENAMETOOLONG << 75 << "Path/File access error";
    }
    void errnoMapsToClassicNumbers()
    {
        QFETCH(int, err);
        QFETCH(int, number);
        QFETCH(QString, text);
        const RunError e = RunError::fromErrno(err);
        QCOMPARE(e.number, number);
        QCOMPARE(e.text(), text);
    }
    void missingFileIsFileNotFoundButMissingFolderIsPathNotFound()
    {
        QTemporaryDir dir;
        QCOMPARE(RunError::fromErrno(ENOENT, dir.filePath("nothing.txt")).number, 53);
        QCOMPARE(RunError::fromErrno(ENOENT, dir.filePath("no/nothing.txt")).number, 76);
    }
    void messageTailHasNumberAndText()
    {
        QCOMPARE(RunError(70).numberAndText(), QStringLiteral("70 - Permission denied"));
        QCOMPARE(RunError(9).numberAndText(), QStringLiteral("9 - Subscript out of range"));
        QCOMPARE(RunError(53).text(), QStringLiteral("File not found"));
        QVERIFY(RunError().ok());
        QVERIFY(!RunError(61).ok());
    }
};

QTEST_GUILESS_MAIN(TestRunError)
#include "tst_runerror.moc"
