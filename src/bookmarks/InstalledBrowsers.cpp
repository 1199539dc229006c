#include "InstalledBrowsers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

namespace {

using InstalledBrowsers::Profile;

// Firefox's profiles.ini: [ProfileN] sections (Name, Path, IsRelative, Default) and, since
// version 67, [Install<hash>] sections whose Default names the profile each installation really
// starts with, which need not be the one marked Default=1.
void findFirefox(const QString& folder, QList<Profile>& found, QStringList& seen)
{
    const QString ini = folder + QStringLiteral("/profiles.ini");
    if (!QFileInfo::exists(ini))
        return;
    const QSettings settings(ini, QSettings::IniFormat);
    QStringList installed;
    QString marked;
    QList<Profile> profiles;
    for (const QString& group : settings.childGroups()) {
        if (group.startsWith(QLatin1String("Install"))) {
            installed << settings.value(group + QStringLiteral("/Default")).toString();
            continue;
        }
        if (!group.startsWith(QLatin1String("Profile")))
            continue;
        const QString path = settings.value(group + QStringLiteral("/Path")).toString();
        if (path.isEmpty())
            continue;
        const bool relative = settings.value(group + QStringLiteral("/IsRelative"), 1).toInt() != 0;
        Profile profile;
        profile.kind = Profile::Kind::Firefox;
        profile.browser = QStringLiteral("Firefox");
        profile.name = settings.value(group + QStringLiteral("/Name"), path).toString();
        profile.folder = QDir::cleanPath(relative ? folder + u'/' + path : path);
        if (settings.value(group + QStringLiteral("/Default")).toInt() == 1)
            marked = path;
        profiles << profile;
    }
    for (Profile& profile : profiles) {
        const QString relative = QDir(folder).relativeFilePath(profile.folder);
        profile.inUse = installed.isEmpty() ? (relative == marked || profile.folder == marked)
                                            : (installed.contains(relative) || installed.contains(profile.folder));
    }
    std::stable_partition(profiles.begin(), profiles.end(), [](const Profile& p) { return p.inUse; });
    // A profile never started (Firefox makes one it does not use) has no bookmarks to offer.
    for (const Profile& profile : profiles)
        if (!seen.contains(profile.folder) && QFileInfo::exists(profile.bookmarksFile())) {
            seen << profile.folder;
            found << profile;
        }
}

// A Chromium-family browser's folder: "Local State" names its profiles (profile.info_cache) and
// the one used last (profile.last_used); each profile folder holds its own Bookmarks file.
void findChromium(const QString& browser, const QString& folder, QList<Profile>& found)
{
    const QDir dir(folder);
    if (!dir.exists())
        return;
    QFile state(dir.filePath(QStringLiteral("Local State")));
    QJsonObject profileState;
    if (state.open(QIODevice::ReadOnly))
        profileState = QJsonDocument::fromJson(state.readAll()).object().value(QStringLiteral("profile")).toObject();
    const QJsonObject names = profileState.value(QStringLiteral("info_cache")).toObject();
    const QString lastUsed = profileState.value(QStringLiteral("last_used")).toString(QStringLiteral("Default"));
    QList<Profile> profiles;
    for (const QString& entry : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (!QFileInfo::exists(dir.filePath(entry + QStringLiteral("/Bookmarks"))))
            continue;
        Profile profile;
        profile.kind = Profile::Kind::Chromium;
        profile.browser = browser;
        profile.name = names.value(entry).toObject().value(QStringLiteral("name")).toString(entry);
        profile.folder = dir.filePath(entry);
        profile.inUse = entry == lastUsed;
        profiles << profile;
    }
    std::stable_partition(profiles.begin(), profiles.end(), [](const Profile& p) { return p.inUse; });
    found << profiles;
}

} // namespace

namespace InstalledBrowsers {

QString Profile::bookmarksFile() const
{
    return folder + (kind == Kind::Firefox ? QStringLiteral("/places.sqlite") : QStringLiteral("/Bookmarks"));
}

QString Profile::label() const
{
    return browser + QStringLiteral(" - ") + name + (inUse ? QStringLiteral(" (in use)") : QString());
}

QList<Profile> find(const QString& home, const QString& configHome)
{
    QList<Profile> found;
    QStringList seen;
    findFirefox(configHome + QStringLiteral("/mozilla/firefox"), found, seen);
    findFirefox(home + QStringLiteral("/.mozilla/firefox"), found, seen);
    static const QList<QPair<QString, QString>> chromiumFamily = {
        {QStringLiteral("Chromium"), QStringLiteral("chromium")},
        {QStringLiteral("Google Chrome"), QStringLiteral("google-chrome")},
        {QStringLiteral("Brave"), QStringLiteral("BraveSoftware/Brave-Browser")},
        {QStringLiteral("Vivaldi"), QStringLiteral("vivaldi")},
        {QStringLiteral("Microsoft Edge"), QStringLiteral("microsoft-edge")},
    };
    for (const auto& [browser, folder] : chromiumFamily)
        findChromium(browser, configHome + u'/' + folder, found);
    return found;
}

} // namespace InstalledBrowsers
