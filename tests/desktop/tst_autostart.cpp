// "Start Vantrel when I log in": the desktop entry in the user's autostart folder, written and
// taken out again, its Exec line quoted as desktop entries want.
#include "desktop/Autostart.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestAutostart : public QObject
{
    Q_OBJECT

    QTemporaryDir m_config;
    QByteArray m_savedConfig;

private slots:
    void initTestCase()
    {
        Q_INIT_RESOURCE(resources); // the program's own desktop entry
    }
    void init()
    {
        m_savedConfig = qgetenv("XDG_CONFIG_HOME");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path()));
    }
    void cleanup()
    {
        QDir(m_config.path() + "/autostart").removeRecursively();
        if (m_savedConfig.isNull())
            qunsetenv("XDG_CONFIG_HOME");
        else
            qputenv("XDG_CONFIG_HOME", m_savedConfig);
    }

    void theEntryNamesTheCommandThatStartedTheProgramAndPagesDoNotInheritIt()
    {
        // The vantrel command says where it is before it becomes the program.
        qputenv("VANTREL_COMMAND", "/opt/vantrel/bin/vantrel");
        QCOMPARE(Autostart::command(), QStringLiteral("/opt/vantrel/bin/vantrel"));
        QVERIFY(!qEnvironmentVariableIsSet("VANTREL_COMMAND"));
        QCOMPARE(Autostart::command(), QStringLiteral("/opt/vantrel/bin/vantrel"));
    }
    void theEntryIsWrittenAndTakenOutAgain()
    {
        QCOMPARE(Autostart::entryPath(), m_config.path() + "/autostart/org.vantrel.Vantrel.desktop");
        QVERIFY(!Autostart::isEnabled());
        QString error;
        QVERIFY2(Autostart::setEnabled(true, "/usr/bin/vantrel", &error), qPrintable(error));
        QVERIFY(Autostart::isEnabled());
        QFile entry(Autostart::entryPath());
        QVERIFY(entry.open(QIODevice::ReadOnly));
        QVERIFY(entry.readAll().contains("\nExec=/usr/bin/vantrel\n"));
        QVERIFY(Autostart::setEnabled(false, "/usr/bin/vantrel", &error));
        QVERIFY(!Autostart::isEnabled());
    }

    void aFolderThatCannotBeMadeIsSaid()
    {
        QFile blocker(m_config.path() + "/autostart");
        QVERIFY(blocker.open(QIODevice::WriteOnly)); // a file in the folder's place
        blocker.close();
        QString error;
        QVERIFY(!Autostart::setEnabled(true, "/usr/bin/vantrel", &error));
        QCOMPARE(error, "the folder of " + Autostart::entryPath() + " could not be made");
        QVERIFY(QFile::remove(blocker.fileName()));
    }

    void theAutostartEntryQuotesAPathThatNeedsIt()
    {
        const QByteArray own = "[Desktop Entry]\nName=Vantrel\nTryExec=vantrel\nExec=vantrel\nIcon=x\n";
        QCOMPARE(Autostart::entryFor(own, "/usr/bin/vantrel"),
                 QByteArray("[Desktop Entry]\nName=Vantrel\nExec=/usr/bin/vantrel\nIcon=x\n"));
        QCOMPARE(Autostart::entryFor(own, "/opt/my apps/100%/van\"trel$"),
                 QByteArray("[Desktop Entry]\nName=Vantrel\nExec=\"/opt/my apps/100%%/van\\\\\"trel\\\\$\"\nIcon=x\n"));
    }
    void theAutostartEntryLeavesTheLaunchersActionsAndFileTypesOut()
    {
        const QByteArray own = "[Desktop Entry]\nName=Vantrel\nExec=vantrel %U\nMimeType=application/x-mswinurl;\n"
                               "DBusActivatable=true\nActions=stop;\n\n[Desktop Action stop]\nName=Stop the Run\nExec=vantrel --stop\n";
        QCOMPARE(Autostart::entryFor(own, "/usr/bin/vantrel"),
                 QByteArray("[Desktop Entry]\nName=Vantrel\nExec=/usr/bin/vantrel\n"));
    }
};

QTEST_GUILESS_MAIN(TestAutostart)
#include "tst_autostart.moc"
