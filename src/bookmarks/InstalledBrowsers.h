#pragma once

#include <QList>
#include <QString>

// The browsers installed for the user whose bookmarks Vantrel can bring in, each profile by name:
// Firefox (and Firefox ESR, which shares its folder) from its profiles.ini, under ~/.mozilla/firefox
// or, in recent versions, $XDG_CONFIG_HOME/mozilla/firefox, each profile that holds a places.sqlite
// (Firefox makes profiles it never starts); Chromium, Google Chrome, Brave, Vivaldi
// and Microsoft Edge from their folders in $XDG_CONFIG_HOME, each profile folder that holds a
// Bookmarks file.
namespace InstalledBrowsers {

struct Profile
{
    enum class Kind { Firefox, Chromium };
    Kind kind = Kind::Firefox;
    QString browser; // "Firefox", "Chromium", "Google Chrome", ...
    QString name;    // the profile's name as the browser shows it
    QString folder;  // the profile's folder
    bool inUse = false; // the profile the browser really starts with

    // The file the bookmarks are read from: places.sqlite or Bookmarks.
    QString bookmarksFile() const;
    // "Firefox - default-release (in use)" and the like, for the list the user chooses from.
    QString label() const;
};

// Every profile found under `home` and `configHome`: for each browser the profile in use first.
QList<Profile> find(const QString& home, const QString& configHome);

} // namespace InstalledBrowsers
