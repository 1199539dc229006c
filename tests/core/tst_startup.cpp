#include "TestSupport.h"
#include "core/Globals.h"
#include "core/Startup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>

// Runs the start-up from a given folder with the user's folders in a temporary place, and goes
// back to the test's own folder afterwards.
class StartFolder
{
public:
    StartFolder()
    {
        m_saved = QDir::currentPath();
        m_home = m_root.filePath("home");
        m_start = m_root.filePath("start");
        QDir().mkpath(m_home);
        QDir().mkpath(m_start);
        qputenv("HOME", m_home.toUtf8());
        qputenv("XDG_DATA_HOME", m_root.filePath("data").toUtf8());
        QDir::setCurrent(m_start);
        resetGlobals();
    }
    ~StartFolder() { QDir::setCurrent(m_saved); }
    QString start() const { return m_start; }
    QString data() const { return m_root.filePath("data/Vantrel"); }
    QString home() const { return m_home; }

private:
    QTemporaryDir m_root;
    QString m_saved;
    QString m_home;
    QString m_start;
};

class TestStartup : public QObject
{
    Q_OBJECT

    Globals& g = globals();

private slots:
    void defaultsAndStateOfAFreshStart()
    {
        resetGlobals();
        g.MainLeft = 1;
        g.WindowBackColor = 5;
        g.OptBold = true;
        g.AppTitle = "x";
        g.FontType = 3;
        g.StartUrl = "s";
        InitDefaults();
        QCOMPARE(g.MainLeft, 7100);
        QCOMPARE(g.MainTop, 250);
        QCOMPARE(g.MainHeight, 8100);
        QCOMPARE(g.MainWidth, 4700);
        QCOMPARE(g.WindowBackColor, 0xFF8080);
        QCOMPARE(g.ListTextColor, int32_t(0x80000012));
        QVERIFY(!g.OptBold);
        QCOMPARE(g.AppTitle, QStringLiteral("Vantrel 2.0"));
        QCOMPARE(g.FontType, 1);
        QCOMPARE(g.StartUrl, QString::fromLatin1(kDefaultStartUrl));
        QVERIFY(g.StartUrl.startsWith("https://"));
        QVERIFY(g.NewWindowUrl.startsWith("https://"));

        g.WindowCount = 3;
        g.WindowIndex = 2;
        g.NextRunItem = 4;
        g.NewWindowMode = false;
        g.RunInterval = 99;
        g.OptOnTop = false;
        g.WindowUrl[5] = "u";
        g.LastWindowMode = true;
        InitState();
        QCOMPARE(g.WindowCount, 0);
        QCOMPARE(g.WindowIndex, 0);
        QCOMPARE(g.NextRunItem, 1);
        QVERIFY(g.NewWindowMode);
        QCOMPARE(g.RunInterval, 30);
        QVERIFY(g.OptOnTop);
        QVERIFY(!g.LastWindowMode);
        QCOMPARE(g.WindowUrl[5], QString());
    }
    void withoutProgramFileAndDefaultFolderTheDefaultFolderIsMadeAndNothingIsFound()
    {
        StartFolder folders;
        QVERIFY(writeAll(folders.start() + "/DefaultList.NLS", "L[#@!]t[#@!]u\r\n")); // not read
        StartUp();
        QCOMPARE(g.AppPath, folders.data());
        QVERIFY(QDir(folders.data()).exists());
        QCOMPARE(QDir::currentPath(), folders.data());
        QCOMPARE(g.ListCount, 0);
        QCOMPARE(g.HistoryCount, 0);
        QCOMPARE(g.BtnTitle[1], QString());
        QCOMPARE(g.MainLeft, 7100);
    }
    void existingDefaultFolderIsTheProgramFolderAndTheCurrentDirectory()
    {
        StartFolder folders;
        QVERIFY(QDir().mkpath(folders.data()));
        QVERIFY(writeAll(folders.data() + "/DefaultList.NLS", "L[#@!]t[#@!]u\r\n"));
        StartUp();
        QCOMPARE(g.AppPath, folders.data());
        QCOMPARE(QDir::currentPath(), folders.data());
        QCOMPARE(g.ListCount, 1);
    }
    void folderWithTheProgramFileIsAPortableProgramFolder()
    {
        StartFolder folders;
        QVERIFY(writeAll(folders.start() + "/vantrel", "program"));
        QVERIFY(writeAll(folders.start() + "/DefaultBtns.BLS", "3[^^]Three[||]u3\r\n"));
        StartUp();
        QCOMPARE(g.AppPath, folders.start());
        QCOMPARE(QDir::currentPath(), folders.start());
        QCOMPARE(g.BtnTitle[3], QStringLiteral("Three"));
        QVERIFY(!QDir(folders.data()).exists());
    }
    void historyIsReadAfterTheListsWhichEmptyIt()
    {
        StartFolder folders;
        QVERIFY(QDir().mkpath(folders.data()));
        QVERIFY(writeAll(folders.data() + "/DefaultList.NLS", "L[#@!]t[#@!]u\r\n"));
        QVERIFY(writeAll(folders.data() + "/BrowseHistory.LST",
                         "Internet Explorer 1[#@!]a[#@!]ua\r\nInternet Explorer 2[#@!]b[#@!]ub\r\n"));
        QVERIFY(writeAll(folders.data() + "/DefaultBtns.BLS", "1[^^]One[||]u1\r\n"));
        StartUp();
        QCOMPARE(g.ListCount, 1);
        QCOMPARE(g.HistoryCount, 2);
        QCOMPARE(g.HistUrl[1], QStringLiteral("ub"));
        QCOMPARE(g.BtnUrl[1], QStringLiteral("u1"));
    }
    void startUpRemovesWhatInterruptedSavesOfTheDataFilesLeft()
    {
        StartFolder folders;
        QVERIFY(QDir().mkpath(folders.data()));
        const QStringList dataFiles = {"DefaultList.NLS", "BrowseHistory.LST", "DefaultBtns.BLS",
                                       "Options.INI", "Colors.INI", "Session.INI"};
        for (const QString& name : dataFiles) {
            QVERIFY(writeAll(folders.data() + '/' + name, ""));
            QVERIFY(interruptedSave(folders.data() + '/' + name, QByteArray(50000, 'x')));
        }
        QCOMPARE(hiddenFiles(folders.data()).size(), 6);
        // What is not the program's own stays: another file's temporary file, a look-alike.
        QVERIFY(writeAll(folders.data() + "/.Notes.txt.1a.tmp", "theirs"));
        QVERIFY(writeAll(folders.data() + "/.Options.INI.tmp", "theirs"));
        StartUp();
        QCOMPARE(hiddenFiles(folders.data()), (QStringList{".Notes.txt.1a.tmp", ".Options.INI.tmp"}));
        for (const QString& name : dataFiles)
            QVERIFY(QFileInfo::exists(folders.data() + '/' + name));
    }
    void startUpMakesAnExistingBrowserProfilePrivate()
    {
        StartFolder folders;
        const QString profile = folders.data() + "/Browser";
        QVERIFY(QDir().mkpath(profile));
        QVERIFY(QFile::setPermissions(profile, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                   QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                                   QFile::ExeOther));
        StartUp();
        struct stat st
        {
        };
        QCOMPARE(::stat(QFile::encodeName(profile).constData(), &st), 0);
        QCOMPARE(st.st_mode & 0777, mode_t(0700));
    }
    void favoritesFolderIsMadeInTheHomeFolder()
    {
        StartFolder folders;
        QCOMPARE(GetFavoritesFolder(6), folders.home() + "/Favorites");
        QVERIFY(QDir(folders.home() + "/Favorites").exists());
        QCOMPARE(GetFavoritesFolder(5), QString());
        const QByteArray home = qgetenv("HOME");
        qunsetenv("HOME");
        QCOMPARE(GetFavoritesFolder(6), QString());
        qputenv("HOME", home);
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
