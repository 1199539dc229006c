#include "TestSupport.h"
#include "core/ProfileString.h"

#include <QTest>

class TestProfileString : public QObject
{
    Q_OBJECT

    static QString url(const QString& text)
    {
        return ProfileValue(text, "InternetShortcut", "URL", "default");
    }

private slots:
    void readsTheKeyOfTheSection_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("value");
        QTest::newRow("plain") << "[InternetShortcut]\r\nURL=https://a/\r\n"
                               << "https://a/";
        QTest::newRow("names ignore case") << "[internetshortcut]\nurl=https://a/"
                                           << "https://a/";
        QTest::newRow("blanks trimmed") << "  [ InternetShortcut ]  \n\t URL \t=  https://a/ b \v\n"
                                        << "https://a/ b";
        QTest::newRow("later = in value") << "[InternetShortcut]\nURL=https://a/?x=1&y=2"
                                          << "https://a/?x=1&y=2";
        QTest::newRow("first line wins") << "[InternetShortcut]\nURL=one\nURL=two"
                                         << "one";
        QTest::newRow("only first section read") << "[InternetShortcut]\nIcon=1\n[InternetShortcut]\nURL=two"
                                                 << "default";
        QTest::newRow("key in other section") << "[DEFAULT]\nURL=base\n[InternetShortcut]\nIDList=\n"
                                              << "default";
        QTest::newRow("before any section") << "URL=nowhere\n[InternetShortcut]\n"
                                            << "default";
        QTest::newRow("comment line") << "[InternetShortcut]\n;URL=commented\nURL=real"
                                      << "real";
        QTest::newRow("semicolon and hash in value") << "[InternetShortcut]\nURL=a;b#c"
                                                     << "a;b#c";
        QTest::newRow("double quotes") << "[InternetShortcut]\nURL=\" a \""
                                       << " a ";
        QTest::newRow("single quotes") << "[InternetShortcut]\nURL='x'"
                                       << "x";
        QTest::newRow("unmatched quote stays") << "[InternetShortcut]\nURL=\"x"
                                               << "\"x";
        QTest::newRow("text after bracket ignored") << "[InternetShortcut] junk\nURL=u"
                                                    << "u";
        QTest::newRow("header without bracket") << "[InternetShortcut\nURL=u"
                                                << "u";
        QTest::newRow("empty value") << "[InternetShortcut]\nURL=\n"
                                     << "";
        QTest::newRow("line without equals") << "[InternetShortcut]\nURL\nURL=u"
                                             << "u";
        QTest::newRow("blank lines and CR only") << "\r\r[InternetShortcut]\r\rURL=u\r"
                                                 << "u";
        QTest::newRow("no section") << ""
                                    << "default";
    }
    void readsTheKeyOfTheSection()
    {
        QFETCH(QString, text);
        QFETCH(QString, value);
        QCOMPARE(url(text), value);
    }
    void valueIsCutTo2047Characters()
    {
        const QString long3000(3000, u'a');
        QCOMPARE(url("[InternetShortcut]\nURL=" + long3000).size(), 2047);
        // Asked for the whole value, all of it comes back.
        QCOMPARE(ProfileValue("[InternetShortcut]\nURL=" + long3000, "InternetShortcut", "URL", "", kWholeProfileValue),
                 long3000);
    }
    void fileInAnyEncodingIsRead()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.url");
        QVERIFY(writeAll(path, "[InternetShortcut]\r\nURL=https://caf\xE9.example/\r\n"));
        QCOMPARE(GetIniString("InternetShortcut", "URL", "", path),
                 QString::fromUtf8("https://café.example/"));
        const QString text = "[InternetShortcut]\r\nURL=https://utf16.example/\r\n";
        QByteArray utf16("\xFF\xFE");
        utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
        QVERIFY(writeAll(path, utf16));
        QCOMPARE(GetIniString("InternetShortcut", "URL", "", path), QStringLiteral("https://utf16.example/"));
        QVERIFY(writeAll(path, "\xEF\xBB\xBF[InternetShortcut]\nURL=bom"));
        QCOMPARE(GetIniString("InternetShortcut", "URL", "", path), QStringLiteral("bom"));
    }
    void missingOrBinaryFileGivesTheDefault()
    {
        QTemporaryDir dir;
        QCOMPARE(GetIniString("InternetShortcut", "URL", "", dir.filePath("none.url")), QString());
        QByteArray junk;
        for (int i = 0; i < 4096; ++i)
            junk.append(char((i * 37) & 0xFF));
        QVERIFY(writeAll(dir.filePath("junk.url"), junk));
        QCOMPARE(GetIniString("InternetShortcut", "URL", "", dir.filePath("junk.url")), QString());
    }
};

QTEST_GUILESS_MAIN(TestProfileString)
#include "tst_profilestring.moc"
