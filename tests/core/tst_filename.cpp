#include "core/FileName.h"

#include <QTest>

// File names as bytes: every name the file system can hold survives the trip through a string.
class TestFileName : public QObject
{
    Q_OBJECT
private slots:
    void namesRoundTripByteForByte_data()
    {
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<bool>("valid");
        QTest::newRow("ascii") << QByteArray("plain name.url") << true;
        QTest::newRow("utf-8") << QByteArray("caf\xC3\xA9 \xE4\xB8\xAD \xF0\x9F\x98\x80") << true;
        QTest::newRow("latin-1 byte") << QByteArray("caf\xE9-folder") << false;
        QTest::newRow("lone continuation") << QByteArray("a\x80z") << false;
        QTest::newRow("cut sequence at the end") << QByteArray("abc\xE4\xB8") << false;
        QTest::newRow("overlong slash") << QByteArray("a\xC0\xAF" "b") << false;
        QTest::newRow("encoded surrogate") << QByteArray("\xED\xB2\x80") << false;
        QTest::newRow("past unicode") << QByteArray("\xF4\x90\x80\x80") << false;
        QTest::newRow("every high byte") << [] {
            QByteArray all;
            for (int b = 0x80; b <= 0xFF; ++b)
                all.append(char(b));
            return all;
        }() << false;
    }
    void namesRoundTripByteForByte()
    {
        QFETCH(QByteArray, raw);
        QFETCH(bool, valid);
        const QString name = FileName::decode(raw);
        QCOMPARE(FileName::encode(name), raw);
        QCOMPARE(FileName::hasRawBytes(name), !valid);
        if (valid)
            QCOMPARE(name, QString::fromUtf8(raw));
    }
    void validPartsOfAMixedNameReadAsText()
    {
        const QString name = FileName::decode("caf\xE9 \xC3\xA9t\xC3\xA9");
        QCOMPARE(name.size(), 8);
        QCOMPARE(name.right(3), QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
        QVERIFY(name.at(3).isLowSurrogate()); // shown as a replacement character
    }
    void pathsJoinedFromDecodedNamesEncodeToTheirBytes()
    {
        const QString folder = FileName::decode("/tmp/old\xFF" "disk");
        const QString path = folder + u'/' + FileName::decode("sh\xF6rtcut.url");
        QCOMPARE(FileName::encode(path), QByteArray("/tmp/old\xFF" "disk/sh\xF6rtcut.url"));
    }
    void cutToBytesKeepsWholeCharacters()
    {
        QCOMPARE(FileName::cutToBytes(QString(10, u'x'), 4), QString(4, u'x'));
        QCOMPARE(FileName::cutToBytes(QString::fromUtf8("\xC3\xA9\xC3\xA9\xC3\xA9"), 5),
                 QString::fromUtf8("\xC3\xA9\xC3\xA9"));
        const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x98\x80");
        QCOMPARE(FileName::cutToBytes(emoji, 7), emoji.left(2));
        // A kept raw byte counts one byte, as on disk.
        QCOMPARE(FileName::encode(FileName::cutToBytes(FileName::decode("\xFF\xFF\xFF"), 2)), QByteArray("\xFF\xFF"));
        QCOMPARE(FileName::cutToBytes(QStringLiteral("short"), 255), QStringLiteral("short"));
    }
};

QTEST_GUILESS_MAIN(TestFileName)
#include "tst_filename.moc"
