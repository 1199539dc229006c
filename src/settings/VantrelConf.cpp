#include "VantrelConf.h"

#include "core/Globals.h"

#include <QSettings>

#include <algorithm>

namespace VantrelConf {

const QList<Setting>& all()
{
    static const QList<Setting> settings = {
        {kShowWhenLoaded, QStringLiteral("Show each page of a run only when it has loaded"),
         QStringLiteral("A window keeps showing its page until the next one has loaded, so that no blank or "
                        "half-drawn page is seen"),
         true, 1, 0, 1, {}, {}},
        {kReadySeconds, QStringLiteral("Longest wait for a page before it is shown anyway"),
         QStringLiteral("A page that takes longer to load is shown as far as it has come"), false, 10, 1, 120,
         QString(), QStringLiteral(" s")},
        {kKeptReloadMinutes, QStringLiteral("Reload a kept page every"),
         QStringLiteral("With \"Keep Pages Loaded\", each page is loaded again after this time; never keeps it "
                        "as it is"),
         false, 0, 0, 1440, QStringLiteral("never"), QStringLiteral(" min")},
        {kKeepScreenAwake, QStringLiteral("Keep the screen awake while a list runs"),
         QStringLiteral("The screen saver and screen blanking are held off while a list runs"), true, 1, 0, 1, {}, {}},
        {kHandsOnPause, QStringLiteral("Pause the rotation while someone uses its window"),
         QStringLiteral("A click, a scroll, a key or a touch in a window of a running list holds the list at its "
                        "page; moving the pointer alone does not"),
         true, 1, 0, 1, {}, {}},
        {kHandsOnSeconds, QStringLiteral("... and go on after no input for"),
         QStringLiteral("The list goes on at the page the person left once nobody has used its window this long"),
         false, 60, 5, 3600, QString(), QStringLiteral(" s")},
        {kCrashReloads, QStringLiteral("Reload a crashed page by itself, at most"),
         QStringLiteral("A page whose process ends abnormally is loaded again by itself this often; after "
                        "that it shows its Reload button and waits"),
         false, 3, 0, 100, QStringLiteral("never"), QStringLiteral(" times")},
        {kCrashWindowMinutes, QStringLiteral("... within"),
         QStringLiteral("The time over which the automatic reloads of one window are counted"), false, 10, 1,
         1440, QString(), QStringLiteral(" min")},
        {kCrashDelaySeconds, QStringLiteral("Wait before reloading a crashed page"),
         QStringLiteral("How long the crashed page's notice shows before it is loaded again"), false, 2, 0, 600,
         QString(), QStringLiteral(" s")},
        {kNetworkRetry, QStringLiteral("Try a page again when the network fails"),
         QStringLiteral("A page that could not be reached is tried again after 2, 4, 8 ... seconds (at most "
                        "every 5 minutes), and at once when the network comes back"),
         true, 1, 0, 1, {}, {}},
        {kLoadTimeoutSeconds, QStringLiteral("Stop a page still loading after"),
         QStringLiteral("A page that has not finished loading by then is stopped and tried again as after a "
                        "network failure, so that no screen sits on a page that stopped loading"),
         false, 60, 0, 3600, QStringLiteral("never"), QStringLiteral(" s")},
        {kReloadAfterSleepMinutes, QStringLiteral("After the machine slept, reload pages shown longer than"),
         QStringLiteral("A page that was shown before the machine went to sleep may be out of date, or its "
                        "connection gone: it is loaded again when the machine wakes up"),
         false, 10, 0, 1440, QStringLiteral("any time"), QStringLiteral(" min")},
        {kPageMemoryLimitMB, QStringLiteral("Reload a page whose process grows past"),
         QStringLiteral("A page that keeps taking memory is loaded again: while its window is hidden, or after "
                        "five minutes over the limit when it is always shown"),
         false, 1536, 0, 65536, QStringLiteral("no limit"), QStringLiteral(" MB")},
        {kReopenAfterCrash, QStringLiteral("After a crash, reopen the last session without asking"),
         QStringLiteral("For screens nobody watches: after a crash, a kill or a power cut the windows come back in "
                        "their slots and the run goes on, without a question"),
         true, 0, 0, 1, {}, {}},
        {kAlwaysReopen, QStringLiteral("Always reopen the windows of the last session"),
         QStringLiteral("Every start opens the windows that were open when Vantrel last ended, in their slots, "
                        "instead of the start-up page or list"),
         true, 0, 0, 1, {}, {}},
        {kStartAtLogin, QStringLiteral("Start Vantrel when I log in"),
         QStringLiteral("The desktop starts Vantrel at login (an entry in the autostart folder), so that a screen "
                        "that lost its power comes back by itself"),
         true, 0, 0, 1, {}, {}},
        {kKeepFavoritesInStep, QStringLiteral("Keep the Favorites tree in step with the folder"),
         QStringLiteral("What other programs change in your Favorites folder (a file manager, a synced folder) "
                        "appears in the tree by itself, without Refresh"),
         true, 0, 0, 1, {}, {}},
        {kDuplicatesIgnoreTracking, QStringLiteral("Find Duplicates: the same page whatever its tracking parameters"),
         QStringLiteral("Addresses that differ only in the parameters sites add to follow visits (utm_source, "
                        "fbclid, gclid, ...) count as the same page"),
         true, 1, 0, 1, {}, {}},
        {kSyncWithFile, QStringLiteral("Keep my Favorites in step with a bookmarks file"),
         QStringLiteral("An XBEL file in a folder that your machines share (Nextcloud, Syncthing, Dropbox): Vantrel "
                        "writes your Favorites into it, and brings in what another machine or a browser extension "
                        "changed there"),
         true, 0, 0, 1, {}, {}},
    };
    return settings;
}

const Setting* find(const char* key)
{
    for (const Setting& setting : all())
        if (qstrcmp(setting.key, key) == 0)
            return &setting;
    return nullptr;
}

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

int value(const char* key)
{
    const Setting* setting = find(key);
    if (!setting)
        return 0;
    const QSettings file(path(), QSettings::IniFormat);
    bool ok = false;
    const int stored = file.value(QString::fromLatin1(key)).toInt(&ok);
    const int maximum = setting->flag ? 1 : setting->maximum;
    if (!ok || stored < setting->minimum || stored > maximum)
        return setting->defaultValue; // a damaged or foreign value counts for nothing
    return stored;
}

bool flag(const char* key)
{
    return value(key) != 0;
}

bool setValue(const char* key, int value)
{
    const Setting* setting = find(key);
    if (!setting)
        return false;
    const int maximum = setting->flag ? 1 : setting->maximum;
    QSettings file(path(), QSettings::IniFormat);
    file.setValue(QString::fromLatin1(key), std::clamp(value, setting->minimum, maximum));
    file.sync(); // written to a temporary file and renamed over the old one
    return file.status() == QSettings::NoError;
}

QString text(const char* key)
{
    const QSettings file(path(), QSettings::IniFormat);
    return file.value(QString::fromLatin1(key)).toString();
}

bool setText(const char* key, const QString& value)
{
    QSettings file(path(), QSettings::IniFormat);
    file.setValue(QString::fromLatin1(key), value);
    file.sync();
    return file.status() == QSettings::NoError;
}

} // namespace VantrelConf
