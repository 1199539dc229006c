#pragma once

#include <QString>

// Reads one key of a profile-style file (sections in brackets, key=value lines), the way the
// Internet Shortcut files are read. Section and key names compare ignoring case; only the first
// section of the wanted name is searched and its first line with the key wins; blanks are trimmed
// and one pair of enclosing quotes is removed from the value; at most `maxLength` characters come
// back: 2047 as a favourite is opened, all of it (`kWholeProfileValue`) where a whole address is
// compared or carried elsewhere. A missing file, section or key gives `defaultValue`.
inline constexpr qsizetype kProfileValueLength = 2047; // what fits the 2048-character buffer
inline constexpr qsizetype kWholeProfileValue = -1;
QString GetIniString(const QString& section, const QString& key, const QString& defaultValue,
                     const QString& fileName, qsizetype maxLength = kProfileValueLength);

// The same look-up in text already read.
QString ProfileValue(const QString& text, const QString& section, const QString& key,
                     const QString& defaultValue, qsizetype maxLength = kProfileValueLength);
