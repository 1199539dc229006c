#include "TestSupport.h"
#include "bookmarks/InstalledBrowsers.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

// The browsers' profiles found in a home folder made for the test, as the browsers lay them out.
class TestInstalledBrowsers : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    QTemporaryDir& m_home() { return *m_dir; }

    QString home() { return m_home().path(); }
    QString config() { return m_home().filePath(".config"); }
    void make(const QString& relative, const QByteArray& bytes = {})
    {
        const QString path = m_home().filePath(relative);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        if (!relative.endsWith(u'/'))
            QVERIFY(writeAll(path, bytes));
    }
    static QStringList labels(const QList<InstalledBrowsers::Profile>& profiles)
    {
        QStringList all;
        for (const auto& p : profiles)
            all << p.label();
        return all;
    }

private slots:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); } // each test its own home
    void noBrowsersNoProfiles() { QVERIFY(InstalledBrowsers::find(home(), config()).isEmpty()); }

    void theProfileFirefoxReallyUsesComesFirst()
    {
        // The installation's own section names the profile in use, not Default=1.
        make(".mozilla/firefox/profiles.ini",
             "[Profile1]\nName=default\nIsRelative=1\nPath=abc123.default\nDefault=1\n\n"
             "[Profile0]\nName=default-release\nIsRelative=1\nPath=xyz789.default-release\n\n"
             "[Profile2]\nName=gone\nIsRelative=1\nPath=gone.profile\n\n"
             "[Profile3]\nName=elsewhere\nIsRelative=0\nPath=" + m_home().filePath("elsewhere").toUtf8() + "\n\n"
             "[General]\nStartWithLastProfile=1\nVersion=2\n\n"
             "[Install4F96D1932A9F858E]\nDefault=xyz789.default-release\nLocked=1\n");
        make(".mozilla/firefox/abc123.default/places.sqlite");
        make(".mozilla/firefox/xyz789.default-release/places.sqlite");
        make("elsewhere/places.sqlite");
        const QList<InstalledBrowsers::Profile> found = InstalledBrowsers::find(home(), config());
        QCOMPARE(labels(found), (QStringList{"Firefox - default-release (in use)", "Firefox - default",
                                             "Firefox - elsewhere"}));
        QCOMPARE(found[0].bookmarksFile(), m_home().filePath(".mozilla/firefox/xyz789.default-release/places.sqlite"));
        QCOMPARE(found[2].folder, m_home().filePath("elsewhere"));
    }
    void withoutAnInstallSectionDefaultOneIsInUse()
    {
        make(".config/mozilla/firefox/profiles.ini",
             "[Profile0]\nName=mine\nIsRelative=1\nPath=m.mine\nDefault=1\n[Profile1]\nName=other\nPath=o.other\n");
        make(".config/mozilla/firefox/m.mine/places.sqlite");
        make(".config/mozilla/firefox/o.other/places.sqlite");
        QCOMPARE(labels(InstalledBrowsers::find(home(), config())),
                 (QStringList{"Firefox - mine (in use)", "Firefox - other"}));
        // A profile Firefox made but never started holds no bookmarks: it is not offered.
        QVERIFY(QFile::remove(m_home().filePath(".config/mozilla/firefox/o.other/places.sqlite")));
        QCOMPARE(labels(InstalledBrowsers::find(home(), config())), QStringList{"Firefox - mine (in use)"});
    }
    void chromiumFamilyProfilesByTheirNames()
    {
        make(".config/chromium/Local State",
             R"({"profile":{"info_cache":{"Default":{"name":"Person 1"},"Profile 1":{"name":"Work"}},"last_used":"Profile 1"}})");
        make(".config/chromium/Default/Bookmarks", "{}");
        make(".config/chromium/Profile 1/Bookmarks", "{}");
        make(".config/chromium/System Profile/Preferences", "{}"); // no bookmarks: not offered
        make(".config/google-chrome/Default/Bookmarks", "{}");
        make(".config/BraveSoftware/Brave-Browser/Default/Bookmarks", "{}");
        make(".config/microsoft-edge/Local State", "not json at all");
        make(".config/microsoft-edge/Default/Bookmarks", "{}");
        const QList<InstalledBrowsers::Profile> found = InstalledBrowsers::find(home(), config());
        QCOMPARE(labels(found), (QStringList{"Chromium - Work (in use)", "Chromium - Person 1",
                                             "Google Chrome - Default (in use)", "Brave - Default (in use)",
                                             "Microsoft Edge - Default (in use)"}));
        QCOMPARE(found[0].bookmarksFile(), m_home().filePath(".config/chromium/Profile 1/Bookmarks"));
        QCOMPARE(found[0].kind, InstalledBrowsers::Profile::Kind::Chromium);
    }
};

QTEST_GUILESS_MAIN(TestInstalledBrowsers)
#include "tst_installedbrowsers.moc"
