#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The byte form of every text file the program reads and writes. Files written by older
// installations are in the Windows-1252 code page; files written now are UTF-8. Reading takes
// UTF-8 when the bytes are valid UTF-8 and Windows-1252 otherwise, so no character is lost.
namespace TextCodec {

// Decodes a whole file: a leading UTF-8 byte-order mark is skipped.
QString decode(const QByteArray& bytes);

// Like decode(), but also honours a UTF-16 byte-order mark (shortcut files written by other tools).
QString decodeWithUtf16(const QByteArray& bytes);

// Windows-1252 to Unicode; every byte maps to one character.
QString decodeWindows1252(const QByteArray& bytes);

// UTF-8 without a byte-order mark.
QByteArray encode(const QString& text);

// Splits text at CR LF, LF or CR. A line end at the very end does not start another line.
QStringList splitLines(const QString& text);

// Joins lines, each ended by CR LF, as every file of the program is written.
QString joinLines(const QStringList& lines);

} // namespace TextCodec
