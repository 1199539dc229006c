#pragma once

#include <QByteArray>
#include <QString>

// File names as the file system has them. Linux keeps names as bytes; a Favorites folder copied
// from an old disk may hold names that are not valid UTF-8. Such a name is shown with a
// replacement character, yet must still open, be deleted and take drops, so every byte that is not
// part of valid UTF-8 travels inside the program's strings as a lone surrogate U+DC80..U+DCFF and
// turns back into the same byte on its way to the file system.
namespace FileName {

// The name (or path) read from the file system, every byte kept.
QString decode(const QByteArray& raw);

// The bytes to hand to the file system for a name that decode() made (or any other string).
QByteArray encode(const QString& name);

// True when decode() had to keep bytes that are not UTF-8.
bool hasRawBytes(const QString& name);

// `name` cut at a character boundary so that its file-system form takes at most `maxBytes` bytes.
QString cutToBytes(const QString& name, qsizetype maxBytes);

} // namespace FileName
