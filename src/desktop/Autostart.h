#pragma once

#include <QByteArray>
#include <QString>

// "Start Vantrel when I log in": the freedesktop autostart entry, the program's own desktop entry
// with the path the program was started from, in $XDG_CONFIG_HOME/autostart/. The entry's
// presence is the setting: a person who removes it in the desktop's own settings has turned it off.
namespace Autostart {

inline constexpr char kEntryName[] = "org.vantrel.Vantrel.desktop";

QString entryPath();
bool isEnabled();

// The desktop entry `entry` with its Exec line starting `program` (quoted as desktop entries
// want when it holds blanks or reserved characters).
QByteArray entryFor(const QByteArray& entry, const QString& program);

// The command that starts Vantrel: the `vantrel` command this program was started through (it
// says so in VANTREL_COMMAND, which the first call takes out of the environment, so that the
// pages' processes do not inherit it), else this program's own file.
QString command();

// Writes the entry for `program` (atomically) or removes it; false with the reason in `error`
// when that failed.
bool setEnabled(bool on, const QString& program, QString* error = nullptr);

} // namespace Autostart
