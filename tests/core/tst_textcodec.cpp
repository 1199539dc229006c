#include "core/TextCodec.h"

#include <QTest>

class TestTextCodec : public QObject
{
    Q_OBJECT
private slots:
    void validUtf8IsReadAsUtf8()
    {
        QCOMPARE(TextCodec::decode(QByteArray("Caf\xC3\xA9 \xE2\x82\xAC")), QString::fromUtf8("Café €"));
    }
    void utf8ByteOrderMarkIsSkipped()
    {
        QCOMPARE(TextCodec::decode(QByteArray("\xEF\xBB\xBFNews")), QStringLiteral("News"));
    }
    void invalidUtf8IsReadAsWindows1252()
    {
        // 0xE9 alone is no UTF-8: the whole file is the old single-byte code page.
        QCOMPARE(TextCodec::decode(QByteArray("Caf\xE9 \x80 \x93quoted\x94")),
                 QString::fromUtf8("Café € “quoted”"));
    }
    void everyWindows1252ByteKeepsACharacter()
    {
        QByteArray all;
        for (int b = 0; b < 256; ++b)
            all.append(char(b));
        const QString text = TextCodec::decodeWindows1252(all);
        QCOMPARE(text.size(), 256);
        QCOMPARE(text[0x81], QChar(0x81));
        QCOMPARE(text[0x9F], QChar(0x178));
        QCOMPARE(text[0xFF], QChar(0xFF));
        QCOMPARE(text[0x41], QChar(u'A'));
    }
    void utf16ByteOrderMarksAreHonouredWhereAsked()
    {
        const QByteArray le("\xFF\xFEU\0R\0L\0", 8);
        QCOMPARE(TextCodec::decodeWithUtf16(le), QStringLiteral("URL"));
        const QByteArray be("\xFE\xFF\0U\0R\0L", 8);
        QCOMPARE(TextCodec::decodeWithUtf16(be), QStringLiteral("URL"));
    }
    void writingIsUtf8WithoutByteOrderMark()
    {
        QCOMPARE(TextCodec::encode(QString::fromUtf8("é")), QByteArray("\xC3\xA9"));
    }
    void linesEndAtCrLfLfOrCr()
    {
        QCOMPARE(TextCodec::splitLines(QStringLiteral("a\r\nb\nc\rd")), (QStringList{"a", "b", "c", "d"}));
        QCOMPARE(TextCodec::splitLines(QStringLiteral("a\r\n")), QStringList{"a"});
        QCOMPARE(TextCodec::splitLines(QStringLiteral("a\r\n\r\n")), (QStringList{"a", ""}));
        QCOMPARE(TextCodec::splitLines(QString()), QStringList());
        QCOMPARE(TextCodec::splitLines(QStringLiteral("\n\r")), (QStringList{"", ""}));
    }
    void linesAreWrittenWithCrLf()
    {
        QCOMPARE(TextCodec::joinLines({"a", "", "b"}), QStringLiteral("a\r\n\r\nb\r\n"));
        QCOMPARE(TextCodec::joinLines({}), QString());
    }
};

QTEST_GUILESS_MAIN(TestTextCodec)
#include "tst_textcodec.moc"
