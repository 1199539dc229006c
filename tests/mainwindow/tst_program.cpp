#include "TestSupport.h"

#include <QDir>
#include <QProcess>
#include <QTest>

// The built program itself, started as a user starts it: it loads its browser engine module when
// it opens its first page, and keeps running until its window is closed.
class TestProgram : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("HOME", m_root.filePath("home"));
        env.insert("XDG_DATA_HOME", m_root.filePath("data"));
        env.insert("XDG_RUNTIME_DIR", m_root.filePath("run")); // its own: no other test's program answers
        env.remove("DBUS_SESSION_BUS_ADDRESS");                   // nor takes the person's bus name
        return env;
    }

private slots:
    void startsAndOpensTheStartUpPageThroughTheEngineModule()
    {
        const QString programFolder = m_root.filePath("data/Vantrel");
        QVERIFY(QDir().mkpath(programFolder));
        QVERIFY(QDir().mkpath(m_root.filePath("home")));
        QVERIFY(QDir().mkpath(m_root.filePath("run")));
        QVERIFY(QFile::setPermissions(m_root.filePath("run"), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                                  QFileDevice::ExeOwner));
        const QString page = m_root.filePath("start.html");
        QVERIFY(writeAll(page, "<html><head><title>Start</title></head><body>start</body></html>"));
        QVERIFY(writeAll(programFolder + "/Options.INI",
                         " 100  100  8100  4700  1  0 \r\n 0  1  0  0  0 \r\n" +
                             QUrl::fromLocalFile(page).toEncoded() + "\r\nabout:blank\r\n"));
        QVERIFY(writeAll(programFolder + "/Colors.INI", testData("Colors.default.INI")));

        QProcess vantrel;
        vantrel.setProcessEnvironment(environment());
        vantrel.setWorkingDirectory(m_root.path());
        vantrel.start(QStringLiteral(VANTREL_PROGRAM), {});
        QVERIFY(vantrel.waitForStarted());
        // The browser profile's folder appears in the program folder once a window was made.
        const bool engineLoaded = waitFor([&] { return QDir(programFolder + "/Browser").exists(); }, 60000);
        QTest::qWait(500);
        const bool stillRunning = vantrel.state() == QProcess::Running;
        vantrel.kill();
        vantrel.waitForFinished();
        QVERIFY2(engineLoaded, vantrel.readAllStandardError().right(2000).constData());
        QVERIFY(stillRunning);
        QVERIFY(QDir(m_root.filePath("home/Favorites")).exists());
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
