#pragma once

#include <QString>

// Reads one key of a profile-style file (sections in brackets, key=value lines), the way the
// Internet Shortcut files are read. Section and key names compare ignoring case; only the first
// section of the wanted name is searched and its first line with the key wins; blanks are trimmed
// and one pair of enclosing quotes is removed from the value; at most 2047 characters come back.
// A missing file, section or key gives `defaultValue`.
QString GetIniString(const QString& section, const QString& key, const QString& defaultValue,
                     const QString& fileName);

// The same look-up in text already read.
QString ProfileValue(const QString& text, const QString& section, const QString& key,
                     const QString& defaultValue);
