#pragma once

#include <QList>
#include <QString>

// The settings of Vantrel's own additions (timed browsing that runs unattended, recovery, the
// log), kept in "Vantrel.conf" in the program folder, an INI file that is replaced atomically when
// it is written. The five data files never hold them. Every setting has a default that suits a
// person who never opens the "More Options" dialog, where they are shown.
namespace VantrelConf {

inline constexpr char kFileName[] = "Vantrel.conf";

// The keys.
inline constexpr char kShowWhenLoaded[] = "TimedBrowsing/ShowEachPageWhenLoaded";
inline constexpr char kReadySeconds[] = "TimedBrowsing/LongestWaitForAPageSeconds";
inline constexpr char kKeptReloadMinutes[] = "TimedBrowsing/ReloadKeptPageMinutes";
inline constexpr char kKeepScreenAwake[] = "TimedBrowsing/KeepScreenAwake";
inline constexpr char kHandsOnPause[] = "TimedBrowsing/PauseWhileSomeoneUsesItsWindow";
inline constexpr char kHandsOnSeconds[] = "TimedBrowsing/GoOnAfterSecondsWithoutInput";
inline constexpr char kCrashReloads[] = "Recovery/ReloadsAfterACrash";
inline constexpr char kCrashWindowMinutes[] = "Recovery/CrashReloadsWithinMinutes";
inline constexpr char kCrashDelaySeconds[] = "Recovery/SecondsBeforeACrashReload";
inline constexpr char kNetworkRetry[] = "Recovery/RetryAfterNetworkFailures";
inline constexpr char kLoadTimeoutSeconds[] = "Recovery/StopALoadAfterSeconds";
inline constexpr char kReloadAfterSleepMinutes[] = "Recovery/AfterSleepReloadPagesOlderThanMinutes";
inline constexpr char kPageMemoryLimitMB[] = "Recovery/PageProcessMemoryLimitMegabytes";
inline constexpr char kReopenAfterCrash[] = "Session/ReopenAfterACrashWithoutAsking";
inline constexpr char kAlwaysReopen[] = "Session/AlwaysReopenLastSession";
inline constexpr char kStartAtLogin[] = "Session/StartAtLogin";
inline constexpr char kKeepFavoritesInStep[] = "Favorites/KeepTreeInStepWithFolder";
inline constexpr char kDuplicatesIgnoreTracking[] = "Favorites/DuplicatesIgnoreTrackingParameters";
inline constexpr char kSyncWithFile[] = "Favorites/KeepInStepWithBookmarksFile";
// Text, not in the dialog's list of numbers and check boxes: the bookmarks file kept in step.
inline constexpr char kSyncFile[] = "Favorites/BookmarksFileKeptInStep";

struct Setting
{
    const char* key;
    QString label;   // as the dialog shows it
    QString toolTip;
    bool flag;       // a check box; otherwise a number
    int defaultValue;
    int minimum = 0;
    int maximum = 1;
    QString zeroText; // what a number of 0 means, when it means something of its own ("never")
    QString unit;
};

// Every setting, in the order of the dialog.
const QList<Setting>& all();
const Setting* find(const char* key);

QString path();

// The stored value, or the default when none is stored or the stored one is out of its range.
int value(const char* key);
bool flag(const char* key);
// Stores a value (clamped to its range); false when the file could not be written.
bool setValue(const char* key, int value);

// A setting that is text (a file's path); empty when none is stored.
QString text(const char* key);
bool setText(const char* key, const QString& value);

} // namespace VantrelConf
