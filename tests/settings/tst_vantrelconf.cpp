#include "TestSupport.h"
#include "watch/EventLog.h"
#include "settings/VantrelConf.h"
#include "core/Clock.h"
#include "core/Globals.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

// The store of the additions' settings and the log of unattended work.
class TestVantrelConf : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;

private slots:
    void init() { m_app = std::make_unique<TempAppFolder>(); }
    void cleanup()
    {
        Clock::setInstance(nullptr);
        m_app.reset();
    }

    void withoutAFileEverySettingHasItsDefault()
    {
        QVERIFY(!QFile::exists(VantrelConf::path()));
        QCOMPARE(VantrelConf::path(), m_app->file("Vantrel.conf"));
        for (const VantrelConf::Setting& setting : VantrelConf::all()) {
            QCOMPARE(VantrelConf::value(setting.key), setting.defaultValue);
            QVERIFY2(!setting.toolTip.isEmpty(), setting.key);
            QVERIFY2(!setting.label.isEmpty(), setting.key);
        }
        QVERIFY(VantrelConf::flag(VantrelConf::kShowWhenLoaded));
        QCOMPARE(VantrelConf::value(VantrelConf::kReadySeconds), 10);
        QCOMPARE(VantrelConf::value(VantrelConf::kKeptReloadMinutes), 0); // never
        QCOMPARE(VantrelConf::value(VantrelConf::kCrashReloads), 3);
        QCOMPARE(VantrelConf::value(VantrelConf::kCrashWindowMinutes), 10);
        QVERIFY(VantrelConf::flag(VantrelConf::kNetworkRetry));
        QVERIFY(VantrelConf::flag(VantrelConf::kKeepScreenAwake));
        QVERIFY(!QFile::exists(VantrelConf::path())); // reading writes nothing
    }
    void settingsAreKeptAsAnIniFileBesideTheDataFiles()
    {
        QVERIFY(VantrelConf::setValue(VantrelConf::kReadySeconds, 25));
        QVERIFY(VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 0));
        QCOMPARE(VantrelConf::value(VantrelConf::kReadySeconds), 25);
        QVERIFY(!VantrelConf::flag(VantrelConf::kShowWhenLoaded));
        const QByteArray file = readAll(m_app->file("Vantrel.conf"));
        QVERIFY(file.contains("[TimedBrowsing]"));
        QVERIFY(file.contains("LongestWaitForAPageSeconds=25"));
        // Out of range, a value is kept within it.
        QVERIFY(VantrelConf::setValue(VantrelConf::kReadySeconds, 100000));
        QCOMPARE(VantrelConf::value(VantrelConf::kReadySeconds), 120);
        QCOMPARE(hiddenFiles(m_app->path()), QStringList{}); // nothing left beside it
    }
    void aDamagedFileGivesTheDefaults()
    {
        QVERIFY(writeAll(m_app->file("Vantrel.conf"),
                         "[TimedBrowsing]\nLongestWaitForAPageSeconds=abc\nReloadKeptPageMinutes=-5\n"
                         "ShowEachPageWhenLoaded=7\n\x01\x02 garbage ]]]\n"));
        QCOMPARE(VantrelConf::value(VantrelConf::kReadySeconds), 10);
        QCOMPARE(VantrelConf::value(VantrelConf::kKeptReloadMinutes), 0);
        QVERIFY(VantrelConf::flag(VantrelConf::kShowWhenLoaded));
    }
    void theLogHasOneLinePerEventWithItsLocalTime()
    {
        ManualClock clock(QDateTime(QDate(2026, 11, 21), QTime(7, 8, 9)));
        Clock::setInstance(&clock);
        EventLog::write("run started: Dashboards");
        clock.advanceSeconds(1);
        EventLog::write("page opened: 2 https://example.org/");
        const QList<QByteArray> lines = readAll(m_app->file("Vantrel.log")).split('\n');
        QCOMPARE(lines.size(), 3);
        QVERIFY2(QRegularExpression("^2026-11-21T07:08:09[+-]\\d\\d:\\d\\d run started: Dashboards$")
                     .match(QString::fromUtf8(lines[0]))
                     .hasMatch(),
                 lines[0].constData());
        QVERIFY(lines[1].endsWith(" page opened: 2 https://example.org/"));
    }
    void theLogKeepsToAboutAMegabyteInFourFiles()
    {
        const QString line(200, u'x');
        for (int i = 0; i < 25000; ++i) // about 5.5 MB of lines
            EventLog::write(line);
        for (const QString name : {"Vantrel.log", "Vantrel.log.1", "Vantrel.log.2", "Vantrel.log.3"}) {
            const qint64 size = QFileInfo(m_app->file(name)).size();
            QVERIFY2(size > EventLog::kMaxBytes - 1000 || name == "Vantrel.log", qPrintable(name));
            QVERIFY2(size <= EventLog::kMaxBytes, qPrintable(name));
        }
        QVERIFY(!QFile::exists(m_app->file("Vantrel.log.4")));
    }
};

QTEST_GUILESS_MAIN(TestVantrelConf)
#include "tst_vantrelconf.moc"
